// examples/settings/Commands.cpp
#include "Commands.h"

#include "Location.h"
#include "Profile.h"
#include "RegistryKeys.h"
#include "Text.h"
#include "Versions.h"

#include <functional>
#include <optional>

namespace settings
{
namespace
{
constexpr char USAGE_TEXT[] =
    "usage: settings get|set|list|delete|export|import|version ARGUMENT...\n"
    "Try settings --help.\n";

constexpr char HELP_TEXT[] =
    R"(usage: settings get LOCATION
       settings set LOCATION VALUE
       settings list LOCATION
       settings delete LOCATION
       settings export LOCATION FILE
       settings import FILE [LOCATION]
       settings version FILE...

Reads and writes values of the registry and of profile files, and tells versions of programs.
All text is UTF-8.

Locations:
  registry:KEY#NAME
          a value of a key, as in registry:Software\Company\Program#name; an empty name is the
          key's default value; the root is HKEY_CURRENT_USER unless the key begins with one
  registry:KEY
          a key with all below it
  FILE:SECTION#KEY
          a value of a profile file, as in program.ini:window#title
  FILE:SECTION, FILE
          a section; all of them

Commands:
  get      prints a value: text as it is, a number in digits, data in hexadecimal digits
  set      stores a value, and makes key, section and file where they are missing
  list     prints keys, with \ behind them, and values with type and data; or sections, or their
           keys and values
  delete   deletes a value, a key with all below it, or a section
  export   writes a key as text that the registry editors of the platform read, or sections as
           lines of a profile
  import   stores what such a file holds; lines of a profile go to the file that LOCATION names
  version  prints the version records of programs and libraries for Windows as a table

Options:
  --type TYPE
          what set stores in the registry: text (as without it), number or data; what get expects
  --help  prints this text
  --version
          prints the version
  --      ends the options

Exit status:
  0       all went well
  1       there is no such value, it is of another type, a file can't be used, or a record is refused
  2       a wrong use
)";

// A wrong use, with what is wrong in it.
struct Misuse
{
    std::string text;
};

struct Words
{
    std::string command;
    std::vector<std::string> operands;
    std::optional<std::string> type;
    bool help = false;
    bool version = false;
};

void TakeType(const std::vector<std::string>& arguments, std::size_t& at, Words& words)
{
    if (++at >= arguments.size())
        throw Misuse{"--type needs a type"};
    words.type = arguments[at];
    if (*words.type != "text" && *words.type != "number" && *words.type != "data")
        throw Misuse{"unknown type " + *words.type};
}

Words Parse(const std::vector<std::string>& arguments)
{
    Words words;
    std::vector<std::string> all;
    bool ended = false;
    for (std::size_t at = 0; at < arguments.size(); ++at) {
        const std::string& word = arguments[at];
        if (ended || !word.starts_with("--"))
            all.push_back(word);
        else if (word == "--")
            ended = true;
        else if (word == "--help")
            words.help = true;
        else if (word == "--version")
            words.version = true;
        else if (word == "--type")
            TakeType(arguments, at, words);
        else
            throw Misuse{"unknown option " + word};
    }
    if (!all.empty())
        words.command = all.front();
    words.operands.assign(all.begin() + !all.empty(), all.end());
    return words;
}

void Expect(const Words& words, std::size_t least, std::size_t most)
{
    if (words.operands.size() < least || words.operands.size() > most)
        throw Misuse{words.command + ": wrong number of arguments"};
}

Location ValueAt(const std::string& text)
{
    const Location location = ParseLocation(text);
    if (!location.name)
        throw Failure(text + ": names no value");
    return location;
}

// ---- Commands -----------------------------------------------------------------------------------

void Get(const Words& words, std::ostream& output)
{
    Expect(words, 1, 1);
    const Location location = ValueAt(words.operands[0]);
    if (!location.isRegistry) {
        const std::string text = Profile(location.place).Get(location);
        if (words.type == "number" && !ToNumber(text))
            throw Failure(location.text + ": is text, not a number");
        output << text << '\n';
        return;
    }
    const Value value = RegistryKeys::Get(location);
    const std::string type = TypeName(value.type);
    if (words.type && *words.type != type)
        throw Failure(location.text + ": is " + type + ", not " + *words.type);
    output << Shown(value) << '\n';
}

void Set(const Words& words, std::ostream&)
{
    Expect(words, 2, 2);
    const Location location = ValueAt(words.operands[0]);
    const std::string& value = words.operands[1];
    if (location.isRegistry)
        RegistryKeys::Set(location, words.type.value_or("text"), value);
    else if (words.type == "number" && !ToNumber(value))
        throw Failure(value + ": no number of 32 bits");
    else
        Profile(location.place).Set(location, value);
}

void ListKey(const Location& location, std::ostream& output)
{
    for (const std::string& name : RegistryKeys::Subkeys(location))
        output << OneLine(name) << "\\\n";
    for (const Value& value : RegistryKeys::Values(location))
        output << (value.name.empty() ? "(default)" : OneLine(ToUtf8(value.name))) << '\t'
               << TypeName(value.type) << '\t' << Shown(value) << '\n';
}

void List(const Words& words, std::ostream& output)
{
    Expect(words, 1, 1);
    const Location location = ParseLocation(words.operands[0]);
    if (location.name)
        throw Failure(location.text + ": a value, of which there is nothing to list");
    if (location.isRegistry)
        ListKey(location, output);
    else if (location.group)
        for (const auto& [name, value] : Profile(location.place).Keys(*location.group))
            output << OneLine(name) << '\t' << OneLine(value) << '\n';
    else
        for (const std::string& section : Profile(location.place).Sections())
            output << OneLine(section) << '\n';
}

void Delete(const Words& words, std::ostream&)
{
    Expect(words, 1, 1);
    const Location location = ParseLocation(words.operands[0]);
    if (location.isRegistry)
        RegistryKeys::Delete(location);
    else if (location.group)
        Profile(location.place).Delete(location);
    else
        throw Failure(location.text + ": names no section");
}

void Export(const Words& words, std::ostream&)
{
    Expect(words, 2, 2);
    const Location location = ParseLocation(words.operands[0]);
    if (location.name)
        throw Failure(location.text + ": a value; keys and sections are exported");
    WriteFile(words.operands[1], location.isRegistry
                                     ? WriteRegistryText(RegistryKeys::Export(location))
                                     : Profile(location.place).Export(location));
}

unsigned ImportFrom(const std::string& name, const std::string& bytes, const Words& words)
{
    try {
        if (IsRegistryText(bytes))
            return RegistryKeys::Import(ReadRegistryText(bytes));
        if (words.operands.size() < 2)
            throw Failure("not the text of a registry; a profile needs a place to go to");
        const Location target = ParseLocation(words.operands[1]);
        if (target.isRegistry || target.group)
            throw Failure(target.text + ": no profile file");
        return Profile(target.place).Import(bytes);
    } catch (const Failure& failure) {
        throw Failure(name + ": " + failure.what());
    }
}

void Import(const Words& words, std::ostream& output)
{
    Expect(words, 1, 2);
    const std::string& name = words.operands[0];
    const unsigned count = ImportFrom(name, ReadFile(name), words);
    output << count << (count == 1 ? " value\n" : " values\n");
}

Status RunCommand(const Words& words, std::ostream& output, std::ostream& errors)
{
    const struct
    {
        const char* name;
        void (*run)(const Words& words, std::ostream& output);
    } commands[] = {{"get", Get},       {"set", Set},       {"list", List},
                    {"delete", Delete}, {"export", Export}, {"import", Import}};
    if (words.command == "version") {
        Expect(words, 1, words.operands.size());
        return ShowVersions(words.operands, output, errors) ? DONE : FAILED;
    }
    for (const auto& command : commands)
        if (words.command == command.name) {
            command.run(words, output);
            return DONE;
        }
    throw Misuse{words.command.empty() ? "" : "unknown command " + words.command};
}

Status RunWords(const std::vector<std::string>& arguments, std::ostream& output,
                std::ostream& errors)
{
    try {
        const Words words = Parse(arguments);
        if (words.help)
            output << HELP_TEXT;
        else if (words.version)
            output << "settings (Ostra) " OSTRA_TOOL_VERSION "\n";
        else
            return RunCommand(words, output, errors);
        return DONE;
    } catch (const Misuse& misuse) {
        if (!misuse.text.empty())
            errors << "settings: " << OneLine(misuse.text) << '\n';
        errors << USAGE_TEXT;
        return USAGE;
    } catch (const Failure& failure) {
        errors << "settings: " << WithoutControls(failure.what()) << '\n';
        return FAILED;
    }
}
} // namespace

Status Run(const std::vector<std::string>& arguments, std::ostream& output, std::ostream& errors)
{
    Status status = RunWords(arguments, output, errors);
    if (!output.flush()) {
        errors << "settings: cannot write the output\n";
        status = FAILED;
    }
    return status;
}
} // namespace settings

// examples/lexicon/Commands.cpp
#include "Commands.h"

#include "Arguments.h"
#include "Builder.h"
#include "Failure.h"
#include "Lexicon.h"

#include <Common/Utf8.h>

#include <new>

namespace lexicon
{
namespace
{
constexpr char SOURCE[] = "lexicon/Commands";

constexpr unsigned FILE_BUFFER = 4096;

// One run of the program.
class Job
{
public:
    Job(const Arguments& given, const Streams& where) : arguments(given), streams(where) {}

    Status Run();

private:
    Status Build();
    Status LookUp();
    Status List();
    Status Info();

    bool Save(Builder* builder, const CT_UString& fresh, const CT_UString& name);
    bool TakeWords();
    void PrintAnswer(Lexicon* lexicon, Side side, const std::string& word);
    void PrintInfo(const Lexicon& lexicon);
    void PrintSide(const Lexicon& lexicon, Side side);

    const std::string& Operand(size_t n) const { return arguments.operands[n]; }
    bool Name(size_t n, CT_UString* name) const;
    Status Report(const std::string& context) const;
    Status ReportUnreadable() const { return Report("cannot read " + Operand(0)); }

    const Arguments& arguments;
    const Streams& streams;
    bool missed = false;
};

void Remove(const CT_UString& name)
{
    CT_WinFile file(&name, FILE_BUFFER);
    if (file.b_IsExistent() && !Failing())
        file.vv_Remove();
}

bool IsSame(const CT_UString& first, const CT_UString& second)
{
    CT_WinFile one(&first, FILE_BUFFER);
    CT_WinFile other(&second, FILE_BUFFER);
    one.v_FullPath();
    other.v_FullPath();
    return common::ToUtf8(one.pcco_GetFullName()->qcuz_Get()) ==
           common::ToUtf8(other.pcco_GetFullName()->qcuz_Get());
}

bool Collect(Input* input, Builder* builder, std::ostream* terminal)
{
    Progress progress(terminal, "reading");
    Pair pair;
    while (input->Next(&pair)) {
        builder->Add(pair);
        progress.Show(input->Done(), input->Size());
    }
    return !Failed(SOURCE);
}

// The first units of a key in characters: the half of a pair that its other half doesn't follow is
// none.
unsigned Characters(const CT_UString& key, unsigned units)
{
    unsigned count = 0;
    for (unsigned n = 0; n < units; ++n)
        count += (key.u_GetAt(n) & 0xFC00) != 0xD800;
    return count;
}

std::string Measure(const Part& part)
{
    const size_t count = part.records.size();
    return std::to_string(part.size) + " bytes in " + std::to_string(count) +
           (count == 1 ? " record" : " records");
}

Status Job::Run()
{
    if (arguments.command == "build")
        return Build();
    if (arguments.command == "lookup")
        return LookUp();
    if (arguments.command == "list")
        return List();
    return Info();
}

// A file name of the command line.
bool Job::Name(size_t n, CT_UString* name) const
{
    if (!common::IsUtf8(Operand(n)))
        Fail(SOURCE, u"argument %u is not well-formed UTF-8", static_cast<unsigned>(n + 1));
    else
        common::ToWide(Operand(n), name);
    return !Failing();
}

Status Job::Report(const std::string& context) const
{
    Failure::Take().Print(streams.errors, context, arguments.trace);
    return FAILED;
}

Status Job::Build()
{
    CT_UString inputName;
    CT_UString outputName;
    if (!Name(0, &inputName) || !Name(1, &outputName))
        return Report("");
    if (IsSame(inputName, outputName) && !Failing())
        Fail(SOURCE, u"%s: this is the input as well as the output", inputName.qcuz_Get());
    if (Failed(SOURCE))
        return Report("cannot build " + Operand(1));

    Input input(&inputName);
    Builder builder;
    if (!input.Read() || !Collect(&input, &builder, streams.terminal))
        return ReportUnreadable();

    // The lexicon comes into being beside its place, so that an old one stays until the new one is
    // whole.
    CT_UString freshName(&outputName);
    freshName.v_Append(qcuz_Text(u".new"), static_cast<unsigned>(-1));
    if (!Save(&builder, freshName, outputName))
        return FAILED;
    streams.output << Operand(1) << ": " << builder.Pairs() << " pairs, " << builder.Words(SOURCES)
                   << " words, " << builder.Words(TARGETS) << " words in reverse\n";
    return DONE;
}

bool Job::Save(Builder* builder, const CT_UString& fresh, const CT_UString& name)
{
    {
        Progress progress(streams.terminal, "building");
        builder->Save(&fresh, &progress);
    }
    // A rename never replaces, so the old one goes first.
    if (!Failing())
        Remove(name);
    if (Failed(SOURCE)) {
        // The error is taken first: cleaning up has to start without one, and what it meets is of
        // no interest.
        const Failure failure = Failure::Take();
        Remove(fresh);
        if (Failing())
            Failure::Take();
        failure.Print(streams.errors, "cannot write " + Operand(1), arguments.trace);
        return false;
    }
    CT_WinFile file(&fresh, FILE_BUFFER);
    file.vv_Rename(&name);
    if (Failed(SOURCE)) {
        // By now it is whole and the only one, so it stays.
        Report("cannot rename the new lexicon, which is whole");
        return false;
    }
    return true;
}

bool Job::TakeWords()
{
    for (size_t n = 1; n < arguments.operands.size(); ++n) {
        const unsigned number = static_cast<unsigned>(n);
        unsigned reserved = 0;
        if (!common::IsUtf8(Operand(n)))
            Fail(SOURCE, u"word %u is not well-formed UTF-8", number);
        else if (Operand(n).empty())
            Fail(SOURCE, u"word %u is empty", number);
        else if (!IsKey(Operand(n), &reserved))
            Fail(SOURCE, u"word %u holds U+%04X, which no key can hold", number, reserved);
    }
    return !Failing();
}

Status Job::LookUp()
{
    CT_UString name;
    if (!Name(0, &name) || !TakeWords())
        return Report("");
    Lexicon lexicon(&name);
    const Side side = arguments.reverse ? TARGETS : SOURCES;
    if (!lexicon.Open() || !lexicon.Load(side))
        return ReportUnreadable();
    for (size_t n = 1; n < arguments.operands.size() && !Failing(); ++n)
        PrintAnswer(&lexicon, side, Operand(n));
    if (Failed(SOURCE))
        return ReportUnreadable();
    return missed ? FAILED : DONE;
}

void Job::PrintAnswer(Lexicon* lexicon, Side side, const std::string& word)
{
    Entry entry;
    unsigned matched = 0;
    if (lexicon->Find(side, word, &entry, &matched)) {
        for (std::string_view other : entry.others)
            streams.output << word << '\t' << other << '\n';
    } else if (!Failing()) {
        CT_UString key;
        common::ToWide(word, &key);
        streams.output << word << ": not found, " << Characters(key, matched) << " of "
                       << Characters(key, key.vn_GetLength()) << " characters matched\n";
        missed = true;
    }
}

Status Job::List()
{
    CT_UString name;
    if (!Name(0, &name))
        return Report("");
    Lexicon lexicon(&name);
    if (!lexicon.Open() || !lexicon.Load(SOURCES))
        return ReportUnreadable();
    Entry entry;
    unsigned position = 0;
    while (lexicon.Next(SOURCES, &position, &entry)) {
        for (std::string_view target : entry.others)
            streams.output << entry.word << '\t' << target << '\n';
    }
    return Failed(SOURCE) ? ReportUnreadable() : DONE;
}

Status Job::Info()
{
    CT_UString name;
    if (!Name(0, &name))
        return Report("");
    Lexicon lexicon(&name);
    if (!lexicon.Open() || !lexicon.Load(SOURCES) || !lexicon.Load(TARGETS))
        return ReportUnreadable();
    PrintInfo(lexicon);
    return DONE;
}

void Job::PrintInfo(const Lexicon& lexicon)
{
    const CT_RecordManager& manager = lexicon.Manager();
    streams.output << "record file: " << manager.n_GetSize() << " bytes in blocks of "
                   << manager.n_GetBlockSize() << "\n"
                   << "records:     " << manager.n_GetRecordCount() << ", "
                   << manager.n_GetRecordHeaderSize() << " bytes of each in its head\n"
                   << "resources:   " << manager.n_GetResourceCount() << " of up to "
                   << manager.n_GetResourceMaxCount() << "; number " << DIRECTORY
                   << ", the directory, " << lexicon.DirectorySize() << " bytes\n"
                   << "pairs:       " << lexicon.Contents().pairs << "\n";
    PrintSide(lexicon, SOURCES);
    PrintSide(lexicon, TARGETS);
}

void Job::PrintSide(const Lexicon& lexicon, Side side)
{
    const CT_CompList& list = lexicon.List(side);
    streams.output << (side == SOURCES ? "sources" : "targets") << "\n"
                   << "  words:     " << list.n_GetNrOfEntries() << "\n"
                   << "  list:      " << Measure(lexicon.Contents().lists[side]) << "; elements of "
                   << list.n_GetElementSize() << " bytes, handles of " << list.n_GetHandleSize()
                   << ", " << (list.b_HasLongOffsetSupport() ? "long" : "short") << " offsets\n"
                   << "  texts:     " << Measure(lexicon.Contents().texts[side]) << "\n";
}

Status RunJob(const Arguments& arguments, const Streams& streams)
{
    try {
        return Job(arguments, streams).Run();
    } catch (const std::bad_alloc&) {
        streams.errors << "lexicon: out of memory\n";
        return FAILED;
    }
}
} // namespace

Status Run(const std::vector<std::string>& words, const Streams& streams)
{
    Arguments arguments;
    const std::string wrong = arguments.Parse(words);
    if (!wrong.empty()) {
        streams.errors << "lexicon: " << wrong << "\n" << USAGE_TEXT;
        return USAGE;
    }
    Status status = DONE;
    if (arguments.help)
        streams.output << USAGE_TEXT;
    else
        status = RunJob(arguments, streams);
    if (!streams.output.flush()) {
        streams.errors << "lexicon: cannot write the output\n";
        status = FAILED;
    }
    return status;
}
} // namespace lexicon

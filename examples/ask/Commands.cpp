// examples/ask/Commands.cpp
#include "Commands.h"

#include "Arguments.h"
#include "Client.h"
#include "Server.h"

#include <Common/Failure.h>
#include <Common/Utf8.h>

#include <algorithm>

#include <windows.h>

namespace ask
{
using namespace common;

namespace
{
constexpr unsigned SECOND = 1000;

// One run of the program.
class Job
{
public:
    Job(const Arguments& given, const Surroundings& where) : arguments(given), around(where) {}

    Status Run();

private:
    Status Serve();
    Status Listen(Server& server);
    Status Converse();
    Status Request(Conversation& conversation, const std::string& item);
    Status Execute(Conversation& conversation, const std::string& command);
    Status Finish(const std::string& what, Answer answer) const;
    void Print(const std::string& item, const std::string& text) const;
    bool AreTexts() const;
    bool AreNames() const;
    bool IsAskable(const std::string& operand) const;
    void Tell(std::string text) const;
    Status Report(const std::string& context) const;
    Status ReportNone() const { return Report("conversations can't be held here"); }
    std::string Partner() const { return arguments.application + "|" + arguments.topic; }

    const Arguments& arguments;
    const Surroundings& around;
};

Status Job::Run()
{
    if (!AreTexts())
        return FAILED;
    return arguments.mode == Arguments::SERVE ? Serve() : Converse();
}

// One line, whatever the text holds.
void Job::Tell(std::string text) const
{
    for (char& c : text)
        if (static_cast<unsigned char>(c) < 0x20 || c == 0x7F)
            c = '?';
    around.errors << "ask: " << text << std::endl;
}

Status Job::Report(const std::string& context) const
{
    Failure::Take().Print(around.errors, "ask", context, false);
    around.errors.flush();
    return FAILED;
}

// ---- What is asked ------------------------------------------------------------------------------

bool Job::AreTexts() const
{
    for (std::size_t n = 0; n < arguments.operands.size(); ++n)
        if (!common::IsUtf8(arguments.operands[n])) {
            Tell("argument " + std::to_string(n + 1) + " is not well-formed UTF-8");
            return false;
        }
    if (common::IsUtf8(Partner()))
        return true;
    Tell("a name is not well-formed UTF-8");
    return false;
}

// The platform has the last word, so there has to be a window before.
bool Job::AreNames() const
{
    for (const std::string& name : {arguments.application, arguments.topic})
        if (!IsName(name)) {
            Tell("\"" + name + "\" can't be a name, which has 1 to 255 bytes");
            return false;
        }
    // A translation and a command are for the server to judge.
    const auto first = arguments.operands.begin();
    const auto askable = arguments.mode == Arguments::ASK   ? arguments.operands.end()
                         : arguments.mode == Arguments::ADD ? first + 1
                                                            : first;
    return std::all_of(first, askable,
                       [this](const std::string& operand) { return IsAskable(operand); });
}

bool Job::IsAskable(const std::string& operand) const
{
    std::string wrong;
    if (arguments.mode == Arguments::ADD || arguments.isLexicon || operand.empty())
        wrong = WrongWith(operand);
    if (wrong.empty() && !IsName(operand))
        wrong = "can't be an item, which has 1 to 255 bytes";
    if (!wrong.empty())
        Tell("\"" + operand + "\" " + wrong);
    return wrong.empty();
}

// ---- Asking -------------------------------------------------------------------------------------

Status Job::Converse()
{
    Conversation conversation(arguments.timeout * SECOND);
    if (Failing())
        return ReportNone();
    if (!AreNames())
        return FAILED;
    if (!conversation.Begin(arguments.application, arguments.topic)) {
        if (Failing())
            return ReportNone();
        Tell("nobody answers to " + Partner());
        return SILENT;
    }
    const auto& operands = arguments.operands;
    if (arguments.mode == Arguments::ADD)
        return Execute(conversation, CommandOf({operands[0], operands[1]}));
    Status status = DONE;
    for (std::size_t n = 0; n < operands.size() && status != SILENT; ++n)
        if (arguments.mode == Arguments::ASK)
            status = std::max(status, Request(conversation, operands[n]));
        else if (status == DONE)
            status = Execute(conversation, operands[n]);
    return status;
}

Status Job::Request(Conversation& conversation, const std::string& item)
{
    std::string text;
    const Answer answer = conversation.Request(item, &text);
    if (answer != Answer::GIVEN)
        return Finish(item, answer);
    Print(item, text);
    return DONE;
}

Status Job::Execute(Conversation& conversation, const std::string& command)
{
    const Answer answer = conversation.Execute(command);
    return answer == Answer::GIVEN ? DONE : Finish(command, answer);
}

Status Job::Finish(const std::string& what, Answer answer) const
{
    if (answer == Answer::FAILED)
        return Report(what);
    if (answer == Answer::REFUSED) {
        const bool isWord = arguments.mode == Arguments::ASK && arguments.isLexicon;
        Tell(what + (isWord ? ": not found" : ": refused by " + Partner()));
        return FAILED;
    }
    const std::string seconds = arguments.timeout == 1 ? " second" : " seconds";
    Tell(what + (answer == Answer::LATE ? ": no answer from " + Partner() + " in " +
                                              std::to_string(arguments.timeout) + seconds
                                        : ": " + Partner() + " has ended without an answer"));
    return SILENT;
}

// Lines of a conversation end as in the platform's clipboard; the last one may do without.
void Job::Print(const std::string& item, const std::string& text) const
{
    std::size_t at = 0;
    do {
        const std::size_t end = std::min(text.find('\n', at), text.size());
        std::string_view line(text.data() + at, end - at);
        if (line.ends_with('\r'))
            line.remove_suffix(1);
        around.output << (arguments.isLexicon ? item + '\t' : std::string()) << line << '\n';
        at = end + 1;
    } while (at < text.size());
}

// ---- Serving ------------------------------------------------------------------------------------

Status Job::Serve()
{
    const std::string& given = arguments.operands[0];
    CT_UString name;
    common::ToWide(given, &name);
    Words words;
    if (Failing() || !words.Load(name))
        return Report("cannot read " + given);
    Server server(arguments.application, arguments.topic, words, [&](const Failure& reason) {
        reason.Print(around.errors, "ask", "cannot write " + given, false);
        around.errors.flush();
    });
    if (Failing())
        return ReportNone();
    return AreNames() ? Listen(server) : FAILED;
}

Status Job::Listen(Server& server)
{
    const bool isSecond = server.IsSecond();
    if (Failing())
        return ReportNone();
    if (isSecond) {
        Tell("another program answers to " + Partner() + " already");
        return FAILED;
    }
    if (around.onStop)
        around.onStop([window = server.h_GetWindow()] { PostMessageA(window, WM_CLOSE, 0, 0); });
    around.output << arguments.operands[0] << ": answers to " << Partner() << std::endl;
    if (around.output)
        server.Run();
    return DONE;
}

Status RunWords(const std::vector<std::string>& words, const Surroundings& around)
{
    Arguments arguments;
    const std::string wrong = arguments.Parse(words);
    if (!wrong.empty()) {
        std::string line = wrong;
        std::replace_if(
            line.begin(), line.end(), [](char c) { return static_cast<unsigned char>(c) < 0x20; },
            '?');
        around.errors << "ask: " << line << '\n' << USAGE_TEXT;
        return USAGE;
    }
    if (arguments.help)
        around.output << HELP_TEXT;
    else if (arguments.version)
        around.output << "ask (Ostra) " OSTRA_TOOL_VERSION "\n";
    else
        return Job(arguments, around).Run();
    return DONE;
}
} // namespace

Status Run(const std::vector<std::string>& arguments, const Surroundings& around)
{
    const Status status = RunWords(arguments, around);
    if (around.output.flush())
        return status;
    around.errors << "ask: cannot write the output\n";
    return FAILED;
}
} // namespace ask

// winapi/tests/native/Dialogs/MessageBoxTest.cpp: boxes that a program of ours shows in zenity's place.
#include "../../Support/Calls.h"
#include "../../Support/ClosedStreams.h"
#include "../../Support/Replace.h"

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <optional>

#include <sys/wait.h>
#include <unistd.h>

namespace
{
using Strings = std::vector<std::string>;

constexpr pid_t PROCESS = 4711;
constexpr int FIRST = 0;
constexpr int LAST = 10;
constexpr int CLOSED = 11;

// What the host does, and what it was asked.
struct Host
{
    std::map<std::string, std::string> variables = {{"DISPLAY", ":5"}};
    int error = 0;
    int status = FIRST << 8;
    pid_t waited = PROCESS;
    std::string output;
    int interruptions = 0;

    int started = 0;
    std::string program;
    Strings arguments;
    Strings environment;
};
Host host;

bool IsInterrupted()
{
    if (host.interruptions == 0)
        return false;
    --host.interruptions;
    errno = EINTR;
    return true;
}

Strings Copied(char* const* texts)
{
    Strings copies;
    for (; *texts; ++texts)
        copies.emplace_back(*texts);
    return copies;
}

char* Variable(const char* name)
{
    const auto found = host.variables.find(name);
    return found == host.variables.end() ? nullptr : found->second.data();
}

int Spawn(pid_t* process, const char* program, int output, char* const* arguments,
          char* const* variables)
{
    ++host.started;
    host.program = program;
    host.arguments = Copied(arguments);
    host.environment = Copied(variables);
    *process = PROCESS;
    const auto size = static_cast<ssize_t>(host.output.size());
    EXPECT_EQ(size, ::write(output, host.output.data(), host.output.size()));
    return host.error;
}

pid_t Wait(pid_t process, int* status, int)
{
    EXPECT_EQ(PROCESS, process);
    if (IsInterrupted())
        return -1;
    *status = host.status;
    errno = ECHILD;
    return host.waited;
}

class MessageBoxTest : public testing::Test
{
protected:
    MessageBoxTest() { host = Host(); }

    int Show(UINT type, const std::u16string& text = u"text",
             const std::u16string& title = u"title")
    {
        return MessageBoxW(nullptr, ::Wide(text).c_str(), ::Wide(title).c_str(), type);
    }
    // Shows a box that can't be shown, and returns what stands on the error stream.
    std::string ShowNone(const std::u16string& text = u"text",
                         const std::u16string& title = u"title")
    {
        testing::internal::CaptureStderr();
        SetLastError(0);
        EXPECT_EQ(-1, Show(MB_OK, text, title));
        EXPECT_EQ(ERROR_INVALID_WINDOW_HANDLE, GetLastError());
        return testing::internal::GetCapturedStderr();
    }

private:
    const Replace<char*(const char*)> variable{posix.getenv, Variable};
    const Replace<int(pid_t*, const char*, int, char* const*, char* const*)> spawn{
        posix.posix_spawnp, Spawn};
    const Replace<pid_t(pid_t, int*, int)> wait{posix.waitpid, Wait};
};

// Every box: the number in its type, its labels and their answers, and what a closed window gives.
const struct
{
    UINT type;
    Strings labels;
    std::vector<int> answers;
    int closed;
} boxes[] = {
    {MB_OK, {"_OK"}, {IDOK}, IDOK},
    {MB_OKCANCEL, {"_OK", "_Cancel"}, {IDOK, IDCANCEL}, IDCANCEL},
    {MB_ABORTRETRYIGNORE, {"_Abort", "_Retry", "_Ignore"}, {IDABORT, IDRETRY, IDIGNORE}, IDIGNORE},
    {MB_YESNOCANCEL, {"_Yes", "_No", "_Cancel"}, {IDYES, IDNO, IDCANCEL}, IDCANCEL},
    {MB_YESNO, {"_Yes", "_No"}, {IDYES, IDNO}, IDNO},
    {MB_RETRYCANCEL, {"_Retry", "_Cancel"}, {IDRETRY, IDCANCEL}, IDCANCEL},
    {MB_CANCELTRYCONTINUE,
     {"_Cancel", "_Try Again", "C_ontinue"},
     {IDCANCEL, IDTRYAGAIN, IDCONTINUE},
     IDCANCEL},
};
} // namespace

TEST_F(MessageBoxTest, StartsTheProgramWithTitleAndTextAsArgumentsOfTheirOwn)
{
    EXPECT_EQ(IDOK, Show(MB_OK | MB_SETFOREGROUND, u"a \"text\" $(touch x) `y`; --info\n<b>&amp;",
                         u"--help"));
    EXPECT_EQ("zenity", host.program);
    EXPECT_EQ((Strings{"zenity", "--info", "--no-markup", "--title=--help",
                       "--text=a \"text\" $(touch x) `y`; --info\n<b>&amp;", "--ok-label=OK"}),
              host.arguments);
    EXPECT_EQ(1, host.started);
}

TEST_F(MessageBoxTest, TextIsUtf8InEveryScript)
{
    Show(MB_OK, u"\u0416\u05D0\u65E5 \U0001F600 \xD800", u"caf\u00E9");
    EXPECT_EQ("--title=caf\xC3\xA9", host.arguments[3]);
    EXPECT_EQ("--text=\xD0\x96\xD7\x90\xE6\x97\xA5 \xF0\x9F\x98\x80 \xEF\xBF\xBD",
              host.arguments[4]);
}

TEST_F(MessageBoxTest, NarrowTextIsOfTheAnsiPage)
{
    EXPECT_EQ(IDOK, MessageBoxA(nullptr, "caf\xE9", "\x80", MB_OK));
    EXPECT_EQ("--title=\xE2\x82\xAC", host.arguments[3]);
    EXPECT_EQ("--text=caf\xC3\xA9", host.arguments[4]);
}

TEST_F(MessageBoxTest, NullTitleReadsErrorAndNullTextIsEmpty)
{
    MessageBoxW(nullptr, nullptr, nullptr, MB_OK);
    EXPECT_EQ("--title=Error", host.arguments[3]);
    EXPECT_EQ("--text= ", host.arguments[4]);
    MessageBoxA(nullptr, nullptr, nullptr, MB_OK);
    EXPECT_EQ("--title=Error", host.arguments[3]);
    EXPECT_EQ("--text= ", host.arguments[4]);
    Show(MB_OK, u"", u"");
    EXPECT_EQ("--title= ", host.arguments[3]);
    EXPECT_EQ("--text= ", host.arguments[4]);
}

TEST_F(MessageBoxTest, BoxesWithAQuestionMarkHaveTheButtonOfEscape)
{
    for (const auto& box : boxes)
        for (const UINT icon : {MB_ICONQUESTION, UINT(0)}) {
            SCOPED_TRACE(box.type);
            Show(box.type | icon);
            const bool question = icon || box.labels.size() > 1;
            EXPECT_EQ(question ? "--question" : "--info", host.arguments[1]);
            Strings expected = {"--ok-label=" + box.labels[0].substr(question ? 0 : 1)};
            if (box.labels.size() == 3)
                expected.push_back("--extra-button=" + box.labels[1]);
            if (box.labels.size() > 1)
                expected.push_back("--cancel-label=" + box.labels.back());
            EXPECT_EQ(expected, Strings(host.arguments.begin() + 5, host.arguments.end()));
        }
}

TEST_F(MessageBoxTest, OtherIconsHaveExtraButtons)
{
    const std::map<UINT, std::string> kinds = {
        {MB_ICONERROR, "--error"}, {MB_ICONWARNING, "--warning"}, {MB_ICONINFORMATION, "--info"}};
    for (const auto& box : boxes)
        for (const auto& [icon, kind] : kinds) {
            SCOPED_TRACE(kind);
            Show(box.type | icon);
            EXPECT_EQ(kind, host.arguments[1]);
            Strings expected = {"--ok-label=" + box.labels[0].substr(box.labels[0][0] == '_')};
            for (std::size_t i = 1; i < box.labels.size(); ++i)
                expected.push_back("--extra-button=" + box.labels[i]);
            EXPECT_EQ(expected, Strings(host.arguments.begin() + 5, host.arguments.end()));
        }
}

TEST_F(MessageBoxTest, EachButtonHasItsNumber)
{
    for (const auto& box : boxes)
        for (const UINT icon : {UINT(0), MB_ICONERROR}) {
            SCOPED_TRACE(box.type);
            host.output.clear();
            host.status = FIRST << 8;
            EXPECT_EQ(box.answers.front(), Show(box.type | icon));
            host.status = LAST << 8;
            EXPECT_EQ(box.answers.back(), Show(box.type | icon));
            host.status = CLOSED << 8;
            EXPECT_EQ(box.closed, Show(box.type | icon));
            for (std::size_t i = 1; i < box.labels.size(); ++i) {
                host.output = box.labels[i] + "\n";
                EXPECT_EQ(box.answers[i], Show(box.type | icon));
            }
        }
}

TEST_F(MessageBoxTest, TellsTheProgramWhatToEndWith)
{
    char own[] = "ZENITY_OK=77";
    char other[] = "HOME=/nowhere";
    static char* variables[] = {nullptr, nullptr, nullptr};
    variables[0] = own;
    variables[1] = other;
    const Replace environment(
        posix.environment, +[] { return variables; });
    Show(MB_OK);
    // The first of two counts.
    EXPECT_EQ((Strings{"ZENITY_OK=0", "ZENITY_CANCEL=10", "ZENITY_ESC=11", "ZENITY_EXTRA=12",
                       "ZENITY_ERROR=1", "ZENITY_OK=77", "HOME=/nowhere"}),
              host.environment);
}

TEST_F(MessageBoxTest, EitherDisplayWillDo)
{
    host.variables = {{"DISPLAY", ""}, {"WAYLAND_DISPLAY", "wayland-0"}};
    EXPECT_EQ(IDOK, Show(MB_OK));
    EXPECT_EQ(1, host.started);
}

TEST_F(MessageBoxTest, WithoutADisplayTitleAndTextStandOnTheErrorStream)
{
    for (const auto& variables :
         {std::map<std::string, std::string>(), {{"DISPLAY", ""}, {"WAYLAND_DISPLAY", ""}}}) {
        host.variables = variables;
        EXPECT_EQ("caf\xC3\xA9\n\xD0\x96\n\tof two lines\n",
                  ShowNone(u"\u0416\r\n\tof two lines", u"caf\u00E9"));
    }
    EXPECT_EQ(0, host.started);
}

TEST_F(MessageBoxTest, TheErrorStreamGetsNoControlCharacters)
{
    host.variables.clear();
    EXPECT_EQ("t\xEF\xBF\xBD[2J\n\xEF\xBF\xBDx\xEF\xBF\xBD\xEF\xBF\xBD\n",
              ShowNone(u"\rx\x7F\x9B", u"t\x1B[2J"));
}

TEST_F(MessageBoxTest, WhatKeepsTheProgramFromShowingABoxIsTold)
{
    const std::string told = "title\ntext\n";
    host.error = ENOENT;
    EXPECT_EQ(told, ShowNone());
    host.error = E2BIG;
    EXPECT_EQ(told, ShowNone());
    host = Host();
    host.status = 1 << 8; // It can't open the display.
    EXPECT_EQ(told, ShowNone());
    host.status = SIGKILL;
    EXPECT_EQ(told, ShowNone());
    // The program has asked the host to collect its children, or does so itself.
    host = Host();
    host.waited = -1;
    EXPECT_EQ(told, ShowNone());
    const Replace pipe(
        posix.pipe2, +[](int*, int) {
            errno = EMFILE;
            return -1;
        });
    host = Host();
    EXPECT_EQ(told, ShowNone());
    EXPECT_EQ(0, host.started);
}

TEST_F(MessageBoxTest, AClosedErrorStreamIsNoFurtherFailure)
{
    host.variables.clear();
    const Replace write(
        posix.write, +[](int, const void*, size_t) -> ssize_t {
            errno = EBADF;
            return -1;
        });
    EXPECT_EQ("", ShowNone());
}

TEST_F(MessageBoxTest, CallsThatASignalInterruptsAreRepeated)
{
    host.interruptions = 3;
    host.output = "_Retry\n";
    static int reads;
    reads = 0;
    const Replace read(
        posix.read, +[](int fd, void* data, size_t size) -> ssize_t {
            // In the middle of the label.
            return ++reads % 2 ? ::read(fd, data, std::min<size_t>(size, 3)) : (errno = EINTR, -1);
        });
    EXPECT_EQ(IDRETRY, Show(MB_ABORTRETRYIGNORE));
    EXPECT_EQ(0, host.interruptions);
}

TEST_F(MessageBoxTest, ButtonsThatDoNotExistAreRefused)
{
    for (UINT type = 7; type < 16; ++type)
        RunRows({CALL(Show(type), 0, ERROR_INVALID_MSGBOX_STYLE)});
    EXPECT_EQ(0, host.started);
}

// The way of the host: a program of that name on the path, its output and its status.
TEST(MessageBoxProgram, IsLookedForOnThePathAndWaitedFor)
{
    namespace fs = std::filesystem;
    const fs::path folder = fs::current_path() / "bin";
    fs::create_directory(folder);
    std::ofstream(folder / "zenity") << "#!/bin/sh\n"
                                        "printf '%s\\n' \"$@\" >arguments.txt\n"
                                        "cat >input.txt\n"
                                        "echo said >&2\n"
                                        "[ \"$2\" = --no-markup ] && echo _Retry\n"
                                        "exit $ZENITY_ESC\n";
    fs::permissions(folder / "zenity", fs::perms::owner_all);
    const std::string path = std::getenv("PATH");
    ::setenv("PATH", (folder.string() + ":" + path).c_str(), 1);
    ::setenv("DISPLAY", ":5", 1);
    testing::internal::CaptureStderr();
    const int answer = MessageBoxA(nullptr, "two\nlines", "a title", MB_ABORTRETRYIGNORE);
    EXPECT_EQ("", testing::internal::GetCapturedStderr());
    ::unsetenv("DISPLAY");
    ::setenv("PATH", path.c_str(), 1);
    EXPECT_EQ(IDRETRY, answer);
    std::ifstream file("arguments.txt");
    EXPECT_EQ("--question\n--no-markup\n--title=a title\n--text=two\nlines\n--ok-label=_Abort\n"
              "--extra-button=_Retry\n--cancel-label=_Ignore\n",
              std::string(std::istreambuf_iterator<char>(file), {}));
    EXPECT_EQ(0U, fs::file_size("input.txt"));
}

TEST(MessageBoxProgram, AnswersAProgramWhoseStreamsAreClosed)
{
    namespace fs = std::filesystem;
    const fs::path folder = fs::current_path() / "bin";
    fs::create_directory(folder);
    std::ofstream(folder / "zenity") << "#!/bin/sh\necho _Retry\nexit $ZENITY_EXTRA\n";
    fs::permissions(folder / "zenity", fs::perms::owner_all);
    const std::string path = std::getenv("PATH");
    ::setenv("PATH", (folder.string() + ":" + path).c_str(), 1);
    ::setenv("DISPLAY", ":5", 1);
    std::vector<int> answers;
    for (unsigned closed = 0; closed < 8; ++closed) {
        const ClosedStreams streams(closed);
        answers.push_back(MessageBoxA(nullptr, "text", "title", MB_ABORTRETRYIGNORE));
    }
    ::unsetenv("DISPLAY");
    ::setenv("PATH", path.c_str(), 1);
    EXPECT_EQ(answers, std::vector<int>(8, IDRETRY));
}

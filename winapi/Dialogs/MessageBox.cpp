// winapi/Dialogs/MessageBox.cpp: a box with a text and buttons.
//
// zenity shows it. The text goes there as an argument of its own, never through a shell, and is told
// to be no markup. An answer is the program's exit status, or a label on its output.
#include "winapi/Dialogs/MessageBox.h"

#include "Base/HostVariables.h"
#include "Base/Posix.h"
#include "Errors/Failure.h"
#include "Files/Names.h"
#include "winapi/Text/CodePage.h"

#include <cstring>
#include <string>
#include <vector>

#include <sys/wait.h>

namespace winapi
{
namespace
{
using Texts = std::vector<std::string>;

constexpr UINT BUTTONS = 0xF;
constexpr UINT ICONS = 0xF0;
constexpr int STDERR = 2;
constexpr int NOT_SHOWN = -1;

// What zenity ends with is told to it, so that it can't be taken for its failures, which are 1.
constexpr int FIRST = 0;
constexpr int LAST = 10;
constexpr int CLOSED = 11;
constexpr const char* statuses[] = {"ZENITY_OK=0", "ZENITY_CANCEL=10", "ZENITY_ESC=11",
                                    "ZENITY_EXTRA=12", "ZENITY_ERROR=1"};

struct Button
{
    int answer;
    const char* label; // With the letter marked that presses it.
};

constexpr Button ok = {IDOK, "_OK"}, cancel = {IDCANCEL, "_Cancel"}, abort = {IDABORT, "_Abort"},
                 retry = {IDRETRY, "_Retry"}, ignore = {IDIGNORE, "_Ignore"}, yes = {IDYES, "_Yes"},
                 no = {IDNO, "_No"}, again = {IDTRYAGAIN, "_Try Again"},
                 proceed = {IDCONTINUE, "C_ontinue"};

struct Box
{
    int count;
    int closed;
    Button buttons[3];
};

// By the number in the type.
constexpr Box boxes[] = {
    {1, IDOK, {ok}},
    {2, IDCANCEL, {ok, cancel}},
    {3, IDIGNORE, {abort, retry, ignore}},
    {3, IDCANCEL, {yes, no, cancel}},
    {2, IDNO, {yes, no}},
    {2, IDCANCEL, {retry, cancel}},
    {3, IDCANCEL, {cancel, again, proceed}},
};

std::string Utf8(LPCWSTR text)
{
    const int size = WideCharToMultiByte(CP_UTF8, 0, text, -1, nullptr, 0, nullptr, nullptr);
    std::string result(static_cast<std::size_t>(size), '\0');
    WideCharToMultiByte(CP_UTF8, 0, text, -1, result.data(), size, nullptr, nullptr);
    result.pop_back();
    return result;
}

bool IsSet(const char* name)
{
    return !HostVariable(name).value_or("").empty();
}

// Boxes with a question mark have a button for the key Escape; the others have the first one alone,
// which marks no letter, and extra ones.
Texts Arguments(const Box& box, UINT icon, const std::string& title, const std::string& text)
{
    const bool question = icon == MB_ICONQUESTION || (!icon && box.count > 1);
    const char* const kind = question                 ? "--question"
                             : icon == MB_ICONERROR   ? "--error"
                             : icon == MB_ICONWARNING ? "--warning"
                                                      : "--info";
    const char* const first = box.buttons[0].label;
    Texts arguments = {"zenity", kind, "--no-markup", "--title=" + title, "--text=" + text};
    const char* plain = !question && *first == '_' ? first + 1 : first;
    arguments.push_back(std::string("--ok-label=") + plain);
    for (int i = 1; i < box.count; ++i) {
        const bool last = question && i == box.count - 1;
        arguments.push_back((last ? "--cancel-label=" : "--extra-button=") +
                            std::string(box.buttons[i].label));
    }
    return arguments;
}

std::vector<char*> Pointers(Texts& texts)
{
    std::vector<char*> pointers;
    for (std::string& text : texts)
        pointers.push_back(text.data());
    pointers.push_back(nullptr);
    return pointers;
}

// The first of two variables of one name counts.
Texts Variables()
{
    Texts variables(std::begin(statuses), std::end(statuses));
    for (std::string& variable : HostVariables())
        variables.push_back(std::move(variable));
    return variables;
}

std::string ReadAll(int fd)
{
    std::string all;
    char part[256];
    for (;;) {
        const ssize_t count = Retried([&] { return posix.read(fd, part, sizeof part); });
        if (count <= 0)
            return all;
        all.append(part, static_cast<std::size_t>(count));
    }
}

// Runs zenity to its end. Result: what it ended with, NOT_SHOWN if that can't be told.
int Run(Texts arguments, std::string& output)
{
    int ends[2];
    if (posix.pipe2(ends, O_CLOEXEC) != 0)
        return NOT_SHOWN;
    Descriptor from(ends[0]);
    Descriptor to(ends[1]);
    Texts variables = Variables();
    pid_t process;
    if (posix.posix_spawnp(&process, "zenity", to.Get(), Pointers(arguments).data(),
                           Pointers(variables).data()) != 0)
        return NOT_SHOWN;
    to.Reset();
    output = ReadAll(from.Get());
    int status;
    if (Retried([&] { return posix.waitpid(process, &status, 0); }) != process ||
        !WIFEXITED(status))
        return NOT_SHOWN;
    return WEXITSTATUS(status);
}

// NOT_SHOWN where there was no box.
int Ask(const Box& box, UINT icon, const std::string& title, const std::string& text)
{
    std::string output;
    const int status = Run(Arguments(box, icon, title, text), output);
    if (!output.empty() && output.back() == '\n')
        output.pop_back();
    for (int i = 1; i < box.count; ++i)
        if (output == box.buttons[i].label)
            return box.buttons[i].answer;
    return status == FIRST    ? box.buttons[0].answer
           : status == LAST   ? box.buttons[box.count - 1].answer
           : status == CLOSED ? box.closed
                              : NOT_SHOWN;
}

// A terminal takes control characters for orders.
WideText Printable(LPCWSTR text)
{
    WideText result;
    for (; *text; ++text) {
        const bool control =
            (*text < 0x20 && *text != '\n' && *text != '\t') || (*text >= 0x7F && *text < 0xA0);
        if (!(*text == '\r' && text[1] == '\n'))
            result += control ? WCHAR(0xFFFD) : *text;
    }
    return result;
}

void Tell(LPCWSTR title, LPCWSTR text)
{
    const std::string lines =
        Utf8(Printable(title).c_str()) + "\n" + Utf8(Printable(text).c_str()) + "\n";
    for (std::size_t written = 0; written < lines.size();) {
        const ssize_t count = Retried(
            [&] { return posix.write(STDERR, lines.data() + written, lines.size() - written); });
        if (count <= 0)
            return;
        written += static_cast<std::size_t>(count);
    }
}

// zenity has texts of its own for an empty one.
std::string OrBlank(const std::string& text)
{
    return text.empty() ? " " : text;
}

int Show(LPCWSTR text, LPCWSTR title, UINT type)
{
    if ((type & BUTTONS) >= std::size(boxes)) {
        SetLastError(ERROR_INVALID_MSGBOX_STYLE);
        return 0;
    }
    if (IsSet("DISPLAY") || IsSet("WAYLAND_DISPLAY")) {
        const int answer =
            Ask(boxes[type & BUTTONS], type & ICONS, OrBlank(Utf8(title)), OrBlank(Utf8(text)));
        if (answer != NOT_SHOWN)
            return answer;
    }
    Tell(title, text);
    SetLastError(ERROR_INVALID_WINDOW_HANDLE);
    return -1;
}
} // namespace

int MessageBoxW(HWND, LPCWSTR text, LPCWSTR title, UINT type)
{
    static constexpr WCHAR none[] = {0};
    static constexpr WCHAR error[] = {'E', 'r', 'r', 'o', 'r', 0};
    return Guarded(0, [&] {
        text = text ? text : none;
        title = title ? title : error;
        int answer;
        if (winapi_TestMessageBox && winapi_TestMessageBox(text, title, type, &answer))
            return answer;
        return Show(text, title, type);
    });
}

int MessageBoxA(HWND owner, LPCSTR text, LPCSTR title, UINT type)
{
    return Guarded(0, [&] { return MessageBoxW(owner, Widened(text), Widened(title), type); });
}
} // namespace winapi

// tests/Ostra/Frame/ErrorManagerWindowTest.cpp: the window that shows an error.
#include <Ostra/Frame/ErrorManager.h>
#include <Ostra/Frame/OstraDLLMain.h>
#include <System/OS/OS.h>

#include <windows.h>

#include "Support/Failure.h"
#include "Support/MessageBox.h"
#include "Support/TestStrings.h"

#include <cstdlib>
#include <iterator>
#include <thread>

#ifndef _WIN32
#include <csignal>
#endif

namespace
{
constexpr unsigned FOREGROUND = 0x10000;

struct Place
{
    const char* file;
    unsigned line;
};

void SetError(const char16_t* text, std::initializer_list<Place> places)
{
    Errors().v_SetMessageError(Units(u"%s"), Units(text));
    for (const Place& place : places)
        Errors().v_AddLocation(place.file, place.line);
}

int ShowError(const char16_t* title = u"title", unsigned flags = MB_OK)
{
    const int button = Errors().i_ErrorLocationWindow(0, Units(title), flags);
    Errors().v_ClearError();
    return button;
}

// The text that a box shows for the thread's error.
std::u16string ShownText(const char16_t* title = u"title")
{
    const AnsweredBoxes boxes(IDOK);
    ShowError(title);
    EXPECT_EQ(boxes.count, 1);
    EXPECT_EQ(boxes.title, title);
    return boxes.text;
}

std::u16string Widened(const std::string& text)
{
    return std::u16string(text.begin(), text.end());
}

// The text by the rule: what each write takes comes off the room, and one that doesn't fit ends the
// trail.
std::u16string ExpectedText(const std::u16string& message, const std::vector<Place>& places,
                            std::size_t title_length)
{
    const std::size_t room = 1023 - title_length;
    std::u16string text = message + u"\n\n";
    if (text.size() > room)
        return text.substr(0, room - 1);
    const std::size_t begin = text.size();
    for (const Place& place : places) {
        const std::u16string name = Widened(std::string(place.file).substr(4));
        const std::u16string line = u": line " + Widened(std::to_string(place.line)) + u"\n";
        if (text.size() + name.size() > room)
            break;
        text += name;
        if (text.size() + line.size() > room)
            break;
        text += line;
    }
    return text.substr(0, text.size() - (text.size() == begin ? 2 : 1));
}
} // namespace

// ---- Title and text -------------------------------------------------------------------------

TEST(ErrorManagerWindow, ShowsMessageAndTrail)
{
    SetError(u"It failed.", {{"Ostra/Buffer/Buffer", 12}, {"Ostra/String/UString", 3456}});
    EXPECT_EQ(ShownText(), u"It failed.\n\nBuffer: line 12\nUString: line 3456");
}

TEST(ErrorManagerWindow, WithoutATrailTheMessageStandsAlone)
{
    SetError(u"It failed.", {});
    EXPECT_EQ(ShownText(), u"It failed.");
    SetError(u"", {});
    EXPECT_EQ(ShownText(), u"");
    SetError(u"", {{"a/b", 1}});
    EXPECT_EQ(ShownText(), u"\n\nb: line 1");
}

TEST(ErrorManagerWindow, APathWithoutASeparatorIsAnUnknownFile)
{
    SetError(u"It failed.", {{"main.cpp", 7}, {"", 8}, {"source/", 9}});
    EXPECT_EQ(ShownText(),
              u"It failed.\n\n(unknown file): line 7\n(unknown file): line 8\n: line 9");
}

TEST(ErrorManagerWindow, ABackslashCountsBeforeASlash)
{
    SetError(u"It failed.", {{"c:\\sources\\main.cpp", 1}, {"c:\\sources/main.cpp", 2}});
    EXPECT_EQ(ShownText(), u"It failed.\n\nmain.cpp: line 1\nsources/main.cpp: line 2");
}

TEST(ErrorManagerWindow, LineNumbersPrintAsSigned)
{
    SetError(u"It failed.", {{"a/b", 0xFFFFFFFF}});
    EXPECT_EQ(ShownText(), u"It failed.\n\nb: line -1");
}

TEST(ErrorManagerWindow, NamesAreNoFormats)
{
    SetError(u"100%s %n", {{"a/%s%d", 1}});
    EXPECT_EQ(ShownText(u"%s %d"), u"100%s %n\n\n%s%d: line 1");
}

TEST(ErrorManagerWindow, TextBeyondTheAnsiPageNeedsWideCalls)
{
    SetError(u"\u0416, \u00E9", {{"a/caf\xE9", 1}});
    const AnsweredBoxes boxes(IDOK);
    ShowError(u"\u05D0 \u00E9");
    const bool wide = CT_OS::sb_GetIsWindowsNT();
    EXPECT_EQ(boxes.title, wide ? u"\u05D0 \u00E9" : u"? \u00E9");
    EXPECT_EQ(boxes.text,
              wide ? u"\u0416, \u00E9\n\ncaf\u00E9: line 1" : u"?, \u00E9\n\ncaf\u00E9: line 1");
#ifdef _WIN32
    EXPECT_EQ(boxes.narrow, !wide);
#endif
}

TEST(ErrorManagerWindow, TitleComesFromTheModuleOfTheError)
{
    const AnsweredBoxes boxes(IDOK);
    Errors().v_SetError(1, nullptr, 60006);
    Errors().i_ErrorLocationWindow(60000, nullptr, MB_OK);
    EXPECT_EQ(boxes.title, u"Error Stack");
    EXPECT_EQ(boxes.text, u"(1): Out of memory");
    // A text wins, an empty one too.
    Errors().i_ErrorLocationWindow(60000, Units(u"title"), MB_OK);
    EXPECT_EQ(boxes.title, u"title");
    Errors().i_ErrorLocationWindow(60000, Units(u""), MB_OK);
    EXPECT_EQ(boxes.title, u"");
    // What isn't there is empty.
    Errors().i_ErrorLocationWindow(12345, nullptr, MB_OK);
    EXPECT_EQ(boxes.title, u"");
    Errors().i_ErrorLocationWindow(0, nullptr, MB_OK);
    EXPECT_EQ(boxes.title, u"");
    EXPECT_EQ(boxes.text, u"(1): Out of memory");
    Errors().v_ClearError();
    Errors().v_SetError(1, GetModuleHandleA(nullptr), TEST_STRING_PLAIN);
    Errors().i_ErrorLocationWindow(TEST_STRING_ACCENT, nullptr, MB_OK);
    EXPECT_EQ(boxes.title, u"Caf\u00E9 %u");
    EXPECT_EQ(boxes.text, u"(1): Plain text");
    Errors().v_ClearError();
    EXPECT_EQ(boxes.count, 6);
}

TEST(ErrorManagerWindow, AnErrorOfNoModuleHasNoTitle)
{
    const AnsweredBoxes boxes(IDOK);
    CT_ErrorManager::sv_SetInstance(nullptr);
    Errors().v_SetError(1, Units(u"text"));
    CT_ErrorManager::sv_SetInstance(CT_OstraDLLMain::sh_GetInstance());
    Errors().i_ErrorLocationWindow(60000, nullptr, MB_OK);
    EXPECT_EQ(boxes.title, u"");
    EXPECT_EQ(boxes.text, u"(1): text");
    Errors().v_ClearError();
}

// ---- The area's end -------------------------------------------------------------------------

TEST(ErrorManagerWindow, LongTrailsEndWithinTheArea)
{
    const std::string name(97, 'n');
    const std::string file = "dir/" + name;
    std::vector<Place> places;
    for (unsigned n = 1; n <= 20; ++n)
        places.push_back({file.c_str(), n * 37});
    for (std::size_t title = 0; title < 240; ++title) {
        SCOPED_TRACE(title);
        const std::u16string title_text(title, u't');
        SetError(u"It failed.", {});
        for (const Place& place : places)
            Errors().v_AddLocation(place.file, place.line);
        ASSERT_EQ(ShownText(title_text.c_str()), ExpectedText(u"It failed.", places, title));
    }
}

TEST(ErrorManagerWindow, LongMessagesAreCutAndShowNoTrail)
{
    const std::vector<Place> places = {{"dir/name", 1}};
    for (std::size_t length = 1000; length <= 1023; ++length) {
        SCOPED_TRACE(length);
        const std::u16string message(length, u'm');
        SetError(message.c_str(), {{"dir/name", 1}});
        ASSERT_EQ(ShownText(u"t"), ExpectedText(message, places, 1));
    }
}

TEST(ErrorManagerWindow, LongTitlesLeaveNoRoomForTheText)
{
    for (const std::size_t length : {1021, 1022, 1023, 3000}) {
        const std::u16string title(length, u't');
        SetError(u"It failed.", {{"dir/name", 1}});
        const AnsweredBoxes boxes(IDOK);
        ShowError(title.c_str());
        EXPECT_EQ(boxes.title, title.substr(0, 1022));
        EXPECT_EQ(boxes.text, length == 1021 ? u"I" : u"");
    }
    const AnsweredBoxes boxes(IDOK);
    Errors().v_SetError(1, GetModuleHandleA(nullptr), TEST_STRING_PLAIN);
    Errors().i_ErrorLocationWindow(TEST_STRING_LONG, nullptr, MB_OK);
    EXPECT_EQ(boxes.title, Widened(TEST_LONG_TEXT).substr(0, 1022));
    EXPECT_EQ(boxes.text, u"");
    Errors().v_ClearError();
}

TEST(ErrorManagerWindow, NothingIsLeftOfAnEarlierBox)
{
    const std::u16string message(900, u'm');
    SetError(message.c_str(), {{"dir/name", 1}});
    ShownText();
    SetError(u"x", {});
    EXPECT_EQ(ShownText(u""), u"x");
}

// ---- Flags and answers ----------------------------------------------------------------------

TEST(ErrorManagerWindow, ComesToTheForeground)
{
    const AnsweredBoxes boxes(IDOK);
    for (const unsigned flags : {unsigned(MB_OK), unsigned(MB_RETRYCANCEL | MB_ICONERROR)}) {
        SetError(u"It failed.", {});
        ShowError(u"title", flags);
        EXPECT_EQ(boxes.type, flags | FOREGROUND);
    }
}

TEST(ErrorManagerWindow, GivesTheNumberOfTheButton)
{
    for (const int button : {IDOK, IDCANCEL, IDIGNORE, IDYES, IDNO, 10, 11, 0, -1}) {
        const AnsweredBoxes boxes(button);
        SetError(u"It failed.", {});
        EXPECT_EQ(ShowError(), button);
    }
}

TEST(ErrorManagerWindow, LeavesTheErrorAsItIs)
{
    const AnsweredBoxes boxes(IDOK);
    SetError(u"It failed.", {{"a/b", 1}});
    Errors().i_ErrorLocationWindow(0, Units(u"title"), MB_OK);
    EXPECT_TRUE(Errors().b_IsSetError());
    EXPECT_EQ(TakeFailure(), (Failure{0, "It failed.", {"a/b"}}));
}

TEST(ErrorManagerWindow, ShowsAHeldOrIgnoredErrorToo)
{
    const AnsweredBoxes boxes(IDOK);
    SetError(u"held", {{"a/b", 1}});
    Errors().v_HoldError();
    EXPECT_EQ(Errors().i_ErrorLocationWindow(0, Units(u"title"), MB_OK), IDOK);
    EXPECT_EQ(boxes.text, u"held\n\nb: line 1");
    Errors().v_ClearError();
    SetError(u"ignored", {});
    Errors().v_SetIgnoreError(1);
    EXPECT_EQ(ShowError(), IDOK);
    EXPECT_EQ(boxes.text, u"ignored");
}

TEST(ErrorManagerWindow, WithoutAnErrorOfTheThreadThereIsNoBox)
{
    const AnsweredBoxes boxes(IDABORT);
    EXPECT_EQ(Errors().i_ErrorLocationWindow(60000, Units(u"title"), MB_OK), 0);
    SetError(u"It failed.", {});
    int button = -1;
    std::thread([&button] {
        button = Errors().i_ErrorLocationWindow(60000, Units(u"title"), MB_OK);
    }).join();
    EXPECT_EQ(button, 0);
    EXPECT_EQ(boxes.count, 0);
    Errors().v_ClearError();
}

TEST(ErrorManagerWindow, AbortEndsTheProcess)
{
    EXPECT_DEATH(
        {
            const AnsweredBoxes boxes(IDABORT);
            SetError(u"It failed.", {});
            ShowError();
        },
        "");
}

#ifndef _WIN32

namespace
{
volatile std::sig_atomic_t breaks;
}

TEST(ErrorManagerWindow, RetryStopsInADebugger)
{
    breaks = 0;
    const auto old = std::signal(SIGTRAP, [](int) { breaks = breaks + 1; });
    const AnsweredBoxes boxes(IDRETRY);
    SetError(u"It failed.", {});
    EXPECT_EQ(ShowError(), IDRETRY);
    std::signal(SIGTRAP, old);
    EXPECT_EQ(breaks, 1);
}

TEST(ErrorManagerWindow, RetryEndsTheProcessWithoutADebugger)
{
    EXPECT_EXIT(
        {
            const AnsweredBoxes boxes(IDRETRY);
            SetError(u"It failed.", {});
            ShowError();
            std::exit(0);
        },
        testing::KilledBySignal(SIGTRAP), "");
}

#else

namespace
{
int breaks;

// Goes on behind the breakpoint, which is an instruction of one byte.
LONG CALLBACK Count(EXCEPTION_POINTERS* what)
{
    if (what->ExceptionRecord->ExceptionCode != EXCEPTION_BREAKPOINT)
        return EXCEPTION_CONTINUE_SEARCH;
    ++breaks;
#ifdef _WIN64
    const auto at = reinterpret_cast<DWORD64>(what->ExceptionRecord->ExceptionAddress);
    what->ContextRecord->Rip = at + 1;
#else
    const auto at = reinterpret_cast<DWORD>(what->ExceptionRecord->ExceptionAddress);
    what->ContextRecord->Eip = at + 1;
#endif
    return EXCEPTION_CONTINUE_EXECUTION;
}
} // namespace

TEST(ErrorManagerWindow, RetryStopsInADebugger)
{
    if (sizeof(void*) == 4)
        GTEST_SKIP() << "a breakpoint that is passed over ends 32-bit programs under Wine";
    breaks = 0;
    void* const handler = AddVectoredExceptionHandler(1, Count);
    const AnsweredBoxes boxes(IDRETRY);
    SetError(u"It failed.", {});
    EXPECT_EQ(ShowError(), IDRETRY);
    RemoveVectoredExceptionHandler(handler);
    EXPECT_EQ(breaks, 1);
}

#endif

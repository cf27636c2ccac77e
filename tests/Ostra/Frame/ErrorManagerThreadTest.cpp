// tests/Ostra/Frame/ErrorManagerThreadTest.cpp: formatters of threads, and messages of 8-bit text.
#include <Ostra/Frame/ErrorManager.h>

#include <windows.h>

#include "Support/Failure.h"
#include "Support/TestStrings.h"

#include <algorithm>
#include <condition_variable>
#include <cstdio>
#include <cstring>
#include <mutex>
#include <thread>
#include <vector>

namespace
{
struct Call
{
    unsigned room, code, format_id;

    bool operator==(const Call&) const = default;
};
std::vector<Call> calls;

void Put(unsigned short* message, const char16_t* text)
{
    std::char_traits<char16_t>::copy(reinterpret_cast<char16_t*>(message), text,
                                     std::char_traits<char16_t>::length(text) + 1);
}

int WriteFirst(unsigned short* message, unsigned room, unsigned code, unsigned id, va_list)
{
    calls.push_back({room, code, id});
    Put(message, u"first's text");
    return 1;
}

int WriteSecond(unsigned short* message, unsigned room, unsigned code, unsigned id, va_list)
{
    calls.push_back({room, code, id});
    Put(message, u"second's text");
    return 7;
}

// Reads the arguments, a wide text and a number, and leaves the message to the manager.
std::u16string read_text;
int read_number;
int ReadAndLeave(unsigned short* message, unsigned room, unsigned code, unsigned id, va_list args)
{
    calls.push_back({room, code, id});
    read_text = Wide(va_arg(args, const unsigned short*));
    read_number = va_arg(args, int);
    Put(message, u"not taken");
    return 0;
}

int Fill(unsigned short* message, unsigned room, unsigned, unsigned, va_list)
{
    std::fill(message, message + room / 2, static_cast<unsigned short>('x'));
    return 1;
}

// A registration for the calling thread, taken back at the end of the scope.
class Registered
{
public:
    explicit Registered(CT_ErrorManager::Formatter formatter,
                        unsigned number = GetCurrentThreadId())
        : thread(number)
    {
        calls.clear();
        Errors().v_TakeThread(formatter, thread);
    }
    Registered(const Registered&) = delete;
    Registered& operator=(const Registered&) = delete;
    ~Registered() { Errors().v_GiveThread(thread); }

private:
    const unsigned thread;
};

void SetMessage(const char* format, ...)
{
    va_list args;
    va_start(args, format);
    Errors().v_SetMessageError(format, args);
    va_end(args);
}

std::u16string TakeText()
{
    const std::u16string text = Wide(Errors().qcuz_GetErrorMessage());
    Errors().v_ClearError();
    return text;
}
} // namespace

// ---- Formatters -----------------------------------------------------------------------------

TEST(ErrorManagerThread, FormatterWritesTheMessageBehindThePrefix)
{
    const Registered registered(WriteFirst);
    Errors().v_SetError(7, GetModuleHandleA(nullptr), TEST_STRING_PLAIN);
    EXPECT_EQ(Errors().n_GetFormatID(), unsigned(TEST_STRING_PLAIN));
    EXPECT_EQ(TakeFailure(), (Failure{7, "(7): first's text", {}}));
    EXPECT_EQ(calls, (std::vector<Call>{{2048, 7, TEST_STRING_PLAIN}}));
}

TEST(ErrorManagerThread, AnErrorOfTextPassesItsCodeInBothPlaces)
{
    const Registered registered(WriteFirst);
    Errors().v_SetError(9, Units(u"text"));
    EXPECT_EQ(Errors().n_GetFormatID(), 0U);
    EXPECT_EQ(TakeFailure(), (Failure{9, "(9): first's text", {}}));
    Errors().v_SetError(0, static_cast<const unsigned short*>(nullptr));
    EXPECT_EQ(TakeFailure(), (Failure{0, "(0): first's text", {}}));
    EXPECT_EQ(calls, (std::vector<Call>{{2048, 9, 9}, {2048, 0, 0}}));
}

TEST(ErrorManagerThread, FormatterThatGivesZeroLeavesMessageAndArgumentsAsTheyWere)
{
    const Registered registered(ReadAndLeave);
    Errors().v_SetError(7, Units(u"%s, %d"), Units(u"wide"), -4);
    EXPECT_EQ(TakeFailure(), (Failure{7, "(7): wide, -4", {}}));
    EXPECT_EQ(read_text, u"wide");
    EXPECT_EQ(read_number, -4);
    Errors().v_SetError(60001, nullptr, 60001, Units(u"other"), 5);
    EXPECT_EQ(TakeFailure(), (Failure{60001, "(60001): other", {}}));
    EXPECT_EQ(read_number, 5);
}

TEST(ErrorManagerThread, WhatAFormatterLeavesIsGoneWithoutAFormatToo)
{
    const Registered registered(ReadAndLeave);
    Errors().v_SetError(7, static_cast<const unsigned short*>(nullptr), Units(u"wide"), 1);
    EXPECT_EQ(TakeFailure(), (Failure{7, "(7): ", {}}));
    Errors().v_SetError(7, nullptr, 12345, Units(u"wide"), 1);
    EXPECT_EQ(TakeFailure(), (Failure{7, "(7): ", {}}));
}

TEST(ErrorManagerThread, MessagesAndErrorsOfTheSystemAskNoFormatter)
{
    const Registered registered(WriteFirst);
    Errors().v_SetMessageError(Units(u"text"));
    EXPECT_EQ(TakeFailure().text, "text");
    Errors().v_SetMessageError("text");
    EXPECT_EQ(TakeFailure().text, "text");
    SetLastError(5);
    Errors().v_SetSystemError();
    EXPECT_EQ(TakeFailure().code, 5U);
    WSASetLastError(10004);
    Errors().v_SetSocketError();
    EXPECT_EQ(TakeFailure().text, "(10004): Interrupted system call");
    EXPECT_TRUE(calls.empty());
}

TEST(ErrorManagerThread, DroppedErrorsAskNoFormatter)
{
    const Registered registered(WriteFirst);
    Errors().v_SetError(1, Units(u"text"));
    Errors().v_SetError(2, Units(u"text"));
    Errors().v_SetError(3, nullptr, 60006);
    EXPECT_EQ(TakeFailure(), (Failure{1, "(1): first's text", {}}));
    EXPECT_EQ(calls.size(), 1U);
}

TEST(ErrorManagerThread, TheLatestRegistrationIsUsedAndTakenBackFirst)
{
    const unsigned thread = GetCurrentThreadId();
    Errors().v_TakeThread(WriteFirst, thread);
    Errors().v_TakeThread(WriteSecond, thread);
    Errors().v_SetError(1, Units(u"text"));
    EXPECT_EQ(TakeFailure().text, "(1): second's text");
    Errors().v_GiveThread(thread);
    Errors().v_SetError(1, Units(u"text"));
    EXPECT_EQ(TakeFailure().text, "(1): first's text");
    Errors().v_GiveThread(thread);
    Errors().v_SetError(1, Units(u"text"));
    EXPECT_EQ(TakeFailure().text, "(1): text");
    Errors().v_GiveThread(thread);
    EXPECT_FALSE(Errors().b_IsSetError());
}

TEST(ErrorManagerThread, ANullFormatterHidesAnEarlierOne)
{
    const Registered registered(WriteFirst);
    const Registered null(nullptr);
    Errors().v_SetError(1, Units(u"text"));
    EXPECT_EQ(TakeFailure().text, "(1): text");
}

TEST(ErrorManagerThread, AFormatterIsTheThreadsOwn)
{
    const Registered registered(WriteFirst);
    std::string text;
    std::thread([&text] {
        Errors().v_SetError(1, Units(u"text"));
        text = TakeFailure().text;
    }).join();
    EXPECT_EQ(text, "(1): text");
    std::thread([&text] {
        const Registered own(WriteSecond);
        Errors().v_SetError(1, Units(u"text"));
        text = TakeFailure().text;
    }).join();
    EXPECT_EQ(text, "(1): second's text");
    Errors().v_SetError(1, Units(u"text"));
    EXPECT_EQ(TakeFailure().text, "(1): first's text");
}

TEST(ErrorManagerThread, OneThreadMayRegisterForAnother)
{
    constexpr unsigned NONE = 0xFFFFFFFE;
    const Registered between(WriteSecond, NONE);
    const unsigned own = GetCurrentThreadId();
    std::thread([own] { Errors().v_TakeThread(WriteFirst, own); }).join();
    Errors().v_TakeThread(WriteSecond, NONE);
    Errors().v_SetError(1, Units(u"text"));
    EXPECT_EQ(TakeFailure().text, "(1): first's text");
    // Only the entry of that thread goes.
    std::thread([own] { Errors().v_GiveThread(own); }).join();
    Errors().v_SetError(1, Units(u"text"));
    EXPECT_EQ(TakeFailure().text, "(1): text");
    Errors().v_GiveThread(NONE);
}

TEST(ErrorManagerThread, TakingARegistrationBackThatIsNotThereDoesNothing)
{
    Errors().v_GiveThread(12345);
    const Registered registered(WriteFirst);
    Errors().v_GiveThread(12345);
    Errors().v_SetError(1, Units(u"text"));
    EXPECT_EQ(TakeFailure().text, "(1): first's text");
}

TEST(ErrorManagerThread, TheErrorOutlivesTheRegistration)
{
    {
        const Registered registered(WriteFirst);
        Errors().v_SetError(1, Units(u"text"));
    }
    EXPECT_TRUE(Errors().b_IsSetError());
    EXPECT_EQ(TakeFailure(), (Failure{1, "(1): first's text", {}}));
}

TEST(ErrorManagerThread, AFullAreaIsCutAtItsEnd)
{
    const Registered registered(Fill);
    Errors().v_SetError(1, Units(u"text"));
    EXPECT_EQ(TakeFailure().text, "(1): " + std::string(1023 - 5, 'x'));
}

// Other threads' errors lie behind this one's, which is taken anew when all are there.
TEST(ErrorManagerThread, WritingAMessageLeavesThoseOfOtherThreadsAsTheyAre)
{
    constexpr int THREADS = 4;
    const std::u16string message(1000, u'm');
    Errors().v_SetError(1, Units(u"text"));
    std::vector<std::string> texts(THREADS);
    std::mutex list; // which threads change one at a time
    std::condition_variable changed;
    int set = 0;
    bool written = false;
    std::vector<std::thread> threads;
    for (std::string& text : texts) {
        threads.emplace_back([&] {
            std::unique_lock lock(list);
            Errors().v_SetError(2, Units(message.c_str()));
            ++set;
            changed.notify_all();
            changed.wait(lock, [&] { return written; });
            text = TakeFailure().text;
        });
    }
    {
        std::unique_lock lock(list);
        changed.wait(lock, [&] { return set == THREADS; });
        Errors().v_ClearError();
        const Registered registered(WriteFirst);
        Errors().v_SetError(1, Units(u"text"));
        written = true;
    }
    changed.notify_all();
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(TakeFailure().text, "(1): first's text");
    for (const std::string& text : texts)
        EXPECT_EQ(text, "(2): " + std::string(message.size(), 'm'));
}

TEST(ErrorManagerThread, ManyRegistrationsAreTakenBackOneByOne)
{
    const unsigned thread = GetCurrentThreadId();
    for (int i = 0; i < 100; ++i)
        Errors().v_TakeThread(i % 2 ? WriteSecond : WriteFirst, thread);
    for (int i = 100; i-- > 0;) {
        Errors().v_SetError(1, Units(u"text"));
        ASSERT_EQ(TakeFailure().text, i % 2 ? "(1): second's text" : "(1): first's text");
        Errors().v_GiveThread(thread);
    }
    Errors().v_SetError(1, Units(u"text"));
    EXPECT_EQ(TakeFailure().text, "(1): text");
}

// ---- Messages of 8-bit text -----------------------------------------------------------------

TEST(ErrorManagerThread, FormatsOfBytesBecomeWideOnes)
{
    Errors().v_SetMessageError("%s of %S: %d \xE9", Units(u"w\u0416"), "narrow", -3);
    EXPECT_EQ(Errors().n_GetErrorCode(), 0U);
    EXPECT_EQ(Errors().n_GetFormatID(), 0U);
    EXPECT_EQ(TakeText(), u"w\u0416 of narrow: -3 \u00E9");
}

TEST(ErrorManagerThread, AMessageWithAListIsFormattedAsBytesAndThenWidened)
{
    SetMessage("%s of %S: %d \xE9\x80", "narrow", Units(u"wide"), -3);
    EXPECT_EQ(Errors().n_GetErrorCode(), 0U);
    EXPECT_EQ(Errors().n_GetFormatID(), 0U);
    // A byte becomes the unit of that number, whatever the code page is.
    EXPECT_EQ(TakeText(), u"narrow of wide: -3 \u00E9\u0080");
}

TEST(ErrorManagerThread, MessagesOfBytesEndWithinTheField)
{
    const std::string text(3000, 'x');
    SetMessage("%s", text.c_str());
    EXPECT_EQ(TakeFailure().text, std::string(1023, 'x'));
    SetMessage("%s", text.substr(0, 1023).c_str());
    EXPECT_EQ(TakeFailure().text, std::string(1023, 'x'));
    SetMessage("%s", text.substr(0, 1022).c_str());
    EXPECT_EQ(TakeFailure().text, std::string(1022, 'x'));
    Errors().v_SetMessageError(text.c_str());
    EXPECT_EQ(TakeFailure().text, std::string(1023, 'x'));
}

TEST(ErrorManagerThread, MessagesOfBytesWithoutAFormatAreEmpty)
{
    Errors().v_SetMessageError(static_cast<const char*>(nullptr));
    EXPECT_TRUE(Errors().b_IsSetError());
    EXPECT_EQ(TakeFailure(), (Failure{0, "", {}}));
    SetMessage(nullptr);
    EXPECT_TRUE(Errors().b_IsSetError());
    EXPECT_EQ(TakeFailure(), (Failure{0, "", {}}));
    Errors().v_SetMessageError("");
    EXPECT_EQ(TakeFailure(), (Failure{0, "", {}}));
    SetMessage("");
    EXPECT_EQ(TakeFailure(), (Failure{0, "", {}}));
}

TEST(ErrorManagerThread, DroppedMessagesOfBytesReadNoArguments)
{
    const char* nowhere = reinterpret_cast<const char*>(std::uintptr_t{1});
    Errors().v_SetMessageError("first");
    Errors().v_SetMessageError("%s", nowhere);
    SetMessage("%s", nowhere);
    EXPECT_EQ(TakeFailure(), (Failure{0, "first", {}}));
}

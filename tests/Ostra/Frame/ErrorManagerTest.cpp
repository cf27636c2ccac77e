// tests/Ostra/Frame/ErrorManagerTest.cpp: errors of one thread and of several; formats; the trail.
#include <Ostra/Frame/ErrorManager.h>
#include <Ostra/Frame/OstraDLLMain.h>

#include <windows.h>

#include "Support/Failure.h"
#include "Support/Gate.h"
#include "Support/TestStrings.h"

#include <cstdlib>
#include <memory>
#include <thread>

namespace
{
std::string Message()
{
    return Narrow(Wide(Errors().qcuz_GetErrorMessage()));
}

void SetError(unsigned code, const char16_t* text = u"text")
{
    Errors().v_SetError(code, Units(text));
}

// Formats a message with an argument list.
void SetMessage(const unsigned short* format, ...)
{
    va_list args;
    va_start(args, format);
    Errors().v_SetMessageError(format, args);
    va_end(args);
}

void InThread(void (*body)())
{
    std::thread(body).join();
}
} // namespace

// ---- One error ------------------------------------------------------------------------------

TEST(ErrorManager, NoErrorAtFirst)
{
    EXPECT_FALSE(Errors().b_IsSetError());
    EXPECT_FALSE(Errors().b_IsHoldError());
}

TEST(ErrorManager, WithoutAnErrorEveryAnswerIsEmpty)
{
    EXPECT_EQ(Errors().n_GetErrorCode(), 0U);
    EXPECT_EQ(Errors().n_GetFormatID(), 0U);
    EXPECT_EQ(Message(), "");
    EXPECT_EQ(Errors().n_GetLocationCount(), 0U);
    EXPECT_STREQ(Errors().qccz_GetLocationFileAt(1), "");
    EXPECT_EQ(Errors().n_GetLocationLineAt(1), 0U);
    Errors().v_ClearError();
    EXPECT_FALSE(Errors().b_IsSetError());
}

TEST(ErrorManager, WithoutAnErrorThereIsNothingToIgnoreAndNoTrail)
{
    Errors().v_SetIgnoreError(1);
    Errors().v_AddLocation("file", 1);
    SetError(1);
    EXPECT_TRUE(Errors().b_IsSetError());
    EXPECT_EQ(TakeFailure(), (Failure{1, "(1): text", {}}));
}

TEST(ErrorManager, TextIsThePrefixAndTheFormattedArguments)
{
    Errors().v_SetError(7, Units(u"%s and %S: %d"), Units(u"w\u0416"), "narrow", -3);
    EXPECT_TRUE(Errors().b_IsSetError());
    EXPECT_EQ(Errors().n_GetErrorCode(), 7U);
    EXPECT_EQ(Errors().n_GetFormatID(), 0U);
    EXPECT_EQ(Wide(Errors().qcuz_GetErrorMessage()), u"(7): w\u0416 and narrow: -3");
    EXPECT_EQ(Errors().n_GetLocationCount(), 0U);
    Errors().v_ClearError();
    EXPECT_FALSE(Errors().b_IsSetError());
}

TEST(ErrorManager, ErrorWithoutAFormatHasThePrefixAlone)
{
    Errors().v_SetError(7, static_cast<const unsigned short*>(nullptr));
    EXPECT_EQ(TakeFailure(), (Failure{7, "(7): ", {}}));
}

TEST(ErrorManager, PrefixPrintsTheCodeAsSigned)
{
    SetError(0xFFFFFFFE);
    EXPECT_EQ(Errors().n_GetErrorCode(), 0xFFFFFFFEU);
    EXPECT_EQ(TakeFailure().text, "(-2): text");
}

TEST(ErrorManager, SecondErrorIsDroppedAndItsArgumentsStayUnread)
{
    SetError(1, u"first");
    const unsigned short* nowhere = reinterpret_cast<const unsigned short*>(std::uintptr_t{1});
    Errors().v_SetError(2, Units(u"%s"), nowhere);
    Errors().v_SetError(3, nullptr, 60001, nowhere);
    Errors().v_SetMessageError(Units(u"%s"), nowhere);
    SetMessage(Units(u"%s"), nowhere);
    Errors().v_SetSystemError(Units(u"%s"), nowhere);
    Errors().v_SetSocketError(Units(u"%s"), nowhere);
    EXPECT_EQ(TakeFailure(), (Failure{1, "(1): first", {}}));
}

TEST(ErrorManager, MessageErrorHasCodeZeroAndNoPrefix)
{
    Errors().v_SetMessageError(Units(u"%u bytes of %s"), 5U, Units(u"it"));
    EXPECT_EQ(Errors().n_GetErrorCode(), 0U);
    EXPECT_EQ(Errors().n_GetFormatID(), 0U);
    EXPECT_EQ(TakeFailure().text, "5 bytes of it");
    SetMessage(Units(u"%u bytes of %s"), 6U, Units(u"it"));
    EXPECT_EQ(TakeFailure().text, "6 bytes of it");
}

TEST(ErrorManager, MessageErrorWithoutAFormatIsEmpty)
{
    Errors().v_SetMessageError(static_cast<const unsigned short*>(nullptr));
    EXPECT_TRUE(Errors().b_IsSetError());
    EXPECT_EQ(TakeFailure(), (Failure{0, "", {}}));
    SetMessage(nullptr);
    EXPECT_EQ(TakeFailure(), (Failure{0, "", {}}));
}

TEST(ErrorManager, LongTextIsCutAtTheEndOfTheField)
{
    const std::u16string text(3000, u'x');
    Errors().v_SetError(12345, Units(u"%s"), text.c_str());
    EXPECT_EQ(TakeFailure().text, "(12345): " + std::string(1023 - 9, 'x'));
    Errors().v_SetMessageError(Units(u"%s"), text.c_str());
    EXPECT_EQ(TakeFailure().text, std::string(1023, 'x'));
    Errors().v_SetMessageError(Units(u"%s"), text.substr(0, 1023).c_str());
    EXPECT_EQ(TakeFailure().text, std::string(1023, 'x'));
    Errors().v_SetMessageError(Units(u"%s"), text.substr(0, 1022).c_str());
    EXPECT_EQ(TakeFailure().text, std::string(1022, 'x'));
}

// ---- Formats of the string table ------------------------------------------------------------

TEST(ErrorManager, EachIdOfTheTableHasItsText)
{
    const unsigned short* a = Units(u"a");
    const unsigned short* b = Units(u"b");
    const struct
    {
        unsigned id;
        std::string text;
        const void* first;
        const void* second;
        unsigned third;
    } rows[] = {
        {60000, "Error Stack", a, b, 5},
        {60001, "a", a, b, 5},
        {60003, "File \"a\": b returned error 5", a, b, 5},
        {60006, "Out of memory", a, b, 5},
        {60012, "Semantic error: a", a, b, 5},
        {60015, "Matrix \"a\": b returned error 5", a, b, 5},
        {60016, "Windows API call a failed", a, b, 5},
        {60017, "a not supported", a, b, 5},
        {60021, "Limits violated", a, b, 5},
        {65535, "ASSERT (a)", a, b, 5},
        {60002, "", a, b, 5},
        {60007, "", a, b, 5},
        {0, "", a, b, 5},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.id);
        Errors().v_SetError(row.id + 1, nullptr, row.id, row.first, row.second, row.third);
        EXPECT_EQ(Errors().n_GetFormatID(), row.id);
        EXPECT_EQ(TakeFailure(),
                  (Failure{row.id + 1, "(" + std::to_string(row.id + 1) + "): " + row.text, {}}));
    }
    Errors().v_SetError(1, nullptr, 60005, 4000000000U);
    EXPECT_EQ(TakeFailure().text, "(1): Database Error: 4000000000");
    Errors().v_SetError(1, nullptr, 60008, 87U, a);
    EXPECT_EQ(TakeFailure().text, "(1): System error 87 in \"a\"");
}

TEST(ErrorManager, FormatsOfAnotherModuleAreFound)
{
    const HINSTANCE module = GetModuleHandleA(nullptr);
    Errors().v_SetError(2, module, TEST_STRING_TEXT, Units(u"wide"), "narrow");
    EXPECT_EQ(TakeFailure().text, "(2): Text wide, narrow");
    Errors().v_SetError(3, module, TEST_STRING_NUMBER, 4000000000U, -1);
    EXPECT_EQ(TakeFailure().text, "(3): Number 4000000000 of -1");
    Errors().v_SetError(4, module, 60006);
    EXPECT_EQ(TakeFailure().text, "(4): ");
    Errors().v_SetError(5, nullptr, TEST_STRING_PLAIN);
    EXPECT_EQ(TakeFailure().text, "(5): ");
}

TEST(ErrorManager, WithoutADefaultModuleNoneIsSearched)
{
    CT_ErrorManager::sv_SetInstance(nullptr);
    Errors().v_SetError(60006, nullptr, 60006);
    EXPECT_EQ(TakeFailure(), (Failure{60006, "(60006): ", {}}));
    Errors().v_SetError(1, nullptr, TEST_STRING_PLAIN);
    EXPECT_EQ(TakeFailure().text, "(1): ");
    CT_ErrorManager::sv_SetInstance(CT_OstraDLLMain::sh_GetInstance());
    Errors().v_SetError(60006, nullptr, 60006);
    EXPECT_EQ(TakeFailure().text, "(60006): Out of memory");
}

// ---- States ---------------------------------------------------------------------------------

TEST(ErrorManager, HeldErrorCanBeReadAndIsReplacedByTheNext)
{
    SetError(1, u"first");
    Errors().v_AddLocation("a/b", 10);
    Errors().v_HoldError();
    EXPECT_FALSE(Errors().b_IsSetError());
    EXPECT_TRUE(Errors().b_IsHoldError());
    EXPECT_EQ(Message(), "(1): first");
    EXPECT_EQ(Errors().n_GetErrorCode(), 1U);
    EXPECT_EQ(Errors().n_GetLocationCount(), 1U);
    EXPECT_STREQ(Errors().qccz_GetLocationFileAt(1), "a/b");
    EXPECT_EQ(Errors().n_GetLocationLineAt(1), 10U);

    SetError(2, u"second");
    EXPECT_TRUE(Errors().b_IsSetError());
    EXPECT_FALSE(Errors().b_IsHoldError());
    EXPECT_EQ(TakeFailure(), (Failure{2, "(2): second", {}}));
    EXPECT_FALSE(Errors().b_IsHoldError());
}

TEST(ErrorManager, AnErrorMayQuoteTheHeldOneThatItReplaces)
{
    const auto hold = [] {
        SetError(1, u"first");
        Errors().v_HoldError();
        return Errors().qcuz_GetErrorMessage();
    };
    Errors().v_SetError(2, Units(u"after %s"), hold());
    EXPECT_EQ(TakeFailure(), (Failure{2, "(2): after (1): first", {}}));
    Errors().v_SetError(3, nullptr, 60012, hold());
    EXPECT_EQ(TakeFailure(), (Failure{3, "(3): Semantic error: (1): first", {}}));
    Errors().v_SetMessageError(Units(u"%s, too"), hold());
    EXPECT_EQ(TakeFailure(), (Failure{0, "(1): first, too", {}}));
    WSASetLastError(10004);
    Errors().v_SetSocketError(Units(u"%s"), hold());
    EXPECT_EQ(TakeFailure(), (Failure{10004, "(10004): Interrupted system call [(1): first]", {}}));
    EXPECT_FALSE(Errors().b_IsHoldError());
}

TEST(ErrorManager, HoldWithoutAnErrorHasNoEffect)
{
    Errors().v_HoldError();
    EXPECT_FALSE(Errors().b_IsHoldError());
    SetError(1);
    Errors().v_HoldError();
    Errors().v_HoldError();
    EXPECT_TRUE(Errors().b_IsHoldError());
    Errors().v_ClearError();
    EXPECT_FALSE(Errors().b_IsHoldError());
}

TEST(ErrorManager, IgnoredErrorIsHiddenReadableAndInTheWay)
{
    SetError(1, u"first");
    Errors().v_SetIgnoreError(1);
    EXPECT_FALSE(Errors().b_IsSetError());
    EXPECT_FALSE(Errors().b_IsHoldError());
    EXPECT_EQ(Errors().n_GetErrorCode(), 1U);
    SetError(2);
    EXPECT_FALSE(Errors().b_IsSetError());
    EXPECT_EQ(Message(), "(1): first");
    Errors().v_AddLocation("a", 1);
    EXPECT_EQ(Errors().n_GetLocationCount(), 1U);
    Errors().v_SetIgnoreError(0);
    EXPECT_TRUE(Errors().b_IsSetError());
    Errors().v_ClearError();
    SetError(3);
    EXPECT_TRUE(Errors().b_IsSetError());
    Errors().v_ClearError();
}

TEST(ErrorManager, IgnoredErrorCanBeClearedAndHeld)
{
    SetError(1);
    Errors().v_SetIgnoreError(1);
    Errors().v_ClearError();
    SetError(2);
    EXPECT_EQ(Errors().n_GetErrorCode(), 2U);
    Errors().v_SetIgnoreError(1);
    Errors().v_HoldError();
    EXPECT_TRUE(Errors().b_IsHoldError());
    SetError(3);
    EXPECT_TRUE(Errors().b_IsSetError());
    Errors().v_ClearError();
}

// ---- The trail ------------------------------------------------------------------------------

TEST(ErrorManager, FirstPlaceAddedIsAtPositionOne)
{
    SetError(1);
    static const char file[] = "Ostra/Buffer/Buffer";
    Errors().v_AddLocation(file, 1);
    Errors().v_AddLocation("b", 22);
    Errors().v_AddLocation("c", 333);
    ASSERT_EQ(Errors().n_GetLocationCount(), 3U);
    EXPECT_EQ(Errors().qccz_GetLocationFileAt(1), file);
    EXPECT_EQ(Errors().n_GetLocationLineAt(1), 1U);
    EXPECT_STREQ(Errors().qccz_GetLocationFileAt(2), "b");
    EXPECT_EQ(Errors().n_GetLocationLineAt(2), 22U);
    EXPECT_STREQ(Errors().qccz_GetLocationFileAt(3), "c");
    EXPECT_EQ(Errors().n_GetLocationLineAt(3), 333U);
    Errors().v_ClearError();
}

TEST(ErrorManager, AtOtherPositionsThereIsNoPlace)
{
    SetError(1);
    Errors().v_AddLocation("a", 1);
    Errors().v_AddLocation("b", 22);
    for (const unsigned position : {0U, 3U, 4U, 100U, 0xFFFFFFFFU}) {
        SCOPED_TRACE(position);
        EXPECT_STREQ(Errors().qccz_GetLocationFileAt(position), "");
        EXPECT_EQ(Errors().n_GetLocationLineAt(position), 0U);
    }
    Errors().v_ClearError();
}

TEST(ErrorManager, PlacesBehindTheHundredthAreDropped)
{
    for (int round = 0; round < 3; ++round) {
        SetError(1);
        for (unsigned line = 1; line <= 101; ++line)
            Errors().v_AddLocation("file", line);
        EXPECT_EQ(Errors().n_GetLocationCount(), 100U);
        EXPECT_EQ(Errors().n_GetLocationLineAt(1), 1U);
        EXPECT_EQ(Errors().n_GetLocationLineAt(100), 100U);
        EXPECT_EQ(Message(), "(1): text");
        Errors().v_ClearError();
    }
}

TEST(ErrorManager, PlacesOfAReplacedHeldErrorComeBack)
{
    SetError(1);
    for (unsigned line = 1; line <= 100; ++line)
        Errors().v_AddLocation("file", line);
    Errors().v_HoldError();
    SetError(2);
    for (unsigned line = 1; line <= 100; ++line)
        Errors().v_AddLocation("file", line);
    EXPECT_EQ(Errors().n_GetLocationCount(), 100U);
    Errors().v_ClearError();
}

TEST(ErrorManager, ThreadsShareTheHundredPlaces)
{
    SetError(1);
    for (unsigned line = 1; line <= 60; ++line)
        Errors().v_AddLocation("main", line);
    InThread([] {
        SetError(2);
        for (unsigned line = 1; line <= 60; ++line)
            Errors().v_AddLocation("thread", line);
        EXPECT_EQ(Errors().n_GetLocationCount(), 40U);
        Errors().v_ClearError();
    });
    for (unsigned line = 61; line <= 100; ++line)
        Errors().v_AddLocation("main", line);
    EXPECT_EQ(Errors().n_GetLocationCount(), 100U);
    EXPECT_EQ(Errors().n_GetLocationLineAt(100), 100U);
    Errors().v_ClearError();
}

// ---- Threads --------------------------------------------------------------------------------

TEST(ErrorManager, EachThreadSeesOnlyItsOwnError)
{
    SetError(1, u"main");
    InThread([] {
        EXPECT_FALSE(Errors().b_IsSetError());
        SetError(2, u"thread");
        EXPECT_EQ(Errors().n_GetErrorCode(), 2U);
        EXPECT_EQ(Message(), "(2): thread");
        Errors().v_HoldError();
        EXPECT_TRUE(Errors().b_IsHoldError());
        Errors().v_ClearError();
    });
    EXPECT_FALSE(Errors().b_IsHoldError());
    EXPECT_EQ(TakeFailure(), (Failure{1, "(1): main", {}}));
}

// A later thread's record stands in front of an earlier one's.
TEST(ErrorManager, RecordsInTheMiddleOfTheListsAreFoundAndUnlinked)
{
    for (const bool held : {false, true}) {
        SCOPED_TRACE(held);
        SetError(1, u"main");
        Gate failed(2), cleared(2);
        Failure other;
        std::thread thread([&] {
            SetError(2);
            Errors().v_AddLocation("thread", 1);
            if (held)
                Errors().v_HoldError();
            failed.ArriveAndWait();
            cleared.ArriveAndWait();
            EXPECT_EQ(Errors().b_IsHoldError() != 0, held);
            other = TakeFailure();
        });
        failed.ArriveAndWait();
        if (held)
            Errors().v_HoldError();
        const Failure own = TakeFailure();
        EXPECT_EQ(TakeFailure(), Failure());
        SetError(3);
        Errors().v_ClearError();
        cleared.ArriveAndWait();
        thread.join();
        EXPECT_EQ(own, (Failure{1, "(1): main", {}}));
        EXPECT_EQ(other, (Failure{2, "(2): text", {"thread"}}));
    }
}

// The second of three held ones goes first, then the oldest.
TEST(ErrorManager, HeldRecordsAreUnlinkedInAnyOrder)
{
    Gate held[3] = {Gate(1), Gate(1), Gate(1)}, clear[3] = {Gate(1), Gate(1), Gate(1)};
    Failure failures[3];
    std::vector<std::thread> threads;
    for (unsigned n = 0; n < 3; ++n) {
        threads.emplace_back([&, n] {
            SetError(n + 1);
            Errors().v_HoldError();
            held[n].Arrive();
            clear[n].Wait();
            failures[n] = TakeFailure();
            EXPECT_FALSE(Errors().b_IsHoldError());
        });
        held[n].Wait();
    }
    for (const unsigned n : {1U, 0U, 2U}) {
        clear[n].Arrive();
        threads[n].join();
        EXPECT_EQ(failures[n].code, n + 1);
    }
    EXPECT_FALSE(Errors().b_IsHoldError());
}

namespace
{
// That many threads, one after another, each set an error, and all keep it until the last one has.
void FailInThreads(int count)
{
    Gate all_failed(count);
    std::vector<std::thread> threads;
    for (int n = 0; n < count; ++n) {
        auto failed = std::make_shared<Gate>(1);
        threads.emplace_back([&all_failed, failed, n] {
            SetError(n + 1);
            failed->Arrive();
            all_failed.ArriveAndWait();
        });
        failed->Wait();
    }
    for (std::thread& thread : threads)
        thread.join();
}
} // namespace

TEST(ErrorManagerDeathTest, TenFailingThreadsAreHeldAndTheEleventhEndsTheProcess)
{
    EXPECT_EXIT(
        {
            FailInThreads(10);
            std::_Exit(17);
        },
        testing::ExitedWithCode(17), "");
    EXPECT_DEATH(
        {
            FailInThreads(11);
            std::_Exit(0);
        },
        "");
}

// The tenth record is that of the main thread, and held: the next error of the thread takes it.
TEST(ErrorManager, WithoutAFreeRecordAnErrorTakesTheHeldOneOfItsThread)
{
    SetError(1, u"held");
    Errors().v_AddLocation("a", 1);
    Errors().v_HoldError();
    // One after another: the lists have no lock.
    std::vector<std::thread> threads;
    std::vector<std::shared_ptr<Gate>> clear;
    for (unsigned n = 0; n < 9; ++n) {
        auto failed = std::make_shared<Gate>(1), cleared = std::make_shared<Gate>(1);
        clear.push_back(cleared);
        threads.emplace_back([failed, cleared] {
            SetError(7);
            failed->Arrive();
            cleared->Wait();
            EXPECT_EQ(TakeFailure().code, 7U);
        });
        failed->Wait();
    }
    SetError(2, u"next");
    EXPECT_TRUE(Errors().b_IsSetError());
    EXPECT_FALSE(Errors().b_IsHoldError());
    EXPECT_EQ(TakeFailure(), (Failure{2, "(2): next", {}}));
    EXPECT_EQ(TakeFailure(), Failure());
    for (unsigned n = 0; n < 9; ++n) {
        clear[n]->Arrive();
        threads[n].join();
    }
}

TEST(ErrorManager, RecordsAreUsedAgain)
{
    for (unsigned n = 0; n < 1000; ++n) {
        SetError(n + 1);
        Errors().v_AddLocation("file", n);
        if (n % 3 == 0)
            Errors().v_HoldError();
        if (n % 3 != 0 || n % 2 == 0) {
            EXPECT_EQ(TakeFailure().trail.size(), 1U);
        }
    }
    TakeFailure();
}

// ---- Flags and records ----------------------------------------------------------------------

TEST(ErrorManager, FlagsAreOnlyStored)
{
    EXPECT_EQ(Errors().b_GetInterruptOnError(), 0);
    EXPECT_EQ(Errors().b_GetDebugMessageOnError(), 1);
    Errors().v_SetInterruptOnError(5);
    Errors().v_SetDebugMessageOnError(0);
    EXPECT_EQ(Errors().b_GetInterruptOnError(), 5);
    EXPECT_EQ(Errors().b_GetDebugMessageOnError(), 0);
    SetError(1);
    EXPECT_EQ(TakeFailure().text, "(1): text");
    Errors().v_SetInterruptOnError(0);
    Errors().v_SetDebugMessageOnError(1);
}

TEST(ErrorManager, DebugMessagesGoNowhere)
{
    Errors().v_OutputDebugMessage("text");
    Errors().v_OutputDebugMessage(Units(u"text"));
    EXPECT_FALSE(Errors().b_IsSetError());
}

TEST(ErrorManager, RecordsHaveTheirFields)
{
    using Error = CT_ErrorManager::st_Error;
    EXPECT_EQ(offsetof(Error, h_Instance), 0U);
    EXPECT_LT(offsetof(Error, n_Thread), offsetof(Error, n_ErrorCode));
    EXPECT_LT(offsetof(Error, n_ErrorCode), offsetof(Error, n_FormatID));
    EXPECT_LT(offsetof(Error, n_FormatID), offsetof(Error, au_Message));
    EXPECT_EQ(sizeof(Error::au_Message), 2048U);
    EXPECT_LT(offsetof(Error, n_LocationCount), offsetof(Error, pso_FirstLocation));
    EXPECT_LT(offsetof(Error, pso_FirstLocation), offsetof(Error, pso_LastLocation));
    EXPECT_LT(offsetof(Error, pso_LastLocation), offsetof(Error, pso_Next));
    EXPECT_LT(offsetof(Error, pso_Next), offsetof(Error, b_Ignore));
    using Location = CT_ErrorManager::st_Location;
    EXPECT_EQ(offsetof(Location, qccz_File), 0U);
    EXPECT_LT(offsetof(Location, n_Line), offsetof(Location, pso_Next));
}

// The tenth record is that of the main thread: there is no other one to take.
TEST(ErrorManagerDeathTest, AHeldErrorGivesItsRecordToTheNextOne)
{
    EXPECT_EXIT(
        {
            FailInThreads(9);
            for (unsigned code = 1; code < 5; ++code) {
                SetError(code);
                Errors().v_HoldError();
            }
            std::_Exit(int(Errors().n_GetErrorCode()));
        },
        testing::ExitedWithCode(4), "");
}

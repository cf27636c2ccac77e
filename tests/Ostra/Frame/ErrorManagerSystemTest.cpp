// tests/Ostra/Frame/ErrorManagerSystemTest.cpp: errors of the system and of sockets.
#include <Ostra/Frame/ErrorManager.h>

#include <windows.h>

#include "Support/Failure.h"
#include "Support/Private.h"

OSTRA_PRIVATE(Strip, void (CT_ErrorManager::*)(unsigned short*),
              &CT_ErrorManager::v_StripSystemError);

namespace
{
// The system's text for a code as the system gives it; empty for an unknown code, and for one that
// wants arguments.
std::u16string SystemText(DWORD code)
{
    char16_t text[2048];
    const DWORD length = FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM, nullptr, code, 0x400,
                                        reinterpret_cast<LPWSTR>(text), std::size(text), nullptr);
    SetLastError(0);
    return std::u16string(text, length);
}

bool IsLineEnd(char16_t unit)
{
    return unit == u'\r' || unit == u'\n';
}

// The rule: no line end at the end; inside, one behind a blank disappears, another becomes a blank.
std::u16string Stripped(std::u16string text)
{
    while (text.size() > 1 && IsLineEnd(text.back()))
        text.pop_back();
    for (std::size_t n = 0; n < text.size();) {
        if (!IsLineEnd(text[n]))
            ++n;
        else if (n > 0 && text[n - 1] == u' ')
            text.erase(n, 1);
        else
            text[n++] = u' ';
    }
    return text;
}

std::u16string Prefixed(int code, const std::u16string& text)
{
    const std::string number = std::to_string(code);
    return text.empty() ? text
                        : u"(" + std::u16string(number.begin(), number.end()) + u"): " + text;
}

std::u16string TakeText()
{
    const std::u16string text = Wide(Errors().qcuz_GetErrorMessage());
    Errors().v_ClearError();
    return text;
}

const struct
{
    unsigned code;
    const char* text;
} socket_rows[] = {
    {10004, "Interrupted system call"},
    {10009, "Bad file number"},
    {10013, "Access denied"},
    {10014, "Bad address"},
    {10022, "Invalid argument"},
    {10024, "Too many open files"},
    {10035, "Operation would block"},
    {10036, "Operation now in progress"},
    {10037, "Operation already in progress"},
    {10038, "Socket operation on non-socket"},
    {10039, "Destination address required"},
    {10040, "Message too long"},
    {10041, "Protocol is wrong type for socket"},
    {10042, "Bad protocol option"},
    {10043, "Protocol not supported"},
    {10044, "Socket type not supported"},
    {10045, "Operation not supported on socket"},
    {10046, "Protocol family not supported"},
    {10047, "Address family not supported by protocol family"},
    {10048, "Address already in use"},
    {10049, "Can't assign requested address"},
    {10050, "Network is down"},
    {10051, "ICMP network unreachable"},
    {10052, "Network was reset"},
    {10053, "Software caused connection abort"},
    {10054, "Connection reset by peer"},
    {10055, "No buffer space is supported"},
    {10056, "Socket is already connected"},
    {10057, "Socket is not connected"},
    {10058, "Can't send after socket shutdown"},
    {10059, "Too many references"},
    {10060, "Connection timed out"},
    {10061, "Connection refused"},
    {10062, "Too many levels of symbolic links"},
    {10063, "Name too long"},
    {10064, "Host is down"},
    {10065, "Host is unreachable"},
    {10066, "Directory not empty"},
    {10067, "EPROCLIM returned"},
    {10068, "EUSERS returned"},
    {10069, "Disk quota exceeded"},
    {10070, "ESTALE returned"},
    {10071, "The object is remote"},
    {10091, "System not ready"},
    {10092, "Version is not supported"},
    {10093, "Not initialized"},
    {11001, "Host not found"},
    {11002, "Try again"},
    {11003, "Non-recoverable error"},
    {11004, "No data record available"},
};
} // namespace

// ---- System errors --------------------------------------------------------------------------

TEST(ErrorManagerSystem, TextIsThePrefixAndTheSystemsTextWithoutItsLineEnd)
{
    const std::u16string text = SystemText(5);
    ASSERT_TRUE(text.ends_with(u"\r\n"));
    SetLastError(5);
    Errors().v_SetSystemError();
    EXPECT_EQ(GetLastError(), 0U);
    EXPECT_EQ(Errors().n_GetErrorCode(), 5U);
    EXPECT_EQ(Errors().n_GetFormatID(), 0U);
    EXPECT_EQ(TakeText(), u"(5): " + text.substr(0, text.size() - 2));
}

TEST(ErrorManagerSystem, FormattedTextFollowsInBrackets)
{
    const std::u16string text = SystemText(2);
    SetLastError(2);
    Errors().v_SetSystemError(Units(u"%s, %d"), Units(u"a\u0416.txt"), 4);
    EXPECT_EQ(TakeText(), u"(2): " + text.substr(0, text.size() - 2) + u" [a\u0416.txt, 4]");
}

TEST(ErrorManagerSystem, EveryCodeFollowsTheRule)
{
    unsigned known = 0;
    for (DWORD code = 0; code < 2000; ++code) {
        SCOPED_TRACE(code);
        const std::u16string text = SystemText(code);
        known += !text.empty();
        const std::u16string expected = Stripped(Prefixed(static_cast<int>(code), text));
        SetLastError(code);
        Errors().v_SetSystemError();
        ASSERT_EQ(Errors().n_GetErrorCode(), code);
        ASSERT_EQ(TakeText(), expected);

        SetLastError(code);
        Errors().v_SetSystemError(Units(u"<%u>"), 7U);
        const bool blank = expected.ends_with(u' ');
        ASSERT_EQ(TakeText(), expected.substr(0, expected.size() - blank) + u" [<7>]");
    }
    EXPECT_GT(known, 50U);
}

TEST(ErrorManagerSystem, CodeWithoutATextGivesNoPrefixButTheBrackets)
{
    const DWORD code = 0x2000BEEF;
    ASSERT_EQ(SystemText(code), u"");
    SetLastError(code);
    Errors().v_SetSystemError();
    EXPECT_TRUE(Errors().b_IsSetError());
    EXPECT_EQ(TakeFailure(), (Failure{code, "", {}}));
    SetLastError(code);
    Errors().v_SetSystemError(Units(u"%s"), Units(u"file"));
    EXPECT_EQ(TakeFailure(), (Failure{code, " [file]", {}}));
    EXPECT_EQ(GetLastError(), 0U);
}

TEST(ErrorManagerSystem, LastErrorGoesToZeroEvenWhenTheErrorIsDropped)
{
    Errors().v_SetError(1, Units(u"first"));
    SetLastError(5);
    Errors().v_SetSystemError();
    EXPECT_EQ(GetLastError(), 0U);
    SetLastError(5);
    Errors().v_SetSystemError(Units(u"%d"), 1);
    EXPECT_EQ(GetLastError(), 0U);
    WSASetLastError(10004);
    Errors().v_SetSocketError();
    EXPECT_EQ(WSAGetLastError(), 0);
    EXPECT_EQ(TakeFailure(), (Failure{1, "(1): first", {}}));
}

TEST(ErrorManagerSystem, LongTextInBracketsEndsWithinTheField)
{
    const std::u16string name(3000, u'x');
    SetLastError(5);
    Errors().v_SetSystemError(Units(u"%s"), name.c_str());
    const std::u16string text = TakeText();
    EXPECT_EQ(text.size(), 1023U);
    EXPECT_EQ(text.back(), u'x');
}

TEST(ErrorManagerSystem, LineBreaksInsideBecomeOneBlankAtMost)
{
    const struct
    {
        const char16_t* text;
        const char16_t* stripped;
    } rows[] = {
        {u"one\r\ntwo\r\n", u"one two"},
        {u"one \r\ntwo", u"one two"},
        {u"one\n\n\ntwo\n\n", u"one two"},
        {u"one\r two", u"one  two"},
        {u"one \n two", u"one  two"},
        {u"one two \r\n", u"one two "},
        {u"\r\n", u" "},
        {u"\none", u" one"},
        {u"x", u"x"},
        {u"", u""},
    };
    for (const auto& row : rows) {
        std::u16string text = row.text;
        (Errors().*Private(Strip()))(reinterpret_cast<unsigned short*>(text.data()));
        EXPECT_EQ(std::u16string(text.c_str()), row.stripped) << Narrow(row.text);
        EXPECT_EQ(Stripped(row.text), row.stripped) << Narrow(row.text);
    }
}

// ---- Socket errors --------------------------------------------------------------------------

TEST(ErrorManagerSystem, EachSocketErrorHasItsText)
{
    for (const auto& row : socket_rows) {
        SCOPED_TRACE(row.code);
        EXPECT_EQ(Narrow(Wide(CT_ErrorManager::sqcuz_GetSocketError(row.code))), row.text);
    }
}

TEST(ErrorManagerSystem, OtherSocketErrorsAreUnknown)
{
    unsigned known = 0;
    for (unsigned code = 0; code < 20000; ++code)
        known += Wide(CT_ErrorManager::sqcuz_GetSocketError(code)) != u"Unknown socket error";
    EXPECT_EQ(known, std::size(socket_rows));
    for (unsigned code : {0U, 10072U, 10090U, 11005U, 0xFFFFFFFFU})
        EXPECT_EQ(Wide(CT_ErrorManager::sqcuz_GetSocketError(code)), u"Unknown socket error")
            << code;
}

TEST(ErrorManagerSystem, SocketErrorHasThePrefixAndTheBrackets)
{
    WSASetLastError(10061);
    Errors().v_SetSocketError();
    EXPECT_EQ(WSAGetLastError(), 0);
    EXPECT_EQ(TakeFailure(), (Failure{10061, "(10061): Connection refused", {}}));
    WSASetLastError(10090);
    Errors().v_SetSocketError(Units(u"%s:%u"), Units(u"host"), 80U);
    EXPECT_EQ(TakeFailure(), (Failure{10090, "(10090): Unknown socket error [host:80]", {}}));
}

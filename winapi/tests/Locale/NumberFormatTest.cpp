// winapi/tests/Locale/NumberFormatTest.cpp: numbers as text.
#include "../Support/Locales.h"

namespace
{
NUMBERFMTA FormatOf(UINT digits, UINT leadingZero, UINT grouping, UINT order)
{
    static char decimal[] = ".";
    static char thousand[] = ",";
    return {digits, leadingZero, grouping, decimal, thousand, order};
}

std::string Formatted(LCID lcid, const char* value, const NUMBERFMTA* format, DWORD flags = 0)
{
    char text[256] = "";
    EXPECT_GT(GetNumberFormatA(lcid, flags, value, format, text, 256), 0) << value;
    return text;
}

std::string Formatted(const char* value, const NUMBERFMTA& format)
{
    return Formatted(0x409, value, &format);
}

UINT NumberOf(const std::string& text)
{
    return static_cast<UINT>(std::stoul(text));
}
} // namespace

TEST(NumberFormat, EveryMeasuredNumberComesOutAsItDidThere)
{
    int count = 0;
    for (const Fields& row : ReadTable("number-format.tsv")) {
        const NUMBERFMTA format =
            FormatOf(NumberOf(row[1]), NumberOf(row[2]), NumberOf(row[3]), NumberOf(row[4]));
        char text[256] = "";
        SetLastError(0);
        const int result = GetNumberFormatA(0x409, 0, row[0].c_str(), &format, text, 256);
        EXPECT_EQ(result, std::stoi(row[5])) << row[0];
        EXPECT_EQ(GetLastError(), NumberOf(row[6])) << row[0];
        EXPECT_EQ(std::string(text), row[7]) << row[0];
        ++count;
    }
    EXPECT_EQ(count, 124);
}

TEST(NumberFormat, HalvesAreRoundedAwayFromZeroOnTheDigits)
{
    const NUMBERFMTA whole = FormatOf(0, 1, 3, 1);
    const NUMBERFMTA three = FormatOf(3, 1, 3, 1);
    EXPECT_EQ(Formatted("0.5", whole), "1");
    EXPECT_EQ(Formatted("0.49999", whole), "0");
    EXPECT_EQ(Formatted("-2.5", whole), "-3");
    EXPECT_EQ(Formatted("99999.5", whole), "100,000");
    EXPECT_EQ(Formatted("9999999.9999", three), "10,000,000.000");
    EXPECT_EQ(Formatted("0.0005", three), "0.001");
    EXPECT_EQ(Formatted("0.0004999", three), "0.000");
    EXPECT_EQ(Formatted("1.0005", three), "1.001");
}

TEST(NumberFormat, ADigitThatRoundingPutsInFrontIsNotSeparated)
{
    const NUMBERFMTA whole = FormatOf(0, 1, 3, 1);
    EXPECT_EQ(Formatted("999.5", whole), "1000");
    EXPECT_EQ(Formatted("-999999.5", whole), "-1000,000");
    EXPECT_EQ(Formatted("1000", whole), "1,000");
}

TEST(NumberFormat, TextThatIsNoNumberIsRefused)
{
    char text[64];
    const NUMBERFMTA format = FormatOf(2, 1, 3, 1);
    for (const char* value : {"inf", "-inf", "nan", "1e5", "+5", "1,2", "--1", "1-", " 1", "1 ",
                              "0x10", "1.2.3", "\xB2", "1.#INF"}) {
        SetLastError(0);
        EXPECT_EQ(GetNumberFormatA(0x409, 0, value, &format, text, 64), 0) << value;
        EXPECT_EQ(GetLastError(), ERROR_INVALID_PARAMETER) << value;
    }
}

TEST(NumberFormat, SeparatorsMayBeLongOrEmpty)
{
    char point[] = "::";
    char comma[] = "<>";
    char none[] = "";
    NUMBERFMTA format = {2, 1, 3, point, comma, 1};
    EXPECT_EQ(Formatted("-12345.6", format), "-12<>345::60");
    format.lpDecimalSep = none;
    EXPECT_EQ(Formatted("-12345.6", format), "-12<>34560");
    format.lpThousandSep = none;
    EXPECT_EQ(Formatted("-12345.6", format), "-1234560");
}

TEST(NumberFormat, WithoutALeadingZeroNothingMayBeLeft)
{
    NUMBERFMTA format = FormatOf(0, 0, 3, 1);
    EXPECT_EQ(Formatted("-0.4", format), "-");
    EXPECT_EQ(Formatted("0", format), "");
    EXPECT_EQ(Formatted("000", format), "");
    format.NegativeOrder = 0;
    EXPECT_EQ(Formatted("-0", format), "()");
    EXPECT_EQ(Formatted("1.", format), "1");
    EXPECT_EQ(Formatted(".", format), "");
}

TEST(NumberFormat, ArgumentsThatArentSoundAreRefused)
{
    char text[64];
    const NUMBERFMTA good = FormatOf(2, 1, 3, 1);
    const NUMBERFMTA order = FormatOf(2, 1, 3, 5);
    NUMBERFMTA point = good;
    NUMBERFMTA comma = good;
    point.lpDecimalSep = nullptr;
    comma.lpThousandSep = nullptr;
    RunRows({
        CALL(GetNumberFormatA(0x80D, 0, "12", &good, text, 64), 0, ERROR_INVALID_PARAMETER),
        CALL(GetNumberFormatA(0x409, 0, nullptr, &good, text, 64), 0, ERROR_INVALID_PARAMETER),
        CALL(GetNumberFormatA(0x409, 0, "12", &good, nullptr, 64), 0, ERROR_INVALID_PARAMETER),
        CALL(GetNumberFormatA(0x409, 0, "12", &good, text, -1), 0, ERROR_INVALID_PARAMETER),
        CALL(GetNumberFormatA(0x409, 0, "-12", &order, text, 64), 0, ERROR_INVALID_PARAMETER),
        // It isn't looked at where it doesn't count.
        CALL(GetNumberFormatA(0x409, 0, "12", &order, text, 64), 6, 0),
        CALL(GetNumberFormatA(0x409, 0, "12", &point, text, 64), 0, ERROR_INVALID_PARAMETER),
        CALL(GetNumberFormatA(0x409, 0, "12", &comma, text, 64), 0, ERROR_INVALID_PARAMETER),
        CALL(GetNumberFormatA(0x409, LOCALE_NOUSEROVERRIDE, "12", &good, text, 64), 0,
             ERROR_INVALID_FLAGS),
        CALL(GetNumberFormatA(0x409, 0, "12", &good, text, 6), 6, 0),
        // The reference run forgets the decimals.
        CALL(GetNumberFormatA(0x409, 0, "12", &good, nullptr, 0), Side(6, 2), 0),
        CALL(GetNumberFormatA(0x409, 0, "12", &good, text, 5), 0, ERROR_INSUFFICIENT_BUFFER),
    });
}

TEST(NumberFormat, TheLocaleHasAFormatOfItsOwn)
{
    // The reference run separates one group only where all are of one size.
    EXPECT_EQ(Formatted(0x409, "-1234567.891", nullptr), Side("-1,234,567.89", "-1234,567.89"));
    EXPECT_EQ(Formatted(0x407, "-1234567.891", nullptr), Side("-1.234.567,89", "-1234.567,89"));
    EXPECT_EQ(Formatted(0x439, "-1234567.891", nullptr), "-12,34,567.89");
    EXPECT_EQ(Formatted(0x409, "0.5", nullptr, LOCALE_NOUSEROVERRIDE), "0.50");
    EXPECT_EQ(Formatted(0x40C, "123.4", nullptr), "123,40");
}

TEST(NumberFormat, SeparatorsAreTextOfTheLocalesPage)
{
    char point[] = "\xA0";
    char comma[] = "\x81";
    const NUMBERFMTA format = {2, 1, 3, point, comma, 1};
    EXPECT_EQ(Formatted(0x409, "12345.6", &format), "12\x81"
                                                    "345\xA0"
                                                    "60");
    // Half a character of two bytes is none.
    EXPECT_EQ(Formatted(0x411, "12345.6", &format), "12\x81\x45"
                                                    "345\xA0"
                                                    "60");
}

// winapi/tests/Locale/LocaleInfoTest.cpp: facts and names of locales.
#include "../Support/Locales.h"

#include <map>

namespace
{
std::string Hex(const std::string& bytes)
{
    std::string digits;
    for (const unsigned char byte : bytes) {
        digits += "0123456789abcdef"[byte >> 4];
        digits += "0123456789abcdef"[byte & 15];
    }
    return digits;
}

// As the font signatures stand in the table: words of 32 bits.
std::string Signature(LCID lcid)
{
    WCHAR halves[16];
    EXPECT_EQ(GetLocaleInfoW(lcid, LOCALE_FONTSIGNATURE, halves, 16), 16);
    std::string text;
    char word[10];
    for (int i = 0; i < 16; i += 2) {
        std::snprintf(word, sizeof word, "%s%04x%04x", i ? " " : "",
                      static_cast<unsigned>(halves[i + 1]), static_cast<unsigned>(halves[i]));
        text += word;
    }
    return text;
}
} // namespace

TEST(LocaleInfo, TheFactsOfEveryLocaleAreThoseOfTheTable)
{
    const std::vector<Fields> rows = ReadTable("locale-facts.tsv", true);
    const Fields& head = rows[0];
    for (std::size_t i = 1; i < rows.size(); ++i)
        for (std::size_t column = 2; column < head.size(); ++column) {
            if (head[column] == "calendars")
                continue;
            const LCID lcid = IdOf(rows[i][0]);
            const LCTYPE fact = static_cast<LCTYPE>(std::stoul(head[column]));
            const std::string told =
                fact == LOCALE_FONTSIGNATURE ? Signature(lcid) : Utf8(FactW(lcid, fact));
            EXPECT_EQ(told, rows[i][column]) << rows[i][0] << ' ' << head[column];
        }
}

TEST(LocaleInfo, TheNameOfALocaleIsItsTag)
{
    for (const Fields& row : ReadTable("locale-facts.tsv"))
        EXPECT_EQ(FactA(IdOf(row[0]), LOCALE_SNAME), row[1]);
}

TEST(LocaleInfo, TextsThatArentIcusAreThoseOfTheTable)
{
    int count = 0;
    for (const Fields& row : ReadTable("locale-patches.tsv")) {
        const LCID lcid = IdOf(row[0]);
        std::string told;
        if (row[1] == "ERA")
            told = Utf8(DateW(lcid, 0, Moment(2021, 1, 1), Wide(u"g").c_str()));
        else if (row[1][0] == 'G' || row[1][0] == 'H')
            told = Utf8(DateW(lcid, 0, Moment(2021, std::stoi(row[1].substr(1)), 1),
                              Wide(row[1][0] == 'G' ? u"dMMMM" : u"dMMM").c_str()))
                       .substr(1);
        else if (row[1][0] == 'C' || row[1] == "93" || row[1] == "4115")
            continue; // Names of calendars have a test of their own; two facts aren't supplied.
        else
            told = Utf8(FactW(lcid, static_cast<LCTYPE>(std::stoul(row[1]))));
        EXPECT_EQ(told, row[2]) << row[0] << ' ' << row[1];
        ++count;
    }
    EXPECT_EQ(count, 2131);
}

TEST(LocaleInfo, OtherIdsGiveTheDataOfALocale)
{
    const LCTYPE facts[] = {LOCALE_ILANGUAGE, LOCALE_SLANGUAGE, LOCALE_SSHORTDATE,
                            LOCALE_SDAYNAME1, LOCALE_SDECIMAL,  LOCALE_SCURRENCY};
    for (const Fields& row : ReadTable("locale-aliases.tsv"))
        for (const LCTYPE fact : facts)
            EXPECT_EQ(FactW(IdOf(row[0]), fact), FactW(IdOf(row[2]), fact))
                << row[0] << ' ' << fact;
}

TEST(LocaleInfo, TheResultCountsTheTerminator)
{
    WCHAR wide[16];
    char narrow[16];
    RunRows({
        CALL(GetLocaleInfoW(0x409, LOCALE_SDAYNAME1, wide, 16), 7, 0),
        CALL(GetLocaleInfoW(0x409, LOCALE_SDAYNAME1, wide, 7), 7, 0),
        CALL(GetLocaleInfoW(0x409, LOCALE_SDAYNAME1, wide, 6), 0, ERROR_INSUFFICIENT_BUFFER),
        CALL(GetLocaleInfoW(0x409, LOCALE_SDAYNAME1, wide, 0), 7, 0),
        CALL(GetLocaleInfoW(0x409, LOCALE_SDAYNAME1, nullptr, 0), 7, 0),
        CALL(GetLocaleInfoW(0x409, LOCALE_SDAYNAME1, nullptr, 7), 0, ERROR_INVALID_PARAMETER),
        CALL(GetLocaleInfoW(0x409, LOCALE_SDAYNAME1, wide, -1), 0, ERROR_INVALID_PARAMETER),
        CALL(GetLocaleInfoW(0x409, LOCALE_SMONTHNAME13, wide, 16), 1, 0),
        CALL(GetLocaleInfoA(0x409, LOCALE_SDAYNAME1, narrow, 16), 7, 0),
        CALL(GetLocaleInfoA(0x409, LOCALE_SDAYNAME1, narrow, 6), 0, ERROR_INSUFFICIENT_BUFFER),
        CALL(GetLocaleInfoA(0x409, LOCALE_SDAYNAME1, nullptr, 0), 7, 0),
        CALL(GetLocaleInfoA(0x409, LOCALE_SDAYNAME1, nullptr, 7), 0, ERROR_INVALID_PARAMETER),
        CALL(GetLocaleInfoA(0x409, LOCALE_SDAYNAME1, narrow, -1), 0, ERROR_INVALID_PARAMETER),
        CALL(GetLocaleInfoA(0x411, LOCALE_SDAYNAME1, nullptr, 0), 7, 0),
        CALL(GetLocaleInfoA(0x411, LOCALE_SDAYNAME1, narrow, 6), 0, ERROR_INSUFFICIENT_BUFFER),
        CALL(GetLocaleInfoA(0x409, LOCALE_SMONTHNAME13, narrow, 16), 1, 0),
        CALL(GetLocaleInfoA(0x409, LOCALE_IDEFAULTANSICODEPAGE, narrow, 8), 5, 0),
        CALL(GetLocaleInfoA(0x409, LOCALE_IDEFAULTANSICODEPAGE, narrow, 4), 0,
             ERROR_INSUFFICIENT_BUFFER),
        CALL(GetLocaleInfoA(0x429, LOCALE_SLIST, narrow, 8), 2, 0),
        CALL(GetLocaleInfoA(0x429, LOCALE_SLIST, narrow, 1), 0, ERROR_INSUFFICIENT_BUFFER),
    });
}

TEST(LocaleInfo, UnknownLocalesAndFactsAreRefused)
{
    WCHAR wide[64];
    char narrow[64];
    RunRows({
        CALL(GetLocaleInfoW(0x80D, LOCALE_SDAYNAME1, wide, 64), 0, ERROR_INVALID_PARAMETER),
        CALL(GetLocaleInfoA(0x80D, LOCALE_SDAYNAME1, narrow, 64), 0, ERROR_INVALID_PARAMETER),
        CALL(GetLocaleInfoA(0x7409, LOCALE_SDAYNAME1, narrow, 64), 0, ERROR_INVALID_PARAMETER),
        CALL(GetLocaleInfoW(0x409, 0, wide, 64), 0, ERROR_INVALID_FLAGS),
        CALL(GetLocaleInfoA(0x409, 0x5000, narrow, 64), 0, ERROR_INVALID_FLAGS),
        CALL(GetLocaleInfoW(0x409, 0x1FFF, wide, 64), 0, ERROR_INVALID_FLAGS),
    });
}

TEST(LocaleInfo, NumbersCanBeAskedForAsSuch)
{
    DWORD number = 0;
    WCHAR* const wide = reinterpret_cast<WCHAR*>(&number);
    char* const narrow = reinterpret_cast<char*>(&number);
    constexpr LCTYPE AS = LOCALE_RETURN_NUMBER;
    RunRows({
        CALL(GetLocaleInfoW(0x407, LOCALE_IDEFAULTANSICODEPAGE | AS, wide, 2), 2, 0),
        CALL(number, 1252, 0),
        CALL(GetLocaleInfoA(0x411, LOCALE_IDEFAULTANSICODEPAGE | AS, narrow, 4), 4, 0),
        CALL(number, 932, 0),
        CALL(GetLocaleInfoW(0x407, LOCALE_ILANGUAGE | AS, wide, 2), 2, 0),
        CALL(number, 0x407, 0),
        CALL(GetLocaleInfoW(0x407, LOCALE_ICOUNTRY | AS | LOCALE_NOUSEROVERRIDE, wide, 2), 2, 0),
        CALL(number, 49, 0),
        CALL(GetLocaleInfoW(0x407, LOCALE_ICOUNTRY | AS, wide, 1), 0, ERROR_INSUFFICIENT_BUFFER),
        CALL(GetLocaleInfoA(0x407, LOCALE_ICOUNTRY | AS, narrow, 3), 0, ERROR_INSUFFICIENT_BUFFER),
        CALL(GetLocaleInfoW(0x407, LOCALE_ICOUNTRY | AS, nullptr, 0), 2, 0),
        CALL(GetLocaleInfoA(0x407, LOCALE_ICOUNTRY | AS, nullptr, 0), 4, 0),
        CALL(GetLocaleInfoW(0x407, LOCALE_SSHORTDATE | AS, wide, 2), 0, ERROR_INVALID_FLAGS),
        CALL(GetLocaleInfoW(0x407, LOCALE_SGROUPING | AS, wide, 2), 0, ERROR_INVALID_FLAGS),
        CALL(GetLocaleInfoW(0x407, LOCALE_SNAME | AS, wide, 2), 0, ERROR_INVALID_FLAGS),
        CALL(GetLocaleInfoW(0x407, LOCALE_FONTSIGNATURE | AS, wide, 2), 0, ERROR_INVALID_FLAGS),
    });
}

TEST(LocaleInfo, EveryNumberIsTheNumberOfItsText)
{
    const LCTYPE numbers[] = {5,  9,    10,   11,   13,   17,   18,   25,   26,   27,  28, 33,
                              34, 35,   36,   37,   38,   39,   82,   83,   84,   85,  86, 87,
                              91, 4100, 4101, 4105, 4106, 4107, 4108, 4109, 4112, 4113};
    for (const LCID lcid : {0x407U, 0x411U, 0x401U, 0x439U, 0x7FU})
        for (const LCTYPE fact : numbers) {
            DWORD number = 0;
            EXPECT_EQ(GetLocaleInfoW(lcid, fact | LOCALE_RETURN_NUMBER,
                                     reinterpret_cast<WCHAR*>(&number), 2),
                      2);
            EXPECT_EQ(number, std::stoul(FactA(lcid, fact), nullptr,
                                         fact == LOCALE_IDEFAULTLANGUAGE ? 16 : 10))
                << std::hex << lcid << ' ' << std::dec << fact;
        }
}

TEST(LocaleInfo, ASignatureOfFontsHasNoTerminator)
{
    WCHAR wide[16];
    char narrow[33] = "";
    RunRows({
        CALL(GetLocaleInfoW(0x409, LOCALE_FONTSIGNATURE, wide, 16), 16, 0),
        CALL(GetLocaleInfoW(0x409, LOCALE_FONTSIGNATURE, wide, 15), 0, ERROR_INSUFFICIENT_BUFFER),
        CALL(GetLocaleInfoW(0x409, LOCALE_FONTSIGNATURE, nullptr, 0), 16, 0),
        CALL(GetLocaleInfoA(0x409, LOCALE_FONTSIGNATURE, narrow, 32), 32, 0),
        CALL(GetLocaleInfoA(0x409, LOCALE_FONTSIGNATURE, narrow, 31), 0, ERROR_INSUFFICIENT_BUFFER),
        CALL(GetLocaleInfoA(0x409, LOCALE_FONTSIGNATURE, nullptr, 0), 32, 0),
    });
    EXPECT_EQ(Hex(std::string(narrow, 32)),
              "0300000000000000000000000000008001000000000000809f0100000000d7df");
}

TEST(LocaleInfo, NarrowTextIsInTheLocalesOwnPage)
{
    EXPECT_EQ(Hex(FactA(0x411, LOCALE_SDAYNAME1)), "8c8e976a93fa");
    EXPECT_EQ(Hex(FactA(0x407, LOCALE_SMONTHNAME1 + 2)), "4de4727a");
    EXPECT_EQ(Hex(FactA(0x419, LOCALE_SNATIVELANGNAME)), "f0f3f1f1eae8e9");
    EXPECT_EQ(Hex(FactA(0x429, LOCALE_SLIST)), "ba");
    // A locale without a page has the process's.
    if (GetACP() == 1252) {
        EXPECT_EQ(FactA(0x439, LOCALE_SDAYNAME1), "??????");
        EXPECT_EQ(FactA(0x411, LOCALE_SDAYNAME1 | LOCALE_USE_CP_ACP), "???");
        EXPECT_EQ(Hex(FactA(0x407, (LOCALE_SMONTHNAME1 + 2) | LOCALE_USE_CP_ACP)), "4de4727a");
    }
}

TEST(LocaleInfo, TheLocaleOfHindiHasNoPage)
{
    EXPECT_EQ(FactA(0x439, LOCALE_IDEFAULTANSICODEPAGE), "0");
}

TEST(LocaleInfo, NobodyOverridesAnything)
{
    for (const LCTYPE fact : {LOCALE_SSHORTDATE, LOCALE_SDECIMAL, LOCALE_S1159})
        EXPECT_EQ(FactW(0x409, fact | LOCALE_NOUSEROVERRIDE), FactW(0x409, fact));
}

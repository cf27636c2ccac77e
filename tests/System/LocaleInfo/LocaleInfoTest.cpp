// tests/System/LocaleInfo/LocaleInfoTest.cpp
#include <System/LocaleInfo/LocaleInfo.h>

#include <System/OS/OS.h>

#include <windows.h>

#include "Ostra/String/StringSupport.h"
#include "Support/Failure.h"

#include <algorithm>
#include <cstring>
#include <set>

namespace
{
using Type = CT_LocaleInfo::et_Type;

// What the caller left in its variable.
constexpr unsigned UNTOUCHED = 77;
// Ids that no system has a locale for: a sublanguage far out.
constexpr unsigned FAR_SUB = 0xFC00;
// What stands for locales and is none.
constexpr unsigned NO_LOCALES[] = {0, 0x400, 0x800, 0x080D, FAR_SUB | 9};

struct Charset
{
    unsigned page;
    unsigned charset;
    unsigned locale; // that stands for both
};

constexpr Charset charsets[] = {
    {874, 222, 1054},  {932, 128, 1041},  {936, 134, 2052},  {949, 129, 1042},  {950, 136, 1028},
    {1250, 238, 1029}, {1251, 204, 1049}, {1252, 0, 1033},   {1253, 161, 1032}, {1254, 162, 1055},
    {1255, 177, 1037}, {1256, 178, 1025}, {1257, 186, 1063}, {1361, 130, 2061},
};

// A number of a locale, UNTOUCHED where it can't be had.
unsigned Number(unsigned locale, unsigned type)
{
    unsigned number = UNTOUCHED;
    const int found = CT_LocaleInfo::sb_GetLocaleInfo(locale, Type{type}, &number);
    EXPECT_EQ(found, number != UNTOUCHED);
    return number;
}

// The same by the service.
std::string Served(unsigned locale, unsigned type)
{
    char text[256] = {};
    GetLocaleInfoA(locale, type, text, sizeof(text));
    return text;
}

std::u16string WideText(unsigned locale, unsigned type)
{
    CT_UString out(u"before");
    EXPECT_EQ(CT_LocaleInfo::sb_GetLocaleInfo(locale, Type{type}, &out), 1);
    return Text(out);
}

std::vector<unsigned>* enumerated;

BOOL CALLBACK Enumerate(LPWSTR text)
{
    unsigned locale = 0;
    for (; *text; ++text)
        locale = locale * 16 +
                 static_cast<unsigned>(*text <= '9' ? *text - '0' : (*text | 32) - 'a' + 10);
    enumerated->push_back(locale);
    return 1;
}

std::vector<unsigned> InstalledLocales()
{
    std::vector<unsigned> locales;
    enumerated = &locales;
    EnumSystemLocalesW(Enumerate, LCID_INSTALLED);
    return locales;
}

// The distinct values in the order in which they are met.
std::vector<std::u16string> DistinctValues(unsigned type)
{
    std::vector<std::u16string> values;
    for (const unsigned locale : InstalledLocales()) {
        CT_UString value;
        if (CT_LocaleInfo::sb_GetLocaleInfo(locale, Type{type}, &value) &&
            std::find(values.begin(), values.end(), Text(value)) == values.end())
            values.push_back(Text(value));
    }
    return values;
}

std::u16string Collect(unsigned type, unsigned short separator)
{
    CT_UString out(u"before");
    CT_LocaleInfo::sv_CollectValues(Type{type}, separator, &out);
    return Text(out);
}

std::u16string Joined(const std::vector<std::u16string>& values, const std::u16string& separator)
{
    std::u16string text;
    for (const std::u16string& value : values)
        text += (text.empty() ? u"" : separator) + value;
    return text;
}
} // namespace

// ---- The system's answers -------------------------------------------------------------------

TEST(LocaleInfo, DefaultsAreTheSystems)
{
    EXPECT_EQ(CT_LocaleInfo::sn_GetSystemDefaultLCID(), GetSystemDefaultLCID());
    EXPECT_EQ(CT_LocaleInfo::sn_GetUserDefaultLCID(), GetUserDefaultLCID());
    EXPECT_EQ(CT_LocaleInfo::sn_GetSystemDefaultLangID(), GetSystemDefaultLangID());
    EXPECT_EQ(CT_LocaleInfo::sn_GetUserDefaultLangID(), GetUserDefaultLangID());
    EXPECT_NE(CT_LocaleInfo::sn_GetUserDefaultLCID(), 0U);
    EXPECT_EQ(CT_LocaleInfo::sb_LocaleIsSupported(CT_LocaleInfo::sn_GetUserDefaultLCID()), 1);
}

TEST(LocaleInfo, WellKnownLocalesAreSupportedAndInstalled)
{
    for (const unsigned locale : {0x0409, 0x0407, 0x040C, 0x0411, 0x0401, 0x0439}) {
        EXPECT_EQ(CT_LocaleInfo::sb_LocaleIsSupported(locale), 1) << locale;
        EXPECT_EQ(CT_LocaleInfo::sb_LocaleIsInstalled(locale), 1) << locale;
    }
    for (const unsigned locale : NO_LOCALES) {
        EXPECT_EQ(CT_LocaleInfo::sb_LocaleIsSupported(locale), 0) << locale;
        EXPECT_EQ(CT_LocaleInfo::sb_LocaleIsInstalled(locale), 0) << locale;
    }
}

TEST(LocaleInfo, CodePagesAreValidOrNot)
{
    for (const unsigned page : {1252, 932, 65000, 65001})
        EXPECT_EQ(CT_LocaleInfo::sb_IsValidCodePage(page), 1) << page;
    for (const unsigned page : {0, 1, 42424})
        EXPECT_EQ(CT_LocaleInfo::sb_IsValidCodePage(page), 0) << page;
}

// ---- Ids ------------------------------------------------------------------------------------

TEST(LocaleInfo, IdsAreMadeOfLanguageAndSort)
{
    EXPECT_EQ(CT_LocaleInfo::sn_MakeLocaleID(0x0407, 1), 0x00010407U);
    EXPECT_EQ(CT_LocaleInfo::sn_MakeLocaleID(0xABCD0407, 0), 0x0407U);
    EXPECT_EQ(CT_LocaleInfo::sn_MakeLocaleID(0xFFFFFFFF, 0xFFFF), 0xFFFFFFFFU);
    EXPECT_EQ(CT_LocaleInfo::sn_MakeLocaleID(0x0409, 0x10002), 0x00020409U);
}

TEST(LocaleInfo, LanguagesAreTakenOutOfIds)
{
    EXPECT_EQ(CT_LocaleInfo::sn_GetPrimaryLangID(0x0C07), 7U);
    EXPECT_EQ(CT_LocaleInfo::sn_GetPrimaryLangID(0xFFFFFFFF), 0x3FFU);
    EXPECT_EQ(CT_LocaleInfo::sn_GetSubLangID(0x0C07), 3U);
    EXPECT_EQ(CT_LocaleInfo::sn_GetSubLangID(0xFFFF0C07), 3U);
    EXPECT_EQ(CT_LocaleInfo::sn_GetSubLangID(0xFFFFFFFF), 63U);
    EXPECT_EQ(CT_LocaleInfo::sn_GetSubLangID(0x03FF), 0U);
}

// ---- Code pages and character sets ----------------------------------------------------------

TEST(LocaleInfo, CodePagesOfLocalesAreTheSystems)
{
    const struct
    {
        unsigned locale;
        unsigned page;
    } cases[] = {
        {0x0409, 1252}, {0x0407, 1252}, {0x0411, 932},  {0x0412, 949},  {0x0404, 950},
        {0x0804, 936},  {0x0C04, 950},  {0x0419, 1251}, {0x0405, 1250}, {0x0408, 1253},
        {0x041F, 1254}, {0x040D, 1255}, {0x0401, 1256}, {0x0427, 1257}, {0x041E, 874},
    };
    for (const auto& row : cases)
        EXPECT_EQ(CT_LocaleInfo::sn_GetDefaultANSICodePage(row.locale), row.page) << row.locale;
}

TEST(LocaleInfo, ALocaleOfUnicodeAloneHasPage0)
{
    EXPECT_EQ(CT_LocaleInfo::sn_GetDefaultANSICodePage(0x0439), 0U);
    EXPECT_EQ(CT_LocaleInfo::sn_GetDefaultCharset(0x0439), 1U);
}

TEST(LocaleInfo, IdsThatStandForTheUsersLocaleHaveItsCodePage)
{
    const unsigned page = CT_LocaleInfo::sn_GetDefaultANSICodePage(GetUserDefaultLCID());
    for (const unsigned locale : {0, 0x400, 0x800})
        EXPECT_EQ(CT_LocaleInfo::sn_GetDefaultANSICodePage(locale), page) << locale;
}

TEST(LocaleInfo, TheLanguageDecidesAboutTheCodePageOfAnUnknownLocale)
{
    std::vector<unsigned> pages(0x400, 1252);
    const struct
    {
        unsigned page;
        std::vector<unsigned> languages;
    } rows[] = {
        {1256, {1, 41}},      {1251, {2, 25, 34, 35}},
        {936, {4}},           {1250, {5, 14, 21, 24, 26, 27, 36, 56}},
        {1253, {8}},          {1255, {13}},
        {932, {17}},          {949, {18}},
        {874, {30}},          {1254, {31}},
        {1257, {37, 38, 39}},
    };
    for (const auto& row : rows) {
        for (const unsigned language : row.languages)
            pages[language] = row.page;
    }
    for (unsigned language = 0; language < 0x400; ++language) {
        const unsigned locale = FAR_SUB | language;
        if (!CT_LocaleInfo::sb_LocaleIsSupported(locale) && Served(locale, 4100).empty()) {
            EXPECT_EQ(CT_LocaleInfo::sn_GetDefaultANSICodePage(locale), pages[language])
                << language;
        }
    }
    // Languages without a country of another sort.
    EXPECT_EQ(CT_LocaleInfo::sn_GetDefaultANSICodePage(0x0812), 1361U);
}

TEST(LocaleInfo, EachCodePageHasItsCharacterSet)
{
    for (const Charset& row : charsets) {
        if (row.page != 1361) {
            EXPECT_EQ(CT_LocaleInfo::sn_GetDefaultCharset(row.locale), row.charset) << row.page;
        }
    }
    EXPECT_EQ(CT_LocaleInfo::sn_GetDefaultCharset(0x0812), 130U);
    EXPECT_EQ(CT_LocaleInfo::sn_GetDefaultCharset(FAR_SUB | 37), 186U);
}

// A repair would look the character set up all the same.
TEST(LocaleInfo, WithAnErrorSetEveryCharacterSetIsThatOf1252)
{
    Errors().v_SetError(4711, Units(u"earlier"));
    EXPECT_EQ(CT_LocaleInfo::sn_GetDefaultCharset(0x0411), 0U);
    EXPECT_EQ(CT_LocaleInfo::sn_GetDefaultCharset(0x0411), 0U);
    const std::string place = "System/LocaleInfo/LocaleInfo";
    EXPECT_EQ(TakeFailure(), (Failure{4711, "(4711): earlier", {place, place}}));
    EXPECT_EQ(CT_LocaleInfo::sn_GetDefaultCharset(0x0411), 128U);
}

TEST(LocaleInfo, AnErrorThatIsHeldOrIgnoredHidesNoCharacterSet)
{
    Errors().v_SetError(4711, Units(u"earlier"));
    Errors().v_SetIgnoreError(1);
    EXPECT_EQ(CT_LocaleInfo::sn_GetDefaultCharset(0x0411), 128U);
    Errors().v_SetIgnoreError(0);
    Errors().v_HoldError();
    EXPECT_EQ(CT_LocaleInfo::sn_GetDefaultCharset(0x0411), 128U);
    EXPECT_EQ(TakeFailure(), (Failure{4711, "(4711): earlier", {}}));
}

TEST(LocaleInfo, OneLocaleStandsForEachCharacterSetAndCodePage)
{
    for (const Charset& row : charsets) {
        EXPECT_EQ(CT_LocaleInfo::sn_GetDefaultCharsetLocale(row.charset), row.locale);
        EXPECT_EQ(CT_LocaleInfo::sn_GetDefaultCPLocale(row.page), row.locale);
    }
}

TEST(LocaleInfo, OtherCharacterSetsAndCodePagesHaveTheSystemsLanguage)
{
    const unsigned language = GetSystemDefaultLangID();
    for (const unsigned charset : {1U, 2U, 77U, 163U, 255U, 0xFFFFFFFFU})
        EXPECT_EQ(CT_LocaleInfo::sn_GetDefaultCharsetLocale(charset), language) << charset;
    for (const unsigned page : {0U, 1U, 437U, 1258U, 65001U, 0xFFFFFFFEU})
        EXPECT_EQ(CT_LocaleInfo::sn_GetDefaultCPLocale(page), language) << page;
}

// ---- Facts as bytes -------------------------------------------------------------------------

TEST(LocaleInfo, BytesAreInTheLocalesCodePage)
{
    char buffer[16];
    std::memset(buffer, 'x', sizeof(buffer));
    EXPECT_EQ(CT_LocaleInfo::sb_GetLocaleInfo(0x0411, Type{42}, buffer, sizeof(buffer)), 1);
    EXPECT_EQ(std::memcmp(buffer, "\x8C\x8E\x97\x6A\x93\xFA\0x", 8), 0);
}

TEST(LocaleInfo, BytesNeedRoomForTheTerminator)
{
    char buffer[8];
    EXPECT_EQ(CT_LocaleInfo::sb_GetLocaleInfo(0x0411, Type{42}, buffer, 7), 1);
    EXPECT_STREQ(buffer, "\x8C\x8E\x97\x6A\x93\xFA");
    EXPECT_EQ(CT_LocaleInfo::sb_GetLocaleInfo(0x0411, Type{42}, buffer, 6), 0);
    EXPECT_EQ(CT_LocaleInfo::sb_GetLocaleInfo(0x0411, Type{42}, buffer, 1), 0);
}

TEST(LocaleInfo, NoRoomAtAllIsAQuestionOfTheSizeAndSucceeds)
{
    char buffer = 'x';
    EXPECT_EQ(CT_LocaleInfo::sb_GetLocaleInfo(0x0409, Type{31}, &buffer, 0), 1);
    EXPECT_EQ(buffer, 'x');
    EXPECT_EQ(CT_LocaleInfo::sb_GetLocaleInfo(0x0409, Type{31}, static_cast<char*>(nullptr), 0), 1);
}

TEST(LocaleInfo, AnUnknownKindIsNotAnswered)
{
    char buffer[8] = "before";
    EXPECT_EQ(CT_LocaleInfo::sb_GetLocaleInfo(0x0409, Type{0x7777}, buffer, sizeof(buffer)), 0);
    EXPECT_STREQ(buffer, "before");
    CT_UString out(u"before");
    EXPECT_EQ(CT_LocaleInfo::sb_GetLocaleInfo(0x0409, Type{0x7777}, &out), 0);
    EXPECT_EQ(Text(out), u"before");
}

TEST(LocaleInfo, AnUnsupportedLocaleIsNotAnsweredInAnyForm)
{
    for (const unsigned locale : NO_LOCALES) {
        SCOPED_TRACE(locale);
        char buffer[8] = "before";
        EXPECT_EQ(CT_LocaleInfo::sb_GetLocaleInfo(locale, Type{18}, buffer, sizeof(buffer)), 0);
        EXPECT_STREQ(buffer, "before");
        EXPECT_EQ(CT_LocaleInfo::sb_GetLocaleInfo(locale, Type{18}, buffer, 0), 0);
        EXPECT_EQ(Number(locale, 18), UNTOUCHED);
        OnBoth([locale](bool wide) {
            const auto out = Make(wide, "before");
            const auto holder = Share(*out);
            EXPECT_EQ(CT_LocaleInfo::sb_GetLocaleInfo(locale, Type{18}, out.get()), 0);
            EXPECT_EQ(Ascii(*out), "before");
            EXPECT_EQ(DataOf(*out), DataOf(*holder));
        });
    }
}

// ---- Facts as strings -----------------------------------------------------------------------

TEST(LocaleInfo, AStringOfUnitsIsConvertedFromTheLocalesCodePage)
{
    EXPECT_EQ(WideText(0x0411, 42), u"\u6708\u66DC\u65E5");
    EXPECT_EQ(WideText(0x0407, 42), u"Montag");
    EXPECT_EQ(WideText(0x0407, 58), u"M\u00E4rz");
    EXPECT_EQ(WideText(0x0409, 4098), u"United States");
}

TEST(LocaleInfo, AStringOfBytesTakesTheLocalesCodePage)
{
    CT_CString out("before", ALL, 1252);
    EXPECT_EQ(CT_LocaleInfo::sb_GetLocaleInfo(0x0411, Type{42}, &out), 1);
    EXPECT_EQ(Text(out), "\x8C\x8E\x97\x6A\x93\xFA");
    EXPECT_EQ(out.n_GetCodePage(), 932U);
    EXPECT_EQ(CT_LocaleInfo::sb_GetLocaleInfo(0x0407, Type{58}, &out), 1);
    EXPECT_EQ(Text(out), "M\xE4rz");
    EXPECT_EQ(out.n_GetCodePage(), 1252U);
}

TEST(LocaleInfo, AStringOfALocaleOfUnicodeAloneHasTheSystemsCodePage)
{
    CT_CString out("before", ALL, 1253), expected;
    expected.v_Set(Served(0x0439, 31).c_str(), ALL, 0);
    EXPECT_EQ(CT_LocaleInfo::sb_GetLocaleInfo(0x0439, Type{31}, &out), 1);
    EXPECT_EQ(Text(out), Text(expected));
    EXPECT_EQ(out.n_GetCodePage(), expected.n_GetCodePage());
}

TEST(LocaleInfo, AnEmptyFactIsAnAnswer)
{
    EXPECT_EQ(WideText(0x040D, 4110), u"");
}

TEST(LocaleInfo, FlagsOfThePlatformPassThrough)
{
    EXPECT_EQ(WideText(0x0411, 0x80000000 | 42), u"\u6708\u66DC\u65E5");
    // The number itself, in four bytes; the string ends with its first zero.
    EXPECT_EQ(WideText(0x0409, 0x20000000 | 18), u"\u0001");
}

TEST(LocaleInfo, WhatIsNoTextEndsWithItsFirstZero)
{
    char served[128] = {};
    ASSERT_GT(GetLocaleInfoA(0x0409, 88, served, sizeof(served)), 0);
    CT_CString out;
    EXPECT_EQ(CT_LocaleInfo::sb_GetLocaleInfo(0x0409, Type{88}, &out), 1);
    EXPECT_EQ(Text(out), served);
    EXPECT_LE(out.vn_GetLength(), 32U);
}

// ---- Facts as numbers -----------------------------------------------------------------------

TEST(LocaleInfo, KindsOfNumbersAreReadAsNumbersAndNoOthers)
{
    const std::set<unsigned> numbers = {1,  5,  9,  10,   11,   13,   17,   18,   25,   26,  27,
                                        28, 33, 34, 35,   36,   37,   38,   39,   82,   83,  84,
                                        85, 86, 87, 4100, 4101, 4105, 4107, 4108, 4109, 4112};
    for (unsigned type = 0; type < 4200; ++type) {
        const unsigned number = Number(0x0409, type);
        if ((number != UNTOUCHED) != (numbers.count(type) > 0))
            ADD_FAILURE() << type;
        if (number != UNTOUCHED) {
            EXPECT_EQ(number, std::strtoul(Served(0x0409, type).c_str(), nullptr, 10)) << type;
        }
    }
}

TEST(LocaleInfo, APictureIsNoNumberNorIsANumberWithFlags)
{
    EXPECT_EQ(Number(0x0409, 31), UNTOUCHED);
    EXPECT_EQ(Number(0x0409, 0x80000000 | 18), UNTOUCHED);
    EXPECT_EQ(Number(0x0409, 0x20000000 | 18), UNTOUCHED);
}

TEST(LocaleInfo, NumbersOfLocales)
{
    EXPECT_EQ(Number(0x0409, 4100), 1252U);
    EXPECT_EQ(Number(0x0411, 4100), 932U);
    EXPECT_EQ(Number(0x0439, 4100), 0U);
    EXPECT_EQ(Number(0x0407, 5), 49U);
    EXPECT_EQ(Number(0x0411, 11), 932U);
    EXPECT_EQ(Number(0x0409, 17), 2U);
    EXPECT_EQ(Number(0x0409, 4105), 1U);
}

// A repair would read all digits.
TEST(LocaleInfo, HexadecimalIdsAreReadAsDecimalNumbers)
{
    for (const unsigned type : {1U, 9U}) {
        EXPECT_EQ(Number(0x0409, type), 409U);
        EXPECT_EQ(Number(0x0411, type), 411U);
        EXPECT_EQ(Number(0x0C07, 1), 0U);
    }
    EXPECT_EQ(Number(0x040D, 1), 40U);
    EXPECT_EQ(Number(0x0C09, 1), 0U);
}

// ---- Values of all locales ------------------------------------------------------------------

TEST(LocaleInfo, ValuesOfAllLocalesComeOnceInTheOrderOfFirstSight)
{
    if (!CT_OS::sb_GetIsWindowsNT())
        GTEST_SKIP() << "without wide calls there are no values";
    EXPECT_GT(InstalledLocales().size(), 50U);
    for (const unsigned type : {4100U, 31U, 4098U, 4105U, 14U}) {
        SCOPED_TRACE(type);
        const std::vector<std::u16string> values = DistinctValues(type);
        EXPECT_GT(values.size(), 1U);
        EXPECT_EQ(Collect(type, ';'), Joined(values, u";"));
        EXPECT_EQ(Collect(type, 0x3001), Joined(values, u"\u3001"));
    }
}

TEST(LocaleInfo, WithoutASeparatorTheValuesStandSideBySide)
{
    if (!CT_OS::sb_GetIsWindowsNT())
        GTEST_SKIP() << "without wide calls there are no values";
    EXPECT_EQ(Collect(4100, 0), Joined(DistinctValues(4100), u""));
}

TEST(LocaleInfo, AKindThatNoLocaleHasGivesAnEmptyText)
{
    EXPECT_EQ(Collect(0x7777, ';'), u"");
    EXPECT_EQ(Collect(4110, ';'), u"");
}

TEST(LocaleInfo, WithoutWideCallsThereAreNoValues)
{
    if (CT_OS::sb_GetIsWindowsNT())
        GTEST_SKIP() << "with wide calls there are values";
    EXPECT_EQ(Collect(4100, ';'), u"");
}

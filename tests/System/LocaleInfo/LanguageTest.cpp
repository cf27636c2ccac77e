// tests/System/LocaleInfo/LanguageTest.cpp
#include <System/LocaleInfo/Language.h>

#include <Ostra/String/CString.h>
#include <Ostra/String/UString.h>

#include <ostream>
#include "Ostra/String/StringSupport.h"

namespace
{
using Primary = CT_Language::et_Primary;
using Sub = CT_Language::et_Sub;

constexpr unsigned LANGUAGES = 55;
constexpr unsigned SUBS = 85;

// What the caller left in its variables.
constexpr unsigned UNTOUCHED = 77;

// The result of looking up a code: 0 or 1, and both ordinals.
struct Found
{
    int found = 0;
    unsigned primary = UNTOUCHED;
    unsigned sub = UNTOUCHED;

    bool operator==(const Found&) const = default;
};

void PrintTo(const Found& found, std::ostream* out)
{
    *out << found.found << " " << found.primary << " " << found.sub;
}

Found ReadCode(const CT_String& code)
{
    Primary primary{UNTOUCHED};
    Sub sub{UNTOUCHED};
    const int found = CT_Language::sb_GetLanguages(&primary, &sub, &code);
    return {found, primary, sub};
}

// Of a code of ASCII characters, which is the same in both kinds of strings.
Found ReadCode(const char* code)
{
    const Found narrow = ReadCode(*Make(false, code));
    EXPECT_EQ(ReadCode(*Make(true, code)), narrow) << code;
    return narrow;
}

Found Look(const char* code)
{
    Primary primary{UNTOUCHED};
    const int found = CT_Language::sb_GetPrimary(&primary, code);
    return {found, primary, UNTOUCHED};
}

std::string Display(bool wide, unsigned primary, unsigned sub)
{
    const auto out = Make(wide, "before");
    CT_Language::sv_MakeLanguageString(out.get(), Primary{primary}, Sub{sub});
    return Ascii(*out);
}

std::string Code(bool wide, unsigned primary, unsigned sub)
{
    const auto out = Make(wide, "before");
    CT_Language::sv_MakeLanguageCode(out.get(), Primary{primary}, Sub{sub});
    return Ascii(*out);
}

unsigned IdOf(unsigned primary, unsigned sub)
{
    return CT_Language::sn_MakeLanguageID(Primary{primary}, Sub{sub});
}

// The search as it was always written; the row, or another one where there is none.
unsigned LiteralSearch(const std::vector<unsigned>& numbers, unsigned number, unsigned otherwise)
{
    unsigned low = 0, high = static_cast<unsigned>(numbers.size()) - 1, probe = high / 2;
    for (;;) {
        if (numbers[probe] == number)
            return probe;
        if (number < numbers[probe]) {
            if (probe == high)
                return otherwise;
            high = probe;
            probe = (low + high) / 2;
        } else {
            if (probe == low)
                return otherwise;
            low = probe;
            probe = (low + high + 1) / 2;
        }
    }
}
} // namespace

// ---- The tables -----------------------------------------------------------------------------

TEST(Language, CountsDoNotCountTheNeutralOne)
{
    EXPECT_EQ(CT_Language::sn_GetPrimaryCount(), 54U);
    EXPECT_EQ(CT_Language::sn_GetSubCount(Primary{0}), 0U);
    EXPECT_EQ(CT_Language::sn_GetSubCount(Primary{1}), 16U);
    EXPECT_EQ(CT_Language::sn_GetSubCount(Primary{2}), 0U);
    EXPECT_EQ(CT_Language::sn_GetSubCount(Primary{10}), 20U);
    EXPECT_EQ(CT_Language::sn_GetSubCount(Primary{26}), 2U);
    EXPECT_EQ(CT_Language::sn_GetSubCount(Primary{54}), 3U);
}

TEST(Language, OrdinalsOfLanguagesAreTheirIdsUpTo47AndFollowThemBehindThat)
{
    for (unsigned row = 0; row < 48; ++row)
        EXPECT_EQ(IdOf(row, 0), row);
    const unsigned behind[] = {0x31, 0x34, 0x35, 0x36, 0x38, 0x3A, 0x3C};
    for (unsigned row = 48; row < LANGUAGES; ++row)
        EXPECT_EQ(IdOf(row, 0), behind[row - 48]);
}

TEST(Language, CodesAndNamesStandAsTheyWereWritten)
{
    const struct
    {
        unsigned row;
        const char* code;
        const char* name;
    } languages[] = {
        {0, "NE", "Neutral"},     {13, "IW", "Hebrew"},       {23, "RM", "Rhaeto-Romance"},
        {33, "IN", "Indonesian"}, {35, "BE", "Byelorussian"}, {38, "LV", "Latvian-Lettish"},
        {43, "LO", "Laothian"},   {44, "KA", "Kampuchean"},   {48, "TS", "Tsonga"},
        {52, "FO", "Faeroese"},   {54, "GA", "Gaelic"},
    };
    for (const auto& row : languages) {
        SCOPED_TRACE(row.row);
        EXPECT_STREQ(CT_Language::sqccz_GetLanguageCode(Primary{row.row}), row.code);
        EXPECT_STREQ(CT_Language::sqccz_GetLanguage(Primary{row.row}), row.name);
    }
    const struct
    {
        unsigned row;
        const char* code;
        const char* name;
    } countries[] = {
        {0, "00", "Neutral"},      {1, "01", "Default"},    {2, "02", "SysDefault"},
        {3, "SA", "Saudi Arabia"}, {16, "AE", "UAE"},       {21, "HK", "Hongkong"},
        {25, "AT", "Austria"},     {36, "CB", "Caribbean"}, {41, "EM", "Modern Sort"},
        {58, "PR", "Puerto Rico"}, {67, "JH", "Johab"},     {71, "NY", "Nynorsk"},
        {79, "YU", "Yugoslavia"},  {84, "CT", "Scotland"},
    };
    for (const auto& row : countries) {
        SCOPED_TRACE(row.row);
        EXPECT_STREQ(CT_Language::sqccz_GetCountryCode(Sub{row.row}), row.code);
        EXPECT_STREQ(CT_Language::sqccz_GetCountry(Sub{row.row}), row.name);
    }
}

TEST(Language, SublanguagesAreCountedFromOne)
{
    EXPECT_EQ(CT_Language::seo_GetSubAt(Primary{7}, 1), 23U);
    EXPECT_EQ(CT_Language::seo_GetSubAt(Primary{7}, 5), 27U);
    EXPECT_EQ(CT_Language::seo_GetSubAt(Primary{54}, 3), 84U);
    // Serbo-Croatian has none with the number 1.
    EXPECT_EQ(CT_Language::seo_GetSubAt(Primary{26}, 1), 78U);
    EXPECT_EQ(CT_Language::seo_GetSubAt(Primary{26}, 2), 79U);
}

TEST(Language, ASublanguageThatIsNotThereIsTheDefaultOne)
{
    EXPECT_EQ(CT_Language::seo_GetSubAt(Primary{7}, 0), 1U);
    EXPECT_EQ(CT_Language::seo_GetSubAt(Primary{7}, 6), 1U);
    EXPECT_EQ(CT_Language::seo_GetSubAt(Primary{7}, 0xFFFFFFFF), 1U);
    EXPECT_EQ(CT_Language::seo_GetSubAt(Primary{2}, 1), 1U);
    EXPECT_EQ(CT_Language::seo_GetSubAt(Primary{53}, 1), 1U);
    EXPECT_EQ(CT_Language::seo_GetSubAt(Primary{54}, 4), 1U);
    EXPECT_EQ(CT_Language::seo_GetSubAt(Primary{54}, 0xFFFFFFFF), 1U);
}

TEST(Language, TheNeutralLanguageHasTheRowsOfAnyAlthoughItsCountIsNone)
{
    EXPECT_EQ(CT_Language::seo_GetSubAt(Primary{0}, 1), 1U);
    EXPECT_EQ(CT_Language::seo_GetSubAt(Primary{0}, 2), 2U);
    EXPECT_EQ(CT_Language::seo_GetSubAt(Primary{0}, 3), 1U);
    EXPECT_EQ(CT_Language::seo_GetDefaultSub(Primary{0}), 1U);
}

TEST(Language, TheDefaultSublanguageIsTheFirst)
{
    EXPECT_EQ(CT_Language::seo_GetDefaultSub(Primary{2}), 1U);
    EXPECT_EQ(CT_Language::seo_GetDefaultSub(Primary{9}), 28U);
    EXPECT_EQ(CT_Language::seo_GetDefaultSub(Primary{26}), 78U);
    EXPECT_EQ(CT_Language::seo_GetDefaultSub(Primary{54}), 82U);
}

TEST(Language, EverySublanguageButTheCommonOnesIsOneOfALanguage)
{
    std::vector<unsigned> rows;
    for (unsigned primary = 0; primary < LANGUAGES; ++primary) {
        const unsigned count = CT_Language::sn_GetSubCount(Primary{primary});
        for (unsigned n = 1; n <= count; ++n)
            rows.push_back(CT_Language::seo_GetSubAt(Primary{primary}, n));
    }
    ASSERT_EQ(rows.size(), SUBS - 3);
    for (unsigned n = 0; n < rows.size(); ++n)
        EXPECT_EQ(rows[n], n + 3);
}

TEST(Language, FarEastIsChineseJapaneseKoreanAndThai)
{
    for (unsigned row = 0; row < LANGUAGES; ++row) {
        SCOPED_TRACE(row);
        const bool expected = row == 4 || row == 17 || row == 18 || row == 30;
        EXPECT_EQ(CT_Language::sb_IsFarEastLanguage(Primary{row}, Sub{1}), expected);
        EXPECT_EQ(CT_Language::sb_IsFarEastLanguage(Primary{row}, Sub{19}), expected);
    }
}

// ---- Ids ------------------------------------------------------------------------------------

TEST(Language, AnIdIsMadeAndTakenApart)
{
    EXPECT_EQ(CT_Language::seo_GetPrimary(0x0409), 9U);
    EXPECT_EQ(CT_Language::seo_GetSub(0x0409), 28U);
    EXPECT_EQ(IdOf(9, 28), 0x0409U);
    EXPECT_EQ(IdOf(7, 25), 0x0C07U);
    EXPECT_EQ(IdOf(54, 84), 0x0C3CU);
    EXPECT_EQ(CT_Language::seo_GetPrimary(0x0C3C), 54U);
    EXPECT_EQ(CT_Language::seo_GetPrimary(0x0431), 48U);
}

TEST(Language, EveryIdOfTheTablesComesBack)
{
    for (unsigned primary = 1; primary < LANGUAGES; ++primary) {
        const unsigned count = CT_Language::sn_GetSubCount(Primary{primary});
        for (unsigned n = 1; n <= count; ++n) {
            const Sub sub = CT_Language::seo_GetSubAt(Primary{primary}, n);
            const unsigned id = IdOf(primary, sub);
            SCOPED_TRACE(id);
            EXPECT_EQ(CT_Language::seo_GetPrimary(id), primary);
            EXPECT_EQ(CT_Language::seo_GetSub(id), sub);
        }
    }
}

TEST(Language, TheCommonSublanguagesTakeTheLanguage)
{
    EXPECT_EQ(IdOf(9, 0), 0x0009U);
    EXPECT_EQ(IdOf(9, 1), 0x0409U);
    EXPECT_EQ(IdOf(54, 2), 0x083CU);
    EXPECT_EQ(IdOf(0, 2), 0x0800U);
}

// A repair would look at the language.
TEST(Language, ASublanguageDecidesTheIdWhateverTheLanguage)
{
    EXPECT_EQ(IdOf(2, 28), 0x0409U);
    EXPECT_EQ(IdOf(54, 23), 0x0407U);
}

TEST(Language, EveryIdIsFoundAsTheLiteralSearchFindsIt)
{
    std::vector<unsigned> ids, keys = {0, 1, 2};
    for (unsigned row = 0; row < LANGUAGES; ++row)
        ids.push_back(IdOf(row, 0));
    for (unsigned row = 3; row < SUBS; ++row)
        keys.push_back(IdOf(0, row) % 1024 * 256 + IdOf(0, row) / 1024);
    for (unsigned id = 0; id < 0x10000; ++id) {
        const unsigned primary = id % 1024;
        const unsigned sub = LiteralSearch(keys, primary * 256 + id / 1024, 1);
        if (CT_Language::seo_GetPrimary(id) != LiteralSearch(ids, primary, 0) ||
            CT_Language::seo_GetSub(id) != sub)
            FAIL() << id;
    }
}

TEST(Language, UnknownIdsAreNeutralAndDefault)
{
    EXPECT_EQ(CT_Language::seo_GetPrimary(0x30), 0U);
    EXPECT_EQ(CT_Language::seo_GetPrimary(0x3FF), 0U);
    EXPECT_EQ(CT_Language::seo_GetPrimary(0x3D), 0U);
    EXPECT_EQ(CT_Language::seo_GetSub(0x0430), 1U);
    // Not listed for a language that is: Bulgarian of Bulgaria, Serbian, neutral English.
    EXPECT_EQ(CT_Language::seo_GetSub(0x0402), 1U);
    EXPECT_EQ(CT_Language::seo_GetSub(0x041A), 1U);
    EXPECT_EQ(CT_Language::seo_GetSub(0x0009), 1U);
    EXPECT_EQ(CT_Language::seo_GetSub(0xFC09), 1U);
}

TEST(Language, SublanguagesOfTheNeutralLanguageAreTheCommonOnes)
{
    EXPECT_EQ(CT_Language::seo_GetSub(0x0000), 0U);
    EXPECT_EQ(CT_Language::seo_GetSub(0x0400), 1U);
    EXPECT_EQ(CT_Language::seo_GetSub(0x0800), 2U);
    EXPECT_EQ(CT_Language::seo_GetSub(0x0C00), 1U);
}

TEST(Language, BitsAboveTheIdDoNotCount)
{
    EXPECT_EQ(CT_Language::seo_GetPrimary(0xFFFF0409), 9U);
    EXPECT_EQ(CT_Language::seo_GetSub(0xFFFF0409), 28U);
    EXPECT_EQ(CT_Language::seo_GetSub(0x00010407), 23U);
    EXPECT_EQ(CT_Language::seo_GetSub(0x00010000), 0U);
}

TEST(Language, BothOrdinalsAreThoseOfTheSingleOperations)
{
    for (unsigned id = 0; id < 0x10000; ++id) {
        Primary primary{UNTOUCHED};
        Sub sub{UNTOUCHED};
        CT_Language::sv_GetLanguages(id, &primary, &sub);
        if (primary != CT_Language::seo_GetPrimary(id) || sub != CT_Language::seo_GetSub(id))
            FAIL() << id;
    }
}

// ---- Codes ----------------------------------------------------------------------------------

TEST(Language, EachCodeOfALanguageIsFound)
{
    for (unsigned row = 0; row < LANGUAGES; ++row)
        EXPECT_EQ(Look(CT_Language::sqccz_GetLanguageCode(Primary{row})),
                  (Found{1, row, UNTOUCHED}));
}

TEST(Language, ACodeIsFoundInCapitalsAndWhole)
{
    for (const char* code : {"en", "En", "E", "ENG", "XX", "N", "EN_US", " EN", "1"})
        EXPECT_EQ(Look(code), Found()) << code;
}

TEST(Language, CodesOfReservedElementsAreNotFound)
{
    for (const char* code : {"\n", "\r\n", "E\n", "E\r", "\x19\x1A", "\x1A", "AR\x1A", "AR\n"})
        EXPECT_EQ(Look(code), Found()) << code;
}

// A repair would find nothing.
TEST(Language, TheEmptyCodeIsTheNeutralLanguage)
{
    EXPECT_EQ(Look(""), (Found{1, 0, UNTOUCHED}));
}

TEST(Language, DisplayTextsNameLanguageAndCountry)
{
    OnBoth([](bool wide) {
        EXPECT_EQ(Display(wide, 7, 25), "German (Austria)");
        EXPECT_EQ(Display(wide, 54, 84), "Gaelic (Scotland)");
        EXPECT_EQ(Display(wide, 9, 1), "English (Default)");
        EXPECT_EQ(Display(wide, 9, 23), "English (Germany)");
    });
}

TEST(Language, ALanguageWithoutSublanguagesIsShownAlone)
{
    OnBoth([](bool wide) {
        EXPECT_EQ(Display(wide, 2, 1), "Bulgarian");
        EXPECT_EQ(Display(wide, 0, 2), "Neutral");
        EXPECT_EQ(Display(wide, 38, 28), "Latvian-Lettish");
    });
}

TEST(Language, ADisplayTextKeepsTheCodePageOfTheString)
{
    CT_CString out("before", ALL, 1253);
    CT_Language::sv_MakeLanguageString(&out, Primary{2}, Sub{1});
    EXPECT_EQ(out.n_GetCodePage(), 1253U);
    CT_Language::sv_MakeLanguageString(&out, Primary{7}, Sub{25});
    EXPECT_EQ(out.n_GetCodePage(), 1253U);
}

TEST(Language, CodeTextsAreMadeForEverySublanguage)
{
    OnBoth([](bool wide) {
        EXPECT_EQ(Code(wide, 7, 25), "DE_AT");
        EXPECT_EQ(Code(wide, 9, 1), "EN_01");
        EXPECT_EQ(Code(wide, 2, 1), "BG_01");
        EXPECT_EQ(Code(wide, 0, 0), "NE_00");
        EXPECT_EQ(Code(wide, 0, 2), "NE_02");
    });
}

TEST(Language, ACodeTextIsReadInAnyCaseWithAnySeparator)
{
    for (const char* code : {"en_us", "EN-US", "eN uS", "en_usxyz", "EN\xFFUS", "ENXUS"})
        EXPECT_EQ(ReadCode(code), (Found{1, 9, 28})) << code;
    EXPECT_EQ(ReadCode("de_AT"), (Found{1, 7, 25}));
    EXPECT_EQ(ReadCode("ga_ct"), (Found{1, 54, 84}));
    EXPECT_EQ(ReadCode("sh_hr"), (Found{1, 26, 78}));
}

TEST(Language, EachCodeTextOfALanguageWithSublanguagesIsReadBack)
{
    for (unsigned primary = 1; primary < LANGUAGES; ++primary) {
        for (unsigned n = 1; n <= CT_Language::sn_GetSubCount(Primary{primary}); ++n) {
            const unsigned sub = CT_Language::seo_GetSubAt(Primary{primary}, n);
            EXPECT_EQ(ReadCode(Code(false, primary, sub).c_str()), (Found{1, primary, sub}));
        }
    }
}

TEST(Language, AShortCodeTextIsNone)
{
    for (const char* code : {"", "E", "EN", "EN_", "EN_X", "BG", "BG_x"})
        EXPECT_EQ(ReadCode(code), Found()) << code;
}

TEST(Language, ALanguageWithoutSublanguagesIgnoresTheCountry)
{
    for (const char* code : {"BG_xx", "bg_BG", "BGARI", "bg___"})
        EXPECT_EQ(ReadCode(code), (Found{1, 2, 1})) << code;
    EXPECT_EQ(ReadCode("NE_01"), (Found{1, 0, 1}));
}

TEST(Language, AnUnknownLanguageIsNotRead)
{
    for (const char* code : {"XX_US", "_EN_US", "12_34", "\xE4\xF6_US"})
        EXPECT_EQ(ReadCode(code), Found()) << code;
}

TEST(Language, AnUnknownCountryIsToldAfterTheLanguageIsWritten)
{
    for (const char* code : {"EN_XX", "EN_01", "EN_DE", "EN_U ", "SH_SP"})
        EXPECT_EQ(ReadCode(code).found, 0) << code;
    EXPECT_EQ(ReadCode("EN_XX"), (Found{0, 9, UNTOUCHED}));
}

// They are compared by the system's code page.
TEST(Language, UnitsOutsideOfCodesAreNotRead)
{
    EXPECT_EQ(ReadCode(CT_UString(u"\u0445\u044E_us")), Found());
    EXPECT_EQ(ReadCode(CT_UString(u"en_\u0445s")), (Found{0, 9, UNTOUCHED}));
    EXPECT_EQ(ReadCode(CT_UString(u"en\U0001F600us")).found, 0);
    EXPECT_EQ(ReadCode(CT_UString(u"en\u4E00us")), (Found{1, 9, 28}));
}

// Casing is that of A to Z: no other letter of a code page is changed.
TEST(Language, OnlyLettersOfCodesAreFolded)
{
    EXPECT_EQ(ReadCode("\x65\x6E_\x75\x73"), (Found{1, 9, 28}));
    EXPECT_EQ(ReadCode("{n_us"), Found());
    EXPECT_EQ(ReadCode("`n_us"), Found());
}

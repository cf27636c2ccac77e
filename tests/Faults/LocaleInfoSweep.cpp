// tests/Faults/LocaleInfoSweep.cpp: languages, locales and numbers with an exhausted heap.
#include <System/LocaleInfo/FormatString.h>
#include <System/LocaleInfo/Language.h>
#include <System/LocaleInfo/LocaleInfo.h>

#include <Ostra/String/CString.h>
#include <Ostra/String/UString.h>
#include <System/OS/OS.h>

#include "Faults/Sweep.h"
#include "Ostra/String/StringSupport.h"
#include "Support/Private.h"

OSTRA_PRIVATE(InitLanguages, void (*)(), &CT_Language::sv_Init);
OSTRA_PRIVATE(ExitLanguages, void (*)(), &CT_Language::sv_Exit);

namespace
{
// The language table goes down for a test, and comes up again behind it.
class LanguageSweep : public testing::Test
{
protected:
    LanguageSweep() { Private(ExitLanguages())(); }
    ~LanguageSweep() override { Private(InitLanguages())(); }
};

// Ends what the operation has begun.
struct Languages
{
    ~Languages() { Private(ExitLanguages())(); }
};

// How many codes are found, each of which has to be the right one.
unsigned KnownCodes()
{
    unsigned known = 0;
    for (unsigned row = 0; row <= CT_Language::sn_GetPrimaryCount(); ++row) {
        const CT_Language::et_Primary expected{row};
        CT_Language::et_Primary primary{};
        if (CT_Language::sb_GetPrimary(&primary, CT_Language::sqccz_GetLanguageCode(expected))) {
            EXPECT_EQ(primary, expected);
            ++known;
        }
    }
    return known;
}

// Without a block.
std::unique_ptr<CT_String> MakeEmpty(bool wide)
{
    if (wide)
        return std::make_unique<CT_UString>();
    return std::make_unique<CT_CString>(1252);
}

// Writes into an empty string; without memory it stays empty.
void SweepString(bool wide, void (*operation)(CT_String*), const char* after)
{
    Sweep(
        "Ostra/Buffer/Buffer", [wide] { return MakeEmpty(wide); },
        [operation](CT_String& string) { operation(&string); },
        [after](CT_String& string, bool failed) { EXPECT_EQ(Ascii(string), failed ? "" : after); });
}
} // namespace

TEST_F(LanguageSweep, ATableThatFindsNoRoomKnowsNoCode)
{
    Sweep(
        {"Ostra/CompList/CompList", "Ostra/Buffer/Buffer"},
        [] { return std::make_unique<Languages>(); },
        [](Languages&) { Private(InitLanguages())(); },
        [](Languages&, bool failed) {
            const unsigned known = KnownCodes();
            EXPECT_EQ(known, failed ? 0U : 55U);
            EXPECT_STREQ(CT_Language::sqccz_GetLanguage(CT_Language::seo_GetPrimary(0x0407)),
                         "German");
        });
}

TEST_F(LanguageSweep, WithoutATableNoCodeIsKnown)
{
    EXPECT_EQ(KnownCodes(), 0U);
    CT_Language::et_Primary primary{77};
    CT_Language::et_Sub sub{77};
    const CT_CString code("EN_US", ALL, 1252);
    EXPECT_EQ(CT_Language::sb_GetLanguages(&primary, &sub, &code), 0);
    EXPECT_EQ(primary, 77U);
    EXPECT_EQ(sub, 77U);
}

TEST(LocaleInfoSweep, LanguageTextsThatFindNoRoomLeaveTheString)
{
    for (const bool wide : {false, true}) {
        SCOPED_TRACE(wide);
        SweepString(
            wide,
            [](CT_String* out) {
                CT_Language::sv_MakeLanguageString(out, CT_Language::et_Primary{10},
                                                   CT_Language::et_Sub{45});
            },
            "Spanish (Dominican Republic)");
        SweepString(
            wide,
            [](CT_String* out) {
                CT_Language::sv_MakeLanguageString(out, CT_Language::et_Primary{38},
                                                   CT_Language::et_Sub{1});
            },
            "Latvian-Lettish");
        SweepString(
            wide,
            [](CT_String* out) {
                CT_Language::sv_MakeLanguageCode(out, CT_Language::et_Primary{10},
                                                 CT_Language::et_Sub{45});
            },
            "ES_DO");
    }
}

TEST(LocaleInfoSweep, AFactThatFindsNoRoomLeavesTheString)
{
    for (const bool wide : {false, true}) {
        SCOPED_TRACE(wide);
        SweepString(
            wide,
            [](CT_String* out) {
                CT_LocaleInfo::sb_GetLocaleInfo(0x0409, CT_LocaleInfo::lt_EnglishCountry, out);
            },
            "United States");
    }
}

TEST(LocaleInfoSweep, ANumberThatFindsNoRoomLeavesTheString)
{
    for (const bool wide : {false, true}) {
        SCOPED_TRACE(wide);
        SweepString(
            wide,
            [](CT_String* out) { CT_FormatString::sb_FormatNumber(out, 1234567U, 0x0409, 2, 3); },
            "1,234,567.00");
        SweepString(
            wide,
            [](CT_String* out) { CT_FormatString::sb_FormatNumber(out, -0.5F, 0x0407, 2, 3); },
            "-0,50");
    }
}

// What could not be had is left out, and the error tells it.
TEST(LocaleInfoSweep, ValuesOfAllLocalesThatFindNoRoomAreFewer)
{
    if (!CT_OS::sb_GetIsWindowsNT())
        GTEST_SKIP() << "without wide calls there are no values";
    CT_UString whole;
    CT_LocaleInfo::sv_CollectValues(CT_LocaleInfo::lt_Calendar, 0, &whole);
    Sweep(
        {"Ostra/Buffer/Buffer", "Ostra/String/UString", "Ostra/ARRAY/VoidArray"},
        [] { return std::make_unique<CT_UString>(); },
        [](CT_UString& out) {
            CT_LocaleInfo::sv_CollectValues(CT_LocaleInfo::lt_Calendar, 0, &out);
        },
        [&whole](CT_UString& out, bool failed) {
            EXPECT_TRUE(failed || Text(out) == Text(whole));
            CT_LocaleInfo::sv_CollectValues(CT_LocaleInfo::lt_Calendar, 0, &out);
            EXPECT_EQ(Text(out), Text(whole));
        });
}

// winapi/tests/Locale/LocaleTest.cpp: which locales there are.
#include "../Support/Locales.h"

#include <set>
#include <thread>

namespace
{
std::vector<std::string> told;
int most; // After so many the callback has enough.

template <class Unit>
BOOL CALLBACK Take(Unit* text)
{
    told.emplace_back();
    for (; *text; ++text)
        told.back() += static_cast<char>(*text);
    return static_cast<int>(told.size()) < most;
}

template <class Call, class Unit>
std::vector<std::string> Enumerated(Call call, BOOL(CALLBACK* take)(Unit*), int count)
{
    told.clear();
    most = count;
    EXPECT_TRUE(call(take, LCID_INSTALLED));
    return told;
}
} // namespace

TEST(Locale, AllLocalesAreEnumeratedInOneOrder)
{
    std::vector<std::string> expected;
    for (const Fields& row : ReadTable("locale-facts.tsv"))
        if (row[0] != "007f")
            expected.push_back("0000" + row[0]);
    ASSERT_EQ(expected.size(), 255U);
    EXPECT_EQ(Enumerated(EnumSystemLocalesW, Take<WCHAR>, 1000), expected);
    EXPECT_EQ(Enumerated(EnumSystemLocalesA, Take<char>, 1000), expected);
}

TEST(Locale, TheEnumerationEndsWhenTheCallbackHasEnough)
{
    EXPECT_EQ(Enumerated(EnumSystemLocalesW, Take<WCHAR>, 3).size(), 3U);
    EXPECT_EQ(Enumerated(EnumSystemLocalesA, Take<char>, 1).size(), 1U);
}

TEST(Locale, EveryIdWithDataIsValid)
{
    for (const char* table : {"locale-facts.tsv", "locale-aliases.tsv"})
        for (const Fields& row : ReadTable(table)) {
            EXPECT_TRUE(IsValidLocale(IdOf(row[0]), LCID_INSTALLED)) << row[0];
            EXPECT_TRUE(IsValidLocale(IdOf(row[0]), LCID_SUPPORTED)) << row[0];
        }
}

TEST(Locale, OtherIdsArentValid)
{
    std::set<LCID> known;
    for (const char* table : {"locale-facts.tsv", "locale-aliases.tsv"})
        for (const Fields& row : ReadTable(table))
            known.insert(IdOf(row[0]));
    // Among them are the ids that stand for the process's locale.
    for (const LCID lcid : {0x0U, 0x400U, 0x800U, 0x80DU, 0x7409U, 0x20407U, 0x10409U, 0xFFFFFFFFU})
        EXPECT_FALSE(known.contains(lcid)) << std::hex << lcid;
    if (!HOST_PATHS) // The reference run takes these without having data for them.
        known.insert({0x60, 0x84, 0x460, 0x1007F});
    for (LCID lcid = 0; lcid < 0x60000; ++lcid)
        ASSERT_EQ(IsValidLocale(lcid, LCID_SUPPORTED) != 0, known.contains(lcid))
            << std::hex << lcid;
    RunRows({
        CALL(IsValidLocale(0x80D, LCID_INSTALLED), 0, 0),
        CALL(IsValidLocale(0xFFFFFFFF, LCID_INSTALLED), 0, 0),
    });
}

TEST(Locale, TheDefaultsAreOneAndTheSame)
{
    const LCID own = GetUserDefaultLCID();
    EXPECT_TRUE(IsValidLocale(own, LCID_INSTALLED));
    EXPECT_EQ(GetSystemDefaultLCID(), own);
    EXPECT_EQ(GetUserDefaultLangID(), own & 0xFFFF);
    EXPECT_EQ(GetSystemDefaultLangID(), own & 0xFFFF);
    for (const LCID lcid : {LOCALE_NEUTRAL, LOCALE_USER_DEFAULT, LOCALE_SYSTEM_DEFAULT})
        EXPECT_EQ(FactA(lcid, LOCALE_ILANGUAGE), FactA(own, LOCALE_ILANGUAGE));
}

TEST(Locale, AThreadHasALocaleOfItsOwn)
{
    const LCID own = GetThreadLocale();
    EXPECT_EQ(own, GetUserDefaultLCID());
    EXPECT_TRUE(SetThreadLocale(0x411));
    EXPECT_EQ(GetThreadLocale(), 0x411U);
    std::thread([&] {
        EXPECT_EQ(GetThreadLocale(), own);
        EXPECT_TRUE(SetThreadLocale(0x407));
    }).join();
    EXPECT_EQ(GetThreadLocale(), 0x411U);
    EXPECT_TRUE(SetThreadLocale(own));
}

TEST(Locale, AThreadsLocaleIsOneThatThereAreDataFor)
{
    const LCID own = GetThreadLocale();
    RunRows({
        CALL(SetThreadLocale(7), 1, 0),
        CALL(GetThreadLocale(), 0x407, 0),
        CALL(SetThreadLocale(0x10407), 1, 0),
        CALL(GetThreadLocale(), 0x407, 0),
        CALL(SetThreadLocale(0x80D), 0, ERROR_INVALID_PARAMETER),
        CALL(GetThreadLocale(), 0x407, 0),
        CALL(SetThreadLocale(LOCALE_INVARIANT), 1, 0),
        CALL(GetThreadLocale(), 0x7F, 0),
        CALL(SetThreadLocale(LOCALE_USER_DEFAULT), 1, 0),
        CALL(GetThreadLocale(), GetUserDefaultLCID(), 0),
    });
    SetThreadLocale(own);
}

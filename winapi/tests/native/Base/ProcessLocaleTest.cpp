// winapi/tests/native/Base/ProcessLocaleTest.cpp: the process's locale and the code pages that it names.
#include "../../Support/Calls.h"

#include "Base/ProcessLocale.h"
#include "Support/ChildProcess.h"

#include <cstdlib>
#include <map>

#include <unicode/uloc.h>

using namespace winapi;

// Tells the code pages, then the bytes that a Cyrillic letter has in the ANSI page.
CHILD_PROCESS(CodePages)
{
    const WCHAR letter[] = {0x0416};
    char bytes[8];
    const int count = WideCharToMultiByte(CP_ACP, 0, letter, 1, bytes, 8, nullptr, nullptr);
    setenv("LC_ALL", "ja_JP.UTF-8", 1); // too late: the locale stands since its first use
    std::printf("%u %u %d\n", GetACP(), GetOEMCP(), count);
    std::fflush(stdout);
    return 0;
}

namespace
{
// What a child says that has these variables, and no other ones that name a locale.
std::string CodePagesWith(const std::map<std::string, std::string>& variables)
{
    std::map<std::string, std::string> kept;
    for (const char* name : {"LC_ALL", "LC_CTYPE", "LANG"}) {
        if (const char* value = std::getenv(name))
            kept[name] = value;
        unsetenv(name);
    }
    for (const auto& [name, value] : variables)
        setenv(name.c_str(), value.c_str(), 1);
    ChildProcess child("CodePages");
    const std::string line = child.ReadLine();
    EXPECT_EQ(0, child.Wait());
    for (const char* name : {"LC_ALL", "LC_CTYPE", "LANG"})
        kept.contains(name) ? setenv(name, kept[name].c_str(), 1) : unsetenv(name);
    return line;
}
} // namespace

TEST(Locale, NamesOfTheHostAreFound)
{
    const struct
    {
        const char* name;
        const char* tag;
    } rows[] = {
        {"en_US.UTF-8", "en-US"},
        {"de_DE", "de-DE"},
        {"de_AT.ISO-8859-1@euro", "de-AT"},
        {"pt_BR@euro", "pt-BR"},
        {"ru_RU.KOI8-R", "ru-RU"},
        {"zh_TW.Big5", "zh-TW"},
        {"sr_RS", "sr-Cyrl-RS"},
        {"sr_RS@latin", "sr-Latn-RS"},
        {"uz_UZ", "uz-Latn-UZ"},
        {"uz_UZ@cyrillic", "uz-Cyrl-UZ"},
        {"az_AZ", "az-Latn-AZ"},
        {"bs_BA", "bs-Latn-BA"},
        {"sd_IN@devanagari", "sd-Deva-IN"},
        {"ca_ES@valencia", "ca-ES-valencia"},
        {"ca_ES", "ca-ES"},
        {"es_419", "es-419"},
        {"fr", "fr-FR"},
        {"ja.UTF-8", "ja-JP"},
        {"sah_RU", "sah-RU"},
    };
    for (const auto& row : rows)
        EXPECT_STREQ(row.tag, FindLocale(row.name).tag) << row.name;
}

TEST(Locale, WhatIsUnknownIsEnglish)
{
    for (const char* name :
         {"", "C", "POSIX", "C.UTF-8", "xx_YY", "de_XX", "_DE", ".UTF-8", "@euro", "xx",
          "verylonglanguage_DE", "de_VERYLONGREGION", "sr_RS@tengwar", "de-DE"}) {
        const char* const expected = std::string(name) == "sr_RS@tengwar" ? "sr-Cyrl-RS" : "en-US";
        EXPECT_STREQ(expected, FindLocale(name).tag) << name;
    }
}

TEST(Locale, FirstVariableThatIsSetNamesTheCodePages)
{
    EXPECT_EQ("1252 437 1", CodePagesWith({}));
    EXPECT_EQ("1251 866 1", CodePagesWith({{"LANG", "ru_RU.UTF-8"}}));
    EXPECT_EQ("1251 866 1", CodePagesWith({{"LC_CTYPE", "ru_RU.UTF-8"}, {"LANG", "de_DE"}}));
    EXPECT_EQ("1252 850 1", CodePagesWith({{"LC_ALL", "de_DE"}, {"LC_CTYPE", "ru_RU.UTF-8"}}));
    EXPECT_EQ("1251 866 1", CodePagesWith({{"LC_ALL", ""}, {"LC_CTYPE", ""}, {"LANG", "ru_RU"}}));
    EXPECT_EQ("1252 437 1", CodePagesWith({{"LC_ALL", "C.UTF-8"}, {"LANG", "ru_RU"}}));
    EXPECT_EQ("932 932 2", CodePagesWith({{"LANG", "ja_JP"}}));
}

TEST(Locale, LocalesWithoutACodePageHaveUtf8)
{
    EXPECT_EQ("65001 65001 2", CodePagesWith({{"LANG", "hi_IN.UTF-8"}}));
    EXPECT_EQ("65001 65001 2", CodePagesWith({{"LANG", "ka_GE"}}));
}

// Told without ICU, for asking the code page mustn't load it.
TEST(Locale, AScriptThatIsntNamedIsTheUsualOneThatIcuKnows)
{
    int scripts = 0;
    for (unsigned i = 0; i < localeCount; ++i) {
        const std::string tag = locales[i].tag;
        const std::size_t dash = tag.find('-');
        if (tag.find('-', dash + 1) != dash + 5)
            continue;
        const std::string name = tag.substr(0, dash) + "_" + tag.substr(dash + 6);
        char full[ULOC_FULLNAME_CAPACITY];
        char script[ULOC_SCRIPT_CAPACITY];
        UErrorCode error = U_ZERO_ERROR;
        uloc_addLikelySubtags(name.c_str(), full, sizeof full, &error);
        uloc_getScript(full, script, sizeof script, &error);
        EXPECT_EQ(FindLocale(name.c_str()).tag == tag, tag.substr(dash + 1, 4) == script) << tag;
        ++scripts;
    }
    EXPECT_EQ(scripts, 29);
}

TEST(Locale, CodePagesOfAllLocalesExist)
{
    EXPECT_EQ(256u, localeCount);
    for (unsigned i = 0; i < localeCount; ++i) {
        SCOPED_TRACE(locales[i].tag);
        for (UINT page : {locales[i].ansiPage, locales[i].oemPage, locales[i].macPage})
            EXPECT_TRUE(page < 3 || IsValidCodePage(page)) << page;
    }
}

TEST(Locale, EachLanguageHasAHome)
{
    for (unsigned i = 0; i < languageHomeCount; ++i)
        EXPECT_EQ(languageHomes[i].lcid, FindLocale(languageHomes[i].language).lcid)
            << languageHomes[i].language;
}

// winapi/tests/native/Locale/ProcessLocaleIdTest.cpp: the ids and texts of the process's locale.
#include "../../Support/Locales.h"

#include "Support/ChildProcess.h"

#include <clocale>
#include <cstdlib>
#include <map>

// Tells the ids, and the name of the first day in the process's locale and in the thread's.
CHILD_PROCESS(LocaleIds)
{
    char user[64];
    char thread[64];
    GetLocaleInfoA(LOCALE_USER_DEFAULT, LOCALE_SNAME, user, sizeof user);
    GetLocaleInfoA(GetThreadLocale(), LOCALE_SNAME, thread, sizeof thread);
    setenv("LC_ALL", "fr_FR.UTF-8", 1); // Too late: the locale stands since its first use.
    std::printf("%04x %04x %04x %04x %04x %s %s %s\n", static_cast<unsigned>(GetUserDefaultLCID()),
                static_cast<unsigned>(GetSystemDefaultLCID()), GetUserDefaultLangID(),
                GetSystemDefaultLangID(), static_cast<unsigned>(GetThreadLocale()), user, thread,
                std::setlocale(LC_ALL, nullptr));
    std::fflush(stdout);
    return 0;
}

namespace
{
std::string IdsWith(const std::map<std::string, std::string>& variables)
{
    std::map<std::string, std::string> kept;
    for (const char* name : {"LC_ALL", "LC_CTYPE", "LANG"}) {
        if (const char* value = std::getenv(name))
            kept[name] = value;
        unsetenv(name);
    }
    for (const auto& [name, value] : variables)
        setenv(name.c_str(), value.c_str(), 1);
    ChildProcess child("LocaleIds");
    const std::string line = child.ReadLine();
    EXPECT_EQ(0, child.Wait());
    for (const char* name : {"LC_ALL", "LC_CTYPE", "LANG"})
        kept.contains(name) ? setenv(name, kept[name].c_str(), 1) : unsetenv(name);
    return line;
}
} // namespace

TEST(ProcessLocaleId, ItIsThatOfTheFirstVariableThatSaysSomething)
{
    const std::string german = "0407 0407 0407 0407 0407 de-DE de-DE C";
    const std::string japanese = "0411 0411 0411 0411 0411 ja-JP ja-JP C";
    const std::string english = "0409 0409 0409 0409 0409 en-US en-US C";
    EXPECT_EQ(IdsWith({{"LC_ALL", "de_DE.UTF-8"}, {"LC_CTYPE", "ja_JP.UTF-8"}}), german);
    EXPECT_EQ(IdsWith({{"LC_ALL", ""}, {"LC_CTYPE", "ja_JP.UTF-8"}, {"LANG", "de_DE"}}), japanese);
    EXPECT_EQ(IdsWith({{"LANG", "de_DE@euro"}}), german);
    EXPECT_EQ(IdsWith({}), english);
    EXPECT_EQ(IdsWith({{"LC_ALL", "C.UTF-8"}}), english);
    EXPECT_EQ(IdsWith({{"LC_ALL", "POSIX"}}), english);
    EXPECT_EQ(IdsWith({{"LC_ALL", "xx_YY.UTF-8"}}), english);
    EXPECT_EQ(IdsWith({{"LC_ALL", "sr_RS@latin"}}),
              "241a 241a 241a 241a 241a sr-Latn-RS sr-Latn-RS C");
}

TEST(ProcessLocaleId, LocalesThatIcuLacksDontTakeTheTextsOfTheProcessesLocale)
{
    // Mapudungun: what ICU doesn't have is English, whatever the variables say.
    setenv("LC_ALL", "de_DE.UTF-8", 1);
    EXPECT_EQ(Utf8(FactW(0x47A, LOCALE_SNATIVECTRYNAME)), "Chile");
    EXPECT_EQ(Utf8(FactW(0x47A, LOCALE_SENGCOUNTRY)), "Chile");
    unsetenv("LC_ALL");
}

// examples/almanac/Almanac.cpp
#include "Almanac.h"

#include "Locales.h"
#include "Pages.h"
#include "Reading.h"

#include <Common/Utf8.h>

#include <Ostra/Frame/ErrorManager.h>
#include <System/LocaleInfo/LocaleInfo.h>
#include <System/Time/Time.h>

#include <cctype>
#include <cstdlib>

namespace almanac
{
namespace
{
const char USAGE_TEXT[] = "usage: almanac YEAR-MONTH [OPTION...]\n"
                          "       almanac read TEXT [OPTION...]\n"
                          "       almanac locales\n"
                          "Try almanac --help.\n";

// tools/manpage.py makes the manual page of it.
const char HELP_TEXT[] =
    "usage: almanac YEAR-MONTH [OPTION...]\n"
    "       almanac read TEXT [OPTION...]\n"
    "       almanac locales\n"
    "\n"
    "Shows a month in the Gregorian, the Hebrew and the Hijri calendar side by side. A month is\n"
    "2026-03, or \"now\" for the present one. Names written from right to left stand within marks\n"
    "that keep their direction to themselves. The Hijri calendar is the one reckoned by tables.\n"
    "\n"
    "Commands:\n"
    "  read       tells how a date is read, field by field, and what comes of it, or the reason\n"
    "             why it is no date; years are read from 1970 to 2037\n"
    "  locales    lists the languages, countries, code pages with the character sets of fonts,\n"
    "             and pictures of short dates that the system's locales have\n"
    "\n"
    "Options:\n"
    "  --locale ID\n"
    "             the locale of names and of dates that are read: an id (0x0407, 1031) or codes\n"
    "             of language and country (de-DE, de); the user's own where it isn't told\n"
    "  --picture PICTURE\n"
    "             how the date is written that is read, as in \"dd.MM.yyyy HH:mm\"; the locale's\n"
    "             short date where it isn't told\n"
    "  --latin    names of months in Latin letters\n"
    "  --svg      a page to print, as an SVG document\n"
    "  --help     prints this text\n"
    "  --version  prints the version\n"
    "  --         ends the options\n"
    "\n"
    "Exit status:\n"
    "  0          all went well\n"
    "  1          there is no such date or locale, or the output can't be written\n"
    "  2          a wrong use\n";

constexpr int LAST_YEAR = 9999;

struct Options
{
    std::vector<std::string> words;
    std::string locale;
    std::string picture;
    bool latin = false;
    bool svg = false;
    bool help = false;
    bool version = false;
};

bool IsOption(const std::string& word)
{
    return word.size() > 1 && word[0] == '-' && !std::isdigit(static_cast<unsigned char>(word[1]));
}

// The word that is no option or lacks its value; empty if all is well.
std::string ReadOptions(const std::vector<std::string>& arguments, Options* options)
{
    bool ended = false;
    for (size_t n = 0; n < arguments.size(); ++n) {
        const std::string& word = arguments[n];
        if (ended || !IsOption(word))
            options->words.push_back(word);
        else if (word == "--")
            ended = true;
        else if (word == "--latin")
            options->latin = true;
        else if (word == "--svg")
            options->svg = true;
        else if (word == "--help")
            options->help = true;
        else if (word == "--version")
            options->version = true;
        else if (word == "--locale" && n + 1 < arguments.size())
            options->locale = arguments[++n];
        else if (word == "--picture" && n + 1 < arguments.size())
            options->picture = arguments[++n];
        else
            return word;
    }
    return "";
}

Status Fail(const std::string& reason, std::ostream& errors)
{
    errors << "almanac: " << reason << "\n";
    return FAILED;
}

bool IsNumber(const std::string& text, size_t most)
{
    return !text.empty() && text.size() <= most &&
           text.find_first_not_of("0123456789") == text.npos;
}

// Year and month of a text, or the reason why there are none.
std::string ReadMonth(const std::string& text, int* year, int* month)
{
    const size_t dash = text.find('-', 1);
    if (dash == text.npos || !IsNumber(text.substr(0, dash), 9) ||
        !IsNumber(text.substr(dash + 1), 9))
        return "\"" + text + "\" is no year and month, as in 2026-03";
    *year = std::atoi(text.c_str());
    *month = std::atoi(text.c_str() + dash + 1);
    if (*year < 1 || *year > LAST_YEAR)
        return "the year is " + std::to_string(*year) + ", and has to be from 1 to 9999";
    if (*month < 1 || *month > 12)
        return "the month is " + std::to_string(*month) + ", and has to be from 1 to 12";
    return "";
}

void PresentMonth(int* year, int* month)
{
    const tm* now = CT_Time::spso_Abs2Date(CT_Time::sn8_GetTime());
    *year = now->tm_year + 1900;
    *month = now->tm_mon + 1;
}

Status ShowMonth(const Options& options, unsigned locale, std::ostream& output,
                 std::ostream& errors)
{
    int year, month;
    PresentMonth(&year, &month);
    const std::string& word = options.words[0];
    const std::string reason = word == "now" ? "" : ReadMonth(word, &year, &month);
    if (!reason.empty())
        return Fail(reason, errors);
    const Month made = MakeMonth(year, month, locale, options.latin ? LATIN : OWN_SCRIPT);
    if (options.svg)
        PrintPage(made, output);
    else
        PrintTable(made, output);
    return DONE;
}

Status Read(const Options& options, unsigned locale, std::ostream& output, std::ostream& errors)
{
    std::string reason;
    if (!TellReading(options.words[1], options.picture, locale, output, &reason))
        return Fail(reason, errors);
    return DONE;
}

Status Work(const Options& options, std::ostream& output, std::ostream& errors)
{
    unsigned locale = CT_LocaleInfo::sn_GetUserDefaultLCID();
    if (!options.locale.empty() && !ReadLocale(options.locale, &locale))
        return Fail("there is no locale \"" + options.locale + "\"", errors);
    const std::string command = options.words.empty() ? "" : options.words[0];
    if (command == "read" && options.words.size() == 2)
        return Read(options, locale, output, errors);
    if (command == "locales" && options.words.size() == 1)
        return ListLocales(output) ? DONE : Fail("the system has no list of its locales", errors);
    if (options.words.size() == 1 && command != "read")
        return ShowMonth(options, locale, output, errors);
    errors << USAGE_TEXT;
    return USAGE;
}

// What the library reports goes before what the program would say.
Status Settle(Status status, std::ostream& output, std::ostream& errors)
{
    CT_ErrorManager* manager = CT_ErrorManager::spco_Get();
    if (manager->b_IsSetError()) {
        const std::string message = common::ToUtf8(manager->qcuz_GetErrorMessage());
        manager->v_ClearError();
        return Fail(message, errors);
    }
    if (!output.flush())
        return Fail("cannot write the output", errors);
    return status;
}
} // namespace

Status Run(const std::vector<std::string>& arguments, std::ostream& output, std::ostream& errors)
{
    Options options;
    for (const std::string& word : arguments) {
        if (!common::IsUtf8(word))
            return Fail("an argument is not UTF-8", errors);
    }
    const std::string bad = ReadOptions(arguments, &options);
    if (!bad.empty()) {
        errors << "almanac: unknown option " << bad << ", or one without its value\n" << USAGE_TEXT;
        return USAGE;
    }
    Status status = DONE;
    if (options.help)
        output << HELP_TEXT;
    else if (options.version)
        output << "almanac (Ostra) " OSTRA_TOOL_VERSION "\n";
    else
        status = Work(options, output, errors);
    return Settle(status, output, errors);
}
} // namespace almanac

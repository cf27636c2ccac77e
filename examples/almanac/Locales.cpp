// examples/almanac/Locales.cpp
#include "Locales.h"

#include "Width.h"

#include <Common/Utf8.h>

#include <System/LocaleInfo/Language.h>
#include <System/LocaleInfo/LocaleInfo.h>

#include <algorithm>
#include <cstdlib>
#include <sstream>
#include <vector>

namespace almanac
{
namespace
{
// Each distinct value of a fact, in the order in which the locales have them.
std::vector<std::string> ValuesOf(CT_LocaleInfo::et_Type type)
{
    CT_UString text;
    CT_LocaleInfo::sv_CollectValues(type, '\n', &text);
    std::istringstream lines(common::ToUtf8(text.qcuz_Get()));
    std::vector<std::string> values;
    for (std::string value; std::getline(lines, value);)
        values.push_back(value);
    return values;
}

void List(const char* title, const std::vector<std::string>& values, std::ostream& output)
{
    output << title << ": " << values.size() << "\n";
    for (const std::string& value : values)
        output << "  " << Isolated(value) << "\n";
}

unsigned NumberOf(const std::string& text)
{
    return static_cast<unsigned>(std::strtoul(text.c_str(), nullptr, 10));
}

// The character set of a code page; 1, the default one, if it has none of its own.
unsigned CharsetOf(unsigned page)
{
    const unsigned locale = CT_LocaleInfo::sn_GetDefaultCPLocale(page);
    if (CT_LocaleInfo::sn_GetDefaultANSICodePage(locale) != page)
        return 1;
    return CT_LocaleInfo::sn_GetDefaultCharset(locale);
}

std::vector<std::string> CodePages()
{
    std::vector<std::string> pages = ValuesOf(CT_LocaleInfo::lt_ANSICodePage);
    std::sort(pages.begin(), pages.end(),
              [](const std::string& a, const std::string& b) { return NumberOf(a) < NumberOf(b); });
    for (std::string& page : pages) {
        const std::string charset = std::to_string(CharsetOf(NumberOf(page)));
        page = PaddedLeft(page, 5) + PaddedLeft(charset, 5);
        if (page.substr(0, 5) == "    0")
            page += "  (Unicode alone)";
    }
    return pages;
}

// A number with its end where the text ends.
bool ReadNumber(const std::string& text, unsigned* number)
{
    const bool hexadecimal = text.size() > 2 && text[0] == '0' && (text[1] | 32) == 'x';
    const std::string digits = hexadecimal ? text.substr(2) : text;
    const char* const allowed = hexadecimal ? "0123456789abcdefABCDEF" : "0123456789";
    if (digits.empty() || digits.size() > 8 || digits.find_first_not_of(allowed) != digits.npos)
        return false;
    *number = static_cast<unsigned>(std::strtoul(digits.c_str(), nullptr, hexadecimal ? 16 : 10));
    return true;
}

// Codes of a language, alone or with its country.
bool ReadCode(const std::string& text, unsigned* locale)
{
    CT_Language::et_Primary primary;
    CT_Language::et_Sub sub;
    CT_UString wide;
    common::ToWide(text, &wide);
    wide.vv_ToUpper();
    if (text.size() == 2) {
        const std::string code = common::ToUtf8(wide.qcuz_Get());
        if (!CT_Language::sb_GetPrimary(&primary, code.c_str()))
            return false;
        sub = CT_Language::seo_GetDefaultSub(primary);
    } else if (text.size() != 5 || !CT_Language::sb_GetLanguages(&primary, &sub, &wide))
        return false;
    *locale = CT_Language::sn_MakeLanguageID(primary, sub);
    return true;
}
} // namespace

bool ReadLocale(const std::string& text, unsigned* locale)
{
    return (ReadNumber(text, locale) || ReadCode(text, locale)) &&
           CT_LocaleInfo::sb_LocaleIsSupported(*locale);
}

bool ListLocales(std::ostream& output)
{
    const std::vector<std::string> languages = ValuesOf(CT_LocaleInfo::lt_EnglishLanguage);
    if (languages.empty())
        return false;
    List("Languages", languages, output);
    List("Countries", ValuesOf(CT_LocaleInfo::lt_EnglishCountry), output);
    List("Code pages and character sets", CodePages(), output);
    List("Pictures of short dates", ValuesOf(CT_LocaleInfo::lt_ShortDate), output);
    return true;
}

std::string Fact(unsigned locale, unsigned type)
{
    CT_UString text;
    CT_LocaleInfo::sb_GetLocaleInfo(locale, CT_LocaleInfo::et_Type{type}, &text);
    return common::ToUtf8(text.qcuz_Get());
}
} // namespace almanac

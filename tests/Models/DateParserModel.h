// tests/Models/DateParserModel.h: reads dates after pictures as it is told, step by step.
#pragma once

#include <Ostra/Unicode/CharProperties.h>
#include <System/Time/Calendar.h>

#include <ctime>
#include <string>
#include <vector>

#include "System/Time/TimeTextSupport.h"

namespace date_model
{
struct Token
{
    char16_t letter; // 0 for a literal
    unsigned length;
    std::u16string literal;
};

inline bool IsLetter(char16_t unit)
{
    return unit && std::u16string(u"dMyghHmst").find(unit) != std::u16string::npos;
}

inline std::vector<Token> Tokens(const std::u16string& picture)
{
    std::vector<Token> tokens;
    for (std::size_t at = 0; at < picture.size();) {
        Token token{0, 0, {}};
        if (picture[at] == u'\'') {
            for (++at; at < picture.size(); ++at) {
                if (picture[at] == u'\'' && (at + 1 == picture.size() || picture[at + 1] != u'\''))
                    break;
                at += picture[at] == u'\'';
                token.literal += picture[at];
            }
            ++at;
        } else if (!IsLetter(picture[at])) {
            while (at < picture.size() && picture[at] != u'\'' && !IsLetter(picture[at]))
                token.literal += picture[at++];
        } else {
            token.letter = picture[at];
            while (at < picture.size() && picture[at] == token.letter) {
                ++token.length;
                ++at;
            }
            const bool longer =
                token.letter == u'd' || token.letter == u'M' || token.letter == u'y';
            token.length = std::min(token.length, longer ? 4U : 2U);
            if (token.letter == u'y' && token.length == 3)
                token.length = 4;
        }
        tokens.push_back(token);
    }
    return tokens;
}

class Parser
{
public:
    Parser(std::u16string given, unsigned of_locale, int of_calendar, const std::tm& present)
        : text(std::move(given)),
          locale(of_locale),
          calendar(of_calendar),
          now(present)
    {}

    // The date with the year from 1900 on; false for a text that is refused.
    bool Parse(const std::u16string& picture, std::tm* out)
    {
        date.tm_mday = now.tm_mday;
        date.tm_mon = now.tm_mon;
        date.tm_year = now.tm_year + 1900;
        date.tm_wday = -1;
        for (const Token& token : Tokens(picture)) {
            if (token.letter)
                Field(token);
            else
                Literal(token.literal);
            if (error)
                return false;
        }
        Finish();
        *out = date;
        return !error;
    }

private:
    static bool IsSpace(char16_t unit) { return unit && CT_CharProperties::sb_IsSpace(unit); }
    char16_t First() const { return text.empty() ? u'\0' : text[0]; }
    void Skip(std::size_t count) { text.erase(0, count); }
    bool Begins(const std::u16string& name) const
    {
        return text.compare(0, name.size(), name) == 0;
    }

    void Literal(const std::u16string& literal)
    {
        while (IsSpace(First()) && (literal.empty() || First() != literal[0]))
            Skip(1);
        for (std::size_t n = 0; n < literal.size() && !text.empty() && First() == literal[n]; ++n)
            Skip(1);
        while (IsSpace(First()))
            Skip(1);
    }

    int Number(unsigned most, int first, int last)
    {
        std::size_t length = 0;
        while (length < most && length < text.size() &&
               CT_CharProperties::sb_IsNumeric(text[length]))
            ++length;
        int value = 0, place = 1;
        for (std::size_t n = length; n-- > 0; place *= 10) {
            short numerator, denominator;
            CT_CharProperties::sv_NumericValue(text[n], numerator, denominator);
            value += denominator ? numerator / denominator * place : 0;
        }
        if (value < first || value > last)
            error = true;
        else
            Skip(length);
        return value;
    }

    static std::u16string Lower(std::u16string name)
    {
        for (char16_t& unit : name)
            unit = unit >= u'A' && unit <= u'Z' ? char16_t(unit + 32) : unit;
        return name;
    }

    int Name(const std::vector<unsigned>& types, bool exact)
    {
        int best = -1;
        std::size_t length = 0;
        for (std::size_t n = 0; n < types.size(); ++n) {
            const std::u16string name = time_text::Fact(locale, types[n]);
            if (name.empty())
                continue;
            const std::u16string begin = text.substr(0, std::min<std::size_t>(31, name.size()));
            if (Begins(name) || (!exact && Lower(begin) == Lower(name))) {
                best = int(n);
                length = name.size();
            }
        }
        if (best < 0)
            error = true;
        Skip(length);
        return best;
    }

    std::u16string Form(const char16_t* picture, int month, bool wide) const
    {
        SYSTEMTIME system{};
        GetLocalTime(&system);
        system.wMonth = WORD(month);
        const std::u16string form =
            wide ? time_text::WideService('d', locale, 0, system, picture)
                 : time_text::Widened(time_text::NarrowService('d', locale, 0, system, picture),
                                      locale);
        return form == u"(failed)" ? u"" : form;
    }
    static std::u16string Behind(const std::u16string& form)
    {
        const std::size_t slash = form.find(u'/');
        return slash == std::u16string::npos ? u"" : form.substr(slash + 1);
    }

    int FullMonth()
    {
        const std::u16string plain = Form(u"MMMM", 1, true);
        const std::u16string genitive = Behind(Form(u"dd/MMMM", 1, true));
        const std::u16string name = time_text::Fact(locale, 56);
        if (plain == genitive && genitive == name)
            return Name({56, 57, 58, 59, 60, 61, 62, 63, 64, 65, 66, 67, 4110}, true);
        int best = -1;
        std::size_t length = 0;
        for (int month = 1; month <= 13; ++month) {
            const bool wide = CT_OS::sb_GetIsWindowsNT();
            for (const std::u16string& form :
                 {Form(u"MMMM", month, wide), Behind(Form(u"dd/MMMM", month, wide))}) {
                if (form.size() > length && Begins(form)) {
                    length = form.size();
                    best = month - 1;
                }
            }
        }
        if (best < 0)
            error = true;
        Skip(length);
        return best;
    }

    void Era()
    {
        for (unsigned row = 0; row < CT_Calendar::sn_GetIDCount(); ++row) {
            const auto type = CT_Calendar::seo_GetCalType(row);
            const std::u16string text_of_era = Wide(CT_Calendar::sqcuz_GetCalEra(row));
            if ((type == CT_Calendar::seo_GetCalendar(locale) ||
                 type == CT_Calendar::seo_GetAlternateCalendar(locale)) &&
                Begins(text_of_era)) {
                era = CT_Calendar::si_GetCalOffset(row);
                return Skip(text_of_era.size());
            }
        }
    }

    void Field(const Token& token)
    {
        if (token.letter == u'd' && token.length <= 2)
            date.tm_mday = Number(2, 1, 31);
        else if (token.letter == u'd')
            date.tm_wday = token.length == 3 ? Name({55, 49, 50, 51, 52, 53, 54}, true)
                                             : Name({48, 42, 43, 44, 45, 46, 47}, true);
        else if (token.letter == u'M' && token.length <= 2)
            date.tm_mon = Number(2, 1, 13) - 1;
        else if (token.letter == u'M' && token.length == 3)
            date.tm_mon = Name({68, 69, 70, 71, 72, 73, 74, 75, 76, 77, 78, 79, 4111}, true);
        else if (token.letter == u'M')
            date.tm_mon = FullMonth();
        else if (token.letter == u'y') {
            digits = token.length <= 2 ? 2 : 4;
            date.tm_year = Number(digits, -1000000000, 1000000000);
        } else if (token.letter == u'g')
            Era();
        else if (token.letter == u'h')
            date.tm_hour = Number(2, 0, 11);
        else if (token.letter == u'H')
            date.tm_hour = Number(2, 0, 23);
        else if (token.letter == u'm')
            date.tm_min = Number(2, 0, 59);
        else if (token.letter == u's')
            date.tm_sec = Number(2, 0, 59);
        else
            shift = Name({40, 41}, false) * 12;
    }

    void Settle()
    {
        const int year = date.tm_year;
        const int other = CT_Calendar::seo_AlternateCalendar(locale);
        if (calendar == 0 && other == 0) {
            if (digits == 2)
                date.tm_year = year + 1900;
            return;
        }
        for (unsigned row = CT_Calendar::sn_GetIDCount(); calendar != 0 && row-- > 0;) {
            if (CT_Calendar::seo_GetCalID(row) == calendar)
                era = CT_Calendar::si_GetCalOffset(row);
        }
        const bool open = era == -1;
        for (unsigned row = CT_Calendar::sn_GetIDCount(); open && row-- > 0;) {
            if (CT_Calendar::seo_GetCalType(row) == other)
                era = CT_Calendar::si_GetCalOffset(row);
        }
        const int gregorian = now.tm_year + 1900;
        std::tm then = now;
        then.tm_year = gregorian;
        if (era == -1 || era == -2)
            CT_Calendar::sv_Gregorian2Alternate(&then, era == -1 ? CT_Calendar::id_Hijri
                                                                 : CT_Calendar::id_Hebrew);
        const int alternate = era == -1 || era == -2 ? then.tm_year : gregorian - era;
        const int g = digits == 4 ? 0 : gregorian / 100 * 100;
        const int a = digits == 4 ? 0 : alternate / 100 * 100;
        double dg = 1, da = 0;
        if (open) {
            dg = year + g > gregorian ? (year + g - gregorian) * 10 : gregorian - year - g;
            da = year + a > alternate ? (year + a - alternate) * 10 : alternate - year - a;
        }
        if (dg > 1.1 * da) {
            date.tm_year = year + a;
            if (era == -1)
                CT_Calendar::sv_Alternate2Gregorian(&date, CT_Calendar::id_Hijri);
            else if (era == -2)
                CT_Calendar::sv_Alternate2Gregorian(&date, CT_Calendar::id_Hebrew);
            else
                date.tm_year += era;
        } else
            date.tm_year = year + g;
    }

    void Finish()
    {
        date.tm_hour += shift;
        Settle();
        CT_Calendar::sv_AddYearWeekday(&date);
        if (era == -1)
            error = !CT_Calendar::sb_ValidateTM(&date);
        date.tm_year -= 1900;
        if (0 < date.tm_year && date.tm_year < 36)
            date.tm_year += 100;
        else if (date.tm_year < 70)
            error = true;
    }

    std::u16string text;
    unsigned locale;
    int calendar;
    std::tm now;
    std::tm date{};
    bool error = false;
    int era = -1;
    int shift = 0;
    unsigned digits = 0;
};
} // namespace date_model

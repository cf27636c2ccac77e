// examples/almanac/Fields.cpp
#include "Fields.h"

#include "Locales.h"

#include <Common/Utf8.h>

#include <Ostra/Unicode/CharProperties.h>
#include <System/LocaleInfo/LocaleInfo.h>
#include <System/Time/Calendar.h>
#include <System/Time/Time.h>

#include <algorithm>

namespace almanac
{
namespace
{
const std::u16string LETTERS = u"dMyghHmst";

// A number has so many digits at most, and lies between two others; none for the years.
struct Range
{
    unsigned digits;
    int first;
    int last;
};

Range RangeOf(char16_t letter, size_t letters)
{
    switch (letter) {
    case 'd':
        return {2, 1, 31};
    case 'M':
        return {2, 1, 13};
    case 'y':
        return {letters > 2 ? 4u : 2u, 0, 9999};
    case 'h':
        return {2, 0, 11};
    case 'H':
        return {2, 0, 23};
    default:
        return {2, 0, 59};
    }
}

const char* NameOf(char16_t letter)
{
    switch (letter) {
    case 'd':
        return "day";
    case 'M':
        return "month";
    case 'y':
        return "year";
    case 'g':
        return "era";
    case 'h':
    case 'H':
        return "hour";
    case 'm':
        return "minute";
    case 's':
        return "second";
    default:
        return "part of the day";
    }
}

bool IsSpace(char16_t unit)
{
    return CT_CharProperties::sb_IsSpace(unit);
}

char16_t Lower(char16_t unit)
{
    return unit >= 'A' && unit <= 'Z' ? unit + 32 : unit;
}

// The walk over one text.
class Walk
{
public:
    Walk(const std::u16string& newText, unsigned newLocale) : text(newText), locale(newLocale) {}

    // What stands between fields is passed over as far as it is there.
    Field Literal(const std::u16string& literal);
    // An empty reason if the field found something.
    Field Take(const std::u16string& letters, std::string* reason);

private:
    bool TakeNumber(const Range& range, Field* field, std::string* reason);
    bool TakeName(const std::vector<std::u16string>& names, bool exact, bool longest, Field* field);
    void TakeEra(Field* field);
    std::vector<std::u16string> Names(std::vector<unsigned> types) const;
    std::vector<std::u16string> NamesFor(char16_t letter, size_t letters) const;
    void SkipSpace(char16_t but);
    bool Starts(const std::u16string& name, bool exact) const;

    const std::u16string& text;
    unsigned locale;
    size_t place = 0;
};

void Walk::SkipSpace(char16_t but)
{
    while (place < text.size() && IsSpace(text[place]) && text[place] != but)
        ++place;
}

Field Walk::Literal(const std::u16string& literal)
{
    const size_t before = place;
    SkipSpace(literal.empty() ? 0 : literal[0]);
    for (size_t n = 0; n < literal.size() && place < text.size() && text[place] == literal[n]; ++n)
        ++place;
    SkipSpace(0);
    return {u"", text.substr(before, place - before), 0};
}

// Digits of any script.
bool Walk::TakeNumber(const Range& range, Field* field, std::string* reason)
{
    const size_t before = place;
    int value = 0;
    while (place < text.size() && place - before < range.digits &&
           CT_CharProperties::sb_IsNumeric(text[place])) {
        short numerator = 0, denominator = 1;
        CT_CharProperties::sv_NumericValue(text[place++], numerator, denominator);
        value = value * 10 + (denominator ? numerator / denominator : 0);
    }
    field->taken = text.substr(before, place - before);
    field->value = value;
    const std::string name = NameOf(field->picture[0]);
    if (field->taken.empty() && field->picture[0] != 'y' && range.first > 0)
        *reason = "no number where the " + name + " should be";
    else if (value < range.first || value > range.last)
        *reason = "the " + name + " is " + std::to_string(value) + ", and has to be from " +
                  std::to_string(range.first) + " to " + std::to_string(range.last);
    return reason->empty();
}

bool Walk::Starts(const std::u16string& name, bool exact) const
{
    if (name.empty() || text.size() - place < name.size())
        return false;
    for (size_t n = 0; n < name.size(); ++n) {
        const char16_t a = text[place + n], b = name[n];
        if (exact ? a != b : Lower(a) != Lower(b))
            return false;
    }
    return true;
}

// The last name of several that fit, or the longest.
bool Walk::TakeName(const std::vector<std::u16string>& names, bool exact, bool longest,
                    Field* field)
{
    field->value = 0;
    for (size_t n = 0; n < names.size(); ++n) {
        if (Starts(names[n], exact) && (!longest || names[n].size() > field->taken.size())) {
            field->taken = names[n];
            field->value = static_cast<int>(n % 13) + 1;
        }
    }
    place += field->taken.size();
    return field->value > 0;
}

// The first era of the locale's calendars that stands there. None is no failure.
void Walk::TakeEra(Field* field)
{
    for (unsigned row = 0; row < CT_Calendar::sn_GetIDCount(); ++row) {
        const CT_Calendar::et_Type type = CT_Calendar::seo_GetCalType(row);
        const std::u16string era =
            reinterpret_cast<const char16_t*>(CT_Calendar::sqcuz_GetCalEra(row));
        if ((type == CT_Calendar::seo_GetCalendar(locale) ||
             type == CT_Calendar::seo_GetAlternateCalendar(locale)) &&
            Starts(era, true)) {
            field->taken = era;
            field->value = CT_Calendar::seo_GetCalID(row);
            place += era.size();
            return;
        }
    }
}

std::vector<std::u16string> Walk::Names(std::vector<unsigned> types) const
{
    std::vector<std::u16string> names;
    for (const unsigned type : types)
        names.push_back(ToUnits(Fact(locale, type)));
    return names;
}

std::vector<unsigned> Types(unsigned first, unsigned count, unsigned last)
{
    std::vector<unsigned> types;
    for (unsigned n = 0; n < count; ++n)
        types.push_back(first + n);
    types.push_back(last);
    return types;
}

// The names of months as a date writes them behind a day.
std::vector<std::u16string> MonthsBehindDays(unsigned locale)
{
    std::vector<std::u16string> names;
    const CT_UString picture(u"dd/MMMM");
    for (unsigned month = 1; month <= 12; ++month) {
        CT_Time time;
        tm date = {};
        date.tm_year = 100;
        date.tm_mon = static_cast<int>(month) - 1;
        date.tm_mday = 15;
        time.v_Set(CT_Time::sn8_Date2Abs(&date));
        CT_UString text;
        time.v_GetDate(&text, &picture, locale, CT_Time::df_Default);
        names.push_back(ToUnits(common::ToUtf8(text.qcuz_Get())).substr(3));
    }
    names.emplace_back();
    return names;
}

// Sunday is the first day.
std::vector<std::u16string> Walk::NamesFor(char16_t letter, size_t letters) const
{
    if (letter == 't')
        return Names({CT_LocaleInfo::lt_Morning, CT_LocaleInfo::lt_Afternoon});
    if (letter == 'd' && letters == 3)
        return Names({55, 49, 50, 51, 52, 53, 54});
    if (letter == 'd')
        return Names({48, 42, 43, 44, 45, 46, 47});
    if (letters == 3)
        return Names(
            Types(CT_LocaleInfo::lt_ShortMonthName1, 12, CT_LocaleInfo::lt_ShortMonthName13));
    std::vector<std::u16string> names =
        Names(Types(CT_LocaleInfo::lt_MonthName1, 12, CT_LocaleInfo::lt_MonthName13));
    const std::vector<std::u16string> behind = MonthsBehindDays(locale);
    if (behind[0] != names[0])
        names.insert(names.end(), behind.begin(), behind.end());
    return names;
}

Field Walk::Take(const std::u16string& letters, std::string* reason)
{
    Field field = {letters, u"", 0};
    const char16_t letter = letters[0];
    if (letter == 'g') {
        TakeEra(&field);
        return field;
    }
    const bool isName = letter == 't' || ((letter == 'd' || letter == 'M') && letters.size() > 2);
    if (!isName)
        TakeNumber(RangeOf(letter, letters.size()), &field, reason);
    else {
        const std::vector<std::u16string> names = NamesFor(letter, letters.size());
        if (!TakeName(names, letter != 't', names.size() > 13, &field))
            *reason = std::string("no name where the ") + NameOf(letter) + " should be";
    }
    return field;
}

// The next part of a picture: a run of one letter, or what stands between.
std::u16string NextPart(const std::u16string& picture, size_t* place, bool* isField)
{
    const size_t before = *place;
    const char16_t first = picture[before];
    *isField = LETTERS.find(first) != LETTERS.npos;
    if (*isField) {
        *place = std::min(picture.find_first_not_of(first, before), picture.size());
        return picture.substr(before, *place - before);
    }
    if (first != '\'') {
        *place = std::min(picture.find_first_of(LETTERS + u"'", before), picture.size());
        return picture.substr(before, *place - before);
    }
    std::u16string literal;
    size_t at = before + 1;
    for (; at < picture.size(); ++at) {
        // Two quotes are one; a single one ends the literal.
        if (picture[at] == '\'' && (++at == picture.size() || picture[at] != '\''))
            break;
        literal += picture[at];
    }
    *place = at;
    return literal;
}
} // namespace

std::string ToText(const std::u16string& text)
{
    return common::ToUtf8(reinterpret_cast<const unsigned short*>(text.c_str()));
}

std::u16string ToUnits(const std::string& text)
{
    CT_UString wide;
    common::ToWide(text, &wide);
    return reinterpret_cast<const char16_t*>(wide.qcuz_Get());
}

std::vector<Field> WalkFields(const std::u16string& picture, const std::u16string& text,
                              unsigned locale, std::string* reason)
{
    std::vector<Field> fields;
    Walk walk(text, locale);
    for (size_t place = 0; place < picture.size() && reason->empty();) {
        bool isField;
        const std::u16string part = NextPart(picture, &place, &isField);
        fields.push_back(isField ? walk.Take(part, reason) : walk.Literal(part));
    }
    return fields;
}
} // namespace almanac

// examples/almanac/Reading.cpp
#include "Reading.h"

#include "Fields.h"
#include "Locales.h"
#include "Width.h"

#include <Ostra/String/UString.h>
#include <System/LocaleInfo/LocaleInfo.h>
#include <System/Time/Time.h>

#include <algorithm>
#include <cstdio>

namespace almanac
{
namespace
{
// The value of the field with that letter that counts: the last one. 0 for none.
int ValueOf(const std::vector<Field>& fields, char16_t letter, int otherwise)
{
    int value = otherwise;
    for (const Field& field : fields) {
        if (!field.picture.empty() && field.picture[0] == letter &&
            (letter != 'd' || field.picture.size() < 3))
            value = field.value;
    }
    return value;
}

// Why the fields, each of which found something, are no date together.
std::string WhyNoDate(const std::vector<Field>& fields)
{
    tm date = {};
    date.tm_year = ValueOf(fields, 'y', 2000);
    date.tm_mon = ValueOf(fields, 'M', 1) - 1;
    date.tm_mday = ValueOf(fields, 'd', 1);
    if (date.tm_mon >= 12)
        return "there is no thirteenth month";
    if (!CT_Calendar::sb_ValidateTM(&date))
        return "the month has no day " + std::to_string(date.tm_mday);
    return "years are read from 1970 to 2037";
}

std::string Shown(unsigned long long moment)
{
    const tm* date = CT_Time::spso_Abs2Date(moment);
    char text[64];
    std::snprintf(text, sizeof(text), "%04d-%02d-%02d %02d:%02d:%02d", date->tm_year + 1900,
                  date->tm_mon + 1, date->tm_mday, date->tm_hour, date->tm_min, date->tm_sec);
    return text;
}

void Print(const std::vector<Field>& fields, bool isLastBad, std::ostream& output)
{
    unsigned width = 0;
    for (const Field& field : fields) {
        if (!field.picture.empty())
            width = std::max(width, WidthOf(ToText(field.taken)));
    }
    for (size_t n = 0; n < fields.size(); ++n) {
        const Field& field = fields[n];
        if (field.picture.empty())
            continue;
        output << PaddedRight(ToText(field.picture), 6)
               << PaddedRight(Isolated(ToText(field.taken)), width + 2);
        if (isLastBad && n + 1 == fields.size())
            output << "not read";
        else if (!field.taken.empty())
            output << field.value;
        output << "\n";
    }
}
} // namespace

bool TellReading(const std::string& text, const std::string& picture, unsigned locale,
                 std::ostream& output, std::string* reason)
{
    const std::string used = picture.empty() ? Fact(locale, CT_LocaleInfo::lt_ShortDate) : picture;
    const std::u16string letters = ToUnits(used), units = ToUnits(text);
    const std::vector<Field> fields = WalkFields(letters, units, locale, reason);
    output << "picture " << used << "\n";
    Print(fields, !reason->empty(), output);

    CT_Time time;
    const CT_UString wideText(units.c_str()), widePicture(letters.c_str());
    if (reason->empty() && !time.b_Set(&wideText, &widePicture, locale, CT_Calendar::id_None))
        *reason = WhyNoDate(fields);
    if (!reason->empty())
        return false;
    output << "read as " << Shown(time.n8_Get()) << "\n";
    return true;
}
} // namespace almanac

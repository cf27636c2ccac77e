// winapi/Locale/LocaleData.cpp
#include "Locale/LocaleData.h"

#include "winapi/Locale/LocaleInfo.h"

#include <algorithm>

namespace winapi
{
const char* FactOf(unsigned locale, unsigned fact)
{
    const FactColumn* const end = factColumns + factColumnCount;
    const FactColumn* const column =
        std::lower_bound(factColumns, end, fact,
                         [](const FactColumn& one, unsigned wanted) { return one.fact < wanted; });
    if (column == end || column->fact != fact)
        return nullptr;
    return factTexts + factValues[column->values + factCells[column - factColumns][locale]];
}

int NumberBase(unsigned fact)
{
    switch (fact) {
    case LOCALE_ILANGUAGE:
    case LOCALE_IDEFAULTLANGUAGE:
        return 16;
    case LOCALE_SABBREVLANGNAME:
    case LOCALE_SABBREVCTRYNAME:
    case LOCALE_SLIST:
    case LOCALE_SGROUPING:
    case LOCALE_SMONGROUPING:
    case LOCALE_SISO639LANGNAME:
    case LOCALE_SISO3166CTRYNAME:
        return 0;
    default:
        return 10;
    }
}
} // namespace winapi

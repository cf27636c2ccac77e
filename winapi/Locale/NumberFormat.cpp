// winapi/Locale/NumberFormat.cpp
#include "winapi/Locale/NumberFormat.h"

#include "Errors/Failure.h"
#include "Locale/LocaleData.h"
#include "Locale/LocaleIds.h"
#include "Locale/LocaleTexts.h"
#include "Locale/Result.h"
#include "winapi/Locale/LocaleInfo.h"
#include "winapi/Text/CodePage.h"

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>

namespace winapi
{
namespace
{
constexpr UINT LAST_ORDER = 4;

// The parts of a number given as text.
struct Number
{
    bool negative = false;
    std::string_view whole; // Without leading zeros.
    std::string_view fraction;
};

bool AreDigits(std::string_view text)
{
    return std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
}

bool Read(std::string_view text, Number& number)
{
    number.negative = text.starts_with('-');
    text.remove_prefix(number.negative);
    const std::size_t point = std::min(text.find('.'), text.size());
    number.whole = text.substr(0, point);
    number.fraction = text.substr(std::min(point + 1, text.size()));
    if (!AreDigits(number.whole) || !AreDigits(number.fraction))
        return false;
    number.whole.remove_prefix(std::min(number.whole.find_first_not_of('0'), number.whole.size()));
    return true;
}

// The digits of a number, cut to so many behind the point and rounded half away from zero.
class Digits
{
public:
    Digits(const Number& number, UINT wanted)
        : behind(std::min<std::size_t>(wanted, number.fraction.size()))
    {
        text += '0';
        text += number.whole;
        const bool hasWhole = !number.whole.empty();
        text += number.fraction.substr(0, behind);
        if (number.fraction.size() > behind && number.fraction[behind] >= '5')
            RoundUp();
        first = text[0] == '0';
        grown = hasWhole && !first;
    }
    std::string_view Whole() const
    {
        return std::string_view(text).substr(first, text.size() - behind - first);
    }
    // Whether rounding has given the number one digit more.
    bool HasGrown() const { return grown; }
    std::string_view Fraction() const
    {
        return std::string_view(text).substr(text.size() - behind);
    }

private:
    std::string text; // With one digit in front that a carry may need.
    std::size_t behind;
    std::size_t first;
    bool grown;

    void RoundUp()
    {
        std::size_t at = text.size() - 1;
        for (; text[at] == '9'; --at)
            text[at] = '0';
        ++text[at];
    }
};

struct Layout
{
    UINT digits;
    bool leadingZero;
    UINT grouping;
    UINT order;
    std::string decimal;
    std::string thousand;
};

// The sizes of groups from the right.
class Groups
{
public:
    explicit Groups(UINT grouping)
    {
        for (; grouping; grouping /= 10)
            sizes[--begin] = grouping % 10;
    }
    // The size of the next group; 0: all that is left.
    UINT Next()
    {
        if (begin == COUNT)
            return 0;
        const UINT size = sizes[begin];
        if (begin + 1 < COUNT && size)
            ++begin;
        return size;
    }

private:
    static constexpr unsigned COUNT = 10;
    UINT sizes[COUNT];
    unsigned begin = COUNT;
};

// What stands before and behind a negative number, by its order.
constexpr struct
{
    const char* before;
    const char* behind;
} signs[LAST_ORDER + 1] = {{"(", ")"}, {"-", ""}, {"- ", ""}, {"", "-"}, {"", " -"}};

// Kept: a digit that rounding has put in front has no separator behind it, as the platform has it.
std::string Grouped(const Digits& digits, const Layout& layout)
{
    const std::string_view whole = digits.Whole();
    const std::size_t last = digits.HasGrown() ? 1 : 0;
    Groups groups(layout.grouping);
    std::string text; // From the right.
    UINT left = groups.Next();
    const bool grouped = left != 0;
    for (std::size_t at = whole.size(); at-- > 0;) {
        text += whole[at];
        if (grouped && left && --left == 0 && at > last) {
            text.append(layout.thousand.rbegin(), layout.thousand.rend());
            left = groups.Next();
        }
    }
    std::reverse(text.begin(), text.end());
    return text;
}

int Write(const Number& number, const Layout& layout, LPSTR buffer, int size)
{
    const Digits digits(number, layout.digits);
    std::string text = number.negative ? signs[layout.order].before : "";
    if (digits.Whole().empty() && layout.leadingZero)
        text += '0';
    text += Grouped(digits, layout);
    if (layout.digits) {
        text += layout.decimal;
        text += digits.Fraction();
    }
    const std::size_t zeros = layout.digits - digits.Fraction().size();
    const std::string_view behind = number.negative ? signs[layout.order].behind : "";
    const std::size_t needed = text.size() + zeros + behind.size() + 1;
    if (needed > (size ? static_cast<std::size_t>(size) : INT_MAX))
        return Finish(ERROR_INSUFFICIENT_BUFFER);
    if (size) {
        text.append(zeros, '0');
        text += behind;
        std::memcpy(buffer, text.c_str(), needed);
    }
    return static_cast<int>(needed);
}

// A separator as the page has it: what it lacks comes out as its default.
std::string InPage(UINT page, const char* text)
{
    const std::string_view narrow = text;
    const auto isAscii = [](char c) {
        return static_cast<unsigned char>(c) < 0x80;
    };
    if (std::all_of(narrow.begin(), narrow.end(), isAscii))
        return std::string(narrow);
    std::basic_string<WCHAR> wide(narrow.size(), 0);
    const int count = MultiByteToWideChar(page, 0, text, static_cast<int>(narrow.size()),
                                          wide.data(), static_cast<int>(wide.size()));
    std::string made(narrow.size() * 4 + 1, '\0');
    const int bytes = count ? HandOverIn(page, {wide.data(), static_cast<std::size_t>(count)},
                                         made.data(), static_cast<int>(made.size()))
                            : 0;
    if (!bytes)
        throw Failed();
    made.resize(static_cast<std::size_t>(bytes - 1));
    return made;
}

UINT NumberOf(int locale, LCTYPE fact)
{
    return static_cast<UINT>(std::atoi(FactOf(static_cast<unsigned>(locale), fact)));
}

// "3;0" is 3, repeated; "3;2;0" is 3 and then 2, repeated.
UINT GroupingOf(int locale)
{
    UINT grouping = 0;
    for (const char* at = FactOf(static_cast<unsigned>(locale), LOCALE_SGROUPING); *at; ++at)
        if (*at > '0' && *at <= '9')
            grouping = grouping * 10 + static_cast<UINT>(*at - '0');
    return grouping;
}

std::string TextIn(UINT page, WideView wide)
{
    char text[32];
    if (!HandOverIn(page, wide, text, sizeof text))
        throw Failed();
    return text;
}

Layout LayoutOf(int locale, UINT page)
{
    const LocaleTexts* const texts = TextsOf(static_cast<unsigned>(locale));
    if (!texts)
        throw Failed();
    return {NumberOf(locale, LOCALE_IDIGITS),
            NumberOf(locale, LOCALE_ILZERO) != 0,
            GroupingOf(locale),
            NumberOf(locale, LOCALE_INEGNUMBER),
            TextIn(page, (*texts)[DECIMAL]),
            TextIn(page, (*texts)[THOUSAND])};
}

Layout LayoutOf(const NUMBERFMTA& format, UINT page)
{
    return {format.NumDigits,
            format.LeadingZero != 0,
            format.Grouping,
            format.NegativeOrder,
            InPage(page, format.lpDecimalSep),
            InPage(page, format.lpThousandSep)};
}

DWORD Check(DWORD flags, const NUMBERFMTA* format)
{
    if ((flags & ~(LOCALE_NOUSEROVERRIDE | LOCALE_USE_CP_ACP)) || (format && flags))
        return ERROR_INVALID_FLAGS;
    if (format && (!format->lpDecimalSep || !format->lpThousandSep))
        return ERROR_INVALID_PARAMETER;
    return ERROR_SUCCESS;
}
} // namespace

int GetNumberFormatA(LCID Locale, DWORD dwFlags, LPCSTR lpValue, const NUMBERFMTA* lpFormat,
                     LPSTR lpNumberStr, int cchNumber)
{
    if (!IsRoomSound(lpNumberStr, cchNumber))
        return 0;
    const int locale = PlaceOf(Locale);
    if (locale < 0 || !Finish(Check(dwFlags, lpFormat)))
        return 0;
    Number number;
    if (!lpValue || !Read(lpValue, number) ||
        (lpFormat && number.negative && lpFormat->NegativeOrder > LAST_ORDER))
        return Finish(ERROR_INVALID_PARAMETER);
    return Guarded(0, [&] {
        const UINT page = dwFlags & LOCALE_USE_CP_ACP ? GetACP() : AnsiPageOf(locale);
        return Write(number, lpFormat ? LayoutOf(*lpFormat, page) : LayoutOf(locale, page),
                     lpNumberStr, cchNumber);
    });
}
} // namespace winapi

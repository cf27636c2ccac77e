// winapi/Locale/DateFormat.cpp
#include "winapi/Locale/DateFormat.h"

#include "Errors/Failure.h"
#include "Locale/CivilDay.h"
#include "Locale/LocaleIds.h"
#include "Locale/LocaleTexts.h"
#include "Locale/Picture.h"
#include "Locale/Result.h"
#include "winapi/Locale/LocaleInfo.h"
#include "winapi/Text/CodePage.h"

#include <cstring>
#include <string>
#include <vector>

namespace winapi
{
namespace
{
constexpr DWORD PICTURES = DATE_SHORTDATE | DATE_LONGDATE | DATE_YEARMONTH;
constexpr DWORD MONTH_AND_DAY = 0x80; // A picture that later systems have, and no locale here.
constexpr WORD FIRST_YEAR = 1601;
constexpr WORD LAST_YEAR = 30827;

// What a call is about: the two kinds differ in this only.
struct DateKind
{
    static DWORD Check(DWORD flags, const SYSTEMTIME& date, bool hasPicture)
    {
        const DWORD picture = flags & PICTURES;
        if ((picture & (picture - 1)) || (flags & MONTH_AND_DAY) ||
            (hasPicture && (flags & (PICTURES | LOCALE_NOUSEROVERRIDE))))
            return ERROR_INVALID_FLAGS;
        const bool isDate = date.wYear >= FIRST_YEAR && date.wYear <= LAST_YEAR &&
                            date.wMonth >= 1 && date.wMonth <= 12 && date.wDay >= 1 &&
                            date.wDay <= DaysOfMonth(date.wYear, date.wMonth);
        return isDate ? ERROR_SUCCESS : ERROR_INVALID_PARAMETER;
    }
    static TextPlace Picture(DWORD flags)
    {
        return flags & DATE_LONGDATE ? LONG_DATE : flags & DATE_YEARMONTH ? YEAR_MONTH : SHORT_DATE;
    }
    static void Write(TextWriter& out, WideView picture, const LocaleTexts& texts,
                      const SYSTEMTIME& date, DWORD)
    {
        WriteDate(out, picture, texts, date);
    }
};

struct TimeKind
{
    static DWORD Check(DWORD, const SYSTEMTIME& time, bool)
    {
        return time.wHour < 24 && time.wMinute < 60 && time.wSecond < 60 &&
                       time.wMilliseconds < 1000
                   ? ERROR_SUCCESS
                   : ERROR_INVALID_PARAMETER;
    }
    static TextPlace Picture(DWORD) { return TIME; }
    static void Write(TextWriter& out, WideView picture, const LocaleTexts& texts,
                      const SYSTEMTIME& time, DWORD flags)
    {
        WriteTime(out, picture, texts, time, flags);
    }
};

// A call whose arguments are sound: everything that its text is made of.
template <class Kind>
class Format
{
public:
    // False with the last error set.
    bool Prepare(LCID lcid, DWORD wish, const SYSTEMTIME* when, bool hasPicture)
    {
        place = PlaceOf(lcid);
        if (place < 0)
            return false;
        flags = wish;
        if (when)
            moment = *when;
        else
            GetLocalTime(&moment);
        if (!Finish(Kind::Check(flags, moment, hasPicture)))
            return false;
        texts = TextsOf(static_cast<unsigned>(place));
        if (texts && !hasPicture)
            picture = (*texts)[Kind::Picture(flags)];
        return texts != nullptr;
    }
    void SetPicture(WideView text) { picture = text; }
    int Locale() const { return place; }

    // Result: units without a terminator, whether they have room or not.
    int Write(WCHAR* buffer, int size) const
    {
        TextWriter out(buffer, size);
        Kind::Write(out, picture, *texts, moment, flags);
        return out.Count();
    }

private:
    int place = -1;
    DWORD flags = 0;
    SYSTEMTIME moment;
    const LocaleTexts* texts = nullptr;
    WideView picture;
};

template <class Kind>
int FormatWide(LCID lcid, DWORD flags, const SYSTEMTIME* when, LPCWSTR picture, LPWSTR buffer,
               int size)
{
    Format<Kind> format;
    if (!IsRoomSound(buffer, size) || !format.Prepare(lcid, flags, when, picture))
        return 0;
    if (picture)
        format.SetPicture(picture);
    const int count = format.Write(buffer, size);
    if (size && count >= size)
        return Finish(ERROR_INSUFFICIENT_BUFFER);
    if (size)
        buffer[count] = 0;
    return count + 1;
}

// A narrow picture as wide text.
class WidePicture
{
public:
    WidePicture(UINT page, LPCSTR text)
    {
        const int length = static_cast<int>(std::strlen(text));
        units.resize(static_cast<std::size_t>(length));
        if (!length)
            return;
        const int count = MultiByteToWideChar(page, 0, text, length, units.data(), length);
        sound = count > 0;
        units.resize(static_cast<std::size_t>(count));
    }
    bool IsSound() const { return sound; }
    WideView View() const { return {units.data(), units.size()}; }

private:
    std::vector<WCHAR> units;
    bool sound = true;
};

template <class Kind>
int FormatNarrow(LCID lcid, DWORD flags, const SYSTEMTIME* when, LPCSTR picture, LPSTR buffer,
                 int size)
{
    Format<Kind> format;
    if (!IsRoomSound(buffer, size) || !format.Prepare(lcid, flags, when, picture))
        return 0;
    const UINT page = flags & LOCALE_USE_CP_ACP ? GetACP() : AnsiPageOf(format.Locale());
    return Guarded(0, [&] {
        const WidePicture wide(page, picture ? picture : "");
        if (!wide.IsSound())
            return 0;
        if (picture)
            format.SetPicture(wide.View());
        WCHAR room[256];
        const int count = format.Write(room, 256);
        if (count <= 256)
            return HandOverIn(page, {room, static_cast<std::size_t>(count)}, buffer, size);
        std::vector<WCHAR> units(static_cast<std::size_t>(count));
        format.Write(units.data(), count);
        return HandOverIn(page, {units.data(), units.size()}, buffer, size);
    });
}
} // namespace

int GetDateFormatW(LCID Locale, DWORD dwFlags, const SYSTEMTIME* lpDate, LPCWSTR lpFormat,
                   LPWSTR lpDateStr, int cchDate)
{
    return FormatWide<DateKind>(Locale, dwFlags, lpDate, lpFormat, lpDateStr, cchDate);
}

int GetDateFormatA(LCID Locale, DWORD dwFlags, const SYSTEMTIME* lpDate, LPCSTR lpFormat,
                   LPSTR lpDateStr, int cchDate)
{
    return FormatNarrow<DateKind>(Locale, dwFlags, lpDate, lpFormat, lpDateStr, cchDate);
}

int GetTimeFormatW(LCID Locale, DWORD dwFlags, const SYSTEMTIME* lpTime, LPCWSTR lpFormat,
                   LPWSTR lpTimeStr, int cchTime)
{
    return FormatWide<TimeKind>(Locale, dwFlags, lpTime, lpFormat, lpTimeStr, cchTime);
}

int GetTimeFormatA(LCID Locale, DWORD dwFlags, const SYSTEMTIME* lpTime, LPCSTR lpFormat,
                   LPSTR lpTimeStr, int cchTime)
{
    return FormatNarrow<TimeKind>(Locale, dwFlags, lpTime, lpFormat, lpTimeStr, cchTime);
}
} // namespace winapi

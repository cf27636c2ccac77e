// winapi/Locale/Picture.h: dates and times by their pictures. Internal.
#pragma once

#include "Locale/LocaleTexts.h"
#include "winapi/Locale/LocalTime.h"

namespace winapi
{
// Text that is written to a buffer as far as it has room, and counted to its end.
class TextWriter
{
public:
    TextWriter(WCHAR* buffer, int size) : units(buffer), room(size) {}

    void Put(WCHAR unit)
    {
        if (used < room)
            units[used] = unit;
        ++used;
    }
    void Put(WideView text)
    {
        for (const WCHAR unit : text)
            Put(unit);
    }
    void PutNumber(unsigned number, int digits);
    void CutBack(int count) { used = count; }
    int Count() const { return used; }

private:
    WCHAR* const units;
    const int room;
    int used = 0;
};

// The date is a valid one.
void WriteDate(TextWriter& out, WideView picture, const LocaleTexts& texts, const SYSTEMTIME& date);

// With the flags of GetTimeFormat that leave fields out or change them.
void WriteTime(TextWriter& out, WideView picture, const LocaleTexts& texts, const SYSTEMTIME& time,
               DWORD flags);
} // namespace winapi

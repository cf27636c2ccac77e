// winapi/Locale/Picture.cpp
#include "Locale/Picture.h"

#include "Locale/CivilDay.h"
#include "winapi/Locale/DateFormat.h"

namespace winapi
{
namespace
{
// One piece of a picture: a field, which is a run of one letter, or a unit of literal text.
struct Piece
{
    WCHAR unit;
    int length; // 0: literal.
    bool quoted;
};

class PictureReader
{
public:
    PictureReader(WideView picture, const char* letters)
        : next(picture.data()),
          end(next + picture.size()),
          fields(letters)
    {}

    // False at the end.
    bool Read(Piece& piece)
    {
        while (next != end && *next == '\'') {
            if (quoted && next + 1 != end && next[1] == '\'') {
                next += 2;
                piece = {'\'', 0, true};
                return true;
            }
            quoted = !quoted;
            ++next;
        }
        if (next == end)
            return false;
        const WCHAR unit = *next++;
        piece = {unit, 0, quoted};
        if (!quoted && IsField(unit))
            for (piece.length = 1; next != end && *next == unit; ++next)
                ++piece.length;
        return true;
    }

private:
    const WCHAR* next;
    const WCHAR* const end;
    const char* const fields;
    bool quoted = false;

    bool IsField(WCHAR unit) const
    {
        for (const char* letter = fields; *letter; ++letter)
            if (unit == static_cast<unsigned char>(*letter))
                return true;
        return false;
    }
};

constexpr char DATE_LETTERS[] = "dMyg";
constexpr char TIME_LETTERS[] = "hHmst";

// Whether the number of the day stands in a picture: a month beside it takes the genitive.
bool HasDayNumber(WideView picture)
{
    PictureReader reader(picture, DATE_LETTERS);
    for (Piece piece; reader.Read(piece);)
        if (piece.unit == 'd' && (piece.length == 1 || piece.length == 2))
            return true;
    return false;
}

class DateWriter
{
public:
    DateWriter(TextWriter& writer, WideView text, const LocaleTexts& own, const SYSTEMTIME& when)
        : out(writer),
          picture(text),
          texts(own),
          date(when)
    {}

    void Write()
    {
        PictureReader reader(picture, DATE_LETTERS);
        for (Piece piece; reader.Read(piece);)
            if (piece.length)
                WriteField(piece.unit, piece.length);
            else
                out.Put(piece.unit);
    }

private:
    TextWriter& out;
    const WideView picture;
    const LocaleTexts& texts;
    const SYSTEMTIME& date;

    void WriteField(WCHAR letter, int length)
    {
        switch (letter) {
        case 'd':
            return length < 3 ? out.PutNumber(date.wDay, length) : WriteDay(length == 3);
        case 'M':
            return length < 3 ? out.PutNumber(date.wMonth, length) : WriteMonth(length == 3);
        case 'y':
            return length < 3 ? out.PutNumber(date.wYear % 100, 2) : out.PutNumber(date.wYear, 4);
        default:
            return out.Put(texts[ERA]);
        }
    }

    void WriteDay(bool isShort)
    {
        const int day = WeekDay(DayNumber(date.wYear, date.wMonth, date.wDay));
        out.Put(texts[(isShort ? SHORT_DAYS : DAYS) + (static_cast<unsigned>(day) + 6) % 7]);
    }

    void WriteMonth(bool isShort)
    {
        const unsigned month = date.wMonth - 1U;
        if (HasDayNumber(picture))
            out.Put(texts[(isShort ? SHORT_GENITIVE_MONTHS : GENITIVE_MONTHS) + month]);
        else
            out.Put(texts[(isShort ? SHORT_MONTHS : MONTHS) + month]);
    }
};

class TimeWriter
{
public:
    TimeWriter(TextWriter& writer, const LocaleTexts& own, const SYSTEMTIME& when, DWORD wish)
        : out(writer),
          texts(own),
          time(when),
          flags(wish)
    {}

    void Write(WideView picture)
    {
        PictureReader reader(picture, TIME_LETTERS);
        for (Piece piece; reader.Read(piece);)
            if (piece.length)
                TakeField(piece.unit, piece.length);
            else if (!skips || (piece.unit == ' ' && !piece.quoted))
                out.Put(piece.unit);
    }

private:
    TextWriter& out;
    const LocaleTexts& texts;
    const SYSTEMTIME& time;
    const DWORD flags;
    int lastField = 0; // Where it ended.
    bool skips = false;

    bool IsLeftOut(WCHAR letter) const
    {
        switch (letter) {
        case 'm':
            return flags & TIME_NOMINUTESORSECONDS;
        case 's':
            return flags & (TIME_NOMINUTESORSECONDS | TIME_NOSECONDS);
        case 't':
            return flags & TIME_NOTIMEMARKER;
        default:
            return false;
        }
    }

    // What is left out takes along the literal text before it and behind it, but for blanks behind.
    // Kept: a day period between it and the hour goes as well.
    void TakeField(WCHAR letter, int length)
    {
        skips = IsLeftOut(letter);
        if (skips)
            return out.CutBack(lastField);
        WriteField(letter, length);
        if (letter != 't')
            lastField = out.Count();
    }

    void WriteField(WCHAR letter, int length)
    {
        const int digits = length < 2 ? 1 : 2;
        switch (letter) {
        case 'h':
            return out.PutNumber(HourOf(flags & TIME_FORCE24HOURFORMAT), digits);
        case 'H':
            return out.PutNumber(time.wHour, digits);
        case 'm':
            return out.PutNumber(time.wMinute, digits);
        case 's':
            return out.PutNumber(time.wSecond, digits);
        default:
            const WideView period = texts[time.wHour < 12 ? MORNING : AFTERNOON];
            return out.Put(length == 1 ? period.substr(0, 1) : period);
        }
    }

    unsigned HourOf(bool whole) const
    {
        return whole ? time.wHour : time.wHour % 12 ? time.wHour % 12 : 12;
    }
};
} // namespace

void TextWriter::PutNumber(unsigned number, int digits)
{
    WCHAR text[10];
    int at = 10;
    for (; number || digits > 0; number /= 10, --digits)
        text[--at] = static_cast<WCHAR>('0' + number % 10);
    Put(WideView(text + at, static_cast<std::size_t>(10 - at)));
}

void WriteDate(TextWriter& out, WideView picture, const LocaleTexts& texts, const SYSTEMTIME& date)
{
    DateWriter(out, picture, texts, date).Write();
}

void WriteTime(TextWriter& out, WideView picture, const LocaleTexts& texts, const SYSTEMTIME& time,
               DWORD flags)
{
    TimeWriter(out, texts, time, flags).Write(picture);
}
} // namespace winapi

// winapi/tests/Support/Locales.h: the locales, and what the services say of them.
#pragma once

#include "Calls.h"

#include <fstream>
#include <sstream>

using Fields = std::vector<std::string>;

// The rows of a table in the folder of data, without comments but with the head where it has one.
inline std::vector<Fields> ReadTable(const char* name, bool withHead = false)
{
    std::ifstream file(std::string(WINAPI_TEST_DATA) + "/" + name);
    EXPECT_TRUE(file.is_open()) << name;
    std::vector<Fields> rows;
    for (std::string line; std::getline(file, line);) {
        if (line.starts_with('#') && !(withHead && rows.empty()))
            continue;
        rows.emplace_back();
        for (std::size_t begin = 0; begin <= line.size();) {
            const std::size_t end = std::min(line.find('\t', begin), line.size());
            rows.back().push_back(line.substr(begin, end - begin));
            begin = end + 1;
        }
    }
    return rows;
}

inline LCID IdOf(const std::string& digits)
{
    return static_cast<LCID>(std::stoul(digits, nullptr, 16));
}

// The ids of all locales in the order of enumeration, the invariant one last.
inline std::vector<LCID> AllLocales()
{
    std::vector<LCID> ids;
    for (const Fields& row : ReadTable("locale-facts.tsv"))
        ids.push_back(IdOf(row[0]));
    return ids;
}

inline WideString FactW(LCID lcid, LCTYPE type)
{
    WCHAR text[256];
    const int count = GetLocaleInfoW(lcid, type, text, 256);
    EXPECT_GT(count, 0) << std::hex << lcid << ' ' << std::dec << type << ' ' << GetLastError();
    return WideString(text, count > 0 ? static_cast<std::size_t>(count - 1) : 0);
}

inline std::string FactA(LCID lcid, LCTYPE type)
{
    char text[512];
    const int count = GetLocaleInfoA(lcid, type, text, 512);
    EXPECT_GT(count, 0) << std::hex << lcid << ' ' << std::dec << type << ' ' << GetLastError();
    return std::string(text, count > 0 ? static_cast<std::size_t>(count - 1) : 0);
}

inline std::string Utf8(const WideString& text)
{
    std::string bytes(text.size() * 3 + 1, '\0');
    const int count =
        text.empty()
            ? 0
            : WideCharToMultiByte(CP_UTF8, 0, text.data(), static_cast<int>(text.size()),
                                  bytes.data(), static_cast<int>(bytes.size()), nullptr, nullptr);
    bytes.resize(static_cast<std::size_t>(count));
    return bytes;
}

inline SYSTEMTIME Moment(int year, int month, int day, int hour = 0, int minute = 0, int second = 0)
{
    SYSTEMTIME time{};
    time.wYear = static_cast<WORD>(year);
    time.wMonth = static_cast<WORD>(month);
    time.wDay = static_cast<WORD>(day);
    time.wHour = static_cast<WORD>(hour);
    time.wMinute = static_cast<WORD>(minute);
    time.wSecond = static_cast<WORD>(second);
    return time;
}

inline WideString DateW(LCID lcid, DWORD flags, const SYSTEMTIME& date, const WCHAR* picture)
{
    WCHAR text[512];
    const int count = GetDateFormatW(lcid, flags, &date, picture, text, 512);
    EXPECT_GT(count, 0) << std::hex << lcid << ' ' << GetLastError();
    return WideString(text, count > 0 ? static_cast<std::size_t>(count - 1) : 0);
}

inline WideString TimeW(LCID lcid, DWORD flags, const SYSTEMTIME& time, const WCHAR* picture)
{
    WCHAR text[512];
    const int count = GetTimeFormatW(lcid, flags, &time, picture, text, 512);
    EXPECT_GT(count, 0) << std::hex << lcid << ' ' << GetLastError();
    return WideString(text, count > 0 ? static_cast<std::size_t>(count - 1) : 0);
}

// A sum over texts, each with a zero behind it.
class TextSum
{
public:
    template <class Unit>
    void Add(const std::basic_string<Unit>& text)
    {
        for (const Unit unit : text)
            AddUnit(static_cast<unsigned short>(
                static_cast<std::make_unsigned_t<decltype(+unit)>>(unit)));
        AddUnit(0);
    }
    unsigned Get() const { return sum; }

private:
    unsigned sum = 2166136261U;

    void AddUnit(unsigned unit)
    {
        for (const unsigned half : {unit & 0xFF, unit >> 8 & 0xFF})
            sum = (sum ^ half) * 16777619U;
    }
};

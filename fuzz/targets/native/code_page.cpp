// fuzz/targets/native/code_page.cpp: the services between bytes of a code page and units. What is
// counted is what is written, too little room is told and kept to, and a text is the sum of its
// characters, there and back.
//
// Input: a byte for the page, one for the flags, one for the room, the text.
#include "Support/Input.h"
#include "Text/CodePageFacts.h"
#include "winapi/Errors/Codes.h"
#include "winapi/Errors/LastError.h"
#include "winapi/Text/CodePage.h"

#include <memory>

namespace
{
using namespace winapi;

UINT PageOf(unsigned byte)
{
    return byte < codePageCount ? codePages[byte].page : byte % 2 ? CP_UTF8 : CP_UTF7;
}

LPCWSTR Text(const std::u16string& text)
{
    return reinterpret_cast<LPCWSTR>(text.data());
}

// Whole texts, with as much room as they need: the sanitizer sees every one too many.
std::u16string ToWide(UINT page, DWORD flags, const std::string& bytes)
{
    const int length = static_cast<int>(bytes.size());
    const int count = MultiByteToWideChar(page, flags, bytes.data(), length, nullptr, 0);
    REQUIRE(count >= 0);
    const std::unique_ptr<WCHAR[]> room(new WCHAR[static_cast<unsigned>(count) + 1]);
    if (count == 0)
        return u"";
    REQUIRE(MultiByteToWideChar(page, flags, bytes.data(), length, room.get(), count) == count);
    return {reinterpret_cast<const char16_t*>(room.get()), static_cast<std::size_t>(count)};
}

std::string FromWide(UINT page, DWORD flags, const std::u16string& units, BOOL* used)
{
    const int length = static_cast<int>(units.size());
    const int count =
        WideCharToMultiByte(page, flags, Text(units), length, nullptr, 0, nullptr, used);
    REQUIRE(count >= 0);
    if (count == 0)
        return "";
    const std::unique_ptr<char[]> room(new char[static_cast<unsigned>(count)]);
    REQUIRE(WideCharToMultiByte(page, flags, Text(units), length, room.get(), count, nullptr,
                                used) == count);
    return {room.get(), static_cast<std::size_t>(count)};
}

void LittleRoomToWide(UINT page, const std::string& bytes, int whole, int room)
{
    if (room == 0 || room >= whole)
        return;
    const std::unique_ptr<WCHAR[]> place(new WCHAR[static_cast<unsigned>(room)]);
    SetLastError(0);
    REQUIRE(MultiByteToWideChar(page, 0, bytes.data(), static_cast<int>(bytes.size()), place.get(),
                                room) == 0);
    REQUIRE(GetLastError() == ERROR_INSUFFICIENT_BUFFER);
}

void LittleRoomFromWide(UINT page, const std::u16string& units, int whole, int room)
{
    if (room == 0 || room >= whole)
        return;
    const std::unique_ptr<char[]> place(new char[static_cast<unsigned>(room)]);
    SetLastError(0);
    REQUIRE(WideCharToMultiByte(page, 0, Text(units), static_cast<int>(units.size()), place.get(),
                                room, nullptr, nullptr) == 0);
    REQUIRE(GetLastError() == ERROR_INSUFFICIENT_BUFFER);
}

bool IsCoder(UINT page)
{
    return page == CP_UTF7 || page == CP_UTF8;
}

// A page has one byte a character, or two behind a lead byte; one before a zero stands alone.
void RequireSumToWide(UINT page, const std::string& bytes, const std::u16string& whole)
{
    std::u16string sum;
    for (std::size_t at = 0; at < bytes.size();) {
        const bool pair = IsDBCSLeadByteEx(page, static_cast<BYTE>(bytes[at])) &&
                          at + 1 < bytes.size() && bytes[at + 1] != 0;
        const std::size_t count = pair ? 2 : 1;
        sum += ToWide(page, 0, bytes.substr(at, count));
        at += count;
    }
    REQUIRE(sum == whole);
}

void RequireSumFromWide(UINT page, const std::u16string& units, const std::string& whole)
{
    std::string sum;
    for (const char16_t unit : units)
        sum += FromWide(page, 0, std::u16string(1, unit), nullptr);
    REQUIRE(sum == whole);
}

void Bytes(UINT page, DWORD flags, int room, const std::string& bytes)
{
    const std::u16string wide = ToWide(page, 0, bytes);
    LittleRoomToWide(page, bytes, static_cast<int>(wide.size()), room);
    if (!IsCoder(page)) {
        RequireSumToWide(page, bytes, wide);
        const std::u16string strict = ToWide(page, MB_ERR_INVALID_CHARS, bytes);
        REQUIRE(strict.empty() || strict == wide);
    }
    ToWide(page, flags, bytes);
}

void Wide(UINT page, DWORD flags, int room, const std::u16string& units)
{
    BOOL used = 0;
    const std::string bytes = FromWide(page, 0, units, nullptr);
    LittleRoomFromWide(page, units, static_cast<int>(bytes.size()), room);
    FromWide(page, flags, units, page == CP_UTF7 || page == CP_UTF8 ? nullptr : &used);
    if (IsCoder(page))
        return;
    RequireSumFromWide(page, units, bytes);
    // What the page has for certain comes back.
    const std::string exact = FromWide(page, WC_NO_BEST_FIT_CHARS, units, &used);
    if (!used && !exact.empty())
        REQUIRE(ToWide(page, 0, exact) == units);
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    Input input(data, size);
    const UINT page = PageOf(input.Byte());
    const DWORD flags = input.Word();
    const int room = static_cast<int>(input.Byte());
    if (input.Flag())
        Wide(page, flags, room, input.RestUnits());
    else
        Bytes(page, flags, room, input.Rest());
    return 0;
}

// winapi/Text/ConverterHost.cpp
#include "Text/ConverterHost.h"

#include <algorithm>

#include <unicode/ucnv.h>
#include <unicode/ucnv_err.h>
#include <unicode/uset.h>

namespace winapi
{
namespace
{
// Passes over what has no answer.
void Skip(UConverter* converter)
{
    UErrorCode error = U_ZERO_ERROR;
    ucnv_setToUCallBack(converter, UCNV_TO_U_CALLBACK_SKIP, nullptr, nullptr, nullptr, &error);
    ucnv_setFromUCallBack(converter, UCNV_FROM_U_CALLBACK_SKIP, nullptr, nullptr, nullptr, &error);
}

void Stop(UConverter* converter)
{
    UErrorCode error = U_ZERO_ERROR;
    ucnv_setToUCallBack(converter, UCNV_TO_U_CALLBACK_STOP, nullptr, nullptr, nullptr, &error);
    ucnv_setFromUCallBack(converter, UCNV_FROM_U_CALLBACK_STOP, nullptr, nullptr, nullptr, &error);
}

// So many units from first on that have bytes.
void ConvertUnits(UConverter* converter, WCHAR first, int count, void* place,
                  Converter::Apply apply)
{
    constexpr int MOST = 256;
    UChar units[MOST];
    char bytes[MOST * 4];
    int32_t offsets[MOST * 4];
    for (int from = 0; from < count; from += MOST) {
        const int many = std::min(count - from, MOST);
        for (int i = 0; i < many; ++i)
            units[i] = static_cast<UChar>(first + from + i);
        const UChar* source = units;
        char* target = bytes;
        UErrorCode error = U_ZERO_ERROR;
        ucnv_reset(converter);
        ucnv_fromUnicode(converter, &target, bytes + sizeof bytes, &source, units + many, offsets,
                         true, &error);
        const BYTE* const made = reinterpret_cast<const BYTE*>(bytes);
        const int length = static_cast<int>(target - bytes);
        for (int at = 0, next; at < length; at = next) {
            for (next = at + 1; next < length && offsets[next] == offsets[at];)
                ++next;
            apply(place, static_cast<WCHAR>(units[offsets[at]]), made + at, next - at);
        }
    }
}
} // namespace

void* OpenConverter(const char* name)
{
    UErrorCode error = U_ZERO_ERROR;
    UConverter* const converter = ucnv_open(name, &error);
    if (!converter)
        return nullptr;
    Stop(converter);
    ucnv_setFallback(converter, true);
    return converter;
}

void CloseConverter(void* converter)
{
    ucnv_close(static_cast<UConverter*>(converter));
}

WCHAR ToUnit(void* converter, const char* bytes, int count)
{
    UErrorCode error = U_ZERO_ERROR;
    UChar units[4];
    const int length =
        ucnv_toUChars(static_cast<UConverter*>(converter), units, 4, bytes, count, &error);
    return U_SUCCESS(error) && length == 1 ? static_cast<WCHAR>(units[0]) : NO_VALUE;
}

// A letter behind each pair keeps what a faulty one leaves over from meeting the next.
void ToUnits(void* converter, BYTE lead, WCHAR* units)
{
    UConverter* const handle = static_cast<UConverter*>(converter);
    constexpr int STEP = 3;
    char bytes[256 * STEP];
    for (int trail = 0; trail < 256; ++trail) {
        bytes[trail * STEP] = static_cast<char>(lead);
        bytes[trail * STEP + 1] = static_cast<char>(trail);
        bytes[trail * STEP + 2] = 'A';
    }
    UChar made[sizeof bytes * 2];
    int32_t offsets[sizeof bytes * 2];
    const char* source = bytes;
    UChar* target = made;
    UErrorCode error = U_ZERO_ERROR;
    Skip(handle);
    ucnv_reset(handle);
    ucnv_toUnicode(handle, &target, std::end(made), &source, std::end(bytes), offsets, true,
                   &error);
    Stop(handle);
    std::fill_n(units, 256, NO_VALUE);
    for (int at = 0; at < target - made; ++at) {
        const bool shared = (at && offsets[at - 1] == offsets[at]) ||
                            (at + 1 < target - made && offsets[at + 1] == offsets[at]);
        if (offsets[at] % STEP == 0 && !shared)
            units[offsets[at] / STEP] = static_cast<WCHAR>(made[at]);
    }
}

bool FromUnits(void* converter, void* place, Converter::Apply apply)
{
    UConverter* const handle = static_cast<UConverter*>(converter);
    UErrorCode error = U_ZERO_ERROR;
    USet* const known = uset_openEmpty();
    ucnv_getUnicodeSet(handle, known, UCNV_ROUNDTRIP_AND_FALLBACK_SET, &error);
    Skip(handle);
    for (int item = 0; U_SUCCESS(error) && item < uset_getItemCount(known); ++item) {
        UChar32 first;
        UChar32 last;
        UErrorCode none = U_ZERO_ERROR;
        // Items that are texts of several characters have a length.
        if (uset_getItem(known, item, &first, &last, nullptr, 0, &none) == 0 && first < 0x10000)
            ConvertUnits(handle, static_cast<WCHAR>(first),
                         std::min<UChar32>(last, 0xFFFF) - first + 1, place, apply);
    }
    Stop(handle);
    uset_close(known);
    return U_SUCCESS(error);
}
} // namespace winapi

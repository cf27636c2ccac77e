// winapi/Converter.cpp
#include "CodePages.h"

#include <unicode/ucnv.h>
#include <unicode/ucnv_err.h>

namespace winapi
{
Converter::Converter(const char* name)
{
    UErrorCode error = U_ZERO_ERROR;
    handle = ucnv_open(name, &error);
    if (!handle)
        return;
    ucnv_setToUCallBack(handle, UCNV_TO_U_CALLBACK_STOP, nullptr, nullptr, nullptr, &error);
    ucnv_setFromUCallBack(handle, UCNV_FROM_U_CALLBACK_STOP, nullptr, nullptr, nullptr, &error);
    ucnv_setFallback(handle, true);
    if (U_FAILURE(error)) {
        ucnv_close(handle);
        handle = nullptr;
    }
}

Converter::~Converter()
{
    ucnv_close(handle);
}

WCHAR Converter::ToUnit(const char* bytes, int count)
{
    UErrorCode error = U_ZERO_ERROR;
    UChar units[4];
    const int length = ucnv_toUChars(handle, units, 4, bytes, count, &error);
    return U_SUCCESS(error) && length == 1 ? static_cast<WCHAR>(units[0]) : NO_VALUE;
}

int Converter::FromUnit(WCHAR unit, char (&bytes)[4])
{
    UErrorCode error = U_ZERO_ERROR;
    const UChar units[] = {static_cast<UChar>(unit)};
    const int length = ucnv_fromUChars(handle, bytes, 4, units, 1, &error);
    return U_SUCCESS(error) && length <= 4 ? length : 0;
}
} // namespace winapi

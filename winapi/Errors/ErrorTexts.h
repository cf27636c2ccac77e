// winapi/Errors/ErrorTexts.h: the texts of the system errors. Internal.
#pragma once

#include "winapi/Base/Types.h"

namespace winapi
{
// A text without the line end that it has in a message; ASCII.
struct ErrorText
{
    DWORD code;
    const char* text;
};

// Ascending by code.
extern const ErrorText errorTexts[];
extern const unsigned errorTextCount;
} // namespace winapi

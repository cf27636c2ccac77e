// winapi/Base/Constants.h: numbers shared by all groups of services.
#pragma once

#include "winapi/Base/Types.h"
#include "winapi/Base/Words.h"

namespace winapi
{
// Other libraries have macros of these names, with the same values.
#ifndef TRUE
constexpr BOOL TRUE = 1;
#endif
#ifndef FALSE
constexpr BOOL FALSE = 0;
#endif

constexpr int MAX_PATH = 260;
const HANDLE INVALID_HANDLE_VALUE = reinterpret_cast<HANDLE>(std::intptr_t{-1});

constexpr WORD MAKELANGID(unsigned primary, unsigned sub)
{
    return static_cast<WORD>(sub << 10 | static_cast<WORD>(primary));
}
} // namespace winapi

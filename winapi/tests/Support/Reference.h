// winapi/tests/Support/Reference.h: answers of the published documentation that the reference run is known
// not to give.
#pragma once

#include <gtest/gtest.h>

#include <windows.h>

inline bool IsReferenceRun()
{
#ifdef _WIN32
    const HMODULE module = GetModuleHandleA("ntdll.dll");
    return module && GetProcAddress(module, "wine_get_version");
#else
    return false;
#endif
}

// Expects the published answer; on the reference run that it is still another one, so that a gap is
// noticed when it closes.
#define EXPECT_PUBLISHED(expected, actual)                                                         \
    do {                                                                                           \
        if (IsReferenceRun())                                                                      \
            EXPECT_NE(expected, actual) << "the gap has closed";                                   \
        else                                                                                       \
            EXPECT_EQ(expected, actual);                                                           \
    } while (false)

// tests/Support/Platform.cpp: lets a run of a test program be told which family of systems it is
// on.
#include <windows.h>

#include <cstdlib>

extern "C" DWORD winapi_TestPlatformId()
{
    const char* platform = std::getenv("OSTRA_TEST_PLATFORM");
    return platform ? static_cast<DWORD>(std::strtoul(platform, nullptr, 10))
                    : VER_PLATFORM_WIN32_NT;
}

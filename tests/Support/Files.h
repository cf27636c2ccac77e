// tests/Support/Files.h: names, texts and system failures for the tests of files.
#pragma once

#include <Ostra/String/CString.h>
#include <Ostra/String/UString.h>

#include <gtest/gtest.h>

#include <windows.h>

#include <ostream>
#include <string>
#include <vector>

#include "Support/Failure.h"

// Whether paths are those of a host with one root, "/" in results and no letters for drives.
#ifdef _WIN32
constexpr bool HOST_PATHS = false;
#else
constexpr bool HOST_PATHS = true;
#endif

// The separator in paths that the system makes.
constexpr char SEPARATOR = HOST_PATHS ? '/' : '\\';

inline CT_UString Name(const std::string& text)
{
    return CT_UString(text.c_str(), -1, 0);
}

// The text of a string of either class; tests keep to ASCII, other units read as "?".
inline std::string Get(const CT_String& text)
{
    std::string out;
    for (unsigned n = 0; n < text.vn_GetLength(); ++n) {
        const unsigned short unit = text.vu_GetAt(n);
        out += unit < 128 ? static_cast<char>(unit) : '?';
    }
    return out;
}

// A report of the system's last error: its code, what stands in brackets behind the system's text,
// and its trail.
struct SystemFailure
{
    unsigned code = 0xFFFFFFFF;
    std::string names;
    std::vector<std::string> trail;

    bool operator==(const SystemFailure&) const = default;
};

inline void PrintTo(const SystemFailure& failure, std::ostream* out)
{
    *out << failure.code << " [" << failure.names << "] at";
    for (const std::string& place : failure.trail)
        *out << " " << place;
}

// The thread's error as such a report; clears it. The text has to be of the form "(code): ...
// [names]".
inline SystemFailure TakeSystem()
{
    const Failure failure = TakeFailure();
    SystemFailure system = {failure.code, "", failure.trail};
    if (failure.code == 0xFFFFFFFF)
        return system;
    EXPECT_EQ(failure.text.find("(" + std::to_string(failure.code) + "): "), 0u) << failure.text;
    const auto bracket = failure.text.rfind(" [");
    if (bracket == std::string::npos || failure.text.back() != ']')
        system.names = "no brackets: " + failure.text;
    else
        system.names = failure.text.substr(bracket + 2, failure.text.size() - bracket - 3);
    return system;
}

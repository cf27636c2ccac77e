// tests/Support/Failure.h: what the error manager holds for the thread, as values that a test can
// compare.
#pragma once

#include <Ostra/Frame/ErrorManager.h>

#include <gtest/gtest.h>

#include <string>
#include <vector>

inline CT_ErrorManager& Errors()
{
    return *CT_ErrorManager::spco_Get();
}

// Wide text of the library as a string, and a literal as wide text of the library.
inline std::u16string Wide(const unsigned short* text)
{
    return text ? reinterpret_cast<const char16_t*>(text) : u"";
}
inline const unsigned short* Units(const char16_t* text)
{
    return reinterpret_cast<const unsigned short*>(text);
}

// Wide text for messages of tests: units above 126 as \xHHHH.
inline std::string Narrow(const std::u16string& text)
{
    std::string out;
    for (char16_t unit : text) {
        char code[8];
        std::snprintf(code, sizeof(code), unit < 127 ? "%c" : "\\x%04x", unit);
        out += code;
    }
    return out;
}

// An error with its trail of source paths, the one nearest the failure first. Code -1 and no text:
// no error.
struct Failure
{
    unsigned code = 0xFFFFFFFF;
    std::string text;
    std::vector<std::string> trail;

    bool operator==(const Failure&) const = default;
};

inline void PrintTo(const Failure& failure, std::ostream* out)
{
    *out << failure.code << " \"" << failure.text << "\" at";
    for (const std::string& place : failure.trail)
        *out << " " << place;
}

// The thread's set or held error.
inline Failure PeekFailure()
{
    Failure failure;
    if (!Errors().b_IsSetError() && !Errors().b_IsHoldError())
        return failure;
    failure.code = Errors().n_GetErrorCode();
    failure.text = Narrow(Wide(Errors().qcuz_GetErrorMessage()));
    for (unsigned n = 1; n <= Errors().n_GetLocationCount(); ++n)
        failure.trail.push_back(Errors().qccz_GetLocationFileAt(n));
    return failure;
}

// The same, and clears it.
inline Failure TakeFailure()
{
    const Failure failure = PeekFailure();
    if (Errors().b_IsSetError() || Errors().b_IsHoldError())
        Errors().v_ClearError();
    return failure;
}

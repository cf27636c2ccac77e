// tests/Ostra/String/StringSupport.h: what the tests of strings and conversions share.
#pragma once

#include <Ostra/Frame/ErrorManager.h>
#include <Ostra/Frame/Text.h>
#include <Ostra/String/CString.h>
#include <Ostra/String/UString.h>

#include <gtest/gtest.h>

#include <cstring>
#include <functional>
#include <memory>
#include <string>
#include <vector>

constexpr unsigned ALL = -1;
constexpr unsigned OWN = -2;
constexpr unsigned NONE = -1;
constexpr unsigned UTF7 = 65000;
constexpr unsigned UTF8 = 65001;

inline const unsigned short* U(const char16_t* text)
{
    return qcuz_Text(text);
}

// The whole content by its length, embedded zeros included.
inline std::string Text(const CT_CString& s)
{
    return {s.qccz_Get(), s.vn_GetLength()};
}

inline std::u16string Text(const CT_UString& s)
{
    return {reinterpret_cast<const char16_t*>(s.qcuz_Get()), s.vn_GetLength()};
}

// What a reader of the text sees, up to the first terminator.
inline std::string Read(const CT_CString& s)
{
    return s.qccz_Get();
}

inline std::u16string Read(const CT_UString& s)
{
    return reinterpret_cast<const char16_t*>(s.qcuz_Get());
}

// ASCII content of either class, by its length; a character outside shows as ~.
inline std::string Ascii(const CT_String& s)
{
    std::string text;
    for (unsigned n = 0; n < s.vn_GetLength(); ++n) {
        const unsigned short u = s.vu_GetAt(n);
        text += u < 128 ? static_cast<char>(u) : '~';
    }
    return text;
}

inline const CT_Buffer& BufferOf(const CT_String& s)
{
    return *s.pcco_GetBuffer();
}

inline const void* DataOf(const CT_String& s)
{
    return BufferOf(s).qcv_Get();
}

inline unsigned UsesOf(const CT_String& s)
{
    return BufferOf(s).n_GetUseCount();
}

// A string of either class with that ASCII text.
inline std::unique_ptr<CT_String> Make(bool wide, const char* text)
{
    if (wide)
        return std::make_unique<CT_UString>(text, ALL, 1252);
    return std::make_unique<CT_CString>(text, ALL, 1252);
}

// A string of the same class that shares the data.
inline std::unique_ptr<CT_String> Share(const CT_String& s)
{
    return std::unique_ptr<CT_String>(s.vpco_Create());
}

// An element at an address that suits no type.
template <class T>
struct Misplaced
{
    explicit Misplaced(T value) { std::memcpy(bytes + 1, &value, sizeof(value)); }
    const T* At() const { return reinterpret_cast<const T*>(bytes + 1); }

    alignas(16) unsigned char bytes[sizeof(T) + 1] = {};
};

// Runs a check on both classes.
inline void OnBoth(const std::function<void(bool wide)>& check)
{
    for (bool wide : {false, true}) {
        SCOPED_TRACE(wide ? "CT_UString" : "CT_CString");
        check(wide);
    }
}

// Expects an error with this code and these sources in its trail, the oldest first, and clears it.
inline void ExpectError(unsigned code, const std::vector<std::string>& trail)
{
    CT_ErrorManager* errors = CT_ErrorManager::spco_Get();
    ASSERT_TRUE(errors->b_IsSetError());
    EXPECT_EQ(errors->n_GetErrorCode(), code);
    std::vector<std::string> sources;
    for (unsigned n = 1; n <= errors->n_GetLocationCount(); ++n)
        sources.push_back(errors->qccz_GetLocationFileAt(n));
    EXPECT_EQ(sources, trail);
    errors->v_ClearError();
}

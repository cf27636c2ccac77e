// fuzz/Support/Library.h: the library's errors, texts and buffers as a target handles them.
#pragma once

#include <Ostra/Buffer/Buffer.h>
#include <Ostra/Frame/ErrorManager.h>

#include <string>

// The code of the thread's error, which goes; 0 for none.
inline unsigned TakeCode()
{
    CT_ErrorManager& errors = *CT_ErrorManager::spco_Get();
    if (!errors.b_IsSetError() && !errors.b_IsHoldError())
        return 0;
    const unsigned code = errors.n_GetErrorCode();
    errors.v_ClearError();
    return code;
}

// Wide text of the library, and as a string.
inline const unsigned short* UnitsOf(const std::u16string& text)
{
    return reinterpret_cast<const unsigned short*>(text.c_str());
}
inline std::u16string WideOf(const unsigned short* text)
{
    return text ? reinterpret_cast<const char16_t*>(text) : u"";
}

inline std::string BytesOf(const CT_Buffer& buffer)
{
    return buffer.qcv_Get()
               ? std::string(static_cast<const char*>(buffer.qcv_Get()), buffer.n_GetUsedSize())
               : std::string();
}

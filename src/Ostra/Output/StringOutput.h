// Ostra/Output/StringOutput.h: a string as an output.
#pragma once

#include <Ostra/Frame/Export.h>
#include <Ostra/Output/Output.h>
#include <Ostra/String/String.h>

#include <cstddef>

// A string that takes the bytes as 8-bit characters, and converts them if it is a wide one.
//
// Units:   bytes that are appended; characters of the string as its size.
// Owns:    nothing: it keeps the pointer, and the string has to stay.
class OSTRA_API CT_StringOutput : public CT_Output
{
public:
    explicit CT_StringOutput(CT_String& co_String);
    void v_Set(CT_String& co_String);

    static void* operator new(std::size_t n_Size) noexcept;
    static void* operator new(std::size_t, void* pv_Place) noexcept { return pv_Place; }
    static void operator delete(void* pv_Object);

    void vv_Append(unsigned char c_Byte, unsigned n_Count) override;
    // As CT_String::v_Append. Each call is converted by itself, so a character of several bytes has
    // to come whole.
    void vv_Append(const void* qcv_Data, unsigned n_Size) override;
    // These three do nothing.
    void vv_Append(CT_FileOutput& co_Output) override;
    void vv_Append(const CT_MemoryOutput& co_Output) override;
    void vv_Replace(const void* qcv_Data, unsigned n_Size, unsigned n_Offset) override;
    // Characters.
    unsigned vn_GetSize() const override;

private:
    CT_String* pco_String;
};

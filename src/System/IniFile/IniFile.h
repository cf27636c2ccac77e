// System/IniFile/IniFile.h: values of a profile file.
#pragma once

#include <Ostra/Frame/Export.h>
#include <Ostra/Frame/RawCopy.h>
#include <Ostra/String/CString.h>

#include <cstddef>

// The name of a profile file: text with sections, keys and values. It is read and written by the
// system's own services for such files, entry by entry; nothing of it is kept here.
//
// Names of sections and keys ignore case. The file is named as the system wants it: a name without
// a directory lies in the Windows directory. The file and an entry that isn't there are made by the
// first writing.
//
// Units:   bytes of the system's code page; text of a CT_String is converted to it, and an empty
//          one is handed on as empty. A value has at most 1,023 bytes, the rest is cut off. A
//          number is stored as a signed decimal one.
// Owns:    its name.
// Reports: what v_WriteString of raw text can't write, as a system error. 60006 where strings, or
//          the room for a new object, find the heap exhausted; then nothing is read or written.
//          Everything else fails in silence.
// Caller:  a copy by reference is no hold on the name's block; construct or set with the name.
// Threads: one thread at a time. Who reads finds a file as it was before a writing or behind it.
class OSTRA_API CT_IniFile
{
public:
    // ---- Construction -----------------------------------------------------------------------

    explicit CT_IniFile(const CT_String* pcco_Name);
    // Kept: copies the words of the name without a hold on its block.
    OSTRA_RAW_COPY CT_IniFile(const CT_IniFile& co_Other) = default;
    OSTRA_RAW_COPY CT_IniFile& operator=(const CT_IniFile& co_Other) = default;
    ~CT_IniFile() { v_Exit(); }

    // Names another file.
    void v_Set(const CT_String* pcco_Name);

    static void* operator new(std::size_t n_Size) noexcept;
    static void* operator new(std::size_t, void* pv_Place) noexcept { return pv_Place; }
    static void operator delete(void* pv_Object);

    const CT_CString* pcco_GetName() const { return &co_Name; }

    // ---- Reading ----------------------------------------------------------------------------

    // The value, or the default if there is none. The text keeps its code page.
    void v_ReadString(const CT_String* pcco_Section, const CT_String* pcco_Key, CT_String* pco_Out,
                      const CT_String* pcco_Default);
    void v_ReadString(const char* qccz_Section, const char* qccz_Key, CT_String* pco_Out,
                      const char* qccz_Default);
    // The number that the value begins with, modulo 2 to the power of 32; 0 if it begins with none,
    // and the default only if there is no value.
    void v_ReadN(const CT_String* pcco_Section, const CT_String* pcco_Key, unsigned* pn_Out,
                 unsigned n_Default);
    void v_ReadN(const char* qccz_Section, const char* qccz_Key, unsigned* pn_Out,
                 unsigned n_Default);

    // ---- Writing ----------------------------------------------------------------------------

    // Kept: the form of raw text alone reports what fails.
    void v_WriteString(const CT_String* pcco_Section, const CT_String* pcco_Key,
                       const CT_String* pcco_Value);
    void v_WriteString(const char* qccz_Section, const char* qccz_Key, const char* qccz_Value);
    // Kept: a number above 0x7FFFFFFF is written as a negative one.
    void v_WriteN(const CT_String* pcco_Section, const CT_String* pcco_Key, unsigned n_Value);
    void v_WriteN(const char* qccz_Section, const char* qccz_Key, unsigned n_Value);
    // What isn't there is removed already.
    void v_DeleteSection(const char* qccz_Section);
    void v_DeleteKey(const char* qccz_Section, const char* qccz_Key);

private:
    void v_Init(const CT_String* pcco_Name) { co_Name.v_Set(pcco_Name); }
    void v_Exit() {}

    CT_CString co_Name;
};

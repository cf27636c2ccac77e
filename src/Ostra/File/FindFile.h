// Ostra/File/FindFile.h: search of a directory.
#pragma once

#include <Ostra/Frame/Export.h>
#include <Ostra/Frame/Platform.h>
#include <Ostra/Frame/RawCopy.h>
#include <Ostra/String/UString.h>

#include <cstddef>

// The entries of a directory that match a pattern and a filter of attributes.
//
// Units:   attributes are the system's, but that a normal file (80 hexadecimal) has 0.
// Owns:    its strings. The system's search handle is never closed: each search costs one for the
//          rest of the process.
// Reports: nothing of its own.
// Caller:  filters "." and ".." if they are unwanted.
// Threads: one thread at a time.
class OSTRA_API CT_FindFile
{
public:
    // An entry as the system found it; times in seconds since 1970.
    template <class t_Unit>
    struct st_FindData
    {
        unsigned n_Attributes;
        unsigned n_CreateTime;
        unsigned n_AccessTime;
        unsigned n_WriteTime;
        unsigned n_Size;
        t_Unit au_Name[260]; // the room that the system has for a name
    };

    // An entry is accepted if n_Include is 0 or has a bit in common with its attributes, and
    // n_Exclude has none. b_FullPath delivers names with the pattern's directory before them.
    CT_FindFile(CT_String* pco_Pattern, unsigned n_Include, unsigned n_Exclude, int b_FullPath);
    // Kept: by reference the members are copied, the strings without a hold on their blocks.
    OSTRA_RAW_COPY CT_FindFile(const CT_FindFile& co_Other) = default;
    OSTRA_RAW_COPY CT_FindFile& operator=(const CT_FindFile& co_Other) = default;

    static void* operator new(std::size_t n_Size) noexcept;
    static void* operator new(std::size_t, void* pv_Place) noexcept { return pv_Place; }
    static void operator delete(void* pv_Object);

    // Takes another pattern and filter.
    void v_Set(CT_String* pco_Pattern, unsigned n_Include, unsigned n_Exclude, int b_FullPath);

    // The first and the next accepted entry; false if there is none.
    int b_FindFirst(CT_String* pco_Name, unsigned* pn_Attributes);
    int b_FindNext(CT_String* pco_Name, unsigned* pn_Attributes);

private:
    void v_Null();
    void v_Init(CT_String* pco_Pattern, unsigned n_Include, unsigned n_Exclude, int b_FullPath);

    int b_Step(int b_First);
    int b_Accept(CT_String* pco_Name, unsigned* pn_Attributes) const;
    int b_TestAttribut(unsigned n_Attributes) const;
    void v_MakeName(CT_String* pco_Name) const;

    // The order of the members is part of the interface.
    st_FindData<unsigned short> st_DataU; // the entry last found on the wide road
    st_FindData<char> st_DataC;           // the entry last found on the 8-bit road
    INT_PTR i_Handle;                     // the open search, -1 for none
    CT_UString co_Directory;              // what stands before each name if b_FullPath is set
    CT_UString co_Pattern;
    unsigned n_Include;
    unsigned n_Exclude;
    int b_FullPath;
};

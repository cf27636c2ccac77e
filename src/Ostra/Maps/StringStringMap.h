// Ostra/Maps/StringStringMap.h: a row of pairs of two strings.
#pragma once

#include <Ostra/ARRAY/Array.h>
#include <Ostra/Frame/Export.h>

#include <cstddef>

class CT_String;

// A short list of pairs of strings in the order in which they came, to be searched from either
// side. Nothing keeps a string from being there twice; searches go through the list from its first
// pair and find the first one. Strings are compared exactly, also one of bytes with one of units.
//
// Units:   indexes count from 1; counts and growths are pairs, a count of -1 all of them. Text
//          given as bytes is a CT_CString of the system's code page, text given as units a
//          CT_UString.
// Owns:    its strings. Each is new and of the class of the string given, whose data it shares.
//          What is lent stays good until its pair is removed, or the map is set.
// Reports: nothing of its own; 60006 comes from strings and arrays when the heap is exhausted. The
//          pair is then left out.
// Threads: one thread at a time.
class OSTRA_API CT_StringStringMap
{
public:
    // ---- Construction -----------------------------------------------------------------------

    // Empty.
    explicit CT_StringStringMap(unsigned n_Growth = 4);
    // Copies the pairs and takes the growth.
    explicit CT_StringStringMap(const CT_StringStringMap* pcco_Map);
    CT_StringStringMap(const CT_StringStringMap&) = delete;
    CT_StringStringMap& operator=(const CT_StringStringMap&) = delete;
    ~CT_StringStringMap();

    // Empties the map, which keeps its room.
    void v_Set(unsigned n_Growth);
    // The same, then as constructed from that map. Kept: a map set to itself is empty.
    void v_Set(const CT_StringStringMap* pcco_Map);

    static void* operator new(std::size_t n_Size) noexcept;
    static void* operator new(std::size_t, void* pv_Place) noexcept { return pv_Place; }
    static void operator delete(void* pv_Object);

    // ---- Access and search ------------------------------------------------------------------

    unsigned n_GetCount() const { return co_First.n_GetCount(); }
    // The held strings; null for an index outside the map.
    void v_GetAt(CT_String** ppco_First, CT_String** ppco_Second, unsigned n_Index) const;

    // The first string of the first pair with that second one, or null.
    const CT_String* pcco_GetString1(const CT_String* pcco_Second) const;
    const CT_String* pcco_GetString1(const char* qccz_Second) const;
    const CT_String* pcco_GetString1(const unsigned short* qcuz_Second) const;
    // The second string of the first pair with that first one, or null.
    const CT_String* pcco_GetString2(const CT_String* pcco_First) const;
    const CT_String* pcco_GetString2(const char* qccz_First) const;
    const CT_String* pcco_GetString2(const unsigned short* qcuz_First) const;

    // ---- Change -----------------------------------------------------------------------------

    // Adds at the end.
    void v_Insert(const CT_String* pcco_First, const CT_String* pcco_Second);
    void v_Insert(const char* qccz_First, const char* qccz_Second);
    void v_Insert(const unsigned short* qcuz_First, const unsigned short* qcuz_Second);
    // Copies that many pairs of the other map, from its first, to the end.
    void v_Append(CT_StringStringMap* pco_Map, unsigned n_Count);
    void v_RemoveAt(unsigned n_Index);

    // ---- Flat form --------------------------------------------------------------------------

    // Of each pair the first string, c_Inner, the second string, c_Outer. Separators are characters
    // of the system's code page.
    void v_Map2String(CT_String* pco_Out, char c_Inner, char c_Outer) const;
    // Kept: leaves the map empty with a growth of 4, whatever the text: the form is for writing.
    void v_String2Map(const CT_String* pcco_In, char c_Inner, char c_Outer);

private:
    using Strings = CT_Array<CT_String*>;

    void v_Init(unsigned n_Growth);
    void v_Init(const CT_StringStringMap* pcco_Map);
    void v_Exit();
    int b_Insert(const CT_String* pcco_First, const CT_String* pcco_Second);
    void v_AppendFrom(const CT_StringStringMap* pcco_Map, unsigned n_Count);
    const CT_String* pcco_Get(const Strings* pcco_Searched, const Strings* pcco_Answered,
                              const CT_String* pcco_Key) const;

    // Item k of both belongs together.
    Strings co_First;
    Strings co_Second;
};

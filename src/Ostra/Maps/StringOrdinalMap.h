// Ostra/Maps/StringOrdinalMap.h: a row of strings, each known by its place.
#pragma once

#include <Ostra/ARRAY/VoidArray.h>
#include <Ostra/Frame/Export.h>

#include <cstddef>

class CT_String;

// A short list of strings in the order in which they came. Searches go through it from its first
// entry and tell all differences, also between a string of bytes and one of units.
//
// Units:   indexes count from 1, and 0 is none; counts and growths are entries, a count of -1 all
//          of them. Text given as bytes is a CT_CString of the system's code page, text given as
//          units a CT_UString.
// Owns:    its strings. Each is new and of the class of the string given, whose data it shares.
//          What is lent stays good until its entry is replaced or removed, or the map is set.
// Reports: nothing of its own; 60006 comes from strings and array when the heap is exhausted. The
//          entry is then left out.
// Threads: one thread at a time.
class OSTRA_API CT_StringOrdinalMap
{
public:
    // ---- Construction -----------------------------------------------------------------------

    // Empty.
    explicit CT_StringOrdinalMap(unsigned n_Growth = 8);
    // Copies the entries and takes the growth.
    explicit CT_StringOrdinalMap(const CT_StringOrdinalMap* pcco_Map);
    CT_StringOrdinalMap(const CT_StringOrdinalMap&) = delete;
    CT_StringOrdinalMap& operator=(const CT_StringOrdinalMap&) = delete;
    ~CT_StringOrdinalMap();

    // Empties the map, which keeps its room.
    void v_Set(unsigned n_Growth);
    // The same, then as constructed from that map. Kept: a map set to itself is empty.
    void v_Set(const CT_StringOrdinalMap* pcco_Map);

    static void* operator new(std::size_t n_Size) noexcept;
    static void* operator new(std::size_t, void* pv_Place) noexcept { return pv_Place; }
    static void operator delete(void* pv_Object);

    // ---- Access -----------------------------------------------------------------------------

    unsigned n_GetCount() const { return co_Strings.n_GetCount(); }
    // Null for an index outside the map.
    const CT_String* pcco_Get(unsigned n_Index) const;
    // The text as the string holds it; nothing is converted. Kept: units come behind a pointer to
    // bytes, and bytes behind a pointer to units.
    const char* qccz_Get(unsigned n_Index) const;
    const unsigned short* qcuz_Get(unsigned n_Index) const;

    // ---- Search -----------------------------------------------------------------------------

    // The index of the first equal string, or 0.
    unsigned n_Get(const CT_String* pcco_Text) const;
    unsigned n_Get(const char* qccz_Text) const;
    unsigned n_Get(const unsigned short* qcuz_Text) const;

    // ---- Change -----------------------------------------------------------------------------

    // Adds at the end.
    void v_Insert(const CT_String* pcco_Text);
    void v_Insert(const char* qccz_Text);
    void v_Insert(const unsigned short* qcuz_Text);
    // The same, with the index of the new entry as result; 0 if it could not be made.
    unsigned n_Insert(const CT_String* pcco_Text);
    unsigned n_Insert(const char* qccz_Text);
    unsigned n_Insert(const unsigned short* qcuz_Text);
    // Copies that many entries of the other map, from its first, to the end.
    void v_Append(CT_StringOrdinalMap* pco_Map, unsigned n_Count);

    // Gives an entry another text; the class of its string stays.
    void v_SetAt(const CT_String* pcco_Text, unsigned n_Index);
    void v_SetAt(const char* qccz_Text, unsigned n_Index);
    void v_SetAt(const unsigned short* qcuz_Text, unsigned n_Index);
    void v_RemoveAt(unsigned n_Index);

    // ---- Flat form --------------------------------------------------------------------------

    // Each string with the separator, a character of the system's code page, behind it.
    void v_Map2String(CT_String* pco_Out, char c_Separator);
    // Sets the map to the items of a text, which have its class; the growth is 8. Kept: the first
    // empty item ends the reading, whatever stands behind it.
    void v_String2Map(const CT_String* pcco_In, char c_Separator);

private:
    void v_Init(unsigned n_Growth);
    void v_Init(const CT_StringOrdinalMap* pcco_Map);
    void v_Exit();
    void v_AppendFrom(const CT_StringOrdinalMap* pcco_Map, unsigned n_Count);

    CT_VoidArray co_Strings; // of CT_String*
};

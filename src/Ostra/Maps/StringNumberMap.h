// Ostra/Maps/StringNumberMap.h: a row of pairs of a string and a number.
#pragma once

#include <Ostra/ARRAY/VoidArray.h>
#include <Ostra/Frame/Export.h>

#include <cstddef>

class CT_Buffer;
class CT_String;

// A short list of strings with a number each, in the order in which they came. Nothing keeps
// strings or numbers from being there twice; searches go through the list from its first entry and
// find the first one. Strings are compared exactly, also one of bytes with one of units.
//
// Units:   indexes count from 1; counts and growths are entries, a count of -1 all of them. Text
//          given as bytes is a CT_CString of the system's code page, text given as units a
//          CT_UString.
// Owns:    its strings. Each is new and of the class of the string given, whose data it shares.
//          What is lent stays good until its entry is replaced or removed, or the map is set.
// Reports: nothing of its own; 60006 comes from strings and arrays when the heap is exhausted. The
//          entry is then left out.
// Threads: one thread at a time.
class OSTRA_API CT_StringNumberMap
{
public:
    // ---- Construction -----------------------------------------------------------------------

    // Empty.
    explicit CT_StringNumberMap(unsigned n_Growth = 8);
    // Copies the entries and takes the growth.
    explicit CT_StringNumberMap(const CT_StringNumberMap* pcco_Map);
    CT_StringNumberMap(const CT_StringNumberMap&) = delete;
    CT_StringNumberMap& operator=(const CT_StringNumberMap&) = delete;
    ~CT_StringNumberMap();

    // Empties the map, which keeps its room.
    void v_Set(unsigned n_Growth);
    // The same, then as constructed from that map. Kept: a map set to itself is empty.
    void v_Set(const CT_StringNumberMap* pcco_Map);

    static void* operator new(std::size_t n_Size) noexcept;
    static void* operator new(std::size_t, void* pv_Place) noexcept { return pv_Place; }
    static void operator delete(void* pv_Object);

    // ---- Access by index --------------------------------------------------------------------

    unsigned n_GetCount() const { return co_Strings.n_GetCount(); }
    // 0, null and an empty text for an index outside the map.
    unsigned n_GetAt(unsigned n_Index) const;
    const CT_String* pcco_GetAt(unsigned n_Index) const;
    // The text as the string holds it; nothing is converted. Kept: units come behind a pointer to
    // bytes, and bytes behind a pointer to units.
    const char* qccz_GetAt(unsigned n_Index) const;
    const unsigned short* qcuz_GetAt(unsigned n_Index) const;

    // ---- Search -----------------------------------------------------------------------------

    // The number of the first equal string. Kept: 0 if there is none, which a stored 0 gives too.
    unsigned n_Get(const CT_String* pcco_Text) const;
    unsigned n_Get(const char* qccz_Text) const;
    unsigned n_Get(const unsigned short* qcuz_Text) const;
    // The string of the first entry with that number; null, or an empty text, if there is none.
    const CT_String* pcco_Get(unsigned n_Number) const;
    const char* qccz_Get(unsigned n_Number) const;
    const unsigned short* qcuz_Get(unsigned n_Number) const;

    // ---- Change -----------------------------------------------------------------------------

    // Adds at the end.
    void v_Insert(const CT_String* pcco_Text, unsigned n_Number);
    void v_Insert(const char* qccz_Text, unsigned n_Number);
    void v_Insert(const unsigned short* qcuz_Text, unsigned n_Number);
    // Copies that many entries of the other map, from its first, to the end.
    void v_Append(CT_StringNumberMap* pco_Map, unsigned n_Count);

    // Gives the first entry with that number another text; the class of its string stays. Nothing
    // changes where no entry has the number.
    void v_Update(const CT_String* pcco_Text, unsigned n_Number);
    void v_Update(const char* qccz_Text, unsigned n_Number);
    void v_Update(const unsigned short* qcuz_Text, unsigned n_Number);
    // The same for an entry by index.
    void v_SetAt(const CT_String* pcco_Text, unsigned n_Index);
    void v_SetAt(const char* qccz_Text, unsigned n_Index);
    void v_SetAt(const unsigned short* qcuz_Text, unsigned n_Index);
    void v_SetAt(unsigned n_Number, unsigned n_Index);

    // The first entry with that number.
    void v_Remove(unsigned n_Number);
    void v_RemoveAt(unsigned n_Index);

    // ---- Binary form ------------------------------------------------------------------------

    // Each number as 4 bytes in the machine's order, and behind it the bytes of its string with
    // their terminator. Kept: a string without a block has no bytes, not even a terminator, and
    // strings of both classes stand as they are; neither can be read back.
    void v_Map2Buffer(CT_Buffer* pco_Out) const;
    // Sets the map to the entries of a buffer whose texts are all units, b_Wide, or all bytes; the
    // growth is 8.
    void v_Buffer2Map(const CT_Buffer* pcco_In, int b_Wide);

private:
    void v_Init(unsigned n_Growth);
    void v_Init(const CT_StringNumberMap* pcco_Map);
    void v_Exit();
    int b_Insert(const CT_String* pcco_Text, unsigned n_Number);
    void v_AppendFrom(const CT_StringNumberMap* pcco_Map, unsigned n_Count);
    template <class String, class Unit>
    void v_Read(const CT_Buffer* pcco_In);

    // Item k of both belongs together.
    CT_VoidArray co_Strings; // of CT_String*
    CT_VoidArray co_Numbers; // of unsigned
};

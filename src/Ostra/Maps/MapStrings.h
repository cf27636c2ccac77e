// Ostra/Maps/MapStrings.h: a row of owned strings, the same for all string maps. Internal.
#pragma once

#include <Ostra/ARRAY/VoidArray.h>
#include <Ostra/String/CString.h>
#include <Ostra/String/UString.h>

// The work of the maps on an array of CT_String*. Indexes count from 1; one outside the row, and a
// string that is null, are nothing: nothing is found there, changed or removed.
class CT_MapStrings
{
public:
    // The string, or null.
    static CT_String* spco_Get(const CT_VoidArray& co_Array, unsigned n_Index);
    // The index of the first string equal to the key, or 0.
    static unsigned sn_Find(const CT_VoidArray& co_Array, const CT_String* pcco_Key);
    // Its text as it stands, in bytes or units; an empty text, which reads as one of either, for an
    // empty string or null.
    static const void* spcv_GetText(const CT_String* pcco_Text);

    // Appends a new string of the class of this one; false without the memory.
    static int sb_Insert(CT_VoidArray& co_Array, const CT_String* pcco_Text);
    // Appends this very string, or deletes it and gives false.
    static int sb_Take(CT_VoidArray& co_Array, CT_String* pco_Text);
    // Replaces the text of a string.
    static void sv_SetAt(CT_VoidArray& co_Array, const CT_String* pcco_Text, unsigned n_Index);
    static void sv_RemoveAt(CT_VoidArray& co_Array, unsigned n_Index);
    // Deletes all strings; the array keeps its block.
    static void sv_RemoveAll(CT_VoidArray& co_Array);

    // A separator as the unit that stands for it in wide text.
    static unsigned short su_Separator(char c_Separator);
};

// A text as a string for the time of a call: CT_CString for bytes, CT_UString for units.
template <class String>
class CT_MapText
{
public:
    template <class Unit>
    explicit CT_MapText(const Unit* qc_Text) : co_Text(qc_Text),
                                               b_Made(!*qc_Text || n_Length())
    {}

    // Null where the heap was exhausted: a part of a text is none.
    operator const CT_String*() const { return b_Made ? &co_Text : nullptr; }

private:
    unsigned n_Length() const { return co_Text.vn_GetLength(); }

    String co_Text;
    bool b_Made;
};

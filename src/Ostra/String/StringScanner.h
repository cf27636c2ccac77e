// Ostra/String/StringScanner.h: items and words of a text.
#pragma once

#include <Ostra/Frame/Export.h>

#include <cstddef>

class CT_CString;
class CT_String;
class CT_UString;

// Splits texts. An item is what stands between two occurrences of one separator, and may be empty;
// a word is a run of characters that aren't in a set, and is never empty. Both count from 1.
//
// The strings of one call have to be of the same class, CT_CString or CT_UString; with any others
// nothing is done, and counts are 0. A text ends at its first terminator. Bytes go from string to
// string as they are, whatever the code pages.
//
// Units:   u_Separator is a UTF-16 unit; for strings of bytes it is converted to the system's ANSI
//          code page. A separator of 0 occurs nowhere.
// Reports: 60006 when an object can't be made with new; strings report it, too.
// Threads: any number; a string belongs to one thread at a time.
class OSTRA_API CT_StringScanner
{
public:
    static void* operator new(std::size_t n_Size) noexcept;
    static void* operator new(std::size_t, void* pv_Place) noexcept { return pv_Place; }
    static void operator delete(void* pv_Object);

    // ---- Items ------------------------------------------------------------------------------

    // Empties pco_Out where there is no such item. Both strings may be one.
    void v_Item(CT_String* pco_Out, const CT_String* pcco_In, unsigned short u_Separator,
                unsigned n_Item);
    // The separators stay: an empty item remains.
    void v_RemoveItem(CT_String* pco_String, unsigned short u_Separator, unsigned n_Item);
    // Kept: the number of separators, which is one less than there are items: "a,b,c" gives 2.
    unsigned n_ItemCount(const CT_String* pcco_In, unsigned short u_Separator) const;

    // ---- Words ------------------------------------------------------------------------------

    // Empties pco_Out where there is no such word. It may be one of the others.
    void v_SubWord(CT_String* pco_Out, const CT_String* pcco_In, const CT_String* pcco_Separators,
                   unsigned n_Word);
    // The separators on both sides stay.
    void v_RemoveWord(CT_String* pco_String, const CT_String* pcco_Separators, unsigned n_Word);
    unsigned n_WordCount(const CT_String* pcco_In, const CT_String* pcco_Separators) const;

private:
    void v_ItemC(CT_CString* pco_Out, const CT_CString* pcco_In, char c_Separator, unsigned n_Item);
    void v_ItemU(CT_UString* pco_Out, const CT_UString* pcco_In, unsigned short u_Separator,
                 unsigned n_Item);
    void v_RemoveItemC(CT_CString* pco_String, char c_Separator, unsigned n_Item);
    void v_RemoveItemU(CT_UString* pco_String, unsigned short u_Separator, unsigned n_Item);
    unsigned n_ItemCountC(const CT_CString* pcco_In, char c_Separator) const;
    unsigned n_ItemCountU(const CT_UString* pcco_In, unsigned short u_Separator) const;
    void v_SubWordC(CT_CString* pco_Out, const CT_CString* pcco_In,
                    const CT_CString* pcco_Separators, unsigned n_Word);
    void v_SubWordU(CT_UString* pco_Out, const CT_UString* pcco_In,
                    const CT_UString* pcco_Separators, unsigned n_Word);
    void v_RemoveWordC(CT_CString* pco_String, const CT_CString* pcco_Separators, unsigned n_Word);
    void v_RemoveWordU(CT_UString* pco_String, const CT_UString* pcco_Separators, unsigned n_Word);
    unsigned n_WordCountC(const CT_CString* pcco_In, const CT_CString* pcco_Separators) const;
    unsigned n_WordCountU(const CT_UString* pcco_In, const CT_UString* pcco_Separators) const;
};

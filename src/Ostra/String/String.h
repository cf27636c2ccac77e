// Ostra/String/String.h: the interface over the 8-bit and the 16-bit string.
#pragma once

#include <Ostra/Buffer/Buffer.h>
#include <Ostra/Frame/Export.h>
#include <Ostra/Frame/RawCopy.h>
#include <Ostra/Frame/Text.h>
#include <Ostra/Frame/Type.h>

#include <cstdarg>

// A zero-terminated text in a shared buffer, in one of two encodings: CT_CString has bytes of a
// code page, CT_UString has UTF-16 units. Text of the other encoding is converted on its way in.
//
// Which of the two a string is, vpv_IsA of the concrete classes tells. vpv_IsKindOf of this class
// does not: its answer is null for a CT_CString.
//
// Units:   lengths, counts and offsets are bytes in a CT_CString and 16-bit units in a CT_UString.
//          A count of -1 (0xFFFFFFFF) means all of it; a code page of -2 the string's own, 0 the
//          system's ANSI code page, 65000 UTF-7, 65001 UTF-8. A code page that the system doesn't
//          have acts as 0.
// Owns:    a hold on its block; strings made from one another by pointer share it and copy before
//          they write.
// Reports: 60006 when the heap is exhausted; the string then stays as it was.
// Caller:  keeps offsets within the length; nothing checks them. A copy by reference is no hold on
//          the block.
// Threads: one thread at a time; two strings on one block may be read and released on two threads.
class OSTRA_API CT_String
{
public:
    static constexpr unsigned ALL = 0xFFFFFFFF; // a count: all that there is

    // ---- Life -------------------------------------------------------------------------------

    virtual const CT_Type* vpcco_GetType() const;
    // This, if the object is exactly of that class; else null.
    virtual void* vpv_IsA(const CT_Type* pcco_Type) const;
    // The sub-object of that class, or null.
    virtual void* vpv_IsKindOf(const CT_Type* pcco_Type) const;
    virtual ~CT_String()
    {
        if (this == &sco_Object)
            CT_Type::sv_ToDestruct(&sco_Type);
        CT_Type::sb_InDestruct(this);
    }
    // A new string of the same class that shares this one's data; null when the heap is exhausted.
    virtual CT_String* vpco_Create() const;

    static const CT_Type* spcco_GetType();

    // ---- Storage and single characters --------------------------------------------------------

    // Makes room for that length, larger or smaller; 0 lets go of the block. b_Keep keeps the text
    // that fits.
    virtual void vv_SetSize(unsigned n_Length, int b_Keep);
    // The same, only if there is less room.
    virtual void vv_SetMinSize(unsigned n_Length, int b_Keep);
    // Fills a range with one character, and ends the text behind it where the class says so.
    virtual void vv_Replace(unsigned short u_Fill, unsigned n_Count, unsigned n_Offset);
    virtual void vv_Replace(char c_Fill, unsigned n_Count, unsigned n_Offset);
    virtual char vc_GetAt(unsigned n_Offset) const;
    virtual unsigned short vu_GetAt(unsigned n_Offset) const;
    // Stores one character; a zero cuts the text there. The length doesn't grow; vv_Update takes it
    // anew. A wide character that isn't one byte in the code page of a CT_CString is a question
    // mark there.
    virtual void vv_SetAt(unsigned short u_New, unsigned n_Offset);
    virtual void vv_SetAt(char c_New, unsigned n_Offset);

    // ---- Change and search ----------------------------------------------------------------

    // Casing of A to Z and a to z; other letters stay.
    virtual void vv_ToLower();
    virtual void vv_ToUpper();
    virtual void vv_Remove(unsigned n_Count, unsigned n_Offset);
    // First offset at or behind n_From; -1 for none.
    virtual unsigned vn_Find(unsigned short u_Find, unsigned n_From = 0) const;
    virtual unsigned vn_Find(char c_Find, unsigned n_From = 0) const;
    virtual unsigned vn_Find(const CT_String* pcco_Find, unsigned n_From = 0) const;
    // Takes the length anew from the first terminator; to be called after writing into the text
    // directly.
    virtual void vv_Update();
    // True if the text matches the pattern, in which * stands for any run and ? for any one
    // character.
    virtual int vb_Match(const CT_String* pcco_Pattern) const;
    // Strips the characters of the set at both ends; null strips space.
    virtual void vv_Strip(const CT_String* pcco_Set);
    virtual void vv_StripRight();
    virtual void vv_StripLeft();
    // Below, at or above 0, by the values of the characters.
    virtual int vi_Compare(const CT_String* pcco_Other, unsigned n_From = 0, unsigned n_Count = ALL,
                           unsigned n_Offset = 0) const;
    virtual int vi_Compare(const unsigned short* qcuz_Other, unsigned n_Count = ALL,
                           unsigned n_Offset = 0) const;
    virtual int vi_Compare(const char* qccz_Other, unsigned n_Count = ALL,
                           unsigned n_Offset = 0) const;
    // The same with a u"..." literal.
    int vi_Compare(const char16_t* qcuz_Other, unsigned n_Count = ALL, unsigned n_Offset = 0) const
    {
        return vi_Compare(qcuz_Text(qcuz_Other), n_Count, n_Offset);
    }
    // Each character found in the one text becomes its partner in the other, or goes if it has
    // none.
    virtual void vv_Translate(const CT_String* pcco_From, const CT_String* pcco_To);

    // ---- Length ---------------------------------------------------------------------------

    // Makes the text that long. What is new holds what stood in the block; 0 gives the room back.
    virtual void vv_SetLength(unsigned n_Length);
    // Characters without the terminator: those of the text, and those that the block has room for.
    virtual unsigned vn_GetLength() const;
    virtual unsigned vn_GetMaximumLength() const;
    // In characters.
    virtual void vv_SetGrowth(unsigned n_Growth);
    virtual unsigned vn_GetGrowth() const;

    // ---- Formatting -----------------------------------------------------------------------

    // Formats into the string, up to 2,047 characters. %s takes text of the format's width, %S of
    // the other one.
    virtual void vv_Format(const CT_String* pcco_Format, va_list args);
    virtual void vv_Format(const CT_String* pcco_Format, ...);
    void v_Format(const char* qccz_Format, ...);
    void v_Format(const char* qccz_Format, va_list args);
    void v_Format(const unsigned short* qcuz_Format, ...);
    void v_Format(const unsigned short* qcuz_Format, va_list args);

    // ---- Set, replace, insert, append -----------------------------------------------

    // An empty string with room for that length.
    void v_Set(unsigned n_Length, int b_Keep);
    void v_Set(const char* qccz_Text, unsigned n_Count, unsigned n_CodePage);
    void v_Set(const unsigned short* qcuz_Text, unsigned n_Count = ALL);
    // The same with a u"..." literal.
    void v_Set(const char16_t* qcuz_New, unsigned n_Count = ALL)
    {
        v_Set(qcuz_Text(qcuz_New), n_Count);
    }
    // Shares the data of a string of the same class.
    void v_Set(const CT_String* pcco_Text);
    // Shares the buffer as it stands: it has to hold a terminated text of this encoding.
    void v_Set(const CT_Buffer* pcco_Buffer);

    // Overwrites from n_Offset on, and cuts the string behind what was written.
    void v_Replace(const CT_String* pcco_Text, unsigned n_From = 0, unsigned n_Count = ALL,
                   unsigned n_Offset = 0);
    void v_Replace(const char* qccz_Text, unsigned n_Count = ALL, unsigned n_Offset = 0);
    void v_Replace(const unsigned short* qcuz_Text, unsigned n_Count = ALL, unsigned n_Offset = 0);

    // In front of the character at n_Offset, or at the end of the text. Of a string no more is
    // taken than its text.
    void v_Insert(const char* qccz_Text, unsigned n_Count = ALL, unsigned n_Offset = 0);
    void v_Insert(const unsigned short* qcuz_Text, unsigned n_Count = ALL, unsigned n_Offset = 0);
    void v_Insert(const CT_String* pcco_Text, unsigned n_Count = ALL, unsigned n_Offset = 0);

    // Behind the text. Text of the other width is converted by the code page of a CT_CString, and
    // by page 0 for a CT_UString.
    void v_Append(char c_Append);
    void v_Append(unsigned short u_Append);
    void v_Append(const char* qccz_Text, unsigned n_Count = ALL);
    void v_Append(const unsigned short* qcuz_Text, unsigned n_Count = ALL);
    void v_Append(const CT_String* pcco_Text, unsigned n_Count = ALL);

    // ---- Buffer ---------------------------------------------------------------------------

    // Takes a block of its own if other strings hold this one.
    void v_CopyWeWrite() { co_Buffer.v_CopyWeWrite(); }
    const CT_Buffer* pcco_GetBuffer() const { return &co_Buffer; }

    // The class's record and its specimen.
    static CT_Type sco_Type;
    static CT_String sco_Object;

protected:
    CT_String() {}
    CT_String(const CT_Buffer* pcco_Buffer) : co_Buffer(pcco_Buffer) {}
    // The specimen.
    CT_String(CT_Type* pco_Type);
    // Kept: copies the members without a hold on the block; the pointer forms share.
    OSTRA_RAW_COPY CT_String(const CT_String& co_Other) = default;
    OSTRA_RAW_COPY CT_String& operator=(const CT_String& co_Other) = default;

    // The work of v_Set, v_Replace, v_Insert and v_Append, in the encoding of the class.
    virtual void vv_Init(const CT_Buffer* pcco_Buffer);
    virtual void vv_Init(const unsigned short* qcuz_Text, unsigned n_Count);
    virtual void vv_Init(const char* qccz_Text, unsigned n_Count, unsigned n_CodePage);
    virtual void vv_Init(const CT_String* pcco_Text);
    virtual void vv_Init(unsigned n_Length);
    virtual void vv_Init();

    virtual void vv_StringReplace(const CT_String* pcco_Text, unsigned n_From, unsigned n_Count,
                                  unsigned n_Offset);
    virtual void vv_StringReplace(const unsigned short* qcuz_Text, unsigned n_Count,
                                  unsigned n_Offset);
    virtual void vv_StringReplace(const char* qccz_Text, unsigned n_Count, unsigned n_Offset,
                                  unsigned n_CodePage);
    virtual void vv_StringInsert(const CT_String* pcco_Text, unsigned n_From, unsigned n_Count,
                                 unsigned n_Offset);
    virtual void vv_StringInsert(const unsigned short* qcuz_Text, unsigned n_Count,
                                 unsigned n_Offset);
    virtual void vv_StringInsert(const char* qccz_Text, unsigned n_Count, unsigned n_Offset,
                                 unsigned n_CodePage);

    CT_Buffer co_Buffer; // the text with its terminator, which the used size counts

    // Conversions write into the buffers of their targets.
    friend class CT_StandardUTF8;
    friend class CT_StringConvert;
};

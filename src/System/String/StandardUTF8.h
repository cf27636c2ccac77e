// System/String/StandardUTF8.h: UTF-8 as other programs write and read it.
#pragma once

#include <Ostra/Frame/Export.h>

class CT_CString;
class CT_UString;

// Text between UTF-8 and UTF-16 by the rules of the Unicode Standard: a character beyond U+FFFF is
// four bytes and two units, and what is ill-formed is never taken for a character. Ill-formed are
// sequences that are cut short, longer than they need be, of surrogates, or of numbers beyond
// U+10FFFF; in UTF-16, surrogates that aren't one high with one low behind it.
//
//     CT_UString text;
//     if (!CT_StandardUTF8::sb_ToWide(&text, bytes))
//         ...; // refused: 60012, with the offset in the text of the error
//     CT_StandardUTF8::sb_ToWide(&text, bytes, -1, CT_StandardUTF8::e_Replace);
//
// Units:   counts and offsets are bytes of UTF-8 and units of wide text. A count of -1 means up to
//          the terminator; within a count a zero is a character like any other. A text has fewer
//          than 2^32 bytes.
// Results: 1, or 0 for what was refused or found no memory. The target and the state of the pieces
//          are then as they were.
// Reports: 60012, "Semantic error: ill-formed UTF-8 at offset 4" or "Semantic error: lone surrogate
//          at offset 4", counted from the start of the text, also in pieces; 60006 when the heap is
//          exhausted.
// Threads: any: nothing is kept but in the caller's state.
class OSTRA_API CT_StandardUTF8
{
public:
    // What becomes of ill-formed text. Replaced, each of its maximal subparts gives one U+FFFD: the
    // longest start of a character that is there, or else a single byte; each lone surrogate does.
    enum et_IllFormed
    {
        e_Refuse,
        e_Replace
    };

    // ---- Whole texts ------------------------------------------------------------------------

    // Sets the string to the text of the bytes, which may be its own.
    static int sb_ToWide(CT_UString* pco_Out, const char* pcc_In, unsigned n_Count = 0xFFFFFFFF,
                         et_IllFormed ec_IllFormed = e_Refuse);
    // The bytes are UTF-8 whatever their code page is.
    static int sb_ToWide(CT_UString* pco_Out, const CT_CString* pcco_In,
                         et_IllFormed ec_IllFormed = e_Refuse);
    // Sets the string to the bytes of the text, and its code page to 65001.
    static int sb_FromWide(CT_CString* pco_Out, const unsigned short* pcu_In,
                           unsigned n_Count = 0xFFFFFFFF, et_IllFormed ec_IllFormed = e_Refuse);
    static int sb_FromWide(CT_CString* pco_Out, const CT_UString* pcco_In,
                           et_IllFormed ec_IllFormed = e_Refuse);

    // The offset of the first that is ill-formed; 0xFFFFFFFF for none.
    static unsigned sn_FindIllFormed(const char* pcc_In, unsigned n_Count = 0xFFFFFFFF);
    static unsigned sn_FindIllFormed(const unsigned short* pcu_In, unsigned n_Count = 0xFFFFFFFF);

    // ---- Texts in pieces ----------------------------------------------------------------------

    // Pieces may be cut anywhere. A state begins as {}, belongs to one text, and keeps what a piece
    // leaves open; behind the last piece a call to the end says that nothing more comes, and makes
    // the state new. Pieces are appended to the target, and are no part of it.
    struct st_ToWide
    {
        unsigned long long n8_Taken = 0; // bytes of the pieces so far
        unsigned n_Open = 0;             // those of the last character, when it isn't whole
        char ac_Open[3] = {};
    };
    struct st_FromWide
    {
        unsigned long long n8_Taken = 0; // units of the pieces so far
        unsigned n_Open = 0;             // 1 if the last one is a high surrogate
        unsigned short ac_Open[1] = {};
    };

    // The end of a text that was left open is ill-formed: it is refused, or gives one U+FFFD.
    static int sb_PieceToWide(CT_UString* pco_Out, st_ToWide* pso_State, const char* pcc_In,
                              unsigned n_Count = 0xFFFFFFFF, et_IllFormed ec_IllFormed = e_Refuse);
    static int sb_EndToWide(CT_UString* pco_Out, st_ToWide* pso_State,
                            et_IllFormed ec_IllFormed = e_Refuse);
    static int sb_PieceFromWide(CT_CString* pco_Out, st_FromWide* pso_State,
                                const unsigned short* pcu_In, unsigned n_Count = 0xFFFFFFFF,
                                et_IllFormed ec_IllFormed = e_Refuse);
    static int sb_EndFromWide(CT_CString* pco_Out, st_FromWide* pso_State,
                              et_IllFormed ec_IllFormed = e_Refuse);

private:
    template <class Way>
    static int sb_Piece(typename Way::Target* pco_Out, typename Way::State* pso_State,
                        const typename Way::In* pcc_In, unsigned n_Count, et_IllFormed ec_IllFormed,
                        bool b_Last);
    template <class Way>
    static int sb_Whole(typename Way::Target* pco_Out, const typename Way::In* pcc_In,
                        unsigned n_Count, et_IllFormed ec_IllFormed);
};

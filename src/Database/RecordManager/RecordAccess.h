// Database/RecordManager/RecordAccess.h: the short ways of CT_RecordManager, for its own sources.
// Internal.
#pragma once

#include <Database/RecordManager/RecordManager.h>

#include <Ostra/Frame/Report.h>

#include <bit>
#include <cstring>

// What all sources of the class report as their place.
inline constexpr char qccz_Source[] = "Database/RecordManager/RecordManager";

// In front of the data of a body or a resource: its size, which counts itself.
inline constexpr unsigned SIZE_WORD = 4;

// ---- Bytes of the view --------------------------------------------------------------------------
//
// Where the view of the file has all of the bytes, nothing can fail and the system isn't asked: a
// pair of these calls leaves the file as a seek and a transfer would. Null where the two have to be
// made.

inline const char* CT_RecordManager::pcc_ReadAt(unsigned n_Offset, unsigned n_Size) const
{
    return co_File.pcc_ReadAt(n_Offset, n_Size);
}

// Behind the writing comes v_Written.
inline char* CT_RecordManager::pc_WriteAt(unsigned n_Offset, unsigned n_Size)
{
    return co_File.pc_WriteAt(n_Offset, n_Size);
}

inline unsigned n_WordAt(const char* pcc_Place)
{
    unsigned n_Word;
    std::memcpy(&n_Word, pcc_Place, sizeof n_Word);
    return n_Word;
}

// One word; 0 where the file doesn't hold it whole.
inline unsigned CT_RecordManager::n_Read(unsigned n_Offset) const
{
    const char* pcc_Word = pcc_ReadAt(n_Offset, sizeof(unsigned));
    return pcc_Word ? n_WordAt(pcc_Word) : n_ReadSlowly(n_Offset);
}

// Whether the chain stands in memory, and nothing but this class can have written to the file. With
// an error set a write may have failed.
inline int CT_RecordManager::b_IsChainSafe() const
{
    return pco_Chain && co_File.b_IsViewOwn() && !CT_Report::sb_IsSet();
}

// ---- Blocks -------------------------------------------------------------------------------------

// Counting the bits would be a call where the processor may not have an instruction for it.
inline bool b_IsPowerOf2(unsigned n_Number)
{
    return n_Number && !(n_Number & (n_Number - 1));
}

// Up to the next multiple of the block size, in 32-bit arithmetic.
inline unsigned CT_RecordManager::n_AlignBlockSize(unsigned n_Size) const
{
    const unsigned n_BlockSize = st_Header.n_BlockSize;
    return b_IsPowerOf2(n_BlockSize) ? ((n_Size - 1) & -n_BlockSize) + n_BlockSize
                                     : n_AlignOddly(n_Size);
}

inline unsigned CT_RecordManager::n_GetReference(unsigned n_Offset) const
{
    const unsigned n_BlockSize = st_Header.n_BlockSize;
    return b_IsPowerOf2(n_BlockSize) ? n_Offset >> std::countr_zero(n_BlockSize)
                                     : n_Offset / n_BlockSize;
}

// Ostra/Input/FileInput.h: a file as an input, read into a buffer.
#pragma once

#include <Ostra/Buffer/Buffer.h>
#include <Ostra/File/WinFile.h>
#include <Ostra/Frame/Export.h>
#include <Ostra/Input/Input.h>

#include <cstddef>

// A file that is read block by block into one buffer.
//
// Owns:    the file and the buffer; closes the file at its end.
// Reports: what the file and the buffer report, with its own place.
// Caller:  asks vb_IsUnicode directly behind the open. A read that brings nothing closes the file:
//          at a failure, at the end of a file that has become shorter, for a block of 0 bytes.
class OSTRA_API CT_FileInput : public CT_Input
{
public:
    // Nothing is opened.
    CT_FileInput(unsigned n_Buffer, const CT_String* pco_Name);
    ~CT_FileInput() override;
    // Closes, and takes another file.
    void v_Set(unsigned n_Buffer, const CT_String* pco_Name);

    static void* operator new(std::size_t n_Size) noexcept;
    static void* operator new(std::size_t, void* pv_Place) noexcept { return pv_Place; }
    static void operator delete(void* pv_Object);

    // Makes the buffer of one block, measures the file and opens it for itself alone. A file that
    // is open is closed before, and read from its beginning.
    void vv_Open() override;
    void vv_Close() override;

    // The size that the file had when it was opened; 0 before.
    unsigned vn_GetSize() const override;
    unsigned vn_GetOffset() const override;
    int vb_IsEmpty() const override;
    // Whether the file begins with FF FE. The file is rewound, but the offset isn't.
    int vb_IsUnicode() override;

    int vb_GetNextBuffer(unsigned n_Size, const unsigned char** ppq_Data,
                         unsigned* pn_Size) override;
    int vb_GetNextBuffer(const unsigned char** ppq_Data, unsigned* pn_Size) override;
    // False also if there were less bytes than n_Size; those are delivered and counted.
    int vb_CopyNextBuffer(unsigned char* pq_Target, unsigned n_Size) override;
    // True if something was left before the skip, which ends at the end of the file.
    int vb_Skip(unsigned n_Size) override;

    const CT_File* pcco_GetFile() const { return &co_File; }
    const CT_Buffer* pcco_GetBuffer() const { return &co_Buffer; }

private:
    void v_CloseOpen();
    int b_EndRead(unsigned n_Line = __builtin_LINE());

    // The order of the members is part of the interface.
    CT_WinFile co_File;
    CT_Buffer co_Buffer; // the block that was read last
    unsigned n_Size;     // of the file, taken when it is opened
    unsigned n_Offset;
};

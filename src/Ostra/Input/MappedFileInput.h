// Ostra/Input/MappedFileInput.h: a file as an input, read where the system maps it.
#pragma once

#include <Ostra/File/WinFile.h>
#include <Ostra/Frame/Export.h>
#include <Ostra/Input/Input.h>

#include <cstddef>

// A file that is mapped as a whole and delivered where it lies.
//
// Owns:    the file and its view; both go with the close.
// Reports: what the file reports, with its own place. An empty file can't be mapped, which is an
//          error; it stays open then.
// Caller:  has room for the whole file in the address space, and lets nobody cut it meanwhile.
//          Behind a close only vv_Open, v_Set and the destructor may follow.
class OSTRA_API CT_MappedFileInput : public CT_Input
{
public:
    // Nothing is opened.
    CT_MappedFileInput(unsigned n_Buffer, const CT_String* pco_Name);
    ~CT_MappedFileInput() override;
    // Closes, and takes another file.
    void v_Set(unsigned n_Buffer, const CT_String* pco_Name);

    static void* operator new(std::size_t n_Size) noexcept;
    static void* operator new(std::size_t, void* pv_Place) noexcept { return pv_Place; }
    static void operator delete(void* pv_Object);

    // Opens the file for itself alone and maps it. A file that is open is closed before.
    void vv_Open() override;
    void vv_Close() override;

    unsigned vn_GetSize() const override;
    unsigned vn_GetOffset() const override;
    int vb_IsEmpty() const override;
    // Whether the file begins with FF FE.
    int vb_IsUnicode() override;

    int vb_GetNextBuffer(unsigned n_Size, const unsigned char** ppq_Data,
                         unsigned* pn_Size) override;
    int vb_GetNextBuffer(const unsigned char** ppq_Data, unsigned* pn_Size) override;
    // False also if there were less bytes than n_Size; those are copied.
    int vb_CopyNextBuffer(unsigned char* pq_Target, unsigned n_Size) override;
    // True if something was left before the skip, which ends at the end of the file.
    int vb_Skip(unsigned n_Size) override;

    const CT_File* pcco_GetFile() const { return &co_File; }

private:
    void v_Null();
    void v_CloseOpen();
    int b_IsAtEnd() const { return pq_Current >= pq_End || !co_File.b_IsOpen(); }

    // The order of the members is part of the interface.
    CT_WinFile co_File;
    const unsigned char* pq_Begin; // the view, null before the open
    const unsigned char* pq_End;
    const unsigned char* pq_Current;
};

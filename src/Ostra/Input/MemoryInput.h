// Ostra/Input/MemoryInput.h: memory as an input.
#pragma once

#include <Ostra/Frame/Export.h>
#include <Ostra/Input/Input.h>

#include <cstddef>

// Bytes in the caller's memory, delivered where they lie.
//
// Owns:    nothing: it keeps the pointer, and the bytes have to stay.
// Caller:  needs neither open nor close, which do nothing. Copying and skipping aren't held to the
//          end: the caller knows what is there.
class OSTRA_API CT_MemoryInput : public CT_Input
{
public:
    CT_MemoryInput(unsigned n_Buffer, const unsigned char* pq_Data, unsigned n_Size);
    // The same on an object that is there.
    void v_Set(unsigned n_Buffer, const unsigned char* pq_Data, unsigned n_Size);

    static void* operator new(std::size_t n_Size) noexcept;
    static void* operator new(std::size_t, void* pv_Place) noexcept { return pv_Place; }
    static void operator delete(void* pv_Object);

    void vv_Open() override;
    void vv_Close() override;

    unsigned vn_GetSize() const override;
    // More than the size behind a skip past the end.
    unsigned vn_GetOffset() const override;
    int vb_IsEmpty() const override;
    // What the system's statistics say of the first 100 bytes, wherever the stream stands.
    int vb_IsUnicode() override;

    int vb_GetNextBuffer(unsigned n_Size, const unsigned char** ppq_Data,
                         unsigned* pn_Size) override;
    int vb_GetNextBuffer(const unsigned char** ppq_Data, unsigned* pn_Size) override;
    // False if nothing is left. Else n_Size bytes are copied, also from behind the end.
    int vb_CopyNextBuffer(unsigned char* pq_Target, unsigned n_Size) override;
    // True if bytes are left behind the skip, which may end behind the end.
    int vb_Skip(unsigned n_Size) override;

private:
    // The order of the members is part of the interface.
    const unsigned char* pq_Begin;
    const unsigned char* pq_End;
    const unsigned char* pq_Current;
};

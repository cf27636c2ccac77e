// Ostra/Output/MemoryOutput.h: a buffer as an output.
#pragma once

#include <Ostra/Buffer/Buffer.h>
#include <Ostra/Frame/Export.h>
#include <Ostra/Output/Output.h>

#include <cstddef>

class CT_File;

// A buffer on the heap that takes the bytes.
//
// Owns:    the buffer, until it is given away.
// Reports: 60006 when the heap is exhausted; code 6 of the system without a buffer.
// Caller:  sets an output anew whose buffer has been given away, before it appends.
class OSTRA_API CT_MemoryOutput : public CT_Output
{
public:
    // An empty buffer of growth 32.
    CT_MemoryOutput();
    // Shares the buffer's block and goes on behind its bytes; the first change copies them.
    explicit CT_MemoryOutput(const CT_Buffer* pco_Buffer);
    ~CT_MemoryOutput() override;
    // The same on an object that is there; its buffer goes.
    void v_Set();
    void v_Set(const CT_Buffer* pco_Buffer);

    static void* operator new(std::size_t n_Size) noexcept;
    static void* operator new(std::size_t, void* pv_Place) noexcept { return pv_Place; }
    static void operator delete(void* pv_Object);

    void vv_Append(unsigned char c_Byte, unsigned n_Count) override;
    void vv_Append(const void* qcv_Data, unsigned n_Size) override;
    // Closes the file, reads it and closes it again. It is read in pieces of this buffer's room:
    // without a block nothing is read.
    void vv_Append(CT_FileOutput& co_Output) override;
    void vv_Append(const CT_MemoryOutput& co_Output) override;
    void vv_Replace(const void* qcv_Data, unsigned n_Size, unsigned n_Offset) override;
    unsigned vn_GetSize() const override;

    const CT_Buffer* pcco_GetMemory() const { return pco_Memory; }
    // Hands the buffer over.
    CT_Buffer* pco_GiveMemory();

private:
    void v_Take(CT_Buffer* pco_Buffer, unsigned n_Line = __builtin_LINE());
    int b_IsUsable(unsigned n_Line = __builtin_LINE()) const;
    void v_ReadAll(CT_File* pco_File);

    CT_Buffer* pco_Memory; // null when it has been given away
};

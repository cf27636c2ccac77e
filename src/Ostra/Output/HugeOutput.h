// Ostra/Output/HugeOutput.h: movable memory of the system as an output.
#pragma once

#include <Ostra/Frame/Export.h>
#include <Ostra/Output/Output.h>

#include <cstddef>

// A movable block of the system's global memory that takes the bytes and is then handed to the
// system. It takes bytes only; what it can't do changes nothing.
//
// Owns:    the block, also one that it was given, until it is given away. The block is locked.
// Reports: 60006 when no larger block can be had; the bytes aren't taken then.
// Caller:  lets go of the object when its block has been given away: an append is refused with code
//          6 of the system. Nothing can be replaced: code 50 of the system.
class OSTRA_API CT_HugeOutput : public CT_Output
{
public:
    // Goes on behind the n_Used bytes of a block, or begins without one for null. Each growth adds
    // whole steps of n_Growth bytes, one more than the new bytes fill; 0 counts as 32.
    CT_HugeOutput(void* h_Memory, unsigned n_Used, unsigned n_Growth);
    ~CT_HugeOutput() override;

    static void* operator new(std::size_t n_Size) noexcept;
    static void* operator new(std::size_t, void* pv_Place) noexcept { return pv_Place; }
    static void operator delete(void* pv_Object);

    // Does nothing.
    void vv_Append(unsigned char c_Byte, unsigned n_Count) override;
    void vv_Append(const void* qcv_Data, unsigned n_Size) override;
    // These two do nothing.
    void vv_Append(CT_FileOutput& co_Output) override;
    void vv_Append(const CT_MemoryOutput& co_Output) override;
    // Is refused.
    void vv_Replace(const void* qcv_Data, unsigned n_Size, unsigned n_Offset) override;
    // The bytes that were taken, also when the block has been given away.
    unsigned vn_GetSize() const override;

    // Unlocks the block and hands it over; null if there is none.
    void* h_GiveBuffer();

private:
    // A block was there and has been given away.
    int b_IsGiven() const { return !h_Memory && pv_Memory; }
    unsigned n_PlaceOf(const void* qcv_Data) const;
    int b_Reserve(unsigned n_Extra);
    int b_Move(void* h_New);
    static void sv_Free(void* h_Memory);

    // The order of the members is part of the interface.
    unsigned n_Growth;
    unsigned n_Used;
    unsigned n_Size; // of the block; after a failed growth what it should have had
    void* h_Memory;  // null when there is none
    void* pv_Memory; // the block while it is locked

    unsigned n_Room; // what the block really has
};

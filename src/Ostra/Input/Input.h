// Ostra/Input/Input.h: a source of bytes that is read block by block.
#pragma once

#include <Ostra/Frame/Export.h>

// A source of bytes for readers that take block after block. It goes forward only, by reading or by
// skipping.
//
// Units:   sizes and offsets are bytes, 32 bits of them.
// Owns:    nothing. The bytes of a block belong to the stream: they stay until its next operation.
// Reports: no error of its own. A block operation gives 0 for a failure as for the end of the data;
//          only the error tells the two apart.
// Caller:  opens, reads, closes. A block is shorter than asked for only at the end of the data.
// Threads: one thread at a time.
class OSTRA_API CT_Input
{
public:
    // n_Buffer is the size of the blocks that are asked for without a size.
    explicit CT_Input(unsigned n_Buffer);
    CT_Input(const CT_Input&) = delete;
    CT_Input& operator=(const CT_Input&) = delete;
    virtual ~CT_Input();

    virtual void vv_Open() = 0;
    virtual void vv_Close() = 0;

    // The bytes of the whole source, and those consumed so far.
    virtual unsigned vn_GetSize() const = 0;
    virtual unsigned vn_GetOffset() const = 0;
    // True if nothing is left.
    virtual int vb_IsEmpty() const = 0;
    // Whether the source looks like UTF-16. Memory and files judge by different rules.
    virtual int vb_IsUnicode() = 0;

    // The next block of that size, or of the stream's own: where it lies and how long it is. False
    // if nothing is left.
    virtual int vb_GetNextBuffer(unsigned n_Size, const unsigned char** ppq_Data,
                                 unsigned* pn_Size) = 0;
    virtual int vb_GetNextBuffer(const unsigned char** ppq_Data, unsigned* pn_Size) = 0;
    // Copies the next bytes out; false if there were less. Each class tells what it does then.
    virtual int vb_CopyNextBuffer(unsigned char* pq_Target, unsigned n_Size) = 0;
    // Leaves bytes out. Each class tells what its result means.
    virtual int vb_Skip(unsigned n_Size) = 0;

    // The size of the blocks that are asked for without one.
    unsigned n_GetBuffer() const { return n_Buffer; }
    void v_SetBuffer(unsigned n_NewBuffer) { n_Buffer = n_NewBuffer; }

private:
    unsigned n_Buffer;
};

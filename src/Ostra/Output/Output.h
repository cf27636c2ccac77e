// Ostra/Output/Output.h: a target that bytes are appended to.
#pragma once

#include <Ostra/Frame/Export.h>

class CT_FileOutput;
class CT_MemoryOutput;

// A target for bytes. Each class does what it can do, and the rest does nothing:
//
//                         memory  file  string  huge
//   bytes                 yes     yes   yes     yes
//   one byte, repeated    yes     yes   yes     nothing
//   another file output   yes     yes   nothing nothing
//   another memory output yes     yes   nothing nothing
//   replace               yes     yes   nothing refused
//
// Units:   sizes and offsets are bytes, 32 bits of them.
// Reports: what the target reports, with its own place. What does nothing reports nothing.
// Threads: one thread at a time.
class OSTRA_API CT_Output
{
public:
    CT_Output() {}
    CT_Output(const CT_Output&) = delete;
    CT_Output& operator=(const CT_Output&) = delete;
    virtual ~CT_Output();

    // One byte so many times.
    virtual void vv_Append(unsigned char c_Byte, unsigned n_Count) = 0;
    virtual void vv_Append(const void* qcv_Data, unsigned n_Size) = 0;
    // What the other output has taken so far. A file is closed for it and stays closed if memory
    // takes it, or is opened again, for writing to what exists, if a file does.
    virtual void vv_Append(CT_FileOutput& co_Output) = 0;
    virtual void vv_Append(const CT_MemoryOutput& co_Output) = 0;
    // Overwrites bytes that have been appended before.
    virtual void vv_Replace(const void* qcv_Data, unsigned n_Size, unsigned n_Offset) = 0;
    // What the target holds: bytes; characters of a string.
    virtual unsigned vn_GetSize() const = 0;
};

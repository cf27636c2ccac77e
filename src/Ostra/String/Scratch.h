// Ostra/String/Scratch.h: a block for the length of one call. Internal.
#pragma once

#include <cstddef>
#include <cstdlib>

// A block of the plain heap, all zero; null when the heap is exhausted, which the owner reports.
template <class Unit>
class CT_Scratch
{
public:
    explicit CT_Scratch(std::size_t n_Count)
        : pc_Block(static_cast<Unit*>(std::calloc(n_Count, sizeof(Unit))))
    {}
    ~CT_Scratch() { std::free(pc_Block); }
    CT_Scratch(const CT_Scratch&) = delete;
    CT_Scratch& operator=(const CT_Scratch&) = delete;

    Unit* pc_Get() const { return pc_Block; }

private:
    Unit* pc_Block;
};

// winapi/tests/native/Support/Heap.cpp: all kinds of the operator, so that each block goes where it
// came from.
#include "Heap.h"

#include <cstdlib>
#include <new>

Heap heap;

namespace
{
void* Allocate(std::size_t size)
{
    const bool may = size <= heap.largest && (heap.left < 0 || heap.left-- > 0);
    return may ? std::malloc(size) : nullptr;
}
} // namespace

void* operator new(std::size_t size)
{
    if (void* const block = Allocate(size))
        return block;
    throw std::bad_alloc();
}

void* operator new(std::size_t size, const std::nothrow_t&) noexcept
{
    return Allocate(size);
}

void operator delete(void* block) noexcept
{
    std::free(block);
}

void operator delete(void* block, std::size_t) noexcept
{
    std::free(block);
}

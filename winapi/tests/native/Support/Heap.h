// winapi/tests/native/Support/Heap.h: how much the program's operator new gives.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>

struct Heap
{
    std::atomic<int> left = -1;                  // Blocks until one fails; below 0 none does.
    std::atomic<std::size_t> largest = SIZE_MAX; // Bytes of a block; larger ones fail.
};

extern Heap heap;

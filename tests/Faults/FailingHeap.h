// tests/Faults/FailingHeap.h: a heap that fails on demand, under the library's objects.
//
// malloc, calloc, realloc and free of the program's objects pass through it. Allocations fail only
// on the thread that armed it, and only until it is disarmed; blocks are counted between Track and
// Live.
#pragma once

class FailingHeap
{
public:
    enum Mode
    {
        ONCE, // one allocation fails
        FROM  // it and all behind it fail
    };

    // Lets the thread's allocation `number`, counted from 1, fail; none for 0.
    static void Arm(unsigned number, Mode mode);
    // The heap is whole again. Result: allocations that failed.
    static unsigned Disarm();
    // Allocations asked for since the heap was armed, failed ones too.
    static unsigned Asked();

    // Begins to count the thread's blocks, and how many of those counted are not freed.
    static void Track();
    static unsigned Live();
};

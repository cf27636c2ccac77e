// tests/Faults/Swept.h: who is at work when an allocation or a call fails.
#pragma once

// A program with a library whose calls are all there (swept_tests) writes, at its end, the places
// of code in whose calls allocations and services have failed into the file named by OSTRA_SWEPT: a
// line for each, the kind and the address in the program. tests/Policy/swept.py makes names of
// them. In other programs this does nothing.
class Swept
{
public:
    enum Kind
    {
        HEAP,
        SERVICE,
        KINDS
    };

    static void Mark(Kind kind);
};

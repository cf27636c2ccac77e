// Ostra/Frame/Counter.h: a number that several threads may change.
#pragma once

#include <Ostra/Frame/Export.h>
#include <Ostra/Frame/Interlocked.h>
#include <Ostra/Frame/Platform.h>

#include <atomic>

// A signed 32-bit number whose changes are the interlocked operations of the system, as far as any
// thread can tell.
//
// Reports: nothing.
// Threads: any number; a reading is a plain one and orders nothing.
class OSTRA_API CT_Counter
{
public:
    // Stores 0 and then the value, each atomically.
    CT_Counter(LONG i4_Start = 0)
    {
        v_Set(0);
        v_Set(i4_Start);
    }
    CT_Counter(const CT_Counter& co_Other) : CT_Counter(co_Other.i4_Get()) {}
    CT_Counter& operator=(const CT_Counter& co_Other)
    {
        v_Set(co_Other.i4_Get());
        return *this;
    }
    ~CT_Counter() {}

    // Change by one; the result is the system's, the new value.
    LONG i4_Inc() { return CT_Interlocked::si4_Inc(i4_Value); }
    LONG i4_Dec() { return CT_Interlocked::si4_Dec(i4_Value); }
    void v_Set(LONG i4_New) { std::atomic_ref<LONG>(i4_Value).store(i4_New); }

    LONG i4_Get() const
    {
        return std::atomic_ref<LONG>(const_cast<LONG&>(i4_Value)).load(std::memory_order_relaxed);
    }
    LONG operator()() const { return i4_Get(); }

    // Change by one, then a counter that holds the value read after that.
    CT_Counter operator++()
    {
        i4_Inc();
        return i4_Get();
    }
    CT_Counter operator--()
    {
        i4_Dec();
        return i4_Get();
    }
    // Kept: the postfix forms return the value after the change, exactly like the prefix forms.
    CT_Counter operator++(int) { return ++*this; }
    CT_Counter operator--(int) { return --*this; }

private:
    friend class CT_Buffer;
    template <class Unit>
    friend class CT_TextBuffer;

    // Several changes at once.
    void v_Add(LONG i4_Count) { CT_Interlocked::sv_Add(i4_Value, i4_Count); }

    LONG i4_Value; // a plain number: every change of it is interlocked
};

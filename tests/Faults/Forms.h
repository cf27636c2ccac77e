// tests/Faults/Forms.h: forms of operations, such as copies and those that take another text, with
// an exhausted heap.
//
// What an object promises behind a failure is looked at by the sweep of its class, with another form
// of the operation. For the forms here the failure is told, nothing leaks, and the same done once
// more with the heap whole has no failure.
#pragma once

#include <Ostra/String/CString.h>
#include <Ostra/String/UString.h>

#include "Faults/Sweep.h"

#include <memory>

namespace forms
{
inline constexpr unsigned ALL = 0xFFFFFFFF;
inline constexpr char TEXT[] =
    "a text that is longer than what a block of the least size has room for";
inline constexpr char16_t WIDE_TEXT[] =
    u"a text that is longer than what a block of the least size has";

// Wherever a form comes to the heap.
inline const SweepReport anywhere({"Ostra/Buffer/Buffer",
                                   "Ostra/String/CString",
                                   "Ostra/String/UString",
                                   "Ostra/String/String",
                                   "Ostra/ARRAY/VoidArray",
                                   "Ostra/LIST/VoidList",
                                   "Ostra/HashTable/VoidHashTable",
                                   "Ostra/Containers/AlphaTree",
                                   "Ostra/Containers/StringCache",
                                   "Ostra/CompList/CompList",
                                   "Ostra/CompList/CompListBuilder",
                                   "Ostra/Output/MemoryOutput",
                                   "Ostra/Pattern/Pattern",
                                   "Ostra/File/FindFile",
                                   "Ostra/File/StdFile",
                                   "Ostra/File/WinFile",
                                   "Ostra/Input/MappedFileInput",
                                   "Ostra/Input/FileInput",
                                   "Database/RecordManager/RecordManager",
                                   "System/ModuleVersion/ModuleVersion",
                                   "System/Registry/Registry",
                                   "System/String/StringConvert"});

template <class State>
struct Form
{
    const char* name;
    void (*run)(State&);
};

template <class State, std::size_t COUNT>
void SweepForms(const Form<State> (&forms)[COUNT])
{
    for (const Form<State>& form : forms) {
        SCOPED_TRACE(form.name);
        Sweep(
            anywhere, [] { return std::make_unique<State>(); }, form.run,
            [&](State& state, bool) { form.run(state); });
    }
}

// An object that an operation makes, in a place of its own.
template <class T>
class Made
{
public:
    Made() = default;
    Made(const Made&) = delete;
    Made& operator=(const Made&) = delete;
    ~Made() { Drop(); }

    template <class... Arguments>
    void Make(Arguments... arguments)
    {
        Drop();
        made = ::new (static_cast<void*>(room)) T(arguments...);
    }

private:
    void Drop()
    {
        if (made)
            made->~T();
        made = nullptr;
    }

    alignas(T) char room[sizeof(T)];
    T* made = nullptr;
};

struct Texts
{
    const CT_CString bytes{TEXT};
    const CT_UString units{WIDE_TEXT};
    const unsigned short* wide = Units(WIDE_TEXT);
};
} // namespace forms

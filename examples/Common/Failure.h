// examples/Common/Failure.h: a program's part in the failure protocol of the library.
//
// The library reports a failure by an error that it sets for the calling thread, and each function
// on the way out adds its place to the error's trail. The program does the same with its own
// errors, and prints them all in one way.
#pragma once

#include <Ostra/Frame/ErrorManager.h>
#include <Ostra/Frame/Text.h>

#include <ostream>
#include <string>
#include <vector>

namespace common
{
// The format of a message, with the line that gives it.
struct Format
{
    Format(const char16_t* format, unsigned here = __builtin_LINE())
        : text(qcuz_Text(format)),
          line(here)
    {}
    const unsigned short* text;
    unsigned line;
};

// Sets an error of the program's own, unless the thread has one already, and adds the place of the
// call. %s stands for wide text. The source must be a literal: the error manager keeps the pointer.
template <class... Arguments>
void Fail(const char* source, Format format, Arguments... arguments)
{
    CT_ErrorManager* errors = CT_ErrorManager::spco_Get();
    while (!errors->b_IsSetError())
        errors->v_SetMessageError(format.text, arguments...);
    errors->v_AddLocation(source, format.line);
}

// True while the thread has an error set.
bool Failing();

// The same; has then added the place of the call to the trail.
bool Failed(const char* source, unsigned line = __builtin_LINE());

// An error taken out of the error manager, so that cleaning up can start without one.
class Failure
{
public:
    // The thread's error, which is set or held and stays.
    static Failure Copy();
    // The same, and clears it.
    static Failure Take();

    // One line that begins with the program's name; an error of the library follows the context,
    // which tells what could not be done. With trace the places of the trail follow, that of the
    // failure first.
    void Print(std::ostream& output, const std::string& program, const std::string& context,
               bool trace) const;

private:
    unsigned code = 0;
    std::string message;
    std::vector<std::string> trail;
};
} // namespace common

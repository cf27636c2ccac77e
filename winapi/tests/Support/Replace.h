// winapi/tests/Support/Replace.h: replaces calls of the host.
#pragma once

#include "Base/Posix.h"

using winapi::posix;

// Puts one's own call into the table until the end of the scope.
template <class Function>
class Replace
{
public:
    Replace(Function*& entry, Function* own) : place(entry), old(entry) { place = own; }
    Replace(const Replace&) = delete;
    Replace& operator=(const Replace&) = delete;
    ~Replace() { place = old; }

private:
    Function*& place;
    Function* const old;
};

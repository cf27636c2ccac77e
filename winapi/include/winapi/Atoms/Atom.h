// winapi/Atoms/Atom.h: global atoms, numbers that stand for short texts in all programs of a user.
//
// A text has one number, from C000h up, whatever the case of its letters; the first spelling is
// kept. Numbers are counted: an atom is gone when it was deleted as often as it was added. What a
// process has added and nobody deleted is taken back after its end. "#123" and integers below C000h
// are numbers themselves and need no place.
#pragma once

#include "winapi/Base/Constants.h"

namespace winapi
{
// The text's atom, which counts once more. 0 with ERROR_INVALID_PARAMETER (87) for a text that is
// empty or longer than 255 bytes, and for numbers outside of 1 to BFFFh; ERROR_NOT_ENOUGH_MEMORY (8)
// when all 16384 are taken.
WINAPI_EXPORT ATOM GlobalAddAtomA(LPCSTR lpString);
// 0 with ERROR_FILE_NOT_FOUND (2) for a text that has none.
WINAPI_EXPORT ATOM GlobalFindAtomA(LPCSTR lpString);
// Takes one count back, of whichever process. 0; the atom itself with ERROR_INVALID_HANDLE (6) for
// one that isn't there.
WINAPI_EXPORT ATOM GlobalDeleteAtom(ATOM nAtom);
// Copies as much of the text as there is room for, with a terminator. The length that was copied; 0
// with ERROR_INVALID_HANDLE (6) for what is no atom, ERROR_MORE_DATA (234) without any room.
WINAPI_EXPORT UINT GlobalGetAtomNameA(ATOM nAtom, LPSTR lpBuffer, int nSize);
} // namespace winapi

// winapi/Fonts/CharacterSet.h: character sets, their code pages, and their bits in a face.
#pragma once

#include "winapi/Base/Types.h"

namespace winapi
{
struct CharacterSet
{
    BYTE number;
    unsigned bit; // of FONTSIGNATURE's code pages
    UINT page;
};

// In the order of their bits.
constexpr CharacterSet characterSets[] = {
    {0, 0, 1252},   {238, 1, 1250}, {204, 2, 1251}, {161, 3, 1253}, {162, 4, 1254},
    {177, 5, 1255}, {178, 6, 1256}, {186, 7, 1257}, {163, 8, 1258}, {222, 16, 874},
    {128, 17, 932}, {134, 18, 936}, {129, 19, 949}, {136, 20, 950}, {130, 21, 1361},
};

constexpr BYTE ANSI_SET = 0;
constexpr BYTE ANY_SET = 1;

// Null for a number that no face can have.
const CharacterSet* FindCharacterSet(BYTE number);
// That of a code page; ANSI_SET where it has none.
BYTE CharacterSetOfPage(UINT page);
} // namespace winapi

// winapi/Fonts/Type1Facts.h: what a Type 1 file says of its face.
#pragma once

#include "Fonts/FaceHost.h"

namespace winapi
{
// What FreeType would tell: the box of the font, and the widest of its characters, which only their
// programs tell. FreeType takes a millisecond and more for a file. False for what isn't as plain as
// nearly all files are, and without memory; FreeType is to be asked then.
bool ReadType1Facts(const char* file, int index, FaceFacts* facts);
} // namespace winapi

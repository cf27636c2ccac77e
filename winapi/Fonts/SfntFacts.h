// winapi/Fonts/SfntFacts.h: what a TrueType or OpenType file says of its face, read from its tables.
#pragma once

#include "Fonts/FaceHost.h"

namespace winapi
{
// What FreeType would tell, without what it does to open a face: that takes fifty times as long, and
// a program that asks for the families wants the facts of all faces. False for what isn't as plain
// as nearly all files are; FreeType is to be asked then.
bool ReadSfntFacts(const char* file, int index, FaceFacts* facts);
} // namespace winapi

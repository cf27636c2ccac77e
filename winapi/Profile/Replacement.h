// winapi/Profile/Replacement.h: replacing the contents of a file as a whole.
#pragma once

#include "Files/ShareMode.h"

#include <string>

namespace winapi
{
// Gives the open file of that path new contents. A file beside it gets them first and then its
// name: whoever reads finds the old contents or the new ones, and a run that ends half way leaves
// the old. Owner, mode, access list and attributes stay. Where the directory allows no such file,
// or the owner couldn't stay, the contents are written in place, with room reserved first and
// readers kept waiting. Result: 0 or the code of the failure; then the old contents are there.
DWORD ReplaceFile(const std::string& path, Lockable file, const std::string& contents);
} // namespace winapi

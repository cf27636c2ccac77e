// winapi/CLibrary/SplitPath.h: the parts of a path as the platform's C library tells them.
#pragma once

#include "winapi/Base/Constants.h"

namespace winapi
{
constexpr int _MAX_PATH = 260;
constexpr int _MAX_DRIVE = 3;
constexpr int _MAX_DIR = 256;
constexpr int _MAX_FNAME = 256;
constexpr int _MAX_EXT = 256;

// Splits an 8-bit path, as text only: the directory up to its last `/` or `\`, with it; the name;
// the extension from its last point, with it. There are no drives: that part is empty. A target has
// the room of its number above, or is null for a part that isn't wanted. A path with a part that is
// longer has no parts, as on the platform. A `\` that is the second byte of a character of the ANSI
// code page doesn't count.
WINAPI_EXPORT void _splitpath(LPCSTR path, LPSTR drive, LPSTR dir, LPSTR fname, LPSTR ext);
} // namespace winapi

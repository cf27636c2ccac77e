// winapi/Locale/PatternHost.h: ICU's patterns as pictures of the platform.
#pragma once

#include "winapi/Base/Types.h"

#include <string>

namespace winapi
{
// Letters that have a case stand in quotes, one run at a time; other literal text stands as it is.
std::u16string PictureOf(const std::u16string& pattern);
} // namespace winapi

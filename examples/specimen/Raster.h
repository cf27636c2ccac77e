// examples/specimen/Raster.h: a picture in dots.
#pragma once

#include "Sheet.h"

namespace specimen
{
// The bytes of a PNG file; false with the reason where none can be had.
bool MakePng(const Picture& picture, std::string* png, std::string* reason);
} // namespace specimen

// examples/specimen/RasterNone.cpp
#include "Raster.h"

namespace specimen
{
bool MakePng(const Picture&, std::string*, std::string* reason)
{
    *reason = "pictures in dots can't be made on this system; a name that ends in .svg gets a "
              "document";
    return false;
}
} // namespace specimen

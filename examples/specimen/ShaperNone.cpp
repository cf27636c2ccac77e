// examples/specimen/ShaperNone.cpp
#include "Shaper.h"

namespace specimen
{
std::optional<unsigned> ShapedWidth(const std::string&, bool, bool, unsigned, const std::string&,
                                    bool)
{
    return std::nullopt;
}
} // namespace specimen

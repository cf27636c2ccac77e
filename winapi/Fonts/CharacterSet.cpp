// winapi/Fonts/CharacterSet.cpp
#include "Fonts/CharacterSet.h"

#include <algorithm>
#include <iterator>

namespace winapi
{
const CharacterSet* FindCharacterSet(BYTE number)
{
    const auto found =
        std::find_if(std::begin(characterSets), std::end(characterSets),
                     [number](const CharacterSet& set) { return set.number == number; });
    return found != std::end(characterSets) ? found : nullptr;
}

BYTE CharacterSetOfPage(UINT page)
{
    for (const CharacterSet& set : characterSets)
        if (set.page == page)
            return set.number;
    return ANSI_SET;
}
} // namespace winapi

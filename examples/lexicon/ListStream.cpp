// examples/lexicon/ListStream.cpp
#include "ListStream.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

namespace lexicon
{
namespace
{
constexpr unsigned INNER_END_MARK = 10;
constexpr unsigned ALTERNATIVE_MARK = 13;
constexpr unsigned LIST_END_MARK = 25;
constexpr unsigned LEAF_END_MARK = 26;

constexpr unsigned JUMP_OFFSETS = 16;
} // namespace

ListStream::ListStream(const CT_CompList& list)
    : block(list.pcco_GetBuffer()),
      end(std::min(list.n_GetEnd(), block.n_GetUsedSize())),
      elementSize(list.n_GetElementSize()),
      handleSize(list.n_GetHandleSize()),
      offsetSize(list.b_HasLongOffsetSupport() ? 4 : 2)
{}

Item ListStream::At(unsigned position) const
{
    if (position > end || end - position < elementSize)
        return {Item::NONE, position, 0, position};
    const unsigned element = NumberAt(position, elementSize);
    switch (element) {
    case INNER_END_MARK:
        return With(Item::INNER_END, position, handleSize);
    case ALTERNATIVE_MARK:
        return With(Item::ALTERNATIVE, position, offsetSize);
    case LIST_END_MARK:
        return {Item::LIST_END, position, 0, position + elementSize};
    case LEAF_END_MARK:
        return With(Item::LEAF_END, position, handleSize);
    default:
        return {Item::CHARACTER, position, element, position + elementSize};
    }
}

unsigned ListStream::JumpOffset(unsigned character) const
{
    if (character < 'a' || character > 'z' || end < FIRST)
        return 0;
    return NumberAt(JUMP_OFFSETS + 4 * (character - 'a'), 4);
}

unsigned ListStream::NumberAt(unsigned position, unsigned size) const
{
    // A copy of a fixed size is one instruction.
    const char* bytes = static_cast<const char*>(block.qcv_Get()) + position;
    std::uint32_t number = 0;
    std::uint16_t half = 0;
    switch (size) {
    case 1:
        return static_cast<unsigned char>(*bytes);
    case 2:
        std::memcpy(&half, bytes, sizeof half);
        return half;
    case 4:
        std::memcpy(&number, bytes, sizeof number);
        return number;
    default:
        return 0; // no handle
    }
}

// A mark with the number behind it.
Item ListStream::With(Item::Kind kind, unsigned position, unsigned size) const
{
    const unsigned number = position + elementSize;
    if (end - number < size)
        return {Item::NONE, position, 0, position};
    unsigned value = NumberAt(number, size);
    if (kind == Item::ALTERNATIVE)
        value += position;
    return {kind, position, value, number + size};
}
} // namespace lexicon

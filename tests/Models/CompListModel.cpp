// tests/Models/CompListModel.cpp
#include <Models/CompListModel.h>

namespace
{
constexpr unsigned NONE = 0xFFFFFFFF;
constexpr unsigned END = 4, EMPTY_HANDLE = 12, JUMPS = 16, ENTRIES = 120, FLAGS = 127, STREAM = 132;
enum Mode
{
    SEARCH,
    MATCH,
    ADD
};
} // namespace

CompListModel::CompListModel(unsigned elementSize, unsigned handles, bool emptyString,
                             bool longOffsets, unsigned codePage)
    : bytes(STREAM + elementSize, '\0'),
      element(elementSize),
      handleSize(handles),
      offset(longOffsets ? 4 : 2)
{
    SetNumber(0, 4, 19970101);
    SetNumber(END, 4, STREAM + elementSize);
    SetNumber(8, 4, codePage);
    SetNumber(EMPTY_HANDLE, 4, NONE);
    SetNumber(125, 1, elementSize);
    SetNumber(126, 1, handleSize);
    SetNumber(FLAGS, 1, (emptyString ? 1u : 0u) | (longOffsets ? 2u : 0u));
    SetNumber(128, 1, 1);
    SetNumber(STREAM, element, 25);
}

bool CompListModel::Add(const std::string& key, unsigned handle)
{
    if (!Walk(key, ADD, handle, nullptr))
        return false;
    SetNumber(ENTRIES, 4, Number(bytes, ENTRIES, 4) + 1);
    return true;
}

unsigned CompListModel::Search(const std::string& key, unsigned* matched, bool match) const
{
    return CompListModel(*this).Walk(key, match ? MATCH : SEARCH, 0, matched);
}

unsigned CompListModel::Number(const std::string& from, unsigned position, unsigned size) const
{
    unsigned value = 0;
    for (unsigned index = 0; index < size; ++index)
        value |= static_cast<unsigned>(static_cast<unsigned char>(from.at(position + index)))
                 << 8 * index;
    return value;
}

void CompListModel::SetNumber(unsigned position, unsigned size, unsigned value)
{
    for (unsigned index = 0; index < size; ++index)
        bytes.at(position + index) = static_cast<char>(value >> 8 * index);
}

unsigned CompListModel::Element(unsigned position) const
{
    return position >= Number(bytes, END, 4) ? 25 : Number(bytes, position, element);
}

unsigned CompListModel::KeySize(const std::string& key) const
{
    const unsigned unit = element == 1 ? 1 : 2;
    unsigned size = 0;
    while (Number(key, size, unit))
        size += unit;
    return size;
}

void CompListModel::InsertBytes(unsigned position, unsigned count)
{
    // A gap holds a copy of the block's beginning until it is written.
    std::string gap = bytes.substr(0, count);
    gap.resize(count);
    bytes.insert(position, gap);
    SetNumber(END, 4, Number(bytes, END, 4) + count);
    for (unsigned q = STREAM; q < position;) {
        const unsigned stored = Number(bytes, q, element);
        if (stored == 13) {
            const unsigned distance = Number(bytes, q + element, offset);
            if (q + distance >= position)
                SetNumber(q + element, offset, distance + count);
            q += element + offset;
        } else
            q += stored == 10 || stored == 26 ? element + handleSize : element;
    }
    for (unsigned letter = 0; letter < 26; ++letter) {
        const unsigned jump = Number(bytes, JUMPS + 4 * letter, 4);
        if (jump >= position)
            SetNumber(JUMPS + 4 * letter, 4, jump + count);
    }
}

void CompListModel::InsertTail(const std::string& key, unsigned k, unsigned position,
                               unsigned handle)
{
    const unsigned rest = KeySize(key) - k;
    InsertBytes(position, rest + element + handleSize);
    bytes.replace(position, rest, key, k, rest);
    SetNumber(position + rest, element, 26);
    SetNumber(position + rest + element, handleSize, handle);
}

void CompListModel::SetJump(const std::string& key, unsigned position)
{
    const unsigned first = Number(key, 0, element);
    if (first >= 97 && first <= 122)
        SetNumber(JUMPS + 4 * (first - 97), 4, position);
}

unsigned CompListModel::Walk(const std::string& key, int mode, unsigned handle, unsigned* matched)
{
    unsigned dummy;
    unsigned& count = matched ? *matched : dummy;
    const unsigned first = Number(key, 0, element);
    const bool emptyString = Number(bytes, FLAGS, 1) & 1;
    if (first == 0) {
        count = 0;
        if (!emptyString)
            return 0;
        if (mode != ADD)
            return Number(bytes, EMPTY_HANDLE, 4);
        SetNumber(EMPTY_HANDLE, 4, handle);
        return 1;
    }

    unsigned p = STREAM, k = 0;
    if (first >= 97 && first <= 122 && Number(bytes, JUMPS + 4 * (first - 97), 4) != 0)
        p = Number(bytes, JUMPS + 4 * (first - 97), 4);
    for (;;) {
        unsigned s = Element(p);
        const unsigned c = Number(key, k, element);
        if (c == 0) {
            if (s == 13) {
                p += element + offset;
                s = Element(p);
            }
            count = k / element;
            if (s == 10 || s == 26)
                return mode == ADD ? 0 : Number(bytes, p + element, handleSize);
            if (mode != ADD)
                return NONE;
            InsertBytes(p, element + handleSize);
            SetNumber(p, element, 10);
            SetNumber(p + element, handleSize, handle);
            return 1;
        }
        if (s != 25 && s == c) {
            p += element;
            k += element;
        } else if (s == 10)
            p += element + handleSize;
        else if (s == 13)
            p += element + offset;
        else if (s == 25 || s == 26) {
            if (mode == ADD)
                return AddBehindEnd(key, p, k, s, handle);
            count = mode == SEARCH && s == 25 ? 0 : k / element;
            return NONE;
        } else if (Element(p + element) == 13)
            p = p + element + Number(bytes, p + element + element, offset);
        else {
            if (mode == ADD)
                return AddAlternative(key, p, k, handle);
            count = 0;
            return NONE;
        }
    }
}

unsigned CompListModel::AddBehindEnd(const std::string& key, unsigned p, unsigned k, unsigned s,
                                     unsigned handle)
{
    if (s == 26) {
        SetNumber(p, element, 10);
        p += element + handleSize;
    }
    InsertTail(key, k, p, handle);
    if (s == 25 && k == 0)
        SetJump(key, p);
    return 1;
}

unsigned CompListModel::AddAlternative(const std::string& key, unsigned p, unsigned k,
                                       unsigned handle)
{
    const unsigned mark = p + element;
    InsertBytes(mark, element + offset);
    SetNumber(mark, element, 13);
    SetNumber(mark + element, offset, 0);
    const unsigned t = Number(bytes, END, 4) - element;
    InsertTail(key, k, t, handle);
    SetNumber(mark + element, offset, t - mark);
    if (k == 0)
        SetJump(key, t);
    return 1;
}

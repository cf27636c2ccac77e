// tests/Models/RecordModel.cpp
#include "Models/RecordModel.h"

#include <algorithm>
#include <cstring>

namespace
{
constexpr RecordModel::Word MARK = 0xFFFFFFFF;
constexpr RecordModel::Word CORRUPT = 31005;
constexpr RecordModel::Word BAD_FORMAT = 31050;
constexpr RecordModel::Word BAD_REFERENCE = 31051;
constexpr RecordModel::Word TOO_MANY = 31052;
constexpr RecordModel::Word NOT_FOUND = 31053;
constexpr RecordModel::Word EXISTS = 31054;
} // namespace

// ---- Bytes --------------------------------------------------------------------------------

RecordModel::Word RecordModel::Field(Word at) const
{
    return header[at] | header[at + 1] << 8 | header[at + 2] << 16 | Word{header[at + 3]} << 24;
}

void RecordModel::SetField(Word at, Word value)
{
    for (int i = 0; i < 4; ++i)
        header[at + i] = static_cast<unsigned char>(value >> 8 * i);
}

RecordModel::Word RecordModel::Align(Word size) const
{
    return ((size - 1) / Field(BLOCK) + 1) * Field(BLOCK);
}

// A word that the file doesn't hold whole is 0; a writer's map never ends.
RecordModel::Word RecordModel::WordAt(Word at) const
{
    if (!(writing && mapped) && std::uint64_t{at} + 4 > disk.size())
        return 0;
    return ByteAt(at) | ByteAt(at + 1) << 8 | ByteAt(at + 2) << 16 | Word{ByteAt(at + 3)} << 24;
}

// Appends.
RecordModel::Word RecordModel::Range(Word at, Word count, std::string& data) const
{
    if (!count)
        return 0;
    if (at && (at > Size() || count > Size() || std::uint64_t{at} + count > Size()))
        return CORRUPT;
    for (Word i = 0; i < count; ++i)
        data += static_cast<char>(ByteAt(at + i));
    return 0;
}

void RecordModel::Put(Word at, const std::string& data)
{
    if (data.empty())
        return;
    disk.resize(std::max<std::size_t>(disk.size(), at + data.size()));
    std::memcpy(disk.data() + at, data.data(), data.size());
}

void RecordModel::PutWord(Word at, Word value)
{
    std::string bytes;
    for (int i = 0; i < 4; ++i)
        bytes += static_cast<char>(value >> 8 * i);
    Put(at, bytes);
}

void RecordModel::PutSized(Word at, const std::string& data)
{
    PutWord(at, static_cast<Word>(data.size()) + 4);
    Put(at + 4, data);
}

// ---- Life ---------------------------------------------------------------------------------

void RecordModel::Create(Word headSize, Word blockSize, Word resourceMax)
{
    if (!table.empty() || !resources.empty())
        Forget();
    writing = mapped = true;
    header.fill(0);
    std::memcpy(header.data(), "VARNOK RecordManager\x1A", 22);
    SetField(32, 0xA1B2C3D4);
    SetField(36, 1);
    SetField(BLOCK, blockSize);
    SetField(HEAD, headSize);
    SetField(FREE_MAX, 128);
    SetField(RESOURCE_MAX, resourceMax);
    SetField(HEADER_CHANGE, 1);
    SetField(RESOURCE_CHANGE, 1);
    SetField(FREE_CHANGE, 1);
    SetField(SIZE, FirstBlock());
    disk.assign(header.begin(), header.end());
    savedHeader = savedFree = savedResource = 1;
}

RecordModel::Word RecordModel::Open(bool write, bool map)
{
    writing = write;
    mapped = map;
    for (Word i = 0; i < HEADER_LENGTH; ++i)
        header[i] = ByteAt(i);
    savedHeader = Field(HEADER_CHANGE);
    if (Field(32) != 0xA1B2C3D4)
        return BAD_FORMAT;
    if (write && (Field(FREE_CHANGE) == 0 || Field(FREE_CHANGE) != savedFree)) {
        table.clear();
        for (Word i = 0; i < Field(FREE); ++i)
            table.push_back({WordAt(256 + 8 * i), WordAt(260 + 8 * i)});
        savedFree = Field(FREE_CHANGE);
    }
    if (Field(RESOURCE_CHANGE) == 0 || Field(RESOURCE_CHANGE) != savedResource) {
        resources.clear();
        const Word start = 256 + 8 * Field(FREE_MAX);
        for (Word i = 0; i < Field(RESOURCES); ++i)
            resources[WordAt(start + 8 * i)] = WordAt(start + 8 * i + 4);
        savedResource = Field(RESOURCE_CHANGE);
    }
    return 0;
}

void RecordModel::Save()
{
    if (Field(HEADER_CHANGE) != savedHeader)
        Put(0, {header.begin(), header.end()});
    savedHeader = Field(HEADER_CHANGE);
    if (writing && Field(FREE_CHANGE) != savedFree) {
        for (std::size_t i = 0; i < table.size(); ++i) {
            PutWord(static_cast<Word>(256 + 8 * i), table[i].offset);
            PutWord(static_cast<Word>(260 + 8 * i), table[i].length);
        }
        savedFree = Field(FREE_CHANGE);
    }
    if (Field(RESOURCE_CHANGE) != savedResource) {
        Word at = 256 + 8 * Field(FREE_MAX);
        for (const auto& [id, offset] : resources) {
            PutWord(at, id);
            PutWord(at + 4, offset);
            at += 8;
        }
        savedResource = Field(RESOURCE_CHANGE);
    }
}

void RecordModel::Close(bool exit)
{
    Save();
    if (mapped && writing)
        disk.resize(Size());
    if (exit)
        Forget();
}

void RecordModel::Forget()
{
    table.clear();
    resources.clear();
    savedHeader = savedFree = savedResource = 0;
}

// ---- Space --------------------------------------------------------------------------------

RecordModel::Word RecordModel::Take(Word size)
{
    Count(FREE_CHANGE);
    const Word need = Align(size);
    for (std::size_t slot = 0; slot < table.size(); ++slot) {
        Entry& entry = table[slot];
        if (entry.length < need)
            continue;
        if (entry.length == need)
            return TakeExact(slot);
        const Word front = entry.offset;
        entry.offset += need;
        entry.length -= need;
        PutWord(entry.offset, entry.length);
        return front;
    }
    if (table.size() == Field(FREE_MAX) && table.back().length == 0) {
        if (const Word found = TakeFromChain(need))
            return found;
    }
    const Word end = Size();
    SetField(SIZE, end + need);
    return end;
}

RecordModel::Word RecordModel::TakeExact(std::size_t slot)
{
    const Word result = table[slot].offset;
    const bool full = table.size() == Field(FREE_MAX);
    const bool last = slot + 1 == table.size();
    Entry moved = table.back();
    table.pop_back();
    if (!last) {
        Word next = 0;
        if (full && moved.length == 0) {
            moved.length = Align(WordAt(moved.offset));
            next = WordAt(moved.offset + 4);
        }
        table[slot] = moved;
        if (next)
            table.push_back({next, 0});
    }
    SetField(FREE, static_cast<Word>(table.size()));
    return result;
}

RecordModel::Word RecordModel::TakeFromChain(Word need)
{
    Word previous = table.back().offset;
    // A chain of more blocks than the file has is a ring.
    Word left = Size() / Field(BLOCK);
    for (Word at = WordAt(previous + 4); at && left; at = WordAt(at + 4), --left) {
        const Word size = Align(WordAt(at));
        if (size == need) {
            PutWord(previous + 4, WordAt(at + 4));
            return at;
        }
        if (size > need) {
            PutWord(previous + 4, at + need);
            PutWord(at + need, size - need);
            PutWord(at + need + 4, WordAt(at + 4));
            return at;
        }
        previous = at;
    }
    return 0;
}

void RecordModel::Give(bool writeSize, Word at, Word size)
{
    Count(FREE_CHANGE);
    size = Align(size);
    if (writeSize)
        PutWord(at, size);
    if (table.size() < Field(FREE_MAX)) {
        table.push_back({at, size});
        SetField(FREE, static_cast<Word>(table.size()));
        return;
    }
    Entry& last = table.back();
    if (last.length != 0)
        PutWord(last.offset + 4, 0);
    PutWord(at + 4, last.offset);
    last = {at, 0};
}

std::size_t RecordModel::ChainLength() const
{
    std::size_t count = 0;
    const std::size_t most = Size() / Field(BLOCK);
    if (table.size() == Field(FREE_MAX) && table.back().length == 0)
        for (Word at = WordAt(table.back().offset + 4); at && count < most; at = WordAt(at + 4))
            ++count;
    return count;
}

// ---- Records ------------------------------------------------------------------------------

RecordModel::Word RecordModel::CheckReference(Word at) const
{
    return at > Size() || WordAt(at) != MARK ? BAD_REFERENCE : 0;
}

RecordModel::Word RecordModel::Body(Word at, Word& body, Word& size) const
{
    size = 0;
    body = WordAt(at + 4);
    if (body)
        size = WordAt(body);
    if (size <= Size())
        return 0;
    size = 0;
    return CORRUPT;
}

RecordModel::Word RecordModel::Add(const std::string& data, Word& reference)
{
    const Word head = Take(Field(HEAD) + 8);
    Word body = 0;
    if (data.size() > Field(HEAD))
        body = Take(static_cast<Word>(data.size()) - Field(HEAD) + 4);
    PutWord(head, MARK);
    PutWord(head + 4, body);
    Put(head + 8, data.substr(0, Field(HEAD)));
    if (body)
        PutSized(body, data.substr(Field(HEAD)));
    Count(RECORDS);
    Count(HEADER_CHANGE);
    reference = head / Field(BLOCK);
    return 0;
}

RecordModel::Word RecordModel::Get(Word reference, std::string& data) const
{
    data.clear();
    const Word at = Field(BLOCK) * reference;
    Word body, size;
    Word error = CheckReference(at);
    if (!error)
        error = Body(at, body, size);
    if (!error)
        error = Range(at + 8, Field(HEAD), data);
    if (!error && body)
        error = Range(body + 4, size - 4, data);
    if (error)
        data.clear();
    return error;
}

RecordModel::Word RecordModel::Update(Word reference, const std::string& data)
{
    const Word at = Field(BLOCK) * reference;
    const Word used = static_cast<Word>(data.size());
    Word body = 0, size = 0;
    if (const Word error = CheckReference(at))
        return error;
    if (const Word error = Body(at, body, size))
        return error;
    Word newSize = used > Field(HEAD) ? used - Field(HEAD) + 4 : 0;
    if (newSize && body && Align(newSize) == Align(size)) {
        // The same block: the size keeps its own four bytes below, so the head loses its last four.
        PutSized(body, data.substr(Field(HEAD)));
    } else {
        if (body)
            Give(false, body, size);
        if (newSize) {
            const Word block = Take(newSize);
            PutSized(block, data.substr(Field(HEAD)));
            PutWord(at + 4, block);
            newSize -= 4;
        }
        // Without a new body the head goes on pointing to the old one.
    }
    // With fewer than four bytes in a head nothing of it is left.
    Put(at + 8, data.substr(0, used - std::min(used, newSize)));
    Count(HEADER_CHANGE);
    return 0;
}

RecordModel::Word RecordModel::UpdateHeader(Word reference, const std::string& data)
{
    const Word at = Field(BLOCK) * reference;
    if (const Word error = CheckReference(at))
        return error;
    Put(at + 8, data.substr(0, Field(HEAD)));
    Count(HEADER_CHANGE);
    return 0;
}

RecordModel::Word RecordModel::Delete(Word reference)
{
    const Word at = Field(BLOCK) * reference;
    Word body, size;
    if (const Word error = CheckReference(at))
        return error;
    if (const Word error = Body(at, body, size))
        return error;
    Give(true, at, Field(HEAD) + 8);
    if (body)
        Give(false, body, size);
    Count(RECORDS, -1);
    Count(HEADER_CHANGE);
    return 0;
}

RecordModel::Word RecordModel::Next(Word cursor, std::string& data, Word& next) const
{
    next = 0;
    Word at = cursor ? Field(BLOCK) * cursor : FirstBlock();
    while (at < Size() && WordAt(at) != MARK) {
        const Word word = WordAt(at);
        const Word step = Align(word);
        if (word && (step < word || std::uint64_t{at} + step > MARK))
            return 0;
        at += step;
    }
    if (at >= Size())
        return 0;
    if (const Word error = Get(at / Field(BLOCK), data))
        return error;
    next = at / Field(BLOCK) + 1;
    return 0;
}

// ---- Resources ----------------------------------------------------------------------------

RecordModel::Word RecordModel::AddResource(Word id, const std::string& data)
{
    if (Field(RESOURCES) == Field(RESOURCE_MAX))
        return TOO_MANY;
    if (HasResource(id))
        return EXISTS;
    const Word block = Take(static_cast<Word>(data.size()) + 4);
    PutSized(block, data);
    resources[id] = block;
    Count(RESOURCES);
    Count(HEADER_CHANGE);
    Count(RESOURCE_CHANGE);
    return 0;
}

RecordModel::Word RecordModel::ReplaceResource(Word id, const std::string& data)
{
    if (!HasResource(id))
        return NOT_FOUND;
    Word& block = resources[id];
    const Word size = static_cast<Word>(data.size()) + 4;
    const Word old = WordAt(block);
    if (old > Size())
        return CORRUPT;
    if (Align(size) != Align(old)) {
        Give(false, block, old);
        block = Take(size);
        Count(RESOURCE_CHANGE);
    }
    PutSized(block, data);
    Count(HEADER_CHANGE);
    return 0;
}

RecordModel::Word RecordModel::GetResource(Word id, std::string& data) const
{
    if (!HasResource(id))
        return NOT_FOUND;
    const Word block = resources.at(id);
    data.clear();
    return Range(block + 4, WordAt(block) - 4, data);
}

RecordModel::Word RecordModel::DeleteResource(Word id)
{
    if (!HasResource(id))
        return NOT_FOUND;
    const Word block = resources[id];
    if (WordAt(block) > Size())
        return CORRUPT;
    Give(false, block, WordAt(block));
    resources.erase(id);
    Count(RESOURCES, -1);
    Count(HEADER_CHANGE);
    Count(RESOURCE_CHANGE);
    return 0;
}

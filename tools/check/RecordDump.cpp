// tools/check/RecordDump.cpp
#include "RecordDump.h"

#include "RecordLayout.h"

#include <algorithm>
#include <cstdio>
#include <map>

namespace
{
constexpr std::size_t PER_LINE = 16;

class Dumper
{
public:
    Dumper(const unsigned char* data, std::size_t count) : bytes(data), length(count) {}

    std::string Run()
    {
        if (length < RECORD_HEADER || RecordWord(bytes + 32) != RECORD_SIGNATURE)
            Emit(length, "no record file");
        else
            All(RecordShape(bytes));
        return text;
    }

private:
    void All(const RecordShape& shape)
    {
        Header();
        Table(shape.freeCount, shape.ResourceTable(), "free block", "length");
        Table(shape.resourceCount, shape.TablesEnd(), "resource", "block");
        if (shape.blockSize) {
            Names(shape);
            EmitTo(shape.FirstBlock(), "up to the first block");
            Blocks(shape);
        }
        Emit(length - offset, "behind the end");
    }

    void Header()
    {
        for (const RecordField& field : RECORD_FIELDS) {
            const std::string name = field.name;
            if (field.size == 4)
                Word(name);
            else
                Emit(field.size, name);
        }
    }

    void Table(std::uint64_t count, std::uint64_t end, const std::string& first,
               const std::string& second)
    {
        for (std::uint64_t slot = 1; slot <= count && Inside(RECORD_TABLE_ENTRY); ++slot) {
            std::string name = first;
            if (name == "free block")
                name.append(" ").append(std::to_string(slot));
            Word(name);
            Word("  its " + second);
        }
        EmitTo(end, "slots not in use");
    }

    // What the tables and the record heads say of the blocks.
    void Names(const RecordShape& shape)
    {
        for (std::uint64_t slot = 0; slot < Entries(RECORD_HEADER, shape.freeCount); ++slot)
            names[RecordWord(bytes + RECORD_HEADER + RECORD_TABLE_ENTRY * slot)] = "free block";
        const std::uint64_t table = shape.ResourceTable();
        for (std::uint64_t slot = 0; slot < Entries(table, shape.resourceCount); ++slot) {
            const unsigned char* const entry = bytes + table + RECORD_TABLE_ENTRY * slot;
            names[RecordWord(entry + 4)] = "resource " + std::to_string(RecordWord(entry));
        }
    }

    // How many entries of a table are there, whatever the header tells.
    std::uint64_t Entries(std::uint64_t table, std::uint64_t told) const
    {
        return table < length ? std::min(told, (length - table) / RECORD_TABLE_ENTRY) : 0;
    }

    void Blocks(const RecordShape& shape)
    {
        while (offset < shape.size && Inside(4)) {
            const std::uint32_t word = RecordWord(bytes + offset);
            const std::uint64_t end =
                offset + (word == RECORD_MARK ? shape.HeadLength() : shape.Aligned(word));
            if (end == offset)
                return;
            if (word == RECORD_MARK)
                Head(shape);
            else
                Sized(word);
            EmitTo(end, "up to the next block");
        }
    }

    void Head(const RecordShape& shape)
    {
        const std::string reference = std::to_string(offset / shape.blockSize);
        Word("record " + reference);
        if (!Inside(4))
            return;
        if (const std::uint32_t body = RecordWord(bytes + offset))
            names.emplace(body, "body of record " + reference);
        Word("  its body");
        Emit(std::min<std::uint64_t>(shape.headSize, length - offset), "  first bytes");
    }

    void Sized(std::uint32_t size)
    {
        const auto name = names.find(static_cast<std::uint32_t>(offset));
        const bool free = name != names.end() && name->second == "free block";
        Word((name == names.end() ? "block" : name->second) + ", size");
        if (free && Inside(4))
            Word("  next in the chain, if it is in the chain");
        else if (size > 4)
            Emit(std::min<std::uint64_t>(size - 4, length - offset), "  data");
    }

    bool Inside(std::uint64_t count) const { return offset + count <= length; }

    void Word(const std::string& name)
    {
        if (!Inside(4))
            return Emit(length - offset, name);
        const std::uint32_t word = RecordWord(bytes + offset);
        char value[32];
        std::snprintf(value, sizeof value, word < 0x10000000 ? " %u" : " %08X", word);
        Emit(4, name + value);
    }

    void EmitTo(std::uint64_t end, const std::string& name)
    {
        end = std::min<std::uint64_t>(end, length);
        if (end > offset)
            Emit(end - offset, name);
    }

    void Emit(std::uint64_t count, std::string name)
    {
        while (count) {
            const std::uint64_t part = std::min<std::uint64_t>(count, PER_LINE);
            Line(part, name);
            name.clear();
            count -= part;
        }
    }

    void Line(std::uint64_t count, const std::string& name)
    {
        char pair[16];
        for (std::uint64_t i = 0; i < count; ++i) {
            std::snprintf(pair, sizeof pair, "%02X ", bytes[offset + i]);
            text += pair;
        }
        text.append(3 * (PER_LINE - count), ' ');
        text += "# " + std::to_string(offset) + (name.empty() ? "" : " " + name) + '\n';
        offset += count;
    }

    const unsigned char* bytes;
    std::uint64_t length;
    std::uint64_t offset = 0;
    std::map<std::uint32_t, std::string> names;
    std::string text;
};
} // namespace

std::string DumpRecordFile(const unsigned char* bytes, std::size_t length)
{
    return Dumper(bytes, length).Run();
}

std::string DumpRecordFile(const std::string& bytes)
{
    return DumpRecordFile(reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size());
}

// tools/check/RecordCheck.cpp
#include "RecordCheck.h"

#include "RecordLayout.h"

#include <algorithm>
#include <cstring>
#include <map>
#include <optional>

namespace
{
// What holds a block. A block has one holder, but for a body that a record kept pointing to.
enum class Holder
{
    Nobody,
    Record,
    Resource,
    Free,
};

struct Block
{
    std::uint64_t length;
    bool head;
    Holder holder;
};

class Checker
{
public:
    Checker(const unsigned char* data, std::size_t count) : bytes(data), length(count) {}

    RecordVerdict Run()
    {
        verdict.sound = length >= RECORD_HEADER ? Rules() : Broken(length, "shorter than a header");
        return verdict;
    }

private:
    bool Rules()
    {
        shape.emplace(bytes);
        const bool sound =
            Header() && Tables() && Tiles() && FreeTable() && Chain() && Resources() && Bodies();
        if (sound)
            Notes();
        return sound;
    }

    bool Broken(std::uint64_t offset, const std::string& rule)
    {
        verdict.offset = offset;
        verdict.rule = rule;
        return false;
    }

    void Note(RecordNote::Kind kind, std::uint64_t offset, const std::string& text)
    {
        verdict.notes.push_back({kind, static_cast<std::uint32_t>(offset), text});
    }

    bool Inside(std::uint64_t offset, std::uint64_t count) const
    {
        return offset + count <= length;
    }
    std::uint32_t Word(std::uint64_t offset) const { return RecordWord(bytes + offset); }

    bool Header()
    {
        if (shape->signature != RECORD_SIGNATURE)
            return Broken(32, "no signature");
        if (shape->blockSize < 8)
            return Broken(40, "a block has no room for the link of the free chain");
        if (shape->HeadLength() > 0xFFFFFFFF)
            return Broken(44, "the length of a record head passes 32 bits");
        if (shape->freeMax != RECORD_FREE_SLOTS)
            return Broken(48, "the free table has 128 slots");
        if (shape->freeCount > shape->freeMax)
            return Broken(52, "more free blocks than slots");
        if (shape->resourceCount > shape->resourceMax)
            return Broken(60, "more resources than slots");
        if (shape->FirstBlock() > shape->size)
            return Broken(80, "the end lies before the first block");
        if (shape->size % shape->blockSize)
            return Broken(80, "the end isn't at a block's end");
        return true;
    }

    bool Tables()
    {
        if (shape->freeCount && !Inside(RECORD_HEADER, RECORD_TABLE_ENTRY * shape->freeCount))
            return Broken(length, "the file ends within the free table");
        const std::uint64_t used = RECORD_TABLE_ENTRY * shape->resourceCount;
        if (used && !Inside(shape->ResourceTable(), used))
            return Broken(length, "the file ends within the resource table");
        return true;
    }

    // The blocks cover everything from the first to the end, so that each step of a walk goes
    // forward.
    bool Tiles()
    {
        for (std::uint64_t offset = shape->FirstBlock(); offset < shape->size;) {
            Block block{0, false, Holder::Nobody};
            if (!Tile(offset, block))
                return false;
            blocks.emplace_hint(blocks.end(), offset, block);
            offset += block.length;
        }
        return true;
    }

    bool Tile(std::uint64_t offset, Block& block)
    {
        if (!Inside(offset, 4))
            return Broken(offset, "the file ends before the block");
        const std::uint32_t word = Word(offset);
        block.head = word == RECORD_MARK;
        if (!block.head && word < 4)
            return Broken(offset, "a size that doesn't count its own word");
        block.length = block.head ? shape->HeadLength() : shape->Aligned(word);
        if (block.length > shape->size - offset)
            return Broken(offset, "the block runs past the end");
        if (block.head && !Inside(offset, 8))
            return Broken(offset, "the file ends within the record head");
        return true;
    }

    // The block that starts at offset, if it has a size and holds what it says.
    Block* Sized(std::uint32_t offset)
    {
        const auto found = blocks.find(offset);
        return found == blocks.end() || found->second.head ? nullptr : &found->second;
    }

    bool FreeTable()
    {
        for (std::uint32_t slot = 0; slot < shape->freeCount; ++slot) {
            const std::uint64_t entry = RECORD_HEADER + RECORD_TABLE_ENTRY * slot;
            const std::uint32_t size = Word(entry + 4);
            const bool chained = size == 0 && slot + 1 == shape->freeMax;
            Block* block = Sized(Word(entry));
            if (!block)
                return Broken(entry, "a free block that is none");
            if (block->holder == Holder::Free)
                return Broken(entry, "a block is free twice");
            if (!chained && size != block->length)
                return Broken(entry + 4, "the table and the block tell different sizes");
            block->holder = Holder::Free;
        }
        return true;
    }

    bool Chain()
    {
        if (shape->freeCount != shape->freeMax)
            return true;
        const std::uint64_t entry = RECORD_HEADER + RECORD_TABLE_ENTRY * (shape->freeMax - 1);
        if (Word(entry + 4) != 0)
            return true;
        for (std::uint64_t offset = Word(entry);;) {
            if (!Inside(offset + 4, 4))
                return Broken(offset, "the file ends within the free chain");
            const std::uint32_t next = Word(offset + 4);
            if (!next)
                return true;
            Block* block = Sized(next);
            if (!block)
                return Broken(offset + 4, "the free chain leads to what is no free block");
            if (block->holder == Holder::Free)
                return Broken(offset + 4, "the free chain leads to a block that is free already");
            block->holder = Holder::Free;
            offset = next;
        }
    }

    bool Resources()
    {
        for (std::uint32_t slot = 0; slot < shape->resourceCount; ++slot) {
            const std::uint64_t entry = shape->ResourceTable() + RECORD_TABLE_ENTRY * slot;
            const std::uint32_t offset = Word(entry + 4);
            if (slot && Word(entry - RECORD_TABLE_ENTRY) >= Word(entry))
                return Broken(entry, "the resources don't ascend");
            Block* block = Sized(offset);
            if (!block)
                return Broken(entry + 4, "a resource without a block");
            if (block->holder != Holder::Nobody)
                return Broken(entry + 4, "the resource's block has another holder");
            if (!Inside(offset, Word(offset)))
                return Broken(offset, "the file ends within the resource");
            block->holder = Holder::Resource;
        }
        return true;
    }

    bool Bodies()
    {
        for (const auto& [offset, block] : blocks) {
            if (block.head && !Body(offset, Word(offset + 4)))
                return false;
        }
        return true;
    }

    // An update that takes a record's body away leaves its place in the head. What the block has
    // become since then is no damage: it is a block still.
    static const char* StaleText(const Block& block)
    {
        if (block.head)
            return "the record's body is another record's head";
        if (block.holder == Holder::Free)
            return "the record's body is free";
        return block.holder == Holder::Resource ? "the record's body is a resource"
                                                : "the record's body is another record's, too";
    }

    bool Body(std::uint64_t head, std::uint32_t offset)
    {
        if (!offset)
            return true;
        const auto found = blocks.find(offset);
        if (found == blocks.end() || offset == head)
            return Broken(head + 4, "a record's body that is none");
        Block* block = &found->second;
        if (block->head || block->holder != Holder::Nobody) {
            Note(RecordNote::StaleBody, head, StaleText(*block));
            return true;
        }
        if (!Inside(offset, Word(offset)))
            return Broken(offset, "the file ends within the body");
        block->holder = Holder::Record;
        return true;
    }

    void Notes()
    {
        HeaderNotes();
        std::uint32_t heads = 0;
        for (const auto& [offset, block] : blocks) {
            heads += block.head;
            if (!block.head && block.holder == Holder::Nobody)
                Note(RecordNote::NobodysBlock, offset, "a block of nobody");
        }
        if (heads != shape->recordCount)
            Note(RecordNote::RecordCount, 76,
                 "the file has " + std::to_string(heads) + " record heads");
    }

    void HeaderNotes()
    {
        if (std::memcmp(bytes, "VARNOK RecordManager\x1A", 22) != 0)
            Note(RecordNote::FileText, 0, "another text at the start");
        if (shape->version != 1)
            Note(RecordNote::FileText, 36, "another version");
        if (std::any_of(bytes + 84, bytes + RECORD_HEADER, [](unsigned char c) { return c != 0; }))
            Note(RecordNote::Reserved, 84, "the reserved bytes aren't 0");
        if (length != shape->size)
            Note(RecordNote::Length, 80, "the file has " + std::to_string(length) + " bytes");
        if (shape->headSize + std::uint64_t{8} > shape->blockSize)
            Note(RecordNote::NotWalkable, 44, "a record head is longer than a block");
        if (shape->size > 0x7FFFFFFF)
            Note(RecordNote::Reach, 80, "blocks behind 2 GiB");
    }

    const unsigned char* bytes;
    std::uint64_t length;
    std::optional<RecordShape> shape;
    std::map<std::uint32_t, Block> blocks;
    RecordVerdict verdict;
};
} // namespace

bool RecordVerdict::Has(RecordNote::Kind kind) const
{
    return std::any_of(notes.begin(), notes.end(),
                       [kind](const RecordNote& note) { return note.kind == kind; });
}

RecordVerdict CheckRecordFile(const unsigned char* bytes, std::size_t length)
{
    return Checker(bytes, length).Run();
}

RecordVerdict CheckRecordFile(const std::string& bytes)
{
    return CheckRecordFile(reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size());
}

std::string DescribeRecordVerdict(const RecordVerdict& verdict)
{
    std::string text = verdict.sound
                           ? "sound"
                           : "damaged at " + std::to_string(verdict.offset) + ": " + verdict.rule;
    for (const RecordNote& note : verdict.notes)
        text += "\n  note at " + std::to_string(note.offset) + ": " + note.text;
    return text + "\n";
}

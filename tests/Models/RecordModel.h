// tests/Models/RecordModel.h: the record file, played on a plain run of bytes.
//
// The model does what the format and its free-space rules say, step by step, with the file's bytes
// in one vector. It knows nothing of maps but that a writer's map reads as zeros behind the last
// write and is cut to n_Size at the end.
#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

class RecordModel
{
public:
    using Word = std::uint32_t;

    // The operations return the error code, 0 for none; results come by reference.
    void Create(Word headSize, Word blockSize, Word resourceMax);
    Word Open(bool write, bool map);
    void Close(bool exit);
    void Flush() { Save(); }

    Word Add(const std::string& data, Word& reference);
    Word Get(Word reference, std::string& data) const;
    Word Update(Word reference, const std::string& data);
    Word UpdateHeader(Word reference, const std::string& data);
    Word Delete(Word reference);
    Word Next(Word cursor, std::string& data, Word& next) const;

    Word AddResource(Word id, const std::string& data);
    Word ReplaceResource(Word id, const std::string& data);
    Word GetResource(Word id, std::string& data) const;
    bool HasResource(Word id) const { return resources.count(id) != 0; }
    Word DeleteResource(Word id);

    std::string Bytes() const { return {disk.begin(), disk.end()}; }
    Word Size() const { return Field(SIZE); }
    Word RecordCount() const { return Field(RECORDS); }
    Word ResourceCount() const { return Field(RESOURCES); }
    std::size_t FreeCount() const { return table.size(); }
    // The blocks behind the chain head.
    std::size_t ChainLength() const;

private:
    enum : Word
    {
        BLOCK = 40,
        HEAD = 44,
        FREE_MAX = 48,
        FREE = 52,
        RESOURCE_MAX = 56,
        RESOURCES = 60,
        HEADER_CHANGE = 64,
        RESOURCE_CHANGE = 68,
        FREE_CHANGE = 72,
        RECORDS = 76,
        SIZE = 80,
        HEADER_LENGTH = 256,
    };
    struct Entry
    {
        Word offset;
        Word length;
    };

    Word Field(Word at) const;
    void SetField(Word at, Word value);
    void Count(Word at, int step = 1) { SetField(at, Field(at) + static_cast<Word>(step)); }
    Word Align(Word size) const;
    Word FirstBlock() const { return Align(256 + 8 * (Field(FREE_MAX) + Field(RESOURCE_MAX))); }

    unsigned char ByteAt(std::uint64_t at) const { return at < disk.size() ? disk[at] : 0; }
    Word WordAt(Word at) const;
    Word Range(Word at, Word count, std::string& data) const;
    void Put(Word at, const std::string& data);
    void PutWord(Word at, Word value);
    void PutSized(Word at, const std::string& data);

    Word Take(Word size);
    Word TakeExact(std::size_t slot);
    Word TakeFromChain(Word need);
    void Give(bool writeSize, Word at, Word size);

    Word CheckReference(Word at) const;
    Word Body(Word at, Word& body, Word& size) const;
    void Save();
    void Forget();

    std::vector<unsigned char> disk;
    std::array<unsigned char, HEADER_LENGTH> header{};
    std::vector<Entry> table;
    std::map<Word, Word> resources;
    Word savedHeader = 0;
    Word savedFree = 0;
    Word savedResource = 0;
    bool writing = false;
    bool mapped = false;
};

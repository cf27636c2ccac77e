// tests/Database/RecordManager/RecordFile.h: what the tests of the record manager have in common.
#pragma once

#include <Database/RecordManager/RecordManager.h>
#include <Ostra/Frame/Text.h>
#include <Ostra/String/UString.h>

#include <string>
#include <vector>

#include "Support/Directory.h"
#include "Support/Failure.h"

// The code of the thread's error, which goes; 0 for none.
inline unsigned TakeCode()
{
    return Errors().b_IsSetError() ? TakeFailure().code : 0;
}

// Codes beside the manager's own.
constexpr unsigned OUT_OF_MEMORY = 60006;

inline std::string Text(const CT_Buffer& buffer)
{
    return {static_cast<const char*>(buffer.qcv_Get()), buffer.n_GetUsedSize()};
}

// A manager over a file of the current directory, with strings for buffers.
class RecordFile
{
public:
    explicit RecordFile(const char16_t* fileName = u"test.rec")
        : name(qcuz_Text(fileName)),
          file(&name, 4096),
          manager(&file)
    {}

    CT_RecordManager* operator->() { return &manager; }
    CT_RecordManager& operator*() { return manager; }

    void Create(unsigned headSize, unsigned blockSize, unsigned resourceMax = 0)
    {
        manager.v_Create(headSize, blockSize, resourceMax);
        EXPECT_EQ(TakeCode(), 0u);
    }
    void Open(CT_RecordManager::et_OpenMode mode, bool map)
    {
        manager.v_Open(mode, map);
        EXPECT_EQ(TakeCode(), 0u);
    }
    void OpenToWrite(bool map = true) { Open(CT_RecordManager::e_OpenReadWrite, map); }
    void OpenToRead(bool map = true) { Open(CT_RecordManager::e_OpenRead, map); }
    void Close(bool exit = true)
    {
        manager.v_Close(exit);
        EXPECT_EQ(TakeCode(), 0u);
    }

    // A new file, closed with its tables kept: a free place, a record and resource 7. The references of the first two.
    struct References
    {
        unsigned free, used;
    };
    References CreateAndKeepTables()
    {
        Create(8, 16, 4);
        const References references = {Add("first"), Add("second")};
        AddResource(7, "seven");
        manager.v_DeleteRecord(references.free);
        Close(false);
        return references;
    }

    unsigned Add(const std::string& data)
    {
        const CT_Buffer buffer(data.data(), static_cast<unsigned>(data.size()), 32);
        return manager.n_AddRecord(&buffer);
    }
    std::string Get(unsigned reference) const
    {
        CT_Buffer buffer;
        manager.v_GetRecord(reference, &buffer);
        return Text(buffer);
    }
    void Update(unsigned reference, const std::string& data)
    {
        const CT_Buffer buffer(data.data(), static_cast<unsigned>(data.size()), 32);
        manager.v_UpdateRecord(reference, &buffer);
    }
    void UpdateHeader(unsigned reference, const std::string& data)
    {
        const CT_Buffer buffer(data.data(), static_cast<unsigned>(data.size()), 32);
        manager.v_UpdateRecordHeader(reference, &buffer);
    }
    // The references of all records, as the walk finds them.
    std::vector<unsigned> Walk() const
    {
        std::vector<unsigned> references;
        for (unsigned cursor = 0; (cursor = manager.n_GetNextRecord(cursor, nullptr)) != 0;)
            references.push_back(cursor - 1);
        return references;
    }

    void AddResource(unsigned id, const std::string& data)
    {
        const CT_Buffer buffer(data.data(), static_cast<unsigned>(data.size()), 32);
        manager.v_AddResource(id, &buffer);
    }
    void ReplaceResource(unsigned id, const std::string& data)
    {
        const CT_Buffer buffer(data.data(), static_cast<unsigned>(data.size()), 32);
        manager.v_UpdateResource(id, &buffer);
    }
    std::string GetResource(unsigned id)
    {
        CT_Buffer buffer;
        manager.v_GetResource(id, &buffer);
        return Text(buffer);
    }

private:
    CT_UString name;
    CT_WinFile file;
    CT_RecordManager manager;
};

// The bytes of a closed file.
class Image
{
public:
    explicit Image(const std::string& fileBytes) : bytes(fileBytes) {}
    static Image Load(const char* path = "test.rec") { return Image(ReadBytes(path)); }
    void Save(const char* path = "test.rec") const { WriteBytes(path, bytes); }

    unsigned Word(std::size_t offset) const
    {
        unsigned word = 0;
        for (int i = 3; i >= 0; --i)
            word = word << 8 | static_cast<unsigned char>(bytes.at(offset + i));
        return word;
    }
    void SetWord(std::size_t offset, unsigned word)
    {
        for (int i = 0; i < 4; ++i)
            bytes.at(offset + i) = static_cast<char>(word >> 8 * i);
    }
    unsigned FreeCount() const { return Word(52); }
    // Slots count from 1.
    unsigned FreeOffset(unsigned slot) const { return Word(248 + 8 * slot); }
    unsigned FreeLength(unsigned slot) const { return Word(252 + 8 * slot); }
    unsigned ResourceId(unsigned slot) const { return Word(1272 + 8 * slot); }
    unsigned ResourceOffset(unsigned slot) const { return Word(1276 + 8 * slot); }
    // The offset of the resource with that number; 0 for none.
    unsigned BlockOf(unsigned id) const
    {
        for (unsigned slot = 1; slot <= Word(60); ++slot)
            if (ResourceId(slot) == id)
                return ResourceOffset(slot);
        return 0;
    }

    std::string bytes;
};

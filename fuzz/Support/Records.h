// fuzz/Support/Records.h: a record manager over a file of the process's folder, with strings for
// buffers.
#pragma once

#include <Database/RecordManager/RecordManager.h>
#include <Ostra/String/UString.h>

#include "RecordCheck.h"
#include "Support/Folder.h"
#include "Support/Input.h"
#include "Support/Library.h"

#include <string>
#include <vector>

class Records
{
public:
    Records() : path(PathOf("records.rec")), name(path.c_str()), file(&name, 4096), manager(&file)
    {}

    CT_RecordManager* operator->() { return &manager; }
    bool IsOpen() const { return manager.pcco_GetFile()->b_IsOpen() != 0; }

    std::string Load() const { return ReadBytes(path); }
    // A file made anew: what another one left open stays its own.
    void Save(const std::string& bytes) const
    {
        std::filesystem::remove(path);
        WriteBytes(path, bytes);
    }

    unsigned Add(const std::string& data)
    {
        const CT_Buffer buffer = Buffer(data);
        return manager.n_AddRecord(&buffer);
    }
    std::string Get(unsigned reference) const
    {
        CT_Buffer buffer;
        manager.v_GetRecord(reference, &buffer);
        return BytesOf(buffer);
    }
    void Update(unsigned reference, const std::string& data)
    {
        const CT_Buffer buffer = Buffer(data);
        manager.v_UpdateRecord(reference, &buffer);
    }
    void UpdateHeader(unsigned reference, const std::string& data)
    {
        const CT_Buffer buffer = Buffer(data);
        manager.v_UpdateRecordHeader(reference, &buffer);
    }
    std::string Next(unsigned cursor, unsigned* next) const
    {
        CT_Buffer buffer;
        *next = manager.n_GetNextRecord(cursor, &buffer);
        return BytesOf(buffer);
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
        const CT_Buffer buffer = Buffer(data);
        manager.v_AddResource(id, &buffer);
    }
    void ReplaceResource(unsigned id, const std::string& data)
    {
        const CT_Buffer buffer = Buffer(data);
        manager.v_UpdateResource(id, &buffer);
    }
    std::string GetResource(unsigned id)
    {
        CT_Buffer buffer;
        manager.v_GetResource(id, &buffer);
        return BytesOf(buffer);
    }

private:
    static CT_Buffer Buffer(const std::string& data)
    {
        return CT_Buffer(data.data(), static_cast<unsigned>(data.size()), 32);
    }

    std::string path;
    CT_UString name;
    CT_WinFile file;
    CT_RecordManager manager;
};

inline RecordVerdict RequireSound(const std::string& bytes)
{
    const RecordVerdict verdict = CheckRecordFile(bytes);
    if (!verdict.sound)
        std::fputs(DescribeRecordVerdict(verdict).c_str(), stderr);
    REQUIRE(verdict.sound);
    return verdict;
}

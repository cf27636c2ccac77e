// benchmarks/RecordSides/Ostra.h: the library's records, found by their references.
#pragma once

#include <Database/RecordManager/RecordManager.h>
#include <Ostra/Frame/ErrorManager.h>
#include <Ostra/String/CString.h>
#include <Ostra/String/UString.h>

#include <memory>
#include <string>
#include <vector>

#include "RecordSides/Side.h"
#include "Support/Inputs.h"

class Ostra
{
public:
    static constexpr const char* NAME = "ostra";

    Ostra(const std::string& path, unsigned count) : references(count)
    {
        const std::u16string units = Inputs::ToUnits(path);
        const CT_UString name(reinterpret_cast<const unsigned short*>(units.c_str()));
        const CT_WinFile file(&name, 1024);
        manager = std::make_unique<CT_RecordManager>(&file);
        manager->v_Create(HEAD_SIZE, BLOCK_SIZE, 0);
        Expect(!CT_ErrorManager::spco_Get()->b_IsSetError(), "ostra");
    }
    Ostra(const std::string& path, const Ostra& filled) : references(filled.references)
    {
        const CT_CString name(path.c_str(), -1, 65001);
        const CT_WinFile file(&name, 1024);
        manager = std::make_unique<CT_RecordManager>(&file);
        manager->v_Open(CT_RecordManager::e_OpenRead, 1);
        Expect(!CT_ErrorManager::spco_Get()->b_IsSetError(), "ostra");
    }
    ~Ostra() { Close(); }

    void Close()
    {
        if (!manager)
            return;
        manager->v_Close(1);
        manager.reset();
        Expect(!CT_ErrorManager::spco_Get()->b_IsSetError(), "ostra");
    }

    void Begin() {}
    void End() {}
    void Add(unsigned key, const CT_Buffer& data) { references[key] = manager->n_AddRecord(&data); }
    void Update(unsigned key, const CT_Buffer& data)
    {
        manager->v_UpdateRecord(references[key], &data);
    }
    void Replace(unsigned key, const CT_Buffer& data)
    {
        manager->v_DeleteRecord(references[key]);
        Add(key, data);
    }
    size_t Get(unsigned key, const char*& data)
    {
        manager->v_GetRecord(references[key], &room);
        data = Data(room);
        return room.n_GetUsedSize();
    }
    // In the order of the references; the keys are in the same order as long as nothing but
    // additions went into the file.
    template <class Visit>
    void Walk(Visit visit)
    {
        unsigned key = 0;
        unsigned cursor = 0;
        while ((cursor = manager->n_GetNextRecord(cursor, &room)) != 0)
            visit(key++, Data(room), room.n_GetUsedSize());
    }

private:
    std::unique_ptr<CT_RecordManager> manager;
    std::vector<unsigned> references;
    CT_Buffer room;
};

// fuzz/targets/record_work.cpp: operations on a record manager, each compared with the model of the
// file; each closed file has the model's bytes, and the checker calls it sound.
//
// Input: two bytes for the form of the file, then operations.
#include <Models/RecordModel.h>

#include "Support/Records.h"

namespace
{
struct Form
{
    unsigned block, head, resources;
};

constexpr Form FORMS[] = {{64, 16, 4}, {64, 56, 40}, {8, 0, 5},   {16, 8, 0},
                          {48, 40, 7}, {10, 4, 3},   {27, 19, 11}};

class Player
{
public:
    Player(Input& operations, unsigned form) : input(operations), plan(FORMS[form])
    {
        std::filesystem::remove(PathOf("records.rec"));
        records->v_Create(plan.head, plan.block, plan.resources);
        model.Create(plan.head, plan.block, plan.resources);
        Same(0);
        Add(); // a file that is closed unchanged has no true end
    }

    void Play()
    {
        for (unsigned n = 0; n < 80 && !input.IsEmpty(); ++n)
            Step();
        Close(true);
    }

private:
    struct Record
    {
        unsigned reference;
        bool body;
    };

    void Step()
    {
        switch (input.Below(16)) {
        case 0:
        case 1:
        case 2:
            return Add();
        case 3:
        case 4:
            return Delete();
        case 5:
            return DeleteMany();
        case 6:
        case 7:
            return Update();
        case 8:
            return UpdateHeader();
        case 9:
            return Get(input.Flag() ? Any().reference : input.Word());
        case 10:
            return Walk();
        case 11:
            return Reopen();
        case 12:
            return AddMany();
        default:
            return Resource();
        }
    }

    std::string Data()
    {
        const unsigned length = input.Byte();
        std::string data(length < 0xF0 ? length % (plan.head + 3 * plan.block) : length * 7, ' ');
        for (std::size_t n = 0; n < data.size(); ++n)
            data[n] = static_cast<char>(length * 31 + n);
        return data;
    }

    void Same(unsigned error)
    {
        REQUIRE(TakeCode() == error);
        REQUIRE(records->n_GetSize() == model.Size());
        REQUIRE(records->n_GetRecordCount() == model.RecordCount());
        REQUIRE(records->n_GetResourceCount() == model.ResourceCount());
    }

    void Add(const std::string& data)
    {
        unsigned reference = 0;
        const unsigned error = model.Add(data, reference);
        REQUIRE(records.Add(data) == reference);
        Same(error);
        live.push_back({reference, data.size() > plan.head});
    }
    void Add() { Add(Data()); }
    // So that the free table can overflow.
    void AddMany()
    {
        const std::string data = Data();
        for (unsigned count = input.Byte(); count > 0 && live.size() < 300; --count)
            Add(data);
    }
    // There is always one.
    Record& Any() { return live[input.Byte() % live.size()]; }
    void DeleteAt(std::size_t at)
    {
        const unsigned reference = live[at].reference;
        records->v_DeleteRecord(reference);
        Same(model.Delete(reference));
        live.erase(live.begin() + static_cast<std::ptrdiff_t>(at));
    }
    void Delete()
    {
        if (live.size() > 1)
            DeleteAt(input.Byte() % live.size());
    }
    // Every second one: what lies beside each other would be one free block, did they join.
    void DeleteMany()
    {
        std::size_t count = input.Byte();
        for (std::size_t at = 0; at + 1 < live.size() && count > 0; ++at, --count)
            DeleteAt(at);
    }
    void Update()
    {
        Record& record = Any();
        std::string data = Data();
        // Kept: a body that is taken away stays told; who touches it again uses a block twice.
        if (record.body && data.size() <= plan.head)
            data.resize(plan.head + 1, 'b');
        records.Update(record.reference, data);
        Same(model.Update(record.reference, data));
        record.body = record.body || data.size() > plan.head;
    }
    void UpdateHeader()
    {
        const unsigned reference = Any().reference;
        const std::string data = Data();
        records.UpdateHeader(reference, data);
        Same(model.UpdateHeader(reference, data));
    }
    void Get(unsigned reference)
    {
        std::string expected;
        const unsigned error = model.Get(reference, expected);
        REQUIRE(records.Get(reference) == expected);
        Same(error);
    }
    void Walk()
    {
        // Without a map each step is a call or more.
        if (plan.head + 8 > plan.block || ++walks > 3)
            return;
        for (unsigned cursor = 0, next = 0, error = 0;; cursor = next) {
            std::string expected;
            error = model.Next(cursor, expected, next);
            unsigned found = 0;
            REQUIRE(records.Next(cursor, &found) == expected);
            REQUIRE(found == next);
            Same(error);
            if (error || !next)
                return;
        }
    }
    void Resource()
    {
        const unsigned kind = input.Below(4);
        const unsigned id = input.Below(plan.resources + 3);
        const std::string data = kind < 2 ? Data() : "";
        if (kind == 0) {
            records.AddResource(id, data);
            Same(model.AddResource(id, data));
        } else if (kind == 1) {
            records.ReplaceResource(id, data);
            Same(model.ReplaceResource(id, data));
        } else if (kind == 2) {
            records->v_DeleteResource(id);
            Same(model.DeleteResource(id));
        } else {
            std::string expected;
            REQUIRE((records->b_ResourceExists(id) != 0) == model.HasResource(id));
            const unsigned error = model.GetResource(id, expected);
            REQUIRE(records.GetResource(id) == expected);
            Same(error);
        }
    }
    void Open(bool write, bool map)
    {
        records->v_Open(write ? CT_RecordManager::e_OpenReadWrite : CT_RecordManager::e_OpenRead,
                        map);
        Same(model.Open(write, map));
    }
    void Reopen()
    {
        const unsigned how = input.Byte();
        if (how & 1) {
            records->v_Flush();
            model.Flush();
        }
        Close((how & 2) != 0);
        if (how & 4) {
            Open(false, (how & 8) != 0);
            Get(Any().reference);
            Close((how & 16) != 0);
        }
        Open(true, (how & 32) != 0);
    }
    void Close(bool exit)
    {
        records->v_Close(exit);
        model.Close(exit);
        REQUIRE(TakeCode() == 0);
        const std::string bytes = records.Load();
        REQUIRE(bytes == model.Bytes());
        const RecordVerdict verdict = RequireSound(bytes);
        REQUIRE(!verdict.Has(RecordNote::NobodysBlock));
        REQUIRE(!verdict.Has(RecordNote::StaleBody));
        REQUIRE(!verdict.Has(RecordNote::RecordCount));
    }

    Input& input;
    Form plan;
    Records records;
    RecordModel model;
    std::vector<Record> live;
    unsigned walks = 0;
};
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    Input input(data, size);
    Player(input, input.Below(std::size(FORMS))).Play();
    return 0;
}

// benchmarks/RecordSides/Tkrzw.h: a hash table with chained records.
#pragma once

#include <tkrzw_dbm_hash.h>

#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

#include "RecordSides/Side.h"

class Tkrzw
{
public:
    static constexpr const char* NAME = "tkrzw";

    Tkrzw(const std::string& path, unsigned count)
    {
        tkrzw::HashDBM::TuningParameters parameters;
        parameters.num_buckets = 2 * static_cast<std::int64_t>(count);
        Check(file.OpenAdvanced(path, true, tkrzw::File::OPEN_TRUNCATE, parameters));
    }
    ~Tkrzw() { Check(file.Close()); }

    void Begin() {}
    void End() {}
    void Add(unsigned key, const CT_Buffer& data) { Set(key, data, false); }
    void Update(unsigned key, const CT_Buffer& data) { Set(key, data, true); }
    void Replace(unsigned key, const CT_Buffer& data)
    {
        Check(file.Remove(Name(key)));
        Add(key, data);
    }
    size_t Get(unsigned key, const char*& data)
    {
        Check(file.Get(Name(key), &room));
        data = room.data();
        return room.size();
    }
    template <class Visit>
    void Walk(Visit visit)
    {
        const auto iterator = file.MakeIterator();
        std::string name;
        for (iterator->First(); iterator->Get(&name, &room) == tkrzw::Status::SUCCESS;
             iterator->Next()) {
            unsigned key;
            std::memcpy(&key, name.data(), sizeof key);
            visit(key, room.data(), room.size());
        }
    }

private:
    static void Check(const tkrzw::Status& status) { Expect(status.IsOK(), "tkrzw"); }
    static std::string_view Name(const unsigned& key)
    {
        return {reinterpret_cast<const char*>(&key), sizeof key};
    }
    void Set(unsigned key, const CT_Buffer& data, bool overwrite)
    {
        Check(file.Set(Name(key), {Data(data), data.n_GetUsedSize()}, overwrite));
    }

    tkrzw::HashDBM file;
    std::string room;
};

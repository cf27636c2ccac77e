// benchmarks/RecordSides/Kyoto.h: a hash table with trees of records.
#pragma once

#include <kchashdb.h>

#include <cstdint>
#include <cstring>
#include <memory>
#include <string>

#include "RecordSides/Side.h"

class Kyoto
{
public:
    static constexpr const char* NAME = "kyoto";

    Kyoto(const std::string& path, unsigned count)
    {
        file.tune_buckets(2 * static_cast<std::int64_t>(count));
        file.tune_map(std::int64_t{1} << 30);
        Check(file.open(path, kyotocabinet::HashDB::OWRITER | kyotocabinet::HashDB::OCREATE |
                                  kyotocabinet::HashDB::OTRUNCATE));
    }
    ~Kyoto() { Check(file.close()); }

    void Begin() {}
    void End() {}
    void Add(unsigned key, const CT_Buffer& data)
    {
        Check(file.add(Name(key), sizeof key, Data(data), data.n_GetUsedSize()));
    }
    void Update(unsigned key, const CT_Buffer& data)
    {
        Check(file.replace(Name(key), sizeof key, Data(data), data.n_GetUsedSize()));
    }
    void Replace(unsigned key, const CT_Buffer& data)
    {
        Check(file.remove(Name(key), sizeof key));
        Add(key, data);
    }
    size_t Get(unsigned key, const char*& data)
    {
        const int size = file.get(Name(key), sizeof key, room, sizeof room);
        Check(size >= 0);
        data = room;
        return static_cast<size_t>(size);
    }
    template <class Visit>
    void Walk(Visit visit)
    {
        const std::unique_ptr<kyotocabinet::HashDB::Cursor> cursor(file.cursor());
        cursor->jump();
        std::string name, data;
        while (cursor->get(&name, &data, true)) {
            unsigned key;
            std::memcpy(&key, name.data(), sizeof key);
            visit(key, data.data(), data.size());
        }
    }

private:
    static void Check(bool good) { Expect(good, "kyoto"); }
    static const char* Name(const unsigned& key) { return reinterpret_cast<const char*>(&key); }

    kyotocabinet::HashDB file;
    char room[ROOM];
};

// benchmarks/RecordSides/Gdbm.h: a hash table with buckets that split.
#pragma once

#include <gdbm.h>

#include <cstdlib>
#include <cstring>
#include <string>

#include "RecordSides/Side.h"

class Gdbm
{
public:
    static constexpr const char* NAME = "gdbm";

    Gdbm(const std::string& path, unsigned)
        : file(gdbm_open(path.c_str(), 0, GDBM_NEWDB | GDBM_NOLOCK, 0600, nullptr))
    {
        Expect(file != nullptr, "gdbm");
    }
    ~Gdbm() { gdbm_close(file); }

    void Begin() {}
    void End() {}
    void Add(unsigned key, const CT_Buffer& data) { Store(key, data, GDBM_INSERT); }
    void Update(unsigned key, const CT_Buffer& data) { Store(key, data, GDBM_REPLACE); }
    void Replace(unsigned key, const CT_Buffer& data)
    {
        Expect(gdbm_delete(file, Name(key)) == 0, "gdbm");
        Add(key, data);
    }
    size_t Get(unsigned key, const char*& data)
    {
        data = room;
        return Fetch(Name(key));
    }
    template <class Visit>
    void Walk(Visit visit)
    {
        for (datum name = gdbm_firstkey(file); name.dptr;) {
            const size_t size = Fetch(name);
            unsigned key;
            std::memcpy(&key, name.dptr, sizeof key);
            visit(key, room, size);
            const datum next = gdbm_nextkey(file, name);
            std::free(name.dptr);
            name = next;
        }
    }

private:
    static datum Name(unsigned& key) { return {reinterpret_cast<char*>(&key), sizeof key}; }
    void Store(unsigned key, const CT_Buffer& data, int how)
    {
        const datum value = {const_cast<char*>(Data(data)), static_cast<int>(data.n_GetUsedSize())};
        Expect(gdbm_store(file, Name(key), value, how) == 0, "gdbm");
    }
    size_t Fetch(datum name)
    {
        const datum value = gdbm_fetch(file, name);
        Expect(value.dptr != nullptr, "gdbm");
        const auto size = static_cast<size_t>(value.dsize);
        std::memcpy(room, value.dptr, size);
        std::free(value.dptr);
        return size;
    }

    GDBM_FILE file;
    char room[ROOM];
};

// benchmarks/RecordSides/Lmdb.h: a B+ tree in a map.
#pragma once

#include <lmdb.h>

#include <cstring>
#include <string>

#include "RecordSides/Side.h"

class Lmdb
{
public:
    static constexpr const char* NAME = "lmdb";

    Lmdb(const std::string& path, unsigned count)
        : Lmdb(path, MDB_WRITEMAP | MDB_NOSYNC | MDB_NOMETASYNC | MDB_NOLOCK,
               std::size_t(count > 200'000 ? 8 : 1) << 30)
    {}
    // With the table of readers, as readers of a file that others may write have it.
    Lmdb(const std::string& path, const Lmdb&) : access(MDB_RDONLY) { Open(path, MDB_RDONLY, 0); }
    ~Lmdb() { Close(); }

    void Close()
    {
        if (env)
            mdb_env_close(env);
        env = nullptr;
    }
    void Begin() { Check(mdb_txn_begin(env, nullptr, access, &transaction)); }
    void End() { Check(mdb_txn_commit(transaction)); }
    void Add(unsigned key, const CT_Buffer& data) { Put(key, data, MDB_NOOVERWRITE); }
    void Update(unsigned key, const CT_Buffer& data) { Put(key, data, 0); }
    void Replace(unsigned key, const CT_Buffer& data)
    {
        MDB_val name = {sizeof key, &key};
        Check(mdb_del(transaction, table, &name, nullptr));
        Put(key, data, MDB_NOOVERWRITE);
    }
    size_t Get(unsigned key, const char*& data)
    {
        MDB_val name = {sizeof key, &key};
        MDB_val value;
        Check(mdb_get(transaction, table, &name, &value));
        std::memcpy(room, value.mv_data, value.mv_size);
        data = room;
        return value.mv_size;
    }
    template <class Visit>
    void Walk(Visit visit)
    {
        MDB_cursor* cursor;
        Check(mdb_cursor_open(transaction, table, &cursor));
        MDB_val name, value;
        while (mdb_cursor_get(cursor, &name, &value, MDB_NEXT) == 0) {
            std::memcpy(room, value.mv_data, value.mv_size);
            unsigned key;
            std::memcpy(&key, name.mv_data, sizeof key);
            visit(key, room, value.mv_size);
        }
        mdb_cursor_close(cursor);
    }

protected:
    Lmdb(const std::string& path, unsigned flags, std::size_t most) { Open(path, flags, most); }
    // No room is that of the file.
    void Open(const std::string& path, unsigned flags, std::size_t most)
    {
        Check(mdb_env_create(&env));
        if (most)
            Check(mdb_env_set_mapsize(env, most));
        Check(mdb_env_open(env, path.c_str(), MDB_NOSUBDIR | flags, 0600));
        Begin();
        Check(mdb_dbi_open(transaction, nullptr, MDB_INTEGERKEY, &table));
        End();
    }
    static void Check(int code) { Expect(code == 0, "lmdb"); }
    void Put(unsigned key, const CT_Buffer& data, unsigned flags)
    {
        MDB_val name = {sizeof key, &key};
        MDB_val value = {data.n_GetUsedSize(), const_cast<char*>(Data(data))};
        Check(mdb_put(transaction, table, &name, &value, flags));
    }

    unsigned access = 0;
    MDB_env* env = nullptr;
    MDB_dbi table = 0;
    MDB_txn* transaction = nullptr;
    char room[ROOM];
};

// The same, told that the keys of new records go up.
class LmdbAppend : public Lmdb
{
public:
    static constexpr const char* NAME = "lmdb_append";

    using Lmdb::Lmdb;
    void Add(unsigned key, const CT_Buffer& data) { Put(key, data, MDB_APPEND); }
};

// The same as it is opened without further ado: each transaction waits for the disk.
class LmdbDefault : public Lmdb
{
public:
    static constexpr const char* NAME = "lmdb";

    explicit LmdbDefault(const std::string& path) : Lmdb(path, 0, std::size_t(1) << 30) {}
};

// benchmarks/RecordSides/Sqlite.h: a table with an integer key.
#pragma once

#include <sqlite3.h>

#include <cstring>
#include <string>

#include "RecordSides/Side.h"

class Sqlite
{
public:
    static constexpr const char* NAME = "sqlite";

    Sqlite(const std::string& path, unsigned)
        : Sqlite(path, "pragma synchronous=off; pragma mmap_size=1073741824")
    {}
    Sqlite(const std::string& path, const Sqlite&)
    {
        Expect(sqlite3_open_v2(path.c_str(), &db, SQLITE_OPEN_READONLY, nullptr) == SQLITE_OK,
               "sqlite");
        Run("pragma mmap_size=1073741824");
        Prepare();
    }
    ~Sqlite() { Close(); }

    void Close()
    {
        if (!db)
            return;
        for (sqlite3_stmt* statement : {add, get, update, remove, walk})
            sqlite3_finalize(statement);
        sqlite3_close(db);
        db = nullptr;
    }
    void Begin() { Run("begin"); }
    void End() { Run("commit"); }
    void Add(unsigned key, const CT_Buffer& data) { Execute(add, key, &data); }
    void Update(unsigned key, const CT_Buffer& data) { Execute(update, key, &data); }
    void Replace(unsigned key, const CT_Buffer& data)
    {
        Execute(remove, key, nullptr);
        Execute(add, key, &data);
    }
    size_t Get(unsigned key, const char*& data)
    {
        sqlite3_bind_int(get, 1, static_cast<int>(key));
        Expect(sqlite3_step(get) == SQLITE_ROW, "sqlite");
        const size_t size = Copy(get, 0);
        sqlite3_reset(get);
        data = room;
        return size;
    }
    template <class Visit>
    void Walk(Visit visit)
    {
        while (sqlite3_step(walk) == SQLITE_ROW) {
            const size_t size = Copy(walk, 1);
            visit(static_cast<unsigned>(sqlite3_column_int(walk, 0)), room, size);
        }
        sqlite3_reset(walk);
    }

protected:
    Sqlite(const std::string& path, const char* settings)
    {
        Expect(sqlite3_open(path.c_str(), &db) == SQLITE_OK, "sqlite");
        Run(settings);
        Run("create table records(key integer primary key, data blob)");
        Prepare();
    }

private:
    void Prepare()
    {
        add = Prepare("insert into records values(?, ?)");
        get = Prepare("select data from records where key = ?");
        update = Prepare("update records set data = ?2 where key = ?1");
        remove = Prepare("delete from records where key = ?");
        walk = Prepare("select key, data from records");
    }
    void Run(const char* text)
    {
        Expect(sqlite3_exec(db, text, nullptr, nullptr, nullptr) == SQLITE_OK, text);
    }
    sqlite3_stmt* Prepare(const char* text)
    {
        sqlite3_stmt* statement = nullptr;
        Expect(sqlite3_prepare_v2(db, text, -1, &statement, nullptr) == SQLITE_OK, text);
        return statement;
    }
    void Execute(sqlite3_stmt* statement, unsigned key, const CT_Buffer* data)
    {
        sqlite3_bind_int(statement, 1, static_cast<int>(key));
        if (data)
            sqlite3_bind_blob(statement, 2, Data(*data), static_cast<int>(data->n_GetUsedSize()),
                              SQLITE_STATIC);
        Expect(sqlite3_step(statement) == SQLITE_DONE, "sqlite");
        sqlite3_reset(statement);
    }
    size_t Copy(sqlite3_stmt* statement, int column)
    {
        const void* data = sqlite3_column_blob(statement, column);
        const auto size = static_cast<size_t>(sqlite3_column_bytes(statement, column));
        std::memcpy(room, data, size);
        return size;
    }

    sqlite3* db = nullptr;
    sqlite3_stmt *add, *get, *update, *remove, *walk;
    char room[ROOM];
};

// The same as it is opened without further ado: each transaction waits for the disk.
class SqliteDefault : public Sqlite
{
public:
    static constexpr const char* NAME = "sqlite";

    explicit SqliteDefault(const std::string& path) : Sqlite(path, "") {}
};

// With a log beside the table, which each transaction waits for.
class SqliteLog : public Sqlite
{
public:
    static constexpr const char* NAME = "sqlite_wal";

    explicit SqliteLog(const std::string& path)
        : Sqlite(path, "pragma journal_mode=wal; pragma synchronous=full")
    {}
};

// winapi/Base/Database.h: small databases that the processes of a user share, in files of SQLite.
//
// A database is made by the first transaction on it and never earlier. All use of one lies within a
// transaction, which holds the host's libraries (Base/Host.h) for its length: nothing within it may
// ask for them again, as conversions of texts do. Other processes are waited for outside of it, up
// to five seconds. A process that is killed leaves whole transactions behind and nothing else.
#pragma once

#include "Base/Host.h"

#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include <sys/types.h>

namespace winapi
{
// Which state a database is in: another one after each change, by whomever. Nothing is cheaper to ask
// for.
struct DatabaseStamp
{
    unsigned char bytes[48]; // All zero where nobody knows.
    bool operator==(const DatabaseStamp&) const = default;
};

// The functions of the host's library behind this. Results are codes of system errors, 0 for none.
struct DatabaseTable
{
    DWORD (*open)(const char* path, bool durable, void** connection);
    void (*close)(void* connection);
    void (*stamp)(void* connection, DatabaseStamp* stamp);
    // Statements without parameters and rows; several are separated by semicolons.
    DWORD (*execute)(void* connection, const char* text);
    // A statement, made once for each text: the connection keeps it, and knows it by the pointer.
    DWORD (*prepare)(void* connection, const char* text, void** statement);
    DWORD (*bindNumber)(void* statement, int place, std::int64_t number);
    // Bytes that stay where they are until the statement is reset.
    DWORD (*bindText)(void* statement, int place, const char* text, std::size_t size);
    DWORD (*bindData)(void* statement, int place, const void* data, std::size_t size);
    DWORD (*step)(void* statement, bool* row);
    std::int64_t (*number)(void* statement, int column);
    const void* (*bytes)(void* statement, int column, std::size_t* size);
    void (*reset)(void* statement);
    int (*changes)(void* connection);
    std::int64_t (*lastId)(void* connection);
};

// What a file is to hold.
struct DatabaseForm
{
    DWORD mark;         // The application's number in the file's head.
    int version;        // That of the tables.
    const char* tables; // The statements that make them.
    bool durable;       // Whether a commit has reached the disk at the next checkpoint.
    // The folder; made, with those above it, where that is asked for. Nothing, with the last error
    // set, if that fails.
    std::optional<std::string> (*folder)(bool make);
    const char* file;
};

// A failure within a transaction, which ends it without effect.
struct DatabaseFailure
{
    DWORD code;
};

class Transaction;

// The process's way to one database. Objects live as long as the process, and one after the other
// opens its file at need: a file that was removed or replaced meanwhile, or lies elsewhere since
// the variables changed, is opened anew.
class Database
{
public:
    explicit constexpr Database(const DatabaseForm& kind) : form(kind) {}
    Database(const Database&) = delete;
    Database& operator=(const Database&) = delete;

    enum Access
    {
        READ,
        WRITE
    };

    // Runs body(transaction), a second time from its beginning where another process came between.
    // What it returns is the result; anything but 0 undoes what it has changed. A database that can't
    // be used: ERROR_BUSY (170) after five seconds, ERROR_BADDB (1009) for a file with other
    // content or a damaged one, ERROR_DISK_FULL (112), ERROR_REGISTRY_IO_FAILED (1016), what
    // opening a file tells.
    template <class Body>
    DWORD Run(Access access, Body body)
    {
        const auto call = [](void* place, Transaction& transaction) {
            return (*static_cast<Body*>(place))(transaction);
        };
        return RunPatiently(access, nullptr, call, &body);
    }

    // Reads. known(transaction) is asked first, in front of the transaction's begin: if it is true,
    // what had to be read is known from before, in the same state of the database.
    template <class Known, class Body>
    DWORD Read(Known known, Body body)
    {
        std::pair<Known*, Body*> both(&known, &body);
        const auto ask = [](void* place, Transaction& transaction) {
            return (*static_cast<decltype(both)*>(place)->first)(transaction);
        };
        const auto call = [](void* place, Transaction& transaction) {
            return (*static_cast<decltype(both)*>(place)->second)(transaction);
        };
        return RunPatiently(READ, ask, call, &both);
    }

    // Closes all that are open, within a scope of the host's libraries: forks and the end of the
    // process are to find none.
    static void CloseAll();

private:
    friend class Query;
    friend class Transaction;
    class Bracket;
    using Ask = bool (*)(void* place, Transaction& transaction);
    using Call = DWORD (*)(void* place, Transaction& transaction);

    DWORD RunPatiently(Access access, Ask ask, Call call, void* place);
    DWORD RunOnce(Access access, Ask ask, Call call, void* place, const std::string& path);
    DWORD RunOpen(Access access, Ask ask, Call call, void* place);
    DWORD Open(const DatabaseTable& table, const std::string& path);
    DWORD MakeTables(const DatabaseTable& table);
    bool IsOpen(Access access, const std::string& path);
    void Close(const DatabaseTable& table);

    const DatabaseForm& form;
    // Within a scope of the host's libraries only.
    void* connection = nullptr;
    char* openPath = nullptr;
    dev_t device = 0;
    ino_t inode = 0;
    std::int64_t looked = 0; // When the file was last seen in its place, in milliseconds.
    unsigned generation = 0;
    unsigned openings = 0;
    Database* nextOpen = nullptr;
};

class Transaction
{
public:
    // Which file this is: a number that changes when the database is found to be another one.
    unsigned Generation() const { return database.generation; }
    // The state in which a reading began, or one before that. Stamps of two openings tell nothing
    // about each other: what all have closed begins anew with the stamp of any other.
    const DatabaseStamp& Stamp() const { return stamp; }
    unsigned Opening() const { return database.openings; }
    // The rows that the last statement changed, and the number of the row that it added.
    int Changes() const { return table.changes(database.connection); }
    std::int64_t LastId() const { return table.lastId(database.connection); }

private:
    friend class Database;
    friend class Query;
    Transaction(const DatabaseTable& those, Database& whose) : table(those), database(whose) {}

    const DatabaseTable& table;
    Database& database;
    DatabaseStamp stamp{};
};

// One run of a statement. Its text is a literal. Throws DatabaseFailure.
class Query
{
public:
    Query(Transaction& transaction, const char* text);
    Query(const Query&) = delete;
    Query& operator=(const Query&) = delete;
    ~Query();

    // The next parameter.
    Query& Number(std::int64_t number);
    Query& Text(std::string_view text);
    Query& Data(const void* data, std::size_t size);

    // The next row; false at the end.
    bool Step();
    void Run() { Step(); }

    // Columns of the row, counted from 0; texts and data stay until the next step.
    std::int64_t NumberAt(int column) const { return table.number(statement, column); }
    std::string_view BytesAt(int column) const;

private:
    void Check(DWORD code) const;

    const DatabaseTable& table;
    void* statement = nullptr;
    int parameter = 0;
};
} // namespace winapi

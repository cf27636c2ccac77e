// winapi/Base/DatabaseHost.cpp: the databases' functions over SQLite.
#include "Base/DatabaseHost.h"

#include "winapi/Errors/Codes.h"

#include <cerrno>
#include <new>
#include <utility>
#include <vector>

#include <sqlite3.h>

namespace winapi
{
namespace
{
struct Connection
{
    sqlite3* handle = nullptr;
    const volatile unsigned char* state = nullptr;
    std::vector<std::pair<const char*, sqlite3_stmt*>> statements;
};

bool IsFull(int error)
{
    return error == ENOSPC || error == EDQUOT || error == EFBIG;
}

DWORD CodeOfOpening(int error)
{
    switch (error) {
    case ENOENT:
        return ERROR_PATH_NOT_FOUND;
    case EMFILE:
    case ENFILE:
        return ERROR_TOO_MANY_OPEN_FILES;
    case EIO:
        return ERROR_REGISTRY_IO_FAILED;
    default:
        return IsFull(error) ? ERROR_DISK_FULL : ERROR_ACCESS_DENIED;
    }
}

DWORD CodeOfResult(int result, int error)
{
    switch (result & 0xFF) {
    case SQLITE_OK:
    case SQLITE_ROW:
    case SQLITE_DONE:
        return 0;
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
        return ERROR_BUSY;
    case SQLITE_NOMEM:
    case SQLITE_TOOBIG:
        return ERROR_NOT_ENOUGH_MEMORY;
    case SQLITE_FULL:
        return ERROR_DISK_FULL;
    case SQLITE_READONLY:
    case SQLITE_PERM:
    case SQLITE_AUTH:
        return ERROR_ACCESS_DENIED;
    case SQLITE_CANTOPEN:
        return CodeOfOpening(error);
    case SQLITE_IOERR:
        return IsFull(error) ? ERROR_DISK_FULL : ERROR_REGISTRY_IO_FAILED;
    default: // Damaged, none of these databases, or other tables than ours.
        return ERROR_BADDB;
    }
}

DWORD CodeOf(sqlite3* handle, int result)
{
    return result == SQLITE_OK ? 0 : CodeOfResult(result, sqlite3_system_errno(handle));
}

sqlite3* HandleOf(void* connection)
{
    return static_cast<Connection*>(connection)->handle;
}

sqlite3_stmt* StatementOf(void* statement)
{
    return static_cast<sqlite3_stmt*>(statement);
}

DWORD CodeOf(void* statement, int result)
{
    return CodeOf(sqlite3_db_handle(StatementOf(statement)), result);
}

void Close(void* connection)
{
    Connection* const closed = static_cast<Connection*>(connection);
    for (const auto& [text, statement] : closed->statements)
        sqlite3_finalize(statement);
    sqlite3_close(closed->handle);
    delete closed;
}

// A page that says more than it can hold is damaged; tables of a stranger run nothing.
constexpr char SETTINGS[] = "PRAGMA cell_size_check = ON; PRAGMA trusted_schema = OFF;"
                            "PRAGMA foreign_keys = ON; PRAGMA synchronous = OFF";
constexpr char DURABLE[] = "PRAGMA synchronous = NORMAL";
// Of few and short rows: a change copies whole pages, and a new file has pages of this size.
constexpr char FLEETING[] = "PRAGMA page_size = 1024";

DWORD Open(const char* path, bool durable, void** connection)
{
    Connection* const opened = new (std::nothrow) Connection;
    if (!opened)
        return ERROR_NOT_ENOUGH_MEMORY;
    int result = sqlite3_open_v2(path, &opened->handle, SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX,
                                 nullptr);
    for (const char* text : {SETTINGS, durable ? DURABLE : FLEETING})
        if (result == SQLITE_OK)
            result = sqlite3_exec(opened->handle, text, nullptr, nullptr, nullptr);
    const DWORD code = opened->handle ? CodeOf(opened->handle, result) : ERROR_NOT_ENOUGH_MEMORY;
    if (code == 0)
        *connection = opened;
    else
        Close(opened);
    return code;
}

// The head of the index that the users of a database share in memory. Each change of the database
// changes it.
const volatile unsigned char* StateOf(sqlite3* handle)
{
    constexpr int REGION = 32768;
    sqlite3_file* file = nullptr;
    volatile void* region = nullptr;
    if (sqlite3_file_control(handle, "main", SQLITE_FCNTL_FILE_POINTER, &file) != SQLITE_OK ||
        !file || !file->pMethods || file->pMethods->iVersion < 2 || !file->pMethods->xShmMap ||
        file->pMethods->xShmMap(file, 0, REGION, 0, &region) != SQLITE_OK)
        return nullptr;
    return static_cast<const volatile unsigned char*>(region);
}

void Stamp(void* connection, DatabaseStamp* stamp)
{
    Connection* const owner = static_cast<Connection*>(connection);
    if (!owner->state)
        owner->state = StateOf(owner->handle);
    for (unsigned i = 0; i < sizeof stamp->bytes; ++i)
        stamp->bytes[i] = owner->state ? owner->state[i] : 0;
}

DWORD Execute(void* connection, const char* text)
{
    sqlite3* const handle = HandleOf(connection);
    return CodeOf(handle, sqlite3_exec(handle, text, nullptr, nullptr, nullptr));
}

DWORD Prepare(void* connection, const char* text, void** statement)
{
    Connection* const owner = static_cast<Connection*>(connection);
    for (const auto& [known, prepared] : owner->statements)
        if (known == text) {
            *statement = prepared;
            return 0;
        }
    sqlite3_stmt* prepared = nullptr;
    const int result =
        sqlite3_prepare_v3(owner->handle, text, -1, SQLITE_PREPARE_PERSISTENT, &prepared, nullptr);
    if (result != SQLITE_OK)
        return CodeOf(owner->handle, result);
    try {
        owner->statements.emplace_back(text, prepared);
    } catch (const std::bad_alloc&) {
        sqlite3_finalize(prepared);
        return ERROR_NOT_ENOUGH_MEMORY;
    }
    *statement = prepared;
    return 0;
}

DWORD BindNumber(void* statement, int place, std::int64_t number)
{
    return CodeOf(statement, sqlite3_bind_int64(StatementOf(statement), place, number));
}

DWORD BindText(void* statement, int place, const char* text, std::size_t size)
{
    return CodeOf(statement, sqlite3_bind_text64(StatementOf(statement), place, text, size,
                                                 SQLITE_STATIC, SQLITE_UTF8));
}

// No data are no null.
DWORD BindData(void* statement, int place, const void* data, std::size_t size)
{
    sqlite3_stmt* const bound = StatementOf(statement);
    return CodeOf(statement, size ? sqlite3_bind_blob64(bound, place, data, size, SQLITE_STATIC)
                                  : sqlite3_bind_zeroblob(bound, place, 0));
}

DWORD Step(void* statement, bool* row)
{
    const int result = sqlite3_step(StatementOf(statement));
    *row = result == SQLITE_ROW;
    return *row || result == SQLITE_DONE ? 0 : CodeOf(statement, result);
}

std::int64_t Number(void* statement, int column)
{
    return sqlite3_column_int64(StatementOf(statement), column);
}

const void* Bytes(void* statement, int column, std::size_t* size)
{
    const void* const bytes = sqlite3_column_blob(StatementOf(statement), column);
    *size = static_cast<std::size_t>(sqlite3_column_bytes(StatementOf(statement), column));
    return bytes;
}

void Reset(void* statement)
{
    sqlite3_reset(StatementOf(statement));
    sqlite3_clear_bindings(StatementOf(statement));
}

int Changes(void* connection)
{
    return sqlite3_changes(HandleOf(connection));
}

std::int64_t LastId(void* connection)
{
    return sqlite3_last_insert_rowid(HandleOf(connection));
}
} // namespace

const DatabaseTable databaseTable = {
    .open = Open,
    .close = Close,
    .stamp = Stamp,
    .execute = Execute,
    .prepare = Prepare,
    .bindNumber = BindNumber,
    .bindText = BindText,
    .bindData = BindData,
    .step = Step,
    .number = Number,
    .bytes = Bytes,
    .reset = Reset,
    .changes = Changes,
    .lastId = LastId,
};
} // namespace winapi

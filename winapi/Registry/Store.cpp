// winapi/Registry/Store.cpp
#include "Registry/Store.h"

#include "Base/DataFolder.h"
#include "Base/Posix.h"

#include <iterator>
#include <unordered_map>

namespace winapi
{
namespace
{
// The rows that a registry begins with, none of which can be deleted. The root has no name, and each
// predefined key lies below it, but for that of the classes.
constexpr std::int64_t CLASSES = 8;
constexpr std::int64_t LAST_GIVEN = 9;
constexpr std::int64_t MOST_LEVELS = 512;

constexpr char TABLES[] =
    "CREATE TABLE key (id INTEGER PRIMARY KEY AUTOINCREMENT,"
    " parent INTEGER NOT NULL REFERENCES key (id), fold TEXT NOT NULL, name TEXT NOT NULL,"
    " level INTEGER NOT NULL, written INTEGER NOT NULL, UNIQUE (parent, fold));"
    "CREATE TABLE val (key INTEGER NOT NULL REFERENCES key (id) ON DELETE CASCADE,"
    " fold TEXT NOT NULL, name TEXT NOT NULL, type INTEGER NOT NULL, data BLOB NOT NULL,"
    " PRIMARY KEY (key, fold)) WITHOUT ROWID;"
    "INSERT INTO key VALUES (0, 0, '', '', -1, 0),"
    " (1, 0, 'hkey_current_user', 'HKEY_CURRENT_USER', 0, 0),"
    " (2, 0, 'hkey_local_machine', 'HKEY_LOCAL_MACHINE', 0, 0),"
    " (3, 0, 'hkey_users', 'HKEY_USERS', 0, 0),"
    " (4, 0, 'hkey_performance_data', 'HKEY_PERFORMANCE_DATA', 0, 0),"
    " (5, 0, 'hkey_current_config', 'HKEY_CURRENT_CONFIG', 0, 0),"
    " (6, 0, 'hkey_dyn_data', 'HKEY_DYN_DATA', 0, 0),"
    " (7, 2, 'software', 'Software', 1, 0),"
    " (8, 7, 'classes', 'Classes', 2, 0),"
    " (9, 1, 'software', 'Software', 1, 0);";

constexpr DatabaseForm FORM = {
    .mark = 0x4F735267, // "OsRg"
    .version = 1,
    .tables = TABLES,
    .durable = true,
    .folder = DataFolder,
    .file = "registry.db",
};
constinit Database database(FORM);

// From HKEY_CLASSES_ROOT on, in the order of their numbers.
constexpr KeyPlace PREDEFINED[] = {{CLASSES, 0}, {1, 0}, {2, 0}, {3, 0}, {4, 0}, {5, 0}, {6, 0}};

// Hundreds of nanoseconds since 1601.
std::int64_t Now()
{
    timespec now;
    posix.clock_gettime(CLOCK_REALTIME, &now);
    return (now.tv_sec + 11644473600) * 10'000'000 + now.tv_nsec / 100;
}

bool IsThere(Transaction& transaction, std::int64_t id)
{
    return Query(transaction, "SELECT 1 FROM key WHERE id = ?").Number(id).Step();
}

// What it means that nothing was found below a key.
DWORD NothingBelow(Transaction& transaction, std::int64_t id, DWORD code)
{
    return IsThere(transaction, id) ? code : ERROR_KEY_DELETED;
}

// A key of this file, or one that is in all.
bool IsOfFile(Transaction& transaction, KeyPlace key)
{
    return key.generation == 0 || key.generation == transaction.Generation();
}

// What was read in one state of the database. Only within a scope of the host's libraries.
class Memory
{
public:
    // Forgets all that is of another state. False where nobody knows the state.
    bool Turn(const Transaction& transaction)
    {
        if (transaction.Stamp() == stamp && transaction.Opening() == opening)
            return stamp != DatabaseStamp{};
        keys.clear();
        values.clear();
        stamp = transaction.Stamp();
        opening = transaction.Opening();
        return false;
    }
    const KeyPlace* Find(const std::string& path) const
    {
        const auto found = keys.find(path);
        return found == keys.end() ? nullptr : &found->second;
    }
    const ValueEntry* FindValue(const std::string& place) const
    {
        const auto found = values.find(place);
        return found == values.end() ? nullptr : &found->second;
    }
    void Keep(const std::string& path, KeyPlace key)
    {
        if (keys.size() < MOST)
            keys.emplace(path, key);
    }
    void Keep(const std::string& place, const ValueEntry& entry)
    {
        if (values.size() < MOST && entry.data.size() <= MOST_DATA)
            values.emplace(place, entry);
    }

private:
    static constexpr std::size_t MOST = 1000;
    static constexpr std::size_t MOST_DATA = 1000;

    DatabaseStamp stamp{};
    unsigned opening = 0;
    std::unordered_map<std::string, KeyPlace> keys;
    std::unordered_map<std::string, ValueEntry> values;
};

// Never destroyed: services may be called until the very end.
Memory& TheMemory()
{
    static Memory* const memory = new Memory;
    return *memory;
}

std::string WithNumber(std::int64_t number)
{
    return {reinterpret_cast<const char*>(&number), sizeof number};
}

// Runs the body in a transaction, unless the key belongs to a file that is no longer the registry.
template <class Body>
DWORD RunFor(KeyPlace key, Database::Access access, Body body)
{
    return database.Run(access, [&](Transaction& transaction) {
        return IsOfFile(transaction, key) ? body(transaction) : ERROR_KEY_DELETED;
    });
}

// Goes down the path as far as it leads. Result: how many steps.
std::size_t Walk(Transaction& transaction, const KeyPath& path, std::int64_t& id)
{
    for (std::size_t step = 0; step < path.size(); ++step) {
        Query query(transaction, "SELECT id FROM key WHERE parent = ? AND fold = ?");
        if (!query.Number(id).Text(path[step].fold).Step())
            return step;
        id = query.NumberAt(0);
    }
    return path.size();
}

DWORD Find(Transaction& transaction, KeyPlace from, const KeyPath& path, KeyPlace& found)
{
    std::int64_t id = from.id;
    if (Walk(transaction, path, id) < path.size())
        return NothingBelow(transaction, from.id, ERROR_FILE_NOT_FOUND);
    if (path.empty() && !IsThere(transaction, id))
        return ERROR_KEY_DELETED;
    found = {id, transaction.Generation()};
    return 0;
}

// Result: whether there is such a key.
bool Touch(Transaction& transaction, std::int64_t id)
{
    Query(transaction, "UPDATE key SET written = ? WHERE id = ?").Number(Now()).Number(id).Run();
    return transaction.Changes() != 0;
}

DWORD Make(Transaction& transaction, const KeyPath& path, std::size_t step, std::int64_t& id)
{
    std::int64_t level = 0;
    {
        Query query(transaction, "SELECT level FROM key WHERE id = ?");
        if (!query.Number(id).Step())
            return ERROR_KEY_DELETED;
        level = query.NumberAt(0);
    }
    if (level + static_cast<std::int64_t>(path.size() - step) > MOST_LEVELS)
        return ERROR_FILENAME_EXCED_RANGE;
    Touch(transaction, id);
    for (; step < path.size(); ++step) {
        Query(transaction,
              "INSERT INTO key (parent, fold, name, level, written) VALUES (?, ?, ?, ?, ?)")
            .Number(id)
            .Text(path[step].fold)
            .Text(path[step].name)
            .Number(++level)
            .Number(Now())
            .Run();
        id = transaction.LastId();
    }
    return 0;
}

void TakeValue(const Query& query, ValueEntry& entry)
{
    entry.type = static_cast<DWORD>(query.NumberAt(0));
    entry.data = query.BytesAt(1);
}
} // namespace

const KeyPlace* FindPredefined(HKEY key)
{
    // In 64 bits the number may come widened with its sign or without.
    const auto number = reinterpret_cast<std::uintptr_t>(key);
    const auto low = static_cast<DWORD>(number);
    const bool widened =
        number == low ||
        number == static_cast<std::uintptr_t>(static_cast<std::intptr_t>(static_cast<LONG>(low)));
    const DWORD index = low - 0x80000000;
    return widened && index < std::size(PREDEFINED) ? PREDEFINED + index : nullptr;
}

DWORD FindKey(KeyPlace from, const KeyPath& path, KeyPlace& found)
{
    std::string whole = WithNumber(from.id);
    for (const StoredText& step : path)
        (whole += '\\') += step.fold;
    const auto known = [&](Transaction& transaction) {
        const bool same = TheMemory().Turn(transaction) && IsOfFile(transaction, from);
        const KeyPlace* const key = same ? TheMemory().Find(whole) : nullptr;
        if (key)
            found = *key;
        return key != nullptr;
    };
    return database.Read(known, [&](Transaction& transaction) {
        const DWORD code =
            IsOfFile(transaction, from) ? Find(transaction, from, path, found) : ERROR_KEY_DELETED;
        if (code == 0)
            TheMemory().Keep(whole, found);
        return code;
    });
}

DWORD CreateKey(KeyPlace from, const KeyPath& path, bool mayCreate, KeyPlace& found, bool& created)
{
    created = false;
    // Most are there, and those who read wait for nobody.
    const DWORD code = FindKey(from, path, found);
    if (code != ERROR_FILE_NOT_FOUND)
        return code;
    if (!mayCreate)
        return ERROR_ACCESS_DENIED;
    return RunFor(from, Database::WRITE, [&](Transaction& transaction) {
        std::int64_t id = from.id;
        const std::size_t step = Walk(transaction, path, id);
        const DWORD failure = step < path.size() ? Make(transaction, path, step, id) : 0;
        created = step < path.size();
        found = {id, transaction.Generation()};
        return failure;
    });
}

DWORD DeleteKey(KeyPlace from, const KeyPath& path)
{
    return RunFor(from, Database::WRITE, [&](Transaction& transaction) -> DWORD {
        KeyPlace key{};
        if (const DWORD code = Find(transaction, from, path, key))
            return code;
        if (key.id <= LAST_GIVEN)
            return ERROR_ACCESS_DENIED;
        Query(transaction, "UPDATE key SET written = ? WHERE id ="
                           " (SELECT parent FROM key WHERE id = ?)")
            .Number(Now())
            .Number(key.id)
            .Run();
        Query(transaction, "DELETE FROM key WHERE id = ?1"
                           " AND NOT EXISTS (SELECT 1 FROM key WHERE parent = ?1)")
            .Number(key.id)
            .Run();
        return transaction.Changes() ? 0 : ERROR_ACCESS_DENIED;
    });
}

DWORD QueryKey(KeyPlace key, KeyFacts& facts)
{
    return RunFor(key, Database::READ, [&](Transaction& transaction) -> DWORD {
        Query itself(transaction, "SELECT written FROM key WHERE id = ?");
        if (!itself.Number(key.id).Step())
            return ERROR_KEY_DELETED;
        Query keys(transaction, "SELECT count(*), max(length(fold)) FROM key WHERE parent = ?");
        keys.Number(key.id).Step();
        Query values(transaction, "SELECT count(*), max(length(fold)), max(length(data))"
                                  " FROM val WHERE key = ?");
        values.Number(key.id).Step();
        const auto number = [](const Query& query, int column) {
            return static_cast<DWORD>(query.NumberAt(column));
        };
        facts = {number(keys, 0),   number(keys, 1),
                 number(values, 0), number(values, 1),
                 number(values, 2), static_cast<std::uint64_t>(itself.NumberAt(0))};
        return 0;
    });
}

DWORD EnumerateKey(KeyPlace key, DWORD index, SubkeyEntry& entry)
{
    return RunFor(key, Database::READ, [&](Transaction& transaction) -> DWORD {
        Query query(transaction, "SELECT name, written FROM key WHERE parent = ?"
                                 " ORDER BY fold LIMIT 1 OFFSET ?");
        if (!query.Number(key.id).Number(index).Step())
            return NothingBelow(transaction, key.id, ERROR_NO_MORE_ITEMS);
        entry.name = NameOf(query.BytesAt(0));
        entry.written = static_cast<std::uint64_t>(query.NumberAt(1));
        return 0;
    });
}

DWORD FindValue(KeyPlace key, const std::string& fold, ValueEntry& entry)
{
    const std::string place = WithNumber(key.id) + fold;
    const auto known = [&](Transaction& transaction) {
        const bool same = TheMemory().Turn(transaction) && IsOfFile(transaction, key);
        const ValueEntry* const value = same ? TheMemory().FindValue(place) : nullptr;
        if (value)
            entry = *value;
        return value != nullptr;
    };
    return database.Read(known, [&](Transaction& transaction) -> DWORD {
        if (!IsOfFile(transaction, key))
            return ERROR_KEY_DELETED;
        Query query(transaction, "SELECT type, data FROM val WHERE key = ? AND fold = ?");
        if (!query.Number(key.id).Text(fold).Step())
            return NothingBelow(transaction, key.id, ERROR_FILE_NOT_FOUND);
        TakeValue(query, entry);
        TheMemory().Keep(place, entry);
        return 0;
    });
}

DWORD EnumerateValue(KeyPlace key, DWORD index, ValueEntry& entry)
{
    return RunFor(key, Database::READ, [&](Transaction& transaction) -> DWORD {
        Query query(transaction, "SELECT type, data, name FROM val WHERE key = ?"
                                 " ORDER BY fold LIMIT 1 OFFSET ?");
        if (!query.Number(key.id).Number(index).Step())
            return NothingBelow(transaction, key.id, ERROR_NO_MORE_ITEMS);
        TakeValue(query, entry);
        entry.name = NameOf(query.BytesAt(2));
        return 0;
    });
}

DWORD SetValue(KeyPlace key, const StoredText& name, DWORD type, const void* data, std::size_t size)
{
    return RunFor(key, Database::WRITE, [&](Transaction& transaction) -> DWORD {
        if (!Touch(transaction, key.id))
            return ERROR_KEY_DELETED;
        // The first spelling of the name stays.
        Query(transaction, "INSERT INTO val (key, fold, name, type, data) VALUES (?, ?, ?, ?, ?)"
                           " ON CONFLICT DO UPDATE SET type = excluded.type, data = excluded.data")
            .Number(key.id)
            .Text(name.fold)
            .Text(name.name)
            .Number(type)
            .Data(data, size)
            .Run();
        return 0;
    });
}

DWORD DeleteValue(KeyPlace key, const std::string& fold)
{
    return RunFor(key, Database::WRITE, [&](Transaction& transaction) -> DWORD {
        Query(transaction, "DELETE FROM val WHERE key = ? AND fold = ?")
            .Number(key.id)
            .Text(fold)
            .Run();
        if (transaction.Changes() == 0)
            return NothingBelow(transaction, key.id, ERROR_FILE_NOT_FOUND);
        Touch(transaction, key.id);
        return 0;
    });
}
} // namespace winapi

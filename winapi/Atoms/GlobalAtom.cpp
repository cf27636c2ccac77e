// winapi/Atoms/GlobalAtom.cpp: global atoms.
#include "winapi/Atoms/Atom.h"

#include "Base/Session.h"
#include "Registry/StoredNames.h"

#include <cstring>

namespace winapi
{
namespace
{
constexpr unsigned FIRST = 0xC000;
constexpr unsigned LAST = 0xFFFF;
constexpr std::size_t LONGEST = 255;

// What a caller names: a number, or a text.
struct Name
{
    unsigned number = 0; // 0 for a text.
    std::string name;
    std::string fold;
};

[[noreturn]] void Fail(DWORD code)
{
    SetLastError(code);
    throw Failed();
}

unsigned CheckedNumber(unsigned number)
{
    if (number == 0 || number >= FIRST)
        Fail(ERROR_INVALID_PARAMETER);
    return number;
}

// The number behind "#"; no number for any other text.
bool ReadNumber(LPCSTR text, unsigned& number)
{
    if (*text != '#')
        return false;
    number = 0;
    for (++text; *text >= '0' && *text <= '9'; ++text)
        number = std::min(number * 10 + static_cast<unsigned>(*text - '0'), 0x10000U);
    if (*text)
        number = 0;
    return *text == 0;
}

Name Parse(LPCSTR text)
{
    Name parsed;
    const auto value = reinterpret_cast<UINT_PTR>(text);
    if (value <= LAST)
        parsed.number = CheckedNumber(static_cast<unsigned>(value));
    else if (ReadNumber(text, parsed.number))
        CheckedNumber(parsed.number);
    else {
        const std::size_t size = std::strlen(text);
        if (size == 0 || size > LONGEST)
            Fail(ERROR_INVALID_PARAMETER);
        const Widened wide(text);
        const WideView view(static_cast<LPCWSTR>(wide));
        parsed.name = StoredName(view);
        parsed.fold = FoldOf(view);
    }
    return parsed;
}

unsigned IdOf(Transaction& transaction, const std::string& fold)
{
    Query query(transaction, "SELECT id FROM atom WHERE fold = ?");
    return query.Text(fold).Step() ? static_cast<unsigned>(query.NumberAt(0)) : 0;
}

unsigned FreeAbove(Transaction& transaction, unsigned id)
{
    Query query(transaction, "SELECT min(id) + 1 FROM (SELECT ? AS id UNION ALL SELECT id FROM atom"
                             " WHERE id > ?) WHERE id + 1 NOT IN (SELECT id FROM atom)");
    query.Number(id).Number(id).Step();
    return static_cast<unsigned>(query.NumberAt(0));
}

unsigned LastGiven(Transaction& transaction)
{
    Query query(transaction, "SELECT seq FROM sqlite_sequence WHERE name = 'atom'");
    return query.Step() ? static_cast<unsigned>(query.NumberAt(0)) : FIRST - 1;
}

// The next that is free, in a round: conversations delete atoms once more than they add them, and
// are not to meet another's new one.
unsigned FreeId(Transaction& transaction)
{
    unsigned id = FreeAbove(transaction, LastGiven(transaction));
    if (id > LAST)
        id = FreeAbove(transaction, FIRST - 1);
    if (id > LAST)
        return id;
    Query(transaction, "UPDATE sqlite_sequence SET seq = ? WHERE name = 'atom'").Number(id).Run();
    if (transaction.Changes() == 0)
        Query(transaction, "INSERT INTO sqlite_sequence VALUES ('atom', ?)").Number(id).Run();
    return id;
}

DWORD Add(Transaction& transaction, const Name& text, unsigned& id)
{
    id = IdOf(transaction, text.fold);
    if (!id) {
        id = FreeId(transaction);
        if (id > LAST)
            return ERROR_NOT_ENOUGH_MEMORY;
        Query(transaction, "INSERT INTO atom VALUES (?, ?, ?)")
            .Number(id)
            .Text(text.fold)
            .Text(text.name)
            .Run();
    }
    Query(transaction, "INSERT INTO hold VALUES (?, ?, 1)"
                       " ON CONFLICT DO UPDATE SET refs = refs + 1")
        .Number(id)
        .Text(SessionMark())
        .Run();
    return 0;
}

// Lets one hold of that mark go; false for none.
bool LetGo(Transaction& transaction, unsigned id, const std::string& mark)
{
    Query(transaction, "UPDATE hold SET refs = refs - 1 WHERE atom = ? AND mark = ?")
        .Number(id)
        .Text(mark)
        .Run();
    return transaction.Changes() != 0;
}

// A living process's, who may or may not want it.
bool LetGoOfAny(Transaction& transaction, unsigned id)
{
    std::string mark;
    {
        Query query(transaction, "SELECT mark FROM hold WHERE atom = ? LIMIT 1");
        if (!query.Number(id).Step())
            return false;
        mark = query.BytesAt(0);
    }
    return LetGo(transaction, id, mark);
}

bool IsThere(Transaction& transaction, unsigned id)
{
    Query query(transaction, "SELECT id FROM atom WHERE id = ?");
    return query.Number(id).Step();
}

// The process's own count goes first, then those of the dead.
DWORD Delete(Transaction& transaction, unsigned id)
{
    if (!IsThere(transaction, id))
        return ERROR_INVALID_HANDLE;
    if (!LetGo(transaction, id, SessionMark())) {
        Sweep(transaction);
        if (!LetGo(transaction, id, {}))
            LetGoOfAny(transaction, id);
    }
    Query(transaction, "DELETE FROM hold WHERE atom = ? AND refs = 0").Number(id).Run();
    // The dead alone hold nothing.
    Query(transaction,
          "DELETE FROM hold WHERE atom = ? AND mark = '' AND NOT EXISTS"
          " (SELECT 1 FROM hold AS other WHERE other.atom = hold.atom AND other.mark <> '')")
        .Number(id)
        .Run();
    Query(transaction, "DELETE FROM atom WHERE id = ? AND id NOT IN (SELECT atom FROM hold)")
        .Number(id)
        .Run();
    return 0;
}

// Runs body(transaction) in the session; ends the service if that fails.
template <class Body>
void InSession(Database::Access access, Body body)
{
    DWORD code = EnterSession();
    if (!code)
        code = session.Run(access, body);
    if (code)
        Fail(code);
}

WideText TextOf(ATOM atom)
{
    if (atom < FIRST)
        return Widen('#' + std::to_string(CheckedNumber(atom)), 0);
    std::string stored;
    InSession(Database::READ, [&](Transaction& transaction) {
        Query query(transaction, "SELECT name FROM atom WHERE id = ?");
        if (!query.Number(atom).Step())
            return ERROR_INVALID_HANDLE;
        stored = query.BytesAt(0);
        return DWORD(0);
    });
    return NameOf(stored);
}
} // namespace

ATOM GlobalAddAtomA(LPCSTR text)
{
    return Guarded(ATOM(0), [&] {
        const Name name = Parse(text);
        unsigned id = name.number;
        if (!id)
            InSession(Database::WRITE, [&](Transaction& t) { return Add(t, name, id); });
        return static_cast<ATOM>(id);
    });
}

ATOM GlobalFindAtomA(LPCSTR text)
{
    return Guarded(ATOM(0), [&] {
        const Name name = Parse(text);
        unsigned id = name.number;
        if (!id)
            InSession(Database::READ, [&](Transaction& transaction) {
                id = IdOf(transaction, name.fold);
                return id ? DWORD(0) : ERROR_FILE_NOT_FOUND;
            });
        return static_cast<ATOM>(id);
    });
}

ATOM GlobalDeleteAtom(ATOM atom)
{
    if (atom < FIRST)
        return 0;
    return Guarded(atom, [&] {
        InSession(Database::WRITE, [&](Transaction& t) { return Delete(t, atom); });
        return ATOM(0);
    });
}

UINT GlobalGetAtomNameA(ATOM atom, LPSTR buffer, int size)
{
    return Guarded(0U, [&] {
        if (size <= 0)
            Fail(ERROR_MORE_DATA);
        const std::string text = Narrowed(TextOf(atom));
        const std::size_t count = std::min(text.size(), static_cast<std::size_t>(size) - 1);
        std::memcpy(buffer, text.data(), count);
        buffer[count] = 0;
        return static_cast<UINT>(count);
    });
}
} // namespace winapi

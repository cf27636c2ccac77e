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
    Query query(transaction,
                "SELECT id FROM atom WHERE fold = ? AND EXISTS (SELECT 1 FROM hold WHERE"
                " atom = id AND mark <> '')");
    return query.Text(fold).Step() ? static_cast<unsigned>(query.NumberAt(0)) : 0;
}

unsigned FreeAbove(Transaction& transaction, unsigned id)
{
    Query query(transaction, "SELECT min(id) + 1 FROM (SELECT ?1 AS id UNION ALL SELECT atom FROM"
                             " hold WHERE atom > ?1) WHERE id + 1 NOT IN (SELECT atom FROM hold)");
    query.Number(id).Step();
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

void Set(Transaction& transaction, unsigned id, const Name& text)
{
    Query(transaction, "INSERT OR REPLACE INTO atom VALUES (?, ?, ?)")
        .Number(id)
        .Text(text.fold)
        .Text(text.name)
        .Run();
}

// A name that nobody holds has kept its row, and gets it back: names come again and again. It is
// spelled anew then.
DWORD FindOrMake(Transaction& transaction, const Name& text, unsigned& id)
{
    bool isSpelled = false;
    {
        Query query(
            transaction,
            "SELECT id, name = ? OR EXISTS (SELECT 1 FROM hold WHERE atom = id AND mark <> '')"
            " FROM atom WHERE fold = ?");
        const bool isThere = query.Text(text.name).Text(text.fold).Step();
        id = isThere ? static_cast<unsigned>(query.NumberAt(0)) : 0;
        isSpelled = isThere && query.NumberAt(1) != 0;
    }
    if (!id)
        id = FreeId(transaction);
    if (id > LAST)
        return ERROR_NOT_ENOUGH_MEMORY;
    if (!isSpelled)
        Set(transaction, id, text);
    return 0;
}

DWORD Add(Transaction& transaction, const Name& text, unsigned& id)
{
    const DWORD code = FindOrMake(transaction, text, id);
    if (code == 0)
        Query(transaction, "INSERT INTO hold VALUES (?, ?, 1)"
                           " ON CONFLICT DO UPDATE SET refs = refs + 1")
            .Number(id)
            .Text(SessionMark())
            .Run();
    return code;
}

// Lets one hold of that mark go; false for none. The last one's row goes.
bool LetGo(Transaction& transaction, unsigned id, const std::string& mark)
{
    Query(transaction, "DELETE FROM hold WHERE atom = ? AND mark = ? AND refs = 1")
        .Number(id)
        .Text(mark)
        .Run();
    if (transaction.Changes() != 0)
        return true;
    Query(transaction, "UPDATE hold SET refs = refs - 1 WHERE atom = ? AND mark = ?")
        .Number(id)
        .Text(mark)
        .Run();
    return transaction.Changes() != 0;
}

// The mark of some living process that holds the atom; nothing for none.
std::string SomeHolder(Transaction& transaction, unsigned id)
{
    Query query(transaction, "SELECT mark FROM hold WHERE atom = ? AND mark <> '' LIMIT 1");
    return query.Number(id).Step() ? std::string(query.BytesAt(0)) : std::string();
}

// The process's own count goes first, then those of the dead, then a living one's, who may or may
// not want it. The atom's row goes when a process ends, or when its number is wanted.
DWORD Delete(Transaction& transaction, unsigned id)
{
    if (LetGo(transaction, id, SessionMark()))
        return 0;
    if (SomeHolder(transaction, id).empty())
        return ERROR_INVALID_HANDLE;
    Sweep(transaction);
    if (!LetGo(transaction, id, {}))
        LetGo(transaction, id, SomeHolder(transaction, id));
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
        Query query(transaction, "SELECT name FROM atom WHERE id = ? AND EXISTS (SELECT 1 FROM"
                                 " hold WHERE atom = id AND mark <> '')");
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

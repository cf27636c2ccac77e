// winapi/Messages/WindowRows.cpp
#include "Messages/WindowRows.h"

#include "Base/Session.h"
#include "Errors/Failure.h"

namespace winapi
{
namespace
{
template <class Body>
DWORD InSession(Database::Access access, Body body)
{
    const DWORD code = EnterSession();
    return code ? code : session.Run(access, body);
}

struct Row
{
    HWND window;
    std::string title;
    std::string mark;
};

DWORD ListRows(const std::string& fold, std::vector<Row>& rows)
{
    return InSession(Database::READ, [&](Transaction& transaction) {
        Query query(transaction, "SELECT hwnd, title, mark FROM win WHERE ? IN ('', fold)"
                                 " ORDER BY hwnd DESC");
        for (rows.clear(), query.Text(fold); query.Step();)
            rows.push_back({WindowOf(static_cast<std::uint64_t>(query.NumberAt(0))),
                            std::string(query.BytesAt(1)), std::string(query.BytesAt(2))});
        return DWORD(0);
    });
}

bool SomeHaveDied(const std::vector<Row>& rows)
{
    for (const Row& row : rows)
        if (row.mark != SessionMark() && !IsAlive(row.mark))
            return true;
    return false;
}
} // namespace

DWORD AddWindow(const std::string& fold, const std::string& title, const std::string& socket,
                HWND& window)
{
    return InSession(Database::WRITE, [&](Transaction& transaction) {
        Query(transaction, "INSERT INTO win (fold, title, mark, socket) VALUES (?, ?, ?, ?)")
            .Text(fold)
            .Text(title)
            .Text(SessionMark())
            .Text(socket)
            .Run();
        const std::int64_t number = transaction.LastId();
        window = WindowOf(static_cast<std::uint64_t>(number));
        return number > INT32_MAX ? ERROR_NOT_ENOUGH_MEMORY : DWORD(0);
    });
}

void RemoveWindows(const std::vector<HWND>& windows)
{
    InSession(Database::WRITE, [&](Transaction& transaction) {
        for (const HWND window : windows)
            Query(transaction, "DELETE FROM win WHERE hwnd = ?").Number(NumberOf(window)).Run();
        return DWORD(0);
    });
}

DWORD FindSocket(HWND window, std::string& socket)
{
    return InSession(Database::READ, [&](Transaction& transaction) {
        Query query(transaction, "SELECT socket FROM win WHERE hwnd = ?");
        const auto number = static_cast<std::int64_t>(reinterpret_cast<UINT_PTR>(window));
        if (!query.Number(number).Step())
            return ERROR_INVALID_WINDOW_HANDLE;
        socket = query.BytesAt(0);
        return DWORD(0);
    });
}

DWORD ListWindows(std::vector<HWND>& windows)
{
    std::vector<Row> rows;
    const DWORD code = ListRows({}, rows);
    for (const Row& row : rows)
        windows.push_back(row.window);
    return code;
}

DWORD FindNewest(const std::string& fold, const std::string* title, HWND& window)
{
    std::vector<Row> rows;
    DWORD code = ListRows(fold, rows);
    if (!code && SomeHaveDied(rows)) {
        SweepSession();
        code = ListRows(fold, rows);
    }
    window = nullptr;
    for (const Row& row : rows)
        if (!window && (!title || row.title == *title))
            window = row.window;
    return code || !rows.empty() || fold.empty() ? code : ERROR_CANNOT_FIND_WND_CLASS;
}
} // namespace winapi

// winapi/Messages/Classes.cpp: classes of windows.
#include "Messages/Classes.h"

#include "Errors/Failure.h"
#include "Registry/StoredNames.h"
#include "winapi/Process/Module.h"

namespace winapi
{
namespace
{
constexpr ATOM FIRST = 0xC000;
constexpr ATOM LAST = 0xFFFF;

// Never destroyed: services may be called until the very end. Under the mutex.
struct Table
{
    std::vector<std::shared_ptr<const WindowClass>> classes;
    ATOM next = FIRST;
};

Table& Known()
{
    static Table* const table = new Table;
    return *table;
}

// A class as callers name it: by its text, or by its atom.
struct ClassName
{
    explicit ClassName(LPCSTR name)
    {
        const auto value = reinterpret_cast<UINT_PTR>(name);
        if (value <= LAST)
            atom = static_cast<ATOM>(value);
        else
            fold = FoldOfText(name);
    }
    bool Names(const WindowClass& kind) const
    {
        return atom ? kind.atom == atom : kind.fold == fold;
    }

    ATOM atom = 0;
    std::string fold;
};

auto Find(const ClassName& name, HINSTANCE instance)
{
    auto& classes = Known().classes;
    return std::find_if(classes.begin(), classes.end(), [&](const auto& kind) {
        return name.Names(*kind) && kind->facts.hInstance == instance;
    });
}

ATOM Register(const WNDCLASSA& facts)
{
    if (!facts.lpfnWndProc || facts.cbWndExtra < 0 || facts.cbClsExtra < 0 ||
        reinterpret_cast<UINT_PTR>(facts.lpszClassName) <= LAST || !*facts.lpszClassName)
        Fail(ERROR_INVALID_PARAMETER);
    const ClassName name(facts.lpszClassName);
    auto kind = std::make_shared<WindowClass>();
    kind->facts = facts;
    kind->facts.hInstance = InstanceOf(facts.hInstance);
    kind->fold = name.fold;
    const std::lock_guard lock(windowsMutex);
    Table& table = Known();
    if (Find(name, kind->facts.hInstance) != table.classes.end())
        Fail(ERROR_CLASS_ALREADY_EXISTS);
    if (table.next == LAST)
        Fail(ERROR_NOT_ENOUGH_MEMORY);
    kind->atom = table.next++;
    table.classes.push_back(kind);
    return kind->atom;
}
} // namespace

void Fail(DWORD code)
{
    SetLastError(code);
    throw Failed();
}

std::string FoldOfText(LPCSTR text)
{
    const Widened wide(text);
    return FoldOf(WideView(static_cast<LPCWSTR>(wide)));
}

// An atom that names no class is a text that no class has.
std::string FoldOfClass(LPCSTR text)
{
    const ClassName name(text);
    if (!name.atom)
        return name.fold;
    const std::lock_guard lock(windowsMutex);
    for (const auto& kind : Known().classes)
        if (kind->atom == name.atom)
            return kind->fold;
    return "#";
}

HINSTANCE InstanceOf(HINSTANCE instance)
{
    return instance ? instance : GetModuleHandleA(nullptr);
}

std::shared_ptr<const WindowClass> ClassOf(LPCSTR text, HINSTANCE instance)
{
    const ClassName name(text);
    const std::lock_guard lock(windowsMutex);
    const auto found = Find(name, instance);
    if (found == Known().classes.end())
        Fail(ERROR_CLASS_DOES_NOT_EXIST);
    return *found;
}

ATOM RegisterClassA(const WNDCLASSA* facts)
{
    return Guarded(ATOM(0), [&] { return Register(*facts); });
}

BOOL UnregisterClassA(LPCSTR text, HINSTANCE instance)
{
    return Guarded(FALSE, [&] {
        const ClassName name(text);
        const std::lock_guard lock(windowsMutex);
        const auto found = Find(name, InstanceOf(instance));
        if (found == Known().classes.end())
            Fail(ERROR_CLASS_DOES_NOT_EXIST);
        // Each window holds its class.
        if (found->use_count() > 1)
            Fail(ERROR_CLASS_HAS_WINDOWS);
        Known().classes.erase(found);
        return TRUE;
    });
}

BOOL GetClassInfoA(HINSTANCE instance, LPCSTR name, WNDCLASSA* facts)
{
    return Guarded(FALSE, [&] {
        *facts = ClassOf(name, InstanceOf(instance))->facts;
        facts->hInstance = instance;
        facts->lpszClassName = name;
        return TRUE;
    });
}
} // namespace winapi

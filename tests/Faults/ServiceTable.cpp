// tests/Faults/ServiceTable.cpp: the wrappers of the services in services.txt, and how calls reach
// them.
#include "Faults/Services.h"
#include "Faults/Swept.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <type_traits>
#include <utility>
#include <vector>

namespace
{
unsigned calls_left;
bool within_service; // which may call others of its own accord
unsigned error_index;
bool ends_process;
Services::Call failed;

struct Row
{
    const char* name;
    const char* symbol; // where the platform's headers call it otherwise
    void (**real)();
    void (*own)();
};

std::vector<HANDLE>& Unclosed()
{
    static std::vector<HANDLE> handles;
    return handles;
}

class Within
{
public:
    Within() : before(std::exchange(within_service, true)) {}
    Within(const Within&) = delete;
    Within& operator=(const Within&) = delete;
    ~Within() { within_service = before; }

private:
    bool before;
};

template <class Result>
Result FailureOf(long long value)
{
    if constexpr (std::is_pointer_v<Result>)
        return reinterpret_cast<Result>(static_cast<std::intptr_t>(value));
    else
        return static_cast<Result>(value);
}
} // namespace

namespace service
{
// What a failed call leaves behind.
template <class Service, class... Arguments>
void Leave(Service, Arguments...)
{}

void Leave(CloseHandleService, HANDLE handle)
{
    Unclosed().push_back(handle);
}

// These are gone also where ending them fails.
void Leave(DestroyWindowService, HWND window)
{
    DestroyWindowService::place.real(window);
}

void Leave(KillTimerService, HWND window, UINT_PTR id)
{
    KillTimerService::place.real(window, id);
}

void Leave(GlobalDeleteAtomService, ATOM atom)
{
    GlobalDeleteAtomService::place.real(atom);
}

void Leave(FreeDDElParamService, UINT message, LPARAM parameter)
{
    FreeDDElParamService::place.real(message, parameter);
}

void Leave(UnmapViewOfFileService, LPCVOID view)
{
    UnmapViewOfFileService::place.real(view);
}

void Leave(ReleaseDCService, HWND window, HDC context)
{
    ReleaseDCService::place.real(window, context);
}

void Leave(DeleteObjectService, HGDIOBJ object)
{
    DeleteObjectService::place.real(object);
}

void Leave(fcloseService, std::FILE* stream)
{
    fcloseService::place.real(stream);
}

void SetErrorFlag(std::FILE* stream)
{
#ifdef _WIN32
    stream->_flag |= _IOERR;
#else
    stream->_flags |= 0x20;
#endif
}

void Leave(freadService, void*, std::size_t, std::size_t, std::FILE* stream)
{
    SetErrorFlag(stream);
}

void Leave(fwriteService, const void*, std::size_t, std::size_t, std::FILE* stream)
{
    SetErrorFlag(stream);
}

template <class Service, class Result, class... Arguments>
Result Answer(Arguments... arguments)
{
    if (Services::Fails(Service::NAME, Service::TOLD)) {
        const DWORD last_error = GetLastError();
        const int number = errno;
        Leave(Service(), arguments...);
        SetLastError(last_error);
        errno = number;
        return FailureOf<Result>(Service::FAILURE);
    }
    const auto& place = Service::place;
    const Within within;
    return place.replacement ? place.replacement(arguments...) : place.real(arguments...);
}

template <class Service, class Function = typename Service::Function>
struct Wrapper;

template <class Service, class Result, class... Arguments>
struct Wrapper<Service, Result (*)(Arguments...)>
{
    static Result Call(Arguments... arguments)
    {
        return Answer<Service, Result, Arguments...>(arguments...);
    }
};

#ifdef __i386__
template <class Service, class Result, class... Arguments>
struct Wrapper<Service, Result(__stdcall*)(Arguments...)>
{
    static Result __stdcall Call(Arguments... arguments)
    {
        return Answer<Service, Result, Arguments...>(arguments...);
    }
};
#endif

#ifdef _WIN32

#define OSTRA_TEXT(text) #text
#define OSTRA_SERVICE(service_name, failure, how, symbol)                                          \
    {service_name##Service::NAME, OSTRA_TEXT(service_name),                                        \
     reinterpret_cast<void (**)()>(&service_name##Service::place.real),                            \
     reinterpret_cast<void (*)()>(&Wrapper<service_name##Service>::Call)},
const Row ROWS[] = {
#include "ServiceList.inc"
};

// One entry of the table of imports.
bool Redirect(const char* imported, ULONG_PTR& entry)
{
    for (const Row& row : ROWS) {
        if (std::strcmp(imported, row.name) != 0 && std::strcmp(imported, row.symbol) != 0)
            continue;
        if (*row.real)
            return false;
        *row.real = reinterpret_cast<void (*)()>(entry);
        DWORD before;
        VirtualProtect(&entry, sizeof(entry), PAGE_READWRITE, &before);
        entry = reinterpret_cast<ULONG_PTR>(row.own);
        VirtualProtect(&entry, sizeof(entry), before, &before);
        return true;
    }
    return false;
}

unsigned RedirectAll()
{
    unsigned count = 0;
    char* const base = reinterpret_cast<char*>(GetModuleHandleA(nullptr));
    const auto* const dos = reinterpret_cast<IMAGE_DOS_HEADER*>(base);
    const auto* const headers = reinterpret_cast<IMAGE_NT_HEADERS*>(base + dos->e_lfanew);
    const auto& directory = headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
    auto* module = reinterpret_cast<IMAGE_IMPORT_DESCRIPTOR*>(base + directory.VirtualAddress);
    for (; module->Name; ++module) {
        auto* name = reinterpret_cast<IMAGE_THUNK_DATA*>(base + module->OriginalFirstThunk);
        auto* entry = reinterpret_cast<IMAGE_THUNK_DATA*>(base + module->FirstThunk);
        for (; name->u1.AddressOfData; ++name, ++entry) {
            if (IMAGE_SNAP_BY_ORDINAL(name->u1.Ordinal))
                continue;
            auto* by_name = reinterpret_cast<IMAGE_IMPORT_BY_NAME*>(base + name->u1.AddressOfData);
            count += Redirect(reinterpret_cast<const char*>(by_name->Name),
                              reinterpret_cast<ULONG_PTR&>(entry->u1.Function));
        }
    }
    return count;
}

#else

// Sanitizers aren't up yet when the program is loaded.
#define OSTRA_UNWATCHED __attribute__((no_sanitize("address", "undefined", "thread")))

// The linker knows a service as __real_ and its caller's way as __wrap_. That one is resolved to the
// wrapper while the program is loaded.
#define OSTRA_SERVICE(service_name, failure, how, symbol)                                          \
    extern decltype(::service_name) service_name##Real asm("__real_" symbol);                      \
    extern "C" OSTRA_UNWATCHED decltype(::service_name)* Resolve_##service_name()                  \
    {                                                                                              \
        return reinterpret_cast<decltype(::service_name)*>(&Wrapper<service_name##Service>::Call); \
    }                                                                                              \
    extern decltype(::service_name) service_name##Wrapped asm("__wrap_" symbol)                    \
        __attribute__((ifunc("Resolve_" #service_name)));
#include "ServiceList.inc"
#undef OSTRA_SERVICE

#define OSTRA_SERVICE(service_name, failure, how, symbol)                                          \
    service_name##Service::place.real = service_name##Real;                                        \
    ++count;
unsigned RedirectAll()
{
    unsigned count = 0;
#include "ServiceList.inc"
    return count;
}

#endif

// Calls come as soon as the program does, and from the library's own start.
[[gnu::constructor(101)]] void RedirectFirst()
{
    Services::Count();
}
} // namespace service

unsigned Services::Count()
{
    static const unsigned count = service::RedirectAll();
    return count;
}

void Services::Arm(unsigned number, unsigned error)
{
    failed = Call();
    calls_left = number;
    error_index = error;
}

void Services::EndAt(unsigned number)
{
    calls_left = number;
    ends_process = true;
}

Services::Call Services::Disarm()
{
    calls_left = 0;
    ends_process = false;
    return failed;
}

static void EndProcess()
{
#ifdef _WIN32
    TerminateProcess(GetCurrentProcess(), Services::ENDED);
#endif
    std::_Exit(Services::ENDED);
}

bool Services::Fails(const char* name, Told told)
{
    if (within_service || calls_left == 0 || --calls_left)
        return false;
    if (ends_process)
        EndProcess();
    failed.name = name;
    failed.told = told;
    Swept::Mark(Swept::SERVICE);
    if (told == LAST_ERROR)
        SetLastError(CodeOf(told, error_index));
    else
        errno = static_cast<int>(CodeOf(told, error_index));
    return true;
}

void Services::CloseRest()
{
    const DWORD last_error = GetLastError();
    for (HANDLE handle : Unclosed())
        CloseHandle(handle);
    Unclosed().clear();
    SetLastError(last_error);
}

unsigned Services::OpenHandles()
{
#ifdef _WIN32
    DWORD count = 0;
    GetProcessHandleCount(GetCurrentProcess(), &count);
    return count;
#else
    unsigned count = 0;
    for ([[maybe_unused]] const auto& entry : std::filesystem::directory_iterator("/proc/self/fd"))
        ++count;
    return count;
#endif
}

// tests/Faults/Services.h: services that fail, and what is asked of them.
//
// The calls of the services in services.txt pass through wrappers: on Linux the linker leads them
// there, on Windows the program's table of imports does. A wrapper asks here whether the call is to
// fail; else it goes on to the service.
#pragma once

#include <windows.h>

#include <cstdio>
#include <ctime>
#include <string>

#include <io.h>
#include <sys/stat.h>

class Services
{
public:
    enum Told
    {
        LAST_ERROR,  // a failure stands in the last error
        ERROR_NUMBER // or in errno
    };
    struct Call
    {
        std::string name; // empty: no call has failed
        Told told = LAST_ERROR;
    };

    // The errors that calls fail with, in the form of each kind of service.
    static constexpr unsigned ERRORS = 4;
    static unsigned CodeOf(Told told, unsigned error)
    {
        static constexpr unsigned codes[][ERRORS] = {{5, 32, 112, 1450}, {13, 5, 28, 24}};
        return codes[told][error];
    }

    // Lets call `number`, counted from 1, fail with one of the errors; none for 0.
    static void Arm(unsigned number, unsigned error);
    // Ends the process, as a kill does, in front of call `number`; ENDED is then its status.
    static void EndAt(unsigned number);
    static constexpr int ENDED = 99;
    // All services work again. Result: the call that failed.
    static Call Disarm();
    // Services that this program reaches through wrappers.
    static unsigned Count();
    // Handles, descriptors or what the platform has of the kind, open in the process.
    static unsigned OpenHandles();
    // Closes what a failed call was to close; most callers can't know it any more.
    static void CloseRest();

    // For the wrappers: whether this call is to fail; has then told the error.
    static bool Fails(const char* name, Told told);
};

// A service: the real one, and what stands in its place, null for nothing.
template <class Function>
struct ServicePlace
{
    Function real = nullptr;
    Function replacement = nullptr;
};

// The type of a pointer to the function, which may be declared as one that throws nothing.
template <class Result, class... Arguments>
auto PlainFunction(Result (*)(Arguments...)) -> Result (*)(Arguments...);
#ifdef __i386__
template <class Result, class... Arguments>
auto PlainFunction(Result(__stdcall*)(Arguments...)) -> Result(__stdcall*)(Arguments...);
#endif

// service::<name>::place for each service, of ServicePlace.
namespace service
{
#define OSTRA_SERVICE(service_name, failure, how, symbol)                                          \
    struct service_name##Service                                                                   \
    {                                                                                              \
        using Function = decltype(PlainFunction(&::service_name));                                 \
        static constexpr char NAME[] = #service_name;                                              \
        static constexpr long long FAILURE = failure;                                              \
        static constexpr Services::Told TOLD = Services::how;                                      \
        static inline ServicePlace<Function> place;                                                \
    };
#include "ServiceList.inc"
#undef OSTRA_SERVICE
} // namespace service

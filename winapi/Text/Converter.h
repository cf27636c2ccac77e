// winapi/Text/Converter.h: a converter of ICU.
#pragma once

#include "Base/Host.h"

namespace winapi
{
// What stands for no value.
constexpr WCHAR NO_VALUE = 0xFFFF;

// Not more than one at a time on a thread.
class Converter
{
public:
    explicit Converter(const char* name) : handle(host ? host->openConverter(name) : nullptr) {}
    ~Converter()
    {
        if (handle)
            host->closeConverter(handle);
    }
    Converter(const Converter&) = delete;
    Converter& operator=(const Converter&) = delete;

    bool HasHost() const { return static_cast<bool>(host); }
    bool IsOpen() const { return handle != nullptr; }

    // The one unit that the bytes give, NO_VALUE where they give none or more.
    WCHAR ToUnit(const char* bytes, int count) { return host->toUnit(handle, bytes, count); }
    // The same for each of the 256 pairs behind a lead byte.
    void ToUnits(BYTE lead, WCHAR* units) { host->toUnits(handle, lead, units); }
    // Calls apply(place, unit, bytes, count) for each unit that has bytes, in order; false when it
    // can't be told which have.
    using Apply = void (*)(void* place, WCHAR unit, const BYTE* bytes, int count);
    bool FromUnits(void* place, Apply apply) { return host->fromUnits(handle, place, apply); }

private:
    const Host host;
    void* const handle;
};
} // namespace winapi

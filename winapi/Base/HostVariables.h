// winapi/Base/HostVariables.h: the host's environment, for the services themselves.
//
// Calls may come on several threads at once, as with the host's own they may not.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace winapi
{
// A variable's value as it stands.
std::optional<std::string> HostVariable(const char* name);

// The same without memory: copies as much of the value as fits, with a terminator. Result: whether
// there is such a variable with a value that isn't empty.
bool CopyHostVariable(const char* name, char* buffer, std::size_t room);

// All of them, as name=value.
std::vector<std::string> HostVariables();

// Sets a variable, or with a null value removes it. Result: 0 or the host's error number.
int SetHostVariable(const char* name, const char* value);

// The value of TZ as it was when it was last looked at.
class HostZone
{
public:
    // When the variable has changed since then, or nobody has looked yet, lets the host's C library
    // read it. Result: whether that was so.
    bool Follow();

private:
    enum State : char
    {
        UNKNOWN,
        UNSET,
        SET
    };
    State state = UNKNOWN;
    char value[256] = "";
};
} // namespace winapi

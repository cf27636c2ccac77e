// winapi/Base/HostVariables.cpp
#include "Base/HostVariables.h"

#include "Base/Posix.h"

#include <cstring>
#include <mutex>

namespace winapi
{
namespace
{
constinit std::mutex mutex;
}

std::optional<std::string> HostVariable(const char* name)
{
    const std::lock_guard lock(mutex);
    const char* const value = posix.getenv(name);
    return value ? std::optional<std::string>(value) : std::nullopt;
}

bool CopyHostVariable(const char* name, char* buffer, std::size_t room)
{
    const std::lock_guard lock(mutex);
    const char* const value = posix.getenv(name);
    const std::size_t length = value ? ::strnlen(value, room - 1) : 0;
    if (length)
        std::memcpy(buffer, value, length);
    buffer[length] = 0;
    return length != 0;
}

std::vector<std::string> HostVariables()
{
    const std::lock_guard lock(mutex);
    std::vector<std::string> variables;
    for (char** variable = posix.environment(); variable && *variable; ++variable)
        variables.emplace_back(*variable);
    return variables;
}

int SetHostVariable(const char* name, const char* value)
{
    const std::lock_guard lock(mutex);
    const int result = value ? posix.setenv(name, value, 1) : posix.unsetenv(name);
    return result == 0 ? 0 : errno;
}

bool HostZone::Follow()
{
    const std::lock_guard lock(mutex);
    const char* const now = posix.getenv("TZ");
    if (state == (now ? SET : UNSET) && (!now || std::strncmp(value, now, sizeof value - 1) == 0))
        return false;
    state = now ? SET : UNSET;
    if (now)
        std::strncpy(value, now, sizeof value - 1);
    posix.tzset();
    return true;
}
} // namespace winapi

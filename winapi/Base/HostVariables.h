// winapi/Base/HostVariables.h: the host's environment, for the services themselves.
#pragma once

#include <optional>
#include <string>

namespace winapi
{
// A variable's value as it stands. Safe beside SetEnvironmentVariable on another thread, as getenv
// is not.
std::optional<std::string> HostVariable(const char* name);
} // namespace winapi

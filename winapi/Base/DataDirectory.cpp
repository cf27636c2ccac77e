// winapi/Base/DataDirectory.cpp
#include "Base/DataDirectory.h"

#include "Base/HostVariables.h"
#include "Base/Posix.h"

namespace winapi
{
namespace
{
constexpr mode_t OWNER_ALONE = 0700;

// A path that isn't full counts as none, as the host's convention has it.
std::optional<std::string> FullPathIn(const char* variable)
{
    auto path = HostVariable(variable);
    return path && !path->empty() && path->front() == '/' ? path : std::nullopt;
}
} // namespace

std::optional<std::string> DataDirectory()
{
    if (const auto data = FullPathIn("XDG_DATA_HOME"))
        return *data + "/ostra-winapi";
    if (const auto home = FullPathIn("HOME"))
        return *home + "/.local/share/ostra-winapi";
    return {};
}

int MakeDirectories(const std::string& path)
{
    struct stat facts;
    if (posix.stat(path.c_str(), &facts) == 0)
        return S_ISDIR(facts.st_mode) ? 0 : ENOTDIR;
    for (std::size_t end = 0; end < path.size();) {
        end = std::min(path.find('/', end + 1), path.size());
        if (posix.mkdir(path.substr(0, end).c_str(), OWNER_ALONE) != 0 && errno != EEXIST)
            return errno;
    }
    return 0;
}
} // namespace winapi

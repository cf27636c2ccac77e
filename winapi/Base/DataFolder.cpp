// winapi/Base/DataFolder.cpp
#include "Base/DataFolder.h"

#include "Base/HostVariables.h"
#include "Base/Posix.h"
#include "Errors/Failure.h"

namespace winapi
{
namespace
{
constexpr char NAME[] = "/ostra-winapi";

bool IsDirectory(const std::string& path)
{
    struct stat facts;
    return posix.stat(path.c_str(), &facts) == 0 && S_ISDIR(facts.st_mode);
}

// Makes the folders behind the first `given` characters.
bool MakeFolders(const std::string& path, std::size_t given)
{
    if (IsDirectory(path))
        return true;
    for (std::size_t end = given; end < path.size();) {
        end = std::min(path.find('/', end + 1), path.size());
        const std::string part = path.substr(0, end);
        if (posix.mkdir(part.c_str(), 0700) != 0 && errno != EEXIST)
            return Finish(CodeOf(errno == ENOENT ? ENOTDIR : errno)) != 0;
    }
    return true;
}
} // namespace

std::optional<std::string> DataFolder(bool make)
{
    std::string path = HostVariable("XDG_DATA_HOME").value_or("");
    std::size_t given = 0;
    // One that isn't absolute is none, as its standard has it.
    if (path.empty() || path[0] != '/') {
        path = HostVariable("HOME").value_or("");
        if (path.empty() || path[0] != '/') {
            SetLastError(ERROR_PATH_NOT_FOUND);
            return std::nullopt;
        }
        given = path.size();
        path += "/.local/share";
    }
    path += NAME;
    if (make && !MakeFolders(path, given))
        return std::nullopt;
    return path;
}
} // namespace winapi

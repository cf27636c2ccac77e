// winapi/Base/DataDirectory.h: where the services keep what belongs to a user.
#pragma once

#include <optional>
#include <string>

namespace winapi
{
// "ostra-winapi" below XDG_DATA_HOME, or below ".local/share" in the home directory. Nothing when
// neither variable holds a full path. It need not exist.
std::optional<std::string> DataDirectory();

// Makes a directory of a full path with those above it, for its owner alone. Result: 0 or the
// host's error number; no error where it is there already.
int MakeDirectories(const std::string& path);
} // namespace winapi

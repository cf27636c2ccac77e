// winapi/Base/DataFolder.h: where the services keep what lasts.
#pragma once

#include <optional>
#include <string>

namespace winapi
{
// The folder of the user's data: ostra-winapi in $XDG_DATA_HOME, or else in $HOME/.local/share. Where
// it is asked for it is made (mode 0700), with what is missing above it; a missing home isn't. Nothing,
// with the last error set, if that fails: ERROR_PATH_NOT_FOUND (3) without a home.
std::optional<std::string> DataFolder(bool make);
} // namespace winapi

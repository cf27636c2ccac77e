// winapi/Files/Attributes.h: the attribute word and the times of a file.
#pragma once

#include "winapi/Files/File.h"

#include <string>

#include <sys/stat.h>

namespace winapi
{
constexpr DWORD FILE_ATTRIBUTES_HIDDEN_SYSTEM = FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM;

// No write bit for anyone. That refuses writing also where the host would let it pass, for the
// superuser.
constexpr bool IsReadOnly(mode_t mode)
{
    return (mode & 0222) == 0;
}

// The hidden and system attributes that were set on a file; none where the file system keeps none.
DWORD StoredAttributes(const char* path);
DWORD StoredAttributes(int fd);
void StoreAttributes(const char* path, DWORD attributes);
void StoreAttributes(int fd, DWORD attributes);

// The whole word; a name that begins with a point is hidden.
DWORD AttributesOf(mode_t mode, DWORD stored, std::string_view name);

// A mode with or without its write bits. Taken back they return for the owner alone.
constexpr mode_t ModeWith(mode_t mode, DWORD attributes)
{
    if ((attributes & FILE_ATTRIBUTE_READONLY) != 0)
        return mode & ~mode_t{0222} & 07777;
    return (IsReadOnly(mode) ? mode | 0200 : mode) & 07777;
}

// Facts by name or, with an empty path, of a descriptor. False with errno on failure.
constexpr unsigned FACTS = 0x0fffU; // STATX_BASIC_STATS and STATX_BTIME.
bool GetFacts(int directory, const char* path, int flags, struct statx& facts);

FILETIME ToFileTime(const struct statx_timestamp& time);
// When the file was made; where the file system doesn't know, when it was last changed at the
// latest.
FILETIME CreationTime(const struct statx& facts);
} // namespace winapi

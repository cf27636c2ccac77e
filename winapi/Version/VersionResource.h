// winapi/Version/VersionResource.h: where the version record lies in an executable file.
#pragma once

#include "winapi/Base/Types.h"

#include <cstdint>
#include <optional>

#include <sys/types.h>

namespace winapi
{
// A file whose bytes are asked for by their offsets. Nothing outside is ever read.
class CheckedFile
{
public:
    CheckedFile(int descriptor, off_t length) : fd(descriptor), size(length) {}

    bool Holds(std::uint64_t offset, std::uint64_t count) const
    {
        return offset <= std::uint64_t(size) && count <= std::uint64_t(size) - offset;
    }
    std::uint64_t RestFrom(std::uint64_t offset) const
    {
        return offset < std::uint64_t(size) ? std::uint64_t(size) - offset : 0;
    }
    // False where the file has no such bytes, or can't be read.
    bool Read(std::uint64_t offset, void* data, std::size_t count) const;

private:
    int fd;
    off_t size;
};

struct Extent
{
    std::uint64_t offset;
    DWORD size;
};

// The first version resource. Nothing where the file is none of the platform's, has none, or tells
// offsets that lead out of it.
std::optional<Extent> FindVersionRecord(const CheckedFile& file);
} // namespace winapi

// winapi/Profile/ProfileFile.h: the file of a profile: where it lies, how it is read and replaced.
#pragma once

#include "Files/Names.h"

#include <functional>
#include <optional>
#include <string>

namespace winapi
{
// What a profile's file consists of, by the mark that it begins with.
enum class ProfileMark
{
    NONE, // bytes of the ANSI code page
    UTF8,
    UTF16,
    UTF16_SWAPPED, // the high byte first
};

// The text of a file: bytes, or units in the order of this machine.
struct ProfileContents
{
    explicit ProfileContents(const std::string& file);

    bool IsWide() const { return mark == ProfileMark::UTF16 || mark == ProfileMark::UTF16_SWAPPED; }
    // The code page of the bytes.
    UINT Page() const;
    // The file, mark and all.
    std::string File() const;

    ProfileMark mark;
    std::string bytes;
    WideText units;
};

// The path of a profile's file. Nothing, with the last error set, when the name can't be one. For
// one that is to be written the Windows directory is made where the file lies there.
std::optional<std::string> ProfilePath(LPCWSTR name, bool toWrite);

// Reads the file as it is at one moment. Result: 0 or the code of the failure.
DWORD ReadProfile(const std::string& path, std::string& file);

// Replaces the file by what the call makes of it, unless that is nothing. Nobody else does so
// meanwhile. A file that isn't there is made, if it may be. Result: 0 or the code of the failure.
using Rewriting = std::function<std::optional<std::string>(const std::string& file)>;
DWORD RewriteProfile(const std::string& path, bool mayCreate, const Rewriting& rewrite);
} // namespace winapi

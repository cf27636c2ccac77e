// fuzz/Support/Folder.h: where targets keep files while they run.
#pragma once

#include <filesystem>
#include <string>

// A folder of this process, in memory where the system has such a place; it goes when the process
// ends.
const std::filesystem::path& Folder();

// The path of a file in it.
inline std::string PathOf(const char* name)
{
    return (Folder() / name).string();
}

std::string ReadBytes(const std::filesystem::path& path);
void WriteBytes(const std::filesystem::path& path, const std::string& bytes);

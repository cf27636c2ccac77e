// tests/Support/Directory.cpp
#include "Support/Directory.h"

#include <cctype>
#include <chrono>
#include <cstdlib>
#include <fstream>
#include <random>

namespace fs = std::filesystem;

DirectoryListener::DirectoryListener() : home(fs::current_path())
{
    std::random_device random;
    do
        root = fs::temp_directory_path() / ("ostra-test-" + std::to_string(random()));
    while (!fs::create_directories(root));
#ifndef _WIN32
    // What the processes of the user share while they run: looked at once a process.
    const fs::path session = root / "session";
    fs::create_directories(session);
    setenv("XDG_RUNTIME_DIR", session.c_str(), 1);
#endif
}

void DirectoryListener::OnTestStart(const testing::TestInfo&)
{
    const fs::path directory = root / std::to_string(++number);
    fs::create_directories(directory);
    fs::current_path(directory);
#ifndef _WIN32
    // What the services keep for the user.
    setenv("XDG_DATA_HOME", (root / ("data" + std::to_string(number))).c_str(), 1);
#endif
}

void DirectoryListener::OnTestEnd(const testing::TestInfo&)
{
    std::error_code ignored;
    fs::current_path(home);
    fs::remove_all(root / std::to_string(number), ignored);
    fs::remove_all(root / ("data" + std::to_string(number)), ignored);
}

void DirectoryListener::OnTestProgramEnd(const testing::UnitTest&)
{
    std::error_code ignored;
    fs::remove_all(root, ignored);
}

std::string ReadBytes(const fs::path& path)
{
    std::ifstream file(path, std::ios::binary);
    EXPECT_TRUE(file.is_open()) << path;
    // By pieces: an iterator takes a call a byte where the tests aren't optimized.
    std::string bytes;
    for (char piece[0x4000]; file.read(piece, sizeof(piece)), file.gcount() > 0;)
        bytes.append(piece, static_cast<std::size_t>(file.gcount()));
    return bytes;
}

void WriteBytes(const fs::path& path, const std::string& bytes)
{
    std::ofstream file(path, std::ios::binary);
    file << bytes;
    file.close();
    EXPECT_TRUE(file.good()) << path;
}

std::string Hex(const std::string& text)
{
    std::string bytes;
    std::string digits;
    bool comment = false;
    for (char c : text) {
        if (c == '#')
            comment = true;
        else if (c == '\n')
            comment = false;
        if (comment || !std::isxdigit(static_cast<unsigned char>(c)))
            continue;
        digits += c;
        if (digits.size() == 2) {
            bytes += static_cast<char>(std::stoi(digits, nullptr, 16));
            digits.clear();
        }
    }
    EXPECT_TRUE(digits.empty()) << "half a byte at the end";
    return bytes;
}

std::string DataFile(const std::string& name)
{
    return Hex(ReadBytes(fs::path(OSTRA_TEST_DATA) / name));
}

unsigned Seed(unsigned fallback)
{
    const char* seed = std::getenv("OSTRA_SEED");
    return seed ? static_cast<unsigned>(std::strtoul(seed, nullptr, 10)) : fallback;
}

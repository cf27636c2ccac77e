// tests/Support/Directory.h: each test runs in an empty directory of its own, and on Linux with an
// empty registry of its own.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

// Makes an empty directory the current one before each test, and removes it afterwards.
class DirectoryListener : public testing::EmptyTestEventListener
{
public:
    DirectoryListener();
    void OnTestStart(const testing::TestInfo&) override;
    void OnTestEnd(const testing::TestInfo&) override;
    void OnTestProgramEnd(const testing::UnitTest&) override;

private:
    std::filesystem::path root;
    std::filesystem::path home;
    unsigned number = 0;
};

// A whole file as bytes, and back. Both fail the test when they can't.
std::string ReadBytes(const std::filesystem::path& path);
void WriteBytes(const std::filesystem::path& path, const std::string& bytes);

// The bytes of an annotated hex text: pairs of hex digits; "#" starts a comment that runs to the
// line's end.
std::string Hex(const std::string& text);

// The hex file of that name in tests/Data.
std::string DataFile(const std::string& name);

// Seed of random tests: the variable OSTRA_SEED, else the fixed default. A test prints it when it
// fails.
unsigned Seed(unsigned fallback);

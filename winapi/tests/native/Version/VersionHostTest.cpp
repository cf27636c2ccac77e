// winapi/tests/native/Version/VersionHostTest.cpp: version records on this host: files for 16 bits, files that lie.
#include "../../Support/Calls.h"
#include "../../Support/Replace.h"

#include "Support/Directory.h"
#include "Support/VersionFiles.h"
#include "Version/VersionResource.h"

#include <random>

#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

namespace
{
const Pairs PAIRS = {{"Comments", "text"}, {"ProductName", "name"}};

DWORD SizeOf(const char* name)
{
    DWORD handle = 77;
    return GetFileVersionInfoSizeA(name, &handle);
}

DWORD SizeOfFile(const std::string& bytes)
{
    WriteBytes("a.dll", bytes);
    return SizeOf("./a.dll");
}

std::string Put(std::string bytes, std::size_t offset, const std::string& put)
{
    return bytes.replace(offset, put.size(), put);
}

ssize_t ThreeBytes(int fd, void* data, size_t size, off_t offset)
{
    return pread(fd, data, std::min<size_t>(size, 3), offset);
}

ssize_t NoBytes(int, void*, size_t, off_t)
{
    errno = EIO;
    return -1;
}

unsigned readings;
ssize_t Counted(int fd, void* data, size_t size, off_t offset)
{
    ++readings;
    return pread(fd, data, size, offset);
}

// A file in memory: many can be looked at in a short time.
class MemoryFile
{
public:
    MemoryFile() : fd(memfd_create("version", 0)) {}
    ~MemoryFile() { close(fd); }

    // True if there is a record, which lies within the bytes.
    bool HasRecord(const std::string& bytes) const
    {
        EXPECT_EQ(ftruncate(fd, static_cast<off_t>(bytes.size())), 0);
        EXPECT_EQ(pwrite(fd, bytes.data(), bytes.size(), 0), static_cast<ssize_t>(bytes.size()));
        const winapi::CheckedFile file(fd, static_cast<off_t>(bytes.size()));
        const auto record = winapi::FindVersionRecord(file);
        EXPECT_TRUE(!record || (record->size != 0 && file.Holds(record->offset, record->size)));
        return record.has_value();
    }

private:
    const int fd;
};
} // namespace

TEST(VersionHost, FilesFor16BitsGiveTheirRecord)
{
    const std::string record = SimpleRecord(Layout::NARROW, PAIRS);
    const std::string stored = Padded(record, 16);
    EXPECT_EQ(SizeOfFile(SegmentedFile(record)), 2 * stored.size() + 4);
    std::string data(2 * stored.size() + 4, '\xEE');
    EXPECT_TRUE(GetFileVersionInfoA("./a.dll", 0, static_cast<DWORD>(data.size()), data.data()));
    EXPECT_EQ(data, stored + "FE2X" + std::string(stored.size(), '\0'));
}

TEST(VersionHost, TheTypesOfAFileFor16BitsEndWhereItsOffsetsDo)
{
    // Types without resources, from the first one to the end of the file.
    constexpr std::size_t FIRST_TYPE = 0x40 + 0x40 + 2;
    std::string file = SegmentedFile(SimpleRecord(Layout::NARROW, PAIRS));
    file.resize(FIRST_TYPE);
    while (file.size() < 4'000'000)
        file += Word(1) + Word(0) + Long(0);
    WriteBytes("a.dll", file);
    readings = 0;
    const Replace reading(posix.pread, Counted);
    EXPECT_EQ(SizeOf("./a.dll"), 0U);
    EXPECT_EQ(GetLastError(), DWORD(ERROR_RESOURCE_DATA_NOT_FOUND));
    EXPECT_LT(readings, 0x10000 / 8 + 10U);
}

TEST(VersionHost, NamesAreAskedAsTheyStand)
{
    RunRows({
        CALL(SizeOf(""), 0, ERROR_BAD_PATHNAME),
        CALL(SizeOf(nullptr), 0, ERROR_BAD_PATHNAME),
        CALL(SizeOf("/dev/zero"), 0, ERROR_ACCESS_DENIED),
    });
    mkfifo("pipe", 0600);
    EXPECT_EQ(SizeOf("pipe"), 0U);
    WriteBytes("\xE4\xB8\xAD\xF0\x9F\x98\x80.dll", PortableFile(SimpleRecord(Layout::WIDE, PAIRS)));
    EXPECT_NE(GetFileVersionInfoSizeW(Wide(u"\u4E2D\U0001F600.dll").c_str(), nullptr), 0U);
    symlink("\xE4\xB8\xAD\xF0\x9F\x98\x80.dll", "link.dll");
    EXPECT_NE(SizeOf("link.dll"), 0U);
}

TEST(VersionHost, ShortReadsGoOnAndFailuresHaveNoRecord)
{
    const std::string file = PortableFile(SimpleRecord(Layout::WIDE, PAIRS));
    const DWORD size = SizeOfFile(file);
    {
        const Replace reading(posix.pread, ThreeBytes);
        EXPECT_EQ(SizeOf("./a.dll"), size);
    }
    const Replace reading(posix.pread, NoBytes);
    EXPECT_EQ(SizeOf("./a.dll"), 0U);
    EXPECT_EQ(GetLastError(), DWORD(ERROR_RESOURCE_DATA_NOT_FOUND));
}

TEST(VersionHost, OffsetsThatLeadOutOfTheFileHaveNoRecord)
{
    const std::string record = SimpleRecord(Layout::WIDE, PAIRS);
    const std::string file = PortableFile(record);
    constexpr std::size_t SECTION = PE_HEADER + 24 + 0xE0;
    const struct
    {
        const char* what;
        std::size_t offset;
        std::string bytes;
    } rows[] = {
        {"header", 60, Long(0xFFFFFFF0)},
        {"signature", PE_HEADER, "LE"},
        {"sections", PE_HEADER + 6, Word(0xFFFF)},
        {"no sections", PE_HEADER + 6, Word(0)},
        {"size of the optional header", PE_HEADER + 20, Word(0xFFFF)},
        {"no optional header", PE_HEADER + 20, Word(0)},
        {"its kind", PE_HEADER + 24, Word(0x107)},
        {"directories", PE_HEADER + 24 + 92, Long(2)},
        {"no resources", PE_HEADER + 24 + 112, Long(0)},
        {"address of the resources", PE_HEADER + 24 + 112, Long(0xFFFFFFFF)},
        {"address of the section", SECTION + 12, Long(0x1004)},
        {"size of the section", SECTION + 16, Long(0x20)},
        {"place of the section", SECTION + 20, Long(0xFFFFFFFF)},
        {"types", PE_RESOURCES + 14, Word(0)},
        {"names before the types", PE_RESOURCES + 12, Word(0xFFFF)},
        {"type's place", PE_RESOURCES + 20, Long(0xFFFFFFFF)},
        {"type is data", PE_RESOURCES + 20, Long(0x18)},
        {"name's place", PE_RESOURCES + 0x18 + 20, Long(0x80FFFFFF)},
        {"language is a directory", PE_RESOURCES + 0x30 + 20, Long(0x80000048)},
        {"language's place", PE_RESOURCES + 0x30 + 20, Long(0x7FFFFFF0)},
        {"record's address", PE_RESOURCES + 0x48, Long(0x10)},
        {"record's size", PE_RESOURCES + 0x4C, Long(0x7FFFFFFF)},
        {"a larger size", PE_RESOURCES + 0x4C, Long(0xFFFFFFFF)},
        {"no size", PE_RESOURCES + 0x4C, Long(0)},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(SizeOfFile(Put(file, row.offset, row.bytes)), 0U) << row.what;
        EXPECT_EQ(GetLastError(), DWORD(ERROR_RESOURCE_DATA_NOT_FOUND)) << row.what;
    }
    const std::string segmented = SegmentedFile(SimpleRecord(Layout::NARROW, PAIRS));
    const struct
    {
        const char* what;
        std::size_t offset;
        std::string bytes;
    } more[] = {
        {"no table", 0x40 + 0x26, Word(0x40)},
        {"table", 0x40 + 0x24, Word(0xFFFF)},
        {"shift", 0x80, Word(16)},
        {"type", 0x82, Word(0x8009)},
        {"count", 0x84, Word(0)},
        {"offset", 0x8A, Word(0xFFFF)},
        {"length", 0x8C, Word(0xFFFF)},
        {"no length", 0x8C, Word(0)},
    };
    for (const auto& row : more)
        EXPECT_EQ(SizeOfFile(Put(segmented, row.offset, row.bytes)), 0U) << row.what;
}

TEST(VersionHost, EveryCutFileIsReadWithinItsBytes)
{
    const MemoryFile memory;
    for (const std::string& file : {PortableFile(SimpleRecord(Layout::WIDE, PAIRS)),
                                    PortableFile(SimpleRecord(Layout::WIDE, PAIRS), true),
                                    SegmentedFile(SimpleRecord(Layout::NARROW, PAIRS))}) {
        EXPECT_TRUE(memory.HasRecord(file));
        for (std::size_t size = 0; size < file.size(); ++size)
            memory.HasRecord(file.substr(0, size));
    }
}

TEST(VersionHost, ChangedFilesAreReadWithinTheirBytes)
{
    std::mt19937 random(Seed(20262));
    const MemoryFile memory;
    const std::string files[] = {PortableFile(SimpleRecord(Layout::WIDE, PAIRS)),
                                 PortableFile(SimpleRecord(Layout::WIDE, PAIRS), true),
                                 SegmentedFile(SimpleRecord(Layout::NARROW, PAIRS))};
    const std::string numbers[] = {Long(0),          Long(1),          Long(0xFFFFFFFF),
                                   Long(0x80000000), Long(0x7FFFFFFF), Word(0xFFFF),
                                   Word(0x8000)};
    unsigned found = 0;
    constexpr unsigned RUNS = 20'000;
    for (unsigned run = 0; run < RUNS; ++run) {
        std::string file = files[random() % 3];
        for (unsigned count = 1 + random() % 4; count != 0; --count) {
            // Mostly where it counts.
            const std::size_t end = random() % 4 ? 0x260 : file.size();
            const std::size_t at = random() % (std::min(end, file.size()) - 4);
            if (random() % 2)
                file = Put(file, at, numbers[random() % std::size(numbers)]);
            else
                file[at] = static_cast<char>(random());
        }
        found += memory.HasRecord(file);
    }
    EXPECT_GT(found, RUNS / 10);
    EXPECT_LT(found, RUNS - RUNS / 50);
}

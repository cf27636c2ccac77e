// winapi/Version/VersionResource.cpp
//
// The files' own tables tell where everything lies, and none of it is believed: each offset and
// each count is asked of the file itself. Tables are read at once, so their size is bounded by that
// of the file; the depth of the directories is fixed; so the search ends, whatever stands there.
#include "Version/VersionResource.h"

#include "Base/Posix.h"

#include <algorithm>
#include <climits>
#include <vector>

namespace winapi
{
namespace
{
constexpr unsigned VERSION_TYPE = 16;
constexpr DWORD LARGEST_RECORD = (INT_MAX - 4) / 2;

// Little-endian numbers at a place of bytes that were read.
unsigned Word(const BYTE* bytes)
{
    return bytes[0] | unsigned(bytes[1]) << 8;
}
DWORD Long(const BYTE* bytes)
{
    return Word(bytes) | DWORD(Word(bytes + 2)) << 16;
}

template <std::size_t Size>
struct Bytes
{
    bool From(const CheckedFile& file, std::uint64_t offset)
    {
        return file.Read(offset, bytes, Size);
    }
    BYTE bytes[Size];
};

bool ReadTable(const CheckedFile& file, std::uint64_t offset, std::size_t count,
               std::vector<BYTE>& table)
{
    if (!file.Holds(offset, count))
        return false;
    table.resize(count);
    return file.Read(offset, table.data(), count);
}

// ---- Files of 32 and 64 bits --------------------------------------------------------------------

constexpr unsigned SECTION_SIZE = 40;
constexpr unsigned ENTRY_SIZE = 8;
constexpr DWORD HIGH_BIT = 0x80000000;

class PortableFile
{
public:
    explicit PortableFile(const CheckedFile& whole) : file(whole) {}

    std::optional<Extent> Find(std::uint64_t header)
    {
        DWORD at;
        if (!ReadHeader(header) || !FindType(at) || !FirstEntry(at) || !FirstEntry(at))
            return {};
        Bytes<16> entry;
        if ((at & HIGH_BIT) != 0 || !InResources(at, 16) || !entry.From(file, resources + at))
            return {};
        const DWORD size = Long(entry.bytes + 4);
        std::uint64_t room = 0;
        const auto offset = Place(Long(entry.bytes), room);
        if (!offset || size == 0 || size > room || size > LARGEST_RECORD)
            return {};
        return Extent{*offset, size};
    }

private:
    bool ReadHeader(std::uint64_t header)
    {
        Bytes<26> start; // signature, file header, and the kind of what follows
        if (!start.From(file, header))
            return false;
        const unsigned optionalSize = Word(start.bytes + 20);
        const unsigned kind = Word(start.bytes + 24);
        const unsigned directories = kind == 0x20B ? 112 : kind == 0x10B ? 96 : UINT_MAX;
        if (directories > optionalSize || optionalSize - directories < 3 * ENTRY_SIZE)
            return false;
        Bytes<28> table; // its count, and what leads to the first three
        const std::uint64_t optional = header + 24;
        return table.From(file, optional + directories - 4) && Long(table.bytes) >= 3 &&
               ReadTable(file, optional + optionalSize, Word(start.bytes + 6) * SECTION_SIZE,
                         sections) &&
               FindResources(Long(table.bytes + 20));
    }

    bool FindResources(DWORD address)
    {
        const auto offset = Place(address, resourceRoom);
        resources = offset.value_or(0);
        return offset && address != 0;
    }

    // Where in the file lies what is loaded to an address, and how much of it from there on.
    std::optional<std::uint64_t> Place(DWORD address, std::uint64_t& room) const
    {
        for (std::size_t i = 0; i < sections.size(); i += SECTION_SIZE) {
            const BYTE* const section = sections.data() + i;
            const DWORD start = Long(section + 12);
            const DWORD size = Long(section + 16);
            if (address < start || address - start >= size)
                continue;
            // The last section may tell more than the file holds.
            const std::uint64_t offset = std::uint64_t{Long(section + 20)} + (address - start);
            room = std::min<std::uint64_t>(size - (address - start), file.RestFrom(offset));
            return room ? std::optional(offset) : std::nullopt;
        }
        return {};
    }

    bool InResources(std::uint64_t at, std::uint64_t count) const
    {
        return at <= resourceRoom && count <= resourceRoom - at;
    }

    // The numbers of entries with names and with ids in a directory.
    bool ReadDirectory(DWORD at, unsigned& named, unsigned& numbered) const
    {
        Bytes<16> directory;
        if (!InResources(at, 16) || !directory.From(file, resources + at))
            return false;
        named = Word(directory.bytes + 12);
        numbered = Word(directory.bytes + 14);
        return true;
    }

    // The directory of the version records.
    bool FindType(DWORD& at) const
    {
        unsigned named;
        unsigned numbered;
        std::vector<BYTE> entries;
        if (!ReadDirectory(0, named, numbered) ||
            !ReadTable(file, resources + 16 + std::uint64_t{named} * ENTRY_SIZE,
                       std::size_t{numbered} * ENTRY_SIZE, entries))
            return false;
        for (std::size_t i = 0; i < entries.size(); i += ENTRY_SIZE)
            if (Long(entries.data() + i) == VERSION_TYPE) {
                at = Long(entries.data() + i + 4);
                return true;
            }
        return false;
    }

    // From a directory to what its first entry leads to.
    bool FirstEntry(DWORD& at) const
    {
        unsigned named;
        unsigned numbered;
        Bytes<ENTRY_SIZE> entry;
        const DWORD directory = at & ~HIGH_BIT;
        if ((at & HIGH_BIT) == 0 || !ReadDirectory(directory, named, numbered) ||
            named + numbered == 0 || !InResources(directory + 16, ENTRY_SIZE) ||
            !entry.From(file, resources + directory + 16))
            return false;
        at = Long(entry.bytes + 4);
        return true;
    }

    const CheckedFile& file;
    std::vector<BYTE> sections;
    std::uint64_t resources = 0;
    std::uint64_t resourceRoom = 0;
};

// ---- Files of 16 bits ---------------------------------------------------------------------------

// As far from the header as an offset of 16 bits leads, which the tables' ends have.
constexpr std::uint64_t TABLES_ROOM = 0x10000;

// The table is a shift for its offsets and lengths, and types with their resources behind each.
std::optional<Extent> FindInSegmented(const CheckedFile& file, std::uint64_t header)
{
    Bytes<4> tables; // offsets of the resources' table and of the one behind it
    Bytes<2> shift;
    if (!tables.From(file, header + 0x24) || Word(tables.bytes) == Word(tables.bytes + 2) ||
        !shift.From(file, header + Word(tables.bytes)) || Word(shift.bytes) > 15)
        return {};
    std::uint64_t at = header + Word(tables.bytes) + 2;
    for (Bytes<12> type; at - header < TABLES_ROOM && type.From(file, at) && Word(type.bytes) != 0;
         at += 8 + 12 * Word(type.bytes + 2)) {
        if (Word(type.bytes) != (0x8000 | VERSION_TYPE) || Word(type.bytes + 2) == 0)
            continue;
        const Extent record = {std::uint64_t{Word(type.bytes + 8)} << Word(shift.bytes),
                               DWORD(Word(type.bytes + 10)) << Word(shift.bytes)};
        const bool whole = record.size != 0 && record.size <= LARGEST_RECORD &&
                           file.Holds(record.offset, record.size);
        return whole ? std::optional(record) : std::nullopt;
    }
    return {};
}
} // namespace

bool CheckedFile::Read(std::uint64_t offset, void* data, std::size_t count) const
{
    if (!Holds(offset, count))
        return false;
    for (std::size_t done = 0; done < count;) {
        const ssize_t part = Retried([&] {
            return posix.pread(fd, static_cast<char*>(data) + done, count - done,
                               static_cast<off_t>(offset + done));
        });
        if (part <= 0)
            return false;
        done += static_cast<std::size_t>(part);
    }
    return true;
}

std::optional<Extent> FindVersionRecord(const CheckedFile& file)
{
    Bytes<64> start;
    Bytes<4> signature;
    if (!start.From(file, 0) || start.bytes[0] != 'M' || start.bytes[1] != 'Z')
        return {};
    const DWORD header = Long(start.bytes + 60);
    if (!signature.From(file, header))
        return {};
    if (Long(signature.bytes) == 0x4550) // "PE" and two zeros
        return PortableFile(file).Find(header);
    if (Word(signature.bytes) == 0x454E) // "NE"
        return FindInSegmented(file, header);
    return {};
}
} // namespace winapi

// winapi/Fonts/SfntFacts.cpp
#include "Fonts/SfntFacts.h"

#include "Base/Posix.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <cstdint>
#include <iterator>

namespace winapi
{
namespace
{
constexpr std::uint32_t Tag(const char (&name)[5])
{
    return static_cast<std::uint32_t>(name[0]) << 24 | static_cast<std::uint32_t>(name[1]) << 16 |
           static_cast<std::uint32_t>(name[2]) << 8 | static_cast<std::uint32_t>(name[3]);
}

constexpr std::uint32_t TRUETYPE = 0x00010000;
constexpr unsigned MOST_TABLES = 64;
constexpr unsigned ENTRY = 16;          // of the directory, in bytes
constexpr int INSTANCES = 0x10000;      // indexes from there on are those of variable fonts
constexpr unsigned NO_VERSION = 0xFFFF; // of OS/2: FreeType takes the table for none

// Numbers of a file, the high byte first.
class Bytes
{
public:
    unsigned U16(unsigned at) const { return static_cast<unsigned>(data[at] << 8 | data[at + 1]); }
    int S16(unsigned at) const { return static_cast<std::int16_t>(U16(at)); }
    std::uint32_t U32(unsigned at) const { return U16(at) << 16 | U16(at + 2); }

    unsigned char data[MOST_TABLES * ENTRY] = {};
};

class SfntFile
{
public:
    explicit SfntFile(const char* name) : descriptor(posix.open(name, O_RDONLY | O_CLOEXEC, 0))
    {
        struct stat facts;
        if (descriptor && posix.fstat(descriptor.Get(), &facts) == 0 && S_ISREG(facts.st_mode))
            size = facts.st_size;
    }

    bool Open(int index);
    bool HasOutlines() const { return Has("glyf") || Has("CFF ") || Has("CFF2"); }
    bool Has(const char (&name)[5]) const { return Find(Tag(name)) >= 0; }
    // The first bytes of a table, which has to have as many.
    bool Read(const char (&name)[5], unsigned count, Bytes* bytes) const;

private:
    bool ReadAt(std::int64_t place, unsigned count, Bytes* bytes) const;
    int Find(std::uint32_t tag) const;

    Descriptor descriptor;
    std::int64_t size = 0;
    Bytes directory;
    unsigned tables = 0;
};

bool SfntFile::ReadAt(std::int64_t place, unsigned count, Bytes* bytes) const
{
    if (place + count > size)
        return false;
    const auto got = Retried([&] {
        return posix.pread(descriptor.Get(), bytes->data, count, static_cast<off_t>(place));
    });
    return got == static_cast<ssize_t>(count);
}

// Reads the directory of a file's only face, or of one of a collection.
bool SfntFile::Open(int index)
{
    constexpr unsigned headerSize = 12;
    Bytes header;
    std::int64_t place = 0;
    if (index < 0 || index >= INSTANCES || !ReadAt(0, headerSize, &header))
        return false;
    if (header.U32(0) == Tag("ttcf")) {
        Bytes offset;
        if (static_cast<unsigned>(index) >= header.U32(8) ||
            !ReadAt(headerSize + 4 * static_cast<std::int64_t>(index), 4, &offset))
            return false;
        place = offset.U32(0);
        if (!ReadAt(place, headerSize, &header))
            return false;
    } else if (index > 0) {
        return false;
    }
    const std::uint32_t kind = header.U32(0);
    tables = header.U16(4);
    return (kind == TRUETYPE || kind == Tag("OTTO") || kind == Tag("true")) &&
           tables <= MOST_TABLES && ReadAt(place + headerSize, tables * ENTRY, &directory);
}

// The first entry of a table that isn't empty and lies within the file; below 0 for none.
int SfntFile::Find(std::uint32_t tag) const
{
    for (unsigned n = 0; n < tables * ENTRY; n += ENTRY) {
        const std::int64_t offset = directory.U32(n + 8);
        const std::int64_t length = directory.U32(n + 12);
        if (directory.U32(n) == tag && length && offset + length <= size)
            return static_cast<int>(n);
    }
    return -1;
}

bool SfntFile::Read(const char (&name)[5], unsigned count, Bytes* bytes) const
{
    const int entry = Find(Tag(name));
    if (entry < 0)
        return false;
    const unsigned place = directory.U32(static_cast<unsigned>(entry) + 8);
    const unsigned length = directory.U32(static_cast<unsigned>(entry) + 12);
    return length >= count && ReadAt(place, count, bytes);
}

bool TakeLines(const SfntFile& file, FaceFacts* facts)
{
    Bytes head;
    Bytes hhea;
    if (!file.Read("head", 54, &head) || !file.Read("hhea", 36, &hhea))
        return false;
    facts->unitsPerEm = static_cast<int>(head.U16(18));
    facts->maximumWidth = head.S16(40) - head.S16(36);
    facts->ascender = hhea.S16(4);
    facts->descender = hhea.S16(6);
    facts->lineGap = hhea.S16(8);
    return facts->unitsPerEm > 0;
}

bool TakeFixed(const SfntFile& file, FaceFacts* facts)
{
    Bytes post;
    if (!file.Has("post"))
        return true;
    if (!file.Read("post", 32, &post))
        return false;
    facts->fixed = post.U32(12) != 0;
    return true;
}

bool TakeWindowsFacts(const SfntFile& file, FaceFacts* facts)
{
    constexpr unsigned firstSize = 78; // of the table's first version
    constexpr unsigned pagesSize = 8;  // which the others have behind it
    Bytes os2;
    if (!file.Read("OS/2", firstSize, &os2) || os2.U16(0) == NO_VERSION ||
        (os2.U16(0) > 0 && !file.Read("OS/2", firstSize + pagesSize, &os2)))
        return false;
    facts->averageWidth = os2.S16(2);
    for (unsigned n = 0; n < std::size(facts->unicodeRanges); ++n)
        facts->unicodeRanges[n] = os2.U32(42 + 4 * n);
    facts->winAscent = static_cast<int>(os2.U16(74));
    facts->winDescent = static_cast<int>(os2.U16(76));
    // Nothing was read behind a first version.
    facts->codePages[0] = os2.U32(firstSize);
    facts->codePages[1] = os2.U32(firstSize + 4);
    TakePanose(os2.data + 32, *facts);
    return true;
}
} // namespace

bool ReadSfntFacts(const char* name, int index, FaceFacts* facts)
{
    SfntFile file(name);
    *facts = {};
    return file.Open(index) && file.HasOutlines() && file.Has("maxp") && TakeLines(file, facts) &&
           TakeFixed(file, facts) && TakeWindowsFacts(file, facts) &&
           facts->winAscent + facts->winDescent > 0;
}
} // namespace winapi

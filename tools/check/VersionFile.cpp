// tools/check/VersionFile.cpp: finds the version record of an executable file.
#include "VersionCheck.h"

namespace
{
struct Outside
{};

// The file's numbers; asking for what it doesn't have ends the search.
class Reader
{
public:
    explicit Reader(const std::string& whole) : file(whole) {}

    std::string Record() const
    {
        if (Text(0, 2) != "MZ")
            return {};
        const std::uint64_t header = Long(60);
        if (Text(header, 2) == "NE")
            return Segmented(header);
        return Text(header, 4) == std::string("PE\0\0", 4) ? Portable(header) : "";
    }

private:
    std::string Text(std::uint64_t at, std::uint64_t count) const
    {
        if (at > file.size() || count > file.size() - at)
            throw Outside();
        return file.substr(at, count);
    }
    std::uint64_t Word(std::uint64_t at) const
    {
        const std::string text = Text(at, 2);
        return static_cast<unsigned char>(text[0]) | static_cast<unsigned char>(text[1]) << 8;
    }
    std::uint64_t Long(std::uint64_t at) const { return Word(at) | Word(at + 2) << 16; }

    std::string Segmented(std::uint64_t header) const
    {
        const std::uint64_t table = header + Word(header + 0x24);
        const std::uint64_t shift = Word(table);
        if (Word(header + 0x24) == Word(header + 0x26) || shift > 15)
            return {};
        for (std::uint64_t at = table + 2; Word(at) != 0; at += 8 + 12 * Word(at + 2))
            if (Word(at) == 0x8010 && Word(at + 2) != 0)
                return Text(Word(at + 8) << shift, Word(at + 10) << shift);
        return {};
    }

    std::string Portable(std::uint64_t header) const
    {
        const std::uint64_t optional = header + 24;
        const std::uint64_t directories = optional + (Word(optional) == 0x20B ? 112 : 96);
        const std::uint64_t sections = optional + Word(header + 20);
        if (sections < directories + 24 || Long(directories - 4) < 3 || !Long(directories + 16))
            return {};
        const std::uint64_t count = Word(header + 6);
        const auto place = [&](std::uint64_t address, std::uint64_t size) {
            for (std::uint64_t at = sections; at < sections + 40 * count; at += 40) {
                const std::uint64_t start = Long(at + 12);
                if (address >= start && address + size <= start + Long(at + 16))
                    return Long(at + 20) + address - start;
            }
            throw Outside();
        };
        const std::uint64_t address = Long(directories + 16);
        const std::uint64_t base = place(address, 16);
        std::uint64_t at = base;
        for (int level = 0; level < 3; ++level)
            at = base + Next(at, level);
        return Text(place(Long(at), Long(at + 4)), Long(at + 4));
    }

    // The entry of a directory that leads on: that of the version records, then the first ones.
    std::uint64_t Next(std::uint64_t directory, int level) const
    {
        const std::uint64_t named = Word(directory + 12);
        const std::uint64_t all = named + Word(directory + 14);
        for (std::uint64_t n = level == 0 ? named : 0; n < all; ++n) {
            const std::uint64_t entry = directory + 16 + 8 * n;
            if (level == 0 && Long(entry) != 16)
                continue;
            const std::uint64_t to = Long(entry + 4);
            if ((to >= 0x80000000) == (level < 2))
                return to & 0x7FFFFFFF;
            break;
        }
        throw Outside();
    }

    const std::string& file;
};
} // namespace

std::string FindVersionRecord(const std::string& file)
{
    try {
        return Reader(file).Record();
    } catch (const Outside&) {
        return {};
    }
}

// tools/check/VersionCheck.cpp
#include "VersionCheck.h"

#include <cstdio>

namespace
{
constexpr std::uint64_t FIXED_PART = 52;
constexpr char RECORD_KEY[] = "VS_VERSION_INFO";

class Checker
{
public:
    Checker(const unsigned char* data, std::size_t count) : bytes(data), length(count) {}

    VersionVerdict Run()
    {
        verdict.sound = Record();
        return verdict;
    }

private:
    bool Broken(std::uint64_t offset, const char* rule)
    {
        verdict.offset = offset;
        verdict.rule = rule;
        return false;
    }

    std::uint64_t Word(std::uint64_t at) const { return bytes[at] | bytes[at + 1] << 8; }
    std::uint64_t Unit(std::uint64_t at) const { return narrow ? bytes[at] : Word(at); }
    std::uint64_t UnitSize() const { return narrow ? 1 : 2; }
    std::uint64_t Header() const { return narrow ? 4 : 6; }
    static std::uint64_t Pad(std::uint64_t at, std::uint64_t base)
    {
        return base + (at - base + 3) / 4 * 4;
    }

    bool Is(std::uint64_t at, const char* text, std::uint64_t end) const
    {
        for (; at + UnitSize() <= end; ++text, at += UnitSize()) {
            if (Unit(at) != static_cast<unsigned char>(*text))
                return false;
            if (!*text)
                return true;
        }
        return false;
    }

    // Moves behind a text and its terminator, which come before the end.
    bool Skip(std::uint64_t& at, std::uint64_t end) const
    {
        for (; at + UnitSize() <= end; at += UnitSize())
            if (Unit(at) == 0) {
                at += UnitSize();
                return true;
            }
        return false;
    }

    // The head of a node: its end, and the place behind its key, on a multiple of 4 from a base.
    bool Node(std::uint64_t at, std::uint64_t outer, std::uint64_t base, std::uint64_t& end,
              std::uint64_t& behind)
    {
        if (at + Header() > outer)
            return Broken(at, "a node runs past the end of what holds it");
        end = at + Word(at);
        if (end == at)
            return Broken(at, "a node without length");
        if (end > outer)
            return Broken(at, "a node runs past the end of what holds it");
        behind = at + Header();
        if (!Skip(behind, end))
            return Broken(at, "a key without end");
        behind = Pad(behind, base);
        return true;
    }

    bool Record()
    {
        if (length < 6)
            return Broken(length, "shorter than a node");
        narrow = Word(4) > 1;
        std::uint64_t end;
        std::uint64_t at;
        if (!Node(0, length, 0, end, at))
            return false;
        if (narrow && !Is(4, RECORD_KEY, end))
            return Broken(4, "neither layout of a record");
        if (Word(2) > FIXED_PART)
            return Broken(2, "a fixed part of more than 52 bytes");
        at += Word(2);
        if (Word(2) && at > end)
            return Broken(2, "the fixed part runs past the end");
        return Children(Pad(at, 0), end);
    }

    bool Children(std::uint64_t at, std::uint64_t outer)
    {
        while (at < outer) {
            std::uint64_t end;
            std::uint64_t behind;
            if (!Node(at, outer, at, end, behind))
                return false;
            const bool strings = Is(at + Header(), "StringFileInfo", end);
            if (!strings && !Is(at + Header(), "VarFileInfo", end))
                return Broken(at, "a child of a kind that isn't known");
            if (strings && behind < end && !Table(behind, end))
                return false;
            at = Pad(end, 0);
        }
        return true;
    }

    // The first table is read, and no other.
    bool Table(std::uint64_t table, std::uint64_t outer)
    {
        std::uint64_t end;
        std::uint64_t at;
        if (!Node(table, outer, table, end, at))
            return false;
        while (at < end)
            if (!Entry(at, table, end))
                return false;
        return true;
    }

    bool Entry(std::uint64_t& at, std::uint64_t table, std::uint64_t outer)
    {
        if (at + Header() > outer)
            return Broken(at, "a node runs past the end of what holds it");
        if (Word(at) == 0) {
            at = Pad(at + Header(), table);
            return true;
        }
        std::uint64_t end;
        std::uint64_t value;
        if (!Node(at, outer, table, end, value))
            return false;
        const std::uint64_t size = Word(at + 2) * UnitSize();
        if (size && value + size > outer)
            return Broken(at + 2, "a value runs past the end of its table");
        std::uint64_t behind = value;
        if (size && !Skip(behind, length))
            return Broken(value, "a value without end");
        at = Pad(value + size, table);
        return true;
    }

    const unsigned char* const bytes;
    const std::uint64_t length;
    bool narrow = false;
    VersionVerdict verdict;
};
} // namespace

VersionVerdict CheckVersion(const unsigned char* bytes, std::size_t length)
{
    return Checker(bytes, length).Run();
}

VersionVerdict CheckVersion(const std::string& bytes)
{
    return CheckVersion(reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size());
}

std::string DescribeVersionVerdict(const VersionVerdict& verdict)
{
    if (verdict.sound)
        return "sound\n";
    return "damaged at " + std::to_string(verdict.offset) + ": " + verdict.rule + "\n";
}

// winapi/Fonts/Type1Facts.cpp
#include "Fonts/Type1Facts.h"

#include "Base/Posix.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <iterator>
#include <new>
#include <optional>
#include <string>
#include <string_view>

namespace winapi
{
namespace
{
constexpr off_t LARGEST_FILE = 1 << 24;
constexpr int UNITS = 1000; // an em, for the one matrix that is read
constexpr unsigned PROGRAM_KEY = 55665;
constexpr unsigned CHARACTER_KEY = 4330;
constexpr unsigned PROGRAM_PADDING = 4;
constexpr unsigned LARGEST_PADDING = 16;

// Empty for what is no plain file, or none of Type 1.
std::string ReadWhole(const char* name)
{
    const Descriptor file(posix.open(name, O_RDONLY | O_CLOEXEC, 0));
    struct stat facts;
    std::string bytes(16, 0);
    const auto read = [&](std::size_t from) {
        return Retried([&] {
            return posix.pread(file.Get(), bytes.data() + from, bytes.size() - from,
                               static_cast<off_t>(from));
        });
    };
    if (!file || posix.fstat(file.Get(), &facts) != 0 || !S_ISREG(facts.st_mode) ||
        facts.st_size > LARGEST_FILE || read(0) != 16 || bytes.find("%!") == bytes.npos)
        return "";
    bytes.resize(static_cast<std::size_t>(facts.st_size));
    const std::size_t rest = bytes.size() - std::min<std::size_t>(bytes.size(), 16);
    return rest && read(16) == static_cast<ssize_t>(rest) ? bytes : "";
}

// A file's clear part and its encrypted one, which is decrypted where it lies.
struct Parts
{
    std::string_view open;
    char* closed = nullptr;
    std::size_t size = 0; // of the encrypted part
};

// By its segments, a clear one and an encrypted one.
Parts CutSegments(std::string& file)
{
    constexpr std::size_t header = 6;
    Parts parts;
    for (std::size_t at = 0; !parts.size && at + header <= file.size();) {
        std::size_t length = 0;
        for (unsigned n = 0; n < 4; ++n)
            length |= static_cast<std::size_t>(static_cast<unsigned char>(file[at + 2 + n]))
                      << 8 * n;
        const char kind = file[at + 1];
        at += header;
        if (file[at - header] != '\x80' || length > file.size() - at ||
            kind != (parts.open.empty() ? 1 : 2))
            return {};
        if (kind == 1) {
            parts.open = std::string_view(file).substr(at, length);
        } else {
            parts.closed = file.data() + at;
            parts.size = length;
        }
        at += length;
    }
    return parts;
}

// False where the encrypted part is in digits, and for all that isn't as usual.
bool Cut(std::string& file, Parts* parts)
{
    constexpr std::string_view word = "currentfile eexec";
    if (file[0] == '\x80') {
        *parts = CutSegments(file);
    } else if (const std::size_t at = file.find(word);
               at + word.size() < file.size() && at < file.size()) {
        // One blank ends the word.
        const std::size_t end = at + word.size() + 1;
        *parts = {std::string_view(file).substr(0, end), file.data() + end, file.size() - end};
    }
    return parts->open.starts_with("%!PS-AdobeFont") &&
           parts->open.find(word) != parts->open.npos && parts->size > PROGRAM_PADDING &&
           std::string_view(parts->closed, PROGRAM_PADDING)
                   .find_first_not_of("0123456789ABCDEFabcdef \t\r\n") != std::string_view::npos;
}

// Each byte changes the key for the next one: key = (byte + key) * factor + addend. Four steps are
// taken at once, so that one needn't wait for the other.
class Cipher
{
public:
    explicit Cipher(unsigned first) : key(static_cast<std::uint16_t>(first)) {}

    void Decrypt(char* bytes, std::size_t count)
    {
        std::size_t n = 0;
        for (; n + 4 <= count; n += 4) {
            const unsigned a = Code(bytes[n]);
            const unsigned b = Code(bytes[n + 1]);
            const unsigned c = Code(bytes[n + 2]);
            const unsigned d = Code(bytes[n + 3]);
            const unsigned keyB = key * F1 + a * F1 + S1;
            const unsigned keyC = key * F2 + a * F2 + b * F1 + S2;
            const unsigned keyD = key * F3 + a * F3 + b * F2 + c * F1 + S3;
            bytes[n] = Plain(a, key);
            bytes[n + 1] = Plain(b, keyB);
            bytes[n + 2] = Plain(c, keyC);
            bytes[n + 3] = Plain(d, keyD);
            key = key * F4 + a * F4 + b * F3 + c * F2 + d * F1 + S4;
        }
        for (; n < count; ++n) {
            const unsigned a = Code(bytes[n]);
            bytes[n] = Plain(a, key);
            key = (a + key) * F1 + S1;
        }
    }

private:
    static constexpr unsigned F1 = 52845, F2 = F1 * F1, F3 = F2 * F1, F4 = F3 * F1;
    static constexpr unsigned S1 = 22719, S2 = S1 * F1 + S1, S3 = S2 * F1 + S1, S4 = S3 * F1 + S1;

    static unsigned Code(char c) { return static_cast<unsigned char>(c); }
    static char Plain(unsigned code, unsigned at) { return static_cast<char>(code ^ at >> 8); }

    unsigned key; // in its low half
};

// Words of a program, one after the other.
class Words
{
public:
    explicit Words(std::string_view program) : text(program) {}

    // A name begins a word, also where no blank stands in front of it; a bracket is one.
    std::string_view Next()
    {
        std::size_t start = 0;
        while (start < text.size() && IsBlank(text[start]))
            ++start;
        std::size_t end = std::min(start + 1, text.size());
        if (end > start && !IsBracket(text[start]))
            while (end < text.size() && !IsBlank(text[end]) && !IsBracket(text[end]) &&
                   text[end] != '/')
                ++end;
        const std::string_view word = text.substr(start, end - start);
        text.remove_prefix(end);
        return word;
    }
    std::optional<int> NextNumber()
    {
        const std::string_view word = Next();
        int number = 0;
        const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), number);
        const bool isWhole = error == std::errc() && end == word.data() + word.size();
        return isWhole ? std::optional(number) : std::nullopt;
    }
    // Bytes behind one blank; empty if there are fewer.
    std::string_view NextBytes(std::size_t count)
    {
        if (text.size() <= count)
            return {};
        const std::string_view bytes = text.substr(1, count);
        text.remove_prefix(count + 1);
        return bytes;
    }

    std::string_view Rest() const { return text; }

private:
    static bool IsBlank(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }
    static bool IsBracket(char c) { return c == '[' || c == ']' || c == '{' || c == '}'; }

    std::string_view text;
};

// What stands behind a name that stands there once; nothing where it doesn't stand there once.
std::optional<Words> Behind(std::string_view program, std::string_view name)
{
    const std::size_t at = program.find(name);
    if (at == program.npos || program.find(name, at + 1) != program.npos)
        return std::nullopt;
    return Words(program.substr(at + name.size()));
}

bool TakeBox(std::string_view open, FaceFacts* facts)
{
    std::optional<Words> words = Behind(open, "/FontBBox");
    if (!words || words->Next().find_first_of("{[") != 0)
        return false;
    int box[4];
    for (int& side : box) {
        const std::optional<int> number = words->NextNumber();
        if (!number || *number < -0x4000 || *number > 0x4000)
            return false;
        side = *number;
    }
    facts->maximumWidth = box[2] - box[0];
    facts->winAscent = facts->ascender = box[3];
    facts->descender = box[1];
    facts->winDescent = -box[1];
    return facts->winAscent + facts->winDescent > 0;
}

// The matrix that nearly all fonts have: a thousand units an em, neither slanted nor moved.
bool HasPlainMatrix(std::string_view open)
{
    std::optional<Words> words = Behind(open, "/FontMatrix");
    if (!words || words->Next().find_first_of("{[") != 0)
        return false;
    for (unsigned n = 0; n < 6; ++n) {
        const std::string_view word = words->Next();
        const bool isScale = n % 3 == 0 && n < 4;
        const bool isZero =
            word.find_first_not_of("0.") == word.npos && !word.empty() && word != ".";
        if (isScale ? word != "0.001" && word != ".001" && word != "0.001000" : !isZero)
            return false;
    }
    return true;
}

bool TakePitch(std::string_view open, FaceFacts* facts)
{
    if (open.find("/isFixedPitch") == open.npos)
        return true;
    std::optional<Words> words = Behind(open, "/isFixedPitch");
    const std::string_view word = words ? words->Next() : std::string_view();
    facts->fixed = word == "true";
    return facts->fixed || word == "false";
}

// The numbers that a character's program begins with.
class Numbers
{
public:
    explicit Numbers(std::string_view program) : bytes(program) {}

    // Nothing in front of what is no number, or one that is to be divided.
    std::optional<int> Next()
    {
        const int first = Byte();
        if (first < 32)
            return std::nullopt;
        if (first < 247)
            return first - 139;
        if (first < 251)
            return (first - 247) * 256 + Byte() + 108;
        if (first < 255)
            return -(first - 251) * 256 - Byte() - 108;
        std::uint32_t number = 0;
        for (unsigned n = 0; n < 4; ++n)
            number = number << 8 | static_cast<std::uint32_t>(Byte());
        const int value = static_cast<int>(number);
        return value >= -LARGEST && value <= LARGEST ? std::optional(value) : std::nullopt;
    }
    // 0 behind the end.
    int Byte() { return at < bytes.size() ? static_cast<unsigned char>(bytes[at++]) : 0; }

private:
    static constexpr int LARGEST = 32000;

    std::string_view bytes;
    std::size_t at = 0;
};

// Of one that begins as nearly all do: with the bearing of the left side and the width.
std::optional<int> WidthOf(std::string_view program, unsigned padding)
{
    constexpr int setWidth = 13;
    constexpr std::size_t most = 2 * 5 + 1;
    char plain[LARGEST_PADDING + most];
    const std::size_t size = program.copy(plain, padding + most);
    Cipher(CHARACTER_KEY).Decrypt(plain, size);
    Numbers numbers(std::string_view(plain, size).substr(std::min<std::size_t>(size, padding)));
    const bool hasBearing = numbers.Next().has_value();
    const std::optional<int> width = hasBearing ? numbers.Next() : std::nullopt;
    return width && numbers.Byte() == setWidth ? width : std::nullopt;
}

// How many bytes nobody reads stand in front of each character's program.
std::optional<unsigned> PaddingOf(std::string_view program)
{
    if (program.find("/lenIV") == program.npos)
        return 4U;
    std::optional<Words> words = Behind(program, "/lenIV");
    const std::optional<int> number = words ? words->NextNumber() : std::nullopt;
    return number && *number >= 0 && *number <= static_cast<int>(LARGEST_PADDING)
               ? std::optional(static_cast<unsigned>(*number))
               : std::nullopt;
}

// The widest of all characters. Nothing if one of them isn't plain, or none stands for those that
// are missing.
std::optional<int> WidestOf(Words words, unsigned padding)
{
    const std::optional<int> most = words.NextNumber();
    if (!most || words.Next() != "dict" || words.Next() != "dup" || words.Next() != "begin")
        return std::nullopt;
    std::optional<int> widest;
    bool hasMissing = false;
    int count = 0;
    for (std::string_view word = words.Next(); word != "end"; word = words.Next()) {
        const std::optional<int> size = words.NextNumber();
        if (word.empty() || word[0] != '/' || !size || *size <= 0 || ++count > *most)
            return std::nullopt;
        words.Next(); // The word that reads the bytes.
        const std::optional<int> width =
            WidthOf(words.NextBytes(static_cast<std::size_t>(*size)), padding);
        if (!width)
            return std::nullopt;
        widest = std::max(widest.value_or(*width), *width);
        hasMissing |= word == "/.notdef";
        if (const std::string_view stored = words.Next(); stored != "ND" && stored != "|-")
            return std::nullopt;
    }
    // Another set of characters would count as well.
    const bool isLast = words.Rest().find("/CharStrings") == std::string_view::npos;
    return hasMissing && isLast ? widest : std::nullopt;
}

std::optional<int> WidestOf(std::string_view program)
{
    constexpr std::string_view name = "/CharStrings";
    const std::size_t at = program.find(name);
    if (at == program.npos)
        return std::nullopt;
    const std::optional<unsigned> padding = PaddingOf(program.substr(0, at));
    return padding ? WidestOf(Words(program.substr(at + name.size())), *padding) : std::nullopt;
}

bool ReadParts(const char* name, FaceFacts* facts)
{
    Parts parts;
    std::string file = ReadWhole(name);
    if (file.empty() || !Cut(file, &parts) || !TakeBox(parts.open, facts) ||
        !HasPlainMatrix(parts.open) || !TakePitch(parts.open, facts) ||
        parts.open.find("/WeightVector") != parts.open.npos ||
        parts.open.find("/Blend") != parts.open.npos)
        return false;
    Cipher(PROGRAM_KEY).Decrypt(parts.closed, parts.size);
    const std::optional<int> widest =
        WidestOf(std::string_view(parts.closed, parts.size).substr(PROGRAM_PADDING));
    if (!widest)
        return false;
    facts->unitsPerEm = UNITS;
    facts->averageWidth = *widest / 2;
    // A font that says nothing is one of the Western European set.
    facts->codePages[0] = 1;
    return true;
}
} // namespace

bool ReadType1Facts(const char* file, int index, FaceFacts* facts)
{
    *facts = {};
    try {
        return index == 0 && ReadParts(file, facts);
    } catch (const std::bad_alloc&) {
        return false;
    }
}
} // namespace winapi

// fuzz/targets/lines.cpp: any bytes as a text file, read line by line by the four readers, as they
// are described for plain bytes; and lines written and read back.
//
// Input: a byte for the reader, a byte for the longest read of the file, the bytes.
#include "Ostra/File/MemoryFile.h"

#include <Ostra/String/CString.h>
#include <Ostra/String/UString.h>

#include "Support/Input.h"
#include "Support/Library.h"

namespace
{
typedef unsigned (CT_File::*Reader)(CT_String*, const CT_String*);
typedef std::vector<unsigned> Line;

struct Kind
{
    Reader read;
    unsigned width;
    std::size_t piece; // bytes
    bool sequential;
};

constexpr Kind KINDS[] = {
    {&CT_File::n_ReadLineC, 1, 256, false},
    {&CT_File::n_ReadLineU, 2, 512, false},
    {&CT_File::n_ReadLineCSequential, 1, 4096, true},
    {&CT_File::n_ReadLineUSequential, 2, 8192, true},
};

// One reader on plain bytes. A carriage return goes where it ends a piece, as it does before a feed.
class Model
{
public:
    Model(const Kind& of, const std::string& bytes, std::size_t longest)
        : kind(of),
          data(bytes),
          piece(std::min(of.piece, longest))
    {}

    unsigned Read(Line& line)
    {
        if (kind.width == 2 && !begun && data.compare(0, 2, "\xFF\xFE") == 0)
            at = 2;
        // One that goes back reads a new piece for each line; one that runs ahead reads on in its own.
        if (!kind.sequential || !begun)
            pieceEnd = at;
        begun = true;
        line.clear();
        while (at < data.size()) {
            if (at >= pieceEnd)
                pieceEnd = std::min(data.size(), at + piece);
            if (Take(line))
                return static_cast<unsigned>(line.size() + 1) * kind.width;
        }
        return kind.sequential ? 0 : static_cast<unsigned>(line.size()) * kind.width;
    }

private:
    // The rest of a piece, up to a line feed.
    bool Take(Line& line)
    {
        Line units;
        bool feed = false;
        for (; at + kind.width <= pieceEnd && !feed; at += kind.width) {
            unsigned unit = static_cast<unsigned char>(data[at]);
            if (kind.width == 2)
                unit |= static_cast<unsigned>(static_cast<unsigned char>(data[at + 1])) << 8;
            feed = unit == '\n';
            if (!feed)
                units.push_back(unit);
        }
        // Half a unit at a piece's end is lost.
        if (!feed)
            at = pieceEnd;
        if (!units.empty() && units.back() == '\r')
            units.pop_back();
        line.insert(line.end(), units.begin(), units.end());
        return feed;
    }

    const Kind& kind;
    const std::string& data;
    const std::size_t piece;
    std::size_t at = 0, pieceEnd = 0;
    bool begun = false;
};

Line UnitsOfLine(const CT_CString& text)
{
    Line units;
    for (unsigned n = 0; n < text.vn_GetLength(); ++n)
        units.push_back(static_cast<unsigned char>(text.c_GetAt(n)));
    return units;
}

Line UnitsOfLine(const CT_UString& text)
{
    return Line(text.qcuz_Get(), text.qcuz_Get() + text.vn_GetLength());
}

template <class String>
void Read(const Kind& kind, const std::string& bytes, unsigned longest)
{
    MemoryFile file;
    file.data = bytes;
    file.most = longest;
    Model model(kind, bytes, longest);
    for (std::size_t lines = 0, after = 0; after < 2; ++lines) {
        REQUIRE(lines <= bytes.size() + 2);
        String text;
        Line wanted;
        const unsigned result = (file.*kind.read)(&text, nullptr);
        REQUIRE(result == model.Read(wanted));
        REQUIRE(UnitsOfLine(text) == wanted);
        after += result == 0;
        file.calls.clear();
    }
}

// Lines without feeds come back, whatever else is in them.
template <class String>
void WriteAndRead(const Kind& kind, const std::string& bytes)
{
    MemoryFile file;
    std::vector<std::string> lines(1);
    for (const char c : bytes) {
        if (c == '\n')
            lines.emplace_back();
        else if (c != '\0' && c != '\r' && static_cast<unsigned char>(c) < 0x80)
            lines.back() += c;
    }
    for (const std::string& line : lines) {
        const String text(line.c_str());
        if (kind.width == 1)
            file.v_WriteLineC(&text, 1);
        else
            file.v_WriteLineU(&text, 1);
    }
    file.offset = 0;
    for (const std::string& line : lines) {
        String text;
        REQUIRE((file.*kind.read)(&text, nullptr) == (line.size() + 1) * kind.width);
        REQUIRE(UnitsOfLine(text) == Line(line.begin(), line.end()));
    }
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    Input input(data, size);
    const unsigned switches = input.Byte();
    const Kind& kind = KINDS[switches % std::size(KINDS)];
    // Reads of a length that cuts units are a file's that is no file of units.
    const unsigned reads = input.Byte();
    const unsigned longest = reads < 128 ? 0xFFFFFFFF : 2 * (1 + reads % 64);
    const std::string bytes = input.Rest();
    if (kind.width == 1)
        Read<CT_CString>(kind, bytes, longest);
    else
        Read<CT_UString>(kind, bytes, longest);
    if (switches & 0x80)
        kind.width == 1 ? WriteAndRead<CT_CString>(kind, bytes)
                        : WriteAndRead<CT_UString>(kind, bytes);
    REQUIRE(TakeCode() == 0);
    return 0;
}

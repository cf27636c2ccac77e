// tests/Ostra/File/FileLinesTest.cpp
#include <Ostra/File/File.h>
#include <Ostra/File/WinFile.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

#include "MemoryFile.h"
#include "Support/Directory.h"
#include "Support/Files.h"

namespace
{
typedef std::vector<unsigned short> Line;
typedef unsigned (CT_File::*Reader)(CT_String*, const CT_String*);

// The four readers and what differs between them.
struct Kind
{
    const char* name;
    Reader read;
    unsigned width;
    unsigned piece;
    bool sequential;
};

const Kind KINDS[] = {
    {"n_ReadLineC", &CT_File::n_ReadLineC, 1, 256, false},
    {"n_ReadLineU", &CT_File::n_ReadLineU, 2, 512, false},
    {"n_ReadLineCSequential", &CT_File::n_ReadLineCSequential, 1, 4096, true},
    {"n_ReadLineUSequential", &CT_File::n_ReadLineUSequential, 2, 8192, true},
};

// What one call of a reader comes to.
struct Outcome
{
    unsigned result = 0;
    Line line;
    unsigned offset = 0;
    Calls calls;

    bool operator==(const Outcome&) const = default;
};

// The readers as they are described, on plain bytes, one unit after the other.
class Model
{
public:
    Model(const Kind& of, const std::string& bytes) : kind(of), data(bytes) {}

    Outcome Read()
    {
        out = Outcome();
        Begin();
        const bool ended = kind.sequential ? ReadOn() : ReadAndGoBack();
        if (ended)
            out.result = (static_cast<unsigned>(out.line.size()) + 1) * kind.width;
        else if (!kind.sequential)
            out.result = static_cast<unsigned>(out.line.size()) * kind.width;
        out.offset = offset;
        return out;
    }

private:
    void Seek(int origin, int distance)
    {
        out.calls.push_back("seek " + std::to_string(origin) + " " + std::to_string(distance));
        offset = origin == 0 ? distance : offset + distance;
    }
    std::string Fetch(unsigned size)
    {
        out.calls.push_back("read " + std::to_string(size));
        const std::string piece = offset < data.size() ? data.substr(offset, size) : "";
        offset += static_cast<unsigned>(piece.size());
        return piece;
    }
    void Begin()
    {
        if (fresh) {
            out.calls.push_back("offset");
            Seek(0, static_cast<int>(offset));
            fresh = false;
        }
        if (kind.width == 1)
            return;
        out.calls.push_back("offset");
        if (offset == 0 && Fetch(2) != "\xFF\xFE")
            Seek(0, 0);
    }
    Line UnitsOf(const std::string& bytes) const
    {
        Line units;
        for (std::size_t n = 0; n + kind.width <= bytes.size(); n += kind.width) {
            unsigned unit = static_cast<unsigned char>(bytes[n]);
            if (kind.width == 2)
                unit += static_cast<unsigned char>(bytes[n + 1]) * 256u;
            units.push_back(static_cast<unsigned short>(unit));
        }
        return units;
    }
    // Takes units up to a line feed into the line; the position behind it, or 0 without one.
    std::size_t Take(const Line& units, std::size_t from)
    {
        std::size_t at = from;
        while (at < units.size() && units[at] != 10)
            ++at;
        for (std::size_t n = from; n < at; ++n) {
            if (n + 1 != at || units[n] != 13)
                out.line.push_back(units[n]);
        }
        return at < units.size() ? at + 1 : 0;
    }
    bool ReadAndGoBack()
    {
        for (;;) {
            const std::string bytes = Fetch(kind.piece);
            if (bytes.empty())
                return false;
            const std::size_t next = Take(UnitsOf(bytes), 0);
            if (!next)
                continue;
            Seek(1, static_cast<int>(next * kind.width) - static_cast<int>(bytes.size()));
            return true;
        }
    }
    bool ReadOn()
    {
        for (;;) {
            if (position == 0) {
                const std::string bytes = Fetch(kind.piece);
                if (bytes.empty())
                    return false;
                rest = UnitsOf(bytes);
            }
            position = Take(rest, position);
            if (!position)
                continue;
            if (position == rest.size())
                position = 0;
            return true;
        }
    }

    const Kind& kind;
    const std::string data;
    unsigned offset = 0;
    bool fresh = true;
    Line rest;
    std::size_t position = 0;
    Outcome out;
};

// A line as units, whichever class it is of.
Line UnitsOf(const CT_CString& text)
{
    Line units;
    for (unsigned n = 0; n < text.vn_GetLength(); ++n)
        units.push_back(static_cast<unsigned char>(text.c_GetAt(n)));
    return units;
}

Line UnitsOf(const CT_UString& text)
{
    return Line(text.qcuz_Get(), text.qcuz_Get() + text.vn_GetLength());
}

template <class String>
Outcome Read(const Kind& kind, CT_File& file)
{
    Outcome outcome;
    String line;
    line.v_Set("left over", -1, 0);
    outcome.result = (file.*kind.read)(&line, nullptr);
    outcome.line = UnitsOf(line);
    return outcome;
}

Outcome Read(const Kind& kind, CT_File& file)
{
    return kind.width == 1 ? Read<CT_CString>(kind, file) : Read<CT_UString>(kind, file);
}

// Reads the file to its end, and once more, by all readers as the model does.
void Compare(const Kind& kind, const std::string& data)
{
    SCOPED_TRACE(std::string(kind.name) + " of " + std::to_string(data.size()) + " bytes");
    Model model(kind, data);
    MemoryFile memory;
    memory.data = data;
    WriteBytes("lines", data);
    const CT_UString name = Name("lines");
    CT_WinFile file(&name, 0);
    file.vv_Open(CT_File::e_AccessRead, CT_File::e_OpenExisting, CT_File::e_ShareNone, 1, 0);
    for (int after = 0; after < 2;) {
        const Outcome wanted = model.Read();
        Outcome got = Read(kind, memory);
        got.offset = memory.offset;
        got.calls = memory.TakeCalls();
        ASSERT_EQ(got.result, wanted.result);
        ASSERT_EQ(got.line, wanted.line);
        ASSERT_EQ(got.offset, wanted.offset);
        ASSERT_EQ(got.calls, wanted.calls);
        got = Read(kind, file);
        ASSERT_EQ(got.result, wanted.result);
        ASSERT_EQ(got.line, wanted.line);
        ASSERT_EQ(file.vn_GetOffset(), wanted.offset);
        after += wanted.result == 0;
    }
    ASSERT_EQ(TakeFailure(), Failure());
}

// Text of one unit a character, in the width of the kind.
std::string Encode(const Kind& kind, const std::string& text)
{
    if (kind.width == 1)
        return text;
    std::string bytes;
    for (const char c : text) {
        bytes += c;
        bytes += '\0';
    }
    return bytes;
}

std::string Mark(const Kind& kind, bool marked)
{
    return kind.width == 2 && marked ? "\xFF\xFE" : "";
}

// The lines of a file, as text and result; a line of one letter l counts n letters as "l*n".
std::vector<std::string> Lines(const Kind& kind, const std::string& text,
                               const char* strip = nullptr)
{
    MemoryFile file;
    file.data = Encode(kind, text);
    const CT_CString set(strip ? strip : "");
    std::vector<std::string> lines;
    for (unsigned result = 1; result;) {
        CT_UString line = Name("left over");
        result = (file.*kind.read)(&line, strip ? &set : nullptr);
        lines.push_back(Get(line) + ":" + std::to_string(result / kind.width));
        EXPECT_EQ(result % kind.width, 0u);
    }
    return lines;
}

typedef std::vector<std::string> Strings;
} // namespace

TEST(FileLines, EveryReaderTellsLinesFromTheEnd)
{
    const struct
    {
        const char* text;
        Strings seeking, sequential;
    } cases[] = {
        {"", {":0"}, {":0"}},
        {"\n", {":1", ":0"}, {":1", ":0"}},
        {"\r\n", {":1", ":0"}, {":1", ":0"}},
        {"\r\n\n", {":1", ":1", ":0"}, {":1", ":1", ":0"}},
        {"ab\r\ncd\n", {"ab:3", "cd:3", ":0"}, {"ab:3", "cd:3", ":0"}},
        {"ab\ncde", {"ab:3", "cde:3", ":0"}, {"ab:3", "cde:0"}},
        {"\r\r\n", {"\r:2", ":0"}, {"\r:2", ":0"}},
        {"a\rb\nc", {"a\rb:4", "c:1", ":0"}, {"a\rb:4", "c:0"}},
        {"a\rb\rc\r", {"a\rb\rc:5", ":0"}, {"a\rb\rc:0"}},
        {"\r", {":0"}, {":0"}},
    };
    for (const Kind& kind : KINDS) {
        for (const auto& row : cases) {
            SCOPED_TRACE(std::string(kind.name) + " of " + testing::PrintToString(row.text));
            EXPECT_EQ(Lines(kind, row.text), kind.sequential ? row.sequential : row.seeking);
        }
    }
}

TEST(FileLines, TheResultCountsBeforeStripping)
{
    for (const Kind& kind : KINDS) {
        SCOPED_TRACE(kind.name);
        EXPECT_EQ(Lines(kind, "xxaxx\nxx\n", "x"), (Strings{"a:6", ":3", ":0"}));
        EXPECT_EQ(Lines(kind, "  a  \n", ""), (Strings{"  a  :6", ":0"})) << "an empty set";
    }
    EXPECT_EQ(Lines(KINDS[0], "a\nxbx", "x"), (Strings{"a:2", "b:3", ":0"}));
    EXPECT_EQ(Lines(KINDS[2], "a\nxbx", "x"), (Strings{"a:2", "b:0"}))
        << "the rest is stripped too";
}

TEST(FileLines, TheMarkIsSkippedOnlyByTheWideReadersAtTheStart)
{
    for (const Kind& kind : KINDS) {
        SCOPED_TRACE(kind.name);
        MemoryFile file;
        file.data = std::string("\xFF\xFE", 2) + Encode(kind, "a\n");
        Outcome outcome = Read(kind, file);
        EXPECT_EQ(outcome.line, kind.width == 2 ? (Line{'a'}) : (Line{0xFF, 0xFE, 'a'}));
        MemoryFile other;
        other.data = file.data;
        other.offset = 2;
        outcome = Read(kind, other);
        EXPECT_EQ(outcome.line, (Line{'a'}));
        EXPECT_EQ(outcome.result, 2 * kind.width);
    }
}

TEST(FileLines, OtherMarksAreText)
{
    for (const Kind& kind : {KINDS[1], KINDS[3]}) {
        MemoryFile file;
        file.data = std::string("\xFE\xFF", 2) + Encode(kind, "a\n");
        EXPECT_EQ(Read(kind, file).line, (Line{0xFFFE, 'a'}));
        file.vv_Set();
        file.offset = 0;
        file.data = std::string("\xFF\xFE\xFF\xFE", 4) + Encode(kind, "\n");
        EXPECT_EQ(Read(kind, file).line, (Line{0xFEFF})) << "only the first one is skipped";
    }
}

TEST(FileLines, AFileOfTheMarkAloneHasNoLine)
{
    for (const Kind& kind : {KINDS[1], KINDS[3]}) {
        MemoryFile file;
        file.data = "\xFF\xFE";
        EXPECT_EQ(file.b_IsUnicode(), 1);
        EXPECT_EQ(Read(kind, file).result, 0u);
        EXPECT_EQ(Read(kind, file).line, Line());
    }
}

TEST(FileLines, AFileOfOneByteIsReadTwice)
{
    MemoryFile file;
    file.data = "a";
    const Outcome outcome = Read(KINDS[1], file);
    EXPECT_EQ(outcome.result, 0u);
    EXPECT_EQ(outcome.line, Line());
    EXPECT_EQ(file.TakeCalls(), (Calls{"offset", "seek 0 0", "offset", "read 2", "seek 0 0",
                                       "read 512", "read 512"}));
}

TEST(FileLines, ACarriageReturnAtTheEndOfAPieceIsDropped)
{
    for (const Kind& kind : KINDS) {
        SCOPED_TRACE(kind.name);
        const unsigned units = kind.piece / kind.width;
        const std::string text(units - 1, 'x');
        // Torn from its line feed, which closes the line at the start of the next piece.
        EXPECT_EQ(Lines(kind, text + "\r\nb\n"),
                  (Strings{text + ":" + std::to_string(units), "b:2", ":0"}));
        // A lone one is lost there, and there only.
        EXPECT_EQ(Lines(kind, text + "\ry\n")[0], text + "y:" + std::to_string(units + 1));
        EXPECT_EQ(Lines(kind, "\r" + text.substr(1) + "\ry\n")[0],
                  "\r" + text.substr(1) + "y:" + std::to_string(units + 1));
    }
}

TEST(FileLines, AReaderTakesItsOwnPiecesFromALargerBuffer)
{
    MemoryFile file;
    file.data = std::string(9000, 'x');
    CT_CString line;
    file.n_ReadLineCSequential(&line, nullptr);
    file.offset = 0;
    file.TakeCalls();
    file.n_ReadLineC(&line, nullptr);
    EXPECT_EQ(file.TakeCalls()[0], "read 256");
}

TEST(FileLines, ASequentialReaderContinuesFromItsBufferAfterAClose)
{
    for (const Kind& kind : {KINDS[2], KINDS[3]}) {
        MemoryFile file;
        file.data = Encode(kind, "a\nb\nc\n");
        EXPECT_EQ(Read(kind, file).line, (Line{'a'}));
        file.vv_Close();
        file.vv_Open(CT_File::e_AccessRead, CT_File::e_OpenExisting, CT_File::e_ShareNone, 1, 0);
        file.data = Encode(kind, "new\n");
        EXPECT_EQ(Read(kind, file).line, (Line{'b'}));
        file.vv_Set();
        file.offset = 0;
        EXPECT_EQ(Read(kind, file).line, (Line{'n', 'e', 'w'}));
    }
}

TEST(FileLines, ReadersThatAreMixedStayWithinTheBuffer)
{
    MemoryFile file;
    file.data = std::string(600, '\n');
    CT_CString line;
    for (int n = 0; n < 500; ++n)
        file.n_ReadLineCSequential(&line, nullptr);
    EXPECT_EQ(file.n_ReadLineC(&line, nullptr), 0u) << "the file is at its end";
    EXPECT_EQ(file.n_ReadLineCSequential(&line, nullptr), 0u);
    EXPECT_EQ(file.n_ReadLineUSequential(&line, nullptr), 0u);
}

TEST(FileLines, ShortPiecesMakeNoDifference)
{
    for (const Kind& kind : KINDS) {
        MemoryFile file;
        file.data = Encode(kind, "ab\r\ncd\n");
        file.most = 2 * kind.width;
        EXPECT_EQ(Read(kind, file).line, (Line{'a', 'b'}));
        EXPECT_EQ(Read(kind, file).line, (Line{'c', 'd'}));
    }
}

TEST(FileLines, LinesOfTheOtherWidthAreConverted)
{
    MemoryFile narrow, wide;
    narrow.data = "ab\n";
    wide.data = std::string("a\0b\0\n\0", 6);
    CT_UString units;
    CT_CString bytes;
    EXPECT_EQ(narrow.n_ReadLineC(&units, nullptr), 3u);
    EXPECT_EQ(UnitsOf(units), (Line{'a', 'b'}));
    EXPECT_EQ(wide.n_ReadLineU(&bytes, nullptr), 6u);
    EXPECT_EQ(UnitsOf(bytes), (Line{'a', 'b'}));
}

TEST(FileLines, AFailureKeepsWhatWasRead)
{
    for (const Kind& kind : KINDS) {
        SCOPED_TRACE(kind.name);
        MemoryFile file;
        file.data = Encode(kind, std::string(kind.piece, 'x'));
        // Direction and mark take two calls, or five.
        file.good = kind.width == 1 ? 3 : 6;
        const Outcome outcome = Read(kind, file);
        EXPECT_EQ(outcome.result, 0u);
        EXPECT_EQ(outcome.line, Line(kind.piece / kind.width, 'x'));
        EXPECT_EQ(TakeFailure(),
                  (Failure{MemoryFile::CODE, "(4711): failed", {"MemoryFile", "Ostra/File/File"}}));
    }
}

TEST(FileLines, EveryFailingCallEndsTheReading)
{
    for (const Kind& kind : KINDS) {
        const unsigned calls = (kind.width == 1 ? 3 : 6) + (kind.sequential ? 0 : 1);
        for (unsigned good = 0; good < calls; ++good) {
            SCOPED_TRACE(std::string(kind.name) + " after " + std::to_string(good));
            MemoryFile file;
            file.data = Encode(kind, "ab\nc");
            file.good = static_cast<int>(good);
            EXPECT_EQ(Read(kind, file).result, 0u);
            EXPECT_EQ(file.TakeCalls().size(), good + 1);
            const Failure failure = TakeFailure();
            EXPECT_EQ(failure.code, MemoryFile::CODE);
            EXPECT_EQ(failure.trail.back(), "Ostra/File/File");
            EXPECT_EQ(failure.trail.size(), good < 2 ? 3u : 2u)
                << "the change of direction adds its place";
        }
    }
}

namespace
{
// Tells its offset also where that can't be had.
class AlwaysInside : public MemoryFile
{
public:
    unsigned vn_GetOffset() const override
    {
        MemoryFile::vn_GetOffset();
        return 4;
    }
};

void ExpectNoLine(MemoryFile& file)
{
    CT_UString line;
    EXPECT_EQ(file.n_ReadLineUSequential(&line, nullptr), 0u);
    EXPECT_EQ(TakeFailure(),
              (Failure{MemoryFile::CODE, "(4711): failed", {"MemoryFile", "Ostra/File/File"}}));
}
} // namespace

// The direction is that of reading there.
TEST(FileLines, EveryFailingCallEndsTheReadingAtTheStartOnceMore)
{
    const std::string lines("a\0\n\0b\0\n\0", 8);
    // The offset, the mark, the way back where there is none.
    for (int good = 0; good < 3; ++good) {
        SCOPED_TRACE(good);
        MemoryFile file;
        file.data = lines;
        CT_UString line;
        EXPECT_EQ(file.n_ReadLineUSequential(&line, nullptr), 4u);
        file.offset = 0;
        file.good = good;
        ExpectNoLine(file);
    }
    AlwaysInside file;
    file.data = lines;
    CT_UString line;
    EXPECT_EQ(file.n_ReadLineUSequential(&line, nullptr), 4u);
    file.good = 0;
    ExpectNoLine(file);
}

TEST(FileLinesModel, LineEndsAtEveryPlaceAroundAPiece)
{
    for (const Kind& kind : KINDS) {
        const unsigned units = kind.piece / kind.width;
        for (const char* end : {"\n", "\r\n", "\r", "\n\r", "\r\r\n", "\n\n", ""}) {
            for (unsigned length = units - 3; length <= units + 2; ++length) {
                const std::string text = std::string(length, 'x') + end + "yy" + end;
                for (const bool marked : {false, true})
                    Compare(kind, Mark(kind, marked) + Encode(kind, text));
            }
        }
    }
}

TEST(FileLinesModel, RandomFiles)
{
    const unsigned seed = Seed(19970101);
    SCOPED_TRACE("OSTRA_SEED=" + std::to_string(seed));
    std::mt19937 random(seed);
    const auto below = [&](unsigned limit) {
        return random() % limit;
    };
    // Units that look like a line feed in one byte only are among them.
    const std::string units[] = {"\n",       "\r",       "\r\n", "x",
                                 "\x0A\x0A", "\x0D\x0A", "\x0A", "\xFF\xFE"};
    for (int round = 0; round < 120; ++round) {
        const Kind& kind = KINDS[round % 4];
        const unsigned around[] = {0, 256, 512, 4096, 8192};
        const unsigned size = around[below(5)] + below(9);
        const unsigned plain = 1 + below(400);
        std::string data = Mark(kind, below(2));
        while (data.size() < size) {
            const std::string unit = below(plain) ? "x" : units[below(8)];
            data += kind.width == 2 && below(8) ? Encode(kind, unit) : unit;
        }
        data.resize(size);
        Compare(kind, data);
        if (HasFatalFailure())
            return;
    }
}

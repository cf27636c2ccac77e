// tests/Ostra/File/FileLinesWaysTest.cpp: lines are written into strings directly where nobody can
// tell it from asking the string for each step.
#include <Ostra/File/File.h>
#include <Ostra/String/CString.h>

#include <gtest/gtest.h>

#include <memory>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include "MemoryFile.h"
#include "Support/Directory.h"

namespace
{
typedef unsigned (CT_File::*Reader)(CT_String*, const CT_String*);

const Reader NARROW[] = {&CT_File::n_ReadLineC, &CT_File::n_ReadLineCSequential};
const Reader WIDE[] = {&CT_File::n_ReadLineU, &CT_File::n_ReadLineUSequential};

// A string of a class that the library doesn't know: it is asked for each step.
template <class String>
class Foreign : public String
{};

// What can be seen of a call and of the string behind it.
struct Seen
{
    unsigned result;
    std::string bytes; // with the terminator
    unsigned room;
    unsigned growth;
    unsigned shares;
    unsigned blocks; // that were taken
    unsigned offset;
    Calls calls;

    bool operator==(const Seen&) const = default;
};

// A file and the string that its lines are read into.
template <class String>
struct Side
{
    String line;
    MemoryFile file;
    std::vector<std::unique_ptr<CT_Buffer>> held;

    Seen Read(Reader read, const CT_String* strip)
    {
        const unsigned before = CT_Buffer::sn_GetAllocCount();
        Seen seen;
        seen.result = (file.*read)(&line, strip);
        seen.blocks = CT_Buffer::sn_GetAllocCount() - before;
        const CT_Buffer& buffer = *line.pcco_GetBuffer();
        seen.bytes.assign(static_cast<const char*>(buffer.qcv_Get()), buffer.n_GetUsedSize());
        seen.room = buffer.n_GetMaximumSize();
        seen.growth = buffer.n_GetGrowth();
        seen.shares = buffer.n_GetUseCount();
        seen.offset = file.offset;
        seen.calls = file.TakeCalls();
        return seen;
    }
};

class Chance
{
public:
    explicit Chance(unsigned seed) : random(seed) {}

    unsigned Below(unsigned limit) { return random() % limit; }

    // Lines with ends of all kinds, zero units and units that look like a line feed in one byte.
    std::string Text(unsigned width)
    {
        const unsigned size = Below(20000);
        const unsigned longest = 1 + Below(Below(4) ? 70 : 6000);
        std::string data = width == 2 && Below(2) ? "\xFF\xFE" : "";
        while (data.size() < size) {
            for (unsigned left = Below(longest); left; --left)
                Add(data, width, Below(12) ? 'a' + Below(26) : Odd());
            const unsigned end = Below(8);
            if (end == 0 || end > 3)
                Add(data, width, '\r');
            if (end)
                Add(data, width, '\n');
        }
        if (Below(4) == 0)
            data.pop_back(); // an odd byte
        return data;
    }

private:
    unsigned Odd()
    {
        const unsigned odd[] = {0, '\r', 0x0A00, 0x0A0D, 0x0D0A, 0xFEFF, ' ', 0x8A};
        return odd[Below(8)];
    }
    static void Add(std::string& data, unsigned width, unsigned unit)
    {
        data += static_cast<char>(unit);
        if (width == 2)
            data += static_cast<char>(unit >> 8);
    }

    std::mt19937 random;
};

// Does to both strings what an application may do between two lines.
template <class String>
void Disturb(Side<String>& side, unsigned what)
{
    switch (what) {
    case 0:
        side.held.push_back(std::make_unique<CT_Buffer>(side.line.pcco_GetBuffer()));
        break;
    case 1:
        side.held.clear();
        break;
    case 2:
        side.line.vv_SetSize(0, 0);
        break;
    case 3:
        side.line.vv_SetMinSize(5000, 1);
        break;
    case 4:
        side.line.vv_SetSize(60, 1);
        break;
    default:
        if (what < 12) {
            const unsigned growths[] = {32, 1, 3, 64, 4096, 100000, 0x800000};
            side.line.vv_SetGrowth(growths[what - 5]);
        }
    }
}

template <class Direct, class Asked>
void CompareWays(unsigned seed, const Reader (&readers)[2], unsigned width)
{
    SCOPED_TRACE("OSTRA_SEED=" + std::to_string(seed));
    Chance chance(seed);
    const CT_CString strip("abc ");
    for (int round = 0; round < 40; ++round) {
        Side<Direct> direct;
        Side<Asked> asked;
        direct.file.data = asked.file.data = chance.Text(width);
        direct.file.most = asked.file.most = chance.Below(3) ? 0xFFFFFFFF : 2 + chance.Below(5000);
        const bool mixed = chance.Below(8) == 0;
        const unsigned rare = 1 + chance.Below(200);
        unsigned kind = chance.Below(4) != 0;
        for (int after = 0; after < 3;) {
            const unsigned what = chance.Below(12);
            if (chance.Below(rare) == 0 && (what != 11 || round % 8 == 0)) {
                Disturb(direct, what);
                Disturb(asked, what);
            }
            if (mixed && chance.Below(50) == 0)
                kind = !kind;
            const CT_String* set = chance.Below(16) ? nullptr : &strip;
            const Seen seen = direct.Read(readers[kind], set);
            ASSERT_EQ(seen, asked.Read(readers[kind], set))
                << "round " << round << ", offset " << direct.file.offset;
            after += seen.result == 0;
        }
    }
}
} // namespace

TEST(FileLinesWays, BytesAreSeenTheSameEitherWay)
{
    CompareWays<CT_CString, Foreign<CT_CString>>(Seed(19970101), NARROW, 1);
}

TEST(FileLinesWays, UnitsAreSeenTheSameEitherWay)
{
    CompareWays<CT_UString, Foreign<CT_UString>>(Seed(19970101), WIDE, 2);
}

// A process with threads counts blocks by interlocked steps.
TEST(FileLinesWays, BytesAreSeenTheSameInAThread)
{
    std::thread([] {
        CompareWays<CT_CString, Foreign<CT_CString>>(Seed(19970102), NARROW, 1);
    }).join();
}

// What is looked at together may end with the work buffer, and with the room of the string.
TEST(FileLinesWays, LineFeedsAreFoundAtEveryPlaceOfABlock)
{
    for (unsigned before = 0; before < 40; ++before) {
        for (unsigned length = 0; length < 280; ++length) {
            const std::string behind(length % 3 * 100, 'w');
            MemoryFile narrow, wide;
            narrow.data =
                std::string(before, 'x') + "\n" + std::string(length, 'y') + "\nzz\n" + behind;
            for (const char c : narrow.data)
                wide.data += {c, '\0'};
            CT_CString bytes;
            CT_UString units;
            if (before % 2) {
                bytes.vv_SetSize(600, 0);
                units.vv_SetSize(600, 0);
            }
            for (const unsigned wanted : {before, length, 2U}) {
                ASSERT_EQ(narrow.n_ReadLineCSequential(&bytes, nullptr), wanted + 1);
                ASSERT_EQ(bytes.vn_GetLength(), wanted);
                ASSERT_EQ(wide.n_ReadLineUSequential(&units, nullptr), wanted * 2 + 2);
                ASSERT_EQ(units.vn_GetLength(), wanted);
                ASSERT_EQ(units.vi_Compare(bytes.qccz_Get()), 0);
            }
        }
    }
}

namespace
{
// An application's string that is told of each piece of text.
class Told : public CT_CString
{
public:
    std::vector<std::string> pieces;

protected:
    void vv_StringInsert(const char* text, unsigned count, unsigned offset, unsigned page) override
    {
        pieces.emplace_back(text, count);
        CT_CString::vv_StringInsert(text, count, offset, page);
    }
};
} // namespace

TEST(FileLinesWays, AStringOfTheApplicationIsAskedForEachPiece)
{
    MemoryFile file;
    file.data = "one\ntwo\n\nthree\n";
    Told line;
    while (file.n_ReadLineCSequential(&line, nullptr)) {
    }
    EXPECT_EQ(line.pieces, (std::vector<std::string>{"one", "two", "three"}));
}

TEST(FileLinesWays, ALineThatIsHeldElsewhereStaysThere)
{
    MemoryFile file;
    file.data = "one\ntwo\nthree\n";
    CT_CString line;
    std::vector<std::unique_ptr<CT_CString>> lines;
    while (file.n_ReadLineCSequential(&line, nullptr))
        lines.push_back(std::make_unique<CT_CString>(&line));
    ASSERT_EQ(lines.size(), 3u);
    EXPECT_STREQ(lines[0]->qccz_Get(), "one");
    EXPECT_STREQ(lines[1]->qccz_Get(), "two");
    EXPECT_STREQ(lines[2]->qccz_Get(), "three");
}

// A text that was there may lie in any block.
TEST(FileLinesWays, ABlockWithoutRoomForALineIsLeftForAnother)
{
    MemoryFile narrow, wide;
    narrow.data = "one\n";
    wide.data = std::string("a\0\n\0", 4);
    CT_CString bytes("x");
    EXPECT_EQ(narrow.n_ReadLineCSequential(&bytes, nullptr), 4u);
    EXPECT_STREQ(bytes.qccz_Get(), "one");
    CT_UString units;
    {
        const CT_Buffer cut("x", 1, 1);
        units.v_Set(&cut);
    }
    EXPECT_EQ(wide.n_ReadLineUSequential(&units, nullptr), 4u);
    EXPECT_EQ(units.vn_GetLength(), 1u);
    EXPECT_EQ(units.vu_GetAt(0), 'a');
}

TEST(FileLinesWays, AnErrorOfTheThreadIsSeenBeforeALineIsTaken)
{
    for (const bool wide : {false, true}) {
        MemoryFile file;
        file.data = wide ? std::string("a\0\n\0b\0\n\0", 8) : "a\nb\n";
        const Reader read = wide ? WIDE[1] : NARROW[1];
        CT_CString narrow;
        CT_UString units;
        CT_String* line = wide ? static_cast<CT_String*>(&units) : &narrow;
        EXPECT_GT((file.*read)(line, nullptr), 0u);
        file.good = 0;
        file.vv_Flush(); // fails
        EXPECT_EQ((file.*read)(line, nullptr), 0u);
        EXPECT_EQ(TakeFailure(),
                  (Failure{MemoryFile::CODE, "(4711): failed", {"MemoryFile", "Ostra/File/File"}}));
        EXPECT_GT((file.*read)(line, nullptr), 0u) << "the line is still there";
    }
}

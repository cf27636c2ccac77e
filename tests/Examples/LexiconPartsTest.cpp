// tests/Examples/LexiconPartsTest.cpp: the pieces that the commands are made of.
#include "RunLexicon.h"

#include <Ostra/CompList/CompListBuilder.h>
#include <Ostra/Frame/Text.h>
#include <Common/Progress.h>
#include <Common/Utf8.h>
#include <Lexicon.h>
#include <Storage.h>

#include "Support/Directory.h"

#include <random>
#include <sstream>

namespace
{
using namespace std::chrono_literals;
using common::Progress;

Progress::Clock::time_point now;

Progress::Clock::time_point Now()
{
    return now;
}

std::u16string Wide(const std::string& text)
{
    CT_UString wide;
    common::ToWide(text, &wide);
    return {wide.qcuz_Get(), wide.qcuz_Get() + wide.vn_GetLength()};
}

std::string Narrow(const std::u16string& text)
{
    return common::ToUtf8(qcuz_Text(text.c_str()), static_cast<unsigned>(text.size()));
}

// The map of a file that is written begins with this, and doubles whenever it is full.
constexpr unsigned MAP = 0xFFFFF;

bool IsSame(const CT_Buffer& one, const CT_Buffer& other)
{
    return one.n_GetUsedSize() == other.n_GetUsedSize() &&
           one.b_IsEqual(other.qcv_Get(), other.n_GetUsedSize());
}

// Stores bytes behind other bytes in a new record file, and fetches both.
void CheckStored(const CT_Buffer& first, const CT_Buffer& second)
{
    const CT_UString name(qcuz_Text(u"parts.rec"));
    const CT_WinFile file(&name, 1024);
    CT_RecordManager manager(&file);
    manager.v_Create(lexicon::RECORD_HEADER_SIZE, lexicon::BLOCK_SIZE, lexicon::RESOURCE_MAX_COUNT);
    lexicon::Part parts[2];
    EXPECT_TRUE(AddPart(&manager, &first, &parts[0]));
    EXPECT_TRUE(AddPart(&manager, &second, &parts[1]));
    manager.v_Close(1);
    manager.v_Open(CT_RecordManager::e_OpenRead, 0);
    CT_Buffer bytes;
    EXPECT_TRUE(GetPart(&manager, parts[0], &bytes));
    EXPECT_TRUE(IsSame(bytes, first));
    EXPECT_TRUE(GetPart(&manager, parts[1], &bytes));
    EXPECT_TRUE(IsSame(bytes, second));
    manager.v_Close(1);
}

std::string RandomBytes(unsigned size, std::mt19937* random)
{
    std::string bytes(size, 0);
    for (char& byte : bytes)
        byte = static_cast<char>((*random)());
    return bytes;
}

// Words that share little, so that a list of them is large.
Pairs RandomPairs(unsigned count)
{
    std::mt19937 random(Seed(517534));
    Pairs pairs;
    for (unsigned n = 0; n < count; ++n) {
        std::string word = std::to_string(n);
        for (unsigned length = 20 + random() % 20; length; --length)
            word += static_cast<char>('a' + random() % 26);
        pairs.emplace_back(word, "t");
    }
    return pairs;
}
} // namespace

TEST(Utf8, OnlyWellFormedTextPasses)
{
    const struct
    {
        const char* text;
        bool good;
    } cases[] = {
        {"", true},
        {"plain", true},
        {"\x7F", true},
        {"\x80", false},
        {"\xBF", false},
        {"\xC0\x80", false},
        {"\xC1\xBF", false},
        {"\xC2\x80", true},
        {"\xC2", false},
        {"\xC2\x7F", false},
        {"\xC2\xC0", false},
        {"\xDF\xBF", true},
        {"\xE0\x9F\xBF", false},
        {"\xE0\xA0\x80", true},
        {"\xE0\xA0", false},
        {"\xE0\xA0\x7F", false},
        {"\xED\x9F\xBF", true},
        {"\xED\xA0\x80", false},
        {"\xED\xBF\xBF", false},
        {"\xEE\x80\x80", true},
        {"\xEF\xBF\xBF", true},
        {"\xF0\x8F\xBF\xBF", false},
        {"\xF0\x90\x80\x80", true},
        {"\xF0\x90\x80", false},
        {"\xF0\x90\x80\xC0", false},
        {"\xF4\x8F\xBF\xBF", true},
        {"\xF4\x90\x80\x80", false},
        {"\xF5\x80\x80\x80", false},
        {"\xF8\x88\x80\x80\x80", false},
        {"\xFE", false},
        {"\xFF", false},
        {"good \xE2\x82\xAC then \xE2\x82", false},
    };
    for (const auto& row : cases)
        EXPECT_EQ(common::IsUtf8(row.text), row.good) << testing::PrintToString(row.text);
}

TEST(Utf8, TextGoesToUnitsAndBack)
{
    const struct
    {
        const char* narrow;
        const char16_t* wide;
    } cases[] = {
        {"", u""},
        {"plain", u"plain"},
        {"\x7F\xC2\x80\xDF\xBF\xE0\xA0\x80\xEF\xBF\xBF", u"\x7F\x80\x7FF\x800\xFFFF"},
        {"\xF0\x90\x80\x80", u"\xD800\xDC00"},
        {"\xF4\x8F\xBF\xBF", u"\xDBFF\xDFFF"},
        {"a\xF0\x9F\x98\x80\xF0\x9D\x84\x9E\xC3\xA4", u"a\xD83D\xDE00\xD834\xDD1E\xE4"},
    };
    for (const auto& row : cases) {
        EXPECT_TRUE(Wide(row.narrow) == row.wide) << row.narrow;
        EXPECT_EQ(Narrow(row.wide), row.narrow);
    }
}

TEST(Utf8, ALoneSurrogateComesOutAsTheReplacementCharacter)
{
    EXPECT_EQ(Narrow(u"a\xD800"), "a\xEF\xBF\xBD");
    EXPECT_EQ(Narrow(u"\xDC00z"), "\xEF\xBF\xBDz");
    EXPECT_EQ(Narrow(u"\xD800\xD800\xDC00"), "\xEF\xBF\xBD\xF0\x90\x80\x80");
}

TEST(Storage, TheChecksumIsTheKnownOne)
{
    const CT_Buffer digits("123456789", 9, 32);
    EXPECT_EQ(lexicon::Checksum(&digits), 0xCBF43926u);
    const CT_Buffer nothing;
    EXPECT_EQ(lexicon::Checksum(&nothing), 0u);
    // Of every length to a whole number of four bytes.
    const CT_Buffer letters("abc", 3, 32);
    EXPECT_EQ(lexicon::Checksum(&letters), 0x352441C2u);
    const CT_Buffer sentence("The quick brown fox jumps over the lazy dog", 43, 32);
    EXPECT_EQ(lexicon::Checksum(&sentence), 0x414FA339u);
    const CT_Buffer eight("abcdefgh", 8, 32);
    EXPECT_EQ(lexicon::Checksum(&eight), 0xAEEF2A50u);
    const CT_Buffer six("abcdef", 6, 32);
    EXPECT_EQ(lexicon::Checksum(&six), 0x4B8E39EFu);
}

TEST(Storage, PartsThatEndAnywhereAroundTheStepsOfTheMapComeBackAsTheyWere)
{
    std::mt19937 random(Seed(1048575));
    const std::string bytes = RandomBytes(4 * MAP, &random);
    const CT_Buffer second(bytes.data() + 3 * MAP, 70000, 32);
    for (unsigned size :
         {MAP - 70000, MAP - 1400, MAP - 1, MAP, MAP + 1, 2 * MAP - 1400, 2 * MAP, 3 * MAP}) {
        SCOPED_TRACE(size);
        CheckStored(CT_Buffer(bytes.data(), size, 32), second);
    }
}

TEST(Storage, APartOfAnySizeIsOneRecord)
{
    std::mt19937 random(Seed(1048576));
    const std::string bytes = RandomBytes(5000000, &random);
    const CT_UString name(qcuz_Text(u"parts.rec"));
    const CT_WinFile file(&name, 1024);
    CT_RecordManager manager(&file);
    manager.v_Create(lexicon::RECORD_HEADER_SIZE, lexicon::BLOCK_SIZE, lexicon::RESOURCE_MAX_COUNT);
    for (unsigned size : {0u, 1u, 56u, 57u, 300000u, 5000000u}) {
        SCOPED_TRACE(size);
        const unsigned before = manager.n_GetRecordCount();
        const CT_Buffer whole(bytes.data(), size, 32);
        lexicon::Part part;
        EXPECT_TRUE(AddPart(&manager, &whole, &part));
        EXPECT_EQ(manager.n_GetRecordCount() - before, size ? 1u : 0u);
        CT_Buffer fetched;
        EXPECT_TRUE(GetPart(&manager, part, &fetched));
        EXPECT_TRUE(IsSame(fetched, whole));
    }
    manager.v_Close(1);
}

TEST(Storage, AListLargerThanAStepOfTheMapIsTheOneThatWasBuilt)
{
    const Pairs pairs = RandomPairs(40000);
    MakeLexicon(Lines(pairs));
    CT_CompListBuilder builder(CT_CompList::et_ElementSize(lexicon::ELEMENT_SIZE),
                               lexicon::HANDLE_SIZE, 0, 1, 128, lexicon::CODE_PAGE_UTF16);
    builder.v_SetOrder(CT_CompListBuilder::bo_ByWeight);
    unsigned handle = 0;
    CT_UString key;
    for (const auto& [source, target] : pairs) {
        common::ToWide(source, &key);
        EXPECT_EQ(builder.b_Add(&key, handle), 1);
        handle += static_cast<unsigned>(source.size() + target.size() + 3);
    }
    CT_Buffer block;
    builder.v_Build(&block);
    EXPECT_GT(block.n_GetUsedSize(), 2 * MAP);

    const CT_UString name(qcuz_Text(u"words.rec"));
    lexicon::Lexicon words(&name);
    EXPECT_TRUE(words.Open() && words.Load(lexicon::SOURCES));
    EXPECT_TRUE(IsSame(*words.List(lexicon::SOURCES).pcco_GetBuffer(), block));
    EXPECT_EQ(RunLexicon({"lookup", "words.rec", pairs.back().first}).output,
              pairs.back().first + "\tt\n");
}

TEST(Progress, NothingIsWrittenOfShortWork)
{
    std::ostringstream stream;
    now = {};
    {
        Progress progress(&stream, "work", Now);
        now += 499ms;
        progress.Show(1, 2);
    }
    EXPECT_EQ(stream.str(), "");
}

TEST(Progress, TheBarIsDrawnTenTimesASecondAndTakenAway)
{
    std::ostringstream stream;
    now = {};
    {
        Progress progress(&stream, "work", Now);
        now += 500ms;
        progress.Show(1, 4);
        now += 99ms;
        progress.Show(2, 4);
        now += 1ms;
        progress.Show(3, 4);
    }
    const std::string quarter = "\rwork [" + std::string(10, '#') + std::string(30, '.') + "] 25 %";
    const std::string most = "\rwork [" + std::string(30, '#') + std::string(10, '.') + "] 75 %";
    EXPECT_EQ(stream.str(), quarter + most + "\r" + std::string(most.size() - 1, ' ') + "\r");
}

TEST(Progress, WithoutATerminalThereIsNone)
{
    now = {};
    Progress progress(nullptr, "work", Now);
    now += 10s;
    progress.Show(1, 1);
}

TEST(Progress, WorkWithoutASizeIsDone)
{
    std::ostringstream stream;
    now = {};
    Progress progress(&stream, "work", Now);
    now += 1s;
    progress.Show(0, 0);
    EXPECT_NE(stream.str().find("] 100 %"), std::string::npos);
}

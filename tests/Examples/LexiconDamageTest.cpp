// tests/Examples/LexiconDamageTest.cpp: files that are no lexicon, or no longer one.
#include "RunLexicon.h"

#include <Ostra/Frame/Text.h>
#include <Lexicon.h>
#include <Storage.h>

#include "Support/Directory.h"

#include <cstring>
#include <random>

namespace
{
// Every place in the native runs; a sample where files are slow.
#ifdef _WIN32
constexpr size_t STRIDE = 3;
#else
constexpr size_t STRIDE = 1;
#endif

const std::string SMALL = "car\tAuto\ncat\tKatze\ndo\ttun\n";

const Arguments REQUESTS[] = {
    {"info", "words.rec"}, {"list", "words.rec"}, {"lookup", "words.rec", "--reverse", "tun"}};

// The answers of the undamaged file.
class Damage
{
public:
    Damage()
    {
        MakeLexicon(SMALL);
        bytes = ReadBytes("words.rec");
        for (const Arguments& request : REQUESTS)
            answers.push_back(RunLexicon(request).output);
    }

    // Each request must be refused or get the right answer; returns how many were refused.
    unsigned Try(const std::string& damaged) const
    {
        WriteBytes("words.rec", damaged);
        unsigned refused = 0;
        for (size_t n = 0; n < answers.size(); ++n) {
            const Answer answer = RunLexicon(REQUESTS[n]);
            if (IsRefusal(answer))
                ++refused;
            else
                EXPECT_EQ(answer.output, answers[n]) << answer.errors;
        }
        return refused;
    }

    std::string bytes;
    std::vector<std::string> answers;
};

std::string WithNumber(std::string bytes, size_t offset, unsigned number)
{
    std::memcpy(&bytes[offset], &number, sizeof number);
    return bytes;
}

// A record file with these measures, which a function fills.
template <class Fill>
void MakeRecordFile(unsigned headerSize, unsigned blockSize, unsigned resources, Fill fill)
{
    const CT_UString name(qcuz_Text(u"words.rec"));
    const CT_WinFile file(&name, 1024);
    CT_RecordManager manager(&file);
    manager.v_Create(headerSize, blockSize, resources);
    fill(&manager);
    manager.v_Close(1);
}

template <class Fill>
void MakeOwnRecordFile(Fill fill)
{
    MakeRecordFile(lexicon::RECORD_HEADER_SIZE, lexicon::BLOCK_SIZE, lexicon::RESOURCE_MAX_COUNT,
                   fill);
}

void AddResource(CT_RecordManager* manager, const std::string& text)
{
    const CT_Buffer bytes(text.data(), static_cast<unsigned>(text.size()), 32);
    manager->v_AddResource(lexicon::DIRECTORY, &bytes);
}

// A lexicon with a right directory over parts of any content: one word on each side.
void MakeForgedLexicon(const CT_Buffer& list, const std::string& texts)
{
    MakeOwnRecordFile([&](CT_RecordManager* manager) {
        const CT_Buffer bytes(texts.data(), static_cast<unsigned>(texts.size()), 32);
        lexicon::Directory directory;
        directory.pairs = 1;
        for (int side = 0; side < lexicon::SIDES; ++side) {
            directory.words[side] = 1;
            EXPECT_TRUE(AddPart(manager, &list, &directory.lists[side]));
            EXPECT_TRUE(AddTexts(manager, &bytes, &directory.texts[side]));
        }
        CT_Buffer written;
        directory.Write(&written);
        manager->v_AddResource(lexicon::DIRECTORY, &written);
    });
}

void MakeForgedLexicon(unsigned elementSize, unsigned handle, const std::string& texts)
{
    CT_CompList list(CT_CompList::et_ElementSize(elementSize), 4, 0, 1, 128, 1200);
    list.b_Add(qcuz_Text(u"a"), handle);
    MakeForgedLexicon(*list.pcco_GetBuffer(), texts);
}

std::string Refusal(const Arguments& arguments)
{
    const Answer answer = RunLexicon(arguments);
    EXPECT_TRUE(IsRefusal(answer)) << answer.output;
    return answer.errors;
}

std::string Refusal(const std::string& command)
{
    return Refusal({command, "words.rec"});
}
} // namespace

TEST(LexiconDamage, AnAlteredByteIsNoticedOrWithoutEffect)
{
    const Damage damage;
    unsigned refused = 0;
    for (size_t offset = 0; offset < damage.bytes.size(); offset += STRIDE) {
        SCOPED_TRACE(offset);
        std::string damaged = damage.bytes;
        damaged[offset] = static_cast<char>(damaged[offset] ^ 0xFF);
        refused += damage.Try(damaged) > 0;
    }
    // At least every byte of the parts, of the directory and of the words that tell where they lie.
    EXPECT_GE(refused, (176u + 29 + 188 + 29 + 72 + 40) / STRIDE);
}

TEST(LexiconDamage, AnAlteredBitOfTheDataIsNoticed)
{
    const Damage damage;
    for (size_t offset = 0; offset < damage.bytes.size(); offset += 3 * STRIDE) {
        SCOPED_TRACE(offset);
        std::string damaged = damage.bytes;
        damaged[offset] = static_cast<char>(damaged[offset] ^ 1u << offset % 8);
        damage.Try(damaged);
    }
}

TEST(LexiconDamage, AFileCutAnywhereIsRefused)
{
    const Damage damage;
    for (size_t size = 0; size < damage.bytes.size(); size += size % 64 < 2 ? 1 : 31) {
        SCOPED_TRACE(size);
        EXPECT_EQ(damage.Try(damage.bytes.substr(0, size)), std::size(REQUESTS));
    }
    EXPECT_EQ(damage.Try(damage.bytes + '\0'), std::size(REQUESTS));
}

TEST(LexiconDamage, ExtremeNumbersDoNoHarmAnywhere)
{
    const Damage damage;
    for (unsigned number : {0u, 1u, 3u, 0x7FFFFFFFu, 0x80000000u, 0xFFFFFFFCu, 0xFFFFFFFFu}) {
        for (size_t offset = 0; offset < 128; offset += 4) {
            SCOPED_TRACE(testing::Message() << number << " at " << offset);
            damage.Try(WithNumber(damage.bytes, offset, number));
        }
        for (size_t offset = 1280; offset < damage.bytes.size(); offset += 4 * STRIDE) {
            SCOPED_TRACE(testing::Message() << number << " at " << offset);
            damage.Try(WithNumber(damage.bytes, offset, number));
        }
    }
}

TEST(LexiconDamage, DamageInManyPlacesDoesNoHarm)
{
    const Damage damage;
    const unsigned seed = Seed(20260301);
    SCOPED_TRACE(seed);
    std::mt19937 random(seed);
    for (int round = 0; round < 300; ++round) {
        std::string damaged = damage.bytes;
        for (unsigned n = 1 + random() % 8; n; --n)
            damaged =
                WithNumber(damaged, random() % (damaged.size() / 4) * 4, random() >> random() % 32);
        damage.Try(damaged);
    }
}

TEST(LexiconDamage, WhatIsNoRecordFileIsTold)
{
    const std::string error =
        "lexicon: cannot read words.rec: (31050): Invalid RecordManager file format in words.rec\n";
    for (const std::string& bytes :
         {std::string(), std::string("a\tb\n"), std::string(5000, 'x')}) {
        SCOPED_TRACE(bytes.size());
        WriteBytes("words.rec", bytes);
        for (const char* command : {"list", "info"})
            EXPECT_EQ(Refusal(command), error);
        EXPECT_EQ(Refusal({"lookup", "words.rec", "a"}), error);
    }
}

TEST(LexiconDamage, ARecordFileOfAnotherKindIsTold)
{
    const std::string error = "lexicon: words.rec: this is a record file, but no lexicon\n";
    MakeRecordFile(16, 64, 4, [](CT_RecordManager* manager) { AddResource(manager, "LEXI"); });
    EXPECT_EQ(Refusal("list"), error);
    MakeRecordFile(56, 128, 4, [](CT_RecordManager* manager) { AddResource(manager, "LEXI"); });
    EXPECT_EQ(Refusal("list"), error);
    MakeRecordFile(56, 64, 5, [](CT_RecordManager* manager) { AddResource(manager, "LEXI"); });
    EXPECT_EQ(Refusal("list"), error);
    MakeOwnRecordFile([](CT_RecordManager* manager) {
        const CT_Buffer record("record", 6, 32);
        manager->n_AddRecord(&record);
    });
    EXPECT_EQ(Refusal("list"), error);
    for (const std::string& text :
         {std::string(), std::string("LE"), std::string("other text"),
          std::string("LEXI\1\0\0\0\0\0\0\0", 12), std::string("LEXI\4\0\0\0\0\0\0\0", 12)}) {
        MakeOwnRecordFile([&](CT_RecordManager* manager) { AddResource(manager, text); });
        EXPECT_EQ(Refusal("list"), error);
    }
}

TEST(LexiconDamage, ARecordFileThatWasNeverSavedIsTold)
{
    MakeOwnRecordFile([](CT_RecordManager*) {});
    EXPECT_EQ(Refusal("list"), "lexicon: words.rec: this is a record file, but no lexicon\n");
    {
        const CT_UString name(qcuz_Text(u"words.rec"));
        const CT_WinFile file(&name, 1024);
        CT_RecordManager manager(&file);
        manager.v_Create(lexicon::RECORD_HEADER_SIZE, lexicon::BLOCK_SIZE,
                         lexicon::RESOURCE_MAX_COUNT);
    }
    EXPECT_EQ(Refusal("list"), "lexicon: words.rec: the lexicon is damaged in its header\n");
}

TEST(LexiconDamage, TheDamagedPlaceIsTold)
{
    const Damage damage;
    const struct
    {
        size_t offset;
        const char* what;
    } cases[] = {
        {80, "its header"},
        {76, "its directory"},
        // The blocks: the list of the sources from 1344 on, then its texts, the same of the
        // targets, the directory.
        {1400, "a list of words"},
        {1344 + 192 + 8, "the texts of a list"},
        {1344 + 192 + 64 + 70, "a list of words"},
        {1344 + 192 + 64 + 256 + 8, "the texts of a list"},
        {1344 + 192 + 64 + 256 + 64 + 20, "its directory"},
    };
    for (const auto& row : cases) {
        SCOPED_TRACE(row.offset);
        std::string damaged = damage.bytes;
        ++damaged[row.offset];
        WriteBytes("words.rec", damaged);
        EXPECT_EQ(Refusal("info"),
                  std::string("lexicon: words.rec: the lexicon is damaged in ") + row.what + "\n");
    }
}

TEST(LexiconDamage, AForgedListIsRefused)
{
    const std::string error = "lexicon: words.rec: the lexicon is damaged in a list of words\n";
    const CT_Buffer nothing;
    MakeForgedLexicon(nothing, std::string("a\0b\0\0", 5));
    EXPECT_EQ(Refusal("list"), error);
    const CT_Buffer few("few bytes", 9, 32);
    MakeForgedLexicon(few, std::string("a\0b\0\0", 5));
    EXPECT_EQ(Refusal("list"), error);
    MakeForgedLexicon(1, 0, std::string("a\0b\0\0", 5));
    EXPECT_EQ(Refusal("list"), error);
}

TEST(LexiconDamage, AForgedStreamIsRefusedBeforeAWalk)
{
    const std::string error = "lexicon: words.rec: the lexicon is damaged in a list of words\n";
    CT_CompList list(CT_CompList::es_Short, 4, 0, 1, 128, 1200);
    list.b_Add(qcuz_Text(u"ab"), 0);
    // An alternative that leads to itself, for ever.
    const std::string good(static_cast<const char*>(list.pcco_GetBuffer()->qcv_Get()),
                           list.n_GetEnd());
    std::string bytes = good.substr(0, 134) + std::string("\x0D\0\0\0\0\0", 6) + good.substr(134);
    bytes = WithNumber(bytes, 4, static_cast<unsigned>(bytes.size()));
    MakeForgedLexicon(CT_Buffer(bytes.data(), static_cast<unsigned>(bytes.size()), 32),
                      std::string("ab\0c\0\0", 6));
    EXPECT_EQ(RunLexicon({"info", "words.rec"}).status, 0);
    EXPECT_EQ(Refusal("stats"), error);
    EXPECT_EQ(Refusal({"match", "words.rec", "*"}), error);
    EXPECT_EQ(Refusal({"draw", "words.rec", "a", "-o", "out.svg"}), error);
    EXPECT_EQ(Names(), std::vector<std::string>{"words.rec"});
}

TEST(LexiconDamage, ForgedTextsAreRefused)
{
    const std::string error = "lexicon: words.rec: the lexicon is damaged in the texts of a list\n";
    const Arguments lookUp = {"lookup", "words.rec", "a"};
    MakeForgedLexicon(2, 0, std::string("a\0b\0\0", 5));
    EXPECT_EQ(RunLexicon(lookUp).output, "a\tb\n");
    EXPECT_EQ(RunLexicon({"list", "words.rec"}).output, "a\tb\n");
    MakeForgedLexicon(2, 5, std::string("a\0b\0\0", 5));
    EXPECT_EQ(Refusal(lookUp), error);
    EXPECT_EQ(Refusal({"match", "words.rec", "*"}), error);
    EXPECT_EQ(Refusal({"draw", "words.rec", "", "-o", "out.svg"}), error);
    MakeForgedLexicon(2, 0x80000000, std::string("a\0b\0\0", 5));
    EXPECT_EQ(Refusal(lookUp), error);
    MakeForgedLexicon(2, 2, std::string("a\0b\0\0", 5));
    EXPECT_EQ(Refusal(lookUp), error);
    MakeForgedLexicon(2, 0, std::string("a\0b\0", 4));
    EXPECT_EQ(Refusal(lookUp), error);
    EXPECT_EQ(Refusal("list"), error);
    MakeForgedLexicon(2, 0, "a");
    EXPECT_EQ(Refusal("list"), error);
}

// tests/Examples/LexiconPiecesTest.cpp: a look-up reads and tests what it needs, and no more.
#include "RunLexicon.h"

#include <Ostra/Frame/Text.h>
#include <Lexicon.h>
#include <Storage.h>

#include "Support/Directory.h"

namespace
{
const std::string DAMAGED = "lexicon: words.rec: the lexicon is damaged in the texts of a list\n";

// Texts of some pieces on each side; entries lie across their bounds.
Pairs ManyPairs()
{
    Pairs pairs;
    for (unsigned n = 0; n < 3000; ++n)
        pairs.emplace_back("w" + std::to_string(n),
                           "t" + std::to_string(n) + "." + std::string(90, 'x'));
    return pairs;
}

// The file with another byte where the text first appears, or where it last does.
void Alter(const std::string& good, const std::string& text, bool last = false)
{
    std::string bytes = good;
    const size_t at = last ? bytes.rfind(text) : bytes.find(text);
    ASSERT_NE(at, std::string::npos);
    bytes[at] = static_cast<char>(bytes[at] ^ 1);
    WriteBytes("words.rec", bytes);
}

// The file as it was in version 2: the texts of a side are one part.
void MakeVersionTwo(const CT_CompList& list, const std::string& texts, bool altered)
{
    const CT_UString name(qcuz_Text(u"words.rec"));
    const CT_WinFile file(&name, 1024);
    CT_RecordManager manager(&file);
    manager.v_Create(lexicon::RECORD_HEADER_SIZE, lexicon::BLOCK_SIZE, lexicon::RESOURCE_MAX_COUNT);
    const CT_Buffer bytes(texts.data(), static_cast<unsigned>(texts.size()), 32);
    std::vector<unsigned> numbers = {0x4958454C, 2, 1, 1, 1};
    for (int side = 0; side < lexicon::SIDES; ++side) {
        for (const CT_Buffer* buffer : {list.pcco_GetBuffer(), &bytes}) {
            lexicon::Part part;
            EXPECT_TRUE(AddPart(&manager, buffer, &part));
            numbers.insert(numbers.end(), {part.size, part.checksum + altered, part.record});
        }
    }
    CT_Buffer directory(numbers.data(), static_cast<unsigned>(numbers.size() * 4), 32);
    const unsigned checksum = lexicon::Checksum(&directory);
    directory.v_Append(&checksum, 4);
    manager.v_AddResource(lexicon::DIRECTORY, &directory);
    manager.v_Close(1);
}
} // namespace

TEST(LexiconPieces, TextsAreOneRecordAPiece)
{
    MakeLexicon(Lines(ManyPairs()));
    const CT_UString name(qcuz_Text(u"words.rec"));
    lexicon::Lexicon words(&name);
    ASSERT_TRUE(words.Open());
    for (const lexicon::Texts& texts : words.Contents().texts) {
        const size_t count = (texts.size + lexicon::PIECE_SIZE - 1) / lexicon::PIECE_SIZE;
        EXPECT_GT(count, 4u);
        ASSERT_EQ(texts.pieces.size(), count);
        for (size_t n = 0; n + 1 < count; ++n)
            EXPECT_EQ(texts.pieces[n].size, lexicon::PIECE_SIZE);
        EXPECT_EQ(texts.pieces[count - 1].size, texts.size - (count - 1) * lexicon::PIECE_SIZE);
    }
}

TEST(LexiconPieces, EveryWordIsFoundWhereverItsTextsLie)
{
    const Pairs pairs = ManyPairs();
    MakeLexicon(Lines(pairs));
    Arguments lookUp = {"lookup", "words.rec"};
    std::string expected;
    for (size_t n = 0; n < pairs.size(); ++n) {
        const auto& [word, other] = pairs[n * 1009 % pairs.size()];
        lookUp.push_back(word);
        expected += word + "\t" + other + "\n";
    }
    EXPECT_TRUE(RunLexicon(lookUp).output == expected);
    EXPECT_TRUE(RunLexicon({"list", "words.rec"}).output == Lines(pairs));
}

TEST(LexiconPieces, DamageElsewhereIsNoMatterOfALookUp)
{
    const Pairs pairs = ManyPairs();
    MakeLexicon(Lines(pairs));
    const std::string good = ReadBytes("words.rec");
    const std::string answer = pairs[5].first + "\t" + pairs[5].second + "\n";
    const std::string distant(pairs[2990].second + '\0');
    for (const bool reverse : {false, true}) {
        SCOPED_TRACE(reverse);
        // The sources' texts lie in front of the targets'.
        Alter(good, distant, reverse);
        EXPECT_EQ(RunLexicon({"lookup", "words.rec", "w5"}).output, answer);
        EXPECT_EQ(RunLexicon({"lookup", "words.rec", "--reverse", pairs[5].second}).output,
                  pairs[5].second + "\tw5\n");
        EXPECT_EQ(RunLexicon({"info", "words.rec"}).errors, DAMAGED);
    }
    Alter(good, distant);
    EXPECT_EQ(RunLexicon({"list", "words.rec"}).errors, DAMAGED);
    EXPECT_EQ(RunLexicon({"match", "words.rec", "w5"}).errors, DAMAGED);
    EXPECT_EQ(RunLexicon({"draw", "words.rec", "w5", "-o", "out.svg"}).errors, DAMAGED);
}

TEST(LexiconPieces, DamageInAPieceThatIsReadIsRefusedBeforeAnyAnswer)
{
    const Pairs pairs = ManyPairs();
    MakeLexicon(Lines(pairs));
    const std::string good = ReadBytes("words.rec");
    Alter(good, pairs[2990].second + '\0');
    for (const Arguments& lookUp :
         {Arguments{"lookup", "words.rec", "w2990"}, Arguments{"lookup", "words.rec", "w2991"},
          Arguments{"lookup", "words.rec", "w5", "nothing", "w2990"}}) {
        const Answer answer = RunLexicon(lookUp);
        EXPECT_TRUE(IsRefusal(answer)) << answer.output;
        EXPECT_EQ(answer.errors, DAMAGED);
    }
}

TEST(LexiconPieces, TheListOfTheDirectionAskedIsTested)
{
    MakeLexicon("car\tAuto\ncat\tKatze\n");
    const std::string good = ReadBytes("words.rec");
    const std::string error = "lexicon: words.rec: the lexicon is damaged in a list of words\n";
    // The head of a list begins with its magic.
    const std::string magic("\x35\xB8\x30\x01", 4);
    Alter(good, magic);
    EXPECT_EQ(RunLexicon({"lookup", "words.rec", "car"}).errors, error);
    EXPECT_EQ(RunLexicon({"lookup", "words.rec", "--reverse", "Auto"}).output, "Auto\tcar\n");
    Alter(good, magic, true);
    EXPECT_EQ(RunLexicon({"lookup", "words.rec", "car"}).output, "car\tAuto\n");
    EXPECT_EQ(RunLexicon({"lookup", "words.rec", "--reverse", "Auto"}).errors, error);
}

TEST(LexiconPieces, AFileOfVersionTwoIsReadAsItWas)
{
    CT_CompList list(CT_CompList::es_Short, 4, 0, 1, 128, 1200);
    const std::string texts =
        "a" + std::string(1, '\0') + std::string(200000, 'b') + std::string(2, '\0');
    list.b_Add(qcuz_Text(u"a"), 0);
    MakeVersionTwo(list, texts, false);
    const std::string expected = "a\t" + std::string(200000, 'b') + "\n";
    EXPECT_TRUE(RunLexicon({"lookup", "words.rec", "a"}).output == expected);
    EXPECT_TRUE(RunLexicon({"list", "words.rec"}).output == expected);
    EXPECT_EQ(RunLexicon({"info", "words.rec"}).status, 0);
    MakeVersionTwo(list, texts, true);
    EXPECT_TRUE(IsRefusal(RunLexicon({"lookup", "words.rec", "a"})));
    MakeVersionTwo(list, "", false);
    EXPECT_EQ(RunLexicon({"lookup", "words.rec", "a"}).errors, DAMAGED);
    EXPECT_EQ(RunLexicon({"lookup", "words.rec", "b"}).status, 1);
}

TEST(LexiconPieces, ADirectoryThatTellsMorePiecesThanItHasIsRefused)
{
    for (const unsigned size : {1u, 65537u, 0x7FFFFFFFu, 0xFFFFFFFFu}) {
        SCOPED_TRACE(size);
        const CT_UString name(qcuz_Text(u"words.rec"));
        const CT_WinFile file(&name, 1024);
        CT_RecordManager manager(&file);
        manager.v_Create(lexicon::RECORD_HEADER_SIZE, lexicon::BLOCK_SIZE,
                         lexicon::RESOURCE_MAX_COUNT);
        lexicon::Directory directory;
        directory.texts[lexicon::TARGETS].size = size;
        CT_Buffer bytes;
        directory.Write(&bytes);
        manager.v_AddResource(lexicon::DIRECTORY, &bytes);
        manager.v_Close(1);
        EXPECT_EQ(RunLexicon({"info", "words.rec"}).errors,
                  "lexicon: words.rec: the lexicon is damaged in its directory\n");
    }
}

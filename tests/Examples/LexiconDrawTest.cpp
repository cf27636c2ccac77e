// tests/Examples/LexiconDrawTest.cpp: pictures of a part of a list.
//
// With OSTRA_MAKE_PICTURES set the pictures of docs/formats are written anew.
#include "RunLexicon.h"

#include <Commands.h>
#include <Drawing.h>
#include <Glyph.h>

#include "Support/Directory.h"

#include <algorithm>
#include <cstdlib>
#include <random>
#include <set>

namespace
{
using lexicon::Glyph;

const std::string GRIN = "\xF0\x9F\x98\x80";

// Draws what is below a prefix, and gives the picture.
std::string Picture(const Arguments& more)
{
    Arguments arguments = {"draw", "words.rec", "-o", "out.svg"};
    arguments.insert(arguments.end(), more.begin(), more.end());
    const Answer answer = RunLexicon(arguments);
    EXPECT_EQ(answer.status, 0) << answer.errors;
    EXPECT_TRUE(answer.output.starts_with("out.svg: "));
    return ReadBytes("out.svg");
}

unsigned Count(const std::string& text, const std::string& part)
{
    unsigned count = 0;
    for (size_t place = text.find(part); place != text.npos; place = text.find(part, place + 1))
        ++count;
    return count;
}

bool Holds(const std::string& text, const std::string& part)
{
    return text.find(part) != text.npos;
}

// ---- XML --------------------------------------------------------------------------------------

// Text, or the value of an attribute: no markup, and no ampersand but in front of a name.
bool IsText(const std::string& text)
{
    for (size_t place = 0; place < text.size(); ++place) {
        if (text[place] == '<' || text[place] == '>')
            return false;
        const std::string rest = text.substr(place, 6);
        if (rest[0] == '&' && !rest.starts_with("&amp;") && !rest.starts_with("&lt;") &&
            !rest.starts_with("&gt;") && !rest.starts_with("&quot;"))
            return false;
    }
    return true;
}

// name="value" after name="value", each with a blank in front.
bool AreAttributes(std::string text)
{
    while (!text.empty()) {
        const size_t name = text.find("=\"");
        const size_t end = text.find('"', name + 2);
        if (text[0] != ' ' || name == text.npos || end == text.npos || name < 2 ||
            !IsText(text.substr(name + 2, end - name - 2)))
            return false;
        text.erase(0, end + 1);
    }
    return true;
}

// Whether tags are closed in turn, and markup stands nowhere else.
bool IsWellFormed(const std::string& text)
{
    std::vector<std::string> open;
    size_t place = 0;
    while (place < text.size()) {
        const size_t start = std::min(text.find('<', place), text.size());
        if (!IsText(text.substr(place, start - place)))
            return false;
        const size_t end = text.find('>', start);
        if (end == text.npos)
            return open.empty() && start == text.size();
        std::string tag = text.substr(start + 1, end - start - 1);
        place = end + 1;
        if (tag.starts_with('/')) {
            if (open.empty() || tag != "/" + open.back())
                return false;
            open.pop_back();
            continue;
        }
        const bool isEmpty = tag.ends_with('/');
        if (isEmpty)
            tag.pop_back();
        const size_t name = std::min(tag.find(' '), tag.size());
        if (!name || !AreAttributes(tag.substr(name)))
            return false;
        if (!isEmpty)
            open.push_back(tag.substr(0, name));
    }
    return open.empty();
}

// Characters that no document may hold don't occur.
bool IsPlain(const std::string& text)
{
    return std::none_of(text.begin(), text.end(),
                        [](unsigned char c) { return (c < 0x20 && c != '\n') || c == 0x7F; }) &&
           !Holds(text, "\xEF\xBF\xBE") && !Holds(text, "\xEF\xBF\xBF") && !Holds(text, "\xED\xA0");
}

// ---- Places -----------------------------------------------------------------------------------

struct Area
{
    int left;
    int top;
    int right;
    int bottom;

    bool Meets(const Area& other) const
    {
        return left < other.right && other.left < right && top < other.bottom && other.top < bottom;
    }
};

// The number behind a piece of text, looked for from a place on, which moves behind the number.
int NumberBehind(const std::string& text, const std::string& piece, size_t* place)
{
    const size_t found = text.find(piece, *place);
    EXPECT_NE(found, text.npos) << piece;
    *place = text.find_first_not_of("0123456789", found + piece.size());
    return std::stoi(text.substr(found + piece.size()));
}

std::string WithoutLegend(const std::string& picture)
{
    return picture.substr(0, picture.find("<g transform"));
}

// The boxes and handles above the legend.
std::vector<Area> Areas(const std::string& picture)
{
    const std::string drawn = WithoutLegend(picture);
    std::vector<Area> areas;
    for (size_t place = 0; (place = drawn.find("<rect class=", place)) != drawn.npos;) {
        const int left = NumberBehind(drawn, " x=\"", &place);
        const int top = NumberBehind(drawn, " y=\"", &place);
        const int right = left + NumberBehind(drawn, " width=\"", &place);
        areas.push_back({left, top, right, top + NumberBehind(drawn, " height=\"", &place)});
    }
    return areas;
}

// The alternatives, with the tip of the arrow.
std::vector<Area> Arrows(const std::string& picture)
{
    const std::string drawn = WithoutLegend(picture);
    std::vector<Area> arrows;
    for (size_t place = 0; (place = drawn.find("class=\"other\"", place)) != drawn.npos;) {
        const int x = NumberBehind(drawn, "d=\"M", &place);
        const int top = NumberBehind(drawn, " ", &place);
        arrows.push_back({x - 3, top, x + 3, NumberBehind(drawn, "V", &place) + 6});
    }
    return arrows;
}

// Nothing lies on anything else, arrows lead from box to box, and all of it is inside.
void CheckPlaces(const std::string& picture)
{
    size_t place = 0;
    const int width = NumberBehind(picture, " width=\"", &place);
    const int height = NumberBehind(picture, " height=\"", &place);
    const std::vector<Area> areas = Areas(picture);
    for (size_t n = 0; n < areas.size(); ++n) {
        EXPECT_LT(areas[n].right, width);
        EXPECT_LT(areas[n].bottom, height);
        for (size_t other = 0; other < n; ++other)
            EXPECT_FALSE(areas[n].Meets(areas[other])) << n << " " << other;
    }
    for (const Area& arrow : Arrows(picture)) {
        EXPECT_LT(arrow.top, arrow.bottom);
        EXPECT_TRUE(std::none_of(areas.begin(), areas.end(),
                                 [&](const Area& area) { return area.Meets(arrow); }));
        EXPECT_TRUE(std::any_of(areas.begin(), areas.end(), [&](const Area& area) {
            return area.bottom == arrow.top && area.left < arrow.left && arrow.right < area.right;
        }));
        EXPECT_TRUE(std::any_of(areas.begin(), areas.end(), [&](const Area& area) {
            return area.top == arrow.bottom && area.left < arrow.left && arrow.right < area.right;
        }));
    }
}

// ---- The pictures of the documents ------------------------------------------------------------

void CheckPicture(const std::string& name, const std::string& picture)
{
    const std::filesystem::path path = std::filesystem::path(OSTRA_PICTURES) / name;
    if (std::getenv("OSTRA_MAKE_PICTURES"))
        WriteBytes(path, picture);
    EXPECT_TRUE(ReadBytes(path) == picture) << name;
}

std::string NoNote(unsigned)
{
    return "";
}
} // namespace

TEST(LexiconDraw, TheWorkedExampleOfTheFormatIsItsPicture)
{
    const std::string bytes = DataFile("complist-example-grown.hex");
    const CT_Buffer block(bytes.data(), static_cast<unsigned>(bytes.size()), 32);
    const CT_CompList list(&block);
    lexicon::Subtree subtree;
    EXPECT_TRUE(subtree.Take(list, {}, 5));
    CheckPicture("compressed-list.svg", lexicon::Draw(subtree, 1, NoNote));
}

TEST(LexiconDraw, APartOfTheSampleIsItsPicture)
{
    MakeLexicon(ReadBytes(LEXICON_SAMPLE));
    CheckPicture("compressed-list-lexicon.svg", Picture({"Z"}));
}

TEST(LexiconDraw, ThePictureShowsCharactersEndsAndAlternatives)
{
    MakeLexicon("car\tAuto\ncat\tKatze\ndo\ttun\nca\tetwa\ncart\tKarren\ncart\tWagen\n");
    const std::string picture = Picture({""});
    EXPECT_TRUE(IsWellFormed(picture));
    EXPECT_FALSE(Holds(picture, "class=\"given\""));
    EXPECT_TRUE(Holds(picture, ">All words</text>"));
    EXPECT_TRUE(Holds(picture, ">5 words, 7 characters, 2 alternatives</text>"));
    EXPECT_EQ(Areas(picture).size(), 7u + 5);
    EXPECT_EQ(Count(picture, "class=\"other\""), 2u + 1);
    EXPECT_EQ(Count(picture, "class=\"inner\""), 2u + 1);
    EXPECT_EQ(Count(picture, "class=\"leaf\""), 3u + 1);
    // Each handle is the place of the texts, and leads to them.
    EXPECT_TRUE(Holds(picture, "<title>car: Auto</title>"));
    EXPECT_TRUE(Holds(picture, "<title>cart: Karren, Wagen</title>"));
    EXPECT_TRUE(Holds(picture, ">29</text>"));
    // From the mark behind c at 134 to d.
    EXPECT_TRUE(Holds(picture, "<title>element 100 at byte 170</title>"));
    EXPECT_TRUE(Holds(picture, "<title>alternative, 36 bytes on</title>"));
}

TEST(LexiconDraw, OnlyWhatIsBelowThePrefixIsShown)
{
    MakeLexicon("car\tAuto\ncat\tKatze\ndo\ttun\nca\tetwa\ncart\tKarren\n");
    const struct
    {
        const char* prefix;
        const char* counts;
        unsigned given;
    } cases[] = {
        {"c", ">4 words, 4 characters, 1 alternative<", 1},
        {"ca", ">4 words, 3 characters, 1 alternative<", 2},
        {"car", ">2 words, 1 character, 0 alternatives<", 3},
        {"cart", ">1 word, 0 characters, 0 alternatives<", 4},
        {"cat", ">1 word, 0 characters, 0 alternatives<", 3},
        {"d", ">1 word, 1 character, 0 alternatives<", 1},
    };
    for (const auto& row : cases) {
        SCOPED_TRACE(row.prefix);
        const std::string picture = Picture({row.prefix});
        EXPECT_TRUE(IsWellFormed(picture));
        EXPECT_TRUE(Holds(picture, std::string(">Words that begin with ") + row.prefix + "<"));
        EXPECT_TRUE(Holds(picture, row.counts));
        EXPECT_EQ(Count(picture, "class=\"given\""), row.given + 1);
        CheckPlaces(picture);
    }
}

TEST(LexiconDraw, AnswersTellTheFileAndItsWords)
{
    MakeLexicon("car\tAuto\ncat\tKatze\n");
    EXPECT_EQ(RunLexicon({"draw", "words.rec", "ca", "-o", "out.svg"}).output,
              "out.svg: 2 words\n");
    EXPECT_EQ(RunLexicon({"draw", "words.rec", "car", "-o", "out.svg"}).output,
              "out.svg: 1 word\n");
    EXPECT_EQ(RunLexicon({"draw", "words.rec", "-o", "out.svg", "--reverse", "K"}).output,
              "out.svg: 1 word\n");
    EXPECT_TRUE(Holds(ReadBytes("out.svg"), "<title>Katze: cat</title>"));
    EXPECT_EQ(Names(), (std::vector<std::string>{"out.svg", "words.rec", "words.tsv"}));
}

TEST(LexiconDraw, AnyTextMakesAWellFormedDocument)
{
    const std::vector<std::string> letters = {"a",
                                              "<",
                                              ">",
                                              "&",
                                              "\"",
                                              "'",
                                              " ",
                                              "\x0B",
                                              "\x7F",
                                              "\xC2\x85",
                                              "\xC2\xA0",
                                              "\xCC\x81",
                                              GRIN,
                                              "\xD7\xA9" /* Hebrew */,
                                              "\xE2\x80\xAE",
                                              "\xE6\xBC\xA2",
                                              "\xEF\xBF\xBE",
                                              "\xEF\xBF\xBF",
                                              "]]>",
                                              "--"};
    Pairs pairs;
    for (const std::string& letter : letters)
        for (const std::string& other : letters)
            pairs.emplace_back(letter + other, other + "\t" + letter);
    MakeLexicon(Lines(pairs));
    const std::string picture = Picture({"", "--limit", "1000"});
    EXPECT_TRUE(IsWellFormed(picture));
    EXPECT_TRUE(IsPlain(picture));
    CheckPlaces(picture);
    for (const std::string& letter : letters) {
        const std::string part = Picture({"--", letter});
        EXPECT_TRUE(IsWellFormed(part)) << letter;
        EXPECT_TRUE(IsPlain(part)) << letter;
    }
}

TEST(LexiconDraw, NothingOverlapsInRandomPictures)
{
    for (unsigned round = 0; round < 8; ++round) {
        const unsigned seed = Seed(19970101) + round;
        SCOPED_TRACE(seed);
        std::mt19937 random(seed);
        Pairs pairs;
        std::set<std::string> words;
        for (unsigned n = 0; n < 5u << round % 6; ++n) {
            std::string word;
            for (unsigned length = 1 + random() % 9; length; --length)
                word += static_cast<char>('a' + random() % 3);
            pairs.emplace_back(word, "t");
            words.insert(word);
        }
        MakeLexicon(Lines(pairs));
        const std::string picture = Picture({""});
        CheckPlaces(picture);
        for (const std::string& word : words)
            EXPECT_TRUE(Holds(picture, "<title>" + word + ": t</title>")) << word;
        EXPECT_EQ(Count(picture, ": t</title>"), words.size());
    }
}

TEST(LexiconDraw, ALongTranslationIsCutBetweenCharacters)
{
    std::string text;
    for (int n = 0; n < 40; ++n)
        text += "\xC3\xA4"
                "b";
    MakeLexicon("a\t" + text + "\n");
    const std::string picture = Picture({"a"});
    EXPECT_TRUE(Holds(picture, "<title>a: " + text + "</title>"));
    EXPECT_TRUE(Holds(picture, text.substr(0, 48) + "\xE2\x80\xA6</tspan>"));
}

TEST(LexiconDraw, MoreWordsThanTheLimitAreRefused)
{
    Pairs pairs;
    for (unsigned n = 100; n <= 300; ++n)
        pairs.emplace_back("w" + std::to_string(n), "t");
    MakeLexicon(Lines(pairs));
    Answer answer = RunLexicon({"draw", "words.rec", "w", "-o", "out.svg"});
    EXPECT_TRUE(IsRefusal(answer));
    EXPECT_EQ(answer.errors, "lexicon: 201 words begin with \"w\", and a picture shows 200: give a "
                             "longer prefix or --limit\n");
    EXPECT_FALSE(std::filesystem::exists("out.svg"));
    EXPECT_EQ(RunLexicon({"draw", "words.rec", "w", "-o", "out.svg", "--limit", "201"}).output,
              "out.svg: 201 words\n");
    EXPECT_EQ(RunLexicon({"draw", "words.rec", "w1", "-o", "out.svg"}).output,
              "out.svg: 100 words\n");
    answer = RunLexicon({"draw", "words.rec", "w30", "-o", "out.svg", "--limit", "1"});
    EXPECT_EQ(answer.output, "out.svg: 1 word\n");
}

TEST(LexiconDraw, APrefixOfNoWordIsRefused)
{
    MakeLexicon("car\tAuto\ncat\tKatze\n" + GRIN + "\tgrin\n");
    for (const char* prefix : {"x", "cab", "cars", "C", "\xF0\x9F\x98\x81"}) {
        const Answer answer = RunLexicon({"draw", "words.rec", prefix, "-o", "out.svg"});
        EXPECT_TRUE(IsRefusal(answer));
        EXPECT_EQ(answer.errors, std::string("lexicon: no word begins with \"") + prefix + "\"\n");
    }
    EXPECT_EQ(RunLexicon({"draw", "words.rec", "a\x19", "-o", "out.svg"}).errors,
              "lexicon: the prefix holds U+0019, which no key can hold\n");
    EXPECT_EQ(RunLexicon({"draw", "words.rec", "\xFF", "-o", "out.svg"}).errors,
              "lexicon: the prefix is not well-formed UTF-8\n");
    MakeLexicon("");
    EXPECT_EQ(RunLexicon({"draw", "words.rec", "", "-o", "out.svg"}).errors,
              "lexicon: no word begins with \"\"\n");
    EXPECT_FALSE(std::filesystem::exists("out.svg"));
}

TEST(LexiconDraw, APictureThatCannotBeWrittenIsTold)
{
    MakeLexicon("car\tAuto\n");
    const std::string lexicon = ReadBytes("words.rec");
    Answer answer = RunLexicon({"draw", "words.rec", "c", "-o", "none/out.svg"});
    EXPECT_TRUE(IsRefusal(answer));
    EXPECT_EQ(answer.errors,
              "lexicon: cannot write none/out.svg: " + SystemError(3, "none/out.svg.new") + "\n");
    std::filesystem::create_directory("out.svg");
    answer = RunLexicon({"draw", "words.rec", "c", "-o", "out.svg"});
    EXPECT_TRUE(IsRefusal(answer));
    EXPECT_EQ(answer.errors, "lexicon: out.svg: this is no plain file\n");
    EXPECT_TRUE(std::filesystem::is_directory("out.svg"));
    answer = RunLexicon({"draw", "words.rec", "c", "-o", "words.rec"});
    EXPECT_TRUE(IsRefusal(answer));
    EXPECT_EQ(answer.errors, "lexicon: words.rec: this is the input as well as the output\n");
    EXPECT_EQ(RunLexicon({"draw", "words.rec", "c", "-o", "\xFF"}).errors,
              "lexicon: the name of the picture is not well-formed UTF-8\n");
    EXPECT_TRUE(ReadBytes("words.rec") == lexicon);
}

TEST(LexiconDraw, AnOldPictureIsReplaced)
{
    MakeLexicon("car\tAuto\n");
    WriteBytes("out.svg", std::string(100000, 'x'));
    EXPECT_TRUE(IsWellFormed(Picture({"c"})));
}

TEST(Glyph, CharactersWithoutAFormAreShownByTheirCode)
{
    const struct
    {
        unsigned character;
        unsigned before;
        unsigned elementSize;
        const char* text;
        bool isCode;
    } cases[] = {
        {'a', 0, 2, "a", false},
        {'<', 0, 2, "<", false},
        {' ', 0, 2, "\xE2\x90\xA3", false},
        {0x0B, 0, 2, "000B", true},
        {0x7F, 0, 2, "007F", true},
        {0xA0, 0, 2, "00A0", true},
        {0xE4, 0, 2, "\xC3\xA4", false},
        {0x301, 0, 2, "\xE2\x97\x8C\xCC\x81", false},
        {0x20AC, 0, 2, "\xE2\x82\xAC", false},
        {0x200E, 0, 2, "200E", true},
        {0x202E, 0, 2, "202E", true},
        {0x6F22, 0, 2, "\xE6\xBC\xA2", false},
        {0xD83D, 0, 2, "D83D", true},
        {0xDE00, 0xD83D, 2, "\xF0\x9F\x98\x80", false},
        {0xDE00, 0xDE00, 2, "DE00", true},
        {0xDE00, 'a', 2, "DE00", true},
        {0xE000, 0, 2, "E000", true},
        {0xFFFE, 0, 2, "FFFE", true},
        {0xFFFF, 0, 2, "FFFF", true},
        {'~', 0, 1, "~", false},
        {' ', 0, 1, "\xE2\x90\xA3", false},
        {0x7F, 0, 1, "7F", true},
        {0xE4, 0, 1, "E4", true},
        {0x1F600, 0, 4, "\xF0\x9F\x98\x80", false},
        {0x110000, 0, 4, "00110000", true},
    };
    for (const auto& row : cases) {
        SCOPED_TRACE(row.character);
        const Glyph glyph = lexicon::ShowCharacter(row.character, row.before, row.elementSize);
        EXPECT_EQ(glyph.text, row.text);
        EXPECT_EQ(glyph.isCode, row.isCode);
    }
}

TEST(Glyph, TextKeepsWhatADocumentCanHold)
{
    EXPECT_EQ(lexicon::ShowText({'a', 0xD83D, 0xDE00, 0xE4}, 2), "a" + GRIN + "\xC3\xA4");
    EXPECT_EQ(lexicon::ShowText({0x0B, 0xD83D, 'a', 0xDE00}, 2), "\xEF\xBF\xBD\xEF\xBF\xBD"
                                                                 "a\xEF\xBF\xBD");
    EXPECT_EQ(lexicon::ShowText({'a', 0xE4}, 1), "a\xEF\xBF\xBD");
    EXPECT_EQ(lexicon::ShowText(std::string("a\tb\x0B" + GRIN)), "a b\xEF\xBF\xBD" + GRIN);
    EXPECT_EQ(lexicon::ShowText(std::string("\xEF\xBF\xBF\xE2\x80\xAE<")),
              "\xEF\xBF\xBD\xEF\xBF\xBD<");
}

// tests/Ostra/Unicode/CharDecomposeTest.cpp: base characters and decomposition.
#include "Ostra/String/StringSupport.h"
#include "Ostra/Unicode/CharSupport.h"
#include "Ostra/Unicode/DecompositionRows.h"
#include "Support/Failure.h"

#include <Ostra/Unicode/CharMappings.h>
#include <Ostra/Unicode/CharProperties.h>

using M = CT_CharMappings;
using namespace std::string_literals;

static std::u16string Sequence(unsigned unit)
{
    CT_UString text;
    const unsigned count = M::sn_Decompose(static_cast<Unit>(unit), &text);
    EXPECT_EQ(text.vn_GetLength(), count == 1 ? 0 : count) << Name(unit);
    return Text(text);
}

static std::u16string String(const std::vector<Unit>& units)
{
    return {units.begin(), units.end()};
}

// ---- Characters -------------------------------------------------------------------------------

TEST(CharMappings, BaseTellingValues)
{
    EXPECT_EQ(M::su_ToBase(0xD8), 0x4F);
    EXPECT_EQ(M::su_ToBase(0xE9), 0x65);
    EXPECT_EQ(M::su_ToBase(0x65), 0x65);
    EXPECT_EQ(M::su_ToBase(0x01C4), 0x44);
    EXPECT_EQ(M::su_ToBase(0x1EAC), 0x41);
    EXPECT_EQ(M::su_ToBase(0x304C), 0x304B);
}

TEST(CharMappings, DecompositionTellingValues)
{
    EXPECT_EQ(M::sn_Decompose(0xE9, nullptr), 2u);
    EXPECT_EQ(M::sn_Decompose(0x65, nullptr), 1u);
    EXPECT_EQ(M::sn_Decompose(0x1D5, nullptr), 3u);
    EXPECT_EQ(M::sn_Decompose(0, nullptr), 1u);
    EXPECT_EQ(Sequence(0xC9), u"\x45\u0301");
    EXPECT_EQ(Sequence(0x1D5), u"\x55\u0308\u0304");
}

TEST(CharMappings, OwnSequencesAreThoseOfTheList)
{
    for (const DecompositionRow& row : OWN_SEQUENCES)
        EXPECT_EQ(Sequence(Expand(row.source)[0]), String(Expand(row.sequence))) << row.source;
}

TEST(CharMappings, VoicedKanaEndInTheHalfwidthMarks)
{
    for (Unit unit : Expand(VOICED))
        EXPECT_EQ(Sequence(unit), (std::u16string{static_cast<char16_t>(unit - 1), 0xFF9E}))
            << Name(unit);
    for (Unit unit : Expand(SEMI_VOICED))
        EXPECT_EQ(Sequence(unit), (std::u16string{static_cast<char16_t>(unit - 2), 0xFF9F}))
            << Name(unit);
    for (const DecompositionRow& row : VOICED_U)
        EXPECT_EQ(Sequence(Expand(row.source)[0]), String(Expand(row.sequence))) << row.source;
    const UnitSet decomposed(DECOMPOSED), kana("3040..30FF");
    EXPECT_EQ(Count([&](Unit u) { return decomposed(u) && kana(u); }),
              Expand(VOICED).size() + Expand(SEMI_VOICED).size() + std::size(VOICED_U));
}

TEST(CharMappings, DecomposedCharactersAreThoseOfTheList)
{
    const UnitSet decomposed(DECOMPOSED);
    EXPECT_EQ(decomposed.Count(), 601u);
    EXPECT_EQ(Differences([](Unit u) { return M::sn_Decompose(u, nullptr) > 1; }, decomposed), "");
    EXPECT_EQ(Count([](Unit u) { return M::sn_Decompose(u, nullptr) == 2; }), 495u);
    EXPECT_EQ(Count([](Unit u) { return M::sn_Decompose(u, nullptr) == 3; }), 106u);
    EXPECT_EQ(Count([](Unit u) { return M::sn_Decompose(u, nullptr) == 1; }), UNITS - 601);
}

TEST(CharMappings, DecomposedCharactersOfEachScript)
{
    static const struct
    {
        const char* units;
        unsigned count;
    } SCRIPTS[] = {
        {"0041..02AF 1E00..1EFF", 478},
        {"0370..03FF", 22},
        {"0400..04FF", 30},
        {"0900..097F", 8},
        {"0980..09FF", 3},
        {"0A00..0A7F", 5},
        {"0B00..0B7F", 3},
        {"3040..309F", 26},
        {"30A0..30FF", 26},
    };
    for (const auto& script : SCRIPTS) {
        const UnitSet units(script.units);
        EXPECT_EQ(Count([&](Unit u) { return units(u) && M::sn_Decompose(u, nullptr) > 1; }),
                  script.count)
            << script.units;
    }
}

TEST(CharMappings, BaseIsTheFirstOfTheSequenceInOneStep)
{
    EXPECT_EQ(Differences(M::su_ToBase,
                          [](Unit u) {
                              const std::u16string sequence = Sequence(u);
                              return sequence.empty() ? u : sequence[0];
                          }),
              "");
}

TEST(CharMappings, DecompositionReplacesWhatTheResultHeld)
{
    CT_UString result(U(u"a long text that goes")), other(&result);
    EXPECT_EQ(M::sn_Decompose(0xE9, &result), 2u);
    EXPECT_EQ(Text(result), u"e\u0301");
    EXPECT_EQ(Text(other), u"a long text that goes");
    EXPECT_EQ(UsesOf(other), 1u);
}

TEST(CharMappings, MissingDecompositionLeavesTheResultUntouched)
{
    CT_UString result(U(u"old"));
    const void* before = DataOf(result);
    EXPECT_EQ(M::sn_Decompose(u'e', &result), 1u);
    EXPECT_EQ(Text(result), u"old");
    EXPECT_EQ(DataOf(result), before);
    const CT_UString other(&result);
    EXPECT_EQ(M::sn_Decompose(u'e', &result), 1u);
    EXPECT_EQ(DataOf(result), before);
    EXPECT_EQ(UsesOf(result), 2u);
    CT_UString empty;
    EXPECT_EQ(M::sn_Decompose(u'e', &empty), 1u);
    EXPECT_EQ(DataOf(empty), nullptr);
}

// ---- Strings ----------------------------------------------------------------------------------

struct DecomposeCase
{
    const char* name;
    std::u16string source;
    std::u16string result;
};

// E is e with acute, A is a with grave, U is u with diaeresis and macron, in capitals.
#define E_ u"\x45\u0301"
#define A_ u"\x41\u0300"
#define U_ u"\x55\u0308\u0304"

static const DecomposeCase STRINGS[] = {
    {"nothing", u"", u""},
    {"one character", u"\u00C9", E_},
    {"two characters", u"\u00C9\u00C0", E_ A_},
    {"three units", u"\u01D5\u00C9", U_ E_},
    // Plain characters before the first decomposed one vanish, those behind it repeat it.
    {"plain", u"abc", u""},
    {"plain before and behind", u"a\u00C9b", E_ E_},
    {"plain behind, twice", u"\u00C9bc", E_ E_ E_},
    {"plain behind each", u"x\u00C9b\u01D5cd", E_ E_ U_ U_ U_},
    {"low surrogate is plain", u"\xDC00\u00C9\xDFFF", E_ E_},
    {"private use is plain", u"\u00C9\xE000", E_ E_},
    {"zero is plain", u"\0\u00C9\0\u00C0\0"s, E_ E_ A_ A_},
    {"combining mark is plain", u"e\u0301", u""},
    // Once only: the second character is composed still.
    {"digraph", u"\u01C4", u"D\u017D"},
    // A high surrogate and the unit behind it stay.
    {"pair", u"\xD800\xDC00", u"\xD800\xDC00"},
    {"pair between", u"\u00C9\xD834\xDD1E\x62", E_ u"\xD834\xDD1E" E_},
    {"pair leaves the work as it is",
     u"a\xD800\xDC00"
     u"b",
     u"\xD800\xDC00"},
    {"private pair", u"\xDB80\xDC00\xDBFF\xDFFF", u"\xDB80\xDC00\xDBFF\xDFFF"},
    {"high surrogate protects", u"\xD800\u00C9", u"\xD800\u00C9"},
    {"protected one isn't repeated", u"\xD800\u00C9z", u"\xD800\u00C9"},
    {"plain one is protected too", u"\xD800z\u00C9", u"\xD800z" E_},
    {"two high surrogates", u"\xD800\xDBFF\u00C9", u"\xD800\xDBFF" E_},
    {"three high surrogates", u"\xD800\xDBFF\xDB80\u00C9", u"\xD800\xDBFF\xDB80\u00C9"},
    {"zero behind a high surrogate", u"\xD800\0\u00C9"s, u"\xD800" E_},
    {"high surrogate at the end", u"\u00C9\xD800", E_ u"\xD800"},
    {"high surrogate alone", u"\xDBFF", u"\xDBFF"},
};

static void Store(CT_UString& s, const std::u16string& text)
{
    s.v_Set(U(text.c_str()), static_cast<unsigned>(text.size()));
}

TEST(CharMappings, DecomposeRepeatsTheLastSequenceForPlainCharacters)
{
    for (const DecomposeCase& row : STRINGS) {
        SCOPED_TRACE(row.name);
        CT_UString source, result(U(u"what was there before"));
        Store(source, row.source);
        M::sv_Decompose(&source, &result);
        EXPECT_EQ(Text(result), row.result);
        EXPECT_EQ(Text(source), row.source);
        M::sv_Decompose(&source);
        EXPECT_EQ(Text(source), row.result);
    }
}

// A string that tells which of its units are read.
class ReadString : public CT_UString
{
public:
    using CT_UString::CT_UString;
    unsigned short vu_GetAt(unsigned n_Offset) const override
    {
        read.push_back(n_Offset);
        return CT_UString::vu_GetAt(n_Offset);
    }

    mutable std::vector<unsigned> read;
};

// Behind a high surrogate at the end that is the terminator.
TEST(CharMappings, DecomposeReadsEachUnitOnce)
{
    const ReadString source(U(u"\u00C9\xD800zb\xDBFF"));
    CT_UString result;
    M::sv_Decompose(&source, &result);
    EXPECT_EQ(Text(result), E_ u"\xD800z" E_ u"\xDBFF");
    EXPECT_EQ(source.read, (std::vector<unsigned>{0, 1, 2, 3, 4, 5}));
}

// Each call starts anew: the last sequence of one is nothing to the next.
TEST(CharMappings, DecomposeRemembersNothingBetweenCalls)
{
    const CT_UString first(U(u"\u00C9")), second(U(u"b"));
    CT_UString result;
    M::sv_Decompose(&first, &result);
    M::sv_Decompose(&second, &result);
    EXPECT_EQ(Text(result), u"");
}

TEST(CharMappings, DecomposeLeavesASourceThatSharesWithTheResult)
{
    for (const DecomposeCase& row : STRINGS) {
        SCOPED_TRACE(row.name);
        CT_UString source;
        Store(source, row.source);
        CT_UString result(&source);
        M::sv_Decompose(&source, &result);
        EXPECT_EQ(Text(result), row.result);
        EXPECT_EQ(Text(source), row.source);
        EXPECT_EQ(UsesOf(source), 1u);
        EXPECT_NE(DataOf(source), DataOf(result));
    }
}

TEST(CharMappings, DecomposeLeavesAThirdHolderOfTheResult)
{
    const CT_UString source(U(u"a\u00C9b")), empty;
    for (const CT_UString* from : {&source, &empty}) {
        CT_UString result(U(u"old"));
        const CT_UString third(&result);
        M::sv_Decompose(from, &result);
        EXPECT_EQ(Text(result), from == &source ? E_ E_ : u"");
        EXPECT_EQ(Text(third), u"old");
        EXPECT_EQ(UsesOf(third), 1u);
    }
}

TEST(CharMappings, DecomposeIntoTheSourceItselfDoesAsInPlace)
{
    CT_UString s(U(u"a\u00C9b"));
    M::sv_Decompose(&s, &s);
    EXPECT_EQ(Text(s), E_ E_);
    EXPECT_EQ(Read(s), E_ E_);
    CT_UString plain(U(u"abc"));
    M::sv_Decompose(&plain, &plain);
    EXPECT_EQ(Text(plain), u"");
    CT_UString shared(U(u"\u00C9\xD800\xDC00"));
    const CT_UString other(&shared);
    M::sv_Decompose(&shared, &shared);
    EXPECT_EQ(Text(shared), E_ u"\xD800\xDC00");
    EXPECT_EQ(Text(other), u"\u00C9\xD800\xDC00");
}

TEST(CharMappings, DecomposeInPlaceLeavesTheOtherHolder)
{
    CT_UString s(U(u"a\u00C9b"));
    const CT_UString other(&s);
    M::sv_Decompose(&s);
    EXPECT_EQ(Text(s), E_ E_);
    EXPECT_EQ(UsesOf(s), 1u);
    EXPECT_EQ(Text(other), u"a\u00C9b");
    EXPECT_EQ(UsesOf(other), 1u);
}

TEST(CharMappings, DecomposeGivesAPlainSourceNoHold)
{
    const CT_UString source(U(u"abc"));
    CT_UString result(&source);
    EXPECT_EQ(UsesOf(source), 2u);
    M::sv_Decompose(&source, &result);
    EXPECT_EQ(result.vn_GetLength(), 0u);
    EXPECT_EQ(UsesOf(source), 1u);
}

// What the rule makes of a text.
static std::u16string Model(const std::u16string& source)
{
    std::u16string work, out;
    for (std::size_t n = 0; n < source.size(); ++n) {
        if (0xD800 <= source[n] && source[n] <= 0xDBFF) {
            out += source[n++];
            if (n < source.size() && source[n])
                out += source[n];
            continue;
        }
        const std::u16string sequence = Sequence(source[n]);
        if (!sequence.empty())
            work = sequence;
        out += work;
    }
    return out;
}

// All texts of up to five units of every kind.
TEST(CharMappings, DecomposeDoesAsTheModelDoes)
{
    std::vector<std::u16string> texts{u""};
    for (std::size_t n = 0; texts[n].size() < 5; ++n)
        for (char16_t unit : {u'\u00C9', u'\u01D5', u'a', u'\0', u'\xD800', u'\xDC00'})
            texts.push_back(texts[n] + unit);
    for (const std::u16string& text : texts) {
        CT_UString source, result;
        Store(source, text);
        M::sv_Decompose(&source, &result);
        ASSERT_EQ(Text(result), Model(text)) << Narrow(text);
    }
}

TEST(CharMappings, DecomposeOfBytesGoesThroughAWideString)
{
    const CT_CString narrow("\xE9t\xC0", ALL, 1252);
    CT_UString wide(&narrow);
    M::sv_Decompose(&wide);
    EXPECT_EQ(Text(wide), u"e\u0301e\u0301A\u0300");
}

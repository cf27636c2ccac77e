// tests/Ostra/Containers/AlphaTreeTest.cpp
#include <Ostra/Containers/AlphaTree.h>
#include <Ostra/String/CString.h>
#include <Ostra/String/UString.h>

#include "Ostra/Containers/AlphaTreePeer.h"
#include "Support/Failure.h"
#include "Support/SmallStack.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <string>

namespace
{
constexpr unsigned NONE = 0xFFFFFFFF;
typedef AlphaTreePeer::Node Node;

// The tree as a text: branches in their order as "(", characters, "=value" and ")".
std::string Shape(const Node& node)
{
    std::string text;
    if (node.n_Value != NONE)
        text += "=" + std::to_string(node.n_Value);
    for (unsigned n = 0; n < node.n2_NrOfBranches; ++n) {
        const Node& branch = node.pso_Branches[n];
        text += "(" + Narrow(std::u16string(1, branch.u_Character)) + Shape(branch) + ")";
    }
    EXPECT_EQ(node.pso_Branches == nullptr, node.n2_NrOfBranches == 0);
    return text;
}

std::string Shape(const CT_AlphaTree& tree)
{
    return Shape(AlphaTreePeer::Root(tree));
}

std::string Dump(CT_AlphaTree& tree, CT_AlphaTree::et_ElementSize size)
{
    testing::internal::CaptureStdout();
    tree.v_Dump(size);
    std::string text = testing::internal::GetCapturedStdout();
    std::erase(text, '\r');
    return text;
}
} // namespace

// ---- Add and search -----------------------------------------------------------------------

TEST(AlphaTree, ANewTreeHasARootAndNoKeys)
{
    CT_AlphaTree tree;
    const Node& root = AlphaTreePeer::Root(tree);
    EXPECT_EQ(root.u_Character, 0xFFFF);
    EXPECT_EQ(root.n2_NrOfBranches, 0);
    EXPECT_EQ(root.n_Value, NONE);
    EXPECT_EQ(root.pso_Branches, nullptr);
    EXPECT_EQ(tree.n_Search("a"), NONE);
    EXPECT_EQ(tree.n_Search(""), NONE);
    EXPECT_EQ(tree.n_Search(Units(u"a")), NONE);
    EXPECT_EQ(tree.n_GetNrOfEntries(), 0U);
    EXPECT_EQ(tree.b_Remove("a"), 0);
    EXPECT_EQ(tree.b_Remove(""), 0);
}

TEST(AlphaTree, NeitherBeginningNorContinuationOfAKeyIsAKey)
{
    CT_AlphaTree tree;
    tree.v_Add("ab", 7);
    EXPECT_EQ(tree.n_Search("ab"), 7U);
    EXPECT_EQ(tree.n_Search("a"), NONE);
    EXPECT_EQ(tree.n_Search("abc"), NONE);
    EXPECT_EQ(tree.n_Search(""), NONE);
    EXPECT_EQ(tree.n_Search("b"), NONE);
    EXPECT_EQ(tree.n_GetNrOfEntries(), 1U);
}

TEST(AlphaTree, AKeyAddedAgainTakesTheLaterNumber)
{
    CT_AlphaTree tree;
    tree.v_Add("key", 1);
    tree.v_Add("key", 2);
    EXPECT_EQ(tree.n_Search("key"), 2U);
    EXPECT_EQ(tree.n_GetNrOfEntries(), 1U);
    EXPECT_EQ(Shape(tree), "(k(e(y=2)))");
}

TEST(AlphaTree, TheEmptyKeyLivesInTheRoot)
{
    CT_AlphaTree tree;
    tree.v_Add("", 5);
    EXPECT_EQ(tree.n_Search(""), 5U);
    EXPECT_EQ(tree.n_Search(Units(u"")), 5U);
    EXPECT_EQ(tree.n_GetNrOfEntries(), 1U);
    EXPECT_EQ(AlphaTreePeer::Root(tree).n_Value, 5U);
    EXPECT_EQ(tree.b_Remove(""), 1);
    EXPECT_EQ(tree.n_Search(""), NONE);
    EXPECT_EQ(tree.b_Remove(""), 0);
    EXPECT_EQ(tree.n_GetNrOfEntries(), 0U);
}

TEST(AlphaTree, TheNumberForNothingEntersNodesAndNoKey)
{
    CT_AlphaTree tree;
    tree.v_Add("ab", NONE);
    EXPECT_EQ(tree.n_Search("ab"), NONE);
    EXPECT_EQ(tree.n_GetNrOfEntries(), 0U);
    EXPECT_EQ(Shape(tree), "(a(b))");
    EXPECT_EQ(tree.b_Remove("ab"), 0);
    tree.v_Add("ab", 3);
    tree.v_Add("ab", NONE);
    EXPECT_EQ(tree.n_Search("ab"), NONE);
    EXPECT_EQ(tree.n_GetNrOfEntries(), 0U);
    EXPECT_EQ(Shape(tree), "(a(b))");
}

TEST(AlphaTree, NumbersOfAnySizeComeBack)
{
    CT_AlphaTree tree;
    tree.v_Add("a", 0);
    tree.v_Add("b", 0xFFFFFFFE);
    tree.v_Add("c", 0x80000000);
    EXPECT_EQ(tree.n_Search("a"), 0U);
    EXPECT_EQ(tree.n_Search("b"), 0xFFFFFFFEU);
    EXPECT_EQ(tree.n_Search("c"), 0x80000000U);
    EXPECT_EQ(tree.n_GetNrOfEntries(), 3U);
}

TEST(AlphaTree, BranchesStandInTheOrderOfTheirAdding)
{
    CT_AlphaTree tree;
    unsigned number = 0;
    for (const char* key : {"c", "ab", "b", "aa", "ca", "a"})
        tree.v_Add(key, number++);
    EXPECT_EQ(Shape(tree), "(c=0(a=4))(a=5(b=1)(a=3))(b=2)");
}

// ---- Forms of keys ------------------------------------------------------------------------

TEST(AlphaTree, AllFormsOfAKeyReachTheSameNodes)
{
    const CT_CString bytes("k\xE9y");
    const CT_UString wide(Units(u"k\u00E9y"));
    for (int form = 0; form < 4; ++form) {
        SCOPED_TRACE(form);
        CT_AlphaTree tree;
        switch (form) {
        case 0:
            tree.v_Add("k\xE9y", 9);
            break;
        case 1:
            tree.v_Add(Units(u"k\u00E9y"), 9);
            break;
        case 2:
            tree.v_Add(&bytes, 9);
            break;
        default:
            tree.v_Add(&wide, 9);
        }
        EXPECT_EQ(Shape(tree), "(k(\\x00e9(y=9)))");
        EXPECT_EQ(tree.n_Search("k\xE9y"), 9U);
        EXPECT_EQ(tree.n_Search(Units(u"k\u00E9y")), 9U);
        EXPECT_EQ(tree.n_Search(&bytes), 9U);
        EXPECT_EQ(tree.n_Search(&wide), 9U);
    }
}

TEST(AlphaTree, AllFormsOfAKeyRemove)
{
    const CT_CString bytes("k\xE9y");
    const CT_UString wide(Units(u"k\u00E9y"));
    CT_AlphaTree tree;
    tree.v_Add("k\xE9y", 9);
    EXPECT_EQ(tree.b_Remove(Units(u"k\u00E9y")), 1);
    tree.v_Add(&wide, 9);
    EXPECT_EQ(tree.b_Remove(&bytes), 1);
    EXPECT_EQ(tree.b_Remove(&bytes), 0);
    tree.v_Add(&bytes, 9);
    EXPECT_EQ(tree.b_Remove(&wide), 1);
    EXPECT_EQ(tree.b_Remove(&wide), 0);
    EXPECT_EQ(Shape(tree), "");
}

TEST(AlphaTree, AnEmptyStringIsTheEmptyKey)
{
    const CT_CString bytes;
    const CT_UString wide;
    CT_AlphaTree tree;
    tree.v_Add(&bytes, 1);
    EXPECT_EQ(tree.n_Search(""), 1U);
    EXPECT_EQ(tree.n_Search(&wide), 1U);
    tree.v_Add(&wide, 2);
    EXPECT_EQ(tree.n_Search(&bytes), 2U);
    EXPECT_EQ(tree.b_Remove(&bytes), 1);
    EXPECT_EQ(tree.b_Remove(&wide), 0);
}

TEST(AlphaTree, UnitsAreComparedWhole)
{
    CT_AlphaTree tree;
    tree.v_Add(Units(u"\u0161"), 1);
    tree.v_Add(Units(u"\uFFFF\xD800"), 2);
    EXPECT_EQ(tree.n_Search("a"), NONE);
    EXPECT_EQ(tree.n_Search("\xFF"), NONE);
    EXPECT_EQ(tree.n_Search(Units(u"\u0161")), 1U);
    EXPECT_EQ(tree.n_Search(Units(u"\uFFFF\xD800")), 2U);
}

TEST(AlphaTree, ANodeTakesABranchForEachUnit)
{
    CT_AlphaTree tree;
    for (unsigned n = 0; n < 9363; ++n) {
        const unsigned unit = 0xFFFF - 7 * n;
        const unsigned short key[] = {static_cast<unsigned short>(unit), 0};
        tree.v_Add(key, unit);
    }
    for (unsigned unit = 0xFFFF; unit > 0xFFFF - 21; --unit) {
        const unsigned short key[] = {static_cast<unsigned short>(unit), 0};
        EXPECT_EQ(tree.n_Search(key), (0xFFFF - unit) % 7 ? NONE : unit);
    }
    EXPECT_EQ(tree.n_GetNrOfEntries(), 9363U);
}

// ---- Remove -------------------------------------------------------------------------------

struct Removal
{
    std::vector<const char*> keys; // numbered from 1
    const char* removed;
    int result;
    const char* shape;
};

TEST(AlphaTree, RemovalFollowsItsRules)
{
    static const Removal cases[] = {
        // A key that is only a beginning, or isn't there.
        {{"ab"}, "a", 0, "(a(b=1))"},
        {{"ab"}, "", 0, "(a(b=1))"},
        {{"ab"}, "abc", 0, "(a(b=1))"},
        {{"ab"}, "ax", 0, "(a(b=1))"},
        // A chain goes up to the root.
        {{"abcd"}, "abcd", 1, ""},
        {{"a"}, "a", 1, ""},
        // It goes up to where another branch is.
        {{"abc", "ax"}, "abc", 1, "(a(x=2))"},
        {{"abc", "ax"}, "ax", 1, "(a(b(c=1)))"},
        // A node with branches stays, with no number.
        {{"a", "ab"}, "a", 1, "(a(b=2))"},
        {{"abc", "ab", "abd"}, "ab", 1, "(a(b(c=1)(d=3)))"},
        // Below a number the branch stays.
        {{"a", "ab"}, "ab", 1, "(a=1(b))"},
        {{"a", "abcd"}, "abcd", 1, "(a=1(b))"},
        {{"a", "ab", "ac"}, "ab", 1, "(a=1(b)(c=3))"},
        {{"abc", "abcde"}, "abcde", 1, "(a(b(c=1(d))))"},
        // At the root as well.
        {{"", "a"}, "a", 1, "=1(a)"},
        {{"", "abc"}, "abc", 1, "=1(a)"},
        {{"", "a", "b"}, "a", 1, "=1(a)(b=3)"},
        {{"", "a"}, "", 1, "(a=2)"},
        // The last branch takes the place.
        {{"a", "b", "c", "d"}, "a", 1, "(d=4)(b=2)(c=3)"},
        {{"a", "b", "c", "d"}, "b", 1, "(a=1)(d=4)(c=3)"},
        {{"a", "b", "c", "d"}, "d", 1, "(a=1)(b=2)(c=3)"},
        {{"xa", "xb", "xcy"}, "xa", 1, "(x(c(y=3))(b=2))"},
        {{"ak", "b", "ck"}, "ak", 1, "(c(k=3))(b=2)"},
    };
    for (const Removal& row : cases) {
        std::string name = row.removed;
        for (const char* key : row.keys)
            name += std::string(" of ") + key;
        SCOPED_TRACE(name);
        CT_AlphaTree tree;
        unsigned number = 0;
        for (const char* key : row.keys)
            tree.v_Add(key, ++number);
        EXPECT_EQ(tree.b_Remove(row.removed), row.result);
        EXPECT_EQ(Shape(tree), row.shape);
        EXPECT_EQ(tree.n_Search(row.removed), NONE);
        EXPECT_EQ(tree.n_GetNrOfEntries(), row.keys.size() - row.result);
    }
}

TEST(AlphaTree, ABranchBelowANumberStaysAndCountsForNothing)
{
    CT_AlphaTree tree;
    tree.v_Add("a", 1);
    tree.v_Add("ab", 2);
    EXPECT_EQ(tree.b_Remove("ab"), 1);
    EXPECT_EQ(tree.n_Search("a"), 1U);
    EXPECT_EQ(tree.n_Search("ab"), NONE);
    EXPECT_EQ(tree.n_GetNrOfEntries(), 1U);
    EXPECT_EQ(Shape(tree), "(a=1(b))");
    EXPECT_EQ(tree.b_Remove("ab"), 0);
    // It keeps its parent in place as well.
    EXPECT_EQ(tree.b_Remove("a"), 1);
    EXPECT_EQ(Shape(tree), "(a(b))");
    EXPECT_EQ(tree.n_GetNrOfEntries(), 0U);
    // And it serves again.
    tree.v_Add("ab", 3);
    EXPECT_EQ(Shape(tree), "(a(b=3))");
    EXPECT_EQ(tree.b_Remove("ab"), 1);
    EXPECT_EQ(Shape(tree), "");
}

TEST(AlphaTree, AKeyComesBackBehindTheOthers)
{
    CT_AlphaTree tree;
    for (const char* key : {"a", "b", "c"})
        tree.v_Add(key, 1);
    tree.b_Remove("a");
    tree.v_Add("a", 2);
    EXPECT_EQ(Shape(tree), "(c=1)(b=1)(a=2)");
}

// The depth of the tree costs no stack.
TEST(AlphaTree, AKeyOfAMillionCharactersComesAndGoes)
{
    const std::string key(1000000, 'x');
    {
        CT_AlphaTree tree;
        tree.v_Add(key.c_str(), 1);
        tree.v_Add(key.substr(0, 500000).c_str(), 2);
        EXPECT_EQ(tree.n_Search(key.c_str()), 1U);
        EXPECT_EQ(tree.n_GetNrOfEntries(), 2U);
        EXPECT_EQ(tree.b_Remove(key.c_str()), 1);
        EXPECT_EQ(tree.n_Search(key.substr(0, 500000).c_str()), 2U);
        EXPECT_EQ(tree.n_GetNrOfEntries(), 1U);
        tree.v_Add(key.c_str(), 3);
    }
}

// From the root down each node has two branches, of which the first leads on.
TEST(AlphaTree, CountAndDumpOfADeepTreeTakeLittleStack)
{
    constexpr unsigned DEPTH = 12000, STEP = 3000;
    CT_AlphaTree tree;
    std::u16string key(DEPTH, u'x');
    tree.v_Add(Units(key.c_str()), 9);
    for (unsigned at = DEPTH - 1; at > 0; --at) {
        key.resize(at);
        tree.v_Add(Units((key + u"y").c_str()), at % STEP ? NONE : at / STEP);
    }
    unsigned entries = 0;
    std::string dump;
    OnSmallStack([&] {
        entries = tree.n_GetNrOfEntries();
        dump = Dump(tree, CT_AlphaTree::es_Byte);
    });
    const std::string cut(255, 'x');
    EXPECT_EQ(entries, 4U);
    EXPECT_EQ(dump, cut + " : 9\n" + cut + " : 3\n" + cut + " : 2\n" + cut + " : 1\n");
}

// ---- Memory -------------------------------------------------------------------------------

TEST(AlphaTree, ATreeIsItsRootAndOnePointer)
{
    EXPECT_EQ(sizeof(CT_AlphaTree), sizeof(Node) + sizeof(void*));
}

TEST(AlphaTree, TheCountFollowsEachChange)
{
    CT_AlphaTree tree;
    const auto count = [&tree] {
        return tree.n_GetNrOfEntries();
    };
    tree.v_Add("", 1);
    EXPECT_EQ(count(), 1U);
    tree.v_Add("ab", 1);
    tree.v_Add("ab", 2);
    tree.v_Add("a", 3);
    EXPECT_EQ(count(), 3U);
    tree.v_Add("ab", NONE);
    tree.v_Add("ab", NONE);
    tree.v_Add("b", NONE);
    EXPECT_EQ(count(), 2U);
    tree.v_Add("ab", 4);
    EXPECT_EQ(tree.b_Remove("a"), 1);
    EXPECT_EQ(tree.b_Remove("a"), 0);
    EXPECT_EQ(count(), 2U);
    EXPECT_EQ(tree.b_Remove("ab"), 1);
    EXPECT_EQ(tree.b_Remove(""), 1);
    EXPECT_EQ(count(), 0U);
    tree.v_Add("ab", 5);
    EXPECT_EQ(count(), 1U);
}

// ---- Dump ---------------------------------------------------------------------------------

TEST(AlphaTree, DumpPrintsTheKeysByTheirBranches)
{
    CT_AlphaTree tree;
    tree.v_Add("", 99);
    unsigned number = 0;
    for (const char* key : {"c", "abc", "b", "aa", "ca", "a", "dead"})
        tree.v_Add(key, number++);
    tree.b_Remove("dead");
    tree.v_Add("b", 0xFFFFFFFE);
    const char* const expected = "c : 0\nca : 4\na : 5\nabc : 1\naa : 3\nb : -2\n";
    EXPECT_EQ(Dump(tree, CT_AlphaTree::es_Byte), expected);
    EXPECT_EQ(Dump(tree, CT_AlphaTree::es_Short), expected);
    EXPECT_EQ(Dump(tree, CT_AlphaTree::et_ElementSize(4)), expected);
    EXPECT_EQ(Dump(tree, CT_AlphaTree::et_ElementSize(0)), expected);
}

TEST(AlphaTree, DumpOfAnEmptyTreePrintsNothing)
{
    CT_AlphaTree tree;
    EXPECT_EQ(Dump(tree, CT_AlphaTree::es_Byte), "");
    EXPECT_EQ(Dump(tree, CT_AlphaTree::es_Short), "");
    tree.v_Add("", 1);
    EXPECT_EQ(Dump(tree, CT_AlphaTree::es_Byte), "");
}

TEST(AlphaTree, DumpTakesPerCentSignsAsTheyAre)
{
    CT_AlphaTree tree;
    tree.v_Add("%s%n%d", 1);
    EXPECT_EQ(Dump(tree, CT_AlphaTree::es_Byte), "%s%n%d : 1\n");
    EXPECT_EQ(Dump(tree, CT_AlphaTree::es_Short), "%s%n%d : 1\n");
}

TEST(AlphaTree, DumpOfBytesCutsEachCharacter)
{
    CT_AlphaTree tree;
    tree.v_Add("k\xE9y", 1);
    tree.v_Add(Units(u"\u0161b"), 2);
    EXPECT_EQ(Dump(tree, CT_AlphaTree::es_Byte), "k\xE9y : 1\nab : 2\n");
}

TEST(AlphaTree, DumpOfBytesPrintsAQuestionMarkForWhatBecomesZero)
{
    CT_AlphaTree tree;
    tree.v_Add(Units(u"a\u0100b"), 1);
    tree.v_Add("ac", 2);
    EXPECT_EQ(Dump(tree, CT_AlphaTree::es_Byte), "a?b : 1\nac : 2\n");
}

TEST(AlphaTree, DumpOfUnitsPrintsAQuestionMarkForWhatHasNoEightBitForm)
{
    CT_AlphaTree tree;
    tree.v_Add("k\xE9y", 1);
    tree.v_Add(Units(u"ab\u0161c"), 2);
    tree.v_Add("d", 3);
    EXPECT_EQ(Dump(tree, CT_AlphaTree::es_Short), "k\xE9y : 1\nab?c : 2\nd : 3\n");
}

TEST(AlphaTree, DumpCutsLongKeys)
{
    CT_AlphaTree tree;
    const std::string key(255, 'x');
    tree.v_Add(key.c_str(), 1);
    tree.v_Add((key + "yz").c_str(), 2);
    tree.v_Add("xb", 3);
    const std::string expected = key + " : 1\n" + key + " : 2\nxb : 3\n";
    EXPECT_EQ(Dump(tree, CT_AlphaTree::es_Byte), expected);
    EXPECT_EQ(Dump(tree, CT_AlphaTree::es_Short), expected);
}

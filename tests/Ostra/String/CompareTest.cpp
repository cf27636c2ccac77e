// tests/Ostra/String/CompareTest.cpp: comparisons that containers take.
#include <Ostra/SortedArray/VoidSortedArray.h>
#include <Ostra/String/Compare.h>

#include "Ostra/String/StringSupport.h"
#include "Support/Directory.h"

#include <algorithm>
#include <array>
#include <random>

namespace
{
int Sign(int n)
{
    return (n > 0) - (n < 0);
}

// Order by values, written down a second time.
template <class Unit>
int Model(const std::basic_string<Unit>& left, const std::basic_string<Unit>& right)
{
    using Value = std::make_unsigned_t<Unit>;
    return std::lexicographical_compare(left.begin(), left.end(), right.begin(), right.end(),
                                        [](Unit a, Unit b) { return Value(a) < Value(b); })
               ? -1
               : left != right;
}

template <class Unit>
int ModelNoCase(std::basic_string<Unit> left, std::basic_string<Unit> right)
{
    using Value = std::make_unsigned_t<Unit>;
    left += Unit(0), right += Unit(0);
    for (std::size_t n = 0;; ++n) {
        const int a = left[n] >= 'A' && left[n] <= 'Z' ? left[n] + 32 : Value(left[n]);
        const int b = right[n] >= 'A' && right[n] <= 'Z' ? right[n] + 32 : Value(right[n]);
        if (a != b || !a)
            return a - b;
    }
}

// Short texts of few different characters, so that many are equal or nearly so.
template <class Unit>
std::basic_string<Unit> RandomText(std::mt19937& random, const std::vector<unsigned>& alphabet)
{
    std::basic_string<Unit> text;
    for (unsigned n = random() % 5; n; --n)
        text += static_cast<Unit>(alphabet[random() % alphabet.size()]);
    return text;
}
} // namespace

// ---- Numbers --------------------------------------------------------------------------------

TEST(Compare, NumbersOrderByTheirValue)
{
    const struct
    {
        unsigned left, right;
        int result;
    } rows[] = {{1, 2, -1},         {2, 1, 1},
                {7, 7, 0},          {0, 0xFFFFFFFF, -1},
                {0xFFFFFFFF, 0, 1}, {0x80000000, 0x7FFFFFFF, 1},
                {0, 0, 0},          {0x7FFFFFFF, 0xFFFFFFFF, -1}};
    for (const auto& row : rows) {
        SCOPED_TRACE(testing::Message() << row.left << " " << row.right);
        EXPECT_EQ(CT_Compare::si_CompareN(row.left, row.right), row.result);
        EXPECT_EQ(CT_Compare::si_ComparePN(&row.left, &row.right), row.result);
        const Misplaced<unsigned> left(row.left), right(row.right);
        EXPECT_EQ(CT_Compare::si_ComparePN(left.At(), right.At()), row.result);
    }
}

TEST(Compare, SignedNumbersOrderByTheirSign)
{
    const int least = -0x7FFFFFFF - 1;
    const struct
    {
        int left, right, result;
    } rows[] = {{-1, 1, -1},           {1, -1, 1}, {-5, -5, 0},
                {-2, -1, -1},          {0, -1, 1}, {least, 0x7FFFFFFF, -1},
                {0x7FFFFFFF, least, 1}};
    for (const auto& row : rows) {
        SCOPED_TRACE(testing::Message() << row.left << " " << row.right);
        EXPECT_EQ(CT_Compare::si_CompareI(row.left, row.right), row.result);
        EXPECT_EQ(CT_Compare::si_ComparePI(&row.left, &row.right), row.result);
        const Misplaced<int> left(row.left), right(row.right);
        EXPECT_EQ(CT_Compare::si_ComparePI(left.At(), right.At()), row.result);
    }
}

// ---- Texts ----------------------------------------------------------------------------------

TEST(Compare, BytesAreUnsigned)
{
    EXPECT_EQ(CT_Compare::si_CompareCaseQCZ("\xE4", "\x7A"), 1);
    EXPECT_EQ(CT_Compare::si_CompareCaseQCZ("\x7A", "\xE4"), -1);
    EXPECT_GT(CT_Compare::si_CompareNoCaseQCZ("\xE4", "\x7A"), 0);
}

TEST(Compare, UnitsAreUnsigned)
{
    EXPECT_EQ(CT_Compare::si_CompareCaseQUZ(U(u"\uFFFD"), U(u"z")), 1);
    EXPECT_EQ(CT_Compare::si_CompareCaseQUZ(U(u"\u7FFF"), U(u"\u8000")), -1);
    EXPECT_EQ(CT_Compare::si_CompareNoCaseQUZ(U(u"\uFFFD"), U(u"z")), 0xFFFD - 'z');
}

TEST(Compare, ExactComparisonsGiveOne)
{
    const struct
    {
        const char* narrow_left;
        const char* narrow_right;
        const char16_t* left;
        const char16_t* right;
        int result;
    } rows[] = {{"", "", u"", u"", 0},
                {"", "a", u"", u"a", -1},
                {"a", "", u"a", u"", 1},
                {"abc", "abc", u"abc", u"abc", 0},
                {"abc", "abd", u"abc", u"abd", -1},
                {"abc", "ab", u"abc", u"ab", 1},
                {"a", "z", u"a", u"z", -1},
                {"Z", "a", u"Z", u"a", -1},
                {"ABC", "abc", u"ABC", u"abc", -1}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.narrow_left + std::string(" ") + row.narrow_right);
        EXPECT_EQ(CT_Compare::si_CompareCaseQCZ(row.narrow_left, row.narrow_right), row.result);
        EXPECT_EQ(CT_Compare::si_CompareCaseQUZ(U(row.left), U(row.right)), row.result);
    }
}

// The underscore lies between the upper and the lower letters: it shows which way a fold goes.
TEST(Compare, NoCaseFoldsDown)
{
    EXPECT_EQ(CT_Compare::si_CompareNoCaseQCZ("Haus", "hAUS"), 0);
    EXPECT_EQ(CT_Compare::si_CompareNoCaseQUZ(U(u"Haus"), U(u"hAUS")), 0);
    EXPECT_LT(CT_Compare::si_CompareNoCaseQCZ("_", "A"), 0);
    EXPECT_LT(CT_Compare::si_CompareNoCaseQCZ("_", "a"), 0);
    EXPECT_EQ(CT_Compare::si_CompareNoCaseQUZ(U(u"_"), U(u"A")), '_' - 'a');
    EXPECT_EQ(CT_Compare::si_CompareNoCaseQUZ(U(u"C"), U(u"a")), 2);
    EXPECT_EQ(CT_Compare::si_CompareNoCaseQUZ(U(u"ab"), U(u"A")), 'b');
    EXPECT_EQ(CT_Compare::si_CompareNoCaseQUZ(U(u""), U(u"Z")), -'z');
}

TEST(Compare, NoCaseFoldsNothingButAToZ)
{
    for (unsigned upper = 1; upper < 0x100; ++upper) {
        for (unsigned lower = 1; lower < 0x100; ++lower) {
            const bool letter = upper >= 'A' && upper <= 'Z' && lower == upper + 32;
            const bool reverse = lower >= 'A' && lower <= 'Z' && upper == lower + 32;
            const bool equal = upper == lower || letter || reverse;
            const char left[] = {static_cast<char>(upper), 0};
            const char right[] = {static_cast<char>(lower), 0};
            EXPECT_EQ(!CT_Compare::si_CompareNoCaseQCZ(left, right), equal) << upper << lower;
            const unsigned short wide_left[] = {static_cast<unsigned short>(upper), 0};
            const unsigned short wide_right[] = {static_cast<unsigned short>(lower), 0};
            EXPECT_EQ(!CT_Compare::si_CompareNoCaseQUZ(wide_left, wide_right), equal);
        }
    }
    EXPECT_NE(CT_Compare::si_CompareNoCaseQUZ(U(u"\u0416"), U(u"\u0436")), 0);
    EXPECT_NE(CT_Compare::si_CompareNoCaseQUZ(U(u"\uFF21"), U(u"\uFF41")), 0);
    EXPECT_NE(CT_Compare::si_CompareNoCaseQUZ(U(u"\u212A"), U(u"k")), 0);
}

TEST(Compare, PointersToTextsCompareTheTexts)
{
    const Misplaced<const char*> abc("abc"), abd("ABD");
    EXPECT_EQ(CT_Compare::si_CompareCasePQCZ(abc.At(), abd.At()), 1);
    EXPECT_EQ(CT_Compare::si_CompareCasePQCZ(abd.At(), abc.At()), -1);
    EXPECT_LT(CT_Compare::si_CompareNoCasePQCZ(abc.At(), abd.At()), 0);
    EXPECT_EQ(CT_Compare::si_CompareNoCasePQCZ(abc.At(), abc.At()), 0);
    const Misplaced<const unsigned short*> wide_abc(U(u"abc")), wide_abd(U(u"ABD"));
    EXPECT_EQ(CT_Compare::si_CompareCasePQUZ(wide_abc.At(), wide_abd.At()), 1);
    EXPECT_EQ(CT_Compare::si_CompareCasePQUZ(wide_abd.At(), wide_abc.At()), -1);
    EXPECT_EQ(CT_Compare::si_CompareNoCasePQUZ(wide_abc.At(), wide_abd.At()), -1);
    EXPECT_EQ(CT_Compare::si_CompareNoCasePQUZ(wide_abc.At(), wide_abc.At()), 0);
}

TEST(Compare, AgreesWithTheModelOnRandomTexts)
{
    const unsigned seed = Seed(2601);
    SCOPED_TRACE(seed);
    std::mt19937 random(seed);
    const std::vector<unsigned> narrow = {'a', 'A', 'b', 'Z', '_', '[', 0xC4, 0xE4, 0xFF};
    const std::vector<unsigned> wide = {'a', 'A', 'b', 'Z', '_', '[', 0xE4, 0x416, 0x7FFF, 0xFFFF};
    for (unsigned n = 0; n < 5000; ++n) {
        const auto left = RandomText<char>(random, narrow);
        const auto right = RandomText<char>(random, narrow);
        ASSERT_EQ(CT_Compare::si_CompareCaseQCZ(left.c_str(), right.c_str()), Model(left, right));
        ASSERT_EQ(Sign(CT_Compare::si_CompareNoCaseQCZ(left.c_str(), right.c_str())),
                  Sign(ModelNoCase(left, right)));
        const auto wide_left = RandomText<char16_t>(random, wide);
        const auto wide_right = RandomText<char16_t>(random, wide);
        const unsigned short* a = U(wide_left.c_str());
        const unsigned short* b = U(wide_right.c_str());
        ASSERT_EQ(CT_Compare::si_CompareCaseQUZ(a, b), Model(wide_left, wide_right));
        ASSERT_EQ(CT_Compare::si_CompareNoCaseQUZ(a, b), ModelNoCase(wide_left, wide_right));
    }
}

// ---- Strings --------------------------------------------------------------------------------

TEST(Compare, StringsOfOneClassCompareTheirCharacters)
{
    const CT_CString upper("ABD", ALL, 1252), lower("abc", ALL, 1251);
    const Misplaced<const CT_CString*> a(&upper), b(&lower);
    EXPECT_EQ(CT_Compare::si_CompareCStringPPCO(a.At(), b.At()), -1);
    EXPECT_GT(CT_Compare::si_CompareCStringNoCasePPCO(a.At(), b.At()), 0);
    EXPECT_EQ(CT_Compare::si_CompareCStringPPCO(a.At(), a.At()), 0);
    const CT_UString wide_upper(U(u"ABD")), wide_lower(U(u"abc"));
    const Misplaced<const CT_UString*> c(&wide_upper), d(&wide_lower);
    EXPECT_EQ(CT_Compare::si_CompareUStringPPCO(c.At(), d.At()), -1);
    EXPECT_EQ(CT_Compare::si_CompareUStringNoCasePPCO(c.At(), d.At()), 1);
    EXPECT_EQ(CT_Compare::si_CompareUStringNoCasePPCO(d.At(), c.At()), -1);
    EXPECT_EQ(CT_Compare::si_CompareUStringPPCO(d.At(), d.At()), 0);
}

TEST(Compare, EmptyStringsAreEqualToEmptyTexts)
{
    const CT_CString none, empty("");
    const CT_UString wide_none, wide_empty(U(u""));
    const CT_String* all[] = {&none, &empty, &wide_none, &wide_empty};
    for (const CT_String*& left : all) {
        for (const CT_String*& right : all) {
            EXPECT_EQ(CT_Compare::si_CompareStringPPCO(&left, &right), 0);
            EXPECT_EQ(CT_Compare::si_CompareStringNoCasePPCO(&left, &right), 0);
        }
    }
}

// The bytes of one text differ with the code page; as CT_CString they are compared as they are.
TEST(Compare, StringsOfDifferentEncodingsCompareByTheirUnits)
{
    const CT_CString latin("\xE9", ALL, 1252), cyrillic("\xE9", ALL, 1251);
    const CT_CString utf8("\xC3\xA9", ALL, UTF8);
    const CT_UString wide(U(u"\u00E9"));
    const CT_String* all[] = {&latin, &utf8, &wide};
    for (const CT_String*& left : all) {
        for (const CT_String*& right : all)
            EXPECT_EQ(CT_Compare::si_CompareStringPPCO(&left, &right), 0);
        const Misplaced<const CT_String*> a(left), b(&cyrillic);
        EXPECT_EQ(CT_Compare::si_CompareStringPPCO(a.At(), b.At()), -1);
        EXPECT_EQ(CT_Compare::si_CompareStringPPCO(b.At(), a.At()), 1);
        EXPECT_EQ(CT_Compare::si_CompareStringNoCasePPCO(a.At(), b.At()), 0xE9 - 0x439);
    }
    const CT_CString* bytes[] = {&latin, &cyrillic, &utf8};
    EXPECT_EQ(CT_Compare::si_CompareCStringPPCO(&bytes[0], &bytes[1]), 0);
    EXPECT_EQ(CT_Compare::si_CompareCStringPPCO(&bytes[0], &bytes[2]), 1);
}

TEST(Compare, MixedStringsFoldDown)
{
    const CT_CString upper("HAUS");
    const CT_UString lower(U(u"haus"));
    const CT_String* all[] = {&upper, &lower};
    EXPECT_EQ(CT_Compare::si_CompareStringPPCO(&all[0], &all[1]), -1);
    EXPECT_EQ(CT_Compare::si_CompareStringNoCasePPCO(&all[0], &all[1]), 0);
}

TEST(Compare, LeavesTheStringsAndTheirSharingAlone)
{
    const CT_CString narrow("abc");
    const CT_UString wide(U(u"abc"));
    const CT_String* all[] = {&narrow, &wide};
    CT_Compare::si_CompareStringPPCO(&all[0], &all[1]);
    CT_Compare::si_CompareStringNoCasePPCO(&all[1], &all[1]);
    EXPECT_EQ(UsesOf(narrow), 1u);
    EXPECT_EQ(UsesOf(wide), 1u);
    EXPECT_EQ(Text(narrow), "abc");
    EXPECT_EQ(Text(wide), u"abc");
}

// ---- In a container -------------------------------------------------------------------------

// Items of pointer size lie behind a head of twelve bytes: at odd multiples of four.
TEST(Compare, ServesASortedArray)
{
    using Order = int (*)(const void*, const void*);
    const CT_UString first(U(u"ant")), second(U(u"Bee"));
    const CT_CString third("cow", ALL, 1252);
    const CT_String* all[] = {&third, &second, &first};
    CT_VoidSortedArray exact(sizeof(void*),
                             reinterpret_cast<Order>(CT_Compare::si_CompareStringPPCO), 2, 0);
    CT_VoidSortedArray folded(
        sizeof(void*), reinterpret_cast<Order>(CT_Compare::si_CompareStringNoCasePPCO), 2, 0);
    for (const CT_String*& s : all) {
        exact.v_Insert(&s);
        folded.v_Insert(&s);
    }
    const CT_CString key("BEE");
    const CT_String* wanted = &key;
    EXPECT_EQ(exact.n_Find(&wanted), 0u);
    EXPECT_EQ(folded.n_Find(&wanted), 2u);
    const CT_String* found;
    exact.v_GetAt(&found, 1);
    EXPECT_EQ(found, &second);
    folded.v_GetAt(&found, 1);
    EXPECT_EQ(found, &first);
}

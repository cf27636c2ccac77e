// tests/Ostra/String/HashFunctionTest.cpp: hash functions that containers take.
#include <Ostra/String/Compare.h>
#include <Ostra/String/HashFunction.h>

#include "Ostra/String/StringSupport.h"
#include "Support/Directory.h"

#include <random>

namespace
{
constexpr unsigned BIG = 0x10000000; // a size above every hash: the bucket shows it whole

// The hash as the object format tells it, with the fold as a branch.
template <class Unit>
unsigned Model(const std::basic_string<Unit>& text, unsigned size, bool fold)
{
    unsigned long long h = 0;
    for (Unit unit : text) {
        unsigned c = std::make_unsigned_t<Unit>(unit);
        if (fold && c >= 'a' && c <= 'z')
            c -= 32;
        h = (16 * h + c) % 0x100000000;
        const unsigned long long g = h & 0xF0000000;
        if (g)
            h = (h ^ (g >> 24)) & 0x0FFFFFFF;
    }
    return static_cast<unsigned>(h % size + 1);
}

} // namespace

TEST(HashFunction, EmptyTextIsInTheFirstBucket)
{
    EXPECT_EQ(CT_HashFunction::sn_HashCaseQCZ("", 7), 1u);
    EXPECT_EQ(CT_HashFunction::sn_HashNoCaseQCZ("", 7), 1u);
    EXPECT_EQ(CT_HashFunction::sn_HashCaseQUZ(U(u""), 7), 1u);
    EXPECT_EQ(CT_HashFunction::sn_HashNoCaseQUZ(U(u""), 7), 1u);
    const CT_CString none;
    const CT_UString wide_none;
    const CT_String* all[] = {&none, &wide_none};
    EXPECT_EQ(CT_HashFunction::sn_HashStringPPCO(&all[0], 7), 1u);
    EXPECT_EQ(CT_HashFunction::sn_HashStringNoCasePPCO(&all[1], 7), 1u);
}

TEST(HashFunction, KnownBuckets)
{
    const struct
    {
        const char* narrow;
        const char16_t* wide;
        unsigned size, bucket;
    } rows[] = {{"A", u"A", 7, 3},
                {"A", u"A", 1, 1},
                {"A", u"A", 66, 66},
                {"A", u"A", 65, 1},
                {"ab", u"ab", BIG, 16 * 97 + 98 + 1},
                // printf hashes to 0x077905A6, a known value of the object format.
                {"printf", u"printf", BIG, 0x077905A6 + 1},
                // exit and syscall are others.
                {"exit", u"exit", BIG, 0x0006CF04 + 1},
                {"syscall", u"syscall", BIG, 0x0B09985C + 1}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.narrow);
        EXPECT_EQ(CT_HashFunction::sn_HashCaseQCZ(row.narrow, row.size), row.bucket);
        EXPECT_EQ(CT_HashFunction::sn_HashCaseQUZ(U(row.wide), row.size), row.bucket);
    }
}

TEST(HashFunction, NoCaseFoldsUp)
{
    EXPECT_EQ(CT_HashFunction::sn_HashNoCaseQCZ("abc", 101),
              CT_HashFunction::sn_HashNoCaseQCZ("ABC", 101));
    EXPECT_EQ(CT_HashFunction::sn_HashNoCaseQCZ("abc", 101),
              CT_HashFunction::sn_HashCaseQCZ("ABC", 101));
    EXPECT_NE(CT_HashFunction::sn_HashCaseQCZ("abc", 101),
              CT_HashFunction::sn_HashCaseQCZ("ABC", 101));
    EXPECT_EQ(CT_HashFunction::sn_HashNoCaseQUZ(U(u"aBc"), BIG),
              CT_HashFunction::sn_HashCaseQUZ(U(u"ABC"), BIG));
    EXPECT_NE(CT_HashFunction::sn_HashCaseQUZ(U(u"abc"), BIG),
              CT_HashFunction::sn_HashCaseQUZ(U(u"ABC"), BIG));
}

TEST(HashFunction, NoCaseFoldsNothingButAToZ)
{
    for (unsigned c = 1; c < 0x10000; ++c) {
        const unsigned folded = c >= 'a' && c <= 'z' ? c - 32 : c;
        const unsigned short wide[] = {static_cast<unsigned short>(c), 0};
        ASSERT_EQ(CT_HashFunction::sn_HashNoCaseQUZ(wide, BIG), folded + 1);
        ASSERT_EQ(CT_HashFunction::sn_HashCaseQUZ(wide, BIG), c + 1);
        if (c > 0xFF)
            continue;
        const char narrow[] = {static_cast<char>(c), 0};
        ASSERT_EQ(CT_HashFunction::sn_HashNoCaseQCZ(narrow, BIG), folded + 1);
        ASSERT_EQ(CT_HashFunction::sn_HashCaseQCZ(narrow, BIG), c + 1);
    }
}

TEST(HashFunction, LongTextsStayBelow28Bits)
{
    const std::string text(200, '\xFF');
    const std::u16string wide(200, u'\uFFFF');
    for (unsigned length = 1; length <= 200; ++length) {
        const std::string part = text.substr(0, length);
        const std::u16string wide_part = wide.substr(0, length);
        const unsigned bucket = CT_HashFunction::sn_HashCaseQCZ(part.c_str(), 0xFFFFFFFF);
        ASSERT_LE(bucket, BIG);
        ASSERT_EQ(bucket, Model(part, 0xFFFFFFFF, false));
        const unsigned wide_bucket =
            CT_HashFunction::sn_HashCaseQUZ(U(wide_part.c_str()), 0xFFFFFFFF);
        ASSERT_LE(wide_bucket, BIG);
        ASSERT_EQ(wide_bucket, Model(wide_part, 0xFFFFFFFF, false));
    }
}

TEST(HashFunction, AgreesWithTheModelOnRandomTexts)
{
    const unsigned seed = Seed(2602);
    SCOPED_TRACE(seed);
    std::mt19937 random(seed);
    for (unsigned n = 0; n < 5000; ++n) {
        std::string narrow;
        std::u16string wide, same;
        for (unsigned length = random() % 24; length; --length) {
            narrow += static_cast<char>(random() % 255 + 1);
            wide += static_cast<char16_t>(random() % 0xFFFF + 1);
            same += static_cast<unsigned char>(narrow.back());
        }
        const unsigned size = random() % 3 ? random() % 1000 + 1 : random() | 1;
        const char* bytes = narrow.c_str();
        const unsigned short* units = U(wide.c_str());
        ASSERT_EQ(CT_HashFunction::sn_HashCaseQCZ(bytes, size), Model(narrow, size, false));
        ASSERT_EQ(CT_HashFunction::sn_HashNoCaseQCZ(bytes, size), Model(narrow, size, true));
        ASSERT_EQ(CT_HashFunction::sn_HashCaseQUZ(units, size), Model(wide, size, false));
        ASSERT_EQ(CT_HashFunction::sn_HashNoCaseQUZ(units, size), Model(wide, size, true));
        ASSERT_EQ(CT_HashFunction::sn_HashCaseQUZ(U(same.c_str()), size),
                  CT_HashFunction::sn_HashCaseQCZ(bytes, size));
    }
}

TEST(HashFunction, PointersToTextsHashTheTexts)
{
    const Misplaced<const char*> text("Haus");
    const Misplaced<const unsigned short*> wide(U(u"Haus"));
    const unsigned exact = Model<char>("Haus", BIG, false);
    const unsigned folded = Model<char>("Haus", BIG, true);
    EXPECT_EQ(CT_HashFunction::sn_HashCasePQCZ(text.At(), BIG), exact);
    EXPECT_EQ(CT_HashFunction::sn_HashNoCasePQCZ(text.At(), BIG), folded);
    EXPECT_EQ(CT_HashFunction::sn_HashCasePQUZ(wide.At(), BIG), exact);
    EXPECT_EQ(CT_HashFunction::sn_HashNoCasePQUZ(wide.At(), BIG), folded);
}

TEST(HashFunction, StringsHashTheirCharacters)
{
    const CT_CString bytes("Haus");
    const CT_UString units(U(u"Haus"));
    const Misplaced<const CT_CString*> narrow(&bytes);
    const Misplaced<const CT_UString*> wide(&units);
    const Misplaced<const CT_String*> any(&bytes), other(&units);
    const unsigned exact = Model<char>("Haus", 101, false);
    const unsigned folded = Model<char>("Haus", 101, true);
    EXPECT_EQ(CT_HashFunction::sn_HashCStringPPCO(narrow.At(), 101), exact);
    EXPECT_EQ(CT_HashFunction::sn_HashCStringNoCasePPCO(narrow.At(), 101), folded);
    EXPECT_EQ(CT_HashFunction::sn_HashUStringPPCO(wide.At(), 101), exact);
    EXPECT_EQ(CT_HashFunction::sn_HashUStringNoCasePPCO(wide.At(), 101), folded);
    EXPECT_EQ(CT_HashFunction::sn_HashStringPPCO(any.At(), 101), exact);
    EXPECT_EQ(CT_HashFunction::sn_HashStringNoCasePPCO(any.At(), 101), folded);
    EXPECT_EQ(CT_HashFunction::sn_HashStringPPCO(other.At(), 101), exact);
    EXPECT_EQ(CT_HashFunction::sn_HashStringNoCasePPCO(other.At(), 101), folded);
}

TEST(HashFunction, OneTextInSeveralEncodingsHasOneBucket)
{
    const CT_CString latin("\xE9", ALL, 1252), utf8("\xC3\xA9", ALL, UTF8);
    const CT_CString cyrillic("\xE9", ALL, 1251);
    const CT_UString wide(U(u"\u00E9"));
    const CT_String* all[] = {&latin, &utf8, &wide, &cyrillic};
    for (unsigned n = 0; n < 3; ++n) {
        EXPECT_EQ(CT_HashFunction::sn_HashStringPPCO(&all[n], BIG), 0xEAu);
        EXPECT_EQ(CT_HashFunction::sn_HashStringNoCasePPCO(&all[n], BIG), 0xEAu);
    }
    EXPECT_EQ(CT_HashFunction::sn_HashStringPPCO(&all[3], BIG), 0x43Au);
    const CT_CString* bytes[] = {&latin, &utf8, &cyrillic};
    EXPECT_EQ(CT_HashFunction::sn_HashCStringPPCO(&bytes[0], BIG), 0xEAu);
    EXPECT_EQ(CT_HashFunction::sn_HashCStringPPCO(&bytes[1], BIG), 16 * 0xC3u + 0xA9 + 1);
    EXPECT_EQ(CT_HashFunction::sn_HashCStringPPCO(&bytes[2], BIG), 0xEAu);
}

// What a NoCase comparison takes for equal, a NoCase hash puts into one bucket.
TEST(HashFunction, AgreesWithTheComparisonOnWhatIsEqual)
{
    for (unsigned a = 1; a < 0x180; ++a) {
        for (unsigned b = 1; b < 0x180; ++b) {
            const unsigned short left[] = {static_cast<unsigned short>(a), 0};
            const unsigned short right[] = {static_cast<unsigned short>(b), 0};
            ASSERT_EQ(CT_Compare::si_CompareNoCaseQUZ(left, right) == 0,
                      CT_HashFunction::sn_HashNoCaseQUZ(left, BIG) ==
                          CT_HashFunction::sn_HashNoCaseQUZ(right, BIG));
        }
    }
}

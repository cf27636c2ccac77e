// tests/Ostra/Frame/DatabaseErrorTest.cpp
#include <Ostra/Frame/DatabaseError.h>

#include "Support/Failure.h"

namespace
{
struct Row
{
    unsigned code;
    const char* text;
};

const Row rows[] = {
    {31000, "Invalid file format in %s"},
    {31001, "Could not obtain lock for %s"},
    {31002, "Could not release lock on %s"},
    {31003, "Unsufficient lock to perform this operation on file %s"},
    {31004, "Buffer overflow (user data, file %s)"},
    {31005, "Corrupt data"},
    {31050, "Invalid RecordManager file format in %s"},
    {31051, "Invalid record reference in %s"},
    {31052, "Resource max count exceeded in %s"},
    {31053, "Resource not found in %s"},
    {31054, "Resource already exists in %s"},
    {31100, "Invalid index file format in %s"},
    {31101, "Reference too large in %s"},
    {31102, "Key too long in %s"},
    {31103, "Index full in %s"},
    {31104, "Key already exists in %s"},
    {31105, "Key not found in %s"},
    {31106, "Locale not installed"},
    {31107, "Unicode to MBCS conversion failed in %s"},
    {31150, ""},
};
} // namespace

TEST(DatabaseError, EachCodeHasItsText)
{
    for (const Row& row : rows) {
        SCOPED_TRACE(row.code);
        const unsigned short* text = CT_DatabaseError::sqcuz_GetErrorMessage(row.code);
        ASSERT_NE(text, nullptr);
        EXPECT_EQ(Narrow(Wide(text)), row.text);
    }
}

TEST(DatabaseError, OtherCodesHaveNone)
{
    unsigned known = 0;
    for (unsigned code = 0; code < 40000; ++code)
        known += CT_DatabaseError::sqcuz_GetErrorMessage(code) != nullptr;
    EXPECT_EQ(known, std::size(rows));
    for (unsigned code : {0U, 30999U, 31006U, 31151U, 0xFFFFFFFFU})
        EXPECT_EQ(CT_DatabaseError::sqcuz_GetErrorMessage(code), nullptr) << code;
}

TEST(DatabaseError, FormatTakesTheNameAsWideText)
{
    unsigned short out[100];
    CT_DatabaseError::sv_FormatError(out, 100, 31051, Units(u"a\u0416.rec"));
    EXPECT_EQ(Wide(out), u"Invalid record reference in a\u0416.rec");
}

TEST(DatabaseError, FormatOfAnUnknownCode)
{
    unsigned short out[100];
    for (unsigned code : {31006U, 1U}) {
        CT_DatabaseError::sv_FormatError(out, 100, code, Units(u"a.rec"));
        EXPECT_EQ(Wide(out), u"Unspecified Database Error");
    }
}

TEST(DatabaseError, FormatOfTheEmptyTextIsEmpty)
{
    unsigned short out[100] = {'x', 0};
    CT_DatabaseError::sv_FormatError(out, 100, 31150);
    EXPECT_EQ(Wide(out), u"");
}

TEST(DatabaseError, FormatWritesTheTextAndItsTerminatorOnly)
{
    unsigned short out[40];
    const auto written = [&] {
        unsigned count = 40;
        while (count && out[count - 1] == 0x7777)
            --count;
        return count;
    };
    std::fill(std::begin(out), std::end(out), 0x7777);
    CT_DatabaseError::sv_FormatError(out, 40, 31005);
    EXPECT_EQ(Wide(out), u"Corrupt data");
    EXPECT_EQ(written(), 13U);
    std::fill(std::begin(out), std::end(out), 0x7777);
    CT_DatabaseError::sv_FormatError(out, 40, 31053, Units(u"a name"));
    EXPECT_EQ(Wide(out), u"Resource not found in a name");
    EXPECT_EQ(written(), 29U);
    // A text that fills its field to the last place but one, to the last one, and passes it.
    for (const unsigned room : {13U, 12U, 11U}) {
        std::fill(std::begin(out), std::end(out), 0x7777);
        CT_DatabaseError::sv_FormatError(out, room, 31005);
        EXPECT_EQ(Wide(out), std::u16string(u"Corrupt data").substr(0, room - 1));
        EXPECT_EQ(written(), room);
    }
}

TEST(DatabaseError, FormatEndsWithinItsField)
{
    unsigned short out[10];
    std::fill(std::begin(out), std::end(out), 0x7777);
    CT_DatabaseError::sv_FormatError(out, 8, 31005);
    EXPECT_EQ(Wide(out), u"Corrupt");
    EXPECT_EQ(out[8], 0x7777);
    CT_DatabaseError::sv_FormatError(out, 0, 31005);
    EXPECT_EQ(Wide(out), u"Corrupt");
}

// tests/Ostra/Maps/StringNumberMapTest.cpp
#include "Ostra/Maps/MapSupport.h"
#include "Support/Directory.h"
#include "Support/Private.h"

#include <type_traits>

OSTRA_PRIVATE(MapStrings, CT_VoidArray CT_StringNumberMap::*, &CT_StringNumberMap::co_Strings);
OSTRA_PRIVATE(MapNumbers, CT_VoidArray CT_StringNumberMap::*, &CT_StringNumberMap::co_Numbers);

namespace
{
const CT_VoidArray& Strings(const CT_StringNumberMap& map)
{
    return map.*Private(MapStrings());
}

const CT_VoidArray& Numbers(const CT_StringNumberMap& map)
{
    return map.*Private(MapNumbers());
}

struct Pair
{
    const char* text;
    unsigned number;
};

void Fill(CT_StringNumberMap& map, std::initializer_list<Pair> pairs)
{
    for (const Pair& pair : pairs)
        map.v_Insert(pair.text, pair.number);
}

std::string Binary(const CT_StringNumberMap& map)
{
    CT_Buffer out("what was there before", 21, 48);
    map.v_Map2Buffer(&out);
    EXPECT_EQ(out.n_GetGrowth(), 48U);
    return Bytes(out);
}

Entries Parse(const std::string& bytes, int wide)
{
    CT_StringNumberMap map(3U);
    map.v_Insert("before", 1);
    const CT_Buffer in(bytes.data(), static_cast<unsigned>(bytes.size()), 32);
    map.v_Buffer2Map(&in, wide);
    EXPECT_EQ(Strings(map).n_GetGrowth(), 8U);
    EXPECT_EQ(Bytes(in), bytes);
    return Read(map);
}
} // namespace

// ---- Construction ---------------------------------------------------------------------------

TEST(StringNumberMap, ANewMapIsEmptyWithAGrowthOfEight)
{
    const CT_StringNumberMap map;
    EXPECT_EQ(map.n_GetCount(), 0U);
    const CT_StringNumberMap other(3U);
    EXPECT_EQ(Strings(map).n_GetGrowth(), 8U);
    EXPECT_EQ(Numbers(map).n_GetGrowth(), 8U);
    EXPECT_EQ(Strings(other).n_GetGrowth(), 3U);
    EXPECT_EQ(Numbers(other).n_GetGrowth(), 3U);
    EXPECT_EQ(Strings(map).n_GetItemSize(), sizeof(void*));
    EXPECT_EQ(Numbers(map).n_GetItemSize(), 4U);
    EXPECT_FALSE(std::is_polymorphic_v<CT_StringNumberMap>);
}

TEST(StringNumberMap, AMapMadeFromAnotherHasStringsOfItsOwnAndItsGrowth)
{
    CT_StringNumberMap source(5U);
    Fill(source, {{"a", 1}, {"b", 0xFFFFFFFF}});
    source.v_Insert(U(u"c"), 3);
    CT_StringNumberMap map(&source);
    EXPECT_EQ(Read(map), (Entries{"b:a=1", "b:b=4294967295", "u:c=3"}));
    EXPECT_EQ(Strings(map).n_GetGrowth(), 5U);
    EXPECT_EQ(Numbers(map).n_GetGrowth(), 5U);
    map.v_SetAt("changed", 1);
    map.v_SetAt(9U, 1U);
    EXPECT_EQ(Read(source), (Entries{"b:a=1", "b:b=4294967295", "u:c=3"}));
}

TEST(StringNumberMap, TheHeapGivesAndTakesMaps)
{
    const std::unique_ptr<CT_StringNumberMap> map(new CT_StringNumberMap);
    Fill(*map, {{"a", 1}});
    EXPECT_EQ(map->n_GetCount(), 1U);
    alignas(CT_StringNumberMap) char place[sizeof(CT_StringNumberMap)];
    CT_StringNumberMap* placed = new (place) CT_StringNumberMap;
    EXPECT_EQ(Address(placed), Address(place));
    placed->~CT_StringNumberMap();
}

TEST(StringNumberMap, SetEmptiesTheMapAndKeepsTheRoom)
{
    CT_StringNumberMap map;
    Fill(map, {{"a", 1}, {"b", 2}});
    const void* strings = Strings(map).pcco_GetBuffer()->qcv_Get();
    const void* numbers = Numbers(map).pcco_GetBuffer()->qcv_Get();
    map.v_Set(3U);
    EXPECT_EQ(map.n_GetCount(), 0U);
    EXPECT_EQ(Numbers(map).n_GetCount(), 0U);
    EXPECT_EQ(Strings(map).n_GetGrowth(), 3U);
    EXPECT_EQ(Numbers(map).n_GetGrowth(), 3U);
    EXPECT_EQ(Strings(map).pcco_GetBuffer()->qcv_Get(), strings);
    EXPECT_EQ(Numbers(map).pcco_GetBuffer()->qcv_Get(), numbers);
}

TEST(StringNumberMap, SetFromAMapCopiesItsEntriesAndItsGrowth)
{
    CT_StringNumberMap source(5U), map;
    Fill(source, {{"x", 7}});
    Fill(map, {{"a", 1}, {"b", 2}});
    map.v_Set(&source);
    EXPECT_EQ(Read(map), (Entries{"b:x=7"}));
    EXPECT_EQ(Numbers(map).n_GetGrowth(), 5U);
    EXPECT_EQ(Read(source), (Entries{"b:x=7"}));
    map.v_Set(&map);
    EXPECT_EQ(map.n_GetCount(), 0U) << "set to itself";
}

// ---- Access and search ----------------------------------------------------------------------

TEST(StringNumberMap, TheNumberOfAStringIsThatOfTheFirstEqualOne)
{
    CT_StringNumberMap map;
    Fill(map, {{"a", 5}, {"b", 6}, {"a", 7}});
    map.v_Insert(U(u"c"), 8);
    const CT_CString a("a"), c("c");
    const CT_UString b(U(u"b"));
    EXPECT_EQ(map.n_Get(&a), 5U);
    EXPECT_EQ(map.n_Get(&b), 6U);
    EXPECT_EQ(map.n_Get(&c), 8U);
    EXPECT_EQ(map.n_Get("b"), 6U);
    EXPECT_EQ(map.n_Get(U(u"a")), 5U);
    EXPECT_EQ(map.n_Get("B"), 0U);
}

TEST(StringNumberMap, AStoredZeroLooksLikeAStringThatIsNotThere)
{
    CT_StringNumberMap map;
    Fill(map, {{"zero", 0}});
    EXPECT_EQ(map.n_Get("zero"), 0U);
    EXPECT_EQ(map.n_Get("none"), 0U);
    EXPECT_EQ(Held(map.pcco_Get(0)), "b:zero");
}

TEST(StringNumberMap, TheStringOfANumberIsThatOfTheFirstEntryWithIt)
{
    CT_StringNumberMap map;
    Fill(map, {{"a", 5}, {"b", 6}, {"c", 5}, {"", 9}});
    map.v_Insert(U(u"w"), 8);
    EXPECT_EQ(map.pcco_Get(5), map.pcco_GetAt(1));
    EXPECT_EQ(Held(map.pcco_Get(6)), "b:b");
    EXPECT_EQ(map.pcco_Get(7), nullptr);
    EXPECT_EQ(Address(map.qccz_Get(5)), DataOf(*map.pcco_GetAt(1)));
    EXPECT_EQ(Address(map.qcuz_Get(8)), DataOf(*map.pcco_GetAt(5)));
    EXPECT_EQ(Address(map.qccz_Get(8)), DataOf(*map.pcco_GetAt(5))) << "as it stands";
    EXPECT_EQ(Address(map.qcuz_Get(5)), DataOf(*map.pcco_GetAt(1))) << "as it stands";
    EXPECT_STREQ(map.qccz_Get(9), "");
    EXPECT_EQ(*map.qcuz_Get(9), 0);
}

TEST(StringNumberMap, TheTextOfANumberThatIsNotThereIsEmpty)
{
    CT_StringNumberMap map;
    EXPECT_STREQ(map.qccz_Get(1), "");
    EXPECT_EQ(*map.qcuz_Get(1), 0);
}

TEST(StringNumberMap, EntriesAreReadByTheirIndex)
{
    CT_StringNumberMap map;
    Fill(map, {{"a", 5}, {"b", 6}});
    EXPECT_EQ(map.n_GetAt(1), 5U);
    EXPECT_EQ(map.n_GetAt(2), 6U);
    EXPECT_EQ(Held(map.pcco_GetAt(2)), "b:b");
    EXPECT_STREQ(map.qccz_GetAt(2), "b");
    EXPECT_EQ(Address(map.qccz_GetAt(2)), DataOf(*map.pcco_GetAt(2)));
    EXPECT_EQ(Address(map.qcuz_GetAt(2)), DataOf(*map.pcco_GetAt(2)));
}

// ---- Change ---------------------------------------------------------------------------------

TEST(StringNumberMap, InsertLooksForNoDuplicates)
{
    CT_StringNumberMap map;
    const CT_CString bytes("a");
    const CT_UString units(U(u"a"));
    map.v_Insert(&bytes, 1);
    map.v_Insert(&units, 1);
    map.v_Insert("a", 2);
    map.v_Insert(U(u"a"), 1);
    EXPECT_EQ(Read(map), (Entries{"b:a=1", "u:a=1", "b:a=2", "u:a=1"}));
    EXPECT_EQ(DataOf(*map.pcco_GetAt(1)), DataOf(bytes));
}

TEST(StringNumberMap, UpdateReplacesTheTextOfTheFirstEntryWithTheNumber)
{
    CT_StringNumberMap map;
    Fill(map, {{"a", 1}, {"b", 2}, {"c", 2}});
    const CT_UString units(U(u"units"));
    map.v_Update(&units, 2);
    EXPECT_EQ(Read(map), (Entries{"b:a=1", "b:units=2", "b:c=2"}));
    map.v_Update("x", 1);
    map.v_Update(U(u"y"), 2);
    EXPECT_EQ(Read(map), (Entries{"b:x=1", "b:y=2", "b:c=2"}));
}

TEST(StringNumberMap, RemoveTakesTheFirstEntryWithTheNumber)
{
    CT_StringNumberMap map;
    Fill(map, {{"a", 1}, {"b", 2}, {"c", 2}, {"d", 3}});
    map.v_Remove(2);
    EXPECT_EQ(Read(map), (Entries{"b:a=1", "b:c=2", "b:d=3"}));
    map.v_RemoveAt(1);
    EXPECT_EQ(Read(map), (Entries{"b:c=2", "b:d=3"}));
    EXPECT_EQ(Numbers(map).n_GetCount(), 2U);
}

TEST(StringNumberMap, ANumberThatIsNotThereChangesNothing)
{
    CT_StringNumberMap map;
    map.v_Update("x", 1);
    map.v_Remove(1);
    Fill(map, {{"a", 1}});
    map.v_Update("x", 2);
    map.v_Remove(2);
    EXPECT_EQ(Read(map), (Entries{"b:a=1"}));
}

TEST(StringNumberMap, AnEntrySetToItsOwnTextKeepsIt)
{
    CT_StringNumberMap map;
    map.v_Insert("bytes", 7);
    map.v_Insert(U(u"units"), 8);
    for (unsigned index : {1U, 2U})
        map.v_SetAt(map.pcco_GetAt(index), index);
    map.v_Update(map.pcco_Get(7), 7);
    map.v_Update(map.qcuz_Get(8), 8);
    EXPECT_EQ(Read(map), (Entries{"b:bytes=7", "u:units=8"}));
}

TEST(StringNumberMap, SetAtReplacesTextOrNumber)
{
    CT_StringNumberMap map;
    Fill(map, {{"a", 1}, {"b", 2}});
    const CT_CString bytes("bytes");
    map.v_SetAt(&bytes, 1);
    map.v_SetAt(7U, 1U);
    map.v_SetAt(U(u"units"), 2);
    EXPECT_EQ(Read(map), (Entries{"b:bytes=7", "b:units=2"}));
    map.v_SetAt("c", 2);
    EXPECT_EQ(Read(map), (Entries{"b:bytes=7", "b:c=2"}));
}

TEST(StringNumberMap, AnIndexOutsideTheMapIsNothing)
{
    CT_StringNumberMap map;
    Fill(map, {{"a", 1}, {"b", 2}});
    map.v_RemoveAt(2);
    for (const unsigned index : {0U, 2U, 3U, 9U, 0x20000001U, 0x40000001U, 0xFFFFFFFFU}) {
        SCOPED_TRACE(index);
        map.v_RemoveAt(index);
        map.v_SetAt("x", index);
        map.v_SetAt(7U, index);
        EXPECT_EQ(map.n_GetAt(index), 0U);
        EXPECT_EQ(map.pcco_GetAt(index), nullptr);
        EXPECT_STREQ(map.qccz_GetAt(index), "");
        EXPECT_EQ(*map.qcuz_GetAt(index), 0);
    }
    EXPECT_EQ(Read(map), (Entries{"b:a=1"}));
    Fill(map, {{"c", 3}});
    EXPECT_EQ(Read(map), (Entries{"b:a=1", "b:c=3"}));
}

TEST(StringNumberMap, AppendCopiesTheFirstEntriesOrAll)
{
    CT_StringNumberMap source, map;
    Fill(source, {{"a", 1}, {"b", 2}, {"c", 3}});
    Fill(map, {{"x", 9}});
    map.v_Append(&source, 2);
    EXPECT_EQ(Read(map), (Entries{"b:x=9", "b:a=1", "b:b=2"}));
    map.v_Append(&source, ALL);
    EXPECT_EQ(map.n_GetCount(), 6U);
    map.v_Append(&source, 7);
    EXPECT_EQ(map.n_GetCount(), 9U) << "no more than there are";
    EXPECT_EQ(Read(source), (Entries{"b:a=1", "b:b=2", "b:c=3"}));
    source.v_Append(&source, ALL);
    EXPECT_EQ(Read(source), (Entries{"b:a=1", "b:b=2", "b:c=3", "b:a=1", "b:b=2", "b:c=3"}));
}

// ---- Binary form ----------------------------------------------------------------------------

TEST(StringNumberMap, TheBinaryFormIsNumbersAndTerminatedTexts)
{
    CT_StringNumberMap map;
    EXPECT_EQ(Binary(map), "");
    Fill(map, {{"ab", 7}});
    EXPECT_EQ(Binary(map), Hex("07000000 616200"));
    Fill(map, {{"", 0x12345678}});
    EXPECT_EQ(Binary(map), Hex("07000000 616200  78563412 00"));
    CT_StringNumberMap wide;
    wide.v_Insert(U(u"ab"), 7);
    wide.v_Insert(U(u""), 1);
    EXPECT_EQ(Binary(wide), Hex("07000000 610062000000  01000000 0000"));
}

TEST(StringNumberMap, TheBinaryFormIsTheDocumentedOne)
{
    CT_StringNumberMap bytes, units;
    Fill(bytes, {{"de", 1031}, {"en", 1033}, {"", 0}});
    for (unsigned n = 1; n <= bytes.n_GetCount(); ++n) {
        const CT_UString text(bytes.pcco_GetAt(n));
        units.v_Insert(&text, bytes.n_GetAt(n));
    }
    EXPECT_EQ(Binary(bytes), DataFile("string-number-map.hex"));
    EXPECT_EQ(Binary(units), DataFile("string-number-map-wide.hex"));
    EXPECT_EQ(Parse(DataFile("string-number-map.hex"), 0),
              (Entries{"b:de=1031", "b:en=1033", "b:=0"}));
    EXPECT_EQ(Parse(DataFile("string-number-map-wide.hex"), 1),
              (Entries{"u:de=1031", "u:en=1033", "u:=0"}));
}

TEST(StringNumberMap, TheBinaryFormKeepsTheRoomOfItsBuffer)
{
    CT_StringNumberMap map;
    Fill(map, {{"ab", 7}});
    CT_Buffer out(500, 32);
    const void* block = out.qcv_Get();
    map.v_Map2Buffer(&out);
    EXPECT_EQ(out.qcv_Get(), block);
    EXPECT_EQ(out.n_GetUsedSize(), 7U);
}

TEST(StringNumberMap, TheBinaryFormIsReadBack)
{
    EXPECT_EQ(Parse(Hex("07000000 616200"), 0), (Entries{"b:ab=7"}));
    EXPECT_EQ(Parse(Hex("07000000 610062000000"), 1), (Entries{"u:ab=7"}));
    EXPECT_EQ(Parse("", 0), Entries());
    EXPECT_EQ(Parse("", 1), Entries());
    EXPECT_EQ(Parse(Hex("01000000 00 02000000 00"), 0), (Entries{"b:=1", "b:=2"}));
    EXPECT_EQ(Parse(Hex("FFFFFFFF 0000 02000000 41000000"), 1),
              (Entries{"u:=4294967295", "u:A=2"}));
}

TEST(StringNumberMap, StringsReadAreTheMapsAlone)
{
    for (const int wide : {0, 1}) {
        CT_StringNumberMap map;
        const CT_Buffer in(Hex("07000000 610062000000").data(), 10, 32);
        map.v_Buffer2Map(&in, wide);
        ASSERT_GE(map.n_GetCount(), 1U);
        EXPECT_EQ(UsesOf(*map.pcco_GetAt(1)), 1U);
        EXPECT_EQ(BufferOf(*map.pcco_GetAt(1)).n_GetGrowth(), 32U);
    }
}

TEST(StringNumberMap, StringsReadAsBytesHaveTheSystemsCodePage)
{
    CT_StringNumberMap map;
    const CT_Buffer in(Hex("07000000 E900").data(), 6, 32);
    map.v_Buffer2Map(&in, 0);
    ASSERT_EQ(map.n_GetCount(), 1U);
    EXPECT_EQ(static_cast<const CT_CString*>(map.pcco_GetAt(1))->n_GetCodePage(), 0U);
    EXPECT_STREQ(map.qccz_GetAt(1), "\xE9");
}

TEST(StringNumberMap, AStringWithoutABlockIsWrittenAsItsNumberAlone)
{
    CT_StringNumberMap map;
    const CT_CString bare;
    map.v_Insert(&bare, 0x41424344);
    Fill(map, {{"x", 7}});
    const std::string binary = Binary(map);
    EXPECT_EQ(binary, Hex("44434241 07000000 7800"));
    // The reader runs on into the next entry.
    EXPECT_EQ(Parse(binary, 0), (Entries{"b:\a=1094861636", "b:=7864320"}));
}

TEST(StringNumberMap, AMapOfBothClassesIsWrittenAsItStandsAndReadWrongly)
{
    CT_StringNumberMap map;
    Fill(map, {{"a", 1}});
    map.v_Insert(U(u"b"), 2);
    const std::string binary = Binary(map);
    EXPECT_EQ(binary, Hex("01000000 6100  02000000 62000000"));
    EXPECT_EQ(Parse(binary, 0), (Entries{"b:a=1", "b:b=2"}));
    EXPECT_EQ(Parse(binary, 1), (Entries{"u:a\x02=1", "u:=98"}));
}

TEST(StringNumberMap, TheBufferMayBeThatOfAStringOfTheMap)
{
    CT_StringNumberMap map;
    Fill(map, {{"AAAAtext", 1}});
    map.v_Buffer2Map(map.pcco_GetAt(1)->pcco_GetBuffer(), 0);
    EXPECT_EQ(Read(map), (Entries{"b:text=1094795585"}));
}

TEST(StringNumberMap, DamagedBinaryFormsEndWithTheBuffer)
{
    struct Case
    {
        const char* bytes;
        int wide;
        Entries entries;
    };
    const Case cases[] = {
        {"07", 0, {}},
        {"070000", 1, {}},
        {"07000000", 0, {"b:=7"}},
        {"07000000", 1, {"u:=7"}},
        {"07000000 6162", 0, {"b:ab=7"}},
        {"07000000 61006200", 1, {"u:ab=7"}},
        {"07000000 610062", 1, {"u:a=7"}},
        {"07000000 61", 1, {"u:=7"}},
        {"07000000 616200 08", 0, {"b:ab=7"}},
        {"07000000 616200 080000", 0, {"b:ab=7"}},
        {"07000000 616200 08000000", 0, {"b:ab=7", "b:=8"}},
    };
    for (const Case& row : cases) {
        SCOPED_TRACE(row.bytes);
        EXPECT_EQ(Parse(Hex(row.bytes), row.wide), row.entries);
    }
}

// tests/Ostra/Maps/StringOrdinalMapTest.cpp
#include "Ostra/Maps/MapSupport.h"
#include "Support/Private.h"

#include <type_traits>

OSTRA_PRIVATE(OrdinalStrings, CT_VoidArray CT_StringOrdinalMap::*,
              &CT_StringOrdinalMap::co_Strings);

namespace
{
const CT_VoidArray& Array(const CT_StringOrdinalMap& map)
{
    return map.*Private(OrdinalStrings());
}

void Fill(CT_StringOrdinalMap& map, std::initializer_list<const char*> texts)
{
    for (const char* text : texts)
        map.v_Insert(text);
}

std::string Flat(CT_StringOrdinalMap& map, char separator)
{
    CT_CString out("what was there before");
    map.v_Map2String(&out, separator);
    return Text(out);
}
} // namespace

// ---- Construction ---------------------------------------------------------------------------

TEST(StringOrdinalMap, ANewMapIsEmptyWithAGrowthOfEight)
{
    const CT_StringOrdinalMap map;
    EXPECT_EQ(map.n_GetCount(), 0U);
    EXPECT_EQ(Array(map).n_GetGrowth(), 8U);
    EXPECT_EQ(Array(map).n_GetItemSize(), sizeof(void*));
    EXPECT_EQ(Array(map).n_GetMaxItems(), 0U);
    const CT_StringOrdinalMap other(3U);
    EXPECT_EQ(Array(other).n_GetGrowth(), 3U);
    EXPECT_FALSE(std::is_polymorphic_v<CT_StringOrdinalMap>);
}

TEST(StringOrdinalMap, AMapWithAGrowthOfZeroTakesEntries)
{
    CT_StringOrdinalMap strings(0u);
    CT_StringNumberMap numbers(0u);
    CT_StringStringMap pairs(0u);
    const CT_CString text("text");
    for (unsigned n = 0; n < 50; ++n) {
        strings.v_Insert(&text);
        numbers.v_Insert(&text, n);
        pairs.v_Insert(&text, &text);
    }
    EXPECT_EQ(strings.n_GetCount(), 50U);
    EXPECT_EQ(numbers.n_GetCount(), 50U);
    EXPECT_EQ(pairs.n_GetCount(), 50U);
}

TEST(StringOrdinalMap, AMapMadeFromAnotherHasStringsOfItsOwnAndItsGrowth)
{
    CT_StringOrdinalMap source(5U);
    source.v_Insert("one");
    source.v_Insert(U(u"two"));
    CT_StringOrdinalMap map(&source);
    EXPECT_EQ(Array(map).n_GetGrowth(), 5U);
    EXPECT_NE(map.pcco_Get(1), source.pcco_Get(1));
    map.v_SetAt("changed", 1);
    EXPECT_EQ(Read(map), (Entries{"b:changed", "u:two"}));
    EXPECT_EQ(Read(source), (Entries{"b:one", "u:two"}));
}

TEST(StringOrdinalMap, TheHeapGivesAndTakesMaps)
{
    const std::unique_ptr<CT_StringOrdinalMap> map(new CT_StringOrdinalMap);
    Fill(*map, {"a"});
    EXPECT_EQ(map->n_GetCount(), 1U);
    alignas(CT_StringOrdinalMap) char place[sizeof(CT_StringOrdinalMap)];
    CT_StringOrdinalMap* placed = new (place) CT_StringOrdinalMap;
    EXPECT_EQ(Address(placed), Address(place));
    placed->~CT_StringOrdinalMap();
}

TEST(StringOrdinalMap, SetEmptiesTheMapAndKeepsTheRoom)
{
    CT_StringOrdinalMap map;
    Fill(map, {"a", "b", "c"});
    const void* block = Array(map).pcco_GetBuffer()->qcv_Get();
    map.v_Set(3U);
    EXPECT_EQ(map.n_GetCount(), 0U);
    EXPECT_EQ(Array(map).n_GetGrowth(), 3U);
    EXPECT_EQ(Array(map).pcco_GetBuffer()->qcv_Get(), block);
}

TEST(StringOrdinalMap, SetFromAMapCopiesItsEntriesAndItsGrowth)
{
    CT_StringOrdinalMap source(5U), map;
    Fill(source, {"x", "y"});
    Fill(map, {"a", "b", "c"});
    map.v_Set(&source);
    EXPECT_EQ(Read(map), (Entries{"b:x", "b:y"}));
    EXPECT_EQ(Array(map).n_GetGrowth(), 5U);
    EXPECT_EQ(Read(source), (Entries{"b:x", "b:y"}));
}

TEST(StringOrdinalMap, AMapSetToItselfIsEmpty)
{
    CT_StringOrdinalMap map;
    Fill(map, {"a", "b"});
    map.v_Set(&map);
    EXPECT_EQ(map.n_GetCount(), 0U);
}

// ---- Change ---------------------------------------------------------------------------------

TEST(StringOrdinalMap, InsertGivesTheIndexOfTheNewEntry)
{
    CT_StringOrdinalMap map;
    const CT_CString bytes("a");
    const CT_UString units(U(u"b"));
    EXPECT_EQ(map.n_Insert(&bytes), 1U);
    EXPECT_EQ(map.n_Insert(&units), 2U);
    EXPECT_EQ(map.n_Insert("c"), 3U);
    EXPECT_EQ(map.n_Insert(U(u"d")), 4U);
    EXPECT_EQ(map.n_Insert("c"), 5U);
    EXPECT_EQ(Read(map), (Entries{"b:a", "u:b", "b:c", "u:d", "b:c"}));
}

TEST(StringOrdinalMap, InsertAddsAtTheEnd)
{
    CT_StringOrdinalMap map;
    const CT_CString bytes("a");
    const CT_UString units(U(u"b"));
    map.v_Insert(&bytes);
    map.v_Insert(&units);
    map.v_Insert("");
    map.v_Insert(U(u"d"));
    EXPECT_EQ(Read(map), (Entries{"b:a", "u:b", "b:", "u:d"}));
}

TEST(StringOrdinalMap, AnEntrySharesTheDataOfTheStringGivenUntilOneChanges)
{
    OnBoth([](bool wide) {
        CT_StringOrdinalMap map;
        const auto text = Make(wide, "shared");
        map.v_Insert(text.get());
        EXPECT_NE(map.pcco_Get(1), text.get());
        EXPECT_EQ(DataOf(*map.pcco_Get(1)), DataOf(*text));
        EXPECT_EQ(UsesOf(*text), 2U);
        text->v_Append('!');
        EXPECT_EQ(Ascii(*map.pcco_Get(1)), "shared");
    });
}

TEST(StringOrdinalMap, AnEntryKeepsTheCodePageOfItsString)
{
    CT_StringOrdinalMap map;
    const CT_CString text("a", ALL, 1250);
    map.v_Insert(&text);
    map.v_Insert("b");
    EXPECT_EQ(static_cast<const CT_CString*>(map.pcco_Get(1))->n_GetCodePage(), 1250U);
    EXPECT_EQ(static_cast<const CT_CString*>(map.pcco_Get(2))->n_GetCodePage(), 0U);
}

TEST(StringOrdinalMap, AppendCopiesTheFirstEntriesOrAll)
{
    CT_StringOrdinalMap source, map;
    Fill(source, {"a", "b", "c"});
    Fill(map, {"x"});
    map.v_Append(&source, 2);
    EXPECT_EQ(Read(map), (Entries{"b:x", "b:a", "b:b"}));
    map.v_Append(&source, ALL);
    EXPECT_EQ(Read(map), (Entries{"b:x", "b:a", "b:b", "b:a", "b:b", "b:c"}));
    map.v_Append(&source, 0);
    EXPECT_EQ(map.n_GetCount(), 6U);
    EXPECT_EQ(Read(source), (Entries{"b:a", "b:b", "b:c"}));
}

TEST(StringOrdinalMap, AppendOfMoreThanThereIsStopsAtTheLast)
{
    CT_StringOrdinalMap source, map;
    Fill(source, {"a", "b"});
    map.v_Append(&source, 3);
    EXPECT_EQ(Read(map), (Entries{"b:a", "b:b"}));
}

TEST(StringOrdinalMap, AppendOfTheMapItselfDoublesIt)
{
    CT_StringOrdinalMap map;
    Fill(map, {"a", "b", "c", "d", "e", "f", "g", "h"});
    map.v_Append(&map, ALL);
    EXPECT_EQ(map.n_GetCount(), 16U);
    EXPECT_EQ(Held(map.pcco_Get(16)), "b:h");
}

TEST(StringOrdinalMap, RemoveAtMovesTheLaterEntriesUp)
{
    CT_StringOrdinalMap map;
    Fill(map, {"a", "b", "c"});
    map.v_RemoveAt(2);
    EXPECT_EQ(Read(map), (Entries{"b:a", "b:c"}));
    map.v_RemoveAt(1);
    map.v_RemoveAt(1);
    EXPECT_EQ(map.n_GetCount(), 0U);
}

TEST(StringOrdinalMap, AnEntrySetToItsOwnTextKeepsIt)
{
    CT_StringOrdinalMap map;
    map.v_Insert("bytes");
    map.v_Insert(U(u"units"));
    for (unsigned index : {1U, 2U})
        map.v_SetAt(map.pcco_Get(index), index);
    map.v_SetAt(map.qccz_Get(1), 1);
    map.v_SetAt(map.qcuz_Get(2), 2);
    EXPECT_EQ(Read(map), (Entries{"b:bytes", "u:units"}));
}

TEST(StringOrdinalMap, SetAtReplacesTheTextAndLeavesTheClass)
{
    CT_StringOrdinalMap map;
    map.v_Insert("a");
    map.v_Insert(U(u"b"));
    const CT_String* held = map.pcco_Get(1);
    const CT_UString units(U(u"units"));
    map.v_SetAt(&units, 1);
    EXPECT_EQ(map.pcco_Get(1), held);
    map.v_SetAt("bytes", 2);
    EXPECT_EQ(Read(map), (Entries{"b:units", "u:bytes"}));
    map.v_SetAt(U(u"x"), 1);
    EXPECT_EQ(Read(map), (Entries{"b:x", "u:bytes"}));
}

TEST(StringOrdinalMap, AnIndexOutsideTheMapIsNothing)
{
    CT_StringOrdinalMap map;
    Fill(map, {"a", "b"});
    map.v_RemoveAt(2);
    for (const unsigned index : {0U, 2U, 3U, 9U, 0x20000001U, 0x40000001U, 0xFFFFFFFFU}) {
        SCOPED_TRACE(index);
        map.v_RemoveAt(index);
        map.v_SetAt("x", index);
        EXPECT_EQ(map.pcco_Get(index), nullptr);
        EXPECT_STREQ(map.qccz_Get(index), "");
        EXPECT_EQ(*map.qcuz_Get(index), 0);
    }
    EXPECT_EQ(Read(map), (Entries{"b:a"}));
}

// ---- Access and search ----------------------------------------------------------------------

TEST(StringOrdinalMap, GetFindsTheFirstEqualString)
{
    CT_StringOrdinalMap map;
    Fill(map, {"a", "b", "A", "b", ""});
    map.v_Insert(U(u"wide"));
    const CT_CString b("b"), none("none"), empty;
    const CT_UString upper(U(u"A"));
    EXPECT_EQ(map.n_Get(&b), 2U);
    EXPECT_EQ(map.n_Get(&upper), 3U);
    EXPECT_EQ(map.n_Get(&none), 0U);
    EXPECT_EQ(map.n_Get(&empty), 5U);
    EXPECT_EQ(map.n_Get("a"), 1U);
    EXPECT_EQ(map.n_Get(U(u"b")), 2U);
    EXPECT_EQ(map.n_Get("wide"), 6U);
    EXPECT_EQ(map.n_Get(U(u"wide")), 6U);
    EXPECT_EQ(map.n_Get("wid"), 0U);
    EXPECT_EQ(map.n_Get(U(u"wider")), 0U);
    EXPECT_EQ(CT_StringOrdinalMap().n_Get("a"), 0U);
}

TEST(StringOrdinalMap, GetTellsCharactersOfTheTwoClassesApartByTheCodePage)
{
    CT_StringOrdinalMap map;
    const CT_CString latin("caf\xE9", ALL, 1252), east("caf\xE9", ALL, 1251);
    const CT_UString letter(U(u"caf\u00E9")), cyrillic(U(u"caf\u0439"));
    map.v_Insert(&east);
    map.v_Insert(&latin);
    EXPECT_EQ(map.n_Get(&letter), 2U);
    EXPECT_EQ(map.n_Get(&cyrillic), 1U);
    EXPECT_EQ(map.n_Get(&latin), 1U) << "bytes are compared as they are";
}

TEST(StringOrdinalMap, TextComesAsItStandsInItsString)
{
    CT_StringOrdinalMap map;
    map.v_Insert("ab");
    map.v_Insert(U(u"cd"));
    const CT_CString bare;
    map.v_Insert(&bare);
    map.v_Insert(U(u""));
    EXPECT_EQ(Address(map.qccz_Get(1)), DataOf(*map.pcco_Get(1)));
    EXPECT_STREQ(map.qccz_Get(1), "ab");
    EXPECT_EQ(Address(map.qcuz_Get(1)), DataOf(*map.pcco_Get(1))) << "bytes behind a wide pointer";
    EXPECT_EQ(Address(map.qcuz_Get(2)), DataOf(*map.pcco_Get(2)));
    EXPECT_EQ(Address(map.qccz_Get(2)), DataOf(*map.pcco_Get(2)))
        << "units behind a narrow pointer";
    EXPECT_EQ(std::string(map.qccz_Get(2), 6), std::string("c\0d\0\0", 6));
    for (const unsigned empty : {3U, 4U}) {
        EXPECT_STREQ(map.qccz_Get(empty), "");
        EXPECT_EQ(*map.qcuz_Get(empty), 0);
    }
}

// ---- Flat form ------------------------------------------------------------------------------

TEST(StringOrdinalMap, TheFlatFormHasASeparatorBehindEveryEntry)
{
    CT_StringOrdinalMap map;
    EXPECT_EQ(Flat(map, ';'), "");
    Fill(map, {"a", "b"});
    EXPECT_EQ(Flat(map, ';'), "a;b;");
    map.v_Insert("");
    map.v_Insert(U(u"wide"));
    EXPECT_EQ(Flat(map, ','), "a,b,,wide,");
    CT_UString wide(U(u"before"));
    map.v_Map2String(&wide, '|');
    EXPECT_EQ(Text(wide), u"a|b||wide|");
    EXPECT_EQ(Flat(map, 0), "abwide") << "a zero separates nothing";
}

TEST(StringOrdinalMap, TheFlatFormIsReadBack)
{
    OnBoth([](bool wide) {
        CT_StringOrdinalMap map;
        Fill(map, {"before", "that"});
        map.v_Set(3U);
        const auto text = Make(wide, "a;b;");
        map.v_String2Map(text.get(), ';');
        EXPECT_EQ(Read(map), wide ? (Entries{"u:a", "u:b"}) : (Entries{"b:a", "b:b"}));
        EXPECT_EQ(Array(map).n_GetGrowth(), 8U);
        EXPECT_EQ(Ascii(*text), "a;b;");
        EXPECT_EQ(UsesOf(*text), 1U);
        CT_StringOrdinalMap again;
        CT_CString flat;
        map.v_Map2String(&flat, ';');
        again.v_String2Map(&flat, ';');
        EXPECT_EQ(again.n_GetCount(), 2U);
    });
}

TEST(StringOrdinalMap, AnEmptyItemEndsTheReading)
{
    struct Case
    {
        const char* text;
        Entries entries;
    };
    const Case cases[] = {
        {"a,,b", {"a"}},
        {"a,b,", {"a", "b"}},
        {"a,b", {"a", "b"}},
        {",a", {}},
        {"", {}},
        {",", {}},
        {"abc", {"abc"}},
        {"a, ,b", {"a", " ", "b"}},
        {"a,b,,", {"a", "b"}},
        {"aa,b;c", {"aa", "b;c"}},
    };
    for (const Case& row : cases) {
        OnBoth([&row](bool wide) {
            SCOPED_TRACE(row.text);
            CT_StringOrdinalMap map;
            Fill(map, {"before"});
            map.v_String2Map(Make(wide, row.text).get(), ',');
            Entries wanted;
            for (const std::string& entry : row.entries)
                wanted.push_back((wide ? "u:" : "b:") + entry);
            EXPECT_EQ(Read(map), wanted);
        });
    }
}

TEST(StringOrdinalMap, ItemsHaveBlocksOfTheirOwnSizeAndTheCodePageOfTheText)
{
    CT_StringOrdinalMap map;
    const std::string rest(500, 'x');
    const CT_CString text(("a;" + rest).c_str(), ALL, 1250);
    map.v_String2Map(&text, ';');
    ASSERT_EQ(map.n_GetCount(), 2U);
    EXPECT_LT(map.pcco_Get(1)->vn_GetMaximumLength(), 32U);
    EXPECT_EQ(UsesOf(*map.pcco_Get(1)), 1U);
    EXPECT_EQ(static_cast<const CT_CString*>(map.pcco_Get(1))->n_GetCodePage(), 1250U);
    EXPECT_EQ(Held(map.pcco_Get(2)), "b:" + rest);
}

TEST(StringOrdinalMap, TheTextMayBeOneOfTheMapsOwn)
{
    CT_StringOrdinalMap map;
    Fill(map, {"x", "a;b;c"});
    map.v_String2Map(map.pcco_Get(2), ';');
    EXPECT_EQ(Read(map), (Entries{"b:a", "b:b", "b:c"}));
}

TEST(StringOrdinalMap, ASeparatorAboveAsciiSeparatesInBothClasses)
{
    // A character that the system's code page may not have separates nothing.
    const char separator = '\xA7';
    if (CT_StringConvert::sc_WideToMulti(0xA7, 0) != separator)
        return;
    for (const bool wide : {false, true}) {
        CT_StringOrdinalMap map, again;
        Fill(map, {"a", "b"});
        CT_CString bytes;
        CT_UString units;
        CT_String* out = wide ? static_cast<CT_String*>(&units) : &bytes;
        map.v_Map2String(out, separator);
        EXPECT_EQ(Ascii(*out), "a~b~");
        again.v_String2Map(out, separator);
        EXPECT_EQ(again.n_GetCount(), 2U);
    }
}

TEST(StringOrdinalMap, AStringOfNeitherClassIsNothing)
{
    CT_StringOrdinalMap map;
    Fill(map, {"a"});
    map.v_Insert(&CT_String::sco_Object);
    EXPECT_EQ(map.n_Insert(&CT_String::sco_Object), 0U);
    EXPECT_EQ(map.n_GetCount(), 1U);
    map.v_String2Map(&CT_String::sco_Object, ';');
    EXPECT_EQ(map.n_GetCount(), 0U);
}

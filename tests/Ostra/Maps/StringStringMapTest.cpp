// tests/Ostra/Maps/StringStringMapTest.cpp
#include "Ostra/Maps/MapSupport.h"
#include "Support/Private.h"

#include <type_traits>

typedef CT_Array<CT_String*> StringArray;
OSTRA_PRIVATE(FirstStrings, StringArray CT_StringStringMap::*, &CT_StringStringMap::co_First);
OSTRA_PRIVATE(SecondStrings, StringArray CT_StringStringMap::*, &CT_StringStringMap::co_Second);

namespace
{
const StringArray& First(const CT_StringStringMap& map)
{
    return map.*Private(FirstStrings());
}

const StringArray& Second(const CT_StringStringMap& map)
{
    return map.*Private(SecondStrings());
}

struct Pair
{
    const char *first, *second;
};

void Fill(CT_StringStringMap& map, std::initializer_list<Pair> pairs)
{
    for (const Pair& pair : pairs)
        map.v_Insert(pair.first, pair.second);
}
} // namespace

// ---- Construction ---------------------------------------------------------------------------

TEST(StringStringMap, ANewMapIsEmptyWithAGrowthOfFour)
{
    const CT_StringStringMap map;
    const CT_StringStringMap other(9U);
    EXPECT_EQ(map.n_GetCount(), 0U);
    EXPECT_EQ(First(map).n_GetGrowth(), 4U);
    EXPECT_EQ(Second(map).n_GetGrowth(), 4U);
    EXPECT_EQ(First(other).n_GetGrowth(), 9U);
    EXPECT_EQ(Second(other).n_GetGrowth(), 9U);
    EXPECT_EQ(First(map).n_GetItemSize(), sizeof(void*));
    EXPECT_FALSE(std::is_polymorphic_v<CT_StringStringMap>);
}

TEST(StringStringMap, AMapMadeFromAnotherHasStringsOfItsOwnAndItsGrowth)
{
    CT_StringStringMap source(5U);
    Fill(source, {{"a", "1"}});
    source.v_Insert(U(u"b"), U(u"2"));
    CT_StringStringMap map(&source);
    EXPECT_EQ(Read(map), (Entries{"b:a=b:1", "u:b=u:2"}));
    EXPECT_EQ(First(map).n_GetGrowth(), 5U);
    EXPECT_EQ(Second(map).n_GetGrowth(), 5U);
    CT_String *first, *second;
    map.v_GetAt(&first, &second, 1);
    first->v_Append('!');
    second->v_Append('!');
    EXPECT_EQ(Read(source), (Entries{"b:a=b:1", "u:b=u:2"}));
}

TEST(StringStringMap, TheHeapGivesAndTakesMaps)
{
    const std::unique_ptr<CT_StringStringMap> map(new CT_StringStringMap);
    Fill(*map, {{"a", "b"}});
    EXPECT_EQ(map->n_GetCount(), 1U);
    alignas(CT_StringStringMap) char place[sizeof(CT_StringStringMap)];
    CT_StringStringMap* placed = new (place) CT_StringStringMap;
    EXPECT_EQ(Address(placed), Address(place));
    placed->~CT_StringStringMap();
}

TEST(StringStringMap, SetEmptiesTheMapAndKeepsTheRoom)
{
    CT_StringStringMap map;
    Fill(map, {{"a", "1"}, {"b", "2"}});
    const void* first = First(map).pcco_GetBuffer()->qcv_Get();
    const void* second = Second(map).pcco_GetBuffer()->qcv_Get();
    map.v_Set(3U);
    EXPECT_EQ(map.n_GetCount(), 0U);
    EXPECT_EQ(Second(map).n_GetCount(), 0U);
    EXPECT_EQ(First(map).n_GetGrowth(), 3U);
    EXPECT_EQ(Second(map).n_GetGrowth(), 3U);
    EXPECT_EQ(First(map).pcco_GetBuffer()->qcv_Get(), first);
    EXPECT_EQ(Second(map).pcco_GetBuffer()->qcv_Get(), second);
}

TEST(StringStringMap, SetFromAMapCopiesItsEntriesAndItsGrowth)
{
    CT_StringStringMap source(5U), map;
    Fill(source, {{"x", "y"}});
    Fill(map, {{"a", "1"}, {"b", "2"}});
    map.v_Set(&source);
    EXPECT_EQ(Read(map), (Entries{"b:x=b:y"}));
    EXPECT_EQ(Second(map).n_GetGrowth(), 5U);
    EXPECT_EQ(Read(source), (Entries{"b:x=b:y"}));
    map.v_Set(&map);
    EXPECT_EQ(map.n_GetCount(), 0U) << "set to itself";
}

// ---- Access and search ----------------------------------------------------------------------

TEST(StringStringMap, TheFirstStringIsFoundByTheSecondAndTheSecondByTheFirst)
{
    CT_StringStringMap map;
    Fill(map, {{"a", "b"}, {"b", "c"}, {"a", "c"}, {"d", "c"}});
    const CT_CString a("a"), c("c"), none("none");
    const CT_UString b(U(u"b"));
    EXPECT_EQ(Held(map.pcco_GetString1(&b)), "b:a");
    EXPECT_EQ(Held(map.pcco_GetString1(&c)), "b:b");
    EXPECT_EQ(map.pcco_GetString1(&a), nullptr);
    EXPECT_EQ(Held(map.pcco_GetString2(&a)), "b:b");
    EXPECT_EQ(Held(map.pcco_GetString2(&b)), "b:c");
    EXPECT_EQ(map.pcco_GetString2(&c), nullptr);
    EXPECT_EQ(map.pcco_GetString1(&none), nullptr);
    EXPECT_EQ(map.pcco_GetString2(&none), nullptr);
    EXPECT_EQ(Held(map.pcco_GetString1("b")), "b:a");
    EXPECT_EQ(Held(map.pcco_GetString1(U(u"c"))), "b:b");
    EXPECT_EQ(Held(map.pcco_GetString2("d")), "b:c");
    EXPECT_EQ(Held(map.pcco_GetString2(U(u"a"))), "b:b");
    EXPECT_EQ(map.pcco_GetString2("A"), nullptr);
}

TEST(StringStringMap, WhatIsFoundIsTheHeldString)
{
    CT_StringStringMap map;
    Fill(map, {{"a", "b"}});
    CT_String *first, *second;
    map.v_GetAt(&first, &second, 1);
    EXPECT_EQ(map.pcco_GetString1("b"), first);
    EXPECT_EQ(map.pcco_GetString2("a"), second);
}

// ---- Change ---------------------------------------------------------------------------------

TEST(StringStringMap, InsertTakesStringsOfBothClassesInOnePair)
{
    CT_StringStringMap map;
    const CT_CString bytes("a");
    const CT_UString units(U(u"b"));
    map.v_Insert(&bytes, &units);
    map.v_Insert(&units, &bytes);
    map.v_Insert(&bytes, &bytes);
    EXPECT_EQ(Read(map), (Entries{"b:a=u:b", "u:b=b:a", "b:a=b:a"}));
    CT_String *first, *second;
    map.v_GetAt(&first, &second, 3);
    EXPECT_NE(first, second);
    EXPECT_EQ(DataOf(*first), DataOf(bytes));
    EXPECT_EQ(UsesOf(bytes), 5U);
    EXPECT_EQ(Held(map.pcco_GetString2(U(u"a"))), "u:b");
    EXPECT_EQ(Held(map.pcco_GetString1("a")), "u:b");
}

TEST(StringStringMap, RemoveAtTakesBothStrings)
{
    CT_StringStringMap map;
    Fill(map, {{"a", "1"}, {"b", "2"}, {"c", "3"}});
    map.v_RemoveAt(2);
    EXPECT_EQ(Read(map), (Entries{"b:a=b:1", "b:c=b:3"}));
    EXPECT_EQ(Second(map).n_GetCount(), 2U);
}

TEST(StringStringMap, AnIndexOutsideTheMapIsNothing)
{
    CT_StringStringMap map;
    Fill(map, {{"a", "1"}, {"b", "2"}});
    map.v_RemoveAt(2);
    for (const unsigned index : {0U, 2U, 3U, 9U, 0x20000001U, 0x40000001U, 0xFFFFFFFFU}) {
        SCOPED_TRACE(index);
        map.v_RemoveAt(index);
        CT_String *first = &CT_String::sco_Object, *second = first;
        map.v_GetAt(&first, &second, index);
        EXPECT_EQ(first, nullptr);
        EXPECT_EQ(second, nullptr);
    }
    EXPECT_EQ(Read(map), (Entries{"b:a=b:1"}));
}

TEST(StringStringMap, AppendCopiesTheFirstEntriesOrAll)
{
    CT_StringStringMap source, map;
    Fill(source, {{"a", "1"}, {"b", "2"}, {"c", "3"}});
    Fill(map, {{"x", "y"}});
    map.v_Append(&source, 2);
    EXPECT_EQ(Read(map), (Entries{"b:x=b:y", "b:a=b:1", "b:b=b:2"}));
    map.v_Append(&source, ALL);
    EXPECT_EQ(map.n_GetCount(), 6U);
    map.v_Append(&source, 7);
    EXPECT_EQ(map.n_GetCount(), 9U) << "no more than there are";
    EXPECT_EQ(Read(source), (Entries{"b:a=b:1", "b:b=b:2", "b:c=b:3"}));
    source.v_Append(&source, ALL);
    EXPECT_EQ(source.n_GetCount(), 6U);
}

TEST(StringStringMap, AStringOfNeitherClassMakesNoPair)
{
    CT_StringStringMap map;
    const CT_CString text("a");
    map.v_Insert(&text, &CT_String::sco_Object);
    map.v_Insert(&CT_String::sco_Object, &text);
    EXPECT_EQ(map.n_GetCount(), 0U);
    EXPECT_EQ(Second(map).n_GetCount(), 0U);
    EXPECT_EQ(UsesOf(text), 1U);
}

// ---- Flat form ------------------------------------------------------------------------------

TEST(StringStringMap, TheFlatFormHasBothSeparatorsInEveryPair)
{
    CT_StringStringMap map;
    CT_CString bytes("what was there before");
    map.v_Map2String(&bytes, '=', ';');
    EXPECT_EQ(Text(bytes), "");
    Fill(map, {{"a", "1"}, {"", "2"}, {"c", ""}});
    map.v_Insert(U(u"d"), U(u"4"));
    map.v_Map2String(&bytes, '=', ';');
    EXPECT_EQ(Text(bytes), "a=1;=2;c=;d=4;");
    CT_UString units;
    map.v_Map2String(&units, ':', '|');
    EXPECT_EQ(Text(units), u"a:1|:2|c:|d:4|");
}

TEST(StringStringMap, NoTextIsReadBack)
{
    for (const char* text : {"a=1;b=2;", "a=1", "", ";", "=", "=;=", "a", ";a=1;"}) {
        OnBoth([text](bool wide) {
            SCOPED_TRACE(text);
            CT_StringStringMap map(9U);
            Fill(map, {{"x", "y"}});
            const auto in = Make(wide, text);
            map.v_String2Map(in.get(), '=', ';');
            EXPECT_EQ(map.n_GetCount(), 0U);
            EXPECT_EQ(First(map).n_GetGrowth(), 4U);
            EXPECT_EQ(Second(map).n_GetGrowth(), 4U);
            EXPECT_EQ(Ascii(*in), text);
        });
    }
}

TEST(StringStringMap, TheTextMayBeOneOfTheMapsOwn)
{
    CT_StringStringMap map;
    Fill(map, {{"a=1;", "x"}});
    map.v_String2Map(map.pcco_GetString1("x"), '=', ';');
    EXPECT_EQ(map.n_GetCount(), 0U);
}

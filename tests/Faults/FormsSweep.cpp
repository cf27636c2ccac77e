// tests/Faults/FormsSweep.cpp: forms of the operations of containers and texts with an exhausted
// heap.
#include <Ostra/Ostra.h>

#include "Faults/Forms.h"

#include <memory>
#include <string>
#include <utility>

using namespace forms;

// ---- Maps ---------------------------------------------------------------------------------

namespace
{
template <class Map>
struct MapState : Texts
{
    Map map;
    Map source;
    Made<Map> made;
    CT_CString out;
};

struct Numbers : MapState<CT_StringNumberMap>
{
    Numbers()
    {
        for (CT_StringNumberMap* each : {&map, &source}) {
            each->v_Insert("one", 1);
            each->v_Insert("two", 2);
        }
    }
};

struct Ordinals : MapState<CT_StringOrdinalMap>
{
    Ordinals()
    {
        for (CT_StringOrdinalMap* each : {&map, &source}) {
            each->v_Insert("one");
            each->v_Insert("two");
        }
    }
};

struct Pairs : MapState<CT_StringStringMap>
{
    Pairs()
    {
        for (CT_StringStringMap* each : {&map, &source}) {
            each->v_Insert("one", "eins");
            each->v_Insert("two", "zwei");
        }
    }
};
} // namespace

TEST(FormsSweep, NumberMaps)
{
    const Form<Numbers> forms[] = {
        {"copy",
         [](Numbers& s) {
             s.made.Make(&s.source);
         }},
        {"insert",
         [](Numbers& s) {
             s.map.v_Insert(s.wide, 3);
         }},
        {"append",
         [](Numbers& s) {
             s.map.v_Append(&s.source, 2);
         }},
        {"get",
         [](Numbers& s) {
             s.map.n_Get(TEXT);
         }},
        {"get wide",
         [](Numbers& s) {
             s.map.n_Get(s.wide);
         }},
        {"get string",
         [](Numbers& s) {
             s.map.n_Get(&s.units);
         }},
        {"update",
         [](Numbers& s) {
             s.map.v_Update(TEXT, 1);
         }},
        {"update wide",
         [](Numbers& s) {
             s.map.v_Update(s.wide, 1);
         }},
        {"update string",
         [](Numbers& s) {
             s.map.v_Update(&s.units, 1);
         }},
        {"set at",
         [](Numbers& s) {
             s.map.v_SetAt(TEXT, 1);
         }},
        {"set at wide",
         [](Numbers& s) {
             s.map.v_SetAt(s.wide, 1);
         }},
        {"set at string",
         [](Numbers& s) {
             s.map.v_SetAt(&s.units, 1);
         }},
    };
    SweepForms(forms);
}

TEST(FormsSweep, OrdinalMaps)
{
    const Form<Ordinals> forms[] = {
        {"copy",
         [](Ordinals& s) {
             s.made.Make(&s.source);
         }},
        {"set map",
         [](Ordinals& s) {
             s.map.v_Set(&s.source);
         }},
        {"insert",
         [](Ordinals& s) {
             s.map.v_Insert(s.wide);
         }},
        {"append",
         [](Ordinals& s) {
             s.map.v_Append(&s.source, 2);
         }},
        {"get wide",
         [](Ordinals& s) {
             s.map.n_Get(s.wide);
         }},
        {"set at",
         [](Ordinals& s) {
             s.map.v_SetAt(TEXT, 1);
         }},
        {"set at wide",
         [](Ordinals& s) {
             s.map.v_SetAt(s.wide, 1);
         }},
        {"set at string",
         [](Ordinals& s) {
             s.map.v_SetAt(&s.units, 1);
         }},
        {"as string",
         [](Ordinals& s) {
             s.map.v_Map2String(&s.out, ';');
         }},
    };
    SweepForms(forms);
}

TEST(FormsSweep, StringMaps)
{
    const Form<Pairs> forms[] = {
        {"copy",
         [](Pairs& s) {
             s.made.Make(&s.source);
         }},
        {"set map",
         [](Pairs& s) {
             s.map.v_Set(&s.source);
         }},
        {"insert",
         [](Pairs& s) {
             s.map.v_Insert(s.wide, s.wide);
         }},
        {"append",
         [](Pairs& s) {
             s.map.v_Append(&s.source, 2);
         }},
        {"get first",
         [](Pairs& s) {
             s.map.pcco_GetString1(TEXT);
         }},
        {"get first wide",
         [](Pairs& s) {
             s.map.pcco_GetString1(s.wide);
         }},
        {"get second",
         [](Pairs& s) {
             s.map.pcco_GetString2(TEXT);
         }},
        {"get second wide",
         [](Pairs& s) {
             s.map.pcco_GetString2(s.wide);
         }},
        {"as string",
         [](Pairs& s) {
             s.map.v_Map2String(&s.out, '=', ';');
         }},
    };
    SweepForms(forms);
}

// ---- Trees, sets, lists and arrays --------------------------------------------------------

namespace
{
struct Tree : Texts
{
    Tree()
    {
        tree.v_Add(TEXT, 1);
        tree.v_Add("a", 2);
        wide_tree.v_Add(wide, 1);
        wide_tree.v_Add(Units(u"a"), 2);
    }
    CT_AlphaTree tree, wide_tree, none, wide_none;
};

// Two sets that share a block.
struct Bits
{
    Bits()
    {
        source.v_SetBit(3, 1);
        set.v_Set(&source);
        other.v_SetBit(4, 1);
    }
    CT_BitSet source{70}, set{70}, other{70};
};

int Order(const void* first, const void* second)
{
    return *static_cast<const int*>(first) - *static_cast<const int*>(second);
}

struct Arrays
{
    Arrays()
    {
        for (const int each : {4, 8, 15, 16, 23, 42, 43, 44, 45, 46}) {
            array.v_Insert(&each);
            sorted.v_Insert(&each);
            list.v_InsertLast(&each);
            table.b_Insert(&each, &each);
        }
        shared.v_Set(&array);
        shared_sorted.v_Set(&sorted);
        block.v_Append(TEXT, sizeof TEXT);
        shared_block.v_Set(&block);
    }
    int number = 7;
    CT_VoidArray array{4}, shared{4};
    CT_VoidSortedArray sorted{4, Order, 0, 0}, shared_sorted{4, Order, 0, 0};
    CT_VoidList list{4}, other{4};
    CT_VoidHashTable table{4, 4, CT_VoidHashTable::sn_HashInteger, Order, 5};
    CT_Buffer block, shared_block;
    Made<CT_VoidArray> new_array;
    Made<CT_VoidSortedArray> new_sorted;
    Made<CT_VoidList> new_list;
    Made<CT_VoidHashTable> new_table;
};
} // namespace

TEST(FormsSweep, Trees)
{
    const Form<Tree> forms[] = {
        {"add wide",
         [](Tree& s) {
             s.wide_none.v_Add(s.wide, 3);
         }},
        {"add string",
         [](Tree& s) {
             s.none.v_Add(&s.bytes, 3);
         }},
        {"add wide string",
         [](Tree& s) {
             s.wide_none.v_Add(&s.units, 3);
         }},
    };
    SweepForms(forms);
}

TEST(FormsSweep, Sets)
{
    const Form<Bits> forms[] = {
        {"or",
         [](Bits& s) {
             s.set.v_Or(&s.other);
         }},
        {"and",
         [](Bits& s) {
             s.set.v_And(&s.other);
         }},
        {"difference",
         [](Bits& s) {
             s.set.v_Difference(&s.other);
         }},
        {"reverse difference",
         [](Bits& s) {
             s.set.v_RDifference(&s.other);
         }},
    };
    SweepForms(forms);
}

TEST(FormsSweep, Arrays)
{
    const Form<Arrays> forms[] = {
        {"insert copy",
         [](Arrays& s) {
             s.array.v_AtInsertCopy(2, 0, 5, &s.shared);
         }},
        {"insert move",
         [](Arrays& s) {
             s.shared.v_AtInsertMove(5, 0, 3);
         }},
        {"remove",
         [](Arrays& s) {
             s.shared.v_Remove(0, 1);
         }},
        {"sorted of array",
         [](Arrays& s) {
             s.new_sorted.Make(s.sorted.pcco_GetArray(), Order);
         }},
        {"sorted",
         [](Arrays& s) {
             s.new_sorted.Make(4U, Order, 8U, 8U);
         }},
        {"sorted set",
         [](Arrays& s) {
             s.sorted.v_Set(8, 100, 1);
         }},
        {"sorted set at",
         [](Arrays& s) {
             s.shared_sorted.v_SetAt(&s.number, 0);
         }},
        {"sorted size",
         [](Arrays& s) {
             s.sorted.v_SetSize(100);
         }},
        {"sorted remove",
         [](Arrays& s) {
             s.shared_sorted.v_RemoveAt(0);
         }},
        {"sorted take",
         [](Arrays& s) {
             s.shared_sorted.v_RemoveAt(&s.number, 0);
         }},
        {"buffer",
         [](Arrays& s) {
             s.shared_block.v_AtInsertCopy(&s.block, 0, 0, 60);
         }},
    };
    SweepForms(forms);
}

TEST(FormsSweep, ListsAndTables)
{
    const Form<Arrays> forms[] = {
        {"list copy",
         [](Arrays& s) {
             s.new_list.Make(&s.list);
         }},
        {"list set",
         [](Arrays& s) {
             s.other.v_Set(&s.list);
         }},
        {"table copy",
         [](Arrays& s) {
             s.new_table.Make(&s.table);
         }},
    };
    SweepForms(forms);
}

// ---- Compressed lists and word lists ------------------------------------------------------

namespace
{
struct Lists : Texts
{
    Lists()
    {
        for (unsigned n = 0; n < 300; ++n) {
            const std::string key = std::to_string(n * 7919 % 1000);
            list.b_Add(key.c_str(), n);
            builder.b_Add(key.c_str(), n);
        }
        shared.v_Set(&list);
        words.v_Insert("cat", "Katze");
        wide_words.v_Insert(Units(u"cat"), Units(u"Katze"));
        units_copy.v_Set(&units);
        bytes_copy.v_Set(&bytes);
    }
    CT_CompList list{CT_CompList::es_Byte, 2, 0, 1, 128, 0};
    CT_CompList shared{CT_CompList::es_Byte, 2, 0, 1, 128, 0};
    CT_CompList wide_list{CT_CompList::es_Short, 2, 0, 1, 128, 0};
    CT_CompListBuilder builder{CT_CompList::es_Byte, 2, 0, 1, 128, 0};
    CT_CompListBuilder other{CT_CompList::es_Byte, 2, 0, 1, 128, 0};
    CT_CompListBuilder wide_builder{CT_CompList::es_Short, 2, 0, 1, 128, 0};
    CT_BiLingualCWordList words;
    CT_BiLingualUWordList wide_words;
    CT_UString units_copy;
    CT_CString bytes_copy;
    CT_UString out, second;
    unsigned matched = 0;
    Made<CT_CompListBuilder> new_builder;
};
} // namespace

TEST(FormsSweep, CompressedLists)
{
    const Form<Lists> forms[] = {
        {"add string",
         [](Lists& s) {
             s.shared.b_Add(&s.bytes, 1);
         }},
        {"add wide string",
         [](Lists& s) {
             s.wide_list.b_Add(&s.units, 1);
         }},
        {"builder of list",
         [](Lists& s) {
             s.new_builder.Make(&s.list);
         }},
        {"builder of block",
         [](Lists& s) {
             s.new_builder.Make(s.list.pcco_GetBuffer());
         }},
        {"builder set block",
         [](Lists& s) {
             s.other.v_Set(s.list.pcco_GetBuffer());
         }},
        {"builder add string",
         [](Lists& s) {
             s.other.b_Add(&s.bytes, 1);
         }},
        {"builder add wide",
         [](Lists& s) {
             s.wide_builder.b_Add(s.wide, 1);
         }},
        {"builder add wide string",
         [](Lists& s) {
             s.wide_builder.b_Add(&s.units, 1);
         }},
        {"builder weigh string",
         [](Lists& s) {
             s.other.b_Add(&s.bytes, 1, 5);
         }},
        {"builder weigh wide",
         [](Lists& s) {
             s.wide_builder.b_Add(s.wide, 1, 5);
         }},
        {"builder weigh wide string",
         [](Lists& s) {
             s.wide_builder.b_Add(&s.units, 1, 5);
         }},
    };
    SweepForms(forms);
}

TEST(FormsSweep, WordLists)
{
    const Form<Lists> forms[] = {
        {"insert",
         [](Lists& s) {
             s.words.v_Insert(&s.bytes, &s.bytes_copy);
         }},
        {"insert wide",
         [](Lists& s) {
             s.wide_words.v_Insert(&s.units, &s.units_copy);
         }},
        {"get",
         [](Lists& s) {
             CT_BiUWordListIterator iterator(&s.wide_words);
             iterator.b_Next();
             iterator.v_Get(&s.out, &s.second);
         }},
        {"get bytes",
         [](Lists& s) {
             CT_BiCWordListIterator iterator(&s.words);
             iterator.b_Next();
             iterator.v_Get(&s.out, &s.second);
         }},
    };
    SweepForms(forms);
}

// ---- Texts --------------------------------------------------------------------------------

namespace
{
// Texts that share their blocks, so that each change needs one of its own.
struct Shared : Texts
{
    Shared()
    {
        narrow.v_Set(&bytes);
        wider.v_Set(&units);
        mixed.v_Set(&mixed_source);
        short_narrow.v_Set("x", ALL, 1252);
        short_narrow.vv_SetSize(1, 1);
        short_wider.v_Set("x", ALL, 1252);
        short_wider.vv_SetSize(1, 1);
        output.vv_Append(TEXT, sizeof TEXT);
    }
    CT_CString narrow, short_narrow;
    CT_UString wider, short_wider;
    const CT_UString mixed_source{
        Units(u"\uFF21\u0661 ABC \u3042\u30A2 and more that takes a block")};
    CT_UString mixed;
    CT_CString out;
    CT_UString wide_out;
    CT_MemoryOutput output, other;
    CT_StringCache cache{10, 2};
    Made<CT_UString> new_wide;
    Made<CT_MemoryOutput> new_output;
};
} // namespace

TEST(FormsSweep, Texts)
{
    const Form<Shared> forms[] = {
        {"append unit",
         [](Shared& s) {
             s.narrow.v_Append(static_cast<unsigned short>('x'));
         }},
        {"append byte",
         [](Shared& s) {
             s.wider.v_Append('x', 1252);
         }},
        {"set at",
         [](Shared& s) {
             s.narrow.v_SetAt('x', 0);
         }},
        {"set at unit",
         [](Shared& s) {
             s.narrow.vv_SetAt(static_cast<unsigned short>('x'), 0);
         }},
        {"set at wide",
         [](Shared& s) {
             s.wider.v_SetAt(static_cast<unsigned short>('x'), 0);
         }},
        {"of a size",
         [](Shared& s) {
             s.new_wide.Make(100U);
         }},
        {"format",
         [](Shared& s) {
             s.narrow.vv_Format(&s.bytes);
         }},
        {"format wide",
         [](Shared& s) {
             s.wider.vv_Format(&s.units);
         }},
    };
    SweepForms(forms);
}

TEST(FormsSweep, Comparisons)
{
    const Form<Shared> forms[] = {
        {"without case",
         [](Shared& s) {
             const CT_String *first = &s.bytes, *second = &s.units;
             CT_Compare::si_CompareStringNoCasePPCO(&first, &second);
         }},
        {"hash of bytes",
         [](Shared& s) {
             const CT_String* first = &s.bytes;
             CT_HashFunction::sn_HashStringPPCO(&first, 7);
         }},
    };
    SweepForms(forms);
}

TEST(FormsSweep, Mappings)
{
    const Form<Shared> forms[] = {
        {"forms of width",
         [](Shared& s) {
             CT_CharMappings::sv_FoldCZone(&s.mixed);
         }},
        {"digits",
         [](Shared& s) {
             CT_CharMappings::sv_FoldDigit(&s.mixed);
         }},
        {"hiragana",
         [](Shared& s) {
             CT_CharMappings::sv_HiraganaToKatakana(&s.mixed);
         }},
        {"katakana",
         [](Shared& s) {
             CT_CharMappings::sv_KatakanaToHiragana(&s.mixed);
         }},
        {"lower case",
         [](Shared& s) {
             CT_CharMappings::sv_ToLower(&s.mixed);
         }},
        {"append by the base",
         [](Shared& s) {
             static_cast<CT_String&>(s.narrow).v_Append(static_cast<unsigned short>('x'));
         }},
        {"shown name",
         [](Shared& s) {
             CT_FileSystem::sv_MakeDisplayString(&s.narrow, 10);
         }},
        {"is there",
         [](Shared& s) {
             CT_FileSystem::sb_IsExistent(&s.bytes);
         }},
        {"find",
         [](Shared& s) {
             s.narrow.vb_Match(&s.units);
         }},
    };
    SweepForms(forms);
}

TEST(FormsSweep, Conversions)
{
    const Form<Shared> forms[] = {
        {"end of bytes",
         [](Shared& s) {
             CT_StandardUTF8::st_ToWide open = {3, 1, {'\xE3'}};
             CT_StandardUTF8::sb_EndToWide(&s.wider, &open, CT_StandardUTF8::e_Replace);
         }},
        {"end of units",
         [](Shared& s) {
             CT_StandardUTF8::st_FromWide open = {3, 1, {0xD800}};
             CT_StandardUTF8::sb_EndFromWide(&s.narrow, &open, CT_StandardUTF8::e_Replace);
         }},
        {"to wide",
         [](Shared& s) {
             CT_StandardUTF8::sb_ToWide(&s.wide_out, &s.bytes);
         }},
        {"from wide",
         [](Shared& s) {
             CT_StandardUTF8::sb_FromWide(&s.out, &s.units);
         }},
        {"ANSI to wide",
         [](Shared& s) {
             CT_StringConvert::si_MultiToWideANSI(&s.wide_out, &s.bytes);
         }},
        {"ANSI bytes to wide",
         [](Shared& s) {
             CT_StringConvert::si_MultiToWideANSI(&s.wide_out, TEXT);
         }},
        {"wide to ANSI",
         [](Shared& s) {
             CT_StringConvert::si_WideToMultiANSI(&s.out, &s.units);
         }},
        {"units to ANSI",
         [](Shared& s) {
             CT_StringConvert::si_WideToMultiANSI(&s.out, s.wide);
         }},
    };
    SweepForms(forms);
}

namespace
{
void FormatList(CT_String* out, const CT_String* format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    out->vv_Format(format, arguments);
    va_end(arguments);
}

struct Formats : Texts
{
    const CT_CString byte_format{"%d and what stands behind it takes a block", ALL, 1252};
    const CT_UString unit_format{Units(u"%d and what stands behind it takes a block")};
    CT_CString out;
    CT_UString wide_out;
};
} // namespace

TEST(FormsSweep, FormatsWithAList)
{
    const Form<Formats> forms[] = {
        {"bytes",
         [](Formats& s) {
             FormatList(&s.out, &s.byte_format, 5);
         }},
        {"units",
         [](Formats& s) {
             FormatList(&s.wide_out, &s.unit_format, 5);
         }},
    };
    SweepForms(forms);
}

TEST(FormsSweep, OutputsAndCaches)
{
    const Form<Shared> forms[] = {
        {"output",
         [](Shared& s) {
             s.new_output.Make(s.output.pcco_GetMemory());
         }},
        {"append output",
         [](Shared& s) {
             s.other.vv_Append(s.output);
         }},
        {"cache",
         [](Shared& s) {
             s.cache.v_Set(100, 4);
         }},
    };
    SweepForms(forms);
}

// tests/Faults/MapsSweep.cpp: string maps with an exhausted heap.
//
// An entry is there whole or not at all, whatever could not be had for it.
#include <Ostra/Ostra.h>

#include "Faults/Sweep.h"

#include <memory>
#include <string>

namespace
{
// Where the strings and arrays of a map find the heap exhausted.
const SweepReport report({"Ostra/Buffer/Buffer", "Ostra/String/CString", "Ostra/String/UString"});

std::string Held(const CT_String* text)
{
    std::string held;
    for (unsigned n = 0; text && n < text->vn_GetLength(); ++n)
        held += static_cast<char>(text->vu_GetAt(n));
    return held;
}

std::string Read(const CT_StringOrdinalMap& map)
{
    std::string entries;
    for (unsigned n = 1; n <= map.n_GetCount(); ++n)
        entries += Held(map.pcco_Get(n)) + ";";
    return entries;
}

std::string Read(const CT_StringNumberMap& map)
{
    std::string entries;
    for (unsigned n = 1; n <= map.n_GetCount(); ++n)
        entries += Held(map.pcco_GetAt(n)) + "=" + std::to_string(map.n_GetAt(n)) + ";";
    return entries;
}

std::string Read(const CT_StringStringMap& map)
{
    std::string entries;
    CT_String *first, *second;
    for (unsigned n = 1; n <= map.n_GetCount(); ++n) {
        map.v_GetAt(&first, &second, n);
        entries += Held(first) + "=" + Held(second) + ";";
    }
    return entries;
}

// A map with a text and a buffer of the test, made and looked at with the heap whole.
template <typename T_Map>
struct State
{
    T_Map map;
    T_Map source;
    CT_CString bytes{"a;b;"};
    CT_UString units{qcuz_Text(u"u")};
    CT_Buffer buffer;
};

template <typename T_Map>
std::unique_ptr<State<T_Map>> Empty()
{
    return std::make_unique<State<T_Map>>();
}

// What a sweep wants of an operation: the entries behind it are these; where it failed, they are
// one of the beginnings that lie in front, which end with an entry.
template <typename T_Map, typename T_Operation>
void SweepEntries(T_Operation operation, const std::string& after)
{
    Sweep(report, Empty<T_Map>, operation, [&](State<T_Map>& state, bool failed) {
        const std::string entries = Read(state.map);
        EXPECT_TRUE(entries == after || (failed && after.starts_with(entries))) << entries;
        state.map.v_Set(8U);
        EXPECT_EQ(Read(state.map), "");
    });
}

typedef State<CT_StringOrdinalMap> Ordinal;
typedef State<CT_StringNumberMap> Number;
typedef State<CT_StringStringMap> Pairs;

template <typename T_Map>
void SweepNewObject(const char* source)
{
    struct Pointer
    {
        ~Pointer() { delete map; }
        T_Map* map = nullptr;
    };
    Sweep(
        source, [] { return std::make_unique<Pointer>(); },
        [](Pointer& state) { state.map = new T_Map; },
        [](Pointer& state, bool failed) { EXPECT_EQ(state.map == nullptr, failed); });
}
} // namespace

TEST(MapsSweep, NewObject)
{
    SweepNewObject<CT_StringOrdinalMap>("Ostra/Maps/StringOrdinalMap");
    SweepNewObject<CT_StringNumberMap>("Ostra/Maps/StringNumberMap");
    SweepNewObject<CT_StringStringMap>("Ostra/Maps/StringStringMap");
}

TEST(MapsSweep, AnEntryIsThereWholeOrNotAtAll)
{
    SweepEntries<CT_StringOrdinalMap>([](Ordinal& state) { state.map.v_Insert("text"); }, "text;");
    SweepEntries<CT_StringOrdinalMap>([](Ordinal& state) { state.map.v_Insert(&state.units); },
                                      "u;");
    SweepEntries<CT_StringNumberMap>([](Number& state) { state.map.v_Insert("text", 7); },
                                     "text=7;");
    SweepEntries<CT_StringNumberMap>([](Number& state) { state.map.v_Insert(&state.units, 7); },
                                     "u=7;");
    SweepEntries<CT_StringStringMap>([](Pairs& state) { state.map.v_Insert("one", "two"); },
                                     "one=two;");
    SweepEntries<CT_StringStringMap>(
        [](Pairs& state) { state.map.v_Insert(&state.units, &state.bytes); }, "u=a;b;;");
}

TEST(MapsSweep, AnEntryThatWasNotMadeHasNoIndex)
{
    struct Index : Ordinal
    {
        unsigned index = 7;
    };
    Sweep(
        report, [] { return std::make_unique<Index>(); },
        [](Index& state) { state.index = state.map.n_Insert(qcuz_Text(u"text")); },
        [](Index& state, bool) { EXPECT_EQ(state.index, state.map.n_GetCount()); });
}

TEST(MapsSweep, ACopyEndsAtTheEntryThatCannotBeMade)
{
    const auto prepare = [] {
        auto state = Empty<CT_StringNumberMap>();
        for (unsigned n = 1; n <= 9; ++n)
            state->source.v_Insert("x", n);
        return state;
    };
    const std::string all = "x=1;x=2;x=3;x=4;x=5;x=6;x=7;x=8;x=9;";
    Sweep(
        report, prepare, [](Number& state) { state.map.v_Set(&state.source); },
        [&](Number& state, bool failed) {
            const std::string entries = Read(state.map);
            EXPECT_TRUE(failed ? all.starts_with(entries) : entries == all) << entries;
            EXPECT_EQ(Read(state.source), all);
        });
}

TEST(MapsSweep, CopiesOfTextsEndAtTheEntryThatCannotBeMade)
{
    Sweep(
        report,
        [] {
            auto state = Empty<CT_StringOrdinalMap>();
            for (const char* text : {"a", "b", "c", "d", "e", "f", "g", "h", "i"})
                state->source.v_Insert(text);
            return state;
        },
        [](Ordinal& state) { state.map.v_Set(&state.source); },
        [](Ordinal& state, bool failed) {
            const std::string all = "a;b;c;d;e;f;g;h;i;", entries = Read(state.map);
            EXPECT_TRUE(failed ? all.starts_with(entries) : entries == all) << entries;
            EXPECT_EQ(Read(state.source), all);
        });
    Sweep(
        report,
        [] {
            auto state = Empty<CT_StringStringMap>();
            for (const char* text : {"a", "b", "c", "d", "e", "f", "g", "h", "i"})
                state->source.v_Insert(text, "x");
            return state;
        },
        [](Pairs& state) { state.map.v_Set(&state.source); },
        [](Pairs& state, bool failed) {
            const std::string all = "a=x;b=x;c=x;d=x;e=x;f=x;g=x;h=x;i=x;",
                              entries = Read(state.map);
            EXPECT_TRUE(failed ? all.starts_with(entries) : entries == all) << entries;
            EXPECT_EQ(Read(state.source), all);
        });
}

TEST(MapsSweep, AnotherTextIsSetWholeOrNotAtAll)
{
    Sweep(
        report,
        [] {
            auto state = Empty<CT_StringOrdinalMap>();
            state->map.v_Insert("before");
            return state;
        },
        [](Ordinal& state) { state.map.v_SetAt("after", 1); },
        [](Ordinal& state, bool failed) {
            EXPECT_EQ(Read(state.map), failed ? "before;" : "after;");
        });
}

// A text that could not be copied is found nowhere, also in a map with an empty string.
TEST(MapsSweep, ASearchForATextThatCannotBeCopiedFindsNothing)
{
    struct Index : Ordinal
    {
        unsigned index = 7;
    };
    Sweep(
        report,
        [] {
            auto state = std::make_unique<Index>();
            state->map.v_Insert("");
            state->map.v_Insert("text");
            return state;
        },
        [](Index& state) { state.index = state.map.n_Get("text"); },
        [](Index& state, bool failed) { EXPECT_EQ(state.index, failed ? 0U : 2U); });
}

TEST(MapsSweep, AFlatFormIsReadUpToTheItemThatCannotBeMade)
{
    SweepEntries<CT_StringOrdinalMap>(
        [](Ordinal& state) { state.map.v_String2Map(&state.bytes, ';'); }, "a;b;");
    Sweep(
        report, Empty<CT_StringStringMap>,
        [](Pairs& state) { state.map.v_String2Map(&state.bytes, '=', ';'); },
        [](Pairs& state, bool) { EXPECT_EQ(state.map.n_GetCount(), 0U); });
}

TEST(MapsSweep, ABinaryFormIsReadUpToTheEntryThatCannotBeMade)
{
    const auto prepare = [](bool wide) {
        return [wide] {
            auto state = Empty<CT_StringNumberMap>();
            for (unsigned n = 1; n <= 3; ++n) {
                if (wide)
                    state->source.v_Insert(qcuz_Text(u"x"), n);
                else
                    state->source.v_Insert("x", n);
            }
            state->source.v_Map2Buffer(&state->buffer);
            return state;
        };
    };
    const std::string all = "x=1;x=2;x=3;";
    for (const bool wide : {false, true}) {
        Sweep(
            report, prepare(wide),
            [wide](Number& state) { state.map.v_Buffer2Map(&state.buffer, wide); },
            [&](Number& state, bool failed) {
                const std::string entries = Read(state.map);
                EXPECT_TRUE(entries == all || (failed && all.starts_with(entries))) << entries;
            });
    }
}

TEST(MapsSweep, ABinaryFormHoldsWholeEntries)
{
    Sweep(
        report,
        [] {
            auto state = Empty<CT_StringNumberMap>();
            for (unsigned n = 1; n <= 9; ++n)
                state->source.v_Insert("textual", n);
            return state;
        },
        [](Number& state) { state.source.v_Map2Buffer(&state.buffer); },
        [](Number& state, bool failed) {
            EXPECT_EQ(state.buffer.n_GetUsedSize() % 12, 0U);
            EXPECT_TRUE(failed || state.buffer.n_GetUsedSize() == 9 * 12);
        });
}

// tests/Ostra/Maps/MapsModelTest.cpp: long random runs of the three maps against lists of texts.
#include "Ostra/Maps/MapSupport.h"
#include "Support/Directory.h"

#include <algorithm>
#include <random>

namespace
{
// Random numbers, and texts and entries made of them.
struct Source
{
    explicit Source(unsigned seed) : random(seed) {}

    unsigned Below(unsigned limit) { return static_cast<unsigned>(random() % limit); }
    // Few texts, so that many are equal; some empty.
    std::string Text()
    {
        std::string text;
        for (unsigned length = Below(4); length > 0; --length)
            text += static_cast<char>('a' + Below(3));
        return text;
    }
    unsigned Number() { return Below(2) ? Below(6) : static_cast<unsigned>(random()); }

    std::mt19937 random;
};

// A string as the model holds it: its class, its text, and whether it has a block.
struct Item
{
    bool wide = false;
    std::string text;
    bool has_block = true;

    std::string Shown() const { return (wide ? "u:" : "b:") + text; }
};

std::u16string Widened(const std::string& text)
{
    return {text.begin(), text.end()};
}

// Hands a random text in one of four ways to an operation, and gives the item that it makes.
template <typename T_Operation>
Item Hand(Source& source, T_Operation operation)
{
    Item item{source.Below(2) != 0, source.Text(), true};
    const std::u16string units = Widened(item.text);
    if (source.Below(2)) {
        if (item.wide)
            operation(U(units.c_str()));
        else
            operation(item.text.c_str());
        return item;
    }
    if (item.text.empty() && source.Below(2)) {
        const CT_CString bytes;
        const CT_UString wide;
        item.has_block = false;
        operation(item.wide ? static_cast<const CT_String*>(&wide) : &bytes);
        return item;
    }
    operation(static_cast<const CT_String*>(Make(item.wide, item.text.c_str()).get()));
    return item;
}

template <typename T_List, typename T_Match>
unsigned IndexOf(const T_List& list, T_Match match)
{
    const auto found = std::find_if(list.begin(), list.end(), match);
    return found == list.end() ? 0 : static_cast<unsigned>(found - list.begin()) + 1;
}

// A copy of the map, to which some or all of its entries are appended once more, and which it then
// takes. A long map is emptied.
template <typename T_Map, typename T_Entry>
void Copy(Source& source, T_Map& map, std::vector<T_Entry>& list)
{
    T_Map copy(&map);
    const unsigned count = source.Below(2) ? ALL : source.Below(5);
    copy.v_Append(&map, count);
    const std::vector<T_Entry> entries = list;
    for (unsigned n = 0; n < std::min<std::size_t>(count, entries.size()); ++n)
        list.push_back(entries[n]);
    map.v_Set(&copy);
    if (list.size() > 40) {
        map.v_Set(1 + source.Below(9));
        list.clear();
    }
}

// Runs steps of a random test until one fails.
template <typename T_Run>
void RunSteps(unsigned default_seed, unsigned runs, unsigned steps)
{
    const unsigned first = Seed(default_seed);
    for (unsigned seed = first; seed < first + runs; ++seed) {
        SCOPED_TRACE("OSTRA_SEED=" + std::to_string(seed));
        T_Run run(seed);
        for (unsigned step = 0; step < steps && !testing::Test::HasFailure(); ++step)
            run.Step();
    }
}

// ---- Strings by their place -----------------------------------------------------------------

struct OrdinalRun
{
    explicit OrdinalRun(unsigned seed) : source(seed) {}

    void Insert()
    {
        unsigned index = 0;
        list.push_back(Hand(source, [&](auto text) { index = map.n_Insert(text); }));
        EXPECT_EQ(index, list.size());
    }

    void Change()
    {
        if (list.empty())
            return;
        const unsigned index = 1 + source.Below(static_cast<unsigned>(list.size()));
        if (source.Below(2)) {
            map.v_RemoveAt(index);
            list.erase(list.begin() + index - 1);
            return;
        }
        list[index - 1].text = Hand(source, [&](auto text) { map.v_SetAt(text, index); }).text;
    }

    void Search()
    {
        unsigned index = 0;
        const Item wanted = Hand(source, [&](auto text) { index = map.n_Get(text); });
        EXPECT_EQ(index, IndexOf(list, [&](const Item& item) { return item.text == wanted.text; }));
    }

    // Through the flat form into a new map; everything behind an empty item is lost.
    void Flat()
    {
        const bool wide = source.Below(2);
        CT_CString bytes;
        CT_UString units;
        CT_String* out = wide ? static_cast<CT_String*>(&units) : &bytes;
        map.v_Map2String(out, ';');
        std::string flat;
        for (const Item& item : list)
            flat += item.text + ";";
        ASSERT_EQ(Ascii(*out), flat);
        list.resize(std::find_if(list.begin(), list.end(),
                                 [](const Item& item) { return item.text.empty(); }) -
                    list.begin());
        for (Item& item : list)
            item.wide = wide;
        map.v_String2Map(out, ';');
    }

    void Step()
    {
        const unsigned kind = source.Below(20);
        if (kind < 8)
            Insert();
        else if (kind < 13)
            Change();
        else if (kind < 18)
            Search();
        else if (kind < 19)
            Copy(source, map, list);
        else
            Flat();
        Entries wanted;
        for (const Item& item : list)
            wanted.push_back(item.Shown());
        ASSERT_EQ(Read(map), wanted);
    }

    Source source;
    CT_StringOrdinalMap map;
    std::vector<Item> list;
};

// ---- Strings with numbers -------------------------------------------------------------------

struct NumberRun
{
    struct Entry : Item
    {
        unsigned number = 0;
    };

    explicit NumberRun(unsigned seed) : source(seed) {}

    unsigned IndexOfNumber(unsigned number)
    {
        return IndexOf(list, [&](const Entry& entry) { return entry.number == number; });
    }

    // A string that takes a text from one of the other class has a block afterwards; from one of
    // its own class it takes what that has.
    void SetText(unsigned index, const Item& item)
    {
        Entry& entry = list[index - 1];
        entry.has_block = item.has_block || entry.wide != item.wide;
        entry.text = item.text;
    }

    void Insert()
    {
        Entry entry;
        entry.number = source.Number();
        static_cast<Item&>(entry) =
            Hand(source, [&](auto text) { map.v_Insert(text, entry.number); });
        list.push_back(entry);
    }

    void ChangeByNumber()
    {
        const unsigned number = source.Number();
        const unsigned index = IndexOfNumber(number);
        if (source.Below(3)) {
            const Item item = Hand(source, [&](auto text) { map.v_Update(text, number); });
            if (index)
                SetText(index, item);
            return;
        }
        map.v_Remove(number);
        if (index)
            list.erase(list.begin() + index - 1);
    }

    void ChangeByIndex()
    {
        if (list.empty())
            return;
        const unsigned index = 1 + source.Below(static_cast<unsigned>(list.size()));
        const unsigned kind = source.Below(3);
        if (kind == 0) {
            map.v_RemoveAt(index);
            list.erase(list.begin() + index - 1);
        } else if (kind == 1) {
            list[index - 1].number = source.Number();
            map.v_SetAt(list[index - 1].number, index);
        } else {
            SetText(index, Hand(source, [&](auto text) { map.v_SetAt(text, index); }));
        }
    }

    void Search()
    {
        unsigned number = 0;
        const Item item = Hand(source, [&](auto text) { number = map.n_Get(text); });
        unsigned index = IndexOf(list, [&](const Entry& entry) { return entry.text == item.text; });
        EXPECT_EQ(number, index ? list[index - 1].number : 0);
        number = source.Number();
        index = IndexOfNumber(number);
        EXPECT_EQ(map.pcco_Get(number), index ? map.pcco_GetAt(index) : nullptr);
    }

    // Through the binary form of one class into a new map.
    void Binary()
    {
        const bool wide = source.Below(2);
        std::string wanted;
        for (const Entry& entry : list) {
            wanted.append(reinterpret_cast<const char*>(&entry.number), 4);
            for (const char c : entry.text + std::string(entry.has_block, '\0'))
                wanted += entry.wide ? std::string{c, '\0'} : std::string{c};
        }
        CT_Buffer out;
        map.v_Map2Buffer(&out);
        ASSERT_EQ(Bytes(out), wanted);
        CT_StringNumberMap one_class;
        for (Entry& entry : list) {
            entry.wide = wide;
            entry.has_block = true;
            if (wide)
                one_class.v_Insert(U(Widened(entry.text).c_str()), entry.number);
            else
                one_class.v_Insert(entry.text.c_str(), entry.number);
        }
        one_class.v_Map2Buffer(&out);
        map.v_Buffer2Map(&out, wide);
    }

    void Step()
    {
        const unsigned kind = source.Below(20);
        if (kind < 7)
            Insert();
        else if (kind < 10)
            ChangeByNumber();
        else if (kind < 13)
            ChangeByIndex();
        else if (kind < 18)
            Search();
        else if (kind < 19)
            Copy(source, map, list);
        else
            Binary();
        Entries wanted;
        for (const Entry& entry : list)
            wanted.push_back(entry.Shown() + "=" + std::to_string(entry.number));
        ASSERT_EQ(Read(map), wanted);
    }

    Source source;
    CT_StringNumberMap map;
    std::vector<Entry> list;
};

// ---- Pairs of strings -----------------------------------------------------------------------

struct PairRun
{
    struct Pair
    {
        Item first, second;
    };

    explicit PairRun(unsigned seed) : source(seed) {}

    void Insert()
    {
        const Item first{source.Below(2) != 0, source.Text(), true};
        Item second{source.Below(2) != 0, source.Text(), true};
        const unsigned way = source.Below(3);
        if (way == 0) {
            map.v_Insert(Make(first.wide, first.text.c_str()).get(),
                         Make(second.wide, second.text.c_str()).get());
            list.push_back({first, second});
            return;
        }
        if (way == 1)
            map.v_Insert(first.text.c_str(), second.text.c_str());
        else
            map.v_Insert(U(Widened(first.text).c_str()), U(Widened(second.text).c_str()));
        list.push_back({{way == 2, first.text, true}, {way == 2, second.text, true}});
    }

    void Remove()
    {
        if (list.empty())
            return;
        const unsigned index = 1 + source.Below(static_cast<unsigned>(list.size()));
        map.v_RemoveAt(index);
        list.erase(list.begin() + index - 1);
    }

    void Search()
    {
        const CT_String* found = nullptr;
        const bool by_second = source.Below(2);
        const Item item = Hand(source, [&](auto text) {
            found = by_second ? map.pcco_GetString1(text) : map.pcco_GetString2(text);
        });
        const unsigned index = IndexOf(list, [&](const Pair& pair) {
            return (by_second ? pair.second : pair.first).text == item.text;
        });
        CT_String *first, *second;
        map.v_GetAt(&first, &second, index);
        EXPECT_EQ(found, by_second ? first : second);
    }

    void Flat()
    {
        std::string wanted;
        for (const Pair& pair : list)
            wanted += pair.first.text + "=" + pair.second.text + ";";
        CT_UString out;
        map.v_Map2String(&out, '=', ';');
        EXPECT_EQ(Ascii(out), wanted);
        CT_StringStringMap read;
        read.v_String2Map(&out, '=', ';');
        EXPECT_EQ(read.n_GetCount(), 0U);
    }

    void Step()
    {
        const unsigned kind = source.Below(20);
        if (kind < 8)
            Insert();
        else if (kind < 11)
            Remove();
        else if (kind < 18)
            Search();
        else if (kind < 19)
            Copy(source, map, list);
        else
            Flat();
        Entries wanted;
        for (const Pair& pair : list)
            wanted.push_back(pair.first.Shown() + "=" + pair.second.Shown());
        ASSERT_EQ(Read(map), wanted);
    }

    Source source;
    CT_StringStringMap map;
    std::vector<Pair> list;
};
} // namespace

TEST(StringOrdinalMap, LongRandomRunsGoAsTheModelGoes)
{
    RunSteps<OrdinalRun>(471, 4, 1000);
}

TEST(StringNumberMap, LongRandomRunsGoAsTheModelGoes)
{
    RunSteps<NumberRun>(472, 4, 1000);
}

TEST(StringStringMap, LongRandomRunsGoAsTheModelGoes)
{
    RunSteps<PairRun>(473, 4, 1000);
}

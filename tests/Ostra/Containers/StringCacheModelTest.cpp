// tests/Ostra/Containers/StringCacheModelTest.cpp: random operations on a cache and on its model.
#include "Ostra/Containers/StringCacheSupport.h"

#include "Support/Directory.h"

#include <gtest/gtest.h>

#include <random>
#include <set>

namespace
{
// The texts of an entry are known by a number, as they are by their addresses; what was freed is
// remembered.
class Model
{
public:
    Model(unsigned row_count, unsigned way_count)
        : rows(row_count),
          ways(way_count),
          slots(row_count * way_count)
    {}

    std::u16string Lookup(const std::u16string& key)
    {
        Slot* row = RowOfKey(key);
        unsigned at = Find(row, key);
        if (at == ways)
            return u"-";
        for (; at > 0; --at)
            std::swap(row[at], row[at - 1]);
        return row->value;
    }

    void Insert(const std::u16string& key, const std::u16string& value)
    {
        Slot* row = RowOfKey(key);
        unsigned at = 0;
        while (at < ways && row[at].number)
            ++at;
        if (at == ways)
            freed.insert(row[--at].number);
        row[at] = {++last_number, key, value};
    }

    void Remove(const std::u16string& key)
    {
        Slot* row = RowOfKey(key);
        unsigned at = Find(row, key);
        if (at == ways)
            return;
        freed.insert(row[at].number);
        if (at == ways - 1) {
            row[at] = Slot();
            return;
        }
        for (at++; at < ways; ++at) {
            if (row[at].number)
                row[at - 1] = row[at];
        }
        row[ways - 1] = Slot();
    }

    void Clear() { slots.assign(slots.size(), Slot()); }

    std::vector<std::string> Show(unsigned row) const
    {
        std::vector<std::string> out;
        for (unsigned n = 0; n < ways; ++n) {
            const Slot& slot = slots[row * ways + n];
            out.push_back(!slot.number               ? ""
                          : freed.count(slot.number) ? "*"
                                                     : Narrow(slot.key) + "=" + Narrow(slot.value));
        }
        return out;
    }

private:
    struct Slot
    {
        unsigned number = 0; // 0 in a free slot
        std::u16string key, value;
    };

    Slot* RowOfKey(const std::u16string& key) { return &slots[RowOf(key, rows) * ways]; }

    // The index of the key, or the number of ways.
    unsigned Find(const Slot* row, const std::u16string& key) const
    {
        for (unsigned n = 0; n < ways && row[n].number; ++n) {
            if (row[n].key == key && !freed.count(row[n].number))
                return n;
        }
        return ways;
    }

    unsigned rows, ways, last_number = 0;
    std::vector<Slot> slots;
    std::set<unsigned> freed;
};

void PlayAgainstModel(unsigned seed, unsigned rows, unsigned ways)
{
    std::mt19937 random(seed);
    CT_StringCache cache(rows * ways, ways);
    Model model(rows, ways);
    ASSERT_EQ(cache.n_GetSize(), rows * ways);
    // About as many keys as slots, some of them so long that the hash folds.
    const auto key = [&] {
        std::u16string text(random() % 3, u'\u0416');
        text += static_cast<char16_t>(u'a' + random() % (1 + rows * ways / 2));
        return random() % 4 ? text : text + u"-and-more-of-it";
    };
    for (unsigned n = 0; n < 5000; ++n) {
        const std::u16string text = key();
        const unsigned play = random() % 100;
        if (play < 45)
            ASSERT_EQ(Lookup(cache, text), model.Lookup(text));
        else if (play < 80) {
            const std::u16string value(1 + n % 3, static_cast<char16_t>(u'0' + n % 10));
            Insert(cache, text, value);
            model.Insert(text, value);
        } else {
            Remove(cache, text);
            model.Remove(text);
        }
        if (random() % 600 == 0) {
            cache.v_Clear();
            model.Clear();
        }
        const unsigned row = RowOf(text, rows);
        ASSERT_EQ(Row(cache, row), model.Show(row)) << "after operation " << n;
    }
    for (unsigned row = 0; row < rows; ++row)
        ASSERT_EQ(Row(cache, row), model.Show(row));
}
} // namespace

TEST(StringCacheModel, ThousandsOfOperationsGoAsInAModel)
{
    const struct
    {
        unsigned rows, ways;
    } shapes[] = {{1, 1}, {1, 4}, {2, 2}, {3, 5}, {11, 4}, {5, 16}};
    for (const auto& shape : shapes) {
        const unsigned seed = Seed(19970420);
        SCOPED_TRACE("OSTRA_SEED " + std::to_string(seed) + ", " + std::to_string(shape.rows) +
                     " rows of " + std::to_string(shape.ways));
        PlayAgainstModel(seed + shape.rows + shape.ways, shape.rows, shape.ways);
    }
}

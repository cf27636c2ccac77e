// tests/Ostra/HashTable/VoidHashModelTest.cpp: random operations on a hash table and on its model.
#include <Ostra/HashTable/VoidHashIterator.h>
#include <Ostra/HashTable/VoidHashTable.h>
#include <Ostra/String/Compare.h>

#include "Support/Directory.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <deque>
#include <random>
#include <string>
#include <vector>

namespace
{
// Three bytes a key and five a datum, so that nothing is aligned.
constexpr unsigned KEY = 3, DATA = 5;

struct Item
{
    std::string key, data;
    bool operator==(const Item&) const = default;
};

// What was asked of the functions: "h key size" and "c stored given".
std::vector<std::string> calls;

unsigned Hash(const std::string& key, unsigned size)
{
    unsigned hash = 0;
    for (unsigned char byte : key)
        hash = hash * 31 + byte;
    calls.push_back("h " + key + " " + std::to_string(size));
    return hash % size + 1;
}

unsigned HashFunction(const void* key, unsigned size)
{
    return Hash(std::string(static_cast<const char*>(key), KEY), size);
}

bool Differ(const std::string& stored, const std::string& given)
{
    calls.push_back("c " + stored + " " + given);
    return stored != given;
}

int CompareFunction(const void* stored, const void* given)
{
    return Differ(std::string(static_cast<const char*>(stored), KEY),
                  std::string(static_cast<const char*>(given), KEY));
}

// ---- The model: chains as sequences, newest first -------------------------------------------

struct Model
{
    explicit Model(unsigned size) : buckets(size) {}

    unsigned Size() const { return static_cast<unsigned>(buckets.size()); }
    std::deque<Item>& Bucket(unsigned number) { return buckets[number - 1]; }

    // The bucket, and the index within it or its size.
    std::size_t Search(const std::string& key, std::deque<Item>*& bucket)
    {
        bucket = &Bucket(Hash(key, Size()));
        std::size_t n = 0;
        while (n < bucket->size() && Differ((*bucket)[n].key, key))
            ++n;
        return n;
    }

    bool Insert(const Item& item)
    {
        std::deque<Item>* bucket;
        const std::size_t n = Search(item.key, bucket);
        if (n < bucket->size()) {
            (*bucket)[n].data = item.data;
            return true;
        }
        collisions += !bucket->empty();
        bucket->push_front(item);
        if (Size() / 4 < collisions)
            Resize(0);
        return false;
    }

    bool Get(const std::string& key, std::string& data)
    {
        data = std::string(DATA, '\0');
        if (Size() == 0)
            return false;
        std::deque<Item>* bucket;
        const std::size_t n = Search(key, bucket);
        if (n < bucket->size())
            data = (*bucket)[n].data;
        return n < bucket->size();
    }

    bool Remove(const std::string& key, std::string& data)
    {
        data = std::string(DATA, '\0');
        if (Size() == 0)
            return false;
        std::deque<Item>* bucket;
        const std::size_t n = Search(key, bucket);
        if (n == bucket->size())
            return false;
        data = (*bucket)[n].data;
        RemoveAt(*bucket, n);
        return true;
    }

    void RemoveAt(std::deque<Item>& bucket, std::size_t n)
    {
        bucket.erase(bucket.begin() + static_cast<std::ptrdiff_t>(n));
        collisions -= n != 0;
    }

    static unsigned NextPrime(unsigned number)
    {
        const auto divides = [&number] {
            const unsigned root = static_cast<unsigned>(std::sqrt(static_cast<double>(number)));
            for (unsigned n = 2; n <= root; ++n) {
                if (number % n == 0)
                    return true;
            }
            return false;
        };
        while (divides())
            ++number;
        return number;
    }

    void Resize(unsigned size)
    {
        size = size ? size : Size();
        if (size / 4 <= collisions)
            size = NextPrime(2 * size);
        std::vector<std::deque<Item>> old(size);
        old.swap(buckets);
        collisions = 0;
        for (std::deque<Item>& chain : old) {
            for (Item& item : chain) {
                std::deque<Item>& bucket = Bucket(Hash(item.key, size));
                collisions += !bucket.empty();
                bucket.push_front(item);
            }
        }
    }

    void Copy(const Model& other)
    {
        buckets.assign(other.Size(), {});
        collisions = 0;
        for (const std::deque<Item>& chain : other.buckets) {
            for (const Item& item : chain)
                Insert(item);
        }
    }

    std::size_t Count() const
    {
        std::size_t count = 0;
        for (const std::deque<Item>& chain : buckets)
            count += chain.size();
        return count;
    }

    std::vector<std::deque<Item>> buckets;
    unsigned collisions = 0;
};

// ---- The table and the model side by side ---------------------------------------------------

class Players
{
public:
    explicit Players(unsigned seed)
        : random(seed),
          table(DATA, KEY, HashFunction, CompareFunction, 7)
    {}

    void Play()
    {
        const unsigned play = Below(100);
        if (play < 55)
            PlayInsert();
        else if (play < 70)
            PlayGet();
        else if (play < 93)
            PlayRemove();
        else if (play < 96)
            PlayRemoveAt();
        else if (play < 98)
            PlayWalk();
        else
            PlayRare();
    }

    void ExpectNumbers() const
    {
        EXPECT_EQ(table.n_GetTableSize(), model.Size());
        EXPECT_EQ(table.n_GetCollisions(), model.collisions);
    }

    void Compare() { Compare(table, model); }

private:
    unsigned Below(std::size_t limit) { return static_cast<unsigned>(random() % limit); }

    std::string RandomKey()
    {
        const char key[] = {static_cast<char>('a' + Below(8)), static_cast<char>('a' + Below(8)),
                            static_cast<char>('a' + Below(8))};
        return std::string(key, KEY);
    }
    Item RandomItem() { return {RandomKey(), std::to_string(10000 + Below(90000))}; }

    // What the table asked of the functions since `before`, against what the model has asked since.
    template <typename T_Table, typename T_Model>
    void Both(T_Table on_table, T_Model on_model)
    {
        calls.clear();
        on_table();
        const std::vector<std::string> asked = std::exchange(calls, {});
        on_model();
        EXPECT_EQ(asked, calls);
    }

    void PlayInsert()
    {
        const Item item = RandomItem();
        int on_table = 0, on_model = 0;
        Both([&] { on_table = table.b_Insert(item.key.data(), item.data.data()); },
             [&] { on_model = model.Insert(item); });
        EXPECT_EQ(on_table, on_model);
    }

    void PlayGet()
    {
        const std::string key = RandomKey();
        std::string data(DATA, '?'), expected;
        int on_table = 0, on_model = 0;
        Both([&] { on_table = table.b_Get(key.data(), data.data()); },
             [&] { on_model = model.Get(key, expected); });
        EXPECT_EQ(on_table, on_model);
        EXPECT_EQ(data, expected);
    }

    void PlayRemove()
    {
        const std::string key = RandomKey();
        std::string data(DATA, '?'), expected;
        int on_table = 0, on_model = 0;
        Both([&] { on_table = table.b_Remove(key.data(), data.data()); },
             [&] { on_model = model.Remove(key, expected); });
        EXPECT_EQ(on_table, on_model);
        EXPECT_EQ(data, expected);
    }

    void PlayRemoveAt()
    {
        const unsigned bucket = 1 + Below(model.Size());
        std::deque<Item>& chain = model.Bucket(bucket);
        if (chain.empty())
            return;
        const std::size_t at = Below(chain.size());
        const CT_VoidHashTable::st_HashItem* item = table.pso_GetAt(bucket);
        for (std::size_t n = 0; n < at; ++n)
            item = item->pcso_GetFollowing();
        table.v_RemoveAt(bucket, const_cast<CT_VoidHashTable::st_HashItem*>(item));
        model.RemoveAt(chain, at);
    }

    // A walk that removes here and there, told by the model's chains.
    void PlayWalk()
    {
        CT_VoidHashIterator walk(&table);
        unsigned bucket = 0;
        std::size_t at = 0;
        const auto next_bucket = [&] {
            at = 0;
            while (++bucket <= model.Size() && model.Bucket(bucket).empty())
                ;
        };
        next_bucket();
        EXPECT_EQ(walk.b_AtHome(), 1);
        walk.b_Next();
        while (bucket <= model.Size() && !testing::Test::HasFailure()) {
            std::deque<Item>& chain = model.Bucket(bucket);
            std::string key(KEY, '?'), data(DATA, '?');
            if (Below(10) == 0) {
                const bool by_key = Below(2) != 0;
                const Item item = chain[at];
                if (by_key)
                    walk.v_RemoveKey(key.data());
                else
                    walk.v_Remove(data.data());
                EXPECT_EQ(by_key ? key : data, by_key ? item.key : item.data);
                model.RemoveAt(chain, at);
                next_bucket();
                continue;
            }
            walk.v_GetKey(key.data());
            walk.v_Get(data.data());
            EXPECT_TRUE((Item{key, data}) == chain[at]);
            if (++at == chain.size())
                next_bucket();
            EXPECT_EQ(walk.b_Next(), bucket <= model.Size());
        }
        EXPECT_EQ(walk.b_AtEnd(), 1);
        EXPECT_EQ(walk.b_Next(), 0);
    }

    void PlayRare()
    {
        const unsigned size = Below(3) ? Below(200) : 0;
        switch (Below(8)) {
        case 0: {
            CT_VoidHashTable copy(&table);
            Model expected(0);
            expected.Copy(model);
            Compare(copy, expected);
            table.v_Set(&copy);
            model.Copy(expected);
            break;
        }
        case 1:
            if (Below(8) == 0) {
                table.v_Set(1 + size);
                model = Model(1 + size);
            }
            break;
        default:
            Both([&] { table.v_Resize(size); }, [&] { model.Resize(size); });
        }
    }

    static void Compare(const CT_VoidHashTable& table, Model& model)
    {
        ASSERT_EQ(table.n_GetTableSize(), model.Size());
        ASSERT_EQ(table.n_GetCollisions(), model.collisions);
        ASSERT_EQ(table.n_GetCount(), model.Count());
        for (unsigned bucket = 1; bucket <= model.Size(); ++bucket) {
            const CT_VoidHashTable::st_HashItem* item = table.pso_GetAt(bucket);
            for (const Item& expected : model.Bucket(bucket)) {
                ASSERT_NE(item, nullptr);
                ASSERT_EQ(std::memcmp(item->pcv_GetKey(), expected.key.data(), KEY), 0);
                ASSERT_EQ(std::memcmp(item->pcv_GetData(), expected.data.data(), DATA), 0);
                item = item->pcso_GetFollowing();
            }
            ASSERT_EQ(item, nullptr);
        }
    }

    std::mt19937 random;
    CT_VoidHashTable table;
    Model model{7};
};
} // namespace

TEST(VoidHashTableModel, ThousandsOfOperationsGoAsInAModel)
{
    for (unsigned round = 0; round < 4; ++round) {
        const unsigned seed = Seed(19970418);
        SCOPED_TRACE("OSTRA_SEED " + std::to_string(seed) + ", round " + std::to_string(round));
        Players players(seed + round);
        for (unsigned n = 0; n < 3000 && !testing::Test::HasFailure(); ++n) {
            players.Play();
            players.ExpectNumbers();
            if (n % 32 == 0)
                players.Compare();
        }
        players.Compare();
    }
}

// Tables that grow from each small size, with many keys.
TEST(VoidHashTableModel, GrowingTablesHaveTheBucketsOfTheModel)
{
    std::mt19937 random(Seed(19970419));
    for (unsigned size : {1u, 2u, 3u, 4u, 6u, 7u, 50u}) {
        SCOPED_TRACE(size);
        CT_VoidHashTable table(DATA, KEY, HashFunction, CompareFunction, size);
        Model model(size);
        for (unsigned n = 0; n < 1500; ++n) {
            Item item{std::string(KEY, 'x'), "-----"};
            const unsigned number = random() % 3000;
            std::memcpy(item.key.data(), &number, KEY);
            ASSERT_EQ(table.b_Insert(item.key.data(), item.data.data()), model.Insert(item));
            ASSERT_EQ(table.n_GetTableSize(), model.Size());
            ASSERT_EQ(table.n_GetCollisions(), model.collisions);
        }
        calls.clear();
    }
}

namespace
{
unsigned CalledHash(const void* key, unsigned size)
{
    return CT_VoidHashTable::sn_HashInteger(key, size);
}

int CalledCompare(const void* stored, const void* given)
{
    return std::memcmp(stored, given, sizeof(unsigned));
}
} // namespace

// A table of numbers with the library's functions, which it needs not call, and one that calls.
TEST(VoidHashTableModel, TablesOfNumbersGoAsTablesThatCallTheirFunctions)
{
    std::mt19937 random(Seed(19970421));
    for (unsigned data_size : {0u, 1u, 4u, 6u}) {
        SCOPED_TRACE("data of " + std::to_string(data_size));
        CT_VoidHashTable fast(
            data_size, 4, CT_VoidHashTable::sn_HashInteger,
            reinterpret_cast<int (*)(const void*, const void*)>(CT_Compare::si_ComparePN), 0);
        CT_VoidHashTable called(data_size, 4, CalledHash, CalledCompare, 0);
        for (unsigned n = 0; n < 6000; ++n) {
            if (n == 5)
                fast.v_Set(7), called.v_Set(7);
            const unsigned key = random() % 2000 * 0x01234567;
            std::string first(6, static_cast<char>('a' + n % 26)), second = first;
            char* const out = random() % 4 ? first.data() : nullptr;
            char* const other = out ? second.data() : nullptr;
            const unsigned play = random() % 4;
            if (play < 2)
                ASSERT_EQ(fast.b_Insert(&key, first.data()), called.b_Insert(&key, second.data()));
            else if (play == 2)
                ASSERT_EQ(fast.b_Get(&key, out), called.b_Get(&key, other));
            else
                ASSERT_EQ(fast.b_Remove(&key, out), called.b_Remove(&key, other));
            ASSERT_EQ(first, second);
            ASSERT_EQ(fast.n_GetTableSize(), called.n_GetTableSize());
            ASSERT_EQ(fast.n_GetCollisions(), called.n_GetCollisions());
        }
        CT_VoidHashIterator walk(&fast), other(&called);
        while (walk.b_Next()) {
            unsigned key = 0, expected = 1;
            ASSERT_EQ(other.b_Next(), 1);
            walk.v_GetKey(&key);
            other.v_GetKey(&expected);
            ASSERT_EQ(key, expected);
        }
        ASSERT_EQ(other.b_Next(), 0);
    }
}

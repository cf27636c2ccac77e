// tests/Ostra/LIST/VoidListModelTest.cpp: random operations on a list and on its model.
#include <Ostra/LIST/VoidList.h>

#include "Support/Directory.h"

#include <algorithm>
#include <list>
#include <random>
#include <string>
#include <utility>
#include <vector>

namespace
{
typedef CT_VoidList::st_Position Position;

// A list and a std::list, and the positions of both in pairs.
class Players
{
public:
    Players(unsigned seed, unsigned item_size) : random(seed), list(item_size), size(item_size) {}

    void Play()
    {
        static void (Players::*const plays[])() = {
            &Players::PlayInsert, &Players::PlayInsert, &Players::PlayInsert, &Players::PlayInsert,
            &Players::PlayRemove, &Players::PlayRemove, &Players::PlayRemove, &Players::PlaySetAt,
            &Players::PlaySkip,   &Players::PlayIndex,  &Players::PlayFind,
        };
        (this->*plays[Below(std::size(plays))])();
        if (Below(500) == 0)
            PlayCopy();
        EXPECT_EQ(list.n_GetCount(), model.size());
    }

    // Both ways through the list, and every position.
    void Compare() const
    {
        ASSERT_EQ(list.n_GetCount(), model.size());
        ASSERT_EQ(list.pso_GetFirst() == nullptr, model.empty());
        Position* at = list.pso_GetFirst();
        for (const std::string& item : model) {
            ASSERT_EQ(Item(at), item);
            at = list.pso_Skip(at, 1);
        }
        ASSERT_EQ(at, list.pso_GetFirst());
        at = list.pso_GetLast();
        for (auto item = model.rbegin(); item != model.rend(); ++item) {
            ASSERT_EQ(Item(at), *item);
            at = list.pso_Skip(at, -1);
        }
        ASSERT_EQ(at, list.pso_GetLast());
        for (const Place& place : places)
            ASSERT_EQ(Item(place.first), *place.second);
    }

private:
    typedef std::pair<Position*, std::list<std::string>::iterator> Place;

    unsigned Below(std::size_t limit) { return static_cast<unsigned>(random() % limit); }

    // Few values, so that items meet again.
    std::string RandomItem() { return std::string(size, static_cast<char>('a' + Below(20))); }

    std::string Item(Position* at) const
    {
        std::string item(size, '?');
        list.v_GetAt(item.data(), at);
        return item;
    }

    std::size_t IndexOf(std::list<std::string>::iterator at)
    {
        return static_cast<std::size_t>(std::distance(model.begin(), at));
    }

    // One of the places, or the index behind them for none.
    std::size_t Choose() { return Below(places.size() + 1); }

    void PlayInsert()
    {
        const std::string item = RandomItem();
        const std::size_t chosen = Choose();
        const bool none = chosen == places.size();
        const Place place = none ? Place(nullptr, model.end()) : places[chosen];
        switch (Below(4)) {
        case 0:
            list.v_InsertFirst(item.data());
            model.push_front(item);
            places.emplace_back(list.pso_GetFirst(), model.begin());
            break;
        case 1:
            list.v_InsertLast(item.data());
            model.push_back(item);
            places.emplace_back(list.pso_GetLast(), std::prev(model.end()));
            break;
        case 2:
            list.v_InsertAfter(item.data(), place.first);
            places.emplace_back(none ? list.pso_GetFirst() : list.pso_Skip(place.first, 1),
                                model.insert(none ? model.begin() : std::next(place.second), item));
            break;
        case 3:
            list.v_InsertBefore(item.data(), place.first);
            places.emplace_back(none ? list.pso_GetLast() : list.pso_Skip(place.first, -1),
                                model.insert(place.second, item));
            break;
        }
    }

    void PlayRemove()
    {
        if (places.empty())
            return;
        std::string item(size, '?');
        std::list<std::string>::iterator gone = model.begin();
        const std::size_t chosen = Choose();
        const unsigned kind = Below(3);
        const bool copies = Below(4) != 0;
        if (kind == 1)
            gone = std::prev(model.end());
        else if (kind == 2 && chosen < places.size())
            gone = places[chosen].second;
        void* out = copies ? item.data() : nullptr;
        if (kind == 0)
            list.v_RemoveFirst(out);
        else if (kind == 1)
            list.v_RemoveLast(out);
        else
            list.v_RemoveAt(out, chosen < places.size() ? places[chosen].first : nullptr);
        EXPECT_EQ(item, copies ? *gone : std::string(size, '?'));
        std::erase_if(places, [gone](const Place& place) { return place.second == gone; });
        model.erase(gone);
    }

    void PlaySetAt()
    {
        if (places.empty())
            return;
        const Place& place = places[Below(places.size())];
        *place.second = RandomItem();
        list.v_SetAt(place.second->data(), place.first);
    }

    void PlaySkip()
    {
        if (places.empty())
            return;
        const Place& place = places[Below(places.size())];
        const int steps = static_cast<int>(Below(401)) - 200;
        const long long count = static_cast<long long>(model.size());
        const long long to =
            ((static_cast<long long>(IndexOf(place.second)) + steps) % count + count) % count;
        EXPECT_EQ(Item(list.pso_Skip(place.first, steps)), *std::next(model.begin(), to));
    }

    void PlayIndex()
    {
        if (places.empty())
            return;
        const Place& place = places[Below(places.size())];
        const unsigned index = static_cast<unsigned>(IndexOf(place.second)) + 1;
        EXPECT_EQ(list.pso_GetPosition(index), place.first);
    }

    void PlayFind()
    {
        const std::string item = RandomItem();
        unsigned index = 99999;
        Position* const at = list.pso_Find(item.data(), &index);
        const auto found = std::find(model.begin(), model.end(), item);
        EXPECT_EQ(index, found == model.end() ? 0 : IndexOf(found) + 1);
        EXPECT_EQ(at == nullptr, found == model.end());
        for (const Place& place : places)
            EXPECT_EQ(place.first == at, place.second == found);
    }

    void PlayCopy()
    {
        CT_VoidList copy(&list);
        EXPECT_TRUE(copy.b_IsEqual(&list) && list.b_IsEqual(&copy));
        if (model.empty())
            return;
        copy.v_RemoveLast(nullptr);
        EXPECT_FALSE(copy.b_IsEqual(&list));
        copy.v_Set(&list);
        EXPECT_TRUE(copy.b_IsEqual(&list));
    }

    std::mt19937 random;
    CT_VoidList list;
    std::list<std::string> model;
    std::vector<Place> places;
    unsigned size;
};
} // namespace

TEST(VoidListModel, ThousandsOfOperationsGoAsInAModel)
{
    for (unsigned item_size : {1u, 2u, 4u, 6u, 8u}) {
        const unsigned seed = Seed(19970417) + item_size;
        SCOPED_TRACE("OSTRA_SEED " + std::to_string(seed - item_size) + ", items of " +
                     std::to_string(item_size));
        Players players(seed, item_size);
        for (unsigned n = 0; n < 4000 && !testing::Test::HasFailure(); ++n) {
            players.Play();
            if (n % 16 == 0)
                players.Compare();
        }
        players.Compare();
    }
}

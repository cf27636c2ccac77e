// tests/Models/WeightOrderModel.h: in which order keys are added to make a list by weight.
#pragma once

#include <Models/CompListWords.h>

#include <algorithm>
#include <cstdint>
#include <deque>
#include <memory>
#include <utility>
#include <vector>

// A tree of places, each with its ways in the order in which keys brought them. A branch comes with
// the key that goes the heaviest way from place to place; the keys that end on the way come last.
class WeightOrderModel
{
public:
    // False for a key that is there, which keeps its weight.
    bool Add(const Word& key, unsigned weight)
    {
        if (Holds(key))
            return false;
        Place* place = &start;
        place->Count(weight);
        for (const unsigned element : key) {
            place = &place->Way(element);
            place->Count(weight);
        }
        place->isEnd = true;
        return true;
    }

    std::vector<Word> Order()
    {
        order.clear();
        inner.clear();
        Sort(start);
        // Searches jump to these letters, and pass the others.
        std::stable_partition(start.ways.begin(), start.ways.end(),
                              [](const auto& way) { return way.first < 'a' || way.first > 'z'; });
        if (start.ways.empty())
            return order;
        std::deque<Spot> queue;
        for (const Spot& spot : Branch({{}, &start}))
            queue.push_back(spot);
        for (; !queue.empty(); queue.pop_front()) {
            const Spot spot = queue.front();
            if (spot.second->keys <= FEW)
                Deep(spot);
            else
                for (const Spot& next : Alternatives(spot))
                    queue.push_back(next);
        }
        order.insert(order.end(), inner.begin(), inner.end());
        return order;
    }

private:
    static constexpr unsigned FEW = 64;

    struct Place
    {
        std::vector<std::pair<unsigned, std::unique_ptr<Place>>> ways;
        std::uint64_t weight = 0;
        unsigned keys = 0;
        bool isEnd = false;

        void Count(unsigned more)
        {
            weight += more;
            ++keys;
        }
        Place& Way(unsigned element)
        {
            for (auto& way : ways)
                if (way.first == element)
                    return *way.second;
            ways.emplace_back(element, std::make_unique<Place>());
            return *ways.back().second;
        }
    };
    typedef std::pair<Word, Place*> Spot; // what leads to a place

    bool Holds(const Word& key) const
    {
        const Place* place = &start;
        for (const unsigned element : key) {
            const auto way = std::find_if(place->ways.begin(), place->ways.end(),
                                          [&](const auto& each) { return each.first == element; });
            if (way == place->ways.end())
                return false;
            place = way->second.get();
        }
        return place->isEnd;
    }

    static void Sort(Place& place)
    {
        std::stable_sort(place.ways.begin(), place.ways.end(),
                         [](const auto& left, const auto& right) {
                             return left.second->weight > right.second->weight;
                         });
        for (auto& way : place.ways)
            Sort(*way.second);
    }

    static Spot Behind(const Spot& spot, std::size_t way)
    {
        Spot next = {spot.first, spot.second->ways[way].second.get()};
        next.first.push_back(spot.second->ways[way].first);
        return next;
    }

    // Takes the key of the branch; the places with alternatives on it.
    std::vector<Spot> Branch(Spot spot)
    {
        std::vector<Spot> spots;
        for (; !spot.second->ways.empty(); spot = Behind(spot, 0)) {
            if (spot.second->isEnd)
                inner.push_back(spot.first);
            if (spot.second->ways.size() > 1)
                spots.push_back(spot);
        }
        order.push_back(spot.first);
        return spots;
    }

    std::vector<Spot> Alternatives(const Spot& spot)
    {
        std::vector<Spot> spots;
        for (std::size_t way = 1; way < spot.second->ways.size(); ++way)
            for (const Spot& next : Branch(Behind(spot, way)))
                spots.push_back(next);
        return spots;
    }

    void Deep(const Spot& spot)
    {
        const std::vector<Spot> spots = Alternatives(spot);
        for (auto next = spots.rbegin(); next != spots.rend(); ++next)
            Deep(*next);
    }

    Place start;
    std::vector<Word> order;
    std::vector<Word> inner;
};

// benchmarks/Support/Find.h: a side that looks up keys, one after the other.
#pragma once

#include <cstdint>
#include <vector>

#include "Support/Job.h"

typedef std::vector<unsigned> Numbers;

// The numbers that a find of each key gives.
template <class Keys, class Find>
void AddFind(Measure<Numbers>& measure, const char* side, const Keys& keys, Find find)
{
    measure.Side(
        side,
        [&keys, find] {
            std::uint64_t sum = 0;
            for (const auto& key : keys)
                sum += find(key);
            return sum;
        },
        [&keys, find] {
            Numbers answers;
            for (const auto& key : keys)
                answers.push_back(find(key));
            return answers;
        });
}

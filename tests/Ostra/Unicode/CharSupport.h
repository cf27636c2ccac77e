// tests/Ostra/Unicode/CharSupport.h: what the tests of character knowledge share.
#pragma once

#include <gtest/gtest.h>

#include <cstdio>
#include <map>
#include <sstream>
#include <string>
#include <vector>

using Unit = unsigned short;
using Query = int (*)(Unit);

// Every question is asked of all units.
constexpr unsigned UNITS = 0x10000;

inline std::string Name(unsigned unit)
{
    char name[16];
    std::snprintf(name, sizeof(name), "U+%04X", unit);
    return name;
}

// The units of a list such as "0027 FF61..FF65": single units and runs, in the list's order.
inline std::vector<Unit> Expand(const std::string& list)
{
    std::vector<Unit> units;
    std::istringstream words(list);
    for (std::string word; words >> word;) {
        const unsigned first = std::stoul(word.substr(0, 4), nullptr, 16);
        const unsigned last = word.size() > 4 ? std::stoul(word.substr(6), nullptr, 16) : first;
        for (unsigned unit = first; unit <= last; ++unit)
            units.push_back(static_cast<Unit>(unit));
    }
    return units;
}

// A set of units that answers in one step whether it holds one.
class UnitSet
{
public:
    UnitSet(const std::string& list) : holds(UNITS)
    {
        for (Unit unit : Expand(list))
            holds[unit] = true;
    }
    bool operator()(unsigned unit) const { return holds[unit]; }
    unsigned Count() const
    {
        unsigned count = 0;
        for (bool held : holds)
            count += held;
        return count;
    }

private:
    std::vector<bool> holds;
};

// Sources and what they map to: as many units, or one for all.
struct MappingRun
{
    const char* sources;
    const char* targets;
};

// The mapping of all units that the runs tell; a unit without a row maps to itself.
class UnitMap
{
public:
    template <std::size_t n_Runs>
    UnitMap(const MappingRun (&runs)[n_Runs])
    {
        for (const MappingRun& run : runs)
            Add(run);
    }
    UnitMap() = default;
    Unit operator()(unsigned unit) const
    {
        const auto row = rows.find(static_cast<Unit>(unit));
        return row == rows.end() ? static_cast<Unit>(unit) : row->second;
    }
    void Add(Unit source, Unit target)
    {
        EXPECT_TRUE(rows.emplace(source, target).second) << Name(source) << " has two rows";
    }
    void Remove(Unit source) { EXPECT_EQ(rows.erase(source), 1u) << Name(source); }
    bool Holds(unsigned unit) const { return rows.count(static_cast<Unit>(unit)); }
    std::size_t Count() const { return rows.size(); }

private:
    void Add(const MappingRun& run)
    {
        const std::vector<Unit> sources = Expand(run.sources), targets = Expand(run.targets);
        ASSERT_TRUE(targets.size() == 1 || targets.size() == sources.size()) << run.sources;
        for (std::size_t n = 0; n < sources.size(); ++n)
            Add(sources[n], targets[targets.size() == 1 ? 0 : n]);
    }

    std::map<Unit, Unit> rows;
};

// The units for which two functions of a unit don't answer the same number; empty for none.
template <typename Actual, typename Expected>
std::string Differences(Actual actual, Expected expected)
{
    std::string out;
    unsigned count = 0;
    for (unsigned unit = 0; unit < UNITS; ++unit) {
        const long is = actual(static_cast<Unit>(unit)), wanted = expected(static_cast<Unit>(unit));
        if (is == wanted || ++count > 8)
            continue;
        char line[64];
        std::snprintf(line, sizeof(line), "%s gives 0x%lX, not 0x%lX\n", Name(unit).c_str(), is,
                      wanted);
        out += line;
    }
    return count > 8 ? out + "and " + std::to_string(count - 8) + " more\n" : out;
}

// How many units a condition holds for.
template <typename Condition>
unsigned Count(Condition condition)
{
    unsigned count = 0;
    for (unsigned unit = 0; unit < UNITS; ++unit)
        count += condition(static_cast<Unit>(unit)) ? 1 : 0;
    return count;
}

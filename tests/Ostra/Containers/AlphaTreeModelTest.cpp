// tests/Ostra/Containers/AlphaTreeModelTest.cpp: random operations on a tree, on a map of its keys,
// and on a tree that does each step by its rule.
#include <Ostra/Containers/AlphaTree.h>

#include "Ostra/Containers/AlphaTreePeer.h"
#include "Support/Directory.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <random>
#include <string>
#include <vector>

namespace
{
constexpr unsigned NONE = 0xFFFFFFFF;

struct Model
{
    char16_t character = 0xFFFF;
    unsigned value = NONE;
    std::vector<Model> branches = {};

    Model* Find(char16_t wanted)
    {
        for (Model& branch : branches)
            if (branch.character == wanted)
                return &branch;
        return nullptr;
    }
    void Add(const char16_t* key, unsigned number)
    {
        if (!*key) {
            value = number;
            return;
        }
        if (!Find(*key))
            branches.push_back({*key});
        Find(*key)->Add(key + 1, number);
    }
    bool Remove(const char16_t* key)
    {
        if (!*key && value != NONE) {
            value = NONE;
            return true;
        }
        Model* branch = *key ? Find(*key) : nullptr;
        if (!branch)
            return false;
        const bool removed = branch->Remove(key + 1);
        if (!removed || !branch->branches.empty() || value != NONE)
            return removed;
        if (branch != &branches.back())
            *branch = std::move(branches.back());
        branches.pop_back();
        return removed;
    }
};

void Compare(const AlphaTreePeer::Node& node, const Model& model)
{
    ASSERT_EQ(node.u_Character, model.character);
    ASSERT_EQ(node.n_Value, model.value);
    ASSERT_EQ(node.n2_NrOfBranches, model.branches.size());
    ASSERT_EQ(node.pso_Branches == nullptr, model.branches.empty());
    for (size_t n = 0; n < model.branches.size(); ++n) {
        Compare(node.pso_Branches[n], model.branches[n]);
        if (testing::Test::HasFatalFailure())
            return;
    }
}

class Player
{
public:
    explicit Player(unsigned seed) : random(seed) {}

    void Play()
    {
        key.clear();
        for (unsigned left = Below(7); left > 0; --left)
            key += u"abc\u00E9"[Below(4)];
        narrow.assign(key.begin(), key.end());
        const unsigned choice = Below(8);
        if (choice < 4)
            Add(Below(20) ? Below(1000) : NONE);
        else if (choice < 7)
            Remove();
        else
            Search();
    }

    void CompareTrees()
    {
        Compare(AlphaTreePeer::Root(tree), model);
        unsigned entries = 0;
        for (const auto& [entry, value] : map)
            entries += value != NONE;
        ASSERT_EQ(tree.n_GetNrOfEntries(), entries);
    }

private:
    unsigned Below(unsigned limit) { return static_cast<unsigned>(random() % limit); }
    const unsigned short* Wide() const
    {
        return reinterpret_cast<const unsigned short*>(key.c_str());
    }

    void Add(unsigned value)
    {
        if (Below(2))
            tree.v_Add(Wide(), value);
        else
            tree.v_Add(narrow.c_str(), value);
        model.Add(key.c_str(), value);
        map[key] = value;
    }
    void Remove()
    {
        const auto found = map.find(key);
        const bool there = found != map.end() && found->second != NONE;
        ASSERT_EQ(Below(2) ? tree.b_Remove(Wide()) : tree.b_Remove(narrow.c_str()), there);
        ASSERT_EQ(model.Remove(key.c_str()), there);
        map.erase(key);
    }
    void Search()
    {
        const auto found = map.find(key);
        const unsigned value = found == map.end() ? NONE : found->second;
        ASSERT_EQ(tree.n_Search(Wide()), value);
        ASSERT_EQ(tree.n_Search(narrow.c_str()), value);
    }

    std::mt19937 random;
    CT_AlphaTree tree;
    Model model;
    std::map<std::u16string, unsigned> map;
    std::u16string key;
    std::string narrow;
};
} // namespace

TEST(AlphaTreeModel, RandomOperationsGiveTheModelsBranches)
{
    const unsigned seed = Seed(45);
    SCOPED_TRACE("OSTRA_SEED=" + std::to_string(seed));
    Player player(seed);
    for (unsigned step = 0; step < 20000; ++step) {
        player.Play();
        if (step < 200 || step % 50 == 0)
            player.CompareTrees();
        ASSERT_FALSE(testing::Test::HasFatalFailure()) << "step " << step;
    }
}

// Nodes with branches in every room, up and down again, and a tree that is emptied.
TEST(AlphaTreeModel, NodesOfManyBranchesGrowAndShrinkLikeTheModel)
{
    const unsigned seed = Seed(46);
    SCOPED_TRACE("OSTRA_SEED=" + std::to_string(seed));
    std::mt19937 random(seed);
    CT_AlphaTree tree;
    Model model;
    for (const unsigned most : {5U, 40U, 300U, 40U, 1200U}) {
        SCOPED_TRACE(most);
        std::vector<std::u16string> keys;
        for (unsigned n = 0; n < most; ++n)
            for (const char16_t* rest : {u"", u"xy"})
                keys.push_back(static_cast<char16_t>(1000 + n) + std::u16string(rest));
        for (const bool adding : {true, false}) {
            std::shuffle(keys.begin(), keys.end(), random);
            unsigned step = 0;
            for (const std::u16string& key : keys) {
                const auto* text = reinterpret_cast<const unsigned short*>(key.c_str());
                if (adding) {
                    tree.v_Add(text, step);
                    model.Add(key.c_str(), step);
                } else {
                    ASSERT_EQ(tree.b_Remove(text), model.Remove(key.c_str()));
                }
                if (step++ % 50 == 0 || most < 50)
                    Compare(AlphaTreePeer::Root(tree), model);
                ASSERT_FALSE(testing::Test::HasFatalFailure()) << "step " << step;
            }
            Compare(AlphaTreePeer::Root(tree), model);
        }
        for (const std::u16string& key : keys) {
            const auto* text = reinterpret_cast<const unsigned short*>(key.c_str());
            ASSERT_EQ(tree.n_Search(text), NONE);
        }
    }
}

TEST(AlphaTreeModel, ATreeCanBeDestroyedWithBranchesInEveryRoom)
{
    CT_AlphaTree tree;
    for (unsigned short n = 1; n <= 3000; ++n) {
        const unsigned short key[] = {n, static_cast<unsigned short>(n % 7 + 1), 0};
        tree.v_Add(key, n);
    }
    EXPECT_EQ(tree.n_GetNrOfEntries(), 3000U);
    const unsigned short key[] = {2999, 4, 0};
    EXPECT_EQ(tree.n_Search(key), 2999U);
}

// Keys come in great numbers and go but for a few: the nodes that stay move together.
TEST(AlphaTreeModel, MemoryComesBackWhenMostOfItIsUnused)
{
    const unsigned seed = Seed(47);
    SCOPED_TRACE("OSTRA_SEED=" + std::to_string(seed));
    std::mt19937 random(seed);
    CT_AlphaTree tree;
    Model model;
    for (const unsigned many : {2000U, 300U, 5000U}) {
        SCOPED_TRACE(many);
        std::vector<std::u16string> keys;
        for (unsigned n = 0; n < many; ++n) {
            std::u16string key;
            for (unsigned left = random() % 4 + 1; left > 0; --left)
                key += static_cast<char16_t>('a' + random() % (left == 2 ? 200 : 12));
            keys.push_back(key);
        }
        unsigned value = 0;
        for (const std::u16string& key : keys) {
            tree.v_Add(reinterpret_cast<const unsigned short*>(key.c_str()), ++value);
            model.Add(key.c_str(), value);
        }
        const std::size_t most = AlphaTreePeer::Room(tree);
        Compare(AlphaTreePeer::Root(tree), model);
        std::shuffle(keys.begin(), keys.end(), random);
        for (std::size_t n = 0; n + 20 < keys.size(); ++n) {
            const auto* text = reinterpret_cast<const unsigned short*>(keys[n].c_str());
            ASSERT_EQ(tree.b_Remove(text), model.Remove(keys[n].c_str()));
            if (n % 50 == 0)
                Compare(AlphaTreePeer::Root(tree), model);
            ASSERT_FALSE(testing::Test::HasFatalFailure()) << n;
        }
        Compare(AlphaTreePeer::Root(tree), model);
        EXPECT_LT(AlphaTreePeer::Room(tree), std::size_t{1500});
        EXPECT_GT(most, AlphaTreePeer::Room(tree));
    }
}

// At the edge of giving memory back the tree doesn't do it with each key.
TEST(AlphaTreeModel, AKeyThatComesAndGoesMovesNothing)
{
    CT_AlphaTree tree;
    for (unsigned short n = 1; n <= 3000; ++n) {
        const unsigned short key[] = {n, 1, 0};
        tree.v_Add(key, n);
    }
    for (unsigned short n = 3000; n > 20; --n) {
        const unsigned short key[] = {n, 1, 0};
        unsigned moves = 0;
        for (unsigned times = 0; times < 4; ++times) {
            const std::size_t before = AlphaTreePeer::Room(tree);
            tree.b_Remove(key);
            moves += before != AlphaTreePeer::Room(tree);
            if (times < 3)
                tree.v_Add(key, n);
        }
        ASSERT_LE(moves, 2U) << n;
    }
}

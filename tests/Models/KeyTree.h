// tests/Models/KeyTree.h: keys as a tree of nodes, for the order in which a list gives them.
#pragma once

#include <memory>
#include <utility>
#include <vector>

// Keys with handles; a key is its elements. It knows nothing of blocks: each node has its branches
// in the order in which they were added.
class KeyTree
{
public:
    typedef std::vector<unsigned> Key;
    typedef std::vector<std::pair<Key, unsigned>> Entries;

    // A key that is there keeps its handle.
    void Add(const Key& key, unsigned handle)
    {
        Node* node = &root;
        for (const unsigned element : key)
            node = node->Branch(element);
        if (!node->ends) {
            node->ends = true;
            node->handle = handle;
        }
    }

    // A key before those that it begins; of several branches the newest first. Not the empty key.
    Entries Walk() const
    {
        Entries entries;
        Key key;
        Collect(root, key, entries);
        return entries;
    }

private:
    struct Node
    {
        Node* Branch(unsigned element)
        {
            for (const auto& [at, node] : branches)
                if (at == element)
                    return node.get();
            branches.emplace_back(element, std::make_unique<Node>());
            return branches.back().second.get();
        }

        std::vector<std::pair<unsigned, std::unique_ptr<Node>>> branches;
        bool ends = false;
        unsigned handle = 0;
    };

    static void Collect(const Node& node, Key& key, Entries& entries)
    {
        if (node.ends && !key.empty())
            entries.emplace_back(key, node.handle);
        for (auto branch = node.branches.rbegin(); branch != node.branches.rend(); ++branch) {
            key.push_back(branch->first);
            Collect(*branch->second, key, entries);
            key.pop_back();
        }
    }

    Node root;
};

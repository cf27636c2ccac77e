// tests/Ostra/Containers/AlphaTreePeer.h: the nodes of an alphabet tree.
#pragma once

#include <Ostra/Containers/AlphaTree.h>
#include <Ostra/Containers/BranchPool.h>

struct AlphaTreePeer
{
    typedef CT_AlphaTree::_st_node Node;

    static const Node& Root(const CT_AlphaTree& tree) { return tree.so_Root; }
    // Nodes that the tree has memory for.
    static std::size_t Room(const CT_AlphaTree& tree)
    {
        return tree.pco_Pool ? tree.pco_Pool->n_GetRoom() : 0;
    }
};

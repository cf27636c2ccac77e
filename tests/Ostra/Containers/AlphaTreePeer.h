// tests/Ostra/Containers/AlphaTreePeer.h: the nodes of an alphabet tree.
#pragma once

#include <Ostra/Containers/AlphaTree.h>

struct AlphaTreePeer
{
    typedef CT_AlphaTree::_st_node Node;

    static const Node& Root(const CT_AlphaTree& tree) { return tree.so_Root; }
};

// Ostra/Containers/BranchPool.h: room for the branches of alphabet trees. Internal.
//
// A heap block for each array would have more bytes for itself than for most arrays, which have one
// branch. Here arrays lie side by side, those of a new key one behind the other: a search meets
// half as many lines of the cache.
#pragma once

#include <Ostra/Containers/AlphaTree.h>

#include <cstddef>

// Arrays of nodes for one tree. Up to SINGLE nodes an array has just its room, a larger one that of
// the next power of two. What is given back serves for arrays of the same room; the heap gets it
// when v_Pack moves the rest together, when the last array goes, or with the pool.
class CT_BranchPool
{
public:
    typedef CT_AlphaTree::_st_node st_Node;

    CT_BranchPool() = default;
    CT_BranchPool(const CT_BranchPool&) = delete;
    CT_BranchPool& operator=(const CT_BranchPool&) = delete;
    ~CT_BranchPool();
    static void* operator new(std::size_t n_Size) noexcept;
    static void operator delete(void* pv_Object);

    // The array with room for one node more than n_Count, at the same place or another; null when
    // the heap is exhausted, and the array is as it was.
    st_Node* pso_Grow(st_Node* pso_Nodes, unsigned n_Count);
    // Makes an array of n_Count nodes, which are at least 2, one of n_Count - 1 at the same place.
    void v_Shrink(st_Node* pso_Nodes, unsigned n_Count);
    void v_Free(st_Node* pso_Nodes, unsigned n_Count);

    // Whether more than three quarters of the memory serve nothing; a small pool may have them.
    // With less an array that grows and shrinks at the edge of its room would make the rest move.
    bool b_IsMostlyUnused() const { return n_Had > 4 * n_Used + 2 * FIRST_CHUNK; }
    // Moves the arrays below the root, which are all, to a block of just their room, and gives back
    // what they had. Without memory for it they stay.
    void v_Pack(st_Node* pso_Root);
    // Nodes that memory is there for.
    std::size_t n_GetRoom() const { return n_Had; }

    // Nodes with a number. The tree counts them here.
    unsigned n_Entries = 0;

private:
    static constexpr unsigned SINGLE = 32;
    static constexpr unsigned CLASSES = SINGLE + 1 + 11; // rooms of 1 to 32, then of 64 to 65,536
    static constexpr unsigned FIRST_CHUNK = 64, LAST_CHUNK = 4096; // nodes

    struct st_Chunk
    {
        st_Chunk* pso_Previous;
    };

    static unsigned sn_RoomFor(unsigned n_Count);
    static unsigned sn_ClassOf(unsigned n_Room);
    st_Node* pso_Take(unsigned n_Room);
    st_Node* pso_Carve(unsigned n_Room);
    int b_AddChunk(unsigned n_Nodes);
    void v_Give(st_Node* pso_Nodes, unsigned n_Room);
    void v_Clear();
    void v_CopyWay(st_Node* pso_Node, const st_Node* pso_First);

    st_Node* apso_Free[CLASSES] = {}; // the first node's branches lead to the next free array
    st_Chunk* pso_Chunks = nullptr;
    st_Node* pso_Rest = nullptr; // of the newest chunk
    unsigned n_Rest = 0;
    unsigned n_NextChunk = FIRST_CHUNK;
    std::size_t n_Had = 0;  // nodes of all chunks
    std::size_t n_Used = 0; // nodes in the rooms of arrays
};

// Ostra/Containers/BranchPool.cpp
#include <Ostra/Containers/BranchPool.h>

#include <algorithm>
#include <bit>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <utility>

typedef CT_BranchPool::st_Node st_Node;

CT_BranchPool::~CT_BranchPool()
{
    v_Clear();
}

void* CT_BranchPool::operator new(std::size_t n_Size) noexcept
{
    return std::malloc(n_Size);
}

void CT_BranchPool::operator delete(void* pv_Object)
{
    std::free(pv_Object);
}

// ---- Rooms --------------------------------------------------------------------------------

inline unsigned CT_BranchPool::sn_RoomFor(unsigned n_Count)
{
    return n_Count <= SINGLE ? n_Count : std::bit_ceil(n_Count);
}

inline unsigned CT_BranchPool::sn_ClassOf(unsigned n_Room)
{
    return n_Room <= SINGLE ? n_Room
                            : SINGLE + static_cast<unsigned>(std::countr_zero(n_Room / SINGLE));
}

// ---- Arrays -------------------------------------------------------------------------------

st_Node* CT_BranchPool::pso_Grow(st_Node* pso_Nodes, unsigned n_Count)
{
    const unsigned n_Room = sn_RoomFor(n_Count + 1);
    if (n_Count && sn_RoomFor(n_Count) == n_Room)
        return pso_Nodes;
    st_Node* pso_Grown = pso_Take(n_Room);
    if (!pso_Grown || !n_Count)
        return pso_Grown;
    std::memcpy(pso_Grown, pso_Nodes, n_Count * sizeof(st_Node));
    v_Free(pso_Nodes, n_Count);
    return pso_Grown;
}

void CT_BranchPool::v_Shrink(st_Node* pso_Nodes, unsigned n_Count)
{
    const unsigned n_Room = sn_RoomFor(n_Count - 1);
    if (const unsigned n_Less = sn_RoomFor(n_Count) - n_Room) {
        v_Give(pso_Nodes + n_Room, n_Less);
        n_Used -= n_Less;
    }
}

void CT_BranchPool::v_Free(st_Node* pso_Nodes, unsigned n_Count)
{
    const unsigned n_Nodes = sn_RoomFor(n_Count);
    v_Give(pso_Nodes, n_Nodes);
    n_Used -= n_Nodes;
    if (!n_Used)
        v_Clear();
}

// ---- Memory -------------------------------------------------------------------------------

st_Node* CT_BranchPool::pso_Take(unsigned n_Room)
{
    st_Node*& pso_First = apso_Free[sn_ClassOf(n_Room)];
    st_Node* pso_Nodes = pso_First;
    if (pso_Nodes)
        pso_First = pso_Nodes->pso_Branches;
    else
        pso_Nodes = pso_Carve(n_Room);
    n_Used += pso_Nodes ? n_Room : 0;
    return pso_Nodes;
}

st_Node* CT_BranchPool::pso_Carve(unsigned n_Room)
{
    if (n_Rest < n_Room && !b_AddChunk(std::max(n_Room, n_NextChunk)) && !b_AddChunk(n_Room))
        return nullptr;
    st_Node* pso_Nodes = pso_Rest;
    pso_Rest += n_Room;
    n_Rest -= n_Room;
    return pso_Nodes;
}

// What is left of the chunk before becomes free arrays of one node.
int CT_BranchPool::b_AddChunk(unsigned n_Nodes)
{
    void* pv_Chunk = std::malloc(sizeof(st_Node) * (std::size_t{n_Nodes} + 1));
    if (!pv_Chunk)
        return 0;
    while (n_Rest)
        v_Give(pso_Rest + --n_Rest, 1);
    st_Chunk* pso_Chunk = static_cast<st_Chunk*>(pv_Chunk);
    pso_Chunk->pso_Previous = pso_Chunks;
    pso_Chunks = pso_Chunk;
    pso_Rest = static_cast<st_Node*>(pv_Chunk) + 1;
    n_Rest = n_Nodes;
    n_Had += n_Nodes;
    n_NextChunk = std::min(2 * n_NextChunk, LAST_CHUNK);
    return 1;
}

void CT_BranchPool::v_Give(st_Node* pso_Nodes, unsigned n_Room)
{
    st_Node*& pso_First = apso_Free[sn_ClassOf(n_Room)];
    pso_Nodes->pso_Branches = pso_First;
    pso_First = pso_Nodes;
}

void CT_BranchPool::v_Clear()
{
    while (st_Chunk* pso_Chunk = pso_Chunks) {
        pso_Chunks = pso_Chunk->pso_Previous;
        std::free(pso_Chunk);
    }
    std::fill_n(apso_Free, CLASSES, nullptr);
    pso_Rest = nullptr;
    n_Rest = 0;
    n_Had = 0;
    n_NextChunk = FIRST_CHUNK;
}

// ---- Packing ------------------------------------------------------------------------------

void CT_BranchPool::v_Pack(st_Node* pso_Root)
{
    CT_BranchPool co_Packed;
    const unsigned n_Nodes = static_cast<unsigned>(n_Used);
    if (n_Nodes != n_Used || !co_Packed.b_AddChunk(n_Nodes))
        return;
    // What was copied is gone through from the front, and its branches are copied behind it. The
    // arrays themselves stay as they are, though they are left behind.
    st_Node* const pso_First = co_Packed.pso_Rest;
    co_Packed.v_CopyWay(pso_Root, pso_First);
    for (st_Node* pso_Node = pso_First; pso_Node != co_Packed.pso_Rest; ++pso_Node)
        co_Packed.v_CopyWay(pso_Node, pso_First);

    v_Clear();
    std::swap(pso_Chunks, co_Packed.pso_Chunks);
    n_Had = n_Used;
    // The next chunk goes by what is there, or it would be unused for the most part itself.
    n_NextChunk = std::bit_ceil(std::clamp(n_Nodes / 4, FIRST_CHUNK, LAST_CHUNK));
}

// Copies the branches of the node, then those of the last of them, and so on, unless they are in
// this pool already: behind pso_First. There is room for all.
void CT_BranchPool::v_CopyWay(st_Node* pso_Node, const st_Node* pso_First)
{
    const std::less<const st_Node*> f_IsBefore;
    while (st_Node* pso_Branches = pso_Node->pso_Branches) {
        if (!f_IsBefore(pso_Branches, pso_First) && f_IsBefore(pso_Branches, pso_Rest))
            return;
        const unsigned n_Count = pso_Node->n2_NrOfBranches, n_Nodes = sn_RoomFor(n_Count);
        st_Node* pso_Copy = pso_Carve(n_Nodes);
        std::memcpy(pso_Copy, pso_Branches, n_Count * sizeof(st_Node));
        std::fill(pso_Copy + n_Count, pso_Copy + n_Nodes, st_Node{});
        pso_Node->pso_Branches = pso_Copy;
        pso_Node = pso_Copy + n_Count - 1;
    }
}

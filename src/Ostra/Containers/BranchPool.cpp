// Ostra/Containers/BranchPool.cpp
#include <Ostra/Containers/BranchPool.h>

#include <algorithm>
#include <bit>
#include <cstdlib>
#include <cstring>

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

inline unsigned CT_BranchPool::n_RoomFor(unsigned n_Count)
{
    return n_Count <= SINGLE ? n_Count : std::bit_ceil(n_Count);
}

inline unsigned CT_BranchPool::n_ClassOf(unsigned n_Room)
{
    return n_Room <= SINGLE ? n_Room
                            : SINGLE + static_cast<unsigned>(std::countr_zero(n_Room / SINGLE));
}

// ---- Arrays -------------------------------------------------------------------------------

st_Node* CT_BranchPool::pso_Grow(st_Node* pso_Nodes, unsigned n_Count)
{
    const unsigned n_Room = n_RoomFor(n_Count + 1);
    if (n_Count && n_RoomFor(n_Count) == n_Room)
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
    const unsigned n_Room = n_RoomFor(n_Count - 1);
    if (const unsigned n_Less = n_RoomFor(n_Count) - n_Room)
        v_Give(pso_Nodes + n_Room, n_Less);
}

void CT_BranchPool::v_Free(st_Node* pso_Nodes, unsigned n_Count)
{
    v_Give(pso_Nodes, n_RoomFor(n_Count));
    if (--n_Arrays == 0)
        v_Clear();
}

// ---- Memory -------------------------------------------------------------------------------

st_Node* CT_BranchPool::pso_Take(unsigned n_Room)
{
    st_Node*& pso_First = apso_Free[n_ClassOf(n_Room)];
    st_Node* pso_Nodes = pso_First;
    if (pso_Nodes)
        pso_First = pso_Nodes->pso_Branches;
    else
        pso_Nodes = pso_Carve(n_Room);
    n_Arrays += pso_Nodes != nullptr;
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
    n_NextChunk = std::min(2 * n_NextChunk, LAST_CHUNK);
    return 1;
}

void CT_BranchPool::v_Give(st_Node* pso_Nodes, unsigned n_Room)
{
    st_Node*& pso_First = apso_Free[n_ClassOf(n_Room)];
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
    n_NextChunk = FIRST_CHUNK;
}

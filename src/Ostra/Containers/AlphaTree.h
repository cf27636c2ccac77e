// Ostra/Containers/AlphaTree.h: a changeable map from texts to numbers.
#pragma once

#include <Ostra/Frame/Export.h>
#include <Ostra/Frame/Platform.h>

class CT_BranchPool;
class CT_CString;
class CT_UString;

// A map from zero-terminated keys to 32-bit numbers: a trie with a node a character, which takes
// 8-bit and 16-bit keys alike. An 8-bit character is widened without sign, so a key is the same in
// either form. The changeable counterpart of CT_CompList.
//
// The number 0xFFFFFFFF means that there is no entry: adding it enters nodes and no key.
//
// Units:   a CT_CString or CT_UString stands for its text.
// Owns:    its nodes; the room of removed ones is given back when less than a quarter is in use.
// Reports: nothing. A key that finds no memory isn't entered; what it had keeps its number.
// Caller:  prints keys of at most 255 characters.
// Threads: one thread at a time.
class OSTRA_API CT_AlphaTree
{
public:
    // The width of keys in bytes, for v_Dump: any value but 1 means 16 bits.
    enum et_ElementSize : int
    {
        es_Byte = 1,
        es_Short = 2
    };

    //   field            what
    //   u_Character      of the branch that leads here; 0xFFFF in the root
    //   n2_NrOfBranches
    //   n_Value          0xFFFFFFFF if no key ends here
    //   pso_Branches     in the order of their adding; null for none
    struct _st_node
    {
        unsigned short u_Character;
        unsigned short n2_NrOfBranches;
        unsigned n_Value;
        _st_node* pso_Branches;
    };

    // ---- Construction ---------------------------------------------------------------------

    CT_AlphaTree();
    ~CT_AlphaTree();
    CT_AlphaTree(const CT_AlphaTree&) = delete;
    CT_AlphaTree& operator=(const CT_AlphaTree&) = delete;

    // ---- Access ---------------------------------------------------------------------------

    // The keys that have a number.
    unsigned n_GetNrOfEntries();

    // The key's number; 0xFFFFFFFF for none.
    unsigned n_Search(const char* qccz_Key);
    unsigned n_Search(const unsigned short* qcuz_Key);
    unsigned n_Search(const CT_CString* pcco_Key);
    unsigned n_Search(const CT_UString* pcco_Key);

    // ---- Change ---------------------------------------------------------------------------

    // A key that is there gets the new number.
    void v_Add(const char* qccz_Key, DWORD n4_Value);
    void v_Add(const unsigned short* qcuz_Key, DWORD n4_Value);
    void v_Add(const CT_CString* pcco_Key, DWORD n4_Value);
    void v_Add(const CT_UString* pcco_Key, DWORD n4_Value);

    // 1 if the key was there and is removed, else 0. Its nodes stay below a node that has a number,
    // also below the root with the empty key; the last branch of a node takes the place of one
    // that goes.
    int b_Remove(const char* qccz_Key);
    int b_Remove(const unsigned short* qcuz_Key);
    int b_Remove(const CT_CString* pcco_Key);
    int b_Remove(const CT_UString* pcco_Key);

    // ---- Output ---------------------------------------------------------------------------

    // Prints a line "key : number" for each key but the empty one to the standard output, by way of
    // the branches in their order. Keys are cut to 255 characters, and 8-bit ones to 8 bits each.
    // A question mark stands for what becomes 0 then, and for a 16-bit character that has no form
    // in the standard library's locale.
    void v_Dump(et_ElementSize ec_ElementSize);

private:
    friend struct AlphaTreePeer; // tests of the nodes

    // ---- Life -----------------------------------------------------------------------------

    void v_Null();
    void v_Init();
    void v_Delete(_st_node* pso_Node);

    // ---- Work -----------------------------------------------------------------------------

    template <class T>
    struct st_DumpText;
    struct st_Waiting;

    static _st_node* pso_FindBranch(_st_node* pso_Branches, unsigned n_Count,
                                    unsigned short u_Character);
    _st_node* pso_AugmentBranches(_st_node** ppso_Branches, unsigned n_Count,
                                  unsigned short u_Character);
    void v_CutBranch(_st_node* pso_Node, _st_node* pso_Branch);
    template <class T>
    void v_Insert(_st_node* pso_Node, const T* qcz_Key, DWORD n4_Value);
    template <class T>
    static DWORD n4_Search(_st_node* pso_Node, const T* qcz_Key);
    template <class T>
    int b_Remove(_st_node* pso_Node, const T* qcz_Key);
    template <class T>
    void v_Dump(_st_node* pso_Node, st_DumpText<T>* pso_Text);
    template <class T>
    void v_DumpBranches(_st_node* pso_Node, st_DumpText<T>* pso_Text);
    void v_SetValue(_st_node* pso_Node, unsigned n_Value);

    _st_node so_Root;        // what is told of a tree ends with it
    CT_BranchPool* pco_Pool; // has the branches of all nodes; null until there are some
};

// Ostra/CompList/TypedTrie.h: a linked trie with elements of one type. Internal.
#pragma once

#include <Ostra/CompList/LinkedTrie.h>

class CT_AlternativeIndex;
class CT_CompList;

template <class T>
class CT_TypedTrie : public CT_LinkedTrie
{
public:
    explicit CT_TypedTrie(const CT_CompList* pcco_List);
    ~CT_TypedTrie() override;

    // Takes over what the list holds, in linear time.
    et_Result ec_Read(const CT_CompList* pcco_List);

    et_Result vec_Add(const char* pcc_Key, unsigned n_Handle, unsigned n_Weight) override;
    et_Result vec_Write(st_CompListHeader* pso_Header) const override;
    et_Result vec_WriteByWeight(st_CompListHeader* pso_Header) const override;

private:
    struct st_Reader;
    struct st_Writer;
    struct st_AddedOrder;

    int b_MakeText(unsigned n_More);

    // ---- Adding ---------------------------------------------------------------------------

    st_Place so_Follow(const char* pcc_Key) const;
    et_Result ec_AddEnd(const st_Place* pcso_Place, unsigned n_Handle, unsigned n_Weight);
    et_Result ec_AddTail(const st_Place* pcso_Place, const char* pcc_Key, unsigned n_Handle,
                         unsigned n_Weight);
    void v_Split(unsigned n_Node, unsigned n_Within);
    unsigned n_NewTail(const char* pcc_Rest, unsigned n_Length);

    // ---- The block ------------------------------------------------------------------------

    et_Result ec_ReadBranch(st_Reader* pso_Reader);
    et_Result ec_ReadCharacter(st_Reader* pso_Reader, unsigned n_Stored);
    et_Result ec_ReadEnd(st_Reader* pso_Reader, unsigned n_Stored);
    et_Result ec_LinkAlternatives(st_Reader* pso_Reader);
    et_Result ec_TakeJumps(const st_Reader* pcso_Reader, const st_CompListHeader* pcso_Header);
    template <class t_Order>
    et_Result ec_WriteInOrder(t_Order* pco_Order, st_CompListHeader* pso_Header) const;
    template <class t_Order>
    void v_WriteBranch(unsigned n_Way, const t_Order* pcco_Order, st_Writer* pso_Writer) const;
    int b_LeadHere(unsigned n_Way, unsigned n_First, st_Writer* pso_Writer) const;

    T* p_Text;
    unsigned n_TextUsed; // in elements
    unsigned n_TextRoom;
};

// Ostra/Frame/Type.cpp
#include <Ostra/Frame/Type.h>

#include <cstdlib>
#include <cstring>

CT_Type::st_Type CT_Type::saso_Types[MAX_TYPES];
unsigned CT_Type::sn_Types;
CT_Type* CT_Type::spco_Any;
CT_Type* CT_Type::spco_Construct;
CT_Type* CT_Type::spco_Destruct;

// ---- Construction ---------------------------------------------------------------------------

CT_Type::CT_Type(char* qcz_TypeName, void* pv_Specimen, unsigned n_SpecimenSize)
{
    v_Init(qcz_TypeName, pv_Specimen, n_SpecimenSize);
}

CT_Type::~CT_Type()
{
    v_Exit();
}

void CT_Type::v_Init(char* qcz_TypeName, void* pv_Specimen, unsigned n_SpecimenSize)
{
    qcz_Name = qcz_TypeName;
    pv_Object = pv_Specimen;
    n_Size = n_SpecimenSize;
    paso_Types = nullptr;
    n_Types = 0;
    pco_Next = spco_Any;
    spco_Any = this;
    spco_Construct = this;
}

// Takes the record out of the chain and ends what is under way with it.
void CT_Type::v_Leave()
{
    CT_Type** ppco_Link = &spco_Any;
    while (*ppco_Link && *ppco_Link != this)
        ppco_Link = &(*ppco_Link)->pco_Next;
    if (*ppco_Link)
        *ppco_Link = pco_Next;
    if (spco_Construct == this) {
        spco_Construct = nullptr;
        sn_Types = 0;
    }
    if (spco_Destruct == this)
        spco_Destruct = nullptr;
}

void CT_Type::v_Exit()
{
    v_Leave();
    qcz_Name = nullptr;
    pv_Object = nullptr;
    std::free(paso_Types);
    paso_Types = nullptr;
    n_Types = 0;
}

// ---- Access ---------------------------------------------------------------------------------

const char* CT_Type::qccz_GetName() const
{
    return qcz_Name;
}

const void* CT_Type::pcv_GetObject() const
{
    return pv_Object;
}

unsigned CT_Type::n_GetTypes() const
{
    return n_Types;
}

void* CT_Type::pv_CastTo(void* pv_This, const CT_Type* pcco_Type) const
{
    unsigned n_Found = 0;
    LONG_PTR i_Offset = 0;
    for (unsigned n_At = 0; n_At < n_Types; ++n_At) {
        if (paso_Types[n_At].pco_Type == pcco_Type) {
            ++n_Found;
            i_Offset = paso_Types[n_At].i_Offset;
        }
    }
    return n_Found == 1 ? static_cast<char*>(pv_This) + i_Offset : nullptr;
}

// ---- Collection -----------------------------------------------------------------------------

void CT_Type::v_Enter()
{
    // A table that cannot be had leaves the record empty: no cast finds anything.
    paso_Types = static_cast<st_Type*>(std::malloc(sn_Types * sizeof(st_Type)));
    if (paso_Types) {
        std::memcpy(paso_Types, saso_Types, sn_Types * sizeof(st_Type));
        n_Types = sn_Types;
        for (unsigned n_At = 0; n_At < n_Types; ++n_At)
            paso_Types[n_At].i_Offset -= reinterpret_cast<LONG_PTR>(pv_Object);
    }
    sn_Types = 0;
    spco_Construct = nullptr;
}

void CT_Type::sv_Enter(void* pv_This, CT_Type* pco_Type)
{
    if (sn_Types < MAX_TYPES)
        saso_Types[sn_Types++] = {pco_Type, reinterpret_cast<LONG_PTR>(pv_This)};
}

int CT_Type::sb_InConstruct(const void* pcv_This)
{
    return spco_Construct && spco_Construct->b_InObject(pcv_This);
}

// sb_InDestruct while a specimen is being destructed.
int CT_Type::sb_InSpecimen(const void* pcv_This)
{
    CT_Type* pco_Type = spco_Destruct;
    // Kept: the count stays reduced, so a record whose specimen is gone has no types.
    if (--pco_Type->n_Types == 0)
        spco_Destruct = nullptr;
    return pco_Type->b_InObject(pcv_This);
}

void CT_Type::sv_ToDestruct(void* pv_Type)
{
    spco_Destruct = static_cast<CT_Type*>(pv_Type);
}

int CT_Type::b_InObject(const void* pcv_This) const
{
    const char* pcc_Object = static_cast<const char*>(pv_Object);
    return pcv_This >= pcc_Object && pcv_This < pcc_Object + n_Size;
}

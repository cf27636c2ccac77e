// Ostra/CompList/CompListText.h: the bytes of a key, in whatever form it comes. Internal.
#pragma once

#include <Ostra/String/CString.h>
#include <Ostra/String/UString.h>

// An empty key in any element size.
static constexpr unsigned n4_NoKey = 0;

static inline const char* pcc_Text(const char* qccz_Key)
{
    return qccz_Key;
}

static inline const char* pcc_Text(const unsigned short* qcuz_Key)
{
    return reinterpret_cast<const char*>(qcuz_Key);
}

static inline const char* pcc_Text(const CT_CString* pcco_Key)
{
    return pcco_Key && pcco_Key->vn_GetLength() ? pcco_Key->qccz_Get()
                                                : reinterpret_cast<const char*>(&n4_NoKey);
}

static inline const char* pcc_Text(const CT_UString* pcco_Key)
{
    return pcco_Key && pcco_Key->vn_GetLength() ? pcc_Text(pcco_Key->qcuz_Get())
                                                : reinterpret_cast<const char*>(&n4_NoKey);
}

// System/LocaleInfo/Language.cpp
#include <System/LocaleInfo/Language.h>

#include <Ostra/CompList/CompList.h>
#include <Ostra/Frame/Counts.h>
#include <Ostra/String/String.h>

#include <algorithm>
#include <cstring>

static constexpr unsigned PRIMARY_BITS = 0x3FF;
static constexpr unsigned SUB_UNIT = 1024; // of a language id
static constexpr unsigned KEY_UNIT = 256;  // of a sublanguage's key
static constexpr unsigned COMMON_SUBS = 3; // rows that go with any language
static constexpr unsigned CODE_LENGTH = 5; // "DE_AT"

CT_CompList* CT_Language::spco_Primaries;

// ---- Start and end ------------------------------------------------------------------------------

void CT_Language::sv_Init()
{
    spco_Primaries = new CT_CompList(CT_CompList::es_Byte, 1, 0, 0, 128, 0);
    // A list that misses codes, or has no head, would give wrong answers: it is whole or not there.
    int b_Whole = spco_Primaries && spco_Primaries->pcco_GetBuffer();
    for (unsigned n_Row = 0; b_Whole && n_Row < sn_PrimaryLanguages; ++n_Row)
        b_Whole = spco_Primaries->b_Add(saso_PrimaryLanguages[n_Row].qccz_Code, n_Row);
    if (!b_Whole)
        sv_Exit();
}

void CT_Language::sv_Exit()
{
    delete spco_Primaries;
    spco_Primaries = nullptr;
}

// ---- Ids ----------------------------------------------------------------------------------------

// The row with that number, of rows that ascend by it, or another row where there is none.
template <class t_Row>
static unsigned n_Find(const t_Row* pcso_Rows, unsigned n_Count, unsigned t_Row::*pn_Number,
                       unsigned n_Number, unsigned n_Otherwise)
{
    const t_Row* pcso_Row =
        std::ranges::lower_bound(pcso_Rows, pcso_Rows + n_Count, n_Number, {}, pn_Number);
    if (pcso_Row == pcso_Rows + n_Count || pcso_Row->*pn_Number != n_Number)
        return n_Otherwise;
    return static_cast<unsigned>(pcso_Row - pcso_Rows);
}

unsigned int CT_Language::sn_MakeLanguageID(et_Primary ec_Primary, et_Sub ec_Sub)
{
    if (ec_Sub < COMMON_SUBS)
        return (saso_PrimaryLanguages[ec_Primary].n_ID & 0xFFFF) | ec_Sub * SUB_UNIT;
    const unsigned n_Key = saso_SubLanguages[ec_Sub].n_Key;
    return n_Key % KEY_UNIT * SUB_UNIT | n_Key / KEY_UNIT;
}

void CT_Language::sv_GetLanguages(unsigned int n_ID, et_Primary* pec_Primary, et_Sub* pec_Sub)
{
    *pec_Primary = seo_GetPrimary(n_ID);
    *pec_Sub = seo_GetSub(n_ID);
}

CT_Language::et_Primary CT_Language::seo_GetPrimary(unsigned int n_ID)
{
    return seo_FindPrimary(n_ID & PRIMARY_BITS);
}

CT_Language::et_Sub CT_Language::seo_GetSub(unsigned int n_ID)
{
    return seo_FindSub((n_ID & PRIMARY_BITS) * KEY_UNIT + (n_ID & 0xFFFF) / SUB_UNIT);
}

CT_Language::et_Primary CT_Language::seo_FindPrimary(unsigned n_ID)
{
    return et_Primary{
        n_Find(saso_PrimaryLanguages, sn_PrimaryLanguages, &st_PrimaryLanguage::n_ID, n_ID, 0)};
}

CT_Language::et_Sub CT_Language::seo_FindSub(unsigned n_Key)
{
    return et_Sub{n_Find(saso_SubLanguages, sn_SubLanguages, &st_SubLanguage::n_Key, n_Key, 1)};
}

int CT_Language::sb_IsFarEastLanguage(et_Primary ec_Primary, et_Sub)
{
    return ec_Primary == 4 || ec_Primary == 17 || ec_Primary == 18 || ec_Primary == 30;
}

// ---- Tables -------------------------------------------------------------------------------------

unsigned int CT_Language::sn_GetPrimaryCount()
{
    return sn_PrimaryLanguages - 1;
}

unsigned int CT_Language::sn_GetSubCount(et_Primary ec_Primary)
{
    return saso_PrimaryLanguages[ec_Primary].n_SubCount;
}

CT_Language::et_Sub CT_Language::seo_GetSubAt(et_Primary ec_Primary, unsigned int n_Index)
{
    const unsigned n_ID = saso_PrimaryLanguages[ec_Primary].n_ID;
    unsigned n_Count = 0;
    // Row 0 is no sublanguage of the neutral language, rows 1 and 2 are.
    for (unsigned n_Row = 1; n_Row < sn_SubLanguages; ++n_Row) {
        const unsigned n_Primary = saso_SubLanguages[n_Row].n_Key / KEY_UNIT;
        if (n_Primary > n_ID)
            break;
        if (n_Primary == n_ID && ++n_Count == n_Index)
            return et_Sub{n_Row};
    }
    return et_Sub{1};
}

CT_Language::et_Sub CT_Language::seo_GetDefaultSub(et_Primary ec_Primary)
{
    return sn_GetSubCount(ec_Primary) ? seo_GetSubAt(ec_Primary, 1) : et_Sub{1};
}

const char* CT_Language::sqccz_GetLanguageCode(et_Primary ec_Primary)
{
    return saso_PrimaryLanguages[ec_Primary].qccz_Code;
}

const char* CT_Language::sqccz_GetLanguage(et_Primary ec_Primary)
{
    return saso_PrimaryLanguages[ec_Primary].qccz_Name;
}

const char* CT_Language::sqccz_GetCountryCode(et_Sub ec_Sub)
{
    return saso_SubLanguages[ec_Sub].qccz_Code;
}

const char* CT_Language::sqccz_GetCountry(et_Sub ec_Sub)
{
    return saso_SubLanguages[ec_Sub].qccz_Name;
}

// ---- Codes and display --------------------------------------------------------------------------

int CT_Language::sb_GetPrimary(et_Primary* pec_Primary, const char* qccz_Code)
{
    const unsigned n_Row =
        spco_Primaries ? spco_Primaries->n_Search(qccz_Code, nullptr) : NO_HANDLE;
    if (n_Row == NO_HANDLE)
        return 0;
    *pec_Primary = et_Primary{n_Row};
    return 1;
}

void CT_Language::sv_MakeLanguageString(CT_String* pco_Out, et_Primary ec_Primary, et_Sub ec_Sub)
{
    if (sn_GetSubCount(ec_Primary))
        pco_Out->v_Format("%s (%s)", sqccz_GetLanguage(ec_Primary), sqccz_GetCountry(ec_Sub));
    else
        pco_Out->v_Set(sqccz_GetLanguage(ec_Primary), ALL, OWN_CODE_PAGE);
}

void CT_Language::sv_MakeLanguageCode(CT_String* pco_Out, et_Primary ec_Primary, et_Sub ec_Sub)
{
    pco_Out->v_Format("%s_%s", sqccz_GetLanguageCode(ec_Primary), sqccz_GetCountryCode(ec_Sub));
}

// Two characters of a text from an offset on, as a code in capitals.
static void v_ReadCode(char* qcz_Code, const CT_String* pcco_Text, unsigned n_Offset)
{
    for (unsigned n = 0; n < 2; ++n) {
        const char c = pcco_Text->vc_GetAt(n_Offset + n);
        qcz_Code[n] = static_cast<char>(c >= 'a' && c <= 'z' ? c - 'a' + 'A' : c);
    }
    qcz_Code[2] = 0;
}

int CT_Language::sb_GetLanguages(et_Primary* pec_Primary, et_Sub* pec_Sub,
                                 const CT_String* pcco_Code)
{
    if (pcco_Code->vn_GetLength() < CODE_LENGTH)
        return 0;
    char acz_Code[3];
    v_ReadCode(acz_Code, pcco_Code, 0);
    if (!sb_GetPrimary(pec_Primary, acz_Code))
        return 0;
    if (!sn_GetSubCount(*pec_Primary)) {
        *pec_Sub = et_Sub{1};
        return 1;
    }
    v_ReadCode(acz_Code, pcco_Code, 3);
    return sb_FindCountry(pec_Sub, *pec_Primary, acz_Code);
}

int CT_Language::sb_FindCountry(et_Sub* pec_Sub, et_Primary ec_Primary, const char* qccz_Code)
{
    for (unsigned n = 1; n <= sn_GetSubCount(ec_Primary); ++n) {
        const et_Sub ec_Sub = seo_GetSubAt(ec_Primary, n);
        if (!std::strcmp(qccz_Code, sqccz_GetCountryCode(ec_Sub))) {
            *pec_Sub = ec_Sub;
            return 1;
        }
    }
    return 0;
}

// System/FontManager/CharacterSets.cpp: what belongs to a character set.
#include <System/FontManager/FontManager.h>

#include <Ostra/Frame/Counts.h>
#include <Ostra/Frame/Text.h>
#include <Ostra/String/UString.h>

#include <string>

// Bytes of the code pages; texts are split where a digit would be taken for part of a number.
const char CT_FontManager::sacz_Default[] = "AaBbCcXxYyZz 1234567890";
const char CT_FontManager::sacz_WestEuropean[] = "The quick brown fox";
const char CT_FontManager::sacz_CentralEuropean[] =
    "\xC3\xE3\xC8\xE8\xCB\xEB\x8A\x9A\xDE\xFE\x8E\x9E 1234567890";
const char CT_FontManager::sacz_Greek[] =
    "\xC1\xE1\xC2\xE2\xC3\xE3\xD7\xF7\xD8\xF8\xD9\xF9 1234567890";
const char CT_FontManager::sacz_Cyrillic[] =
    "\xC0\xE0\xC1\xE1\xC2\xE2\xDD\xFD\xDE\xFE\xDF\xFF 1234567890";
const char CT_FontManager::sacz_Turkish[] =
    "\xC3\xE3\xC7\xE7\xCB\xEB\xD0\xF0\xD6\xF6\xDC\xFC 1234567890";
// Kept: the tenth byte repeats EC, where the pattern of pairs would have ED.
const char CT_FontManager::sacz_Baltic[] =
    "\xC0\xE0\xC8\xE8\xC6\xE6\xCC\xEC\xCD\xEC\xDD\xFD 1234567890";
const char CT_FontManager::sacz_Japanese[] =
    "\x89\x8E\x82\xE0\x96\xD8\x82\xA9\x82\xE7\x97\x8E\x82\xBF\x82\xE9\x81\x42";
const char CT_FontManager::sacz_ChiSimplified[] = "\xCE\xA2\xC8\xED\xD7\xBF\xD4\xBD AaBbCcYyZz";
const char CT_FontManager::sacz_ChiTraditional[] =
    "\xA4\xA4\xA4\xE5\xA6\x72\xAB\xAC\xBD\x64\xA8\xD2 AaBbCcYyZz";

namespace
{
struct st_CharacterSet
{
    unsigned n_Charset;
    unsigned n_CodePage;
    const char16_t* qcuz_Suffix; // with the blank in front of it; null for none
    const char* qccz_Sample;     // null for the sample that goes with any code page
};
} // namespace

static const st_CharacterSet aso_Sets[] = {
    {0, 1252, nullptr, CT_FontManager::sacz_WestEuropean},
    {77, 10000, nullptr, nullptr},
    {128, 932, nullptr, CT_FontManager::sacz_Japanese},
    {129, 949, nullptr, nullptr},
    {130, 1361, nullptr, nullptr},
    {134, 936, nullptr, CT_FontManager::sacz_ChiSimplified},
    {136, 950, nullptr, CT_FontManager::sacz_ChiTraditional},
    {161, 1253, u" Greek", CT_FontManager::sacz_Greek},
    {162, 1254, u" Tur", CT_FontManager::sacz_Turkish},
    {177, 1255, nullptr, nullptr},
    {178, 1256, nullptr, nullptr},
    {186, 1257, u" Baltic", CT_FontManager::sacz_Baltic},
    {204, 1251, u" Cyr", CT_FontManager::sacz_Cyrillic},
    {222, 874, nullptr, nullptr},
    {238, 1250, u" CE", CT_FontManager::sacz_CentralEuropean},
};

static constexpr st_CharacterSet so_Other = {0, 0, nullptr, nullptr};

static const st_CharacterSet* pcso_Find(unsigned n_Charset)
{
    for (const st_CharacterSet& so_Set : aso_Sets) {
        if (so_Set.n_Charset == n_Charset)
            return &so_Set;
    }
    return &so_Other;
}

unsigned CT_FontManager::sn_GetCodePage(unsigned n_Charset)
{
    return pcso_Find(n_Charset)->n_CodePage;
}

int CT_FontManager::sb_GetCharsetSpecifier(CT_String* pco_Specifier, unsigned n_Charset)
{
    const char16_t* const qcuz_Suffix = pcso_Find(n_Charset)->qcuz_Suffix;
    if (!qcuz_Suffix)
        return 0;
    pco_Specifier->v_Set(qcuz_Suffix + 1);
    return 1;
}

// False for most names at once: by their last character.
bool CT_FontManager::sb_MayHaveSuffix(const CT_String* pcco_Name, unsigned n_Charset)
{
    const char16_t* const qcuz_Suffix = pcso_Find(n_Charset)->qcuz_Suffix;
    const unsigned n_Length = pcco_Name->vn_GetLength();
    return qcuz_Suffix && n_Length &&
           pcco_Name->vu_GetAt(n_Length - 1) ==
               qcuz_Suffix[std::char_traits<char16_t>::length(qcuz_Suffix) - 1];
}

void CT_FontManager::sv_StripCharsetSpecifier(CT_String* pco_Name, unsigned n_Charset)
{
    const char16_t* const qcuz_Suffix = pcso_Find(n_Charset)->qcuz_Suffix;
    if (!qcuz_Suffix)
        return;
    const CT_UString co_Suffix(qcuz_Suffix);
    // Kept: only the first place counts.
    const unsigned n_At = pco_Name->vn_Find(&co_Suffix);
    if (n_At != NONE && n_At + co_Suffix.vn_GetLength() == pco_Name->vn_GetLength())
        pco_Name->vv_Remove(ALL, n_At);
}

void CT_FontManager::sv_GetFontSampleText(CT_String* pco_Text, unsigned n_Charset)
{
    const st_CharacterSet* const pcso_Set = pcso_Find(n_Charset);
    if (pcso_Set->qccz_Sample)
        pco_Text->v_Set(pcso_Set->qccz_Sample, ALL, pcso_Set->n_CodePage);
    else
        pco_Text->v_Set(sacz_Default, ALL, OWN_CODE_PAGE);
}

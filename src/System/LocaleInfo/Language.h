// System/LocaleInfo/Language.h: languages and countries by numbers, codes and names.
#pragma once

#include <Ostra/Frame/Exit.h>
#include <Ostra/Frame/Export.h>
#include <Ostra/Frame/Init.h>

class CT_CompList;
class CT_String;

// The platform's languages and their sublanguages, each known by a small number, its ordinal: the
// row of a constant table. Rows keep their places, so ordinals may be stored.
//
// Units:   a language id has the primary language's id in its low 10 bits and the sublanguage's in
//          the 6 above. Up to 47 an ordinal is the primary id; behind it the two differ. Codes are
//          two capitals, names English, in the spelling that they had when the table was made.
// Owns:    all texts that it gives; they are literals.
// Reports: nothing of its own; 60006 comes from strings when the heap is exhausted.
// Caller:  gives ordinals of the tables; nothing checks them.
// Threads: any number; a string belongs to one thread at a time.
class OSTRA_API CT_Language
{
public:
    // A row of the languages: 0 ("Neutral") to 54.
    enum et_Primary : unsigned
    {
    };
    // A row of the sublanguages: 0 to 84. Rows 0 ("Neutral"), 1 ("Default") and 2 ("SysDefault") go
    // with any language.
    enum et_Sub : unsigned
    {
    };

    // ---- Ids --------------------------------------------------------------------------------

    // Kept: from row 3 on the sublanguage alone decides, and the language isn't looked at.
    static unsigned int sn_MakeLanguageID(et_Primary ec_Primary, et_Sub ec_Sub);
    // Both ordinals of an id, of which the low 16 bits count.
    static void sv_GetLanguages(unsigned int n_ID, et_Primary* pec_Primary, et_Sub* pec_Sub);
    // 0 for an unknown language.
    static et_Primary seo_GetPrimary(unsigned int n_ID);
    // 1 for a sublanguage that the table doesn't have.
    static et_Sub seo_GetSub(unsigned int n_ID);
    // True for Chinese, Japanese, Korean and Thai, whatever the sublanguage.
    static int sb_IsFarEastLanguage(et_Primary ec_Primary, et_Sub ec_Sub);

    // ---- Tables -----------------------------------------------------------------------------

    // Languages without the neutral one: ordinals 1 up to this one.
    static unsigned int sn_GetPrimaryCount();
    static unsigned int sn_GetSubCount(et_Primary ec_Primary);
    // The language's sublanguages, counted from 1; 1 ("Default") behind the last.
    static et_Sub seo_GetSubAt(et_Primary ec_Primary, unsigned int n_Index);
    // The language's first sublanguage, or 1 if it has none.
    static et_Sub seo_GetDefaultSub(et_Primary ec_Primary);
    static const char* sqccz_GetLanguageCode(et_Primary ec_Primary);
    static const char* sqccz_GetLanguage(et_Primary ec_Primary);
    static const char* sqccz_GetCountryCode(et_Sub ec_Sub);
    static const char* sqccz_GetCountry(et_Sub ec_Sub);

    // ---- Codes and display ------------------------------------------------------------------

    // Looks up a language code, in capitals; 0 and nothing written for one that isn't there.
    // Kept: the empty code is found, as row 0.
    static int sb_GetPrimary(et_Primary* pec_Primary, const char* qccz_Code);
    // "German (Austria)", or the language alone if it has no sublanguages.
    static void sv_MakeLanguageString(CT_String* pco_Out, et_Primary ec_Primary, et_Sub ec_Sub);
    // "DE_AT"; with the sublanguages of any language "EN_01" and the like.
    static void sv_MakeLanguageCode(CT_String* pco_Out, et_Primary ec_Primary, et_Sub ec_Sub);
    // Reads a code of five characters at least: language, any separator, country, in any case of A
    // to Z. What stands behind them isn't looked at, nor, for a language without sublanguages, what
    // stands behind the language. 0 for a code that isn't known; the language may then be written.
    static int sb_GetLanguages(et_Primary* pec_Primary, et_Sub* pec_Sub,
                               const CT_String* pcco_Code);

private:
    struct st_PrimaryLanguage
    {
        unsigned n_ID; // the primary language's
        const char* qccz_Code;
        const char* qccz_Name;
        unsigned n_SubCount;
    };
    struct st_SubLanguage
    {
        unsigned n_Key; // primary id * 256 + sublanguage's id
        const char* qccz_Code;
        const char* qccz_Name;
    };

    static void sv_Init();
    static void sv_Exit();
    static et_Primary seo_FindPrimary(unsigned n_ID);
    static et_Sub seo_FindSub(unsigned n_Key);
    static int sb_FindCountry(et_Sub* pec_Sub, et_Primary ec_Primary, const char* qccz_Code);

    // Both ascend by their first member.
    static const st_PrimaryLanguage saso_PrimaryLanguages[];
    static const st_SubLanguage saso_SubLanguages[];
    static const unsigned sn_PrimaryLanguages; // rows
    static const unsigned sn_SubLanguages;
    static CT_CompList* spco_Primaries; // language code to row; null before the start
    static CT_Init sco_Init;
    static CT_Exit sco_Exit;
};

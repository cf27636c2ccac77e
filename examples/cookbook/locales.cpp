// examples/cookbook/locales.cpp: languages by their codes, facts of locales, numbers as they are
// written there.
#include <Ostra/Ostra.h>

#include <cstdio>

static void Show(const char* code)
{
    CT_Language::et_Primary primary;
    CT_Language::et_Sub sub;
    const CT_CString text(code, 0xFFFFFFFF, 1252);
    if (!CT_Language::sb_GetLanguages(&primary, &sub, &text)) {
        std::printf("%s: no language that the table has\n", code);
        return;
    }
    CT_CString name(1252), day(1252), number(1252);
    CT_Language::sv_MakeLanguageString(&name, primary, sub);
    const unsigned id = CT_Language::sn_MakeLanguageID(primary, sub);
    std::printf("%s: 0x%04X, %s, code page %u, character set %u\n", code, id, name.qccz_Get(),
                CT_LocaleInfo::sn_GetDefaultANSICodePage(id),
                CT_LocaleInfo::sn_GetDefaultCharset(id));

    // An id of a language is that of a locale, too. Facts come in the locale's own code page.
    if (CT_LocaleInfo::sb_GetLocaleInfo(id, CT_LocaleInfo::lt_DayName1, &day) &&
        CT_FormatString::sb_FormatNumber(&number, 1234567.5F, id, 2, 3))
        std::printf("    a week begins with %s, a number is %s\n", day.qccz_Get(),
                    number.qccz_Get());
}

int main()
{
    Show("de-DE");
    Show("EN_us");
    Show("da_XX");
    Show("nl_be");
    Show("tlh_QO");
    return CT_ErrorManager::spco_Get()->b_IsSetError();
}

// examples/cookbook/maps.cpp: the three string maps, and the forms in which they are stored.
#include <Ostra/Ostra.h>

#include <cstdio>

int main()
{
    // Strings known by their place, as one text.
    CT_StringOrdinalMap columns;
    const CT_CString head("name;language;year;");
    columns.v_String2Map(&head, ';');
    std::printf("language is column %u of %u\n", columns.n_Get("language"), columns.n_GetCount());

    // Strings with numbers, as bytes for a file or a record.
    CT_StringNumberMap locales;
    locales.v_Insert("de", 1031);
    locales.v_Insert("en", 1033);
    CT_Buffer stored;
    locales.v_Map2Buffer(&stored);
    CT_StringNumberMap loaded;
    loaded.v_Buffer2Map(&stored, 0); // 0: the texts are bytes
    std::printf("%u bytes: en is %u, 1031 is %s\n", stored.n_GetUsedSize(),
                loaded.n_Get(qcuz_Text(u"en")), loaded.qccz_Get(1031));

    // Pairs of strings, found from either side.
    CT_StringStringMap record;
    record.v_Insert("Company", "Example");
    record.v_Insert("Version", "1.0");
    CT_CString flat;
    record.v_Map2String(&flat, '=', ';');
    const CT_CString version(record.pcco_GetString2("Version"));
    const CT_CString key(record.pcco_GetString1("Example"));
    std::printf("%s has version %s, Example is the %s\n", flat.qccz_Get(), version.qccz_Get(),
                key.qccz_Get());
    return CT_ErrorManager::spco_Get()->b_IsSetError();
}

// examples/cookbook/storing.cpp: a lexicon is built, stored in a record file, and found there again.
#include <Ostra/Ostra.h>

#include <cstdio>
#include <cstring>

static bool IsFailing()
{
    return CT_ErrorManager::spco_Get()->b_IsSetError() != 0;
}

static void Store(const CT_WinFile& file)
{
    // The builder takes keys in any order and writes the block of the list once.
    CT_CompListBuilder builder(CT_CompList::es_Short, 4, 0, 1, 1024, 0);
    // Searches are faster so; a third argument of b_Add would tell the weight of a key.
    builder.v_SetOrder(CT_CompListBuilder::bo_ByWeight);
    builder.b_Add(qcuz_Text(u"Haus"), 1);
    builder.b_Add(qcuz_Text(u"Hausboot"), 2);
    builder.b_Add(qcuz_Text(u"Hase"), 3);
    CT_Buffer block;
    builder.v_Build(&block);
    if (IsFailing())
        return; // v_Create empties an old file also under an error

    CT_RecordManager records(&file);
    records.v_Create(16, 64, 4); // 16 bytes of each record in its head, blocks of 64, 4 resources
    const CT_CString title("Houses and hares");
    const unsigned reference = records.n_AddRecord(&block);
    records.v_AddResource(1, title.pcco_GetBuffer());
    // A resource is found by its number, so the record's reference is stored in one.
    const CT_Buffer root(&reference, sizeof reference, 32);
    records.v_AddResource(2, &root);
    records.v_Close(1); // writes header and tables: without it there is no file to open
}

static void Look(const CT_WinFile& file)
{
    CT_RecordManager records(&file);
    CT_Buffer title, root, block;
    unsigned reference = 0;
    records.v_Open(CT_RecordManager::e_OpenRead, 0);
    records.v_GetResource(1, &title);
    records.v_GetResource(2, &root);
    if (root.n_GetUsedSize() == sizeof reference)
        std::memcpy(&reference, root.qcv_Get(), sizeof reference);
    records.v_GetRecord(reference, &block);
    records.v_Close(1);
    if (IsFailing())
        return;

    const CT_CompList words(&block); // the block is the list
    std::printf("%s: %u words\n", CT_CString(&title).qccz_Get(), words.n_GetNrOfEntries());
    unsigned matched = 0;
    const unsigned handle = words.n_Search(qcuz_Text(u"Hausboot"), &matched);
    std::printf("Hausboot is number %u\n", handle);
    if (!words.b_Search(qcuz_Text(u"Hausboote"), &matched))
        std::printf("Hausboote is missing, its first %u characters are there\n", matched);
}

int main()
{
    const CT_UString name(u"words.rec");
    CT_WinFile file(&name, 0);
    Store(file);
    Look(file);
    file.vv_Remove();
    return IsFailing();
}

// tests/Ostra/File/FileCopyTest.cpp: copies of files by reference.
#define OSTRA_RAW_COPIES
#include <Ostra/File/FindFile.h>
#include <Ostra/File/WinFile.h>

#include <gtest/gtest.h>

#include <new>

#include "MemoryFile.h"
#include "Support/Directory.h"
#include "Support/Files.h"
#include "WinFileProbe.h"

namespace
{
// A copy that is never destructed: it has no hold on what its source has.
template <class Object>
union Copy
{
    explicit Copy(const Object& source) : object(source) {}
    ~Copy() {}
    Object object;
};

// How often the block of a string is used.
unsigned UsesOf(const CT_UString* string)
{
    return string->pcco_GetBuffer()->n_GetUseCount();
}

// The copy has the names of its source, whose full name is used as often as before.
void ExpectNames(const CT_File& copy, const CT_File& source, unsigned uses)
{
    EXPECT_EQ(copy.pcco_GetFullName()->qcuz_Get(), source.pcco_GetFullName()->qcuz_Get());
    EXPECT_EQ(copy.pcco_GetDirectory()->qcuz_Get(), source.pcco_GetDirectory()->qcuz_Get());
    EXPECT_EQ(copy.pcco_GetName()->qcuz_Get(), source.pcco_GetName()->qcuz_Get());
    EXPECT_EQ(copy.pcco_GetExtension()->qcuz_Get(), source.pcco_GetExtension()->qcuz_Get());
    EXPECT_EQ(UsesOf(source.pcco_GetFullName()), uses);
    EXPECT_EQ(UsesOf(source.pcco_GetName()), 1u);
    EXPECT_EQ(copy.n_GetBufferSize(), source.n_GetBufferSize());
    EXPECT_EQ(copy.b_IsOpen(), source.b_IsOpen());
    EXPECT_EQ(copy.ec_GetOpenAccess(), source.ec_GetOpenAccess());
}
} // namespace

TEST(FileCopy, AFileIsCopiedMemberByMember)
{
    const CT_UString name = Name("d/n.e");
    const MemoryFile source(&name, 2000);
    const unsigned uses = UsesOf(source.pcco_GetFullName());
    const Copy<MemoryFile> made(source);
    ExpectNames(made.object, source, uses);
    Copy<MemoryFile> assigned{MemoryFile()};
    assigned.object = source;
    ExpectNames(assigned.object, source, uses);
}

TEST(FileCopy, ACopyOfAnOpenFileHasTheSameHandle)
{
    const WinFileProbe source("file", CT_File::e_OpenCreate);
    const CT_WinFile& file = source;
    const unsigned uses = UsesOf(file.pcco_GetFullName());
    const Copy<CT_WinFile> made(file);
    Copy<CT_WinFile> assigned{CT_WinFile()};
    assigned.object = file;
    for (const CT_WinFile* copy :
         {&made.object, static_cast<const CT_WinFile*>(&assigned.object)}) {
        ExpectNames(*copy, file, uses);
        EXPECT_EQ(copy->b_IsOpen(), 1);
        EXPECT_EQ(copy->h_GetHandle(), file.h_GetHandle());
    }
}

TEST(FileCopy, ACopyOfASearchSeesWhatItsSourceFound)
{
    WriteBytes("a.txt", "four");
    CT_UString pattern = Name("*.txt");
    CT_FindFile source(&pattern, 0, 0, 0);
    Copy<CT_FindFile> made(source);
    CT_UString found;
    unsigned attributes = 0;
    EXPECT_EQ(made.object.b_FindFirst(&found, &attributes), 1);
    EXPECT_EQ(Get(found), "a.txt");
    EXPECT_EQ(made.object.b_FindNext(&found, &attributes), 0);
}

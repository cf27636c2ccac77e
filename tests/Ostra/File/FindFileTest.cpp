// tests/Ostra/File/FindFileTest.cpp
#include <Ostra/File/FindFile.h>

#include <System/OS/OS.h>

#include <gtest/gtest.h>

#include <windows.h>

#include <ctime>
#include <filesystem>
#include <map>
#include <set>
#include <string>

#include "Support/Directory.h"
#include "Support/Files.h"
#include "Support/Private.h"

namespace fs = std::filesystem;

// The records of the two roads, which no operation gives out.
OSTRA_PRIVATE(DataU, CT_FindFile::st_FindData<unsigned short> CT_FindFile::*,
              &CT_FindFile::st_DataU);
OSTRA_PRIVATE(DataC, CT_FindFile::st_FindData<char> CT_FindFile::*, &CT_FindFile::st_DataC);

namespace
{
typedef std::set<std::string> Names;

// A directory "d" with three files and a directory.
void Fill()
{
    fs::create_directories("d/sub.txt");
    WriteBytes("d/a.txt", "four");
    WriteBytes("d/b.txt", "");
    WriteBytes("d/c.dat", "");
}

// All entries that a search delivers, with their attributes.
template <class String>
std::map<std::string, unsigned> Entries(CT_FindFile& find)
{
    std::map<std::string, unsigned> entries;
    String name;
    unsigned attributes = 0;
    for (int more = find.b_FindFirst(&name, &attributes); more;
         more = find.b_FindNext(&name, &attributes))
        EXPECT_TRUE(entries.emplace(Get(name), attributes).second) << Get(name);
    EXPECT_EQ(TakeFailure(), Failure());
    return entries;
}

template <class String = CT_UString>
Names Found(const std::string& pattern, unsigned include = 0, unsigned exclude = 0, int full = 0)
{
    String text;
    text.v_Set(pattern.c_str(), -1, 0);
    CT_FindFile find(&text, include, exclude, full);
    Names names;
    for (const auto& entry : Entries<String>(find))
        names.insert(entry.first);
    return names;
}
} // namespace

TEST(FindFile, EntriesThatMatchAreDelivered)
{
    Fill();
    EXPECT_EQ(Found("d\\*.txt"), (Names{"a.txt", "b.txt", "sub.txt"}));
    EXPECT_EQ(Found<CT_CString>("d/*.txt"), (Names{"a.txt", "b.txt", "sub.txt"}));
    EXPECT_EQ(Found("d\\?.d*"), (Names{"c.dat"}));
    EXPECT_EQ(Found("d\\a.txt"), (Names{"a.txt"}));
}

TEST(FindFile, NamesComeWithTheDirectoryOfThePattern)
{
    Fill();
    EXPECT_EQ(Found("d\\a*.txt", 0, 0, 1), (Names{"d\\a.txt"}));
    EXPECT_EQ(Found<CT_CString>("d/a*.txt", 0, 0, 1), (Names{"d/a.txt"}));
    const std::string directory = fs::absolute("d").string() + SEPARATOR;
    EXPECT_EQ(Found(directory + "a*", 0, 0, 1), (Names{directory + "a.txt"}));
    fs::current_path("d");
    EXPECT_EQ(Found("a*", 0, 0, 1), (Names{"a.txt"}));
}

TEST(FindFile, TheDirectoryItselfAndItsParentAreDelivered)
{
    Fill();
    EXPECT_EQ(Found("d\\*"), (Names{".", "..", "a.txt", "b.txt", "c.dat", "sub.txt"}));
}

TEST(FindFile, FiltersLookAtAttributes)
{
    Fill();
    EXPECT_EQ(Found("d\\*.*", 0, FILE_ATTRIBUTE_DIRECTORY), (Names{"a.txt", "b.txt", "c.dat"}));
    EXPECT_EQ(Found("d\\*.txt", FILE_ATTRIBUTE_DIRECTORY), (Names{"sub.txt"}));
    EXPECT_EQ(Found("d\\*.txt", FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_ARCHIVE),
              (Names{"a.txt", "b.txt", "sub.txt"}));
    EXPECT_EQ(Found("d\\*.txt", FILE_ATTRIBUTE_DIRECTORY, FILE_ATTRIBUTE_DIRECTORY), Names());
    EXPECT_EQ(Found("d\\*", FILE_ATTRIBUTE_SYSTEM), Names());
}

TEST(FindFile, AttributesAreDelivered)
{
    Fill();
    CT_UString pattern = Name("d\\*.txt");
    CT_FindFile find(&pattern, 0, 0, 0);
    const std::map<std::string, unsigned> wanted = {{"a.txt", FILE_ATTRIBUTE_ARCHIVE},
                                                    {"b.txt", FILE_ATTRIBUTE_ARCHIVE},
                                                    {"sub.txt", FILE_ATTRIBUTE_DIRECTORY}};
    EXPECT_EQ(Entries<CT_UString>(find), wanted);
}

TEST(FindFile, NothingFoundIsNoError)
{
    Fill();
    CT_UString name = Name("untouched");
    unsigned attributes = 77;
    for (const char* text : {"d\\*.none", "missing\\*", "", "d\\a.txt\\*"}) {
        SCOPED_TRACE(text);
        CT_UString pattern = Name(text);
        CT_FindFile find(&pattern, 0, 0, 1);
        EXPECT_EQ(find.b_FindFirst(&name, &attributes), 0);
        EXPECT_EQ(find.b_FindNext(&name, &attributes), 0);
        EXPECT_EQ(TakeFailure(), Failure());
    }
    EXPECT_EQ(Get(name), "untouched");
    EXPECT_EQ(attributes, 77u);
}

TEST(FindFile, NextWithoutFirstFindsNothing)
{
    Fill();
    CT_UString pattern = Name("d\\*");
    CT_UString name;
    unsigned attributes = 0;
    CT_FindFile find(&pattern, 0, 0, 0);
    EXPECT_EQ(find.b_FindNext(&name, &attributes), 0);
    EXPECT_EQ(TakeFailure(), Failure());
}

TEST(FindFile, AnExhaustedSearchStaysSoAndCanBeStartedAnew)
{
    Fill();
    CT_UString pattern = Name("d\\*.txt");
    CT_UString name;
    unsigned attributes = 0;
    CT_FindFile find(&pattern, 0, 0, 0);
    EXPECT_EQ(Entries<CT_UString>(find).size(), 3u);
    EXPECT_EQ(find.b_FindNext(&name, &attributes), 0);
    EXPECT_EQ(Entries<CT_UString>(find).size(), 3u);
    ASSERT_EQ(find.b_FindFirst(&name, &attributes), 1);
    EXPECT_EQ(Entries<CT_CString>(find).size(), 3u);
}

TEST(FindFile, SetTakesAnotherPatternAndFilter)
{
    Fill();
    CT_UString pattern = Name("d\\*.txt");
    CT_CString other("d/c*");
    CT_UString name;
    unsigned attributes = 0;
    CT_FindFile find(&pattern, 0, 0, 1);
    ASSERT_EQ(find.b_FindFirst(&name, &attributes), 1);
    find.v_Set(&other, 0, 0, 0);
    EXPECT_EQ(find.b_FindNext(&name, &attributes), 0) << "the earlier search is over";
    EXPECT_EQ(Entries<CT_UString>(find), (std::map<std::string, unsigned>{{"c.dat", 32}}));
    find.v_Set(&other, 0, 0, 1);
    EXPECT_EQ(Entries<CT_UString>(find), (std::map<std::string, unsigned>{{"d/c.dat", 32}}));
    find.v_Set(&pattern, 16, 0, 0);
    EXPECT_EQ(Entries<CT_UString>(find), (std::map<std::string, unsigned>{{"sub.txt", 16}}));
}

TEST(FindFile, ThePatternIsCopied)
{
    Fill();
    CT_UString pattern = Name("d\\*.dat");
    CT_FindFile find(&pattern, 0, 0, 0);
    pattern.v_Set(Units(u"d\\*"), -1);
    EXPECT_EQ(Entries<CT_UString>(find).size(), 1u);
}

// The record of the road that is taken has all that the system tells; the other one is empty.
TEST(FindFile, TheRecordHoldsTimesAndSize)
{
    Fill();
    const auto now = static_cast<unsigned>(std::time(nullptr));
    CT_UString pattern = Name("d\\a.txt");
    CT_UString name;
    unsigned attributes = 0;
    CT_FindFile find(&pattern, 0, 0, 0);
    ASSERT_EQ(find.b_FindFirst(&name, &attributes), 1);
    const auto& wide = find.*Private(DataU());
    const auto& narrow = find.*Private(DataC());
    const auto check = [=](const auto& record) {
        EXPECT_EQ(record.n_Attributes, attributes);
        EXPECT_EQ(record.n_Size, 4u);
        for (const unsigned time : {record.n_WriteTime, record.n_AccessTime, record.n_CreateTime})
            EXPECT_NEAR(static_cast<double>(time), static_cast<double>(now), 600);
        EXPECT_EQ(std::string(record.au_Name, record.au_Name + 6), std::string("a.txt\0", 6));
    };
    if (CT_OS::sb_GetIsWindowsNT()) {
        check(wide);
        EXPECT_EQ(narrow.au_Name[0], 0);
    } else {
        check(narrow);
        EXPECT_EQ(wide.au_Name[0], 0);
    }
}

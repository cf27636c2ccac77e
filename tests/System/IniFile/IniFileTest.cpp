// tests/System/IniFile/IniFileTest.cpp
#define OSTRA_RAW_COPIES
#include <System/IniFile/IniFile.h>

#include <Ostra/String/UString.h>

#include <gtest/gtest.h>

#include "Support/Directory.h"
#include "Support/Files.h"

#include <memory>
#include <new>
#include <type_traits>

namespace
{
// With a directory, so that the file lies in the test's own.
const char* const FILE_NAME = ".\\p.ini";

struct Profile
{
    explicit Profile(const std::string& text = "") : name(FILE_NAME), file(&name)
    {
        if (!text.empty())
            WriteBytes("p.ini", text);
    }

    std::string Text(const char* section, const char* key, const char* otherwise = "none")
    {
        CT_CString out;
        file.v_ReadString(section, key, &out, otherwise);
        return out.qccz_Get();
    }
    unsigned Number(const char* section, const char* key, unsigned otherwise)
    {
        unsigned number = 4711;
        file.v_ReadN(section, key, &number, otherwise);
        return number;
    }

    CT_CString name;
    CT_IniFile file;
};

const Failure NONE;
} // namespace

TEST(IniFile, AKeyThatIsMissingReadsAsTheDefault)
{
    Profile profile("[s]\r\nk=v\r\n");
    EXPECT_EQ(profile.Text("s", "none", "given"), "given");
    EXPECT_EQ(profile.Text("none", "k", "given"), "given");
    EXPECT_EQ(profile.Text("s", "none", "given\r\n\t"), "given\r\n\t");
    EXPECT_EQ(profile.Number("s", "none", 5), 5U);
    EXPECT_EQ(profile.Number("none", "k", 0xFFFFFFFE), 0xFFFFFFFEU);
    EXPECT_EQ(TakeFailure(), NONE);
}

TEST(IniFile, AFileThatIsMissingReadsAsTheDefaultWithoutAReport)
{
    const CT_CString name(".\\none\\p.ini");
    CT_IniFile file(&name);
    CT_UString out;
    file.v_ReadString("s", "k", &out, "given");
    EXPECT_EQ(Get(out), "given");
    EXPECT_EQ(TakeFailure(), NONE);
}

TEST(IniFile, ValuesAreReadBackAsTheyWereWritten)
{
    Profile profile;
    profile.file.v_WriteString("Section", "Key", "the value");
    profile.file.v_WriteN("Section", "Number", 1234567);
    EXPECT_EQ(ReadBytes("p.ini"), "[Section]\r\nKey=the value\r\nNumber=1234567\r\n");
    EXPECT_EQ(profile.Text("section", "KEY"), "the value");
    EXPECT_EQ(profile.Number("SECTION", "number", 1), 1234567U);
}

TEST(IniFile, BothClassesOfStringsNameSectionsKeysAndValues)
{
    Profile profile;
    const CT_UString section("S", -1, 0);
    const CT_CString key("K");
    const CT_UString value("wide value", -1, 0), otherwise("other", -1, 0);
    profile.file.v_WriteString(&section, &key, &value);
    EXPECT_EQ(profile.Text("S", "K"), "wide value");
    CT_UString wide;
    profile.file.v_ReadString(&section, &key, &wide, &otherwise);
    EXPECT_EQ(Get(wide), "wide value");
    CT_CString narrow;
    profile.file.v_ReadString(&section, &otherwise, &narrow, &otherwise);
    EXPECT_EQ(Get(narrow), "other");
    unsigned number = 0;
    profile.file.v_WriteN(&section, &value, 77);
    profile.file.v_ReadN(&section, &value, &number, 1);
    EXPECT_EQ(number, 77U);
    profile.file.v_ReadN(&section, &otherwise, &number, 8);
    EXPECT_EQ(number, 8U);
    EXPECT_EQ(TakeFailure(), NONE);
}

TEST(IniFile, WhatTheCodePageDoesNotHoldBecomesQuestionMarks)
{
    Profile profile;
    const CT_UString section(u"\u0416"), key(u"\u4E2D"), value(u"\u05D0x");
    profile.file.v_WriteString(&section, &key, &value);
    EXPECT_EQ(profile.Text("?", "?"), "?x");
    const CT_UString name(u".\\\u0416\u0424.ini");
    const CT_IniFile other(&name);
    EXPECT_STREQ(other.pcco_GetName()->qccz_Get(), ".\\??.ini");
    EXPECT_EQ(TakeFailure(), NONE);
}

TEST(IniFile, TextThatIsReadKeepsTheCodePageOfItsString)
{
    Profile profile("[s]\r\nk=v\r\n");
    CT_CString out(1251U);
    profile.file.v_ReadString("s", "k", &out, "");
    EXPECT_STREQ(out.qccz_Get(), "v");
    EXPECT_EQ(out.n_GetCodePage(), 1251U);
}

TEST(IniFile, LettersReadAsTheNumberZeroAndNotAsTheDefault)
{
    Profile profile("[s]\r\nk=letters\r\nempty=\r\n");
    EXPECT_EQ(profile.Number("s", "k", 5), 0U);
    EXPECT_EQ(profile.Number("s", "empty", 5), 0U);
}

TEST(IniFile, ANumberEndsWhereItsDigitsEnd)
{
    struct
    {
        const char* text;
        unsigned number;
    } const rows[] = {
        {"12abc", 12},
        {"+7", 7},
        {"-1", 0xFFFFFFFF},
        {"\" 42\"", 42},
        {"\"\t\v\f 43\"", 43},
        {"\"\x0E 44\"", 0},
        {"\"\b45\"", 0},
        {"- 1", 0},
        {"0x10", 0},
        {"4294967295", 4294967295},
        {"4294967296", 0},
        {"2147483648", 0x80000000},
        {"-2147483648", 0x80000000},
        {"1,5", 1},
        {"--1", 0},
    };
    for (const auto& row : rows) {
        Profile profile(std::string("[s]\r\nk=") + row.text + "\r\n");
        EXPECT_EQ(profile.Number("s", "k", 5), row.number) << row.text;
    }
}

TEST(IniFile, ALargeNumberIsWrittenAsANegativeOne)
{
    Profile profile;
    profile.file.v_WriteN("s", "k", 0xFFFFFFFF);
    EXPECT_EQ(profile.Text("s", "k"), "-1");
    EXPECT_EQ(profile.Number("s", "k", 5), 0xFFFFFFFFU);
    profile.file.v_WriteN("s", "k", 0x80000000);
    EXPECT_EQ(profile.Text("s", "k"), "-2147483648");
    EXPECT_EQ(profile.Number("s", "k", 5), 0x80000000U);
    profile.file.v_WriteN("s", "k", 0x7FFFFFFF);
    EXPECT_EQ(profile.Text("s", "k"), "2147483647");
    EXPECT_EQ(profile.Number("s", "other", 0xFFFFFFFF), 0xFFFFFFFFU);
}

TEST(IniFile, ValuesOfMoreThan1023BytesAreCutOffWithoutAReport)
{
    for (const std::size_t length : {1022U, 1023U, 1024U, 1025U, 5000U}) {
        Profile profile;
        profile.file.v_WriteString("s", "k", std::string(length, 'x').c_str());
        EXPECT_EQ(profile.Text("s", "k").size(), std::min<std::size_t>(length, 1023)) << length;
    }
    EXPECT_EQ(TakeFailure(), NONE);
}

TEST(IniFile, SectionsAndKeysAreDeleted)
{
    Profile profile("[a]\r\nx=1\r\ny=2\r\n[b]\r\nx=3\r\n");
    profile.file.v_DeleteKey("a", "x");
    EXPECT_EQ(profile.Text("a", "x"), "none");
    EXPECT_EQ(profile.Text("a", "y"), "2");
    profile.file.v_DeleteSection("a");
    EXPECT_EQ(ReadBytes("p.ini"), "[b]\r\nx=3\r\n");
    EXPECT_EQ(TakeFailure(), NONE);
}

TEST(IniFile, DeletingWhatIsMissingReportsNothing)
{
    Profile profile("[a]\r\nx=1\r\n");
    profile.file.v_DeleteSection("none");
    profile.file.v_DeleteKey("a", "none");
    profile.file.v_DeleteKey("none", "none");
    EXPECT_EQ(ReadBytes("p.ini"), "[a]\r\nx=1\r\n");
    const CT_CString missing(".\\none\\p.ini");
    profile.file.v_Set(&missing);
    profile.file.v_DeleteSection("a");
    profile.file.v_DeleteKey("a", "x");
    EXPECT_EQ(TakeFailure(), NONE);
}

TEST(IniFile, OnlyRawTextReportsThatItCannotBeWritten)
{
    const CT_CString missing(".\\none\\p.ini"), text("t");
    CT_IniFile file(&missing);
    file.v_WriteString(&text, &text, &text);
    file.v_WriteN(&text, &text, 1);
    file.v_WriteN("t", "t", 1);
    EXPECT_EQ(TakeFailure(), NONE);
    file.v_WriteString("t", "t", "t");
    const Failure failure = TakeFailure();
    EXPECT_EQ(failure.code, static_cast<unsigned>(ERROR_PATH_NOT_FOUND));
    EXPECT_EQ(failure.trail, std::vector<std::string>{"System/IniFile/IniFile"});
    EXPECT_EQ(failure.text.substr(0, 5), "(3): ");
    EXPECT_EQ(failure.text.find('['), std::string::npos) << failure.text;
    EXPECT_EQ(GetLastError(), 0U);
}

TEST(IniFile, AFailureBehindAnEarlierErrorLeavesThatOneAndAddsAPlace)
{
    const CT_CString missing(".\\none\\p.ini");
    CT_IniFile file(&missing);
    Errors().v_SetError(4711, Units(u"earlier"));
    file.v_WriteString("t", "t", "t");
    EXPECT_EQ(TakeFailure(), (Failure{4711, "(4711): earlier", {"System/IniFile/IniFile"}}));
}

TEST(IniFile, UnderAnEarlierErrorEverythingWorks)
{
    Profile profile;
    const CT_CString section("s"), key("k"), value("v");
    Errors().v_SetError(4711, Units(u"earlier"));
    profile.file.v_WriteString(&section, &key, &value);
    profile.file.v_WriteN("s", "n", 3);
    CT_CString out;
    profile.file.v_ReadString(&section, &key, &out, &section);
    EXPECT_STREQ(out.qccz_Get(), "v");
    EXPECT_EQ(profile.Number("s", "n", 1), 3U);
    EXPECT_EQ(TakeFailure(), (Failure{4711, "(4711): earlier", {}}));
}

TEST(IniFile, EmptyTextIsHandedOnAsEmpty)
{
    Profile profile("top=1\r\n[s]\r\n=unnamed\r\nk=v\r\n");
    const CT_CString empty, s("s");
    CT_CString out;
    profile.file.v_ReadString(&s, &empty, &out, &empty);
    EXPECT_STREQ(out.qccz_Get(), "unnamed");
    profile.file.v_WriteString(&s, &empty, &empty);
    EXPECT_EQ(ReadBytes("p.ini"), "top=1\r\n[s]\r\n=\r\nk=v\r\n");
    profile.file.v_Set(&empty);
    profile.file.v_ReadString(&s, &s, &out, &s);
    EXPECT_STREQ(out.qccz_Get(), "s");
    profile.file.v_WriteString("s", "k", "v");
    EXPECT_EQ(TakeFailure().code, static_cast<unsigned>(ERROR_ACCESS_DENIED));
}

TEST(IniFile, TheNameIsThatOfTheFileAndCanBeSetAnew)
{
    const CT_UString first(".\\a.ini", -1, 0);
    const CT_CString second(".\\b.ini");
    CT_IniFile file(&first);
    EXPECT_STREQ(file.pcco_GetName()->qccz_Get(), ".\\a.ini");
    EXPECT_EQ(file.pcco_GetName()->n_GetCodePage(), 0U);
    EXPECT_EQ(file.pcco_GetName()->vn_GetGrowth(), 32U);
    file.v_WriteN("s", "k", 1);
    file.v_Set(&second);
    EXPECT_STREQ(file.pcco_GetName()->qccz_Get(), ".\\b.ini");
    file.v_WriteN("s", "k", 2);
    EXPECT_EQ(ReadBytes("a.ini"), "[s]\r\nk=1\r\n");
    EXPECT_EQ(ReadBytes("b.ini"), "[s]\r\nk=2\r\n");
    std::unique_ptr<CT_IniFile> made(new CT_IniFile(&second));
    made->v_DeleteSection("s");
    EXPECT_EQ(ReadBytes("b.ini"), "");
}

TEST(IniFile, AnObjectIsItsNameAndCopiesAreRaw)
{
    EXPECT_EQ(sizeof(CT_IniFile), sizeof(CT_CString));
    EXPECT_FALSE(std::is_polymorphic_v<CT_IniFile>);
    const CT_CString name(".\\a name of more than thirty-two bytes.ini");
    const CT_IniFile file(&name);
    // Copies that are never destroyed: they have no hold on the block.
    alignas(CT_IniFile) static char place[2][sizeof(CT_IniFile)];
    const auto copy = new (place[0]) CT_IniFile(file);
    const auto assigned = new (place[1]) CT_IniFile(file);
    *assigned = file;
    EXPECT_EQ(copy->pcco_GetName()->qccz_Get(), file.pcco_GetName()->qccz_Get());
    EXPECT_EQ(assigned->pcco_GetName()->qccz_Get(), file.pcco_GetName()->qccz_Get());
    EXPECT_FALSE((std::is_convertible_v<const CT_String*, CT_IniFile>));
}

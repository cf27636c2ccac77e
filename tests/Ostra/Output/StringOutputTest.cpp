// tests/Ostra/Output/StringOutputTest.cpp
#include <Ostra/Output/StringOutput.h>

#include <Ostra/Output/FileOutput.h>
#include <Ostra/Output/MemoryOutput.h>

#include <gtest/gtest.h>

#include <windows.h>

#include <string>

#include "../File/MemoryFile.h"
#include "OutputProbe.h"

TEST(StringOutput, AppendsBytesToACodePageString)
{
    CT_CString string("abc");
    CT_StringOutput output(string);
    EXPECT_EQ(output.vn_GetSize(), 3u);
    Append(output, "d\xE9");
    Append(output, "");
    output.vv_Append("fgh", 2);
    EXPECT_EQ(std::string(string.qccz_Get()), "abcd\xE9"
                                              "fg");
    EXPECT_EQ(output.vn_GetSize(), 7u);
}

TEST(StringOutput, AWideStringConvertsWhatItTakes)
{
    CT_UString string(u"\u0416");
    CT_UString same(u"\u0416");
    CT_StringOutput output(string);
    Append(output, "a\xE9");
    static_cast<CT_String&>(same).v_Append("a\xE9", 2);
    EXPECT_EQ(Wide(string.qcuz_Get()), Wide(same.qcuz_Get()));
    EXPECT_EQ(output.vn_GetSize(), same.vn_GetLength()) << "characters, not bytes";
}

TEST(StringOutput, TheSizeCountsCharacters)
{
    CT_UString string;
    CT_StringOutput output(string);
    Append(output, "abc");
    EXPECT_EQ(output.vn_GetSize(), 3u);
    EXPECT_EQ(Wide(string.qcuz_Get()), u"abc");
}

TEST(StringOutput, AppendsARunOfOneCharacter)
{
    CT_CString narrow("a");
    CT_StringOutput output(narrow);
    output.vv_Append('x', 3);
    output.vv_Append('y', 0);
    output.vv_Append(static_cast<unsigned char>(0xE9), 2);
    EXPECT_EQ(std::string(narrow.qccz_Get()), "axxx\xE9\xE9");
    CT_UString wide(u"\u0416");
    output.v_Set(wide);
    output.vv_Append('x', 3);
    EXPECT_EQ(Wide(wide.qcuz_Get()), u"\u0416xxx");
    EXPECT_EQ(output.vn_GetSize(), 4u);
    EXPECT_EQ(narrow.vn_GetLength(), 6u) << "the string before is let alone";
}

TEST(StringOutput, WhatItCannotTakeChangesNothing)
{
    CT_CString string("abc");
    CT_StringOutput output(string);
    CT_MemoryOutput memory;
    Append(memory, "xyz");
    MemoryFile file;
    CT_FileOutput other(&file);
    Append(other, "123");
    file.TakeCalls();
    const unsigned before = CT_Buffer::sn_GetAllocCount();
    output.vv_Append(memory);
    output.vv_Append(other);
    output.vv_Replace("XY", 2, 0);
    EXPECT_EQ(std::string(string.qccz_Get()), "abc");
    EXPECT_EQ(file.TakeCalls(), Calls());
    EXPECT_EQ(CT_Buffer::sn_GetAllocCount(), before);
    EXPECT_EQ(TakeFailure(), Failure());
}

TEST(StringOutput, AStringThatOthersHoldIsCopied)
{
    CT_CString string("abc");
    const CT_CString held(&string);
    CT_StringOutput output(string);
    Append(output, "d");
    EXPECT_EQ(std::string(held.qccz_Get()), "abc");
    EXPECT_EQ(std::string(string.qccz_Get()), "abcd");
}

TEST(StringOutput, AnErrorThatStandsStopsNothing)
{
    CT_CString string;
    CT_StringOutput output(string);
    Errors().v_SetError(1234, Units(u"first"));
    Append(output, "abc");
    output.vv_Append('x', 1);
    EXPECT_EQ(TakeFailure(), (Failure{1234,
                                      "(1234): first",
                                      {"Ostra/Output/StringOutput", "Ostra/Output/StringOutput"}}));
    EXPECT_EQ(std::string(string.qccz_Get()), "abcx");
}

TEST(StringOutput, TheStringOutlivesTheOutput)
{
    CT_CString string;
    CT_Output* output = new CT_StringOutput(string);
    Append(*output, "abc");
    delete output;
    EXPECT_EQ(std::string(string.qccz_Get()), "abc");
}

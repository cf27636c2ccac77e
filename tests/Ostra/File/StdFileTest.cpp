// tests/Ostra/File/StdFileTest.cpp
#include <Ostra/File/StdFile.h>

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include <Ostra/File/WinFile.h>

#include "StdFileProbe.h"
#include "Support/Directory.h"

namespace fs = std::filesystem;

namespace
{
const Failure NONE;

void ExpectClosed(const StdFileProbe& file)
{
    EXPECT_EQ(file.b_IsOpen(), 0);
    EXPECT_EQ(file.pcco_GetFILE(), nullptr);
    EXPECT_EQ(file.Access(), CT_File::e_FileAccessNone);
    EXPECT_EQ(file.Buffered(), 0u);
    EXPECT_EQ(file.ec_GetOpenAccess(), 0);
    EXPECT_EQ(file.ec_GetOpenModi(), 0);
    EXPECT_EQ(file.ec_GetOpenShare(), 0);
    EXPECT_EQ(file.n_GetOpenAttribut(), 0u);
    EXPECT_EQ(file.n_GetOpenFlag(), 0u);
}
} // namespace

TEST(StdFile, ANewFileIsClosed)
{
    const CT_UString name = Name("d/n.e");
    ExpectClosed(StdFileProbe("x"));
    const CT_StdFile empty;
    EXPECT_EQ(empty.pcco_GetFILE(), nullptr);
    EXPECT_EQ(empty.b_IsOpen(), 0);
    const CT_StdFile named(&name, 100);
    EXPECT_EQ(named.n_GetBufferSize(), 1024u);
    EXPECT_EQ(Get(*named.pcco_GetName()), "n");
    const CT_StdFile copy(&named);
    EXPECT_EQ(copy.n_GetBufferSize(), 1024u);
    EXPECT_EQ(Get(*copy.pcco_GetFullName()), "d/n.e");
    EXPECT_EQ(copy.pcco_GetFILE(), nullptr);
}

TEST(StdFile, ObjectsLiveOnTheHeapToo)
{
    const CT_UString name = Name("file");
    CT_File* file = new CT_StdFile(&name, 1024);
    file->vv_Open(CT_File::e_AccessWrite, CT_File::e_OpenCreate, CT_File::e_ShareNone, 1, 0);
    EXPECT_EQ(file->vn_Write("abc", 3), 3u);
    delete file;
    EXPECT_EQ(ReadBytes("file"), "abc") << "closed, and what was buffered is written";
    EXPECT_EQ(TakeFailure(), NONE);
}

TEST(StdFile, OpenKeepsItsArguments)
{
    StdFileProbe file("file");
    file.vv_Open(CT_File::e_AccessWrite, CT_File::e_OpenCreate, CT_File::e_ShareRead, 16, 32);
    EXPECT_EQ(file.b_IsOpen(), 1);
    EXPECT_NE(file.pcco_GetFILE(), nullptr);
    EXPECT_EQ(file.ec_GetOpenAccess(), CT_File::e_AccessWrite);
    EXPECT_EQ(file.ec_GetOpenModi(), CT_File::e_OpenCreate);
    EXPECT_EQ(file.ec_GetOpenShare(), CT_File::e_ShareRead);
    EXPECT_EQ(file.n_GetOpenAttribut(), 16u);
    EXPECT_EQ(file.n_GetOpenFlag(), 32u);
    file.vv_Close();
    ExpectClosed(file);
    EXPECT_TRUE(fs::exists("file")) << "flags are recorded only";
    file.vv_Remove();
    EXPECT_FALSE(fs::exists("file")) << "so are attributes: it isn't read-only";
    EXPECT_EQ(TakeFailure(), NONE);
}

// The file that is there holds "abc".
TEST(StdFile, AccessAndWayMakeTheMode)
{
    enum
    {
        FAILS,
        KEEPS,
        EMPTIES
    };
    const struct
    {
        unsigned open, access;
        int existing, missing;
        unsigned code; // of the failure
        bool reads, writes;
    } cases[] = {
        {1, 1, KEEPS, FAILS, 2, true, false},    {1, 2, EMPTIES, EMPTIES, 0, false, true},
        {1, 3, KEEPS, FAILS, 2, true, true},     {2, 1, KEEPS, FAILS, 2, true, true},
        {2, 2, EMPTIES, EMPTIES, 0, true, true}, {2, 3, EMPTIES, EMPTIES, 0, true, true},
        {3, 1, FAILS, FAILS, 22, false, false},  {3, 2, KEEPS, EMPTIES, 0, false, true},
        {3, 3, KEEPS, EMPTIES, 0, true, true},   {1, 0, FAILS, FAILS, 22, false, false},
        {2, 0, FAILS, FAILS, 22, false, false},  {3, 0, FAILS, FAILS, 22, false, false},
        {0, 1, FAILS, FAILS, 22, false, false},  {4, 3, FAILS, FAILS, 22, false, false},
        {1, 4, FAILS, FAILS, 22, false, false},  {0xFFFFFFFF, 2, FAILS, FAILS, 22, false, false},
    };
    for (const auto& row : cases) {
        for (const bool exists : {true, false}) {
            SCOPED_TRACE(testing::Message() << row.open << " " << row.access << " " << exists);
            fs::remove("file");
            if (exists)
                WriteBytes("file", "abc");
            const int outcome = exists ? row.existing : row.missing;
            StdFileProbe file("file", CT_File::et_Open(row.open), CT_File::et_Access(row.access));
            if (outcome == FAILS) {
                EXPECT_EQ(TakeFailure(), StdFailure(row.code, "fopen"));
                EXPECT_EQ(file.b_IsOpen(), 0);
                EXPECT_EQ(fs::exists("file"), exists);
                continue;
            }
            EXPECT_EQ(TakeFailure(), NONE);
            EXPECT_EQ(file.vn_GetSize(), outcome == KEEPS ? 3u : 0u);
            EXPECT_EQ(file.Write("x"), row.writes ? 1u : 0u);
            EXPECT_EQ(TakeFailure(), row.writes ? NONE : StdFailure(9, "fwrite"));
            file.vv_SetOffset(CT_File::e_OriginBegin, 0);
            const std::string text = file.Read(1);
            EXPECT_EQ(text.size(), row.reads ? 1u : 0u);
            // Not every library tells that a stream can't be read.
            const Failure failure = TakeFailure();
            EXPECT_TRUE(failure == NONE || (!row.reads && failure == StdFailure(9, "fread")));
        }
    }
}

TEST(StdFile, AnAppendWritesAtTheEndWhereverItStands)
{
    WriteBytes("file", "abc");
    StdFileProbe file("file", CT_File::e_OpenAppend);
    EXPECT_EQ(file.vn_GetOffset(), 0u) << "until the first write";
    EXPECT_EQ(file.Read(2), "ab");
    EXPECT_EQ(file.Write("de"), 2u);
    file.vv_SetOffset(CT_File::e_OriginBegin, 1);
    EXPECT_EQ(file.Write("f"), 1u);
    file.vv_SetOffset(CT_File::e_OriginBegin, 0);
    EXPECT_EQ(file.Read(9), "abcdef");
    EXPECT_EQ(TakeFailure(), NONE);
}

TEST(StdFile, AFailedOpenLeavesAClosedFileClosed)
{
    StdFileProbe file("file", CT_File::e_OpenExisting);
    EXPECT_EQ(TakeFailure(), StdFailure(2, "fopen"));
    ExpectClosed(file);
    file.Open(CT_File::e_OpenCreate, CT_File::e_AccessRead);
    EXPECT_EQ(TakeFailure(), StdFailure(2, "fopen")) << "creating for reading demands the file";
    WriteBytes("file", "abc");
    file.Open(CT_File::e_OpenExisting);
    EXPECT_EQ(file.b_IsOpen(), 1) << "a failed open can be repeated";
    EXPECT_EQ(file.Read(9), "abc");
}

TEST(StdFile, NamesThatCantBeOpenedAreReported)
{
    fs::create_directory("file");
    StdFileProbe directory("file", CT_File::e_OpenExisting, CT_File::e_AccessRead);
    EXPECT_EQ(TakeFailure(), StdFailure(13, "fopen"));
    StdFileProbe writer("file", CT_File::e_OpenCreate, CT_File::e_AccessWrite);
    EXPECT_EQ(TakeFailure(), StdFailure(13, "fopen"));
    StdFileProbe nowhere("none/file", CT_File::e_OpenCreate, CT_File::e_AccessWrite);
    EXPECT_EQ(TakeFailure(), StdFailure(2, "fopen", {STDFILE_PLACE}, "none/file"));
    StdFileProbe empty("", CT_File::e_OpenCreate, CT_File::e_AccessWrite);
    EXPECT_EQ(TakeFailure(), StdFailure(2, "fopen", {STDFILE_PLACE}, ""));
    StdFileProbe directives("a%s%n%u", CT_File::e_OpenExisting, CT_File::e_AccessRead);
    EXPECT_EQ(TakeFailure(), StdFailure(2, "fopen", {STDFILE_PLACE}, "a%s%n%u"));
}

TEST(StdFile, WithoutABufferSizeAnOpenFails)
{
    for (const unsigned size : {0u, 1024u}) {
        SCOPED_TRACE(size);
        WriteBytes("file", "abc");
        StdFileProbe file("file", CT_File::e_OpenExisting, CT_File::e_AccessRead, size);
        if (size) {
            EXPECT_EQ(file.b_IsOpen(), 1);
            continue;
        }
        EXPECT_EQ(TakeFailure(), StdFailure(22, "setvbuf"));
        EXPECT_EQ(file.b_IsOpen(), 0);
        EXPECT_NE(file.pcco_GetFILE(), nullptr) << "the stream stays";
        EXPECT_EQ(file.n_GetOpenAttribut(), 0u);
        file.vv_Close();
        ExpectClosed(file);
        EXPECT_EQ(TakeFailure(), NONE);
        file.Open(CT_File::e_OpenExisting);
        EXPECT_EQ(TakeFailure(), StdFailure(22, "setvbuf"));
        file.Open(CT_File::e_OpenExisting);
        EXPECT_EQ(TakeFailure(), StdFailure(22, "setvbuf"));
    }
    fs::remove("file");
    EXPECT_FALSE(fs::exists("file")) << "nobody has it open any more";
}

TEST(StdFile, ADefaultObjectTakesItsSizeFromASet)
{
    WriteBytes("file", "abc");
    const CT_UString name = Name("file");
    CT_StdFile file;
    EXPECT_EQ(file.n_GetBufferSize(), 0u);
    file.v_SetFullName(&name);
    file.vv_Open(CT_File::e_AccessRead, CT_File::e_OpenExisting, CT_File::e_ShareNone, 1, 0);
    EXPECT_EQ(TakeFailure(), StdFailure(22, "setvbuf"));
    file.vv_Set(&name, 1);
    file.vv_Open(CT_File::e_AccessRead, CT_File::e_OpenExisting, CT_File::e_ShareNone, 1, 0);
    EXPECT_EQ(file.b_IsOpen(), 1);
    EXPECT_EQ(file.n_GetBufferSize(), 1024u);
    file.vv_Set();
    EXPECT_EQ(file.b_IsOpen(), 0);
    EXPECT_EQ(file.n_GetBufferSize(), 1024u);
    EXPECT_EQ(TakeFailure(), NONE);
}

TEST(StdFile, SettingAnOpenFileClosesIt)
{
    const CT_UString other = Name("other");
    const CT_StdFile model(&other, 2048);
    for (const int form : {0, 1, 2}) {
        SCOPED_TRACE(form);
        StdFileProbe file("file", CT_File::e_OpenCreate);
        EXPECT_EQ(file.Write("abc"), 3u);
        if (form == 0)
            file.vv_Set();
        else if (form == 1)
            file.vv_Set(&other, 1);
        else
            file.vv_Set(&model);
        ExpectClosed(file);
        EXPECT_EQ(ReadBytes("file"), "abc");
        EXPECT_EQ(Get(*file.pcco_GetFullName()), form ? "other" : "");
        EXPECT_EQ(file.n_GetBufferSize(), form == 2 ? 2048u : 1024u);
    }
    EXPECT_EQ(TakeFailure(), NONE);
}

TEST(StdFile, ASecondOpenClosesTheFirstStream)
{
    StdFileProbe file("file", CT_File::e_OpenCreate);
    EXPECT_EQ(file.Write("abc"), 3u);
    file.Open(CT_File::e_OpenExisting, CT_File::e_AccessRead);
    EXPECT_EQ(ReadBytes("file"), "abc");
    const CT_UString name = Name("missing");
    file.v_SetFullName(&name);
    file.Open(CT_File::e_OpenExisting);
    EXPECT_EQ(TakeFailure(), StdFailure(2, "fopen", {STDFILE_PLACE}, "missing"));
    EXPECT_EQ(file.b_IsOpen(), 1) << "as it was";
    EXPECT_EQ(file.pcco_GetFILE(), nullptr);
    file.vv_Set();
    EXPECT_EQ(TakeFailure(), StdFailure(22, "fclose", {STDFILE_PLACE, STDFILE_PLACE}, "missing"));
    EXPECT_EQ(file.b_IsOpen(), 0);
}

TEST(StdFile, WhatIsWrittenWaitsInABufferOfItsSize)
{
    for (const unsigned size : {1024u, 16384u, 1048576u}) {
        SCOPED_TRACE(size);
        StdFileProbe file("file", CT_File::e_OpenCreate, CT_File::e_AccessWrite, size);
        const std::string half(size / 2 - 1, 'x');
        EXPECT_EQ(file.Write(half), half.size());
        EXPECT_EQ(file.Write(half), half.size());
        EXPECT_EQ(fs::file_size("file"), 0u);
        EXPECT_EQ(file.vn_GetOffset(), size - 2);
        file.vv_Flush();
        EXPECT_EQ(fs::file_size("file"), size - 2);
        EXPECT_EQ(file.Write("end"), 3u);
        file.vv_Close();
        EXPECT_EQ(fs::file_size("file"), size + 1);
    }
    EXPECT_EQ(TakeFailure(), NONE);
}

TEST(StdFile, CloseForgetsThePlaceOfTheSequentialReaders)
{
    WriteBytes("file", "first\nsecond\n");
    StdFileProbe file("file", CT_File::e_OpenExisting, CT_File::e_AccessRead);
    CT_CString line;
    EXPECT_EQ(file.n_ReadLineCSequential(&line, nullptr), 6u);
    EXPECT_EQ(file.Buffered(), 6u);
    file.vv_Close();
    ExpectClosed(file);
    file.Open(CT_File::e_OpenExisting, CT_File::e_AccessRead);
    EXPECT_EQ(file.n_ReadLineCSequential(&line, nullptr), 6u);
    EXPECT_EQ(Get(line), "first");
    EXPECT_EQ(TakeFailure(), NONE);
}

TEST(StdFile, TheEndIsMetByAReadBeyondIt)
{
    WriteBytes("file", "abc");
    StdFileProbe file("file", CT_File::e_OpenExisting, CT_File::e_AccessRead);
    EXPECT_EQ(file.vb_IsEof(), 0);
    EXPECT_EQ(file.Read(3), "abc");
    EXPECT_EQ(file.vb_IsEof(), 0) << "exactly to the end";
    EXPECT_EQ(file.Read(1), "");
    EXPECT_EQ(file.vb_IsEof(), 16);
    file.vv_SetOffset(CT_File::e_OriginBegin, 1);
    EXPECT_EQ(file.vb_IsEof(), 0);
    EXPECT_EQ(file.Read(9), "bc") << "a short read is no failure";
    EXPECT_EQ(file.vb_IsEof(), 16);
    file.vv_Close();
    EXPECT_EQ(file.vb_IsEof(), 0);
    EXPECT_EQ(TakeFailure(), NONE);
}

TEST(StdFile, ATransferOfNothing)
{
    WriteBytes("file", "abc");
    StdFileProbe file("file", CT_File::e_OpenExisting);
    EXPECT_EQ(file.vn_Read(nullptr, 0), 0u);
    EXPECT_EQ(file.Access(), CT_File::e_FileAccessNone);
    EXPECT_EQ(file.vn_Write("", 0), 0u);
    EXPECT_EQ(file.Access(), CT_File::e_FileAccessWrite) << "a write names its direction";
    EXPECT_EQ(file.Read(1), "a");
    EXPECT_EQ(file.vn_Read(nullptr, 0), 0u);
    EXPECT_EQ(file.Access(), CT_File::e_FileAccessRead);
    EXPECT_EQ(TakeFailure(), NONE);
}

TEST(StdFile, ReadingAndWritingTakeTurns)
{
    StdFileProbe file("file", CT_File::e_OpenCreate);
    EXPECT_EQ(file.Write("0123456789"), 10u);
    file.vv_SetOffset(CT_File::e_OriginBegin, 2);
    EXPECT_EQ(file.Read(3), "234");
    EXPECT_EQ(file.vn_GetOffset(), 5u);
    EXPECT_EQ(file.Write("ab"), 2u);
    EXPECT_EQ(file.Read(2), "78");
    EXPECT_EQ(file.Write(std::string("\r\n\0\x1A", 4)), 4u);
    file.vv_Close();
    EXPECT_EQ(ReadBytes("file"), std::string("01234ab78\r\n\0\x1A", 13)) << "nothing is translated";
    EXPECT_EQ(TakeFailure(), NONE);
}

TEST(StdFile, SeeksGoFromThreeOrigins)
{
    WriteBytes("file", "0123456789");
    StdFileProbe file("file", CT_File::e_OpenExisting);
    const struct
    {
        unsigned origin;
        int offset;
        unsigned place;
    } cases[] = {{0, 4, 4}, {1, 3, 7}, {1, -5, 2}, {2, -1, 9}, {2, 0, 10}, {2, 5, 15}, {0, 0, 0}};
    for (const auto& row : cases) {
        SCOPED_TRACE(testing::Message() << row.origin << " " << row.offset);
        file.vv_SetOffset(CT_File::et_Origin(row.origin), row.offset);
        EXPECT_EQ(file.vn_GetOffset(), row.place);
        EXPECT_EQ(file.Read(1), row.place < 10 ? std::string(1, char('0' + row.place)) : "");
        file.vv_SetOffset(CT_File::e_OriginBegin, static_cast<int>(row.place));
    }
    EXPECT_EQ(TakeFailure(), NONE);
}

TEST(StdFile, ASeekThatFailsStaysWhereItWas)
{
    WriteBytes("file", "0123456789");
    StdFileProbe file("file", CT_File::e_OpenExisting);
    EXPECT_EQ(file.Read(4), "0123");
    const struct
    {
        unsigned origin;
        int offset;
    } cases[] = {{0, -1}, {1, -5}, {2, -11}, {3, 0}};
    for (const auto& row : cases) {
        SCOPED_TRACE(testing::Message() << row.origin << " " << row.offset);
        file.vv_SetOffset(CT_File::et_Origin(row.origin), row.offset);
        EXPECT_EQ(TakeFailure(), StdFailure(22, "fseek"));
        EXPECT_EQ(file.vn_GetOffset(), 4u);
        EXPECT_EQ(file.Read(1), "4");
        file.vv_SetOffset(CT_File::e_OriginBegin, 4);
    }
    EXPECT_EQ(TakeFailure(), NONE);
}

TEST(StdFile, TheSizeOfAnOpenFileLeavesItWhereItWas)
{
    WriteBytes("file", "0123456789");
    StdFileProbe file("file", CT_File::e_OpenExisting);
    EXPECT_EQ(file.Read(4), "0123");
    EXPECT_EQ(file.vn_GetSize(), 10u);
    EXPECT_EQ(file.vn_GetOffset(), 4u);
    EXPECT_EQ(file.Read(2), "45");
    file.vv_SetOffset(CT_File::e_OriginEnd, 0);
    EXPECT_EQ(file.Write("ab"), 2u);
    EXPECT_EQ(file.vn_GetSize(), 12u) << "with what is buffered";
    EXPECT_EQ(TakeFailure(), NONE);
}

TEST(StdFile, TheSizeOfAClosedFile)
{
    WriteBytes("file", "0123456789");
    StdFileProbe file("file");
    EXPECT_EQ(file.vn_GetSize(), 10u);
    ExpectClosed(file);
    EXPECT_EQ(TakeFailure(), NONE);
    StdFileProbe missing("missing");
    EXPECT_EQ(missing.vn_GetSize(), 0u);
    EXPECT_EQ(TakeFailure(), StdFailure(2, "fopen", {STDFILE_PLACE, STDFILE_PLACE}, "missing"));
    StdFileProbe unbuffered("file", 0);
    EXPECT_EQ(unbuffered.vn_GetSize(), 0u);
    EXPECT_EQ(TakeFailure(), StdFailure(22, "setvbuf", {STDFILE_PLACE, STDFILE_PLACE}));
    EXPECT_EQ(unbuffered.pcco_GetFILE(), nullptr) << "it was open for the moment only";
}

TEST(StdFile, OffsetsEndBelowTwoGigabytes)
{
    WriteBytes("file", "abc");
    fs::resize_file("file", 0x7FFFFFFF);
    StdFileProbe file("file");
    EXPECT_EQ(file.vn_GetSize(), 0x7FFFFFFFu);
    EXPECT_EQ(TakeFailure(), NONE);
    for (const unsigned long long size : {0x80000000ULL, 0x100000003ULL}) {
        SCOPED_TRACE(size);
        fs::resize_file("file", size);
        EXPECT_EQ(file.vn_GetSize(), 0u);
        EXPECT_EQ(TakeFailure(), StdFailure(27, "ftell", {STDFILE_PLACE, STDFILE_PLACE}));
        ExpectClosed(file);
        file.Open(CT_File::e_OpenExisting);
        EXPECT_EQ(file.Read(2), "ab") << "what lies below can be used";
        EXPECT_EQ(file.vn_GetSize(), 0u);
        EXPECT_EQ(TakeFailure(), StdFailure(27, "ftell", {STDFILE_PLACE, STDFILE_PLACE}));
        EXPECT_EQ(file.vn_GetOffset(), 2u) << "where it was";
        file.vv_SetOffset(CT_File::e_OriginEnd, 0);
        EXPECT_EQ(file.vn_GetOffset(), 0u);
        EXPECT_EQ(TakeFailure(), StdFailure(27, "ftell"));
        file.vv_SetOffset(CT_File::e_OriginBegin, 1);
        EXPECT_EQ(file.Read(1), "b");
        file.vv_Close();
        EXPECT_EQ(TakeFailure(), NONE);
    }
}

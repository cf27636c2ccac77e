// tests/Faults/FileArgumentsTest.cpp: what files and searches ask of the system, and what they make
// of its answers.
#ifndef _WIN32
#include <Ostra/File/FindFile.h>
#include <Ostra/File/WinFile.h>

#include <gtest/gtest.h>

#include <windows.h>

#include <filesystem>
#include <vector>

#include "Faults/Services.h"
#include "Support/Directory.h"
#include "Support/Files.h"

namespace fs = std::filesystem;

namespace
{
// A call that opens a file.
struct OpenCall
{
    DWORD access, share, disposition, word, last_error;
    bool others; // whether security attributes or a template came along

    bool operator==(const OpenCall&) const = default;
};

void PrintTo(const OpenCall& call, std::ostream* out)
{
    *out << std::hex << call.access << " " << call.share << " " << call.disposition << " "
         << call.word << " last error " << call.last_error << (call.others ? " and more" : "");
}

std::vector<OpenCall> calls;
bool refuse_opens;
DWORD answer_attributes;

bool NoteOpen(DWORD access, DWORD share, const void* security, DWORD disposition, DWORD word,
              const void* model)
{
    calls.push_back({access, share, disposition, word, GetLastError(), security || model});
    if (refuse_opens)
        SetLastError(ERROR_ACCESS_DENIED);
    return refuse_opens;
}
HANDLE NotedCreateFileW(LPCWSTR name, DWORD access, DWORD share, LPSECURITY_ATTRIBUTES security,
                        DWORD disposition, DWORD word, HANDLE model)
{
    if (NoteOpen(access, share, security, disposition, word, model))
        return INVALID_HANDLE_VALUE;
    return service::CreateFileWService::place.real(name, access, share, security, disposition, word,
                                                   model);
}

HANDLE NotedCreateFileA(LPCSTR name, DWORD access, DWORD share, LPSECURITY_ATTRIBUTES security,
                        DWORD disposition, DWORD word, HANDLE model)
{
    if (NoteOpen(access, share, security, disposition, word, model))
        return INVALID_HANDLE_VALUE;
    return service::CreateFileAService::place.real(name, access, share, security, disposition, word,
                                                   model);
}

HANDLE AnsweringFindFirstFileW(LPCWSTR pattern, LPWIN32_FIND_DATAW found)
{
    const HANDLE search = service::FindFirstFileWService::place.real(pattern, found);
    if (answer_attributes)
        found->dwFileAttributes = answer_attributes;
    return search;
}

HANDLE AnsweringFindFirstFileA(LPCSTR pattern, LPWIN32_FIND_DATAA found)
{
    const HANDLE search = service::FindFirstFileAService::place.real(pattern, found);
    if (answer_attributes)
        found->dwFileAttributes = answer_attributes;
    return search;
}

// In place of the services, as long as a test runs.
struct WinFileArguments : testing::Test
{
    WinFileArguments()
    {
        service::CreateFileWService::place.replacement = NotedCreateFileW;
        service::CreateFileAService::place.replacement = NotedCreateFileA;
    }
    ~WinFileArguments() override
    {
        service::CreateFileWService::place.replacement = nullptr;
        service::CreateFileAService::place.replacement = nullptr;
    }
};

struct FindFileArguments : testing::Test
{
    FindFileArguments()
    {
        service::FindFirstFileWService::place.replacement = AnsweringFindFirstFileW;
        service::FindFirstFileAService::place.replacement = AnsweringFindFirstFileA;
    }
    ~FindFileArguments() override
    {
        service::FindFirstFileWService::place.replacement = nullptr;
        service::FindFirstFileAService::place.replacement = nullptr;
    }
};
} // namespace

namespace
{
// The calls of an open that is refused each time.
std::vector<OpenCall> Opening(unsigned access, unsigned open, unsigned share, unsigned attribute,
                              unsigned flag)
{
    const CT_UString name = Name("file");
    CT_WinFile file(&name, 0);
    calls.clear();
    refuse_opens = true;
    SetLastError(0);
    file.vv_Open(CT_File::et_Access(access), CT_File::et_Open(open), CT_File::et_Share(share),
                 attribute, flag);
    refuse_opens = false;
    EXPECT_EQ(TakeSystem(), (SystemFailure{5, "file", {"Ostra/File/WinFile"}}));
    EXPECT_EQ(file.h_GetHandle(), INVALID_HANDLE_VALUE);
    return calls;
}

unsigned Word(unsigned attribute, unsigned flag)
{
    return Opening(1, 1, 0, attribute, flag).at(0).word;
}
} // namespace

TEST_F(WinFileArguments, AccessShareAndDisposition)
{
    const DWORD accesses[] = {0, 0x80000000, 0x40000000, 0xC0000000};
    const DWORD dispositions[] = {0, 3, 2, 4};
    for (unsigned access = 0; access < 4; ++access) {
        for (unsigned share = 0; share < 4; ++share) {
            for (unsigned open = 1; open < 3; ++open) {
                SCOPED_TRACE(testing::Message() << access << " " << open << " " << share);
                const OpenCall call = {accesses[access], share, dispositions[open], 0x80, 0, false};
                EXPECT_EQ(Opening(access, open, share, 1, 0), std::vector<OpenCall>{call});
            }
        }
    }
}

TEST_F(WinFileArguments, AnAppendIsTriedTwice)
{
    EXPECT_EQ(Opening(2, 3, 1, 1, 8),
              (std::vector<OpenCall>{{0x40000000, 1, 4, 0x10000080, 0, false},
                                     {0x40000000, 1, 7, 0x10000080, 0, false}}));
}

TEST_F(WinFileArguments, AttributesAndFlagsMakeOneWord)
{
    const struct
    {
        unsigned attribute, flag, word;
    } cases[] = {
        {1, 0, 0x00000080},  {2, 0, 0x00000020},  {4, 0, 0x00000800},  {8, 0, 0x00000002},
        {16, 0, 0x00000001}, {32, 0, 0x00000004}, {64, 0, 0x00000010}, {128, 0, 0x00000100},
        {0, 1, 0x80000000},  {0, 2, 0x40000000},  {0, 4, 0x20000000},  {0, 8, 0x10000000},
        {0, 16, 0x08000000}, {0, 32, 0x04000000}, {0, 0, 0},           {255, 63, 0xFC0009B7},
        {256, 64, 0},
    };
    for (const auto& row : cases) {
        SCOPED_TRACE(testing::Message() << row.attribute << " " << row.flag);
        EXPECT_EQ(Word(row.attribute, row.flag), row.word);
    }
}

TEST_F(WinFileArguments, AttributesAndFlagsHaveNames)
{
    EXPECT_EQ(Word(CT_File::e_AttributeNormal, CT_File::e_FlagWriteThrough), 0x80000080U);
    EXPECT_EQ(Word(CT_File::e_AttributeArchive, CT_File::e_FlagOverlapped), 0x40000020U);
    EXPECT_EQ(Word(CT_File::e_AttributeCompressed, CT_File::e_FlagNoBuffering), 0x20000800U);
    EXPECT_EQ(Word(CT_File::e_AttributeHidden, CT_File::e_FlagRandomAccess), 0x10000002U);
    EXPECT_EQ(Word(CT_File::e_AttributeReadOnly, CT_File::e_FlagSequentialScan), 0x08000001U);
    EXPECT_EQ(Word(CT_File::e_AttributeSystem, CT_File::e_FlagDeleteOnClose), 0x04000004U);
    EXPECT_EQ(Word(CT_File::e_AttributeDirectory | CT_File::e_AttributeTemporary, 0), 0x110U);
}

TEST_F(WinFileArguments, AClosedFileIsMeasuredWithoutSharing)
{
    WriteBytes("file", "abc");
    const CT_UString name = Name("file");
    const CT_WinFile file(&name, 0);
    calls.clear();
    SetLastError(0);
    EXPECT_EQ(file.vn_GetSize(), 3U);
    EXPECT_EQ(calls, (std::vector<OpenCall>{{0x80000000, 0, 3, 0x80, 0, false}}));
}

TEST_F(FindFileArguments, ANormalFileHasNoAttributes)
{
    WriteBytes("file", "");
    const struct
    {
        DWORD answer;
        unsigned include, exclude;
        int found;
        unsigned attributes;
    } cases[] = {
        {0x80, 0, 0, 1, 0},          {0x80, 0x80, 0, 0, 0}, {0x80, 0xFFFFFFFF, 0, 0, 0},
        {0x80, 0, 0xFFFFFFFF, 1, 0}, {0xA0, 0, 0, 1, 0xA0}, {0xA0, 0x80, 0, 1, 0xA0},
        {0x21, 0x01, 0x20, 0, 0x21},
    };
    for (const auto& row : cases) {
        SCOPED_TRACE(testing::Message() << std::hex << row.answer << " " << row.include);
        CT_UString pattern = Name("file");
        CT_FindFile find(&pattern, row.include, row.exclude, 0);
        CT_UString name;
        unsigned attributes = 77;
        answer_attributes = row.answer;
        EXPECT_EQ(find.b_FindFirst(&name, &attributes), row.found);
        answer_attributes = 0;
        EXPECT_EQ(attributes, row.attributes);
        EXPECT_EQ(Get(name), row.found ? "file" : "");
    }
}
#endif

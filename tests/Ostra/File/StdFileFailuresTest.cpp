// tests/Ostra/File/StdFileFailuresTest.cpp: reports without a stream, on a full disk, and with an
// error that stands.
#include <Ostra/File/StdFile.h>

#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "StdFileProbe.h"
#include "Support/Directory.h"

#ifndef _WIN32
#include <sys/resource.h>

#include <csignal>
#endif

namespace fs = std::filesystem;

namespace
{
const Failure NONE;

typedef std::vector<std::string> Trail;

struct Operation
{
    const char* name;
    std::function<void(StdFileProbe&)> run;
    const char* function; // that is told without a stream
    Trail trail;
};

const std::vector<Operation>& Operations()
{
    static const CT_CString line("line");
    static const std::vector<Operation> operations = {
        {"close", [](auto& file) { file.vv_Close(); }, "fclose", {STDFILE_PLACE}},
        {"flush", [](auto& file) { file.vv_Flush(); }, "fflush", {STDFILE_PLACE}},
        {"read",
         [](auto& file) { EXPECT_EQ(file.Read(3), ""); },
         "ftell",
         {STDFILE_PLACE, FILE_PLACE, STDFILE_PLACE}},
        {"write",
         [](auto& file) { EXPECT_EQ(file.Write("abc"), 0u); },
         "ftell",
         {STDFILE_PLACE, FILE_PLACE, STDFILE_PLACE}},
        {"offset",
         [](auto& file) { EXPECT_EQ(file.vn_GetOffset(), 0u); },
         "ftell",
         {STDFILE_PLACE}},
        {"seek",
         [](auto& file) { file.vv_SetOffset(CT_File::e_OriginBegin, 1); },
         "ftell",
         {STDFILE_PLACE}},
        {"write a line",
         [](auto& file) { file.v_WriteLineC(&line, 1); },
         "ftell",
         {STDFILE_PLACE, FILE_PLACE, STDFILE_PLACE, FILE_PLACE}},
        {"read a line",
         [](auto& file) {
             CT_UString text;
             EXPECT_EQ(file.n_ReadLineU(&text, nullptr), 0u);
         },
         "ftell",
         {STDFILE_PLACE, FILE_PLACE, FILE_PLACE}},
        {"read a buffer",
         [](auto& file) {
             CT_Buffer buffer;
             EXPECT_EQ(file.n_Read(&buffer, 10), 0u);
         },
         "ftell",
         {STDFILE_PLACE, FILE_PLACE, STDFILE_PLACE, FILE_PLACE}},
    };
    return operations;
}

// An object that is open, and whose stream is gone: its second opening has failed.
void LoseStream(StdFileProbe& file)
{
    const CT_UString missing = Name("missing");
    const CT_UString name = Name("file");
    file.v_SetFullName(&missing);
    file.Open(CT_File::e_OpenExisting);
    EXPECT_EQ(TakeFailure().code, 2u);
    file.v_SetFullName(&name);
}
} // namespace

TEST(StdFileFailures, AClosedFileHasNoStream)
{
    for (const Operation& operation : Operations()) {
        SCOPED_TRACE(operation.name);
        StdFileProbe file("file");
        operation.run(file);
        EXPECT_EQ(TakeFailure(), StdFailure(22, operation.function, operation.trail));
        EXPECT_EQ(file.Access(), CT_File::e_FileAccessNone);
        EXPECT_EQ(file.vb_IsEof(), 0);
    }
}

TEST(StdFileFailures, AnOpenFileWhoseStreamIsGone)
{
    {
        StdFileProbe file("file", CT_File::e_OpenCreate);
        EXPECT_EQ(file.Read(1), "");
        LoseStream(file);
        EXPECT_EQ(file.Read(1), "");
        EXPECT_EQ(TakeFailure(), StdFailure(22, "fread"));
        EXPECT_EQ(file.vn_GetSize(), 0u);
        EXPECT_EQ(TakeFailure(), StdFailure(22, "ftell", {STDFILE_PLACE, STDFILE_PLACE}));
        EXPECT_EQ(file.b_IsOpen(), 1);
        file.Open(CT_File::e_OpenExisting);
        EXPECT_EQ(file.Write("a"), 1u) << "it can be opened again";
        LoseStream(file);
        EXPECT_EQ(file.Write("b"), 0u);
        EXPECT_EQ(TakeFailure(), StdFailure(22, "fwrite"));
        EXPECT_EQ(file.vn_Write("", 0), 0u);
        EXPECT_EQ(TakeFailure(), StdFailure(22, "fwrite"));
    }
    EXPECT_EQ(TakeFailure(), StdFailure(22, "fclose", {STDFILE_PLACE, STDFILE_PLACE}))
        << "the destructor adds its place";
}

TEST(StdFileFailures, AnErrorThatStandsStopsNothing)
{
    const auto expect_earlier = [](const Trail& trail) {
        EXPECT_EQ(TakeFailure(), (Failure{77, "(77): earlier", trail}));
    };
    const auto set_earlier = [] {
        Errors().v_SetError(77, Units(u"earlier"));
    };
    StdFileProbe file("file");
    set_earlier();
    file.Open(CT_File::e_OpenCreate);
    EXPECT_EQ(file.Write("abc"), 3u);
    file.vv_SetOffset(CT_File::e_OriginBegin, 1);
    EXPECT_EQ(file.vn_GetOffset(), 1u);
    EXPECT_EQ(file.Read(9), "bc");
    EXPECT_EQ(file.vn_GetSize(), 3u);
    file.vv_Flush();
    file.vv_Close();
    EXPECT_EQ(file.vn_GetSize(), 3u);
    file.v_Chmod(CT_StdFile::e_PermissionWrite);
    struct _stat facts;
    file.v_GetFileInformation(&facts);
    EXPECT_EQ(facts.st_size, 3);
    file.vv_Remove();
    EXPECT_FALSE(fs::exists("file"));
    expect_earlier({});
    set_earlier();
    file.Open(CT_File::e_OpenExisting);
    EXPECT_EQ(file.Read(1), "");
    expect_earlier({STDFILE_PLACE, STDFILE_PLACE, FILE_PLACE, STDFILE_PLACE});
}

#ifndef _WIN32
TEST(StdFileFailures, AFullDevice)
{
    const std::string name = "/dev/full";
    StdFileProbe file(name, CT_File::e_OpenExisting, CT_File::e_AccessWrite);
    EXPECT_EQ(file.Write("abc"), 3u) << "into the buffer";
    file.vv_Flush();
    EXPECT_EQ(TakeFailure(), StdFailure(28, "fflush", {STDFILE_PLACE}, name));
    EXPECT_EQ(file.Write(std::string(5000, 'x')), 0u);
    EXPECT_EQ(TakeFailure(), StdFailure(28, "fwrite", {STDFILE_PLACE}, name));
    EXPECT_EQ(file.Write("abc"), 3u);
    file.vv_Close();
    EXPECT_EQ(TakeFailure(), StdFailure(28, "fclose", {STDFILE_PLACE}, name));
    EXPECT_EQ(file.b_IsOpen(), 1) << "as it was";
    EXPECT_NE(file.pcco_GetFILE(), nullptr);
    EXPECT_EQ(file.Write("abc"), 3u);
    file.vv_Set();
    EXPECT_EQ(TakeFailure(), StdFailure(28, "fclose", {STDFILE_PLACE, STDFILE_PLACE}, name));
    EXPECT_EQ(file.b_IsOpen(), 0);
    EXPECT_EQ(file.pcco_GetFILE(), nullptr);
}

TEST(StdFileFailures, ASecondOpenTellsWhatTheFirstStreamHasLost)
{
    const std::string name = "/dev/full";
    StdFileProbe file(name, CT_File::e_OpenExisting, CT_File::e_AccessWrite);
    EXPECT_EQ(file.Write("abc"), 3u);
    file.Open(CT_File::e_OpenExisting);
    EXPECT_EQ(TakeFailure(), StdFailure(28, "fclose", {STDFILE_PLACE}, name));
    EXPECT_EQ(file.b_IsOpen(), 1);
    file.vv_Close();
    EXPECT_EQ(TakeFailure(), NONE);
}

TEST(StdFileFailures, OtherDevices)
{
    StdFileProbe zero("/dev/zero", CT_File::e_OpenExisting, CT_File::e_AccessRead);
    EXPECT_EQ(zero.Read(3), std::string(3, '\0'));
    StdFileProbe null("/dev/null", CT_File::e_OpenCreate);
    EXPECT_EQ(null.Write("abc"), 3u);
    EXPECT_EQ(null.Read(3), "");
    EXPECT_EQ(null.vb_IsEof(), 16);
    EXPECT_EQ(null.vn_GetSize(), 0u);
    null.vv_Close();
    EXPECT_EQ(TakeFailure(), NONE);
}

namespace
{
// Files of this process end at some size, as on a full disk.
class SizeLimit
{
public:
    explicit SizeLimit(unsigned size)
    {
        getrlimit(RLIMIT_FSIZE, &before);
        handler = std::signal(SIGXFSZ, SIG_IGN);
        const rlimit limit = {size, before.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    SizeLimit(const SizeLimit&) = delete;
    SizeLimit& operator=(const SizeLimit&) = delete;
    ~SizeLimit()
    {
        setrlimit(RLIMIT_FSIZE, &before);
        std::signal(SIGXFSZ, handler);
    }

private:
    rlimit before;
    void (*handler)(int);
};
} // namespace

TEST(StdFileFailures, ACloseForWhichThereIsNoRoomCanBeRepeated)
{
    StdFileProbe file("file", CT_File::e_OpenCreate);
    EXPECT_EQ(file.Write(std::string(500, 'a')), 500u);
    file.vv_Flush();
    EXPECT_EQ(file.Write(std::string(500, 'b')), 500u);
    {
        const SizeLimit limit(600);
        file.vv_Close();
    }
    EXPECT_EQ(TakeFailure(), StdFailure(27, "fclose"));
    EXPECT_EQ(file.b_IsOpen(), 1);
    file.vv_SetOffset(CT_File::e_OriginBegin, 500);
    EXPECT_EQ(file.Write(std::string(500, 'c')), 500u) << "the library doesn't keep what failed";
    file.vv_Close();
    EXPECT_EQ(TakeFailure(), NONE);
    EXPECT_EQ(file.b_IsOpen(), 0);
    EXPECT_EQ(ReadBytes("file"), std::string(500, 'a') + std::string(500, 'c'));
}
#endif

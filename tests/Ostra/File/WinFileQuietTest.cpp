// tests/Ostra/File/WinFileQuietTest.cpp: seeks that the system isn't told of, beside those that it
// is.
#include <Ostra/File/WinFile.h>

#include <windows.h>

#include <random>
#include <string>

#include "Support/Directory.h"
#include "Support/Failure.h"

namespace
{
struct Result
{
    unsigned count = 0, offset = 0, size = 0;
    std::string data;
    Failure failure;

    bool operator==(const Result&) const = default;
};

class Worker
{
public:
    Worker(const char16_t* fileName, bool isLent)
        : name(Units(fileName)),
          file(&name, 1024),
          lent(isLent)
    {
        file.vv_Open(CT_File::e_AccessReadWrite, CT_File::e_OpenCreate, CT_File::e_ShareNone, 1, 0);
        if (lent)
            file.h_GetHandle();
    }
    Result Do(unsigned kind, unsigned number)
    {
        Result result;
        char data[64] = {};
        const auto origin = static_cast<CT_File::et_Origin>(number % 3);
        switch (kind) {
        case 0:
            file.v_SetMapping(!file.b_GetMapping(), 300 + number % 500);
            break;
        case 1:
        case 2:
        case 3:
            file.vv_SetOffset(CT_File::e_OriginBegin, static_cast<int>(number % 1000));
            break;
        case 4:
            file.vv_SetOffset(origin, static_cast<int>(number % 200) - 100);
            break;
        case 5:
            file.vv_SetOffset(CT_File::e_OriginBegin, static_cast<int>(0x7FFFFFFF + number % 2));
            file.vv_SetOffset(CT_File::e_OriginBegin, static_cast<int>(number % 50));
            break;
        case 6:
            if (!file.b_GetMapping()) // a mapped file isn't cut
                file.v_SetEndOfFile();
            break;
        case 7:
        case 8:
            if (file.vn_GetOffset() < 4000)
                result.count =
                    file.vn_Write("some bytes that are written to the file", number % 40);
            break;
        default:
            result.count = file.vn_Read(data, number % 64);
        }
        result.data.assign(data, sizeof data);
        result.failure = Errors().b_IsSetError() ? TakeFailure() : Failure();
        const size_t place = result.failure.text.find(".bin");
        if (place != std::string::npos)
            result.failure.text[place - 1] = '?';
        result.offset = file.vn_GetOffset();
        result.size = file.vn_GetSize();
        return result;
    }
    unsigned Pointer() { return SetFilePointer(file.h_GetHandle(), 0, nullptr, FILE_CURRENT); }
    void Close() { file.vv_Close(); }

private:
    CT_UString name;
    CT_WinFile file;
    bool lent;
};
} // namespace

TEST(WinFileQuiet, SeeksInTheViewAreThoseOfTheSystem)
{
    std::mt19937 random(Seed(1995));
    for (unsigned round = 0; round < 60 && !testing::Test::HasFailure(); ++round) {
        Worker quiet(u"a.bin", false);
        Worker lent(u"b.bin", true);
        for (unsigned step = 0; step < 50 && !testing::Test::HasFailure(); ++step) {
            const unsigned kind = static_cast<unsigned>(random() % 12);
            const unsigned number = static_cast<unsigned>(random());
            SCOPED_TRACE(testing::Message() << "round " << round << " step " << step << " kind "
                                            << kind << " number " << number);
            EXPECT_TRUE(quiet.Do(kind, number) == lent.Do(kind, number));
        }
        EXPECT_EQ(quiet.Pointer(), lent.Pointer());
        quiet.Close();
        lent.Close();
        EXPECT_TRUE(ReadBytes("a.bin") == ReadBytes("b.bin"));
    }
}

TEST(WinFileQuiet, WhoHasTheHandleSeesThePointerOfEachSeek)
{
    CT_UString name(Units(u"a.bin"));
    CT_WinFile file(&name, 1024);
    file.vv_Open(CT_File::e_AccessReadWrite, CT_File::e_OpenCreate, CT_File::e_ShareNone, 1, 0);
    const HANDLE handle = file.h_GetHandle();
    EXPECT_EQ(file.vn_Write("some bytes", 10), 10u);
    file.v_SetMapping(1, 300);
    EXPECT_EQ(SetFilePointer(handle, 0, nullptr, FILE_CURRENT), 10u);
    file.vv_SetOffset(CT_File::e_OriginBegin, 3);
    EXPECT_EQ(SetFilePointer(handle, 0, nullptr, FILE_CURRENT), 3u);
    file.vv_Close();
}

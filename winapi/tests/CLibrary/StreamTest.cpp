// winapi/tests/CLibrary/StreamTest.cpp: streams and files by name as the platform's C library has
// them.
#include "../Support/Calls.h"

#include "Support/Directory.h"

#include <io.h>
#include <sys/stat.h>

#include <cerrno>
#include <cstdio>
#include <filesystem>

// As in the library: names that the host's C library has too are asked for here.
namespace winapi::streams
{
using namespace std;
}
namespace streams = winapi::streams;
namespace fs = std::filesystem;

namespace
{
// A call's result, with its error number if it has failed.
struct Answer
{
    long long result;
    int error;
    bool operator==(const Answer&) const = default;
};

void PrintTo(const Answer& answer, std::ostream* out)
{
    *out << answer.result << ", errno " << answer.error;
}

constexpr Answer DONE = {0, 0};
constexpr Answer Failed(int error)
{
    return {-1, error};
}

template <class Call>
Answer Ask(Call call)
{
    errno = 0;
    const long long result = call();
    return {result, result < 0 ? errno : 0};
}

Answer TryOpen(const char* name, const char* mode)
{
    return Ask([=] {
        std::FILE* const stream = streams::fopen(name, mode);
        return stream ? streams::fclose(stream) : -1;
    });
}

Answer TryOpenWide(const std::u16string& name, const std::u16string& mode)
{
    return Ask([&] {
        std::FILE* const stream = _wfopen(Wide(name).c_str(), Wide(mode).c_str());
        return stream ? streams::fclose(stream) : -1;
    });
}

Answer Remove(const char* name)
{
    return Ask([=] { return streams::remove(name); });
}

Answer Rename(const char* from, const char* to)
{
    return Ask([=] { return streams::rename(from, to); });
}

Answer Chmod(const char* name, int mode)
{
    return Ask([=] { return _chmod(name, mode); });
}

Answer Stat(const char* name, struct _stat& facts)
{
    return Ask([&] { return _stat(name, &facts); });
}

class Stream
{
public:
    Stream(const char* name, const char* mode) : stream(streams::fopen(name, mode)) {}
    Stream(const Stream&) = delete;
    Stream& operator=(const Stream&) = delete;
    ~Stream()
    {
        if (stream)
            streams::fclose(stream);
    }
    operator std::FILE*() const { return stream; }

private:
    std::FILE* const stream;
};
} // namespace

TEST(Stream, ModesChooseWhatBecomesOfTheFile)
{
    const struct
    {
        const char* mode;
        Answer missing;
        const char* existing; // the contents behind the open; null where it fails
    } cases[] = {
        {"r", Failed(2), "abc"},     {"rb", Failed(2), "abc"},   {"r+", Failed(2), "abc"},
        {"rb+", Failed(2), "abc"},   {"r+bn", Failed(2), "abc"}, {"w", DONE, ""},
        {"wbn", DONE, ""},           {"w+bn", DONE, ""},         {"a", DONE, "abc"},
        {"abn", DONE, "abc"},        {"a+bn", DONE, "abc"},      {" r", Failed(2), "abc"},
        {"r b", Failed(2), "abc"},   {"rbc", Failed(2), "abc"},  {"wbS", DONE, ""},
        {"bn", Failed(22), nullptr}, {"", Failed(22), nullptr},  {"z", Failed(22), nullptr},
        {"+r", Failed(22), nullptr},
    };
    for (const auto& row : cases) {
        SCOPED_TRACE(row.mode);
        fs::remove("file");
        EXPECT_EQ(TryOpen("file", row.mode), row.missing);
        EXPECT_EQ(fs::exists("file"), row.missing == DONE);
        WriteBytes("file", "abc");
        EXPECT_EQ(TryOpen("file", row.mode), row.existing ? DONE : Failed(22));
        EXPECT_EQ(ReadBytes("file"), row.existing ? row.existing : "abc");
        const std::string mode = row.mode;
        EXPECT_EQ(TryOpenWide(u"file", std::u16string(mode.begin(), mode.end())),
                  row.existing ? DONE : Failed(22));
    }
}

TEST(Stream, NamesThatLeadNowhere)
{
    fs::create_directory("directory");
    WriteBytes("file", "abc");
    EXPECT_EQ(TryOpen("", "rb"), Failed(2));
    EXPECT_EQ(TryOpen("none", "rb"), Failed(2));
    EXPECT_EQ(TryOpen("none/none", "rb"), Failed(2));
    EXPECT_EQ(TryOpen("none\\none", "wb"), Failed(2));
    EXPECT_EQ(TryOpen("file/none", "rb"), Failed(2));
    EXPECT_EQ(TryOpen("directory", "rb"), Failed(13));
    EXPECT_EQ(TryOpen("directory", "wb"), Failed(13));
    EXPECT_EQ(TryOpen("directory/new", "wb"), DONE);
    EXPECT_EQ(TryOpen("directory\\new", "rb"), DONE);
    EXPECT_EQ(TryOpenWide(u"none", u"rb"), Failed(2));
    EXPECT_EQ(TryOpenWide(u"", u"wb"), Failed(2));
}

TEST(Stream, WideNamesAreUtf16)
{
    const std::u16string name = u"\u03B1\u6587\u05D0\U0001F600";
    EXPECT_EQ(TryOpenWide(name, u"wb"), DONE);
    EXPECT_TRUE(fs::exists(fs::path(name)));
    const std::u16string other = u"\u0427";
    EXPECT_EQ(Ask([&] { return _wrename(Wide(name).c_str(), Wide(other).c_str()); }), DONE);
    EXPECT_TRUE(fs::exists(fs::path(other)));
    struct _stat facts;
    EXPECT_EQ(Ask([&] { return _wstat(Wide(other).c_str(), &facts); }), DONE);
    EXPECT_EQ(Ask([&] { return _wstat(Wide(name).c_str(), &facts); }), Failed(2));
    EXPECT_EQ(Ask([&] { return _wchmod(Wide(other).c_str(), 0); }), DONE);
    EXPECT_EQ(Ask([&] { return _wremove(Wide(other).c_str()); }), Failed(13));
    EXPECT_EQ(Ask([&] { return _wchmod(Wide(other).c_str(), 0x80); }), DONE);
    EXPECT_EQ(Ask([&] { return _wremove(Wide(other).c_str()); }), DONE);
    EXPECT_FALSE(fs::exists(fs::path(other)));
}

TEST(Stream, SharesReadingAndWritingAlone)
{
    WriteBytes("file", "abc");
    {
        const Stream stream("file", "rb+");
        EXPECT_EQ(TryOpen("file", "rb+"), DONE);
        EXPECT_EQ(Remove("file"), Failed(13));
        EXPECT_EQ(Rename("file", "other"), Failed(13));
        EXPECT_EQ(::TryOpen("file", GENERIC_READ, FILE_SHARE_READ, OPEN_EXISTING), INVALID);
        EXPECT_EQ(
            ::TryOpen("file", GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, OPEN_EXISTING),
            OPENED);
    }
    {
        const File exclusive("file", GENERIC_READ, 0, OPEN_EXISTING);
        EXPECT_EQ(TryOpen("file", "rb"), Failed(13));
    }
    {
        const File reading("file", GENERIC_READ, FILE_SHARE_READ, OPEN_EXISTING);
        EXPECT_EQ(TryOpen("file", "rb"), DONE);
        EXPECT_EQ(TryOpen("file", "rb+"), Failed(13));
        EXPECT_EQ(TryOpen("file", "wb"), Failed(13));
    }
    EXPECT_EQ(ReadBytes("file"), "abc");
    EXPECT_EQ(Remove("file"), DONE);
}

// Below 128 bytes a C library may write the first piece past the buffer.
TEST(Stream, BuffersHaveTheSizeThatIsAskedFor)
{
    for (const unsigned size : {128u, 1000u, 4096u, 100000u}) {
        SCOPED_TRACE(size);
        const Stream stream("file", "wb");
        EXPECT_EQ(Ask([&] { return streams::setvbuf(stream, nullptr, _IOFBF, size); }), DONE);
        const std::string text(size - 1, 'x');
        EXPECT_EQ(std::fwrite(text.data(), 1, text.size(), stream), text.size());
        EXPECT_EQ(fs::file_size("file"), 0u);
        EXPECT_EQ(_ftelli64(stream), size - 1);
        EXPECT_EQ(std::fflush(stream), 0);
        EXPECT_EQ(fs::file_size("file"), size - 1);
    }
    const Stream stream("file", "rb");
    for (const std::size_t size : {std::size_t(0), std::size_t(1), std::size_t(0x80000000)}) {
        SCOPED_TRACE(size);
        EXPECT_EQ(Ask([&] { return streams::setvbuf(stream, nullptr, _IOFBF, size); }), Failed(22));
    }
    EXPECT_EQ(Ask([&] { return streams::setvbuf(stream, nullptr, _IONBF, 0); }), DONE);
}

TEST(Stream, ABufferIsReplacedBeforeItIsUsed)
{
    const Stream stream("file", "wb");
    EXPECT_EQ(streams::setvbuf(stream, nullptr, _IOFBF, 2000), 0);
    EXPECT_EQ(streams::setvbuf(stream, nullptr, _IOFBF, 4000), 0);
    const std::string text(3000, 'x');
    EXPECT_EQ(std::fwrite(text.data(), 1, text.size(), stream), text.size());
    EXPECT_EQ(fs::file_size("file"), 0u);
}

TEST(Stream, AnAppendWritesAtTheEnd)
{
    WriteBytes("file", "abc");
    {
        const Stream stream("file", "a+b");
        EXPECT_EQ(std::fseek(stream, 0, SEEK_SET), 0);
        EXPECT_EQ(std::fgetc(stream), 'a');
        EXPECT_EQ(std::fseek(stream, 1, SEEK_SET), 0);
        EXPECT_EQ(std::fwrite("de", 1, 2, stream), 2u);
        EXPECT_EQ(std::fflush(stream), 0);
        EXPECT_EQ(_ftelli64(stream), 5);
    }
    EXPECT_EQ(ReadBytes("file"), "abcde");
}

TEST(Stream, PlacesHave64Bits)
{
    {
        const Stream stream("file", "w+b");
        EXPECT_EQ(_fseeki64(stream, 0x180000000, SEEK_SET), 0);
        EXPECT_EQ(_ftelli64(stream), 0x180000000);
        EXPECT_EQ(std::fwrite("x", 1, 1, stream), 1u);
        EXPECT_EQ(std::fseek(stream, 0, SEEK_END), 0);
        EXPECT_EQ(_ftelli64(stream), 0x180000001);
        EXPECT_EQ(_fseeki64(stream, -0x100000000, SEEK_CUR), 0);
        EXPECT_EQ(_ftelli64(stream), 0x80000001);
        EXPECT_EQ(Ask([&] { return _fseeki64(stream, -1, SEEK_SET); }), Failed(22));
    }
    EXPECT_EQ(fs::file_size("file"), 0x180000001u);
}

TEST(Stream, RemovingAndRenaming)
{
    fs::create_directory("directory");
    WriteBytes("file", "abc");
    WriteBytes("other", "def");
    EXPECT_EQ(Remove("none"), Failed(2));
    EXPECT_EQ(Remove("none/none"), Failed(2));
    EXPECT_EQ(Remove(""), Failed(2));
    EXPECT_EQ(Remove("directory"), Failed(13));
    EXPECT_EQ(Rename("file", "other"), Failed(17));
    EXPECT_EQ(Rename("file", "directory"), Failed(17));
    EXPECT_EQ(Rename("none", "new"), Failed(2));
    EXPECT_EQ(Rename("file", "none/new"), Failed(2));
    EXPECT_EQ(Rename("directory", "renamed"), DONE);
    EXPECT_EQ(Rename("file", "renamed\\new"), DONE);
    EXPECT_EQ(ReadBytes("renamed/new"), "abc");
    EXPECT_EQ(ReadBytes("other"), "def");
    EXPECT_EQ(Remove("other"), DONE);
    EXPECT_EQ(Remove("other"), Failed(2));
}

TEST(Stream, OneBitOfAModeCounts)
{
    WriteBytes("file", "abc");
    for (const int mode : {0, 0x100, 0x7F, 0x1FF & ~0x80}) {
        SCOPED_TRACE(mode);
        EXPECT_EQ(Chmod("file", mode), DONE);
        EXPECT_EQ(GetFileAttributesA("file") & FILE_ATTRIBUTE_READONLY, FILE_ATTRIBUTE_READONLY);
        EXPECT_EQ(Remove("file"), Failed(13));
        EXPECT_EQ(Chmod("file", mode | 0x80), DONE);
        EXPECT_EQ(GetFileAttributesA("file") & FILE_ATTRIBUTE_READONLY, 0u);
        EXPECT_EQ(TryOpen("file", "rb+"), DONE);
    }
    EXPECT_EQ(Chmod("none", 0), Failed(2));
    EXPECT_EQ(Chmod("none/none", 0), Failed(2));
    EXPECT_EQ(Chmod("", 0), Failed(2));
    // The platform lets the superuser write all the same.
    Chmod("file", 0);
    if (HOST_PATHS) {
        EXPECT_EQ(TryOpen("file", "rb+"), Failed(13));
    }
    EXPECT_EQ(TryOpen("file", "rb"), DONE);
    EXPECT_EQ(Chmod("file", 0x80), DONE);
}

TEST(Stream, FactsByName)
{
    fs::create_directory("directory");
    WriteBytes("file", "abc");
    struct _stat facts = {};
    EXPECT_EQ(Stat("file", facts), DONE);
    EXPECT_EQ(facts.st_mode & 0xF180u, 0x8180u);
    EXPECT_EQ(facts.st_size, 3);
    EXPECT_EQ(facts.st_nlink, 1u);
    EXPECT_GT(facts.st_mtime, 1700000000);
    EXPECT_EQ(Stat("directory", facts), DONE);
    EXPECT_EQ(facts.st_mode & 0xF000u, 0x4000u);
    EXPECT_EQ(Stat("none", facts), Failed(2));
    EXPECT_EQ(Stat("none/none", facts), Failed(2));
    EXPECT_EQ(Stat("", facts), Failed(2));
    Chmod("file", 0);
    EXPECT_EQ(Stat("file", facts), DONE);
    EXPECT_EQ(facts.st_mode & 0xF180u, 0x8100u);
    Chmod("file", 0x80);
}

TEST(Stream, WritingToAReaderIsAnError)
{
    WriteBytes("file", "abc");
    const Stream stream("file", "rb");
    errno = 0;
    EXPECT_EQ(std::fwrite("x", 1, 1, stream), 0u);
    EXPECT_EQ(errno, 9);
    EXPECT_NE(std::ferror(stream), 0);
}

// winapi/tests/native/Profile/ProfileHostTest.cpp: profile files on this host: links, owners, modes, its failures,
// and where the files lie that have no directory.
#include "../../Support/Calls.h"
#include "../../Support/Replace.h"

#include "Base/HostVariables.h"
#include "Files/OpenFile.h"
#include "Profile/ProfileText.h"
#include "Support/ChildProcess.h"
#include "Support/Directory.h"

#include <chrono>
#include <filesystem>

#include <sys/stat.h>
#include <unistd.h>

namespace fs = std::filesystem;

namespace
{
const std::string OLD = "[s]\r\nk=old\r\n";
const std::string NEW = "[s]\r\nk=new\r\n";

BOOL Write(const char* value, const char* file = "./p.ini")
{
    return WritePrivateProfileStringA("s", "k", value, file);
}

std::string Value(const char* file, const char* key = "k")
{
    char value[5000] = "";
    GetPrivateProfileStringA("s", key, "(none)", value, sizeof value, file);
    return value;
}

unsigned Entries(const fs::path& directory = ".")
{
    return static_cast<unsigned>(
        std::distance(fs::directory_iterator(directory), fs::directory_iterator()));
}

mode_t ModeOf(const char* path)
{
    struct stat facts = {};
    stat(path, &facts);
    return facts.st_mode & 07777;
}

ino_t NumberOf(const char* path)
{
    struct stat facts = {};
    stat(path, &facts);
    return facts.st_ino;
}

// The host's variables for the life of a scope.
class Variables
{
public:
    Variables(const char* data, const char* home)
    {
        Set("XDG_DATA_HOME", data, oldData);
        Set("HOME", home, oldHome);
    }
    ~Variables()
    {
        winapi::SetHostVariable("XDG_DATA_HOME", oldData ? oldData->c_str() : nullptr);
        winapi::SetHostVariable("HOME", oldHome ? oldHome->c_str() : nullptr);
    }

private:
    static void Set(const char* name, const char* value, std::optional<std::string>& old)
    {
        old = winapi::HostVariable(name);
        winapi::SetHostVariable(name, value);
    }

    std::optional<std::string> oldData;
    std::optional<std::string> oldHome;
};

bool IsBeside(const char* path)
{
    return std::string_view(path).ends_with(".new");
}

int UnableToCreateBeside(const char* path, int flags, mode_t mode)
{
    if (!IsBeside(path))
        return open(path, flags | O_CLOEXEC, mode);
    errno = EACCES;
    return -1;
}

int UnableToGive(int, uid_t, gid_t)
{
    errno = EPERM;
    return -1;
}

uid_t ownerAsked;
int GiveAll(int, uid_t owner, gid_t)
{
    ownerAsked = owner;
    return 0;
}

// Every file but those that the process made just now belongs to another user.
int OfAnother(int fd, struct stat* facts)
{
    const int result = fstat(fd, facts);
    const std::string link = "/proc/self/fd/" + std::to_string(fd);
    if (!fs::read_symlink(link).string().ends_with(".new"))
        facts->st_uid = 4711;
    return result;
}

ssize_t FullDisk(int fd, const void* data, size_t size, off_t offset)
{
    if (offset < 4)
        return pwrite(fd, data, std::min<size_t>(size, 4), offset);
    errno = ENOSPC;
    return -1;
}

int NoRoom(int, off_t, off_t)
{
    return ENOSPC;
}

int FailingRename(const char*, const char*)
{
    errno = EIO;
    return -1;
}

int FailingFlush(int)
{
    errno = EIO;
    return -1;
}

int FarClock(clockid_t, struct timespec* now)
{
    static time_t seconds = 0;
    *now = {seconds += 4, 0};
    return 0;
}

ssize_t NoList(int, const char*, void*, size_t)
{
    errno = ERANGE;
    return -1;
}
} // namespace

TEST(ProfileHost, ASymbolicLinkStaysAndItsTargetIsWritten)
{
    fs::create_directory("far");
    WriteBytes("far/real.ini", OLD);
    fs::create_symlink("far/second.ini", "p.ini");
    fs::create_symlink("real.ini", "far/second.ini");
    EXPECT_TRUE(Write("new"));
    EXPECT_TRUE(fs::is_symlink("p.ini"));
    EXPECT_TRUE(fs::is_symlink("far/second.ini"));
    EXPECT_FALSE(fs::is_symlink("far/real.ini"));
    EXPECT_EQ(ReadBytes("far/real.ini"), NEW);
    EXPECT_EQ(Entries("far"), 2U);
}

TEST(ProfileHost, ALinkToAFileThatIsMissingMakesIt)
{
    fs::create_symlink(fs::absolute("target.ini"), "p.ini");
    EXPECT_TRUE(Write("new"));
    EXPECT_TRUE(fs::is_symlink("p.ini"));
    EXPECT_EQ(ReadBytes("target.ini"), NEW);
}

TEST(ProfileHost, LinksInACircleAreRefused)
{
    fs::create_symlink("q.ini", "p.ini");
    fs::create_symlink("p.ini", "q.ini");
    EXPECT_FALSE(Write("new"));
    EXPECT_EQ(Entries(), 2U);
}

TEST(ProfileHost, TheModeStays)
{
    for (const mode_t mode : {0600, 0640, 0664, 0666, 0700}) {
        WriteBytes("p.ini", OLD);
        chmod("p.ini", mode);
        EXPECT_TRUE(Write("new"));
        EXPECT_EQ(ModeOf("p.ini"), mode);
        EXPECT_EQ(ReadBytes("p.ini"), NEW);
        fs::remove("p.ini");
    }
}

TEST(ProfileHost, ANewFileHasTheModeOfAnyNewFile)
{
    const mode_t mask = umask(027);
    EXPECT_TRUE(Write("new"));
    umask(mask);
    EXPECT_EQ(ModeOf("p.ini"), mode_t{0640});
}

TEST(ProfileHost, TheFileIsReplacedAndNotWrittenInto)
{
    WriteBytes("p.ini", OLD);
    fs::create_hard_link("p.ini", "before.ini");
    EXPECT_TRUE(Write("new"));
    EXPECT_EQ(ReadBytes("before.ini"), OLD);
    EXPECT_EQ(ReadBytes("p.ini"), NEW);
    EXPECT_EQ(Entries(), 2U);
}

TEST(ProfileHost, TheOwnerIsGivenToTheNewFile)
{
    WriteBytes("p.ini", OLD);
    const Replace facts(posix.fstat, OfAnother);
    const Replace giving(posix.fchown, GiveAll);
    ownerAsked = 0;
    EXPECT_TRUE(Write("new"));
    EXPECT_EQ(ownerAsked, uid_t{4711});
    EXPECT_EQ(ReadBytes("p.ini"), NEW);
}

TEST(ProfileHost, AnotherUsersFileIsWrittenInPlace)
{
    WriteBytes("p.ini", OLD + "more=1\r\n");
    const ino_t number = NumberOf("./p.ini");
    const Replace facts(posix.fstat, OfAnother);
    const Replace giving(posix.fchown, UnableToGive);
    EXPECT_TRUE(Write("new"));
    EXPECT_TRUE(Write("something longer than before"));
    EXPECT_EQ(NumberOf("./p.ini"), number);
    EXPECT_EQ(ReadBytes("p.ini"), "[s]\r\nk=something longer than before\r\nmore=1\r\n");
    EXPECT_TRUE(Write("x"));
    EXPECT_EQ(ReadBytes("p.ini"), "[s]\r\nk=x\r\nmore=1\r\n");
    EXPECT_EQ(Entries(), 1U);
}

TEST(ProfileHost, WhereNothingCanLieBesideItAFileIsWrittenInPlace)
{
    WriteBytes("p.ini", OLD);
    const ino_t number = NumberOf("./p.ini");
    {
        const Replace opening(posix.open, UnableToCreateBeside);
        EXPECT_TRUE(Write("new"));
    }
    EXPECT_EQ(NumberOf("./p.ini"), number);
    EXPECT_EQ(ReadBytes("p.ini"), NEW);
    // No name can be longer than this one.
    const std::string longest = "./" + std::string(250, 'n') + ".ini";
    EXPECT_TRUE(Write("new", longest.c_str()));
    EXPECT_EQ(ReadBytes(longest), NEW);
}

TEST(ProfileHost, AnAccessListThatCannotBeKeptIsNotLost)
{
    WriteBytes("p.ini", OLD);
    const ino_t number = NumberOf("./p.ini");
    const Replace list(posix.fgetxattr, NoList);
    EXPECT_TRUE(Write("new"));
    EXPECT_EQ(NumberOf("./p.ini"), number);
    EXPECT_EQ(ReadBytes("p.ini"), NEW);
}

TEST(ProfileHost, AFullDiskLeavesTheOldText)
{
    WriteBytes("p.ini", OLD);
    {
        const Replace writing(posix.pwrite, FullDisk);
        EXPECT_FALSE(Write("new"));
        EXPECT_EQ(GetLastError(), DWORD(ERROR_DISK_FULL));
        EXPECT_FALSE(Write("new", "./second.ini"));
        EXPECT_EQ(GetLastError(), DWORD(ERROR_DISK_FULL));
    }
    EXPECT_EQ(ReadBytes("p.ini"), OLD);
    EXPECT_EQ(Entries(), 1U);
    const Replace opening(posix.open, UnableToCreateBeside);
    const Replace room(posix.posix_fallocate, NoRoom);
    EXPECT_FALSE(Write("something longer"));
    EXPECT_EQ(GetLastError(), DWORD(ERROR_DISK_FULL));
    EXPECT_EQ(ReadBytes("p.ini"), OLD);
}

TEST(ProfileHost, AFailureOfTheLastStepsLeavesTheOldText)
{
    WriteBytes("p.ini", OLD);
    {
        const Replace renaming(posix.rename, FailingRename);
        EXPECT_FALSE(Write("new"));
        EXPECT_EQ(GetLastError(), 1117U);
    }
    {
        const Replace flushing(posix.fsync, FailingFlush);
        EXPECT_FALSE(Write("new"));
        EXPECT_EQ(GetLastError(), 1117U);
    }
    EXPECT_EQ(ReadBytes("p.ini"), OLD);
    EXPECT_EQ(Entries(), 1U);
}

TEST(ProfileHost, WhatAKilledRunLeftIsUsedUp)
{
    WriteBytes("p.ini", OLD);
    WriteBytes(".p.ini.new", std::string(10000, 'x'));
    EXPECT_TRUE(Write("new"));
    EXPECT_EQ(ReadBytes("p.ini"), NEW);
    EXPECT_EQ(Entries(), 1U);
    // It isn't followed where somebody laid a link instead.
    WriteBytes("other", "precious");
    fs::create_symlink("other", ".p.ini.new");
    EXPECT_TRUE(Write("newer"));
    EXPECT_EQ(ReadBytes("other"), "precious");
    EXPECT_EQ(Entries(), 2U);
}

TEST(ProfileHost, NobodyWaitsForEver)
{
    WriteBytes("p.ini", OLD);
    winapi::HeldFile other;
    ASSERT_EQ(winapi::OpenHeld({.path = "p.ini",
                                .rights = winapi::RIGHT_READ | winapi::RIGHT_WRITE,
                                .shares = winapi::RIGHTS_ALL,
                                .disposition = OPEN_EXISTING},
                               other),
              0U);
    ASSERT_EQ(winapi::TakeTurn(other.ForLocks(), winapi::Turn::REWRITING, false), 0U);
    const Replace clock(posix.clock_gettime, FarClock);
    EXPECT_FALSE(Write("new"));
    EXPECT_EQ(GetLastError(), DWORD(ERROR_SHARING_VIOLATION));
    EXPECT_EQ(ReadBytes("p.ini"), OLD);
    EXPECT_EQ(Value("./p.ini"), "old");
}

TEST(ProfileHost, PipesAndDevicesAreNoProfiles)
{
    mkfifo("pipe", 0600);
    for (const char* name : {"./pipe", "/dev/null", "/dev/zero", "."}) {
        SetLastError(0);
        EXPECT_EQ(Value(name[0] == '.' && !name[1] ? "./" : name), "(none)") << name;
        EXPECT_EQ(GetLastError(), DWORD(ERROR_ACCESS_DENIED)) << name;
        EXPECT_FALSE(Write("new", name[0] == '.' && !name[1] ? "./" : name));
        EXPECT_EQ(GetLastError(), DWORD(ERROR_ACCESS_DENIED)) << name;
    }
}

TEST(ProfileHost, AFileOfMoreThan256MegabytesIsNoProfile)
{
    constexpr std::uintmax_t LARGEST = std::uintmax_t{256} << 20;
    WriteBytes("p.ini", OLD);
    fs::resize_file("p.ini", LARGEST + 1);
    EXPECT_EQ(Value("./p.ini"), "(none)");
    EXPECT_EQ(GetLastError(), DWORD(ERROR_NOT_ENOUGH_MEMORY));
    EXPECT_FALSE(Write("new"));
    EXPECT_EQ(GetLastError(), DWORD(ERROR_NOT_ENOUGH_MEMORY));
    EXPECT_EQ(fs::file_size("p.ini"), LARGEST + 1);
    EXPECT_EQ(Entries(), 1U);
}

TEST(ProfileHost, FileNamesAreOfEveryScript)
{
    const char16_t* const names[] = {u"./\u00E4\u00F6.ini", u"./\u0416\u0424.ini",
                                     u"./\u4E2D\u6587.ini", u"./\u05D0\u0628.ini",
                                     u"./\U0001F600.ini",   u"./a b?*:.ini"};
    for (const char16_t* name : names) {
        EXPECT_TRUE(WritePrivateProfileStringW(Wide(u"s").c_str(), Wide(u"k").c_str(),
                                               Wide(u"v").c_str(), Wide(name).c_str()));
        WCHAR value[5] = {};
        EXPECT_EQ(GetPrivateProfileStringW(Wide(u"s").c_str(), Wide(u"k").c_str(), nullptr, value,
                                           5, Wide(name).c_str()),
                  1U);
    }
    EXPECT_EQ(Entries(), std::size(names));
    const WideString broken = {'.', '/', 0xD800, 0};
    EXPECT_FALSE(
        WritePrivateProfileStringW(broken.c_str(), broken.c_str(), broken.c_str(), broken.c_str()));
    EXPECT_EQ(GetLastError(), DWORD(ERROR_INVALID_NAME));
}

TEST(ProfileHost, BytesThatAreNoTextSurviveAWriting)
{
    WriteBytes("p.ini", "\xEF\xBB\xBF[s]\nbad=\xFF\xC3\xE4\xB8\nk=old\n[\xED\xA0\x80]\n");
    EXPECT_TRUE(Write("new"));
    EXPECT_EQ(ReadBytes("p.ini"),
              "\xEF\xBB\xBF[s]\r\nbad=\xFF\xC3\xE4\xB8\r\nk=new\r\n[\xED\xA0\x80]\r\n");
    WriteBytes("p.ini", std::string("[s]\nz=a\0b\nk=old\n", 16));
    EXPECT_TRUE(Write("new"));
    EXPECT_EQ(ReadBytes("p.ini"), std::string("[s]\r\nz=a\0b\r\nk=new\r\n", 19));
}

TEST(ProfileHost, BytesOfAMarkBehindABlankAreNoneAfterAWriting)
{
    for (const std::string mark : {"\xFF\xFE", "\xFE\xFF", "\xEF\xBB\xBF"}) {
        WriteBytes("p.ini", " " + mark + "=1\r\n[s]\r\n");
        ASSERT_TRUE(Write("new"));
        EXPECT_EQ(ReadBytes("p.ini"), "\r\n" + mark + "=1\r\n[s]\r\nk=new\r\n");
        EXPECT_EQ(Value("./p.ini"), "new");
    }
}

TEST(ProfileHost, ASectionWithoutANameKeepsItsLine)
{
    WriteBytes("p.ini", "[s]\nk=old\n[ ]\nx=1\n");
    EXPECT_TRUE(Write("new"));
    EXPECT_EQ(ReadBytes("p.ini"), "[s]\r\nk=new\r\n[]\r\nx=1\r\n");
}

TEST(ProfileHost, TextIsCutBeforeACharacterThatHasNoRoom)
{
    using winapi::CutToFit;
    constexpr UINT JAPANESE = 932;
    const std::string text = "a\xC3\xA4\xE4\xB8\xAD\xF0\x9F\x98\x80z";
    const std::size_t fits[] = {0, 1, 1, 3, 3, 3, 6, 6, 6, 6, 10, 11, 11};
    for (std::size_t room = 0; room < std::size(fits); ++room)
        EXPECT_EQ(CutToFit(text, room, CP_UTF8).size(), fits[room]) << room;
    EXPECT_EQ(CutToFit("\x83]\x83]x", 3, JAPANESE).size(), 2U);
    EXPECT_EQ(CutToFit("\x83]\x83]x", 4, JAPANESE).size(), 4U);
    EXPECT_EQ(CutToFit("\x80\x80\x80", 2, 1252).size(), 2U);
    EXPECT_LE(CutToFit("\x80\x80\x80\x80", 2, CP_UTF8).size(), 2U);
}

TEST(ProfileHost, ASecondByteIsNoBracket)
{
    constexpr UINT JAPANESE = 932;
    const winapi::ProfileText<char> text("[\x83]\nk=1\n[\x83]\x83]]\nk=2\n", JAPANESE);
    EXPECT_EQ(text.Sections(), std::string("\x83]\x83]\0", 5));
    const WideString name = Wide(u"\u30BE\u30BE");
    const auto value = text.Find(winapi::WantedName(name), winapi::WantedName(Wide("k")));
    ASSERT_TRUE(value.has_value());
    EXPECT_EQ(*value, "2");
}

TEST(ProfileHost, ABareNameLiesInTheDataDirectory)
{
    const std::string here = fs::current_path();
    {
        const Variables variables((here + "/data").c_str(), "/none");
        EXPECT_EQ(Value("bare.ini"), "(none)");
        EXPECT_EQ(GetLastError(), DWORD(ERROR_PATH_NOT_FOUND));
        EXPECT_TRUE(WritePrivateProfileStringA("s", "k", nullptr, "./other.ini"));
        EXPECT_EQ(Entries(), 0U);
        EXPECT_TRUE(Write("new", "bare.ini"));
        EXPECT_TRUE(Write("win", nullptr));
        EXPECT_EQ(Value("BARE.ini"), "(none)");
        EXPECT_EQ(Value("bare.ini"), "new");
        EXPECT_EQ(ReadBytes("data/ostra-winapi/windows/bare.ini"), NEW);
        EXPECT_EQ(ReadBytes("data/ostra-winapi/windows/win.ini"), "[s]\r\nk=win\r\n");
        EXPECT_EQ(ModeOf("data/ostra-winapi"), mode_t{0700});
        EXPECT_EQ(ModeOf("data/ostra-winapi/windows"), mode_t{0700});
    }
    for (const char* none : {static_cast<const char*>(nullptr), "", "relative"}) {
        const Variables variables(none, (here + "/home").c_str());
        EXPECT_FALSE(Write("new", "bare.ini"));
        EXPECT_EQ(GetLastError(), DWORD(ERROR_PATH_NOT_FOUND));
        EXPECT_FALSE(fs::exists("home"));
        fs::create_directory("home");
        EXPECT_TRUE(Write("new", "bare.ini"));
        EXPECT_EQ(ReadBytes("home/.local/share/ostra-winapi/windows/bare.ini"), NEW);
        fs::remove_all("home");
    }
}

TEST(ProfileHost, WithoutAHomeABareNameLeadsNowhere)
{
    for (const char* none : {static_cast<const char*>(nullptr), "", "relative"}) {
        const Variables variables(none, none);
        SetLastError(0);
        EXPECT_EQ(Value("bare.ini"), "(none)");
        EXPECT_EQ(GetLastError(), DWORD(ERROR_PATH_NOT_FOUND));
        SetLastError(0);
        EXPECT_FALSE(Write("new", "bare.ini"));
        EXPECT_EQ(GetLastError(), DWORD(ERROR_PATH_NOT_FOUND));
    }
    WriteBytes("file", "x");
    const Variables variables((fs::current_path().string() + "/file").c_str(), nullptr);
    EXPECT_FALSE(Write("new", "bare.ini"));
    EXPECT_EQ(GetLastError(), DWORD(ERROR_PATH_NOT_FOUND));
    EXPECT_EQ(Entries(), 1U);
}

TEST(ProfileHost, ADirectoryOfNobodysIsRefused)
{
    const Variables variables("/proc/none", nullptr);
    EXPECT_FALSE(Write("new", "bare.ini"));
    EXPECT_NE(GetLastError(), 0U);
}

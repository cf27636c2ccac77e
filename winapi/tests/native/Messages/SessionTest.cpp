// winapi/tests/native/Messages/SessionTest.cpp: the session's folder, and what processes leave there.
#include "../../Messages/MessageTools.h"
#include "../../Support/Calls.h"
#include "../../Support/Replace.h"

#include "Messages/Exchange.h"

#include "Support/ChildProcess.h"

#include <atomic>
#include <chrono>
#include <filesystem>
#include <thread>

#include <fcntl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

namespace fs = std::filesystem;

namespace
{
LRESULT Plain(HWND window, UINT message, WPARAM first, LPARAM second)
{
    return DefWindowProcA(window, message, first, second);
}

// A session of the children's own, for the life of a scope.
class OwnSession
{
public:
    explicit OwnSession(const fs::path& place) : before(getenv("XDG_RUNTIME_DIR"))
    {
        fs::create_directories(place);
        setenv("XDG_RUNTIME_DIR", place.c_str(), 1);
    }
    ~OwnSession() { setenv("XDG_RUNTIME_DIR", before.c_str(), 1); }

private:
    const std::string before;
};

std::vector<std::string> FilesIn(const fs::path& folder)
{
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(folder))
        names.push_back(entry.path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
}

// The folder without the database's own files.
std::size_t LeftIn(const fs::path& folder)
{
    std::size_t count = 0;
    for (const std::string& name : FilesIn(folder))
        count += !name.starts_with("session.db");
    return count;
}

int Outcome(const std::string& child, const ChildProcess::Arguments& arguments = {})
{
    return ChildProcess(child, arguments).Wait();
}
} // namespace

// 0, or the last error of the first thing that fails.
CHILD_PROCESS(SessionUser)
{
    const OwnClass kind("OstraSession", Plain);
    const HWND window = kind.Make();
    if (!window)
        return static_cast<int>(GetLastError());
    if (!GlobalAddAtomA("OstraSessionAtom"))
        return static_cast<int>(GetLastError());
    return 0;
}

CHILD_PROCESS(SessionIdler)
{
    return getenv("XDG_RUNTIME_DIR") &&
           fs::exists(fs::path(getenv("XDG_RUNTIME_DIR")) / "ostra-winapi");
}

// Holds a window, a socket and atoms until it is killed.
CHILD_PROCESS(SessionHolder)
{
    const OwnClass kind("OstraHolder", Plain);
    kind.Make();
    GlobalAddAtomA("OstraHeld");
    ChildLine("ready");
    PumpUntil(nullptr, WM_USER);
    return 0;
}

CHILD_PROCESS(SessionFinder)
{
    return (FindWindowA("OstraHolder", nullptr) ? 1 : 0) + (GlobalFindAtomA("OstraHeld") ? 2 : 0);
}

TEST(Session, NothingIsMadeBeforeTheFirstWindowOrAtom)
{
    const OwnSession session(fs::current_path() / "run");
    EXPECT_EQ(Outcome("SessionIdler"), 0);
    EXPECT_FALSE(fs::exists("run/ostra-winapi"));
    EXPECT_EQ(Outcome("SessionUser"), 0);
    struct stat facts = {};
    EXPECT_EQ(stat("run/ostra-winapi", &facts), 0);
    EXPECT_EQ(facts.st_mode & 07777, 0700U);
    EXPECT_EQ(FilesIn("run/ostra-winapi"), std::vector<std::string>{"session.db"});
    EXPECT_EQ(stat("run/ostra-winapi/session.db", &facts), 0);
    EXPECT_EQ(facts.st_mode & 07777, 0600U);
}

TEST(Session, AFolderThatIsNotTheUsersAloneIsRefused)
{
    const OwnSession session(fs::current_path() / "run");
    fs::create_directory("run/ostra-winapi");
    chmod("run/ostra-winapi", 0755);
    EXPECT_EQ(Outcome("SessionUser"), 5);
    chmod("run/ostra-winapi", 0700);
    EXPECT_EQ(Outcome("SessionUser"), 0);
    fs::remove_all("run/ostra-winapi");
    fs::create_directory("elsewhere");
    chmod("elsewhere", 0700);
    fs::create_directory_symlink(fs::current_path() / "elsewhere", "run/ostra-winapi");
    EXPECT_EQ(Outcome("SessionUser"), 5);
    EXPECT_TRUE(fs::is_empty("elsewhere"));
    fs::remove("run/ostra-winapi");
    if (geteuid() == 0) {
        fs::create_directory("run/ostra-winapi");
        chmod("run/ostra-winapi", 0700);
        EXPECT_EQ(chown("run/ostra-winapi", 65534, 65534), 0);
        EXPECT_EQ(Outcome("SessionUser"), 5);
    }
}

// ---- The folder in /tmp -------------------------------------------------------------------

// A user whom nobody else is; files of the real one pass for his.
namespace
{
uid_t stranger;
uid_t real;

uid_t Owner(uid_t owner)
{
    return owner == real ? stranger : owner;
}

int StatAsOwn(const char* path, struct stat* facts)
{
    const int result = ::stat(path, facts);
    facts->st_uid = Owner(facts->st_uid);
    return result;
}

int FstatAsOwn(int fd, struct stat* facts)
{
    const int result = ::fstat(fd, facts);
    facts->st_uid = Owner(facts->st_uid);
    return result;
}

int StatxAsOwn(int folder, const char* path, int flags, unsigned mask, struct statx* facts)
{
    const int result = ::statx(folder, path, flags, mask, facts);
    facts->stx_uid = Owner(facts->stx_uid);
    return result;
}

fs::path FolderInTmp(uid_t user)
{
    return fs::path("/tmp") / ("ostra-winapi-" + std::to_string(user));
}
} // namespace

// The user's number, whether files are his, and a variable, or none: 0, or the last error.
CHILD_PROCESS(SessionOfStranger)
{
    real = geteuid();
    stranger = static_cast<uid_t>(std::stoul(arguments[0]));
    if (arguments.size() > 2)
        setenv("XDG_RUNTIME_DIR", arguments[2].c_str(), 1);
    else
        unsetenv("XDG_RUNTIME_DIR");
    umask(0);
    posix.geteuid = [] {
        return stranger;
    };
    if (arguments[1] == "own") {
        posix.stat = StatAsOwn;
        posix.fstat = FstatAsOwn;
        posix.statx = StatxAsOwn;
    }
    return GlobalAddAtomA("OstraSessionAtom") ? 0 : static_cast<int>(GetLastError());
}

class SessionInTmp : public testing::Test
{
protected:
    SessionInTmp()
    {
        do
            user = 0x70000000U + static_cast<uid_t>(rand()) % 0x1000000U;
        while (fs::exists(fs::symlink_status(FolderInTmp(user))));
        folder = FolderInTmp(user);
    }
    ~SessionInTmp() override { fs::remove_all(folder); }

    int Enter(const std::string& whose, const ChildProcess::Arguments& more = {}) const
    {
        ChildProcess::Arguments arguments = {std::to_string(user), whose};
        arguments.insert(arguments.end(), more.begin(), more.end());
        return Outcome("SessionOfStranger", arguments);
    }

    uid_t user;
    fs::path folder;
};

TEST_F(SessionInTmp, IsMadeForTheUserAlone)
{
    EXPECT_EQ(Enter("own"), 0);
    struct stat facts = {};
    EXPECT_EQ(lstat(folder.c_str(), &facts), 0);
    EXPECT_EQ(facts.st_mode, S_IFDIR | 0700U);
    EXPECT_EQ(FilesIn(folder), std::vector<std::string>{"session.db"});
    EXPECT_EQ(Enter("own"), 0);
}

TEST_F(SessionInTmp, ServesWhereTheVariableNamesNoFolder)
{
    for (const char* value : {"", "relative", "/no such folder"}) {
        EXPECT_EQ(Enter("own", {value}), 0) << value;
        EXPECT_TRUE(fs::exists(folder)) << value;
        fs::remove_all(folder);
    }
    fs::create_directory("run");
    EXPECT_EQ(Enter("own", {(fs::current_path() / "run").string()}), 0);
    EXPECT_FALSE(fs::exists(folder));
}

TEST_F(SessionInTmp, OfSomebodyElseIsRefused)
{
    fs::create_directory(folder);
    chmod(folder.c_str(), 0700);
    EXPECT_EQ(Enter("foreign"), 5);
    EXPECT_TRUE(fs::is_empty(folder));
    EXPECT_EQ(Enter("own"), 0);
}

TEST_F(SessionInTmp, ThatOthersMayLookIntoIsRefused)
{
    fs::create_directory(folder);
    for (const unsigned mode : {0755U, 0701U, 0720U, 01700U}) {
        chmod(folder.c_str(), mode);
        EXPECT_EQ(Enter("own"), 5) << mode;
        EXPECT_TRUE(fs::is_empty(folder));
    }
}

TEST_F(SessionInTmp, ThatIsALinkOrAFileIsRefused)
{
    fs::create_directory("elsewhere");
    chmod("elsewhere", 0700);
    fs::create_directory_symlink(fs::current_path() / "elsewhere", folder);
    EXPECT_EQ(Enter("own"), 5);
    EXPECT_TRUE(fs::is_empty("elsewhere"));
    fs::remove(folder);
    fs::create_symlink("/no such place", folder);
    EXPECT_EQ(Enter("own"), 5);
    fs::remove(folder);
    fclose(fopen(folder.c_str(), "w"));
    EXPECT_EQ(Enter("own"), 5);
    EXPECT_TRUE(fs::is_regular_file(folder));
}

TEST(Session, AFolderOfAnyLengthWillDo)
{
    const fs::path folder =
        fs::current_path() / std::string(120, 'l') / std::string(120, 'o') / "ng";
    const OwnSession session(folder);
    ChildProcess child("SessionHolder");
    ASSERT_EQ(child.ReadLine(), "ready");
    EXPECT_EQ(Outcome("SessionFinder"), 3);
}

TEST(Session, AKilledProcessLeavesNothingBehindTheNextUse)
{
    const OwnSession session(fs::current_path() / "run");
    for (int round = 0; round < 3; ++round) {
        ChildProcess child("SessionHolder");
        ASSERT_EQ(child.ReadLine(), "ready");
        EXPECT_EQ(Outcome("SessionFinder"), 3);
        EXPECT_EQ(LeftIn("run/ostra-winapi"), 2U); // A mark and a socket.
        child.Kill();
        EXPECT_EQ(Outcome("SessionFinder"), 0);
        EXPECT_EQ(LeftIn("run/ostra-winapi"), 0U);
    }
}

TEST(Session, ADamagedDatabaseIsTold)
{
    const OwnSession session(fs::current_path() / "run");
    EXPECT_EQ(Outcome("SessionUser"), 0);
    std::FILE* const file = std::fopen("run/ostra-winapi/session.db", "w");
    std::fputs("something else", file);
    std::fclose(file);
    EXPECT_EQ(Outcome("SessionUser"), static_cast<int>(ERROR_BADDB & 0xFF));
}

// ---- Forks --------------------------------------------------------------------------------

TEST(Session, AForkedChildHasNoWindowsAndHoldsNone)
{
    const OwnClass kind("OstraFork", Plain);
    const HWND window = kind.Make();
    const pid_t child = fork();
    if (child == 0) {
        MSG message;
        bool right = !PeekMessageA(&message, window, 0, 0, PM_REMOVE);
        right = right && !DestroyWindow(window) && GetLastError() == ERROR_ACCESS_DENIED;
        const HWND own = MakeWindow("OstraFork");
        right = right && own && own != window && PostMessageA(window, WM_USER, 1, 2);
        right = right && PostMessageA(own, WM_USER, 0, 0) &&
                PeekMessageA(&message, own, 0, 0, PM_REMOVE);
        right = right && DestroyWindow(own);
        _exit(right ? 0 : 1);
    }
    int status = -1;
    waitpid(child, &status, 0);
    EXPECT_EQ(status, 0);
    const MSG message = PumpUntil(window, WM_USER);
    EXPECT_EQ(message.wParam, 1U);
    EXPECT_TRUE(DestroyWindow(window));
}

// A child that waits for what nobody gives back is ended.
int OutcomeOfFork(int (*body)())
{
    const pid_t child = fork();
    if (child == 0) {
        alarm(20);
        _exit(body());
    }
    int status = -1;
    waitpid(child, &status, 0);
    return status;
}

TEST(Session, AForkWaitsForBlocksAndLentCopies)
{
#ifdef __SANITIZE_ADDRESS__
    GTEST_SKIP() << "this sanitizer's heap doesn't survive a fork beside threads that use it";
#endif
    const OwnClass kind("OstraFork", Plain);
    const HWND window = kind.Make();
    std::atomic<bool> isOver = false;
    std::thread lender([&] {
        while (!isOver)
            winapi::FreeLent(nullptr);
    });
    std::thread owner([&] {
        while (!isOver)
            GlobalFree(GlobalAlloc(GMEM_MOVEABLE, 1));
    });
    const HGLOBAL block = GlobalAlloc(GMEM_MOVEABLE, 10);
    int status = 0;
    for (int i = 0; i < 100 && status == 0; ++i)
        status = OutcomeOfFork([] {
            winapi::FreeLent(nullptr);
            return GlobalFree(GlobalAlloc(GMEM_MOVEABLE, 1)) == nullptr ? 0 : 1;
        });
    EXPECT_EQ(status, 0);
    isOver = true;
    lender.join();
    owner.join();
    EXPECT_EQ(GlobalFree(block), nullptr);
    EXPECT_TRUE(DestroyWindow(window));
}

TEST(Session, ManyProcessesEnterAtOnce)
{
    const OwnSession session(fs::current_path() / "run");
    std::vector<std::unique_ptr<ChildProcess>> children;
    for (int i = 0; i < 8; ++i)
        children.push_back(std::make_unique<ChildProcess>("SessionUser"));
    for (const auto& child : children)
        EXPECT_EQ(child->Wait(), 0);
    EXPECT_EQ(LeftIn("run/ostra-winapi"), 0U);
}

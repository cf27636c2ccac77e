// winapi/tests/native/Messages/WireTest.cpp: connections of strangers and records that are none.
#include "../../Messages/MessageTools.h"
#include "../../Support/Calls.h"
#include "../../Support/Replace.h"
#include "../Support/Heap.h"

#include "Base/Session.h"
#include "Messages/Queue.h"
#include "Messages/WindowRows.h"

#include <atomic>
#include <cstring>
#include <random>
#include <thread>

#include <sys/mman.h>
#include <sys/socket.h>
#include <unistd.h>

using namespace winapi;

namespace
{
std::atomic<unsigned> calls;

LRESULT Count(HWND window, UINT message, WPARAM first, LPARAM second)
{
    if (message >= WM_USER)
        ++calls;
    return DefWindowProcA(window, message, first, second);
}

Record Post(HWND window)
{
    Record record;
    record.kind = Record::POST;
    record.window = NumberOf(window);
    record.message = WM_USER;
    return record;
}

// A file in memory of zeros that takes no memory, sealed.
Descriptor Sparse(std::size_t size)
{
    Descriptor file(memfd_create("test", MFD_ALLOW_SEALING | MFD_CLOEXEC));
    EXPECT_EQ(ftruncate(file.Get(), static_cast<off_t>(size)), 0);
    const int seals = F_SEAL_SEAL | F_SEAL_SHRINK | F_SEAL_GROW | F_SEAL_WRITE;
    EXPECT_EQ(fcntl(file.Get(), F_ADD_SEALS, seals), 0);
    return file;
}

Record Data(HWND window, std::size_t size)
{
    Record record = Post(window);
    record.kind = Record::PARTS;
    record.message = WM_DDE_DATA;
    record.size = size;
    record.hasBlock = 1;
    return record;
}

class Wire : public testing::Test
{
protected:
    Wire()
    {
        calls = 0;
        EXPECT_EQ(FindSocket(window, socket), 0U);
    }
    ~Wire() override { DestroyWindow(window); }

    Descriptor Connection()
    {
        Descriptor made;
        EXPECT_EQ(Connect(socket, made), 0U);
        return made;
    }
    // Sends bytes as they are, perhaps with a descriptor.
    static void Send(const Descriptor& to, const void* data, std::size_t size, int file = -1)
    {
        iovec piece{const_cast<void*>(data), size};
        msghdr message = {};
        message.msg_iov = &piece;
        message.msg_iovlen = 1;
        alignas(cmsghdr) char room[CMSG_SPACE(sizeof(int))] = {};
        if (file >= 0) {
            message.msg_control = room;
            message.msg_controllen = sizeof room;
            cmsghdr* const head = CMSG_FIRSTHDR(&message);
            head->cmsg_level = SOL_SOCKET;
            head->cmsg_type = SCM_RIGHTS;
            head->cmsg_len = CMSG_LEN(sizeof file);
            std::memcpy(CMSG_DATA(head), &file, sizeof file);
        }
        EXPECT_EQ(sendmsg(to.Get(), &message, MSG_NOSIGNAL), static_cast<ssize_t>(size));
    }
    // Whether the other side has closed the connection without an answer.
    static bool IsDropped(const Descriptor& connection)
    {
        char byte;
        const ssize_t count = recv(connection.Get(), &byte, 1, MSG_DONTWAIT);
        return count == 0 || (count < 0 && errno == ECONNRESET);
    }
    bool Comes()
    {
        MSG message;
        return PeekMessageA(&message, window, 0, 0, PM_REMOVE);
    }
    void ExpectDropped(const void* data, std::size_t size, int file = -1)
    {
        const Descriptor connection = Connection();
        Send(connection, data, size, file);
        EXPECT_FALSE(Comes());
        EXPECT_TRUE(IsDropped(connection));
    }

    const OwnClass kind{"OstraWire", Count};
    const HWND window = MakeWindow("OstraWire");
    std::string socket;
};

int NoPeer(int, int, int, void* value, socklen_t*)
{
    *static_cast<ucred*>(value) = {1, posix.geteuid() + 1, 0};
    return 0;
}

int Full(int, const sockaddr*, socklen_t)
{
    errno = EAGAIN;
    return -1;
}

// Refuses everything by that error.
template <int ERROR>
int Refuse(int, int, int)
{
    errno = ERROR;
    return -1;
}

template <int ERROR>
int RefuseConnection(int, sockaddr*, socklen_t*, int)
{
    errno = ERROR;
    return -1;
}

// How long the polls were to wait that weren't a mere look.
std::vector<int> pauses;

int NotePause(pollfd* list, nfds_t count, int milliseconds)
{
    if (milliseconds)
        pauses.push_back(milliseconds);
    return ::poll(list, count, milliseconds);
}
} // namespace

TEST_F(Wire, WhatIsNoRecordIsDroppedWithoutAnAnswer)
{
    const Record right = Post(window);
    {
        const Descriptor connection = Connection();
        Send(connection, &right, sizeof right);
        EXPECT_TRUE(Comes());
    }
    for (std::size_t size = 1; size < sizeof right; size += 7)
        ExpectDropped(&right, size);
    std::string longer(sizeof right + 5, 'x');
    std::memcpy(longer.data(), &right, sizeof right);
    ExpectDropped(longer.data(), longer.size());
    std::string longest(sizeof right + MOST_INLINE + 1, 'x');
    std::memcpy(longest.data(), &right, sizeof right);
    ExpectDropped(longest.data(), longest.size());
    const auto wrong = [&](auto change) {
        Record record = right;
        change(record);
        ExpectDropped(&record, sizeof record);
    };
    wrong([](Record& record) { record.mark ^= 1; });
    wrong([](Record& record) { record.kind = 0; });
    wrong([](Record& record) { record.kind = 99; });
    wrong([](Record& record) { record.kind = Record::ANSWER; });
    wrong([](Record& record) { record.kind = Record::PARTS; });
    wrong([](Record& record) { record.size = 1, record.hasBlock = 1; });
    wrong([](Record& record) { record.size = 1; });
    wrong([](Record& record) { record.size = ~0ULL, record.hasBlock = 1; });
    wrong([](Record& record) { record.window += 12345; });
    EXPECT_TRUE(PostMessageA(window, WM_USER, 0, 0));
    EXPECT_TRUE(Comes());
}

TEST_F(Wire, AFileThatCouldChangeIsDropped)
{
    Record record = Data(window, MOST_INLINE + 1);
    const Descriptor open(memfd_create("test", MFD_ALLOW_SEALING | MFD_CLOEXEC));
    ASSERT_EQ(ftruncate(open.Get(), MOST_INLINE + 1), 0);
    ExpectDropped(&record, sizeof record, open.Get());
    ExpectDropped(&record, sizeof record);
    const int seals = F_SEAL_SEAL | F_SEAL_SHRINK | F_SEAL_GROW | F_SEAL_WRITE;
    ASSERT_EQ(fcntl(open.Get(), F_ADD_SEALS, seals), 0);
    ++record.size;
    ExpectDropped(&record, sizeof record, open.Get());
    --record.size;
    const Descriptor connection = Connection();
    Send(connection, &record, sizeof record, open.Get());
    EXPECT_TRUE(Comes());
}

TEST_F(Wire, AFileThatClaimsMoreThanMayComeIsDropped)
{
    for (const std::size_t size : {MOST_APART + 1, MOST_APART << 4, std::size_t(INT64_MAX)}) {
        SCOPED_TRACE(size);
        const Record record = Data(window, size);
        ExpectDropped(&record, sizeof record, Sparse(size).Get());
    }
    Record most = Data(window, MOST_APART);
    const Descriptor file = Sparse(MOST_APART);
    int pair[2];
    ASSERT_EQ(socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, pair), 0);
    const Descriptor from(pair[0]), to(pair[1]);
    Send(from, &most, sizeof most, file.Get());
    Letter letter;
    EXPECT_EQ(ReceiveLetter(to.Get(), letter), Arrival::LETTER);
    EXPECT_EQ(letter.contents.size(), MOST_APART);
    letter.contents.clear();
    ++letter.record.size;
    EXPECT_EQ(SendLetter(from.Get(), letter), 8U);
}

TEST_F(Wire, ALetterWithoutMemoryForItIsDropped)
{
    const Record record = Data(window, 3000000);
    const Descriptor file = Sparse(3000000);
    heap.largest = 2999999;
    ExpectDropped(&record, sizeof record, file.Get());
    heap.largest = SIZE_MAX;
    const Descriptor connection = Connection();
    Send(connection, &record, sizeof record, file.Get());
    EXPECT_TRUE(Comes());
}

TEST_F(Wire, RandomRecordsHarmNobody)
{
    std::mt19937 random(5);
    for (int round = 0; round < 3000; ++round) {
        Record record = Post(window);
        std::string bytes(sizeof record + (round % 3 ? 0 : random() % 40), '\0');
        record.kind = static_cast<std::uint32_t>(random() % 5);
        record.message = random() % 2 ? WM_DDE_FIRST + static_cast<UINT>(random() % 9) : WM_USER;
        record.size = random() % 2 ? bytes.size() - sizeof record : random() % 50;
        record.hasBlock = static_cast<std::uint32_t>(random() % 2);
        record.first = random();
        record.high = random();
        std::memcpy(bytes.data(), &record, sizeof record);
        if (random() % 2)
            bytes[random() % bytes.size()] ^= static_cast<char>(1 << random() % 8);
        const Descriptor connection = Connection();
        Send(connection, bytes.data(), bytes.size());
        MSG message;
        while (PeekMessageA(&message, window, 0, 0, PM_REMOVE)) {
            UINT_PTR low, high;
            UnpackDDElParam(message.message, message.lParam, &low, &high);
            FreeDDElParam(message.message, message.lParam);
        }
    }
    EXPECT_TRUE(PostMessageA(window, WM_USER, 0, 0));
    EXPECT_TRUE(Comes());
}

TEST_F(Wire, AConnectionWithoutARecordHoldsNobodyUp)
{
    std::vector<Descriptor> idle;
    for (int i = 0; i < 300; ++i)
        idle.push_back(Connection());
    std::thread sender([&] { EXPECT_EQ(SendMessageA(window, WM_USER, 0, 0), 0); });
    while (calls == 0)
        Comes();
    sender.join();
    EXPECT_EQ(calls, 1U);
    // Of too many the oldest are dropped.
    EXPECT_TRUE(IsDropped(idle.front()));
    EXPECT_FALSE(IsDropped(idle.back()));
}

TEST_F(Wire, AnotherUserIsRefusedOnBothSides)
{
    const Record right = Post(window);
    {
        const Descriptor connection = Connection();
        Send(connection, &right, sizeof right);
        const Replace other(posix.getsockopt, NoPeer);
        EXPECT_FALSE(Comes());
        EXPECT_TRUE(IsDropped(connection));
    }
    const Replace other(posix.getsockopt, NoPeer);
    std::thread sender([&] {
        SetLastError(0);
        EXPECT_FALSE(PostMessageA(window, WM_USER, 0, 0));
        EXPECT_EQ(GetLastError(), 1400U);
    });
    sender.join();
    EXPECT_FALSE(Comes());
}

TEST_F(Wire, ASocketThatIsGoneIsNoWindow)
{
    const std::string path = SessionFolder() + '/' + socket;
    EXPECT_EQ(rename(path.c_str(), (path + "x").c_str()), 0);
    std::thread sender([&] {
        SetLastError(0);
        EXPECT_FALSE(PostMessageA(window, WM_USER, 0, 0));
        EXPECT_EQ(GetLastError(), 1400U);
        SetLastError(0);
        EXPECT_EQ(SendMessageA(window, WM_USER, 0, 0), 0);
        EXPECT_EQ(GetLastError(), 1400U);
    });
    sender.join();
    EXPECT_EQ(rename((path + "x").c_str(), path.c_str()), 0);
}

TEST_F(Wire, ManyPostsWaitAndTooManyAreRefused)
{
    std::thread sender([&] {
        const Replace full(posix.connect, Full);
        SetLastError(0);
        EXPECT_FALSE(PostMessageA(window, WM_USER, 0, 0));
        EXPECT_EQ(GetLastError(), 1816U);
    });
    sender.join();
    std::thread many([&] {
        for (int i = 0; i < 3000; ++i)
            ASSERT_TRUE(PostMessageA(window, WM_USER, static_cast<WPARAM>(i), 0))
                << i << " " << GetLastError();
    });
    many.join();
    MSG message;
    for (WPARAM i = 0; i < 3000; ++i) {
        ASSERT_TRUE(PeekMessageA(&message, window, 0, 0, PM_REMOVE));
        ASSERT_EQ(message.wParam, i);
    }
    for (int i = 0; i < 10000; ++i)
        ASSERT_TRUE(PostMessageA(window, WM_USER, 0, 0));
    RunRows({CALL(PostMessageA(window, WM_USER, 0, 0), 0, 1816)});
    while (Comes()) {
    }
}

TEST_F(Wire, ABroadcastWaitsFiveSecondsForWhoIsSilent)
{
    std::atomic<bool> ready = false, over = false;
    std::thread silent([&] {
        const HWND deaf = MakeWindow("OstraWire");
        ready = true;
        while (!over)
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
        DestroyWindow(deaf);
    });
    while (!ready)
        std::this_thread::yield();
    const DWORD start = GetTickCount();
    RunRows({CALL(SendMessageA(HWND_BROADCAST, 0xC123, 0, 0), 1, 1460)});
    EXPECT_GE(GetTickCount() - start, 4900U);
    EXPECT_EQ(calls, 1U); // The one behind it was reached.
    over = true;
    silent.join();
}

TEST_F(Wire, HostsThatRefuseAreTold)
{
    std::thread sender([&] {
        const Replace none(posix.socket, Refuse<EMFILE>);
        RunRows({CALL(PostMessageA(window, WM_USER, 0, 0), 0, 4),
                 CALL(SendMessageA(window, WM_USER, 0, 0), 0, 4)});
        // A thread's first window needs a socket.
        RunRows({CALL(MakeWindow("OstraWire") != nullptr, 0, 4)});
    });
    sender.join();
    EXPECT_TRUE(PostMessageA(window, WM_USER, 0, 0));
    EXPECT_TRUE(Comes());
}

// The connection waits, so the listener has something all the time.
TEST_F(Wire, AThreadWithoutDescriptorsForAConnectionSleepsAndTimersKeepTheirTimes)
{
    const Record right = Post(window);
    const Descriptor connection = Connection();
    Send(connection, &right, sizeof right);
    for (const UINT period : {30U, 250U}) {
        const Replace none(posix.accept4, RefuseConnection<EMFILE>);
        const Replace noted(posix.poll, NotePause);
        pauses.clear();
        SetTimer(window, 1, period, nullptr);
        PumpUntil(window, WM_TIMER);
        KillTimer(window, 1);
        EXPECT_FALSE(pauses.empty());
        EXPECT_LT(pauses.size(), 20U);
        for (const int pause : pauses)
            EXPECT_LE(static_cast<unsigned>(pause), std::min(period, 100U));
    }
}

TEST_F(Wire, AConnectionThatCouldNotBeAcceptedComesWhenThereAreDescriptorsAgain)
{
    const Record right = Post(window);
    const Descriptor connection = Connection();
    Send(connection, &right, sizeof right);
    {
        const Replace none(posix.accept4, RefuseConnection<EMFILE>);
        EXPECT_FALSE(Comes());
    }
    WaitMessage();
    EXPECT_TRUE(Comes());
}

TEST_F(Wire, TooManyTimersWithoutAWindowAreRefused)
{
    std::vector<UINT_PTR> made;
    for (UINT_PTR timer = 1; timer && made.size() < 11000;)
        if ((timer = SetTimer(nullptr, 0, 1000000, nullptr)) != 0)
            made.push_back(timer);
    EXPECT_EQ(made.size(), 10000U);
    RunRows({CALL(SetTimer(nullptr, 0, 1000000, nullptr), 0, 1816)});
    for (const UINT_PTR timer : made)
        ASSERT_TRUE(KillTimer(nullptr, timer));
}

// fuzz/targets/native/wire.cpp: bytes as a record between two threads with windows. What is a record
// is a letter with those contents; anything else is broken, and nothing more.
//
// Input: a byte that tells how it is sent: as it stands, with a file beside it, the file sealed or
// not; the rest is the record with what comes along.
#include "Messages/Wire.h"

#include "Support/Input.h"

#include <cerrno>

#include <sys/mman.h>
#include <sys/socket.h>
#include <unistd.h>

namespace
{
constexpr int SEALS = F_SEAL_SEAL | F_SEAL_SHRINK | F_SEAL_GROW | F_SEAL_WRITE;
enum Switch : unsigned
{
    WITH_FILE = 1,
    SEALED = 2,
    TRUE_SIZE = 4, // of the contents
    TRUE_MARK = 8,
    BY_LETTER = 16, // by the one that sends, too
    AS_LONG = 32,   // the file has the size that is told
};

// A file in memory of those bytes, or with as many zeros.
winapi::Descriptor File(const std::string& bytes, std::uint64_t size, bool sealed)
{
    winapi::Descriptor file(memfd_create("fuzz", MFD_CLOEXEC | MFD_ALLOW_SEALING));
    REQUIRE(file);
    REQUIRE(write(file.Get(), bytes.data(), bytes.size()) == static_cast<ssize_t>(bytes.size()));
    if (size < 0x200000)
        REQUIRE(ftruncate(file.Get(), static_cast<off_t>(size)) == 0);
    if (sealed)
        REQUIRE(fcntl(file.Get(), F_ADD_SEALS, SEALS) == 0);
    return file;
}

void SendRaw(int connection, const std::string& bytes, const winapi::Descriptor& file)
{
    iovec piece = {const_cast<char*>(bytes.data()), bytes.size()};
    alignas(cmsghdr) char room[CMSG_SPACE(sizeof(int))] = {};
    msghdr message = {};
    message.msg_iov = &piece;
    message.msg_iovlen = 1;
    if (file) {
        message.msg_control = room;
        message.msg_controllen = sizeof room;
        cmsghdr* const head = CMSG_FIRSTHDR(&message);
        head->cmsg_level = SOL_SOCKET;
        head->cmsg_type = SCM_RIGHTS;
        head->cmsg_len = CMSG_LEN(sizeof(int));
        const int fd = file.Get();
        std::memcpy(CMSG_DATA(head), &fd, sizeof fd);
    }
    REQUIRE(sendmsg(connection, &message, MSG_NOSIGNAL) == static_cast<ssize_t>(bytes.size()));
}

// What goes out by the layer's own way comes back as it was.
void RequireSameLetter(int from, int to, const winapi::Letter& letter)
{
    REQUIRE(winapi::SendLetter(from, letter) == 0);
    winapi::Letter back;
    REQUIRE(winapi::ReceiveLetter(to, back) == winapi::Arrival::LETTER);
    REQUIRE(std::memcmp(&back.record, &letter.record, sizeof back.record) == 0);
    REQUIRE(back.contents == letter.contents);
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using winapi::Record;
    Input input(data, size);
    const unsigned switches = input.Byte();
    std::string bytes = input.Rest();
    // An empty packet is how the end of a connection looks.
    if (bytes.empty())
        return 0;
    Record record;
    const bool whole = bytes.size() >= sizeof record;
    if (whole) {
        std::memcpy(&record, bytes.data(), sizeof record);
        if (switches & TRUE_MARK)
            record.mark = Record::MARK;
        if (switches & TRUE_SIZE)
            record.size = bytes.size() - sizeof record;
        std::memcpy(bytes.data(), &record, sizeof record);
    }
    int pair[2];
    REQUIRE(socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, pair) == 0);
    const winapi::Descriptor from(pair[0]), to(pair[1]);
    winapi::Letter letter;
    REQUIRE(winapi::ReceiveLetter(to.Get(), letter) == winapi::Arrival::NOTHING);
    winapi::Descriptor file;
    if (switches & WITH_FILE)
        file = File(bytes.substr(0, 100), switches & AS_LONG ? record.size : 100,
                    (switches & SEALED) != 0);
    SendRaw(from.Get(), bytes, file);
    const winapi::Arrival arrival = winapi::ReceiveLetter(to.Get(), letter);
    REQUIRE(arrival != winapi::Arrival::NOTHING);
    if (arrival == winapi::Arrival::LETTER) {
        REQUIRE(whole);
        REQUIRE(letter.record.mark == Record::MARK);
        REQUIRE(letter.contents.size() == letter.record.size);
        if (switches & BY_LETTER)
            RequireSameLetter(from.Get(), to.Get(), letter);
    } else {
        // A record that agrees with what came along isn't refused.
        REQUIRE(!whole || record.mark != Record::MARK || record.kind - 1 > 3 ||
                record.hasBlock == 0 || record.size != bytes.size() - sizeof record || file);
    }
    return 0;
}

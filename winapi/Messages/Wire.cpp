// winapi/Messages/Wire.cpp
#include "Messages/Wire.h"

#include "Base/Session.h"
#include "Errors/Failure.h"

#include <cstring>
#include <memory>
#include <new>

#include <sys/mman.h>
#include <sys/un.h>

namespace winapi
{
namespace
{
constexpr int BACKLOG = 4096;
constexpr int SEALS = F_SEAL_SEAL | F_SEAL_SHRINK | F_SEAL_GROW | F_SEAL_WRITE;

// The name of a socket in the session's folder. A path too long for an address goes by way of the
// folder's descriptor.
class Address
{
public:
    explicit Address(const std::string& name)
    {
        std::string path = SessionFolder() + '/' + name;
        if (path.size() >= sizeof where.sun_path) {
            folder.Reset(posix.open(SessionFolder().c_str(), O_PATH | O_DIRECTORY, 0));
            path = "/proc/self/fd/" + std::to_string(folder.Get()) + '/' + name;
        }
        where.sun_family = AF_UNIX;
        path.copy(where.sun_path, sizeof where.sun_path - 1);
    }
    const sockaddr* Get() const { return reinterpret_cast<const sockaddr*>(&where); }
    socklen_t Size() const { return sizeof where; }

private:
    sockaddr_un where = {};
    Descriptor folder;
};

Descriptor NewSocket()
{
    return Descriptor(posix.socket(AF_UNIX, SOCK_SEQPACKET | SOCK_NONBLOCK | SOCK_CLOEXEC, 0));
}

// Whether the other side is the same user, and which process.
bool IsOwnUser(int fd, pid_t& process)
{
    ucred peer = {};
    socklen_t size = sizeof peer;
    if (posix.getsockopt(fd, SOL_SOCKET, SO_PEERCRED, &peer, &size) != 0)
        return false;
    process = peer.pid;
    return peer.uid == posix.geteuid();
}

DWORD CodeOfDelivery(int error)
{
    switch (error) {
    case EAGAIN:
    case ENOBUFS:
        return ERROR_NOT_ENOUGH_QUOTA;
    case ECONNREFUSED:
    case ENOENT:
    case EPIPE:
    case ECONNRESET:
        return ERROR_INVALID_WINDOW_HANDLE;
    default:
        return CodeOf(error);
    }
}

// A file in memory with those bytes; none, with errno, if that fails.
Descriptor Sealed(const std::string& bytes)
{
    Descriptor file(posix.memfd_create("ostra", MFD_CLOEXEC | MFD_ALLOW_SEALING));
    for (std::size_t done = 0; file && done < bytes.size();) {
        const ssize_t count = Retried(
            [&] { return posix.write(file.Get(), bytes.data() + done, bytes.size() - done); });
        if (count <= 0)
            return Descriptor();
        done += static_cast<std::size_t>(count);
    }
    if (file && posix.fcntl_seals(file.Get(), F_ADD_SEALS, SEALS) != 0)
        return Descriptor();
    return file;
}

bool MakeRoom(std::string& bytes, std::size_t size)
{
    try {
        bytes.resize(size);
        return true;
    } catch (const std::bad_alloc&) {
        return false;
    }
}

bool ReadSealed(int fd, std::size_t size, std::string& bytes)
{
    struct stat facts;
    if (size > MOST_APART || posix.fcntl_seals(fd, F_GET_SEALS, 0) != SEALS ||
        posix.fstat(fd, &facts) != 0 || facts.st_size < 0 ||
        static_cast<std::size_t>(facts.st_size) != size || !MakeRoom(bytes, size))
        return false;
    for (std::size_t done = 0; done < size;) {
        const ssize_t count = Retried([&] {
            return posix.pread(fd, bytes.data() + done, size - done, static_cast<off_t>(done));
        });
        if (count <= 0)
            return false;
        done += static_cast<std::size_t>(count);
    }
    return true;
}

union Control
{
    cmsghdr head;
    char room[CMSG_SPACE(sizeof(int))];
};

// The descriptor that came along; of several one.
Descriptor Attached(msghdr& message)
{
    Descriptor file;
    for (cmsghdr* head = CMSG_FIRSTHDR(&message); head; head = CMSG_NXTHDR(&message, head))
        for (std::size_t at = CMSG_LEN(0);
             head->cmsg_level == SOL_SOCKET && head->cmsg_type == SCM_RIGHTS && at < head->cmsg_len;
             at += sizeof(int)) {
            int fd;
            std::memcpy(&fd, reinterpret_cast<char*>(head) + at, sizeof fd);
            file.Reset(fd);
        }
    return file;
}

void Attach(msghdr& message, Control& control, int fd)
{
    message.msg_control = &control;
    message.msg_controllen = sizeof control;
    cmsghdr* const head = CMSG_FIRSTHDR(&message);
    head->cmsg_level = SOL_SOCKET;
    head->cmsg_type = SCM_RIGHTS;
    head->cmsg_len = CMSG_LEN(sizeof fd);
    std::memcpy(CMSG_DATA(head), &fd, sizeof fd);
}

// Whether the record and what came with it agree.
bool Check(const Letter& letter, std::size_t received, const Descriptor& file)
{
    const Record& record = letter.record;
    if (record.mark != Record::MARK || record.kind < Record::POST || record.kind > Record::ANSWER ||
        (record.size && !record.hasBlock))
        return false;
    const std::size_t along = received - sizeof record;
    return record.size > MOST_INLINE ? file && along == 0 : !file && along == record.size;
}
} // namespace

Descriptor Listen(const std::string& name)
{
    const Address address(name);
    Descriptor listener = NewSocket();
    if (!listener || posix.bind(listener.Get(), address.Get(), address.Size()) != 0 ||
        posix.listen(listener.Get(), BACKLOG) != 0)
        return Descriptor();
    return listener;
}

Descriptor Accept(int listener, pid_t& process)
{
    // The system makes a socket for each accept, for one in vain as well: a look costs less.
    for (pollfd waits{listener, POLLIN, 0}; posix.poll(&waits, 1, 0) > 0;) {
        Descriptor connection(Retried([&] {
            return posix.accept4(listener, nullptr, nullptr, SOCK_NONBLOCK | SOCK_CLOEXEC);
        }));
        if (!connection || IsOwnUser(connection.Get(), process))
            return connection;
    }
    errno = EAGAIN;
    return Descriptor();
}

DWORD Connect(const std::string& name, Descriptor& connection)
{
    const Address address(name);
    pid_t process;
    connection = NewSocket();
    if (!connection)
        return CodeOf(errno);
    if (Retried([&] { return posix.connect(connection.Get(), address.Get(), address.Size()); }) !=
        0)
        return CodeOfDelivery(errno);
    return IsOwnUser(connection.Get(), process) ? 0 : ERROR_INVALID_WINDOW_HANDLE;
}

DWORD SendLetter(int connection, const Letter& letter)
{
    Record record = letter.record;
    if (record.size > MOST_APART)
        return ERROR_NOT_ENOUGH_MEMORY;
    const bool apart = record.size > MOST_INLINE;
    iovec pieces[] = {{&record, sizeof record},
                      {const_cast<char*>(letter.contents.data()), letter.contents.size()}};
    msghdr message = {};
    message.msg_iov = pieces;
    message.msg_iovlen = apart ? 1 : 2;
    Control control = {};
    Descriptor file;
    if (apart) {
        file = Sealed(letter.contents);
        if (!file)
            return CodeOf(errno);
        Attach(message, control, file.Get());
    }
    const ssize_t sent =
        Retried([&] { return posix.sendmsg(connection, &message, MSG_NOSIGNAL | MSG_DONTWAIT); });
    return sent < 0 ? CodeOfDelivery(errno) : 0;
}

Arrival ReceiveLetter(int connection, Letter& letter)
{
    const auto room = std::make_unique_for_overwrite<char[]>(MOST_INLINE);
    iovec pieces[] = {{&letter.record, sizeof letter.record}, {room.get(), MOST_INLINE}};
    Control control = {};
    msghdr message = {};
    message.msg_iov = pieces;
    message.msg_iovlen = 2;
    message.msg_control = &control;
    message.msg_controllen = sizeof control;
    const ssize_t count = Retried(
        [&] { return posix.recvmsg(connection, &message, MSG_DONTWAIT | MSG_CMSG_CLOEXEC); });
    if (count < 0)
        return errno == EAGAIN ? Arrival::NOTHING : Arrival::BROKEN;
    const Descriptor file = Attached(message);
    const auto size = static_cast<std::size_t>(count);
    if (size < sizeof letter.record || (message.msg_flags & (MSG_TRUNC | MSG_CTRUNC)) != 0 ||
        !Check(letter, size, file))
        return Arrival::BROKEN;
    if (!file)
        letter.contents.assign(room.get(), letter.record.size);
    else if (!ReadSealed(file.Get(), letter.record.size, letter.contents))
        return Arrival::BROKEN;
    return Arrival::LETTER;
}
} // namespace winapi

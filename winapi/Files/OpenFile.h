// winapi/Files/OpenFile.h: opening files under a share mode, and the object behind a file's handle.
#pragma once

#include "Base/Handles.h"
#include "Base/Posix.h"
#include "Files/ShareMode.h"

#include <mutex>
#include <string>
#include <vector>

namespace winapi
{
struct OpenRequest
{
    std::string path;
    unsigned rights = 0; // RIGHT_... bits, and those that others may have.
    unsigned shares = 0;
    DWORD disposition = 0;
    DWORD flags = 0; // FILE_FLAG_... and FILE_ATTRIBUTE_...
    mode_t mode = 0666;
};

// A descriptor with its announcement, which is withdrawn at the end.
struct HeldFile
{
    HeldFile() = default;
    HeldFile(const HeldFile&) = delete;
    HeldFile& operator=(const HeldFile&) = delete;
    ~HeldFile() { Release(); }

    // Ends the announcement at once, though the descriptor be used elsewhere still.
    void Release();
    // Gives the descriptor away. Its announcement ends when it is closed.
    int HandOver()
    {
        announced = false;
        return fd.Release();
    }
    Lockable ForLocks() const { return {fd.Get(), readable, writable}; }

    Descriptor fd;
    bool readable = false;
    bool writable = false;
    bool announced = false;
    bool existed = false;
    mode_t mode = 0;
};

// Opens or creates as told. Result: 0 or the code of the failure.
DWORD OpenHeld(const OpenRequest& request, HeldFile& held);

// ERROR_ACCESS_DENIED for what is there and no regular file: opening a pipe would wait, and a device
// may have no end.
DWORD CheckRegular(const std::string& path);

// Takes hold of an existing file or directory, a symbolic link itself and not its target, for
// deleting or renaming. Result: 0 or the code of the failure. What can't be opened at all is taken
// as not held by anyone.
DWORD HoldForDelete(const std::string& path, HeldFile& held);

class OpenFile : public Object
{
public:
    static constexpr Kind KIND = Kind::FILE;
    struct Range
    {
        off_t offset;
        off_t length;
    };

    explicit OpenFile(unsigned allRights) : Object(KIND), rights(allRights) {}
    ~OpenFile() override { OpenFile::Closed(); }
    void Closed() override; // Does nothing the second time.

    bool Has(unsigned right) const { return (rights & right) != 0; }
    int Fd() const { return held.fd.Get(); }
    bool IsPositioned() const { return positioned; }
    // Makes the object ready once `held` is open.
    void Opened(const OpenRequest& request);

    // A mapping of this file begins or ends.
    void Map();
    void Unmap();
    bool IsMapped();

    const unsigned rights;
    HeldFile held;
    std::string name; // Last component of its path.
    std::string pathToDelete;

    std::mutex transfer; // Held throughout a transfer, which moves the position.
    off_t position = 0;

    std::mutex lists; // What follows.
    std::vector<Range> locked;

private:
    bool positioned = true;
    unsigned mappings = 0;
};
} // namespace winapi

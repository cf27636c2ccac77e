// winapi/CLibrary/ErrorNumber.cpp
#include "CLibrary/ErrorNumber.h"

#include "winapi/Errors/Codes.h"

namespace winapi
{
namespace
{
struct Row
{
    DWORD code;
    int number;
};

// Numbers up to 34 are the same on the platform and on the host.
constexpr Row rows[] = {
    {ERROR_FILE_NOT_FOUND, ENOENT},
    {ERROR_PATH_NOT_FOUND, ENOENT},
    {ERROR_FILENAME_EXCED_RANGE, ENOENT},
    {ERROR_TOO_MANY_OPEN_FILES, EMFILE},
    {ERROR_ACCESS_DENIED, EACCES},
    {ERROR_SHARING_VIOLATION, EACCES},
    {ERROR_LOCK_VIOLATION, EACCES},
    {ERROR_WRITE_PROTECT, EACCES},
    {ERROR_USER_MAPPED_FILE, EACCES},
    {ERROR_INVALID_HANDLE, EBADF},
    {ERROR_NOT_ENOUGH_MEMORY, ENOMEM},
    {ERROR_NOT_SAME_DEVICE, EXDEV},
    {ERROR_FILE_EXISTS, EEXIST},
    {ERROR_ALREADY_EXISTS, EEXIST},
    {ERROR_BROKEN_PIPE, EPIPE},
    {ERROR_DISK_FULL, ENOSPC},
    {ERROR_IO_DEVICE, EIO},
};
} // namespace

int ErrorNumberOf(DWORD code)
{
    for (const Row& row : rows)
        if (row.code == code)
            return row.number;
    return EINVAL;
}
} // namespace winapi

// winapi/Errors/Failure.cpp
#include "Errors/Failure.h"

#include "Files/Names.h"
#include "Base/Posix.h"

namespace winapi
{
namespace
{
struct Row
{
    int error;
    DWORD code;
};

constexpr Row rows[] = {
    {EACCES, ERROR_ACCESS_DENIED},
    {EPERM, ERROR_ACCESS_DENIED},
    {EISDIR, ERROR_ACCESS_DENIED},
    {ENOENT, ERROR_FILE_NOT_FOUND},
    {ENOTDIR, ERROR_PATH_NOT_FOUND},
    {EEXIST, ERROR_FILE_EXISTS},
    {ENOTEMPTY, ERROR_DIR_NOT_EMPTY},
    {ENOMEM, ERROR_NOT_ENOUGH_MEMORY},
    {ENOSPC, ERROR_DISK_FULL},
    {EDQUOT, ERROR_DISK_FULL},
    {EFBIG, ERROR_DISK_FULL},
    {EMFILE, ERROR_TOO_MANY_OPEN_FILES},
    {ENFILE, ERROR_TOO_MANY_OPEN_FILES},
    {EBUSY, ERROR_SHARING_VIOLATION},
    {ETXTBSY, ERROR_SHARING_VIOLATION},
    {EINVAL, ERROR_INVALID_PARAMETER},
    {ESPIPE, ERROR_INVALID_PARAMETER},
    {ENAMETOOLONG, ERROR_FILENAME_EXCED_RANGE},
    {EROFS, ERROR_WRITE_PROTECT},
    {EIO, ERROR_IO_DEVICE},
    {EFAULT, ERROR_NOACCESS},
    {EXDEV, ERROR_NOT_SAME_DEVICE},
    {EPIPE, ERROR_BROKEN_PIPE},
    {EBADF, ERROR_INVALID_HANDLE},
    {EOPNOTSUPP, ERROR_NOT_SUPPORTED},
    {ENOSYS, ERROR_NOT_SUPPORTED},
    {ELOOP, ERROR_CANT_RESOLVE_FILENAME},
};

bool IsDirectory(const std::string& path)
{
    struct stat facts;
    return posix.stat(path.c_str(), &facts) == 0 && S_ISDIR(facts.st_mode);
}
} // namespace

DWORD CodeOf(int error)
{
    for (const Row& row : rows)
        if (row.error == error)
            return row.code;
    return ERROR_GEN_FAILURE;
}

DWORD CodeOf(int error, const std::string& path)
{
    if (error == ENOENT && !IsDirectory(ParentOf(path)))
        return ERROR_PATH_NOT_FOUND;
    return CodeOf(error);
}
} // namespace winapi

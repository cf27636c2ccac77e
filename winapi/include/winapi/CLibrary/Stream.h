// winapi/CLibrary/Stream.h: streams and files by name as the platform's C library has them.
//
// A stream is the host's own FILE: its transfers, flags and seeks are the host's calls. Told here is
// what the platform does otherwise. Failures are told by errno with the platform's numbers, which
// for all of these are also the host's; the last error stays as it was.
//
// Names are as those of CreateFile, in UTF-16 or in the ANSI code page: `/` and `\` both separate,
// case counts, UTF-8 on disk. ENOENT (2) for a missing entry, a missing directory, an empty name or
// one beyond the host's limits; EACCES (13) for what permissions or share modes refuse, for a
// read-only file that is to be written or deleted and for a directory; EEXIST (17), EINVAL (22) for
// a lone surrogate, EMFILE (24), ENOSPC (28), ENOMEM (12), EIO (5).
#pragma once

#include "winapi/Base/Types.h"
#include "winapi/Base/Words.h"

#include <cerrno>
#include <cstdio>

#include <sys/stat.h>

// The facts of a file, under the published names; widths, numbers and mode bits are the host's.
struct _stat : stat
{};

// Fills the record from a file or directory by name; a symbolic link's target is told. It stands
// outside because its structure does: the two share a name, as they do on the platform.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wshadow"
WINAPI_EXPORT int _stat(LPCSTR filename, struct _stat* info);
#pragma GCC diagnostic pop

namespace winapi
{
WINAPI_EXPORT int _wstat(LPCWSTR filename, struct _stat* info);

// Opens a stream. The mode is r, w or a, then any of `+`, `b`, `t`, `x` (must be new), the
// letters c, n, N, S, R, T, D and blanks, which are without effect: bytes are never translated. EINVAL for another
// letter. Null on failure.
//
// The file is shared as the platform's streams share it: others may read and write, but not delete
// or rename it, and an open file that isn't shared so refuses the stream with EACCES. An append
// stands at the end and writes there, wherever it stands.
WINAPI_EXPORT std::FILE* _wfopen(LPCWSTR filename, LPCWSTR mode);

// Delete and rename a file; another of the new name makes renaming fail with EEXIST. A symbolic
// link itself goes or moves. Renaming across file systems copies.
WINAPI_EXPORT int _wremove(LPCWSTR filename);
WINAPI_EXPORT int _wrename(LPCWSTR oldname, LPCWSTR newname);

// Bit 80h of the mode is the owner's permission to write; without it nobody may. All other bits of
// the mode are without effect, and the file's other bits stay. A directory stays as it is.
WINAPI_EXPORT int _wchmod(LPCWSTR filename, int mode);
WINAPI_EXPORT int _chmod(LPCSTR filename, int mode);

// The place of a stream, and moving it, in 64 bits.
WINAPI_EXPORT long long _ftelli64(std::FILE* stream);
WINAPI_EXPORT int _fseeki64(std::FILE* stream, long long offset, int origin);

// The host's C library has its own functions of these names. What means the platform's asks for
// them here.
namespace streams
{
WINAPI_EXPORT std::FILE* fopen(LPCSTR filename, LPCSTR mode);

// Buffers the stream. For a null buffer one of that size is made, which is freed when the stream is
// closed by fclose here; the host's own leaves it until a stream takes that one's place. EINVAL for
// a size below 2 or above 2^31 - 1 (but for _IONBF), ENOMEM.
WINAPI_EXPORT int setvbuf(std::FILE* stream, char* buffer, int mode, std::size_t size);
WINAPI_EXPORT int fclose(std::FILE* stream);

WINAPI_EXPORT int remove(LPCSTR filename);
WINAPI_EXPORT int rename(LPCSTR oldname, LPCSTR newname);
} // namespace streams
} // namespace winapi

// winapi/CLibrary/Stream.cpp: opening, buffering and closing streams.
#include "winapi/CLibrary/Stream.h"

#include "Base/Posix.h"
#include "CLibrary/ErrorNumber.h"
#include "Files/Names.h"
#include "Files/OpenFile.h"
#include "winapi/Files/File.h"

#include <climits>
#include <cstdlib>
#include <mutex>
#include <string_view>

namespace winapi
{
namespace
{
// What a mode text asks for, and the text that the host's stream takes.
struct Mode
{
    unsigned rights = 0;
    DWORD disposition = 0;
    char host[3] = {};
};

// Letters that the platform knows and that are nothing to the host.
constexpr std::string_view WITHOUT_EFFECT = "btcnNSRTD ";

bool ParseFirst(char letter, Mode& mode)
{
    mode.host[0] = letter;
    mode.rights = letter == 'r' ? RIGHT_READ : RIGHT_WRITE;
    switch (letter) {
    case 'r':
        mode.disposition = OPEN_EXISTING;
        return true;
    case 'w':
        mode.disposition = CREATE_ALWAYS;
        return true;
    case 'a':
        mode.disposition = OPEN_ALWAYS;
        return true;
    default:
        return false;
    }
}

bool ParseFurther(char letter, Mode& mode)
{
    if (letter == '+') {
        mode.rights = RIGHT_READ | RIGHT_WRITE;
        mode.host[1] = '+';
        return true;
    }
    if (letter == 'x' && mode.disposition != OPEN_EXISTING) {
        mode.disposition = CREATE_NEW;
        return true;
    }
    return WITHOUT_EFFECT.find(letter) != std::string_view::npos;
}

template <class Char>
bool Parse(const Char* text, Mode& mode)
{
    const auto letter = [](Char unit) {
        return unit < 0x7F ? static_cast<char>(unit) : '?';
    };
    while (text && *text == ' ')
        ++text;
    if (!text || !*text || !ParseFirst(letter(*text), mode))
        return false;
    while (*++text)
        if (!ParseFurther(letter(*text), mode))
            return false;
    return true;
}

// The descriptor belongs to the stream once there is one.
std::FILE* StreamOf(HeldFile& held, const Mode& mode)
{
    std::FILE* const stream = posix.fdopen(held.fd.Get(), mode.host);
    if (stream)
        held.HandOver();
    else
        SetLastError(CodeOf(errno));
    return stream;
}

std::FILE* Open(LPCWSTR filename, const Mode& mode)
{
    OpenRequest request;
    auto path = HostName(filename);
    if (!path)
        return nullptr;
    request.path = std::move(*path);
    request.rights = mode.rights;
    request.shares = RIGHT_READ | RIGHT_WRITE;
    request.disposition = mode.disposition;
    HeldFile held;
    if (!Finish(OpenHeld(request, held)))
        return nullptr;
    return StreamOf(held, mode);
}

template <class Char, class Name>
std::FILE* OpenAs(const Char* filename, const Char* modeText)
{
    return ToldByErrno(static_cast<std::FILE*>(nullptr), [&]() -> std::FILE* {
        Mode mode;
        if (Parse(modeText, mode))
            return Open(Name(filename), mode);
        SetLastError(ERROR_INVALID_PARAMETER);
        return nullptr;
    });
}

// A buffer that was made for a stream; its bytes lie behind it.
struct Buffer
{
    std::FILE* stream;
    Buffer* next;
};

// Never destroyed: streams may be closed until the very end.
struct Buffers
{
    std::mutex mutex;
    Buffer* first = nullptr;
};

Buffers& AllBuffers()
{
    alignas(Buffers) static char place[sizeof(Buffers)];
    static Buffers* const buffers = new (place) Buffers;
    return *buffers;
}

Buffer* TakeBuffer(const std::FILE* stream)
{
    Buffers& all = AllBuffers();
    const std::lock_guard lock(all.mutex);
    for (Buffer** place = &all.first; *place; place = &(*place)->next) {
        Buffer* const found = *place;
        if (found->stream == stream) {
            *place = found->next;
            return found;
        }
    }
    return nullptr;
}

void KeepBuffer(Buffer* buffer)
{
    Buffers& all = AllBuffers();
    const std::lock_guard lock(all.mutex);
    buffer->next = all.first;
    all.first = buffer;
}

// The buffer that was there before goes when the stream has the new one.
int SetOwnBuffer(std::FILE* stream, int mode, std::size_t size)
{
    auto* const buffer = static_cast<Buffer*>(std::malloc(sizeof(Buffer) + size));
    if (!buffer) {
        errno = ENOMEM;
        return -1;
    }
    buffer->stream = stream;
    if (posix.setvbuf(stream, reinterpret_cast<char*>(buffer + 1), mode, size) != 0) {
        std::free(buffer);
        return -1;
    }
    std::free(TakeBuffer(stream));
    KeepBuffer(buffer);
    return 0;
}
} // namespace

std::FILE* _wfopen(LPCWSTR filename, LPCWSTR mode)
{
    return OpenAs<WCHAR, LPCWSTR>(filename, mode);
}

std::FILE* streams::fopen(LPCSTR filename, LPCSTR mode)
{
    return OpenAs<char, Widened>(filename, mode);
}

int streams::setvbuf(std::FILE* stream, char* buffer, int mode, std::size_t size)
{
    const bool buffered = mode != _IONBF;
    if (buffered && (size < 2 || size > INT_MAX)) {
        errno = EINVAL;
        return -1;
    }
    if (buffered && !buffer)
        return SetOwnBuffer(stream, mode, size);
    return posix.setvbuf(stream, buffer, mode, size);
}

// The buffer is taken off first: as soon as the stream is gone another may have its address.
int streams::fclose(std::FILE* stream)
{
    Buffer* const buffer = TakeBuffer(stream);
    const int result = posix.fclose(stream);
    const int error = errno;
    std::free(buffer);
    errno = error;
    return result;
}

long long _ftelli64(std::FILE* stream)
{
    return posix.ftello(stream);
}

int _fseeki64(std::FILE* stream, long long offset, int origin)
{
    return posix.fseeko(stream, offset, origin);
}
} // namespace winapi

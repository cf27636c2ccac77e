// winapi/tests/Support/Calls.h: calls of services, with the results and last errors they are to have.
//
// The same tests run against the real services. Where the two sides differ on purpose, a test says
// so by Side(host, platform): the host's paths, case that counts, names that the host allows,
// read-only files that stay so for the superuser, and what the reference run of the platform is
// known to answer otherwise than is documented.
#pragma once

#include <gtest/gtest.h>

#include <windows.h>

#include <functional>
#include <string>
#include <type_traits>
#include <vector>

#ifdef _WIN32
constexpr bool HOST_PATHS = false;
#else
constexpr bool HOST_PATHS = true;
#endif

template <class Host, class Platform>
constexpr std::common_type_t<Host, Platform> Side(Host host, Platform platform)
{
    return HOST_PATHS ? host : platform;
}

using WideString = std::basic_string<WCHAR>;

// Wide text from a UTF-16 literal.
inline WideString Wide(const std::u16string& text)
{
    return WideString(text.begin(), text.end());
}

inline WideString Wide(const std::string& ascii)
{
    return WideString(ascii.begin(), ascii.end());
}

constexpr long long INVALID = -1;
constexpr long long OPENED = 1;
constexpr long long ALL_BITS = 0xFFFFFFFF;

struct Row
{
    int line;
    const char* call;
    std::function<long long()> run;
    long long result;
    DWORD error;
};

// A row of a table: the call, what it is to return, and the last error behind it when there was
// none before.
#define CALL(call, result, error)                                                                  \
    Row                                                                                            \
    {                                                                                              \
        __LINE__, #call, [&] { return static_cast<long long>(call); }, result,                     \
            static_cast<DWORD>(error)                                                              \
    }

inline void RunRows(const std::vector<Row>& rows)
{
    for (const Row& row : rows) {
        SCOPED_TRACE(testing::Message() << "line " << row.line << ": " << row.call);
        SetLastError(0);
        const long long result = row.run();
        const DWORD error = GetLastError();
        EXPECT_EQ(result, row.result);
        EXPECT_EQ(error, row.error);
    }
}

// A file's handle, closed at the end of its scope.
class File
{
public:
    File() = default;
    explicit File(const char* name, DWORD access = GENERIC_READ | GENERIC_WRITE,
                  DWORD share = FILE_SHARE_READ | FILE_SHARE_WRITE, DWORD disposition = OPEN_ALWAYS,
                  DWORD flags = FILE_ATTRIBUTE_NORMAL)
    {
        Open(name, access, share, disposition, flags);
    }
    File(const File&) = delete;
    File& operator=(const File&) = delete;
    ~File() { Close(); }

    // Result for tables: OPENED or INVALID.
    long long Open(const char* name, DWORD access, DWORD share, DWORD disposition, DWORD flags = 0)
    {
        Close();
        handle = CreateFileA(name, access, share, nullptr, disposition, flags, nullptr);
        return IsOpen() ? OPENED : INVALID;
    }
    // Leaves the last error as it is.
    void Close()
    {
        const DWORD error = GetLastError();
        if (IsOpen())
            CloseHandle(handle);
        handle = INVALID_HANDLE_VALUE;
        SetLastError(error);
    }
    bool IsOpen() const { return handle != INVALID_HANDLE_VALUE; }
    operator HANDLE() const { return handle; }

private:
    HANDLE handle = INVALID_HANDLE_VALUE;
};

// Opens and closes at once. Result: OPENED or INVALID.
inline long long TryOpen(const char* name, DWORD access, DWORD share, DWORD disposition,
                         DWORD flags = 0)
{
    return File().Open(name, access, share, disposition, flags);
}

inline DWORD Write(HANDLE file, const std::string& bytes)
{
    DWORD count = 0;
    EXPECT_TRUE(WriteFile(file, bytes.data(), static_cast<DWORD>(bytes.size()), &count, nullptr));
    return count;
}

inline std::string Read(HANDLE file, DWORD size)
{
    std::string bytes(size, '\0');
    DWORD count = 0;
    EXPECT_TRUE(ReadFile(file, bytes.data(), size, &count, nullptr));
    bytes.resize(count);
    return bytes;
}

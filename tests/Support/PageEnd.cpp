// tests/Support/PageEnd.cpp
#include "Support/PageEnd.h"

#include <cstdio>
#include <cstdlib>

#ifdef _WIN32
#include <windows.h>
#else
#include <sys/mman.h>
#include <unistd.h>
#endif

namespace
{
#ifdef _WIN32
std::size_t PageSize()
{
    SYSTEM_INFO info;
    GetSystemInfo(&info);
    return info.dwPageSize;
}

char* Reserve(std::size_t bytes)
{
    return static_cast<char*>(VirtualAlloc(nullptr, bytes, MEM_RESERVE, PAGE_NOACCESS));
}

bool Open(char* page, std::size_t bytes)
{
    return VirtualAlloc(page, bytes, MEM_COMMIT, PAGE_READWRITE) != nullptr;
}

void Free(char* reserved, std::size_t)
{
    VirtualFree(reserved, 0, MEM_RELEASE);
}
#else
std::size_t PageSize()
{
    return static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
}

char* Reserve(std::size_t bytes)
{
    void* memory = mmap(nullptr, bytes, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    return memory == MAP_FAILED ? nullptr : static_cast<char*>(memory);
}

bool Open(char* page, std::size_t bytes)
{
    return mprotect(page, bytes, PROT_READ | PROT_WRITE) == 0;
}

void Free(char* reserved, std::size_t bytes)
{
    munmap(reserved, bytes);
}
#endif
} // namespace

PageEnd::PageEnd() : size(PageSize()), start(Reserve(3 * size))
{
    if (start && Open(start + size, size)) {
        start += size;
        return;
    }
    std::fprintf(stderr, "no page between two closed ones\n");
    std::abort();
}

PageEnd::~PageEnd()
{
    Free(start - size, 3 * size);
}

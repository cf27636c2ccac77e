// tests/Support/PageEnd.h: memory of which not a byte more may be touched.
#pragma once

#include <cstddef>

// A page between two that nobody may read: what reads in front of it or behind it ends the program.
class PageEnd
{
public:
    PageEnd();
    ~PageEnd();
    PageEnd(const PageEnd&) = delete;
    PageEnd& operator=(const PageEnd&) = delete;

    char* Start() const { return start; }
    std::size_t Size() const { return size; }
    // So many items of a type that end with the page.
    template <class T>
    T* Last(std::size_t count) const
    {
        return reinterpret_cast<T*>(start + size) - count;
    }

private:
    std::size_t size;
    char* start;
};

// winapi/Base/Handles.h: what handles stand for, and how they are looked up.
//
// A handle is a number, not an address: the place of its slot, and a generation that changes
// whenever the slot is given back. So any value may be looked up; one that is foreign, closed or of
// another kind is told apart without touching memory that isn't ours. All values are below 2^31 and
// multiples of 4, as on the platform: a handle kept in 32 bits comes back whole.
#pragma once

#include "winapi/Base/Constants.h"

#include <memory>
#include <utility>

namespace winapi
{
enum class Kind : unsigned char
{
    FILE,
    MAPPING,
    SEARCH,
    KEY,
    FONT,
    DEVICE_CONTEXT,
};

// What a handle stands for. It lives until the handle is closed and nobody holds a Reference any
// more.
class Object
{
public:
    explicit Object(Kind what) : kind(what) {}
    Object(const Object&) = delete;
    Object& operator=(const Object&) = delete;
    virtual ~Object() = default;

    // Called once when the handle is closed, while references may still be held.
    virtual void Closed() {}

    const Kind kind;
};

struct Slot;

// Keeps the object of a handle alive. Cheap: two atomic operations for its life, no lock.
class AnyReference
{
public:
    AnyReference() = default;
    // Empty when the value is no open handle.
    explicit AnyReference(HANDLE handle);
    AnyReference(AnyReference&& other) noexcept : slot(std::exchange(other.slot, nullptr)) {}
    AnyReference& operator=(AnyReference&& other) noexcept
    {
        std::swap(slot, other.slot);
        return *this;
    }
    ~AnyReference();

    Object* Get() const;

private:
    Slot* slot = nullptr;
};

// Sets last error ERROR_INVALID_HANDLE (6).
void TellInvalidHandle();

// A reference to an object of one kind, T::KIND; empty, with last error ERROR_INVALID_HANDLE, when
// the handle is none of that kind.
template <class T>
class Reference
{
public:
    Reference() = default;
    explicit Reference(HANDLE handle) : any(handle)
    {
        Object* object = any.Get();
        if (object && object->kind == T::KIND)
            found = static_cast<T*>(object);
        else
            TellInvalidHandle();
    }
    Reference(Reference&& other) noexcept
        : any(std::move(other.any)),
          found(std::exchange(other.found, nullptr))
    {}
    Reference& operator=(Reference&& other) noexcept
    {
        any = std::move(other.any);
        std::swap(found, other.found);
        return *this;
    }

    explicit operator bool() const { return found != nullptr; }
    T* operator->() const { return found; }
    T& operator*() const { return *found; }

private:
    AnyReference any;
    T* found = nullptr;
};

// Gives the object a handle. Null, with last error ERROR_TOO_MANY_OPEN_FILES (4), when all 2^24 - 1
// are in use; then the object is gone.
HANDLE MakeHandle(std::unique_ptr<Object> object);

// Closes a search's handle (search), or one of any other kind. False, with last error
// ERROR_INVALID_HANDLE, for what isn't one.
bool ReleaseHandle(HANDLE handle, bool search);
} // namespace winapi

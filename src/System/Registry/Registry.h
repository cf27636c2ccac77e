// System/Registry/Registry.h: a cursor into the system's registry.
#pragma once

#include <Ostra/Buffer/Buffer.h>
#include <Ostra/Frame/Export.h>
#include <Ostra/Frame/Platform.h>
#include <Ostra/Frame/RawCopy.h>
#include <Ostra/String/UString.h>

#include <cstddef>

class CT_String;

// A root key and a path below it, the cursor, with operations that open a key, use it and close it.
// No key stays open between two calls.
//
// A path that begins with "\" counts from the root, ".." is one key up, every other path lies below
// the cursor. Kept: at the root a path without "\" in front reaches the system with one, which the
// system refuses with code 161; and a path below the cursor keeps a "\" at its end, so that ".."
// first takes that away.
//
// Units:   texts are strings of either class; what is stored is what their buffers hold, and what
//          is fetched is what was stored, with its terminator if it has one. A system with wide
//          calls stores UTF-16, which a CT_UString holds; one without stores bytes of the ANSI code
//          page, which a CT_CString holds.
// Owns:    its hold on path and value; the root is the caller's, and never closed here.
// Reports: the system's code for each call that fails, 87 for a value of another type; 60006 when
//          the heap is exhausted. No operation has a result: ask the error manager.
// Caller:  keeps an own root open. A copy by reference is no hold on path and value.
// Threads: one thread at a time; two objects may be used on two threads.
class OSTRA_API CT_Registry
{
public:
    // ---- Construction -----------------------------------------------------------------------

    // At the root.
    explicit CT_Registry(HKEY h_Root);
    // At a path, of which "\" at both ends is taken away. Nothing asks whether the key exists.
    CT_Registry(HKEY h_Root, const CT_String* pcco_Path);
    // At the other's place; shares its path and its value.
    explicit CT_Registry(const CT_Registry* pcco_Other);
    // Kept: copies the members without a hold on their blocks; the pointer form shares.
    OSTRA_RAW_COPY CT_Registry(const CT_Registry& co_Other) = default;
    OSTRA_RAW_COPY CT_Registry& operator=(const CT_Registry& co_Other) = default;
    ~CT_Registry() {}

    static void* operator new(std::size_t n_Size) noexcept;
    static void* operator new(std::size_t, void* pv_Place) noexcept { return pv_Place; }
    static void operator delete(void* pv_Object);

    // Like the constructors; the first two let go of the value.
    void v_Set(HKEY h_Root);
    void v_Set(HKEY h_Root, const CT_String* pcco_Path);
    void v_Set(const CT_Registry* pcco_Other);

    // ---- Access -----------------------------------------------------------------------------

    HKEY h_GetKey() const { return h_Key; }
    // The cursor's path from the root; empty at the root.
    const CT_UString* pcco_GetKey() const { return &co_Key; }

    // ---- Keys -------------------------------------------------------------------------------

    // Makes the key, and those above it, where it is missing. The cursor stays.
    void v_CreateKey(const CT_String* pcco_NewKey);
    // Moves the cursor to a key that exists; else it stays.
    void v_SetKey(const CT_String* pcco_NewKey);
    // Deletes a key below the cursor with all that it holds. The name is taken as it is: neither
    // "\" in front nor ".." leads elsewhere. Kept: an empty one is the key of the cursor itself. A
    // failure leaves what isn't deleted yet.
    void v_DeleteKey(const CT_String* pcco_Name);

    // ---- Values of the cursor's key ---------------------------------------------------------

    // What is fetched replaces the output; it stays on failure and when an error was set before. An
    // empty name means the key's default value.
    //
    // Text. Kept: the stored bytes become the string's as they are, whatever its class.
    void v_GetValue(const CT_String* pcco_Name, CT_String* pco_Out);
    // Binary data.
    void v_GetValue(const CT_String* pcco_Name, CT_Buffer* pco_Out);
    // Kept: fetches nothing, but stores what the last operation left as the value, as a number, and
    // gives the first four bytes of that, 0 for those that are missing.
    void v_GetValue(const CT_String* pcco_Name, DWORD* pn_Out);
    // Text, binary data, a number of 32 bits. Kept: a system without wide calls is asked for read
    // access, and refuses with code 5 if it looks at that.
    void v_SetValue(const CT_String* pcco_Name, const CT_String* pcco_Value);
    void v_SetValue(const CT_String* pcco_Name, const CT_Buffer* pcco_Value);
    void v_SetValue(const CT_String* pcco_Name, DWORD n_Value);
    void v_DeleteValue(const CT_String* pcco_Name) const;

private:
    void v_Init(HKEY h_Root);
    void v_Init(HKEY h_Root, const CT_String* pcco_Path);
    void v_DeleteKey(HKEY h_Parent, const CT_String* pcco_Name);
    void v_ValueToBuffer(const CT_String* pcco_Name, DWORD n_Type);
    void v_BufferToValue(const CT_String* pcco_Name, DWORD n_Type) const;
    void v_MakeFullKey(CT_String* pco_Path) const;
    HKEY h_OpenCursor(DWORD n_Access) const;
    void v_EndText();

    HKEY h_Key;
    CT_UString co_Key;   // no "\" at either end, but for what is kept above
    CT_Buffer co_Buffer; // the last value that was fetched or stored
};

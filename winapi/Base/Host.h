// winapi/Base/Host.h: what leans on the host's large libraries, behind one table of functions.
//
// Such code is compiled into a library of its own, libostra-host.so, which links those libraries
// and is loaded at the first call that needs it. Sources of it end in Host.cpp; nothing else may
// include a header of those libraries. A program that holds the services themselves links it.
#pragma once

#include "winapi/Base/Types.h"

namespace winapi
{
struct LocaleHost;
struct DatabaseTable;
struct FontTable;

struct HostTable
{
    const char* version;           // That of the library: both files are of one build.
    const LocaleHost* locale;      // Locale/LocaleTexts.h
    const DatabaseTable* database; // Base/Database.h
    const FontTable* fonts;        // Fonts/FaceHost.h
};

// The table for the life of a scope. Scopes exclude each other, and a fork waits for their end: so
// a child finds the libraries whole and none of their locks held. They don't nest.
class Host
{
public:
    // Without the library the last error is ERROR_MOD_NOT_FOUND (126).
    Host();
    ~Host();
    Host(const Host&) = delete;
    Host& operator=(const Host&) = delete;

    // What a fork is to find closed: called within a scope, before each fork from now on.
    static void BeforeForks(void (*close)());

    explicit operator bool() const { return table != nullptr; }
    const HostTable* operator->() const { return table; }

private:
    const HostTable* table;
};

// Loads the library and gives its table; null when it can't be had. Called within a scope, until it
// succeeds.
const HostTable* LoadHost();
} // namespace winapi

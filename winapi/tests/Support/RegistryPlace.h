// winapi/tests/Support/RegistryPlace.h: a key for a test alone, in the registry that the platform has.
#pragma once

#include "Calls.h"

// The key lies below HKEY_CURRENT_USER and is gone, with all below it, at the end of the test.
class RegistryPlace : public testing::Test
{
protected:
    RegistryPlace()
        : name("Software\\OstraTest" + std::to_string(GetTickCount()) + "P" +
               std::to_string(GetCurrentThreadId()) + "N" + std::to_string(Count()))
    {}
    ~RegistryPlace() override { Remove(HKEY_CURRENT_USER, name); }

    std::string In(const std::string& rest) const { return name + "\\" + rest; }

    // Handles for tables: null when it fails.
    static HKEY Create(HKEY from, const std::string& path, REGSAM rights = KEY_ALL_ACCESS)
    {
        HKEY key = nullptr;
        RegCreateKeyExA(from, path.c_str(), 0, nullptr, 0, rights, nullptr, &key, nullptr);
        return key;
    }
    static HKEY Open(HKEY from, const std::string& path, REGSAM rights = KEY_READ)
    {
        HKEY key = nullptr;
        RegOpenKeyExA(from, path.c_str(), 0, rights, &key);
        return key;
    }
    // What an attempt returns.
    static LSTATUS TryOpen(HKEY from, const std::string& path, REGSAM rights = KEY_READ)
    {
        HKEY key = nullptr;
        const LSTATUS code = RegOpenKeyExA(from, path.c_str(), 0, rights, &key);
        return code ? code : RegCloseKey(key);
    }
    static LSTATUS TryCreate(HKEY from, const std::string& path, REGSAM rights = KEY_WRITE)
    {
        HKEY key = nullptr;
        const LSTATUS code =
            RegCreateKeyExA(from, path.c_str(), 0, nullptr, 0, rights, nullptr, &key, nullptr);
        return code ? code : RegCloseKey(key);
    }

    static void Remove(HKEY from, const std::string& path)
    {
        const HKEY key = Open(from, path, KEY_ALL_ACCESS);
        if (!key)
            return;
        RemoveBelow(key);
        RegCloseKey(key);
        RegDeleteKeyA(from, path.c_str());
    }

    const std::string name;

private:
    // Two tests of a process may begin in one moment of the clock.
    static unsigned Count()
    {
        static unsigned count = 0;
        return ++count;
    }

    // Some services let a name have 256 units, one more than is published.
    static void RemoveBelow(HKEY key)
    {
        constexpr DWORD room = 258;
        WCHAR name[room];
        DWORD size = room;
        while (RegEnumKeyExW(key, 0, name, &size, nullptr, nullptr, nullptr, nullptr) == 0) {
            HKEY child = nullptr;
            ASSERT_EQ(RegOpenKeyExW(key, name, 0, KEY_ALL_ACCESS, &child), 0);
            RemoveBelow(child);
            RegCloseKey(child);
            ASSERT_EQ(RegDeleteKeyW(key, name), 0);
            size = room;
        }
    }
};

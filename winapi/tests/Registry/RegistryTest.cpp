// winapi/tests/Registry/RegistryTest.cpp: keys and values.
#include "../Support/Reference.h"
#include "../Support/RegistryPlace.h"

#include <atomic>
#include <cstring>
#include <thread>

namespace
{
// A row of a table: the call and the code that it returns.
struct RegRow
{
    int line;
    const char* call;
    std::function<LSTATUS()> run;
    LSTATUS code;
};

#define REG(call, code)                                                                            \
    RegRow                                                                                         \
    {                                                                                              \
        __LINE__, #call, [&] { return call; }, code                                                \
    }

void RunCalls(const std::vector<RegRow>& rows)
{
    for (const RegRow& row : rows) {
        SCOPED_TRACE(testing::Message() << "line " << row.line << ": " << row.call);
        EXPECT_EQ(row.run(), row.code);
    }
}

const BYTE* Bytes(const void* data)
{
    return static_cast<const BYTE*>(data);
}

// A value as a call told it, or the code that it returned.
struct Told
{
    LSTATUS code = 0;
    DWORD type = 0xFFFFFFFF;
    DWORD size = 0;
    std::string bytes;

    bool operator==(const Told&) const = default;
};

void PrintTo(const Told& told, std::ostream* out)
{
    *out << told.code << ": type " << told.type << ", size " << told.size << ", \""
         << testing::PrintToString(told.bytes) << '"';
}

// The bytes are those of the room, which the call finds filled with "-".
Told QueryA(HKEY key, const char* name, DWORD room)
{
    Told told{0, 0xFFFFFFFF, room, std::string(room, '-')};
    told.code = RegQueryValueExA(key, name, nullptr, &told.type,
                                 reinterpret_cast<BYTE*>(told.bytes.data()), &told.size);
    return told;
}

Told QueryW(HKEY key, const WideString& name, DWORD room)
{
    Told told{0, 0xFFFFFFFF, room, std::string(room, '-')};
    told.code = RegQueryValueExW(key, name.c_str(), nullptr, &told.type,
                                 reinterpret_cast<BYTE*>(told.bytes.data()), &told.size);
    return told;
}

// The size alone.
DWORD SizeA(HKEY key, const char* name)
{
    DWORD size = 99;
    EXPECT_EQ(RegQueryValueExA(key, name, nullptr, nullptr, nullptr, &size), 0);
    return size;
}

DWORD SizeW(HKEY key, const WideString& name)
{
    DWORD size = 99;
    EXPECT_EQ(RegQueryValueExW(key, name.c_str(), nullptr, nullptr, nullptr, &size), 0);
    return size;
}

LSTATUS SetText(HKEY key, const char* name, const std::string& text)
{
    return RegSetValueExA(key, name, 0, REG_SZ, Bytes(text.c_str()),
                          static_cast<DWORD>(text.size() + 1));
}

LSTATUS SetWide(HKEY key, const WideString& name, const WideString& text)
{
    return RegSetValueExW(key, name.c_str(), 0, REG_SZ, Bytes(text.c_str()),
                          static_cast<DWORD>((text.size() + 1) * sizeof(WCHAR)));
}

// The names of subkeys, each with a blank behind it.
std::string Subkeys(HKEY key)
{
    std::string names;
    char name[256];
    for (DWORD index = 0, size = 256;
         RegEnumKeyExA(key, index, name, &size, nullptr, nullptr, nullptr, nullptr) == 0;
         ++index, size = 256)
        names += std::string(name, size) + ' ';
    return names;
}

std::string Values(HKEY key)
{
    std::string names;
    char name[256];
    for (DWORD index = 0, size = 256;
         RegEnumValueA(key, index, name, &size, nullptr, nullptr, nullptr, nullptr) == 0;
         ++index, size = 256)
        names += std::string(name, size) + ' ';
    return names;
}

std::string Utf16(const std::u16string& text)
{
    return {reinterpret_cast<const char*>(text.data()), text.size() * 2};
}
} // namespace

class Registry : public RegistryPlace
{};

TEST_F(Registry, AKeyIsCreatedOnceAndOpenedWithTheRightsAskedFor)
{
    HKEY k = nullptr;
    HKEY k2 = nullptr;
    DWORD d = 9;
    DWORD t = 9;
    DWORD n = 9;
    const std::string path = In("a\\b");
    RunCalls({
        REG(RegCreateKeyExA(HKEY_CURRENT_USER, path.c_str(), 0, nullptr, 0, 0x20006, nullptr, &k,
                            &d),
            0),
        REG(static_cast<LSTATUS>(d), REG_CREATED_NEW_KEY),
        REG(RegCreateKeyExA(HKEY_CURRENT_USER, path.c_str(), 0, nullptr, 0, 0x20006, nullptr, &k2,
                            &d),
            0),
        REG(static_cast<LSTATUS>(d), REG_OPENED_EXISTING_KEY),
        REG(RegQueryValueExA(k, "x", nullptr, &t, nullptr, &n), ERROR_ACCESS_DENIED),
        REG(RegSetValueExA(k, "x", 0, 1, Bytes("abc"), 4), 0),
        REG(RegSetValueExA(k, "X", 0, 1, Bytes("abcd"), 5), 0),
        REG(RegSetValueExA(k, "", 0, 4, Bytes("\1\2\3\4"), 4), 0),
        REG(RegSetValueExA(k, "nul", 0, 3, nullptr, 0), 0),
        REG(RegSetValueExA(k, "nonterm", 0, 1, Bytes("abcd"), 3), 0),
        REG(RegSetValueExA(k, "dw", 0, 4, Bytes("ab"), 2), 0),
        REG(RegCloseKey(k), 0),
        REG(RegCloseKey(k), ERROR_INVALID_HANDLE),
        REG(RegCloseKey(nullptr), ERROR_INVALID_HANDLE),
        REG(RegCloseKey(HKEY_CURRENT_USER), 0),
        REG(RegCloseKey(k2), 0),
        REG(RegOpenKeyExA(HKEY_CURRENT_USER, In("A\\B").c_str(), 0, 0x20019, &k), 0),
        REG(RegSetValueExA(k, "y", 0, 1, Bytes("q"), 2), ERROR_ACCESS_DENIED),
        REG(RegDeleteValueA(k, "x"), ERROR_ACCESS_DENIED),
        REG(RegQueryValueExA(k, "x", nullptr, &t, nullptr, nullptr), 0),
        REG(static_cast<LSTATUS>(t), REG_SZ),
    });
    BYTE room[1];
    EXPECT_EQ(RegQueryValueExA(k, "x", nullptr, &t, room, nullptr), ERROR_INVALID_PARAMETER);
    EXPECT_EQ(QueryA(k, "x", 8), (Told{0, REG_SZ, 5, std::string("abcd\0---", 8)}));
    EXPECT_EQ(QueryA(k, "x", 4), (Told{ERROR_MORE_DATA, REG_SZ, 5, "----"}));
    EXPECT_EQ(SizeA(k, "x"), 5U);
    EXPECT_EQ(SizeW(k, Wide("x")), 10U);
    EXPECT_EQ(SizeA(k, "nonterm"), 3U);
    EXPECT_EQ(QueryA(k, nullptr, 4), (Told{0, REG_DWORD, 4, "\1\2\3\4"}));
    EXPECT_EQ(QueryA(k, "nul", 4), (Told{0, REG_BINARY, 0, "----"}));
    EXPECT_EQ(QueryA(k, "dw", 4), (Told{0, REG_DWORD, 2, "ab--"}));
    RegCloseKey(k);
}

TEST_F(Registry, ATextWithoutItsTerminatorGetsOneWhereThereIsRoom)
{
    const HKEY key = Create(HKEY_CURRENT_USER, name);
    EXPECT_EQ(RegSetValueExA(key, "narrow", 0, REG_SZ, Bytes("abcd"), 3), 0);
    EXPECT_EQ(RegSetValueExW(key, Wide("wide").c_str(), 0, REG_EXPAND_SZ, Bytes(u"abcd"), 6), 0);
    EXPECT_EQ(RegSetValueExW(key, Wide("bytes").c_str(), 0, REG_BINARY, Bytes(u"abcd"), 6), 0);
    EXPECT_EQ(QueryA(key, "narrow", 3), (Told{0, REG_SZ, 3, "abc"}));
    EXPECT_EQ(QueryA(key, "narrow", 5), (Told{0, REG_SZ, 3, std::string("abc\0-", 5)}));
    EXPECT_EQ(QueryW(key, Wide("narrow"), 8),
              (Told{0, REG_SZ, 6, Utf16(std::u16string(u"abc\0", 4))}));
    EXPECT_EQ(QueryW(key, Wide("narrow"), 7), (Told{0, REG_SZ, 6, Utf16(u"abc") + '-'}));
    EXPECT_EQ(QueryA(key, "wide", 4), (Told{0, REG_EXPAND_SZ, 3, std::string("abc\0", 4)}));
    EXPECT_EQ(QueryA(key, "bytes", 8), (Told{0, REG_BINARY, 6, Utf16(u"abc") + "--"}));
    RegCloseKey(key);
}

TEST_F(Registry, TextsAreKeptWideAndTheNarrowCallsConvertThem)
{
    const HKEY key = Create(HKEY_CURRENT_USER, name);
    const WideString text = Wide(u"\x0416\x00E9\x3042");
    EXPECT_EQ(SetWide(key, Wide("text"), text), 0);
    EXPECT_EQ(SizeW(key, Wide("text")), 8U);
    EXPECT_EQ(QueryA(key, "text", 4), (Told{0, REG_SZ, 4, std::string("?\xE9?\0", 4)}));
    EXPECT_EQ(RegSetValueExA(key, "list", 0, REG_MULTI_SZ, Bytes("\xE9\0b\0"), 5), 0);
    EXPECT_EQ(QueryW(key, Wide("list"), 10),
              (Told{0, REG_MULTI_SZ, 10, Utf16(std::u16string(u"\x00E9\0b\0\0", 5))}));
    // What isn't text isn't converted.
    EXPECT_EQ(RegSetValueExA(key, "link", 0, REG_LINK, Bytes("\xE9"), 1), 0);
    EXPECT_EQ(QueryW(key, Wide("link"), 1), (Told{0, REG_LINK, 1, "\xE9"}));
    RegCloseKey(key);
}

TEST_F(Registry, PathsLeadDownFromAKey)
{
    HKEY k = nullptr;
    DWORD d = 0;
    ASSERT_EQ(TryCreate(HKEY_CURRENT_USER, In("a\\b")), 0);
    RunCalls({
        REG(RegOpenKeyExA(HKEY_CURRENT_USER, In("none").c_str(), 0, 0x20019, &k),
            ERROR_FILE_NOT_FOUND),
        REG(RegOpenKeyExA(HKEY_CURRENT_USER, "\\Software", 0, 0x20019, &k), ERROR_BAD_PATHNAME),
        REG(TryOpen(HKEY_CURRENT_USER, "Software\\"), 0),
        REG(TryOpen(HKEY_CURRENT_USER, "Software\\\\" + name.substr(9)), 0),
        REG(TryOpen(HKEY_CURRENT_USER, "SOFTWARE\\" + name.substr(9) + "\\A\\\\B\\"), 0),
        REG(TryOpen(HKEY_CURRENT_USER, ""), 0),
        REG(RegOpenKeyExA(HKEY_CURRENT_USER, nullptr, 0, 0x20019, &k), 0),
        REG(RegCloseKey(k), 0),
        REG(RegOpenKeyExA(reinterpret_cast<HKEY>(0x1234), "x", 0, 0x20019, &k),
            ERROR_INVALID_HANDLE),
        REG(RegOpenKeyExA(nullptr, "x", 0, 0x20019, &k), ERROR_INVALID_HANDLE),
        REG(RegCreateKeyExA(HKEY_CURRENT_USER, ("\\" + In("lead")).c_str(), 0, nullptr, 0, 0x20006,
                            nullptr, &k, &d),
            ERROR_BAD_PATHNAME),
        REG(TryCreate(HKEY_CURRENT_USER, ""), 0),
        REG(TryCreate(HKEY_CURRENT_USER, In(std::string(255, 'k'))), ERROR_MORE_DATA),
        REG(TryCreate(HKEY_LOCAL_MACHINE, "Software\\OstraTest"), 0),
        REG(TryOpen(HKEY_CURRENT_CONFIG, ""), 0),
        REG(TryOpen(HKEY_USERS, ""), 0),
        REG(TryOpen(HKEY_PERFORMANCE_DATA, ""), 0),
    });
    EXPECT_EQ(RegDeleteKeyA(HKEY_LOCAL_MACHINE, "Software\\OstraTest"), 0);
    // The reference run faults.
    if (!IsReferenceRun()) {
        EXPECT_EQ(RegOpenKeyExA(HKEY_CURRENT_USER, "Software", 0, 0x20019, nullptr),
                  ERROR_INVALID_PARAMETER);
    }
}

TEST_F(Registry, ANameOfAKeyHasUpTo255Units)
{
    const WideString most(255, 'k');
    const WideString more(256, 'k');
    HKEY key = nullptr;
    HKEY below = nullptr;
    ASSERT_EQ(RegCreateKeyExA(HKEY_CURRENT_USER, name.c_str(), 0, nullptr, 0, KEY_ALL_ACCESS,
                              nullptr, &key, nullptr),
              0);
    EXPECT_EQ(
        RegCreateKeyExW(key, most.c_str(), 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &below, nullptr),
        0);
    EXPECT_EQ(RegCloseKey(below), 0);
    const LSTATUS code =
        RegCreateKeyExW(key, more.c_str(), 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &below, nullptr);
    EXPECT_PUBLISHED(ERROR_INVALID_PARAMETER, code);
    if (code == 0)
        RegCloseKey(below);
    RegCloseKey(key);
}

TEST_F(Registry, WhatLiesBelowTheClassesLiesBelowTheMachine)
{
    ASSERT_EQ(TryCreate(HKEY_CLASSES_ROOT, "OstraTest\\Class"), 0);
    EXPECT_EQ(TryOpen(HKEY_LOCAL_MACHINE, "Software\\Classes\\OstraTest\\Class"), 0);
    EXPECT_EQ(TryOpen(HKEY_CLASSES_ROOT, "\\OstraTest"), 0);
    EXPECT_EQ(RegDeleteKeyA(HKEY_CLASSES_ROOT, "OstraTest\\Class"), 0);
    EXPECT_EQ(RegDeleteKeyA(HKEY_CLASSES_ROOT, "OstraTest"), 0);
    EXPECT_EQ(TryOpen(HKEY_LOCAL_MACHINE, "Software\\Classes\\OstraTest"), ERROR_FILE_NOT_FOUND);
}

TEST_F(Registry, SubkeysAreCountedAndEnumeratedInOrder)
{
    for (const char* child : {"beta", "ALPHB", "a\\b", "Alpha", "_x", "1"})
        ASSERT_EQ(TryCreate(HKEY_CURRENT_USER, In(child)), 0);
    const HKEY k = Open(HKEY_CURRENT_USER, name, 0x2001F);
    ASSERT_EQ(SetText(k, "value", "abc"), 0);
    ASSERT_EQ(SetText(k, "longer value", ""), 0);
    DWORD sub = 0, mx = 0, mc = 9, nv = 0, mv = 0, md = 0;
    EXPECT_EQ(RegQueryInfoKeyA(k, nullptr, nullptr, nullptr, &sub, &mx, &mc, &nv, &mv, &md, nullptr,
                               nullptr),
              0);
    EXPECT_EQ(sub, 6U);
    EXPECT_EQ(mx, 5U);
    EXPECT_EQ(mc, 0U);
    EXPECT_EQ(nv, 2U);
    EXPECT_EQ(mv, 12U);
    EXPECT_EQ(md, 8U);
    EXPECT_EQ(Subkeys(k), "1 _x a Alpha ALPHB beta ");
    char b[8] = "-------";
    DWORD n = 1;
    RunCalls({
        REG(RegEnumKeyExA(k, 0, b, &n, nullptr, nullptr, nullptr, nullptr), ERROR_MORE_DATA),
        REG(static_cast<LSTATUS>(n), 1),
        REG((n = 2, RegEnumKeyExA(k, 0, b, &n, nullptr, nullptr, nullptr, nullptr)), 0),
        REG(static_cast<LSTATUS>(n), 1),
        REG((n = 8, RegEnumKeyExA(k, 9, b, &n, nullptr, nullptr, nullptr, nullptr)),
            ERROR_NO_MORE_ITEMS),
    });
    EXPECT_STREQ(b, "1");
    RegCloseKey(k);
}

TEST_F(Registry, ValuesAreEnumeratedWithTheirData)
{
    const HKEY key = Create(HKEY_CURRENT_USER, name);
    ASSERT_EQ(SetWide(key, Wide(u"\x0416"), Wide("abc")), 0);
    char text[8] = "-------";
    WCHAR wide[8] = {};
    BYTE data[16];
    DWORD n = 8, type = 0, size = 16;
    EXPECT_EQ(RegEnumValueW(key, 0, wide, &n, nullptr, &type, data, &size), 0);
    EXPECT_EQ(WideString(wide, n), Wide(u"\x0416"));
    EXPECT_EQ(type, DWORD(REG_SZ));
    EXPECT_EQ(size, 8U);
    n = 8;
    size = 16;
    EXPECT_EQ(RegEnumValueA(key, 0, text, &n, nullptr, &type, data, &size), 0);
    EXPECT_EQ(std::string(text, n), "?");
    EXPECT_EQ(size, 4U);
    EXPECT_EQ(std::memcmp(data, "abc", 4), 0);
    n = 1;
    size = 16;
    EXPECT_EQ(RegEnumValueW(key, 0, wide, &n, nullptr, &type, data, &size), ERROR_MORE_DATA);
    n = 8;
    size = 2;
    EXPECT_EQ(RegEnumValueW(key, 0, wide, &n, nullptr, &type, data, &size), ERROR_MORE_DATA);
    EXPECT_EQ(size, 8U);
    EXPECT_EQ(RegEnumValueW(key, 1, wide, &n, nullptr, &type, data, &size), ERROR_NO_MORE_ITEMS);
    RegCloseKey(key);
}

TEST_F(Registry, AKeyWithSubkeysIsNotDeleted)
{
    ASSERT_EQ(TryCreate(HKEY_CURRENT_USER, In("a\\b")), 0);
    const HKEY k = Open(HKEY_CURRENT_USER, name, 0x2001F);
    HKEY k3 = nullptr;
    DWORD d = 0, sub = 0;
    RunCalls({
        REG(RegDeleteKeyA(k, "a"), ERROR_ACCESS_DENIED),
        REG(RegDeleteKeyA(k, "none"), ERROR_FILE_NOT_FOUND),
        REG(RegDeleteKeyA(k, ""), ERROR_ACCESS_DENIED),
        REG(RegDeleteKeyA(k, "a\\b"), 0),
        REG(RegCreateKeyExA(k, "z\\y", 0, nullptr, 0, 0x2001F, nullptr, &k3, &d), 0),
        REG(RegDeleteKeyA(k, "z\\y"), 0),
        REG(RegSetValueExA(k3, "v", 0, 1, Bytes("q"), 2), ERROR_KEY_DELETED),
        REG(RegQueryInfoKeyA(k3, nullptr, nullptr, nullptr, &sub, nullptr, nullptr, nullptr,
                             nullptr, nullptr, nullptr, nullptr),
            ERROR_KEY_DELETED),
        REG(TryCreate(k3, "below"), ERROR_KEY_DELETED),
        REG(QueryA(k3, "v", 1).code, ERROR_KEY_DELETED),
        REG(RegDeleteValueA(k3, "v"), ERROR_KEY_DELETED),
        REG(RegCloseKey(k3), 0),
        REG(RegDeleteValueA(k, "none"), ERROR_FILE_NOT_FOUND),
    });
    EXPECT_EQ(Subkeys(k), "a z ");
    RegCloseKey(k);
}

TEST_F(Registry, AKeyThatIsMadeAnewIsNotTheOneThatWasDeleted)
{
    const HKEY old = Create(HKEY_CURRENT_USER, In("key"));
    EXPECT_EQ(SetText(old, "v", "old"), 0);
    EXPECT_EQ(RegDeleteKeyA(HKEY_CURRENT_USER, In("key").c_str()), 0);
    const HKEY made = Create(HKEY_CURRENT_USER, In("key"));
    EXPECT_EQ(QueryA(made, "v", 4).code, ERROR_FILE_NOT_FOUND);
    EXPECT_EQ(QueryA(old, "v", 4).code, ERROR_KEY_DELETED);
    RegCloseKey(made);
    RegCloseKey(old);
}

TEST_F(Registry, NamesOfValuesIgnoreCaseInAllScripts)
{
    const HKEY k = Create(HKEY_CURRENT_USER, name);
    EXPECT_EQ(RegSetValueExW(k, Wide(u"\x0416").c_str(), 0, 1, Bytes(u"\x0416\x3042"), 6), 0);
    EXPECT_EQ(QueryA(k, "?", 8).code, ERROR_FILE_NOT_FOUND);
    EXPECT_EQ(QueryW(k, Wide(u"\x0436"), 6),
              (Told{0, REG_SZ, 6, Utf16(std::u16string(u"\x0416\x3042\0", 3))}));
    RegCloseKey(k);
}

TEST_F(Registry, NamesOfKeysIgnoreCaseInAllScriptsAndKeepTheirFirstSpelling)
{
    const HKEY key = Create(HKEY_CURRENT_USER, name);
    const std::u16string names[] = {u"\x0416\x00C4", u"\xD83D\xDE00", u"\xD800"};
    for (const std::u16string& text : names) {
        HKEY child = nullptr;
        EXPECT_EQ(RegCreateKeyExW(key, Wide(text).c_str(), 0, nullptr, 0, KEY_READ, nullptr, &child,
                                  nullptr),
                  0);
        RegCloseKey(child);
    }
    HKEY child = nullptr;
    DWORD d = 0;
    EXPECT_EQ(RegCreateKeyExW(key, Wide(u"\x0436\x00E4").c_str(), 0, nullptr, 0, KEY_READ, nullptr,
                              &child, &d),
              0);
    EXPECT_EQ(d, DWORD(REG_OPENED_EXISTING_KEY));
    RegCloseKey(child);
    // In the order of the units in lower case.
    const std::u16string order[] = {names[0], names[2], names[1]};
    for (DWORD index = 0; index < 3; ++index) {
        WCHAR text[8];
        DWORD n = 8;
        EXPECT_EQ(RegEnumKeyExW(key, index, text, &n, nullptr, nullptr, nullptr, nullptr), 0);
        EXPECT_EQ(WideString(text, n), Wide(order[index]));
    }
    RegCloseKey(key);
}

TEST_F(Registry, ANameOfAValueHasUpTo16383Units)
{
    const HKEY k = Create(HKEY_CURRENT_USER, name);
    const std::string big(100000, 'b');
    RunCalls({
        REG(RegSetValueExA(k, std::string(16384, 'v').c_str(), 0, 1, Bytes("q"), 2),
            ERROR_INVALID_PARAMETER),
        REG(RegSetValueExA(k, std::string(16383, 'v').c_str(), 0, 1, Bytes("q"), 2), 0),
        REG(RegSetValueExA(k, "big", 0, 3, Bytes(big.data()), 100000), 0),
    });
    EXPECT_EQ(QueryA(k, std::string(16383, 'V').c_str(), 2),
              (Told{0, REG_SZ, 2, std::string("q\0", 2)}));
    EXPECT_EQ(QueryA(k, "big", 100000), (Told{0, REG_BINARY, 100000, big}));
    RegCloseKey(k);
}

TEST_F(Registry, EachRightIsNeededForItsWork)
{
    const HKEY writes = Create(HKEY_CURRENT_USER, name, 0x20006);
    ASSERT_EQ(SetText(writes, "big", "b"), 0);
    DWORD t = 0, n = 0;
    char b[8];
    RunCalls({
        REG(RegQueryValueExA(writes, "big", nullptr, &t, nullptr, &n), ERROR_ACCESS_DENIED),
        REG((n = 8, RegEnumKeyExA(writes, 0, b, &n, nullptr, nullptr, nullptr, nullptr)),
            ERROR_ACCESS_DENIED),
        REG((n = 8, RegEnumValueA(writes, 0, b, &n, nullptr, nullptr, nullptr, nullptr)),
            ERROR_ACCESS_DENIED),
        REG(TryCreate(writes, "child"), 0),
    });
    const HKEY reads = Open(HKEY_CURRENT_USER, name, KEY_READ);
    EXPECT_EQ(SetText(reads, "v", "x"), ERROR_ACCESS_DENIED);
    EXPECT_EQ(TryCreate(reads, "child"), 0);
    EXPECT_PUBLISHED(ERROR_ACCESS_DENIED, TryCreate(reads, "new child"));
    EXPECT_PUBLISHED(ERROR_ACCESS_DENIED,
                     RegQueryInfoKeyA(writes, nullptr, nullptr, nullptr, &n, nullptr, nullptr,
                                      nullptr, nullptr, nullptr, nullptr, nullptr));
    // A key is deleted, or opened for more, whatever the right of the one above.
    EXPECT_EQ(TryOpen(reads, "child", KEY_ALL_ACCESS), 0);
    EXPECT_EQ(RegDeleteKeyA(reads, "child"), 0);
    RegCloseKey(reads);
    RegCloseKey(writes);
}

TEST_F(Registry, GenericRightsStandForThoseOfKeys)
{
    const HKEY all = Create(HKEY_CURRENT_USER, name, GENERIC_READ | GENERIC_WRITE);
    EXPECT_EQ(SetText(all, "v", "x"), 0);
    EXPECT_EQ(QueryA(all, "v", 2).code, 0);
    RegCloseKey(all);
    const HKEY most = Open(HKEY_CURRENT_USER, name, 0x02000000);
    EXPECT_EQ(SetText(most, "v", "y"), 0);
    RegCloseKey(most);
}

TEST_F(Registry, AValueMayChangeItsTypeAndKeepsTheSpellingOfItsName)
{
    const HKEY key = Create(HKEY_CURRENT_USER, name);
    EXPECT_EQ(SetText(key, "Value", "text"), 0);
    EXPECT_EQ(SetText(key, "b", ""), 0);
    EXPECT_EQ(RegSetValueExA(key, "VALUE", 0, 0x12345, Bytes("x"), 1), 0);
    EXPECT_EQ(QueryA(key, "value", 1), (Told{0, 0x12345, 1, "x"}));
    // The platform tells values in the order in which they were made, its reference run by name.
    EXPECT_EQ(Values(key), Side("b Value ", IsReferenceRun() ? "b Value " : "Value b "));
    EXPECT_EQ(RegDeleteValueA(key, "vaLUe"), 0);
    EXPECT_EQ(Values(key), "b ");
    RegCloseKey(key);
}

TEST_F(Registry, TheTimeOfTheLastWriteGoesUp)
{
    const HKEY key = Create(HKEY_CURRENT_USER, name);
    const auto written = [&] {
        FILETIME time{};
        EXPECT_EQ(RegQueryInfoKeyW(key, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                                   nullptr, nullptr, nullptr, nullptr, &time),
                  0);
        return static_cast<unsigned long long>(time.dwHighDateTime) << 32 | time.dwLowDateTime;
    };
    const auto first = written();
    EXPECT_GT(first, 132000000000000000ULL); // The year 2019.
    for (const DWORD start = GetTickCount(); GetTickCount() - start < 40;) {
    }
    EXPECT_EQ(SetText(key, "v", "x"), 0);
    EXPECT_GT(written(), first);
    RegCloseKey(key);
}

TEST_F(Registry, ThreadsMayUseItAtOnce)
{
    const HKEY shared = Create(HKEY_CURRENT_USER, name);
    std::atomic<int> wrong = 0;
    std::vector<std::thread> threads;
    for (char who = 'a'; who < 'e'; ++who)
        threads.emplace_back([&, who] {
            const std::string own(1, who);
            for (int i = 0; i < 100; ++i) {
                const HKEY key = Create(shared, own);
                const std::string text = own + std::to_string(i);
                wrong += SetText(key, "own", text) != 0;
                wrong += SetText(shared, "shared", text) != 0;
                char data[16] = {};
                DWORD size = sizeof data;
                wrong += RegQueryValueExA(key, "own", nullptr, nullptr,
                                          reinterpret_cast<BYTE*>(data), &size) != 0 ||
                         data != text;
                size = sizeof data;
                wrong += RegQueryValueExA(shared, "shared", nullptr, nullptr,
                                          reinterpret_cast<BYTE*>(data), &size) != 0;
                RegCloseKey(key);
            }
        });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(wrong, 0);
    EXPECT_EQ(Subkeys(shared), "a b c d ");
    RegCloseKey(shared);
}

TEST_F(Registry, TheLastErrorIsNoPartOfTheAnswer)
{
    SetLastError(4711);
    EXPECT_EQ(TryOpen(HKEY_CURRENT_USER, In("none")), ERROR_FILE_NOT_FOUND);
    EXPECT_EQ(RegCloseKey(nullptr), ERROR_INVALID_HANDLE);
    EXPECT_EQ(GetLastError(), 4711U);
}

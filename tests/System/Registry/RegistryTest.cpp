// tests/System/Registry/RegistryTest.cpp
#include <System/Registry/Registry.h>

#include <Ostra/String/CString.h>
#include <System/OS/OS.h>

#include <gtest/gtest.h>

#include <windows.h>

#include <memory>
#include <string>

#include "../../../winapi/tests/Support/RegistryPlace.h"
#include "Support/Failure.h"

namespace
{
// Without wide calls values are stored in 8-bit form, and under a right to read alone.
bool IsWide()
{
    return CT_OS::sb_GetIsWindowsNT();
}

// Whether the system holds a key that is open for reading against writing. One without wide calls
// needn't, and the class counts on that there.
bool SystemHasRights()
{
    HKEY key = nullptr;
    RegOpenKeyExA(HKEY_CURRENT_USER, nullptr, 0, KEY_READ, &key);
    const LSTATUS code = RegSetValueExA(key, "OstraRights", 0, REG_SZ, nullptr, 0);
    RegDeleteValueA(key, "OstraRights");
    RegCloseKey(key);
    return code == ERROR_ACCESS_DENIED;
}

bool Writes()
{
    return IsWide() || !SystemHasRights();
}

CT_UString Text(const std::string& text)
{
    return CT_UString(text.c_str(), -1, 1252);
}

std::string Ascii(const CT_String& text)
{
    std::string out;
    for (unsigned n = 0; n < text.vn_GetLength(); ++n)
        out += static_cast<char>(text.vu_GetAt(n));
    return out;
}

std::string Bytes(const CT_Buffer& buffer)
{
    return std::string(static_cast<const char*>(buffer.qcv_Get()), buffer.n_GetUsedSize());
}

// A report of the system: its code and how many places it passed.
void ExpectRefused(unsigned code, unsigned places)
{
    const Failure failure = TakeFailure();
    EXPECT_EQ(failure.code, code) << failure.text;
    EXPECT_EQ(failure.text.find("(" + std::to_string(code) + "): "), 0U) << failure.text;
    EXPECT_EQ(failure.trail, std::vector<std::string>(places, "System/Registry/Registry"));
}

void ExpectDone()
{
    EXPECT_EQ(TakeFailure(), Failure());
}
} // namespace

class RegistryCursor : public RegistryPlace
{
protected:
    RegistryCursor() : path(Text(name)), registry(HKEY_CURRENT_USER)
    {
        EXPECT_EQ(TryCreate(HKEY_CURRENT_USER, name), 0);
        registry.v_Set(HKEY_CURRENT_USER, &path);
    }

    // What the class writes on the wide road; elsewhere the system writes, and the class is refused.
    void StoreRaw(const char* value, DWORD type, const std::string& bytes) const
    {
        const HKEY key = Open(HKEY_CURRENT_USER, name, KEY_ALL_ACCESS);
        const auto data = reinterpret_cast<const BYTE*>(bytes.data());
        const auto size = static_cast<DWORD>(bytes.size());
        EXPECT_EQ(RegSetValueExA(key, value, 0, type, data, size), 0);
        RegCloseKey(key);
    }
    // Type and bytes as wide calls tell them; empty where there is no such value.
    std::string Raw(const std::string& value, DWORD* type = nullptr) const
    {
        const HKEY key = Open(HKEY_CURRENT_USER, name);
        BYTE data[256];
        DWORD size = sizeof data;
        DWORD stored = 0;
        const LSTATUS code =
            RegQueryValueExW(key, Wide(value).c_str(), nullptr, &stored, data, &size);
        RegCloseKey(key);
        if (type)
            *type = stored;
        return code ? std::string() : std::string(reinterpret_cast<char*>(data), size);
    }
    void Set(const std::string& key)
    {
        const CT_UString text = Text(key);
        registry.v_SetKey(&text);
    }
    void Make(const std::string& key)
    {
        const CT_UString text = Text(key);
        registry.v_CreateKey(&text);
        ExpectDone();
    }
    std::string Cursor() const { return Ascii(*registry.pcco_GetKey()); }

    const CT_UString path;
    CT_Registry registry;
};

TEST_F(RegistryCursor, BeginsAtTheRoot)
{
    const CT_Registry root(HKEY_LOCAL_MACHINE);
    EXPECT_EQ(root.h_GetKey(), HKEY_LOCAL_MACHINE);
    EXPECT_EQ(root.pcco_GetKey()->vn_GetLength(), 0U);
}

TEST_F(RegistryCursor, BeginsAtAPathWithoutSeparatorsAtItsEnds)
{
    const CT_UString ends(u"\\\\A\\B\\");
    const CT_Registry wide(HKEY_CURRENT_USER, &ends);
    EXPECT_EQ(Ascii(*wide.pcco_GetKey()), "A\\B");
    EXPECT_EQ(Ascii(ends), "\\\\A\\B\\");
    const CT_CString bytes("\\A", -1, 0);
    const CT_Registry narrow(HKEY_CURRENT_USER, &bytes);
    EXPECT_EQ(Ascii(*narrow.pcco_GetKey()), "A");
    // Nobody has asked for the key.
    ExpectDone();
}

TEST_F(RegistryCursor, MadeFromAnotherSharesPathAndValue)
{
    StoreRaw("data", REG_BINARY, "1234");
    CT_Buffer data;
    const CT_UString value = Text("data");
    registry.v_GetValue(&value, &data);
    const unsigned holders = data.n_GetUseCount();
    {
        const CT_Registry other(&registry);
        EXPECT_EQ(data.n_GetUseCount(), holders + 1);
        EXPECT_EQ(other.pcco_GetKey()->qcuz_Get(), registry.pcco_GetKey()->qcuz_Get());
        EXPECT_EQ(other.h_GetKey(), HKEY_CURRENT_USER);
    }
    CT_Registry set(HKEY_LOCAL_MACHINE);
    set.v_Set(&registry);
    EXPECT_EQ(set.h_GetKey(), HKEY_CURRENT_USER);
    EXPECT_EQ(Ascii(*set.pcco_GetKey()), name);
    EXPECT_EQ(data.n_GetUseCount(), holders + 1);
    set.v_Set(&set);
    EXPECT_EQ(Ascii(*set.pcco_GetKey()), name);
    set.v_Set(HKEY_USERS);
    EXPECT_EQ(set.h_GetKey(), HKEY_USERS);
    EXPECT_EQ(set.pcco_GetKey()->vn_GetLength(), 0U);
    EXPECT_EQ(data.n_GetUseCount(), holders);
    ExpectDone();
}

TEST_F(RegistryCursor, SetAnewLetsGoOfTheValue)
{
    StoreRaw("data", REG_BINARY, "1234");
    CT_Buffer data;
    const CT_UString value = Text("data");
    registry.v_GetValue(&value, &data);
    EXPECT_EQ(data.n_GetUseCount(), 2U);
    // The cursor's own path may be what it is set to.
    registry.v_Set(HKEY_CURRENT_USER, registry.pcco_GetKey());
    EXPECT_EQ(data.n_GetUseCount(), 1U);
    EXPECT_EQ(Cursor(), name);
    ExpectDone();
}

TEST_F(RegistryCursor, MakingAKeyDoesNotMoveTheCursor)
{
    Make("a");
    Make("deep\\er\\down");
    Make("\\" + In("absolute"));
    EXPECT_EQ(Cursor(), name);
    for (const char* made : {"a", "deep\\er\\down", "absolute"})
        EXPECT_EQ(TryOpen(HKEY_CURRENT_USER, In(made)), 0) << made;
    // One that is there is made once more.
    Make("a");
}

TEST_F(RegistryCursor, MovesDownByRelativeAndByAbsolutePaths)
{
    Make("A\\B");
    Set("A");
    EXPECT_EQ(Cursor(), In("A"));
    Set("B");
    EXPECT_EQ(Cursor(), In("A\\B"));
    Set("\\" + In("a") + "\\");
    EXPECT_EQ(Cursor(), In("a"));
    Set("\\");
    EXPECT_EQ(Cursor(), "");
    Set("\\" + In("A\\B") + "\\");
    EXPECT_EQ(Cursor(), In("A\\B"));
    ExpectDone();
    const CT_CString bytes("..", -1, 0);
    registry.v_SetKey(&bytes);
    EXPECT_EQ(Cursor(), In("A"));
    ExpectDone();
}

TEST_F(RegistryCursor, MovesUpByTwoPoints)
{
    Make("A");
    Set("A");
    Set("..");
    EXPECT_EQ(Cursor(), name);
    Set("\\Software");
    Set("..");
    EXPECT_EQ(Cursor(), "");
    Set("..");
    EXPECT_EQ(Cursor(), "");
    ExpectDone();
}

TEST_F(RegistryCursor, ARelativePathKeepsItsSeparatorAtTheEnd)
{
    Make("A");
    Set("A\\");
    EXPECT_EQ(Cursor(), In("A\\"));
    Set("..");
    EXPECT_EQ(Cursor(), In("A"));
    Set("..");
    EXPECT_EQ(Cursor(), name);
    ExpectDone();
}

TEST_F(RegistryCursor, ARelativePathAtTheRootReachesTheSystemWithASeparatorInFront)
{
    registry.v_Set(HKEY_CURRENT_USER);
    Set("Software");
    ExpectRefused(161, 1);
    EXPECT_EQ(Cursor(), "");
    // A system without wide calls may pass it by where it makes a key.
    HKEY key = nullptr;
    if (!IsWide() && RegCreateKeyExA(HKEY_CURRENT_USER, "\\OstraTestLead", 0, nullptr, 0, KEY_WRITE,
                                     nullptr, &key, nullptr) == 0) {
        RegCloseKey(key);
        RegDeleteKeyA(HKEY_CURRENT_USER, "OstraTestLead");
        return;
    }
    const CT_UString lead = Text("OstraTestLead");
    registry.v_CreateKey(&lead);
    ExpectRefused(161, 1);
}

TEST_F(RegistryCursor, AMissingKeyIsReportedAndTheCursorStays)
{
    const unsigned short* text = registry.pcco_GetKey()->qcuz_Get();
    Set("missing");
    ExpectRefused(2, 1);
    EXPECT_EQ(Cursor(), name);
    EXPECT_EQ(registry.pcco_GetKey()->qcuz_Get(), text);
}

TEST_F(RegistryCursor, DeletesTreesOfAnyDepth)
{
    std::string deep = "tree";
    for (unsigned n = 0; n < 40; ++n) {
        Make(deep + "\\side");
        Make(deep + "\\\\other side");
        deep += "\\d" + std::to_string(n);
    }
    const CT_UString tree = Text("tree");
    registry.v_DeleteKey(&tree);
    ExpectDone();
    EXPECT_EQ(TryOpen(HKEY_CURRENT_USER, In("tree")), ERROR_FILE_NOT_FOUND);
    EXPECT_EQ(TryOpen(HKEY_CURRENT_USER, name), 0);
    EXPECT_EQ(Cursor(), name);
}

TEST_F(RegistryCursor, DeletesKeysWithNamesInEveryScript)
{
    const HKEY tree = Create(HKEY_CURRENT_USER, In("tree"));
    const std::u16string names[] = {u"\x00E9\x00FC", u"Gr\x00F6\x00DF"
                                                     u"e"};
    for (const std::u16string& text : names) {
        HKEY key = nullptr;
        EXPECT_EQ(RegCreateKeyExW(tree, ::Wide(text).c_str(), 0, nullptr, 0, KEY_READ, nullptr,
                                  &key, nullptr),
                  0);
        RegCloseKey(key);
    }
    if (IsWide()) {
        HKEY key = nullptr;
        EXPECT_EQ(RegCreateKeyExW(tree,
                                  ::Wide(u"\x8A9E\xD83D\xDE00" + std::u16string(250, u'x')).c_str(),
                                  0, nullptr, 0, KEY_READ, nullptr, &key, nullptr),
                  0);
        RegCloseKey(key);
    }
    RegCloseKey(tree);
    const CT_UString text = Text("tree");
    registry.v_DeleteKey(&text);
    ExpectDone();
    EXPECT_EQ(TryOpen(HKEY_CURRENT_USER, In("tree")), ERROR_FILE_NOT_FOUND);
}

TEST_F(RegistryCursor, ADeletedNameIsNoPath)
{
    Make("a\\b");
    Set("a");
    for (const char* up : {"..", "\\a"}) {
        const CT_UString text = Text(up);
        registry.v_DeleteKey(&text);
        ExpectRefused(up[0] == '\\' ? 161 : 2, 1);
    }
    const CT_UString missing = Text("missing");
    registry.v_DeleteKey(&missing);
    ExpectRefused(2, 1);
    const CT_UString away = Text("missing");
    registry.v_Set(HKEY_CURRENT_USER, &away);
    registry.v_DeleteKey(&missing);
    ExpectRefused(2, 1);
    EXPECT_EQ(TryOpen(HKEY_CURRENT_USER, In("a\\b")), 0);
}

TEST_F(RegistryCursor, AnEmptyNameDeletesTheKeyOfTheCursor)
{
    Make("a\\b");
    Make("beside");
    Set("a");
    const CT_UString empty;
    registry.v_DeleteKey(&empty);
    ExpectDone();
    EXPECT_EQ(TryOpen(HKEY_CURRENT_USER, In("a")), ERROR_FILE_NOT_FOUND);
    EXPECT_EQ(TryOpen(HKEY_CURRENT_USER, In("beside")), 0);
    EXPECT_EQ(Cursor(), In("a")) << "which is gone";
}

TEST_F(RegistryCursor, TextIsStoredAsItStandsInItsBuffer)
{
    const CT_UString value = Text("text");
    const CT_UString text(u"\x0416\xD83D\xDE00");
    registry.v_SetValue(&value, &text);
    if (!IsWide()) {
        Writes() ? ExpectDone() : ExpectRefused(5, 1);
        return;
    }
    DWORD type = 0;
    const char16_t bytes[] = u"\x0416\xD83D\xDE00";
    EXPECT_EQ(Raw("text", &type), std::string(reinterpret_cast<const char*>(bytes), 8));
    EXPECT_EQ(type, DWORD(REG_SZ));
    CT_UString out;
    registry.v_GetValue(&value, &out);
    ExpectDone();
    EXPECT_EQ(::Wide(out.qcuz_Get()), bytes);
    EXPECT_EQ(out.vn_GetLength(), 3U);
    // A string without a block has nothing to store.
    const CT_UString empty;
    registry.v_SetValue(&value, &empty);
    EXPECT_EQ(Raw("text", &type), "");
    EXPECT_EQ(type, DWORD(REG_SZ));
    registry.v_GetValue(&value, &out);
    EXPECT_EQ(out.vn_GetLength(), 0U);
    ExpectDone();
}

TEST_F(RegistryCursor, TextOfBytesIsStoredAsBytes)
{
    if (!IsWide())
        return;
    const CT_UString value = Text("text");
    const CT_CString text("abc", -1, 0);
    registry.v_SetValue(&value, &text);
    EXPECT_EQ(Raw("text"), std::string("abc\0", 4));
    EXPECT_EQ(text.pcco_GetBuffer()->n_GetUseCount(), 2U);
    CT_CString out("", -1, 0);
    registry.v_GetValue(&value, &out);
    EXPECT_STREQ(out.qccz_Get(), "abc");
    EXPECT_EQ(out.vn_GetLength(), 3U);
    ExpectDone();
}

// Whatever lies behind the bytes: the system looks there where they end without two zeros.
TEST_F(RegistryCursor, OfATextNothingIsStoredThatLiesBehindIt)
{
    if (!IsWide())
        return;
    const CT_UString value = Text("text");
    for (unsigned bytes = 0; bytes < 60; ++bytes)
        for (const char behind : {'\0', 'x'}) {
            const std::string content = std::string(bytes, 'a') + '\0';
            CT_Buffer block((content + std::string(4, behind)).data(), bytes + 5, 32);
            block.v_SetUsedSize(bytes + 1);
            const CT_CString text(&block);
            registry.v_SetValue(&value, &text);
            EXPECT_EQ(Raw("text"), content);
            CT_CString out("", -1, 0);
            registry.v_GetValue(&value, &out);
            EXPECT_EQ(out.vn_GetLength(), bytes);
        }
    ExpectDone();
}

TEST_F(RegistryCursor, AnOddByteBehindATextIsNoEndOfIt)
{
    if (!IsWide())
        return;
    // What the object fetched before lies behind the text.
    StoreRaw("data", REG_BINARY, std::string(16, '\xFF'));
    const HKEY key = Open(HKEY_CURRENT_USER, name, KEY_ALL_ACCESS);
    const BYTE bytes[] = {'a', 0, 0, 0xFF, 0xFF};
    EXPECT_EQ(RegSetValueExW(key, ::Wide(std::string("text")).c_str(), 0, REG_SZ, bytes, 3), 0);
    RegCloseKey(key);
    const CT_UString value = Text("text"), data = Text("data");
    {
        CT_Buffer before;
        registry.v_GetValue(&data, &before);
    }
    CT_UString out;
    registry.v_GetValue(&value, &out);
    ExpectDone();
    EXPECT_EQ(out.pcco_GetBuffer()->n_GetUsedSize(), 3U);
    EXPECT_EQ(::Wide(out.qcuz_Get()), u"a");
}

TEST_F(RegistryCursor, TextIsFetchedInTheFormOfTheRoad)
{
    StoreRaw("text", REG_SZ, std::string("gr\xFC\xDF\0", 5));
    const CT_UString value = Text("TEXT");
    if (IsWide()) {
        CT_UString out(u"before");
        registry.v_GetValue(&value, &out);
        EXPECT_EQ(::Wide(out.qcuz_Get()), u"gr\x00FC\x00DF");
        EXPECT_EQ(out.vn_GetLength(), 4U);
        EXPECT_EQ(out.pcco_GetBuffer()->n_GetUsedSize(), 10U);
    } else {
        CT_CString out("before", -1, 0);
        registry.v_GetValue(&value, &out);
        EXPECT_STREQ(out.qccz_Get(), "gr\xFC\xDF");
        EXPECT_EQ(out.vn_GetLength(), 4U);
        EXPECT_EQ(out.pcco_GetBuffer()->n_GetUsedSize(), 5U);
    }
    ExpectDone();
}

TEST_F(RegistryCursor, ABlankNameIsTheDefaultValue)
{
    StoreRaw("", REG_BINARY, "default");
    CT_Buffer out;
    const CT_UString value;
    registry.v_GetValue(&value, &out);
    EXPECT_EQ(Bytes(out), "default");
    ExpectDone();
    // So is none.
    const CT_String* none = nullptr;
    CT_Buffer again;
    registry.v_GetValue(none, &again);
    EXPECT_EQ(Bytes(again), "default");
    registry.v_DeleteValue(none);
    ExpectDone();
    registry.v_GetValue(&value, &out);
    ExpectRefused(2, 2);
}

TEST_F(RegistryCursor, ATextWithoutTerminatorReadsToItsEnd)
{
    for (unsigned units = 1; units < 40; ++units) {
        const HKEY key = Open(HKEY_CURRENT_USER, name, KEY_ALL_ACCESS);
        const std::u16string text(units, u'x');
        EXPECT_EQ(RegSetValueExW(key, ::Wide(std::string("text")).c_str(), 0, REG_SZ,
                                 reinterpret_cast<const BYTE*>((text + u"y").data()), units * 2),
                  0);
        RegCloseKey(key);
        const CT_UString value = Text("text");
        if (IsWide()) {
            CT_UString out;
            registry.v_GetValue(&value, &out);
            EXPECT_EQ(::Wide(out.qcuz_Get()).substr(0, units), text);
            EXPECT_LE(::Wide(out.qcuz_Get()).size(), units + 1);
        } else {
            CT_CString out("", -1, 0);
            registry.v_GetValue(&value, &out);
            EXPECT_EQ(std::string(out.qccz_Get()).substr(0, units), std::string(units, 'x'));
        }
        ExpectDone();
    }
}

TEST_F(RegistryCursor, HalfAUnitAtTheEndOfATextBringsNothingOfAnEarlierValue)
{
    if (!IsWide())
        GTEST_SKIP() << "units are bytes";
    const CT_UString value = Text("text"), earlier = Text("earlier");
    const CT_UString letters(u"\x5555\x5555\x5555\x5555");
    registry.v_SetValue(&earlier, &letters);
    const HKEY key = Open(HKEY_CURRENT_USER, name, KEY_ALL_ACCESS);
    for (const std::string& bytes : {std::string("a\0\0", 3), std::string("a\0b", 3)}) {
        EXPECT_EQ(RegSetValueExW(key, ::Wide(std::string("text")).c_str(), 0, REG_SZ,
                                 reinterpret_cast<const BYTE*>(bytes.data()), 3),
                  0);
        CT_UString out;
        registry.v_GetValue(&earlier, &out);
        out.v_Set(u"");
        registry.v_GetValue(&value, &out);
        EXPECT_EQ(::Wide(out.qcuz_Get()), bytes[2] ? u"ab" : u"a");
    }
    RegCloseKey(key);
    ExpectDone();
}

TEST_F(RegistryCursor, BinaryDataComeBackInASharedBlock)
{
    const std::string data("\0\1\2\xFF", 4);
    const CT_UString value = Text("data");
    if (IsWide()) {
        const CT_Buffer in(data.data(), 4, 64);
        registry.v_SetValue(&value, &in);
        EXPECT_EQ(in.n_GetUseCount(), 2U);
        DWORD type = 0;
        EXPECT_EQ(Raw("data", &type), data);
        EXPECT_EQ(type, DWORD(REG_BINARY));
    } else
        StoreRaw("data", REG_BINARY, data);
    CT_Buffer out;
    registry.v_GetValue(&value, &out);
    EXPECT_EQ(Bytes(out), data);
    EXPECT_EQ(out.n_GetUsedSize(), 4U);
    EXPECT_EQ(out.n_GetUseCount(), 2U);
    ExpectDone();
}

TEST_F(RegistryCursor, WhatWasHandedOutStaysWhenMoreIsFetched)
{
    StoreRaw("first", REG_BINARY, "first");
    StoreRaw("other", REG_BINARY, "other");
    StoreRaw("none", REG_BINARY, "");
    const CT_UString first = Text("first"), other = Text("other"), none = Text("none");
    CT_Buffer a, b, c;
    registry.v_GetValue(&first, &a);
    registry.v_GetValue(&other, &b);
    registry.v_GetValue(&none, &c);
    EXPECT_EQ(Bytes(a), "first");
    EXPECT_EQ(Bytes(b), "other");
    EXPECT_EQ(c.n_GetUsedSize(), 0U);
    ExpectDone();
}

TEST_F(RegistryCursor, AValueOfAnotherTypeIsRefusedWithCode87)
{
    StoreRaw("text", REG_SZ, "abc");
    StoreRaw("data", REG_BINARY, "abc");
    const CT_UString text = Text("text"), data = Text("data");
    CT_UString string(u"before");
    CT_Buffer buffer("before", 6, 32);
    registry.v_GetValue(&data, &string);
    ExpectRefused(87, 2);
    registry.v_GetValue(&text, &buffer);
    ExpectRefused(87, 2);
    EXPECT_EQ(Ascii(string), "before");
    EXPECT_EQ(Bytes(buffer), "before");
}

TEST_F(RegistryCursor, AMissingValueAndAMissingKeyAreReported)
{
    const CT_UString value = Text("missing");
    CT_UString string(u"before");
    CT_Buffer buffer;
    DWORD number = 7;
    registry.v_GetValue(&value, &string);
    ExpectRefused(2, 2);
    registry.v_GetValue(&value, &buffer);
    ExpectRefused(2, 2);
    registry.v_DeleteValue(&value);
    ExpectRefused(2, 1);
    registry.v_Set(HKEY_CURRENT_USER, &value);
    registry.v_GetValue(&value, &string);
    ExpectRefused(2, 2);
    registry.v_GetValue(&value, &number);
    ExpectRefused(2, 2);
    registry.v_SetValue(&value, &string);
    ExpectRefused(2, 1);
    registry.v_SetValue(&value, &buffer);
    ExpectRefused(2, 1);
    registry.v_SetValue(&value, DWORD(5));
    ExpectRefused(2, 1);
    registry.v_DeleteValue(&value);
    ExpectRefused(2, 1);
    EXPECT_EQ(Ascii(string), "before");
    EXPECT_EQ(number, 7U);
}

TEST_F(RegistryCursor, ANumberIsStoredInFourBytes)
{
    const CT_UString value = Text("number");
    registry.v_SetValue(&value, DWORD(0x04030201));
    if (!Writes()) {
        ExpectRefused(5, 1);
        return;
    }
    DWORD type = 0;
    EXPECT_EQ(Raw("number", &type), "\1\2\3\4");
    EXPECT_EQ(type, DWORD(REG_DWORD));
    ExpectDone();
}

TEST_F(RegistryCursor, FetchingANumberStoresWhatTheLastOperationLeft)
{
    const CT_UString value = Text("number"), data = Text("data");
    DWORD number = 7;
    StoreRaw("number", REG_DWORD, "\1\1\1\1");
    StoreRaw("data", REG_BINARY, "\5\0\0\0more");
    CT_Buffer buffer;
    registry.v_GetValue(&data, &buffer);
    ExpectDone();
    registry.v_GetValue(&value, &number);
    if (!Writes()) {
        ExpectRefused(5, 2);
        EXPECT_EQ(number, 7U);
        return;
    }
    DWORD type = 0;
    EXPECT_EQ(number, 5U);
    EXPECT_EQ(Raw("number", &type), Bytes(buffer));
    EXPECT_EQ(type, DWORD(REG_DWORD));
    // Nothing was left: the value is emptied, and the number is 0.
    registry.v_Set(HKEY_CURRENT_USER, &path);
    registry.v_GetValue(&value, &number);
    EXPECT_EQ(number, 0U);
    EXPECT_EQ(Raw("number"), "");
    ExpectDone();
}

TEST_F(RegistryCursor, AnErrorThatWasSetBeforeLeavesTheOutput)
{
    StoreRaw("text", REG_SZ, "abc");
    StoreRaw("data", REG_BINARY, "abc");
    const CT_UString text = Text("text"), data = Text("data");
    CT_UString string(u"before");
    CT_Buffer buffer;
    DWORD number = 7;
    Errors().v_SetMessageError(Units(u"earlier"));
    registry.v_GetValue(&text, &string);
    registry.v_GetValue(&data, &buffer);
    registry.v_GetValue(&data, &number);
    const Failure failure = TakeFailure();
    EXPECT_EQ(failure.text, "earlier");
    EXPECT_EQ(failure.trail,
              std::vector<std::string>(Writes() ? 3 : 4, "System/Registry/Registry"));
    EXPECT_EQ(Ascii(string), "before");
    EXPECT_EQ(buffer.n_GetUsedSize(), 0U);
    EXPECT_EQ(number, 7U);
}

TEST_F(RegistryCursor, UnderAnErrorThatWasSetBeforeKeysAreMadeMovedToAndDeleted)
{
    Make("A\\B");
    Errors().v_SetMessageError(Units(u"earlier"));
    const CT_UString a = Text("A"), made = Text("made");
    registry.v_CreateKey(&made);
    registry.v_SetKey(&made);
    EXPECT_EQ(Cursor(), In("made"));
    registry.v_Set(HKEY_CURRENT_USER, &path);
    registry.v_DeleteKey(&a);
    EXPECT_EQ(TryOpen(HKEY_CURRENT_USER, In("A")), ERROR_FILE_NOT_FOUND);
    const Failure failure = TakeFailure();
    EXPECT_EQ(failure.text, "earlier");
    EXPECT_TRUE(failure.trail.empty());
}

TEST_F(RegistryCursor, DeletesAValue)
{
    StoreRaw("text", REG_SZ, "abc");
    const CT_CString text("text", -1, 0);
    registry.v_DeleteValue(&text);
    ExpectDone();
    EXPECT_EQ(Raw("text"), "");
}

TEST_F(RegistryCursor, TheHeapGivesAndTakesCursors)
{
    const std::unique_ptr<CT_Registry> made(new CT_Registry(&registry));
    ASSERT_NE(made, nullptr);
    EXPECT_EQ(Ascii(*made->pcco_GetKey()), name);
}

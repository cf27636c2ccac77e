// winapi/Registry/Store.h: the keys and values of the registry, in its database.
//
// Each function here is one transaction. Results are codes of system errors, 0 for none; outputs are
// set on success only. A key that is gone is ERROR_KEY_DELETED (1018).
#pragma once

#include "Base/Database.h"
#include "Base/Handles.h"
#include "Registry/StoredNames.h"
#include "winapi/Registry/Registry.h"

#include <vector>

namespace winapi
{
// Which row a key is. The generation tells in which file, 0 for a predefined key, which is in all.
struct KeyPlace
{
    std::int64_t id;
    unsigned generation;
};

// A step of a path.
struct StoredText
{
    explicit StoredText(WideView text) : name(StoredName(text)), fold(FoldOf(text)) {}

    std::string name;
    std::string fold;
};
using KeyPath = std::vector<StoredText>;

struct KeyFacts
{
    DWORD subkeys;
    DWORD longestSubkey;
    DWORD values;
    DWORD longestName;
    DWORD longestData;
    std::uint64_t written;
};

struct SubkeyEntry
{
    WideText name;
    std::uint64_t written;
};

struct ValueEntry
{
    WideText name;
    DWORD type;
    std::string data;
};

// Null for what isn't a predefined key.
const KeyPlace* FindPredefined(HKEY key);

DWORD FindKey(KeyPlace from, const KeyPath& path, KeyPlace& found);
// ERROR_ACCESS_DENIED (5) where something would have to be made that may not.
DWORD CreateKey(KeyPlace from, const KeyPath& path, bool mayCreate, KeyPlace& found, bool& created);
DWORD DeleteKey(KeyPlace from, const KeyPath& path);
DWORD QueryKey(KeyPlace key, KeyFacts& facts);
DWORD EnumerateKey(KeyPlace key, DWORD index, SubkeyEntry& entry);

// Leaves out the name.
DWORD FindValue(KeyPlace key, const std::string& fold, ValueEntry& entry);
DWORD EnumerateValue(KeyPlace key, DWORD index, ValueEntry& entry);
DWORD SetValue(KeyPlace key, const StoredText& name, DWORD type, const void* data,
               std::size_t size);
DWORD DeleteValue(KeyPlace key, const std::string& fold);
} // namespace winapi

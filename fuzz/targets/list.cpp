// fuzz/targets/list.cpp: bytes as a compressed list. The checker survives everything; what it calls
// sound can be searched, walked and added to, and stays sound.
//
// Input: a byte of switches, a piece of keys, the list.
#include <Ostra/CompList/CCompListIterator.h>
#include <Ostra/CompList/CompList.h>
#include <Ostra/CompList/UCompListIterator.h>
#include <Ostra/String/CString.h>
#include <Ostra/String/UString.h>

#include "ListCheck.h"
#include "ListDump.h"
#include "ListLayout.h"
#include "Support/Input.h"
#include "Support/Library.h"

namespace
{
void Put(std::string& bytes, std::size_t at, std::uint32_t number)
{
    for (int n = 0; n < 4; ++n)
        bytes[at + n] = static_cast<char>(number >> 8 * n);
}

// Elements that a key may hold, the zero behind them.
std::string Key(Input& keys, unsigned element)
{
    std::string key;
    for (unsigned count = keys.Below(8); count > 0; --count) {
        unsigned value = element == 1 ? keys.Byte() : keys.Word();
        if (value == 0 || value == INNER_END || value == ALTERNATIVE || value == STREAM_END ||
            value == LEAF_END)
            value = 'a';
        // A unit of 0 would end a key of four-byte elements in part.
        if (element == 4)
            value |= value << 16;
        for (unsigned n = 0; n < element; ++n)
            key += static_cast<char>(value >> 8 * n);
    }
    return key.append(element, '\0');
}

// The entries that a walk finds; a list has fewer than bytes.
template <class Iterator, class String>
unsigned Walk(const CT_CompList& list)
{
    Iterator walk(&list);
    String key;
    unsigned entries = 0;
    for (unsigned handle = 0; walk.b_GetNext(&key, &handle);)
        REQUIRE(++entries <= list.n_GetEnd());
    return entries;
}

unsigned WalkBoth(const CT_CompList& list)
{
    const unsigned entries = Walk<CT_CCompListIterator, CT_CString>(list);
    REQUIRE((Walk<CT_UCompListIterator, CT_UString>(list) == entries));
    CT_Buffer keys, places, handles;
    list.v_GetAll(&keys, &places, &handles);
    REQUIRE(places.n_GetUsedSize() == entries * 4);
    REQUIRE(handles.n_GetUsedSize() == entries * 4);
    return entries;
}

void Use(CT_CompList& list, Input keys)
{
    const unsigned element = list.n_GetElementSize();
    WalkBoth(list);
    while (!keys.IsEmpty()) {
        const std::string key = Key(keys, element);
        // An empty key adds an entry each time, or none.
        if (key.size() == element)
            continue;
        unsigned matched = 0;
        const unsigned before = list.n_GetNrOfEntries();
        const bool known = list.n_Search(key.data(), &matched) != LIST_NO_HANDLE;
        REQUIRE(matched < key.size() / element);
        const char* const pointers[] = {key.data(), key.data()};
        unsigned handles[2], lengths[2];
        list.v_SearchAll(pointers, 2, handles, lengths);
        REQUIRE(handles[1] == list.n_Search(key.data(), nullptr) && lengths[1] == matched);
        // A key with that very handle is there, too.
        const bool added = list.b_Add(key.data(), 1) != 0;
        REQUIRE(!(known && added));
        REQUIRE(list.n_GetNrOfEntries() == before + added);
        const ListVerdict verdict = CheckList(BytesOf(*list.pcco_GetBuffer()));
        if (!verdict.sound)
            std::fputs(DescribeListVerdict(verdict).c_str(), stderr);
        REQUIRE(verdict.sound);
    }
    WalkBoth(list);
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    Input input(data, size);
    const unsigned switches = input.Byte();
    const std::string keys = input.Piece(63);
    std::string bytes = input.Rest();
    // Most changes of the length would say no more than that the head doesn't tell it.
    if ((switches & 1) != 0 && bytes.size() >= LIST_HEAD) {
        Put(bytes, 0, LIST_MAGIC);
        Put(bytes, LIST_END, static_cast<std::uint32_t>(bytes.size()));
    }
    DumpList(bytes);
    const ListVerdict verdict = CheckList(bytes);
    REQUIRE(verdict.sound == verdict.rule.empty());
    if (!verdict.sound)
        return 0;
    const CT_Buffer block(bytes.data(), static_cast<unsigned>(bytes.size()), 32);
    CT_CompList list(&block);
    Use(list, Input(reinterpret_cast<const std::uint8_t*>(keys.data()), keys.size()));
    REQUIRE(TakeCode() == 0);
    return 0;
}

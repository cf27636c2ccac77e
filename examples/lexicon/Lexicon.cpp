// examples/lexicon/Lexicon.cpp
#include "Lexicon.h"

#include <Common/Failure.h>
#include <Common/Utf8.h>

#include <cstring>
#include <deque>

namespace lexicon
{
using namespace common;

namespace
{
constexpr char SOURCE[] = "lexicon/Lexicon";

constexpr unsigned FILE_BUFFER = 4096;
constexpr unsigned LIST_GROWTH = 128;
// The header of a list and the one element of an empty one.
constexpr unsigned SMALLEST_LIST = 132 + ELEMENT_SIZE;
constexpr unsigned NONE = 0xFFFFFFFF;

CT_CompList EmptyList()
{
    return CT_CompList(CT_CompList::et_ElementSize(ELEMENT_SIZE), HANDLE_SIZE, 0, 1, LIST_GROWTH,
                       CODE_PAGE_UTF16);
}
} // namespace

Lexicon::Lexicon(const CT_String* name)
    : file(name, FILE_BUFFER),
      manager(&file),
      lists{EmptyList(), EmptyList()}
{}

bool Lexicon::Open()
{
    return OpenFile() && ReadContents();
}

bool Lexicon::OpenFile()
{
    const Outcome outcome = CheckHeader(file.pcco_GetFullName());
    if (outcome != Outcome::GOOD)
        Refuse(outcome, u"its header");
    // Not mapped: a reader takes few and large pieces, and a file that somebody cuts meanwhile is a
    // short read.
    if (!Failing())
        manager.v_Open(CT_RecordManager::e_OpenRead, 0);
    return !Failed(SOURCE);
}

bool Lexicon::ReadContents()
{
    CT_Buffer bytes;
    if (!manager.b_ResourceExists(DIRECTORY))
        Refuse(Outcome::FOREIGN, u"");
    else
        manager.v_GetResource(DIRECTORY, &bytes);
    if (Failed(SOURCE))
        return false;
    directorySize = bytes.n_GetUsedSize();
    Outcome outcome = ReadDirectory(&bytes, &directory);
    if (outcome == Outcome::GOOD &&
        (manager.n_GetRecordCount() != directory.Records() || manager.n_GetResourceCount() != 1))
        outcome = Outcome::DAMAGED;
    if (outcome != Outcome::GOOD)
        Refuse(outcome, u"its directory");
    return !Failing();
}

bool Lexicon::Load(Side side)
{
    if (!LoadList(side))
        return false;
    for (size_t piece = 0; piece < fetched[side].size(); ++piece) {
        if (!Fetch(side, piece)) {
            Refuse(Outcome::DAMAGED, u"the texts of a list");
            return false;
        }
    }
    return true;
}

bool Lexicon::LoadList(Side side)
{
    CT_Buffer bytes;
    if (!GetPart(&manager, directory.lists[side], &bytes)) {
        RefuseList();
        return false;
    }
    // The block is the list: no conversion.
    if (bytes.n_GetUsedSize() >= SMALLEST_LIST)
        lists[side].v_Set(&bytes);
    // Room for all texts, of which a system gives what is written to.
    texts[side].v_SetSize(directory.texts[side].size, 0);
    texts[side].v_SetUsedSize(directory.texts[side].size);
    fetched[side].assign(directory.texts[side].pieces.size(), false);
    if (!Failed(SOURCE) && !IsListGood(side))
        RefuseList();
    return !Failing();
}

bool Lexicon::IsListGood(Side side) const
{
    const CT_CompList& list = lists[side];
    return list.n_GetElementSize() == ELEMENT_SIZE && list.n_GetHandleSize() == HANDLE_SIZE &&
           list.b_HasLongOffsetSupport() && !list.b_HasEmptyStringSupport() &&
           list.n_GetEnd() == directory.lists[side].size &&
           list.n_GetNrOfEntries() == directory.words[side];
}

bool Lexicon::Find(Side side, const std::vector<std::string_view>& words, std::vector<Found>* found)
{
    std::deque<CT_UString> keys;
    std::vector<const CT_UString*> pointers;
    for (std::string_view word : words) {
        common::ToWide(word, &keys.emplace_back());
        pointers.push_back(&keys.back());
    }
    if (Failed(SOURCE))
        return false;
    std::vector<unsigned> handles(words.size());
    lists[side].v_SearchAll(pointers.data(), static_cast<unsigned>(words.size()), handles.data(),
                            nullptr);
    found->resize(words.size());
    for (size_t n = 0; n < words.size(); ++n) {
        if (handles[n] == NONE)
            (*found)[n].matched = Matched(side, &keys[n]);
        else if (!Answer(side, words[n], handles[n], &(*found)[n]))
            return false;
    }
    return !Failed(SOURCE);
}

bool Lexicon::Answer(Side side, std::string_view word, unsigned handle, Found* found)
{
    found->isHit = true;
    if (At(side, handle, &found->entry) && found->entry.word != word)
        Refuse(Outcome::DAMAGED, u"the texts of a list");
    return !Failing();
}

bool Lexicon::At(Side side, unsigned handle, Entry* entry)
{
    if (!Next(side, &handle, entry))
        Refuse(Outcome::DAMAGED, u"the texts of a list");
    return !Failing();
}

// The list's own count is 0 where units differ and no other way is left, but a beginning that it
// holds matches as a whole.
unsigned Lexicon::Matched(Side side, CT_UString* key) const
{
    for (unsigned length = key->vn_GetLength();; --length) {
        unsigned matched;
        key->vv_SetLength(length);
        lists[side].n_Search(key, &matched);
        if (matched == length)
            return length; // at the latest the empty beginning
    }
}

bool Lexicon::Next(Side side, unsigned* position, Entry* entry)
{
    entry->others.clear();
    if (*position == texts[side].n_GetUsedSize())
        return false;
    bool good = ReadText(side, position, &entry->word);
    std::string_view text;
    while ((good = good && ReadText(side, position, &text)) && !text.empty())
        entry->others.push_back(text);
    if (!good)
        Refuse(Outcome::DAMAGED, u"the texts of a list");
    return good;
}

// Reads a piece of the texts and tests it, once. False with or without an error set, as for a part.
bool Lexicon::Fetch(Side side, size_t piece)
{
    if (fetched[side][piece])
        return true;
    const Texts& all = directory.texts[side];
    CT_Buffer bytes;
    if (!GetPart(&manager, all.pieces[piece], &bytes))
        return false;
    if (all.pieces.size() == 1)
        texts[side].v_Set(&bytes);
    else
        texts[side].v_Replace(&bytes, 0, bytes.n_GetUsedSize(),
                              static_cast<unsigned>(piece * all.pieceSize));
    fetched[side][piece] = !Failed(SOURCE);
    return !Failing();
}

bool Lexicon::ReadText(Side side, unsigned* position, std::string_view* text)
{
    const Texts& all = directory.texts[side];
    const unsigned start = *position;
    for (unsigned from = start; from < texts[side].n_GetUsedSize();) {
        const size_t piece = from / all.pieceSize;
        const unsigned end = all.EndOf(piece);
        if (!Fetch(side, piece))
            return false;
        const char* bytes = static_cast<const char*>(texts[side].qcv_Get());
        if (const void* zero = std::memchr(bytes + from, 0, end - from)) {
            *text = std::string_view(bytes + start, static_cast<const char*>(zero));
            *position = static_cast<unsigned>(static_cast<const char*>(zero) - bytes) + 1;
            return true;
        }
        from = end;
    }
    return false;
}

void Lexicon::RefuseList() const
{
    Refuse(Outcome::DAMAGED, u"a list of words");
}

void Lexicon::Refuse(Outcome outcome, const char16_t* what) const
{
    if (Failing())
        Failed(SOURCE);
    else if (outcome == Outcome::FOREIGN)
        Fail(SOURCE, u"%s: this is a record file, but no lexicon", Name());
    else
        Fail(SOURCE, u"%s: the lexicon is damaged in %s", Name(), qcuz_Text(what));
}
} // namespace lexicon

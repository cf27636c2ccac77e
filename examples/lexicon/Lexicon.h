// examples/lexicon/Lexicon.h: a lexicon in its file, for looking up.
#pragma once

#include "Storage.h"

#include <Ostra/CompList/CompList.h>
#include <Ostra/String/UString.h>

#include <string_view>
#include <vector>

namespace lexicon
{
// Keys are kept in elements of 16 bits, their handles are 32 bits wide, and so are the list's
// offsets.
constexpr unsigned ELEMENT_SIZE = 2;
constexpr unsigned HANDLE_SIZE = 4;
constexpr unsigned CODE_PAGE_UTF16 = 1200;

// A word and what it is on the other side. The texts lie in the memory of the lexicon, as UTF-8.
struct Entry
{
    std::string_view word;
    std::vector<std::string_view> others;
};

// What a search for a word comes to.
struct Found
{
    bool isHit = false;
    Entry entry;
    unsigned matched = 0; // of a miss: the first units that begin some word of the list
};

class Lexicon
{
public:
    explicit Lexicon(const CT_String* name);

    // Opens the file and reads its directory; false with an error set. A file that is no lexicon is
    // refused, and so is a damaged one.
    bool Open();

    // Loads the list and the texts of a side and tests that they are what was stored; false with an
    // error set.
    bool Load(Side side);

    // The same for the list alone: texts are read and tested as they are asked for.
    bool LoadList(Side side);

    // Looks words up on a side with its list loaded, in one pass. False with an error set when the
    // lexicon is damaged.
    bool Find(Side side, const std::vector<std::string_view>& words, std::vector<Found>* found);

    // The entry that a handle of a side leads to; false with an error set when the lexicon
    // is damaged.
    bool At(Side side, unsigned handle, Entry* entry);

    // The entries of a loaded side from position 0 on, in the order in which their words first
    // appeared. False at the end, and with an error set when the lexicon is damaged.
    bool Next(Side side, unsigned* position, Entry* entry);

    // Sets the error of a list that is damaged.
    void RefuseList() const;

    const Directory& Contents() const { return directory; }
    unsigned DirectorySize() const { return directorySize; }
    const CT_RecordManager& Manager() const { return manager; }
    const CT_CompList& List(Side side) const { return lists[side]; }

private:
    bool OpenFile();
    bool ReadContents();
    bool IsListGood(Side side) const;
    bool Answer(Side side, std::string_view word, unsigned handle, Found* found);
    unsigned Matched(Side side, CT_UString* key) const;
    bool Fetch(Side side, size_t piece);
    bool ReadText(Side side, unsigned* position, std::string_view* text);
    void Refuse(Outcome outcome, const char16_t* what) const;
    const unsigned short* Name() const
    {
        return manager.pcco_GetFile()->pcco_GetFullName()->qcuz_Get();
    }

    CT_WinFile file;
    CT_RecordManager manager;
    Directory directory;
    unsigned directorySize = 0;
    CT_CompList lists[SIDES];
    CT_Buffer texts[SIDES];
    std::vector<bool> fetched[SIDES]; // of the texts' pieces
};
} // namespace lexicon

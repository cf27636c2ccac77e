// examples/lexicon/Builder.cpp
#include "Builder.h"

#include "Failure.h"
#include "Lexicon.h"

#include <Common/Utf8.h>

#include <algorithm>

namespace lexicon
{
namespace
{
constexpr char SOURCE[] = "lexicon/Builder";

constexpr unsigned FILE_BUFFER = 4096;
constexpr std::uint64_t LIMIT = 0x40000000;

Side Opposite(Side side)
{
    return side == SOURCES ? TARGETS : SOURCES;
}

void AppendText(std::string_view text, CT_Buffer* bytes)
{
    bytes->v_Append(text.data(), static_cast<unsigned>(text.size()));
    bytes->v_Append(static_cast<unsigned char>(0));
}

bool Holds(const std::vector<unsigned>& numbers, unsigned number)
{
    return std::find(numbers.begin(), numbers.end(), number) != numbers.end();
}
} // namespace

unsigned WordTable::Number(std::string_view text)
{
    const auto [found, isNew] = numbers.emplace(text, Count());
    if (isNew)
        words.push_back({text, {}});
    return found->second;
}

void Builder::Add(const Pair& pair)
{
    const unsigned source = tables[SOURCES].Number(pair.source);
    const unsigned target = tables[TARGETS].Number(pair.target);
    std::vector<unsigned>& targets = tables[SOURCES][source].partners;
    std::vector<unsigned>& sources = tables[TARGETS][target].partners;
    // The shorter list tells whether the pair is known, so that a word with very many partners
    // costs little.
    if (targets.size() < sources.size() ? Holds(targets, target) : Holds(sources, source))
        return;
    targets.push_back(target);
    sources.push_back(source);
    ++pairs;
}

bool Builder::Save(const CT_String* name, Progress* progress)
{
    const CT_WinFile file(name, FILE_BUFFER);
    CT_RecordManager manager(&file);
    manager.v_Create(RECORD_HEADER_SIZE, BLOCK_SIZE, RESOURCE_MAX_COUNT);
    // The directory is always there, so the file is never closed as it was created, without a
    // complete header.
    if (!Failing() && SaveContents(&manager, progress))
        manager.v_Close(1);
    return !Failed(SOURCE);
}

bool Builder::SaveContents(CT_RecordManager* manager, Progress* progress)
{
    Directory directory;
    directory.pairs = pairs;
    for (Side side : {SOURCES, TARGETS}) {
        directory.words[side] = Words(side);
        if (!SaveSide(side, manager, &directory, progress))
            return false;
    }
    CT_Buffer bytes;
    directory.Write(&bytes);
    if (!Failing())
        manager->v_AddResource(DIRECTORY, &bytes);
    return !Failed(SOURCE);
}

bool Builder::SaveSide(Side side, CT_RecordManager* manager, Directory* directory,
                       Progress* progress)
{
    const std::uint64_t room = ListRoom(side);
    if (room > LIMIT || TextRoom(side) > LIMIT) {
        Fail(SOURCE, u"the input holds too much for one lexicon");
        return false;
    }
    // The growth is the room for the whole list, so that it is filled in one block.
    CT_CompList list(CT_CompList::et_ElementSize(ELEMENT_SIZE), HANDLE_SIZE, 0, 1,
                     static_cast<unsigned>(room), CODE_PAGE_UTF16);
    CT_Buffer texts;
    return !Failed(SOURCE) && Fill(side, &list, &texts, progress) &&
           AddPart(manager, list.pcco_GetBuffer(), &directory->lists[side]) &&
           AddPart(manager, &texts, &directory->texts[side]);
}

bool Builder::Fill(Side side, CT_CompList* list, CT_Buffer* texts, Progress* progress)
{
    texts->v_SetSize(static_cast<unsigned>(TextRoom(side)), 0);
    const WordTable& words = tables[side];
    CT_UString key;
    for (unsigned number = 0; number < words.Count() && !Failing(); ++number) {
        common::ToWide(words[number].text, &key);
        // The handle is the place of the word's texts.
        list->b_Add(&key, texts->n_GetUsedSize());
        AppendEntry(side, number, texts);
        progress->Show(++stored, Words(SOURCES) + Words(TARGETS));
    }
    return !Failed(SOURCE);
}

// The word, its partners and an empty text, each with its zero.
void Builder::AppendEntry(Side side, unsigned number, CT_Buffer* texts) const
{
    const WordTable::Word& word = tables[side][number];
    AppendText(word.text, texts);
    for (unsigned partner : word.partners)
        AppendText(tables[Opposite(side)][partner].text, texts);
    AppendText("", texts);
}

// A key brings a mark with an offset, its elements and a mark with a handle at most.
std::uint64_t Builder::ListRoom(Side side) const
{
    constexpr std::uint64_t HEADERS = 256;
    constexpr std::uint64_t MARKS = ELEMENT_SIZE + sizeof(unsigned) + ELEMENT_SIZE + HANDLE_SIZE;
    std::uint64_t room = HEADERS;
    for (unsigned number = 0; number < Words(side); ++number)
        room += MARKS + ELEMENT_SIZE * tables[side][number].text.size();
    return room;
}

std::uint64_t Builder::TextRoom(Side side) const
{
    std::uint64_t room = 0;
    for (unsigned number = 0; number < Words(side); ++number) {
        const WordTable::Word& word = tables[side][number];
        room += word.text.size() + 2;
        for (unsigned partner : word.partners)
            room += tables[Opposite(side)][partner].text.size() + 1;
    }
    return room;
}
} // namespace lexicon

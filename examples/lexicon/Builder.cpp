// examples/lexicon/Builder.cpp
#include "Builder.h"

#include "Lexicon.h"

#include <Common/Failure.h>
#include <Common/Utf8.h>

#include <Ostra/CompList/CompListBuilder.h>

#include <algorithm>

namespace lexicon
{
using namespace common;

namespace
{
constexpr char SOURCE[] = "lexicon/Builder";

constexpr unsigned FILE_BUFFER = 4096;
constexpr std::uint64_t LIMIT = 0x40000000;
constexpr unsigned LIST_GROWTH = 128;

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
    if (TextRoom(side) > LIMIT) {
        Fail(SOURCE, u"the input holds too much for one lexicon");
        return false;
    }
    CT_Buffer list;
    CT_Buffer texts;
    return Fill(side, &list, &texts, progress) &&
           AddPart(manager, &list, &directory->lists[side]) &&
           AddPart(manager, &texts, &directory->texts[side]);
}

bool Builder::Fill(Side side, CT_Buffer* list, CT_Buffer* texts, Progress* progress)
{
    texts->v_SetSize(static_cast<unsigned>(TextRoom(side)), 0);
    CT_CompListBuilder builder(CT_CompList::et_ElementSize(ELEMENT_SIZE), HANDLE_SIZE, 0, 1,
                               LIST_GROWTH, CODE_PAGE_UTF16);
    builder.v_SetOrder(CT_CompListBuilder::bo_ByWeight);
    const WordTable& words = tables[side];
    CT_UString key;
    for (unsigned number = 0; number < words.Count() && !Failing(); ++number) {
        common::ToWide(words[number].text, &key);
        // The handle is the place of the word's texts.
        builder.b_Add(&key, texts->n_GetUsedSize());
        AppendEntry(side, number, texts);
        progress->Show(++stored, Words(SOURCES) + Words(TARGETS));
    }
    if (!Failing())
        builder.v_Build(list);
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

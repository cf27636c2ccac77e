// examples/lexicon/Builder.cpp
#include "Builder.h"

#include "Lexicon.h"

#include <Common/Failure.h>
#include <Common/Utf8.h>

#include <Ostra/CompList/CompListBuilder.h>

#include <algorithm>
#include <functional>
#include <numeric>

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

std::uint32_t HashOf(std::string_view text)
{
    return static_cast<std::uint32_t>(std::hash<std::string_view>()(text));
}

std::uint32_t HashOf(unsigned source, unsigned target)
{
    // Two odd numbers; the upper half of a product depends on all of its lower bits.
    const std::uint64_t mixed = source * 0x9E3779B97F4A7C15u ^ target * 0xC2B2AE3D27D4EB4Fu;
    return static_cast<std::uint32_t>(mixed >> 32);
}
} // namespace

void HashIndex::Clear()
{
    slots = {};
    used = 0;
}

void HashIndex::Grow()
{
    constexpr size_t FIRST = 1024;
    std::vector<Slot> old(std::max(2 * slots.size(), FIRST));
    old.swap(slots);
    for (const Slot& slot : old) {
        size_t at = slot.hash & (slots.size() - 1);
        while (slot.number != NONE && slots[at].number != NONE)
            at = (at + 1) & (slots.size() - 1);
        if (slot.number != NONE)
            slots[at] = slot;
    }
}

unsigned WordTable::Number(std::string_view text)
{
    const unsigned number =
        index.Number(HashOf(text), Count(), [&](unsigned other) { return words[other] == text; });
    if (number == Count())
        words.push_back(text);
    return number;
}

unsigned Builder::Enter(Side side, std::string_view word)
{
    const unsigned count = Words(side);
    const unsigned number = tables[side].Number(word);
    if (number == count)
        room[side] += word.size() + 2;
    return number;
}

void Builder::Add(const Pair& pair)
{
    const Couple couple = {{Enter(SOURCES, pair.source), Enter(TARGETS, pair.target)}};
    const auto isSame = [&](unsigned other) {
        return std::ranges::equal(pairs[other].words, couple.words);
    };
    if (known.Number(HashOf(couple.words[SOURCES], couple.words[TARGETS]), Pairs(), isSame) !=
        Pairs())
        return;
    pairs.push_back(couple);
    room[SOURCES] += pair.target.size() + 1;
    room[TARGETS] += pair.source.size() + 1;
}

bool Builder::Save(const CT_String* name, Progress* progress)
{
    for (WordTable& table : tables)
        table.Close();
    known.Clear();
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
    directory.pairs = Pairs();
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
    if (room[side] > LIMIT) {
        Fail(SOURCE, u"the input holds too much for one lexicon");
        return false;
    }
    Collect(side);
    return SaveList(side, manager, &directory->lists[side], progress) &&
           SaveTexts(side, manager, &directory->texts[side]);
}

// The texts come later, so that there is no room for both.
bool Builder::SaveList(Side side, CT_RecordManager* manager, Part* part, Progress* progress)
{
    CT_Buffer list;
    return Fill(side, &list, progress) && AddPart(manager, &list, part);
}

bool Builder::Fill(Side side, CT_Buffer* list, Progress* progress)
{
    CT_CompListBuilder builder(CT_CompList::et_ElementSize(ELEMENT_SIZE), HANDLE_SIZE, 0, 1,
                               LIST_GROWTH, CODE_PAGE_UTF16);
    builder.v_SetOrder(CT_CompListBuilder::bo_ByWeight);
    CT_UString key;
    unsigned place = 0;
    for (unsigned number = 0; number < Words(side) && !Failing(); ++number) {
        common::ToWide(tables[side][number], &key);
        // The handle is the place of the word's texts.
        builder.b_Add(&key, place);
        place += EntrySize(side, number);
        progress->Show(++stored, Words(SOURCES) + Words(TARGETS));
    }
    if (!Failing())
        builder.v_Build(list);
    return !Failed(SOURCE);
}

bool Builder::SaveTexts(Side side, CT_RecordManager* manager, Texts* texts) const
{
    CT_Buffer bytes;
    bytes.v_SetSize(static_cast<unsigned>(room[side]), 0);
    for (unsigned number = 0; number < Words(side) && !Failing(); ++number)
        AppendEntry(side, number, &bytes);
    return !Failed(SOURCE) && AddTexts(manager, &bytes, texts);
}

// The pairs are in the order in which they came in, and so are each word's partners.
void Builder::Collect(Side side)
{
    ends.assign(size_t{Words(side)} + 1, 0);
    for (const Couple& couple : pairs)
        ++ends[couple.words[side] + 1];
    std::partial_sum(ends.begin(), ends.end(), ends.begin());
    // The end of the word in front is the place of the next partner, until it is the word's own.
    partners.resize(pairs.size());
    for (const Couple& couple : pairs)
        partners[ends[couple.words[side]]++] = couple.words[Opposite(side)];
}

Builder::Span Builder::PartnersOf(unsigned number) const
{
    return Span(partners).subspan(0, ends[number]).subspan(number ? ends[number - 1] : 0);
}

// The word, its partners and an empty text, each with its zero.
void Builder::AppendEntry(Side side, unsigned number, CT_Buffer* texts) const
{
    AppendText(tables[side][number], texts);
    for (unsigned partner : PartnersOf(number))
        AppendText(tables[Opposite(side)][partner], texts);
    AppendText("", texts);
}

unsigned Builder::EntrySize(Side side, unsigned number) const
{
    size_t size = tables[side][number].size() + 2;
    for (unsigned partner : PartnersOf(number))
        size += tables[Opposite(side)][partner].size() + 1;
    return static_cast<unsigned>(size);
}
} // namespace lexicon

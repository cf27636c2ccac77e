// examples/lexicon/Statistics.cpp
#include "Statistics.h"

#include <algorithm>
#include <iomanip>
#include <string>

namespace lexicon
{
namespace
{
constexpr int FIRST_COLUMN = 20;
constexpr int COLUMN = 12;

// To one decimal, by whole numbers, so that it is the same everywhere.
std::string Decimal(unsigned long long number, unsigned long long of)
{
    const unsigned long long tenths = of ? (10 * number + of / 2) / of : 0;
    return std::to_string(tenths / 10) + "." + std::to_string(tenths % 10);
}

std::string Share(unsigned long long number, unsigned long long of)
{
    return Decimal(100 * number, of) + " %";
}

void PrintRow(std::ostream& output, const std::string& name, const std::vector<std::string>& cells)
{
    output << "  " << std::left << std::setw(FIRST_COLUMN) << name << std::right;
    for (const std::string& cell : cells)
        output << std::setw(COLUMN) << cell;
    output << '\n';
}

std::string Range(unsigned long long first, unsigned long long last)
{
    return first == last ? std::to_string(first)
                         : std::to_string(first) + " to " + std::to_string(last);
}

// How often the numbers from 1 on come, the larger ones together.
void PrintRanges(std::ostream& output, const char* what, const char* counted,
                 const Histogram& histogram)
{
    PrintRow(output, what, {counted, "share"});
    for (unsigned long long first = 1, last = 1; first <= histogram.Most();) {
        const unsigned long long found = histogram.Between(first, last);
        if (found)
            PrintRow(output, Range(first, last),
                     {std::to_string(found), Share(found, histogram.Count())});
        first = last + 1;
        last = first <= 4 ? first : 2 * last;
    }
    output << '\n';
}

void PrintSpan(std::ostream& output, const char* what, const Histogram& histogram)
{
    PrintRow(output, what,
             {std::to_string(histogram.Least()), Decimal(histogram.Sum(), histogram.Count()),
              std::to_string(histogram.Most())});
}
} // namespace

void Histogram::Add(unsigned number)
{
    if (number >= counts.size())
        counts.resize(number + 1);
    ++counts[number];
    ++count;
    sum += number;
}

unsigned Histogram::Least() const
{
    const auto least = std::find_if(counts.begin(), counts.end(), [](unsigned n) { return n; });
    return least == counts.end() ? 0 : static_cast<unsigned>(least - counts.begin());
}

unsigned Histogram::Most() const
{
    return counts.empty() ? 0 : static_cast<unsigned>(counts.size() - 1);
}

unsigned long long Histogram::Between(unsigned long long first, unsigned long long last) const
{
    unsigned long long found = 0;
    for (unsigned long long n = first; n <= last && n < counts.size(); ++n)
        found += counts[n];
    return found;
}

bool Statistics::Take(const CT_CompList& list)
{
    const ListStream stream(list);
    *this = Statistics();
    bytes = stream.End();
    elementSize = stream.ElementSize();
    handleSize = stream.HandleSize();
    offsetSize = stream.OffsetSize();
    branches.reserve(std::min(list.n_GetNrOfEntries(), bytes / 8));
    // The empty word stands in the head, and counts each time that it is added.
    return TakeBranches(stream) && branches.empty() && Words() <= list.n_GetNrOfEntries() &&
           (list.b_HasEmptyStringSupport() || Words() == list.n_GetNrOfEntries());
}

bool Statistics::TakeBranches(const ListStream& stream)
{
    unsigned position = ListStream::FIRST;
    Place place = {0, 0, 0};
    while (stream.At(position).kind != Item::LIST_END) {
        if (position != ListStream::FIRST) {
            const auto branch = branches.find(position);
            if (branch == branches.end())
                return false;
            place = branch->second;
            branches.erase(branch);
        }
        if (!TakeBranch(stream, &position, place))
            return false;
    }
    return Next(stream, &position).next == stream.End();
}

// Characters up to a leaf end.
bool Statistics::TakeBranch(const ListStream& stream, unsigned* position, Place place)
{
    for (;;) {
        if (!TakeCharacter(stream, position, &place))
            return false;
        const Item end = stream.At(*position);
        if (!end.IsEnd())
            continue;
        Next(stream, position);
        lengths.Add(place.length);
        steps.Add(place.steps);
        if (end.kind == Item::LEAF_END)
            return true;
    }
}

// A character with its alternative if it has one.
bool Statistics::TakeCharacter(const ListStream& stream, unsigned* position, Place* place)
{
    const Item item = Next(stream, position);
    if (item.kind != Item::CHARACTER)
        return false;
    const bool jumps = !place->length && stream.JumpOffset(item.value) == item.position;
    ++place->steps;
    ++place->ways;
    if (stream.At(*position).kind != Item::ALTERNATIVE)
        ways.Add(place->ways);
    else if (!branches.emplace(Next(stream, position).value, *place).second)
        return false;
    *place = {place->length + 1, jumps ? 1 : place->steps, 0};
    return true;
}

Item Statistics::Next(const ListStream& stream, unsigned* position)
{
    const Item item = stream.At(*position);
    ++items[item.kind];
    *position = item.next;
    return item;
}

void Statistics::Print(std::ostream& output) const
{
    PrintBytes(output);
    PrintRanges(output, "ways on", "places", ways);
    PrintRanges(output, "elements", "words", lengths);
    PrintRow(output, "", {"least", "average", "most"});
    PrintSpan(output, "ways on at a place", ways);
    PrintSpan(output, "elements of a word", lengths);
    PrintSpan(output, "steps of a search", steps);
    PrintRow(output, "elements stored", {"", Decimal(items[Item::CHARACTER], Words())});
    PrintRow(output, "bytes of a word", {"", Decimal(bytes, Words())});
}

void Statistics::PrintBytes(std::ostream& output) const
{
    const unsigned alternatives = items[Item::ALTERNATIVE];
    const struct
    {
        const char* name;
        unsigned count;
        unsigned size;
    } kinds[] = {
        {"head", 1, ListStream::FIRST},
        {"characters", items[Item::CHARACTER], elementSize},
        {"alternatives", alternatives, elementSize},
        {"offsets", alternatives, offsetSize},
        {"inner ends", items[Item::INNER_END], elementSize},
        {"leaf ends", items[Item::LEAF_END], elementSize},
        {"handles", Words(), handleSize},
        {"list end", 1, elementSize},
    };
    PrintRow(output, "kind", {"count", "bytes", "share"});
    for (const auto& kind : kinds) {
        const unsigned size = kind.count * kind.size;
        PrintRow(output, kind.name,
                 {std::to_string(kind.count), std::to_string(size), Share(size, bytes)});
    }
    PrintRow(output, "all", {"", std::to_string(bytes), Share(bytes, bytes)});
    output << '\n';
}
} // namespace lexicon

// winapi/Text/CodePageTables.cpp: finds the tables of the code pages.
#include "Text/CodePageTables.h"

#include <algorithm>
#include <atomic>
#include <cstdlib>

#include "winapi/Errors/Codes.h"
#include "winapi/Errors/LastError.h"

namespace winapi
{
namespace
{
constexpr unsigned MOST_PAGES = 80;

constinit std::atomic<const CodePageReverse*> built[MOST_PAGES];

// The rows of codePageDifferences of one page.
class DifferenceReader
{
public:
    explicit DifferenceReader(unsigned start) : next(codePageDifferences + start) {}

    // Calls apply(unit, code) for each unit of so many rows.
    template <typename Apply>
    void Read(unsigned rows, Apply apply)
    {
        unsigned last = 0;
        unsigned code = 0;
        for (; rows; --rows) {
            const unsigned first = last + Number();
            last = first + Number();
            const unsigned distance = Number();
            code += distance & 1 ? ~(distance >> 1) : distance >> 1;
            for (unsigned unit = first; unit <= last; ++unit)
                apply(static_cast<WCHAR>(unit), code == NO_VALUE ? code : code + (unit - first));
        }
    }

private:
    unsigned Number()
    {
        unsigned number = 0;
        for (unsigned shift = 0;; shift += 7) {
            const unsigned part = *next++;
            number |= (part & 127) << shift;
            if (part < 128)
                return number;
        }
    }

    const BYTE* next;
};
} // namespace

const CodePageFacts* FindFacts(UINT page)
{
    const CodePageFacts* const end = codePages + codePageCount;
    const CodePageFacts* const found =
        std::lower_bound(codePages, end, page, [](const CodePageFacts& facts, UINT wanted) {
            return facts.page < wanted;
        });
    return found != end && found->page == page ? found : nullptr;
}

// Some 20,000 pairs are entered while a first conversion waits: nothing is computed for each one
// that the row tells.
void CodePageReverse::FillRow(const WCHAR* units, unsigned first)
{
    for (unsigned at = PAIR_ROW; at-- > 0;)
        Set(units[at], first + at);
}

// Of several codes for a unit the lowest one.
void CodePageReverse::FillLowest(const CodePageFacts& facts)
{
    const CodePage page(facts);
    for (unsigned row = 0x10000; (row -= PAIR_ROW) >= 0x100;)
        if (page.FromByte(static_cast<BYTE>(row >> 8)) == NO_VALUE && !page.IsEmptyRow(row))
            FillRow(page.RowOfPair(row), row);
    for (unsigned byte = 0x100; byte-- > 0;)
        if (page.FromByte(static_cast<BYTE>(byte)) != NO_VALUE)
            Set(page.FromByte(static_cast<BYTE>(byte)), byte);
    // What has no unit stood for this one, too.
    Set(facts.undefinedUnit, facts.undefinedCode);
}

void CodePageReverse::FillDifferences(const CodePageFacts& facts)
{
    DifferenceReader(facts.differences)
        .Read(facts.differenceRows, [this](WCHAR unit, unsigned code) { Set(unit, code); });
}

const CodePageReverse* CodePageReverse::Build(const CodePageFacts& facts)
{
    CodePageReverse* const made =
        static_cast<CodePageReverse*>(std::calloc(1, sizeof(CodePageReverse)));
    if (!made) {
        SetLastError(ERROR_NOT_ENOUGH_MEMORY);
        return nullptr;
    }
    made->FillLowest(facts);
    made->FillDifferences(facts);
    return made;
}

const CodePageReverse* CodePageReverse::FindBuilt(const CodePageFacts& facts)
{
    return built[&facts - codePages].load(std::memory_order_acquire);
}

const CodePageReverse* CodePageReverse::Find(const CodePageFacts& facts)
{
    if (const CodePageReverse* const found = FindBuilt(facts))
        return found;
    // Two threads may build the same page; one of the results stays.
    const CodePageReverse* const made = Build(facts);
    const CodePageReverse* expected = nullptr;
    if (!made || built[&facts - codePages].compare_exchange_strong(expected, made,
                                                                   std::memory_order_acq_rel))
        return made;
    std::free(const_cast<CodePageReverse*>(made));
    return expected;
}
} // namespace winapi

// winapi/CodePages.cpp: builds the conversion tables of the code pages.
#include "CodePages.h"

#include <algorithm>
#include <atomic>
#include <cstdlib>

#include "winapi/Errors.h"

namespace winapi
{
namespace
{
constexpr unsigned MOST_PAGES = 80;

constinit std::atomic<const CodePage*> built[MOST_PAGES];

// The rows of patches of one page, as tools/tables/make_codepages.py tells them.
class PatchReader
{
public:
    explicit PatchReader(unsigned start) : next(code_page_patches + start) {}

    // Calls apply(code, value) for each code of so many rows.
    template <typename Apply>
    void Read(unsigned rows, Apply apply)
    {
        unsigned last = 0;
        unsigned value = 0;
        for (; rows; rows--) {
            const unsigned first = last + Number();
            last = first + Number();
            const unsigned distance = Number();
            value += distance & 1 ? ~(distance >> 1) : distance >> 1;
            for (unsigned code = first; code <= last; code++)
                apply(code,
                      static_cast<WCHAR>(value == NO_VALUE ? NO_VALUE : value + (code - first)));
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

    const unsigned char* next;
};

void FillBytes(CodePage& page, Converter& converter)
{
    for (unsigned byte = 0; byte < 256; byte++) {
        const char bytes[] = {static_cast<char>(byte)};
        if (!page.isLead[byte])
            page.fromByte[byte] = converter.ToUnit(bytes, 1);
    }
}

void FillPairs(CodePage& page, Converter& converter)
{
    for (unsigned pair = 0; pair < 0x10000; pair++) {
        const char bytes[] = {static_cast<char>(pair >> 8), static_cast<char>(pair)};
        if (page.isLead[pair >> 8])
            page.fromPair[pair] = converter.ToUnit(bytes, 2);
    }
}

void FillUnits(CodePage& page, Converter& converter)
{
    for (unsigned unit = 0; unit < 0x10000; unit++) {
        char bytes[4];
        const int count = converter.FromUnit(static_cast<WCHAR>(unit), bytes);
        const unsigned first = static_cast<unsigned char>(bytes[0]);
        if (count == 1 && !page.isLead[first])
            page.fromUnit[unit] = static_cast<WCHAR>(first);
        else if (count == 2 && page.isLead[first])
            page.fromUnit[unit] =
                static_cast<WCHAR>(first << 8 | static_cast<unsigned char>(bytes[1]));
    }
}

bool FillFromConverter(CodePage& page)
{
    Converter converter(page.facts->converter);
    if (!converter.IsOpen())
        return false;
    FillBytes(page, converter);
    if (page.HasPairs())
        FillPairs(page, converter);
    FillUnits(page, converter);
    return true;
}

// The reverse of bytes and pairs; of several codes for a unit the lowest one.
void FillReverse(CodePage& page)
{
    for (unsigned pair = 0x10000; pair-- > 0x100;)
        if (page.fromPair[pair] != NO_VALUE)
            page.fromUnit[page.fromPair[pair]] = static_cast<WCHAR>(pair);
    for (unsigned byte = 256; byte-- > 0;)
        if (page.fromByte[byte] != NO_VALUE)
            page.fromUnit[page.fromByte[byte]] = static_cast<WCHAR>(byte);
}

bool FillFromRule(CodePage& page)
{
    const bool johab = page.facts->rule == CodePageRule::johab;
    const CodePage* const base = FindCodePage(johab ? 949 : 932);
    if (!base)
        return false;
    for (unsigned byte = 0; byte < 0xA0; byte++)
        if (!page.isLead[byte])
            page.fromByte[byte] = static_cast<WCHAR>(byte);
    if (johab)
        ApplyJohabRule(page, *base);
    else if (!ApplyEucJpRule(page, *base))
        return false;
    FillReverse(page);
    return true;
}

void ApplyPatches(CodePage& page)
{
    PatchReader reader(page.facts->patchStart);
    reader.Read(page.facts->patchRowsTo, [&page](unsigned code, WCHAR value) {
        (code < 0x100 ? page.fromByte[code] : page.fromPair[code]) = value;
    });
    reader.Read(page.facts->patchRowsFrom,
                [&page](unsigned code, WCHAR value) { page.fromUnit[code] = value; });
}

// From here on a byte or a pair without a unit gives the page's undefined unit.
void Settle(CodePage& page)
{
    const WCHAR undefined = page.facts->undefinedUnit;
    std::replace(std::begin(page.fromByte), std::end(page.fromByte), NO_VALUE, undefined);
    if (page.HasPairs())
        std::replace(page.fromPair, page.fromPair + 0x10000, NO_VALUE, undefined);
}

bool Fill(CodePage& page, const CodePageFacts& facts)
{
    page.facts = &facts;
    for (const LeadRange& range : facts.leads)
        for (unsigned byte = range.first; byte <= range.last; byte++)
            page.isLead[byte] = true;
    std::fill(std::begin(page.fromByte), std::end(page.fromByte), NO_VALUE);
    std::fill(std::begin(page.fromUnit), std::end(page.fromUnit), NO_VALUE);
    if (page.HasPairs())
        std::fill(page.fromPair, page.fromPair + 0x10000, NO_VALUE);

    if (facts.rule == CodePageRule::icu && !FillFromConverter(page))
        return false;
    if ((facts.rule == CodePageRule::johab || facts.rule == CodePageRule::eucjp) &&
        !FillFromRule(page))
        return false;
    ApplyPatches(page);
    Settle(page);
    return true;
}

// Null when the memory can't be had.
const CodePage* Build(const CodePageFacts& facts)
{
    const bool pairs = facts.leads[0].first <= facts.leads[0].last;
    const std::size_t size = sizeof(CodePage) + (pairs ? 0x10000 * sizeof(WCHAR) : 0);
    CodePage* const page = static_cast<CodePage*>(std::calloc(1, size));
    if (page && !Fill(*page, facts)) {
        std::free(page);
        return nullptr;
    }
    return page;
}
} // namespace

const CodePageFacts* FindFacts(UINT page)
{
    const CodePageFacts* const end = code_pages + code_page_count;
    const CodePageFacts* const found =
        std::lower_bound(code_pages, end, page, [](const CodePageFacts& facts, UINT wanted) {
            return facts.page < wanted;
        });
    return found != end && found->page == page ? found : nullptr;
}

const CodePage* FindCodePage(UINT number)
{
    const CodePageFacts* const facts = FindFacts(number);
    if (!facts) {
        SetLastError(ERROR_INVALID_PARAMETER);
        return nullptr;
    }
    std::atomic<const CodePage*>& place = built[facts - code_pages];
    if (const CodePage* page = place.load(std::memory_order_acquire))
        return page;
    // Two threads may build the same page; one of the results stays. A page may need another one.
    const CodePage* const made = Build(*facts);
    if (!made) {
        SetLastError(ERROR_NOT_ENOUGH_MEMORY);
        return nullptr;
    }
    const CodePage* expected = nullptr;
    if (place.compare_exchange_strong(expected, made, std::memory_order_acq_rel))
        return made;
    std::free(const_cast<CodePage*>(made));
    return expected;
}
} // namespace winapi

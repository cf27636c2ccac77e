// winapi/Text/CodePageTables.cpp: builds the conversion tables of the code pages.
#include "Text/CodePageTables.h"

#include <algorithm>
#include <atomic>
#include <cstdlib>

#include "winapi/Errors/LastError.h"

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
    explicit PatchReader(unsigned start) : next(codePagePatches + start) {}

    // Calls apply(code, value) for each code of so many rows.
    template <typename Apply>
    void Read(unsigned rows, Apply apply)
    {
        unsigned last = 0;
        unsigned value = 0;
        for (; rows; --rows) {
            const unsigned first = last + Number();
            last = first + Number();
            const unsigned distance = Number();
            value += distance & 1 ? ~(distance >> 1) : distance >> 1;
            for (unsigned code = first; code <= last; ++code)
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

void FillBytes(CodePageDraft& page, Converter& converter)
{
    for (unsigned byte = 0; byte < 256; ++byte) {
        const char bytes[] = {static_cast<char>(byte)};
        if (!page.isLead[byte])
            page.fromByte[byte] = converter.ToUnit(bytes, 1);
    }
}

void FillPairs(CodePageDraft& page, Converter& converter)
{
    for (unsigned lead = 0; lead < 256; ++lead)
        if (page.isLead[lead])
            converter.ToUnits(static_cast<BYTE>(lead), page.fromPair + (lead << 8));
}

void FillUnit(void* place, WCHAR unit, const BYTE* bytes, int count)
{
    CodePageDraft& page = *static_cast<CodePageDraft*>(place);
    if (count == 1 && !page.isLead[bytes[0]])
        page.fromUnit[unit] = bytes[0];
    else if (count == 2 && page.isLead[bytes[0]])
        page.fromUnit[unit] = static_cast<WCHAR>(bytes[0] << 8 | bytes[1]);
}

// 0 or the code of the failure; so do those that follow.
DWORD FillFromConverter(CodePageDraft& page)
{
    Converter converter(page.facts->converter);
    if (!converter.IsOpen())
        return converter.HasHost() ? ERROR_NOT_ENOUGH_MEMORY : ERROR_MOD_NOT_FOUND;
    FillBytes(page, converter);
    FillPairs(page, converter);
    return converter.FromUnits(&page, FillUnit) ? 0 : ERROR_NOT_ENOUGH_MEMORY;
}

// The reverse of bytes and pairs; of several codes for a unit the lowest one.
void FillReverse(CodePageDraft& page)
{
    for (unsigned pair = 0x10000; pair-- > 0x100;)
        if (page.fromPair[pair] != NO_VALUE)
            page.fromUnit[page.fromPair[pair]] = static_cast<WCHAR>(pair);
    for (unsigned byte = 256; byte-- > 0;)
        if (page.fromByte[byte] != NO_VALUE)
            page.fromUnit[page.fromByte[byte]] = static_cast<WCHAR>(byte);
}

DWORD FillFromRule(CodePageDraft& page)
{
    const bool johab = page.facts->rule == CodePageRule::JOHAB;
    const CodePage* const base = FindCodePage(johab ? 949 : 932);
    if (!base)
        return GetLastError();
    for (unsigned byte = 0; byte < 0xA0; ++byte)
        if (!page.isLead[byte])
            page.fromByte[byte] = static_cast<WCHAR>(byte);
    DWORD code = 0;
    if (johab)
        ApplyJohabRule(page, *base);
    else
        code = ApplyEucJpRule(page, *base);
    FillReverse(page);
    return code;
}

DWORD FillBeforePatches(CodePageDraft& page)
{
    switch (page.facts->rule) {
    case CodePageRule::ICU:
        return FillFromConverter(page);
    case CodePageRule::NONE:
        return 0;
    default:
        return FillFromRule(page);
    }
}

void ApplyPatches(CodePageDraft& page)
{
    PatchReader reader(page.facts->patchStart);
    reader.Read(page.facts->patchRowsTo, [&page](unsigned code, WCHAR value) {
        (code < 0x100 ? page.fromByte[code] : page.fromPair[code]) = value;
    });
    reader.Read(page.facts->patchRowsFrom,
                [&page](unsigned code, WCHAR value) { page.fromUnit[code] = value; });
}

DWORD Fill(CodePageDraft& page, const CodePageFacts& facts)
{
    page.facts = &facts;
    for (const LeadRange& range : facts.leads)
        for (unsigned byte = range.first; byte <= range.last; ++byte)
            page.isLead[byte] = true;
    std::fill(std::begin(page.fromByte), std::end(page.fromByte), NO_VALUE);
    std::fill(std::begin(page.fromUnit), std::end(page.fromUnit), NO_VALUE);
    if (HasPairs(facts))
        std::fill(std::begin(page.fromPair), std::end(page.fromPair), NO_VALUE);

    if (const DWORD code = FillBeforePatches(page))
        return code;
    ApplyPatches(page);
    // From here on a byte or a pair without a unit gives the page's undefined unit.
    const WCHAR undefined = facts.undefinedUnit;
    std::replace(std::begin(page.fromByte), std::end(page.fromByte), NO_VALUE, undefined);
    if (HasPairs(facts))
        std::replace(std::begin(page.fromPair), std::end(page.fromPair), NO_VALUE, undefined);
    return 0;
}

constexpr unsigned ROW = 256;

// Whether all values of a row are the same one.
bool IsEmpty(const WCHAR* row, WCHAR value)
{
    return std::all_of(row, row + ROW, [value](WCHAR other) { return other == value; });
}

unsigned CountRows(const WCHAR* table, WCHAR none)
{
    unsigned count = 1;
    for (unsigned row = 0; row < 256; ++row)
        count += !IsEmpty(table + row * ROW, none);
    return count;
}

// Lays the rows of a table at next, first one for all that are empty; the place behind them.
WCHAR* LayRows(const WCHAR* table, WCHAR none, WCHAR* next, const WCHAR* (&rows)[256])
{
    const WCHAR* const empty = next;
    next = std::fill_n(next, ROW, none);
    for (unsigned row = 0; row < 256; ++row) {
        const WCHAR* const from = table + row * ROW;
        rows[row] = IsEmpty(from, none) ? empty : next;
        if (rows[row] == next)
            next = std::copy_n(from, ROW, next);
    }
    return next;
}

bool IsOwn(const CodePageDraft& draft, unsigned byte, unsigned unit)
{
    return !draft.isLead[byte] && draft.fromByte[byte] == unit && draft.fromUnit[unit] == byte;
}

bool HasAscii(const CodePageDraft& draft)
{
    unsigned byte = 0;
    while (byte < 0x80 && IsOwn(draft, byte, byte))
        ++byte;
    return byte == 0x80;
}

// The longest one.
ByteRun FindRun(const CodePageDraft& draft)
{
    ByteRun best{};
    for (unsigned first = 0x80; first < 0x100; ++first) {
        const unsigned unit = draft.fromByte[first];
        unsigned length = 0;
        while (first + length < 0x100 && unit + length < 0x10000 &&
               IsOwn(draft, first + length, unit + length))
            ++length;
        if (length > best.length)
            best = {static_cast<BYTE>(first), static_cast<BYTE>(length), static_cast<WCHAR>(unit)};
    }
    return best;
}

// The tables as they are kept; null when the memory can't be had.
const CodePage* Pack(const CodePageDraft& draft)
{
    const WCHAR undefined = draft.facts->undefinedUnit;
    const bool pairs = HasPairs(*draft.facts);
    const unsigned rows =
        CountRows(draft.fromUnit, NO_VALUE) + (pairs ? CountRows(draft.fromPair, undefined) : 0);
    CodePage* const page =
        static_cast<CodePage*>(std::calloc(1, sizeof(CodePage) + rows * ROW * sizeof(WCHAR)));
    if (!page)
        return nullptr;
    page->facts = draft.facts;
    page->hasAscii = HasAscii(draft);
    page->run = FindRun(draft);
    std::copy(std::begin(draft.isLead), std::end(draft.isLead), page->isLead);
    std::copy(std::begin(draft.fromByte), std::end(draft.fromByte), page->fromByte);
    WCHAR* const next = LayRows(draft.fromUnit, NO_VALUE, page->rows, page->unitRows);
    if (pairs)
        LayRows(draft.fromPair, undefined, next, page->pairRows);
    return page;
}

// Null, with the last error set, when they can't be made.
const CodePage* Build(const CodePageFacts& facts)
{
    const CodePage* page = nullptr;
    DWORD code = ERROR_NOT_ENOUGH_MEMORY;
    CodePageDraft* const draft = static_cast<CodePageDraft*>(std::calloc(1, sizeof(CodePageDraft)));
    if (draft) {
        const DWORD failure = Fill(*draft, facts);
        if (failure)
            code = failure;
        else
            page = Pack(*draft);
    }
    std::free(draft);
    if (!page)
        SetLastError(code);
    return page;
}
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

const CodePage* FindBuilt(UINT page)
{
    const CodePageFacts* const facts = FindFacts(page);
    return facts ? built[facts - codePages].load(std::memory_order_acquire) : nullptr;
}

const CodePage* FindCodePage(UINT number)
{
    const CodePageFacts* const facts = FindFacts(number);
    if (!facts) {
        SetLastError(ERROR_INVALID_PARAMETER);
        return nullptr;
    }
    std::atomic<const CodePage*>& place = built[facts - codePages];
    if (const CodePage* page = place.load(std::memory_order_acquire))
        return page;
    // Two threads may build the same page; one of the results stays. A page may need another one.
    const CodePage* const made = Build(*facts);
    if (!made)
        return nullptr;
    const CodePage* expected = nullptr;
    if (place.compare_exchange_strong(expected, made, std::memory_order_acq_rel))
        return made;
    std::free(const_cast<CodePage*>(made));
    return expected;
}
} // namespace winapi

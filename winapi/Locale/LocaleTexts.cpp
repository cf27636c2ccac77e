// winapi/Locale/LocaleTexts.cpp
#include "Locale/LocaleTexts.h"

#include "Base/Host.h"
#include "Base/ProcessLocale.h"
#include "Locale/LocaleData.h"
#include "Text/Utf.h"
#include "winapi/Errors/LastError.h"

#include <atomic>
#include <cstdlib>
#include <cstring>

namespace winapi
{
// Takes the texts as they come and makes a list of them.
class TextCollector
{
public:
    void Put(unsigned place, const WCHAR* text, int count)
    {
        if (count > ROOM - used)
            count = ROOM - used;
        std::memcpy(units + used, text, static_cast<std::size_t>(count) * sizeof(WCHAR));
        PutLast(place, count);
    }
    void PutUtf8(unsigned place, const char* text)
    {
        Sink<WCHAR> sink(units + used, ROOM - used);
        if (*text)
            DecodeUtf8(text, static_cast<int>(std::strlen(text)), false, sink);
        PutLast(place, *text ? sink.Count() : 0);
    }
    // Null without memory.
    LocaleTexts* Finish() const
    {
        int sum = 0;
        for (const Text& text : texts)
            sum += text.count;
        void* const block =
            std::malloc(sizeof(LocaleTexts) + static_cast<std::size_t>(sum) * sizeof(WCHAR));
        if (!block)
            return nullptr;
        LocaleTexts* const list = new (block) LocaleTexts;
        WORD next = 0;
        for (unsigned place = 0; place < TEXT_COUNT; ++place) {
            const Text& text = texts[place];
            list->begin[place] = next;
            std::memcpy(list->units + next, units + text.begin,
                        static_cast<std::size_t>(text.count) * sizeof(WCHAR));
            next = static_cast<WORD>(next + text.count);
        }
        list->begin[TEXT_COUNT] = next;
        return list;
    }

private:
    static constexpr int ROOM = 8192; // No locale's texts are half as many units.
    struct Text
    {
        int begin = 0;
        int count = 0;
    };
    Text texts[TEXT_COUNT];
    int used = 0;
    WCHAR units[ROOM];

    void PutLast(unsigned place, int count)
    {
        texts[place] = {used, count};
        used += count;
    }
};

namespace
{
std::atomic<const LocaleTexts*> known[256];

void PutText(void* place, TextPlace text, const WCHAR* units, int count)
{
    static_cast<TextCollector*>(place)->Put(text, units, count);
}

const LocaleTexts* Fetch(unsigned locale)
{
    TextCollector collector;
    {
        const Host host;
        if (!host)
            return nullptr;
        if (!host->locale->readTexts(locales[locale].tag, &collector, PutText)) {
            SetLastError(ERROR_NOT_ENOUGH_MEMORY);
            return nullptr;
        }
    }
    for (unsigned i = patchesOf[locale]; i < patchesOf[locale + 1]; ++i)
        collector.PutUtf8(patchPlaces[i], patchTexts + patchBegins[i]);
    const LocaleTexts* const made = collector.Finish();
    if (!made)
        SetLastError(ERROR_NOT_ENOUGH_MEMORY);
    return made;
}
} // namespace

const LocaleTexts* TextsOf(unsigned locale)
{
    const LocaleTexts* texts = known[locale].load(std::memory_order_acquire);
    if (texts)
        return texts;
    const LocaleTexts* const made = Fetch(locale);
    // Another thread may have been faster.
    if (made && !known[locale].compare_exchange_strong(texts, made, std::memory_order_acq_rel)) {
        std::free(const_cast<LocaleTexts*>(made));
        return texts;
    }
    return made;
}
} // namespace winapi

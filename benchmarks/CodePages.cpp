// benchmarks/CodePages.cpp: whole texts between code pages and UTF-16.
//
// faq.de in page 1252, faq.ru in 1251, faq.ja in 932, without the few characters that the page
// lacks: what one side would put in their place another wouldn't. Each side writes into memory
// prepared before, by a converter that is kept; the library has none to keep. ICU's converters are
// those that stand behind the library's tables, which differ from them in best fits and some rare
// characters. "first_us" is the time in microseconds of the first conversion of a short text in a
// page (".back": to a page), with all that is made ready for it; "limit" is what was set for it.
// Rates are those of the text in the code page.
#include <System/String/StringConvert.h>

#include <chrono>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#if HAVE_ICU
#include <unicode/ucnv.h>
#endif

#include "Support/Iconv.h"
#include "Support/Inputs.h"
#include "Support/Job.h"

namespace
{
struct Page
{
    const char* name;
    unsigned number;
    const char* input;
    const char* icu;
    const char* iconv;
};

const Page pages[] = {
    {"1252", 1252, "faq.de", "ibm-5348_P100-1997", "CP1252"},
    {"1251", 1251, "faq.ru", "ibm-5347_P100-1998", "CP1251"},
    {"932", 932, "faq.ja", "ibm-943_P15A-2003", "CP932"},
};

unsigned short* Wide(std::u16string& text)
{
    return reinterpret_cast<unsigned short*>(text.data());
}

const unsigned short* Wide(const std::u16string& text)
{
    return reinterpret_cast<const unsigned short*>(text.data());
}

struct Input
{
    explicit Input(const Page& onPage) : page(onPage)
    {
        for (const char16_t unit : Inputs::Units(page.input))
            if (Has(unit))
                units += unit;
        bytes.resize(units.size() * 2 + 1);
        bytes.resize(static_cast<size_t>(CT_StringConvert::si_WideToMulti(
            bytes.data(), Wide(units), Count(units), page.number, nullptr, nullptr)));
    }

    template <class Text>
    static unsigned Count(const Text& text)
    {
        return static_cast<unsigned>(text.size());
    }

    const Page& page;
    std::u16string units;
    std::string bytes;

private:
    // Whether a unit comes back from the page.
    bool Has(char16_t unit) const
    {
        const auto in = static_cast<unsigned short>(unit);
        char code[4];
        const int length =
            CT_StringConvert::si_WideToMulti(code, &in, 1, page.number, nullptr, nullptr);
        unsigned short back[4];
        return CT_StringConvert::si_MultiToWide(back, code, static_cast<unsigned>(length),
                                                page.number) == 1 &&
               back[0] == in;
    }
};

// ---- The sides --------------------------------------------------------------------------------

#if HAVE_ICU
std::shared_ptr<UConverter> OpenICU(const char* name)
{
    UErrorCode status = U_ZERO_ERROR;
    return {ucnv_open(name, &status), ucnv_close};
}
#endif

// Call takes an input and prepared memory, and gives the length of what it wrote there.
template <class Room, class Call>
void Side(Measure<Room>& measure, const char* side, const Input& input, Call call)
{
    auto room = std::make_shared<Room>(input.units.size() * 2 + 16, 0);
    measure.Side(
        side, [&input, room, call] { return call(input, *room); },
        [&input, room, call] { return room->substr(0, static_cast<size_t>(call(input, *room))); });
}

void RegisterToWide(const Input& input)
{
    Measure<std::u16string> measure("to_wide", input.page.name,
                                    {Amount::BYTES, input.bytes.size()});
    Side(measure, "ostra", input, [](const Input& in, std::u16string& out) {
        return CT_StringConvert::si_MultiToWide(Wide(out), in.bytes.data(), Input::Count(in.bytes),
                                                in.page.number);
    });
#if HAVE_ICU
    const auto converter = OpenICU(input.page.icu);
    Side(measure, "icu", input, [converter](const Input& in, std::u16string& out) {
        UErrorCode status = U_ZERO_ERROR;
        return ucnv_toUChars(converter.get(), out.data(), static_cast<int32_t>(out.size()),
                             in.bytes.data(), static_cast<int32_t>(in.bytes.size()), &status);
    });
#endif
    const Iconv iconv("UTF-16LE", input.page.iconv);
    Side(measure, "iconv", input,
         [iconv](const Input& in, std::u16string& out) { return iconv.Convert(in.bytes, out); });
}

void RegisterToBytes(const Input& input)
{
    Measure<std::string> measure("to_bytes", input.page.name, {Amount::BYTES, input.bytes.size()});
    Side(measure, "ostra", input, [](const Input& in, std::string& out) {
        return CT_StringConvert::si_WideToMulti(out.data(), Wide(in.units), Input::Count(in.units),
                                                in.page.number, nullptr, nullptr);
    });
#if HAVE_ICU
    const auto converter = OpenICU(input.page.icu);
    Side(measure, "icu", input, [converter](const Input& in, std::string& out) {
        UErrorCode status = U_ZERO_ERROR;
        return ucnv_fromUChars(converter.get(), out.data(), static_cast<int32_t>(out.size()),
                               in.units.data(), static_cast<int32_t>(in.units.size()), &status);
    });
#endif
    const Iconv iconv(input.page.iconv, "UTF-16LE");
    Side(measure, "iconv", input,
         [iconv](const Input& in, std::string& out) { return iconv.Convert(in.units, out); });
}

// ---- The first use ----------------------------------------------------------------------------

template <class Use>
double Microseconds(Use use)
{
    const auto start = std::chrono::steady_clock::now();
    use();
    return std::chrono::duration<double, std::micro>(std::chrono::steady_clock::now() - start)
        .count();
}

void RegisterFirst(const std::string& input, double ours, [[maybe_unused]] double icu)
{
    Job::RegisterCost("first_us/ostra/" + input, [ours] { return ours; });
#if HAVE_ICU
    Job::RegisterCost("first_us/icu/" + input, [icu] { return icu; });
#endif
    Job::RegisterCost("first_us/limit/" + input, [] { return 100.0; });
}

// A text that is no ASCII, in the page and as units. Each way is a first use of its own: ICU opens
// the converter for each, and ours builds the way to pairs when it is needed.
void RegisterFirst(const std::string& input, unsigned number, [[maybe_unused]] const char* icu,
                   const std::string& bytes, const std::u16string& units)
{
    unsigned short wide[16];
    char back[16];
    const auto size = static_cast<unsigned>(bytes.size());
    const auto count = static_cast<unsigned>(units.size());
    const double oursTo =
        Microseconds([&] { CT_StringConvert::si_MultiToWide(wide, bytes.data(), size, number); });
    const double oursBack = Microseconds([&] {
        CT_StringConvert::si_WideToMulti(back, Wide(units), count, number, nullptr, nullptr);
    });
    double icuTo = 0, icuBack = 0;
#if HAVE_ICU
    icuTo = Microseconds([&] {
        UChar text[16];
        UErrorCode status = U_ZERO_ERROR;
        const auto converter = OpenICU(icu);
        ucnv_toUChars(converter.get(), text, 16, bytes.data(), static_cast<int32_t>(size), &status);
    });
    icuBack = Microseconds([&] {
        UErrorCode status = U_ZERO_ERROR;
        const auto converter = OpenICU(icu);
        ucnv_fromUChars(converter.get(), back, 16, units.data(), static_cast<int32_t>(count),
                        &status);
    });
#endif
    RegisterFirst(input, oursTo, icuTo);
    RegisterFirst(input + ".back", oursBack, icuBack);
}
} // namespace

int main(int argc, char** argv)
{
    RegisterFirst("1253", 1253, "ibm-5349_P100-1998", "\xE1\xE2\xE3", u"\u03B1\u03B2\u03B3");
    RegisterFirst("949", 949, "windows-949-2000", "\xB0\xA1\xC7\xD1", u"\uAC00\uD55C");
    std::vector<std::unique_ptr<Input>> inputs;
    for (const Page& page : pages) {
        inputs.push_back(std::make_unique<Input>(page));
        RegisterToWide(*inputs.back());
        RegisterToBytes(*inputs.back());
    }
    return Job::Run(argc, argv, OSTRA_ABSENT_PEERS);
}

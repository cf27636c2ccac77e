// examples/recode/Converter.cpp
#include "Converter.h"

#include <Common/Failure.h>
#include <Common/Utf8.h>

#include <algorithm>
#include <cstdio>

namespace recode
{
using namespace common;

namespace
{
constexpr char SOURCE[] = "recode/Converter";

constexpr size_t FEWEST = 16; // bytes that are tried behind an ill-formed place

std::string Counted(unsigned long long count, const char* one, const char* more)
{
    return std::to_string(count) + " " + (count == 1 ? one : more);
}

// The first bytes that are no text.
std::string Hex(std::string_view bytes)
{
    std::string text;
    for (const char c : bytes) {
        char digits[4];
        std::snprintf(digits, sizeof(digits), " %02X", static_cast<unsigned char>(c));
        text += digits;
    }
    return text;
}

std::string Character(std::u16string_view units)
{
    const bool pair = (units[0] & 0xFC00) == 0xD800 && units.size() > 1;
    const unsigned number =
        pair ? 0x10000 + ((units[0] & 0x3FFU) << 10) + (units[1] & 0x3FFU) : units[0];
    char text[16];
    std::snprintf(text, sizeof(text), "U+%04X", number);
    return text;
}
} // namespace

Converter::Converter(const Encoding& from, const Encoding& to, const Options& options)
    : Converter(from, to, options, Decoder::Make(from))
{}

Converter::Converter(const Encoding& from, const Encoding& to, const Options& options,
                     std::unique_ptr<Decoder> own)
    : name(options.source),
      source(from),
      aim(to),
      replace(options.replace),
      decoder(std::move(own)),
      encoder(Encoder::Make(to)),
      ends(options.ends)
{}

bool Converter::Take(std::string_view bytes, bool last, std::string* made)
{
    std::u16string units;
    left += bytes;
    const bool good = Decode(last, &units);
    Encode(&units, last, made);
    return good;
}

// What has come as text; false with an error set.
bool Converter::Decode(bool last, std::u16string* units)
{
    size_t used = 0;
    // A try looks at all of its bytes, even if the next ill-formed place is near. So behind one only
    // few are tried, and twice as many each time that there is none.
    size_t piece = left.size();
    for (bool more = true; more;) {
        const size_t before = units->size();
        const std::string_view rest = std::string_view(left).substr(used);
        const bool whole = piece >= rest.size();
        const Decoder::Step step = decoder->Decode(rest.substr(0, piece), last && whole, units);
        in.Take(std::u16string_view(*units).substr(before));
        used += step.used + step.skip;
        if (step.bad && !TakeBad(rest, step, units))
            return false;
        more = step.bad ? used < left.size() : !whole;
        piece = step.bad ? FEWEST : 2 * piece;
    }
    left.erase(0, used);
    taken += used;
    return true;
}

// Counts what is no text; false with an error set where it isn't to be replaced.
bool Converter::TakeBad(std::string_view rest, const Decoder::Step& step, std::u16string* units)
{
    if (!bad++) {
        const std::string_view bytes = rest.substr(step.used, std::max<size_t>(step.skip, 1));
        const size_t offset = taken + (left.size() - rest.size()) + step.used;
        firstBad = "line " + std::to_string(in.Line()) + ", byte " + std::to_string(offset + 1) +
                   (bytes.empty() ? ", the end" : ":" + Hex(bytes));
    }
    units->push_back(REPLACEMENT);
    if (replace)
        return true;
    CT_UString text;
    ToWide(name + ": " + firstBad + ": ill-formed " + source.Name(), &text);
    Fail(SOURCE, u"%s", text.qcuz_Get());
    return false;
}

void Converter::Encode(std::u16string* units, bool last, std::string* made)
{
    if (!begun && (!units->empty() || last)) {
        begun = true;
        if (units->starts_with(MARK))
            units->erase(0, 1);
        if (aim.marked)
            encoder->Encode(std::u16string_view(&MARK, 1), made);
    }
    ends.Take(units);
    if (!units->empty())
        TakeLoss(encoder->Encode(*units, made), *units);
    if (last)
        encoder->End(made);
}

void Converter::TakeLoss(const Loss& lost, std::u16string_view units)
{
    if (lost.Count() && !loss.Count()) {
        LineCount lines = out;
        lines.Take(units.substr(0, lost.first));
        firstLost =
            Character(units.substr(lost.first)) + " in line " + std::to_string(lines.Line());
    }
    loss.replaced += lost.replaced;
    loss.similar += lost.similar;
    out.Take(units);
}

std::string Converter::IllFormed() const
{
    if (!bad)
        return "";
    return name + ": " + Counted(bad, "ill-formed place became", "ill-formed places became") +
           " U+FFFD, the first at " + firstBad;
}

std::string Converter::Lost() const
{
    if (!loss.Count())
        return "";
    return name + ": " + Counted(loss.Count(), "character isn't", "characters aren't") + " in " +
           aim.Name() + " (" + std::to_string(loss.replaced) + " replaced, " +
           std::to_string(loss.similar) + " by a similar one), the first is " + firstLost;
}
} // namespace recode

// examples/recode/Converter.h: the text on its way from the source to the target.
#pragma once

#include "Decoder.h"
#include "Encoder.h"
#include "LineEnds.h"
#include "Options.h"

#include <memory>
#include <string>
#include <string_view>

namespace recode
{
class Converter
{
public:
    Converter(const Encoding& from, const Encoding& to, const Options& options);
    // With another decoder for the source.
    Converter(const Encoding& from, const Encoding& to, const Options& options,
              std::unique_ptr<Decoder> own);

    // Appends the bytes of the target that come of the next bytes of the source; false with an
    // error set for what is ill-formed and not to be replaced.
    bool Take(std::string_view bytes, bool last, std::string* made);

    // What was replaced, as sentences; empty for nothing.
    std::string IllFormed() const;
    std::string Lost() const;
    // Whether the target's code page lacks characters of the text.
    bool HasLost() const { return loss.Count() != 0; }

private:
    bool Decode(bool last, std::u16string* units);
    bool TakeBad(std::string_view rest, const Decoder::Step& step, std::u16string* units);
    void Encode(std::u16string* units, bool last, std::string* made);
    void TakeLoss(const Loss& lost, std::u16string_view units);

    const std::string name; // of the source
    const Encoding source;
    const Encoding aim;
    const bool replace;
    std::unique_ptr<Decoder> decoder;
    std::unique_ptr<Encoder> encoder;
    LineEnds ends;

    std::string left;             // bytes that have come and are no whole character yet
    unsigned long long taken = 0; // bytes in front of them
    bool begun = false;           // a first character has come
    LineCount in;                 // lines of the source
    LineCount out;                // lines of the target
    unsigned long long bad = 0;   // ill-formed places
    std::string firstBad;
    Loss loss;
    std::string firstLost;
};
} // namespace recode

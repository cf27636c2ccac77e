// examples/recode/Utf7Decoder.h: UTF-7 that is checked, which the library's own coder doesn't do.
#pragma once

#include "Decoder.h"

namespace recode
{
class Utf7Decoder : public Decoder
{
public:
    Step Decode(std::string_view bytes, bool last, std::u16string* units) override;

private:
    // Take what comes next; false if it, or what lies before it, is ill-formed.
    bool TakeDirect(std::string_view bytes, Step* step, std::u16string* units);
    bool TakeInRun(char byte, Step* step, std::u16string* units);
    bool TakeUnit(char16_t unit, std::u16string* units);
    bool EndRun();

    bool run = false;   // within a run of Base64
    unsigned bits = 0;  // those of the run that have made no unit yet
    unsigned count = 0; // how many they are
    char16_t high = 0;  // the first half of a pair whose second one has to follow
};
} // namespace recode

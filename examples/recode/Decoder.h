// examples/recode/Decoder.h: bytes of an encoding become UTF-16, a piece at a time.
#pragma once

#include "Encoding.h"

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

namespace recode
{
class Decoder
{
public:
    static std::unique_ptr<Decoder> Make(const Encoding& encoding);
    virtual ~Decoder() = default;

    // What became of a piece.
    struct Step
    {
        // The bytes that were taken. What is left of a piece that is well-formed is a character
        // that isn't whole yet, and comes first in the next piece.
        size_t used = 0;
        // What follows them is no text: so many bytes are to be left out, maybe none.
        bool bad = false;
        size_t skip = 0;
    };

    // Appends the text of the bytes, up to where they are ill-formed. Behind the last piece nothing
    // follows, so that an unfinished character is ill-formed as well.
    virtual Step Decode(std::string_view bytes, bool last, std::u16string* units) = 0;
};
} // namespace recode

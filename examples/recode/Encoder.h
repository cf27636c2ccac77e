// examples/recode/Encoder.h: UTF-16 becomes bytes of an encoding, a piece at a time.
#pragma once

#include "Encoding.h"

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

namespace recode
{
// The characters of a piece that a code page doesn't hold.
struct Loss
{
    unsigned long long replaced = 0; // by the page's default character
    unsigned long long similar = 0;  // by one that looks or means alike
    size_t first = 0;                // the unit at which the first one stands

    unsigned long long Count() const { return replaced + similar; }
};

class Encoder
{
public:
    static std::unique_ptr<Encoder> Make(const Encoding& encoding);
    virtual ~Encoder() = default;

    // Appends the bytes of the text, in which no pair is cut.
    virtual Loss Encode(std::u16string_view units, std::string* bytes) = 0;
    // Appends what closes the text.
    virtual void End(std::string*) {}
};
} // namespace recode

// fuzz/Support/Input.h: what a fuzz target reads its bytes by, and how it says that a promise is
// broken.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

// Ends the process where the promise doesn't hold: the fuzzer keeps the input then.
#define REQUIRE(PROMISE)                                                                           \
    do {                                                                                           \
        if (!(PROMISE)) {                                                                          \
            std::fprintf(stderr, "%s:%d: broken promise: %s\n", __FILE__, __LINE__, #PROMISE);     \
            std::fflush(stderr);                                                                   \
            std::abort();                                                                          \
        }                                                                                          \
    } while (0)

// Takes an input apart, from its front. What is asked for behind its end reads as zeros, so that
// every input is one for every target.
class Input
{
public:
    Input(const std::uint8_t* bytes, std::size_t count) : at(bytes), end(bytes + count) {}

    bool IsEmpty() const { return at == end; }
    std::size_t Count() const { return static_cast<std::size_t>(end - at); }

    unsigned Byte() { return at < end ? *at++ : 0; }
    unsigned Word()
    {
        const unsigned low = Byte();
        return low | Byte() << 8;
    }
    unsigned Long()
    {
        const unsigned low = Word();
        return low | Word() << 16;
    }
    // 0 to bound - 1, of a single byte.
    unsigned Below(unsigned bound) { return Byte() % bound; }
    bool Flag() { return (Byte() & 1) != 0; }

    // As many bytes as there are, up to that count.
    std::string Bytes(std::size_t most)
    {
        const std::size_t count = std::min(most, Count());
        std::string bytes(reinterpret_cast<const char*>(at), count);
        at += count;
        return bytes;
    }
    std::string Rest() { return Bytes(Count()); }
    // A run of bytes whose length stands in front of it.
    std::string Piece(unsigned most = 255) { return Bytes(Below(most + 1)); }
    // A run of bytes without zeros.
    std::string Text(unsigned most = 255) { return WithoutZeros(Piece(most)); }
    // The rest as 16-bit units, half a unit at its end left out.
    std::u16string RestUnits() { return AsUnits(Rest()); }
    // Units without zeros.
    std::u16string WideText(unsigned most = 64)
    {
        std::u16string units = AsUnits(Bytes(2 * Below(most + 1)));
        std::erase(units, u'\0');
        return units;
    }

    static std::string WithoutZeros(std::string bytes)
    {
        std::erase(bytes, '\0');
        return bytes;
    }
    static std::u16string AsUnits(const std::string& bytes)
    {
        std::u16string units(bytes.size() / 2, u'\0');
        std::memcpy(units.data(), bytes.data(), units.size() * 2);
        return units;
    }

private:
    const std::uint8_t* at;
    const std::uint8_t* end;
};

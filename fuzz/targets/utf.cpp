// fuzz/targets/utf.cpp: the streaming coders of UTF-7 and UTF-8 against their model, whole and in
// pieces, there and back.
//
// Input: a byte of switches, a piece that tells where the text is cut, the text.
#include <System/String/UTF.h>

#include <Models/UTFModel.h>

#include "Support/Input.h"
#include "Support/Library.h"

#include <memory>
#include <vector>

namespace
{
// Pieces of 0 to 15; the last cut is the end.
template <class Text>
std::vector<Text> Pieces(Input cuts, const Text& text, bool cut)
{
    std::vector<Text> pieces;
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t count = cut && !cuts.IsEmpty() ? cuts.Below(16) : text.size();
        pieces.push_back(text.substr(at, count));
        at += pieces.back().size();
    }
    return pieces;
}

// No room but what is asked for: the sanitizer sees every unit too many.
template <class Decode>
std::u16string Decoded(Decode decode, const std::string& piece)
{
    const std::unique_ptr<unsigned short[]> out(new unsigned short[piece.size()]);
    const int length = decode(out.get(), piece.c_str(), static_cast<unsigned>(piece.size()));
    REQUIRE(length >= 0 && static_cast<std::size_t>(length) <= piece.size());
    return {reinterpret_cast<const char16_t*>(out.get()), static_cast<std::size_t>(length)};
}

void DecodeSeven(const std::vector<std::string>& pieces)
{
    CT_UTF::sv_UTF7ToWideInit();
    utf_model::SevenDecoder model;
    for (const std::string& piece : pieces)
        REQUIRE(Decoded(CT_UTF::si_UTF7ToWide, piece) == model.Piece(piece));
}

void DecodeEight(const std::vector<std::string>& pieces)
{
    CT_UTF::sv_UTF8ToWideInit();
    utf_model::EightDecoder model;
    for (const std::string& piece : pieces)
        REQUIRE(Decoded(CT_UTF::si_UTF8ToWide, piece) == model.Piece(piece));
}

std::string EncodeSeven(const std::vector<std::u16string>& pieces)
{
    CT_UTF::sv_WideToUTF7Init();
    utf_model::SevenEncoder model;
    std::string whole;
    for (const std::u16string& piece : pieces) {
        const std::unique_ptr<char[]> out(new char[piece.size() * 3 + 3]);
        const int length =
            CT_UTF::si_WideToUTF7(out.get(), UnitsOf(piece), static_cast<unsigned>(piece.size()));
        const std::string got(out.get(), static_cast<std::size_t>(length));
        REQUIRE(got == model.Piece(piece));
        whole += got;
    }
    char end[3];
    const int length = CT_UTF::si_WideToUTF7Exit(end);
    whole.append(end, static_cast<std::size_t>(length));
    return whole;
}

void Encode(const std::vector<std::u16string>& pieces, const std::u16string& text)
{
    const std::string seven = EncodeSeven(pieces);
    CT_UTF::sv_UTF7ToWideInit();
    REQUIRE(Decoded(CT_UTF::si_UTF7ToWide, seven) == utf_model::SevenDecoder().Piece(seven));
    std::string eight;
    for (const std::u16string& piece : pieces) {
        const std::unique_ptr<char[]> out(new char[piece.size() * 3 + 1]);
        const int length =
            CT_UTF::si_WideToUTF8(out.get(), UnitsOf(piece), static_cast<unsigned>(piece.size()));
        eight.append(out.get(), static_cast<std::size_t>(length));
    }
    REQUIRE(eight == utf_model::EightEncode(text));
    CT_UTF::sv_UTF8ToWideInit();
    REQUIRE(Decoded(CT_UTF::si_UTF8ToWide, eight) == text);
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    Input input(data, size);
    const unsigned switches = input.Byte();
    const std::string bytes = input.Piece(31);
    const Input cuts(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
    const bool cut = (switches & 1) != 0;
    std::string text = input.Rest();
    if (switches & 2) {
        // A zero ends a piece, and what a text is there and back then.
        std::u16string units = Input::AsUnits(text);
        std::erase(units, u'\0');
        Encode(Pieces(cuts, units, cut), units);
        return 0;
    }
    DecodeEight(Pieces(cuts, text, cut));
    // Kept without an outcome: a byte above 127 within a run of Base64.
    for (char& c : text)
        c = static_cast<char>(c & 0x7F);
    DecodeSeven(Pieces(cuts, text, cut));
    return 0;
}

// fuzz/targets/utf8_standard.cpp: standard UTF-8 against its model: refused and replaced, whole and
// in pieces, there and back.
//
// Input: a byte of switches, a piece that tells where the text is cut, the text.
#include <Ostra/String/CString.h>
#include <Ostra/String/UString.h>
#include <System/String/StandardUTF8.h>

#include <Models/StandardUTF8Model.h>

#include "Support/Input.h"
#include "Support/Library.h"

namespace
{
using Standard = CT_StandardUTF8;

// The two directions with the same names.
struct ToWide
{
    using Text = std::string;
    using Result = std::u16string;
    using Target = CT_UString;
    using State = Standard::st_ToWide;

    static const char* At(const Text& text) { return text.data(); }
    static int Whole(Target* out, const Text& text, Standard::et_IllFormed ill)
    {
        return Standard::sb_ToWide(out, At(text), static_cast<unsigned>(text.size()), ill);
    }
    static int Piece(Target* out, State* state, const Text& text, Standard::et_IllFormed ill)
    {
        return Standard::sb_PieceToWide(out, state, At(text), static_cast<unsigned>(text.size()),
                                        ill);
    }
    static int End(Target* out, State* state, Standard::et_IllFormed ill)
    {
        return Standard::sb_EndToWide(out, state, ill);
    }
    static Result Of(const Target& target)
    {
        return {reinterpret_cast<const char16_t*>(target.qcuz_Get()), target.vn_GetLength()};
    }
    static Result Expected(const Text& text) { return standard::Model(text).wide; }
};

struct FromWide
{
    using Text = std::u16string;
    using Result = std::string;
    using Target = CT_CString;
    using State = Standard::st_FromWide;

    static const unsigned short* At(const Text& text) { return UnitsOf(text); }
    static int Whole(Target* out, const Text& text, Standard::et_IllFormed ill)
    {
        return Standard::sb_FromWide(out, At(text), static_cast<unsigned>(text.size()), ill);
    }
    static int Piece(Target* out, State* state, const Text& text, Standard::et_IllFormed ill)
    {
        return Standard::sb_PieceFromWide(out, state, At(text), static_cast<unsigned>(text.size()),
                                          ill);
    }
    static int End(Target* out, State* state, Standard::et_IllFormed ill)
    {
        return Standard::sb_EndFromWide(out, state, ill);
    }
    static Result Of(const Target& target) { return {target.qccz_Get(), target.vn_GetLength()}; }
    static Result Expected(const Text& text) { return standard::Model(text).bytes; }
};

constexpr unsigned ILL_FORMED = 60012;

template <class Way>
void Whole(const typename Way::Text& text)
{
    const auto model = standard::Model(text);
    const auto length = static_cast<unsigned>(text.size());
    const bool good = model.ill == std::string::npos;
    REQUIRE(Standard::sn_FindIllFormed(Way::At(text), length) ==
            (good ? 0xFFFFFFFF : static_cast<unsigned>(model.ill)));
    typename Way::Target out;
    REQUIRE(Way::Whole(&out, text, Standard::e_Replace));
    REQUIRE(Way::Of(out) == Way::Expected(text));
    REQUIRE((Way::Whole(&out, text, Standard::e_Refuse) != 0) == good);
    REQUIRE(TakeCode() == (good ? 0 : ILL_FORMED));
    // What was refused leaves the target.
    REQUIRE(Way::Of(out) == Way::Expected(text));
}

template <class Way>
void InPieces(Input cuts, const typename Way::Text& text)
{
    typename Way::Target replaced, refused;
    typename Way::State replacing, refusing;
    bool good = true;
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t count = cuts.IsEmpty() ? text.size() : cuts.Below(16);
        const auto piece = text.substr(at, count);
        at += piece.size();
        REQUIRE(Way::Piece(&replaced, &replacing, piece, Standard::e_Replace));
        good = good && Way::Piece(&refused, &refusing, piece, Standard::e_Refuse);
    }
    REQUIRE(Way::End(&replaced, &replacing, Standard::e_Replace));
    good = good && Way::End(&refused, &refusing, Standard::e_Refuse);
    REQUIRE(Way::Of(replaced) == Way::Expected(text));
    REQUIRE(good == (standard::Model(text).ill == std::string::npos));
    REQUIRE(TakeCode() == (good ? 0 : ILL_FORMED));
    REQUIRE(!good || Way::Of(refused) == Way::Expected(text));
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    Input input(data, size);
    const unsigned switches = input.Byte();
    const std::string bytes = input.Piece(31);
    const Input cuts(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
    const std::string text = input.Rest();
    if (switches & 1) {
        const std::u16string units = Input::AsUnits(text);
        Whole<FromWide>(units);
        InPieces<FromWide>(cuts, units);
        Whole<ToWide>(standard::Model(units).bytes);
    } else {
        Whole<ToWide>(text);
        InPieces<ToWide>(cuts, text);
        Whole<FromWide>(standard::Model(text).wide);
    }
    return 0;
}

// fuzz/targets/scanner.cpp: items and words of texts of both widths against plain splitting.
//
// Input: a byte of switches, the separator, the number, a set, the text.
#include <Ostra/String/StringScanner.h>

#include "Support/Library.h"
#include "Support/Widths.h"

#include <vector>

namespace
{
struct Piece
{
    std::size_t start, count;
};

template <class Text>
std::vector<Piece> Items(const Text& text, typename Text::value_type separator)
{
    std::vector<Piece> items;
    std::size_t start = 0;
    for (std::size_t at = 0; at <= text.size(); ++at)
        if (at == text.size() || text[at] == separator) {
            items.push_back({start, at - start});
            start = at + 1;
        }
    return items;
}

template <class Text>
std::vector<Piece> Words(const Text& text, const Text& set)
{
    std::vector<Piece> words;
    for (std::size_t at = 0; (at = text.find_first_not_of(set, at)) != Text::npos;) {
        const std::size_t end = std::min(text.find_first_of(set, at), text.size());
        words.push_back({at, end - at});
        at = end;
    }
    return words;
}

template <class Text>
Text Of(const Text& text, const std::vector<Piece>& pieces, unsigned number)
{
    return number - 1 < pieces.size()
               ? text.substr(pieces[number - 1].start, pieces[number - 1].count)
               : Text();
}

template <class Text>
Text Without(Text text, const std::vector<Piece>& pieces, unsigned number)
{
    if (number - 1 < pieces.size())
        text.erase(pieces[number - 1].start, pieces[number - 1].count);
    return text;
}

template <class Width>
void Run(Input& input)
{
    using Unit = typename Width::Text::value_type;
    const auto separator = static_cast<Unit>(1 + input.Below(127));
    const unsigned number = 1 + input.Below(20);
    const auto set = Width::Take(input, 15), text = Width::Take(input, 200);
    const auto in = Width::Of(text), separators = Width::Of(set);
    const auto unit = static_cast<unsigned short>(separator);
    CT_StringScanner scanner;
    typename Width::String out;

    const std::vector<Piece> items = Items(text, separator);
    REQUIRE(scanner.n_ItemCount(&in, unit) == items.size() - 1);
    scanner.v_Item(&out, &in, unit, number);
    REQUIRE(Width::From(out) == Of(text, items, number));
    auto rest = Width::Of(text);
    scanner.v_RemoveItem(&rest, unit, number);
    REQUIRE(Width::From(rest) == Without(text, items, number));

    const std::vector<Piece> words = Words(text, set);
    REQUIRE(scanner.n_WordCount(&in, &separators) == words.size());
    scanner.v_SubWord(&out, &in, &separators, number);
    REQUIRE(Width::From(out) == Of(text, words, number));
    auto left = Width::Of(text);
    scanner.v_RemoveWord(&left, &separators, number);
    REQUIRE(Width::From(left) == Without(text, words, number));
    // Both may be one.
    auto same = Width::Of(text);
    scanner.v_Item(&same, &same, unit, number);
    REQUIRE(Width::From(same) == Of(text, items, number));
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    Input input(data, size);
    if (input.Flag())
        Run<Wide>(input);
    else
        Run<Narrow>(input);
    REQUIRE(TakeCode() == 0);
    return 0;
}

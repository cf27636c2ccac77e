// fuzz/targets/text_search.cpp: searches, comparisons, wildcards, translations and stripping of
// strings of both widths against the plain ways.
//
// Input: a byte of switches, a text, two more texts, a number.
#include "Support/Library.h"
#include "Support/Private.h"
#include "Support/Widths.h"

#include <Models/TextModel.h>

OSTRA_PRIVATE(MatchBytes, int (CT_CString::*)(const char*, const char*) const,
              &CT_CString::b_RMatch);
OSTRA_PRIVATE(MatchUnits, int (CT_UString::*)(const unsigned short*, const unsigned short*) const,
              &CT_UString::b_RMatch);

namespace
{
constexpr unsigned NONE = 0xFFFFFFFF;

int Match(const CT_CString& text, const CT_CString& pattern)
{
    return (text.*Private(MatchBytes()))(text.qccz_Get(), pattern.qccz_Get());
}
int Match(const CT_UString& text, const CT_UString& pattern)
{
    return (text.*Private(MatchUnits()))(text.qcuz_Get(), pattern.qcuz_Get());
}

template <class Width>
void Run(Input& input, bool repeated)
{
    using Text = typename Width::Text;
    Text text = Width::Take(input, 63);
    const Text other = Width::Take(input, 31), third = Width::Take(input, 31);
    // What stands everywhere, almost.
    for (unsigned times = repeated ? input.Below(40) : 0; times > 0; --times)
        text += other;
    const unsigned number = input.Byte();
    const auto own = Width::Of(text), wanted = Width::Of(other), last = Width::Of(third);

    const unsigned from = static_cast<unsigned>(number % (text.size() + 1));
    const auto at = text.find(other, from);
    REQUIRE(own.vn_Find(&wanted, from) == (other.empty()      ? from
                                           : at == Text::npos ? NONE
                                                              : static_cast<unsigned>(at)));
    if (!other.empty()) {
        const auto unit = text.find(other[0], from);
        REQUIRE(own.vn_Find(static_cast<typename Width::Unit>(other[0]), from) ==
                (unit == Text::npos ? NONE : static_cast<unsigned>(unit)));
    }
    REQUIRE(own.vi_Compare(&wanted) == PlainCompare(text, other));
    REQUIRE(wanted.vi_Compare(&own) == PlainCompare(other, text));
    const unsigned behind = static_cast<unsigned>(number % (other.size() + 1));
    REQUIRE(own.vi_Compare(&wanted, behind, NONE, from) ==
            PlainCompare(text.substr(from), other.substr(behind)));
    REQUIRE((own.vb_Match(&wanted) != 0) == PlainMatch(text, other));
    REQUIRE((own.vb_Match(&last) != 0) == PlainMatch(text, third));
    REQUIRE((Match(own, last) != 0) == PlainMatch(text, third));

    auto changed = Width::Of(text);
    changed.vv_Translate(&wanted, &last);
    REQUIRE(Width::From(changed) == PlainTranslate(text, other, third));
    auto stripped = Width::Of(text);
    stripped.vv_Strip(&wanted);
    REQUIRE(Width::From(stripped) == PlainStrip(text, other));
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    Input input(data, size);
    const unsigned switches = input.Byte();
    if (switches & 1)
        Run<Wide>(input, (switches & 2) != 0);
    else
        Run<Narrow>(input, (switches & 2) != 0);
    REQUIRE(TakeCode() == 0);
    return 0;
}

// fuzz/targets/string_work.cpp: operations on strings of both widths that share blocks, each beside
// a plain text.
//
// Input: a byte for the width, then operations: a byte for the operation, one for the two strings,
// one for a place and one for a count, a text.
#include "Support/Library.h"
#include "Support/Widths.h"

#include <algorithm>

namespace
{
constexpr unsigned STRINGS = 3;

template <class Width>
class Player
{
public:
    using Text = typename Width::Text;

    void Step(Input& input)
    {
        const unsigned operation = input.Below(12);
        const unsigned who = input.Byte();
        mine = who % STRINGS;
        theirs = who / STRINGS % STRINGS;
        // Places outside are the caller's fault.
        at = input.Byte() % (static_cast<unsigned>(texts[mine].size()) + 1);
        count = input.Byte() % (static_cast<unsigned>(texts[mine].size()) - at + 1);
        if (operation < 4)
            Given(operation, Width::Take(input, 40));
        else if (operation < 8)
            FromOther(operation);
        else
            Alone(operation);
        Compare();
    }

private:
    typename Width::String& String() { return strings[mine]; }
    Text& Own() { return texts[mine]; }
    static unsigned Length(const Text& text) { return static_cast<unsigned>(text.size()); }

    void Given(unsigned operation, const Text& given)
    {
        const auto* const units = Width::Get(given);
        if (operation == 0) {
            const auto made = Width::Of(given);
            String().v_Set(&made);
            Own() = given;
        } else if (operation == 1) {
            String().v_Append(units, Length(given));
            Own() += given;
        } else if (operation == 2) {
            String().v_Insert(units, Length(given), at);
            Own().insert(at, given);
        } else {
            String().v_Replace(units, Length(given), at);
            Own() = Own().substr(0, at) + given;
        }
    }

    // Of the other string, which may be this one.
    void FromOther(unsigned operation)
    {
        const Text other = texts[theirs];
        const auto* const string = &strings[theirs];
        if (operation == 4 || Own().size() + other.size() > 2000) {
            String().v_Set(string);
            Own() = other;
        } else if (operation == 5) {
            String().v_Append(string);
            Own() += other;
        } else if (operation == 6) {
            String().v_Insert(string, 0xFFFFFFFF, at);
            Own().insert(at, other);
        } else {
            String().v_Replace(string, 0, 0xFFFFFFFF, at);
            Own() = Own().substr(0, at) + other;
        }
    }

    void Alone(unsigned operation)
    {
        if (operation == 8) {
            String().vv_Remove(count, at);
            Own().erase(at, count);
        } else if (operation == 9) {
            String().vv_SetLength(at);
            Own().resize(at);
        } else if (operation == 10) {
            String().vv_SetMinSize(at * 3, 1);
        } else if (at < Own().size()) {
            String().v_SetAt('x', at);
            Own()[at] = 'x';
        }
    }

    void Compare() const
    {
        for (unsigned n = 0; n < STRINGS; ++n) {
            REQUIRE(strings[n].vn_GetLength() == texts[n].size());
            REQUIRE(Width::From(strings[n]) == texts[n]);
        }
    }

    typename Width::String strings[STRINGS];
    Text texts[STRINGS];
    unsigned mine = 0, theirs = 0, at = 0, count = 0;
};

template <class Width>
void Play(Input& input)
{
    Player<Width> player;
    for (unsigned step = 0; step < 200 && !input.IsEmpty(); ++step)
        player.Step(input);
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    Input input(data, size);
    if (input.Flag())
        Play<Wide>(input);
    else
        Play<Narrow>(input);
    REQUIRE(TakeCode() == 0);
    return 0;
}

// fuzz/targets/list_build.cpp: the same keys are added to a list, to a builder and to the plain
// model: the same answers and the same bytes, and the checker calls them sound.
//
// Input: a byte for the form, then keys one behind the other: a byte for the length and how much of
// the last key it begins with, the elements.
#include <Ostra/CompList/CompListBuilder.h>

#include <Models/CompListModel.h>

#include "ListCheck.h"
#include "Support/Input.h"
#include "Support/Library.h"

namespace
{
struct Form
{
    unsigned element, handle;
    bool empty, longOffsets;
};

Form FormOf(unsigned byte)
{
    constexpr unsigned SIZES[] = {1, 2, 4, 1};
    constexpr unsigned HANDLES[] = {0, 1, 2, 4};
    return {SIZES[byte & 3], HANDLES[byte >> 2 & 3], (byte & 0x10) != 0, (byte & 0x20) != 0};
}

bool IsReserved(unsigned element)
{
    return element == 0 || element == 10 || element == 13 || element == 25 || element == 26;
}

// The next key without its end: a beginning of the last one and some more.
std::string NextKey(Input& input, const std::string& last, unsigned element)
{
    const unsigned lengths = input.Byte();
    std::string key = last.substr(0, (lengths >> 4) * element);
    for (unsigned count = lengths & 15; count > 0; --count) {
        unsigned value = input.Byte();
        if (element > 1 && value >= 0x80)
            value |= input.Byte() << 8;
        if (IsReserved(value))
            value = 'e';
        // A unit of 0 would end a key of four-byte elements in part, which a list stores so.
        if (element == 4)
            value |= value << 16;
        for (unsigned n = 0; n < element; ++n)
            key += static_cast<char>(value >> 8 * n);
    }
    return key;
}

std::string Built(const CT_CompListBuilder& builder)
{
    CT_Buffer buffer;
    builder.v_Build(&buffer);
    return BytesOf(buffer);
}

void RequireSame(const CT_CompList& list, const CT_CompListBuilder& builder,
                 const CompListModel& model)
{
    REQUIRE(BytesOf(*list.pcco_GetBuffer()) == model.bytes);
    REQUIRE(Built(builder) == model.bytes);
    REQUIRE(CheckList(model.bytes).sound);
}

// By weight the bytes are others, but sound, as many, and short offsets may be too short for them.
void RequireSameByWeight(CT_CompListBuilder& builder, const CompListModel& model)
{
    builder.v_SetOrder(CT_CompListBuilder::bo_ByWeight);
    const std::string bytes = Built(builder);
    if (bytes.empty() && TakeCode() == 60021)
        return;
    REQUIRE(bytes.size() == model.bytes.size());
    REQUIRE(CheckList(bytes).sound);
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    Input input(data, size);
    const Form form = FormOf(input.Byte());
    const auto element = static_cast<CT_CompList::et_ElementSize>(form.element);
    CT_CompList list(element, form.handle, form.empty, form.longOffsets, 128, 1252);
    CT_CompListBuilder builder(element, form.handle, form.empty, form.longOffsets, 128, 1252);
    CompListModel model(form.element, form.handle, form.empty, form.longOffsets, 1252);
    std::string last;
    // The model takes a time that grows with the square of the keys.
    for (unsigned keys = 0; !input.IsEmpty() && keys < 200; ++keys) {
        const unsigned start = static_cast<unsigned>(input.Count());
        last = NextKey(input, last, form.element);
        const std::string key = last + std::string(form.element, '\0');
        const int added = model.Add(key, start) ? 1 : 0;
        REQUIRE(list.b_Add(key.data(), start) == added);
        REQUIRE(builder.b_Add(key.data(), start) == added);
        unsigned matched = 0, modelled = 0;
        REQUIRE(list.n_Search(key.data(), &matched) == model.Search(key, &modelled));
        REQUIRE(matched == modelled);
        // From here on both go on from a block.
        if (start % 16 == 0) {
            RequireSame(list, builder, model);
            const CT_Buffer block(model.bytes.data(), static_cast<unsigned>(model.bytes.size()),
                                  128);
            list.v_Set(&block);
            builder.v_Set(&block);
        }
    }
    RequireSame(list, builder, model);
    RequireSameByWeight(builder, model);
    REQUIRE(TakeCode() == 0);
    return 0;
}

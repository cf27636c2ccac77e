// examples/recode/Encoder.cpp
#include "Encoder.h"

#include <Ostra/String/CString.h>
#include <System/String/StandardUTF8.h>
#include <System/String/StringConvert.h>
#include <System/String/UTF.h>

#include <algorithm>

namespace recode
{
namespace
{
const unsigned short* Units(std::u16string_view units)
{
    return reinterpret_cast<const unsigned short*>(units.data());
}

class Utf8Encoder : public Encoder
{
public:
    Loss Encode(std::u16string_view units, std::string* bytes) override
    {
        CT_CString text;
        CT_StandardUTF8::sb_FromWide(&text, Units(units), static_cast<unsigned>(units.size()));
        bytes->append(text.qccz_Get(), text.vn_GetLength());
        return {};
    }
};

class Utf16Encoder : public Encoder
{
public:
    explicit Utf16Encoder(bool highByteFirst) : swap(highByteFirst) {}

    Loss Encode(std::u16string_view units, std::string* bytes) override
    {
        for (const char16_t unit : units) {
            const char low = static_cast<char>(unit & 0xFF);
            const char high = static_cast<char>(unit >> 8);
            bytes->push_back(swap ? high : low);
            bytes->push_back(swap ? low : high);
        }
        return {};
    }

private:
    bool swap;
};

// The library's coder takes a zero for the end of a text, so the pieces between zeros go there.
class Utf7Encoder : public Encoder
{
public:
    Utf7Encoder() { CT_UTF::sv_WideToUTF7Init(); }

    Loss Encode(std::u16string_view units, std::string* bytes) override
    {
        for (size_t at = 0; at < units.size();) {
            const size_t end = std::min(units.find(u'\0', at), units.size());
            Append(units.substr(at, end - at), bytes);
            if (end < units.size()) {
                End(bytes);
                bytes->append("+AAA-");
                CT_UTF::sv_WideToUTF7Init();
            }
            at = end + 1;
        }
        return {};
    }
    void End(std::string* bytes) override
    {
        char closing[8];
        bytes->append(closing, static_cast<size_t>(CT_UTF::si_WideToUTF7Exit(closing)));
    }

private:
    static void Append(std::u16string_view units, std::string* bytes)
    {
        const size_t before = bytes->size();
        bytes->resize(before + units.size() * 3 + 3);
        const int count = CT_UTF::si_WideToUTF7(bytes->data() + before, Units(units),
                                                static_cast<unsigned>(units.size()));
        bytes->resize(before + static_cast<size_t>(count));
    }
};

class PageEncoder : public Encoder
{
public:
    explicit PageEncoder(unsigned number) : page(number) {}

    Loss Encode(std::u16string_view units, std::string* bytes) override
    {
        Loss loss;
        const size_t before = bytes->size();
        if (Holds(units, bytes))
            return loss;
        bytes->resize(before);
        for (size_t at = 0, next; at < units.size(); at = next) {
            const bool pair = (units[at] & 0xFC00) == 0xD800 && at + 1 < units.size();
            next = at + (pair ? 2 : 1);
            const bool none = loss.Count() == 0;
            Append(units.substr(at, 1), pair, bytes, &loss);
            if (none && loss.Count())
                loss.first = at;
        }
        return loss;
    }

private:
    // Appends the bytes; true if they are the text, which only the way back shows.
    bool Holds(std::u16string_view units, std::string* bytes) const
    {
        int used = 0;
        const std::string made = Convert(units, &used);
        bytes->append(made);
        return !used && IsSame(made, units);
    }
    // One character, a pair by its first half.
    void Append(std::u16string_view unit, bool pair, std::string* bytes, Loss* loss) const
    {
        int used = 0;
        const std::string made = Convert(unit, &used);
        bytes->append(made);
        if (used || pair)
            ++loss->replaced;
        else if (!IsSame(made, unit))
            ++loss->similar;
    }
    std::string Convert(std::u16string_view units, int* used) const
    {
        std::string bytes(units.size() * 2 + 1, '\0');
        const int count = CT_StringConvert::si_WideToMulti(
            bytes.data(), Units(units), static_cast<unsigned>(units.size()), page, nullptr, used);
        bytes.resize(static_cast<size_t>(count));
        return bytes;
    }
    // A zero alone would come back as a question mark, so each text comes back with a letter more.
    bool IsSame(const std::string& bytes, std::u16string_view units) const
    {
        const std::string more = bytes + LETTER;
        std::u16string back(more.size() + 1, u'\0');
        const int count =
            CT_StringConvert::si_MultiToWide(reinterpret_cast<unsigned short*>(back.data()),
                                             more.data(), static_cast<unsigned>(more.size()), page);
        return count > 0 &&
               std::u16string_view(back).substr(0, static_cast<size_t>(count) - 1) == units;
    }

    static constexpr char LETTER = 'a';

    unsigned page;
};
} // namespace

std::unique_ptr<Encoder> Encoder::Make(const Encoding& encoding)
{
    switch (encoding.kind) {
    case Encoding::UTF8:
        return std::make_unique<Utf8Encoder>();
    case Encoding::UTF16:
    case Encoding::UTF16_BE:
        return std::make_unique<Utf16Encoder>(encoding.kind == Encoding::UTF16_BE);
    case Encoding::UTF7:
        return std::make_unique<Utf7Encoder>();
    default:
        return std::make_unique<PageEncoder>(encoding.page);
    }
}
} // namespace recode

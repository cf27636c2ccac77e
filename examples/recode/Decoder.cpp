// examples/recode/Decoder.cpp
#include "Decoder.h"

#include "Utf7Decoder.h"

#include <Ostra/Frame/ErrorManager.h>
#include <Ostra/String/UString.h>
#include <System/String/StandardUTF8.h>

#include <windows.h>

#include <algorithm>
#include <cstring>

namespace recode
{
namespace
{
constexpr unsigned NONE = 0xFFFFFFFF;

const unsigned short* Units(std::u16string_view units)
{
    return reinterpret_cast<const unsigned short*>(units.data());
}

// ---- UTF-8 ---------------------------------------------------------------------------------------

class Utf8Decoder : public Decoder
{
public:
    Step Decode(std::string_view bytes, bool last, std::u16string* units) override
    {
        const unsigned wrong =
            CT_StandardUTF8::sn_FindIllFormed(bytes.data(), static_cast<unsigned>(bytes.size()));
        const size_t good = wrong == NONE ? bytes.size() : wrong;
        CT_UString text;
        CT_StandardUTF8::sb_ToWide(&text, bytes.data(), static_cast<unsigned>(good));
        units->append(reinterpret_cast<const char16_t*>(text.qcuz_Get()), text.vn_GetLength());
        if (wrong == NONE)
            return {good};
        const std::string_view rest = bytes.substr(good);
        const size_t begun = Begun(rest);
        if (begun == rest.size() && !last)
            return {good};
        return {good, true, std::max<size_t>(begun, 1)};
    }

private:
    // How many bytes are the beginning of a character whose end is missing.
    static size_t Begun(std::string_view bytes)
    {
        for (size_t count = std::min<size_t>(bytes.size(), 3); count; --count) {
            CT_StandardUTF8::st_ToWide state;
            CT_UString none;
            if (CT_StandardUTF8::sb_PieceToWide(&none, &state, bytes.data(),
                                                static_cast<unsigned>(count)) &&
                state.n_Open == count)
                return count;
            CT_ErrorManager::spco_Get()->v_ClearError();
        }
        return 0;
    }
};

// ---- UTF-16 --------------------------------------------------------------------------------------

class Utf16Decoder : public Decoder
{
public:
    explicit Utf16Decoder(bool highByteFirst) : swap(highByteFirst) {}

    Step Decode(std::string_view bytes, bool last, std::u16string* units) override
    {
        std::u16string text(bytes.size() / 2, u'\0');
        std::memcpy(text.data(), bytes.data(), text.size() * 2);
        if (swap)
            std::transform(text.begin(), text.end(), text.begin(), [](char16_t unit) {
                return static_cast<char16_t>(unit << 8 | unit >> 8);
            });
        const unsigned wrong =
            CT_StandardUTF8::sn_FindIllFormed(Units(text), static_cast<unsigned>(text.size()));
        const size_t good = wrong == NONE ? text.size() : wrong;
        units->append(text, 0, good);
        const size_t used = good * 2;
        // The half of a pair, or of a unit, may be all that has come.
        const bool open = wrong == NONE
                              ? used < bytes.size()
                              : good + 1 == text.size() && (text[good] & 0xFC00) == 0xD800;
        if (open && !last)
            return {used};
        if (wrong == NONE && !open)
            return {used};
        return {used, true, std::min<size_t>(2, bytes.size() - used)};
    }

private:
    bool swap;
};

// ---- Code pages ----------------------------------------------------------------------------------

class PageDecoder : public Decoder
{
public:
    explicit PageDecoder(unsigned number) : page(number)
    {
        for (unsigned byte = 0; byte < 256; ++byte)
            lead[byte] = IsDBCSLeadByteEx(page, static_cast<BYTE>(byte)) != 0;
    }

    Step Decode(std::string_view bytes, bool last, std::u16string* units) override
    {
        const size_t whole = WholeCharacters(bytes);
        if (Append(bytes.substr(0, whole), units))
            return whole < bytes.size() && last ? Step{whole, true, 1} : Step{whole};
        for (size_t at = 0; at < whole;) {
            const size_t size = lead[Byte(bytes[at])] ? 2 : 1;
            if (!Append(bytes.substr(at, size), units))
                return {at, true, SizeOfBad(bytes.substr(at, size))};
            at += size;
        }
        return {whole};
    }

private:
    static unsigned char Byte(char c) { return static_cast<unsigned char>(c); }

    size_t WholeCharacters(std::string_view bytes) const
    {
        size_t at = 0;
        while (at < bytes.size()) {
            const size_t next = at + (lead[Byte(bytes[at])] ? 2 : 1);
            if (next > bytes.size())
                break;
            at = next;
        }
        return at;
    }
    // What could be no second byte of any pair is a character of its own.
    static size_t SizeOfBad(std::string_view character)
    {
        return character.size() == 2 && Byte(character[1]) >= 0x30 ? 2 : 1;
    }
    bool Append(std::string_view bytes, std::u16string* units) const
    {
        if (bytes.empty())
            return true;
        const size_t before = units->size();
        units->resize(before + bytes.size());
        const int count = MultiByteToWideChar(
            page, MB_ERR_INVALID_CHARS, bytes.data(), static_cast<int>(bytes.size()),
            reinterpret_cast<LPWSTR>(units->data() + before), static_cast<int>(bytes.size()));
        units->resize(before + static_cast<size_t>(count));
        return count != 0;
    }

    unsigned page;
    bool lead[256];
};
} // namespace

std::unique_ptr<Decoder> Decoder::Make(const Encoding& encoding)
{
    switch (encoding.kind) {
    case Encoding::UTF8:
        return std::make_unique<Utf8Decoder>();
    case Encoding::UTF16:
    case Encoding::UTF16_BE:
        return std::make_unique<Utf16Decoder>(encoding.kind == Encoding::UTF16_BE);
    case Encoding::UTF7:
        return std::make_unique<Utf7Decoder>();
    default:
        return std::make_unique<PageDecoder>(encoding.page);
    }
}
} // namespace recode

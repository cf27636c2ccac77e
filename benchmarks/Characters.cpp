// benchmarks/Characters.cpp: properties and case of characters, one exported call each, and the
// upper-casing of a text.
//
// The library knows Unicode 2.0, its peers a later release: some characters have another category
// since, blocks stand where there were gaps, and quotation marks were told apart into initial and
// final ones, which count as open and close here. Its case pairs are one to one and come back to
// themselves; the peers' functions for one character also know the one-way pairs, and those for a
// text the full mappings, as of sharp s to SS. So a small share of the answers may differ.
//
// Upper-casing: the text is copied and mapped into memory prepared before, but by Qt, whose
// function returns a new string.
#include <Ostra/String/UString.h>
#include <Ostra/Unicode/CharMappings.h>
#include <Ostra/Unicode/CharProperties.h>

#include <algorithm>
#include <bit>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#if HAVE_ICU
#include <unicode/uchar.h>
#include <unicode/ustring.h>
#endif
#if HAVE_QT
#include <QString>
#endif
#if HAVE_GLIB
#include <glib.h>
#endif
#if HAVE_UNISTRING
#include <unicase.h>
#include <unictype.h>
#endif

#include "Support/Inputs.h"
#include "Support/Job.h"

namespace
{
struct Input
{
    std::string name;
    std::u16string text;
};

constexpr double TOLERANCE = 0.05;

// ---- One call a character ---------------------------------------------------------------------

// What a side says of a character, in terms that all sides share.
using Meaning = std::function<unsigned(char16_t)>;
using Answers = std::vector<unsigned>;

class CharacterMeasure
{
public:
    CharacterMeasure(const char* name, const Input& onInput)
        : input(onInput),
          measure(name, onInput.name, {Amount::ITEMS, onInput.text.size()}, TOLERANCE)
    {}

    template <class Call>
    void Side(const char* side, Call call, const Meaning& meaning)
    {
        const std::u16string& text = input.text;
        measure.Side(
            side,
            [&text, call] {
                std::uint64_t sum = 0;
#pragma GCC unroll 8 // the loop's own branch would be a good part of it
                for (const char16_t c : text)
                    sum += static_cast<std::uint64_t>(call(c));
                return sum;
            },
            [&] { return AnswersBy(meaning); });
    }

private:
    Answers AnswersBy(const Meaning& meaning) const
    {
        Answers answers;
        for (const char16_t c : input.text)
            answers.push_back(meaning(c));
        return answers;
    }

    const Input& input;
    Measure<Answers> measure;
};

// Numbers of categories as their two letters: place 2n of the names. The quotation marks become
// what they were in Unicode 2.0.
template <class Call>
Meaning Category(Call call, const char* names)
{
    return [=](char16_t c) {
        const std::string_view name(names + 2 * call(c), 2);
        const char second = name == "Pi" ? 's' : name == "Pf" ? 'e' : name[1];
        return static_cast<unsigned>(name[0] << 8 | second);
    };
}

// The block as its first character, whatever its number or name.
template <class Call>
Meaning Block(Call call)
{
    std::vector<char16_t> starts(0x10000);
    for (unsigned c = 1; c < 0x10000; ++c) {
        const auto character = static_cast<char16_t>(c);
        const bool goesOn = call(character) == call(static_cast<char16_t>(c - 1));
        starts[c] = goesOn ? starts[c - 1] : character;
    }
    return [starts](char16_t c) {
        return starts[c];
    };
}

template <class Call>
Meaning Truth(Call call)
{
    return [=](char16_t c) {
        return call(c) ? 1u : 0u;
    };
}

template <class Call>
Meaning Number(Call call)
{
    return [=](char16_t c) {
        return static_cast<unsigned>(call(c));
    };
}

void RegisterCategory(const Input& input)
{
    CharacterMeasure measure("category", input);
    const auto ostra = [](char16_t c) {
        return CT_CharProperties::seo_GetUnicodeProperty(c);
    };
    measure.Side("ostra", ostra,
                 Category(ostra, "MnMcMeNdNlNoZsZlZpCcCfCsCoCnLuLlLtLmLoPcPdPsPePoSmScSkSoCn"));
#if HAVE_ICU
    const auto icu = [](char16_t c) {
        return u_charType(c);
    };
    measure.Side("icu", icu,
                 Category(icu, "CnLuLlLtLmLoMnMeMcNdNlNoZsZlZpCcCfCoCsPdPsPePcPoSmScSkSoPiPf"));
#endif
#if HAVE_QT
    const auto qt = [](char16_t c) {
        return QChar(c).category();
    };
    measure.Side("qt", qt,
                 Category(qt, "MnMcMeNdNlNoZsZlZpCcCfCsCoCnLuLlLtLmLoPcPdPsPePiPfPoSmScSkSo"));
#endif
#if HAVE_GLIB
    const auto glib = [](char16_t c) {
        return g_unichar_type(c);
    };
    measure.Side("glib", glib,
                 Category(glib, "CcCfCnCoCsLlLmLoLtLuMcMeMnNdNlNoPcPdPePfPiPoPsScSkSmSoZlZpZs"));
#endif
#if HAVE_UNISTRING
    const auto unistring = [](char16_t c) {
        return uc_general_category(c).bitmask;
    };
    const auto bit = [=](char16_t c) {
        return std::countr_zero(unistring(c));
    };
    measure.Side("unistring", unistring,
                 Category(bit, "LuLlLtLmLoMnMcMeNdNlNoPcPdPsPePiPfPoSmScSkSoZsZlZpCcCfCsCoCn"));
#endif
}

void RegisterAlpha(const Input& input)
{
    CharacterMeasure measure("alpha", input);
    const auto ostra = [](char16_t c) {
        return CT_CharProperties::sb_IsAlpha(c);
    };
    measure.Side("ostra", ostra, Truth(ostra));
#if HAVE_ICU
    const auto icu = [](char16_t c) {
        return u_isalpha(c);
    };
    measure.Side("icu", icu, Truth(icu));
#endif
#if HAVE_QT
    const auto qt = [](char16_t c) {
        return QChar(c).isLetter();
    };
    measure.Side("qt", qt, Truth(qt));
#endif
#if HAVE_GLIB
    const auto glib = [](char16_t c) {
        return g_unichar_isalpha(c);
    };
    measure.Side("glib", glib, Truth(glib));
#endif
#if HAVE_UNISTRING
    const auto unistring = [](char16_t c) {
        return uc_is_general_category(c, UC_LETTER);
    };
    measure.Side("unistring", unistring, Truth(unistring));
#endif
}

void RegisterBlock(const Input& input)
{
    CharacterMeasure measure("block", input);
    const auto ostra = [](char16_t c) {
        return CT_CharProperties::seo_GetUnicodeBlock(c);
    };
    measure.Side("ostra", ostra, Block(ostra));
#if HAVE_ICU
    const auto icu = [](char16_t c) {
        return ublock_getCode(c);
    };
    measure.Side("icu", icu, Block(icu));
#endif
#if HAVE_UNISTRING
    const auto unistring = [](char16_t c) {
        return reinterpret_cast<std::uintptr_t>(uc_block(c));
    };
    measure.Side("unistring", unistring, Block(unistring));
#endif
}

void RegisterUpper(const Input& input)
{
    CharacterMeasure measure("upper", input);
    const auto ostra = [](char16_t c) {
        return CT_CharMappings::su_ToUpper(c);
    };
    measure.Side("ostra", ostra, Number(ostra));
#if HAVE_ICU
    const auto icu = [](char16_t c) {
        return u_toupper(c);
    };
    measure.Side("icu", icu, Number(icu));
#endif
#if HAVE_QT
    const auto qt = [](char16_t c) {
        return QChar(c).toUpper().unicode();
    };
    measure.Side("qt", qt, Number(qt));
#endif
#if HAVE_GLIB
    const auto glib = [](char16_t c) {
        return g_unichar_toupper(c);
    };
    measure.Side("glib", glib, Number(glib));
#endif
#if HAVE_UNISTRING
    const auto unistring = [](char16_t c) {
        return uc_toupper(c);
    };
    measure.Side("unistring", unistring, Number(unistring));
#endif
}

void RegisterLower(const Input& input)
{
    CharacterMeasure measure("lower", input);
    const auto ostra = [](char16_t c) {
        return CT_CharMappings::su_ToLower(c);
    };
    measure.Side("ostra", ostra, Number(ostra));
#if HAVE_ICU
    const auto icu = [](char16_t c) {
        return u_tolower(c);
    };
    measure.Side("icu", icu, Number(icu));
#endif
#if HAVE_QT
    const auto qt = [](char16_t c) {
        return QChar(c).toLower().unicode();
    };
    measure.Side("qt", qt, Number(qt));
#endif
#if HAVE_GLIB
    const auto glib = [](char16_t c) {
        return g_unichar_tolower(c);
    };
    measure.Side("glib", glib, Number(glib));
#endif
#if HAVE_UNISTRING
    const auto unistring = [](char16_t c) {
        return uc_tolower(c);
    };
    measure.Side("unistring", unistring, Number(unistring));
#endif
}

// ---- A text -----------------------------------------------------------------------------------

using Words = std::vector<std::u16string>;

Words WordsOf(const std::u16string& text)
{
    Words words;
    for (size_t n = 0; n < text.size();) {
        const size_t end = std::min(text.find_first_of(u" \n", n), text.size());
        if (end > n)
            words.push_back(text.substr(n, end - n));
        n = end + 1;
    }
    return words;
}

// Each way upper-cases the text that Set gave it, and Get returns what came out.
class OstraUpper
{
public:
    OstraUpper() = default;
    // A way is copied into what measures it; the string's own copy would take no hold on the block.
    OstraUpper(const OstraUpper& other) : source(other.source), string(&other.string) {}
    void Set(const std::u16string& text) { source = &text; }
    char16_t operator()()
    {
        string.v_Set(reinterpret_cast<const unsigned short*>(source->data()),
                     static_cast<unsigned>(source->size()));
        CT_CharMappings::sv_ToUpper(&string);
        return *reinterpret_cast<const char16_t*>(string.qcuz_Get());
    }
    std::u16string Get() const
    {
        return {reinterpret_cast<const char16_t*>(string.qcuz_Get()), string.vn_GetLength()};
    }

private:
    const std::u16string* source = nullptr;
    CT_UString string;
};

#if HAVE_ICU
class IcuUpper
{
public:
    void Set(const std::u16string& text)
    {
        source = &text;
        result.resize(text.size() * 3);
    }
    char16_t operator()()
    {
        UErrorCode error = U_ZERO_ERROR;
        length = u_strToUpper(result.data(), static_cast<int32_t>(result.size()), source->data(),
                              static_cast<int32_t>(source->size()), "", &error);
        return result[0];
    }
    std::u16string Get() const { return result.substr(0, static_cast<size_t>(length)); }

private:
    const std::u16string* source = nullptr;
    std::u16string result;
    int32_t length = 0;
};
#endif

#if HAVE_QT
class QtUpper
{
public:
    void Set(const std::u16string& text) { source = QString::fromStdU16String(text); }
    char16_t operator()()
    {
        result = source.toUpper();
        return result[0].unicode();
    }
    std::u16string Get() const { return result.toStdU16String(); }

private:
    QString source;
    QString result;
};
#endif

#if HAVE_UNISTRING
class UnistringUpper
{
public:
    void Set(const std::u16string& text)
    {
        source = &text;
        result.resize(text.size() * 3);
    }
    char16_t operator()()
    {
        length = result.size();
        u16_toupper(reinterpret_cast<const uint16_t*>(source->data()), source->size(), "", nullptr,
                    reinterpret_cast<uint16_t*>(result.data()), &length);
        return result[0];
    }
    std::u16string Get() const { return result.substr(0, length); }

private:
    const std::u16string* source = nullptr;
    std::u16string result;
    size_t length = 0;
};
#endif

// Compared word by word, so that a mapping to two units doesn't shift what follows.
template <class Way>
void AddWay(Measure<Words>& measure, const char* side, const std::u16string& text)
{
    Way way;
    way.Set(text);
    measure.Side(side, way, [&text] {
        Words words = WordsOf(text);
        for (std::u16string& word : words) {
            Way one;
            one.Set(word);
            one();
            word = one.Get();
        }
        return words;
    });
}

void RegisterText(const Input& input)
{
    Measure<Words> measure("upper_text", input.name, {Amount::ITEMS, input.text.size()}, TOLERANCE);
    AddWay<OstraUpper>(measure, "ostra", input.text);
#if HAVE_ICU
    AddWay<IcuUpper>(measure, "icu", input.text);
#endif
#if HAVE_QT
    AddWay<QtUpper>(measure, "qt", input.text);
#endif
#if HAVE_UNISTRING
    AddWay<UnistringUpper>(measure, "unistring", input.text);
#endif
}

// Every tenth line: the same mixture at a tenth of the size.
std::u16string Tenth(const std::string& name)
{
    const std::vector<std::u16string> lines = Inputs::UnitLines(name);
    std::u16string text;
    for (size_t n = 0; n < lines.size(); n += 10)
        text += lines[n] + u'\n';
    return text;
}
} // namespace

int main(int argc, char** argv)
{
    std::vector<Input> inputs;
    for (const char* name : {"faq.de", "faq.ru", "faq.ja", "mixed"})
        inputs.push_back({name, Inputs::Units(name)});
    const Input small{"mixed.tenth", Tenth("mixed")};
    for (const Input& input : inputs) {
        RegisterCategory(input);
        RegisterAlpha(input);
        RegisterBlock(input);
        RegisterUpper(input);
        RegisterLower(input);
        RegisterText(input);
    }
    RegisterText(small);
    return Job::Run(argc, argv, OSTRA_ABSENT_PEERS);
}

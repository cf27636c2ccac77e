// tests/Ostra/WordList/Widths.h: the bilingual lists of both widths under the same names.
#pragma once

#include <Ostra/String/CString.h>
#include <Ostra/String/UString.h>
#include <Ostra/WordList/BiCWordListIterator.h>
#include <Ostra/WordList/BiLingualCWordList.h>
#include <Ostra/WordList/BiLingualUWordList.h>
#include <Ostra/WordList/BiUWordListIterator.h>

#include <gtest/gtest.h>

#include <string>

struct EightBits
{
    typedef CT_BiLingualCWordList List;
    typedef CT_BiCWordListIterator Walk;
    typedef char Unit;
    typedef CT_CString String;

    template <class Word>
    static const char* FindSource(const List& list, Word word)
    {
        return list.qccz_FindSource(word);
    }
    template <class Word>
    static const char* FindTarget(const List& list, Word word)
    {
        return list.qccz_FindTarget(word);
    }
};

struct SixteenBits
{
    typedef CT_BiLingualUWordList List;
    typedef CT_BiUWordListIterator Walk;
    typedef unsigned short Unit;
    typedef CT_UString String;

    template <class Word>
    static const unsigned short* FindSource(const List& list, Word word)
    {
        return list.qcuz_FindSource(word);
    }
    template <class Word>
    static const unsigned short* FindTarget(const List& list, Word word)
    {
        return list.qcuz_FindTarget(word);
    }
};

typedef testing::Types<EightBits, SixteenBits> BothWidths;

// Texts of a width, from ASCII.
template <class Width>
struct TextsOf : testing::Test
{
    typedef typename Width::Unit Unit;
    typedef typename Width::List List;
    typedef std::basic_string<Unit> Units;
    static constexpr unsigned SIZE = sizeof(Unit);

    static Units Of(const std::string& text) { return Units(text.begin(), text.end()); }
    static std::string Ascii(const Unit* text)
    {
        std::string ascii;
        for (; text && *text; ++text)
            ascii += static_cast<char>(*text);
        return text ? ascii : "(null)";
    }

    static void Insert(List& list, const std::string& source, const std::string& target)
    {
        list.v_Insert(Of(source).c_str(), Of(target).c_str());
    }
    static std::string Source(const List& list, const std::string& word)
    {
        return Ascii(Width::FindSource(list, Of(word).c_str()));
    }
    static std::string Target(const List& list, const std::string& word)
    {
        return Ascii(Width::FindTarget(list, Of(word).c_str()));
    }

    // The texts of a buffer as bytes.
    static std::string Bytes(const CT_Buffer* buffer)
    {
        return buffer->n_GetUsedSize() ? std::string(static_cast<const char*>(buffer->qcv_Get()),
                                                     buffer->n_GetUsedSize())
                                       : std::string();
    }
    // Terminated texts as bytes.
    static std::string Bytes(std::initializer_list<const char*> texts)
    {
        std::string bytes;
        for (const char* text : texts)
            for (const Unit unit : Of(text) + Unit(0))
                for (unsigned n = 0; n < SIZE; ++n)
                    bytes += static_cast<char>(static_cast<unsigned>(unit) >> 8 * n);
        return bytes;
    }
};

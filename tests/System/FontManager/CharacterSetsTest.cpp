// tests/System/FontManager/CharacterSetsTest.cpp: code pages, suffixes and samples of the sets.
#include <Ostra/String/UString.h>

#include <set>

#include "System/FontManager/FontSupport.h"

namespace
{
struct Row
{
    unsigned charset, page;
    const char* suffix;
    const char16_t* sample;
    const char* bytes;
};

const char16_t DEFAULT[] = u"AaBbCcXxYyZz 1234567890";

// The texts as the codecs of another library read the bytes.
const Row rows[] = {
    {0, 1252, "", u"The quick brown fox", CT_FontManager::sacz_WestEuropean},
    {77, 10000, "", DEFAULT, nullptr},
    {128, 932, "", u"\u733F\u3082\u6728\u304B\u3089\u843D\u3061\u308B\u3002",
     CT_FontManager::sacz_Japanese},
    {129, 949, "", DEFAULT, nullptr},
    {130, 1361, "", DEFAULT, nullptr},
    {134, 936, "", u"\u5FAE\u8F6F\u5353\u8D8A AaBbCcYyZz", CT_FontManager::sacz_ChiSimplified},
    {136, 950, "", u"\u4E2D\u6587\u5B57\u578B\u7BC4\u4F8B AaBbCcYyZz",
     CT_FontManager::sacz_ChiTraditional},
    {161, 1253, "Greek",
     u"\u0391\u03B1\u0392\u03B2\u0393\u03B3\u03A7\u03C7\u03A8\u03C8\u03A9\u03C9 1234567890",
     CT_FontManager::sacz_Greek},
    {162, 1254, "Tur",
     u"\u00C3\u00E3\u00C7\u00E7\u00CB\u00EB\u011E\u011F\u00D6\u00F6\u00DC\u00FC 1234567890",
     CT_FontManager::sacz_Turkish},
    {177, 1255, "", DEFAULT, nullptr},
    {178, 1256, "", DEFAULT, nullptr},
    {186, 1257, "Baltic",
     u"\u0104\u0105\u010C\u010D\u0118\u0119\u0122\u0123\u0136\u0123\u017B\u017C 1234567890",
     CT_FontManager::sacz_Baltic},
    {204, 1251, "Cyr",
     u"\u0410\u0430\u0411\u0431\u0412\u0432\u042D\u044D\u042E\u044E\u042F\u044F 1234567890",
     CT_FontManager::sacz_Cyrillic},
    {222, 874, "", DEFAULT, nullptr},
    {238, 1250, "CE",
     u"\u0102\u0103\u010C\u010D\u00CB\u00EB\u0160\u0161\u0162\u0163\u017D\u017E 1234567890",
     CT_FontManager::sacz_CentralEuropean},
};

std::u16string Text(const CT_UString& text)
{
    return reinterpret_cast<const char16_t*>(text.qcuz_Get());
}

std::string Stripped(const char* name, unsigned charset)
{
    CT_CString text(name);
    CT_FontManager::sv_StripCharsetSpecifier(&text, charset);
    return text.qccz_Get();
}
} // namespace

TEST(CharacterSets, EachHasItsCodePageSuffixAndSample)
{
    for (const Row& row : rows) {
        SCOPED_TRACE(row.charset);
        EXPECT_EQ(CT_FontManager::sn_GetCodePage(row.charset), row.page);
        CT_CString suffix("before");
        EXPECT_EQ(CT_FontManager::sb_GetCharsetSpecifier(&suffix, row.charset), *row.suffix != 0);
        EXPECT_STREQ(suffix.qccz_Get(), *row.suffix ? row.suffix : "before");
        CT_UString sample;
        CT_FontManager::sv_GetFontSampleText(&sample, row.charset);
        EXPECT_EQ(Text(sample), row.sample);
        if (row.bytes) {
            CT_CString bytes(row.page);
            CT_FontManager::sv_GetFontSampleText(&bytes, row.charset);
            EXPECT_STREQ(bytes.qccz_Get(), row.bytes);
        }
    }
}

TEST(CharacterSets, OtherNumbersHaveNoPageNoSuffixAndTheDefaultSample)
{
    std::set<unsigned> known;
    for (const Row& row : rows)
        known.insert(row.charset);
    for (unsigned charset = 0; charset < 1000; ++charset) {
        if (known.contains(charset))
            continue;
        EXPECT_EQ(CT_FontManager::sn_GetCodePage(charset), 0u) << charset;
        CT_UString text(u"before");
        EXPECT_FALSE(CT_FontManager::sb_GetCharsetSpecifier(&text, charset));
        EXPECT_EQ(Text(text), u"before");
        CT_FontManager::sv_GetFontSampleText(&text, charset);
        EXPECT_EQ(Text(text), DEFAULT);
    }
    EXPECT_EQ(CT_FontManager::sn_GetCodePage(0x100), 0u);
}

TEST(CharacterSets, DefaultSampleKeepsTheCodePageOfTheString)
{
    CT_CString text(1251);
    CT_FontManager::sv_GetFontSampleText(&text, 77);
    EXPECT_STREQ(text.qccz_Get(), CT_FontManager::sacz_Default);
    text.vv_SetAt(static_cast<unsigned short>(0x0410), 0); // a letter of the string's own page
    EXPECT_EQ(text.vc_GetAt(0), '\xC0');
}

TEST(CharacterSets, SuffixGoesFromTheEndOfANameAlone)
{
    EXPECT_EQ(Stripped("Arial Cyr", 204), "Arial");
    EXPECT_EQ(Stripped("Arial Cyr", 0), "Arial Cyr");
    EXPECT_EQ(Stripped("Arial Cyr", 238), "Arial Cyr");
    EXPECT_EQ(Stripped("Arial Cyr", 77), "Arial Cyr");
    EXPECT_EQ(Stripped("Arial CYR", 204), "Arial CYR");
    EXPECT_EQ(Stripped("Cyr", 204), "Cyr");
    EXPECT_EQ(Stripped(" Cyr", 204), "");
    EXPECT_EQ(Stripped("Arial Cyrillic", 204), "Arial Cyrillic");
    EXPECT_EQ(Stripped("Arial Greek", 161), "Arial");
    EXPECT_EQ(Stripped("Arial Tur", 162), "Arial");
    EXPECT_EQ(Stripped("Arial Baltic", 186), "Arial");
    EXPECT_EQ(Stripped("Arial CE", 238), "Arial");
    EXPECT_EQ(Stripped("", 204), "");
}

TEST(CharacterSets, SuffixThatStandsTwiceStays)
{
    EXPECT_EQ(Stripped("A Cyr Cyr", 204), "A Cyr Cyr");
}

TEST(CharacterSets, SuffixOfAWideNameGoesToo)
{
    CT_UString name(u"\u0410 Cyr");
    CT_FontManager::sv_StripCharsetSpecifier(&name, 204);
    EXPECT_EQ(Text(name), u"\u0410");
}

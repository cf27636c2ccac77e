// tests/Examples/RecodeIconvTest.cpp: the recode program beside the converter of the C library.
#ifndef _WIN32
#include "RunRecode.h"

#include <gtest/gtest.h>

#include <iconv.h>

#include <cstdio>
#include <optional>
#include <string>

namespace
{
// The encodings by the names of both.
const struct
{
    const char* name;
    const char* iconv;
} ENCODINGS[] = {
    {"utf-16be", "UTF-16BE"}, {"utf-7", "UTF-7"},        {"437", "CP437"},
    {"737", "CP737"},         {"775", "CP775"},          {"850", "CP850"},
    {"852", "CP852"},         {"855", "CP855"},          {"857", "CP857"},
    {"860", "CP860"},         {"861", "CP861"},          {"862", "CP862"},
    {"863", "CP863"},         {"865", "CP865"},          {"866", "CP866"},
    {"869", "CP869"},         {"874", "CP874"},          {"932", "CP932"},
    {"936", "CP936"},         {"949", "CP949"},          {"950", "BIG5"},
    {"1250", "CP1250"},       {"1251", "CP1251"},        {"1252", "CP1252"},
    {"1253", "CP1253"},       {"1254", "CP1254"},        {"1255", "CP1255"},
    {"1256", "CP1256"},       {"1257", "CP1257"},        {"1361", "JOHAB"},
    {"10000", "MACINTOSH"},   {"10007", "MAC-CYRILLIC"}, {"20866", "KOI8-R"},
    {"21866", "KOI8-U"},      {"28591", "ISO-8859-1"},   {"28592", "ISO-8859-2"},
    {"28593", "ISO-8859-3"},  {"28594", "ISO-8859-4"},   {"28595", "ISO-8859-5"},
    {"28596", "ISO-8859-6"},  {"28597", "ISO-8859-7"},   {"28598", "ISO-8859-8"},
    {"28599", "ISO-8859-9"},  {"28605", "ISO-8859-15"},  {"20949", "EUC-KR"},
    {"37", "IBM037"},         {"500", "IBM500"},         {"1026", "IBM1026"},
};

// Nothing where the converter is missing or refuses the text.
std::optional<std::string> Iconv(const char* from, const char* to, const std::string& bytes)
{
    const iconv_t converter = iconv_open(to, from);
    if (converter == reinterpret_cast<iconv_t>(-1))
        return std::nullopt;
    std::string made(bytes.size() * 8 + 16, '\0');
    char* in = const_cast<char*>(bytes.data());
    char* out = made.data();
    size_t in_left = bytes.size();
    size_t out_left = made.size();
    const bool good =
        iconv(converter, &in, &in_left, &out, &out_left) != static_cast<size_t>(-1) &&
        iconv(converter, nullptr, nullptr, &out, &out_left) != static_cast<size_t>(-1);
    iconv_close(converter);
    made.resize(made.size() - out_left);
    return good ? std::optional(made) : std::nullopt;
}
} // namespace

// Under an emulator the C library's tables may be missing.
class RecodeIconv : public testing::Test
{
protected:
    void SetUp() override
    {
        const iconv_t converter = iconv_open("CP1252", "UTF-8");
        if (converter == iconv_t(-1))
            GTEST_SKIP() << "the C library has no converters here";
        iconv_close(converter);
    }
};

TEST_F(RecodeIconv, BothMakeTheSameBytes)
{
    unsigned compared = 0;
    for (const Script& script : Scripts()) {
        for (const auto& encoding : ENCODINGS) {
            SCOPED_TRACE(testing::Message() << script.name << ", " << encoding.name);
            const auto theirs = Iconv("UTF-8", encoding.iconv, script.text);
            const Recoded ours =
                RunRecode({"--from", "utf-8", "--to", encoding.name, "-", "-"}, script.text);
            if (!theirs || ours.status)
                continue;
            const bool marked = std::string(encoding.name) == "utf-16be";
            // One text has several forms in UTF-7: each has to read the other's.
            if (std::string(encoding.name) == "utf-7")
                EXPECT_EQ(Iconv("UTF-7", "UTF-8", ours.output), script.text);
            else
                EXPECT_EQ(ours.output.substr(marked ? 2 : 0), *theirs);
            EXPECT_EQ(Recode(encoding.name, "utf-8", *theirs), script.text);
            ++compared;
        }
    }
    EXPECT_GT(compared, 80u);
    std::printf("recode beside iconv: %u texts\n", compared);
}

// What a page doesn't hold there, it doesn't hold here either, for the pages that are one thing
// everywhere.
TEST_F(RecodeIconv, BothRefuseTheSameTexts)
{
    for (const Script& script : Scripts()) {
        for (const char* page : {"1250", "1251", "1252", "1253", "1254", "1255", "1256", "1257"}) {
            SCOPED_TRACE(testing::Message() << script.name << ", " << page);
            const auto theirs = Iconv("UTF-8", (std::string("CP") + page).c_str(), script.text);
            const Recoded ours =
                RunRecode({"--from", "utf-8", "--to", page, "-", "-"}, script.text);
            EXPECT_EQ(ours.status == 0, theirs.has_value());
        }
    }
}
#endif

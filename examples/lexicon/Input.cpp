// examples/lexicon/Input.cpp
#include "Input.h"

#include <Common/Failure.h>
#include <Common/Utf8.h>

#include <algorithm>
#include <vector>

namespace lexicon
{
using namespace common;

namespace
{
constexpr char SOURCE[] = "lexicon/Input";

constexpr unsigned CHUNK = 0x40000;
constexpr unsigned LIMIT = 0x40000000;
constexpr unsigned ATTRIBUTE_NORMAL = 1;
constexpr unsigned FLAG_SEQUENTIAL = 16;
constexpr std::string_view BYTE_ORDER_MARK = "\xEF\xBB\xBF";
constexpr unsigned SIZE_OF_MARK = 3;
} // namespace

bool IsKey(std::string_view text, unsigned* reserved)
{
    constexpr std::string_view RESERVED("\0\x0A\x0D\x19\x1A", 5);
    const size_t found = text.find_first_of(RESERVED);
    if (found == std::string_view::npos)
        return true;
    *reserved = static_cast<unsigned char>(text[found]);
    return false;
}

Input::Input(const CT_String* name) : file(name, CHUNK) {}

bool Input::Read(std::istream* stream)
{
    if (stream)
        ReadStream(*stream);
    else
        ReadFile();
    if (content.b_IsEqual(BYTE_ORDER_MARK.data(), SIZE_OF_MARK, 0) && Size() >= SIZE_OF_MARK)
        offset = SIZE_OF_MARK;
    return !Failed(SOURCE);
}

void Input::ReadFile()
{
    file.vv_Open(CT_File::e_AccessRead, CT_File::e_OpenExisting, CT_File::e_ShareRead,
                 ATTRIBUTE_NORMAL, FLAG_SEQUENTIAL);
    if (!Failing())
        ReadContent();
    if (!Failing())
        file.vv_Close();
}

void Input::ReadContent()
{
    // One block for all of it; a file that grows meanwhile is read to its end all the same.
    const unsigned size = file.vn_GetSize();
    if (!Failing())
        content.v_SetSize(std::min(size, LIMIT), 0);
    CT_Buffer chunk;
    while (!Failing() && file.n_Read(&chunk, CHUNK))
        Take(chunk);
}

void Input::ReadStream(std::istream& stream)
{
    std::vector<char> bytes(CHUNK);
    while (!Failing() && stream) {
        stream.read(bytes.data(), CHUNK);
        CT_Buffer chunk;
        chunk.v_Append(bytes.data(), static_cast<unsigned>(stream.gcount()));
        Take(chunk);
    }
    if (stream.bad())
        Fail(SOURCE, u"the standard input can't be read");
}

void Input::Take(const CT_Buffer& chunk)
{
    if (Size() > LIMIT - CHUNK)
        Fail(SOURCE, u"%s: the input is larger than 1 GiB", Name());
    else
        content.v_Append(&chunk, 0, chunk.n_GetUsedSize());
}

std::string_view Input::NextLine()
{
    ++line;
    const unsigned start = offset;
    const unsigned end = std::min(content.n_Find(static_cast<unsigned char>('\n'), start), Size());
    offset = std::min(end + 1, Size());
    std::string_view text(Text() + start, end - start);
    if (text.ends_with('\r'))
        text.remove_suffix(1);
    return text;
}

bool Input::Next(Pair* pair)
{
    return offset < Size() && Split(NextLine(), pair);
}

bool Input::Split(std::string_view text, Pair* pair)
{
    const size_t tab = text.find('\t');
    unsigned reserved = 0;
    if (!common::IsUtf8(text)) {
        Fail(SOURCE, u"%s:%u: the line is not well-formed UTF-8", Name(), line);
    } else if (tab == std::string_view::npos) {
        Fail(SOURCE, u"%s:%u: the line has no tab", Name(), line);
    } else {
        pair->source = text.substr(0, tab);
        pair->target = text.substr(tab + 1);
        if (pair->source.empty())
            Fail(SOURCE, u"%s:%u: the word in front of the tab is empty", Name(), line);
        else if (pair->target.empty())
            Fail(SOURCE, u"%s:%u: the word behind the tab is empty", Name(), line);
        else if (!IsKey(text, &reserved))
            Fail(SOURCE, u"%s:%u: the line holds U+%04X, which no key can hold", Name(), line,
                 reserved);
        else
            return true;
    }
    return false;
}
} // namespace lexicon

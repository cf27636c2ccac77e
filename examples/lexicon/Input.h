// examples/lexicon/Input.h: the text file that a lexicon is built from.
#pragma once

#include <Ostra/Buffer/Buffer.h>
#include <Ostra/File/WinFile.h>

#include <istream>
#include <string_view>

namespace lexicon
{
// True if the text is fit to be a key: the five elements that the compressed list keeps for itself
// are all ASCII. On false the element is told.
bool IsKey(std::string_view text, unsigned* reserved);

// One line of the input; the texts lie in the memory of the Input.
struct Pair
{
    std::string_view source;
    std::string_view target;
};

// Lines of UTF-8: source, tab, target. What stands behind the first tab is the target, further tabs
// and all. Lines may end as on Windows, the last one may lack its end, and a byte-order mark at the
// start is skipped.
class Input
{
public:
    explicit Input(const CT_String* name);

    // Reads the whole file, or what the stream gives; false with an error set.
    bool Read(std::istream* stream = nullptr);

    // The next pair; false at the end, and with an error set for a line that is none.
    bool Next(Pair* pair);

    // Bytes in all, and those of the lines handed out.
    unsigned Size() const { return content.n_GetUsedSize(); }
    unsigned Done() const { return offset; }
    unsigned Lines() const { return line; }

private:
    void ReadFile();
    void ReadContent();
    void ReadStream(std::istream& stream);
    void Take(const CT_Buffer& chunk);
    std::string_view NextLine();
    bool Split(std::string_view text, Pair* pair);
    const char* Text() const { return static_cast<const char*>(content.qcv_Get()); }
    const unsigned short* Name() const { return file.pcco_GetFullName()->qcuz_Get(); }

    CT_WinFile file;
    CT_Buffer content;
    unsigned offset = 0;
    unsigned line = 0;
};
} // namespace lexicon

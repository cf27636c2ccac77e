// examples/recode/Source.h: the text to convert, block by block.
#pragma once

#include "Encoding.h"

#include <Ostra/Input/FileInput.h>
#include <Ostra/String/UString.h>
#include <Common/Spool.h>

#include <istream>
#include <memory>
#include <string_view>

namespace recode
{
class Source
{
public:
    // Opens a file; a stream in place of it, and what is no plain file, is kept in a file for the
    // time, since it is read more than once. False with an error set.
    bool Open(const CT_UString& name, std::istream* stream);

    // The next bytes, until the next call; none at the end, or with an error set.
    std::string_view Next();
    // Goes back to the beginning; false with an error set.
    bool Rewind();
    void Close();

    // Finds out how the text lies in its bytes: by its mark; by what the system's statistics say of
    // the first ones; by whether all of it is UTF-8. What is left is taken for the ANSI code page.
    // False with an error set.
    bool Guess(Encoding* encoding);
    // Whether the text begins with these bytes.
    bool Begins(std::string_view bytes);

    unsigned Size() const { return input->vn_GetSize(); }
    unsigned Done() const { return input->vn_GetOffset(); }

private:
    bool Keep(std::istream& stream, CT_UString* name);
    bool IsUtf8();

    common::Spool spool;
    std::unique_ptr<CT_FileInput> input;
};
} // namespace recode

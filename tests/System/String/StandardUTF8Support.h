// tests/System/String/StandardUTF8Support.h: the coder of UTF-8 with strings for its texts.
#pragma once

#include <System/String/StandardUTF8.h>

#include "Models/StandardUTF8Model.h"
#include "Ostra/String/StringSupport.h"

namespace standard
{
using Standard = CT_StandardUTF8;
constexpr Standard::et_IllFormed REFUSE = Standard::e_Refuse;
constexpr Standard::et_IllFormed REPLACE = Standard::e_Replace;

inline std::u16string Widened(const std::string& bytes)
{
    CT_UString out;
    EXPECT_TRUE(Standard::sb_ToWide(&out, bytes.data(), unsigned(bytes.size()), REPLACE));
    return Text(out);
}

inline std::string Narrowed(const std::u16string& wide)
{
    CT_CString out;
    EXPECT_TRUE(
        Standard::sb_FromWide(&out, qcuz_Text(wide.data()), unsigned(wide.size()), REPLACE));
    return Text(out);
}
} // namespace standard

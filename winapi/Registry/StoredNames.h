// winapi/Registry/StoredNames.h: how names stand in the registry's database.
#pragma once

#include "Files/Names.h"

namespace winapi
{
// The name as UTF-8, in which a lone surrogate is coded like any other unit: any name has a form, and
// what is well-formed reads as itself in other programs.
std::string StoredName(WideView name);
// The name of which that is the form.
WideText NameOf(std::string_view stored);

// What names are compared and ordered by: each unit in lower case and coded alone, so that the order
// of the bytes is that of the units.
std::string FoldOf(WideView name);
} // namespace winapi

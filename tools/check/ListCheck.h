// tools/check/ListCheck.h: a reader of compressed lists that believes nothing.
//
// It takes bytes from anywhere and answers whether CT_CompList can work on them: a sound list can
// be searched, walked and added to without harm. An application that takes lists from strangers
// asks here first and hands the block over then.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

struct ListVerdict
{
    bool sound = false;
    std::uint64_t offset = 0; // of the first rule broken
    std::string rule;         // empty when sound
};

ListVerdict CheckList(const unsigned char* bytes, std::size_t length);
ListVerdict CheckList(const std::string& bytes);

// "sound", or "damaged at OFFSET: rule", as a line.
std::string DescribeListVerdict(const ListVerdict& verdict);

// tools/check/VersionCheck.h: a reader of version records that believes nothing.
//
// It takes bytes from anywhere and answers whether CT_ModuleVersion can read them: a sound record
// is read to its end, and nothing behind it is looked at. An application that takes programs and
// libraries from strangers asks here first.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

struct VersionVerdict
{
    bool sound = false;
    std::uint64_t offset = 0; // of the first rule broken, from the record's start
    std::string rule;         // empty when sound
};

VersionVerdict CheckVersion(const unsigned char* bytes, std::size_t length);
VersionVerdict CheckVersion(const std::string& bytes);

// The record within an executable file for 16, 32 or 64 bits: its first version resource. Empty
// where there is none, or where the file tells of places that it doesn't have.
std::string FindVersionRecord(const std::string& file);

// "sound", or "damaged at OFFSET: rule", as a line.
std::string DescribeVersionVerdict(const VersionVerdict& verdict);

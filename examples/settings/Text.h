// examples/settings/Text.h: texts, numbers and data as users write them, and failures.
#pragma once

#include <Ostra/String/UString.h>

#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>

namespace settings
{
// What ends a command: one line for the user, with the status 1.
struct Failure : std::runtime_error
{
    using std::runtime_error::runtime_error;
};

// Ends the command if the library has reported an error, which is cleared. The text tells what could
// not be done; two codes are told in words.
void Check(const std::string& context);

std::u16string ToUtf16(const std::string& text);
// What is no text becomes U+FFFD.
std::string ToUtf8(const std::u16string& text);
CT_UString ToWide(const std::u16string& text);
CT_UString ToWide(const std::string& text);

// Bytes in hexadecimal digits, in pairs, with blanks between them or without.
std::string ToHex(const std::string& bytes);
std::optional<std::string> FromHex(const std::string& digits);

// Decimal, or hexadecimal behind 0x; up to 32 bits.
std::optional<std::uint32_t> ToNumber(const std::string& digits);

// Text on one line: controls as \n, \t or \xHH, and \ twice.
std::string OneLine(const std::string& text);
// The same for messages, whose paths and keys keep each \ as it is.
std::string WithoutControls(const std::string& text);

// A whole file. Writing puts it beside its place first: an old one stays until the new one is whole
// and on the disk.
std::string ReadFile(const std::string& name);
void WriteFile(const std::string& name, const std::string& bytes);
} // namespace settings

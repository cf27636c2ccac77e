// examples/settings/Text.cpp
#include "Text.h"

#include <Ostra/File/WinFile.h>
#include <Ostra/Frame/ErrorManager.h>
#include <Common/Failure.h>
#include <Common/Output.h>
#include <Common/Utf8.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <system_error>

namespace settings
{
namespace fs = std::filesystem;

namespace
{
constexpr char SOURCE[] = "settings/Text";
constexpr unsigned FILE_BUFFER = 4096;
constexpr unsigned NOT_FOUND = 2;
constexpr unsigned DENIED = 5;

// The name as UTF-8, on every system.
fs::path PathOf(const std::string& name)
{
    return fs::path(std::u8string(name.begin(), name.end()));
}

int DigitOf(char c)
{
    if (c >= '0' && c <= '9')
        return c - '0';
    c = static_cast<char>(c | 0x20);
    return c >= 'a' && c <= 'f' ? c - 'a' + 10 : -1;
}

std::string Reason()
{
    return errno ? std::generic_category().message(errno) : "unknown reason";
}

void WriteStream(const std::string& name, const std::string& bytes)
{
    errno = 0;
    std::ofstream file(PathOf(name), std::ios::binary);
    file << bytes;
    file.close();
    if (!file)
        throw Failure(name + ": cannot be written: " + Reason());
}

// False with an error of the library set.
bool WritePlain(const CT_UString& name, const std::string& bytes)
{
    CT_WinFile file(&name, FILE_BUFFER);
    file.vv_Open(CT_File::e_AccessWrite, CT_File::e_OpenCreate, CT_File::e_ShareNone,
                 CT_File::e_AttributeNormal, 0);
    const unsigned size = static_cast<unsigned>(bytes.size());
    if (!common::Failing() && file.vn_Write(bytes.data(), size) != size)
        common::Fail(SOURCE, u"%s: there is no room for the text", name.qcuz_Get());
    if (!common::Failing())
        file.vv_Close();
    return !common::Failed(SOURCE);
}
} // namespace

void Check(const std::string& context)
{
    CT_ErrorManager* const errors = CT_ErrorManager::spco_Get();
    if (!errors->b_IsSetError())
        return;
    const unsigned code = errors->n_GetErrorCode();
    const std::string message = common::ToUtf8(errors->qcuz_GetErrorMessage());
    errors->v_ClearError();
    if (code == NOT_FOUND)
        throw Failure(context + ": there is none");
    if (code == DENIED)
        throw Failure(context + ": not allowed");
    throw Failure(context + ": " + message);
}

std::u16string ToUtf16(const std::string& text)
{
    const CT_UString wide = ToWide(text);
    return {reinterpret_cast<const char16_t*>(wide.qcuz_Get()), wide.vn_GetLength()};
}

std::string ToUtf8(const std::u16string& text)
{
    return common::ToUtf8(qcuz_Text(text.c_str()), static_cast<unsigned>(text.size()));
}

CT_UString ToWide(const std::u16string& text)
{
    return CT_UString(text.c_str(), static_cast<unsigned>(text.size()));
}

CT_UString ToWide(const std::string& text)
{
    CT_UString wide;
    common::ToWide(text, &wide);
    Check("a text");
    return CT_UString(&wide);
}

std::string ToHex(const std::string& bytes)
{
    std::string text;
    for (const char byte : bytes) {
        char digits[4];
        std::snprintf(digits, sizeof digits, "%02x", static_cast<unsigned>(byte) & 0xFF);
        text += (text.empty() ? "" : " ") + std::string(digits);
    }
    return text;
}

std::optional<std::string> FromHex(const std::string& digits)
{
    std::string bytes;
    int high = -1;
    for (const char c : digits) {
        if (c == ' ' && high < 0)
            continue;
        const int digit = DigitOf(c);
        if (digit < 0)
            return std::nullopt;
        if (high < 0) {
            high = digit;
            continue;
        }
        bytes += static_cast<char>(high << 4 | digit);
        high = -1;
    }
    return high < 0 ? std::optional(bytes) : std::nullopt;
}

std::optional<std::uint32_t> ToNumber(const std::string& digits)
{
    const bool hexadecimal = digits.starts_with("0x") || digits.starts_with("0X");
    const unsigned base = hexadecimal ? 16 : 10;
    std::uint64_t number = 0;
    const std::size_t start = hexadecimal ? 2 : 0;
    for (std::size_t i = start; i < digits.size(); ++i) {
        const int digit = DigitOf(digits[i]);
        if (digit < 0 || static_cast<unsigned>(digit) >= base)
            return std::nullopt;
        number = number * base + static_cast<unsigned>(digit);
        if (number > 0xFFFFFFFF)
            return std::nullopt;
    }
    return digits.size() > start ? std::optional(static_cast<std::uint32_t>(number)) : std::nullopt;
}

std::string OneLine(const std::string& text)
{
    std::string doubled;
    for (const char c : text)
        doubled.append(c == '\\' ? 2 : 1, c);
    return WithoutControls(doubled);
}

std::string WithoutControls(const std::string& text)
{
    std::string line;
    for (const char c : text) {
        const unsigned byte = static_cast<unsigned char>(c);
        if (c == '\n')
            line += "\\n";
        else if (c == '\t')
            line += "\\t";
        else if (byte < 0x20 || byte == 0x7F) {
            char code[8];
            std::snprintf(code, sizeof code, "\\x%02x", byte);
            line += code;
        } else
            line += c;
    }
    return line;
}

std::string ReadFile(const std::string& name)
{
    errno = 0;
    std::error_code ignored;
    if (fs::is_directory(PathOf(name), ignored))
        throw Failure(name + ": a directory");
    std::ifstream file(PathOf(name), std::ios::binary);
    if (!file.is_open())
        throw Failure(name + ": cannot be read: " + Reason());
    std::string bytes;
    for (char piece[0x4000]; file.read(piece, sizeof piece), file.gcount() > 0;)
        bytes.append(piece, static_cast<std::size_t>(file.gcount()));
    if (file.bad())
        throw Failure(name + ": cannot be read: " + Reason());
    return bytes;
}

void WriteFile(const std::string& name, const std::string& bytes)
{
    const std::string context = name + ": cannot be written";
    if (!common::IsUtf8(name))
        throw Failure(context + ": the name is no UTF-8");
    const CT_UString place = ToWide(name);
    if (common::Output::IsStream(place))
        return WriteStream(name, bytes);
    common::Output output;
    if (output.Take(place) && output.Start() && WritePlain(output.Fresh(), bytes))
        output.Commit(bytes.empty());
    else
        output.LeaveToOthers();
    try {
        Check(context);
    } catch (const Failure&) {
        if (output.IsTaken())
            output.Discard();
        throw;
    }
}
} // namespace settings

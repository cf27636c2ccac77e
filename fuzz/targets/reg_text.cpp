// fuzz/targets/reg_text.cpp: the text of a registry's keys and values. Any bytes are read or
// refused; what was read is written and read again as it was.
//
// Input: a byte that tells which head and mark are put in front, the text.
#include "RegistryText.h"
#include "Text.h"

#include "Support/Input.h"
#include "Support/Library.h"

namespace
{
bool IsSame(const settings::Value& a, const settings::Value& b)
{
    return a.name == b.name && a.remove == b.remove &&
           (a.remove || (a.type == b.type && a.data == b.data));
}

bool IsSame(const settings::Key& a, const settings::Key& b)
{
    return a.path == b.path && a.remove == b.remove &&
           std::equal(a.values.begin(), a.values.end(), b.values.begin(), b.values.end(),
                      [](const auto& x, const auto& y) { return IsSame(x, y); });
}

std::string Widened(const std::string& bytes)
{
    std::string wide = "\xFF\xFE";
    for (const char c : bytes) {
        wide += c;
        wide += '\0';
    }
    return wide;
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    Input input(data, size);
    const unsigned head = input.Below(6);
    std::string bytes = input.Rest();
    if (head == 1 || head == 3)
        bytes.insert(0, "Windows Registry Editor Version 5.00\r\n[HKEY_CURRENT_USER\\A]\n");
    if (head == 2 || head == 4)
        bytes.insert(0, "REGEDIT4\n[HKEY_CURRENT_USER\\A]\n");
    if (head == 3)
        bytes = Widened(bytes);
    if (head == 5)
        bytes.insert(0, Widened("Windows Registry Editor Version 5.00\n[HKEY_CURRENT_USER\\A]\n"));
    std::vector<settings::Key> keys;
    try {
        keys = settings::ReadRegistryText(bytes);
    } catch (const settings::Failure&) {
        REQUIRE(TakeCode() == 0);
        return 0;
    }
    REQUIRE(settings::IsRegistryText(bytes));
    const std::string written = settings::WriteRegistryText(keys);
    const std::vector<settings::Key> again = settings::ReadRegistryText(written);
    REQUIRE(keys.size() == again.size());
    for (std::size_t n = 0; n < keys.size(); ++n)
        REQUIRE(IsSame(keys[n], again[n]));
    REQUIRE(settings::WriteRegistryText(again) == written);
    REQUIRE(TakeCode() == 0);
    return 0;
}

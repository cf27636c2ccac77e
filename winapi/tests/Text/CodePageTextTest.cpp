// winapi/tests/Text/CodePageTextTest.cpp: texts against their characters, converted one by one.
#include "../Support/Calls.h"

#include <random>

namespace
{
constexpr UINT PAGES[] = {1252, 1251, 932, 936, 949, 950, 1253, 437, 28591, 1361, 20932, 37};

int ToUnits(UINT page, const std::string& bytes, WCHAR* units, int room)
{
    return MultiByteToWideChar(page, MB_PRECOMPOSED, bytes.data(), static_cast<int>(bytes.size()),
                               units, room);
}

int ToBytes(UINT page, const WideString& units, char* bytes, int room, BOOL* used)
{
    return WideCharToMultiByte(page, 0, units.data(), static_cast<int>(units.size()), bytes, room,
                               nullptr, used);
}

// The characters of one page, as single calls convert them.
class Characters
{
public:
    explicit Characters(UINT number) : page(number)
    {
        for (unsigned unit = 0; unit < 0x10000; ++unit) {
            char bytes[4];
            BOOL used = FALSE;
            const int length =
                ToBytes(page, WideString(1, static_cast<WCHAR>(unit)), bytes, 4, &used);
            codes.emplace_back(bytes, length);
            defaults.push_back(used);
        }
    }

    std::string Bytes(const WideString& text) const
    {
        std::string bytes;
        for (const WCHAR unit : text)
            bytes += codes[unit];
        return bytes;
    }
    BOOL UsesDefault(const WideString& text) const
    {
        for (const WCHAR unit : text)
            if (defaults[unit])
                return TRUE;
        return FALSE;
    }
    WideString Units(const std::string& text) const
    {
        WideString units;
        for (std::size_t at = 0, length; at < text.size(); at += length) {
            length = IsDBCSLeadByteEx(page, static_cast<BYTE>(text[at])) && at + 1 < text.size() &&
                             text[at + 1]
                         ? 2
                         : 1;
            WCHAR unit = 0;
            EXPECT_EQ(1, ToUnits(page, text.substr(at, length), &unit, 1));
            units += unit;
        }
        return units;
    }

private:
    UINT page;
    std::vector<std::string> codes;
    std::vector<BOOL> defaults;
};

void CheckUnits(UINT page, const Characters& characters, const WideString& text)
{
    std::string bytes(2 * text.size(), '\0');
    BOOL used = FALSE;
    const int length = ToBytes(page, text, bytes.data(), static_cast<int>(bytes.size()), &used);
    ASSERT_LE(0, length);
    bytes.resize(length);
    EXPECT_TRUE(characters.Bytes(text) == bytes);
    EXPECT_EQ(characters.UsesDefault(text), used);
    EXPECT_EQ(length, ToBytes(page, text, nullptr, 0, nullptr));
    // No more room than there has to be.
    std::string exact(length, '\0');
    EXPECT_EQ(length, ToBytes(page, text, exact.data(), length, nullptr));
    EXPECT_TRUE(bytes == exact);
}

void CheckBytes(UINT page, const Characters& characters, const std::string& text)
{
    const WideString expected = characters.Units(text);
    WideString units(text.size(), 0);
    units.resize(ToUnits(page, text, units.data(), static_cast<int>(units.size())));
    EXPECT_TRUE(expected == units);
    const int length = static_cast<int>(expected.size());
    EXPECT_EQ(length, ToUnits(page, text, nullptr, 0));
    WideString exact(length, 0);
    EXPECT_EQ(length, ToUnits(page, text, exact.data(), length));
    EXPECT_TRUE(expected == exact);
}

// Runs of ASCII, of neighbours and single characters, always the same.
template <class Text>
Text MixedText(unsigned seed, unsigned size)
{
    using Unit = typename Text::value_type;
    std::mt19937 chance(seed);
    Text text;
    while (text.size() < size) {
        unsigned length = chance() % 70;
        const unsigned kind = chance() % 4;
        unsigned first = chance();
        if (kind == 3)
            length = 1;
        for (; length; --length)
            text += static_cast<Unit>(kind == 0   ? chance() % 128
                                      : kind == 1 ? 0x400 + chance() % 96
                                      : kind == 2 ? first++
                                                  : first);
    }
    return text;
}
} // namespace

TEST(CodePageText, AllUnitsTogetherConvertLikeEachAlone)
{
    for (UINT page : PAGES) {
        SCOPED_TRACE(page);
        const Characters characters(page);
        WideString text(19, L'a');
        for (unsigned unit = 0; unit < 0x10000; ++unit)
            text += static_cast<WCHAR>(unit);
        CheckUnits(page, characters, text);
        for (unsigned seed = 0; seed < 8; ++seed)
            CheckUnits(page, characters, MixedText<WideString>(seed, 100 + 300 * seed));
    }
}

TEST(CodePageText, AllBytesAndPairsTogetherConvertLikeEachAlone)
{
    for (UINT page : PAGES) {
        SCOPED_TRACE(page);
        const Characters characters(page);
        std::string text(19, 'a');
        for (unsigned code = 0; code < 256; ++code)
            text += static_cast<char>(code);
        for (unsigned pair = 0; pair < 0x10000; ++pair)
            if (IsDBCSLeadByteEx(page, static_cast<BYTE>(pair >> 8)))
                text += {static_cast<char>(pair >> 8), static_cast<char>(pair)};
        CheckBytes(page, characters, text);
        for (unsigned seed = 0; seed < 8; ++seed)
            CheckBytes(page, characters, MixedText<std::string>(seed, 100 + 300 * seed));
    }
}

TEST(CodePageText, ShortRoomHoldsTheCharactersThatFit)
{
    for (UINT page : {1252u, 1251u, 932u}) {
        SCOPED_TRACE(page);
        const Characters characters(page);
        const WideString text = MixedText<WideString>(77, 200);
        const std::string bytes = characters.Bytes(text);
        for (int room = 1; room < static_cast<int>(bytes.size()); ++room) {
            std::string out(room, '\0');
            SetLastError(0);
            EXPECT_EQ(0, ToBytes(page, text, out.data(), room, nullptr));
            EXPECT_EQ(DWORD(ERROR_INSUFFICIENT_BUFFER), GetLastError());
            // A pair that doesn't fit leaves the last byte alone.
            EXPECT_EQ(bytes.substr(0, room - 1), out.substr(0, room - 1));
        }
        const WideString units = characters.Units(bytes);
        for (int room = 1; room < static_cast<int>(units.size()); ++room) {
            WideString out(room, 0);
            EXPECT_EQ(0, ToUnits(page, bytes, out.data(), room));
            EXPECT_TRUE(units.substr(0, room) == out);
        }
    }
}

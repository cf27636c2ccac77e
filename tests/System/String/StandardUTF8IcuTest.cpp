// tests/System/String/StandardUTF8IcuTest.cpp: against ICU, where there is one.
#include <unicode/ustring.h>

#include <random>

#include "Support/Directory.h"
#include "System/String/StandardUTF8Support.h"

using namespace standard;

namespace
{
std::u16string IcuWidened(const std::string& bytes)
{
    std::u16string wide(bytes.size() + 1, 0);
    int32_t length = 0;
    UErrorCode status = U_ZERO_ERROR;
    u_strFromUTF8WithSub(wide.data(), int32_t(wide.size()), &length, bytes.data(),
                         int32_t(bytes.size()), 0xFFFD, nullptr, &status);
    EXPECT_TRUE(U_SUCCESS(status));
    wide.resize(std::size_t(length));
    return wide;
}

std::string IcuNarrowed(const std::u16string& wide)
{
    std::string bytes(wide.size() * 3 + 1, 0);
    int32_t length = 0;
    UErrorCode status = U_ZERO_ERROR;
    u_strToUTF8WithSub(bytes.data(), int32_t(bytes.size()), &length, wide.data(),
                       int32_t(wide.size()), 0xFFFD, nullptr, &status);
    EXPECT_TRUE(U_SUCCESS(status));
    bytes.resize(std::size_t(length));
    return bytes;
}

bool IcuTakes(const std::string& bytes)
{
    UErrorCode status = U_ZERO_ERROR;
    u_strFromUTF8(nullptr, 0, nullptr, bytes.data(), int32_t(bytes.size()), &status);
    return status != U_INVALID_CHAR_FOUND;
}

bool Takes(const std::string& bytes)
{
    return Standard::sn_FindIllFormed(bytes.data(), unsigned(bytes.size())) == ALL;
}
} // namespace

TEST(StandardUTF8IcuModel, ThreeBytesOfAnyKindAreTakenAlike)
{
    for (unsigned first = 0; first < 0x100; ++first) {
        std::string text;
        text.reserve(0x40000);
        for (unsigned pair = 0; pair < 0x10000; ++pair) {
            const char bytes[] = {char(first), char(pair >> 8), char(pair), 'x'};
            text.append(bytes, 4);
        }
        ASSERT_TRUE(Widened(text) == IcuWidened(text)) << first;
    }
}

TEST(StandardUTF8IcuModel, FourBytesBehindEveryLongFirstByteAreTakenAlike)
{
    for (unsigned first = 0xEF; first < 0x100; ++first)
        for (unsigned second = 0x7E; second < 0xC2; ++second) {
            std::string text;
            for (unsigned third = 0x7E; third < 0xC2; ++third)
                for (unsigned fourth = 0x7E; fourth < 0xC2; ++fourth) {
                    const char bytes[] = {char(first), char(second), char(third), char(fourth)};
                    text.append(bytes, 4);
                }
            ASSERT_TRUE(Widened(text) == IcuWidened(text)) << first << ' ' << second;
        }
}

TEST(StandardUTF8IcuModel, EveryPairOfSurrogatesIsCodedAlike)
{
    for (unsigned first = 0xD7FF; first <= 0xE000; ++first) {
        std::u16string text;
        for (unsigned second = 0xD7FF; second <= 0xE000; ++second)
            text += {char16_t(first), char16_t(second)};
        ASSERT_TRUE(Narrowed(text) == IcuNarrowed(text)) << first;
    }
}

TEST(StandardUTF8IcuModel, RandomTextsAreTakenOrRefusedAlike)
{
    std::mt19937 random(Seed(93));
    for (unsigned round = 0; round < 20000; ++round) {
        std::u16string wide;
        for (unsigned n = random() % 40; n; --n)
            wide += random() % 3 ? char16_t(random() % 128) : char16_t(random());
        const std::string bytes = Narrowed(wide);
        ASSERT_EQ(bytes, IcuNarrowed(wide));
        std::string broken = bytes;
        if (!broken.empty())
            broken[random() % broken.size()] = char(random());
        ASSERT_EQ(Widened(broken), IcuWidened(broken));
        ASSERT_EQ(Takes(broken), IcuTakes(broken));
    }
}

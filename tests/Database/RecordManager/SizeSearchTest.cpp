// tests/Database/RecordManager/SizeSearchTest.cpp: sizes compared many at a time, beside one by one.
#include <Database/RecordManager/SizeSearch.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <vector>

#include "Support/Directory.h"

TEST(SizeSearch, ManyAtATimeFindTheSame)
{
    if (!CT_Vector::sb_HasMasks())
        GTEST_SKIP() << "the processor has no masks";
    std::mt19937 random(Seed(128));
    const unsigned bounds[] = {0, 1, 64, 65, 0x7FFFFFFE, 0x7FFFFFFF, 0x80000000, 0xFFFFFFFF};
    for (unsigned round = 0; round < 20000; ++round) {
        const unsigned count = static_cast<unsigned>(random() % 129);
        const unsigned rare = 1 + static_cast<unsigned>(random() % 64);
        std::vector<unsigned> pairs(2 * count + 1);
        const auto value = [&] {
            return random() % 4 ? static_cast<unsigned>(random() % 256) : bounds[random() % 8];
        };
        const unsigned need = value();
        for (unsigned& number : pairs)
            number = random() % rare ? static_cast<unsigned>(random() % 64) : value();
        // At an address that isn't one of a word.
        std::vector<char> bytes(8 * count + 1);
        if (count)
            std::memcpy(bytes.data() + 1, pairs.data(), 8 * count);
        ASSERT_EQ(n_FirstFitByMasks(bytes.data() + 1, count, need),
                  n_FirstFitOneByOne(bytes.data() + 1, count, 0, need));
        unsigned sizes[16];
        for (unsigned& size : sizes)
            size = value() & 0x7FFFFFFF;
        const unsigned least = std::max(need & 0x7FFFFFFF, 1u);
        ASSERT_EQ(n_FitsByMasks(sizes, least), n_FitsOneByOne(sizes, least));
    }
}

// tests/Models/RealWords.h: words of a language.
#pragma once

#include <gtest/gtest.h>

#include <fstream>
#include <string>
#include <vector>

// A selection from an English word list, in its order.
inline std::vector<std::string> RealWords()
{
    std::ifstream file(OSTRA_TEST_DATA "/words/words.txt");
    std::vector<std::string> words;
    for (std::string word; std::getline(file, word);)
        words.push_back(word);
    EXPECT_EQ(words.size(), 30000U);
    return words;
}

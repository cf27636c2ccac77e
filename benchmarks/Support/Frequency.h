// benchmarks/Support/Frequency.h: how often the words of a text occur in it.
#pragma once

#include <algorithm>
#include <map>
#include <string>
#include <vector>

inline bool IsLetter(char c)
{
    return c < 0 || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

inline std::vector<std::string> WordsOf(const std::string& text)
{
    std::vector<std::string> words;
    for (auto from = text.begin(); from != text.end();) {
        const auto start = std::find_if(from, text.end(), IsLetter);
        from = std::find_if_not(start, text.end(), IsLetter);
        if (start != from)
            words.emplace_back(start, from);
    }
    return words;
}

struct Weighted
{
    std::vector<std::string> words; // each once, the frequent ones first
    std::vector<unsigned> weights;
};

// The words of a text and those of a dictionary.
inline Weighted ByFrequency(const std::vector<std::string>& text,
                            const std::vector<std::string>& dictionary)
{
    std::map<std::string, unsigned> counts;
    for (const std::string& word : text)
        ++counts[word];
    for (const std::string& word : dictionary)
        counts.emplace(word, 0);
    Weighted all;
    for (const auto& entry : counts)
        all.words.push_back(entry.first);
    std::stable_sort(
        all.words.begin(), all.words.end(),
        [&](const auto& first, const auto& second) { return counts[first] > counts[second]; });
    for (const std::string& word : all.words)
        all.weights.push_back(counts[word]);
    return all;
}

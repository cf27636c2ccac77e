// benchmarks/Support/Inputs.h: the texts, words and sizes that the jobs work on.
#pragma once

#include <string>
#include <vector>

// The inputs are the files that make_inputs.py writes into the folder named by the variable
// OSTRA_BENCHMARK_INPUTS. Where it isn't set each is generated in memory, the same on every run.
//
// Texts are UTF-8 in the files, without marks of byte order; all of their characters are single
// UTF-16 units. A file that is missing ends the program with a message.
class Inputs
{
public:
    // Whether the inputs are the generated ones, whose figures say nothing beside real ones.
    static bool AreGenerated();
    // The folder, or "generated".
    static std::string Origin();

    // The whole input.
    static std::string Bytes(const std::string& name);
    static std::u16string Units(const std::string& name);
    // Its lines without their ends.
    static std::vector<std::string> Lines(const std::string& name);
    static std::vector<std::u16string> UnitLines(const std::string& name);
    // Its lines as numbers.
    static std::vector<unsigned> Numbers(const std::string& name);

    static std::u16string ToUnits(const std::string& bytes);
    static std::vector<std::string> Split(const std::string& bytes);

    // In an order of chance that is always the same.
    template <class Item>
    static void Shuffle(std::vector<Item>& items);

private:
    static unsigned long long NextChance(unsigned long long& state);
};

template <class Item>
void Inputs::Shuffle(std::vector<Item>& items)
{
    unsigned long long state = 19970101;
    for (auto left = items.size(); left > 1; --left)
        std::swap(items[left - 1], items[NextChance(state) % left]);
}

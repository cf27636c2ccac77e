// benchmarks/Support/Inputs.cpp
#include "Support/Inputs.h"

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <sstream>

#include "Support/Generate.h"

namespace
{
const char* Folder()
{
    const char* folder = std::getenv("OSTRA_BENCHMARK_INPUTS");
    return folder && *folder ? folder : nullptr;
}

[[noreturn]] void Fail(const std::string& text)
{
    std::fprintf(stderr, "benchmark inputs: %s\n", text.c_str());
    std::exit(2);
}

std::string ReadFile(const std::string& path)
{
    std::ifstream file(path, std::ios::binary);
    if (!file)
        Fail("no file " + path + "; make_inputs.py makes it");
    return {std::istreambuf_iterator<char>(file), {}};
}
} // namespace

bool Inputs::AreGenerated()
{
    return !Folder();
}

std::string Inputs::Origin()
{
    return AreGenerated() ? "generated" : Folder();
}

std::string Inputs::Bytes(const std::string& name)
{
    return AreGenerated() ? Generate(name) : ReadFile(std::string(Folder()) + "/" + name);
}

std::u16string Inputs::Units(const std::string& name)
{
    return ToUnits(Bytes(name));
}

std::vector<std::string> Inputs::Lines(const std::string& name)
{
    return Split(Bytes(name));
}

std::vector<std::u16string> Inputs::UnitLines(const std::string& name)
{
    std::vector<std::u16string> lines;
    for (const std::string& line : Lines(name))
        lines.push_back(ToUnits(line));
    return lines;
}

std::vector<unsigned> Inputs::Numbers(const std::string& name)
{
    std::vector<unsigned> numbers;
    for (const std::string& line : Lines(name))
        numbers.push_back(static_cast<unsigned>(std::stoul(line)));
    return numbers;
}

std::u16string Inputs::ToUnits(const std::string& bytes)
{
    std::u16string units;
    units.reserve(bytes.size());
    for (size_t n = 0; n < bytes.size();) {
        const unsigned first = static_cast<unsigned char>(bytes[n]);
        const unsigned length = first < 0x80 ? 1 : first < 0xC0 ? 0 : first < 0xE0 ? 2 : 3;
        if (first >= 0xF0 || length == 0 || n + length > bytes.size())
            Fail("a text isn't UTF-8 of single units");
        unsigned unit = length == 1 ? first : first & (0x3F >> (length - 1));
        for (unsigned k = 1; k < length; ++k)
            unit = unit << 6 | (static_cast<unsigned char>(bytes[n + k]) & 0x3F);
        units += static_cast<char16_t>(unit);
        n += length;
    }
    return units;
}

std::vector<std::string> Inputs::Split(const std::string& bytes)
{
    std::vector<std::string> lines;
    std::istringstream text(bytes);
    for (std::string line; std::getline(text, line);)
        lines.push_back(line);
    return lines;
}

unsigned long long Inputs::NextChance(unsigned long long& state)
{
    // Knuth's multiplier; the high bits are the good ones.
    state = state * 6364136223846793005u + 1442695040888963407u;
    return state >> 33;
}

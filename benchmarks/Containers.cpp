// benchmarks/Containers.cpp: arrays, hash tables and bit sets.
//
// Sorted arrays and hash tables call the caller's functions by pointers, as qsort does; bsearch and
// the unordered maps have theirs compiled in. The compare function of both sides has no branches,
// as qsort's documentation has it: with one that jumps, what the processor can't foresee is in the
// function, and either side waits for that.
//
// The sides of an insertion begin with an empty container: the library's table with 3 buckets, so
// that all of them grow as they fill. So do those of push: none reserves room, and an item comes
// from a list of them. The result of a find is the number that was stored with the key.
#include <Ostra/ARRAY/Array.h>
#include <Ostra/Containers/BitSet.h>
#include <Ostra/HashTable/VoidHashTable.h>
#include <Ostra/SortedArray/VoidSortedArray.h>
#include <Ostra/String/Compare.h>
#include <Ostra/String/HashFunction.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <numeric>
#include <random>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#if HAVE_QT
#include <QList>
#endif
#if HAVE_BOOST
#include <boost/dynamic_bitset.hpp>
#endif
#if HAVE_ABSL
#include <absl/container/flat_hash_map.h>
#endif

#include "Support/Find.h"
#include "Support/Inputs.h"
#include "Support/Job.h"

namespace
{
typedef int (*Order)(const void*, const void*);
typedef unsigned (*Hash)(const void*, unsigned);

struct Input
{
    std::string name;
    Numbers numbers; // all different, in an order of chance
};

Input MakeInput(const char* name, unsigned count)
{
    Input input{name, Numbers(count)};
    for (unsigned n = 0; n < count; ++n)
        input.numbers[n] = n * 7 + 1;
    Inputs::Shuffle(input.numbers);
    return input;
}

int CompareNumbers(const void* first, const void* second)
{
    unsigned left, right;
    std::memcpy(&left, first, sizeof left);
    std::memcpy(&right, second, sizeof right);
    return (left > right) - (left < right);
}

unsigned Size(const Numbers& numbers)
{
    return static_cast<unsigned>(numbers.size());
}

// ---- Arrays -------------------------------------------------------------------------------

Numbers Content(const CT_VoidArray& array)
{
    const unsigned* data = static_cast<const unsigned*>(array.pcco_GetBuffer()->qcv_Get());
    return {data, data + array.n_GetCount()};
}

void RegisterPush(const Input& input)
{
    const Numbers& numbers = input.numbers;
    Measure<Numbers> measure("push", input.name, {Amount::ITEMS, numbers.size()});
    const auto ostra = [&numbers](CT_Array<unsigned>& array) {
        for (const unsigned& number : numbers)
            array.v_Insert(&number);
    };
    measure.Side(
        "ostra",
        [ostra] {
            CT_Array<unsigned> array;
            ostra(array);
            return array.n_GetCount();
        },
        [ostra] {
            CT_Array<unsigned> array;
            ostra(array);
            return Content(array);
        });
    const auto standard = [&numbers] {
        Numbers array;
        for (const unsigned number : numbers)
            array.push_back(number);
        return array;
    };
    measure.Side("vector", standard, standard);
#if HAVE_QT
    const auto qt = [&numbers] {
        QList<unsigned> array;
        for (const unsigned number : numbers)
            array.append(number);
        return array;
    };
    measure.Side("qt", qt, [qt] {
        const QList<unsigned> array = qt();
        return Numbers(array.begin(), array.end());
    });
#endif
}

void RegisterFind(const Input& input)
{
    const Numbers& numbers = input.numbers;
    Measure<Numbers> measure("find", input.name, {Amount::ITEMS, numbers.size()});
    static std::vector<CT_VoidSortedArray*> arrays; // as long as the program
    static std::vector<Numbers*> sorted;
    const CT_Buffer buffer(numbers.data(), Size(numbers) * 4, 32);
    const CT_VoidArray array(&buffer, 4);
    arrays.push_back(new CT_VoidSortedArray(&array, CompareNumbers));
    sorted.push_back(new Numbers(numbers));
    std::sort(sorted.back()->begin(), sorted.back()->end());

    const auto ostra = [array = arrays.back()](const unsigned& number) {
        return array->n_Find(&number);
    };
    const auto standard = [values = sorted.back()](const unsigned& number) {
        const void* found =
            std::bsearch(&number, values->data(), values->size(), sizeof number, CompareNumbers);
        return unsigned(static_cast<const unsigned*>(found) - values->data()) + 1;
    };
    const auto add = [&](const char* side, auto find) {
        measure.Side(
            side,
            [&numbers, find] {
                std::uint64_t sum = 0;
                for (const unsigned& number : numbers)
                    sum += find(number);
                return sum;
            },
            [&numbers, find] {
                Numbers answers;
                for (const unsigned& number : numbers)
                    answers.push_back(find(number));
                return answers;
            });
    };
    add("ostra", ostra);
    add("bsearch", standard);
    // What a comparison compiled in would give.
    add("std", [values = sorted.back()](const unsigned& number) {
        const auto found = std::lower_bound(values->begin(), values->end(), number);
        return unsigned(found - values->begin()) + 1;
    });
}

// Each pass sorts a fresh copy.
void RegisterSort(const Input& input)
{
    const Numbers& numbers = input.numbers;
    Measure<Numbers> measure("sort", input.name, {Amount::ITEMS, numbers.size()});
    const auto ostra = [&numbers] {
        const CT_Buffer buffer(numbers.data(), Size(numbers) * 4, 32);
        const CT_VoidArray array(&buffer, 4);
        const CT_VoidSortedArray sorted(&array, CompareNumbers);
        return Content(*sorted.pcco_GetArray());
    };
    const auto standard = [&numbers] {
        Numbers values = numbers;
        std::qsort(values.data(), values.size(), sizeof(unsigned), CompareNumbers);
        return Numbers(values);
    };
    measure.Side("ostra", ostra, ostra);
    measure.Side("qsort", standard, standard);
    // What a comparison compiled in would give.
    const auto inlined = [&numbers] {
        Numbers values = numbers;
        std::sort(values.begin(), values.end());
        return Numbers(values);
    };
    measure.Side("std", inlined, inlined);
}

// ---- Hash tables --------------------------------------------------------------------------

class NumberTable : public CT_VoidHashTable
{
public:
    explicit NumberTable(unsigned size)
        : CT_VoidHashTable(4, 4, sn_HashInteger, reinterpret_cast<Order>(CT_Compare::si_ComparePN),
                           size)
    {}

    void Fill(const Numbers& numbers)
    {
        for (const unsigned number : numbers) {
            const unsigned value = ~number;
            b_Insert(&number, &value);
        }
    }
};

template <class Map>
void AddMapFind(Measure<Numbers>& measure, const char* side, const Numbers& numbers)
{
    Map* map = new Map;
    for (const unsigned number : numbers)
        (*map)[number] = ~number;
    AddFind(measure, side, numbers, [map](unsigned number) { return map->find(number)->second; });
}

void RegisterHashFind(const Input& input)
{
    const Numbers& numbers = input.numbers;
    Measure<Numbers> measure("hash_find", input.name, {Amount::ITEMS, numbers.size()});
    auto* table = new NumberTable(Size(numbers));
    table->Fill(numbers);
    AddFind(measure, "ostra", numbers, [table](const unsigned& number) {
        unsigned value = 0;
        table->b_Get(&number, &value);
        return value;
    });
    AddMapFind<std::unordered_map<unsigned, unsigned>>(measure, "unordered", numbers);
#if HAVE_ABSL
    AddMapFind<absl::flat_hash_map<unsigned, unsigned>>(measure, "absl", numbers);
#endif
}

template <class Map>
void AddMapInsert(Measure<Numbers>& measure, const char* side, const Numbers& numbers)
{
    const auto fill = [&numbers] {
        Map map;
        for (const unsigned number : numbers)
            map.insert({number, ~number});
        return map;
    };
    measure.Side(
        side, [fill] { return fill().size(); },
        [fill, &numbers] {
            const Map map = fill();
            Numbers answers;
            for (const unsigned number : numbers)
                answers.push_back(map.find(number)->second);
            return answers;
        });
}

void RegisterHashInsert(const Input& input)
{
    const Numbers& numbers = input.numbers;
    Measure<Numbers> measure("hash_insert", input.name, {Amount::ITEMS, numbers.size()});
    measure.Side(
        "ostra",
        [&numbers] {
            NumberTable table(3);
            table.Fill(numbers);
            return table.n_GetCount();
        },
        [&numbers] {
            NumberTable table(3);
            table.Fill(numbers);
            Numbers answers(numbers.size());
            for (size_t n = 0; n < numbers.size(); ++n)
                table.b_Get(&numbers[n], &answers[n]);
            return answers;
        });
    AddMapInsert<std::unordered_map<unsigned, unsigned>>(measure, "unordered", numbers);
#if HAVE_ABSL
    AddMapInsert<absl::flat_hash_map<unsigned, unsigned>>(measure, "absl", numbers);
#endif
}

// The library's keys are pointers to texts, those of the maps views of them.
void RegisterHashText(const std::string& name, const std::vector<std::string>& words)
{
    Measure<Numbers> measure("hash_text", name, {Amount::ITEMS, words.size()});
    CT_VoidHashTable* table = new CT_VoidHashTable(
        4, sizeof(const char*), reinterpret_cast<Hash>(CT_HashFunction::sn_HashCasePQCZ),
        reinterpret_cast<Order>(CT_Compare::si_CompareCasePQCZ),
        static_cast<unsigned>(words.size()));
    auto* map = new std::unordered_map<std::string_view, unsigned>;
    for (unsigned n = 0; n < words.size(); ++n) {
        const char* text = words[n].c_str();
        table->b_Insert(&text, &n);
        (*map)[words[n]] = n;
    }
    AddFind(measure, "ostra", words, [table](const std::string& word) {
        const char* text = word.c_str();
        unsigned value = 0;
        table->b_Get(&text, &value);
        return value;
    });
    AddFind(measure, "unordered", words,
            [map](const std::string& word) { return map->find(word)->second; });
#if HAVE_ABSL
    auto* flat = new absl::flat_hash_map<std::string_view, unsigned>(map->begin(), map->end());
    AddFind(measure, "absl", words,
            [flat](const std::string& word) { return flat->find(word)->second; });
#endif
}

// The hash of a text alone. It differs from the standard library's, so that only the number of
// results is compared.
void RegisterHashValue(const std::string& name, const std::vector<std::string>& words)
{
    Measure<Numbers> measure("hash_value", name, {Amount::ITEMS, words.size()});
    const auto add = [&](const char* side, auto hash) {
        measure.Side(
            side,
            [&words, hash] {
                std::uint64_t sum = 0;
                for (const std::string& word : words)
                    sum += hash(word);
                return sum;
            },
            [&words] { return Numbers{static_cast<unsigned>(words.size())}; });
    };
    add("ostra", [size = static_cast<unsigned>(words.size())](const std::string& word) {
        const char* text = word.c_str();
        return CT_HashFunction::sn_HashCasePQCZ(&text, size);
    });
    add("std", std::hash<std::string_view>());
}

// ---- Bit sets -----------------------------------------------------------------------------

struct Bits
{
    unsigned size;
    CT_BitSet first{size}, second{size};
#if HAVE_BOOST
    boost::dynamic_bitset<> boostFirst{size}, boostSecond{size};
#endif

    explicit Bits(unsigned count) : size(count)
    {
        std::mt19937 random(19970101);
        for (unsigned bit = 0; bit < size; ++bit) {
            const unsigned chance = random();
            first.v_SetBit(bit, chance & 1);
            second.v_SetBit(bit, chance & 2);
#if HAVE_BOOST
            boostFirst[bit] = chance & 1;
            boostSecond[bit] = chance & 2;
#endif
        }
    }
};

void RegisterBits(const char* name, unsigned size)
{
    Bits* bits = new Bits(size);
    const Amount amount{Amount::BYTES, size / 8};
    Measure<Numbers> count("count", name, amount);
    const auto ostraCount = [bits] {
        return bits->first.n_NrSetBits();
    };
    count.Side("ostra", ostraCount, [=] { return Numbers{ostraCount()}; });
    Measure<Numbers> either("or", name, amount);
    // What a second pass finds is what the first one made: the work is the same.
    const auto ostraOr = [bits] {
        bits->first.v_Or(&bits->second);
        return bits->first.b_GetBit(0);
    };
    const auto ostraResult = [bits] {
        CT_BitSet result(&bits->first);
        result.v_Or(&bits->second);
        return Numbers{result.n_NrSetBits(), result.n_FirstSetBit()};
    };
    either.Side("ostra", ostraOr, ostraResult);
#if HAVE_BOOST
    const auto boostCount = [bits] {
        return static_cast<unsigned>(bits->boostFirst.count());
    };
    count.Side("boost", boostCount, [=] { return Numbers{boostCount()}; });
    const auto boostOr = [bits] {
        bits->boostFirst |= bits->boostSecond;
        return bits->boostFirst.test(0);
    };
    const auto boostResult = [bits] {
        const auto result = bits->boostFirst | bits->boostSecond;
        return Numbers{static_cast<unsigned>(result.count()),
                       static_cast<unsigned>(result.find_first())};
    };
    either.Side("boost", boostOr, boostResult);
#endif
}

std::vector<std::string> Tenth(const std::vector<std::string>& words)
{
    std::vector<std::string> some;
    for (size_t n = 0; n < words.size(); n += 10)
        some.push_back(words[n]);
    return some;
}
} // namespace

int main(int argc, char** argv)
{
    const Input large = MakeInput("numbers", 100000);
    const Input small = MakeInput("numbers.tenth", 10000);
    const std::vector<std::string> words = Inputs::Lines("words.en.shuf");
    const std::vector<std::string> few = Tenth(words);
    for (const Input* input : {&large, &small}) {
        RegisterPush(*input);
        RegisterFind(*input);
        RegisterSort(*input);
        RegisterHashFind(*input);
        RegisterHashInsert(*input);
    }
    RegisterHashValue("words.en.shuf", words);
    RegisterHashText("words.en.shuf", words);
    RegisterHashText("words.en.shuf.tenth", few);
    RegisterBits("bits", 1 << 18);
    RegisterBits("bits.tenth", (1 << 18) / 10);
    return Job::Run(argc, argv, OSTRA_ABSENT_PEERS);
}

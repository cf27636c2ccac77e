// benchmarks/Lexicon.cpp: the compressed list, its builder and its iterators.
//
// A hit looks up all words of a list in an order of chance. For words.en they were added in the
// order of the alphabet, for words.en.shuf in another of chance. ostra is built by weight, all words
// alike, as_added is not. marisa numbers its keys itself, which is compared by a table outside the
// time. Building starts with the words and ends with what can be searched; there and elsewhere
// ostra is built as added. An iteration takes every key and its number; the map's key is copied.
//
// hit_many is the same by v_SearchAll, which gets pointers to all words at once; single is n_Search
// in the same list, and the others have no such way. get_all is the iteration by v_GetAll, into
// buffers that are new each time, beside the iterator and the others as in iterate.
//
// build_mib is what a building takes of memory at its peak, the result included, in MiB
// (Support/Memory.h).
//
// frequent looks up the words of a running text in a list of them and of a dictionary. ostra is
// built by weight, and each word weighs what it occurs in the text, maybe 0; marisa has the same
// weights. first has the frequent words added first, in_order all of them in the order of the
// alphabet, shuffled in one of chance.
//
// add sets the builder beside b_Add, which is measured at three smaller sizes and extrapolated as
// a time that rises with the square; literal is a b_Add that scans the stream at each insertion,
// as the format alone would have it. limit stands for figures that aren't a library's.
#include <Ostra/CompList/CCompListIterator.h>
#include <Ostra/CompList/CompListBuilder.h>
#include <Ostra/String/CString.h>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include <malloc.h>

#if HAVE_MARISA
#include <marisa.h>
#endif
#if HAVE_ICU
#include <unicode/bytestrie.h>
#include <unicode/bytestriebuilder.h>
#endif
#if HAVE_ABSL
#include <absl/container/flat_hash_map.h>
#endif

#include "Support/Frequency.h"
#include "Support/Inputs.h"
#include "Support/Job.h"

// A list knows its alternatives beside its block, and scans the stream where it can't.
struct CompListPeer
{
    static void Scan(CT_CompList& list) { list.v_ScanFromNow(); }
};

namespace
{
typedef std::vector<std::string> Words;
typedef std::vector<std::u16string> WideWords;
typedef std::vector<unsigned> Numbers;
typedef std::vector<const char*> Pointers;
// What is made once lasts as long as the program.
template <class Made>
using Lasting = const std::shared_ptr<Made>;

constexpr unsigned GROWTH = 128;

const char* Key(const std::string& word)
{
    return word.c_str();
}

const unsigned short* Key(const std::u16string& word)
{
    return reinterpret_cast<const unsigned short*>(word.c_str());
}

template <class Word>
CT_CompList::et_ElementSize ElementSize()
{
    return CT_CompList::et_ElementSize(sizeof(typename Word::value_type));
}

// ---- Sides --------------------------------------------------------------------------------
// Each is made of words and finds their numbers.

// How many bytes the list takes. No weights are 1 for each.
template <class Word>
unsigned Build(const std::vector<Word>& words, CT_CompList* list,
               CT_CompListBuilder::et_Order order = CT_CompListBuilder::bo_AsAdded,
               const Numbers& weights = {})
{
    CT_CompListBuilder builder(ElementSize<Word>(), 4, 0, 1, GROWTH, 0);
    builder.v_SetOrder(order);
    unsigned number = 0;
    for (const Word& word : words) {
        builder.b_Add(Key(word), number, weights.empty() ? 1 : weights[number]);
        ++number;
    }
    builder.v_Build(list);
    return list->n_GetEnd();
}

template <CT_CompListBuilder::et_Order ORDER>
class Listed
{
public:
    explicit Listed(const Words& words, const Numbers& weights = {})
    {
        Build(words, &list, ORDER, weights);
    }
    unsigned Find(const std::string& word) { return list.n_Search(word.c_str(), nullptr); }
    unsigned Number(const std::string& word) { return Find(word); }
    unsigned NumberOf(unsigned number) const { return number; }
    void FindAll(const Pointers& keys, Numbers* found) const
    {
        list.v_SearchAll(keys.data(), static_cast<unsigned>(keys.size()), found->data(), nullptr);
    }
    template <class Take>
    void TakeAll(Take take) const
    {
        CT_Buffer keys, places, handles;
        list.v_GetAll(&keys, &places, &handles);
        const auto* key = static_cast<const char*>(keys.qcv_Get());
        const auto* place = static_cast<const unsigned*>(places.qcv_Get());
        const auto* handle = static_cast<const unsigned*>(handles.qcv_Get());
        const unsigned count = places.n_GetUsedSize() / sizeof *place;
        for (unsigned n = 0; n < count; ++n) {
            const unsigned end = n + 1 < count ? place[n + 1] : keys.n_GetUsedSize();
            take(key + place[n], size_t{end - place[n] - 1}, handle[n]);
        }
    }
    template <class Take>
    void Walk(Take take)
    {
        CT_CCompListIterator walk(&list);
        CT_CString key;
        for (unsigned number; walk.b_GetNext(&key, &number);)
            take(key.qccz_Get(), key.vn_GetLength(), number);
    }
    size_t Bytes() const { return list.n_GetEnd(); }

private:
    CT_CompList list{CT_CompList::es_Byte, 0, 0, 0, GROWTH, 0};
};
typedef Listed<CT_CompListBuilder::bo_AsAdded> Ostra;
typedef Listed<CT_CompListBuilder::bo_ByWeight> ByWeight;

#if HAVE_MARISA
class Marisa
{
public:
    explicit Marisa(const Words& words, const Numbers& weights = {})
    {
        marisa::Keyset keys;
        for (size_t n = 0; n < words.size(); ++n)
            keys.push_back(words[n].c_str(), words[n].size(),
                           weights.empty() ? 1.0F : static_cast<float>(weights[n]));
        trie.build(keys);
        ids.resize(words.size());
        for (size_t n = 0; n < words.size(); ++n)
            ids[keys[n].id()] = static_cast<unsigned>(n);
    }
    unsigned Find(const std::string& word)
    {
        agent.set_query(word.c_str(), word.size());
        return trie.lookup(agent) ? static_cast<unsigned>(agent.key().id()) : ~0u;
    }
    unsigned Number(const std::string& word) { return NumberOf(Find(word)); }
    unsigned NumberOf(unsigned id) const { return ids.at(id); }
    template <class Take>
    void Walk(Take take)
    {
        marisa::Agent all;
        all.set_query("", 0);
        while (trie.predictive_search(all))
            take(all.key().ptr(), all.key().length(), static_cast<unsigned>(all.key().id()));
    }
    size_t Bytes() const { return trie.io_size(); }

private:
    marisa::Trie trie;
    marisa::Agent agent;
    Numbers ids;
};
#endif

#if HAVE_ICU
class BytesTrie
{
public:
    // Weights mean nothing to it.
    explicit BytesTrie(const Words& words, const Numbers& = {})
    {
        UErrorCode status = U_ZERO_ERROR;
        icu::BytesTrieBuilder builder(status);
        int number = 0;
        for (const std::string& word : words)
            builder.add(word, number++, status);
        trie.reset(builder.build(USTRINGTRIE_BUILD_FAST, status));
    }
    unsigned Find(const std::string& word)
    {
        trie->reset();
        UStringTrieResult found = trie->next(word.data(), static_cast<int>(word.size()));
        if (!USTRINGTRIE_HAS_VALUE(found))
            found = Follow(word);
        return USTRINGTRIE_HAS_VALUE(found) ? static_cast<unsigned>(trie->getValue()) : ~0u;
    }
    unsigned Number(const std::string& word) { return Find(word); }

private:
    // The quick way misses keys with bytes from 128 on.
    UStringTrieResult Follow(const std::string& word)
    {
        trie->reset();
        UStringTrieResult found = USTRINGTRIE_NO_VALUE;
        for (const char c : word)
            found = trie->next(static_cast<unsigned char>(c));
        return found;
    }

    std::unique_ptr<icu::BytesTrie> trie;
};
#endif

template <class Map>
class Mapped
{
public:
    explicit Mapped(const Words& words)
    {
        const size_t before = mallinfo2().uordblks + mallinfo2().hblkhd;
        for (const std::string& word : words)
            map.emplace(word, static_cast<unsigned>(map.size()));
        bytes = mallinfo2().uordblks + mallinfo2().hblkhd - before;
    }
    unsigned Find(const std::string& word) { return map.find(word)->second; }
    unsigned Number(const std::string& word) { return Find(word); }
    unsigned NumberOf(unsigned number) const { return number; }
    template <class Take>
    void Walk(Take take)
    {
        std::string key;
        for (const auto& entry : map) {
            key = entry.first;
            take(key.data(), key.size(), entry.second);
        }
    }
    size_t Bytes() const { return bytes; }

private:
    Map map;
    size_t bytes;
};
typedef Mapped<std::unordered_map<std::string, unsigned>> Unordered;
typedef Mapped<std::map<std::string, unsigned>> Ordered;

// ---- Measures -----------------------------------------------------------------------------

template <class Made>
void AddHit(Measure<Numbers>& measure, const char* side, const Words& entered, const Words& words)
{
    Lasting<Made> made = std::make_shared<Made>(entered);
    measure.Side(
        side,
        [&words, made] {
            std::uint64_t sum = 0;
            for (const std::string& word : words)
                sum += made->Find(word);
            return sum;
        },
        [&words, made] {
            Numbers answers;
            for (const std::string& word : words)
                answers.push_back(made->Number(word));
            return answers;
        });
}

// Those that are set beside a single search and beside many.
void AddPeers(Measure<Numbers>& measure, const Words& entered, const Words& words)
{
#if HAVE_MARISA
    AddHit<Marisa>(measure, "marisa", entered, words);
#endif
#if HAVE_ICU
    AddHit<BytesTrie>(measure, "icu", entered, words);
#endif
    AddHit<Unordered>(measure, "unordered", entered, words);
}

void RegisterHit(const std::string& name, const Words& entered, const Words& words)
{
    Measure<Numbers> measure("hit", name, {Amount::ITEMS, words.size()});
    AddHit<ByWeight>(measure, "ostra", entered, words);
    AddHit<Ostra>(measure, "as_added", entered, words);
    AddPeers(measure, entered, words);
#if HAVE_ABSL
    AddHit<Mapped<absl::flat_hash_map<std::string, unsigned>>>(measure, "absl", entered, words);
#endif
}

void AddHitMany(Measure<Numbers>& measure, const Words& entered, const Words& words)
{
    Lasting<ByWeight> made = std::make_shared<ByWeight>(entered);
    Lasting<Pointers> keys = std::make_shared<Pointers>();
    for (const std::string& word : words)
        keys->push_back(word.c_str());
    Lasting<Numbers> found = std::make_shared<Numbers>(words.size());
    measure.Side(
        "ostra",
        [made, keys, found] {
            made->FindAll(*keys, found.get());
            return found->back();
        },
        [made, keys, found] {
            made->FindAll(*keys, found.get());
            return *found;
        });
}

void RegisterHitMany(const std::string& name, const Words& entered, const Words& words)
{
    Measure<Numbers> measure("hit_many", name, {Amount::ITEMS, words.size()});
    AddHitMany(measure, entered, words);
    AddHit<ByWeight>(measure, "single", entered, words);
    AddPeers(measure, entered, words);
}

template <class Made>
void AddBuild(Measure<Numbers>& measure, const std::string& name, const char* side,
              const Words& words)
{
    const auto work = [&words] {
        return std::make_unique<Made>(words);
    };
    if (name == "words.en")
        Job::RegisterPeak(std::string("build_mib/") + side + "/" + name, work);
    measure.Side(side, work, [&words] {
        Made made(words);
        Numbers answers;
        for (const std::string& word : words)
            answers.push_back(made.Number(word));
        return answers;
    });
}

void RegisterBuild(const std::string& name, const Words& words)
{
    Measure<Numbers> measure("build", name, {Amount::ITEMS, words.size()});
    AddBuild<Ostra>(measure, name, "ostra", words);
    AddBuild<ByWeight>(measure, name, "by_weight", words);
#if HAVE_MARISA
    AddBuild<Marisa>(measure, name, "marisa", words);
#endif
#if HAVE_ICU
    AddBuild<BytesTrie>(measure, name, "icu", words);
#endif
    AddBuild<Unordered>(measure, name, "unordered", words);
}

// The sum of what is taken, and all of it.
template <class Made, class All>
void AddTaken(Measure<Words>& measure, const char* side, Lasting<Made>& made, const Words& words,
              All all)
{
    measure.Side(
        side,
        [made, all] {
            std::uint64_t sum = 0;
            all(*made, [&sum](const char* key, size_t length, unsigned number) {
                sum += static_cast<unsigned char>(key[length - 1]) + number;
            });
            return sum;
        },
        [made, all, &words] {
            Words answers(words.size());
            all(*made, [&](const char* key, size_t length, unsigned number) {
                answers.at(made->NumberOf(number)).assign(key, length);
            });
            return answers;
        });
}

template <class Made>
void AddIterate(Measure<Words>& measure, const char* side, const Words& words)
{
    Lasting<Made> made = std::make_shared<Made>(words);
    AddTaken(measure, side, made, words, [](Made& from, auto take) { from.Walk(take); });
}

void RegisterIterate(const std::string& name, const Words& words)
{
    Measure<Words> measure("iterate", name, {Amount::ITEMS, words.size()});
    AddIterate<Ostra>(measure, "ostra", words);
    AddIterate<Ordered>(measure, "map", words);
#if HAVE_MARISA
    AddIterate<Marisa>(measure, "marisa", words);
#endif
}

void RegisterGetAll(const std::string& name, const Words& words)
{
    Measure<Words> measure("get_all", name, {Amount::ITEMS, words.size()});
    Lasting<Ostra> made = std::make_shared<Ostra>(words);
    AddTaken(measure, "ostra", made, words, [](Ostra& from, auto take) { from.TakeAll(take); });
    AddIterate<Ostra>(measure, "iterator", words);
    AddIterate<Ordered>(measure, "map", words);
#if HAVE_MARISA
    AddIterate<Marisa>(measure, "marisa", words);
#endif
}

template <class Made>
void AddSize(const char* side, const Words& words)
{
    Job::RegisterCost(std::string("bytes_key/") + side + "/words.en", [&words] {
        return static_cast<double>(Made(words).Bytes()) / static_cast<double>(words.size());
    });
}

void RegisterSize(const Words& words)
{
    AddSize<Ostra>("ostra", words);
    Job::RegisterCost("bytes_key/limit/words.en", [] { return 10.6; });
#if HAVE_MARISA
    AddSize<Marisa>("marisa", words);
#endif
    AddSize<Unordered>("unordered", words);
}

// ---- Frequent words -----------------------------------------------------------------------

template <class Made>
void AddFrequent(Measure<Numbers>& measure, const char* side, const Words& text,
                 const Words& entered, const Numbers& weights = {})
{
    Lasting<Made> made = std::make_shared<Made>(entered, weights);
    measure.Side(
        side,
        [&text, made] {
            std::uint64_t sum = 0;
            for (const std::string& word : text)
                sum += made->Find(word);
            return sum;
        },
        [&text, &entered, made] {
            Numbers answers; // whether each word was found
            for (const std::string& word : text)
                answers.push_back(entered.at(made->Number(word)) == word);
            return answers;
        });
}

void RegisterFrequent(const Words& text, const Words& dictionary)
{
    const Weighted all = ByFrequency(text, dictionary);
    Words ordered = all.words;
    std::sort(ordered.begin(), ordered.end());
    Words shuffled = ordered;
    Inputs::Shuffle(shuffled);
    Measure<Numbers> measure("frequent", "faq.de", {Amount::ITEMS, text.size()});
    AddFrequent<ByWeight>(measure, "ostra", text, all.words, all.weights);
    AddFrequent<Ostra>(measure, "first", text, all.words);
    AddFrequent<Ostra>(measure, "in_order", text, ordered);
    AddFrequent<Ostra>(measure, "shuffled", text, shuffled);
#if HAVE_MARISA
    AddFrequent<Marisa>(measure, "marisa", text, all.words, all.weights);
#endif
#if HAVE_ICU
    AddFrequent<BytesTrie>(measure, "icu", text, all.words);
#endif
}

// ---- Large lists --------------------------------------------------------------------------

// Seconds a key.
double AddingTime(const WideWords& words, size_t count, bool literal)
{
    const auto start = std::chrono::steady_clock::now();
    CT_CompList list(CT_CompList::es_Short, 4, 0, 1, GROWTH, 0);
    if (literal)
        CompListPeer::Scan(list);
    for (size_t n = 0; n < count; ++n)
        list.b_Add(Key(words[n]), static_cast<unsigned>(n));
    const std::chrono::duration<double> time = std::chrono::steady_clock::now() - start;
    return time.count() / static_cast<double>(count);
}

// What a key would cost at the full size: the line of least squares through the times a key at
// half of the largest size, a quarter more and so on.
double Extrapolated(const WideWords& words, size_t largest, bool literal)
{
    largest = std::min(largest, words.size());
    double sum = 0, costs = 0, squares = 0, products = 0;
    for (const size_t count : {largest / 4, largest / 2, largest}) {
        const auto x = static_cast<double>(count);
        const double cost = AddingTime(words, count, literal);
        sum += x / 3;
        costs += cost / 3;
        squares += x * x / 3;
        products += x * cost / 3;
    }
    const double slope = (products - sum * costs) / (squares - sum * sum);
    return costs + slope * (static_cast<double>(words.size()) - sum);
}

// Each side's fit is made once and stands for all runs.
void RegisterAdd(const WideWords& words)
{
    Job::Register("add/ostra/heads.shuf", {Amount::ITEMS, words.size()}, [&words] {
        CT_CompList list(CT_CompList::es_Short, 4, 0, 1, GROWTH, 0);
        return Build(words, &list);
    });
    Job::RegisterCost("add/b_add/heads.shuf", [&words] {
        static const double cost = Extrapolated(words, 80000, false);
        return cost;
    });
    Job::RegisterCost("add/literal/heads.shuf", [&words] {
        static const double cost = Extrapolated(words, 6000, true);
        return cost;
    });
}

// Both directions of a dictionary.
void RegisterDictionary(const WideWords& sources, const WideWords& targets)
{
    Job::Register("dictionary/ostra/pairs.tsv", {Amount::ITEMS, sources.size()}, [&] {
        CT_CompList forth(CT_CompList::es_Short, 4, 0, 1, GROWTH, 0);
        CT_CompList back(CT_CompList::es_Short, 4, 0, 1, GROWTH, 0);
        return Build(sources, &forth) + Build(targets, &back);
    });
    const double allowed = 3.0 / static_cast<double>(sources.size());
    Job::RegisterCost("dictionary/limit/pairs.tsv", [allowed] { return allowed; });
}

Words Tenth(const Words& words)
{
    Words some;
    for (size_t n = 0; n < words.size(); n += 10)
        some.push_back(words[n]);
    return some;
}

Words Shuffled(Words words)
{
    Inputs::Shuffle(words);
    return words;
}
} // namespace

int main(int argc, char** argv)
{
    const Words words = Inputs::Lines("words.en");
    const Words shuffled = Shuffled(words);
    const Words few = Tenth(words);
    const Words fewShuffled = Shuffled(few);
    RegisterHit("words.en", words, shuffled);
    RegisterHit("words.en.shuf", Shuffled(shuffled), shuffled);
    RegisterHit("words.en.tenth", few, fewShuffled);
    RegisterHitMany("words.en", words, shuffled);
    RegisterHitMany("words.en.tenth", few, fewShuffled);
    RegisterBuild("words.en", words);
    RegisterBuild("words.en.tenth", few);
    RegisterBuild("words.en.shuf", shuffled);
    RegisterBuild("words.en.shuf.tenth", fewShuffled);
    RegisterIterate("words.en", words);
    RegisterIterate("words.en.shuf", shuffled);
    RegisterIterate("words.en.tenth", few);
    RegisterGetAll("words.en", words);
    RegisterGetAll("words.en.shuf", shuffled);
    RegisterGetAll("words.en.tenth", few);
    RegisterSize(words);

    const Words text = WordsOf(Inputs::Bytes("faq.de"));
    RegisterFrequent(text, Inputs::Lines("words.de"));

    WideWords heads = Inputs::UnitLines("heads");
    Inputs::Shuffle(heads);
    RegisterAdd(heads);
    WideWords sources, targets;
    for (const std::string& pair : Inputs::Lines("pairs.tsv")) {
        const size_t tab = pair.find('\t');
        sources.push_back(Inputs::ToUnits(pair.substr(0, tab)));
        targets.push_back(Inputs::ToUnits(pair.substr(tab + 1)));
    }
    RegisterDictionary(sources, targets);
    return Job::Run(argc, argv, OSTRA_ABSENT_PEERS);
}

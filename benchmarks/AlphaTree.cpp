// benchmarks/AlphaTree.cpp: the alphabet tree and the cache of strings.
//
// A find looks up all words of a list in an order of chance. words.en was entered in the order of
// the list, words.en.shuf in that of the searches, which leaves what belongs together far apart in
// memory. libdatrie has its keys as its own characters, converted beforehand.
//
// The cache goes through the words of a text: a word that isn't there is put in. Its rows of four
// forget another word than a list in the order of use does, so the shares of hits differ a little
// (both have about the same room); the values found are compared. The peer is what one writes for
// the purpose: a std::list in the order of use, and an unordered map of its places.
#include <Ostra/Containers/AlphaTree.h>
#include <Ostra/Containers/StringCache.h>

#include <cstdint>
#include <list>
#include <map>
#include <string>
#include <unordered_map>
#include <vector>

#if HAVE_DATRIE
#include <datrie/trie.h>
#endif

#include "Support/Find.h"
#include "Support/Inputs.h"
#include "Support/Job.h"

namespace
{
typedef std::vector<std::string> Words;

#if HAVE_DATRIE
std::vector<std::vector<AlphaChar>>* DatrieKeys(const Words& words)
{
    auto* keys = new std::vector<std::vector<AlphaChar>>;
    for (const std::string& word : words) {
        keys->emplace_back();
        for (const char c : word)
            keys->back().push_back(static_cast<unsigned char>(c));
        keys->back().push_back(0);
    }
    return keys;
}

void AddDatrie(Measure<Numbers>& measure, const Words& entered, const Words& words)
{
    AlphaMap* alphabet = alpha_map_new();
    alpha_map_add_range(alphabet, 1, 255);
    Trie* trie = trie_new(alphabet);
    TrieData number = 0;
    for (const std::vector<AlphaChar>& key : *DatrieKeys(entered))
        trie_store(trie, key.data(), number++);
    const auto& keys = *DatrieKeys(words);
    AddFind(measure, "datrie", keys, [trie](const std::vector<AlphaChar>& key) {
        TrieData value = -1;
        trie_retrieve(trie, key.data(), &value);
        return static_cast<unsigned>(value);
    });
}
#endif

// What is made here lasts as long as the program.
void RegisterFind(const std::string& name, const Words& entered, const Words& words)
{
    Measure<Numbers> measure("find", name, {Amount::ITEMS, words.size()});
    auto* tree = new CT_AlphaTree;
    auto* map = new std::map<std::string, unsigned>;
    for (unsigned n = 0; n < entered.size(); ++n) {
        tree->v_Add(entered[n].c_str(), n);
        (*map)[entered[n]] = n;
    }
    AddFind(measure, "ostra", words,
            [tree](const std::string& word) { return tree->n_Search(word.c_str()); });
#if HAVE_DATRIE
    AddDatrie(measure, entered, words);
#endif
    AddFind(measure, "map", words,
            [map](const std::string& word) { return map->find(word)->second; });
}

// ---- Cache --------------------------------------------------------------------------------

typedef std::vector<std::u16string> Texts;
constexpr unsigned ROOM = 1000;

class OstraCache
{
public:
    const unsigned short* Get(const std::u16string& word)
    {
        const auto* key = reinterpret_cast<const unsigned short*>(word.c_str());
        if (const unsigned short* value = cache->qcuz_Lookup(key))
            return value;
        cache->v_Insert(key, key);
        return key;
    }

private:
    CT_StringCache* cache = new CT_StringCache(ROOM, 4);
};

class ListCache
{
public:
    const unsigned short* Get(const std::u16string& word)
    {
        const auto found = state->places.find(word);
        if (found != state->places.end()) {
            state->entries.splice(state->entries.begin(), state->entries, found->second);
            return Text(found->second->second);
        }
        if (state->entries.size() == ROOM) {
            state->places.erase(state->entries.back().first);
            state->entries.pop_back();
        }
        state->entries.push_front({word, word});
        state->places[word] = state->entries.begin();
        return Text(state->entries.front().second);
    }

private:
    typedef std::list<std::pair<std::u16string, std::u16string>> Entries;
    struct State
    {
        Entries entries;
        std::unordered_map<std::u16string, Entries::iterator> places;
    };
    static const unsigned short* Text(const std::u16string& text)
    {
        return reinterpret_cast<const unsigned short*>(text.c_str());
    }

    State* state = new State;
};

template <class Cache>
void AddCache(Measure<Texts>& measure, const char* side, const Texts& words)
{
    measure.Side(
        side,
        [&words, cache = Cache()]() mutable {
            std::uint64_t sum = 0;
            for (const std::u16string& word : words)
                sum += *cache.Get(word);
            return sum;
        },
        [&words, cache = Cache()]() mutable {
            Texts values;
            for (const std::u16string& word : words)
                values.push_back(reinterpret_cast<const char16_t*>(cache.Get(word)));
            return values;
        });
}

Texts WordsOf(const std::u16string& text)
{
    Texts words;
    for (size_t from = 0; from < text.size();) {
        const size_t end = std::min(text.find_first_of(u" \n", from), text.size());
        if (end > from)
            words.push_back(text.substr(from, end - from));
        from = end + 1;
    }
    return words;
}

template <class List>
List Tenth(const List& words)
{
    List some;
    for (size_t n = 0; n < words.size(); n += 10)
        some.push_back(words[n]);
    return some;
}
} // namespace

int main(int argc, char** argv)
{
    const Words words = Inputs::Lines("words.en");
    Words shuffled = words;
    Inputs::Shuffle(shuffled);
    const Words few = Tenth(words);
    Words fewShuffled = few;
    Inputs::Shuffle(fewShuffled);
    RegisterFind("words.en", words, shuffled);
    RegisterFind("words.en.tenth", few, fewShuffled);
    RegisterFind("words.en.shuf", shuffled, shuffled);
    std::vector<Texts> texts;
    for (const char* name : {"faq.de", "faq.ru"})
        texts.push_back(WordsOf(Inputs::Units(name)));
    const char* const names[] = {"faq.de", "faq.ru"};
    for (size_t n = 0; n < texts.size(); ++n) {
        Measure<Texts> measure("cache", names[n], {Amount::ITEMS, texts[n].size()});
        AddCache<OstraCache>(measure, "ostra", texts[n]);
        AddCache<ListCache>(measure, "list", texts[n]);
    }
    return Job::Run(argc, argv, OSTRA_ABSENT_PEERS);
}

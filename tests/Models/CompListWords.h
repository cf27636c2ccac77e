// tests/Models/CompListWords.h: random words and forms of lists.
#pragma once

#include <Ostra/CompList/CompList.h>

#include <gtest/gtest.h>

#include <Models/CompListKey.h>

#include <random>
#include <string>
#include <vector>

typedef CT_CompList::et_ElementSize ElementSize;
typedef std::vector<unsigned> Word; // elements without the zero
typedef std::mt19937 Random;

inline std::string Bytes(const Word& word, unsigned element)
{
    std::string key;
    for (unsigned index = 0; index <= word.size(); ++index)
        for (unsigned n = 0; n < element; ++n)
            key += static_cast<char>((index < word.size() ? word[index] : 0) >> 8 * n);
    return key;
}

inline bool IsReserved(unsigned element)
{
    return element == 0 || element == 10 || element == 13 || element == 25 || element == 26;
}

// An element of the size that keys may hold: any of a small alphabet, sometimes any at all.
inline unsigned Element(Random& random, unsigned size, unsigned alphabet)
{
    for (;;) {
        unsigned element = random() % 40 ? 'a' + random() % alphabet : random();
        if (size == 1)
            element &= 0xFF;
        else if (size == 2)
            element &= 0xFFFF;
        else if (element < 0x10000) // four-byte keys hold no unit of 0
            element |= element << 16;
        if (!IsReserved(element) && (size < 4 || (element & 0xFFFF && element >> 16)))
            return element;
    }
}

inline std::vector<Word> Words(Random& random, unsigned size, unsigned count, unsigned alphabet,
                               unsigned length)
{
    std::vector<Word> words;
    for (unsigned index = 0; index < count; ++index) {
        Word word;
        // Half of the words begin like an earlier one.
        if (!words.empty() && random() % 2) {
            word = words[random() % words.size()];
            word.resize(random() % (word.size() + 1));
        }
        const unsigned more = random() % (length + 1);
        for (unsigned added = 0; added < more; ++added)
            word.push_back(Element(random, size, alphabet));
        words.push_back(word);
    }
    return words;
}

// The block of a small list with elements of its stream, behind head and jumps, changed for those
// that mean most.
inline std::string DamagedBlock(Random& random, unsigned element, unsigned round)
{
    constexpr unsigned STREAM = 132;
    CT_CompList list(ElementSize(element), 2, 0, round & 2, 128, 0);
    for (const Word& word : Words(random, element, 12, 4, 5))
        list.b_Add(Bytes(word, element).data(), round);
    std::string bytes = Block(list);
    for (unsigned changes = 1 + random() % 3; changes > 0; --changes)
        bytes[STREAM + random() % (bytes.size() - STREAM)] =
            "\x0A\x0D\x19\x1A\0ab\x05"[random() % 8];
    return bytes;
}

struct Form
{
    unsigned element, handle;
    bool empty, longOffsets;
};

inline std::vector<Form> Forms()
{
    std::vector<Form> forms;
    for (unsigned element : {1u, 2u, 4u})
        for (unsigned handle : {0u, 1u, 2u, 4u})
            for (int flags = 0; flags < 4; ++flags)
                forms.push_back({element, handle, (flags & 1) != 0, (flags & 2) != 0});
    return forms;
}

inline testing::Message Trace(const Form& form, unsigned seed)
{
    return testing::Message() << "element " << form.element << " handle " << form.handle
                              << " empty " << form.empty << " long " << form.longOffsets
                              << " OSTRA_SEED=" << seed;
}

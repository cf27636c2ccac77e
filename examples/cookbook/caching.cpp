// examples/cookbook/caching.cpp: answers that are dear to find are kept for a while.
#include <Ostra/Ostra.h>

#include <cstdio>

static unsigned asked = 0;

// Stands for a search in a file: the word in upper case.
static void Translate(const unsigned short* word, CT_UString& answer)
{
    ++asked;
    answer.v_Set(word);
    answer.vv_ToUpper();
}

static void Show(CT_StringCache& cache, const unsigned short* word)
{
    const unsigned short* value = cache.qcuz_Lookup(word);
    if (!value) {
        CT_UString answer;
        Translate(word, answer);
        cache.v_Insert(word, answer.qcuz_Get());
        value = cache.qcuz_Lookup(word);
    }
    // The value is the cache's own, and goes with its entry: a string keeps a copy.
    const CT_UString kept(value);
    const CT_CString bytes(&kept);
    std::printf("%s\n", bytes.qccz_Get());
}

int main()
{
    CT_StringCache cache;
    const char16_t* const text[] = {u"one", u"two", u"one", u"one", u"two"};
    for (const char16_t* word : text)
        Show(cache, qcuz_Text(word));
    std::printf("asked %u times, in a cache of %u slots\n", asked, cache.n_GetSize());
    return CT_ErrorManager::spco_Get()->b_IsSetError();
}

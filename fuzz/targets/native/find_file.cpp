// fuzz/targets/native/find_file.cpp: patterns of file names. A name fits as by trying every way; a
// search of a folder finds the names that fit, each once.
//
// Input: a byte of switches, the pattern as a piece, the name.
#include "Files/Wildcard.h"
#include "Support/Folder.h"
#include "Support/Input.h"
#include "winapi/Files/FileSearch.h"

#include <set>

namespace
{
using namespace winapi;

// What `*` and points at the end stand for, when nothing is left of the name.
bool IsNothing(const std::u16string& pattern, std::size_t at)
{
    return pattern.find_first_not_of(u"*.", at) == std::u16string::npos;
}

// By trying every way.
bool Fits(const std::u16string& name, const std::u16string& pattern, std::size_t n = 0,
          std::size_t p = 0)
{
    if (p == pattern.size())
        return n == name.size();
    const char16_t c = pattern[p];
    if (c == u'*')
        return Fits(name, pattern, n, p + 1) || (n < name.size() && Fits(name, pattern, n + 1, p));
    if (c == u'?' && (n == name.size() || name[n] == u'.') && Fits(name, pattern, n, p + 1))
        return true;
    if (c == u'.' && n == name.size())
        return IsNothing(pattern, p);
    return n < name.size() && (c == u'?' || c == name[n]) && Fits(name, pattern, n + 1, p + 1);
}

// Of few characters, so that much fits.
std::u16string Few(const std::string& bytes, const std::u16string& of)
{
    std::u16string text;
    for (const char c : bytes)
        text += of[static_cast<unsigned char>(c) % of.size()];
    return text;
}

WideView View(const std::u16string& text)
{
    return WideView(reinterpret_cast<const WCHAR*>(text.data()), text.size());
}

const std::u16string NAMES[] = {u"a", u"b.", u"ab", u"a.b", u"ab.a", u"a.b.a", u"aaaa.bb", u".a"};

void MakeFolder()
{
    static const bool made = [] {
        std::filesystem::create_directory(Folder() / "names");
        for (const std::u16string& name : NAMES)
            WriteBytes(Folder() / "names" / name, "");
        return true;
    }();
    REQUIRE(made);
}

// A search without wildcards is for the one file of that name.
void Search(const std::u16string& pattern)
{
    if (pattern.find_first_of(u"*?") == std::u16string::npos)
        return;
    MakeFolder();
    const std::u16string path = (Folder() / "names").u16string() + u"/" + pattern;
    std::multiset<std::u16string> found, wanted;
    WIN32_FIND_DATAW data;
    const HANDLE search = FindFirstFileW(reinterpret_cast<LPCWSTR>(path.c_str()), &data);
    if (search != INVALID_HANDLE_VALUE) {
        do
            found.insert(reinterpret_cast<const char16_t*>(data.cFileName));
        while (FindNextFileW(search, &data));
        REQUIRE(FindClose(search));
    }
    for (const std::u16string& name : NAMES)
        if (FitsPattern(View(name), View(pattern)))
            wanted.insert(name);
    found.erase(u".");
    found.erase(u"..");
    REQUIRE(found == wanted);
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    Input input(data, size);
    const unsigned switches = input.Byte();
    const std::u16string pattern = Few(input.Piece(40), u"ab*?.*");
    const std::u16string name = Few(input.Rest(), u"ab.a");
    const bool fits = FitsPattern(View(name), View(pattern));
    // Every way takes a time that grows with the power of the runs.
    if (pattern.size() <= 8 && name.size() <= 12)
        REQUIRE(fits == Fits(name, pattern));
    if ((switches & 15) == 0)
        Search(pattern);
    return 0;
}

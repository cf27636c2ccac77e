// benchmarks/Strings.cpp: strings that are built character by character, made of a word, copied,
// compared and searched.
//
// Strings of UTF-16 units beside those of Qt and ICU, strings of bytes (append8, find8) beside
// those of GLib, Qt and the C and C++ libraries. Making and copying include the end of the string.
// ICU keeps a word of up to 27 units in the string itself, and copies it instead of sharing it. A
// word is compared with the next one of the list. What is searched for, a text of twelve characters
// or a single one, stands at the very end. Rates of searches are those of the text in memory.
#include <Ostra/String/CString.h>
#include <Ostra/String/UString.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#if HAVE_ICU
#include <unicode/unistr.h>
#endif
#if HAVE_QT
#include <QByteArray>
#include <QString>
#endif
#if HAVE_GLIB
#include <glib.h>
#endif

#include "Support/Inputs.h"
#include "Support/Job.h"

namespace
{
constexpr size_t APPENDED = 200000;
constexpr size_t WORDS = 2000; // with their strings they stay in the cache

const unsigned short* Wide(const std::u16string& text)
{
    return reinterpret_cast<const unsigned short*>(text.data());
}

unsigned Size(const std::u16string& text)
{
    return static_cast<unsigned>(text.size());
}

std::u16string Text(const CT_UString& text)
{
    return {reinterpret_cast<const char16_t*>(text.qcuz_Get()), text.vn_GetLength()};
}

std::string Text(const CT_CString& text)
{
    return {text.qccz_Get(), text.vn_GetLength()};
}

#if HAVE_QT
std::u16string Text(const QString& text)
{
    return text.toStdU16String();
}
#endif

#if HAVE_ICU
std::u16string Text(const icu::UnicodeString& text)
{
    return {text.getBuffer(), static_cast<size_t>(text.length())};
}
#endif

#if HAVE_GLIB
struct GlibString
{
    GlibString() : string(g_string_new(nullptr)) {}
    ~GlibString() { g_string_free(string, TRUE); }
    GlibString(const GlibString&) = delete;
    GlibString& operator=(const GlibString&) = delete;

    GString* string;
};

std::string Text(const GlibString& text)
{
    return {text.string->str, text.string->len};
}
#endif

#if HAVE_QT
std::string Text(const QByteArray& text)
{
    return text.toStdString();
}
#endif

std::string Text(const std::string& text)
{
    return text;
}

// ---- Character by character -------------------------------------------------------------------

// Append(string, character) is called for all of the text.
template <class String, class Characters, class Append>
void AppendSide(Measure<Characters>& measure, const char* side, const Characters& text,
                Append append)
{
    const auto fill = [&text, append](String& string) {
        for (const auto c : text)
            append(string, c);
    };
    measure.Side(
        side,
        [fill] {
            String string;
            fill(string);
            benchmark::DoNotOptimize(string);
            return 0;
        },
        [fill] {
            String string;
            fill(string);
            return Characters(Text(string));
        });
}

void RegisterAppend(const std::string& name, const std::u16string& text)
{
    Measure<std::u16string> measure("append", name, {Amount::ITEMS, text.size()});
    AppendSide<CT_UString>(measure, "ostra", text, [](CT_UString& string, char16_t c) {
        string.v_Append(static_cast<unsigned short>(c));
    });
#if HAVE_QT
    AppendSide<QString>(measure, "qt", text,
                        [](QString& string, char16_t c) { string.append(QChar(c)); });
#endif
#if HAVE_ICU
    AppendSide<icu::UnicodeString>(
        measure, "icu", text, [](icu::UnicodeString& string, char16_t c) { string.append(c); });
#endif
}

void RegisterAppend8(const std::string& name, const std::string& text)
{
    Measure<std::string> measure("append8", name, {Amount::ITEMS, text.size()});
    AppendSide<CT_CString>(measure, "ostra", text,
                           [](CT_CString& string, char c) { string.v_Append(c); });
#if HAVE_GLIB
    AppendSide<GlibString>(measure, "glib", text,
                           [](GlibString& string, char c) { g_string_append_c(string.string, c); });
#endif
#if HAVE_QT
    AppendSide<QByteArray>(measure, "qt", text,
                           [](QByteArray& string, char c) { string.append(c); });
#endif
    AppendSide<std::string>(measure, "std", text,
                            [](std::string& string, char c) { string.push_back(c); });
}

// ---- Words ------------------------------------------------------------------------------------

struct Words
{
    std::vector<std::u16string> words;
    std::unique_ptr<CT_UString[]> ostra; // a vector would copy them by value, with no hold
#if HAVE_QT
    std::vector<QString> qt;
#endif
#if HAVE_ICU
    std::vector<icu::UnicodeString> icu;
#endif
};

Words ReadWords()
{
    Words all;
    // Runs of neighbours out of the whole list.
    const std::vector<std::u16string> lines = Inputs::UnitLines("words.en");
    const size_t step = std::max<size_t>(1, lines.size() / WORDS);
    for (size_t at = 0; at < lines.size(); ++at)
        if (at / 100 % step == 0)
            all.words.push_back(lines[at]);
    all.ostra = std::make_unique<CT_UString[]>(all.words.size());
    CT_UString* next = all.ostra.get();
    for (const std::u16string& word : all.words) {
        next++->v_Set(Wide(word), Size(word));
#if HAVE_QT
        all.qt.push_back(QString::fromUtf16(word.data(), Size(word)));
#endif
#if HAVE_ICU
        all.icu.emplace_back(word.data(), static_cast<int32_t>(word.size()));
#endif
    }
    return all;
}

// Make(n) is the string number n.
template <class Make>
void MakeSide(Measure<std::vector<std::u16string>>& measure, const char* side, size_t count,
              Make make)
{
    measure.Side(
        side,
        [count, make] {
            for (size_t n = 0; n < count; ++n) {
                auto string = make(n);
                benchmark::DoNotOptimize(string);
            }
            return 0;
        },
        [count, make] {
            std::vector<std::u16string> texts;
            for (size_t n = 0; n < count; ++n)
                texts.push_back(Text(make(n)));
            return texts;
        });
}

void RegisterMake(const Words& all)
{
    const std::vector<std::u16string>& words = all.words;
    Measure<std::vector<std::u16string>> measure("make", "words.en", {Amount::ITEMS, words.size()});
    MakeSide(measure, "ostra", words.size(),
             [&](size_t n) { return CT_UString(Wide(words[n]), Size(words[n])); });
#if HAVE_QT
    MakeSide(measure, "qt", words.size(), [&](size_t n) {
        return QString(reinterpret_cast<const QChar*>(words[n].data()), Size(words[n]));
    });
#endif
#if HAVE_ICU
    MakeSide(measure, "icu", words.size(), [&](size_t n) {
        return icu::UnicodeString(words[n].data(), static_cast<int32_t>(words[n].size()));
    });
#endif
}

void RegisterCopy(const Words& all)
{
    const size_t count = all.words.size();
    Measure<std::vector<std::u16string>> measure("copy", "words.en", {Amount::ITEMS, count});
    MakeSide(measure, "ostra", count, [&](size_t n) { return CT_UString(&all.ostra[n]); });
#if HAVE_QT
    MakeSide(measure, "qt", count, [&](size_t n) { return QString(all.qt[n]); });
#endif
#if HAVE_ICU
    MakeSide(measure, "icu", count, [&](size_t n) { return icu::UnicodeString(all.icu[n]); });
#endif
}

// Compare(n) is the order of words n and n + 1.
template <class Compare>
void CompareSide(Measure<std::vector<int>>& measure, const char* side, size_t count,
                 Compare compare)
{
    measure.Side(
        side,
        [count, compare] {
            int sum = 0;
            for (size_t n = 0; n + 1 < count; ++n)
                sum += compare(n);
            return sum;
        },
        [count, compare] {
            std::vector<int> signs;
            for (size_t n = 0; n + 1 < count; ++n)
                signs.push_back((compare(n) > 0) - (compare(n) < 0));
            return signs;
        });
}

void RegisterCompare(const Words& all)
{
    const size_t count = all.words.size();
    Measure<std::vector<int>> measure("compare", "words.en", {Amount::ITEMS, count});
    CompareSide(measure, "ostra", count,
                [&](size_t n) { return all.ostra[n].vi_Compare(&all.ostra[n + 1]); });
#if HAVE_QT
    CompareSide(measure, "qt", count, [&](size_t n) { return all.qt[n].compare(all.qt[n + 1]); });
#endif
#if HAVE_ICU
    CompareSide(measure, "icu", count,
                [&](size_t n) { return all.icu[n].compare(all.icu[n + 1]); });
#endif
}

// ---- Searches ---------------------------------------------------------------------------------

struct Searched
{
    explicit Searched(const char* input) : name(input), text(Inputs::Units(input))
    {
        // Two pieces that stand together nowhere else, and a unit that no text has.
        find = text.substr(text.size() / 3, 6) + text.substr(text.size() / 2, 6);
        text += find + unit;
        ostra.v_Set(Wide(text), Size(text));
        ostra_find.v_Set(Wide(find), Size(find));
#if HAVE_QT
        qt = QString::fromUtf16(text.data(), Size(text));
        qt_find = QString::fromUtf16(find.data(), Size(find));
#endif
#if HAVE_ICU
        icu = icu::UnicodeString(text.data(), static_cast<int32_t>(text.size()));
        icu_find = icu::UnicodeString(find.data(), static_cast<int32_t>(find.size()));
#endif
    }
    Searched(const Searched&) = delete;
    Searched& operator=(const Searched&) = delete;

    std::string name;
    char16_t unit = 0xE000;
    std::u16string text;
    std::u16string find;
    CT_UString ostra;
    CT_UString ostra_find;
#if HAVE_QT
    QString qt;
    QString qt_find;
#endif
#if HAVE_ICU
    icu::UnicodeString icu;
    icu::UnicodeString icu_find;
#endif
};

using Places = std::vector<size_t>;

template <class Find>
void FindSide(Measure<Places>& measure, const char* side, Find find)
{
    measure.Side(side, find, [find] { return Places{static_cast<size_t>(find())}; });
}

void RegisterFind(const Searched& in)
{
    Measure<Places> measure("find", in.name, {Amount::BYTES, in.text.size() * 2});
    FindSide(measure, "ostra", [&] { return in.ostra.vn_Find(&in.ostra_find); });
#if HAVE_QT
    FindSide(measure, "qt", [&] { return in.qt.indexOf(in.qt_find); });
#endif
#if HAVE_ICU
    FindSide(measure, "icu", [&] { return in.icu.indexOf(in.icu_find); });
#endif
}

void RegisterFindUnit(const Searched& in)
{
    Measure<Places> measure("find_unit", in.name, {Amount::BYTES, in.text.size() * 2});
    FindSide(measure, "ostra",
             [&] { return in.ostra.vn_Find(static_cast<unsigned short>(in.unit)); });
#if HAVE_QT
    FindSide(measure, "qt", [&] { return in.qt.indexOf(QChar(in.unit)); });
#endif
#if HAVE_ICU
    FindSide(measure, "icu", [&] { return in.icu.indexOf(in.unit); });
#endif
}

struct Searched8
{
    explicit Searched8(const char* input) : name(input), text(Inputs::Bytes(input))
    {
        find = text.substr(text.size() / 3, 6) + text.substr(text.size() / 2, 6);
        text += find;
        ostra.v_Set(text.data(), static_cast<unsigned>(text.size()), 65001);
        ostra_find.v_Set(find.data(), static_cast<unsigned>(find.size()), 65001);
#if HAVE_QT
        qt = QByteArray(text.data(), static_cast<qsizetype>(text.size()));
        qt_find = QByteArray(find.data(), static_cast<qsizetype>(find.size()));
#endif
    }
    Searched8(const Searched8&) = delete;
    Searched8& operator=(const Searched8&) = delete;

    std::string name;
    std::string text;
    std::string find;
    CT_CString ostra;
    CT_CString ostra_find;
#if HAVE_QT
    QByteArray qt;
    QByteArray qt_find;
#endif
};

void RegisterFind8(const Searched8& in)
{
    Measure<Places> measure("find8", in.name, {Amount::BYTES, in.text.size()});
    FindSide(measure, "ostra", [&] { return in.ostra.vn_Find(&in.ostra_find); });
    FindSide(measure, "strstr",
             [&] { return std::strstr(in.text.c_str(), in.find.c_str()) - in.text.c_str(); });
#if HAVE_QT
    FindSide(measure, "qt", [&] { return in.qt.indexOf(in.qt_find); });
#endif
}
} // namespace

int main(int argc, char** argv)
{
    const std::u16string text = Inputs::Units("mixed").substr(0, APPENDED);
    const std::u16string tenth = text.substr(0, text.size() / 10);
    RegisterAppend("mixed", text);
    RegisterAppend("mixed.tenth", tenth);
    const std::string bytes = Inputs::Bytes("mixed").substr(0, APPENDED);
    const std::string bytesTenth = bytes.substr(0, bytes.size() / 10);
    RegisterAppend8("mixed", bytes);
    RegisterAppend8("mixed.tenth", bytesTenth);

    const Words words = ReadWords();
    RegisterMake(words);
    RegisterCopy(words);
    RegisterCompare(words);

    std::vector<std::unique_ptr<Searched>> searched;
    for (const char* name : {"faq.de", "faq.ru", "faq.ja"}) {
        searched.push_back(std::make_unique<Searched>(name));
        RegisterFind(*searched.back());
        RegisterFindUnit(*searched.back());
    }
    const Searched8 searched8("faq.de");
    RegisterFind8(searched8);
    return Job::Run(argc, argv, OSTRA_ABSENT_PEERS);
}

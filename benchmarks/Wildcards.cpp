// benchmarks/Wildcards.cpp: words matched with wildcard patterns, whole and fed a character at a
// time.
//
// "match" and "match16" give a whole word to the matcher of the string classes, "feed" gives a
// CT_Pattern one character after the other and takes the last answer; beside "feed" stands what
// matches whole words too. There a word in which the pattern can't match any more is fed to its
// end; "feed_stop" asks the pattern, and stops there as the others do. All patterns are prepared.
// The input "stars" is a pattern of many runs on a text that it nearly matches.
//
// Words are bytes here, for RE2 (as Latin-1) and fnmatch (in the C locale) as well; GLib and Qt
// take characters, so that ? differs on a word that isn't ASCII. Such words are few.
#include <Ostra/Pattern/Pattern.h>
#include <Ostra/String/CString.h>
#include <Ostra/String/UString.h>

#include <fnmatch.h>

#include <deque>
#include <memory>
#include <string>
#include <vector>

#if HAVE_RE2
#include <re2/re2.h>
#endif
#if HAVE_GLIB
#include <glib.h>
#endif
#if HAVE_QT
#include <QRegularExpression>
#include <QString>
#endif

#include "Support/Inputs.h"
#include "Support/Job.h"

namespace
{
struct Input
{
    std::string name;
    std::string pattern;
    std::vector<std::string> words;
};

constexpr double TOLERANCE = 0.01;

using Answers = std::vector<bool>;

// The words of an input in the form that a side takes, and its call for one of them.
template <class Words, class Call>
void AddSide(Measure<Answers>& measure, const char* side, std::shared_ptr<Words> words, Call call)
{
    measure.Side(
        side,
        [words, call] {
            std::size_t matches = 0;
            for (const auto& word : *words)
                matches += call(word) ? 1 : 0;
            return matches;
        },
        [words, call] {
            Answers answers;
            for (const auto& word : *words)
                answers.push_back(call(word));
            return answers;
        });
}

template <class Word>
std::shared_ptr<std::deque<Word>> Converted(const std::vector<std::string>& words)
{
    auto converted = std::make_shared<std::deque<Word>>();
    for (const std::string& word : words)
        converted->emplace_back(word.c_str());
    return converted;
}

std::shared_ptr<std::deque<CT_UString>> Units(const std::vector<std::string>& words)
{
    auto units = std::make_shared<std::deque<CT_UString>>();
    for (const std::string& word : words)
        units->emplace_back(reinterpret_cast<const unsigned short*>(Inputs::ToUnits(word).c_str()));
    return units;
}

// ---- Peers that take a whole word -------------------------------------------------------------

#if HAVE_RE2
void AddRE2(Measure<Answers>& measure, const Input& input)
{
    std::string text;
    for (const char c : input.pattern)
        text += c == '*' ? ".*" : c == '?' ? "." : RE2::QuoteMeta(std::string(1, c));
    RE2::Options options(RE2::Latin1);
    options.set_dot_nl(true);
    const auto pattern = std::make_shared<RE2>(text, options);
    AddSide(measure, "re2", std::make_shared<std::vector<std::string>>(input.words),
            [pattern](const std::string& word) { return RE2::FullMatch(word, *pattern); });
}
#endif

void AddFnmatch(Measure<Answers>& measure, const Input& input)
{
    AddSide(measure, "fnmatch", std::make_shared<std::vector<std::string>>(input.words),
            [pattern = input.pattern](const std::string& word) {
                return fnmatch(pattern.c_str(), word.c_str(), 0) == 0;
            });
}

#if HAVE_GLIB
void AddGLib(Measure<Answers>& measure, const Input& input)
{
    const std::shared_ptr<GPatternSpec> pattern(g_pattern_spec_new(input.pattern.c_str()),
                                                g_pattern_spec_free);
    AddSide(measure, "glib", std::make_shared<std::vector<std::string>>(input.words),
            [pattern](const std::string& word) {
                return g_pattern_spec_match(pattern.get(), word.size(), word.c_str(), nullptr);
            });
}
#endif

#if HAVE_QT
void AddQt(Measure<Answers>& measure, const Input& input)
{
    QRegularExpression pattern(
        QRegularExpression::wildcardToRegularExpression(QString::fromStdString(input.pattern)));
    pattern.optimize();
    AddSide(measure, "qt", Converted<QString>(input.words),
            [pattern](const QString& word) { return pattern.match(word).hasMatch(); });
}
#endif

// ---- The measures -----------------------------------------------------------------------------

void RegisterMatch(const Input& input)
{
    Measure<Answers> measure("match", input.name, {Amount::ITEMS, input.words.size()}, TOLERANCE);
    const auto pattern = std::make_shared<CT_CString>(input.pattern.c_str());
    AddSide(measure, "ostra", Converted<CT_CString>(input.words),
            [pattern](const CT_CString& word) { return word.vb_Match(pattern.get()) != 0; });
#if HAVE_RE2
    AddRE2(measure, input);
#endif
    AddFnmatch(measure, input);
#if HAVE_GLIB
    AddGLib(measure, input);
#endif
}

void RegisterMatch16(const Input& input)
{
    Measure<Answers> measure("match16", input.name, {Amount::ITEMS, input.words.size()}, TOLERANCE);
    const auto pattern = std::make_shared<CT_UString>(input.pattern.c_str());
    AddSide(measure, "ostra", Units(input.words),
            [pattern](const CT_UString& word) { return word.vb_Match(pattern.get()) != 0; });
#if HAVE_QT
    AddQt(measure, input);
#endif
}

void AddTokens(CT_Pattern& pattern, const std::string& text)
{
    for (const char c : text)
        pattern.v_AddToken(c == '*'   ? CT_Pattern::ty_AnyRun
                           : c == '?' ? CT_Pattern::ty_AnyOne
                                      : CT_Pattern::ty_Character,
                           static_cast<unsigned char>(c));
}

// Feeds words to their ends, or until they can't match any more.
void RegisterFeed(const char* name, const Input& input, bool stops)
{
    Measure<Answers> measure(name, input.name, {Amount::ITEMS, input.words.size()}, TOLERANCE);
    const auto pattern = std::make_shared<CT_Pattern>();
    AddTokens(*pattern, input.pattern);
    const auto words = std::make_shared<std::vector<std::string>>(input.words);
    if (stops)
        AddSide(measure, "ostra", words, [pattern](const std::string& word) {
            int match = 0;
            pattern->v_DoMatch();
            for (const char c : word) {
                match = pattern->b_IsMatch(static_cast<unsigned char>(c));
                if (!match && !pattern->b_CanMatch())
                    break;
            }
            return match != 0;
        });
    else
        AddSide(measure, "ostra", words, [pattern](const std::string& word) {
            int match = 0;
            pattern->v_DoMatch();
            for (const char c : word)
                match = pattern->b_IsMatch(static_cast<unsigned char>(c));
            return match != 0;
        });
#if HAVE_RE2
    AddRE2(measure, input);
#endif
    AddFnmatch(measure, input);
}

std::vector<std::string> Tenth(const std::vector<std::string>& words)
{
    std::vector<std::string> tenth;
    for (std::size_t n = 0; n < words.size(); n += 10)
        tenth.push_back(words[n]);
    return tenth;
}
} // namespace

int main(int argc, char** argv)
{
    // What stays in the cache in each side's form: the measure is matching, not memory.
    const std::vector<std::string> words = Tenth(Inputs::Lines("words.en"));
    const Input inputs[] = {
        {"prefix", "un*", words},
        {"suffix", "*ing", words},
        {"inner", "*ness*", words},
        {"runs", "s*t*n*s", words},
        {"ones", "?o??er", words},
        {"runs.tenth", "s*t*n*s", Tenth(words)},
        {"stars", "*a*a*a*a*a*a*b", std::vector<std::string>(1000, std::string(40, 'a'))},
    };
    for (const Input& input : inputs) {
        RegisterMatch(input);
        RegisterMatch16(input);
        RegisterFeed("feed", input, false);
        RegisterFeed("feed_stop", input, true);
    }
    return Job::Run(argc, argv, OSTRA_ABSENT_PEERS);
}

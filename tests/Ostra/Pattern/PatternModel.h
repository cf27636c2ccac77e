// tests/Ostra/Pattern/PatternModel.h: patterns and texts as short strings, and two truths about
// them: what a pattern's tokens mean, and the machine of states with its two tables of flags.
#pragma once

#include <Ostra/Pattern/Pattern.h>

#include "Support/Private.h"

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

OSTRA_PRIVATE(PatternStates, CT_VoidArray CT_Pattern::*, &CT_Pattern::co_States);
OSTRA_PRIVATE(PatternMatchAny, int (CT_Pattern::*)() const, &CT_Pattern::b_IsMatchAny);
OSTRA_PRIVATE(PatternMatchSome, int (CT_Pattern::*)(), &CT_Pattern::b_IsMatchSome);
OSTRA_PRIVATE(PatternContains, int (CT_Pattern::*)(CT_Pattern*), &CT_Pattern::b_Contains);

namespace pattern
{
// In texts and patterns of tests 0 stands for the character 0, and capitals stand for characters
// from 128 on.
inline unsigned Character(char c)
{
    if (c >= 'A' && c <= 'Z')
        return 128 + 0x1001U * static_cast<unsigned>(c - 'A');
    return c == '0' ? 0 : static_cast<unsigned char>(c);
}

// In a pattern * is a run and ? any one.
inline void Add(CT_Pattern& to, const std::string& tokens)
{
    for (const char c : tokens)
        to.v_AddToken(c == '*'   ? CT_Pattern::ty_AnyRun
                      : c == '?' ? CT_Pattern::ty_AnyOne
                                 : CT_Pattern::ty_Character,
                      Character(c));
}

inline std::unique_ptr<CT_Pattern> Make(const std::string& tokens)
{
    auto made = std::make_unique<CT_Pattern>();
    Add(*made, tokens);
    return made;
}

// The row as text: type, character and the mark of any one behind a run, a state after the other.
inline std::string Row(const CT_Pattern& of)
{
    const CT_VoidArray& states = of.*Private(PatternStates());
    std::string row;
    for (unsigned n = 1; n <= states.n_GetCount(); ++n) {
        CT_Pattern::st_State state;
        states.v_GetAt(&state, static_cast<int>(n));
        row += (row.empty() ? "" : " ") + std::to_string(state.n4_Type) + ",";
        row += state.n4_Character ? std::string(1, static_cast<char>(state.n4_Character)) : "-";
        row += state.n4_AnyAfterRun == 0 ? "" : state.n4_AnyAfterRun == 1 ? ",any" : ",wrong";
    }
    return row;
}

// Every string of up to `length` of these characters, the empty one first.
inline std::vector<std::string> AllStrings(const std::string& characters, std::size_t length)
{
    std::vector<std::string> all{""};
    for (std::size_t n = 0; n < all.size() && all[n].size() < length; ++n)
        for (const char c : characters)
            all.push_back(all[n] + c);
    return all;
}

// Whether the tokens from `token` on match the text from `at` on, tried in every way. The character
// 0 behind a run means any one, that being how it is kept.
inline bool Means(const std::string& tokens, const std::string& text, std::size_t token = 0,
                  std::size_t at = 0)
{
    if (token == tokens.size())
        return at == text.size();
    const char c = tokens[token];
    if (c == '*')
        return Means(tokens, text, token + 1, at) ||
               (at < text.size() && Means(tokens, text, token, at + 1));
    const bool any = c == '?' || (c == '0' && token > 0 && tokens[token - 1] == '*');
    return at < text.size() && (any || c == text[at]) && Means(tokens, text, token + 1, at + 1);
}

// The machine, state by state.
class Model
{
public:
    explicit Model(const std::string& tokens) : states(1)
    {
        for (const char c : tokens)
            AddToken(c);
    }

    void DoMatch()
    {
        from = count = 0;
        current.assign(states.size(), false);
        current[0] = true;
    }

    bool IsMatch(char c) { return Feed(Character(c)); }

    bool Feed(unsigned character)
    {
        ++count;
        next.assign(states.size(), false);
        for (std::size_t i = 0; i < states.size(); ++i) {
            if (!current[i])
                continue;
            const State& state = states[i];
            if (state.type == 2) {
                next[i] = true;
                if (state.any || (state.character && state.character == character) ||
                    (!state.character && i + 1 != states.size()))
                    next[i + 1] = true;
            } else if (state.type == 1 || (state.type == 3 && state.character == character)) {
                next[i + 1] = true;
            }
        }
        current.swap(next);
        if (!current.back())
            from = 0;
        else if (from == 0)
            from = count;
        return current.back();
    }

    bool IsMatchAny() const { return current.back(); }

    bool CanMatch() const
    {
        for (const bool active : current)
            if (active)
                return true;
        return false;
    }

    bool IsMatchSome()
    {
        next.assign(states.size(), false);
        for (std::size_t i = 0; i < states.size(); ++i) {
            if (!current[i])
                continue;
            if (states[i].type == 2)
                next[i] = true;
            if (states[i].type == 1 || states[i].type == 3 || states[i].any)
                next[i + 1] = true;
        }
        current.swap(next);
        return current.back();
    }

    bool Contains(const Model& other)
    {
        const std::vector<State> tokens = other.states;
        DoMatch();
        bool result = false;
        for (const State& state : tokens) {
            if (state.type == 2) {
                result = IsMatchAny();
                if (state.character)
                    result = Feed(state.character);
                else if (state.any)
                    result = IsMatchSome();
            } else if (state.type == 1) {
                result = IsMatchSome();
            } else if (state.type == 3) {
                result = Feed(state.character);
            }
        }
        return result;
    }

    CT_Pattern::et_Result Compare(Model& other)
    {
        const bool a = Contains(other);
        const bool b = other.Contains(*this);
        if (a != b)
            return a ? CT_Pattern::re_Wider : CT_Pattern::re_Narrower;
        if (!a)
            return CT_Pattern::re_Unrelated;
        return states.size() < other.states.size()   ? CT_Pattern::re_Wider
               : states.size() > other.states.size() ? CT_Pattern::re_Narrower
                                                     : CT_Pattern::re_Same;
    }

    unsigned EndStateFrom() const { return from; }

private:
    struct State
    {
        unsigned character = 0;
        unsigned type = 0;
        bool any = false;
    };

    void AddToken(char c)
    {
        State& last = states.back();
        const bool run = last.type == 2;
        if (c == '*') {
            last.type = 2;
            return;
        }
        if (c == '?' && run)
            last.any = true;
        else if (!run)
            last.type = c == '?' ? 1 : 3;
        last.character = c == '?' ? 0 : Character(c);
        states.emplace_back();
    }

    std::vector<State> states;
    std::vector<char> current, next;
    unsigned from = 0;
    unsigned count = 0;
};
} // namespace pattern

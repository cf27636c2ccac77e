// tests/System/Forum/Listener.h: a forum that writes down what it hears.
#pragma once

#include <System/Forum/Forum.h>

#include <cstdarg>
#include <functional>
#include <string>
#include <vector>

// What listeners heard, in order: "a7" when the listener a heard message 7 without, "a7?" with
// answer.
typedef std::vector<std::string> Heard;

// Arguments of one digit each, up to 0, as one number.
inline int Digits(va_list arguments)
{
    int digits = 0;
    while (const int next = va_arg(arguments, int))
        digits = digits * 10 + next;
    return digits;
}

struct Listener : CT_Forum
{
    Listener(Heard* log, const std::string& own_name, unsigned own_answer = 0)
        : heard(log),
          name(own_name),
          answer(own_answer)
    {}

    void vv_Listen(CT_Forum* from, unsigned message, va_list arguments) override
    {
        Hear(from, message, arguments, "");
    }
    unsigned vn_Listen(CT_Forum* from, unsigned message, va_list arguments) override
    {
        Hear(from, message, arguments, "?");
        return answer;
    }

    Heard* heard;
    std::string name;
    unsigned answer;
    CT_Forum* speaker = nullptr;
    // Where the listener puts the arguments of a message, if they are digits.
    std::vector<int>* digits = nullptr;
    // What else it does.
    std::function<void(CT_Forum*)> act;

private:
    void Hear(CT_Forum* from, unsigned message, va_list arguments, const char* mark)
    {
        speaker = from;
        heard->push_back(name + std::to_string(message) + mark);
        if (digits)
            digits->push_back(Digits(arguments));
        if (act)
            act(from);
    }
};

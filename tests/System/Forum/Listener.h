// tests/System/Forum/Listener.h: a forum that writes down what it hears.
#pragma once

#include <System/Forum/Forum.h>

#include <functional>
#include <string>
#include <vector>

// What listeners heard, in order: "a7" when the listener a heard message 7 without, "a7?" with
// answer.
typedef std::vector<std::string> Heard;

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
    // What else the listener does with a message.
    std::function<void(CT_Forum*)> act;
    std::function<void(va_list)> read;

private:
    void Hear(CT_Forum* from, unsigned message, va_list arguments, const char* mark)
    {
        speaker = from;
        heard->push_back(name + std::to_string(message) + mark);
        if (read)
            read(arguments);
        if (act)
            act(from);
    }
};

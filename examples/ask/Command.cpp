// examples/ask/Command.cpp
#include "Command.h"

namespace ask
{
namespace
{
std::string Quoted(std::string_view text)
{
    std::string quoted = "\"";
    for (const char c : text)
        quoted.append(c == '"' ? 2 : 1, c);
    return quoted + '"';
}

// Takes pieces off the front of a text.
class Reader
{
public:
    explicit Reader(std::string_view all) : text(all) {}

    bool Take(std::string_view sign)
    {
        SkipBlanks();
        for (std::size_t n = 0; n < sign.size(); ++n)
            if (n >= text.size() || Lower(text[n]) != sign[n])
                return false;
        text.remove_prefix(sign.size());
        return true;
    }
    bool TakeQuoted(std::string* content)
    {
        if (!Take("\""))
            return false;
        for (; !text.empty(); text.remove_prefix(1)) {
            if (text.starts_with("\"\""))
                text.remove_prefix(1);
            else if (text.front() == '"')
                return Take("\"");
            *content += text.front();
        }
        return false;
    }
    bool IsAtEnd()
    {
        SkipBlanks();
        return text.empty();
    }

private:
    static char Lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c | 0x20) : c; }
    void SkipBlanks() { text.remove_prefix(std::min(text.find_first_not_of(' '), text.size())); }

    std::string_view text;
};
} // namespace

std::string CommandOf(const Addition& addition)
{
    return "[add(" + Quoted(addition.word) + "," + Quoted(addition.translation) + ")]";
}

std::optional<Addition> ReadCommand(std::string_view text)
{
    Reader reader(text);
    Addition addition;
    const bool is = reader.Take("[") && reader.Take("add") && reader.Take("(") &&
                    reader.TakeQuoted(&addition.word) && reader.Take(",") &&
                    reader.TakeQuoted(&addition.translation) && reader.Take(")") &&
                    reader.Take("]") && reader.IsAtEnd();
    return is ? std::optional(addition) : std::nullopt;
}
} // namespace ask

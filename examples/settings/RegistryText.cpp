// examples/settings/RegistryText.cpp
#include "RegistryText.h"

#include "Text.h"

#include <cstdio>
#include <cstring>
#include <optional>
#include <string_view>

namespace settings
{
namespace
{
constexpr char16_t HEAD[] = u"Windows Registry Editor Version 5.00";
constexpr char16_t OLD_HEAD[] = u"REGEDIT4";
constexpr std::uint32_t TEXT = 1;
constexpr std::uint32_t EXPANDED = 2;
constexpr std::uint32_t BINARY = 3;
constexpr std::uint32_t NUMBER = 4;
constexpr std::uint32_t LIST = 7;
// A line goes on below from this column on.
constexpr std::size_t WIDTH = 77;

// ---- Writing ------------------------------------------------------------------------------------

std::u16string Ascii(const char* text)
{
    return {text, text + std::strlen(text)};
}

std::u16string Quoted(std::u16string_view text)
{
    std::u16string quoted = u"\"";
    for (const char16_t unit : text) {
        const bool endsLine = unit == '\n' || unit == '\r';
        if (endsLine || unit == '"' || unit == '\\')
            quoted += '\\';
        quoted += !endsLine ? unit : unit == '\n' ? u'n' : u'r';
    }
    return quoted + u'"';
}

std::u16string TextOf(const std::string& data)
{
    std::u16string text(data.size() / 2, 0);
    if (!text.empty())
        std::memcpy(text.data(), data.data(), text.size() * 2);
    return text;
}

std::string BytesOf(const std::u16string& text)
{
    return {reinterpret_cast<const char*>(text.data()), text.size() * 2};
}

// Whether a text with its terminator can stand between quotes and come back.
bool IsPlain(const std::string& data)
{
    const std::u16string text = TextOf(data);
    if (data.size() % 2 || text.empty() || text.back() != 0)
        return false;
    for (std::size_t i = 0; i + 1 < text.size(); ++i)
        if (text[i] < 0x20)
            return false;
    return true;
}

void WriteHex(const std::string& data, std::u16string& line)
{
    std::size_t column = line.size();
    for (std::size_t i = 0; i < data.size(); ++i) {
        char digits[4];
        std::snprintf(digits, sizeof digits, "%02x", static_cast<unsigned>(data[i]) & 0xFF);
        line += Ascii(digits);
        if (i + 1 == data.size())
            break;
        line += u',';
        column += 3;
        if (column >= WIDTH) {
            line += u"\\\r\n  ";
            column = 2;
        }
    }
}

std::u16string LineOf(const Value& value)
{
    std::u16string line = (value.name.empty() ? u"@" : Quoted(value.name)) + u"=";
    char word[32];
    if (value.remove)
        return line + u"-";
    if (value.type == TEXT && IsPlain(value.data)) {
        const std::u16string text = TextOf(value.data);
        return line + Quoted(std::u16string_view(text).substr(0, text.size() - 1));
    }
    if (value.type == NUMBER && value.data.size() == 4) {
        std::uint32_t number = 0;
        std::memcpy(&number, value.data.data(), 4);
        std::snprintf(word, sizeof word, "dword:%08x", static_cast<unsigned>(number));
        return line + Ascii(word);
    }
    std::snprintf(word, sizeof word, "hex(%x):", static_cast<unsigned>(value.type));
    line += value.type == BINARY ? u"hex:" : Ascii(word);
    WriteHex(value.data, line);
    return line;
}

// ---- Reading ------------------------------------------------------------------------------------

class Reader
{
public:
    explicit Reader(const std::string& bytes) : text(Decoded(bytes)) {}

    std::vector<Key> Read()
    {
        std::u16string line;
        if (!RawLine(line) || !ReadHead(line))
            throw Failure("not the text of a registry");
        while (NextLine(line))
            ReadLine(line);
        return std::move(keys);
    }
    // UTF-16 of either order by its mark, else UTF-8.
    static std::u16string Decoded(const std::string& bytes)
    {
        const bool low = bytes.starts_with("\xFF\xFE");
        if (!low && !bytes.starts_with("\xFE\xFF"))
            return ToUtf16(bytes.starts_with("\xEF\xBB\xBF") ? bytes.substr(3) : bytes);
        std::u16string units;
        for (std::size_t i = 2; i + 1 < bytes.size(); i += 2) {
            const unsigned a = static_cast<unsigned char>(bytes[i]);
            const unsigned b = static_cast<unsigned char>(bytes[i + 1]);
            units += static_cast<char16_t>(low ? a | b << 8 : a << 8 | b);
        }
        return units;
    }

private:
    [[noreturn]] void Refuse(const char* reason) const
    {
        throw Failure("line " + std::to_string(number) + ": " + reason);
    }

    bool RawLine(std::u16string& line)
    {
        if (at >= text.size())
            return false;
        const std::size_t end = std::min(text.find(u'\n', at), text.size());
        line = text.substr(at, end - at);
        at = end + 1;
        ++number;
        while (!line.empty() && (line.back() == '\r' || line.back() == ' ' || line.back() == '\t'))
            line.pop_back();
        return true;
    }

    // A line with those that it goes on in; a text between quotes never does.
    bool NextLine(std::u16string& line)
    {
        if (!RawLine(line))
            return false;
        std::u16string more;
        while (!line.empty() && line[0] != ';' && line.back() == '\\' && RawLine(more)) {
            line.pop_back();
            line += more.substr(std::min(more.find_first_not_of(u" \t"), more.size()));
        }
        return true;
    }

    bool ReadHead(const std::u16string& line)
    {
        isOld = line == OLD_HEAD;
        return isOld || line == HEAD;
    }

    void ReadLine(const std::u16string& line)
    {
        if (line.empty() || line[0] == ';')
            return;
        if (line[0] == '[')
            ReadKey(line);
        else if (line[0] == '"' || line[0] == '@')
            ReadValue(line);
        else
            Refuse("neither a key nor a value");
    }

    void ReadKey(const std::u16string& line)
    {
        if (line.back() != ']' || line.size() < 3)
            Refuse("a key that doesn't end");
        Key key;
        key.remove = line[1] == '-';
        key.path = line.substr(key.remove ? 2 : 1, line.size() - (key.remove ? 3 : 2));
        keys.push_back(std::move(key));
    }

    void ReadValue(const std::u16string& line)
    {
        Value value;
        std::size_t place = 1;
        if (line[0] == '"') {
            place = 0;
            value.name = ReadQuoted(line, place);
        }
        if (place >= line.size() || line[place] != '=')
            Refuse("a value without =");
        if (keys.empty() || keys.back().remove)
            Refuse("a value without a key");
        ReadData(line.substr(place + 1), value);
        keys.back().values.push_back(std::move(value));
    }

    std::u16string ReadQuoted(const std::u16string& line, std::size_t& place) const
    {
        std::u16string out;
        for (++place; place < line.size() && line[place] != '"'; ++place) {
            char16_t unit = line[place];
            if (unit == '\\' && place + 1 < line.size()) {
                unit = line[++place];
                unit = unit == 'n' ? u'\n' : unit == 'r' ? u'\r' : unit;
            }
            out += unit;
        }
        if (place++ >= line.size())
            Refuse("a text that doesn't end");
        return out;
    }

    void ReadData(const std::u16string& data, Value& value)
    {
        std::size_t place = 0;
        if (data == u"-")
            value.remove = true;
        else if (!data.empty() && data[0] == '"') {
            value.type = TEXT;
            value.data = BytesOf(ReadQuoted(data, place) + u'\0');
            if (place != data.size())
                Refuse("more behind a text");
        } else if (data.starts_with(u"dword:"))
            ReadNumber(ToUtf8(data.substr(6)), value);
        else if (data.starts_with(u"hex"))
            ReadHex(ToUtf8(data.substr(3)), value);
        else
            Refuse("data of no known form");
    }

    void ReadNumber(const std::string& digits, Value& value) const
    {
        const auto read = ToNumber("0x" + digits);
        if (!read)
            Refuse("no number");
        value.type = NUMBER;
        value.data.assign(reinterpret_cast<const char*>(&*read), 4);
    }

    void ReadHex(std::string data, Value& value) const
    {
        value.type = BINARY;
        const std::size_t colon = data.find(':');
        if (colon == std::string::npos)
            Refuse("data of no known form");
        if (colon > 0) {
            const auto type = data[0] == '(' && data[colon - 1] == ')'
                                  ? ToNumber("0x" + data.substr(1, colon - 2))
                                  : std::nullopt;
            if (!type)
                Refuse("no type");
            value.type = *type;
        }
        for (char& c : data)
            c = c == ',' ? ' ' : c;
        const auto bytes = FromHex(data.substr(colon + 1));
        if (!bytes)
            Refuse("no bytes");
        value.data = *bytes;
        if (isOld && (value.type == TEXT || value.type == EXPANDED || value.type == LIST))
            value.data = BytesOf(ToUtf16(*bytes));
    }

    std::u16string text;
    std::size_t at = 0;
    unsigned number = 0;
    bool isOld = false;
    std::vector<Key> keys;
};
} // namespace

std::string WriteRegistryText(const std::vector<Key>& keys)
{
    std::u16string text = std::u16string(u"\xFEFF") + HEAD + u"\r\n\r\n";
    for (const Key& key : keys) {
        if (key.path.find(u'\n') != std::u16string::npos)
            throw Failure(OneLine(ToUtf8(key.path)) +
                          ": a key's line has no room for the end of a line in its name");
        text += (key.remove ? u"[-" : u"[") + key.path + u"]\r\n";
        for (const Value& value : key.values)
            text += LineOf(value) + u"\r\n";
        text += u"\r\n";
    }
    return BytesOf(text);
}

std::vector<Key> ReadRegistryText(const std::string& bytes)
{
    return Reader(bytes).Read();
}

bool IsRegistryText(const std::string& bytes)
{
    const std::u16string text = Reader::Decoded(bytes.substr(0, 100));
    return text.starts_with(HEAD) || text.starts_with(OLD_HEAD);
}
} // namespace settings

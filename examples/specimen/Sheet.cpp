// examples/specimen/Sheet.cpp
#include "Sheet.h"

#include "Faces.h"

#include <System/FontManager/FontManager.h>

#include <algorithm>
#include <numeric>

namespace specimen
{
namespace
{
constexpr int MARGIN = 16;
constexpr int LEFT = 72;         // where the texts begin
constexpr int TITLE = 40;        // the height of the title's line
constexpr int HEADING = 40;      // that of a section's
constexpr int NOTE = 20;         // that of a note's
constexpr int GAP = 10;          // between rows, and between a row and what is said of it
constexpr int LEAST_WIDTH = 480; // of the picture
constexpr int REMARK = 220;      // what is said of a row
constexpr int TICK = 4;          // below the base line, between characters

std::string Number(int number)
{
    return std::to_string(number);
}

// XML has no way to say controls, nor the two noncharacters that UTF-8 can.
std::string Escaped(const std::string& text)
{
    std::string escaped;
    for (std::size_t n = 0; n < text.size(); ++n) {
        const unsigned char c = static_cast<unsigned char>(text[n]);
        const bool isNone =
            text.compare(n, 3, "\xEF\xBF\xBE") == 0 || text.compare(n, 3, "\xEF\xBF\xBF") == 0;
        if (c < 0x20 || c == 0x7F || isNone)
            escaped += "\xEF\xBF\xBD";
        else if (c == '&')
            escaped += "&amp;";
        else if (c == '<')
            escaped += "&lt;";
        else if (c == '>')
            escaped += "&gt;";
        else if (c == '"')
            escaped += "&quot;";
        else
            escaped += text[n];
        n += isNone ? 2 : 0;
    }
    return escaped;
}

// The name as a text of a style sheet, which has its own way to escape.
std::string Quoted(const std::string& name)
{
    std::string quoted = "'";
    for (const char c : name) {
        if (c == '\'' || c == '\\')
            quoted += '\\';
        quoted += c;
    }
    return quoted + "'";
}

std::string Words(const char* kind, int x, int y, const std::string& text)
{
    return std::string("<text class=\"") + kind + "\" x=\"" + Number(x) + "\" y=\"" + Number(y) +
           "\">" + Escaped(text) + "</text>\n";
}

std::string Path(const char* kind, const std::string& path)
{
    return std::string("<path class=\"") + kind + "\" d=\"" + path + "\"/>\n";
}

std::string Across(int x, int y, int width)
{
    return "M" + Number(x) + " " + Number(y) + "h" + Number(width);
}

std::string Down(int x, int y, int height)
{
    return "M" + Number(x) + " " + Number(y) + "v" + Number(height);
}

int WidthOf(const Row& row)
{
    return static_cast<int>(std::accumulate(row.widths.begin(), row.widths.end(), 0U));
}

class Drawing
{
public:
    explicit Drawing(bool apart) : isApart(apart) {}

    Picture Draw(const Sheet& sheet)
    {
        y = TITLE;
        body += Words("title", MARGIN, y, sheet.face);
        for (const Section& section : sheet.sections)
            DrawSection(section);
        const int height = y + MARGIN;
        return {Head(sheet, height) + body + "</svg>\n", static_cast<unsigned>(width),
                static_cast<unsigned>(height)};
    }

private:
    void DrawSection(const Section& section);
    void DrawRow(const Section& section, const Row& row);
    void DrawText(const Section& section, const Row& row, int base);
    std::string Head(const Sheet& sheet, int height) const;

    const bool isApart;
    std::string body;
    int y = 0; // how far the picture goes down by now
    int width = LEAST_WIDTH;
};

std::string Drawing::Head(const Sheet& sheet, int height) const
{
    const std::string w = Number(width);
    const std::string h = Number(height);
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
           "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"" +
           w + "\" height=\"" + h + "\" viewBox=\"0 0 " + w + " " + h +
           "\">\n"
           "<title>" +
           Escaped(sheet.face) +
           "</title>\n"
           "<style>\n"
           "text { font-family: sans-serif; font-size: 11px; fill: #555 }\n"
           ".title { font-size: 24px; fill: #000 }\n"
           ".set { font-size: 14px; fill: #000 }\n"
           ".note { fill: #b00 }\n"
           ".size { text-anchor: end }\n"
           ".sample { font: inherit; fill: #000; white-space: pre }\n"
           "path { fill: none; stroke: #8ac; shape-rendering: crispEdges }\n"
           ".base { stroke: #d55 }\n"
           "</style>\n"
           "<rect width=\"" +
           w + "\" height=\"" + h + "\" fill=\"#fff\"/>\n";
}

void Drawing::DrawSection(const Section& section)
{
    y += HEADING;
    const unsigned page = CT_FontManager::sn_GetCodePage(section.set);
    body += Words("set", MARGIN, y,
                  NameOfSet(section.set) + " (set " + std::to_string(section.set) +
                      (page ? ", code page " + std::to_string(page) : "") + ")");
    if (!section.note.empty())
        body += Words("note", MARGIN, y += NOTE, section.note);
    for (const Row& row : section.rows)
        DrawRow(section, row);
}

void Drawing::DrawRow(const Section& section, const Row& row)
{
    const int length = WidthOf(row);
    const int height = row.ascent + row.descent;
    const int top = y + GAP;
    const int base = top + row.ascent;
    std::string ticks;
    int x = LEFT;
    for (const unsigned one : row.widths)
        ticks += Down(x += static_cast<int>(one), base, TICK);
    body += Path("frame", Across(LEFT, top, length) + Across(LEFT, top + height, length) +
                              Down(LEFT, top, height) + Down(LEFT + length, top, height) + ticks);
    body += Path("base", Across(LEFT, base, length));
    DrawText(section, row, base);
    body += Words("size", LEFT - GAP, base, std::to_string(row.points) + " pt");
    body += Words("remark", LEFT + length + GAP, base,
                  "ascent " + Number(row.ascent) + ", descent " + Number(row.descent) + ", width " +
                      Number(length));
    y = top + std::max(height, GAP);
    width = std::max(width, LEFT + length + GAP + REMARK);
}

void Drawing::DrawText(const Section& section, const Row& row, int base)
{
    const std::string end = "\" y=\"" + Number(base) + "\">";
    std::string texts = "<text class=\"sample\" x=\"";
    std::string all;
    int x = LEFT;
    for (std::size_t n = 0; n < row.widths.size(); ++n) {
        const std::string character = Escaped(section.text[n]);
        if (n)
            texts += isApart ? "<text class=\"sample\" x=\"" : " ";
        texts += Number(x) + (isApart ? end + character + "</text>" : "");
        all += character;
        x += static_cast<int>(row.widths[n]);
    }
    body += "<g font-family=\"" + Escaped(Quoted(section.face)) + "\" font-size=\"" +
            std::to_string(row.dots) + "px\"" + (section.bold ? " font-weight=\"bold\"" : "") +
            (section.italic ? " font-style=\"italic\"" : "") + ">" + texts +
            (isApart ? "" : end + all + "</text>") + "</g>\n";
}
} // namespace

Picture Draw(const Sheet& sheet, bool isApart)
{
    return Drawing(isApart).Draw(sheet);
}
} // namespace specimen

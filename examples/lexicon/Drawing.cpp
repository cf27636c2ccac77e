// examples/lexicon/Drawing.cpp
#include "Drawing.h"

#include "Glyph.h"

#include <algorithm>

namespace lexicon
{
namespace
{
// Pixels.
constexpr unsigned MARGIN = 24;
constexpr unsigned HEAD = 76;
constexpr unsigned BOX = 28;
constexpr unsigned GAP = 16;
constexpr unsigned ROW = 46;
constexpr unsigned PILL_GAP = 7;
constexpr unsigned PILL_HEIGHT = 18;
constexpr unsigned PILL_EDGES = 14;
constexpr unsigned DIGIT = 7;
constexpr unsigned LABEL_GAP = 12;
constexpr unsigned LABEL_FONT = 13;
constexpr unsigned ARROW = 3;
constexpr unsigned LEGEND_GAP = 26;
constexpr unsigned LEGEND_ROW = 36;
constexpr unsigned LEGEND_COLUMN = 310;
constexpr unsigned LEGEND_TEXT = 72;

constexpr size_t LONGEST_NOTE = 48;

constexpr char STYLE[] =
    "<style>\n"
    "text { font-family: 'DejaVu Sans', 'Noto Sans', 'Segoe UI', Arial, sans-serif; "
    "font-size: 13px; fill: #1f2933; }\n"
    ".head { font-size: 17px; font-weight: bold; }\n"
    ".box { fill: #ffffff; stroke: #52606d; stroke-width: 1.3; }\n"
    ".given .box { fill: #e4e7eb; stroke: #9aa5b1; }\n"
    ".character { font-size: 16px; text-anchor: middle; }\n"
    ".code { font-family: 'DejaVu Sans Mono', Consolas, Menlo, monospace; font-size: 9px; "
    "text-anchor: middle; }\n"
    ".inner { fill: #fff3c4; stroke: #cb8a14; }\n"
    ".leaf { fill: #d9f2e0; stroke: #2d8a4e; }\n"
    ".handle { font-family: 'DejaVu Sans Mono', Consolas, Menlo, monospace; font-size: 11px; "
    "text-anchor: middle; }\n"
    ".way { fill: none; stroke: #52606d; stroke-width: 1.3; }\n"
    ".other { fill: none; stroke: #2368b5; stroke-width: 1.3; stroke-dasharray: 4 3; }\n"
    ".tip { fill: #2368b5; }\n"
    ".note { fill: #616e7c; }\n"
    ".rule { stroke: #cbd2d9; }\n"
    "</style>\n";

std::string Escape(const std::string& text)
{
    std::string escaped;
    for (char c : text) {
        switch (c) {
        case '&':
            escaped += "&amp;";
            break;
        case '<':
            escaped += "&lt;";
            break;
        case '>':
            escaped += "&gt;";
            break;
        case '"':
            escaped += "&quot;";
            break;
        default:
            escaped += c;
        }
    }
    return escaped;
}

// An attribute with its blank.
std::string Set(const char* name, unsigned value)
{
    return std::string(" ") + name + "=\"" + std::to_string(value) + "\"";
}

std::string Rectangle(const char* style, unsigned x, unsigned y, unsigned width, unsigned height,
                      unsigned corner)
{
    return std::string("<rect class=\"") + style + "\"" + Set("x", x) + Set("y", y) +
           Set("width", width) + Set("height", height) + Set("rx", corner) + "/>";
}

std::string Text(const char* style, unsigned x, unsigned y, const std::string& text)
{
    const std::string set = *style ? std::string(" class=\"") + style + "\"" : "";
    return "<text" + set + Set("x", x) + Set("y", y) + ">" + Escape(text) + "</text>";
}

std::string Path(const char* style, const std::string& path)
{
    return std::string("<path class=\"") + style + "\" d=\"" + path + "\"/>";
}

std::string Point(unsigned x, unsigned y)
{
    return std::to_string(x) + " " + std::to_string(y);
}

std::string Counted(unsigned count, const char* what)
{
    return std::to_string(count) + " " + what + (count == 1 ? "" : "s");
}

// The box of a character, its middle at the height y.
std::string BoxAt(unsigned x, unsigned y, const Glyph& glyph)
{
    return Rectangle("box", x, y - BOX / 2, BOX, BOX, 4) +
           Text(glyph.isCode ? "code" : "character", x + BOX / 2, y + (glyph.isCode ? 3 : 6),
                glyph.text);
}

unsigned PillWidth(const std::string& text)
{
    return static_cast<unsigned>(text.size()) * DIGIT + PILL_EDGES;
}

std::string PillAt(unsigned x, unsigned y, bool inner, const std::string& text)
{
    const unsigned width = PillWidth(text);
    return Rectangle(inner ? "inner" : "leaf", x, y - PILL_HEIGHT / 2, width, PILL_HEIGHT,
                     PILL_HEIGHT / 2) +
           Text("handle", x + width / 2, y + 4, text);
}

// A line down to an arrow's tip.
std::string ArrowAt(unsigned x, unsigned top, unsigned bottom)
{
    const unsigned base = bottom - 2 * ARROW;
    return Path("other", "M" + Point(x, top) + "V" + std::to_string(base)) +
           Path("tip", "M" + Point(x - ARROW, base) + "H" + std::to_string(x + ARROW) + "L" +
                           Point(x, bottom) + "Z");
}

class Picture
{
public:
    Picture(const Subtree& part, unsigned size, const Note& notes)
        : subtree(part),
          nodes(part.Nodes()),
          elementSize(size),
          note(notes)
    {}

    std::string Draw();

private:
    void PlaceColumns();
    void DrawHead();
    void DrawWays();
    void DrawAlternative(const Node& node);
    void DrawNodes();
    void DrawCharacter(const Node& node);
    void DrawEnd(const Node& node);
    void DrawLabel(unsigned x, unsigned y, const std::string& word, const std::string& text);
    void DrawLegend();
    void LegendAt(unsigned column, unsigned row, const std::string& sign, const char* text);

    unsigned X(const Node& node) const { return columns[node.column]; }
    unsigned Y(const Node& node) const { return HEAD + ROW * node.row + BOX / 2; }
    unsigned Bottom() const { return HEAD + ROW * subtree.Rows(); }
    bool IsBelowPrefix() const { return !nodes.empty() && nodes.front().given; }
    std::string Prefix() const;
    void Add(const std::string& element) { body += element + "\n"; }
    void Widen(unsigned right) { width = std::max(width, right + MARGIN); }

    const Subtree& subtree;
    const std::vector<Node>& nodes;
    const unsigned elementSize;
    const Note& note;
    std::vector<unsigned> columns;
    std::vector<unsigned> key;
    std::string body;
    unsigned width = 0;
};

std::string Picture::Draw()
{
    PlaceColumns();
    DrawHead();
    DrawWays();
    DrawNodes();
    DrawLegend();
    const unsigned height =
        Bottom() + LEGEND_GAP + LEGEND_ROW * (IsBelowPrefix() ? 3 : 2) + MARGIN / 2;
    const std::string size = std::to_string(width) + " " + std::to_string(height);
    return "<svg xmlns=\"http://www.w3.org/2000/svg\"" + Set("width", width) +
           Set("height", height) + " viewBox=\"0 0 " + size + "\">\n" + STYLE +
           "<rect width=\"100%\" height=\"100%\" fill=\"#ffffff\"/>\n" + body + "</svg>\n";
}

// A column is as wide as its box and the widest handle behind which longer keys go on.
void Picture::PlaceColumns()
{
    std::vector<unsigned> widths;
    for (const Node& node : nodes) {
        if (node.column >= widths.size())
            widths.resize(node.column + 1, BOX + GAP);
        if (node.end == Item::INNER_END)
            widths[node.column] = std::max(
                widths[node.column], BOX + PILL_GAP + PillWidth(std::to_string(node.handle)) + GAP);
    }
    unsigned x = MARGIN;
    for (unsigned column : widths) {
        columns.push_back(x);
        x += column;
    }
    Widen(x);
}

std::string Picture::Prefix() const
{
    std::vector<unsigned> given;
    for (const Node& node : nodes) {
        if (node.given)
            given.push_back(node.character);
    }
    return ShowText(given, elementSize);
}

void Picture::DrawHead()
{
    const std::string prefix = Prefix();
    const std::string head = prefix.empty() ? "All words" : "Words that begin with " + prefix;
    Add("<title>" + Escape(head) + "</title>");
    Add(Text("head", MARGIN, 36, head));
    Add(Text("note", MARGIN, 56,
             Counted(subtree.Words(), "word") + ", " + Counted(subtree.Characters(), "character") +
                 ", " + Counted(subtree.Alternatives(), "alternative")));
    Widen(MARGIN + EstimateWidth(head, 19));
}

// Lines lie below all else.
void Picture::DrawWays()
{
    for (size_t n = 0; n < nodes.size(); ++n) {
        const Node& node = nodes[n];
        if (node.above != Node::NO_NODE)
            DrawAlternative(node);
        else if (node.column)
            Add(Path("way", "M" + Point(columns[node.column - 1] + BOX, Y(node)) + "H" +
                                std::to_string(X(node))));
        if (node.end == Item::LEAF_END)
            Add(Path("way", "M" + Point(X(node) + BOX, Y(node)) + "h" + std::to_string(PILL_GAP)));
    }
}

void Picture::DrawAlternative(const Node& node)
{
    const Node& above = nodes[node.above];
    const unsigned offset = node.position - above.position - elementSize;
    Add("<g><title>alternative, " + std::to_string(offset) + " bytes on</title>" +
        ArrowAt(X(node) + BOX / 2, Y(above) + BOX / 2, Y(node) - BOX / 2) + "</g>");
}

void Picture::DrawNodes()
{
    for (const Node& node : nodes) {
        // Rows come so that what stands left of a node is always the beginning of its key.
        key.resize(node.column);
        DrawCharacter(node);
        key.push_back(node.character);
        if (node.end != Item::NONE)
            DrawEnd(node);
    }
}

void Picture::DrawCharacter(const Node& node)
{
    const Glyph glyph = ShowCharacter(node.character, key.empty() ? 0 : key.back(), elementSize);
    Add(std::string("<g") + (node.given ? " class=\"given\"" : "") + "><title>element " +
        std::to_string(node.character) + " at byte " + std::to_string(node.position) + "</title>" +
        BoxAt(X(node), Y(node), glyph) + "</g>");
}

void Picture::DrawEnd(const Node& node)
{
    const std::string handle = std::to_string(node.handle);
    const std::string word = ShowText(key, elementSize);
    const std::string text = ShowText(note(node.handle));
    const unsigned x = X(node) + BOX + PILL_GAP;
    Add("<g><title>" + Escape(word + (text.empty() ? "" : ": " + text)) + "</title>" +
        PillAt(x, Y(node), node.end == Item::INNER_END, handle) + "</g>");
    if (node.end == Item::LEAF_END)
        DrawLabel(x + PillWidth(handle) + LABEL_GAP, Y(node) + 5, word, text);
}

// The word that ends with the row, and what its handle stands for.
void Picture::DrawLabel(unsigned x, unsigned y, const std::string& word, const std::string& text)
{
    std::string rest = text;
    if (rest.size() > LONGEST_NOTE) {
        size_t end = LONGEST_NOTE;
        while ((rest[end] & 0xC0) == 0x80)
            --end;
        rest = rest.substr(0, end) + "\xE2\x80\xA6";
    }
    // The mark keeps two texts that run from right to left apart.
    const std::string behind =
        rest.empty() ? ""
                     : "<tspan class=\"note\">\xE2\x80\x8E \xC2\xA0" + Escape(rest) + "</tspan>";
    Add("<text" + Set("x", x) + Set("y", y) + ">" + Escape(word) + behind + "</text>");
    Widen(x + EstimateWidth(word + "  " + rest, LABEL_FONT));
}

void Picture::DrawLegend()
{
    const std::string box = BoxAt(PILL_EDGES, BOX / 2, {"a", false});
    LegendAt(0, 0, box, "a character");
    LegendAt(0, 1, ArrowAt(PILL_EDGES + BOX / 2, 0, BOX), "another one for the same place");
    if (IsBelowPrefix())
        LegendAt(0, 2, "<g class=\"given\">" + box + "</g>", "a character of the prefix");
    LegendAt(1, 0, PillAt(0, BOX / 2, true, "handle"), "a word ends, longer ones go on");
    LegendAt(1, 1, PillAt(0, BOX / 2, false, "handle"), "a word ends, and so does the branch");
    Add(Path("rule", "M" + Point(MARGIN, Bottom()) + "H" + std::to_string(width - MARGIN)));
}

void Picture::LegendAt(unsigned column, unsigned row, const std::string& sign, const char* text)
{
    const unsigned x = MARGIN + LEGEND_COLUMN * column;
    const unsigned y = Bottom() + LEGEND_GAP + LEGEND_ROW * row;
    Add("<g transform=\"translate(" + Point(x, y) + ")\">" + sign +
        Text("note", LEGEND_TEXT, BOX / 2 + 5, text) + "</g>");
    Widen(x + LEGEND_TEXT + EstimateWidth(text, LABEL_FONT));
}
} // namespace

std::string Draw(const Subtree& subtree, unsigned elementSize, const Note& note)
{
    return Picture(subtree, elementSize, note).Draw();
}
} // namespace lexicon

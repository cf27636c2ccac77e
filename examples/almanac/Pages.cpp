// examples/almanac/Pages.cpp
#include "Pages.h"

#include "Width.h"

#include <algorithm>

namespace almanac
{
namespace
{
constexpr unsigned GAP = 3; // columns between two calendars

// Places of a page in points, of which a sheet has 595 by 842.
constexpr unsigned LEFT = 56;
constexpr unsigned TOP = 80;
constexpr unsigned LINE = 22;
constexpr unsigned DAY_RIGHT = 76;
constexpr unsigned WEEKDAY = 86;
constexpr unsigned HEBREW = 230;
constexpr unsigned HIJRI = 390;
constexpr unsigned RIGHT = 540;

std::string Text(const Date& date, unsigned dayWidth)
{
    if (!date.year)
        return "-";
    return PaddedLeft(std::to_string(date.day), dayWidth) + " " + date.month + " " +
           std::to_string(date.year);
}

// A row of the table; the day of the month stands in front.
struct Row
{
    std::string cells[3];
};

std::vector<Row> Rows(const Month& month)
{
    std::vector<Row> rows = {{{month.name, "Hebrew", "Hijri"}}};
    for (const Day& day : month.days)
        rows.push_back({{PaddedLeft(std::to_string(day.number), 2) + " " + day.weekday,
                         Text(day.hebrew, 2), Text(day.hijri, 2)}});
    return rows;
}

std::string Escaped(const std::string& text)
{
    std::string escaped;
    for (const char c : text) {
        if (c == '&')
            escaped += "&amp;";
        else if (c == '<')
            escaped += "&lt;";
        else
            escaped += c;
    }
    return escaped;
}

std::string Label(unsigned x, unsigned y, const std::string& text, const char* more = "")
{
    return "<text x=\"" + std::to_string(x) + "\" y=\"" + std::to_string(y) + "\"" + more + ">" +
           Escaped(text) + "</text>\n";
}

void PrintDay(const Day& day, unsigned y, std::ostream& output)
{
    output << "<line x1=\"" << LEFT << "\" y1=\"" << y - 15 << "\" x2=\"" << RIGHT << "\" y2=\""
           << y - 15 << "\" stroke=\"#ccc\"/>\n"
           << Label(DAY_RIGHT, y, std::to_string(day.number), " text-anchor=\"end\"")
           << Label(WEEKDAY, y, day.weekday) << Label(HEBREW, y, Text(day.hebrew, 0))
           << Label(HIJRI, y, Text(day.hijri, 0));
}
} // namespace

void PrintTable(const Month& month, std::ostream& output)
{
    const std::vector<Row> rows = Rows(month);
    unsigned widths[2] = {};
    for (const Row& row : rows) {
        for (unsigned n = 0; n < 2; ++n)
            widths[n] = std::max(widths[n], WidthOf(row.cells[n]));
    }
    for (const Row& row : rows)
        output << PaddedRight(row.cells[0], widths[0] + GAP)
               << PaddedRight(row.cells[1], widths[1] + GAP) << row.cells[2] << "\n";
}

void PrintPage(const Month& month, std::ostream& output)
{
    output << "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
              "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"210mm\" height=\"297mm\" "
              "viewBox=\"0 0 595 842\" font-family=\"sans-serif\" font-size=\"12\">\n"
              "<title>"
           << Escaped(month.name) << "</title>\n"
           << Label(LEFT, TOP - 24, month.name, " font-size=\"20\"")
           << Label(HEBREW, TOP, "Hebrew", " font-weight=\"bold\"")
           << Label(HIJRI, TOP, "Hijri", " font-weight=\"bold\"");
    for (const Day& day : month.days)
        PrintDay(day, TOP + LINE * static_cast<unsigned>(day.number), output);
    output << "</svg>\n";
}
} // namespace almanac

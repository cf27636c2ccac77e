// examples/specimen/Sheet.h: what a sheet shows, and its picture.
#pragma once

#include <string>
#include <vector>

namespace specimen
{
// A text in one size; all measures are dots.
struct Row
{
    unsigned points;
    unsigned dots; // an em
    int ascent;
    int descent;
    std::vector<unsigned> widths; // of the characters
};

struct Section
{
    unsigned set;
    std::string face; // that was taken
    bool bold;
    bool italic;
    std::vector<std::string> text; // its characters, UTF-8
    std::vector<Row> rows;
    std::string note; // of a face that isn't there; may be empty
};

struct Sheet
{
    std::string face; // that was asked for
    std::vector<Section> sections;
};

struct Picture
{
    std::string svg;
    unsigned width;
    unsigned height;
};

// An SVG document. The face is named, not drawn: the text can be searched and copied, and the file
// stays small. Who looks at it needs the face; each character stands where the library has it, so
// that another one shows by not keeping to the lines.
//
// Not all programs know places of single characters within a text; for those the characters may be
// texts of their own.
Picture Draw(const Sheet& sheet, bool isApart);
} // namespace specimen

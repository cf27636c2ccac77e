// examples/lexicon/Storage.h: how a lexicon lies in a record file.
//
// A lexicon is four runs of bytes: for each side the compressed list of its words and the texts that
// the list's handles lead to. A list is one part and texts are cut into pieces of 65536 bytes, each
// a part of its own: who looks up a word reads, and tests, the list and the piece with its texts. A
// part is a record; one without bytes has none. The one resource is the directory, 32-bit numbers,
// low byte first:
//
//   magic "LEXI", version 3, pairs, words of the source side, words of the target side,
//   twice (source side, target side):
//       of the list: size in bytes, checksum, reference of the record or 0,
//       size of the texts in bytes, of each piece: checksum, reference of the record,
//   checksum of all numbers in front.
//
// Version 2 is read, too: there the texts are one part, which is told like the list.
#pragma once

#include <Database/RecordManager/RecordManager.h>
#include <Ostra/Buffer/Buffer.h>

#include <vector>

namespace lexicon
{
// A side is the direction in which words are looked up: sources give targets, or targets give
// sources.
enum Side
{
    SOURCES,
    TARGETS,
    SIDES
};

// A record's head fills one block, so that the file can be walked.
constexpr unsigned BLOCK_SIZE = 64;
constexpr unsigned RECORD_HEADER_SIZE = BLOCK_SIZE - 8;
constexpr unsigned RESOURCE_MAX_COUNT = 4;
constexpr unsigned DIRECTORY = 1;
constexpr unsigned PIECE_SIZE = 0x10000;

struct Part
{
    unsigned size = 0;
    unsigned checksum = 0;
    unsigned record = 0;
};

// Texts in pieces of one size; the last one may be shorter.
struct Texts
{
    // Where a piece ends, in bytes from the start of the texts.
    unsigned EndOf(size_t piece) const;

    unsigned size = 0;
    unsigned pieceSize = PIECE_SIZE;
    std::vector<Part> pieces;
};

struct Directory
{
    unsigned pairs = 0;
    unsigned words[SIDES] = {};
    Part lists[SIDES];
    Texts texts[SIDES];

    unsigned Records() const;
    void Write(CT_Buffer* bytes) const;
};

// What reading a directory comes to.
enum class Outcome
{
    GOOD,
    FOREIGN,
    DAMAGED
};

Outcome ReadDirectory(const CT_Buffer* bytes, Directory* directory);

// CRC-32 of the bytes in use.
unsigned Checksum(const CT_Buffer* bytes);

// Stores the bytes as a part; false with an error set.
bool AddPart(CT_RecordManager* manager, const CT_Buffer* bytes, Part* part);

// Fetches a part. False with or without an error set: without, its bytes are not those that were
// stored.
bool GetPart(const CT_RecordManager* manager, const Part& part, CT_Buffer* bytes);

// Stores the bytes as texts; false with an error set.
bool AddTexts(CT_RecordManager* manager, const CT_Buffer* bytes, Texts* texts);

// What the header at the start of a record file tells about the file as a whole. The record manager
// believes the header, so this is asked before it opens the file; what has no header at all is left
// for the manager to say.
Outcome CheckHeader(const CT_String* name);
} // namespace lexicon

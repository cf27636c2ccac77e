// examples/lexicon/Storage.h: how a lexicon lies in a record file.
//
// A lexicon is four runs of bytes, the parts: for each side the compressed list of its words and
// the texts that the list's handles lead to. A part is a record; one without bytes has none. The one
// resource is the directory, 32-bit numbers, low byte first:
//
//   magic "LEXI", version 2, pairs, words of the source side, words of the target side,
//   four times (list and texts of the source side, list and texts of the target side):
//       size in bytes, checksum, reference of the record or 0,
//   checksum of all numbers in front.
#pragma once

#include <Database/RecordManager/RecordManager.h>
#include <Ostra/Buffer/Buffer.h>

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

struct Part
{
    unsigned size = 0;
    unsigned checksum = 0;
    unsigned record = 0;
};

struct Directory
{
    unsigned pairs = 0;
    unsigned words[SIDES] = {};
    Part lists[SIDES];
    Part texts[SIDES];

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

// What the header at the start of a record file tells about the file as a whole. The record manager
// believes the header, so this is asked before it opens the file; what has no header at all is left
// for the manager to say.
Outcome CheckHeader(const CT_String* name);
} // namespace lexicon

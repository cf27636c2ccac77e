// tools/check/RecordCheck.h: a reader of record files that believes nothing.
//
// It takes bytes from anywhere and answers whether CT_RecordManager can work on them: a sound file
// can be read, walked and changed without harm. An application that takes files from strangers asks
// here first and opens then.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

struct RecordNote
{
    enum Kind
    {
        FileText, // the text or the version at the file's start isn't the usual one; nobody reads them
        Reserved, // a reserved byte isn't 0
        Length, // the file's length isn't n_Size: its writer did not close it, or worked without a map
        NotWalkable, // a record's head is longer than a block: fetch by reference only, don't walk
        // A record still points to the body that an update took from it, which is free or has become something else:
        // don't delete or update it. Of two records with one body either may be meant.
        StaleBody,
        NobodysBlock, // a block that neither a record, a resource nor the free space has; lost in a failed change
        RecordCount, // n_RecordCount isn't the number of heads; an addition failed half way
        Reach,       // blocks lie where the manager's signed offsets don't reach
    };

    Kind kind;
    std::uint32_t offset;
    std::string text;
};

struct RecordVerdict
{
    bool Has(RecordNote::Kind kind) const;

    bool sound = false;
    std::uint64_t offset = 0; // of the first rule broken
    std::string rule;         // empty when sound
    std::vector<RecordNote> notes;
};

RecordVerdict CheckRecordFile(const unsigned char* bytes, std::size_t length);
RecordVerdict CheckRecordFile(const std::string& bytes);

// "sound", or "damaged at OFFSET: rule", and a line for each note.
std::string DescribeRecordVerdict(const RecordVerdict& verdict);

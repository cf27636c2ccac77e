// tests/Programs/Crash/CrashScript.h: some work on a record file, and what has to be there at each
// moment of it.
//
// What the work never touches is filled with bytes of its own kind, so that it can be told from
// what is.
#pragma once

#include <cstdint>
#include <map>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "Models/RecordModel.h"
#include "Support/Records.h"

struct Operation
{
    enum Kind
    {
        CREATE,
        ADD,
        UPDATE,
        UPDATE_HEADER,
        DELETE,
        ADD_RESOURCE,
        REPLACE_RESOURCE,
        DELETE_RESOURCE,
        FLUSH,
        CLOSE,
        OPEN
    };

    Kind kind;
    unsigned number; // the reference, also of what is added; the resource; of OPEN whether mapped
    std::string data;
};

struct CrashForm
{
    unsigned block, head, resources;
};

// A file as a save leaves it.
struct SavedState
{
    std::string header;
    std::map<unsigned, std::string> records;
    std::map<unsigned, std::string> resources;
};

// What has happened since a save.
struct Since
{
    unsigned state = 0; // the number of the save
    std::set<unsigned> records;
    std::set<unsigned> resources;
    std::set<unsigned> saving; // saves that may have begun
    bool creating = false;     // the file is being made
    bool mapped = false;
    bool chained = false; // the free table has overflowed
};

class CrashScript
{
public:
    static constexpr CrashForm FORMS[] = {{64, 16, 6}, {16, 8, 4}, {32, 24, 9}, {12, 4, 3}};

    // Makes a file, and works on it.
    static CrashScript Creating(const CrashForm& form, unsigned seed);
    // Works on one with a free table that is nearly full or has overflowed.
    static CrashScript Working(const CrashForm& form, unsigned seed, bool mapped);

    // A byte that is no part of what the work touches.
    static bool IsUntouchedByte(char byte) { return (byte & 0xE0) == 0xA0; }

    // Does one operation; it has to come out as it was foreseen.
    void Play(Records& records, const Operation& operation) const;
    // What has happened since the last save while the operation runs, its own doing with it.
    Since DuringOperation(unsigned operation) const { return during[operation]; }

    CrashForm form;
    std::string name; // for messages
    std::string base; // the file that the work begins with; empty for none
    std::vector<Operation> operations;
    std::vector<SavedState> states;

private:
    CrashScript(const CrashForm& theForm, const char* kind, unsigned seed);

    unsigned Below(unsigned n) { return static_cast<unsigned>(random() % n); }
    std::string Data(bool touched, bool body);
    void MakeBase();
    void Work(unsigned count);
    void Do(Operation::Kind kind, unsigned number, const std::string& data = {});
    void Model(Operation& operation);
    void Save();
    void Add();
    void Delete();
    void Update();
    void Resource();
    SavedState State() const;
    void AddState();

    std::mt19937 random;
    RecordModel model;
    std::set<unsigned> all;     // references
    std::vector<unsigned> live; // those that the work may touch
    std::set<unsigned> bodies;  // those with a body
    SavedState saved;           // by the operation that is being written
    Since since;
    std::vector<Since> during;
    bool making = true; // the base is being made
};

// tests/Ostra/Unicode/UnicodeDatabase.h: the character database of Unicode 2.0, read from its own
// file.
#pragma once

#include "Ostra/Unicode/CharSupport.h"

#include <fstream>

// A line of the file. Fields that a character doesn't have are empty or 0.
struct DatabaseRecord
{
    Unit unit;
    std::string name;
    std::string category;
    std::string tag; // of a compatibility decomposition, as <wide>
    std::vector<Unit> decomposition;
    std::string digit;
    std::string numeric; // n or n/d
    Unit upper;
    Unit lower;

    // The file tells large blocks by their first and last character.
    bool OpensBlock() const { return name.ends_with(", First>"); }
    bool ClosesBlock() const { return name.ends_with(", Last>"); }
};

class UnicodeDatabase
{
public:
    static const UnicodeDatabase& Get()
    {
        static const UnicodeDatabase database;
        return database;
    }
    // In the order of the file.
    const std::vector<DatabaseRecord>& Records() const { return records; }
    // Null for a unit that has no line.
    const DatabaseRecord* Find(unsigned unit) const
    {
        const auto found = byUnit.find(static_cast<Unit>(unit));
        return found == byUnit.end() ? nullptr : &records[found->second];
    }
    // The canonical decomposition taken on until nothing can be taken apart; empty for none.
    std::vector<Unit> Canonical(Unit unit) const
    {
        const DatabaseRecord* record = Find(unit);
        if (!record || !record->tag.empty() || record->decomposition.empty())
            return {};
        std::vector<Unit> out;
        for (Unit part : record->decomposition) {
            const std::vector<Unit> parts = Canonical(part);
            if (parts.empty())
                out.push_back(part);
            out.insert(out.end(), parts.begin(), parts.end());
        }
        return out;
    }

private:
    UnicodeDatabase()
    {
        std::ifstream file(OSTRA_UNICODE_DATA "/UnicodeData-2.0.14.txt");
        for (std::string line; std::getline(file, line);)
            Add(line);
        EXPECT_EQ(records.size(), 6588u) << "the file " OSTRA_UNICODE_DATA;
    }

    void Add(const std::string& line)
    {
        std::vector<std::string> fields;
        std::istringstream parts(line);
        for (std::string field; std::getline(parts, field, ';');)
            fields.push_back(field);
        fields.resize(15);
        DatabaseRecord record{
            Number(fields[0]), fields[1],          fields[2],         "", {}, fields[7],
            fields[8],         Number(fields[12]), Number(fields[13])};
        std::string decomposition = fields[5];
        if (decomposition.starts_with("<")) {
            const std::size_t end = decomposition.find('>') + 1;
            record.tag = decomposition.substr(0, end);
            decomposition.erase(0, end);
        }
        record.decomposition = Expand(decomposition);
        byUnit[record.unit] = records.size();
        records.push_back(record);
    }

    static Unit Number(const std::string& hex)
    {
        return hex.empty() ? Unit(0) : static_cast<Unit>(std::stoul(hex, nullptr, 16));
    }

    std::vector<DatabaseRecord> records;
    std::map<Unit, std::size_t> byUnit;
};

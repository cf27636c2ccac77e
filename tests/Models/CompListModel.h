// tests/Models/CompListModel.h: the compressed list as plain bytes, by the letter of its format.
#pragma once

#include <string>

// Slow and literal: every number is read and written byte by byte, every insertion rescans the
// stream from its start. A key is its bytes with a zero element behind them.
class CompListModel
{
public:
    CompListModel(unsigned elementSize, unsigned handleSize, bool emptyString, bool longOffsets,
                  unsigned codePage);

    bool Add(const std::string& key, unsigned handle);
    // The match mode differs from the search mode at the list end.
    unsigned Search(const std::string& key, unsigned* matched, bool match = false) const;

    std::string bytes;

private:
    unsigned Walk(const std::string& key, int mode, unsigned handle, unsigned* matched);
    unsigned AddBehindEnd(const std::string& key, unsigned p, unsigned k, unsigned s,
                          unsigned handle);
    unsigned AddAlternative(const std::string& key, unsigned p, unsigned k, unsigned handle);
    unsigned Number(const std::string& from, unsigned position, unsigned size) const;
    void SetNumber(unsigned position, unsigned size, unsigned value);
    unsigned Element(unsigned position) const;
    unsigned KeySize(const std::string& key) const;
    void InsertBytes(unsigned position, unsigned count);
    void InsertTail(const std::string& key, unsigned k, unsigned position, unsigned handle);
    void SetJump(const std::string& key, unsigned position);

    unsigned element, handleSize, offset;
};

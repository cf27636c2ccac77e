// examples/Common/Output.h: a file that is written beside its place and put there in one step.
#pragma once

#include <Ostra/String/UString.h>

#include <filesystem>

namespace common
{
// What the file is to replace stays until the new one is whole and on the disk, whatever ends the
// program meanwhile. Symbolic links are followed: the file that they lead to is replaced.
class Output
{
public:
    // Finds out what stands in the place; false with an error set unless it is a plain file or
    // nothing, or a name beside it can't be had.
    bool Take(const CT_UString& given);

    // True for what can't be replaced and can be written to: a device or a pipe. Take refuses it,
    // too.
    static bool IsStream(const CT_UString& given);

    // Where the file is to be written. Before Start one may stand there that a killed program left.
    const CT_UString& Fresh() const { return fresh; }
    const CT_UString& Name() const { return name; }

    // True if the written file stands alone: somebody took away what it was to replace.
    bool IsOnlyFresh() const;

    // Makes that file anew, empty, and for those alone who may use what it is to replace: a left
    // one's other names and rights are none of ours. False with an error set, also while somebody
    // else writes to it. It isn't held: open it for writing next.
    bool Start();
    // True from then on, while the file is ours to discard.
    bool IsTaken() const { return taken; }

    // Flushes the written file and gives it its name, in place of an old one; false with an error
    // set. One without a byte, unless that is what was written, has just been made by another run.
    bool Commit(bool isEmpty = false);

    // After a failure to write: a file that somebody else is writing at the time stays his.
    void LeaveToOthers();

    // Takes the written file away. The thread has no error set, before and after.
    void Discard();

private:
    bool FollowLinks();
    bool IsFreeOrPlain(const CT_UString& file) const;
    bool IsOldIdle() const;
    bool RemoveLeft() const;
    void KeepRights() const;
    bool Replace(bool isEmpty) const;

    CT_UString name;
    CT_UString fresh;
    bool taken = false;
};

// The file as the operating system's own calls name it.
std::filesystem::path PathOf(const CT_UString& name);
} // namespace common

// examples/recode/Target.h: where the converted text goes.
#pragma once

#include <Ostra/Output/FileOutput.h>
#include <Ostra/String/UString.h>
#include <Common/Output.h>

#include <fstream>
#include <memory>
#include <ostream>
#include <string>

namespace recode
{
// A file is written beside its place and put there when it is whole. Streams, and what is no plain
// file, get the bytes at once.
class Target
{
public:
    // False with an error set.
    bool Open(const CT_UString& name, std::ostream* stream);
    bool Write(const std::string& bytes);
    // The text is whole: a file gets its name.
    bool Commit();
    // Takes away what was written, if that is possible. The thread has no error set, before and
    // after.
    void Discard();

private:
    bool CloseFile();
    void RefuseText() const;

    CT_UString name;
    common::Output place;
    std::unique_ptr<CT_FileOutput> file;
    std::ofstream device;
    std::ostream* stream = nullptr;
    unsigned written = 0; // as the size of a file counts, in 32 bits
};
} // namespace recode

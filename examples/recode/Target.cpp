// examples/recode/Target.cpp
#include "Target.h"

#include <Common/Failure.h>

namespace recode
{
using namespace common;

namespace
{
constexpr char SOURCE[] = "recode/Target";
}

bool Target::Open(const CT_UString& given, std::ostream* standard)
{
    name.v_Set(&given);
    stream = standard;
    if (!stream && Output::IsStream(name)) {
        device.open(PathOf(name), std::ios::binary);
        stream = &device;
    } else if (!stream && place.Take(name) && place.Start()) {
        file = std::make_unique<CT_FileOutput>(&place.Fresh());
        if (Failing())
            place.LeaveToOthers();
    }
    return !Failed(SOURCE);
}

bool Target::Write(const std::string& bytes)
{
    const auto size = static_cast<unsigned>(bytes.size());
    if (file) {
        file->vv_Append(bytes.data(), size);
        written += size;
    } else if (!stream->write(bytes.data(), static_cast<std::streamsize>(size)))
        RefuseText();
    return !Failed(SOURCE);
}

bool Target::Commit()
{
    if (file)
        return CloseFile() && place.Commit(written == 0);
    if (!stream->flush())
        RefuseText();
    return !Failed(SOURCE);
}

void Target::RefuseText() const
{
    if (stream && stream != &device)
        Fail(SOURCE, u"cannot write the output");
    else
        Fail(SOURCE, u"%s: there is no room for the text", name.qcuz_Get());
}

// A write that took less than it was given is no failure of the system's.
bool Target::CloseFile()
{
    if (file->vn_GetSize() != written && !Failing())
        RefuseText();
    const std::unique_ptr<CT_File> closed(file->pco_GiveFile());
    file.reset();
    return !Failed(SOURCE);
}

void Target::Discard()
{
    file.reset();
    if (Failing())
        Failure::Take();
    if (place.IsTaken())
        place.Discard();
}
} // namespace recode

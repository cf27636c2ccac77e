// tests/Ostra/File/StdFileProbe.h: a file of the stream library, opened with few words.
#pragma once

#include <Ostra/File/StdFile.h>

#include <string>

#include "Support/Files.h"

class StdFileProbe : public CT_StdFile
{
public:
    explicit StdFileProbe(const std::string& name, unsigned buffer_size = 1024)
    {
        const CT_UString text = Name(name);
        vv_Set(&text, buffer_size);
    }
    StdFileProbe(const std::string& name, et_Open open, et_Access access = e_AccessReadWrite,
                 unsigned buffer_size = 1024)
        : StdFileProbe(name, buffer_size)
    {
        Open(open, access);
    }

    void Open(et_Open open, et_Access access = e_AccessReadWrite)
    {
        vv_Open(access, open, e_ShareNone, 1, 0);
    }
    std::string Read(unsigned size)
    {
        std::string text(size, '?');
        text.resize(vn_Read(text.data(), size));
        return text;
    }
    unsigned Write(const std::string& text)
    {
        return vn_Write(text.data(), static_cast<unsigned>(text.size()));
    }
    et_FileAccess Access() const { return ec_FileAccess; }
    unsigned Buffered() const { return n_BufferOffset; }
};

const std::string FILE_PLACE = "Ostra/File/File";
const std::string STDFILE_PLACE = "Ostra/File/StdFile";

// What the class reports of a function of the library.
inline Failure StdFailure(unsigned code, const std::string& function,
                          const std::vector<std::string>& trail = {STDFILE_PLACE},
                          const std::string& name = "file")
{
    const std::string number = std::to_string(code);
    return {code,
            "(" + number + "): File \"" + name + "\": " + function + " returned error " + number,
            trail};
}

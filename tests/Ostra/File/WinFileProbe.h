// tests/Ostra/File/WinFileProbe.h: a file of the system under test, opened with few words.
#pragma once

#include <Ostra/File/WinFile.h>

#include <string>

#include "Support/Files.h"

class WinFileProbe : public CT_WinFile
{
public:
    explicit WinFileProbe(const std::string& name)
    {
        const CT_UString text = Name(name);
        vv_Set(&text, 0);
    }
    WinFileProbe(const std::string& name, et_Open open, et_Access access = e_AccessReadWrite,
                 et_Share share = e_ShareNone)
        : WinFileProbe(name)
    {
        Open(open, access, share);
    }

    void Open(et_Open open, et_Access access = e_AccessReadWrite, et_Share share = e_ShareNone)
    {
        vv_Open(access, open, share, 1, 0);
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
};

const std::string FILE_PLACE = "Ostra/File/File";
const std::string WINFILE_PLACE = "Ostra/File/WinFile";

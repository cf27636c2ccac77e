// tests/Ostra/File/MemoryFile.h: a file in memory that tells which of its primitives were called.
#pragma once

#include <Ostra/File/File.h>

#include <algorithm>
#include <string>
#include <vector>

#include "Support/Failure.h"

class MemoryFile : public CT_File
{
public:
    static constexpr unsigned CODE = 4711;

    MemoryFile() {}
    MemoryFile(const CT_String* name, unsigned size) : CT_File(name, size) {}
    explicit MemoryFile(const CT_File* file) : CT_File(file) {}

    std::string data;
    unsigned offset = 0;
    mutable std::vector<std::string> calls;
    // How many calls go well before one fails; -1 for all of them.
    mutable int good = -1;
    // The most that one read delivers.
    unsigned most = 0xFFFFFFFF;

    std::vector<std::string> TakeCalls()
    {
        std::vector<std::string> taken;
        taken.swap(calls);
        return taken;
    }

    void vv_Open(et_Access access, et_Open open, et_Share share, unsigned attribute,
                 unsigned flag) override
    {
        if (!Log("open", access, open, share, attribute, flag))
            return;
        if (open == e_OpenCreate)
            data.clear();
        offset = open == e_OpenAppend ? static_cast<unsigned>(data.size()) : 0;
        v_SetOpen(1);
    }
    void vv_Close() override
    {
        if (Log("close"))
            v_NullOpen();
    }
    void vv_Flush() override { Log("flush"); }
    void vv_Remove() override { Log("remove"); }
    void vv_Rename(const CT_String*) override { Log("rename"); }
    unsigned vn_Read(void* into, unsigned size) override
    {
        if (!Log("read", size))
            return 0;
        const std::string piece =
            data.substr(std::min<std::size_t>(offset, data.size()), std::min(size, most));
        std::copy(piece.begin(), piece.end(), static_cast<char*>(into));
        offset += static_cast<unsigned>(piece.size());
        return static_cast<unsigned>(piece.size());
    }
    unsigned vn_Write(const void* from, unsigned size) override
    {
        if (!Log("write", size))
            return 0;
        data.resize(std::max<std::size_t>(data.size(), offset + size));
        data.replace(offset, size, static_cast<const char*>(from), size);
        offset += size;
        return size;
    }
    unsigned vn_GetSize() const override
    {
        return Log("size") ? static_cast<unsigned>(data.size()) : 0;
    }
    unsigned vn_GetOffset() const override { return Log("offset") ? offset : 0; }
    void vv_SetOffset(et_Origin origin, int distance) override
    {
        if (!Log("seek", origin, distance))
            return;
        const unsigned from[] = {0, offset, static_cast<unsigned>(data.size())};
        offset = from[origin] + distance;
    }
    int vb_IsEof() const override { return Log("eof") && offset >= data.size(); }

    using CT_File::v_SetAccess;
    using CT_File::v_SetOpen;
    et_FileAccess Access() const { return ec_FileAccess; }

private:
    // Notes the call; false if it is the one to fail, which is then reported.
    template <class... Arguments>
    bool Log(std::string call, Arguments... arguments) const
    {
        ((call += " " + std::to_string(static_cast<int>(arguments))), ...);
        calls.push_back(call);
        if (good < 0 || good-- > 0)
            return true;
        good = -1;
        while (!Errors().b_IsSetError())
            Errors().v_SetError(CODE, Units(u"failed"));
        Errors().v_AddLocation("MemoryFile", 1);
        return false;
    }
};

typedef std::vector<std::string> Calls;

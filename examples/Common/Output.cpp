// examples/Common/Output.cpp
#include "Output.h"

#include "Failure.h"

#include <Ostra/File/WinFile.h>

#include <windows.h>

#include <string>
#include <vector>

namespace common
{
namespace
{
namespace fs = std::filesystem;

constexpr char SOURCE[] = "Common/Output";

constexpr unsigned FILE_BUFFER = 4096;
constexpr unsigned NORMAL = 1;
constexpr int MOST_LINKS = 40;
constexpr DWORD REPARSE_POINT = 0x400;
constexpr DWORD NO_ATTRIBUTES = 0xFFFFFFFF;

LPCWSTR System(const CT_UString& name)
{
    return reinterpret_cast<LPCWSTR>(name.qcuz_Get());
}

// Names of devices of Windows, as in \\.\NUL, and its links, which the standard library takes for
// what they lead to.
bool IsDeviceOrLink(const CT_UString& full)
{
    const DWORD attributes = GetFileAttributesW(System(full));
    return full.b_Match(qcuz_Text(u"\\\\.\\*")) ||
           (attributes != NO_ATTRIBUTES && (attributes & REPARSE_POINT) != 0);
}

void SetSystemError(const CT_UString& file)
{
    CT_ErrorManager* errors = CT_ErrorManager::spco_Get();
    while (!errors->b_IsSetError())
        errors->v_SetSystemError(qcuz_Text(u"%s"), file.qcuz_Get());
}
} // namespace

fs::path PathOf(const CT_UString& name)
{
    std::u16string units;
    for (unsigned n = 0; n < name.vn_GetLength(); ++n)
        units += static_cast<char16_t>(name.u_GetAt(n) == '\\' ? '/' : name.u_GetAt(n));
    std::error_code error;
    const fs::path path = fs::absolute(units, error);
    return error ? fs::path(units) : path;
}

bool Output::Take(const CT_UString& given)
{
    name.v_Set(&given);
    if (!Failing() && FollowLinks() && IsFreeOrPlain(name)) {
        fresh.v_Set(&name);
        fresh.v_Append(qcuz_Text(u".new"));
        IsFreeOrPlain(fresh);
    }
    return !Failed(SOURCE);
}

bool Output::IsStream(const CT_UString& given)
{
    std::error_code error;
    const fs::file_status status = fs::status(PathOf(given), error);
    return fs::exists(status) && !fs::is_regular_file(status) && !fs::is_directory(status);
}

// Leaves the name as it was given where no link stands.
bool Output::FollowLinks()
{
    std::error_code error;
    fs::path path = PathOf(name);
    int links = 0;
    for (; fs::is_symlink(fs::symlink_status(path, error)); ++links) {
        path = path.parent_path() / fs::read_symlink(path, error);
        if (error || links == MOST_LINKS) {
            Fail(SOURCE, u"%s: this symbolic link leads nowhere", name.qcuz_Get());
            return false;
        }
    }
    if (links) {
        const std::u16string target = path.u16string();
        name.v_Set(qcuz_Text(target.c_str()));
    }
    return !Failing();
}

// A link that stands beside the place is none of ours, so it isn't followed.
bool Output::IsFreeOrPlain(const CT_UString& file) const
{
    std::error_code error;
    const fs::path path = PathOf(file);
    const fs::file_status status = fs::symlink_status(path, error);
    const std::u16string full = path.u16string();
    const CT_UString units(qcuz_Text(full.c_str()));
    if ((fs::exists(status) && !fs::is_regular_file(status)) || IsDeviceOrLink(units))
        Fail(SOURCE, u"%s: this is no plain file", file.qcuz_Get());
    return !Failing();
}

bool Output::IsOnlyFresh() const
{
    std::error_code error;
    return !fs::exists(PathOf(name), error) && fs::exists(PathOf(fresh), error);
}

// Whoever works with the old file keeps it.
bool Output::IsOldIdle() const
{
    CT_WinFile old(&name, FILE_BUFFER);
    if (old.b_IsExistent() && !Failing()) {
        old.vv_Open(CT_File::e_AccessRead, CT_File::e_OpenExisting, CT_File::e_ShareNone, NORMAL,
                    0);
        if (!Failing())
            old.vv_Close();
    }
    return !Failing();
}

bool Output::Start()
{
    const HANDLE file = RemoveLeft() ? CreateFileW(System(fresh), GENERIC_WRITE, 0, nullptr,
                                                   CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr)
                                     : INVALID_HANDLE_VALUE;
    taken = file != INVALID_HANDLE_VALUE;
    if (taken)
        KeepRights();
    if (!taken || !CloseHandle(file))
        SetSystemError(fresh);
    return !Failed(SOURCE);
}

// Only where nobody has it open: a run that is at work keeps its file.
bool Output::RemoveLeft() const
{
    const HANDLE left = CreateFileW(System(fresh), GENERIC_READ | DELETE, 0, nullptr, OPEN_EXISTING,
                                    FILE_FLAG_DELETE_ON_CLOSE, nullptr);
    return left == INVALID_HANDLE_VALUE ? GetLastError() == ERROR_FILE_NOT_FOUND
                                        : CloseHandle(left) != FALSE;
}

// The new file can be written, whatever the old one says of itself.
void Output::KeepRights() const
{
    std::error_code error;
    const fs::file_status old = fs::status(PathOf(name), error);
    if (!error && fs::exists(old))
        fs::permissions(PathOf(fresh), old.permissions() | fs::perms::owner_write, error);
}

bool Output::Commit(bool isEmpty)
{
    if (IsOldIdle())
        KeepRights(); // which may have changed meanwhile, and writing takes some away
    if (!Failing() && !Replace(isEmpty))
        SetSystemError(name);
    return !Failed(SOURCE);
}

// The file is held from the flush to the renaming, so that nobody else writes to it in between.
bool Output::Replace(bool isEmpty) const
{
    const HANDLE file = CreateFileW(System(fresh), GENERIC_WRITE, FILE_SHARE_DELETE, nullptr,
                                    OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE)
        return false;
    const bool begun = isEmpty || GetFileSize(file, nullptr) != 0;
    const bool done = begun && FlushFileBuffers(file) &&
                      MoveFileExW(System(fresh), System(name), MOVEFILE_REPLACE_EXISTING);
    const DWORD code = begun ? GetLastError() : ERROR_SHARING_VIOLATION;
    const bool closed = CloseHandle(file);
    if (!done)
        SetLastError(code);
    return done && closed;
}

void Output::LeaveToOthers()
{
    const CT_ErrorManager* errors = CT_ErrorManager::spco_Get();
    if (errors->b_IsSetError() && errors->n_GetErrorCode() == ERROR_SHARING_VIOLATION)
        taken = false;
}

void Output::Discard()
{
    CT_WinFile file(&fresh, FILE_BUFFER);
    if (file.b_IsExistent() && !Failing())
        file.vv_Remove();
    if (Failing())
        Failure::Take();
}
} // namespace common

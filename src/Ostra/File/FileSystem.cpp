// Ostra/File/FileSystem.cpp
#include <Ostra/File/FileSystem.h>

#include <Ostra/File/Road.h>
#include <Ostra/Frame/Codes.h>
#include <Ostra/Frame/Counts.h>
#include <Ostra/Frame/Report.h>
#include <Ostra/Frame/Text.h>

#include <windows.h>

#include <cerrno>
#include <ctime>

static constexpr char qccz_Source[] = "Ostra/File/FileSystem";

namespace
{
constexpr unsigned ROOM = 260; // of a path, with its terminator
constexpr unsigned PART = 255; // longest directory, name and extension
constexpr unsigned DRIVES = 26;
constexpr unsigned short qcuz_Empty[] = {0};

template <class t_Unit>
int b_IsSeparator(t_Unit u_Char)
{
    return u_Char == '/' || u_Char == '\\';
}

// Where the parts of a path begin: the directory, the name, the extension, the end.
template <class t_Unit>
struct st_Parts
{
    const t_Unit* q_Directory;
    const t_Unit* q_Name;
    const t_Unit* q_Extension;
    const t_Unit* q_End;
};

template <class t_Road, class t_Unit>
st_Parts<t_Unit> so_Scan(const t_Unit* q_Path)
{
    const t_Unit* q_At = q_Path[0] && q_Path[1] == ':' ? q_Path + 2 : q_Path;
    st_Parts<t_Unit> so_Parts = {q_At, q_At, nullptr, q_At};
    for (; *q_At; ++q_At) {
        // The second byte of a double-byte character is no separator and no point.
        if (t_Road::sb_IsLead(*q_At) && q_At[1])
            ++q_At;
        else if (b_IsSeparator(*q_At)) {
            so_Parts.q_Name = q_At + 1;
            so_Parts.q_Extension = nullptr;
        } else if (*q_At == '.')
            so_Parts.q_Extension = q_At;
    }
    so_Parts.q_End = q_At;
    if (!so_Parts.q_Extension)
        so_Parts.q_Extension = q_At;
    return so_Parts;
}

template <class t_Road, class t_Unit>
void v_SetPart(CT_String* pco_Part, const t_Unit* q_From, const t_Unit* q_To, unsigned n_Most)
{
    const unsigned n_Count = static_cast<unsigned>(q_To - q_From);
    if (pco_Part)
        t_Road::sv_Set(pco_Part, q_From, n_Count < n_Most ? n_Count : n_Most);
}

// True if a separator, and not the second byte of a character, ends the text.
template <class t_Road, class t_Unit>
int b_EndsInSeparator(const t_Unit* q_Text)
{
    int b_Separator = 0;
    for (; *q_Text; ++q_Text) {
        const int b_Double = t_Road::sb_IsLead(*q_Text) && q_Text[1];
        b_Separator = !b_Double && b_IsSeparator(*q_Text);
        q_Text += b_Double;
    }
    return b_Separator;
}

// The current directory of a drive as the area's text, or the error number of the failure.
template <class t_Road, class t_Unit>
int i_CurrentPath(t_Unit (&au_Path)[ROOM], unsigned n_Drive)
{
    const t_Unit u_Letter = static_cast<t_Unit>('A' + n_Drive - 1);
    const t_Unit au_Root[] = {u_Letter, ':', '\\', 0};
    const t_Unit au_Here[] = {u_Letter, ':', '.', 0};
    if (n_Drive && (n_Drive > DRIVES || t_Road::sn_DriveType(au_Root) <= DRIVE_NO_ROOT_DIR))
        return EACCES;
    const DWORD n_Length = n_Drive ? t_Road::sn_FullPath(au_Here, au_Path, ROOM)
                                   : t_Road::sn_CurrentPath(au_Path, ROOM);
    if (n_Length && n_Length < ROOM)
        return 0;
    au_Path[0] = 0;
    return n_Length ? ERANGE : EACCES;
}

// Kept: the function's name goes as 8-bit text into a format that reads wide text, two of its
// characters as one unit. Further terminators end it there.
alignas(unsigned short) constexpr char qccz_WideCall[] = "tgetdcwd\0\0";
alignas(unsigned short) constexpr char qccz_NarrowCall[] = "getdcwd\0\0";

const char* qccz_FailedCall(CT_WideRoad)
{
    return qccz_WideCall;
}

const char* qccz_FailedCall(CT_NarrowRoad)
{
    return qccz_NarrowCall;
}

// Remembers the directory just entered as that of its drive, as the runtime of the platform does.
template <class t_Road>
int b_RememberPath()
{
    typename t_Road::t_Unit au_Path[ROOM];
    const DWORD n_Length = t_Road::sn_CurrentPath(au_Path, ROOM);
    if (!n_Length)
        return 0;
    if (n_Length >= ROOM || (b_IsSeparator(au_Path[0]) && au_Path[0] == au_Path[1]))
        return 1;
    typename t_Road::t_Unit u_Letter = au_Path[0];
    if (u_Letter >= 'a' && u_Letter <= 'z')
        u_Letter = static_cast<typename t_Road::t_Unit>(u_Letter - 'a' + 'A');
    const typename t_Road::t_Unit au_Name[] = {'=', u_Letter, ':', 0};
    return t_Road::sb_SetVariable(au_Name, au_Path) != 0;
}

// The temporary directory with a "\" at its end; the area has two units more than its room.
template <class t_Road, class t_Unit>
void v_TemporaryPath(t_Unit* pu_Path, unsigned n_Room)
{
    DWORD n_Length = t_Road::sn_TemporaryPath(pu_Path, n_Room);
    if (n_Length >= n_Room)
        n_Length = 0;
    // Kept: "/" is no end here.
    if (!n_Length || pu_Path[n_Length - 1] != '\\')
        pu_Path[n_Length++] = '\\';
    pu_Path[n_Length] = 0;
}

// The generator of the platform's runtime.
unsigned n_NextRandom(unsigned& n_State)
{
    n_State = n_State * 214013 + 2531011;
    return n_State >> 16 & 0x7FFF;
}

const unsigned short* q_TemporaryFormat(CT_WideRoad)
{
    return qcuz_Text(u"%s%s%d%d.%s");
}

const char* q_TemporaryFormat(CT_NarrowRoad)
{
    return "%s%s%d%d.%s";
}

// How much of the temporary directory is asked for.
constexpr unsigned n_TemporaryRoom(CT_WideRoad)
{
    return 1023;
}

constexpr unsigned n_TemporaryRoom(CT_NarrowRoad)
{
    return ROOM;
}

// The separator at or behind n_From: the next "\", or the next "/" if no "\" is left; NONE if
// there is none.
unsigned n_FindSeparator(const CT_String* pcco_Path, unsigned n_From)
{
    const unsigned n_Found = pcco_Path->vn_Find('\\', n_From);
    return n_Found != NONE ? n_Found : pcco_Path->vn_Find('/', n_From);
}

// How many characters at n_Head have to go for n_Most to be kept; all directories if that isn't
// enough.
unsigned n_DisplayCut(const CT_String* pcco_Path, unsigned n_Head, unsigned n_Most)
{
    const unsigned n_Length = pcco_Path->vn_GetLength();
    unsigned n_Cut = 0;
    unsigned n_At = n_FindSeparator(pcco_Path, n_Head);
    while (n_At != NONE) {
        n_Cut = n_At - n_Head;
        if (n_Length - n_Cut + 3 <= n_Most)
            break;
        n_At = n_FindSeparator(pcco_Path, n_At + 1);
    }
    return n_Cut;
}
} // namespace

int CT_FileSystem::sb_IsExistent(const CT_String* pco_Path)
{
    return t_Call(GetFileAttributesW, GetFileAttributesA, pco_Path) != INVALID_FILE_ATTRIBUTES;
}

void CT_FileSystem::sv_GetCurrentPath(CT_String* pco_Path, unsigned n_Drive)
{
    t_OnRoad([=](auto o_Road) {
        using t_Road = decltype(o_Road);
        typename t_Road::t_Unit au_Path[ROOM] = {};
        if (const int i_Error = i_CurrentPath<t_Road>(au_Path, n_Drive))
            CT_Report::sv_Format(qccz_Source, i_Error, FILE_ERROR, qcuz_Empty,
                                 qccz_FailedCall(o_Road), i_Error);
        t_Road::sv_Set(pco_Path, au_Path);
    });
}

void CT_FileSystem::sv_SplitPath(const CT_String* pco_Path, CT_String* pco_Drive,
                                 CT_String* pco_Directory, CT_String* pco_Name,
                                 CT_String* pco_Extension)
{
    t_OnRoad([=](auto o_Road) {
        using t_Road = decltype(o_Road);
        const typename t_Road::CT_Name co_Path(pco_Path);
        const auto so_Parts = so_Scan<t_Road>(co_Path.q_Get());
        v_SetPart<t_Road>(pco_Drive, co_Path.q_Get(), so_Parts.q_Directory, PART);
        v_SetPart<t_Road>(pco_Directory, so_Parts.q_Directory, so_Parts.q_Name, PART);
        v_SetPart<t_Road>(pco_Name, so_Parts.q_Name, so_Parts.q_Extension, PART);
        v_SetPart<t_Road>(pco_Extension, so_Parts.q_Extension, so_Parts.q_End, PART);
    });
}

void CT_FileSystem::sv_MakePath(CT_String* pco_Path, const CT_String* pco_Drive,
                                const CT_String* pco_Directory, const CT_String* pco_Name,
                                const CT_String* pco_Extension)
{
    t_OnRoad([=](auto o_Road) {
        using t_Road = decltype(o_Road);
        using t_Unit = typename t_Road::t_Unit;
        const typename t_Road::CT_Name co_Drive(pco_Drive);
        const typename t_Road::CT_Name co_Directory(pco_Directory);
        const typename t_Road::CT_Name co_Name(pco_Name);
        const typename t_Road::CT_Name co_Extension(pco_Extension);
        const t_Unit au_Drive[] = {*co_Drive.q_Get(), ':'};
        const t_Unit au_Separator[] = {'\\'};
        const t_Unit au_Point[] = {'.'};
        typename t_Road::t_String co_Path;
        co_Path.vv_SetMinSize(ROOM, 0);
        if (*co_Drive.q_Get())
            co_Path.v_Append(au_Drive, 2);
        co_Path.v_Append(co_Directory.q_Get(), ALL);
        if (*co_Directory.q_Get() && !b_EndsInSeparator<t_Road>(co_Directory.q_Get()))
            co_Path.v_Append(au_Separator, 1);
        co_Path.v_Append(co_Name.q_Get(), ALL);
        if (*co_Extension.q_Get() && *co_Extension.q_Get() != '.')
            co_Path.v_Append(au_Point, 1);
        co_Path.v_Append(co_Extension.q_Get(), ALL);
        t_Road::sv_Set(pco_Path, t_Road::sq_Text(co_Path));
    });
}

void CT_FileSystem::sv_FullPath(CT_String* pco_Path)
{
    t_OnRoad([=](auto o_Road) {
        using t_Road = decltype(o_Road);
        const typename t_Road::CT_Name co_Path(pco_Path);
        typename t_Road::t_Unit au_Path[ROOM];
        const DWORD n_Length = pco_Path->vn_GetLength()
                                   ? t_Road::sn_FullPath(co_Path.q_Get(), au_Path, ROOM)
                                   : t_Road::sn_CurrentPath(au_Path, ROOM);
        if (n_Length && n_Length < ROOM)
            t_Road::sv_Set(pco_Path, au_Path);
        else
            CT_Report::sv_Format(qccz_Source, SEMANTIC_ERROR, SEMANTIC_ERROR, qcuz_Empty);
    });
}

void CT_FileSystem::sv_MakeDisplayString(CT_String* pco_Path, unsigned n_MaxLength)
{
    CT_UString co_Drive;
    sv_SplitPath(pco_Path, &co_Drive, nullptr, nullptr, nullptr);
    if (pco_Path->vn_GetLength() <= n_MaxLength)
        return;
    unsigned n_Head = co_Drive.vn_GetLength();
    n_Head += b_IsSeparator(pco_Path->vc_GetAt(n_Head));
    if (const unsigned n_Cut = n_DisplayCut(pco_Path, n_Head, n_MaxLength)) {
        pco_Path->vv_Remove(n_Cut, n_Head);
        pco_Path->v_Insert("...", 3, n_Head);
    }
}

// A name that can't be made is empty, whatever stood in the string: the loop must not take that for
// a name in use.
void CT_FileSystem::sv_MakeTemporaryName(CT_String* pco_Path, const CT_String* pco_Prefix,
                                         const CT_String* pco_Extension, const CT_String*)
{
    t_OnRoad([=](auto o_Road) {
        using t_Road = decltype(o_Road);
        const typename t_Road::CT_Name co_Prefix(pco_Prefix);
        const typename t_Road::CT_Name co_Extension(pco_Extension);
        typename t_Road::t_Unit au_Directory[n_TemporaryRoom(t_Road()) + 2];
        v_TemporaryPath<t_Road>(au_Directory, n_TemporaryRoom(t_Road()));
        unsigned n_State = static_cast<unsigned>(std::time(nullptr));
        do {
            pco_Path->vv_SetSize(0, 0);
            pco_Path->v_Format(q_TemporaryFormat(o_Road), au_Directory, co_Prefix.q_Get(),
                               GetCurrentThreadId(), n_NextRandom(n_State), co_Extension.q_Get());
        } while (pco_Path->vn_GetLength() && sb_IsExistent(pco_Path));
    });
    const CT_Report::CT_Since co_Since;
    if (pco_Path->vn_GetLength())
        sv_FullPath(pco_Path);
    co_Since.b_Failed(qccz_Source);
}

int CT_FileSystem::sb_ChangePath(const CT_String* pco_Path)
{
    if (!t_Call(SetCurrentDirectoryW, SetCurrentDirectoryA, pco_Path))
        return 0;
    return t_OnRoad([](auto o_Road) { return b_RememberPath<decltype(o_Road)>(); });
}

int CT_FileSystem::sb_MakePath(const CT_String* pco_Path)
{
    return t_Call(CreateDirectoryW, CreateDirectoryA, pco_Path, LPSECURITY_ATTRIBUTES()) != 0;
}

int CT_FileSystem::sb_RemovePath(const CT_String* pco_Path)
{
    return t_Call(RemoveDirectoryW, RemoveDirectoryA, pco_Path) != 0;
}

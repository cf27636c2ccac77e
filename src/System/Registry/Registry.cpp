// System/Registry/Registry.cpp
#include <System/Registry/Registry.h>

#include <Ostra/File/Road.h>
#include <Ostra/Frame/Report.h>

#include <windows.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>

static constexpr char qccz_Source[] = "System/Registry/Registry";

namespace
{
constexpr DWORD READING = 0x20019;
constexpr DWORD WRITING = 0x20006;
constexpr DWORD DELETING = 0x2001F;

// The longest name of a key, in any code page, with its terminator.
constexpr unsigned NAME_ROOM = 255 * 4 + 1;

// A text in the class that the system's road takes, so that a call converts nothing any more: what
// can't be converted must not reach the system as an empty name.
class CT_RoadText
{
public:
    explicit CT_RoadText(const CT_String* pcco_Text)
    {
        if (!pcco_Text)
            return;
        if (CT_OS::sb_GetIsWindowsNT())
            co_Wide.v_Set(pcco_Text);
        else
            co_Narrow.v_Set(pcco_Text);
    }
    const CT_String* pcco_Get() const
    {
        return CT_OS::sb_GetIsWindowsNT() ? static_cast<const CT_String*>(&co_Wide) : &co_Narrow;
    }

private:
    CT_UString co_Wide;
    CT_CString co_Narrow;
};

// Reports a code that a call has returned. Result: true for one that is none of success.
int b_Refused(LSTATUS i4_Code, unsigned n_Line = __builtin_LINE())
{
    if (!i4_Code)
        return 0;
    SetLastError(static_cast<DWORD>(i4_Code));
    CT_Report::sv_System(qccz_Source, n_Line);
    return 1;
}

LSTATUS i4_Open(HKEY h_Parent, const CT_String* pcco_Path, DWORD n_Access, HKEY* ph_Key)
{
    return t_Call(RegOpenKeyExW, RegOpenKeyExA, h_Parent, pcco_Path, DWORD(0), n_Access, ph_Key);
}

LSTATUS i4_CountSubkeys(HKEY h_Key, DWORD* pn_Subkeys)
{
    DWORD n_Longest;
    return t_Call(RegQueryInfoKeyW, RegQueryInfoKeyA, h_Key, nullptr, nullptr, nullptr, pn_Subkeys,
                  &n_Longest, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr);
}

LSTATUS i4_FirstSubkey(HKEY h_Key, unsigned short* pu_Name, DWORD n_Room)
{
    return RegEnumKeyExW(h_Key, 0, qcuz_System(pu_Name), &n_Room, nullptr, nullptr, nullptr,
                         nullptr);
}

LSTATUS i4_FirstSubkey(HKEY h_Key, char* pc_Name, DWORD n_Room)
{
    return RegEnumKeyExA(h_Key, 0, pc_Name, &n_Room, nullptr, nullptr, nullptr, nullptr);
}

LSTATUS i4_FirstSubkey(HKEY h_Key, CT_String* pco_Name)
{
    return t_OnRoad([=](auto o_Road) {
        using t_Road = decltype(o_Road);
        typename t_Road::t_Unit au_Name[NAME_ROOM];
        const LSTATUS i4_Code = i4_FirstSubkey(h_Key, au_Name, NAME_ROOM);
        if (!i4_Code)
            t_Road::sv_Set(pco_Name, au_Name);
        return i4_Code;
    });
}

int b_DeleteTree(HKEY h_Parent, const CT_String* pcco_Name);

// Deletes the subkeys of an open key, the first one each time. Result: whether none is left.
int b_DeleteSubkeys(HKEY h_Key)
{
    DWORD n_Subkeys = 0;
    for (;;) {
        if (b_Refused(i4_CountSubkeys(h_Key, &n_Subkeys)))
            return 0;
        if (!n_Subkeys)
            return 1;
        const CT_Report::CT_Since co_Since;
        CT_UString co_Wide;
        CT_CString co_Narrow;
        CT_String* const pco_Name =
            CT_OS::sb_GetIsWindowsNT() ? static_cast<CT_String*>(&co_Wide) : &co_Narrow;
        if (b_Refused(i4_FirstSubkey(h_Key, pco_Name)) || co_Since.b_Failed(qccz_Source))
            return 0;
        if (!b_DeleteTree(h_Key, pco_Name)) {
            CT_Report::sb_Failed(qccz_Source);
            return 0;
        }
    }
}

// Deletes a key from the bottom up. Result: whether it is gone.
int b_DeleteTree(HKEY h_Parent, const CT_String* pcco_Name)
{
    HKEY h_Key = nullptr;
    if (b_Refused(i4_Open(h_Parent, pcco_Name, DELETING, &h_Key)))
        return 0;
    LSTATUS i4_Code = 0;
    const int b_Empty = b_DeleteSubkeys(h_Key);
    if (b_Empty)
        i4_Code = t_Call(RegDeleteKeyW, RegDeleteKeyA, h_Parent, pcco_Name);
    RegCloseKey(h_Key);
    return b_Empty && !b_Refused(i4_Code);
}

void v_StripKey(CT_String* pco_Path)
{
    const CT_UString co_Separator(u"\\");
    pco_Path->vv_Strip(&co_Separator);
}

// Whether bytes that are read as a text of the road end with its terminator, or are none at all.
// A half of a unit at the end is none: its other half is what lay there before.
bool b_IsEnded(const CT_Buffer& co_Text)
{
    const unsigned n_Width = CT_OS::sb_GetIsWindowsNT() ? 2 : 1;
    const unsigned n_Used = co_Text.n_GetUsedSize();
    const auto pc_Text = static_cast<const char*>(co_Text.qcv_Get());
    return !n_Used || (n_Used % n_Width == 0 && !pc_Text[n_Used - 1] && !pc_Text[n_Used - n_Width]);
}

// The system looks behind a text without a terminator, and stores two more bytes where it finds
// zeros there. What lies there isn't the text's, so it finds others.
void v_Fence(CT_Buffer* pco_Text)
{
    const unsigned n_Used = pco_Text->n_GetUsedSize();
    pco_Text->v_Append("\xFF\xFF", 2);
    if (pco_Text->n_GetUsedSize() > n_Used)
        pco_Text->v_SetUsedSize(n_Used);
}

unsigned n_FindLast(const CT_UString& co_Text, unsigned short u_Find)
{
    unsigned n_At = co_Text.vn_GetLength();
    while (n_At && co_Text.u_GetAt(n_At - 1) != u_Find)
        --n_At;
    return n_At ? n_At - 1 : 0;
}
} // namespace

// ---- Construction ---------------------------------------------------------------------------

void* CT_Registry::operator new(std::size_t n_Size) noexcept
{
    return CT_Report::spv_New(n_Size, qccz_Source);
}

void CT_Registry::operator delete(void* pv_Object)
{
    std::free(pv_Object);
}

CT_Registry::CT_Registry(HKEY h_Root) : h_Key(h_Root) {}

CT_Registry::CT_Registry(HKEY h_Root, const CT_String* pcco_Path)
{
    v_Init(h_Root, pcco_Path);
}

CT_Registry::CT_Registry(const CT_Registry* pcco_Other)
    : h_Key(pcco_Other->h_Key),
      co_Key(&pcco_Other->co_Key),
      co_Buffer(&pcco_Other->co_Buffer)
{}

void CT_Registry::v_Init(HKEY h_Root)
{
    h_Key = h_Root;
    co_Key.vv_SetSize(0, 0);
    co_Buffer.v_SetSize(0, 0);
}

// The path may be the cursor's own.
void CT_Registry::v_Init(HKEY h_Root, const CT_String* pcco_Path)
{
    const CT_Report::CT_Since co_Since;
    CT_UString co_Path(pcco_Path);
    v_StripKey(&co_Path);
    v_Init(h_Root);
    if (!co_Since.b_Failed(qccz_Source))
        co_Key.v_Set(&co_Path);
}

void CT_Registry::v_Set(HKEY h_Root)
{
    v_Init(h_Root);
}

void CT_Registry::v_Set(HKEY h_Root, const CT_String* pcco_Path)
{
    v_Init(h_Root, pcco_Path);
}

void CT_Registry::v_Set(const CT_Registry* pcco_Other)
{
    co_Key.v_Set(&pcco_Other->co_Key);
    co_Buffer.v_Set(&pcco_Other->co_Buffer);
    h_Key = pcco_Other->h_Key;
}

// ---- Keys -----------------------------------------------------------------------------------

// Turns a path as a caller gives it into one from the root.
void CT_Registry::v_MakeFullKey(CT_String* pco_Path) const
{
    if (pco_Path->vu_GetAt(0) == '\\') {
        v_StripKey(pco_Path);
        return;
    }
    if (pco_Path->vi_Compare(u"..")) {
        // Kept: at the root, too, a "\" stands in front, which the system refuses.
        pco_Path->v_Insert(qcuz_Text(u"\\"), 1, 0);
        pco_Path->v_Insert(&co_Key);
        return;
    }
    pco_Path->v_Set(&co_Key);
    if (pco_Path->vn_GetLength())
        pco_Path->vv_Remove(CT_String::ALL, n_FindLast(co_Key, '\\'));
}

void CT_Registry::v_CreateKey(const CT_String* pcco_NewKey)
{
    const CT_Report::CT_Since co_Since;
    CT_UString co_Path(pcco_NewKey);
    v_MakeFullKey(&co_Path);
    const CT_RoadText co_Text(&co_Path);
    if (co_Since.b_Failed(qccz_Source))
        return;
    HKEY h_New = nullptr;
    DWORD n_Disposition = 0;
    if (!b_Refused(t_Call(RegCreateKeyExW, RegCreateKeyExA, h_Key, co_Text.pcco_Get(), DWORD(0),
                          nullptr, DWORD(0), WRITING, nullptr, &h_New, &n_Disposition)))
        RegCloseKey(h_New);
}

void CT_Registry::v_SetKey(const CT_String* pcco_NewKey)
{
    const CT_Report::CT_Since co_Since;
    CT_UString co_Path(pcco_NewKey);
    v_MakeFullKey(&co_Path);
    const CT_RoadText co_Text(&co_Path);
    if (co_Since.b_Failed(qccz_Source))
        return;
    HKEY h_Found = nullptr;
    if (b_Refused(i4_Open(h_Key, co_Text.pcco_Get(), READING, &h_Found)))
        return;
    RegCloseKey(h_Found);
    co_Key.v_Set(&co_Path);
}

// The key of the cursor, opened; null after a report.
HKEY CT_Registry::h_OpenCursor(DWORD n_Access) const
{
    const CT_Report::CT_Since co_Since;
    const CT_RoadText co_Text(&co_Key);
    if (co_Since.b_Failed(qccz_Source))
        return nullptr;
    HKEY h_Cursor = nullptr;
    return b_Refused(i4_Open(h_Key, co_Text.pcco_Get(), n_Access, &h_Cursor)) ? nullptr : h_Cursor;
}

void CT_Registry::v_DeleteKey(const CT_String* pcco_Name)
{
    const CT_Report::CT_Since co_Since;
    const CT_RoadText co_Text(pcco_Name);
    if (co_Since.b_Failed(qccz_Source))
        return;
    if (const HKEY h_Cursor = h_OpenCursor(WRITING)) {
        v_DeleteKey(h_Cursor, co_Text.pcco_Get());
        RegCloseKey(h_Cursor);
    }
}

// What can't be deleted has been reported where it was met; the call that hands it on has no place.
void CT_Registry::v_DeleteKey(HKEY h_Parent, const CT_String* pcco_Name)
{
    b_DeleteTree(h_Parent, pcco_Name);
}

// ---- Values ---------------------------------------------------------------------------------

// Fetches the value into the buffer.
void CT_Registry::v_ValueToBuffer(const CT_String* pcco_Name, DWORD n_Type)
{
    const CT_Report::CT_Since co_Since;
    const CT_RoadText co_Name(pcco_Name);
    if (co_Since.b_Failed(qccz_Source))
        return;
    const HKEY h_Cursor = h_OpenCursor(READING);
    if (!h_Cursor)
        return;
    DWORD n_Size = 0;
    const auto i4_Query = [&](const void* qcv_Data) -> LSTATUS {
        DWORD n_Stored = 0;
        const LSTATUS i4_Code =
            t_Call(RegQueryValueExW, RegQueryValueExA, h_Cursor, co_Name.pcco_Get(), nullptr,
                   &n_Stored, static_cast<BYTE*>(const_cast<void*>(qcv_Data)), &n_Size);
        return !i4_Code && n_Stored != n_Type ? ERROR_INVALID_PARAMETER : i4_Code;
    };
    LSTATUS i4_Code = i4_Query(nullptr);
    // Between two calls another process may store what needs more room. Without any, the system
    // fetches nothing and tells success all the same.
    for (int b_More = !i4_Code; b_More;) {
        const DWORD n_Room = n_Size;
        co_Buffer.v_SetSize(n_Room, 1);
        i4_Code = co_Since.b_Failed(qccz_Source) ? 0 : i4_Query(co_Buffer.qcv_Get());
        b_More = (!i4_Code || i4_Code == ERROR_MORE_DATA) && n_Size > n_Room;
    }
    RegCloseKey(h_Cursor);
    if (!b_Refused(i4_Code) && !co_Since.b_HasFailed())
        co_Buffer.v_SetUsedSize(n_Size);
}

// A text that was stored without a terminator gets one, which the used size doesn't count.
void CT_Registry::v_EndText()
{
    if (b_IsEnded(co_Buffer))
        return;
    const unsigned n_Used = co_Buffer.n_GetUsedSize();
    constexpr unsigned ZEROS = 3; // a whole unit also behind a half
    const CT_Report::CT_Since co_Since;
    co_Buffer.v_SetMinSize(n_Used + ZEROS, 1);
    if (!co_Since.b_HasFailed())
        std::memset(static_cast<char*>(const_cast<void*>(co_Buffer.qcv_Get())) + n_Used, 0, ZEROS);
}

// Stores the buffer as the value.
void CT_Registry::v_BufferToValue(const CT_String* pcco_Name, DWORD n_Type) const
{
    const CT_Report::CT_Since co_Since;
    const CT_RoadText co_Name(pcco_Name);
    CT_Buffer co_Data(&co_Buffer);
    if (n_Type == REG_SZ && !b_IsEnded(co_Data))
        v_Fence(&co_Data);
    if (co_Since.b_Failed(qccz_Source))
        return;
    // Kept: asks for no more than reading where there are no wide calls.
    const HKEY h_Cursor = h_OpenCursor(CT_OS::sb_GetIsWindowsNT() ? WRITING : READING);
    if (!h_Cursor)
        return;
    const LSTATUS i4_Code =
        t_Call(RegSetValueExW, RegSetValueExA, h_Cursor, co_Name.pcco_Get(), DWORD(0), n_Type,
               static_cast<const BYTE*>(co_Data.qcv_Get()), DWORD(co_Data.n_GetUsedSize()));
    RegCloseKey(h_Cursor);
    b_Refused(i4_Code);
}

void CT_Registry::v_GetValue(const CT_String* pcco_Name, CT_String* pco_Out)
{
    v_ValueToBuffer(pcco_Name, REG_SZ);
    if (!CT_Report::sb_IsSet())
        v_EndText();
    if (CT_Report::sb_Failed(qccz_Source))
        return;
    // Kept: bytes of the road, whatever the class of the string.
    pco_Out->v_Set(&co_Buffer);
}

void CT_Registry::v_GetValue(const CT_String* pcco_Name, CT_Buffer* pco_Out)
{
    v_ValueToBuffer(pcco_Name, REG_BINARY);
    if (!CT_Report::sb_Failed(qccz_Source))
        pco_Out->v_Set(&co_Buffer);
}

void CT_Registry::v_GetValue(const CT_String* pcco_Name, DWORD* pn_Out)
{
    // Kept: stores, and gives what was stored.
    v_BufferToValue(pcco_Name, REG_DWORD);
    if (CT_Report::sb_Failed(qccz_Source))
        return;
    DWORD n_Value = 0;
    const unsigned n_Size = std::min<unsigned>(co_Buffer.n_GetUsedSize(), sizeof(n_Value));
    if (n_Size)
        std::memcpy(&n_Value, co_Buffer.qcv_Get(), n_Size);
    *pn_Out = n_Value;
}

void CT_Registry::v_SetValue(const CT_String* pcco_Name, const CT_String* pcco_Value)
{
    co_Buffer.v_Set(pcco_Value->pcco_GetBuffer());
    v_BufferToValue(pcco_Name, REG_SZ);
}

void CT_Registry::v_SetValue(const CT_String* pcco_Name, const CT_Buffer* pcco_Value)
{
    co_Buffer.v_Set(pcco_Value);
    v_BufferToValue(pcco_Name, REG_BINARY);
}

void CT_Registry::v_SetValue(const CT_String* pcco_Name, DWORD n_Value)
{
    const CT_Report::CT_Since co_Since;
    co_Buffer.v_Set(&n_Value, sizeof(n_Value), 32);
    if (!co_Since.b_Failed(qccz_Source))
        v_BufferToValue(pcco_Name, REG_DWORD);
}

void CT_Registry::v_DeleteValue(const CT_String* pcco_Name) const
{
    const CT_Report::CT_Since co_Since;
    const CT_RoadText co_Name(pcco_Name);
    if (co_Since.b_Failed(qccz_Source))
        return;
    const HKEY h_Cursor = h_OpenCursor(WRITING);
    if (!h_Cursor)
        return;
    const LSTATUS i4_Code = t_Call(RegDeleteValueW, RegDeleteValueA, h_Cursor, co_Name.pcco_Get());
    RegCloseKey(h_Cursor);
    b_Refused(i4_Code);
}

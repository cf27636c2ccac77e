// Ostra/File/Road.h: the wide and the 8-bit road of names to the system. Internal.
//
// Which road is taken is asked of CT_OS at each call, and nothing is remembered. A pair of services
// that takes names is called by t_Call; what also brings text back is written once for both roads,
// as a template over CT_WideRoad and CT_NarrowRoad, and run by t_OnRoad.
#pragma once

#include <Ostra/Frame/SystemText.h>
#include <Ostra/String/CString.h>
#include <Ostra/String/UString.h>
#include <System/OS/OS.h>

#include <windows.h>

#include <type_traits>

struct CT_WideRoad
{
    using t_Unit = unsigned short;
    using t_String = CT_UString;
    using t_FindData = WIN32_FIND_DATAW;

    // A string as wide text; null is the empty text.
    class CT_Name
    {
    public:
        explicit CT_Name(const CT_String* pcco_Name)
        {
            if (pcco_Name)
                co_Text.v_Set(pcco_Name);
        }
        const t_Unit* q_Get() const { return co_Text.qcuz_Get(); }
        operator LPCWSTR() const { return qcuz_System(co_Text.qcuz_Get()); }

    private:
        CT_UString co_Text;
    };

    static const t_Unit* sq_Text(const t_String& co_Text) { return co_Text.qcuz_Get(); }
    static void sv_Set(CT_String* pco_Text, const t_Unit* qcuz_Text,
                       unsigned n_Count = CT_String::ALL)
    {
        pco_Text->v_Set(qcuz_Text, n_Count);
    }
    static int sb_IsLead(t_Unit) { return 0; }

    // The services that bring text back: the length of the result, or the room that it needs; 0 on
    // failure.
    static DWORD sn_FullPath(const t_Unit* qcuz_Path, t_Unit* pu_Full, DWORD n_Room)
    {
        return GetFullPathNameW(qcuz_System(qcuz_Path), n_Room, qcuz_System(pu_Full), nullptr);
    }
    static DWORD sn_CurrentPath(t_Unit* pu_Path, DWORD n_Room)
    {
        return GetCurrentDirectoryW(n_Room, qcuz_System(pu_Path));
    }
    static DWORD sn_TemporaryPath(t_Unit* pu_Path, DWORD n_Room)
    {
        return GetTempPathW(n_Room, qcuz_System(pu_Path));
    }
    static UINT sn_DriveType(const t_Unit* qcuz_Root)
    {
        return GetDriveTypeW(qcuz_System(qcuz_Root));
    }
    static BOOL sb_SetVariable(const t_Unit* qcuz_Name, const t_Unit* qcuz_Value)
    {
        return SetEnvironmentVariableW(qcuz_System(qcuz_Name), qcuz_System(qcuz_Value));
    }
    static HANDLE sh_FindFirst(LPCWSTR qcuz_Pattern, t_FindData* pso_Found)
    {
        return FindFirstFileW(qcuz_Pattern, pso_Found);
    }
    static BOOL sb_FindNext(HANDLE h_Search, t_FindData* pso_Found)
    {
        return FindNextFileW(h_Search, pso_Found);
    }
};

struct CT_NarrowRoad
{
    using t_Unit = char;
    using t_String = CT_CString;
    using t_FindData = WIN32_FIND_DATAA;

    // A string as 8-bit text, wide text in the system's code page; null is the empty text.
    class CT_Name
    {
    public:
        explicit CT_Name(const CT_String* pcco_Name)
        {
            if (pcco_Name)
                co_Text.v_Set(pcco_Name);
        }
        const t_Unit* q_Get() const { return co_Text.qccz_Get(); }
        operator LPCSTR() const { return co_Text.qccz_Get(); }

    private:
        CT_CString co_Text;
    };

    static const t_Unit* sq_Text(const t_String& co_Text) { return co_Text.qccz_Get(); }
    static void sv_Set(CT_String* pco_Text, const t_Unit* qccz_Text,
                       unsigned n_Count = CT_String::ALL)
    {
        pco_Text->v_Set(qccz_Text, n_Count, -2);
    }
    static int sb_IsLead(t_Unit c_Byte) { return IsDBCSLeadByte(static_cast<BYTE>(c_Byte)); }

    static DWORD sn_FullPath(const t_Unit* qccz_Path, t_Unit* pc_Full, DWORD n_Room)
    {
        return GetFullPathNameA(qccz_Path, n_Room, pc_Full, nullptr);
    }
    static DWORD sn_CurrentPath(t_Unit* pc_Path, DWORD n_Room)
    {
        return GetCurrentDirectoryA(n_Room, pc_Path);
    }
    static DWORD sn_TemporaryPath(t_Unit* pc_Path, DWORD n_Room)
    {
        return GetTempPathA(n_Room, pc_Path);
    }
    static UINT sn_DriveType(const t_Unit* qccz_Root) { return GetDriveTypeA(qccz_Root); }
    static BOOL sb_SetVariable(const t_Unit* qccz_Name, const t_Unit* qccz_Value)
    {
        return SetEnvironmentVariableA(qccz_Name, qccz_Value);
    }
    static HANDLE sh_FindFirst(LPCSTR qccz_Pattern, t_FindData* pso_Found)
    {
        return FindFirstFileA(qccz_Pattern, pso_Found);
    }
    static BOOL sb_FindNext(HANDLE h_Search, t_FindData* pso_Found)
    {
        return FindNextFileA(h_Search, pso_Found);
    }
};

// Runs f_Work with the road of the system.
template <class t_Work>
auto t_OnRoad(t_Work f_Work)
{
    return CT_OS::sb_GetIsWindowsNT() ? f_Work(CT_WideRoad()) : f_Work(CT_NarrowRoad());
}

// An argument as a road hands it to the system: strings as names, all else as it is.
template <class t_Road, class t_Argument>
auto t_Pass(t_Argument o_Argument)
{
    if constexpr (std::is_convertible_v<t_Argument, const CT_String*> &&
                  !std::is_null_pointer_v<t_Argument>)
        return typename t_Road::CT_Name(o_Argument);
    else
        return o_Argument;
}

// Calls the wide or the 8-bit form of a service.
template <class t_Wide, class t_Narrow, class... t_Arguments>
auto t_Call(t_Wide f_Wide, t_Narrow f_Narrow, t_Arguments... o_Arguments)
{
    return CT_OS::sb_GetIsWindowsNT() ? f_Wide(t_Pass<CT_WideRoad>(o_Arguments)...)
                                      : f_Narrow(t_Pass<CT_NarrowRoad>(o_Arguments)...);
}

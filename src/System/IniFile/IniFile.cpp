// System/IniFile/IniFile.cpp
#include <System/IniFile/IniFile.h>

#include <Ostra/Frame/Counts.h>
#include <Ostra/Frame/Report.h>

#include <windows.h>

#include <cstdio>
#include <cstdlib>

static constexpr char qccz_Source[] = "System/IniFile/IniFile";

// Room for a value and its terminator.
static constexpr unsigned ROOM = 1024;

// ---- Numbers ----------------------------------------------------------------------------------

// A number as the text that stands for it.
class CT_NumberText
{
public:
    explicit CT_NumberText(unsigned n_Number)
    {
        // Kept: the sign that the number doesn't have.
        std::snprintf(acz_Text, sizeof(acz_Text), "%d", static_cast<int>(n_Number));
    }
    operator const char*() const { return acz_Text; }

private:
    char acz_Text[12];
};

// The number that a text begins with, behind blanks and a sign; 0 if there is none.
static unsigned n_Number(const char* qccz_Text)
{
    while (*qccz_Text == ' ' || (*qccz_Text >= '\t' && *qccz_Text <= '\r'))
        ++qccz_Text;
    const bool b_Minus = *qccz_Text == '-';
    if (b_Minus || *qccz_Text == '+')
        ++qccz_Text;
    unsigned n_Value = 0;
    for (; *qccz_Text >= '0' && *qccz_Text <= '9'; ++qccz_Text)
        n_Value = n_Value * 10 + static_cast<unsigned>(*qccz_Text - '0');
    return b_Minus ? 0 - n_Value : n_Value;
}

// ---- Construction ---------------------------------------------------------------------------

CT_IniFile::CT_IniFile(const CT_String* pcco_Name)
{
    v_Init(pcco_Name);
}

void CT_IniFile::v_Set(const CT_String* pcco_Name)
{
    v_Exit();
    v_Init(pcco_Name);
}

void* CT_IniFile::operator new(std::size_t n_Size) noexcept
{
    return CT_Report::spv_New(n_Size, qccz_Source);
}

void CT_IniFile::operator delete(void* pv_Object)
{
    std::free(pv_Object);
}

// ---- Reading ----------------------------------------------------------------------------------

void CT_IniFile::v_ReadString(const CT_String* pcco_Section, const CT_String* pcco_Key,
                              CT_String* pco_Out, const CT_String* pcco_Default)
{
    const CT_Report::CT_Since co_Since;
    const CT_CString co_Section(pcco_Section);
    const CT_CString co_Key(pcco_Key);
    const CT_CString co_Default(pcco_Default);
    if (!co_Since.b_Failed(qccz_Source))
        v_ReadString(co_Section.qccz_Get(), co_Key.qccz_Get(), pco_Out, co_Default.qccz_Get());
}

void CT_IniFile::v_ReadString(const char* qccz_Section, const char* qccz_Key, CT_String* pco_Out,
                              const char* qccz_Default)
{
    char acz_Value[ROOM] = "";
    GetPrivateProfileStringA(qccz_Section, qccz_Key, qccz_Default, acz_Value, ROOM,
                             co_Name.qccz_Get());
    const CT_Report::CT_Since co_Since;
    pco_Out->v_Set(acz_Value, CT_String::ALL, OWN_CODE_PAGE);
    co_Since.b_Failed(qccz_Source);
}

void CT_IniFile::v_ReadN(const CT_String* pcco_Section, const CT_String* pcco_Key, unsigned* pn_Out,
                         unsigned n_Default)
{
    *pn_Out = n_Default;
    const CT_Report::CT_Since co_Since;
    const CT_CString co_Section(pcco_Section);
    const CT_CString co_Key(pcco_Key);
    if (!co_Since.b_Failed(qccz_Source))
        v_ReadN(co_Section.qccz_Get(), co_Key.qccz_Get(), pn_Out, n_Default);
}

void CT_IniFile::v_ReadN(const char* qccz_Section, const char* qccz_Key, unsigned* pn_Out,
                         unsigned n_Default)
{
    char acz_Value[ROOM] = "";
    GetPrivateProfileStringA(qccz_Section, qccz_Key, CT_NumberText(n_Default), acz_Value, ROOM,
                             co_Name.qccz_Get());
    *pn_Out = n_Number(acz_Value);
}

// ---- Writing ----------------------------------------------------------------------------------

void CT_IniFile::v_WriteString(const CT_String* pcco_Section, const CT_String* pcco_Key,
                               const CT_String* pcco_Value)
{
    const CT_Report::CT_Since co_Since;
    const CT_CString co_Section(pcco_Section);
    const CT_CString co_Key(pcco_Key);
    const CT_CString co_Value(pcco_Value);
    // Kept: a failure of the writing itself isn't told.
    if (!co_Since.b_Failed(qccz_Source))
        WritePrivateProfileStringA(co_Section.qccz_Get(), co_Key.qccz_Get(), co_Value.qccz_Get(),
                                   co_Name.qccz_Get());
}

void CT_IniFile::v_WriteString(const char* qccz_Section, const char* qccz_Key,
                               const char* qccz_Value)
{
    if (!WritePrivateProfileStringA(qccz_Section, qccz_Key, qccz_Value, co_Name.qccz_Get()))
        CT_Report::sv_System(qccz_Source);
}

void CT_IniFile::v_WriteN(const CT_String* pcco_Section, const CT_String* pcco_Key,
                          unsigned n_Value)
{
    const CT_Report::CT_Since co_Since;
    const CT_CString co_Section(pcco_Section);
    const CT_CString co_Key(pcco_Key);
    if (!co_Since.b_Failed(qccz_Source))
        v_WriteN(co_Section.qccz_Get(), co_Key.qccz_Get(), n_Value);
}

void CT_IniFile::v_WriteN(const char* qccz_Section, const char* qccz_Key, unsigned n_Value)
{
    WritePrivateProfileStringA(qccz_Section, qccz_Key, CT_NumberText(n_Value), co_Name.qccz_Get());
}

void CT_IniFile::v_DeleteSection(const char* qccz_Section)
{
    WritePrivateProfileStringA(qccz_Section, nullptr, nullptr, co_Name.qccz_Get());
}

void CT_IniFile::v_DeleteKey(const char* qccz_Section, const char* qccz_Key)
{
    WritePrivateProfileStringA(qccz_Section, qccz_Key, nullptr, co_Name.qccz_Get());
}

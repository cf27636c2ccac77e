// Ostra/Frame/Report.cpp
#include <Ostra/Frame/Report.h>

#include <Ostra/Frame/Codes.h>
#include <Ostra/Frame/Text.h>

#include <cstddef>
#include <cstdlib>
#include <utility>

namespace
{
// Units of the longest name of a file. A directive takes a unit at least for each word that it asks
// for, such as the two of a number in a floating point format on a 32-bit system.
constexpr std::size_t LONGEST_NAME = 259;

// The argument, and behind it empty texts for whatever a name of that length can ask for.
template <std::size_t... n_Each>
void v_SetText(CT_ErrorManager* pco_Errors, unsigned n_Code, const unsigned short* qcuz_Format,
               const unsigned short* qcuz_Argument, std::index_sequence<n_Each...>)
{
    const unsigned short* qcuz_None = qcuz_Text(u"");
    pco_Errors->v_SetError(n_Code, qcuz_Format, qcuz_Argument, (void(n_Each), qcuz_None)...);
}

// Sets the error as long as the thread has none, and adds the place to its trail.
// Kept: while the thread's error is ignored it stays in the way of a new one, and the loop doesn't
// end.
template <typename T_Set>
void v_Report(const char* qccz_Source, unsigned n_Line, T_Set f_Set)
{
    CT_ErrorManager* pco_Errors = CT_ErrorManager::spco_Get();
    while (!pco_Errors->b_IsSetError())
        f_Set(pco_Errors);
    pco_Errors->v_AddLocation(qccz_Source, n_Line);
}
} // namespace

void CT_Report::sv_Memory(const char* qccz_Source, unsigned n_Line)
{
    sv_Format(qccz_Source, OUT_OF_MEMORY, OUT_OF_MEMORY, nullptr, nullptr, 0, n_Line);
}

void* CT_Report::spv_New(std::size_t n_Size, const char* qccz_Source, unsigned n_Line)
{
    void* pv_Block = std::malloc(n_Size);
    if (!pv_Block)
        sv_Memory(qccz_Source, n_Line);
    return pv_Block;
}

void CT_Report::sv_System(const char* qccz_Source, unsigned n_Line)
{
    v_Report(qccz_Source, n_Line,
             [](CT_ErrorManager* pco_Errors) { pco_Errors->v_SetSystemError(); });
}

void CT_Report::sv_System(const char* qccz_Source, const unsigned short* qcuz_Name, unsigned n_Line)
{
    v_Report(qccz_Source, n_Line, [=](CT_ErrorManager* pco_Errors) {
        pco_Errors->v_SetSystemError(qcuz_Text(u"%s"), qcuz_Name);
    });
}

void CT_Report::sv_System(const char* qccz_Source, const unsigned short* qcuz_Name,
                          const unsigned short* qcuz_NewName, unsigned n_Line)
{
    v_Report(qccz_Source, n_Line, [=](CT_ErrorManager* pco_Errors) {
        pco_Errors->v_SetSystemError(qcuz_Text(u"%s : %s"), qcuz_Name, qcuz_NewName);
    });
}

void CT_Report::sv_Format(const char* qccz_Source, unsigned n_Code, unsigned n_FormatID,
                          const void* pcv_First, const void* pcv_Second, unsigned n_Third,
                          unsigned n_Line)
{
    v_Report(qccz_Source, n_Line, [=](CT_ErrorManager* pco_Errors) {
        pco_Errors->v_SetError(n_Code, nullptr, n_FormatID, pcv_First, pcv_Second, n_Third);
    });
}

void CT_Report::sv_Text(const char* qccz_Source, unsigned n_Code, const unsigned short* qcuz_Format,
                        const unsigned short* qcuz_Argument, unsigned n_Line)
{
    v_Report(qccz_Source, n_Line, [=](CT_ErrorManager* pco_Errors) {
        v_SetText(pco_Errors, n_Code, qcuz_Format, qcuz_Argument,
                  std::make_index_sequence<LONGEST_NAME>());
    });
}

// Ostra/Output/StringOutput.cpp
#include <Ostra/Output/StringOutput.h>

#include <Ostra/Frame/Report.h>

#include <cstdlib>

static constexpr char qccz_Source[] = "Ostra/Output/StringOutput";

CT_StringOutput::CT_StringOutput(CT_String& co_String)
{
    v_Set(co_String);
}

void CT_StringOutput::v_Set(CT_String& co_String)
{
    pco_String = &co_String;
}

void* CT_StringOutput::operator new(std::size_t n_Size) noexcept
{
    return CT_Report::spv_New(n_Size, qccz_Source);
}

void CT_StringOutput::operator delete(void* pv_Object)
{
    std::free(pv_Object);
}

void CT_StringOutput::vv_Append(unsigned char c_Byte, unsigned n_Count)
{
    pco_String->vv_Replace(static_cast<char>(c_Byte), n_Count, pco_String->vn_GetLength());
    CT_Report::sb_Failed(qccz_Source);
}

void CT_StringOutput::vv_Append(const void* qcv_Data, unsigned n_Size)
{
    pco_String->v_Append(static_cast<const char*>(qcv_Data), n_Size);
    CT_Report::sb_Failed(qccz_Source);
}

void CT_StringOutput::vv_Append(CT_FileOutput&) {}

void CT_StringOutput::vv_Append(const CT_MemoryOutput&) {}

void CT_StringOutput::vv_Replace(const void*, unsigned, unsigned) {}

unsigned CT_StringOutput::vn_GetSize() const
{
    return pco_String->vn_GetLength();
}

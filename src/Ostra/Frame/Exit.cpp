// Ostra/Frame/Exit.cpp
#include <Ostra/Frame/Exit.h>

CT_Exit::CT_Exit(const char* qccz_ClassName, const char* qccz_FunctionName, void (*pf_Function)())
    : qccz_Class(qccz_ClassName),
      qccz_Function(qccz_FunctionName),
      pf_Exit(pf_Function)
{}

CT_Exit::~CT_Exit()
{
    if (pf_Exit)
        pf_Exit();
}

// Ostra/Frame/Init.cpp
#include <Ostra/Frame/Init.h>

CT_Init::CT_Init(void (*pf_Init)())
{
    if (pf_Init)
        pf_Init();
}

CT_Init::CT_Init(const char*, const char*, void (*pf_Init)()) : CT_Init(pf_Init) {}

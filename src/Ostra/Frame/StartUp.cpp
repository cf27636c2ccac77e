// Ostra/Frame/StartUp.cpp: all static objects of the library, in the order in which they come up.
//
// The order is part of the interface (docs/startup.md), so it doesn't depend on how sources are linked: no other
// source has a static object with a constructor. The priority puts all of them before the module's entry.
#include <Ostra/Buffer/Buffer.h>
#include <Ostra/Frame/Counter.h>
#include <Ostra/Frame/ErrorManager.h>
#include <System/OS/OS.h>

#define OSTRA_STARTUP __attribute__((init_priority(1000)))

// Nothing up to here may report: the error manager comes next.
CT_Counter CT_Buffer::sco_AllocCount OSTRA_STARTUP;

CT_Init CT_ErrorManager::sco_Init OSTRA_STARTUP("CT_ErrorManager", "sv_Init",
                                                CT_ErrorManager::sv_Init);
CT_Exit CT_ErrorManager::sco_Exit OSTRA_STARTUP("CT_ErrorManager", "sv_Exit",
                                                CT_ErrorManager::sv_Exit);

CT_Init CT_OS::sco_Init OSTRA_STARTUP("CT_OS", "sv_Init", CT_OS::sv_Init);

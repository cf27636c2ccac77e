// Ostra/Frame/StartUp.cpp: all static objects of the library, in the order in which they come up.
//
// The order is part of the interface (docs/startup.md), so it doesn't depend on how sources are
// linked: no other source has a static object with a constructor. The priority puts all of them
// before the module's entry.
#include <Ostra/Buffer/Buffer.h>
#include <Ostra/Frame/Counter.h>
#include <Ostra/Frame/ErrorManager.h>
#include <Ostra/Frame/OstraDLLMain.h>
#include <Ostra/String/CString.h>
#include <Ostra/String/UString.h>
#include <System/FontManager/FontManager.h>
#include <System/Forum/Forum.h>
#include <System/LocaleInfo/Language.h>
#include <System/OS/OS.h>

#define OSTRA_STARTUP __attribute__((init_priority(1000)))

// The record of a class keeps the pointer to its name, and never writes there.
static char* qcz_Name(const char* qccz_Literal)
{
    return const_cast<char*>(qccz_Literal);
}

CT_CString CT_OstraDLLMain::sco_ModuleName OSTRA_STARTUP;
CT_Counter CT_Buffer::sco_AllocCount OSTRA_STARTUP;
CT_Type CT_CString::sco_Type OSTRA_STARTUP(qcz_Name("CT_CString"), &CT_CString::sco_Object,
                                           sizeof(CT_CString));
CT_CString CT_CString::sco_Object OSTRA_STARTUP(&CT_CString::sco_Type);

// Nothing up to here may report: the error manager comes next.

CT_Init CT_ErrorManager::sco_Init OSTRA_STARTUP("CT_ErrorManager", "sv_Init",
                                                CT_ErrorManager::sv_Init);
CT_Exit CT_ErrorManager::sco_Exit OSTRA_STARTUP("CT_ErrorManager", "sv_Exit",
                                                CT_ErrorManager::sv_Exit);

CT_Exit CT_FontManager::sco_Exit OSTRA_STARTUP("CT_FontManager", "sv_Exit",
                                               CT_FontManager::sv_Exit);

CT_Type CT_Forum::sco_Type OSTRA_STARTUP(qcz_Name("CT_Forum"), &CT_Forum::sco_Object,
                                         sizeof(CT_Forum));
CT_Forum CT_Forum::sco_Object OSTRA_STARTUP(&CT_Forum::sco_Type);

CT_Init CT_Language::sco_Init OSTRA_STARTUP("CT_Language", "sv_Init", CT_Language::sv_Init);
CT_Exit CT_Language::sco_Exit OSTRA_STARTUP("CT_Language", "sv_Exit", CT_Language::sv_Exit);

CT_Init CT_OS::sco_Init OSTRA_STARTUP("CT_OS", "sv_Init", CT_OS::sv_Init);

CT_Type CT_String::sco_Type OSTRA_STARTUP(qcz_Name("CT_String"), &CT_String::sco_Object,
                                          sizeof(CT_String));
CT_String CT_String::sco_Object OSTRA_STARTUP(&CT_String::sco_Type);
CT_Type CT_UString::sco_Type OSTRA_STARTUP(qcz_Name("CT_UString"), &CT_UString::sco_Object,
                                           sizeof(CT_UString));
CT_UString CT_UString::sco_Object OSTRA_STARTUP(&CT_UString::sco_Type);

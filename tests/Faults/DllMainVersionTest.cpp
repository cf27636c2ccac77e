// tests/Faults/DllMainVersionTest.cpp: the module's own version record, which nothing in the library
// sets.
#include <Ostra/Frame/OstraDLLMain.h>
#include <System/ModuleVersion/ModuleVersion.h>

#include <gtest/gtest.h>

#include "Support/Private.h"

OSTRA_PRIVATE(VersionOfModule, CT_ModuleVersion**, &CT_OstraDLLMain::spco_Version);

TEST(DllMainVersion, TheProductVersionIsThatOfTheModulesRecord)
{
    CT_ModuleVersion version;
    *Private(VersionOfModule()) = &version;
    EXPECT_EQ(CT_OstraDLLMain::spcco_GetVersion(), &version);
    EXPECT_EQ(CT_OstraDLLMain::spcco_GetProductVersion(), version.pcco_GetProductVersion());
    *Private(VersionOfModule()) = nullptr;
    EXPECT_EQ(CT_OstraDLLMain::spcco_GetProductVersion(), nullptr);
}

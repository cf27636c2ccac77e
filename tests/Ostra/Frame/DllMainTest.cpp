// tests/Ostra/Frame/DllMainTest.cpp: the module's entry and what the module knows of itself.
#include <Ostra/Frame/OstraDLLMain.h>
#include <Ostra/String/CString.h>

#include <windows.h>

#include "Support/Failure.h"

#include <filesystem>

namespace
{
std::string ModuleName()
{
    return CT_OstraDLLMain::spcco_GetModuleName()->qccz_Get();
}

std::string SystemsName()
{
    char path[1024];
    const DWORD length = GetModuleFileNameA(CT_OstraDLLMain::sh_GetInstance(), path, sizeof(path));
    return std::string(path, length);
}
} // namespace

constexpr DWORD OTHER_REASONS[] = {DLL_PROCESS_DETACH, DLL_THREAD_ATTACH, DLL_THREAD_DETACH, 4, 77};

TEST(DllMain, LoadStoresHandleAndFullPath)
{
    EXPECT_NE(CT_OstraDLLMain::sh_GetInstance(), nullptr);
    EXPECT_EQ(ModuleName(), SystemsName());
    const std::filesystem::path path = ModuleName();
    EXPECT_TRUE(path.is_absolute()) << path;
    EXPECT_NE(path.filename().string().find("ostra"), std::string::npos) << path;
    EXPECT_TRUE(std::filesystem::exists(path)) << path;
}

TEST(DllMain, OtherReasonsChangeNothing)
{
    const HINSTANCE instance = CT_OstraDLLMain::sh_GetInstance();
    const std::string name = ModuleName();
    const HINSTANCE other = GetModuleHandleA(nullptr);
    for (const DWORD reason : OTHER_REASONS) {
        EXPECT_EQ(DllMain(other, reason, nullptr), 1);
        EXPECT_EQ(CT_OstraDLLMain::sh_GetInstance(), instance);
        EXPECT_EQ(ModuleName(), name);
    }
    // The string table in use is still the library's.
    Errors().v_SetError(60006, nullptr, 60006);
    EXPECT_EQ(TakeFailure().text, "(60006): Out of memory");
}

TEST(DllMain, AttachTakesTheModuleItIsGiven)
{
    const HINSTANCE instance = CT_OstraDLLMain::sh_GetInstance();
    const HINSTANCE program = GetModuleHandleA(nullptr);
    EXPECT_EQ(DllMain(program, DLL_PROCESS_ATTACH, nullptr), 1);
    EXPECT_EQ(CT_OstraDLLMain::sh_GetInstance(), program);
    EXPECT_EQ(ModuleName(), SystemsName());
    Errors().v_SetError(1, nullptr, 60006);
    EXPECT_EQ(TakeFailure().text, "(1): ");
    EXPECT_EQ(DllMain(instance, DLL_PROCESS_ATTACH, nullptr), 1);
    EXPECT_EQ(CT_OstraDLLMain::sh_GetInstance(), instance);
    Errors().v_SetError(1, nullptr, 60006);
    EXPECT_EQ(TakeFailure().text, "(1): Out of memory");
}

TEST(DllMain, NameCanBeSetByHand)
{
    const std::string name = ModuleName();
    CT_OstraDLLMain::sv_SetModuleName("some/module");
    EXPECT_EQ(ModuleName(), "some/module");
    CT_OstraDLLMain::sv_SetModuleName(name.c_str());
    EXPECT_EQ(ModuleName(), name);
}

TEST(DllMain, VersionStaysUnknown)
{
    EXPECT_EQ(CT_OstraDLLMain::sn_GetVersion(), 0U);
    EXPECT_EQ(CT_OstraDLLMain::sn_GetBuild(), 0U);
    EXPECT_EQ(CT_OstraDLLMain::spcco_GetVersion(), nullptr);
    EXPECT_EQ(CT_OstraDLLMain::spcco_GetProductVersion(), nullptr);
}

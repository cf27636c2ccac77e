// tests/Faults/StartUpOrder.cpp: the order in which the library's statics come up and go down.
//
// With the library's objects in the program itself, statics of the test can stand before and behind
// them.
#include <Ostra/Ostra.h>

#include <windows.h>

#include "Support/Failure.h"
#include "Support/Private.h"

#include <cstdio>
#include <cstdlib>

OSTRA_PRIVATE(NextType, CT_Type* CT_Type::*, &CT_Type::pco_Next);
OSTRA_PRIVATE(LatestType, CT_Type**, &CT_Type::spco_Any);

namespace
{
bool is_processor_count_hidden = true;

// Objects that aren't made yet, or are gone, are all zero by the module's rule; the sanitizers' check
// of dynamic types refuses the question.
#ifdef __SANITIZE_ADDRESS__
constexpr bool can_ask_the_unborn = false;
#else
constexpr bool can_ask_the_unborn = true;
#endif

// Ends the program with a failure when something isn't as told; used where no test runs.
void Require(bool condition, const char* what)
{
    if (condition)
        return;
    std::fprintf(stderr, "start-up order: %s\n", what);
    std::fflush(stderr);
    std::_Exit(99);
}

// Whether the list of language codes is there.
bool KnowsLanguages()
{
    CT_Language::et_Primary primary{};
    return CT_Language::sb_GetPrimary(&primary, "DE") && primary == 7;
}

// The blocks that the list of language codes has taken.
unsigned BlocksOfLanguages()
{
    const unsigned before = CT_Buffer::sn_GetAllocCount();
    CT_CompList list(CT_CompList::es_Byte, 1, 0, 0, 128, 0);
    for (unsigned row = 0; row <= CT_Language::sn_GetPrimaryCount(); ++row)
        list.b_Add(CT_Language::sqccz_GetLanguageCode(CT_Language::et_Primary{row}), row);
    return CT_Buffer::sn_GetAllocCount() - before;
}

bool HasModule()
{
    return CT_OstraDLLMain::sh_GetInstance() != nullptr;
}

// Comes up before the library, and goes down behind it.
struct Before
{
    Before()
    {
        Require(CT_ErrorManager::spco_Get() == nullptr, "a manager before the start");
        Require(CT_OS::seo_GetVersion() == 0, "a family before the start");
        Require(!CT_OS::sb_GetIsWindowsNT() && !CT_OS::sb_GetIsWindows95() &&
                    !CT_OS::sb_GetIsWindows32s(),
                "the wide road before the start");
        Require(CT_OS::sn_GetNumCPU() == 0, "processors before the start");
        Require(CT_OS::sn_GetOsVersionMajor() == 0 && CT_OS::sn_GetOsVersionMinor() == 0 &&
                    CT_OS::sn_GetOsVersionBuild() == 0 && !*CT_OS::sqccz_GetOsVersionString(),
                "a version before the start");
        Require(!HasModule(), "a module before the start");
        Require(CT_Buffer::sn_GetAllocCount() == 0, "blocks before the start");
        Require(!KnowsLanguages(), "language codes before the start");
        Require(!can_ask_the_unborn || CT_CString::spcco_GetType()->n_GetTypes() == 0,
                "types before the start");
    }
    ~Before()
    {
        Require(CT_ErrorManager::spco_Get() == nullptr, "a manager after the end");
        Require(!KnowsLanguages(), "language codes after the end");
        Require(!can_ask_the_unborn || CT_UString::spcco_GetType()->n_GetTypes() == 0,
                "types after the end");
        Require(!can_ask_the_unborn || CT_CString::spcco_GetType()->n_GetTypes() == 0,
                "types after the end");
        Require(!can_ask_the_unborn || CT_Forum::spcco_GetType()->n_GetTypes() == 0,
                "types after the end");
    }
};
__attribute__((init_priority(900))) Before before;

// Comes up behind the library's statics and before the module's entry; goes down before them.
struct Between
{
    Between()
    {
        Require(CT_ErrorManager::spco_Get() != nullptr, "no manager behind the statics");
        Require(CT_OS::seo_GetVersion() != 0, "no family behind the statics");
        Require(CT_UString::spcco_GetType()->n_GetTypes() == 2, "no types behind the statics");
        Require(CT_Forum::spcco_GetType()->n_GetTypes() == 1, "no types behind the statics");
        const unsigned blocks = CT_Buffer::sn_GetAllocCount();
        Require(blocks == BlocksOfLanguages(),
                "the statics make other blocks than the list of codes");
        Require(KnowsLanguages(), "no language codes behind the statics");
        Require(!HasModule(), "a module before its entry has run");
        Require(!*CT_OstraDLLMain::spcco_GetModuleName()->qccz_Get(), "a name before the entry");
        is_processor_count_hidden = false;
        CT_ErrorManager* errors = CT_ErrorManager::spco_Get();
        errors->v_SetError(60006, nullptr, 60006);
        text_before_entry = TakeFailure().text;
    }
    ~Between()
    {
        Require(CT_ErrorManager::spco_Get() != nullptr, "no manager before the end");
        Require(KnowsLanguages(), "no language codes before the end");
        Require(CT_UString::spcco_GetType()->n_GetTypes() == 2, "no types before the end");
        Require(CT_Forum::spcco_GetType()->n_GetTypes() == 1, "no types before the end");
    }

    std::string text_before_entry;
};
__attribute__((init_priority(1100))) Between between;
} // namespace

TEST(StartUpOrder, FormatIdsAreLookedUpInNoModuleBeforeTheEntry)
{
    EXPECT_EQ(between.text_before_entry, "(60006): ");
    EXPECT_TRUE(HasModule());
    EXPECT_TRUE(*CT_OstraDLLMain::spcco_GetModuleName()->qccz_Get());
}

TEST(StartUpOrder, TypeRecordsComeUpInTheirOrder)
{
    const CT_Type* type = *Private(LatestType());
    ASSERT_EQ(type, CT_UString::spcco_GetType());
    type = type->*Private(NextType());
    ASSERT_EQ(type, CT_String::spcco_GetType());
    type = type->*Private(NextType());
    ASSERT_EQ(type, CT_Forum::spcco_GetType());
    type = type->*Private(NextType());
    ASSERT_EQ(type, CT_CString::spcco_GetType());
    EXPECT_EQ(type->*Private(NextType()), nullptr);
}

#ifndef _WIN32
// The service as linked under its own name; while the library comes up it tells of no processor.
extern "C" void __real__ZN6winapi13GetSystemInfoEP11SYSTEM_INFO(SYSTEM_INFO* info);
extern "C" void __wrap__ZN6winapi13GetSystemInfoEP11SYSTEM_INFO(SYSTEM_INFO* info)
{
    __real__ZN6winapi13GetSystemInfoEP11SYSTEM_INFO(info);
    if (is_processor_count_hidden)
        info->dwNumberOfProcessors = 0;
}

TEST(StartUpOrder, NoReportedProcessorCountsAsOne)
{
    EXPECT_EQ(CT_OS::sn_GetNumCPU(), 1U);
}
#endif

// tests/Ostra/Frame/StartUpTest.cpp: what stands when the library is loaded.
#include <Ostra/Ostra.h>

#include "Support/Failure.h"

namespace
{
// Statics of a program come up behind those of the library.
struct AtStart
{
    bool manager = CT_ErrorManager::spco_Get() != nullptr;
    unsigned processors = CT_OS::sn_GetNumCPU();
    unsigned family = CT_OS::seo_GetVersion();
    unsigned narrow_types = CT_CString::spcco_GetType()->n_GetTypes();
    unsigned wide_types = CT_UString::spcco_GetType()->n_GetTypes();
    HINSTANCE instance = CT_OstraDLLMain::sh_GetInstance();
    CT_Language::et_Primary language = CT_Language::et_Primary{0};
    int knows_languages = CT_Language::sb_GetPrimary(&language, "GA");
    CT_UString text = CT_UString("made before main");
};
const AtStart start;
} // namespace

TEST(StartUp, LibraryIsCompleteBeforeTheProgramsOwnStatics)
{
    EXPECT_TRUE(start.manager);
    EXPECT_GE(start.processors, 1U);
    EXPECT_NE(start.family, 0U);
    EXPECT_EQ(start.narrow_types, 1U);
    EXPECT_EQ(start.wide_types, 2U);
    EXPECT_EQ(start.knows_languages, 1);
    EXPECT_EQ(start.language, 54U);
    EXPECT_EQ(start.instance, CT_OstraDLLMain::sh_GetInstance());
    EXPECT_EQ(Wide(start.text.qcuz_Get()), u"made before main");
}

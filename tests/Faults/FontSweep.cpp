// tests/Faults/FontSweep.cpp: fonts with an exhausted heap.
#include <Ostra/String/UString.h>

#include "Faults/Sweep.h"
#include "System/FontManager/FontSupport.h"

#include <memory>

namespace
{
const SweepReport report({"Ostra/Buffer/Buffer", "Ostra/String/CString", "Ostra/String/UString",
                          "System/FontManager/FontManager", "System/FontManager/LogicalFont"});

struct Device
{
    Screen dc;
    CT_CString name{"DejaVu Sans Cyr"};
    CT_LogicalFont* hired = nullptr;
    std::unique_ptr<CT_LogicalFont> made;
    CT_UString text{u"before"};
};
} // namespace

TEST(FontSweep, HiringGivesAFontOrNone)
{
    OSTRA_NEEDS_FONTS();
    CT_FontManager& manager = *CT_FontManager::spco_GetFontManager();
    Sweep(
        report,
        [&] {
            manager.v_FreeUnused();
            return std::make_unique<Device>();
        },
        [&](Device& device) {
            device.hired = manager.pco_Hire(device.dc, &device.name, 204, 17, 1, 0, 0, 0);
        },
        [&](Device& device, bool failed) {
            EXPECT_TRUE(device.hired || failed);
            manager.v_Fire(device.hired);
            CT_LogicalFont* const again =
                manager.pco_Hire(device.dc, &device.name, 204, 18, 1, 0, 0, 0);
            ASSERT_NE(again, nullptr);
            EXPECT_EQ(again->n_GetCharSet(), 204u);
            manager.v_Fire(again);
        });
}

// Without its table a font measures by calls.
TEST(FontSweep, AFontMeasuresTheSame)
{
    OSTRA_NEEDS_FONTS();
    const CT_UString text(u"The quick brown fox");
    Sweep(
        report, [] { return std::make_unique<Device>(); },
        [](Device& device) {
            device.made = std::make_unique<CT_LogicalFont>(nullptr, device.dc, &device.name, 204,
                                                           12, 0, 0, 0, 0);
        },
        [&](Device& device, bool failed) {
            ASSERT_NE(device.made, nullptr);
            if (failed)
                return;
            SelectObject(device.dc, device.made->h_GetHandle());
            EXPECT_GT(device.made->n_GetTextExtent(device.dc, &text, 0, 0xFFFFFFFF), 100u);
        });
}

TEST(FontSweep, NamesAndSamplesAreSetOrNot)
{
    Sweep(
        report, [] { return std::make_unique<Device>(); },
        [](Device& device) {
            CT_FontManager::sv_StripCharsetSpecifier(&device.name, 204);
            CT_FontManager::sv_GetFontSampleText(&device.text, 161);
            CT_FontManager::sb_GetCharsetSpecifier(&device.text, 204);
        },
        [](Device& device, bool failed) {
            EXPECT_TRUE(failed || std::string(device.name.qccz_Get()) == "DejaVu Sans");
            device.text.v_Set(u"after");
            EXPECT_EQ(device.text.vn_GetLength(), 5u);
        });
}

// tests/Faults/FontSweep.cpp: fonts with an exhausted heap.
#include <Ostra/String/UString.h>
#include <System/OS/OS.h>

#include "Faults/Sweep.h"
#include "Support/Private.h"
#include "System/FontManager/FontSupport.h"

#include <memory>

OSTRA_PRIVATE(SweptManagerExit, void (*)(), &CT_FontManager::sv_Exit);
OSTRA_PRIVATE(SweptOn32s, int*, &CT_OS::sb_IsWindows32s);

namespace
{
const SweepReport report({"Ostra/Buffer/Buffer", "Ostra/CompList/CompList", "Ostra/String/CString",
                          "Ostra/String/UString", "System/FontManager/FontManager",
                          "System/FontManager/LogicalFont"});

struct Device
{
    Screen dc;
    CT_CString name{"DejaVu Sans Cyr"};
    CT_LogicalFont* hired = nullptr;
    std::unique_ptr<CT_LogicalFont> made;
    CT_UString text{u"before"};
    CT_UString specifier;
    const CT_CString empty;
    const CT_UString full{u"DejaVu Sans Bold"};
    CT_CString sample;
    unsigned length = 0, points = 0;
    int known = 0, bold = 0, italic = 0;
};

// One that leaves the pool as it was.
struct Hirer : Device
{
    ~Hirer()
    {
        CT_FontManager::spco_GetFontManager()->v_Fire(hired);
        CT_FontManager::spco_GetFontManager()->v_FreeUnused();
    }
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
            return std::make_unique<Hirer>();
        },
        [&](Hirer& device) {
            device.hired = manager.pco_Hire(device.dc, &device.name, 204, 17, 1, 0, 0, 0);
        },
        [&](const Hirer& device, bool failed) {
            EXPECT_TRUE(device.hired || failed);
            CT_LogicalFont* const again =
                manager.pco_Hire(device.dc, &device.name, 204, 18, 1, 0, 0, 0);
            ASSERT_NE(again, nullptr);
            EXPECT_EQ(again->n_GetCharSet(), 204u);
            manager.v_Fire(again);
        });
}

// A manager whose pool has no place yet.
struct UnreadManager
{
    UnreadManager()
    {
        Private(SweptManagerExit())();
        CT_FontManager::sv_Init(nullptr);
    }
    ~UnreadManager() { Private(SweptManagerExit())(); }
};

struct NewManager : UnreadManager
{
    NewManager() { CT_FontManager::spco_GetFontManager(); }

    Device device;
};

TEST(FontSweep, AFontWithoutAPlaceInThePoolIsDestroyed)
{
    OSTRA_NEEDS_FONTS();
    Sweep(
        report, [] { return std::make_unique<NewManager>(); },
        [](NewManager& made) {
            made.device.hired = CT_FontManager::spco_GetFontManager()->pco_Hire(
                made.device.dc, &made.device.name, 204, 17, 0, 0, 0, 0);
        },
        [](NewManager& made, bool failed) {
            EXPECT_TRUE(made.device.hired || failed);
            CT_FontManager::spco_GetFontManager()->v_Fire(made.device.hired);
        });
    CT_FontManager::sv_Init(nullptr);
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
            EXPECT_TRUE(device.made || failed);
            if (failed || !device.made)
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
            CT_FontManager::sb_GetCharsetSpecifier(&device.specifier, 204);
        },
        [](Device& device, bool failed) {
            EXPECT_TRUE(failed || std::string(device.name.qccz_Get()) == "DejaVu Sans");
            EXPECT_TRUE(failed || device.specifier.vn_GetLength() == 3);
            device.text.v_Set(u"after");
            EXPECT_EQ(device.text.vn_GetLength(), 5u);
        });
}

// What couldn't be read is missing; fonts are hired all the same.
TEST(FontSweep, AManagerThatCouldntReadTheSystemHiresFonts)
{
    OSTRA_NEEDS_FONTS();
    Sweep(
        report, [] { return std::make_unique<UnreadManager>(); },
        [](UnreadManager&) { CT_FontManager::spco_GetFontManager(); },
        [](UnreadManager&, bool failed) {
            CT_FontManager& manager = *CT_FontManager::spco_GetFontManager();
            EXPECT_TRUE(failed || manager.h_GetSystemFont());
            EXPECT_TRUE(failed || manager.h_GetSystemDefaultFont());
            const Device device;
            CT_LogicalFont* const font =
                manager.pco_Hire(device.dc, &device.name, 204, 17, 0, 0, 0, 0);
            ASSERT_NE(font, nullptr);
            EXPECT_EQ(font->n_GetCharSet(), 204u);
            manager.v_Fire(font);
            manager.v_Fire(manager.pco_Hire(device.dc, &device.empty, 0, 0, 0, 0, 0, 0));
            unsigned length = 0;
            int bold = 0, italic = 0;
            EXPECT_EQ(manager.b_StripFlagFont(&device.empty, &length, &bold, &italic), 0);
        });
    CT_FontManager::sv_Init(nullptr);
}

TEST(FontSweep, QuestionsAreAnsweredOrNot)
{
    OSTRA_NEEDS_FONTS();
    CT_FontManager& manager = *CT_FontManager::spco_GetFontManager();
    Sweep(
        report,
        [] {
            auto device = std::make_unique<Device>();
            device->made = std::make_unique<CT_LogicalFont>(nullptr, device->dc, &device->name, 161,
                                                            12, 0, 0, 0, 0);
            return device;
        },
        [&](Device& device) {
            device.known =
                manager.b_StripFlagFont(&device.full, &device.length, &device.bold, &device.italic);
            CT_FontManager::sv_GetSystemDefaultFont(&device.text, &device.points);
            device.made->v_GetFontSampleText(&device.sample);
        },
        [](Device& device, bool failed) {
            if (failed)
                return;
            EXPECT_EQ(device.known, 1);
            EXPECT_EQ(device.length, 11u);
            EXPECT_EQ(device.bold, 1);
            EXPECT_GT(device.points, 5u);
            EXPECT_STREQ(device.sample.qccz_Get(), CT_FontManager::sacz_Greek);
        });
}

namespace
{
struct Measured : Device
{
    Measured()
    {
        made = std::make_unique<CT_LogicalFont>(nullptr, dc, &name, 0, 12, 0, 0, 0, 0);
        SelectObject(dc, made->h_GetHandle());
        expected = made->n_GetTextExtent(dc, &full, 0, 0xFFFFFFFF);
        *Private(SweptOn32s()) = 1;
    }
    ~Measured() { *Private(SweptOn32s()) = 0; }

    const CT_UString same{u"DejaVu Sans Cyr"};
    const unsigned resolution = static_cast<unsigned>(GetDeviceCaps(dc, LOGPIXELSY));
    unsigned expected = 0;
    int equal = 7;
};
} // namespace

// A name of the other width, and the system of that time, which takes bytes.
TEST(FontSweep, TextsOfTheOtherWidthAreComparedAndMeasuredOrTheFailureIsTold)
{
    OSTRA_NEEDS_FONTS();
    Sweep(
        report, [] { return std::make_unique<Measured>(); },
        [](Measured& device) {
            device.length = device.made->n_GetTextExtent(device.dc, &device.full, 0, 0xFFFFFFFF);
        },
        [](Measured& device, bool failed) {
            EXPECT_TRUE(failed ? device.length <= device.expected
                               : device.length == device.expected)
                << device.length;
        });
    Sweep(
        report, [] { return std::make_unique<Measured>(); },
        [](Measured& device) {
            device.equal =
                device.made->b_IsEqual(&device.same, 0, 12, 0, 0, 0, 0, device.resolution);
        },
        [](Measured& device, bool failed) { EXPECT_EQ(device.equal, !failed); });
}

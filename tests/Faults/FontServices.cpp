// tests/Faults/FontServices.cpp: fonts whose services fail. Nothing of that is reported: a font that
// can't be made has no handle, and what can't be measured has no width.
#include <Ostra/String/UString.h>

#include "Faults/ServiceSweep.h"
#include "System/FontManager/FontSupport.h"

#include <memory>
#include <string>

OSTRA_PRIVATE(ServedManagerExit, void (*)(), &CT_FontManager::sv_Exit);

namespace
{
constexpr unsigned ALL = CT_String::ALL;
constexpr unsigned CYRILLIC = 204, JAPANESE = 128;
constexpr unsigned ENGLISH = 0x0409;

CT_FontManager& Manager()
{
    return *CT_FontManager::spco_GetFontManager();
}

struct State
{
    // Made and measured as it was meant to be.
    static unsigned Truth()
    {
        static const unsigned truth = State().Measure();
        return truth;
    }
    ~State()
    {
        if (font)
            font.reset();
        if (hired)
            Manager().v_Fire(hired);
        Manager().v_FreeUnused();
    }
    void Make(const CT_CString& face, unsigned charset)
    {
        font = std::make_unique<CT_LogicalFont>(nullptr, dc, &face, charset, 12, 0, 0, 0, 0);
    }
    unsigned Measure()
    {
        Make(name, CYRILLIC);
        const HGDIOBJ old = SelectObject(dc, font->h_GetHandle());
        const unsigned extent = font->n_GetTextExtent(dc, &wide, 0, ALL);
        SelectObject(dc, old);
        return extent;
    }

    Screen dc;
    CT_CString name{"DejaVu Sans"};
    CT_CString missing{"No Such Face"};
    CT_CString gothic{"VL Gothic"};
    CT_CString empty;
    CT_UString wide{Units(u"width \u0448\u0438\u0440\u0438\u043D\u0430 \\")};
    CT_CString narrow{"width \xF8\xE8\xF0", ALL, 1251};
    std::unique_ptr<CT_LogicalFont> font;
    CT_LogicalFont* hired = nullptr;
    unsigned result = 7;
};

void Nothing(State&) {}

// The device, the pool and the system do as before, whatever has failed.
void ExpectUsable(State& state)
{
    state.font.reset();
    EXPECT_EQ(state.Measure(), State::Truth());
    CT_LogicalFont* const font =
        Manager().pco_Hire(state.dc, &state.name, CYRILLIC, 12, 0, 0, 0, 0);
    ASSERT_NE(font, nullptr);
    EXPECT_NE(font->h_GetHandle(), nullptr);
    EXPECT_EQ(font->pcso_GetTextMetric()->tmAscent, state.font->pcso_GetTextMetric()->tmAscent);
    Manager().v_Fire(font);
}

void HasFont(State& state)
{
    ASSERT_NE(state.font, nullptr);
    EXPECT_NE(state.font->h_GetHandle(), nullptr);
    EXPECT_GT(state.font->pcso_GetTextMetric()->tmHeight, 10);
}

// A font of some kind, which is measured and ended without harm.
void HasAnyFont(State& state)
{
    ASSERT_NE(state.font, nullptr);
    EXPECT_EQ(state.font->n_GetPoints(), 12u);
    state.font->n_GetTextExtent(state.dc, &state.wide, 0, ALL);
}

void MakeFont(State& state)
{
    state.Make(state.name, CYRILLIC);
    SelectObject(state.dc, state.font->h_GetHandle());
}

void IsNarrower(State& state)
{
    EXPECT_LT(state.result, State::Truth());
}

void Hire(State& state)
{
    state.hired = Manager().pco_Hire(state.dc, &state.name, CYRILLIC, 17, 0, 0, 0, 0);
}

void WasHired(State& state)
{
    ASSERT_NE(state.hired, nullptr);
    EXPECT_EQ(state.hired->b_IsLocked(), 1);
}

const ServiceOperation<State> OPERATIONS[] = {
    {"make", Nothing, [](State& state) { state.Make(state.name, CYRILLIC); }, HasFont, HasAnyFont},
    {"make one of a face that is missing", Nothing,
     [](State& state) { state.Make(state.missing, CYRILLIC); },
     [](State& state) {
         HasFont(state);
         EXPECT_EQ(state.font->n_GetCharSet(), CYRILLIC);
     },
     HasAnyFont},
    {"make the system's", Nothing, [](State& state) { state.Make(state.empty, 1); }, HasFont,
     HasAnyFont},
    {"make one of double bytes", Nothing, [](State& state) { state.Make(state.gothic, JAPANESE); },
     HasFont, HasAnyFont},
    {"end", MakeFont, [](State& state) { state.font.reset(); }, Nothing, Nothing},
    {"measure wide text", MakeFont,
     [](State& state) {
         state.result = state.font->n_GetTextExtent(state.dc, &state.wide, 0, ALL);
     },
     [](State& state) { EXPECT_EQ(state.result, State::Truth()); }, IsNarrower},
    {"measure 8-bit text", MakeFont,
     [](State& state) {
         state.result = state.font->n_GetTextExtent(state.dc, &state.narrow, 0, ALL);
     },
     [](State& state) { EXPECT_GT(state.result, 40u); }, IsNarrower},
    {"ask for a locale", MakeFont,
     [](State& state) {
         state.result = static_cast<unsigned>(state.font->b_IsLocaleSupported(state.dc, ENGLISH));
     },
     [](State& state) { EXPECT_NE(state.result, 0u); }, Nothing},
    {"hire what isn't there", Nothing, Hire, WasHired, WasHired},
    {"hire what is there",
     [](State& state) {
         Hire(state);
         Manager().v_Fire(state.hired);
     },
     Hire, WasHired, WasHired},
    {"fire and free",
     [](State& state) {
         Hire(state);
         Manager().v_Fire(state.hired);
         state.hired = nullptr;
     },
     [](State&) { Manager().v_FreeUnused(); }, Nothing, Nothing},
    {"ask for the system's default font", Nothing,
     [](State& state) { CT_FontManager::sv_GetSystemDefaultFont(&state.missing, &state.result); },
     [](State& state) { EXPECT_GT(state.result, 5u); },
     [](State& state) {
         EXPECT_TRUE(state.result == 0 || state.result > 5) << state.result;
     }},
};

// The manager's first question reads the system.
struct NewManager
{
    NewManager()
    {
        Private(ServedManagerExit())();
        CT_FontManager::sv_Init(nullptr);
    }
    ~NewManager()
    {
        Private(ServedManagerExit())();
        CT_FontManager::sv_Init(nullptr);
    }
    unsigned LengthOf(const char* full)
    {
        const CT_CString name(full);
        unsigned length = 0;
        int bold = 0;
        int italic = 0;
        Manager().b_StripFlagFont(&name, &length, &bold, &italic);
        return length;
    }
};

void ExpectUsable(NewManager&)
{
    const Screen dc;
    CT_LogicalFont* const font = Hire(dc, {"DejaVu Sans", CYRILLIC, 12});
    ASSERT_NE(font, nullptr);
    EXPECT_NE(font->h_GetHandle(), nullptr);
    Manager().v_Fire(font);
    Manager().h_GetSystemFont();
    Manager().h_GetSystemDefaultFont();
}

const ServiceOperation<NewManager> READING[] = {
    {"read the system", [](NewManager&) {}, [](NewManager&) { Manager(); },
     [](NewManager& state) {
         EXPECT_EQ(state.LengthOf("DejaVu Sans Bold"), 11u);
         EXPECT_NE(Manager().h_GetSystemFont(), nullptr);
         EXPECT_NE(Manager().h_GetSystemDefaultFont(), nullptr);
     },
     [](NewManager& state) {
         const unsigned length = state.LengthOf("DejaVu Sans Bold");
         EXPECT_TRUE(length == 11 || length == 65535) << length;
         EXPECT_NE(Manager().pcco_GetSystemDefaultFont(), nullptr);
     }},
};

void ExpectSilence(const ServiceReport& report)
{
    EXPECT_EQ(report.failure, Failure()) << report.call.name;
}
} // namespace

TEST(ServiceSweep, LogicalFont)
{
    OSTRA_NEEDS_FONTS();
    State::Truth();
    SweepServices(ExpectSilence, OPERATIONS, 2);
}

TEST(ServiceSweep, FontManagerReadsTheSystem)
{
    OSTRA_NEEDS_FONTS();
    SweepServices(ExpectSilence, READING, 0);
}

// tests/System/FontManager/FontManagerTest.cpp: the pool of fonts.
#include <Ostra/Frame/OstraDLLMain.h>
#include <Ostra/String/UString.h>

#include <algorithm>
#include <atomic>
#include <map>
#include <random>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include "Support/Private.h"
#include "System/FontManager/FontSupport.h"

OSTRA_PRIVATE(ManagerExit, void (*)(), &CT_FontManager::sv_Exit);
OSTRA_PRIVATE(ManagerObject, CT_FontManager**, &CT_FontManager::spco_FontManager);
OSTRA_PRIVATE(ManagerFonts, CT_VoidArray CT_FontManager::*, &CT_FontManager::co_Fonts);
OSTRA_PRIVATE(ManagerMost, unsigned CT_FontManager::*, &CT_FontManager::n_MaxFonts);
OSTRA_PRIVATE(ManagerSystem, CT_LogicalFont* CT_FontManager::*, &CT_FontManager::pco_SystemFont);
OSTRA_PRIVATE(ManagerFamilies, CT_CompList CT_FontManager::*, &CT_FontManager::co_Families);

namespace
{
// A manager of its own for each test.
class FontManager : public testing::Test
{
protected:
    FontManager() { Renew(); }
    ~FontManager() override { Renew(); }

    void SetUp() override { OSTRA_NEEDS_FONTS(); }

    static void Renew()
    {
        Private(ManagerExit())();
        CT_FontManager::sv_Init(CT_OstraDLLMain::sh_GetInstance());
    }
    static CT_FontManager& Manager() { return *CT_FontManager::spco_GetFontManager(); }
    static unsigned Most() { return Manager().*Private(ManagerMost()); }
    static CT_LogicalFont* System() { return Manager().*Private(ManagerSystem()); }

    static std::vector<CT_LogicalFont*> Pool()
    {
        const CT_VoidArray& fonts = Manager().*Private(ManagerFonts());
        std::vector<CT_LogicalFont*> pool(fonts.n_GetCount());
        for (unsigned n = 0; n < pool.size(); ++n)
            fonts.v_GetAt(&pool[n], static_cast<int>(n + 1));
        return pool;
    }

    struct Answer
    {
        int known;
        unsigned length;
        int bold, italic;
        bool operator==(const Answer&) const = default;
    };
    static Answer Strip(const char* name)
    {
        const CT_CString text(name);
        Answer answer{};
        answer.known =
            Manager().b_StripFlagFont(&text, &answer.length, &answer.bold, &answer.italic);
        return answer;
    }

    Screen dc;
};

Request OfSize(unsigned points)
{
    Request request;
    request.points = points;
    return request;
}
} // namespace

TEST_F(FontManager, EqualRequestsShareAFont)
{
    CT_LogicalFont* const font = Hire(dc, {});
    EXPECT_EQ(Hire(dc, {}), font);
    EXPECT_EQ(font->b_IsLocked(), 2);
    Manager().v_Fire(font);
    Manager().v_Fire(font);
    EXPECT_EQ(font->b_IsLocked(), 0);
    EXPECT_EQ(Pool(), std::vector{font});
    EXPECT_EQ(Hire(dc, {}), font);
}

TEST_F(FontManager, OtherRequestsGetOtherFonts)
{
    std::vector<CT_LogicalFont*> fonts;
    const Request requests[] = {{},
                                {"Liberation Serif"},
                                {"DejaVu Sans", 204},
                                {"DejaVu Sans", 0, 13},
                                {"DejaVu Sans", 0, 12, 1},
                                {"DejaVu Sans", 0, 12, 0, 1},
                                {"DejaVu Sans", 0, 12, 0, 0, 1},
                                {"DejaVu Sans", 0, 12, 0, 0, 0, 1}};
    for (const Request& request : requests)
        fonts.push_back(Hire(dc, request));
    EXPECT_EQ(Pool(), fonts);
    std::sort(fonts.begin(), fonts.end());
    EXPECT_EQ(std::unique(fonts.begin(), fonts.end()), fonts.end());
}

TEST_F(FontManager, NameWithTheSuffixOfItsSetIsTheNameWithout)
{
    EXPECT_EQ(Hire(dc, {"DejaVu Sans Cyr", 204}), Hire(dc, {"DejaVu Sans", 204}));
    CT_LogicalFont* const kept = Hire(dc, {"DejaVu Sans Cyr", 0});
    EXPECT_NE(kept, Hire(dc, {"DejaVu Sans", 0}));
    EXPECT_STREQ(static_cast<const CT_CString*>(kept->pcco_GetName())->qccz_Get(),
                 "DejaVu Sans Cyr");
}

TEST_F(FontManager, CallersNameStaysAsItIs)
{
    const CT_CString name("DejaVu Sans Cyr");
    Manager().pco_Hire(dc, &name, 204, 12, 0, 0, 0, 0);
    EXPECT_STREQ(name.qccz_Get(), "DejaVu Sans Cyr");
}

TEST_F(FontManager, SizeOf0IsANewFontEachTime)
{
    EXPECT_NE(Hire(dc, OfSize(0)), Hire(dc, OfSize(0)));
    EXPECT_EQ(Hire(dc, OfSize(10)), Pool().back());
}

TEST_F(FontManager, AFontIsFoundByEachFormOfItsName)
{
    const auto hire = [&](const CT_String& name, unsigned charset) {
        return Manager().pco_Hire(dc, &name, charset, 31, 0, 0, 0, 0);
    };
    const std::u16string names[] = {u"DejaVu Sans", u"dejavu sans", u"Gr\u00F6\u00DFe",
                                    std::u16string(63, u'x'), std::u16string(64, u'x')};
    std::set<CT_LogicalFont*> fonts;
    for (const std::u16string& name : names)
        for (const unsigned charset : {0u, 204u}) {
            const CT_UString wide(name.c_str());
            CT_LogicalFont* const font = hire(wide, charset);
            EXPECT_TRUE(fonts.insert(font).second);
            const CT_CString narrow(&wide), western(&wide, 1252);
            const CT_UString suffixed((name + u" Cyr").c_str());
            const CT_CString narrowSuffixed(&suffixed, 1252);
            EXPECT_EQ(hire(wide, charset), font);
            EXPECT_EQ(hire(narrow, charset), font);
            EXPECT_EQ(hire(western, charset), font);
            EXPECT_EQ(hire(suffixed, charset) == font, charset == 204);
            EXPECT_EQ(hire(narrowSuffixed, charset) == font, charset == 204);
            EXPECT_EQ(font->b_IsLocked(), charset == 204 ? 6 : 4);
        }
}

TEST_F(FontManager, AZeroEndsAName)
{
    const CT_UString whole(u"DejaVu Sans"), cut(u"DejaVu Sans\0Cyr", 15);
    ASSERT_EQ(cut.vn_GetLength(), 15U);
    CT_LogicalFont* const font = Manager().pco_Hire(dc, &whole, 0, 31, 0, 0, 0, 0);
    EXPECT_EQ(Manager().pco_Hire(dc, &cut, 0, 31, 0, 0, 0, 0), font);
    EXPECT_EQ(font->b_IsLocked(), 2);
}

TEST_F(FontManager, EmptyNameIsTheSystemFontWhichIsntCounted)
{
    CT_LogicalFont* const font = Hire(dc, {""});
    EXPECT_EQ(font, System());
    EXPECT_EQ(font->b_IsLocked(), 0);
    EXPECT_TRUE(Pool().empty());
    Manager().v_Fire(font);
    EXPECT_EQ(font->b_IsLocked(), 0);
    Manager().v_Fire(nullptr);
}

TEST_F(FontManager, SuffixAloneIsAnEmptyNameButNoSystemFont)
{
    CT_LogicalFont* const font = Hire(dc, {" Cyr", 204});
    EXPECT_NE(font, System());
    EXPECT_EQ(static_cast<void*>(font->h_GetHandle()), GetStockObject(13));
}

TEST_F(FontManager, FullPoolLosesTheOldestFontThatNobodyHas)
{
    std::vector<CT_LogicalFont*> fonts;
    for (unsigned n = 0; n < 32; ++n)
        fonts.push_back(Hire(dc, OfSize(n + 1)));
    Manager().v_Fire(fonts[3]);
    Manager().v_Fire(fonts[1]);
    CT_LogicalFont* const last = Hire(dc, OfSize(33));
    EXPECT_EQ(Most(), 32u);
    fonts.erase(fonts.begin() + 1);
    fonts.push_back(last);
    EXPECT_EQ(Pool(), fonts);
}

TEST_F(FontManager, PoolThatIsAllHiredGrows)
{
    for (unsigned n = 0; n < 33; ++n)
        Hire(dc, OfSize(n + 1));
    EXPECT_EQ(Most(), 33u);
    EXPECT_EQ(Pool().size(), 33u);
    Manager().v_Fire(Pool()[5]);
    Hire(dc, OfSize(50));
    EXPECT_EQ(Most(), 33u);
}

TEST_F(FontManager, FontOfAFullPoolMovesToTheEndWhenItIsHiredAgain)
{
    for (unsigned n = 0; n < 31; ++n)
        Hire(dc, OfSize(n + 1));
    std::vector<CT_LogicalFont*> fonts = Pool();
    Hire(dc, OfSize(5));
    EXPECT_EQ(Pool(), fonts) << "no move while places are free";
    fonts.push_back(Hire(dc, OfSize(32)));
    Hire(dc, OfSize(5));
    std::rotate(fonts.begin() + 4, fonts.begin() + 5, fonts.end());
    EXPECT_EQ(Pool(), fonts);
    Hire(dc, OfSize(5));
    EXPECT_EQ(Pool(), fonts) << "the last one stays";
    EXPECT_EQ(fonts.back()->b_IsLocked(), 4);
}

TEST_F(FontManager, FreeUnusedDestroysWhatNobodyHas)
{
    std::vector<CT_LogicalFont*> fonts;
    for (unsigned n = 0; n < 10; ++n)
        fonts.push_back(Hire(dc, OfSize(n + 1)));
    for (const unsigned n : {9, 4, 0})
        Manager().v_Fire(fonts[n]);
    Manager().v_FreeUnused();
    for (const int n : {9, 4, 0})
        fonts.erase(fonts.begin() + n);
    EXPECT_EQ(Pool(), fonts);
    EXPECT_EQ(Most(), 32u);
}

TEST_F(FontManager, AnotherResolutionIsAnotherFont)
{
    // What is no device has none.
    ASSERT_EQ(GetDeviceCaps(nullptr, LOGPIXELSY), 0);
    CT_LogicalFont* const other = Hire(nullptr, {});
    CT_LogicalFont* const font = Hire(dc, {});
    EXPECT_NE(other, font);
    EXPECT_EQ(other->i_GetHeight(), 0);
    EXPECT_EQ(Hire(nullptr, {}), other);
    EXPECT_EQ(Hire(dc, {}), font);
}

TEST_F(FontManager, LockedFontsCountAsHired)
{
    CT_LogicalFont* const font = Hire(dc, {});
    font->v_Lock();
    Manager().v_Fire(font);
    Manager().v_FreeUnused();
    EXPECT_EQ(Pool(), std::vector{font});
}

TEST_F(FontManager, SystemFontsAreThereFromTheStart)
{
    EXPECT_EQ(static_cast<void*>(Manager().h_GetSystemFont()), GetStockObject(13));
    EXPECT_NE(Manager().h_GetSystemDefaultFont(), nullptr);
    const CT_LogicalFont* const font = Manager().pcco_GetSystemDefaultFont();
    ASSERT_NE(font, nullptr);
    EXPECT_EQ(font->h_GetHandle(), Manager().h_GetSystemDefaultFont());
    CT_CString name;
    unsigned points = 0;
    CT_FontManager::sv_GetSystemDefaultFont(&name, &points);
    EXPECT_STREQ(static_cast<const CT_CString*>(font->pcco_GetName())->qccz_Get(), name.qccz_Get());
    EXPECT_EQ(font->n_GetPoints(), points);
    EXPECT_EQ(font->n_GetCharSet(), 1u);
}

TEST_F(FontManager, SystemDefaultFontIsThatOfIconTitles)
{
    LOGFONTA icons = {};
    ASSERT_TRUE(SystemParametersInfoA(31, sizeof(icons), &icons, 0));
    CT_UString name;
    unsigned points = 0;
    CT_FontManager::sv_GetSystemDefaultFont(&name, &points);
    EXPECT_STREQ(CT_CString(&name).qccz_Get(), icons.lfFaceName);
    EXPECT_EQ(points, static_cast<unsigned>(-icons.lfHeight * 72 / 96));
    CT_FontManager::sv_GetSystemDefaultFont(&name, nullptr);
}

TEST_F(FontManager, FullNamesAreTakenApart)
{
    EXPECT_EQ(Strip("DejaVu Sans Bold"), (Answer{1, 11, 1, 0}));
    EXPECT_EQ(Strip("Liberation Serif Regular"), (Answer{1, 16, 0, 0}));
    EXPECT_EQ(Strip("Liberation Serif Bold"), (Answer{1, 16, 1, 0}));
    EXPECT_EQ(Strip("Liberation Serif Italic"), (Answer{1, 16, 0, 1}));
    EXPECT_EQ(Strip("Liberation Serif Bold Italic"), (Answer{1, 16, 1, 1}));
}

TEST_F(FontManager, UnknownNamesAreTakenApartToo)
{
    EXPECT_EQ(Strip("No Such Face"), (Answer{1, 65535, 255, 255}));
    EXPECT_EQ(Strip("DejaVu Sans bold"), (Answer{1, 65535, 255, 255}));
    EXPECT_EQ(Strip(""), (Answer{0, 0, 0, 0}));
}

TEST_F(FontManager, EnumerationsLeaveStylesOutWhereTheyAreAskedTo)
{
    CT_CompList families(CT_CompList::es_Byte, 4, 0, 0, 128, 0);
    st_FontsFamilies context{dc, &families, 0, 0};
    tagENUMLOGFONTA font = {};
    strcpy(font.elfLogFont.lfFaceName, "Face");
    strcpy(reinterpret_cast<char*>(font.elfStyle), "Style");
    tagNEWTEXTMETRICA metric = {};
    metric.ntmFlags = 0x21;
    EXPECT_EQ(CT_FontManager::sb_EnumFamily(&font, &metric, 4, &context), 1);
    context.b_NoBold = 1;
    EXPECT_EQ(CT_FontManager::sb_EnumFamily(&font, &metric, 1, &context), 1);
    context = {dc, &families, 0, 1};
    strcpy(reinterpret_cast<char*>(font.elfStyle), "Other");
    EXPECT_EQ(CT_FontManager::sb_EnumFamily(&font, &metric, 4, &context), 1);
    EXPECT_EQ(families.n_Search("Face Style", nullptr), 0x01010004u);
    EXPECT_EQ(families.n_Search("Face", nullptr), 0x01000004u);
    EXPECT_EQ(families.n_Search("Face Other", nullptr), 0x00010004u);
}

TEST_F(FontManager, EachFamilyIsAskedForItsStyles)
{
    CT_CompList families(CT_CompList::es_Byte, 4, 0, 0, 128, 0);
    st_FontsFamilies context{dc, &families, 0, 0};
    tagENUMLOGFONTA font = {};
    strcpy(font.elfLogFont.lfFaceName, "Liberation Serif");
    tagNEWTEXTMETRICA metric = {};
    EXPECT_EQ(CT_FontManager::sb_EnumFonts(&font, &metric, 4, &context), 1);
    for (const char* name : {"Liberation Serif Regular", "Liberation Serif Bold Italic"})
        EXPECT_NE(families.n_Search(name, nullptr), 0xFFFFFFFFu) << name;
    EXPECT_EQ(families.n_Search("DejaVu Sans Bold", nullptr), 0xFFFFFFFFu);
}

TEST_F(FontManager, LongestNamesFitTheKey)
{
    CT_CompList families(CT_CompList::es_Byte, 4, 0, 0, 128, 0);
    st_FontsFamilies context{dc, &families, 0, 0};
    tagENUMLOGFONTA font = {};
    memset(font.elfLogFont.lfFaceName, 'f', LF_FACESIZE - 1);
    memset(font.elfStyle, 's', LF_FACESIZE - 1);
    tagNEWTEXTMETRICA metric = {};
    CT_FontManager::sb_EnumFamily(&font, &metric, 4, &context);
    const std::string key = std::string(31, 'f') + ' ' + std::string(31, 's');
    EXPECT_EQ(families.n_Search(key.c_str(), nullptr), 31u);
}

TEST_F(FontManager, NamesThatFillTheirFieldsEndWithThem)
{
    CT_CompList families(CT_CompList::es_Byte, 4, 0, 0, 128, 0);
    st_FontsFamilies context{dc, &families, 0, 0};
    tagENUMLOGFONTA font;
    memset(&font, 'x', sizeof(font));
    memset(font.elfLogFont.lfFaceName, 'f', LF_FACESIZE);
    memset(font.elfStyle, 's', LF_FACESIZE);
    tagNEWTEXTMETRICA metric = {};
    CT_FontManager::sb_EnumFamily(&font, &metric, 4, &context);
    CT_FontManager::sb_EnumFamily(&font, &metric, 1, &context);
    const std::string face(32, 'f');
    EXPECT_EQ(families.n_Search((face + ' ' + std::string(32, 's')).c_str(), nullptr), 32u);
    EXPECT_EQ(families.n_Search(face.c_str(), nullptr), 32u);
}

TEST_F(FontManager, SystemIsReadAtTheFirstRequest)
{
    Renew();
    CT_FontManager& manager = Manager();
    EXPECT_NE(System(), nullptr);
    EXPECT_EQ(&Manager(), &manager);
    EXPECT_NE((manager.*Private(ManagerFamilies())).n_Search("DejaVu Sans Bold", nullptr),
              0xFFFFFFFFu);
}

// What the pool has to hold, by requests.
TEST_F(FontManager, ThreadsThatAskAtOnceFindTheSystemRead)
{
    for (int round = 0; round < 3; ++round) {
        Renew();
        std::atomic<int> waiting = 4;
        std::atomic<int> good = 0;
        std::vector<std::thread> threads;
        for (int n = 0; n < 4; ++n)
            threads.emplace_back([&] {
                for (--waiting; waiting;)
                    std::this_thread::yield();
                const CT_FontManager* const manager = CT_FontManager::spco_GetFontManager();
                good += manager->h_GetSystemFont() && manager->h_GetSystemDefaultFont();
            });
        for (std::thread& thread : threads)
            thread.join();
        EXPECT_EQ(good, 4);
    }
}

TEST_F(FontManager, PoolIsAsItsModel)
{
    struct Place
    {
        Request request;
        int users;
    };
    std::vector<Place> model;
    unsigned most = 32;
    std::mt19937 random(18);
    std::map<CT_LogicalFont*, int> hired;
    for (int step = 0; step < 4000; ++step) {
        const unsigned choice = random() % 100;
        if (choice < 55) {
            Request request{random() % 2 ? "DejaVu Sans" : "Liberation Serif",
                            random() % 3 ? 0u : 204u, 1 + static_cast<unsigned>(random() % 12),
                            static_cast<int>(random() % 2)};
            const auto at = std::find_if(model.begin(), model.end(), [&](const Place& place) {
                return place.request == request;
            });
            if (at != model.end()) {
                ++at->users;
                if (model.size() == most)
                    std::rotate(at, at + 1, model.end());
            } else {
                if (model.size() == most) {
                    const auto idle = std::find_if(model.begin(), model.end(),
                                                   [](const Place& place) { return !place.users; });
                    if (idle != model.end())
                        model.erase(idle);
                    else
                        ++most;
                }
                model.push_back({request, 1});
            }
            ++hired[Hire(dc, request)];
        } else if (choice < 98 && !hired.empty()) {
            const auto victim = std::next(hired.begin(), static_cast<int>(random() % hired.size()));
            const std::vector<CT_LogicalFont*> pool = Pool();
            const auto at = std::find(pool.begin(), pool.end(), victim->first) - pool.begin();
            --model[static_cast<std::size_t>(at)].users;
            Manager().v_Fire(victim->first);
            if (!--victim->second)
                hired.erase(victim);
        } else {
            std::erase_if(model, [](const Place& place) { return !place.users; });
            Manager().v_FreeUnused();
        }
        const std::vector<CT_LogicalFont*> pool = Pool();
        ASSERT_EQ(pool.size(), model.size());
        ASSERT_EQ(Most(), most);
        for (std::size_t n = 0; n < pool.size(); ++n) {
            ASSERT_EQ(pool[n]->b_IsLocked(), model[n].users) << step;
            ASSERT_EQ(pool[n]->n_GetPoints(), model[n].request.points) << step;
            ASSERT_EQ(pool[n]->b_GetBold(), model[n].request.bold) << step;
            ASSERT_EQ(pool[n]->n_GetCharSet(), model[n].request.charset) << step;
        }
    }
    EXPECT_GT(most, 32u);
}

TEST(FontManagerLife, ManagerThatIsMadeAnewLeavesTheOldOneAlone)
{
    CT_FontManager* const old = CT_FontManager::spco_GetFontManager();
    ASSERT_NE(old, nullptr);
    CT_FontManager::sv_Init(nullptr);
    EXPECT_NE(CT_FontManager::spco_GetFontManager(), old);
    Private(ManagerExit())();
    EXPECT_EQ(CT_FontManager::spco_GetFontManager(), nullptr);
    Private(ManagerExit())();
    EXPECT_NE(old->h_GetSystemFont(), nullptr);
    old->v_Set();
    EXPECT_EQ(old->h_GetSystemFont(), nullptr);
    *Private(ManagerObject()) = old;
    Private(ManagerExit())();
    CT_FontManager::sv_Init(CT_OstraDLLMain::sh_GetInstance());
}

TEST(FontManagerLife, ManagerThatWasSetHiresNothingOutAndEndsInPeace)
{
    CT_FontManager* const manager = CT_FontManager::spco_GetFontManager();
    ASSERT_NE(manager, nullptr);
    const Screen dc;
    CT_LogicalFont* const font = Hire(dc, {});
    ASSERT_NE(font, nullptr);
    CT_LogicalFont* const gone = Hire(dc, {"Liberation Serif"});
    manager->v_Fire(font);
    manager->v_Set();
    // Kept pointers are of no use, and of no harm here.
    manager->v_Fire(gone);
    EXPECT_EQ(Hire(dc, {}), nullptr);
    EXPECT_EQ(Hire(dc, {""}), nullptr);
    EXPECT_EQ(manager->pcco_GetSystemDefaultFont(), nullptr);
    manager->v_FreeUnused();
    manager->v_Set();
    Private(ManagerExit())();
    CT_FontManager::sv_Init(CT_OstraDLLMain::sh_GetInstance());
}

// On a machine without a font, too.
TEST(FontManagerLife, FontsAreHiredWhateverTheMachineHas)
{
    const Screen dc;
    const CT_UString text(u"plain \u0416\u65E5\xD83D\xDE00 text");
    for (const char* name : {"DejaVu Sans", "No Such Face", "No Such Face Cyr", "\xFF\xFE"})
        for (const unsigned charset : {0u, 1u, 77u, 128u, 204u, 999u}) {
            CT_LogicalFont* const font = Hire(dc, {name, charset, 12, 1, 1});
            ASSERT_NE(font, nullptr);
            EXPECT_EQ(font->n_GetCharSet(), charset & 0xFF);
            font->n_GetTextExtent(dc, &text, 0, text.vn_GetLength());
            font->b_IsLocaleSupported(dc, 0x409);
            CT_FontManager::spco_GetFontManager()->v_Fire(font);
        }
    CT_FontManager::spco_GetFontManager()->v_FreeUnused();
}

TEST(FontManagerLife, WithoutAResolutionTheSizeIs0)
{
    if (GetDeviceCaps(Screen(), LOGPIXELSY) != 0)
        GTEST_SKIP() << "the screen has a resolution here";
    CT_CString name;
    unsigned points = 7;
    CT_FontManager::sv_GetSystemDefaultFont(&name, &points);
    EXPECT_EQ(points, 0u);
}

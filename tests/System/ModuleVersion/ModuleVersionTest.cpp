// tests/System/ModuleVersion/ModuleVersionTest.cpp
#define OSTRA_RAW_COPIES
#include <System/ModuleVersion/ModuleVersion.h>

#include <gtest/gtest.h>

#include "Support/Directory.h"
#include "Support/Endless.h"
#include "Support/Files.h"
#include "Support/VersionFiles.h"

#include <memory>
#include <random>
#include <type_traits>

namespace
{
const Failure NONE;

using Getter = const CT_UString* (CT_ModuleVersion::*)() const;

const struct
{
    const char* key;
    Getter get;
} FIELDS[] = {
    {"Comments", &CT_ModuleVersion::pcco_GetComments},
    {"CompanyName", &CT_ModuleVersion::pcco_GetCompanyName},
    {"FileDescription", &CT_ModuleVersion::pcco_GetFileDescription},
    {"FileVersion", &CT_ModuleVersion::pcco_GetFileVersion},
    {"InternalName", &CT_ModuleVersion::pcco_GetInternalName},
    {"LegalCopyright", &CT_ModuleVersion::pcco_GetLegalCopyright},
    {"LegalTrademarks", &CT_ModuleVersion::pcco_GetLegalTrademarks},
    {"OriginalFilename", &CT_ModuleVersion::pcco_GetOriginalFilename},
    {"PrivateBuild", &CT_ModuleVersion::pcco_GetPrivateBuild},
    {"ProductName", &CT_ModuleVersion::pcco_GetProductName},
    {"ProductVersion", &CT_ModuleVersion::pcco_GetProductVersion},
    {"SpecialBuild", &CT_ModuleVersion::pcco_GetSpecialBuild},
};

std::string FileWith(Layout layout, const std::string& record)
{
    return layout == Layout::WIDE ? PortableFile(record) : SegmentedFile(record);
}

void SetTo(CT_ModuleVersion& version, Layout layout, const std::string& record)
{
    WriteBytes("a.dll", FileWith(layout, record));
    version.v_Set(".\\a.dll");
}

// What an object without a record tells.
void ExpectInvalid(const CT_ModuleVersion& version)
{
    EXPECT_EQ(version.b_IsValid(), 0);
    EXPECT_EQ(version.n_GetBuildNumber(), 0U);
    const st_FixedFileInfo none = {};
    EXPECT_EQ(std::memcmp(version.pcso_GetInfo(), &none, sizeof none), 0);
    EXPECT_EQ(version.pcco_GetMap()->n_GetCount(), 0U);
}

void WriteRecord(const char* name, const std::string& record)
{
    WriteBytes(name, PortableFile(record));
}
} // namespace

TEST(ModuleVersion, ANewObjectIsEmptyAndNotValid)
{
    const CT_ModuleVersion version;
    ExpectInvalid(version);
    for (const auto& field : FIELDS)
        EXPECT_EQ(Get(*(version.*field.get)()), "") << field.key;
}

TEST(ModuleVersion, BothLayoutsGiveTheFixedPartAndTheTwelveStrings)
{
    Pairs pairs;
    for (const auto& field : FIELDS)
        pairs.emplace_back(field.key, std::string("the ") + field.key);
    for (const Layout layout : {Layout::WIDE, Layout::NARROW}) {
        CT_ModuleVersion version;
        SetTo(version, layout, SimpleRecord(layout, pairs));
        EXPECT_EQ(version.b_IsValid(), 1);
        EXPECT_EQ(version.n_GetBuildNumber(), 0x00030004U);
        const st_FixedFileInfo& info = *version.pcso_GetInfo();
        EXPECT_EQ(info.n4_Signature, 0xFEEF04BDU);
        EXPECT_EQ(info.n4_StrucVersion, 0x00010000U);
        EXPECT_EQ(info.n4_FileVersionMS, 0x00010002U);
        EXPECT_EQ(info.n4_ProductVersionMS, 5U);
        EXPECT_EQ(info.n4_ProductVersionLS, 6U);
        EXPECT_EQ(info.n4_FileFlagsMask, 7U);
        EXPECT_EQ(info.n4_FileFlags, 8U);
        EXPECT_EQ(info.n4_FileOS, 9U);
        EXPECT_EQ(info.n4_FileType, 10U);
        EXPECT_EQ(info.n4_FileSubtype, 11U);
        EXPECT_EQ(info.n4_FileDateMS, 12U);
        EXPECT_EQ(info.n4_FileDateLS, 13U);
        for (const auto& field : FIELDS)
            EXPECT_EQ(Get(*(version.*field.get)()), std::string("the ") + field.key);
        EXPECT_EQ(version.pcco_GetMap()->n_GetCount(), 0U);
    }
    EXPECT_EQ(TakeFailure(), NONE);
}

TEST(ModuleVersion, FilesFor64BitsAreRead)
{
    WriteBytes("a.dll", PortableFile(SimpleRecord(Layout::WIDE, {{"Comments", "wide"}}), true));
    CT_ModuleVersion version;
    const CT_CString name(".\\a.dll");
    version.v_Set(&name);
    EXPECT_EQ(Get(*version.pcco_GetComments()), "wide");
}

TEST(ModuleVersion, OtherKeysAreReachedByTheMapAlone)
{
    for (const Layout layout : {Layout::WIDE, Layout::NARROW}) {
        CT_ModuleVersion version;
        SetTo(version, layout,
              SimpleRecord(layout, {{"Other", "1"},
                                    {"comments", "2"},
                                    {"Comments", "3"},
                                    {"Comments2", "4"},
                                    {"Empty", ""}}));
        EXPECT_EQ(Get(*version.pcco_GetComments()), "3");
        const CT_StringStringMap& map = *version.pcco_GetMap();
        ASSERT_EQ(map.n_GetCount(), 4U);
        EXPECT_EQ(Get(*map.pcco_GetString2("Other")), "1");
        EXPECT_EQ(Get(*map.pcco_GetString2("comments")), "2");
        EXPECT_EQ(Get(*map.pcco_GetString2("Comments2")), "4");
        EXPECT_EQ(Get(*map.pcco_GetString2("Empty")), "");
    }
}

TEST(ModuleVersion, AnEntryWithAnEmptyValueGivesAnEmptyField)
{
    for (const Layout layout : {Layout::WIDE, Layout::NARROW}) {
        CT_ModuleVersion version;
        SetTo(version, layout, SimpleRecord(layout, {{"Comments", "old"}}));
        SetTo(version, layout, SimpleRecord(layout, {{"Comments", ""}, {"ProductName", "behind"}}));
        EXPECT_EQ(Get(*version.pcco_GetComments()), "");
        EXPECT_EQ(Get(*version.pcco_GetProductName()), "behind");
    }
}

TEST(ModuleVersion, AFileWithoutARecordLeavesTheOldStrings)
{
    CT_ModuleVersion version;
    SetTo(version, Layout::WIDE,
          SimpleRecord(Layout::WIDE, {{"Comments", "old"}, {"Other", "gone"}}));
    EXPECT_EQ(version.b_IsValid(), 1);
    WriteBytes("text", "no executable file");
    for (const char* name : {".\\text", ".\\missing", ".\\none\\missing", "."}) {
        version.v_Set(name);
        ExpectInvalid(version);
        EXPECT_EQ(Get(*version.pcco_GetComments()), "old");
    }
    EXPECT_EQ(TakeFailure(), NONE);
}

TEST(ModuleVersion, AKeyThatTheNextRecordLacksKeepsItsText)
{
    CT_ModuleVersion version;
    SetTo(version, Layout::WIDE, SimpleRecord(Layout::WIDE, {{"Comments", "1"}, {"Other", "1"}}));
    SetTo(version, Layout::WIDE, SimpleRecord(Layout::WIDE, {{"ProductName", "2"}}));
    EXPECT_EQ(Get(*version.pcco_GetComments()), "1");
    EXPECT_EQ(Get(*version.pcco_GetProductName()), "2");
    EXPECT_EQ(version.pcco_GetMap()->n_GetCount(), 0U);
}

TEST(ModuleVersion, OfTwoTablesTheFirstIsRead)
{
    for (const Layout layout : {Layout::WIDE, Layout::NARROW}) {
        CT_ModuleVersion version;
        SetTo(version, layout,
              Record(layout,
                     {VarFileInfo(layout),
                      StringFileInfo(
                          layout, {StringTable(layout, "040904E4", {{"Comments", "first"}}),
                                   StringTable(layout, "040704E4",
                                               {{"Comments", "second"}, {"ProductName", "p"}})})}));
        EXPECT_EQ(Get(*version.pcco_GetComments()), "first");
        EXPECT_EQ(Get(*version.pcco_GetProductName()), "");
    }
}

TEST(ModuleVersion, TextIsReadInEveryScript)
{
    std::string value;
    const char16_t text[] = u"\u00E4\u0416\u4E2D\U0001F600\u05D0";
    for (const char16_t unit : std::u16string(text))
        value += Word(unit);
    const std::string entry = Bytes(Layout::WIDE, {"Comments", value + Word(0), 7, {}, 1});
    const std::string table = Bytes(Layout::WIDE, {"040904B0", "", 0, {entry}, 1});
    CT_ModuleVersion version;
    SetTo(version, Layout::WIDE, Record(Layout::WIDE, {StringFileInfo(Layout::WIDE, {table})}));
    EXPECT_EQ(version.pcco_GetComments()->vi_Compare(text), 0);
}

TEST(ModuleVersion, AnEntryOfLengthZeroIsSteppedOver)
{
    for (const Layout layout : {Layout::WIDE, Layout::NARROW}) {
        const std::string zeros(8, '\0');
        const std::string table =
            Bytes(layout, {"040904E4",
                           "",
                           0,
                           {zeros, TableEntry(layout, "Comments", "behind"), zeros, zeros},
                           1});
        CT_ModuleVersion version;
        SetTo(version, layout, Record(layout, {StringFileInfo(layout, {table})}));
        EXPECT_EQ(Get(*version.pcco_GetComments()), "behind");
        EXPECT_EQ(version.pcco_GetMap()->n_GetCount(), 0U);
    }
}

TEST(ModuleVersion, InTheNarrowLayoutTheCodePageIsTheMostBytesOfAText)
{
    const auto comments = [](const char* key, const std::string& text) {
        const std::string table = StringTable(Layout::NARROW, key, {{"Comments", text}});
        CT_ModuleVersion version;
        SetTo(version, Layout::NARROW,
              Record(Layout::NARROW, {StringFileInfo(Layout::NARROW, {table})}));
        EXPECT_EQ(version.b_IsValid(), 1);
        return Get(*version.pcco_GetComments());
    };
    const std::string text(2000, 'x');
    EXPECT_EQ(comments("040904E4", text).size(), 1252U);
    EXPECT_EQ(comments("040903A4", text).size(), 932U);
    EXPECT_EQ(comments("0409000A", "0123456789abc"), "0123456789");
    EXPECT_EQ(comments("04090000", "text"), "");
    // A key that is cut is another one.
    EXPECT_EQ(comments("04090007", "text"), "");
    EXPECT_EQ(comments("no digits", "text"), "");
    EXPECT_EQ(comments("FFFFFFFF", "text"), "text");
}

TEST(ModuleVersion, ALongFixedPartIsCutAndAShortOneLeavesZeros)
{
    CT_ModuleVersion version;
    const std::string child =
        StringFileInfo(Layout::WIDE, {StringTable(Layout::WIDE, "040904B0", {{"Comments", "c"}})});
    SetTo(version, Layout::WIDE, Record(Layout::WIDE, {child}, FixedPart() + Long(77) + Long(78)));
    EXPECT_EQ(version.pcso_GetInfo()->n4_FileDateLS, 13U);
    EXPECT_EQ(Get(*version.pcco_GetComments()), "c");
    SetTo(version, Layout::WIDE, Record(Layout::WIDE, {child}, FixedPart().substr(0, 16)));
    EXPECT_EQ(version.b_IsValid(), 1);
    EXPECT_EQ(version.n_GetBuildNumber(), 0x00030004U);
    EXPECT_EQ(version.pcso_GetInfo()->n4_ProductVersionMS, 0U);
    SetTo(version, Layout::WIDE, Record(Layout::WIDE, {child}, ""));
    EXPECT_EQ(version.b_IsValid(), 0);
    EXPECT_EQ(version.n_GetBuildNumber(), 0U);
    EXPECT_EQ(version.pcso_GetInfo()->n4_Signature, 0U);
}

TEST(ModuleVersion, AnUnknownLayoutLeavesAnEmptyRecord)
{
    CT_ModuleVersion version;
    std::string record = SimpleRecord(Layout::NARROW, {{"Comments", "c"}});
    record[10] = 'x';
    SetTo(version, Layout::NARROW, record);
    ExpectInvalid(version);
    record = SimpleRecord(Layout::WIDE, {{"Comments", "c"}});
    record[4] = 2;
    SetTo(version, Layout::WIDE, record);
    ExpectInvalid(version);
}

TEST(ModuleVersion, TheWideLayoutTakesTheRecordsKeyAsItIs)
{
    for (const unsigned type : {0U, 1U}) {
        const std::string record =
            Bytes(Layout::WIDE,
                  {"some other key",
                   FixedPart(),
                   52,
                   {StringFileInfo(Layout::WIDE,
                                   {StringTable(Layout::WIDE, "040904B0", {{"Comments", "c"}})})},
                   type});
        CT_ModuleVersion version;
        SetTo(version, Layout::WIDE, record);
        EXPECT_EQ(version.b_IsValid(), 1);
        EXPECT_EQ(Get(*version.pcco_GetComments()), "c");
    }
}

ENDLESS(ChildOfAnotherKind)
{
    const std::string other = Bytes(Layout::WIDE, {"OtherFileInfo", "", 0, {}, 1});
    WriteRecord("a.dll", Record(Layout::WIDE, {other}));
    CT_ModuleVersion().v_Set(".\\a.dll");
}

ENDLESS(ChildWithoutLength)
{
    std::string child = VarFileInfo(Layout::WIDE);
    child.replace(0, 2, Word(0));
    WriteRecord("a.dll", Record(Layout::WIDE, {child}));
    CT_ModuleVersion().v_Set(".\\a.dll");
}

TEST(ModuleVersion, AChildOfAnotherKindIsLookedAtForEver)
{
    EXPECT_TRUE(RunsForEver("ChildOfAnotherKind"));
    EXPECT_TRUE(RunsForEver("ChildWithoutLength"));
}

TEST(ModuleVersion, ATableThatLiesAboutItsLengthEndsWithTheRoom)
{
    for (const Layout layout : {Layout::WIDE, Layout::NARROW}) {
        std::string table = StringTable(layout, "040904E4", {{"Comments", "c"}});
        table.replace(0, 2, Word(0xFFFF));
        std::string strings = StringFileInfo(layout, {table});
        strings.replace(0, 2, Word(0xFFFF));
        CT_ModuleVersion version;
        SetTo(version, layout, Record(layout, {strings}));
        EXPECT_EQ(version.b_IsValid(), 1);
        EXPECT_EQ(Get(*version.pcco_GetComments()), "c");
    }
}

TEST(ModuleVersion, WithoutATableThereAreNoStrings)
{
    for (const Layout layout : {Layout::WIDE, Layout::NARROW}) {
        CT_ModuleVersion version;
        SetTo(version, layout, Record(layout, {StringFileInfo(layout, {})}));
        EXPECT_EQ(version.b_IsValid(), 1);
        EXPECT_EQ(version.pcco_GetMap()->n_GetCount(), 0U);
        EXPECT_EQ(Get(*version.pcco_GetComments()), "");
    }
}

TEST(ModuleVersion, CopiesTakeTheWordsOfTheStrings)
{
    EXPECT_FALSE(std::is_polymorphic_v<CT_ModuleVersion>);
    EXPECT_EQ(sizeof(st_FixedFileInfo), 52U);
    CT_ModuleVersion version;
    SetTo(version, Layout::WIDE,
          SimpleRecord(Layout::WIDE, {{"Comments", "c"}, {"SpecialBuild", "s"}, {"Other", "o"}}));
    // Copies that are never destroyed: they have no hold on the blocks.
    alignas(CT_ModuleVersion) static char place[2][sizeof(CT_ModuleVersion)];
    const auto copy = new (place[0]) CT_ModuleVersion(version);
    const auto assigned = new (place[1]) CT_ModuleVersion;
    *assigned = version;
    for (const CT_ModuleVersion* each : {copy, assigned}) {
        EXPECT_EQ(each->n_GetBuildNumber(), 0x00030004U);
        EXPECT_EQ(each->pcco_GetComments()->qcuz_Get(), version.pcco_GetComments()->qcuz_Get());
        EXPECT_EQ(each->pcco_GetSpecialBuild()->qcuz_Get(),
                  version.pcco_GetSpecialBuild()->qcuz_Get());
        EXPECT_EQ(Get(*each->pcco_GetMap()->pcco_GetString2("Other")), "o");
    }
    // Assigned to itself it keeps what it has.
    const CT_ModuleVersion& itself = *assigned;
    *assigned = itself;
    EXPECT_EQ(assigned->n_GetBuildNumber(), 0x00030004U);
    EXPECT_EQ(assigned->pcco_GetMap()->n_GetCount(), version.pcco_GetMap()->n_GetCount());
    EXPECT_EQ(Get(*assigned->pcco_GetMap()->pcco_GetString2("Other")), "o");
    // What the maps hold is their own.
    for (CT_ModuleVersion* each : {copy, assigned})
        const_cast<CT_StringStringMap*>(each->pcco_GetMap())->~CT_StringStringMap();
    std::unique_ptr<CT_ModuleVersion> made(new CT_ModuleVersion);
    ExpectInvalid(*made);
}

// The service may call a changed file one without a record; what it takes for one must do no harm.
// Those that would be looked at for ever are left out by their key.
TEST(ModuleVersion, ChangedRecordsDoNoHarm)
{
    std::mt19937 random(20261);
    const Pairs pairs = {{"Comments", "some text"}, {"Other", "x"}, {"ProductName", "name"}};
    for (const Layout layout : {Layout::WIDE, Layout::NARROW}) {
        const std::string strings =
            StringFileInfo(layout, {StringTable(layout, "040904E4", pairs)});
        for (int run = 0; run < 100; ++run) {
            // The kinds of the children and their lengths stay.
            std::string changed = strings;
            const std::size_t from = layout == Layout::WIDE ? 36 : 20;
            for (unsigned count = 1 + random() % 4; count != 0; --count)
                changed[from + random() % (changed.size() - from)] = static_cast<char>(random());
            CT_ModuleVersion version;
            SetTo(version, layout, Record(layout, {changed}));
            EXPECT_EQ(version.b_IsValid(), 1);
        }
    }
    EXPECT_EQ(TakeFailure(), NONE);
}

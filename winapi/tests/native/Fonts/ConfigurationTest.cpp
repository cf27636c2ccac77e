// winapi/tests/native/Fonts/ConfigurationTest.cpp: machines without fonts, with broken settings,
// with names in every script, and without memory.
#include "../Support/Heap.h"

#include "winapi/Errors/LastError.h"
#include "winapi/Fonts/Font.h"
#include "winapi/Text/CodePage.h"

#include "Support/ChildProcess.h"
#include "Support/Directory.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <set>
#include <string>
#include <vector>

using namespace winapi;

namespace
{
const char HEAD[] = "<?xml version=\"1.0\"?><!DOCTYPE fontconfig SYSTEM \"fonts.dtd\"><fontconfig>";
const char NO_FONTS[] = "<dir>nowhere</dir></fontconfig>";

// Configures the process: neither a home nor a cache, the configuration alone.
void Configure(const char* file)
{
    for (const char* name : {"HOME", "XDG_CACHE_HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME"})
        unsetenv(name);
    setenv("FONTCONFIG_FILE", file, 1);
}

void WriteConfiguration(const std::string& body)
{
    WriteBytes("fonts.conf", HEAD + body);
}

int Count(const LOGFONTA*, const TEXTMETRICA*, DWORD, LPARAM count)
{
    return ++*reinterpret_cast<int*>(count);
}

int TakeName(const LOGFONTA* font, const TEXTMETRICA*, DWORD, LPARAM names)
{
    reinterpret_cast<std::set<std::string>*>(names)->insert(font->lfFaceName);
    return 1;
}

HFONT Make(const char* family, int height)
{
    LOGFONTA request = {};
    request.lfHeight = height;
    std::strcpy(request.lfFaceName, family);
    return CreateFontIndirectA(&request);
}

std::string FaceOf(HDC dc)
{
    char face[LF_FACESIZE] = "";
    GetTextFaceA(dc, LF_FACESIZE, face);
    return face;
}

int EndOfChild()
{
    std::printf("%s\n", testing::Test::HasFailure() ? "failed" : "as told");
    std::fflush(stdout);
    return 0;
}

void ExpectAsTold(const char* name, const ChildProcess::Arguments& arguments = {})
{
    ChildProcess child(name, arguments);
    std::string last;
    for (std::string line; !(line = child.ReadLine()).empty();)
        last = line;
    EXPECT_EQ(last, "as told") << name;
    EXPECT_EQ(child.Wait(), 0);
}
} // namespace

CHILD_PROCESS(HasNoFonts)
{
    Configure(arguments[0].c_str());
    const HDC dc = GetDC(nullptr);
    int count = 0;
    EXPECT_EQ(EnumFontFamiliesA(dc, nullptr, Count, reinterpret_cast<LPARAM>(&count)), 1);
    EXPECT_EQ(count, 0);
    const HFONT font = Make("DejaVu Sans", 16);
    EXPECT_EQ(SelectObject(dc, font), GetStockObject(SYSTEM_FONT));
    EXPECT_EQ(FaceOf(dc), "System");
    TEXTMETRICA metrics;
    EXPECT_TRUE(GetTextMetricsA(dc, &metrics));
    EXPECT_EQ(metrics.tmHeight, 16);
    EXPECT_EQ(metrics.tmCharSet, 0);
    int widths[96];
    EXPECT_TRUE(GetCharWidth32W(dc, 0x20, 0x7F, widths));
    for (const int width : widths)
        EXPECT_EQ(width, 8);
    ABC blank;
    EXPECT_TRUE(GetCharABCWidthsA(dc, ' ', ' ', &blank));
    FONTSIGNATURE signature;
    EXPECT_EQ(GetTextCharsetInfo(dc, &signature, 0), 0);
    EXPECT_EQ(signature.fsCsb[0], 1u);
    return EndOfChild();
}

TEST(FontConfiguration, WithoutAFontABuiltInFaceAnswers)
{
    WriteConfiguration(NO_FONTS);
    ExpectAsTold("HasNoFonts", {(std::filesystem::current_path() / "fonts.conf").string()});
}

CHILD_PROCESS(HasAnyConfiguration)
{
    Configure(arguments[0].c_str());
    const HDC dc = GetDC(nullptr);
    EXPECT_NE(SelectObject(dc, Make("No Such Face", -16)), nullptr);
    EXPECT_FALSE(FaceOf(dc).empty());
    TEXTMETRICA metrics;
    EXPECT_TRUE(GetTextMetricsA(dc, &metrics));
    EXPECT_GT(metrics.tmHeight, 10);
    int width = 0;
    EXPECT_TRUE(GetCharWidth32W(dc, 'A', 'A', &width));
    EXPECT_GT(width, 4);
    return EndOfChild();
}

TEST(FontConfiguration, ConfigurationThatIsMissingOrBrokenDoesNoHarm)
{
    WriteBytes("fonts.conf", "no configuration");
    WriteBytes("empty.conf", "");
    const std::string folder = std::filesystem::current_path().string();
    for (const std::string& file : {std::string("/dev/null"), folder + "/missing",
                                    folder + "/fonts.conf", folder + "/empty.conf", folder})
        ExpectAsTold("HasAnyConfiguration", {file});
}

// Fontconfig gives the fonts of the folder the name.
static void WriteRenaming(const char* name)
{
    const std::string folder = std::filesystem::current_path().string();
    WriteConfiguration("<dir>" + folder + "/fonts</dir><cachedir>" + folder +
                       "/cache</cachedir><match target=\"scan\"><edit name=\"family\" "
                       "mode=\"assign\"><string>" +
                       name + "</string></edit></match></fontconfig>");
}

CHILD_PROCESS(ListsFamilies)
{
    Configure(arguments[0].c_str());
    const HDC dc = GetDC(nullptr);
    std::set<std::string> names;
    EXPECT_EQ(EnumFontFamiliesA(dc, nullptr, TakeName, reinterpret_cast<LPARAM>(&names)), 1);
    for (const std::string& name : names) {
        WCHAR units[LF_FACESIZE];
        char text[LF_FACESIZE * 3];
        MultiByteToWideChar(CP_ACP, 0, name.c_str(), -1, units, LF_FACESIZE);
        WideCharToMultiByte(CP_UTF8, 0, units, -1, text, sizeof text, nullptr, nullptr);
        std::printf("%s\n", text);
        SelectObject(dc, Make(name.c_str(), -16));
        EXPECT_EQ(FaceOf(dc), name);
    }
    std::printf("%zu %s\n", names.size(), testing::Test::HasFailure() ? "failed" : "as told");
    std::fflush(stdout);
    return 0;
}

// The page of such a name is made by the library that the faces come from.
TEST(FontConfiguration, NamesMayBeOfAnyScript)
{
    std::filesystem::path file = "/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf";
    if (!std::filesystem::exists(file))
        GTEST_SKIP() << "DejaVu Sans isn't where Debian has it";
    std::filesystem::create_directory("fonts");
    std::filesystem::create_symlink(file, "fonts/face.ttf");
    const std::string path = (std::filesystem::current_path() / "fonts.conf").string();

    WriteRenaming("Fa\u00E7ade");
    ChildProcess child("ListsFamilies", {path});
    EXPECT_EQ(child.ReadLine(), "Fa\u00E7ade");
    EXPECT_EQ(child.ReadLine(), "1 as told");
    EXPECT_EQ(child.Wait(), 0);

    // Without a character of the code page there is no way to ask for it.
    std::filesystem::remove_all("cache");
    WriteRenaming("\u65E5\u672C\u5B57\u9AD4");
    ChildProcess other("ListsFamilies", {path});
    EXPECT_EQ(other.ReadLine(), "0 as told");
    EXPECT_EQ(other.Wait(), 0);
}

CHILD_PROCESS(ListsWithoutMemory)
{
    const HDC dc = GetDC(nullptr);
    // What has no part in it is made before.
    int count = 0;
    EXPECT_EQ(EnumFontFamiliesA(nullptr, nullptr, Count, 0), 0);
    int result = 0;
    int failures = -1;
    while (result == 0 && failures < 100000) {
        heap.left = ++failures;
        SetLastError(0);
        result = EnumFontFamiliesA(dc, "No Such Face", Count, reinterpret_cast<LPARAM>(&count));
        heap.left = -1;
        EXPECT_EQ(GetLastError(), result ? 0u : ERROR_NOT_ENOUGH_MEMORY) << failures;
    }
    EXPECT_EQ(result, 1);
    EXPECT_GT(failures, 2);
    return EndOfChild();
}

TEST(FontConfiguration, ListingWithoutMemoryFailsAndSucceedsLater)
{
    std::filesystem::create_directory("fonts");
    std::error_code error;
    std::filesystem::create_symlink("/usr/share/fonts/truetype/dejavu", "fonts/dejavu", error);
    WriteConfiguration("<dir>" + std::filesystem::current_path().string() +
                       "/fonts</dir></fontconfig>");
    setenv("FONTCONFIG_FILE", (std::filesystem::current_path() / "fonts.conf").c_str(), 1);
    ExpectAsTold("ListsWithoutMemory");
    unsetenv("FONTCONFIG_FILE");
}

// A font asks for its face, then the face for its facts.
CHILD_PROCESS(MeasuresWithoutMemory)
{
    int failures = -1;
    bool done = false;
    while (!done && failures < 100000) {
        const HDC dc = GetDC(nullptr);
        SelectObject(dc, Make("DejaVu Sans", -16 - failures));
        heap.left = ++failures;
        SetLastError(0);
        int width = 0;
        done = GetCharWidth32W(dc, 'A', 'A', &width);
        heap.left = -1;
        EXPECT_TRUE(done || GetLastError() == ERROR_NOT_ENOUGH_MEMORY) << failures;
        EXPECT_EQ(GetCharWidth32W(dc, 'A', 'A', &width), 1) << failures;
        EXPECT_NEAR(width, (15 + failures) * 0.684, 1.5) << failures;
        ReleaseDC(nullptr, dc);
    }
    EXPECT_TRUE(done);
    return EndOfChild();
}

TEST(FontConfiguration, MeasuringWithoutMemoryFailsAndSucceedsLater)
{
    if (!std::filesystem::exists("/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf"))
        GTEST_SKIP() << "DejaVu Sans isn't where Debian has it";
    ExpectAsTold("MeasuresWithoutMemory");
}

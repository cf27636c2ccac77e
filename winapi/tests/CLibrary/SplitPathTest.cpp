// winapi/tests/CLibrary/SplitPathTest.cpp
#include "../Support/Calls.h"

#include <cstdlib>

namespace
{
// The parts with a bar between them.
std::string Split(const std::string& path)
{
    char drive[_MAX_DRIVE], directory[_MAX_DIR], name[_MAX_FNAME], extension[_MAX_EXT];
    _splitpath(path.c_str(), drive, directory, name, extension);
    return std::string(drive) + "|" + directory + "|" + name + "|" + extension;
}

std::string Of(std::size_t count)
{
    return std::string(count, 'x');
}
} // namespace

TEST(SplitPath, DirectoryNameAndExtension)
{
    EXPECT_EQ("|||", Split(""));
    EXPECT_EQ("||a|", Split("a"));
    EXPECT_EQ("||a|.txt", Split("a.txt"));
    EXPECT_EQ("|/dir/|a.b|.txt", Split("/dir/a.b.txt"));
    EXPECT_EQ("|a\\b/|c|", Split("a\\b/c"));
    EXPECT_EQ("|a/b\\|c|", Split("a/b\\c"));
    EXPECT_EQ("|/|x|", Split("/x"));
    EXPECT_EQ("|dir/||", Split("dir/"));
}

TEST(SplitPath, TheLastPointOfTheNameBeginsTheExtension)
{
    EXPECT_EQ("|||.x", Split(".x"));
    EXPECT_EQ("||.|.", Split(".."));
    EXPECT_EQ("||a|.", Split("a."));
    EXPECT_EQ("|a.b/|c|", Split("a.b/c"));
}

TEST(SplitPath, DrivesAreThePlatforms)
{
    EXPECT_EQ(Side("||c:x|", "c:||x|"), Split("c:x"));
    EXPECT_EQ(Side("|c:\\d\\|e|.f", "c:|\\d\\|e|.f"), Split("c:\\d\\e.f"));
}

TEST(SplitPath, PartsThatAreNotWantedMayBeNull)
{
    char name[_MAX_FNAME];
    _splitpath("/dir/name.txt", nullptr, nullptr, name, nullptr);
    EXPECT_STREQ("name", name);
    _splitpath("/dir/name.txt", nullptr, nullptr, nullptr, nullptr);
    _splitpath((Of(300) + "/name" + "." + Of(300)).c_str(), nullptr, nullptr, name, nullptr);
    EXPECT_STREQ("name", name);
}

TEST(SplitPath, APathWithALongerPartHasNoParts)
{
    EXPECT_EQ("|" + Of(254) + "/|a|.b", Split(Of(254) + "/a.b"));
    EXPECT_EQ("|||", Split(Of(255) + "/a.b"));
    EXPECT_EQ("||" + Of(255) + "|.b", Split(Of(255) + ".b"));
    EXPECT_EQ("|||", Split(Of(256) + ".b"));
    EXPECT_EQ("||a|." + Of(254), Split("a." + Of(254)));
    EXPECT_EQ("|||", Split("a." + Of(255)));
}

// tests/Ostra/File/DoubleBytePathTest.cpp: paths in a code page of double bytes, whose second byte
// may be that of a separator or a point.
//
// Runs where the system's code page is 932, which a run of its own sets up.
#include <Ostra/File/FileSystem.h>

#include <System/OS/OS.h>

#include <gtest/gtest.h>

#include <windows.h>

#include <string>
#include <vector>

#include "Support/Directory.h"
#include "Support/Files.h"

namespace
{
// U+30BD in code page 932: the second byte is that of a backslash.
const std::string SO = "\x83\x5C";

class DoubleBytePath : public testing::Test
{
protected:
    void SetUp() override
    {
        if (GetACP() != 932 || CT_OS::sb_GetIsWindowsNT())
            GTEST_SKIP() << "only on the 8-bit road with code page 932";
    }
};
} // namespace

TEST_F(DoubleBytePath, ASecondByteIsNoSeparator)
{
    const struct
    {
        std::string path;
        std::vector<std::string> parts;
    } cases[] = {
        {SO, {"", "", SO, ""}},
        {"c:\\" + SO + "a", {"c:", "\\", SO + "a", ""}},
        {"c:\\" + SO + "\\" + SO + ".txt", {"c:", "\\" + SO + "\\", SO, ".txt"}},
        // A lead byte that ends the path stands alone.
        {"a\\b\x83", {"", "a\\", "b\x83", ""}},
        {SO + SO + "\\x", {"", SO + SO + "\\", "x", ""}},
    };
    for (const auto& row : cases) {
        SCOPED_TRACE(row.path);
        const CT_CString path(row.path.c_str(), -1, 932);
        CT_CString drive, directory, name, extension;
        CT_FileSystem::sv_SplitPath(&path, &drive, &directory, &name, &extension);
        EXPECT_EQ((std::vector<std::string>{drive.qccz_Get(), directory.qccz_Get(), name.qccz_Get(),
                                            extension.qccz_Get()}),
                  row.parts);
    }
}

TEST_F(DoubleBytePath, ADirectoryThatEndsInASecondByteGetsItsSeparator)
{
    const CT_CString directory(SO.c_str(), -1, 932);
    const CT_CString name("n");
    CT_CString path;
    CT_FileSystem::sv_MakePath(&path, nullptr, &directory, &name, nullptr);
    EXPECT_EQ(std::string(path.qccz_Get()), SO + "\\n");
}

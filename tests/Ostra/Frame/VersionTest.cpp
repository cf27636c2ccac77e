// tests/Ostra/Frame/VersionTest.cpp: the version as headers and library tell it.
#include <Ostra/Frame/Version.h>

#include <gtest/gtest.h>

#if OSTRA_VERSION < 100
#error "the macro takes part in preprocessing"
#endif

TEST(Version, HeadersAndLibraryOfOneBuildAgree)
{
    EXPECT_EQ(ostra_version(), static_cast<unsigned>(OSTRA_VERSION));
    EXPECT_EQ(OSTRA_VERSION_MAJOR * 10000 + OSTRA_VERSION_MINOR * 100 + OSTRA_VERSION_PATCH,
              OSTRA_VERSION);
}

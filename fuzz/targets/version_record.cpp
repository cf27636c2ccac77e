// fuzz/targets/version_record.cpp: bytes as the version record of a file. The checker and the finder
// survive everything; what the checker calls sound the library reads to its end.
//
// Input: a byte that tells what the rest is: a file of some layout, or the record within one.
#include <System/ModuleVersion/ModuleVersion.h>

#include "Support/Folder.h"
#include "Support/Input.h"
#include "Support/Library.h"
#include "Support/VersionFiles.h"
#include "VersionCheck.h"

#ifdef _WIN32
constexpr bool PLATFORM_FINDS = true;
#else
constexpr bool PLATFORM_FINDS = false;
#endif

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    Input input(data, size);
    const unsigned kind = input.Below(4);
    const std::string bytes = input.Rest();
    const VersionVerdict verdict = CheckVersion(bytes);
    REQUIRE(verdict.sound == verdict.rule.empty());
    std::string file = bytes;
    if (kind == 1 || kind == 2)
        file = PortableFile(bytes, kind == 2);
    else if (kind == 3)
        file = SegmentedFile(bytes);
    const std::string record = FindVersionRecord(file);
    // What the library is handed has to be sound. The platform's own services may find a record where
    // the finder finds none.
    if (record.empty() ? PLATFORM_FINDS : !CheckVersion(record).sound)
        return 0;
    const std::string path = PathOf("version.dll");
    WriteBytes(path, file);
    CT_ModuleVersion version;
    version.v_Set(path.c_str());
    REQUIRE(!record.empty() || !version.b_IsValid());
    REQUIRE(version.n_GetBuildNumber() == 0 || version.b_IsValid());
    REQUIRE(TakeCode() == 0);
    return 0;
}

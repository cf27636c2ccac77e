// tests/Programs/VersionLines.cpp: prints what the version records of files say, for version_files_test.py: a line
// for each file, numbers and texts with tabs between them, all but ASCII as \uXXXX.
#include <System/ModuleVersion/ModuleVersion.h>

#include <cstdio>
#include <fstream>
#include <string>

namespace
{
void Print(const CT_String& text)
{
    for (unsigned n = 0; n < text.vn_GetLength(); ++n) {
        const unsigned unit = text.vu_GetAt(n);
        if (unit >= ' ' && unit < 127 && unit != '\\')
            std::printf("%c", static_cast<char>(unit));
        else
            std::printf("\\u%04x", unit);
    }
    std::printf("\t");
}

void Show(const std::string& name)
{
    CT_ModuleVersion version;
    version.v_Set(name.c_str());
    std::printf("%s\t%d\t", name.c_str(), version.b_IsValid());
    unsigned numbers[sizeof(st_FixedFileInfo) / 4];
    *reinterpret_cast<st_FixedFileInfo*>(numbers) = *version.pcso_GetInfo();
    for (const unsigned number : numbers)
        std::printf("%u ", number);
    std::printf("\t");
    for (const CT_UString* text :
         {version.pcco_GetComments(), version.pcco_GetCompanyName(),
          version.pcco_GetFileDescription(), version.pcco_GetFileVersion(),
          version.pcco_GetInternalName(), version.pcco_GetLegalCopyright(),
          version.pcco_GetLegalTrademarks(), version.pcco_GetOriginalFilename(),
          version.pcco_GetPrivateBuild(), version.pcco_GetProductName(),
          version.pcco_GetProductVersion(), version.pcco_GetSpecialBuild()})
        Print(*text);
    for (unsigned n = 1; n <= version.pcco_GetMap()->n_GetCount(); ++n) {
        CT_String* key;
        CT_String* value;
        version.pcco_GetMap()->v_GetAt(&key, &value, n);
        Print(*key);
        Print(*value);
    }
    std::printf("\n");
}
} // namespace

int main(int argc, char** argv)
{
    if (argc != 2)
        return 2;
    std::ifstream names(argv[1]);
    for (std::string name; std::getline(names, name);)
        Show(name);
    return 0;
}

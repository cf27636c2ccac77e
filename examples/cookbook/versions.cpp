// examples/cookbook/versions.cpp: what the version record of a program or library for Windows says.
#include <Ostra/Ostra.h>

#include <cstdio>

static void Show(const char* file)
{
    CT_ModuleVersion version; // a new one for each file: a used one keeps old strings
    version.v_Set(file);
    if (!version.b_IsValid()) {
        std::printf("%s: no version record\n", file);
        return;
    }
    const st_FixedFileInfo& info = *version.pcso_GetInfo();
    const CT_CString product(version.pcco_GetProductName());
    std::printf("%s: %s %u.%u, build %u\n", file, product.qccz_Get(), info.n4_FileVersionMS >> 16,
                info.n4_FileVersionMS & 0xFFFF, version.n_GetBuildNumber());
}

int main(int argc, char** argv)
{
    for (int n = 1; n < argc; ++n) // what comes from strangers goes through vercheck first
        Show(argv[n]);
    Show("./missing.dll");
    return CT_ErrorManager::spco_Get()->b_IsSetError();
}

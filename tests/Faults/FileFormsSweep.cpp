// tests/Faults/FileFormsSweep.cpp: forms of the operations of files, record files, the registry and
// others of the system with an exhausted heap.
#include <Ostra/Ostra.h>

#include "Faults/Forms.h"
#include "Support/Directory.h"
#include "Support/Files.h"
#include "Support/VersionFiles.h"

#include <string>

using namespace forms;

namespace
{
struct Named : Texts
{
    Named()
    {
        std::string bytes_of_file("\xFF\xFE", 2);
        for (const char c : "line\r\nnext")
            bytes_of_file.append({c ? c : '.', '\0'});
        WriteBytes("wide.txt", bytes_of_file);
        const CT_UString name = Name("wide.txt");
        file.vv_Set(&name, 0);
        std_file.vv_Set(&name, 0);
        CT_WinFile& reading = read_file;
        reading.vv_Set(&name, 0);
        reading.vv_Open(CT_File::e_AccessRead, CT_File::e_OpenExisting, CT_File::e_ShareRead, 1, 0);
    }
    const CT_CString short_name{"wide.txt", ALL, 0};
    const CT_CString other_name{"another-name-that-takes-more-room", ALL, 0};
    CT_UString pattern{qcuz_Text(u"*.a-pattern-that-takes-room-of-its-own")};
    CT_WinFile file, other, read_file;
    CT_StdFile std_file, other_std;
    CT_UString line;
    Made<CT_FindFile> find;
    Made<CT_MappedFileInput> mapped;
    Made<CT_WinFile> new_file;
};
} // namespace

TEST(FileFormsSweep, Files)
{
    const Form<Named> forms[] = {
        {"name",
         [](Named& s) {
             s.file.v_SetName(&s.other_name);
         }},
        {"extension",
         [](Named& s) {
             s.file.v_SetExtension(&s.other_name);
         }},
        {"drive",
         [](Named& s) {
             s.file.v_SetDrive(&s.other_name);
         }},
        {"of another",
         [](Named& s) {
             s.other.vv_Set(&s.file);
         }},
        {"of another stream",
         [](Named& s) {
             s.other_std.vv_Set(&s.std_file);
         }},
        {"new file",
         [](Named& s) {
             s.new_file.Make(&s.short_name, 0U);
         }},
        {"search",
         [](Named& s) {
             s.find.Make(&s.pattern, 0U, 0U, 1);
         }},
        {"mapped input",
         [](Named& s) {
             s.mapped.Make(64U, &s.short_name);
         }},
        {"line",
         [](Named& s) {
             s.read_file.n_ReadLineUSequential(&s.line, nullptr);
         }},
    };
    SweepForms(forms);
}

// ---- Others -------------------------------------------------------------------------------

namespace
{
struct Others : Texts
{
    Others()
    {
        WriteBytes("a.dll",
                   PortableFile(SimpleRecord(Layout::WIDE, {{"Comments", TEXT}, {"Other", TEXT}})));
    }
    const CT_CString file{".\\a.dll"};
    const CT_CString path{"\\Software", ALL, 0};
    CT_ModuleVersion version;
    Made<CT_Registry> registry;
    const CT_UString profile{Units(u"a-profile-whose-name-takes-some-room.ini")};
    Made<CT_IniFile> new_profile;
    CT_IniFile other_profile{&file};
};
} // namespace

TEST(FileFormsSweep, RegistryAndVersions)
{
    const Form<Others> forms[] = {
        {"registry",
         [](Others& s) {
             s.registry.Make(HKEY_CURRENT_USER, &s.path);
         }},
        {"version",
         [](Others& s) {
             s.version.v_Set(&s.file);
         }},
        {"profile",
         [](Others& s) {
             s.new_profile.Make(static_cast<const CT_String*>(&s.profile));
         }},
        {"another profile",
         [](Others& s) {
             s.other_profile.v_Set(&s.profile);
         }},
    };
    SweepForms(forms);
}

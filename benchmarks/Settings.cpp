// benchmarks/Settings.cpp: values of the registry, keys of profile files, version records.
//
// A value of the registry is read, and written, one at a time from a key with 100: each side then
// sees what other processes have stored, and others see what it has stored. For QSettings, here a
// file of the INI form, that is a sync in front of each reading and behind each writing; for GKeyFile
// the file is loaded and saved. Nobody waits for the disk.
//
// A key of a profile file of 1,000 keys in ten sections is read as by a program that starts: GKeyFile
// loads the file, and ours asks the system, which does the same.
//
// "version" reads the version record of a library of Wine's, where that is installed, beside mapping
// the file and touching each page of it.
#include <System/IniFile/IniFile.h>
#include <System/ModuleVersion/ModuleVersion.h>
#include <System/Registry/Registry.h>

#include <winapi/Registry/Registry.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#if HAVE_QT
#include <QSettings>
#include <QString>
#endif
#if HAVE_GLIB
#include <glib.h>
#endif

#include "Support/Job.h"

namespace
{
namespace fs = std::filesystem;

typedef std::vector<std::string> Answers;

constexpr unsigned VALUES = 100;
constexpr unsigned KEYS = 1000;
constexpr unsigned SECTIONS = 10;
constexpr const char* MODULE = "/usr/lib/x86_64-linux-gnu/wine/x86_64-windows/user32.dll";

// A folder as long as the program runs, where the registry lies as well.
class Folder
{
public:
    Folder() : name(fs::temp_directory_path() / "ostra-settings-XXXXXX")
    {
        if (!mkdtemp(name.data()))
            std::abort();
        setenv("XDG_DATA_HOME", name.c_str(), 1);
    }
    Folder(const Folder&) = delete;
    Folder& operator=(const Folder&) = delete;
    ~Folder()
    {
        std::error_code ignored;
        fs::remove_all(name, ignored);
    }
    std::string File(const char* file) const { return name + "/" + file; }

private:
    std::string name;
};

std::string NameOf(unsigned number)
{
    return "value" + std::to_string(number);
}

std::string TextOf(unsigned number)
{
    return "the text of value number " + std::to_string(number);
}

// One after the other, in an order that visits all.
unsigned Next(unsigned& at, unsigned of)
{
    at = (at + 37) % of;
    return at;
}

// ---- The registry: each side reads and writes the text of a value --------------------------------

class OstraRegistry
{
public:
    OstraRegistry() : registry(winapi::HKEY_CURRENT_USER)
    {
        const CT_UString path(u"\\Software\\Benchmark");
        registry.v_CreateKey(&path);
        registry.v_SetKey(&path);
        for (unsigned n = 0; n < VALUES; ++n) {
            names.push_back(std::make_unique<CT_UString>(NameOf(n).c_str(), -1, 0));
            texts.push_back(std::make_unique<CT_UString>(TextOf(n).c_str(), -1, 0));
        }
    }
    void Write(unsigned n) { registry.v_SetValue(names[n].get(), texts[n].get()); }
    size_t Read(unsigned n)
    {
        registry.v_GetValue(names[n].get(), &text);
        return text.vn_GetLength();
    }
    std::string Text() const
    {
        const CT_CString bytes(&text);
        return bytes.qccz_Get();
    }

private:
    CT_Registry registry;
    CT_UString text;
    std::vector<std::unique_ptr<CT_UString>> names;
    std::vector<std::unique_ptr<CT_UString>> texts;
};

#if HAVE_QT
class QtSettings
{
public:
    explicit QtSettings(const std::string& file)
        : settings(QString::fromStdString(file), QSettings::IniFormat)
    {
        for (unsigned n = 0; n < VALUES; ++n) {
            names.push_back(QString::fromStdString(NameOf(n)));
            texts.push_back(QString::fromStdString(TextOf(n)));
        }
    }
    void Write(unsigned n)
    {
        settings.setValue(names[n], texts[n]);
        settings.sync();
    }
    size_t Read(unsigned n)
    {
        settings.sync();
        text = settings.value(names[n]).toString();
        return static_cast<size_t>(text.size());
    }
    std::string Text() const { return text.toStdString(); }

private:
    QSettings settings;
    QString text;
    std::vector<QString> names;
    std::vector<QString> texts;
};
#endif

#if HAVE_GLIB
class KeyFile
{
public:
    explicit KeyFile(const std::string& path) : file(path)
    {
        fs::create_directories(fs::path(path).parent_path());
    }
    void Write(unsigned n)
    {
        GKeyFile* const keys = Load();
        g_key_file_set_string(keys, "Benchmark", NameOf(n).c_str(), TextOf(n).c_str());
        g_key_file_save_to_file(keys, file.c_str(), nullptr);
        g_key_file_free(keys);
    }
    size_t Read(unsigned n)
    {
        GKeyFile* const keys = Load();
        char* const value = g_key_file_get_string(keys, "Benchmark", NameOf(n).c_str(), nullptr);
        text = value ? value : "";
        g_free(value);
        g_key_file_free(keys);
        return text.size();
    }
    std::string Text() const { return text; }

private:
    GKeyFile* Load() const
    {
        GKeyFile* const keys = g_key_file_new();
        g_key_file_load_from_file(keys, file.c_str(), G_KEY_FILE_NONE, nullptr);
        return keys;
    }

    std::string file;
    std::string text;
};
#endif

template <class Store>
Answers AllValues(Store& store)
{
    Answers answers;
    for (unsigned n = 0; n < VALUES; ++n) {
        store.Write(n);
        store.Read(n);
        answers.push_back(store.Text());
    }
    return answers;
}

template <class Store>
void AddStore(Measure<Answers>& read, Measure<Answers>& write, const char* side, Store& store)
{
    read.Side(
        side, [&store, at = 0U]() mutable { return store.Read(Next(at, VALUES)); },
        [&store] { return AllValues(store); });
    write.Side(
        side,
        [&store, at = 0U]() mutable {
            store.Write(Next(at, VALUES));
            return at;
        },
        [&store] { return AllValues(store); });
}

// ---- Profile files -------------------------------------------------------------------------------

std::string KeyName(unsigned number)
{
    return "key" + std::to_string(number);
}

std::string SectionName(unsigned number)
{
    return "section" + std::to_string(number % SECTIONS);
}

void WriteProfile(const std::string& file)
{
    std::ofstream out(file, std::ios::binary);
    for (unsigned section = 0; section < SECTIONS; ++section) {
        out << '[' << SectionName(section) << "]\r\n";
        for (unsigned n = section; n < KEYS; n += SECTIONS)
            out << KeyName(n) << '=' << TextOf(n) << "\r\n";
    }
}

class OstraProfile
{
public:
    explicit OstraProfile(const std::string& file) : name(file.c_str(), -1, 0), profile(&name) {}
    std::string operator()(unsigned n)
    {
        profile.v_ReadString(SectionName(n).c_str(), KeyName(n).c_str(), &text, "");
        return text.qccz_Get();
    }

private:
    const CT_CString name;
    CT_IniFile profile;
    CT_CString text{"", CT_String::ALL, 0};
};

#if HAVE_GLIB
struct GlibProfile
{
    std::string file;

    std::string operator()(unsigned n) const
    {
        GKeyFile* const keys = g_key_file_new();
        g_key_file_load_from_file(keys, file.c_str(), G_KEY_FILE_NONE, nullptr);
        char* const value =
            g_key_file_get_string(keys, SectionName(n).c_str(), KeyName(n).c_str(), nullptr);
        const std::string text = value ? value : "";
        g_free(value);
        g_key_file_free(keys);
        return text;
    }
};
#endif

template <class Read>
void AddProfile(Measure<Answers>& measure, const char* side, Read& read)
{
    measure.Side(
        side, [&read, at = 0U]() mutable { return read(Next(at, KEYS)).size(); },
        [&read] {
            Answers answers;
            for (unsigned n = 0; n < KEYS; n += 7)
                answers.push_back(read(n));
            return answers;
        });
}

// ---- Version records -----------------------------------------------------------------------------

unsigned MapAndTouch()
{
    struct stat facts = {};
    const int file = open(MODULE, O_RDONLY | O_CLOEXEC);
    if (file < 0 || fstat(file, &facts) != 0)
        return 0;
    const auto size = static_cast<size_t>(facts.st_size);
    void* const map = mmap(nullptr, size, PROT_READ, MAP_PRIVATE, file, 0);
    unsigned sum = 0;
    for (size_t at = 0; map != MAP_FAILED && at < size; at += 4096)
        sum += static_cast<const unsigned char*>(map)[at];
    if (map != MAP_FAILED)
        munmap(map, size);
    close(file);
    return sum;
}

void AddVersion()
{
    if (!fs::exists(MODULE))
        return;
    Measure<Answers> version("version", "user32.dll", {Amount::ITEMS, 1});
    const auto valid = [] {
        CT_ModuleVersion record;
        record.v_Set(MODULE);
        return record.b_IsValid();
    };
    version.Side("ostra", valid, [valid] { return Answers{std::to_string(valid())}; });
    version.Side("map", MapAndTouch, [] { return Answers{std::to_string(MapAndTouch() != 0)}; });
}
} // namespace

int main(int argc, char** argv)
{
    const Folder folder;
    Measure<Answers> read("read", "values", {Amount::ITEMS, 1});
    Measure<Answers> write("write", "values", {Amount::ITEMS, 1});
    Measure<Answers> profile("profile", "1000", {Amount::ITEMS, 1});
    WriteProfile(folder.File("profile.ini"));
    OstraRegistry registry;
    OstraProfile ini(folder.File("profile.ini"));
    AddStore(read, write, "ostra", registry);
    AddProfile(profile, "ostra", ini);
#if HAVE_QT
    QtSettings qt(folder.File("qt.ini"));
    AddStore(read, write, "qt", qt);
#endif
#if HAVE_GLIB
    KeyFile glib(folder.File("glib/keys"));
    GlibProfile keys{folder.File("profile.ini")};
    AddStore(read, write, "glib", glib);
    AddProfile(profile, "glib", keys);
#endif
    AddVersion();
    return Job::Run(argc, argv, OSTRA_ABSENT_PEERS);
}

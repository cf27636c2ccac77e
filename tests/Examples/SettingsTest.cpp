// tests/Examples/SettingsTest.cpp: the commands of the settings program.
#include "../../examples/settings/Commands.h"
#include "../../examples/settings/RegistryText.h"

#include <System/OS/OS.h>

#include <gtest/gtest.h>

#include <windows.h>

#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "../../winapi/tests/Support/RegistryPlace.h"
#include "Result.h"
#include "Support/Directory.h"

namespace
{
namespace fs = std::filesystem;

Result Settings(const std::vector<std::string>& arguments)
{
    return ResultOf([&](std::ostream& output, std::ostream& errors) {
        return settings::Run(arguments, output, errors);
    });
}

Result Done(const std::string& output = "")
{
    return {0, output, ""};
}

Result Failed(const std::string& line)
{
    return {1, "", "settings: " + line + "\n"};
}

std::string Utf16(const std::u16string& text)
{
    return {reinterpret_cast<const char*>(text.data()), text.size() * 2};
}

constexpr char USAGE[] = "usage: settings get|set|list|delete|export|import|version ARGUMENT...\n"
                         "Try settings --help.\n";
} // namespace

// Values can be stored where there are wide calls.
class SettingsRegistry : public RegistryPlace
{
protected:
    void SetUp() override
    {
        if (!CT_OS::sb_GetIsWindowsNT())
            GTEST_SKIP() << "a system without wide calls";
    }
    std::string Place(const std::string& rest = "") const { return "registry:" + name + rest; }
};

TEST_F(SettingsRegistry, ValuesComeBackAsTheyWereGiven)
{
    EXPECT_EQ(Settings({"set", Place("\\a\\b#text"), "some words"}), Done());
    EXPECT_EQ(Settings({"set", Place("#number"), "0x2A", "--type", "number"}), Done());
    EXPECT_EQ(Settings({"set", "--type", "data", Place("#data"), "01 fF00"}), Done());
    EXPECT_EQ(Settings({"set", Place("#"), "default"}), Done());
    EXPECT_EQ(Settings({"get", Place("\\A\\b#TEXT")}), Done("some words\n"));
    EXPECT_EQ(Settings({"get", "registry:HKCU\\" + name + "\\#number"}), Done("42\n"));
    EXPECT_EQ(Settings({"get", Place("#data")}), Done("01 ff 00\n"));
    EXPECT_EQ(Settings({"get", Place("#")}), Done("default\n"));
    EXPECT_EQ(Settings({"list", Place()}),
              Done("a\\\n(default)\ttext\tdefault\ndata\tdata\t01 ff 00\nnumber\tnumber\t42\n"));
    EXPECT_EQ(Settings({"list", "registry:hkey_current_user\\" + name + "\\a"}), Done("b\\\n"));
}

TEST_F(SettingsRegistry, WhatIsMissingOrOfAnotherTypeIsToldInALine)
{
    EXPECT_EQ(Settings({"set", Place("#text"), "words"}), Done());
    EXPECT_EQ(Settings({"get", Place("#none")}), Failed(Place("#none") + ": there is none"));
    EXPECT_EQ(Settings({"get", Place("\\none#text")}),
              Failed(Place("\\none#text") + ": there is none"));
    EXPECT_EQ(Settings({"list", Place("\\none")}), Failed(Place("\\none") + ": there is none"));
    EXPECT_EQ(Settings({"delete", Place("#none")}), Failed(Place("#none") + ": there is none"));
    EXPECT_EQ(Settings({"export", Place("\\none"), "x.reg"}),
              Failed(Place("\\none") + ": there is none"));
    EXPECT_EQ(Settings({"get", Place("#text"), "--type", "number"}),
              Failed(Place("#text") + ": is text, not number"));
    EXPECT_EQ(Settings({"set", Place("#n"), "4294967296", "--type", "number"}),
              Failed("4294967296: no number of 32 bits"));
    EXPECT_EQ(Settings({"set", Place("#n"), "123", "--type", "data"}),
              Failed("123: no bytes in hexadecimal digits"));
    EXPECT_EQ(Settings({"get", Place()}), Failed(Place() + ": names no value"));
    EXPECT_EQ(Settings({"list", Place("#text")}),
              Failed(Place("#text") + ": a value, of which there is nothing to list"));
    EXPECT_EQ(Settings({"list", Place()}), Done("text\ttext\twords\n"));
}

TEST_F(SettingsRegistry, DeletesValuesAndKeysWithAllBelow)
{
    Settings({"set", Place("\\a\\b\\c#text"), "words"});
    Settings({"set", Place("\\a#text"), "words"});
    EXPECT_EQ(Settings({"delete", Place("\\a#text")}), Done());
    EXPECT_EQ(Settings({"list", Place("\\a")}), Done("b\\\n"));
    EXPECT_EQ(Settings({"delete", Place("\\a")}), Done());
    EXPECT_EQ(Settings({"list", Place()}), Done());
    EXPECT_EQ(Settings({"delete", Place()}), Done());
    EXPECT_EQ(Settings({"list", Place()}).status, 1);
    EXPECT_EQ(Settings({"delete", "registry:HKLM"}), Failed("registry:HKLM: a root key stays"));
}

TEST_F(SettingsRegistry, ExportsWhatItImports)
{
    const std::u16string root = u"HKEY_CURRENT_USER\\" + std::u16string(name.begin(), name.end());
    const std::u16string text =
        u"\xFEFFWindows Registry Editor Version 5.00\r\n\r\n[" + root +
        u"]\r\n"
        u"@=\"\\\"quoted\\\" \\\\ Gr\x00FC\x00DF"
        u"e \xD83D\xDE00\"\r\n"
        u"\"a name that is rather long, so that the first line of hex data has less room for "
        u"it\"=hex:00,\\\r\n  01,02,03,04,05\r\n"
        u"\"bin\"=hex:00,01,02,03,04,05,06,07,08,09,0a,0b,0c,0d,0e,0f,10,11,12,13,14,15,16,\\\r\n"
        u"  17,18,19,1a,1b,1c,1d,1e,1f,20,21,22,23,24,25,26,27,28,29,2a,2b,2c,2d,2e,2f,\\\r\n"
        u"  30,31\r\n"
        u"\"dw\"=dword:0000beef\r\n"
        u"\"empty\"=hex:\r\n"
        u"\"expanded\"=hex(2):25,00,41,00,25,00,00,00\r\n"
        u"\"list\"=hex(7):61,00,00,00,62,00,00,00,00,00\r\n"
        u"\"none\"=hex(0):01\r\n"
        u"\"q\\\"uote\\\\x\"=hex(b):01,02,03,04,05,06,07,08\r\n"
        u"\r\n[" +
        root + u"\\sub]\r\n\r\n[" + root + u"\\sub\\deep]\r\n\"\x0416\"=\"\"\r\n\r\n";
    WriteBytes("in.reg", Utf16(text));
    EXPECT_EQ(Settings({"import", "in.reg"}), Done("10 values\n"));
    EXPECT_EQ(Settings({"export", Place(), "out.reg"}), Done());
    EXPECT_EQ(ReadBytes("out.reg"), Utf16(text));
    EXPECT_EQ(Settings({"get", Place("#list")}), Done("a | b\n"));
    EXPECT_EQ(Settings({"get", Place("#expanded")}), Done("%A%\n"));
#ifdef _WIN32
    // The platform's own tool writes the same.
    EXPECT_EQ(std::system(("reg export \"HKCU\\" + name + "\" tool.reg /y >out 2>&1").c_str()), 0);
    EXPECT_EQ(ReadBytes("tool.reg"), Utf16(text));
#endif
}

TEST_F(SettingsRegistry, ImportRemovesWhatTheTextSays)
{
    const std::string key = "HKEY_CURRENT_USER\\" + name;
    Settings({"set", Place("#keep"), "kept"});
    Settings({"set", Place("#gone"), "x"});
    Settings({"set", Place("\\gone\\below#x"), "x"});
    WriteBytes("in.reg", "Windows Registry Editor Version 5.00\n\n; a remark \\\n[" + key +
                             "]\n\"gone\"=-\n\"never\"=-\n[-" + key + "\\gone]\n[-" + key +
                             "\\never]\n[" + key + "\\new]\n@=dword:10\n");
    EXPECT_EQ(Settings({"import", "in.reg"}), Done("3 values\n"));
    EXPECT_EQ(Settings({"list", Place()}), Done("new\\\nkeep\ttext\tkept\n"));
    EXPECT_EQ(Settings({"get", Place("\\new#")}), Done("16\n"));
}

TEST_F(SettingsRegistry, ImportReadsTheOlderFormAndUtf8)
{
    const std::string key = "HKEY_CURRENT_USER\\" + name;
    WriteBytes("in.reg", "REGEDIT4\r\n[" + key +
                             "]\r\n\"e\"=hex(2):61,62,\\\r\n  00\r\n\"\xC3\xA9\"=\"\xC3\xA9\"\r\n");
    EXPECT_EQ(Settings({"import", "in.reg"}), Done("2 values\n"));
    EXPECT_EQ(Settings({"list", Place()}), Done("e\texpanded\tab\n\xC3\xA9\ttext\t\xC3\xA9\n"));
}

TEST_F(SettingsRegistry, AnImportThatIsRefusedChangesNothing)
{
    const std::string head = "Windows Registry Editor Version 5.00\n\n";
    const std::string key = "[HKEY_CURRENT_USER\\" + name + "]\n";
    const struct
    {
        std::string text;
        std::string error;
    } rows[] = {
        {head + key + "\"a\"=\"x\"\nnonsense\n", "line 5: neither a key nor a value"},
        {head + key + "\"a\"=\"x\n", "line 4: a text that doesn't end"},
        {head + key + "\"a\"=\"x\"y\n", "line 4: more behind a text"},
        {head + key + "\"a\"\n", "line 4: a value without ="},
        {head + key + "\"a\"=dword:xyz\n", "line 4: no number"},
        {head + key + "\"a\"=hex:1\n", "line 4: no bytes"},
        {head + key + "\"a\"=hex(x):01\n", "line 4: no type"},
        {head + key + "\"a\"=hex\n", "line 4: data of no known form"},
        {head + key + "\"a\"=what\n", "line 4: data of no known form"},
        {head + "\"a\"=\"x\"\n", "line 3: a value without a key"},
        {head + "[HKEY_CURRENT_USER\n", "line 3: a key that doesn't end"},
        {"text", "not the text of a registry; a profile needs a place to go to"},
        {"", "not the text of a registry; a profile needs a place to go to"},
    };
    for (const auto& row : rows) {
        WriteBytes("in.reg", row.text);
        EXPECT_EQ(Settings({"import", "in.reg"}), Failed("in.reg: " + row.error));
    }
    WriteBytes("in.reg", head + "[HKEY_NONSENSE\\x]\n");
    EXPECT_EQ(Settings({"import", "in.reg"}), Failed("in.reg: [HKEY_NONSENSE\\x]: no root key"));
    EXPECT_EQ(Settings({"list", Place()}).status, 1);
}

TEST(SettingsText, NamesWithEndsOfLinesComeBack)
{
    settings::Value value;
    value.name = u"two\r\nlines \\n \"quoted\"";
    value.type = 4;
    value.data = std::string("\x2A\0\0\0", 4);
    settings::Key key;
    key.path = u"HKEY_CURRENT_USER\\Software";
    key.values.push_back(value);
    const auto keys = settings::ReadRegistryText(settings::WriteRegistryText({key}));
    ASSERT_EQ(keys.size(), 1U);
    ASSERT_EQ(keys[0].values.size(), 1U);
    EXPECT_EQ(keys[0].values[0].name, value.name);
    EXPECT_EQ(keys[0].values[0].data, value.data);
}

TEST(SettingsText, AKeyWhoseNameHasTheEndOfALineIsRefused)
{
    settings::Key key;
    key.path = u"HKEY_CURRENT_USER\\Software\\two\nlines";
    try {
        settings::WriteRegistryText({key});
        FAIL();
    } catch (const std::runtime_error& failure) {
        EXPECT_EQ(failure.what(),
                  std::string("HKEY_CURRENT_USER\\\\Software\\\\two\\nlines: a key's line has no "
                              "room for the end of a line in its name"));
    }
}

TEST(SettingsText, AHeadIsAWholeLine)
{
    for (const std::string text : {"\\\nREGEDIT4\n", "REG\\\nEDIT4\n"}) {
        EXPECT_FALSE(settings::IsRegistryText(text));
        EXPECT_THROW(settings::ReadRegistryText(text), std::runtime_error);
    }
}

TEST(SettingsText, DamagedTextNeverHurtsTheReader)
{
    const std::string whole =
        "Windows Registry Editor Version 5.00\r\n\r\n[HKEY_CURRENT_USER\\A]\r\n"
        "\"a\\\"b\"=\"c\\\\d\"\r\n@=hex(2):61,00,\\\r\n  00,00\r\n\"n\"=dword:1\r\n";
    for (std::size_t at = 0; at < whole.size(); ++at)
        for (const char c : {'\0', '\\', '"', '[', '=', '\n', '\xFF', ','}) {
            std::string damaged = whole;
            damaged[at] = c;
            for (const std::string& bytes : {damaged, whole.substr(0, at) + c}) {
                try {
                    settings::ReadRegistryText(bytes);
                } catch (const std::exception&) {
                    SUCCEED();
                }
            }
        }
}

TEST(SettingsProfile, ValuesComeBackAsTheyWereGiven)
{
    EXPECT_EQ(Settings({"set", "a.ini:window#title", "some words"}), Done());
    EXPECT_EQ(Settings({"set", "a.ini:window#size", "42"}), Done());
    EXPECT_EQ(Settings({"set", "a.ini:other#text", " \"blanks\" "}), Done());
    EXPECT_EQ(Settings({"set", "a.ini:other#long", std::string(3000, 'x')}), Done());
    EXPECT_EQ(Settings({"get", "a.ini:Window#TITLE"}), Done("some words\n"));
    EXPECT_EQ(Settings({"get", "a.ini:window#size", "--type", "number"}), Done("42\n"));
    EXPECT_EQ(Settings({"get", "a.ini:other#text"}), Done(" \"blanks\" \n"));
    EXPECT_EQ(Settings({"get", "a.ini:other#long"}), Done(std::string(3000, 'x') + "\n"));
    EXPECT_EQ(Settings({"list", "a.ini"}), Done("window\nother\n"));
    EXPECT_EQ(Settings({"list", "a.ini:window"}), Done("title\tsome words\nsize\t42\n"));
}

TEST(SettingsProfile, WhatIsMissingOrOfAnotherTypeIsToldInALine)
{
    EXPECT_EQ(Settings({"get", "none.ini:a#b"}), Failed("none.ini: no such file"));
    WriteBytes("a.ini", "[a]\r\nb=c\r\n");
    EXPECT_EQ(Settings({"get", "a.ini:a#x"}), Failed("a.ini:a#x: there is none"));
    EXPECT_EQ(Settings({"get", "a.ini:x#b"}), Failed("a.ini:x#b: there is none"));
    EXPECT_EQ(Settings({"get", "a.ini:a#b", "--type", "number"}),
              Failed("a.ini:a#b: is text, not a number"));
    EXPECT_EQ(Settings({"delete", "a.ini:a#x"}), Failed("a.ini:a#x: there is none"));
    EXPECT_EQ(Settings({"delete", "a.ini:x"}), Failed("a.ini:x: there is none"));
    EXPECT_EQ(Settings({"delete", "a.ini"}), Failed("a.ini: names no section"));
    EXPECT_EQ(Settings({"export", "a.ini:x", "b.ini"}), Failed("a.ini:x: there is none"));
    EXPECT_EQ(Settings({"set", "a.ini:a#b", "two\nlines"}),
              Failed("a.ini:a#b: a profile file has one line for a value"));
    EXPECT_EQ(Settings({"set", "a.ini:a#b=c", "x"}), Failed("b=c: no name of a key"));
    EXPECT_EQ(Settings({"get", "a.ini#b"}), Failed("a.ini#b: a key needs a section and a name"));
    EXPECT_EQ(Settings({"get", ":a#b"}), Failed(":a#b: no place"));
    EXPECT_EQ(ReadBytes("a.ini"), "[a]\r\nb=c\r\n");
}

TEST(SettingsProfile, DeletesKeysAndSections)
{
    WriteBytes("a.ini", "[a]\r\nb=c\r\nd=e\r\n[f]\r\ng=h\r\n[empty]\r\n");
    EXPECT_EQ(Settings({"delete", "a.ini:a#b"}), Done());
    EXPECT_EQ(Settings({"delete", "a.ini:f"}), Done());
    EXPECT_EQ(Settings({"delete", "a.ini:empty"}), Done());
    EXPECT_EQ(ReadBytes("a.ini"), "[a]\r\nd=e\r\n");
}

TEST(SettingsProfile, ExportsWhatItImports)
{
    const std::string text = "[a]\r\nb=c\r\nd=\" e \"\r\n\r\n[f]\r\ng=h=i\r\n";
    WriteBytes("in.ini", text);
    EXPECT_EQ(Settings({"import", "in.ini", "a.ini"}), Done("3 values\n"));
    EXPECT_EQ(Settings({"export", "a.ini", "out.ini"}), Done());
    EXPECT_EQ(ReadBytes("out.ini"), text);
    EXPECT_EQ(Settings({"export", "a.ini:f", "f.ini"}), Done());
    EXPECT_EQ(ReadBytes("f.ini"), "[f]\r\ng=h=i\r\n");
    EXPECT_EQ(Settings({"import", "none.ini", "b.ini"}).status, 1);
    EXPECT_EQ(Settings({"import", "in.ini", "registry:A"}),
              Failed("in.ini: registry:A: no profile file"));
}

TEST(SettingsProfile, AnImportThatIsRefusedChangesNothing)
{
    WriteBytes("bad.ini", "[a]\nb=c\nnonsense\n");
    WriteBytes("a.ini", "[a]\r\nb=old\r\n");
    for (const std::string name : {"a.ini", "none.ini"})
        EXPECT_EQ(Settings({"import", "bad.ini", name}),
                  Failed("bad.ini: line 3: neither a section nor a value"));
    EXPECT_EQ(ReadBytes("a.ini"), "[a]\r\nb=old\r\n");
    EXPECT_FALSE(fs::exists("none.ini"));
}

TEST(SettingsExport, AFileThatIsReplacedKeepsItsRights)
{
    WriteBytes("a.ini", "[a]\r\nb=c\r\n");
    WriteBytes("out.ini", "old");
    fs::permissions("out.ini", fs::perms(0600));
    const fs::perms rights = fs::status("out.ini").permissions();
    EXPECT_EQ(Settings({"export", "a.ini", "out.ini"}), Done());
    EXPECT_EQ(ReadBytes("out.ini"), "[a]\r\nb=c\r\n");
    EXPECT_EQ(fs::status("out.ini").permissions(), rights);
    EXPECT_FALSE(fs::exists("out.ini.new"));
}

TEST(SettingsExport, AnEmptyProfileMakesAnEmptyFile)
{
    WriteBytes("a.ini", "");
    WriteBytes("out.ini", "old");
    EXPECT_EQ(Settings({"export", "a.ini", "out.ini"}), Done());
    EXPECT_EQ(ReadBytes("out.ini"), "");
}

TEST(SettingsExport, ALinkGoesOnPointing)
{
    std::error_code error;
    WriteBytes("a.ini", "[a]\r\nb=c\r\n");
    fs::create_symlink("target.ini", "link.ini", error);
    if (error)
        GTEST_SKIP() << "no symbolic links here";
    for (const std::string text : {"nothing stands there yet", "a file does"}) {
        EXPECT_EQ(Settings({"export", "a.ini", "link.ini"}), Done()) << text;
        EXPECT_TRUE(fs::is_symlink("link.ini")) << text;
        EXPECT_EQ(ReadBytes("target.ini"), "[a]\r\nb=c\r\n") << text;
    }
    // The one beside the place isn't the user's.
    WriteBytes("other", "stays");
    fs::create_symlink("other", "out.ini.new");
    EXPECT_EQ(Settings({"export", "a.ini", "out.ini"}),
              Failed("out.ini: cannot be written: out.ini.new: this is no plain file"));
    EXPECT_EQ(ReadBytes("other"), "stays");
    EXPECT_FALSE(fs::exists("out.ini"));
}

TEST(SettingsExport, WhatCannotBeWrittenIsToldInALine)
{
    WriteBytes("a.ini", "[a]\r\nb=c\r\n");
    fs::create_directory("folder");
    EXPECT_EQ(Settings({"export", "a.ini", "folder"}),
              Failed("folder: cannot be written: folder: this is no plain file"));
    EXPECT_EQ(Settings({"export", "a.ini", "\xFF"}),
              Failed("\xFF: cannot be written: the name is no UTF-8"));
    const Result result = Settings({"export", "a.ini", "none/out.ini"});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.errors.find("settings: none/out.ini: cannot be written: "), 0U);
    EXPECT_TRUE(fs::is_empty("folder"));
}

TEST(SettingsVersion, RefusesWhatHasNoSoundRecord)
{
    WriteBytes("text", "no program");
    WriteBytes("empty.exe", "MZ");
    const Result result = Settings({"version", "text", "missing", "empty.exe"});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(result.errors.find(
                  "settings: text: no version record\nsettings: missing: cannot be read: "),
              0U)
        << result.errors;
    EXPECT_NE(result.errors.find("\nsettings: empty.exe: no version record\n"), std::string::npos);
}

TEST(Settings, AMessageHasNoControls)
{
    WriteBytes("in.reg", "REGEDIT4\n[HKEY_\x1B]0;\\title\x07]\n");
    EXPECT_EQ(Settings({"import", "in.reg"}),
              Failed("in.reg: [HKEY_\\x1b]0;\\title\\x07]: no root key"));
    EXPECT_EQ(Settings({"get", "a\nb.ini:a#b"}), Failed("a\\nb.ini: no such file"));
}

TEST(Settings, AWrongUseIsTold)
{
    EXPECT_EQ(Settings({}), (Result{2, "", USAGE}));
    EXPECT_EQ(Settings({"nonsense"}),
              (Result{2, "", std::string("settings: unknown command nonsense\n") + USAGE}));
    EXPECT_EQ(Settings({"get"}),
              (Result{2, "", std::string("settings: get: wrong number of arguments\n") + USAGE}));
    EXPECT_EQ(Settings({"version"}).status, 2);
    EXPECT_EQ(Settings({"--nonsense"}),
              (Result{2, "", std::string("settings: unknown option --nonsense\n") + USAGE}));
    EXPECT_EQ(Settings({"set", "--type"}).status, 2);
    EXPECT_EQ(Settings({"set", "--type", "word", "a:b#c", "d"}).status, 2);
    EXPECT_EQ(Settings({"--help"}).status, 0);
    EXPECT_EQ(Settings({"--version"}).output.find("settings (Ostra) "), 0U);
    EXPECT_EQ(Settings({"get", "--", "--help:a#b"}), Failed("--help: no such file"));
}

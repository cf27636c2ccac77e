// tests/System/Registry/RegistryToolTest.cpp: what the class writes is what the platform's own tool
// reads, and the other way round.
#ifdef _WIN32
#include <System/Registry/Registry.h>

#include <Ostra/String/CString.h>
#include <System/OS/OS.h>

#include <gtest/gtest.h>

#include <windows.h>

#include <cstdlib>
#include <string>

#include "../../../winapi/tests/Support/RegistryPlace.h"
#include "Support/Directory.h"
#include "Support/Failure.h"

namespace
{
class RegistryTool : public RegistryPlace
{
protected:
    RegistryTool() : path(("\\" + name).c_str(), -1, 0), registry(HKEY_CURRENT_USER)
    {
        registry.v_CreateKey(&path);
        registry.v_SetKey(&path);
        EXPECT_EQ(TakeFailure(), Failure());
    }

    // Runs reg.exe; what it prints stands in the file "out". Result: its status.
    int Run(const std::string& arguments) const
    {
        return std::system(("reg " + arguments + " >out 2>&1").c_str());
    }
    std::string Key() const { return "\"HKCU\\" + name + "\""; }
    // All that the tool exports of the key, without marks of its lines' ends.
    std::u16string Exported() const
    {
        EXPECT_EQ(Run("export " + Key() + " exported.reg /y"), 0) << ReadBytes("out");
        const std::string bytes = ReadBytes("exported.reg");
        std::u16string text;
        for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) {
            const auto unit = static_cast<char16_t>(static_cast<unsigned char>(bytes[i]) |
                                                    static_cast<unsigned char>(bytes[i + 1]) << 8);
            if (unit != '\r')
                text += unit;
        }
        return text;
    }
    bool Exports(const std::u16string& line) const
    {
        return Exported().find(u"\n" + line + u"\n") != std::u16string::npos;
    }

    const CT_UString path;
    CT_Registry registry;
};
} // namespace

TEST_F(RegistryTool, ReadsWhatTheClassWrites)
{
    if (!CT_OS::sb_GetIsWindowsNT())
        return;
    const CT_UString text(u"text \x0416"), data(u"data"), number(u"number"), none;
    const CT_UString words(u"Gr\x00FC\x00DF"
                           u"e \x0416 \xD83D\xDE00 \"quoted\" \\");
    const CT_Buffer bytes("\x01\xFF\x00", 3, 32);
    registry.v_SetValue(&text, &words);
    registry.v_SetValue(&data, &bytes);
    registry.v_SetValue(&number, DWORD(0xABCD1234));
    registry.v_SetValue(&none, &data);
    EXPECT_EQ(TakeFailure(), Failure());
    EXPECT_TRUE(Exports(u"\"text \x0416\"=\"Gr\x00FC\x00DF"
                        u"e \x0416 \xD83D\xDE00 \\\"quoted\\\" \\\\\""));
    EXPECT_TRUE(Exports(u"\"data\"=hex:01,ff,00"));
    EXPECT_TRUE(Exports(u"\"number\"=dword:abcd1234"));
    EXPECT_TRUE(Exports(u"@=\"data\""));
    EXPECT_EQ(Run("query " + Key() + " /v number"), 0);
    EXPECT_NE(ReadBytes("out").find("REG_DWORD    0xabcd1234"), std::string::npos)
        << ReadBytes("out");
    registry.v_DeleteValue(&number);
    EXPECT_NE(Run("query " + Key() + " /v number"), 0);
}

TEST_F(RegistryTool, WritesWhatTheClassReads)
{
    EXPECT_EQ(Run("add " + Key() + " /v text /t REG_SZ /d \"some words\" /f"), 0)
        << ReadBytes("out");
    EXPECT_EQ(Run("add " + Key() + " /v data /t REG_BINARY /d 01ff00 /f"), 0) << ReadBytes("out");
    EXPECT_EQ(Run("add " + Key() + "\\below\\deeper /f"), 0) << ReadBytes("out");
    const CT_UString text(u"text"), data(u"data"), below(u"below");
    CT_UString wide;
    CT_CString narrow("", -1, 0);
    CT_Buffer bytes;
    const bool is_wide = CT_OS::sb_GetIsWindowsNT();
    registry.v_GetValue(&text, is_wide ? static_cast<CT_String*>(&wide) : &narrow);
    registry.v_GetValue(&data, &bytes);
    EXPECT_EQ(TakeFailure(), Failure());
    if (is_wide)
        EXPECT_EQ(Wide(wide.qcuz_Get()), u"some words");
    else
        EXPECT_STREQ(narrow.qccz_Get(), "some words");
    EXPECT_EQ(std::string(static_cast<const char*>(bytes.qcv_Get()), bytes.n_GetUsedSize()),
              std::string("\x01\xFF\x00", 3));
    registry.v_DeleteKey(&below);
    EXPECT_EQ(TakeFailure(), Failure());
    EXPECT_NE(Run("query " + Key() + "\\below"), 0);
}

TEST_F(RegistryTool, ImportsWhatTheClassThenReads)
{
    if (!CT_OS::sb_GetIsWindowsNT())
        return;
    const std::u16string key(name.begin(), name.end());
    const std::u16string file =
        u"\xFEFFWindows Registry Editor Version 5.00\r\n\r\n[HKEY_CURRENT_USER\\" + key +
        u"]\r\n\"\x0416\"=\"\xD83D\xDE00\"\r\n\r\n";
    WriteBytes("in.reg", {reinterpret_cast<const char*>(file.data()), file.size() * 2});
    EXPECT_EQ(Run("import in.reg"), 0) << ReadBytes("out");
    const CT_UString value(u"\x0436");
    CT_UString text;
    registry.v_GetValue(&value, &text);
    EXPECT_EQ(TakeFailure(), Failure());
    EXPECT_EQ(Wide(text.qcuz_Get()), u"\xD83D\xDE00");
}
#endif

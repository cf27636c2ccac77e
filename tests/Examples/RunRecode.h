// tests/Examples/RunRecode.h: the recode program, run in the process of the test.
#pragma once

#include <Ostra/Frame/ErrorManager.h>
#include <Converter.h>
#include <Recode.h>

#include <gtest/gtest.h>

#include <optional>
#include <sstream>
#include <string>
#include <vector>

struct Recoded
{
    int status;
    std::string output;
    std::string errors;
};

inline Recoded RunRecode(const std::vector<std::string>& arguments, const std::string& input = "")
{
    std::istringstream in(input);
    std::ostringstream output;
    std::ostringstream errors;
    const int status = recode::Run(arguments, {output, errors, nullptr, &in});
    return {status, output.str(), errors.str()};
}

// From the standard input to the standard output; the test fails unless all goes well.
inline std::string Recode(const std::string& from, const std::string& to, const std::string& input)
{
    const Recoded recoded = RunRecode({"--from", from, "--to", to, "-", "-"}, input);
    EXPECT_EQ(recoded.status, 0) << from << " to " << to;
    EXPECT_EQ(recoded.errors, "") << from << " to " << to;
    return recoded.output;
}

// The same without files, whose making is what takes time under an emulator; nothing for a text
// that is ill-formed or isn't held.
inline std::optional<std::string> Converted(const std::string& from, const std::string& to,
                                            const std::string& bytes)
{
    recode::Encoding source;
    recode::Encoding aim;
    EXPECT_TRUE(source.Parse(from) && aim.Parse(to)) << from << " to " << to;
    recode::Converter converter(source, aim, recode::Options());
    std::string made;
    if (converter.Take(bytes, true, &made) && !converter.HasLost())
        return made;
    if (CT_ErrorManager::spco_Get()->b_IsSetError())
        CT_ErrorManager::spco_Get()->v_ClearError();
    return std::nullopt;
}

struct Script
{
    const char* name;
    const char* text; // UTF-8
    unsigned page;    // which holds it; 0 for none
};

// Texts in all the scripts that the code pages hold, and in two that none holds.
inline const std::vector<Script>& Scripts()
{
    static const std::vector<Script> scripts = {
        {"Latin", "Stra\u00DFe, \u00E9t\u00E9, ma\u00F1ana\r\nplain\n", 1252},
        {"Central Europe",
         "\u017Dlu\u0165ou\u010Dk\u00FD k\u016F\u0148\nza\u017C\u00F3\u0142\u0107\n", 1250},
        {"Turkish", "\u0130stanbul \u0131\u015F\u0131k a\u011Fa\u00E7\n", 1254},
        {"Greek",
         "\u039A\u03B1\u03BB\u03B7\u03BC\u03AD\u03C1\u03B1 \u03BA\u03CC\u03C3\u03BC\u03B5\n", 1253},
        {"Cyrillic",
         "\u0421\u044A\u0435\u0448\u044C \u0435\u0449\u0451\r\n\u044D\u0442\u0438\u0445\n", 1251},
        {"Hebrew", "\u05E9\u05DC\u05D5\u05DD \u05E2\u05D5\u05DC\u05DD\n", 1255},
        {"Arabic", "\u0645\u0631\u062D\u0628\u0627 \u0628\u0627\u0644\u0639\u0627\u0644\u0645\n",
         1256},
        {"Thai", "\u0E2A\u0E27\u0E31\u0E2A\u0E14\u0E35\u0E0A\u0E32\u0E27\u0E42\u0E25\u0E01\n", 874},
        {"Japanese", "\u3053\u3093\u306B\u3061\u306F\u4E16\u754C \u30BD\u8868\u80FD\n", 932},
        {"Simplified Chinese", "\u4F60\u597D\uFF0C\u4E16\u754C\u6C49\u5B57\n", 936},
        {"Traditional Chinese", "\u4F60\u597D\u4E16\u754C\u6F22\u5B57\u529F\u8A31\n", 950},
        {"Korean", "\uC548\uB155\uD558\uC138\uC694 \uC138\uACC4\n", 949},
        {"Devanagari",
         "\u0928\u092E\u0938\u094D\u0924\u0947 \u0926\u0941\u0928\u093F\u092F\u093E\n", 0},
        {"Emoji", "\U0001F600 \U0001F468\u200D\U0001F469 \U0001D11E\n", 0},
    };
    return scripts;
}

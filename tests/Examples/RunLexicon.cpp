// tests/Examples/RunLexicon.cpp
#include "RunLexicon.h"

#include <Ostra/Frame/ErrorManager.h>
#include <Commands.h>
#include <Common/Utf8.h>

#include <windows.h>

#include "Support/Directory.h"

#include <algorithm>
#include <sstream>

Answer RunLexicon(const Arguments& arguments)
{
    std::ostringstream output;
    std::ostringstream errors;
    const int status = lexicon::Run(arguments, {output, errors, nullptr});
    return {status, output.str(), errors.str()};
}

std::string Lines(const Pairs& pairs)
{
    std::string lines;
    for (const auto& [source, target] : pairs)
        lines += source + "\t" + target + "\n";
    return lines;
}

Answer BuildLexicon(const std::string& text)
{
    WriteBytes("words.tsv", text);
    return RunLexicon({"build", "words.tsv", "words.rec"});
}

void MakeLexicon(const std::string& text)
{
    const Answer answer = BuildLexicon(text);
    EXPECT_EQ(answer.status, 0);
    EXPECT_EQ(answer.errors, "");
}

std::string SystemError(unsigned code, const std::string& names)
{
    CT_ErrorManager* errors = CT_ErrorManager::spco_Get();
    SetLastError(code);
    errors->v_SetSystemError();
    std::string text = common::ToUtf8(errors->qcuz_GetErrorMessage());
    errors->v_ClearError();
    if (text.ends_with(' '))
        text.pop_back();
    return text + " [" + names + "]";
}

std::vector<std::string> Names()
{
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator("."))
        names.push_back(entry.path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
}

bool IsRefusal(const Answer& answer)
{
    return answer.status == 1 && answer.output.empty() && answer.errors.starts_with("lexicon: ") &&
           std::count(answer.errors.begin(), answer.errors.end(), '\n') == 1 &&
           answer.errors.ends_with('\n');
}

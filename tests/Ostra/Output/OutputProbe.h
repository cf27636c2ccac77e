// tests/Ostra/Output/OutputProbe.h: outputs fed with few words.
#pragma once

#include <Ostra/Buffer/Buffer.h>
#include <Ostra/Output/Output.h>

#include <string>
#include <vector>

#include "Support/Files.h"

inline void Append(CT_Output& output, const std::string& text)
{
    output.vv_Append(text.data(), unsigned(text.size()));
}

inline std::string Text(const CT_Buffer* buffer)
{
    return std::string(static_cast<const char*>(buffer->qcv_Get()), buffer->n_GetUsedSize());
}

typedef std::vector<std::string> Trail;

const std::string BUFFER_PLACE = "Ostra/Buffer/Buffer";
const std::string FILE_PLACE = "Ostra/File/File";
const std::string WINFILE_PLACE = "Ostra/File/WinFile";
const std::string MEMORY_OUTPUT_PLACE = "Ostra/Output/MemoryOutput";
const std::string FILE_OUTPUT_PLACE = "Ostra/Output/FileOutput";
const std::string HUGE_OUTPUT_PLACE = "Ostra/Output/HugeOutput";
const SystemFailure NO_FAILURE;

// A report of the system's last error without names, whose text is the system's.
inline Failure Bare(unsigned code, const Trail& trail)
{
    return {code, "", trail};
}

inline Failure TakeBare()
{
    Failure failure = TakeFailure();
    if (failure.code == 0xFFFFFFFF)
        return failure;
    EXPECT_EQ(failure.text.find("(" + std::to_string(failure.code) + "): "), 0u) << failure.text;
    EXPECT_NE(failure.text.back(), ']') << failure.text;
    failure.text = "";
    return failure;
}

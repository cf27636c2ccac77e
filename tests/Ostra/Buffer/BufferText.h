// tests/Ostra/Buffer/BufferText.h: buffers as text for the tests.
#pragma once

#include <Ostra/Buffer/Buffer.h>

#include <gtest/gtest.h>

#include <cstring>
#include <string>

inline std::string Bytes(const CT_Buffer& buffer)
{
    const unsigned used = buffer.n_GetUsedSize();
    return used ? std::string(static_cast<const char*>(buffer.qcv_Get()), used) : std::string();
}

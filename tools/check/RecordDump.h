// tools/check/RecordDump.h: the bytes of a record file as annotated hex text.
#pragma once

#include <cstddef>
#include <string>

// Every byte once, in order, as pairs of hex digits; behind "#" the offset and what lies there. The
// form is that of the hex files of the tests. Any bytes will do: what can't be told apart is shown
// as it is.
std::string DumpRecordFile(const unsigned char* bytes, std::size_t length);
std::string DumpRecordFile(const std::string& bytes);

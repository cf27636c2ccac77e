// tests/Support/TestStrings.cpp: what TestStrings.rc is on Windows.
#include <windows.h>

#include "Support/TestStrings.h"

// clang-format off
static const StringEntry table[] = {
    {TEST_STRING_PLAIN, u"Plain text"},
    {TEST_STRING_NUMBER, u"Number %u of %d"},
    {TEST_STRING_TEXT, u"Text %s, %S"},
    {TEST_STRING_ACCENT, u"Caf\u00E9 %u"},
    {TEST_STRING_KANA, u"a\u30BD\u30BDb"},
    {TEST_STRING_LONG, u"" TEST_LONG_TEXT},
};
// clang-format on

__attribute__((constructor(200))) static void Register()
{
    RegisterStringTable(table, sizeof(table) / sizeof(table[0]));
}

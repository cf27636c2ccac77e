// tests/Support/TestStrings.cpp: what TestStrings.rc is on Windows.
#include <windows.h>

#include "Support/TestStrings.h"

static const StringEntry table[] = {
    {TEST_STRING_PLAIN, u"Plain text"},
    {TEST_STRING_NUMBER, u"Number %u of %d"},
    {TEST_STRING_TEXT, u"Text %s, %S"},
};

__attribute__((constructor(200))) static void Register()
{
    RegisterStringTable(table, sizeof(table) / sizeof(table[0]));
}

// Made by tools/tables/make_messages.py from resources/Messages.txt: 12 texts. Not edited by hand.
// clang-format off
#include <windows.h>

namespace
{
const StringEntry table[] = {
    {60000, u"Error Stack"},
    {60001, u"%s"},
    {60003, u"File \"%s\": %s returned error %u"},
    {60005, u"Database Error: %u"},
    {60006, u"Out of memory"},
    {60008, u"System error %u in \"%s\""},
    {60012, u"Semantic error: %s"},
    {60015, u"Matrix \"%s\": %s returned error %u"},
    {60016, u"Windows API call %s failed"},
    {60017, u"%s not supported"},
    {60021, u"Limits violated"},
    {65535, u"ASSERT (%s)"},
};

__attribute__((constructor(200))) void Register()
{
    RegisterStringTable(table, sizeof(table) / sizeof(table[0]));
}
} // namespace

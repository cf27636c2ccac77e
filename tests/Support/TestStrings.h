// tests/Support/TestStrings.h: the string table of the test programs, as a resource and natively.
#define TEST_STRING_PLAIN 100
#define TEST_STRING_NUMBER 101
#define TEST_STRING_TEXT 102

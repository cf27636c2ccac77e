// tests/Support/TestStrings.h: the string table of the test programs, as a resource and natively.
#define TEST_STRING_PLAIN 100
#define TEST_STRING_NUMBER 101
#define TEST_STRING_TEXT 102
#define TEST_STRING_ACCENT 103
#define TEST_STRING_KANA 104
#define TEST_STRING_LONG 105

// More than the rooms that texts are loaded into: 2,100 characters.
#define TEST_TEN "0123456789"
#define TEST_HUNDRED                                                                               \
    TEST_TEN TEST_TEN TEST_TEN TEST_TEN TEST_TEN TEST_TEN TEST_TEN TEST_TEN TEST_TEN TEST_TEN
#define TEST_THOUSAND                                                                              \
    TEST_HUNDRED TEST_HUNDRED TEST_HUNDRED TEST_HUNDRED TEST_HUNDRED TEST_HUNDRED TEST_HUNDRED     \
        TEST_HUNDRED TEST_HUNDRED TEST_HUNDRED
#define TEST_LONG_TEXT TEST_THOUSAND TEST_THOUSAND TEST_HUNDRED

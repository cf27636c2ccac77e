// tests/Ostra/Frame/AllocationTest.cpp: the classes whose objects come from operators of their own.
#include <cstddef>
#include <concepts>

#include <gtest/gtest.h>

// All classes that are to have the operators, whether the library has them yet or not.
// clang-format off
class CT_BiCWordListIterator; class CT_BiLingualCWordList; class CT_BiLingualUWordList;
class CT_BiUWordListIterator; class CT_Buffer; class CT_CString; class CT_CompList;
class CT_DDEClient; class CT_DDEServer; class CT_FileInput; class CT_FileOutput;
class CT_FindFile; class CT_FontManager; class CT_HugeOutput; class CT_IniFile;
class CT_LogicalFont; class CT_MappedFileInput; class CT_MemoryInput; class CT_MemoryOutput;
class CT_ModuleVersion; class CT_Pattern; class CT_RecordManager; class CT_Registry;
class CT_StdFile; class CT_StringNumberMap; class CT_StringOrdinalMap; class CT_StringOutput;
class CT_StringScanner; class CT_StringStringMap; class CT_Timer; class CT_UString;
class CT_VoidArray; class CT_VoidHashTable; class CT_VoidList; class CT_VoidSortedArray;
class CT_WinFile;
// clang-format on

#include <Ostra/Ostra.h>

namespace
{
template <class T>
concept Exists = requires
{
    sizeof(T);
};

// Operators that are the class's own, or inherited, and that give null instead of throwing.
template <class T>
concept HasOperators = requires(void* object)
{
    {
        T::operator new(std::size_t(1))
    }
    noexcept->std::same_as<void*>;
    T::operator delete(object);
};

struct Count
{
    unsigned listed = 0;
    unsigned existing = 0;
    unsigned with_operators = 0;
};

template <class... T>
Count CountAll()
{
    Count count;
    const auto take = [&](bool exists, bool has_operators) {
        ++count.listed;
        count.existing += exists;
        count.with_operators += has_operators;
    };
    (take(Exists<T>, HasOperators<T>), ...);
    return count;
}
} // namespace

TEST(Allocation, EveryListedClassThatExistsHasOperatorsOfItsOwn)
{
    const Count count =
        CountAll<CT_BiCWordListIterator, CT_BiLingualCWordList, CT_BiLingualUWordList,
                 CT_BiUWordListIterator, CT_Buffer, CT_CString, CT_CompList, CT_DDEClient,
                 CT_DDEServer, CT_FileInput, CT_FileOutput, CT_FindFile, CT_FontManager,
                 CT_HugeOutput, CT_IniFile, CT_LogicalFont, CT_MappedFileInput, CT_MemoryInput,
                 CT_MemoryOutput, CT_ModuleVersion, CT_Pattern, CT_RecordManager, CT_Registry,
                 CT_StdFile, CT_StringNumberMap, CT_StringOrdinalMap, CT_StringOutput,
                 CT_StringScanner, CT_StringStringMap, CT_Timer, CT_UString, CT_VoidArray,
                 CT_VoidHashTable, CT_VoidList, CT_VoidSortedArray, CT_WinFile>();
    EXPECT_EQ(count.listed, 36U);
    EXPECT_EQ(count.existing, 36U);
    EXPECT_EQ(count.with_operators, count.existing);
}

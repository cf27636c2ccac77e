// tests/Ostra/Frame/TypeTest.cpp
#define OSTRA_RAW_COPIES
#include <Ostra/Frame/Type.h>
#include <Ostra/String/CString.h>
#include <Ostra/String/UString.h>

#include <cstring>
#include <memory>
#include <new>

#include <gtest/gtest.h>

namespace
{
char object[64];
char elsewhere[64];

CT_Type NewRecord()
{
    return CT_Type(const_cast<char*>("Record"), object, sizeof(object));
}

std::unique_ptr<CT_Type> MakeRecord()
{
    return std::make_unique<CT_Type>(const_cast<char*>("Record"), object, 64U);
}

// Records that stand for other classes; their own collections are closed.
struct Others
{
    Others() { second.v_Enter(); }
    CT_Type first = NewRecord();
    CT_Type second = NewRecord();
};

const CT_Type* StringType()
{
    return CT_String::spcco_GetType();
}
const CT_Type* CStringType()
{
    return CT_CString::spcco_GetType();
}
const CT_Type* UStringType()
{
    return CT_UString::spcco_GetType();
}
} // namespace

// ---- A record of the test's own -------------------------------------------------------------

TEST(Type, RecordHoldsNameAndObject)
{
    CT_Type type = NewRecord();
    EXPECT_STREQ(type.qccz_GetName(), "Record");
    EXPECT_EQ(type.pcv_GetObject(), object);
    EXPECT_EQ(type.n_GetTypes(), 0U);
    EXPECT_EQ(type.pv_CastTo(object, &type), nullptr);
    type.v_Enter();
}

TEST(Type, AddressesOfTheSpecimenAreInConstructionUntilItIsEntered)
{
    CT_Type type = NewRecord();
    EXPECT_TRUE(CT_Type::sb_InConstruct(object));
    EXPECT_TRUE(CT_Type::sb_InConstruct(object + 63));
    EXPECT_FALSE(CT_Type::sb_InConstruct(object + 64));
    EXPECT_FALSE(CT_Type::sb_InConstruct(elsewhere));
    type.v_Enter();
    EXPECT_FALSE(CT_Type::sb_InConstruct(object));
}

TEST(Type, EnteredAddressesBecomeOffsets)
{
    Others others;
    CT_Type* first = &others.first;
    CT_Type* second = &others.second;
    CT_Type type = NewRecord();
    CT_Type::sv_Enter(object + 8, first);
    CT_Type::sv_Enter(object, second);
    CT_Type::sv_Enter(object, &type);
    type.v_Enter();
    EXPECT_EQ(type.n_GetTypes(), 3U);
    EXPECT_EQ(type.pv_CastTo(elsewhere, first), elsewhere + 8);
    EXPECT_EQ(type.pv_CastTo(elsewhere, second), elsewhere);
    EXPECT_EQ(type.pv_CastTo(elsewhere, &type), elsewhere);
}

// The copies are never destructed: they would free the table of their source.
TEST(Type, ACopySharesTheTableOfItsSource)
{
    Others others;
    CT_Type type = NewRecord();
    CT_Type::sv_Enter(object + 8, &others.first);
    CT_Type::sv_Enter(object, &type);
    type.v_Enter();
    alignas(CT_Type) unsigned char places[2][sizeof(CT_Type)];
    const CT_Type* made = new (places[0]) CT_Type(type);
    CT_Type* assigned = new (places[1]) CT_Type(*made);
    *assigned = type;
    for (const CT_Type* copy : {made, static_cast<const CT_Type*>(assigned)}) {
        EXPECT_STREQ(copy->qccz_GetName(), "Record");
        EXPECT_EQ(copy->pcv_GetObject(), object);
        EXPECT_EQ(copy->n_GetTypes(), 2U);
        EXPECT_EQ(copy->pv_CastTo(elsewhere, &others.first), elsewhere + 8);
    }
}

TEST(Type, CastToAnUnlistedAmbiguousOrNullTypeIsNull)
{
    Others others;
    CT_Type* first = &others.first;
    CT_Type type = NewRecord();
    CT_Type::sv_Enter(object, first);
    CT_Type::sv_Enter(object + 8, first);
    type.v_Enter();
    EXPECT_EQ(type.n_GetTypes(), 2U);
    EXPECT_EQ(type.pv_CastTo(elsewhere, first), nullptr);
    EXPECT_EQ(type.pv_CastTo(elsewhere, &others.second), nullptr);
    EXPECT_EQ(type.pv_CastTo(elsewhere, nullptr), nullptr);
}

TEST(Type, CollectingAreaIsEmptyBetweenSpecimens)
{
    CT_Type type = NewRecord();
    CT_Type::sv_Enter(object, &type);
    type.v_Enter();
    CT_Type next = NewRecord();
    next.v_Enter();
    EXPECT_EQ(next.n_GetTypes(), 0U);
}

// Nobody looks at a record that is gone: its memory may hold anything by then, here the record as
// it was.
TEST(Type, ARecordDeletedBeforeItWasEnteredLeavesNoPointerBehind)
{
    alignas(CT_Type) char place[sizeof(CT_Type)];
    char bytes[sizeof(CT_Type)];
    CT_Type* type = new (place) CT_Type(const_cast<char*>("Record"), object, sizeof(object));
    CT_Type::sv_Enter(object, type);
    std::memcpy(bytes, place, sizeof(place));
    type->~CT_Type();
    std::memcpy(place, bytes, sizeof(place));
    EXPECT_FALSE(CT_Type::sb_InConstruct(object));
    // What was entered for it isn't another record's.
    CT_Type other = NewRecord();
    other.v_Enter();
    EXPECT_EQ(other.n_GetTypes(), 0U);
}

TEST(Type, ARecordDeletedWithItsSpecimenUnderDestructionLeavesNoPointerBehind)
{
    alignas(CT_Type) char place[sizeof(CT_Type)];
    char bytes[sizeof(CT_Type)];
    CT_Type* type = new (place) CT_Type(const_cast<char*>("Record"), object, sizeof(object));
    CT_Type::sv_Enter(object, type);
    CT_Type::sv_Enter(object + 4, type);
    type->v_Enter();
    CT_Type::sv_ToDestruct(type);
    EXPECT_TRUE(CT_Type::sb_InDestruct(object));
    std::memcpy(bytes, place, sizeof(place));
    type->~CT_Type();
    std::memcpy(place, bytes, sizeof(place));
    EXPECT_FALSE(CT_Type::sb_InDestruct(object));
}

TEST(Type, RecordsMayBeDeletedInAnyOrder)
{
    auto first = MakeRecord();
    auto second = MakeRecord();
    auto third = MakeRecord();
    third->v_Enter();
    second.reset();
    first.reset();
    third.reset();
    CT_Type last = NewRecord();
    EXPECT_TRUE(CT_Type::sb_InConstruct(object));
    last.v_Enter();
}

TEST(Type, DestructionCountsTheLevelsDown)
{
    Others others;
    CT_Type type = NewRecord();
    for (unsigned n = 0; n < 3; ++n)
        CT_Type::sv_Enter(object, &others.first);
    type.v_Enter();
    EXPECT_FALSE(CT_Type::sb_InDestruct(object));
    EXPECT_EQ(type.n_GetTypes(), 3U);
    CT_Type::sv_ToDestruct(&type);
    EXPECT_TRUE(CT_Type::sb_InDestruct(object));
    EXPECT_EQ(type.n_GetTypes(), 2U);
    EXPECT_FALSE(CT_Type::sb_InDestruct(elsewhere));
    EXPECT_TRUE(CT_Type::sb_InDestruct(object + 63));
    EXPECT_EQ(type.n_GetTypes(), 0U);
    EXPECT_FALSE(CT_Type::sb_InDestruct(object));
    EXPECT_EQ(type.n_GetTypes(), 0U);
}

// ---- The strings ----------------------------------------------------------------------------

TEST(Type, StringClassesHaveTheirRecords)
{
    EXPECT_STREQ(StringType()->qccz_GetName(), "CT_String");
    EXPECT_STREQ(CStringType()->qccz_GetName(), "CT_CString");
    EXPECT_STREQ(UStringType()->qccz_GetName(), "CT_UString");
    EXPECT_EQ(StringType()->n_GetTypes(), 1U);
    EXPECT_EQ(CStringType()->n_GetTypes(), 1U);
    EXPECT_EQ(UStringType()->n_GetTypes(), 2U);
    for (const CT_Type* type : {StringType(), CStringType(), UStringType()}) {
        SCOPED_TRACE(type->qccz_GetName());
        ASSERT_NE(type->pcv_GetObject(), nullptr);
        EXPECT_EQ(type->pv_CastTo(object, type), object);
        EXPECT_FALSE(CT_Type::sb_InConstruct(type->pcv_GetObject()));
        EXPECT_FALSE(CT_Type::sb_InDestruct(type->pcv_GetObject()));
    }
}

TEST(Type, IsAAsksForTheExactClass)
{
    CT_CString narrow;
    CT_UString wide;
    EXPECT_EQ(narrow.vpv_IsA(CStringType()), &narrow);
    EXPECT_EQ(narrow.vpv_IsA(StringType()), nullptr);
    EXPECT_EQ(narrow.vpv_IsA(UStringType()), nullptr);
    EXPECT_EQ(narrow.vpv_IsA(nullptr), nullptr);
    EXPECT_EQ(wide.vpv_IsA(UStringType()), &wide);
    EXPECT_EQ(wide.vpv_IsA(StringType()), nullptr);
    EXPECT_EQ(wide.vpv_IsA(CStringType()), nullptr);
    EXPECT_EQ(narrow.vpcco_GetType(), CStringType());
    EXPECT_EQ(wide.vpcco_GetType(), UStringType());
}

TEST(Type, OnlyTheWideStringIsAKindOfString)
{
    CT_CString narrow;
    CT_UString wide;
    EXPECT_EQ(wide.vpv_IsKindOf(StringType()), &wide);
    EXPECT_EQ(wide.vpv_IsKindOf(UStringType()), &wide);
    EXPECT_EQ(wide.vpv_IsKindOf(CStringType()), nullptr);
    EXPECT_EQ(narrow.vpv_IsKindOf(CStringType()), &narrow);
    EXPECT_EQ(narrow.vpv_IsKindOf(StringType()), nullptr);
    EXPECT_EQ(narrow.vpv_IsKindOf(nullptr), nullptr);
}

TEST(Type, SpecimenConstructorEntersNothingAfterStartUp)
{
    const CT_CString narrow(const_cast<CT_Type*>(CStringType()));
    const CT_UString wide(const_cast<CT_Type*>(UStringType()));
    EXPECT_EQ(CStringType()->n_GetTypes(), 1U);
    EXPECT_EQ(UStringType()->n_GetTypes(), 2U);
    CT_Type type = NewRecord();
    type.v_Enter();
    EXPECT_EQ(type.n_GetTypes(), 0U);
}

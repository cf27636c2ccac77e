// winapi/tests/native/Fonts/FaceFactsTest.cpp: files read directly tell what FreeType tells of them.
#include "Fonts/FaceHost.h"
#include "Fonts/SfntFacts.h"
#include "Fonts/Type1Facts.h"

#include "Support/Directory.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <random>
#include <string>
#include <vector>

using namespace winapi;

namespace
{
struct Place
{
    std::string file;
    int index;
};

void TakePlace(void* place, const FaceNames& names)
{
    static_cast<std::vector<Place>*>(place)->push_back({names.file, names.index});
}

std::vector<Place> AllPlaces()
{
    std::vector<Place> places;
    fontTable.list(&places, TakePlace);
    return places;
}

void ExpectSame(const FaceFacts& own, const FaceFacts& other)
{
    EXPECT_EQ(own.unitsPerEm, other.unitsPerEm);
    EXPECT_EQ(own.winAscent, other.winAscent);
    EXPECT_EQ(own.winDescent, other.winDescent);
    EXPECT_EQ(own.lineGap, other.lineGap);
    EXPECT_EQ(own.ascender, other.ascender);
    EXPECT_EQ(own.descender, other.descender);
    EXPECT_EQ(own.averageWidth, other.averageWidth);
    EXPECT_EQ(own.maximumWidth, other.maximumWidth);
    EXPECT_TRUE(std::equal(std::begin(own.unicodeRanges), std::end(own.unicodeRanges),
                           other.unicodeRanges));
    EXPECT_TRUE(std::equal(std::begin(own.codePages), std::end(own.codePages), other.codePages));
    EXPECT_EQ(own.fixed, other.fixed);
    EXPECT_EQ(own.serif, other.serif);
}

typedef bool (*Reader)(const char* file, int index, FaceFacts* facts);

const std::string SFNT("\0\1\0\0", 4);
const std::string TYPE1 = "%!PS-AdobeFont";

// A file that begins so, as small as can be had; empty without any.
std::string SmallFace(const std::string& start, Reader reader)
{
    std::string least;
    for (const Place& place : AllPlaces()) {
        FaceFacts facts;
        const std::string bytes = ReadBytes(place.file);
        if (bytes.starts_with(start) && (least.empty() || bytes.size() < least.size()) &&
            reader(place.file.c_str(), 0, &facts))
            least = bytes;
    }
    return least;
}

// Whether both read the file; they agree on it then.
bool IsReadAlike(const std::string& bytes, Reader reader)
{
    WriteBytes("face.ttf", bytes);
    FaceFacts own;
    FaceFacts other;
    const bool isRead = reader("face.ttf", 0, &own);
    // Under another name each time: a file that is open stays so.
    static unsigned number;
    const std::string name = "face" + std::to_string(++number) + ".ttf";
    WriteBytes(name, bytes);
    if (!isRead || !fontTable.read(name.c_str(), 0, &other))
        return false;
    ExpectSame(own, other);
    return true;
}
} // namespace

TEST(FaceFacts, AreFreeTypesForEachFaceOfTheMachine)
{
    const std::vector<Place> places = AllPlaces();
    if (places.empty())
        GTEST_SKIP() << "there are no faces";
    unsigned direct = 0;
    for (const Place& place : places) {
        SCOPED_TRACE(place.file + " " + std::to_string(place.index));
        FaceFacts own;
        FaceFacts other;
        if (!ReadSfntFacts(place.file.c_str(), place.index, &own) &&
            !ReadType1Facts(place.file.c_str(), place.index, &own))
            continue;
        ++direct;
        ASSERT_TRUE(fontTable.read(place.file.c_str(), place.index, &other));
        ExpectSame(own, other);
    }
    // Hardly a face is left to FreeType.
    EXPECT_GE(20 * direct, 19 * places.size()) << direct << " of " << places.size();
}

TEST(FaceFacts, WhatIsNoPlainFaceIsLeftToFreeType)
{
    FaceFacts facts;
    for (const Reader reader : {ReadSfntFacts, ReadType1Facts}) {
        EXPECT_FALSE(reader("missing", 0, &facts));
        EXPECT_FALSE(reader(".", 0, &facts));
        EXPECT_FALSE(reader("/dev/zero", 0, &facts));
        for (const std::string& bytes :
             {std::string(), std::string("ttcf"), std::string("OTTO"), TYPE1,
              TYPE1 + std::string(20, ' ') + "currentfile eexec",
              "\x80\1\x0E" + std::string(3, 0) + TYPE1 + "\x80\2\xFF\xFF\xFF\xFF",
              std::string("wOFFwOFFwOFFwOFFwOFF")}) {
            WriteBytes("face", bytes);
            EXPECT_FALSE(reader("face", 0, &facts)) << bytes;
        }
    }
    WriteBytes("collection", std::string("ttcf\0\2\0\0\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF", 16));
    for (const int index : {0, 1, 0xFFFF, 0x10000, -1})
        EXPECT_FALSE(ReadSfntFacts("collection", index, &facts)) << index;
    const std::string face = SmallFace(SFNT, ReadSfntFacts);
    if (face.empty())
        GTEST_SKIP() << "there are no faces";
    WriteBytes("face.ttf", face);
    EXPECT_TRUE(ReadSfntFacts("face.ttf", 0, &facts));
    EXPECT_FALSE(ReadSfntFacts("face.ttf", 1, &facts));
    EXPECT_FALSE(ReadSfntFacts("face.ttf", 0x10000, &facts));
}

TEST(FaceFacts, DamagedFacesAreReadAlikeOrNot)
{
    const std::string face = SmallFace(SFNT, ReadSfntFacts);
    if (face.empty())
        GTEST_SKIP() << "there are no faces";
    EXPECT_TRUE(IsReadAlike(face, ReadSfntFacts));
    unsigned alike = 0;
    for (unsigned cut = 1; cut < 40; ++cut)
        alike += IsReadAlike(face.substr(0, face.size() * cut / 40), ReadSfntFacts);
    std::mt19937 random(9);
    const std::size_t head = 12 + 16 * static_cast<unsigned char>(face[5]);
    for (unsigned n = 0; n < 600; ++n) {
        std::string bytes = face;
        // Now the directory, now any place.
        for (unsigned flips = 1 + random() % 4; flips; --flips)
            bytes[random() % (n % 2 ? head : bytes.size())] ^=
                static_cast<char>(1 + random() % 255);
        alike += IsReadAlike(bytes, ReadSfntFacts);
    }
    EXPECT_GT(alike, 100u);
}

// The clear part may hold any text; a byte of the encrypted one changes all behind it.
TEST(FaceFacts, DamagedType1FacesAreReadAlikeOrNot)
{
    const std::string face = SmallFace(TYPE1, ReadType1Facts);
    if (face.empty())
        GTEST_SKIP() << "there is no face of Type 1";
    EXPECT_TRUE(IsReadAlike(face, ReadType1Facts));
    std::mt19937 random(10);
    const std::size_t head = face.find("eexec");
    unsigned alike = 0;
    for (unsigned n = 0; n < 300; ++n) {
        std::string bytes = face;
        const std::size_t place = random() % (n % 4 ? head : bytes.size());
        if (n % 2)
            bytes[place] = static_cast<char>(' ' + random() % 95);
        else if (n % 4)
            bytes.erase(place, 1 + random() % 9);
        else
            bytes.resize(place);
        alike += IsReadAlike(bytes, ReadType1Facts);
    }
    EXPECT_GT(alike, 50u);
}

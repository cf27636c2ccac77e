// tests/Ostra/File/StdFileModelTest.cpp: random work on a file of the stream library, beside a
// plain text.
#include <Ostra/File/StdFile.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>

#include "StdFileProbe.h"
#include "Support/Directory.h"

namespace
{
// What a file does that is open for reading and writing, or for one of them.
struct Model
{
    std::string text;
    bool reads = false;
    bool writes = false;
    bool appends = false;
    std::size_t offset = 0;
    bool at_end = false; // a read has met the end
    CT_File::et_FileAccess access = CT_File::e_FileAccessNone;

    void Open(CT_File::et_Open open, CT_File::et_Access wanted)
    {
        appends = open == CT_File::e_OpenAppend;
        reads = wanted != CT_File::e_AccessWrite || open == CT_File::e_OpenCreate;
        writes = wanted != CT_File::e_AccessRead || open == CT_File::e_OpenCreate;
        if (open == CT_File::e_OpenCreate ? wanted != CT_File::e_AccessRead
                                          : wanted == CT_File::e_AccessWrite && !appends)
            text.clear();
        access = CT_File::e_FileAccessNone;
        Seek(0);
    }
    void Seek(std::size_t to)
    {
        offset = to;
        at_end = false;
    }
    // A change of the direction seeks.
    void Turn(CT_File::et_FileAccess to)
    {
        if (access != to)
            at_end = false;
        access = to;
    }
    std::string Read(std::size_t size)
    {
        if (!size)
            return "";
        Turn(CT_File::e_FileAccessRead);
        const std::string bytes = at_end || offset > text.size() ? "" : text.substr(offset, size);
        at_end = bytes.size() < size;
        offset += bytes.size();
        return bytes;
    }
    void Write(const std::string& bytes)
    {
        Turn(CT_File::e_FileAccessWrite);
        if (bytes.empty())
            return;
        if (appends)
            offset = text.size();
        text.resize(std::max(text.size(), offset + bytes.size()), '\0');
        text.replace(offset, bytes.size(), bytes);
        offset += bytes.size();
    }
};

class Player
{
public:
    explicit Player(unsigned seed) : random(seed), file("file", 1024 * (1 + seed % 5)) {}

    void Play()
    {
        WriteBytes("file", model.text);
        for (int round = 0; round < 4; ++round) {
            Open();
            for (int step = 0; step < 40 && !testing::Test::HasFailure(); ++step)
                Step();
            file.vv_Close();
            ASSERT_EQ(TakeFailure(), (Failure{}));
            ASSERT_EQ(ReadBytes("file"), model.text);
            ASSERT_EQ(file.vn_GetSize(), model.text.size());
        }
    }

private:
    unsigned Below(unsigned limit) { return unsigned(random() % limit); }
    unsigned SomeSize() { return Below(Below(4) ? 20 : 3000); }

    void Open()
    {
        static const struct
        {
            CT_File::et_Open open;
            CT_File::et_Access access;
        } ways[] = {
            {CT_File::e_OpenExisting, CT_File::e_AccessRead},
            {CT_File::e_OpenExisting, CT_File::e_AccessWrite},
            {CT_File::e_OpenExisting, CT_File::e_AccessReadWrite},
            {CT_File::e_OpenCreate, CT_File::e_AccessRead},
            {CT_File::e_OpenCreate, CT_File::e_AccessWrite},
            {CT_File::e_OpenCreate, CT_File::e_AccessReadWrite},
            {CT_File::e_OpenAppend, CT_File::e_AccessWrite},
        };
        const auto& way = ways[Below(std::size(ways))];
        file.Open(way.open, way.access);
        model.Open(way.open, way.access);
        ASSERT_EQ(file.b_IsOpen(), 1);
    }

    void Step()
    {
        switch (Below(6)) {
        case 0:
        case 1:
            if (const unsigned size = SomeSize(); model.reads) {
                ASSERT_EQ(file.Read(size), model.Read(size));
            }
            break;
        case 2:
        case 3:
            if (model.writes) {
                const std::string bytes(SomeSize(), char('a' + Below(26)));
                ASSERT_EQ(file.Write(bytes), bytes.size());
                model.Write(bytes);
            }
            break;
        case 4:
            Seek();
            break;
        default:
            ASSERT_EQ(file.vn_GetSize(), model.text.size());
            model.at_end = false; // the measuring seeks
        }
        Compare();
    }

    void Seek()
    {
        const std::size_t to = Below(unsigned(model.text.size()) + 100);
        const std::size_t from[] = {0, model.offset, model.text.size()};
        const unsigned origin = model.appends ? 0 : Below(3);
        file.vv_SetOffset(CT_File::et_Origin(origin), int(to) - int(from[origin]));
        model.Seek(to);
    }

    // Where an append stands is the library's own matter.
    void Compare()
    {
        ASSERT_EQ(TakeFailure(), (Failure{}));
        if (!model.appends) {
            ASSERT_EQ(file.vn_GetOffset(), model.offset);
        }
        ASSERT_EQ(file.vb_IsEof(), model.at_end ? 16 : 0);
    }

    std::mt19937 random;
    Model model;
    StdFileProbe file;
};
} // namespace

TEST(StdFileModel, RandomWorkIsThatOnAPlainText)
{
    const unsigned first = Seed(1);
    for (unsigned seed = first; seed < first + 60 && !testing::Test::HasFailure(); ++seed) {
        SCOPED_TRACE(seed);
        Player(seed).Play();
    }
}

// benchmarks/Streams.cpp: bytes that are read and written in blocks.
//
// A pass reads or writes the input, repeated to 8 MiB, in blocks of 4 KiB, or of a few bytes where
// the measure says so, and adds up what it reads, eight bytes at a time. Files are opened and
// closed by each pass, as each side's documentation does it, and the system has them in memory;
// files are read with a buffer of one block, and written with the buffer that the side takes by
// itself. What is appended to memory begins with nothing each time.
//
// A mapped input is set beside block readers; "qt" there is QFile::map, which holds nobody else off:
// the share mode of ours, and the measuring before the open, are 25 calls of the system a pass.
//
// Our output of a file has no buffer: each append is a call of the system, which is what "small"
// shows, and what a memory output in front of it is for ("gathered", which is ours as well). The
// measures that begin with std are of CT_StdFile, which has a buffer; "win" is CT_WinFile.
#include <Ostra/File/StdFile.h>
#include <Ostra/File/WinFile.h>
#include <Ostra/Input/FileInput.h>
#include <Ostra/Input/MappedFileInput.h>
#include <Ostra/Input/MemoryInput.h>
#include <Ostra/Output/FileOutput.h>
#include <Ostra/Output/MemoryOutput.h>
#include <Ostra/String/CString.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include <unistd.h>

#if HAVE_QT
#include <QBuffer>
#include <QByteArray>
#include <QFile>
#endif

#include "Support/Inputs.h"
#include "Support/Job.h"

namespace
{
typedef std::vector<std::uint64_t> Answers;

constexpr unsigned BLOCK = 4096;
constexpr size_t WHOLE = 0x800000;

// A folder as long as the program runs.
const std::string& Folder()
{
    static const std::string folder = [] {
        std::string name = std::filesystem::temp_directory_path() / "ostra-streams-XXXXXX";
        return mkdtemp(name.data()) ? name : std::string(".");
    }();
    return folder;
}

const std::string& SourcePath()
{
    static const std::string path = Folder() + "/source";
    return path;
}

const std::string& TargetPath()
{
    static const std::string path = Folder() + "/target";
    return path;
}

const CT_CString& NameOf(const std::string& path)
{
    static const CT_CString source(SourcePath().c_str(), -1, 65001);
    static const CT_CString target(TargetPath().c_str(), -1, 65001);
    return &path == &SourcePath() ? source : target;
}

std::uint64_t Sum(const void* bytes, size_t size)
{
    const char* next = static_cast<const char*>(bytes);
    std::uint64_t sum = size;
    for (; size >= 8; next += 8, size -= 8) {
        std::uint64_t eight;
        std::memcpy(&eight, next, 8);
        sum += eight;
    }
    for (; size; ++next, --size)
        sum += static_cast<unsigned char>(*next);
    return sum;
}

// ---- Reading: each side gives every block to take() ----------------------------------------------

class OstraInput
{
public:
    template <class Take>
    static void Read(CT_Input& input, Take take)
    {
        const unsigned char* block = nullptr;
        unsigned size = 0;
        input.vv_Open();
        while (input.vb_GetNextBuffer(&block, &size))
            take(block, size);
        input.vv_Close();
    }
};

struct OstraFile
{
    template <class Take>
    void operator()(Take take) const
    {
        CT_FileInput input(BLOCK, &NameOf(SourcePath()));
        OstraInput::Read(input, take);
    }
};

struct OstraMapped
{
    template <class Take>
    void operator()(Take take) const
    {
        CT_MappedFileInput input(BLOCK, &NameOf(SourcePath()));
        OstraInput::Read(input, take);
    }
};

struct OstraMemory
{
    const std::string& bytes;

    template <class Take>
    void operator()(Take take) const
    {
        CT_MemoryInput input(BLOCK, reinterpret_cast<const unsigned char*>(bytes.data()),
                             static_cast<unsigned>(bytes.size()));
        OstraInput::Read(input, take);
    }
};

// Either of our files, with a buffer of one block where it has one.
template <class File>
struct OstraPlain
{
    template <class Take>
    void operator()(Take take) const
    {
        File file(&NameOf(SourcePath()), BLOCK);
        file.vv_Open(CT_File::e_AccessRead, CT_File::e_OpenExisting, CT_File::e_ShareRead, 1, 0);
        std::vector<char> block(BLOCK);
        while (const unsigned size = file.vn_Read(block.data(), BLOCK))
            take(block.data(), size);
        file.vv_Close();
    }
};

struct StreamFile
{
    template <class Take>
    void operator()(Take take) const
    {
        std::ifstream file(SourcePath(), std::ios::binary);
        std::vector<char> block(BLOCK);
        while (file.read(block.data(), BLOCK) || file.gcount())
            take(block.data(), static_cast<size_t>(file.gcount()));
    }
};

struct CFile
{
    template <class Take>
    void operator()(Take take) const
    {
        std::FILE* file = std::fopen(SourcePath().c_str(), "rb");
        std::vector<char> block(BLOCK);
        for (size_t size; (size = std::fread(block.data(), 1, BLOCK, file)) > 0;)
            take(block.data(), size);
        std::fclose(file);
    }
};

struct StreamMemory
{
    const std::string& bytes;

    template <class Take>
    void operator()(Take take) const
    {
        std::istringstream stream(bytes);
        std::vector<char> block(BLOCK);
        while (stream.read(block.data(), BLOCK) || stream.gcount())
            take(block.data(), static_cast<size_t>(stream.gcount()));
    }
};

struct CMemory
{
    const std::string& bytes;

    template <class Take>
    void operator()(Take take) const
    {
        std::FILE* file = fmemopen(const_cast<char*>(bytes.data()), bytes.size(), "rb");
        std::vector<char> block(BLOCK);
        for (size_t size; (size = std::fread(block.data(), 1, BLOCK, file)) > 0;)
            take(block.data(), size);
        std::fclose(file);
    }
};

#if HAVE_QT
struct QtFile
{
    template <class Take>
    void operator()(Take take) const
    {
        QFile file(QString::fromStdString(SourcePath()));
        file.open(QIODevice::ReadOnly);
        std::vector<char> block(BLOCK);
        for (qint64 size; (size = file.read(block.data(), BLOCK)) > 0;)
            take(block.data(), static_cast<size_t>(size));
    }
};

struct QtMapped
{
    template <class Take>
    void operator()(Take take) const
    {
        QFile file(QString::fromStdString(SourcePath()));
        file.open(QIODevice::ReadOnly);
        const auto left = static_cast<size_t>(file.size());
        const uchar* bytes = file.map(0, file.size());
        for (size_t at = 0; at < left; at += BLOCK)
            take(bytes + at, std::min<size_t>(BLOCK, left - at));
    }
};

struct QtMemory
{
    const std::string& bytes;

    template <class Take>
    void operator()(Take take) const
    {
        QByteArray array = QByteArray::fromRawData(bytes.data(), qsizetype(bytes.size()));
        QBuffer buffer(&array);
        buffer.open(QIODevice::ReadOnly);
        std::vector<char> block(BLOCK);
        for (qint64 size; (size = buffer.read(block.data(), BLOCK)) > 0;)
            take(block.data(), static_cast<size_t>(size));
    }
};
#endif

class ReadMeasure
{
public:
    ReadMeasure(const char* name, const std::string& input, size_t size)
        : measure(name, input, {Amount::BYTES, size})
    {}

    template <class Read>
    void Side(const char* side, Read read)
    {
        measure.Side(
            side,
            [read] {
                std::uint64_t sum = 0;
                read([&](const void* block, size_t size) { sum += Sum(block, size); });
                return sum;
            },
            [read] {
                Answers sums;
                read([&](const void* block, size_t size) { sums.push_back(Sum(block, size)); });
                return sums;
            });
    }

private:
    Measure<Answers> measure;
};

// ---- Writing: each side takes every block of the input -------------------------------------------

// How the input is cut: pieces of one size, or of 1 to 16 bytes.
struct Pieces
{
    const std::string& bytes;
    size_t block; // 0: small ones

    template <class Give>
    void Each(Give give) const
    {
        for (size_t at = 0, turn = 0; at < bytes.size(); ++turn) {
            const size_t wanted = block ? block : 1 + turn * 7 % 16;
            const size_t size = std::min(wanted, bytes.size() - at);
            give(bytes.data() + at, size);
            at += size;
        }
    }
};

struct ToOstraMemory
{
    size_t operator()(const Pieces& pieces) const
    {
        CT_MemoryOutput output;
        pieces.Each([&](const char* piece, size_t size) {
            output.vv_Append(piece, static_cast<unsigned>(size));
        });
        return output.vn_GetSize();
    }
};

struct ToString
{
    size_t operator()(const Pieces& pieces) const
    {
        std::string text;
        pieces.Each([&](const char* piece, size_t size) { text.append(piece, size); });
        return text.size();
    }
};

struct ToOstraFile
{
    size_t operator()(const Pieces& pieces) const
    {
        CT_FileOutput output(&NameOf(TargetPath()));
        pieces.Each([&](const char* piece, size_t size) {
            output.vv_Append(piece, static_cast<unsigned>(size));
        });
        return 0;
    }
};

// The pieces are gathered in memory to blocks of the size that other sides have as their buffer.
struct ToOstraGathered
{
    size_t operator()(const Pieces& pieces) const
    {
        CT_FileOutput output(&NameOf(TargetPath()));
        const CT_Buffer room(BLOCK, 32);
        CT_MemoryOutput gathered(&room);
        pieces.Each([&](const char* piece, size_t size) {
            gathered.vv_Append(piece, static_cast<unsigned>(size));
            if (gathered.vn_GetSize() < BLOCK)
                return;
            output.vv_Append(gathered);
            gathered.v_Set(&room);
        });
        output.vv_Append(gathered);
        return 0;
    }
};

template <class File>
struct ToOstraPlain
{
    size_t operator()(const Pieces& pieces) const
    {
        File file(&NameOf(TargetPath()), BLOCK);
        file.vv_Open(CT_File::e_AccessWrite, CT_File::e_OpenCreate, CT_File::e_ShareNone, 1, 0);
        pieces.Each([&](const char* piece, size_t size) {
            file.vn_Write(piece, static_cast<unsigned>(size));
        });
        file.vv_Close();
        return 0;
    }
};

struct ToCFile
{
    size_t operator()(const Pieces& pieces) const
    {
        std::FILE* file = std::fopen(TargetPath().c_str(), "wb");
        pieces.Each([&](const char* piece, size_t size) { std::fwrite(piece, 1, size, file); });
        std::fclose(file);
        return 0;
    }
};

struct ToStream
{
    size_t operator()(const Pieces& pieces) const
    {
        std::ofstream file(TargetPath(), std::ios::binary);
        pieces.Each([&](const char* piece, size_t size) {
            file.write(piece, static_cast<std::streamsize>(size));
        });
        return 0;
    }
};

#if HAVE_QT
struct ToQtMemory
{
    size_t operator()(const Pieces& pieces) const
    {
        QByteArray array;
        pieces.Each([&](const char* piece, size_t size) { array.append(piece, qsizetype(size)); });
        return static_cast<size_t>(array.size());
    }
};

struct ToQtFile
{
    size_t operator()(const Pieces& pieces) const
    {
        QFile file(QString::fromStdString(TargetPath()));
        file.open(QIODevice::WriteOnly);
        pieces.Each([&](const char* piece, size_t size) { file.write(piece, qint64(size)); });
        return 0;
    }
};
#endif

class WriteMeasure
{
public:
    WriteMeasure(const char* name, const std::string& input, const Pieces& of, bool file)
        : pieces(of),
          isFile(file),
          measure(name, input, AmountOf(of))
    {}

    template <class Write>
    void Side(const char* side, Write write)
    {
        measure.Side(
            side, [write, pieces = pieces] { return write(pieces); },
            [this, write] {
                const size_t size = write(pieces);
                return isFile ? WhatIsThere() : Answers{size};
            });
    }

private:
    // Blocks are measured in bytes, small pieces by the piece.
    static Amount AmountOf(const Pieces& pieces)
    {
        if (pieces.block)
            return {Amount::BYTES, pieces.bytes.size()};
        size_t count = 0;
        pieces.Each([&](const char*, size_t) { ++count; });
        return {Amount::ITEMS, count};
    }
    static Answers WhatIsThere()
    {
        Answers sums;
        std::ifstream file(TargetPath(), std::ios::binary);
        std::vector<char> block(BLOCK);
        while (file.read(block.data(), BLOCK) || file.gcount())
            sums.push_back(Sum(block.data(), static_cast<size_t>(file.gcount())));
        return sums;
    }

    Pieces pieces;
    bool isFile;
    Measure<Answers> measure;
};

// ---- Measures -----------------------------------------------------------------------------------

void RegisterReading(const std::string& input, const std::string& bytes)
{
    ReadMeasure memory("memory_in", input, bytes.size());
    memory.Side("ostra", OstraMemory{bytes});
    memory.Side("stream", StreamMemory{bytes});
    memory.Side("fmemopen", CMemory{bytes});
    ReadMeasure mapped("mapped_in", input, bytes.size());
    mapped.Side("ostra", OstraMapped());
    mapped.Side("fread", CFile());
    mapped.Side("ifstream", StreamFile());
    ReadMeasure file("file_in", input, bytes.size());
    file.Side("ostra", OstraFile());
    file.Side("fread", CFile());
    file.Side("ifstream", StreamFile());
#if HAVE_QT
    memory.Side("qt", QtMemory{bytes});
    mapped.Side("qt", QtMapped());
    mapped.Side("qt_read", QtFile());
    file.Side("qt", QtFile());
#endif
}

void RegisterStdFile(const std::string& input, const std::string& bytes, const std::string& part)
{
    ReadMeasure read("std_in", input, bytes.size());
    read.Side("ostra", OstraPlain<CT_StdFile>());
    read.Side("win", OstraPlain<CT_WinFile>());
    read.Side("fread", CFile());
    WriteMeasure blocks("std_out", input, {bytes, BLOCK}, true);
    WriteMeasure small("std_small", input, {part, 0}, true);
    for (WriteMeasure* measure : {&blocks, &small}) {
        measure->Side("ostra", ToOstraPlain<CT_StdFile>());
        measure->Side("win", ToOstraPlain<CT_WinFile>());
        measure->Side("fwrite", ToCFile());
    }
}

void RegisterMemory(const char* name, const std::string& input, const Pieces& pieces)
{
    WriteMeasure measure(name, input, pieces, false);
    measure.Side("ostra", ToOstraMemory());
    measure.Side("string", ToString());
#if HAVE_QT
    measure.Side("qt", ToQtMemory());
#endif
}

void RegisterFile(const char* name, const std::string& input, const Pieces& pieces)
{
    WriteMeasure measure(name, input, pieces, true);
    measure.Side("ostra", ToOstraFile());
    measure.Side("gathered", ToOstraGathered());
    measure.Side("fwrite", ToCFile());
    measure.Side("ofstream", ToStream());
#if HAVE_QT
    measure.Side("qt", ToQtFile());
#endif
}
} // namespace

int main(int argc, char** argv)
{
    const std::string input = "mixed";
    std::string bytes = Inputs::Bytes(input);
    while (bytes.size() < WHOLE)
        bytes += std::string(bytes);
    bytes.resize(WHOLE);
    std::ofstream(SourcePath(), std::ios::binary) << bytes;
    RegisterReading(input, bytes);
    RegisterMemory("memory_out", input, {bytes, BLOCK});
    RegisterMemory("memory_small", input, {bytes, 0});
    RegisterFile("file_out", input, {bytes, BLOCK});
    // A call of the system for each piece: a part of the input is enough.
    const std::string part = bytes.substr(0, 100000);
    RegisterFile("file_small", input, {part, 0});
    RegisterStdFile(input, bytes, part);
    const int result = Job::Run(argc, argv, OSTRA_ABSENT_PEERS);
    std::filesystem::remove_all(Folder());
    return result;
}

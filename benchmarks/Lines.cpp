// benchmarks/Lines.cpp: text files read line by line.
//
// A pass opens the file, which the system has in memory, reads all of its lines into one string and
// closes it. Files of bytes end their lines with a line feed, for no other side drops a carriage
// return; those of UTF-16 begin with a mark, and have both. GLib's channel converts what isn't
// UTF-8, so there its lines are UTF-8. The readers that go back behind each line have no peer: what
// counts is how many calls of the system a line takes, all of them being counted; "limit" is what
// can't be done without. line_mib and line16_mib are what a pass takes of memory at its peak
// (Support/Memory.h).
#include <Ostra/File/WinFile.h>
#include <Ostra/String/CString.h>
#include <Ostra/String/UString.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>
#include <vector>

#include <unistd.h>

#if HAVE_QT
#include <QFile>
#include <QTextStream>
#endif
#if HAVE_GLIB
#include <glib.h>
#endif

#include "Support/Inputs.h"
#include "Support/Job.h"
#include "Support/SystemCalls.h"

namespace
{
typedef unsigned (CT_File::*Reader)(CT_String*, const CT_String*);

// A text as a file, as long as the program runs.
class TextFile
{
public:
    TextFile(const std::string& input, const std::string& bytes, size_t lineCount)
        : name(input),
          path(Folder() + "/" + std::to_string(++made)),
          lines(lineCount)
    {
        std::ofstream(path, std::ios::binary) << bytes;
    }

    static void RemoveAll() { std::filesystem::remove_all(Folder()); }

    const std::string name;
    const std::string path;
    const size_t lines;

private:
    static std::string Folder()
    {
        static const std::string folder = MakeFolder();
        return folder;
    }
    static std::string MakeFolder()
    {
        std::string folder = std::filesystem::temp_directory_path() / "ostra-lines-XXXXXX";
        return mkdtemp(folder.data()) ? folder : ".";
    }

    static int made;
};

int TextFile::made;

TextFile ByteFile(const std::string& input, const std::vector<std::string>& lines)
{
    std::string bytes;
    for (const std::string& line : lines)
        bytes += line + "\n";
    return {input, bytes, lines.size()};
}

TextFile UnitFile(const std::string& input, const std::vector<std::string>& lines)
{
    std::u16string units = u"\uFEFF";
    for (const std::string& line : lines)
        units += Inputs::ToUnits(line) + u"\r\n";
    return {input, {reinterpret_cast<const char*>(units.data()), units.size() * 2}, lines.size()};
}

// ---- The sides: each gives every line of a file to take() -----------------------------------------

std::string_view View(const CT_CString& line)
{
    return {line.qccz_Get(), line.vn_GetLength()};
}

std::u16string_view View(const CT_UString& line)
{
    return {reinterpret_cast<const char16_t*>(line.qcuz_Get()), line.vn_GetLength()};
}

template <class String>
class Ostra
{
public:
    explicit Ostra(Reader of) : read(of) {}

    template <class Take>
    void operator()(const std::string& path, Take take) const
    {
        const CT_CString name(path.c_str(), -1, 65001);
        CT_WinFile file(&name, 0);
        file.vv_Open(CT_File::e_AccessRead, CT_File::e_OpenExisting, CT_File::e_ShareRead, 1, 0);
        String line;
        while ((file.*read)(&line, nullptr))
            take(View(line));
    }

private:
    Reader read;
};

struct GetLine
{
    template <class Take>
    void operator()(const std::string& path, Take take) const
    {
        std::ifstream file(path, std::ios::binary);
        for (std::string line; std::getline(file, line);)
            take(std::string_view(line));
    }
};

struct PosixGetLine
{
    template <class Take>
    void operator()(const std::string& path, Take take) const
    {
        std::FILE* file = std::fopen(path.c_str(), "r");
        char* line = nullptr;
        size_t room = 0;
        for (ssize_t length; (length = getline(&line, &room, file)) > 0;)
            take(std::string_view(line, static_cast<size_t>(length) - 1));
        std::free(line);
        std::fclose(file);
    }
};

#if HAVE_QT
struct QtLines
{
    template <class Take>
    void operator()(const std::string& path, Take take) const
    {
        QFile file(QString::fromStdString(path));
        file.open(QIODevice::ReadOnly);
        std::vector<char> line(4096);
        for (qint64 length; (length = file.readLine(line.data(), 4096)) > 0;)
            take(std::string_view(line.data(), static_cast<size_t>(length) - 1));
    }
};

struct QtStream
{
    template <class Take>
    void operator()(const std::string& path, Take take) const
    {
        QFile file(QString::fromStdString(path));
        file.open(QIODevice::ReadOnly);
        QTextStream stream(&file);
        stream.setEncoding(QStringConverter::Utf16LE);
        for (QString line; stream.readLineInto(&line);)
            take(std::u16string_view(reinterpret_cast<const char16_t*>(line.utf16()),
                                     static_cast<size_t>(line.size())));
    }
};
#endif

#if HAVE_GLIB
class GlibChannel
{
public:
    explicit GlibChannel(const char* of) : encoding(of) {}

    template <class Take>
    void operator()(const std::string& path, Take take) const
    {
        GIOChannel* channel = g_io_channel_new_file(path.c_str(), "r", nullptr);
        g_io_channel_set_encoding(channel, encoding, nullptr);
        GString* line = g_string_new(nullptr);
        gsize end = 0;
        while (g_io_channel_read_line_string(channel, line, &end, nullptr) == G_IO_STATUS_NORMAL)
            take(std::string_view(line->str, end));
        g_string_free(line, TRUE);
        g_io_channel_unref(channel);
    }

private:
    const char* encoding;
};
#endif

// ---- Measures -----------------------------------------------------------------------------------

void Keep(std::vector<std::string>& lines, std::string_view line)
{
    lines.emplace_back(line);
}

void Keep(std::vector<std::u16string>& lines, std::u16string_view line)
{
    lines.emplace_back(line);
}

void Keep(std::vector<std::u16string>& lines, std::string_view line)
{
    // A channel hands out the mark.
    constexpr std::string_view mark = "\xEF\xBB\xBF";
    const size_t skip = lines.empty() && line.substr(0, mark.size()) == mark ? mark.size() : 0;
    lines.push_back(Inputs::ToUnits(std::string(line.substr(skip))));
}

template <class Line>
class LineMeasure
{
public:
    LineMeasure(const std::string& theName, const TextFile& onFile)
        : name(theName),
          file(onFile),
          measure(name, onFile.name, {Amount::ITEMS, onFile.lines})
    {}

    template <class Read>
    void Side(const char* side, Read read)
    {
        const auto work = [read, path = file.path] {
            size_t sum = 0;
            read(path, [&](auto line) { sum += line.size(); });
            return sum;
        };
        if (name.starts_with("line"))
            Job::RegisterPeak(name + "_mib/" + side + "/" + file.name, work);
        measure.Side(side, work, [read, path = file.path] {
            std::vector<Line> lines;
            read(path, [&](auto line) { Keep(lines, line); });
            return lines;
        });
    }

private:
    const std::string name;
    const TextFile& file;
    Measure<std::vector<Line>> measure;
};

void RegisterBytes(const TextFile& file)
{
    LineMeasure<std::string> measure("line", file);
    measure.Side("ostra", Ostra<CT_CString>(&CT_File::n_ReadLineCSequential));
    measure.Side("getline", GetLine());
    measure.Side("posix", PosixGetLine());
#if HAVE_QT
    measure.Side("qt", QtLines());
#endif
#if HAVE_GLIB
    measure.Side("glib", GlibChannel(nullptr));
#endif
}

void RegisterUnits(const TextFile& file)
{
    LineMeasure<std::u16string> measure("line16", file);
    measure.Side("ostra", Ostra<CT_UString>(&CT_File::n_ReadLineUSequential));
#if HAVE_QT
    measure.Side("qt", QtStream());
#endif
#if HAVE_GLIB
    measure.Side("glib", GlibChannel("UTF-16LE"));
#endif
}

// What the readers that go back need of the system: a call a line, one at the end, one for a mark. A
// piece of the file that ends with the file takes a second one, for the first might have got less
// than there is.
template <class Line>
double NeededCalls(const std::vector<Line>& lines, size_t before, size_t ends)
{
    constexpr size_t width = sizeof(typename Line::value_type);
    constexpr size_t piece = 256 * width;
    size_t calls = 1 + (before != 0);
    size_t behind = 0;
    for (auto line = lines.rbegin(); line != lines.rend(); ++line) {
        behind += (line->size() + ends) * width;
        calls += 1 + (behind < piece);
    }
    return static_cast<double>(calls);
}

// The readers that go back behind each line.
template <class String>
void RegisterSeeking(const std::string& suffix, Reader reader, const TextFile& file)
{
    typedef std::basic_string<typename decltype(View(String()))::value_type> Line;
    const Ostra<String> side(reader);
    LineMeasure<Line> measure("seek" + suffix, file);
    measure.Side("ostra", side);
    std::vector<Line> lines;
    side(file.path, [&](auto text) { Keep(lines, text); });
    constexpr bool wide = sizeof(typename Line::value_type) == 2;
    const double needed = NeededCalls(lines, wide ? 2 : 0, wide ? 2 : 1);

    const CT_CString name(file.path.c_str(), -1, 65001);
    CT_WinFile open(&name, 0);
    open.vv_Open(CT_File::e_AccessRead, CT_File::e_OpenExisting, CT_File::e_ShareRead, 1, 0);
    String line;
    const auto pass = [&] {
        open.vv_SetOffset(CT_File::e_OriginBegin, 0);
        while ((open.*reader)(&line, nullptr)) {
        }
    };
    pass(); // takes the memory, which is calls too
    const long calls = SystemCalls::Count(pass);
    if (calls < 0) {
        std::fprintf(stderr, "calls%s: tracing isn't permitted, left out\n", suffix.c_str());
        return;
    }
    const auto count = static_cast<double>(lines.size());
    Job::RegisterCost("calls" + suffix + "/ostra/" + file.name,
                      [=] { return static_cast<double>(calls) / count; });
    Job::RegisterCost("calls" + suffix + "/limit/" + file.name, [=] { return needed / count; });
}

std::vector<std::string> Tenth(const std::vector<std::string>& lines)
{
    std::vector<std::string> tenth;
    for (size_t n = 0; n < lines.size(); n += 10)
        tenth.push_back(lines[n]);
    return tenth;
}
} // namespace

int main(int argc, char** argv)
{
    std::vector<TextFile> files;
    files.reserve(10);
    const std::vector<std::string> words = Inputs::Lines("words.en");
    const auto add = [&](auto make, const std::string& name, const auto& lines) -> auto&
    {
        return files.emplace_back(make(name, lines));
    };
    RegisterBytes(add(ByteFile, "words.en", words));
    RegisterBytes(add(ByteFile, "words.en.tenth", Tenth(words)));
    for (const char* name : {"faq.de", "mixed"})
        RegisterBytes(add(ByteFile, name, Inputs::Lines(name)));
    RegisterUnits(add(UnitFile, "words.en", words));
    RegisterUnits(add(UnitFile, "words.en.tenth", Tenth(words)));
    for (const char* name : {"faq.ru", "mixed"})
        RegisterUnits(add(UnitFile, name, Inputs::Lines(name)));
    RegisterSeeking<CT_CString>("", &CT_File::n_ReadLineC,
                                add(ByteFile, "faq.de", Inputs::Lines("faq.de")));
    RegisterSeeking<CT_UString>("16", &CT_File::n_ReadLineU,
                                add(UnitFile, "faq.ru", Inputs::Lines("faq.ru")));
    const int result = Job::Run(argc, argv, OSTRA_ABSENT_PEERS);
    TextFile::RemoveAll();
    return result;
}

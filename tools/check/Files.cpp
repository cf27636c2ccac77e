// tools/check/Files.cpp
#include "Files.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <new>
#include <stdexcept>
#include <vector>

#ifdef _WIN32
#include <fcntl.h>
#include <io.h>
#endif

namespace
{
constexpr std::size_t CHUNK = 0x10000;

// The standard input as it comes, without a change of line ends.
std::FILE* StandardInput()
{
#ifdef _WIN32
    _setmode(_fileno(stdin), _O_BINARY);
#endif
    return stdin;
}

bool ReadAll(std::FILE* file, std::string& bytes)
{
    std::vector<char> chunk(CHUNK);
    std::size_t count;
    while ((count = std::fread(chunk.data(), 1, CHUNK, file)) != 0)
        bytes.append(chunk.data(), count);
    return !std::ferror(file);
}

// Returns what is wrong, or an empty text.
std::string Read(const std::string& path, std::string& bytes)
{
    errno = 0;
    std::FILE* file = path == "-" ? StandardInput() : std::fopen(path.c_str(), "rb");
    if (!file)
        return std::strerror(errno);
    std::string wrong;
    if (!ReadAll(file, bytes))
        wrong = std::strerror(errno);
    if (file != stdin)
        std::fclose(file);
    return wrong;
}

// A file name may hold anything; what is printed of it stays one line.
std::string Shown(std::string name)
{
    for (char& c : name)
        if (static_cast<unsigned char>(c) < 0x20 || c == 0x7F)
            c = '?';
    return name;
}

class Run
{
public:
    explicit Run(const Tool& program) : tool(program) {}

    int All(int argc, char** argv)
    {
        if (!Parse(argc, argv))
            return 2;
        if (help)
            PrintHelp();
        else if (version)
            std::printf("%s (Ostra) " OSTRA_TOOL_VERSION "\n", tool.name);
        else
            ShowFiles();
        if (std::fflush(stdout) != 0 || std::ferror(stdout)) {
            std::fprintf(stderr, "%s: cannot write the output\n", tool.name);
            status = 1;
        }
        return status;
    }

private:
    bool Parse(int argc, char** argv)
    {
        bool options = true;
        for (int n = 1; n < argc; ++n) {
            const std::string word = argv[n];
            if (!options || word == "-" || word.empty() || word[0] != '-')
                files.push_back(word);
            else if (word == "--")
                options = false;
            else if (word == "--help" || word == "-h")
                help = true;
            else if (word == "--version")
                version = true;
            else
                return Refuse("unknown option " + Shown(word));
        }
        return help || version || !files.empty() || Refuse("no file");
    }

    bool Refuse(const std::string& wrong) const
    {
        std::fprintf(stderr, "%s: %s\nusage: %s FILE...\nTry %s --help.\n", tool.name,
                     wrong.c_str(), tool.name, tool.name);
        return false;
    }

    // tools/manpage.py makes the manual page of it.
    void PrintHelp() const
    {
        std::printf("usage: %s FILE...\n\n%s\n\n", tool.name, tool.summary);
        std::printf("Files:\n"
                    "  -          the standard input\n\n"
                    "Options:\n"
                    "  --help     prints this text\n"
                    "  --version  prints the version\n"
                    "  --         ends the options\n\n"
                    "Exit status:\n"
                    "  0          %s\n"
                    "  1          %s,\n"
                    "             or the output can't be written\n"
                    "  2          a wrong use\n",
                    tool.good, tool.bad);
    }

    // Stops where the output takes no more.
    void ShowFiles()
    {
        for (std::size_t n = 0; n < files.size() && !std::ferror(stdout); ++n) {
            const std::string wrong = Show(files[n]);
            std::fflush(stdout);
            if (!wrong.empty()) {
                std::fprintf(stderr, "%s: %s: %s\n", tool.name, Shown(files[n]).c_str(),
                             wrong.c_str());
                status = 1;
            }
        }
    }

    std::string Show(const std::string& path)
    {
        try {
            std::string bytes;
            const std::string wrong = Read(path, bytes);
            if (wrong.empty() && !tool.show(Shown(path), bytes))
                status = 1;
            return wrong;
        } catch (const std::bad_alloc&) {
        } catch (const std::length_error&) {
        }
        return "not enough memory";
    }

    const Tool& tool;
    std::vector<std::string> files;
    bool help = false;
    bool version = false;
    int status = 0;
};
} // namespace

int RunTool(const Tool& tool, int argc, char** argv)
{
    return Run(tool).All(argc, argv);
}

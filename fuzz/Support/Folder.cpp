// fuzz/Support/Folder.cpp
#include "Support/Folder.h"

#include "Support/Input.h"

#include <fstream>
#include <random>

namespace fs = std::filesystem;

namespace
{
class OwnFolder
{
public:
    OwnFolder()
    {
        std::error_code ignored;
        const fs::path memory = "/dev/shm";
        const fs::path parent =
            fs::is_directory(memory, ignored) ? memory : fs::temp_directory_path();
        std::random_device random;
        do
            path = parent / ("ostra-fuzz-" + std::to_string(random()));
        while (!fs::create_directory(path));
    }
    ~OwnFolder()
    {
        std::error_code ignored;
        fs::remove_all(path, ignored);
    }

    fs::path path;
};
} // namespace

const fs::path& Folder()
{
    static const OwnFolder folder;
    return folder.path;
}

std::string ReadBytes(const fs::path& path)
{
    std::ifstream file(path, std::ios::binary);
    REQUIRE(file.is_open());
    std::string bytes;
    for (char piece[0x4000]; file.read(piece, sizeof piece), file.gcount() > 0;)
        bytes.append(piece, static_cast<std::size_t>(file.gcount()));
    return bytes;
}

void WriteBytes(const fs::path& path, const std::string& bytes)
{
    std::ofstream file(path, std::ios::binary);
    file << bytes;
    file.close();
    REQUIRE(file.good());
}

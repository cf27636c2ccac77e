// benchmarks/Durable.cpp: changes that are on the disk, whole, when the call returns.
//
// The same records as in the job Records, of which "change" gives one another content, and "save"
// all. Each side is left such that the old content or the new one is found whatever ends the
// process or the machine meanwhile. SQLite (a journal that is deleted, synchronous=full) and LMDB
// are as they are opened without further ado, "sqlite_wal" has a log and synchronous=full; a change
// is one transaction, and so is a save.
//
// A record file is replaced by another one: the examples' Output writes beside it, hands the bytes
// to the disk and renames. For a change the file is copied and the record changed in the copy; a
// save makes a new file. Both are checked by the checker of record files in front of the renaming.
// "ostra_unchecked" leaves that out, and "ostra_folder" also hands the folder to the disk, so that
// the new name stands, too. SQLite's default doesn't do that for its journal either.
//
// The files lie in the current directory, and time is that of the clock on the wall: nearly all of
// it is waiting for the disk, whose own cache tells what that means.
#include <Database/RecordManager/RecordManager.h>
#include <Ostra/Buffer/Buffer.h>
#include <Ostra/Frame/ErrorManager.h>
#include <Common/Output.h>

#include <RecordCheck.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

#include <fcntl.h>
#include <unistd.h>

#include "RecordSides/Side.h"
#include "Support/Inputs.h"
#include "Support/Job.h"

#if HAVE_LMDB
#include "RecordSides/Lmdb.h"
#endif
#if HAVE_SQLITE
#include "RecordSides/Sqlite.h"
#endif

namespace
{
namespace fs = std::filesystem;

typedef std::vector<std::string> Answers; // the records
typedef std::vector<std::unique_ptr<CT_Buffer>> Contents;

// ---- Records ------------------------------------------------------------------------------

struct Input
{
    std::string name;
    Contents versions[2]; // of each record, which begin alike

    unsigned Count() const { return static_cast<unsigned>(versions[0].size()); }
};

std::unique_ptr<CT_Buffer> MakeContent(unsigned key, unsigned size, unsigned version)
{
    std::string text(size, ' ');
    for (unsigned n = 0; n < size; ++n)
        text[n] = static_cast<char>('a' + (key * 31 + n * 7 + (n < HEAD_SIZE ? 0 : version)) % 26);
    return std::make_unique<CT_Buffer>(text.data(), size, 32);
}

const Input& MakeInput(unsigned count)
{
    Input& input = *new Input{std::to_string(count), {}}; // as long as the program
    const std::vector<unsigned> sizes = Inputs::Numbers("record.sizes");
    for (unsigned version = 0; version < 2; ++version)
        for (unsigned key = 0; key < count; ++key)
            input.versions[version].push_back(
                MakeContent(key, std::max(sizes[key % sizes.size()], HEAD_SIZE + 1), version));
    return input;
}

// ---- A record file that is replaced -------------------------------------------------------

void ExpectNoError(const char* what)
{
    Expect(!CT_ErrorManager::spco_Get()->b_IsSetError(), what);
}

class Replaced
{
public:
    static constexpr const char* NAME = "ostra";

    explicit Replaced(const std::string& path, bool isChecked = true, bool isFolderFlushed = false)
        : name(reinterpret_cast<const unsigned short*>(Inputs::ToUnits(path).c_str())),
          file(path),
          checks(isChecked),
          flushes(isFolderFlushed)
    {}

    void Save(const Contents& contents)
    {
        Replace([&](CT_RecordManager& records, const fs::path&) {
            records.v_Create(HEAD_SIZE, BLOCK_SIZE, 0);
            references.clear();
            for (const auto& content : contents)
                references.push_back(records.n_AddRecord(content.get()));
        });
    }
    void Change(unsigned key, const CT_Buffer& data)
    {
        Replace([&](CT_RecordManager& records, const fs::path& fresh) {
            fs::copy_file(file, fresh, fs::copy_options::overwrite_existing);
            records.v_Open(CT_RecordManager::e_OpenReadWrite, 1);
            records.v_UpdateRecord(references[key], &data);
        });
    }
    Answers Read() const
    {
        const CT_WinFile place(&name, FILE_BUFFER);
        CT_RecordManager records(&place);
        records.v_Open(CT_RecordManager::e_OpenRead, 1);
        Answers answers;
        CT_Buffer room;
        for (const unsigned reference : references) {
            records.v_GetRecord(reference, &room);
            answers.emplace_back(Data(room), room.n_GetUsedSize());
        }
        records.v_Close(1);
        ExpectNoError("read");
        return answers;
    }

private:
    static constexpr unsigned FILE_BUFFER = 1024;

    template <class Write>
    void Replace(Write write)
    {
        common::Output output;
        Expect(output.Take(name), "name");
        const fs::path fresh = common::PathOf(output.Fresh());
        {
            const CT_WinFile place(&output.Fresh(), FILE_BUFFER);
            CT_RecordManager records(&place);
            write(records, fresh);
            records.v_Close(1);
        }
        ExpectNoError("write");
        if (checks)
            Expect(IsSound(fresh), "check");
        Expect(output.Commit(), "commit");
        if (flushes)
            FlushFolder();
    }
    static bool IsSound(const fs::path& path)
    {
        std::string bytes(fs::file_size(path), '\0');
        std::ifstream(path, std::ios::binary)
            .read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
        return CheckRecordFile(bytes).sound;
    }
    void FlushFolder() const
    {
        const int folder = ::open(fs::absolute(file).parent_path().c_str(), O_RDONLY);
        Expect(folder >= 0 && ::fsync(folder) == 0, "folder");
        ::close(folder);
    }

    const CT_UString name;
    const fs::path file;
    const bool checks;
    const bool flushes;
    std::vector<unsigned> references;
};

class Unchecked : public Replaced
{
public:
    static constexpr const char* NAME = "ostra_unchecked";

    explicit Unchecked(const std::string& path) : Replaced(path, false) {}
};

class WithFolder : public Replaced
{
public:
    static constexpr const char* NAME = "ostra_folder";

    explicit WithFolder(const std::string& path) : Replaced(path, true, true) {}
};

// ---- A data base --------------------------------------------------------------------------

template <class Base>
class Transactions
{
public:
    static constexpr const char* NAME = Base::NAME;

    explicit Transactions(const std::string& path) : base(path) {}

    void Save(const Contents& contents)
    {
        base.Begin();
        for (unsigned key = 0; key < contents.size(); ++key)
            if (count == contents.size())
                base.Update(key, *contents[key]);
            else
                base.Add(key, *contents[key]);
        base.End();
        count = contents.size();
    }
    void Change(unsigned key, const CT_Buffer& data)
    {
        base.Begin();
        base.Update(key, data);
        base.End();
    }
    Answers Read()
    {
        Answers answers;
        base.Begin();
        base.Walk(
            [&](unsigned, const char* data, size_t size) { answers.emplace_back(data, size); });
        base.End();
        return answers;
    }

private:
    Base base;
    size_t count = 0;
};

// ---- Measures -----------------------------------------------------------------------------

// A folder that goes with the object, and a store in it with all records.
template <class Side>
class Store
{
public:
    explicit Store(const Input& theInput)
        : input(theInput),
          folder("ostra-durable-" + std::to_string(::getpid()) + "-" + Side::NAME + "-" +
                 std::to_string(++number))
    {
        fs::create_directory(folder);
        side = std::make_unique<Side>((folder / "store").string());
        side->Save(input.versions[0]);
    }
    Store(const Store&) = delete;
    Store& operator=(const Store&) = delete;
    ~Store()
    {
        side.reset();
        std::error_code ignored;
        fs::remove_all(folder, ignored);
    }

    int Save()
    {
        version ^= 1;
        side->Save(input.versions[version]);
        return 0;
    }
    // Another record each time.
    int Change()
    {
        turn = (turn + STEP) % input.Count();
        side->Change(turn, *input.versions[++changes / input.Count() % 2 ^ 1][turn]);
        return 0;
    }
    Answers Read() { return side->Read(); }

private:
    static inline unsigned number;         // of stores of this side
    static constexpr unsigned STEP = 7919; // a prime that doesn't divide the counts

    const Input& input;
    const fs::path folder;
    std::unique_ptr<Side> side;
    unsigned version = 0;
    unsigned turn = 0;
    unsigned changes = 0;
};

class Measures
{
public:
    explicit Measures(const Input& theInput)
        : input(theInput),
          change("change", input.name, {Amount::ITEMS, 1, true}),
          save("save", input.name, {Amount::ITEMS, input.Count(), true})
    {}

    template <class Side>
    void Register()
    {
        Measured<Side>(change, &Store<Side>::Change);
        Measured<Side>(save, &Store<Side>::Save);
    }

private:
    template <class Side>
    void Measured(Measure<Answers>& measure, int (Store<Side>::*step)())
    {
        const auto store = std::make_shared<Store<Side>>(input);
        measure.Side(
            Side::NAME, [store, step] { return ((*store).*step)(); },
            [store, step] {
                for (int n = 0; n < 3; ++n)
                    ((*store).*step)();
                return store->Read();
            });
    }

    const Input& input;
    Measure<Answers> change, save;
};
} // namespace

int main(int argc, char** argv)
{
    std::vector<unsigned> counts = {1000, 10000};
    if (!Inputs::AreGenerated())
        counts.push_back(100000);
    for (const unsigned count : counts) {
        Measures& all = *new Measures(MakeInput(count));
        all.Register<Replaced>();
        all.Register<Unchecked>();
        all.Register<WithFolder>();
#if HAVE_SQLITE
        all.Register<Transactions<SqliteDefault>>();
        all.Register<Transactions<SqliteLog>>();
#endif
#if HAVE_LMDB
        all.Register<Transactions<LmdbDefault>>();
#endif
    }
    return Job::Run(argc, argv, OSTRA_ABSENT_PEERS);
}

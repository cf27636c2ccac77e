// benchmarks/Records.cpp: records of some hundred bytes in one file.
//
// Each side keeps the same records under the same numbers in a file of its own, mapped into memory
// where the library has that, in /dev/shm ("memory") or in the current directory ("disk"). Nobody
// waits for a disk: SQLite has synchronous=off and one transaction a pass, LMDB one transaction
// with WRITEMAP and NOSYNC, the others are as opened, the hash databases with room for the records.
//
// A record's number is the key of the others, counting up; lmdb_append is LMDB told that it does,
// as one would load a whole file. Of ours the application keeps the reference. Fetched records are
// copied into memory of the caller's on all sides. A record shorter than its head comes back with
// the head's size from ours, and what was put in is compared.
//
// memory.x10 and memory.x40 have ten and forty times the records of memory, whose contents come again
// and again. readers: eight processes, each of which opens the same file for reading and gets all of
// its records; the time is that from the first one's start to the last one's end, of a record that
// any of them gets. add_mib is what the filling takes of memory at its peak (Support/Memory.h): pages
// of a mapped file are among it, which LMDB and ours have, and SQLite's, which writes, aren't.
//
// Updates and the pairs of a deletion and an addition (churn) go through all records in an order
// of chance, and give each the other one of two contents of different lengths. The contents of a
// record begin alike, as an update of ours that finds room in the body's block leaves the last
// bytes of the head; and none takes a record's body away, which would leave ours pointing to a
// block that is free.
#include <Ostra/Buffer/Buffer.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <memory>
#include <numeric>
#include <string>
#include <vector>

#include <sys/wait.h>
#include <unistd.h>

#include "RecordSides/Ostra.h"
#include "Support/Inputs.h"
#include "Support/Job.h"

#if HAVE_LMDB
#include "RecordSides/Lmdb.h"
#endif
#if HAVE_SQLITE
#include "RecordSides/Sqlite.h"
#endif
#if HAVE_GDBM
#include "RecordSides/Gdbm.h"
#endif
#if HAVE_TKRZW
#include "RecordSides/Tkrzw.h"
#endif
#if HAVE_KYOTO
#include "RecordSides/Kyoto.h"
#endif

namespace
{
typedef std::vector<std::uint64_t> Answers; // a hash a record
typedef std::vector<unsigned> Keys;

// Contents of so many records. Beyond MOST they come again, which no side knows of.
class Contents
{
public:
    static constexpr unsigned MOST = 100'000;

    explicit Contents(unsigned theCount) : count(theCount) {}
    void Add(std::unique_ptr<CT_Buffer> content) { distinct.push_back(std::move(content)); }
    unsigned Count() const { return count; }
    const CT_Buffer& operator[](size_t key) const { return *distinct[key % distinct.size()]; }

private:
    const unsigned count;
    std::vector<std::unique_ptr<CT_Buffer>> distinct;
};

// ---- Records ------------------------------------------------------------------------------

struct Input
{
    std::string name;
    std::string folder;
    Contents first, second; // of each record, of different lengths
    Keys order;             // of chance

    unsigned Count() const { return static_cast<unsigned>(order.size()); }
};

std::unique_ptr<CT_Buffer> MakeContent(unsigned key, unsigned size, unsigned version)
{
    std::string text(size, ' ');
    for (unsigned n = 0; n < size; ++n) {
        const unsigned turn = n < HEAD_SIZE ? 0 : version;
        text[n] = static_cast<char>('a' + (key * 31 + turn + n * 7 + n / 26) % 26);
    }
    return std::make_unique<CT_Buffer>(text.data(), size, 32);
}

// Another length, on the same side of the head's size.
unsigned OtherSize(unsigned size, unsigned other)
{
    const unsigned least = size > HEAD_SIZE ? HEAD_SIZE + 1 : 1;
    const unsigned most = size > HEAD_SIZE ? ROOM : HEAD_SIZE;
    other = std::clamp(other, least, most);
    return other != size ? other : other != most ? other + 1 : other - 1;
}

const Input& MakeInput(const std::string& name, const std::string& folder, unsigned count)
{
    // As long as the program.
    Input& input = *new Input{name, folder, Contents(count), Contents(count), Keys(count)};
    const Keys sizes = Inputs::Numbers("record.sizes");
    for (unsigned key = 0; key < std::min(count, Contents::MOST); ++key) {
        const unsigned size = std::max(sizes[key % sizes.size()], 1u);
        const unsigned other = sizes[(key + count) % sizes.size()];
        input.first.Add(MakeContent(key, size, 0));
        input.second.Add(MakeContent(key, OtherSize(size, other), 1));
    }
    std::iota(input.order.begin(), input.order.end(), 0u);
    Inputs::Shuffle(input.order);
    return input;
}

std::uint64_t HashOf(const char* data, size_t size)
{
    std::uint64_t hash = size;
    for (size_t n = 0; n < size; ++n)
        hash = (hash ^ static_cast<unsigned char>(data[n])) * 0x100000001B3u;
    return hash;
}

// A file in the input's folder that goes with the object.
class Place
{
public:
    Place(const Input& input, const char* side)
        : path(input.folder + "/ostra-records-" + std::to_string(::getpid()) + "-" +
               std::to_string(++number) + "." + side)
    {}
    Place(const Place&) = delete;
    Place& operator=(const Place&) = delete;
    ~Place()
    {
        std::error_code ignored;
        std::filesystem::remove(path, ignored);
        std::filesystem::remove(path + "-lock", ignored);
    }

    const std::string path;

private:
    static unsigned number;
};

unsigned Place::number;

// ---- Measures -----------------------------------------------------------------------------

template <class Side>
struct Store
{
    Store(const Input& input, bool full)
        : place(input, Side::NAME),
          side(place.path, input.Count()),
          contents(&input.first)
    {
        if (full)
            Fill(input);
    }
    void Fill(const Input& input)
    {
        side.Begin();
        for (unsigned key = 0; key < input.Count(); ++key)
            side.Add(key, input.first[key]);
        side.End();
    }

    const Place place;
    Side side;
    const Contents* contents; // what the records have now
};

// What a store has, without what a short record came back with behind its own bytes.
template <class Side>
Answers ContentOf(Store<Side>& store)
{
    Answers answers;
    store.side.Begin();
    for (unsigned key = 0; key < store.contents->Count(); ++key) {
        const char* data;
        const size_t size = store.side.Get(key, data);
        const size_t most = (*store.contents)[key].n_GetUsedSize();
        answers.push_back(HashOf(data, std::min(size, most)));
    }
    store.side.End();
    return answers;
}

// Calls step(key) for all records in an order of chance, in one pass.
template <class Side, class Step>
unsigned Pass(Side& side, const Input& input, Step step)
{
    side.Begin();
    for (const unsigned key : input.order)
        step(key);
    side.End();
    return input.Count();
}

class Measures
{
public:
    explicit Measures(const Input& theInput)
        : input(theInput),
          add(Make("add")),
          get(Make("get")),
          update(Make("update")),
          churn(Make("churn")),
          walk(Make("walk"))
    {}

    template <class Side>
    void Register()
    {
        RegisterAdd<Side>();
        RegisterGet(Full<Side>());
        RegisterUpdate<Side>();
        RegisterChurn<Side>();
        RegisterWalk<Side>();
    }
    template <class Side>
    void RegisterChurn()
    {
        const auto store = Full<Side>();
        const auto work = [this, store] {
            const Contents& contents = Turn(*store);
            return Pass(store->side, input,
                        [&](unsigned key) { store->side.Replace(key, contents[key]); });
        };
        churn.Side(Side::NAME, work, [work, store] { return work(), ContentOf(*store); });
    }

    template <class Side>
    void RegisterAdd()
    {
        RegisterAdd(Full<Side>());
    }
    template <class Side>
    void RegisterPeak()
    {
        Job::RegisterPeak(std::string("add_mib/") + Side::NAME + "/" + input.name,
                          [this] { return Filled<Side>(); });
    }
    // With one file for both, as files are large.
    template <class Side>
    void RegisterAddAndGet()
    {
        const auto store = Full<Side>();
        RegisterAdd(store);
        RegisterGet(store);
    }

private:
    Measure<Answers> Make(const char* name) const
    {
        return {name, input.name, {Amount::ITEMS, input.Count()}};
    }
    template <class Side>
    std::shared_ptr<Store<Side>> Full() const
    {
        return std::make_shared<Store<Side>>(input, true);
    }
    // A new file, which is closed at the end.
    template <class Side>
    const Contents* Filled() const
    {
        return Store<Side>(input, true).contents;
    }
    template <class Side>
    void RegisterAdd(const std::shared_ptr<Store<Side>>& same)
    {
        add.Side(
            Side::NAME, [this] { return Filled<Side>(); }, [same] { return ContentOf(*same); });
    }
    template <class Side>
    void RegisterGet(const std::shared_ptr<Store<Side>>& store)
    {
        get.Side(
            Side::NAME,
            [this, store] {
                size_t sum = 0;
                Pass(store->side, input, [&](unsigned key) {
                    const char* data;
                    sum += store->side.Get(key, data);
                    benchmark::DoNotOptimize(data);
                });
                return sum;
            },
            [store] { return ContentOf(*store); });
    }
    // The contents that the records have not.
    template <class Side>
    const Contents& Turn(Store<Side>& store) const
    {
        store.contents = store.contents == &input.first ? &input.second : &input.first;
        return *store.contents;
    }

    template <class Side>
    void RegisterUpdate()
    {
        const auto store = Full<Side>();
        const auto work = [this, store] {
            const Contents& contents = Turn(*store);
            return Pass(store->side, input,
                        [&](unsigned key) { store->side.Update(key, contents[key]); });
        };
        update.Side(Side::NAME, work, [work, store] { return work(), ContentOf(*store); });
    }
    template <class Side>
    void RegisterWalk()
    {
        const auto store = Full<Side>();
        walk.Side(
            Side::NAME,
            [store] {
                size_t sum = 0;
                store->side.Begin();
                store->side.Walk([&](unsigned, const char* data, size_t size) {
                    benchmark::DoNotOptimize(data);
                    sum += size;
                });
                store->side.End();
                return sum;
            },
            [this, store] {
                Answers answers(input.Count());
                store->side.Begin();
                store->side.Walk([&](unsigned key, const char* data, size_t size) {
                    const size_t most = input.first[key].n_GetUsedSize();
                    answers[key] = HashOf(data, std::min(size, most));
                });
                store->side.End();
                return answers;
            });
    }

    const Input& input;
    Measure<Answers> add, get, update, churn, walk;
};

// Processes that read all records of one file at a time, each in the order of chance.
constexpr unsigned READERS = 8;

template <class Side>
void Read(const Store<Side>& store, const Input& input)
{
    Side reader(store.place.path, store.side);
    size_t sum = 0;
    Pass(reader, input, [&](unsigned key) {
        const char* data;
        sum += reader.Get(key, data);
    });
    Expect(sum >= input.Count(), "reading");
}

template <class Side>
unsigned ReadAtOnce(const Store<Side>& store, const Input& input)
{
    for (unsigned n = 0; n < READERS; ++n)
        if (fork() == 0) {
            Read(store, input);
            _exit(0);
        }
    for (unsigned n = 0; n < READERS; ++n) {
        int status = -1;
        wait(&status);
        Expect(status == 0, "a reader");
    }
    return READERS * input.Count();
}

template <class Side>
void RegisterReaders(Measure<Answers>& readers, const Input& input)
{
    const auto store = std::make_shared<Store<Side>>(input, true);
    store->side.Close();
    readers.Side(
        Side::NAME, [store, &input] { return ReadAtOnce(*store, input); },
        [store, &input] {
            Side reader(store->place.path, store->side);
            Answers answers;
            reader.Begin();
            for (unsigned key = 0; key < input.Count(); ++key) {
                const char* data;
                const size_t size = reader.Get(key, data);
                answers.push_back(
                    HashOf(data, std::min<size_t>(size, input.first[key].n_GetUsedSize())));
            }
            reader.End();
            return answers;
        });
}

void RegisterReaders(const Input& input)
{
    Measure<Answers> readers("readers", input.name, {Amount::ITEMS, READERS * input.Count(), true});
    RegisterReaders<Ostra>(readers, input);
#if HAVE_LMDB
    RegisterReaders<Lmdb>(readers, input);
#endif
#if HAVE_SQLITE
    RegisterReaders<Sqlite>(readers, input);
#endif
}

// Ten times the records, and forty times.
void RegisterLarge(const std::string& folder, unsigned count)
{
    Measures& ten = *new Measures(MakeInput("memory.x10", folder, count * 10));
    ten.RegisterAddAndGet<Ostra>();
    ten.RegisterChurn<Ostra>();
    Measures& forty = *new Measures(MakeInput("memory.x40", folder, count * 40));
    forty.RegisterAddAndGet<Ostra>();
#if HAVE_LMDB
    ten.RegisterAddAndGet<Lmdb>();
    ten.RegisterChurn<Lmdb>();
    forty.RegisterAddAndGet<Lmdb>();
#endif
}

template <class Action>
void ForAllSides(Action action)
{
    action.template operator()<Ostra>();
#if HAVE_LMDB
    action.template operator()<Lmdb>();
#endif
#if HAVE_SQLITE
    action.template operator()<Sqlite>();
#endif
#if HAVE_GDBM
    action.template operator()<Gdbm>();
#endif
#if HAVE_TKRZW
    action.template operator()<Tkrzw>();
#endif
#if HAVE_KYOTO
    action.template operator()<Kyoto>();
#endif
}
} // namespace

int main(int argc, char** argv)
{
    const unsigned count = Inputs::AreGenerated() ? 10000 : 100000;
    const std::string memory = std::filesystem::is_directory("/dev/shm") ? "/dev/shm" : ".";
    const Input& plain = MakeInput("memory", memory, count);
    Measures& all = *new Measures(plain);
    ForAllSides([&]<class Side>() { all.Register<Side>(); });
    ForAllSides([&]<class Side>() { all.RegisterPeak<Side>(); });
#if HAVE_LMDB
    all.RegisterAdd<LmdbAppend>();
#endif
    Measures& disk = *new Measures(MakeInput("disk", ".", count));
    ForAllSides([&]<class Side>() { disk.Register<Side>(); });
    Measures& tenth = *new Measures(MakeInput("memory.tenth", memory, count / 10));
    ForAllSides([&]<class Side>() { tenth.RegisterChurn<Side>(); });
    RegisterReaders(plain);
    // For each of the most records, with the files that stay and the one that is being filled.
    constexpr std::uintmax_t BYTES = 2'000;
    if (std::filesystem::space(memory).available > BYTES * count * 40)
        RegisterLarge(memory, count);
    else
        std::fprintf(stderr, "records: too little room in %s for large files, left out\n",
                     memory.c_str());
    return Job::Run(argc, argv, OSTRA_ABSENT_PEERS);
}

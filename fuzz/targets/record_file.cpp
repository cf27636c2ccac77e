// fuzz/targets/record_file.cpp: bytes as a record file. The checker survives everything; a file that
// it calls sound takes any work and is sound afterwards; a damaged one is opened and read by
// reference, and gives data or one of the errors for such a file.
//
// Input: a byte of switches, a piece of work, the file. Of it is left out what nobody reads: the
// texts and the reserved bytes of the head, the unused entries of the tables.
#include "RecordDump.h"

#include "Support/Records.h"

namespace
{
constexpr unsigned FIELDS = 32, FIELDS_END = 84, HEAD = 256, FREE_SLOTS = 128;
constexpr unsigned CORRUPT = 31005, NO_RECORD_FILE = 31050, NO_RECORD = 31051, NO_MEMORY = 60006;
enum Switch : unsigned
{
    MAP = 1,
    MAP_FOR_READING = 2,
    TRUE_SIZE = 4, // n_Size is the file's
    WHOLE = 8,     // nothing was left out
};

unsigned Number(const std::string& bytes, std::size_t at)
{
    unsigned number = 0;
    for (std::size_t n = 4; n-- > 0;)
        number =
            number << 8 | (at + n < bytes.size() ? static_cast<unsigned char>(bytes[at + n]) : 0);
    return number;
}

void Put(std::string& bytes, std::size_t at, unsigned number)
{
    for (int n = 0; n < 4; ++n)
        bytes[at + n] = static_cast<char>(number >> 8 * n);
}

// The file of an input.
std::string Unfolded(Input& input, unsigned switches)
{
    if (switches & WHOLE)
        return input.Rest();
    std::string bytes = std::string(FIELDS, '\0') + input.Bytes(FIELDS_END - FIELDS);
    bytes.resize(HEAD);
    Put(bytes, 48, FREE_SLOTS);
    const unsigned resources = Number(bytes, 56) % 32;
    Put(bytes, 56, resources);
    const std::string free = input.Bytes(std::size_t{8} * (Number(bytes, 52) % (FREE_SLOTS + 1)));
    bytes += free;
    bytes.resize(HEAD + 8 * FREE_SLOTS);
    bytes += input.Bytes(std::size_t{8} * (Number(bytes, 60) % (resources + 1)));
    bytes.resize(HEAD + 8 * FREE_SLOTS + 8 * resources);
    const unsigned block = Number(bytes, 40);
    if (block >= 8 && block < 4096)
        bytes.resize((bytes.size() + block - 1) / block * block);
    bytes += input.Rest();
    if (switches & TRUE_SIZE)
        Put(bytes, 80, static_cast<unsigned>(bytes.size()));
    return bytes;
}

void RequireAllowed()
{
    const unsigned code = TakeCode();
    const bool system = code < 10000;
    REQUIRE(system || code == CORRUPT || code == NO_RECORD_FILE || code == NO_RECORD ||
            code == NO_MEMORY);
}

void ReadByReference(const std::string& bytes, bool map)
{
    Records records;
    records->v_Open(CT_RecordManager::e_OpenRead, map);
    RequireAllowed();
    if (!records.IsOpen())
        return;
    const unsigned block = std::max(records->n_GetBlockSize(), 8U);
    const auto references = static_cast<unsigned>(bytes.size() / block) + 2;
    for (unsigned reference = 0; reference < references; ++reference) {
        const std::string data = records.Get(reference);
        // A head without a body comes back with the size of a head.
        REQUIRE(data.size() <= bytes.size() + records->n_GetRecordHeaderSize());
        RequireAllowed();
    }
    for (unsigned id = 0; id < 16; ++id) {
        if (records->b_ResourceExists(id))
            records.GetResource(id);
        RequireAllowed();
    }
    records->v_Close(1);
    RequireAllowed();
}

void Change(Records& records, std::vector<unsigned>& live, Input& work)
{
    const unsigned kind = work.Below(8);
    const unsigned which = work.Byte();
    const std::string data(work.Below(80), static_cast<char>('a' + which % 26));
    const unsigned id = which % 16;
    if (kind < 2 || live.empty()) {
        live.push_back(records.Add(data));
    } else if (kind == 2) {
        const auto at = live.begin() + which % live.size();
        records->v_DeleteRecord(*at);
        live.erase(at);
    } else if (kind == 3) {
        // A body that an update takes away stays told: the one kept fault of the format.
        const unsigned reference = live[which % live.size()];
        std::string longer = data;
        longer.resize(std::max<std::size_t>(data.size(), records->n_GetRecordHeaderSize() + 1),
                      'u');
        records.Update(reference, longer);
    } else if (kind == 4) {
        records.UpdateHeader(live[which % live.size()], data);
    } else if (kind == 5 && records->b_ResourceExists(id)) {
        records->v_DeleteResource(id);
    } else if (records->b_ResourceExists(id)) {
        records.ReplaceResource(id, data);
    } else if (records->n_GetResourceCount() < records->n_GetResourceMaxCount()) {
        records.AddResource(id, data);
    }
    REQUIRE(TakeCode() == 0);
}

void UseInFull(const RecordVerdict& verdict, Input work, bool map)
{
    Records records;
    records->v_Open(CT_RecordManager::e_OpenReadWrite, map);
    REQUIRE(TakeCode() == 0);
    // What the checker says of walks and of stale bodies, callers have to keep to.
    if (!verdict.Has(RecordNote::NotWalkable) && !verdict.Has(RecordNote::StaleBody)) {
        std::vector<unsigned> live = records.Walk();
        for (unsigned reference : live)
            records.Get(reference);
        REQUIRE(TakeCode() == 0);
        for (unsigned step = 0; step < 60 && !work.IsEmpty(); ++step)
            Change(records, live, work);
    }
    records->v_Close(1);
    REQUIRE(TakeCode() == 0);
    const RecordVerdict after = RequireSound(records.Load());
    REQUIRE(verdict.Has(RecordNote::StaleBody) || !after.Has(RecordNote::StaleBody));
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    Input input(data, size);
    const unsigned switches = input.Byte();
    const std::string work = input.Piece(127);
    const std::string bytes = Unfolded(input, switches);
    const RecordVerdict verdict = CheckRecordFile(bytes);
    REQUIRE(verdict.sound == verdict.rule.empty());
    DumpRecordFile(bytes);
    // The manager would make a file of any size that a head tells, up to 4 GiB.
    if (Number(bytes, 80) > 0x100000)
        return 0;
    Records().Save(bytes);
    ReadByReference(bytes, (switches & MAP_FOR_READING) != 0);
    if (verdict.sound)
        UseInFull(verdict, Input(reinterpret_cast<const std::uint8_t*>(work.data()), work.size()),
                  (switches & MAP) != 0);
    return 0;
}

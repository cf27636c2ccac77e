// tests/Programs/Crash/CrashCheck.cpp
#include "Crash/CrashCheck.h"

#include <algorithm>

namespace
{
constexpr unsigned NO_FILE = 2, FILE_INVALID = 1006;
constexpr unsigned CORRUPT = 31005, NO_RECORD_FILE = 31050, NO_RECORD = 31051, NO_RESOURCE = 31053;
constexpr unsigned HEADER = 256, SIZE = 80;

unsigned WordAt(const std::string& bytes, std::size_t at)
{
    unsigned word = 0;
    std::memcpy(&word, bytes.data() + at, sizeof word);
    return word;
}

// Four bytes in a row; words of the format may have one or two.
bool HasUntouchedBytes(const std::string& data)
{
    return std::search_n(data.begin(), data.end(), 4, 0, [](char byte, int) {
               return CrashScript::IsUntouchedByte(byte);
           }) != data.end();
}
} // namespace

void CrashCheck::Look(const Since& since, unsigned seed)
{
    now = since;
    random.seed(seed);
    ++figures.files;
    figures.chained += now.chained;
    const bool is = std::filesystem::exists(PathOf("records.rec"));
    image = is ? ReadBytes(PathOf("records.rec")) : std::string();
    REQUIRE(is || now.creating);
    {
        Records records;
        if (!OpenToRead(records, Below(2) != 0)) {
            ++figures.refused;
            return MakeAnew();
        }
        CheckHeader();
        ReadRecords(records);
        ReadResources(records);
        records->v_Close(1);
        REQUIRE(TakeCode() == 0);
    }
    const RecordVerdict verdict = CheckRecordFile(image);
    figures.unclosed += image.size() != WordAt(image, SIZE);
    figures.sound += verdict.sound;
    if (verdict.sound)
        Work(verdict);
    else if (now.creating)
        MakeAnew();
}

bool CrashCheck::OpenToRead(Records& records, bool map)
{
    records->v_Open(CT_RecordManager::e_OpenRead, map);
    const unsigned code = TakeCode();
    if (code == 0)
        return true;
    REQUIRE(now.creating);
    const bool is = std::filesystem::exists(PathOf("records.rec"));
    REQUIRE(code == (!is ? NO_FILE : image.empty() && map ? FILE_INVALID : NO_RECORD_FILE));
    return false;
}

// The old header, or the new one of a save that had begun, or some words of each.
void CrashCheck::CheckHeader() const
{
    if (now.creating)
        return;
    for (unsigned at = 0; at < HEADER; at += 4) {
        const unsigned word = WordAt(image, at);
        bool known = word == WordAt(Saved().header, at);
        for (const unsigned save : now.saving)
            known = known || word == WordAt(script.states[save].header, at);
        REQUIRE(known);
    }
}

// Old, new or mixed data, its own or that of another one that was touched, or one of the errors.
void CrashCheck::CheckTouched(const std::string& data, unsigned code, unsigned gone)
{
    REQUIRE(code == 0 || code == CORRUPT || code == gone);
    REQUIRE(data.size() <= image.size() + script.form.head);
    ++figures.touchedReads;
    figures.touchedErrors += code != 0;
    const bool foreign = HasUntouchedBytes(data);
    figures.foreign += foreign;
    REQUIRE(!foreign || cause == POWER_LOST);
}

void CrashCheck::ReadRecords(Records& records)
{
    for (const auto& [reference, expected] : Saved().records) {
        const std::string data = records.Get(reference);
        const unsigned code = TakeCode();
        if (now.records.count(reference))
            CheckTouched(data, code, NO_RECORD);
        else
            REQUIRE(code == 0 && data == expected);
    }
    for (const unsigned reference : now.records) {
        if (Saved().records.count(reference))
            continue;
        const std::string data = records.Get(reference);
        CheckTouched(data, TakeCode(), NO_RECORD);
    }
}

// The tables may not go with the header while a save runs that has to do with resources.
void CrashCheck::ReadResources(Records& records)
{
    const bool loose = !now.saving.empty() && !now.resources.empty();
    for (unsigned id = 0; id < script.form.resources; ++id) {
        const bool is = records->b_ResourceExists(id) != 0;
        REQUIRE(TakeCode() == 0);
        const std::string data = is ? records.GetResource(id) : std::string();
        const unsigned code = TakeCode();
        const auto expected = Saved().resources.find(id);
        if (now.resources.count(id) || loose)
            REQUIRE(code == 0 || code == CORRUPT || code == NO_RESOURCE);
        else if (expected == Saved().resources.end())
            REQUIRE(!is);
        else
            REQUIRE(is && code == 0 && data == expected->second);
    }
}

// A file that never came to be can be made again.
void CrashCheck::MakeAnew()
{
    Records records;
    records->v_Create(script.form.head, script.form.block, script.form.resources);
    const unsigned reference = records.Add("made anew");
    records->v_Close(1);
    REQUIRE(TakeCode() == 0);
    RequireSound(records.Load());
    records->v_Open(CT_RecordManager::e_OpenRead, 1);
    REQUIRE(records.Get(reference).substr(0, 9) == "made anew");
    records->v_Close(1);
    REQUIRE(TakeCode() == 0);
}

// One that the checker calls sound takes any change, and nothing else is harmed.
void CrashCheck::Work(const RecordVerdict& verdict)
{
    Records records;
    records->v_Open(CT_RecordManager::e_OpenReadWrite, static_cast<int>(Below(2)));
    REQUIRE(TakeCode() == 0);
    // What the checker says of stale bodies, callers have to keep to.
    std::vector<unsigned> live;
    if (!verdict.Has(RecordNote::StaleBody)) {
        for (const unsigned reference : records.Walk()) {
            records.Get(reference);
            if (!Saved().records.count(reference) || now.records.count(reference))
                live.push_back(reference);
        }
        REQUIRE(TakeCode() == 0);
        for (unsigned step = 0; step < 24; ++step)
            Change(records, live);
    }
    for (const auto& [reference, expected] : Saved().records)
        if (!now.records.count(reference))
            REQUIRE(records.Get(reference) == expected);
    records->v_Close(1);
    REQUIRE(TakeCode() == 0);
    const RecordVerdict after = RequireSound(records.Load());
    REQUIRE(verdict.Has(RecordNote::StaleBody) || !after.Has(RecordNote::StaleBody));
}

void CrashCheck::Change(Records& records, std::vector<unsigned>& live)
{
    const unsigned kind = Below(6);
    const unsigned id = Below(std::max(1U, script.form.resources));
    const std::string data(script.form.head + 1 + Below(3 * script.form.block), 'w');
    if (kind < 2 || live.empty()) {
        live.push_back(records.Add(data));
    } else if (kind == 2) {
        const auto at = live.begin() + Below(static_cast<unsigned>(live.size()));
        records->v_DeleteRecord(*at);
        live.erase(at);
    } else if (kind == 3) {
        records.Update(live[Below(static_cast<unsigned>(live.size()))], data);
    } else if (records->b_ResourceExists(id)) {
        kind == 4 ? records.ReplaceResource(id, data) : records->v_DeleteResource(id);
    } else if (records->n_GetResourceCount() < records->n_GetResourceMaxCount()) {
        records.AddResource(id, data);
    }
    REQUIRE(TakeCode() == 0);
}

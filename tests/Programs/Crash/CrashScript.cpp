// tests/Programs/Crash/CrashScript.cpp
#include "Crash/CrashScript.h"

namespace
{
constexpr unsigned HEADER = 256;
constexpr unsigned OPERATIONS = 40;
constexpr unsigned FIRST_RESOURCE = 2; // the first that the work may touch
} // namespace

CrashScript::CrashScript(const CrashForm& theForm, const char* kind, unsigned seed)
    : form(theForm),
      name(std::string(kind) + ", blocks of " + std::to_string(form.block) + ", seed " +
           std::to_string(seed)),
      random(seed)
{}

CrashScript CrashScript::Creating(const CrashForm& form, unsigned seed)
{
    CrashScript script(form, "creating", seed);
    script.making = false;
    script.states.emplace_back();
    script.Do(Operation::CREATE, 0);
    script.Work(OPERATIONS / 2);
    return script;
}

CrashScript CrashScript::Working(const CrashForm& form, unsigned seed, bool mapped)
{
    CrashScript script(form, mapped ? "mapped" : "unmapped", seed);
    script.MakeBase();
    script.Do(Operation::OPEN, mapped);
    script.Work(OPERATIONS);
    return script;
}

// ---- Playing ------------------------------------------------------------------------------

void CrashScript::Play(Records& records, const Operation& operation) const
{
    const auto& [kind, number, data] = operation;
    switch (kind) {
    case Operation::CREATE:
        records->v_Create(form.head, form.block, form.resources);
        break;
    case Operation::ADD:
        REQUIRE(records.Add(data) == number);
        break;
    case Operation::UPDATE:
        records.Update(number, data);
        break;
    case Operation::UPDATE_HEADER:
        records.UpdateHeader(number, data);
        break;
    case Operation::DELETE:
        records->v_DeleteRecord(number);
        break;
    case Operation::ADD_RESOURCE:
        records.AddResource(number, data);
        break;
    case Operation::REPLACE_RESOURCE:
        records.ReplaceResource(number, data);
        break;
    case Operation::DELETE_RESOURCE:
        records->v_DeleteResource(number);
        break;
    case Operation::FLUSH:
        records->v_Flush();
        break;
    case Operation::CLOSE:
        records->v_Close(1);
        break;
    case Operation::OPEN:
        records->v_Open(CT_RecordManager::e_OpenReadWrite, static_cast<int>(number));
        break;
    }
    REQUIRE(TakeCode() == 0);
}

// ---- Writing ------------------------------------------------------------------------------

std::string CrashScript::Data(bool touched, bool body)
{
    unsigned length = Below(form.head + 1);
    if (body)
        length = form.head + 1 + Below(3 * form.block);
    std::string data(length, ' ');
    const unsigned first = static_cast<unsigned>(random());
    for (unsigned n = 0; n < length; ++n)
        data[n] = static_cast<char>((touched ? 0x40 : 0xA0) | ((first + n) & 0x1F));
    return data;
}

void CrashScript::Model(Operation& operation)
{
    auto& [kind, number, data] = operation;
    unsigned error = 0;
    switch (kind) {
    case Operation::CREATE:
        model.Create(form.head, form.block, form.resources);
        break;
    case Operation::ADD:
        error = model.Add(data, number);
        break;
    case Operation::UPDATE:
        error = model.Update(number, data);
        break;
    case Operation::UPDATE_HEADER:
        error = model.UpdateHeader(number, data);
        break;
    case Operation::DELETE:
        error = model.Delete(number);
        break;
    case Operation::ADD_RESOURCE:
        error = model.AddResource(number, data);
        break;
    case Operation::REPLACE_RESOURCE:
        error = model.ReplaceResource(number, data);
        break;
    case Operation::DELETE_RESOURCE:
        error = model.DeleteResource(number);
        break;
    case Operation::FLUSH:
        model.Flush();
        break;
    case Operation::CLOSE:
        model.Close(true);
        break;
    case Operation::OPEN:
        error = model.Open(true, number != 0);
        break;
    }
    REQUIRE(error == 0);
}

SavedState CrashScript::State() const
{
    SavedState state;
    for (const unsigned reference : all)
        REQUIRE(model.Get(reference, state.records[reference]) == 0);
    for (unsigned id = 0; id < form.resources; ++id)
        if (model.HasResource(id))
            REQUIRE(model.GetResource(id, state.resources[id]) == 0);
    return state;
}

void CrashScript::AddState()
{
    saved.header = model.Bytes().substr(0, HEADER);
    states.push_back(saved);
}

void CrashScript::Do(Operation::Kind kind, unsigned number, const std::string& data)
{
    Operation operation{kind, number, data};
    const bool saves =
        kind == Operation::FLUSH || kind == Operation::CLOSE || kind == Operation::CREATE;
    if (saves && kind != Operation::CREATE)
        saved = State(); // closing forgets the tables
    Model(operation);
    if (kind == Operation::ADD)
        all.insert(operation.number);
    if (kind == Operation::DELETE)
        all.erase(operation.number);
    operations.push_back(operation);
    if (making)
        return;
    since.creating = kind == Operation::CREATE;
    if (kind == Operation::CREATE || kind == Operation::OPEN)
        since.mapped = kind == Operation::CREATE || number;
    if (kind >= Operation::ADD && kind <= Operation::DELETE)
        since.records.insert(operation.number);
    if (kind >= Operation::ADD_RESOURCE && kind <= Operation::DELETE_RESOURCE)
        since.resources.insert(operation.number);
    if (saves) {
        AddState();
        since.saving = {static_cast<unsigned>(states.size() - 1)};
    }
    since.chained = model.ChainLength() != 0;
    during.push_back(since);
    if (saves)
        since = {static_cast<unsigned>(states.size() - 1),
                 {},
                 {},
                 {},
                 false,
                 since.mapped,
                 since.chained};
}

// A base of which the work knows the half, with free blocks between its records.
void CrashScript::MakeBase()
{
    Do(Operation::CREATE, 0);
    Do(Operation::ADD_RESOURCE, 0, Data(false, true));
    Do(Operation::ADD_RESOURCE, 1, Data(false, false));
    const unsigned fillers = 122 + Below(16);
    std::vector<unsigned> goes;
    for (unsigned n = 0; n < fillers; ++n) {
        Do(Operation::ADD, 0, Data(true, false));
        goes.push_back(operations.back().number);
        if (n % 8 == 0)
            Do(Operation::ADD, 0, Data(false, n % 16 == 0));
        if (n % 4 == 0)
            Add();
    }
    for (const unsigned reference : goes)
        Do(Operation::DELETE, reference);
    Do(Operation::CLOSE, 0);
    Records records;
    std::filesystem::remove(PathOf("records.rec"));
    for (const Operation& operation : operations)
        Play(records, operation);
    base = records.Load();
    REQUIRE(base == model.Bytes());
    operations.clear();
    making = false;
    AddState();
}

void CrashScript::Add()
{
    const bool body = Below(2) != 0;
    Do(Operation::ADD, 0, Data(true, body));
    const unsigned reference = operations.back().number;
    live.push_back(reference);
    body ? void(bodies.insert(reference)) : void(bodies.erase(reference));
}

void CrashScript::Delete()
{
    if (live.empty())
        return Add();
    const unsigned at = Below(static_cast<unsigned>(live.size()));
    Do(Operation::DELETE, live[at]);
    live[at] = live.back();
    live.pop_back();
}

void CrashScript::Update()
{
    if (live.empty())
        return Add();
    const unsigned reference = live[Below(static_cast<unsigned>(live.size()))];
    if (Below(3) == 0)
        return Do(Operation::UPDATE_HEADER, reference, Data(true, false));
    // Kept: a body that is taken away stays told; who touches it again uses a block twice.
    if (Below(4) != 0)
        bodies.insert(reference);
    Do(Operation::UPDATE, reference, Data(true, bodies.count(reference) != 0));
}

void CrashScript::Resource()
{
    const unsigned id = FIRST_RESOURCE + Below(form.resources - FIRST_RESOURCE);
    if (!model.HasResource(id))
        Do(Operation::ADD_RESOURCE, id, Data(true, true));
    else if (Below(3) == 0)
        Do(Operation::DELETE_RESOURCE, id);
    else
        Do(Operation::REPLACE_RESOURCE, id, Data(true, true));
}

void CrashScript::Work(unsigned count)
{
    for (unsigned n = 0; n < count; ++n) {
        const unsigned kind = Below(20);
        if (kind < 5)
            Add();
        else if (kind < 10)
            Delete();
        else if (kind < 14)
            Update();
        else if (kind < 17)
            Resource();
        else if (kind < 19)
            Do(Operation::FLUSH, 0);
        else {
            Do(Operation::CLOSE, 0);
            Do(Operation::OPEN, since.mapped);
        }
    }
    Do(Operation::CLOSE, 0);
}

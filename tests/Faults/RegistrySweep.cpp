// tests/Faults/RegistrySweep.cpp: a registry cursor with an exhausted heap, and with services that
// fail.
#include <Ostra/String/CString.h>
#include <System/Registry/Registry.h>

#include <windows.h>

#include "../../winapi/tests/Support/Calls.h"
#include "Faults/ServiceSweep.h"
#include "Faults/Sweep.h"
#include "Faults/Swept.h"

#include <functional>
#include <memory>
#include <string>

namespace
{
struct State
{
    State() { registry.v_Set(HKEY_CURRENT_USER, &home); }
    ~State()
    {
        const RoadSwitch road(true);
        const CT_UString software(u"Software"), own(u"OstraSweep");
        registry.v_Set(HKEY_CURRENT_USER, &software);
        registry.v_DeleteKey(&own);
        TakeFailure();
    }

    const CT_UString home{u"\\Software\\OstraSweep"};
    const CT_UString up{u".."};
    const CT_UString text_name{u"text"};
    const CT_UString data_name{u"data"};
    const CT_UString bare_name{u"bare"};
    // Names of bytes, which have to be converted.
    const CT_CString child = CT_CString("child", -1, 0);
    const CT_CString bytes_name = CT_CString("text", -1, 0);
    const CT_CString name = CT_CString("a name that takes room of its own", -1, 0);
    // With its terminator it fills its block.
    const CT_CString full =
        CT_CString("fifty-one bytes of a text that isn't one of units..", -1, 0);
    const CT_UString long_text{u"a text, as long as it has to be for a block of its own"};
    const CT_Buffer data{"bytes, as many as it takes for a block of its own", 49, 32};
    CT_Registry registry{HKEY_CURRENT_USER};
    CT_UString text{u"before"};
    CT_Buffer out;
    DWORD number = 7;
};

// Whether the system knows the key.
bool IsThere(const char* path)
{
    HKEY key = nullptr;
    if (RegOpenKeyExA(HKEY_CURRENT_USER, path, 0, KEY_READ, &key) != 0)
        return false;
    RegCloseKey(key);
    return true;
}

// Stores a text of 26 units without a terminator. The system looks for one behind it.
void StoreBare()
{
    HKEY key = nullptr;
    RegOpenKeyExA(HKEY_CURRENT_USER, "Software\\OstraSweep", 0, KEY_ALL_ACCESS, &key);
    BYTE bytes[54] = {};
    for (unsigned n = 0; n < sizeof bytes; n += 2)
        bytes[n] = static_cast<BYTE>('a' + n / 2);
    RegSetValueExW(key, Wide(std::string("bare")).c_str(), 0, REG_SZ, bytes, 52);
    RegCloseKey(key);
}

// With two keys below the cursor, one in the other, and values in its own.
std::unique_ptr<State> Filled()
{
    const RoadSwitch road(true);
    auto state = std::make_unique<State>();
    const CT_UString below(u"child\\below");
    state->registry.v_CreateKey(&state->home);
    state->registry.v_CreateKey(&below);
    state->registry.v_SetValue(&state->data_name, &state->data);
    state->registry.v_SetValue(&state->text_name, &state->long_text);
    StoreBare();
    return state;
}

// The cursor goes on working.
void ExpectUsable(State& state)
{
    CT_Buffer fetched;
    state.registry.v_Set(HKEY_CURRENT_USER, &state.home);
    state.registry.v_GetValue(&state.data_name, &fetched);
    EXPECT_EQ(fetched.n_GetUsedSize(), 49U);
}

struct Step
{
    const char* name;
    std::function<void(State&)> run;
    std::function<bool(State&)> done;
    // What a failure leaves as it was; a tree may have lost parts.
    std::function<bool(State&)> undone;
};

LSTATUS Find(const char* value)
{
    HKEY key = nullptr;
    RegOpenKeyExA(HKEY_CURRENT_USER, "Software\\OstraSweep", 0, KEY_READ, &key);
    const LSTATUS code = RegQueryValueExA(key, value, nullptr, nullptr, nullptr, nullptr);
    RegCloseKey(key);
    return code;
}

const Step STEPS[] = {
    {"set", [](State& s) { s.registry.v_Set(HKEY_USERS, &s.child); },
     [](State& s) { return s.registry.pcco_GetKey()->vn_GetLength() == 5; },
     [](State& s) {
         return s.registry.pcco_GetKey()->vn_GetLength() == 0;
     }},
    {"create", [](State& s) { s.registry.v_CreateKey(&s.name); },
     [](State&) { return IsThere("Software\\OstraSweep\\a name that takes room of its own"); },
     [](State&) {
         return !IsThere("Software\\OstraSweep\\a name that takes room of its own");
     }},
    {"move down", [](State& s) { s.registry.v_SetKey(&s.child); },
     [](State& s) { return s.registry.pcco_GetKey()->vn_GetLength() == 25; },
     [](State& s) {
         return s.registry.pcco_GetKey()->vn_GetLength() == 19;
     }},
    {"move up", [](State& s) { s.registry.v_SetKey(&s.up); },
     [](State& s) { return s.registry.pcco_GetKey()->vn_GetLength() == 8; },
     [](State& s) {
         return s.registry.pcco_GetKey()->vn_GetLength() == 19;
     }},
    {"delete a key", [](State& s) { s.registry.v_DeleteKey(&s.child); },
     [](State&) { return !IsThere("Software\\OstraSweep\\child"); },
     [](State&) {
         return IsThere("Software\\OstraSweep\\child");
     }},
    {"fetch text", [](State& s) { s.registry.v_GetValue(&s.text_name, &s.text); },
     [](State& s) { return s.text.vi_Compare(&s.long_text) == 0; },
     [](State& s) {
         return s.text.vi_Compare(u"before") == 0;
     }},
    {"fetch text without a terminator",
     [](State& s) { s.registry.v_GetValue(&s.bare_name, &s.text); },
     [](State& s) { return s.text.vi_Compare(u"abcdefghijklmnopqrstuvwxyz") == 0; },
     [](State& s) {
         return s.text.vi_Compare(u"before") == 0;
     }},
    {"fetch data", [](State& s) { s.registry.v_GetValue(&s.data_name, &s.out); },
     [](State& s) { return s.out.n_GetUsedSize() == 49; },
     [](State& s) {
         return s.out.n_GetUsedSize() == 0;
     }},
    {"store text", [](State& s) { s.registry.v_SetValue(&s.name, &s.long_text); },
     [](State& s) { return Find(s.name.qccz_Get()) == 0; },
     [](State& s) {
         return Find(s.name.qccz_Get()) == ERROR_FILE_NOT_FOUND;
     }},
    {"store text of bytes", [](State& s) { s.registry.v_SetValue(&s.name, &s.name); },
     [](State& s) { return Find(s.name.qccz_Get()) == 0; },
     [](State& s) {
         return Find(s.name.qccz_Get()) == ERROR_FILE_NOT_FOUND;
     }},
    {"store text of bytes that fill their block",
     [](State& s) { s.registry.v_SetValue(&s.name, &s.full); },
     [](State& s) { return Find(s.name.qccz_Get()) == 0; },
     [](State& s) {
         return Find(s.name.qccz_Get()) == ERROR_FILE_NOT_FOUND;
     }},
    {"store data", [](State& s) { s.registry.v_SetValue(&s.name, &s.data); },
     [](State& s) { return Find(s.name.qccz_Get()) == 0; },
     [](State& s) {
         return Find(s.name.qccz_Get()) == ERROR_FILE_NOT_FOUND;
     }},
    {"store a number", [](State& s) { s.registry.v_SetValue(&s.name, DWORD(5)); },
     [](State& s) { return Find(s.name.qccz_Get()) == 0; },
     [](State& s) {
         return Find(s.name.qccz_Get()) == ERROR_FILE_NOT_FOUND;
     }},
    {"fetch a number", [](State& s) { s.registry.v_GetValue(&s.name, &s.number); },
     [](State& s) { return s.number != 7; },
     [](State& s) {
         return s.number == 7;
     }},
    {"delete a value", [](State& s) { s.registry.v_DeleteValue(&s.text_name); },
     [](State&) { return Find("text") == ERROR_FILE_NOT_FOUND; },
     [](State&) {
         return Find("text") == 0;
     }},
    {"delete a value named by bytes", [](State& s) { s.registry.v_DeleteValue(&s.bytes_name); },
     [](State&) { return Find("text") == ERROR_FILE_NOT_FOUND; },
     [](State&) {
         return Find("text") == 0;
     }},
};

void SweepStep(const Step& step)
{
    Sweep(
        {"Ostra/Buffer/Buffer", "Ostra/String/CString", "Ostra/String/UString"}, Filled,
        [&step](State& state) { step.run(state); },
        [&step](State& state, bool failed) {
            EXPECT_TRUE(failed ? step.undone(state) : step.done(state));
            ExpectUsable(state);
        });
}
} // namespace

TEST(RegistrySweep, EachOperationIsDoneOrReportedWithoutEffect)
{
    for (const Step& step : STEPS) {
        SCOPED_TRACE(step.name);
        // What reads the cursor's own path and name alone needs no memory.
        if (std::string(step.name) == "delete a value" || std::string(step.name) == "move up")
            continue;
        SweepStep(step);
    }
}

// Names of units have to be converted there. What would write is refused on that road, and text
// comes in another form.
TEST(RegistrySweep, EachReadingOperationOnThe8BitRoadIsDoneOrReportedWithoutEffect)
{
    const RoadSwitch road(false);
    for (const Step& step : STEPS) {
        SCOPED_TRACE(step.name);
        const std::string name = step.name;
        if (name == "set" || name == "move down" || name == "fetch data")
            SweepStep(step);
    }
}

TEST(RegistrySweep, NewObject)
{
    struct Pointer
    {
        ~Pointer() { delete registry; }
        CT_Registry* registry = nullptr;
    };
    Sweep(
        "System/Registry/Registry", [] { return std::make_unique<Pointer>(); },
        [](Pointer& state) { state.registry = new CT_Registry(HKEY_CURRENT_USER); },
        [](Pointer& state, bool failed) { EXPECT_EQ(state.registry == nullptr, failed); });
}

#ifndef _WIN32
namespace
{
// The services' calls, of which one fails.
unsigned left;
int open_keys;

bool Fails()
{
    if (!left || --left)
        return false;
    Swept::Mark(Swept::SERVICE);
    return true;
}

LSTATUS Counted(LSTATUS code)
{
    open_keys += code == 0;
    return code;
}

// What happens to a value, and to the answer, behind each question for it.
std::function<LSTATUS(LSTATUS)> behind;

LSTATUS Answered(LSTATUS code)
{
    return behind ? behind(code) : code;
}
} // namespace

// The linker leads the library's calls here.
#define WRAP_SERVICE(name, symbol, parameters, arguments, count)                                   \
    LSTATUS Wrapped##name parameters asm("__wrap_" symbol);                                        \
    LSTATUS Real##name parameters asm("__real_" symbol);                                           \
    LSTATUS Wrapped##name parameters                                                               \
    {                                                                                              \
        return Fails() ? ERROR_REGISTRY_IO_FAILED : count(Real##name arguments);                   \
    }

WRAP_SERVICE(Open, OSTRA_REG_OPEN,
             (HKEY from, LPCWSTR path, DWORD options, REGSAM rights, PHKEY key),
             (from, path, options, rights, key), Counted)
WRAP_SERVICE(Create, OSTRA_REG_CREATE,
             (HKEY from, LPCWSTR path, DWORD zero, LPWSTR type, DWORD options, REGSAM rights,
              LPSECURITY_ATTRIBUTES security, PHKEY key, LPDWORD disposition),
             (from, path, zero, type, options, rights, security, key, disposition), Counted)
WRAP_SERVICE(Info, OSTRA_REG_INFO,
             (HKEY key, LPWSTR type, LPDWORD size, LPDWORD zero, LPDWORD a, LPDWORD b, LPDWORD c,
              LPDWORD d, LPDWORD e, LPDWORD f, LPDWORD g, FILETIME* time),
             (key, type, size, zero, a, b, c, d, e, f, g, time), )
WRAP_SERVICE(Enum, OSTRA_REG_ENUM,
             (HKEY key, DWORD index, LPWSTR name, LPDWORD size, LPDWORD zero, LPWSTR type,
              LPDWORD room, FILETIME* time),
             (key, index, name, size, zero, type, room, time), )
WRAP_SERVICE(Delete, OSTRA_REG_DELETE, (HKEY key, LPCWSTR path), (key, path), )
WRAP_SERVICE(Query, OSTRA_REG_QUERY,
             (HKEY key, LPCWSTR name, LPDWORD zero, LPDWORD type, BYTE* data, LPDWORD size),
             (key, name, zero, type, data, size), Answered)
WRAP_SERVICE(Store, OSTRA_REG_STORE,
             (HKEY key, LPCWSTR name, DWORD zero, DWORD type, const BYTE* data, DWORD size),
             (key, name, zero, type, data, size), )
WRAP_SERVICE(DeleteValue, OSTRA_REG_DELETE_VALUE, (HKEY key, LPCWSTR name), (key, name), )

LSTATUS WrappedClose(HKEY key) asm("__wrap_" OSTRA_REG_CLOSE);
LSTATUS RealClose(HKEY key) asm("__real_" OSTRA_REG_CLOSE);

LSTATUS WrappedClose(HKEY key)
{
    open_keys -= RealClose(key) == 0;
    return Fails() ? ERROR_REGISTRY_IO_FAILED : 0;
}

TEST(RegistrySweep, EachServiceThatFailsIsReportedAndLeavesNoKeyOpen)
{
    unsigned failures = 0;
    for (const Step& step : STEPS) {
        for (unsigned number = 1;; ++number) {
            SCOPED_TRACE(testing::Message() << step.name << ", call " << number);
            const auto state = Filled();
            EXPECT_EQ(TakeFailure(), Failure());
            open_keys = 0;
            left = number;
            step.run(*state);
            const bool failed = left == 0;
            left = 0;
            EXPECT_EQ(open_keys, 0);
            const Failure failure = TakeFailure();
            if (failure == Failure()) {
                // Nobody asks whether a key could be closed.
                EXPECT_TRUE(step.done(*state));
            } else {
                EXPECT_TRUE(failed);
                EXPECT_EQ(failure.code, DWORD(ERROR_REGISTRY_IO_FAILED));
                EXPECT_EQ(failure.trail.at(0), "System/Registry/Registry");
                EXPECT_TRUE(step.undone(*state));
                ++failures;
            }
            ExpectUsable(*state);
            EXPECT_EQ(TakeFailure(), Failure());
            if (!failed)
                break;
        }
    }
    EXPECT_GT(failures, 25U);
}

TEST(RegistrySweep, AValueOfAnotherTypeLeavesNoKeyOpen)
{
    const auto state = Filled();
    open_keys = 0;
    state->registry.v_GetValue(&state->text_name, &state->out);
    EXPECT_EQ(open_keys, 0);
    EXPECT_EQ(TakeFailure().code, DWORD(ERROR_INVALID_PARAMETER));
    EXPECT_EQ(state->out.n_GetUsedSize(), 0U);
}

namespace
{
// Stores the value as another process would.
void StoreElsewhere(const char* name, DWORD type, const std::string& bytes)
{
    HKEY key = nullptr;
    RealOpen(HKEY_CURRENT_USER, Wide(std::string("Software\\OstraSweep")).c_str(), 0,
             KEY_ALL_ACCESS, &key);
    EXPECT_EQ(RealStore(key, Wide(std::string(name)).c_str(), 0, type,
                        reinterpret_cast<const BYTE*>(bytes.data()),
                        static_cast<DWORD>(bytes.size())),
              0);
    RealClose(key);
}

class ChangingValue : public testing::Test
{
protected:
    ChangingValue() { open_keys = 0; }
    ~ChangingValue() override { behind = nullptr; }

    // Fetches data of which others make that, one behind each question.
    Failure Fetch(DWORD type, const std::vector<std::string>& changes)
    {
        questions = 0;
        behind = [&, type](LSTATUS code) {
            if (questions < changes.size())
                StoreElsewhere("data", type, changes[questions]);
            ++questions;
            return code;
        };
        return FetchAnswered();
    }
    Failure FetchAnswered()
    {
        state->registry.v_GetValue(&state->data_name, &state->out);
        behind = nullptr;
        EXPECT_EQ(open_keys, 0);
        return TakeFailure();
    }
    std::string Fetched() const
    {
        return {static_cast<const char*>(state->out.qcv_Get()), state->out.n_GetUsedSize()};
    }

    const std::unique_ptr<State> state = Filled();
    unsigned questions = 0;
};
} // namespace

TEST_F(ChangingValue, ThatGrowsIsFetchedWhole)
{
    EXPECT_EQ(Fetch(REG_BINARY, {std::string(100, 'x')}), Failure());
    EXPECT_EQ(Fetched(), std::string(100, 'x'));
    EXPECT_EQ(Fetch(REG_BINARY, {std::string(101, 'y'), std::string(70000, 'z')}), Failure());
    EXPECT_EQ(Fetched(), std::string(70000, 'z'));
    EXPECT_EQ(questions, 4U);
}

TEST_F(ChangingValue, ThatGrowsFromNothingIsFetchedWhole)
{
    StoreElsewhere("data", REG_BINARY, "");
    EXPECT_EQ(Fetch(REG_BINARY, {std::string(60, 'x')}), Failure());
    EXPECT_EQ(Fetched(), std::string(60, 'x'));
}

TEST_F(ChangingValue, ThatShrinksIsFetchedAsItIsThen)
{
    EXPECT_EQ(Fetch(REG_BINARY, {"short"}), Failure());
    EXPECT_EQ(Fetched(), "short");
    EXPECT_EQ(questions, 2U);
}

TEST_F(ChangingValue, ThatBecomesOneOfAnotherTypeIsRefused)
{
    EXPECT_EQ(Fetch(REG_SZ, {"a text"}).code, DWORD(ERROR_INVALID_PARAMETER));
    EXPECT_EQ(Fetched(), "");
}

TEST_F(ChangingValue, ThatIsNeverWholeIsReported)
{
    behind = [this](LSTATUS code) {
        return ++questions == 1 ? code : ERROR_MORE_DATA;
    };
    const Failure failure = FetchAnswered();
    EXPECT_EQ(failure.code, DWORD(ERROR_MORE_DATA));
    EXPECT_EQ(failure.trail.at(0), "System/Registry/Registry");
    EXPECT_EQ(questions, 2U);
    EXPECT_EQ(Fetched(), "");
}
#endif

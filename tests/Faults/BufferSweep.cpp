// tests/Faults/BufferSweep.cpp: CT_Buffer with an exhausted heap.
#include <Ostra/Buffer/Buffer.h>

#include "Faults/Sweep.h"
#include "Support/Endless.h"

#include <memory>
#include <string>

namespace
{
const SweepReport report("Ostra/Buffer/Buffer");
const std::string twenty = "0123456789ABCDEFGHIJ";

// A full block of room 20, and another buffer that may share it.
struct State
{
    CT_Buffer buffer;
    CT_Buffer other;
    unsigned count = 0;
};

std::string Bytes(const CT_Buffer& buffer)
{
    return std::string(static_cast<const char*>(buffer.qcv_Get()), buffer.n_GetUsedSize());
}

std::unique_ptr<State> Filled(const std::string& bytes)
{
    auto state = std::make_unique<State>();
    state->buffer.v_Set(bytes.data(), static_cast<unsigned>(bytes.size()), 32);
    state->count = CT_Buffer::sn_GetAllocCount();
    return state;
}

std::unique_ptr<State> Full()
{
    return Filled(twenty);
}

std::unique_ptr<State> Shared(const std::string& bytes)
{
    auto state = Filled(bytes);
    state->other.v_Set(&state->buffer);
    return state;
}

// The object can be used: takes a value, and gives it back.
void ExpectUsable(CT_Buffer& buffer)
{
    buffer.v_Set("new value that needs another block", 34, 0xFFFFFFFF);
    EXPECT_EQ(Bytes(buffer), "new value that needs another block");
}

// A sweep of an operation on a full block, told by the bytes before it, after it, and after its
// failure.
template <typename T_Operation>
void SweepChange(const std::string& before, T_Operation operation, const std::string& after,
                 const std::string& after_failure)
{
    Sweep(
        report, [&] { return Filled(before); }, operation,
        [&](State& state, bool failed) {
            EXPECT_EQ(Bytes(state.buffer), failed ? after_failure : after);
            EXPECT_EQ(CT_Buffer::sn_GetAllocCount(), state.count + 1);
            EXPECT_EQ(state.buffer.n_GetUseCount(), 1U);
            ExpectUsable(state.buffer);
        });
}

// The same on a block that another buffer shares. A block that can't be copied is written while it
// is shared.
template <typename T_Operation>
void SweepShared(const std::string& before, T_Operation operation, const std::string& after,
                 const std::string& after_failure)
{
    Sweep(
        report, [&] { return Shared(before); }, operation,
        [&](State& state, bool failed) {
            EXPECT_EQ(Bytes(state.buffer), failed ? after_failure : after);
            EXPECT_EQ(Bytes(state.other), failed ? after_failure : before);
            EXPECT_EQ(CT_Buffer::sn_GetAllocCount(), state.count + 1);
            EXPECT_EQ(state.buffer.n_GetUseCount(), failed ? 2U : 1U);
            EXPECT_EQ(state.other.n_GetUseCount(), failed ? 2U : 1U);
            ExpectUsable(state.buffer);
            ExpectUsable(state.other);
        });
}
} // namespace

// ---- Objects --------------------------------------------------------------------------------

TEST(BufferSweep, NewObject)
{
    struct Pointer
    {
        ~Pointer() { delete buffer; }
        CT_Buffer* buffer = nullptr;
    };
    Sweep(
        report, [] { return std::make_unique<Pointer>(); },
        [](Pointer& state) { state.buffer = new CT_Buffer; },
        [](Pointer& state, bool failed) {
            EXPECT_EQ(state.buffer == nullptr, failed);
            delete state.buffer;
            state.buffer = new CT_Buffer;
            ExpectUsable(*state.buffer);
        });
}

TEST(BufferSweep, NewObjectAddsAPlaceToAnEarlierError)
{
    Errors().v_SetError(1, Units(u"earlier"));
    FailingHeap::Arm(1, FailingHeap::FROM);
    CT_Buffer* buffer = new CT_Buffer;
    EXPECT_EQ(FailingHeap::Disarm(), 1U);
    EXPECT_EQ(buffer, nullptr);
    EXPECT_EQ(TakeFailure(), (Failure{1, "(1): earlier", {"Ostra/Buffer/Buffer"}}));
}

ENDLESS(BufferNewWithAnIgnoredError)
{
    Errors().v_SetError(1, Units(u"earlier"));
    Errors().v_SetIgnoreError(1);
    FailingHeap::Arm(1, FailingHeap::FROM);
    delete new CT_Buffer;
}

TEST(BufferSweep, NewObjectWithAnIgnoredErrorNeverLeavesItsLoop)
{
    EXPECT_TRUE(RunsForEver("BufferNewWithAnIgnoredError"));
}

// ---- Making a block -------------------------------------------------------------------------

namespace
{
struct Maker
{
    ~Maker()
    {
        if (buffer)
            buffer->~CT_Buffer();
    }
    alignas(CT_Buffer) char place[sizeof(CT_Buffer)];
    CT_Buffer* buffer = nullptr;
    unsigned count = CT_Buffer::sn_GetAllocCount();
};

template <typename T_Make>
void SweepMake(T_Make make, const std::string& bytes, unsigned growth)
{
    Sweep(
        report, [] { return std::make_unique<Maker>(); },
        [&](Maker& state) { state.buffer = make(state.place); },
        [&](Maker& state, bool failed) {
            EXPECT_EQ(state.buffer->qcv_Get() == nullptr, failed);
            EXPECT_EQ(Bytes(*state.buffer), failed ? "" : bytes);
            EXPECT_EQ(state.buffer->n_GetGrowth(), growth);
            EXPECT_EQ(CT_Buffer::sn_GetAllocCount(), state.count + 1);
            ExpectUsable(*state.buffer);
        });
}
} // namespace

TEST(BufferSweep, ConstructorWithSize)
{
    SweepMake([](void* place) { return new (place) CT_Buffer(100, 64); }, "", 64);
}

TEST(BufferSweep, ConstructorWithBytes)
{
    SweepMake([](void* place) { return new (place) CT_Buffer("bytes", 5, 16); }, "bytes", 16);
}

TEST(BufferSweep, SetLetsGoOfTheBlockFirst)
{
    for (const int keep : {0, 1})
        SweepChange(
            twenty, [keep](State& state) { state.buffer.v_Set(100, 0xFFFFFFFF, keep); }, "", "");
}

TEST(BufferSweep, SetOfBytesKeepsTheOldState)
{
    SweepChange(
        twenty, [](State& state) { state.buffer.v_Set("bytes", 5, 32); }, "bytes", twenty);
    SweepChange(
        twenty,
        [](State& state) {
            const char* own = static_cast<const char*>(state.buffer.qcv_Get());
            state.buffer.v_Set(own + 3, 5, 0xFFFFFFFF);
        },
        "34567", twenty);
    Sweep(
        report, [] { return Shared(twenty); },
        [](State& state) { state.buffer.v_Set("bytes", 5, 64); },
        [](State& state, bool failed) {
            EXPECT_EQ(Bytes(state.buffer), failed ? twenty : "bytes");
            EXPECT_EQ(state.buffer.n_GetGrowth(), failed ? 32U : 64U);
            EXPECT_EQ(Bytes(state.other), twenty);
            EXPECT_EQ(state.other.n_GetUseCount(), failed ? 2U : 1U);
            ExpectUsable(state.buffer);
        });
}

TEST(BufferSweep, SetLetsGoOfASharedBlockFirst)
{
    Sweep(
        report, [] { return Shared(twenty); },
        [](State& state) { state.buffer.v_Set(100, 0xFFFFFFFF, 1); },
        [](State& state, bool failed) {
            EXPECT_EQ(state.buffer.qcv_Get() == nullptr, failed);
            EXPECT_EQ(Bytes(state.other), twenty);
            EXPECT_EQ(state.other.n_GetUseCount(), 1U);
            ExpectUsable(state.buffer);
        });
}

// ---- Sizes ----------------------------------------------------------------------------------

TEST(BufferSweep, SetSizeKeepsTheOldState)
{
    for (const unsigned size : {40U, 1000U, 5U}) {
        SCOPED_TRACE(size);
        for (const int keep : {0, 1}) {
            Sweep(
                report, [] { return Filled(std::string(200, 'x')); },
                [=](State& state) { state.buffer.v_SetSize(size, keep); },
                [=](State& state, bool failed) {
                    const unsigned maximum = failed ? 212 : (32 + size + 11) / 32 * 32 - 12;
                    const unsigned used = failed ? 200 : keep ? std::min(200U, maximum) : 0;
                    EXPECT_EQ(state.buffer.n_GetMaximumSize(), maximum);
                    EXPECT_EQ(Bytes(state.buffer), std::string(used, 'x'));
                    EXPECT_EQ(CT_Buffer::sn_GetAllocCount(), state.count + 1);
                    ExpectUsable(state.buffer);
                });
        }
    }
}

TEST(BufferSweep, SetSizeOfASharedBlock)
{
    SweepShared(
        "shared", [](State& state) { state.buffer.v_SetSize(20, 1); }, "shared", "shared");
}

TEST(BufferSweep, SetMinSizeKeepsTheOldState)
{
    SweepChange(
        twenty, [](State& state) { state.buffer.v_SetMinSize(21, 1); }, twenty, twenty);
}

TEST(BufferSweep, SizesBeyond32BitsAreExhaustion)
{
    const unsigned huge[] = {0xFFFFFFFF, 0xFFFFFFF0, 0xFFFFFFD5};
    for (unsigned size : huge) {
        SCOPED_TRACE(size);
        const unsigned count = CT_Buffer::sn_GetAllocCount();
        CT_Buffer buffer(twenty.data(), 20, 32);
        buffer.v_SetSize(size, 1);
        EXPECT_EQ(TakeFailure(),
                  (Failure{60006, "(60006): Out of memory", {"Ostra/Buffer/Buffer"}}));
        EXPECT_EQ(Bytes(buffer), twenty);
        buffer.v_Insert('x', size, 3);
        EXPECT_EQ(TakeFailure().code, 60006U);
        EXPECT_EQ(Bytes(buffer), twenty);
        buffer.v_Set(size, 32, 1);
        EXPECT_EQ(TakeFailure().code, 60006U);
        EXPECT_EQ(buffer.qcv_Get(), nullptr);
        EXPECT_EQ(CT_Buffer::sn_GetAllocCount(), count + 4);
    }
}

// ---- Changes: behind a failed growth they stop at the room's end ----------------------------

TEST(BufferSweep, ChangeThatGrows)
{
    const std::string ten = twenty.substr(0, 10);
    SweepChange(
        twenty, [](State& state) { state.buffer.v_Append('x'); }, twenty + "x", twenty);
    SweepChange(
        twenty, [](State& state) { state.buffer.v_Append("xyz", 3); }, twenty + "xyz", twenty);
    SweepChange(
        ten, [](State& state) { state.buffer.v_Append("abcdefghijklmn", 14); },
        ten + "abcdefghijklmn", ten + "abcdefghij");
    SweepChange(
        ten, [](State& state) { state.buffer.v_Insert("abcdefghijklmn", 14, 4); },
        "0123abcdefghijklmn456789", "0123abcdefghij456789");
    SweepChange(
        ten, [](State& state) { state.buffer.v_Insert('x', 14, 4); },
        "0123" + std::string(14, 'x') + "456789", "0123" + std::string(10, 'x') + "456789");
    SweepChange(
        ten, [](State& state) { state.buffer.v_Replace("abcdefghijklmn", 14, 8); },
        "01234567abcdefghijklmn", "01234567abcdefghijkl");
    SweepChange(
        ten, [](State& state) { state.buffer.v_Replace('x', 14, 8); },
        "01234567" + std::string(14, 'x'), "01234567" + std::string(12, 'x'));
}

TEST(BufferSweep, ReplaceBehindTheRoomWritesNothing)
{
    void (*const operations[])(CT_Buffer&) = {
        [](CT_Buffer& buffer) { buffer.v_Replace("012", 3, 40); },
        [](CT_Buffer& buffer) { buffer.v_Replace(buffer.qcv_Get(), 3, 40); },
        [](CT_Buffer& buffer) { buffer.v_Replace(&buffer, 0, 3, 40); },
        [](CT_Buffer& buffer) { buffer.v_Replace('0', 3, 40); },
    };
    for (const auto operation : operations)
        Sweep(
            report, Full, [=](State& state) { operation(state.buffer); },
            [](State& state, bool failed) {
                EXPECT_EQ(state.buffer.n_GetUsedSize(), failed ? 20U : 43U);
                EXPECT_EQ(Bytes(state.buffer).substr(0, 20), twenty);
                EXPECT_TRUE(failed || Bytes(state.buffer)[40] == '0');
            });
}

TEST(BufferSweep, ChangeOfNoBlock)
{
    struct Empty
    {
        CT_Buffer buffer;
    };
    void (*const operations[])(CT_Buffer&) = {
        [](CT_Buffer& buffer) { buffer.v_Append('a'); },
        [](CT_Buffer& buffer) { buffer.v_Append("a", 1); },
        [](CT_Buffer& buffer) { buffer.v_Insert("a", 1, 0); },
        [](CT_Buffer& buffer) { buffer.v_Insert('a', 1, 0); },
        [](CT_Buffer& buffer) { buffer.v_Replace("a", 1, 0); },
        [](CT_Buffer& buffer) { buffer.v_Replace('a', 1, 0); },
    };
    for (const auto operation : operations)
        Sweep(
            report, [] { return std::make_unique<Empty>(); },
            [=](Empty& state) { operation(state.buffer); },
            [](Empty& state, bool failed) {
                EXPECT_EQ(Bytes(state.buffer), failed ? "" : "a");
                ExpectUsable(state.buffer);
            });
}

TEST(BufferSweep, ChangeOfASharedBlockThatCannotBeCopied)
{
    SweepShared(
        "shared", [](State& state) { state.buffer.v_CopyWeWrite(); }, "shared", "shared");
    SweepShared(
        "shared", [](State& state) { state.buffer.v_SetUsedSize(3); }, "sha", "sha");
    SweepShared(
        "shared", [](State& state) { state.buffer.v_Append('x'); }, "sharedx", "sharedx");
    SweepShared(
        "shared", [](State& state) { state.buffer.v_Append("xy", 2); }, "sharedxy", "sharedxy");
    SweepShared(
        "shared", [](State& state) { state.buffer.v_Insert("xy", 2, 1); }, "sxyhared", "sxyhared");
    SweepShared(
        "shared", [](State& state) { state.buffer.v_Replace('x', 2, 1); }, "sxxred", "sxxred");
    SweepShared(
        "shared", [](State& state) { state.buffer.v_Replace("xy", 2, 1); }, "sxyred", "sxyred");
    SweepShared(
        "shared", [](State& state) { state.buffer.v_Replace(state.buffer.qcv_Get(), 2, 1); },
        "sshred", "sshred");
    SweepShared(
        "shared", [](State& state) { state.buffer.v_Insert(state.buffer.qcv_Get(), 2, 1); },
        "sshhared", "sshhared");
    SweepShared(
        "shared", [](State& state) { state.buffer.v_Remove(2, 1); }, "sred", "sred");
    SweepShared(
        "shared", [](State& state) { state.buffer.v_Append("0123456789ABCDEFGH", 18); },
        "shared0123456789ABCDEFGH", "shared0123456789ABCD");
}

// ---- Ranges ---------------------------------------------------------------------------------

TEST(BufferSweep, CopyWithinTheBufferThatGrows)
{
    SweepChange(
        twenty, [](State& state) { state.buffer.v_AtInsertCopy(2, 3, 0); }, "234" + twenty, twenty);
}

TEST(BufferSweep, MoveThroughTheHeapReportsWithCodeZero)
{
    std::string bytes;
    for (int n = 0; n < 52; ++n)
        bytes += static_cast<char>('A' + n);
    Sweep(
        SweepReport("Ostra/Buffer/Buffer", 0), [&] { return Filled(bytes); },
        [](State& state) { state.buffer.v_AtInsertMove(10, 33, 0); },
        [&](State& state, bool failed) {
            const std::string moved = bytes.substr(10, 33) + bytes.substr(0, 10) + bytes.substr(43);
            EXPECT_EQ(Bytes(state.buffer), failed ? bytes : moved);
            EXPECT_EQ(CT_Buffer::sn_GetAllocCount(), state.count);
        });
}

TEST(BufferSweep, ChangeByItsOwnBytesThatGrows)
{
    const std::string sixteen = twenty.substr(0, 16);
    SweepChange(
        twenty, [](State& state) { state.buffer.v_Append(state.buffer.qcv_Get(), 5); },
        twenty + "01234", twenty);
    SweepChange(
        sixteen, [](State& state) { state.buffer.v_Insert(&state.buffer, 2, 8, 4); },
        "012323456789456789ABCDEF", "01232345456789ABCDEF");
    SweepChange(
        twenty, [](State& state) { state.buffer.v_Replace(&state.buffer, 2, 8, 18); },
        "0123456789ABCDEFGH23456789", "0123456789ABCDEFGH23");
    SweepChange(
        twenty,
        [](State& state) {
            const char* own = static_cast<const char*>(state.buffer.qcv_Get());
            state.buffer.v_Replace(own + 2, 8, 18);
        },
        "0123456789ABCDEFGH23456789", "0123456789ABCDEFGH23");
}

TEST(BufferSweep, MoveBetweenBuffersThatFindsNoRoomTakesNothing)
{
    for (const std::string& before : {twenty, twenty.substr(0, 19)}) {
        Sweep(
            report,
            [&] {
                auto state = Filled(before);
                state->other.v_Set("abcdef", 6, 32);
                return state;
            },
            [](State& state) { state.buffer.v_AtInsertMove(&state.other, 1, 2, 3); },
            [&](State& state, bool failed) {
                EXPECT_EQ(Bytes(state.buffer), failed ? before : "012bc" + before.substr(3));
                EXPECT_EQ(Bytes(state.other), failed ? "abcdef" : "adef");
                ExpectUsable(state.buffer);
                ExpectUsable(state.other);
            });
    }
}

// Neither the target's block nor the source's is written for others that hold it.
TEST(BufferSweep, MoveBetweenSharedBuffersThatFindsNoRoomTakesNothing)
{
    struct Four
    {
        CT_Buffer buffer{"012345", 6, 32}, other{"abcdef", 6, 32};
        CT_Buffer holder{&buffer}, other_holder{&other};
    };
    Sweep(
        report, [] { return std::make_unique<Four>(); },
        [](Four& state) { state.buffer.v_AtInsertMove(&state.other, 1, 2, 3); },
        [](Four& state, bool failed) {
            EXPECT_EQ(Bytes(state.buffer), failed ? "012345" : "012bc345");
            EXPECT_EQ(Bytes(state.other), failed ? "abcdef" : "adef");
            EXPECT_EQ(Bytes(state.holder), "012345");
            EXPECT_EQ(Bytes(state.other_holder), "abcdef");
        });
}

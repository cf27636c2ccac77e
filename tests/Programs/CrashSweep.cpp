// tests/Programs/CrashSweep.cpp: record files whose writers end at any moment.
//
//   crash_sweep [SCALE]
//
// A process that works on a record file is ended in front of each call of the host that it makes,
// and in front of each store into the view of the file. Then power is lost: of the writes that were
// not flushed each is kept, dropped or cut. Whatever is left, what was saved and not touched since
// is there, what was touched gives data or one of the errors for such a file, and what the checker
// calls sound takes any work.
//
// Without SCALE a sample of the moments is taken; with it all of them, of that many pieces of work in
// each form.
#include <csignal>
#include <cstdio>
#include <cstdlib>

#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include "Crash/CrashCheck.h"
#include "Crash/CrashHost.h"
#include "Crash/CrashScript.h"
#include "Crash/PowerLoss.h"

namespace
{
constexpr int HANGS = 20;                        // seconds
constexpr unsigned IMAGES = 50, FEW_IMAGES = 10; // of a moment when power is lost
constexpr unsigned SAMPLE = 4;                   // of so many moments one, in a short run

// How far a writer has come, in memory that it shares with its parent.
struct Progress
{
    volatile unsigned operation;
};
Progress* progress;

// What is being looked at, for whoever has to look at it again.
std::string place;

void TellPlace(int signal)
{
    std::fprintf(stderr, "%s: %s\n", signal == SIGALRM ? "hangs" : "fails", place.c_str());
    std::_Exit(1);
}

void PutBase(const CrashScript& script)
{
    std::filesystem::remove(PathOf("records.rec"));
    if (!script.base.empty())
        WriteBytes(PathOf("records.rec"), script.base);
}

void PlayAll(const CrashScript& script)
{
    Records records;
    progress->operation = 0;
    for (const Operation& operation : script.operations) {
        script.Play(records, operation);
        progress->operation = progress->operation + 1;
    }
}

// False if the work came to its end before.
bool EndsAt(const CrashScript& script, unsigned step)
{
    PutBase(script);
    const pid_t writer = fork();
    REQUIRE(writer >= 0);
    if (writer == 0) {
        CrashHost::EndAt(step);
        PlayAll(script);
        _exit(0);
    }
    int status = 0;
    waitpid(writer, &status, 0);
    REQUIRE(WIFSIGNALED(status) ? WTERMSIG(status) == SIGKILL : WEXITSTATUS(status) == 0);
    return WIFSIGNALED(status);
}

void Add(CrashFigures& sum, const CrashFigures& figures)
{
    sum.files += figures.files;
    sum.refused += figures.refused;
    sum.unclosed += figures.unclosed;
    sum.sound += figures.sound;
    sum.touchedReads += figures.touchedReads;
    sum.touchedErrors += figures.touchedErrors;
    sum.foreign += figures.foreign;
    sum.chained += figures.chained;
}

// Every so many steps, each of them for 1.
CrashFigures Kill(const CrashScript& script, unsigned stride)
{
    CrashCheck check(script, CrashCheck::KILLED);
    for (unsigned step = 1;; step += stride) {
        alarm(HANGS);
        if (!EndsAt(script, step))
            return check.figures;
        place = script.name + ", killed at step " + std::to_string(step) + ", operation " +
                std::to_string(progress->operation);
        check.Look(script.DuringOperation(progress->operation), step);
    }
}

void PrepareShared()
{
    progress = static_cast<Progress*>(
        mmap(nullptr, sizeof(Progress), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0));
    REQUIRE(progress != MAP_FAILED);
}

CrashFigures KillAll(unsigned pieces, unsigned stride)
{
    CrashFigures sum;
    for (const CrashForm& form : CrashScript::FORMS) {
        for (unsigned seed = 1; seed <= pieces; ++seed) {
            Add(sum, Kill(CrashScript::Creating(form, seed), stride));
            Add(sum, Kill(CrashScript::Working(form, seed, false), stride));
            Add(sum, Kill(CrashScript::Working(form, seed, true), stride));
        }
    }
    return sum;
}

CrashFigures LosePower(const CrashScript& script, unsigned stride, unsigned images,
                       unsigned* points)
{
    const PowerLoss loss(script);
    CrashCheck check(script, CrashCheck::POWER_LOST);
    for (unsigned count = 0; count <= loss.Count(); count += stride, ++*points) {
        for (unsigned seed = 0; seed < images; ++seed) {
            alarm(HANGS);
            place = script.name + ", power lost behind write " + std::to_string(count) +
                    ", image " + std::to_string(seed);
            std::filesystem::remove(PathOf("records.rec"));
            WriteBytes(PathOf("records.rec"), loss.Image(count, seed));
            check.Look(loss.SinceFlush(count), seed);
        }
    }
    return check.figures;
}

CrashFigures LoseAll(unsigned pieces, unsigned stride, unsigned images, unsigned* points)
{
    CrashFigures sum;
    for (const CrashForm& form : CrashScript::FORMS)
        for (unsigned seed = 1; seed <= pieces; ++seed)
            Add(sum, LosePower(CrashScript::Working(form, seed, false), stride, images, points));
    return sum;
}
} // namespace

int main(int argc, char** argv)
{
    const unsigned scale = argc > 1 ? static_cast<unsigned>(std::strtoul(argv[1], nullptr, 10)) : 0;
    const unsigned pieces = scale ? scale : 1;
    const unsigned stride = scale ? 1 : SAMPLE;
    PrepareShared();
    std::signal(SIGABRT, TellPlace);
    std::signal(SIGALRM, TellPlace);
    const CrashFigures killed = KillAll(pieces, stride);
    std::printf("crash sweep: %u points, %u with an overflowed free table, all as promised: %u no "
                "record file yet, %u told as unclosed, %u sound and worked on\n",
                killed.files, killed.chained, killed.refused, killed.unclosed, killed.sound);
    unsigned points = 0;
    const CrashFigures lost = LoseAll(pieces, stride, scale ? IMAGES : FEW_IMAGES, &points);
    std::printf(
        "power loss: %u points, %u files, all as promised: %u told as unclosed, %u sound and "
        "worked on; %u reads of touched ones, %u with bytes of others\n",
        points, lost.files, lost.unclosed, lost.sound, lost.touchedReads, lost.foreign);
    return 0;
}

// examples/recode/Recode.cpp
#include "Recode.h"

#include "Converter.h"
#include "Options.h"
#include "Source.h"
#include "Target.h"

#include <Common/Failure.h>
#include <Common/Progress.h>
#include <Common/Utf8.h>

#include <windows.h>

#include <new>

namespace recode
{
using namespace common;

namespace
{
constexpr char SOURCE[] = "recode/Recode";

// One run of the program.
class Job
{
public:
    Job(const Options& given, const Streams& where) : options(given), streams(where) {}

    Status Run();

private:
    bool Name(const std::string& given, CT_UString* name) const;
    bool Open();
    bool Convert();
    bool Pour(Converter* converter);
    bool Finish(const Converter& converter);
    void Tell(const std::string& sentence) const;
    Status Report(const std::string& context);

    const Options& options;
    const Streams& streams;
    Source source;
    Target target;
    Encoding from;
};

Status Job::Run()
{
    if (!Open())
        return Report("cannot read " + options.source);
    if (!Convert())
        return Report("cannot convert " + options.source);
    return DONE;
}

// A file name of the command line.
bool Job::Name(const std::string& given, CT_UString* name) const
{
    if (!IsUtf8(given))
        Fail(SOURCE, u"a name is not well-formed UTF-8");
    else
        ToWide(given, name);
    return !Failing();
}

bool Job::Open()
{
    CT_UString name;
    if (!Name(options.source, &name) ||
        !source.Open(name, options.source == "-" ? streams.input : nullptr))
        return false;
    if (options.from) {
        from = *options.from;
        if (from.IsUtf16() && source.Begins("\xFE\xFF"))
            from.Parse("utf-16be");
    } else if (source.Guess(&from))
        Tell(options.source + " is " + from.Name());
    // Without another one the target has the encoding of the source, and its mark.
    if (from.kind == Encoding::UTF8)
        from.marked = source.Begins("\xEF\xBB\xBF");
    return !Failed(SOURCE);
}

bool Job::Convert()
{
    CT_UString name;
    if (!Name(options.target, &name))
        return false;
    Converter converter(from, options.to.value_or(from), options);
    return target.Open(name, options.target == "-" ? &streams.output : nullptr) &&
           Pour(&converter) && Finish(converter) && !Failed(SOURCE);
}

bool Job::Pour(Converter* converter)
{
    Progress progress(streams.terminal, "converting");
    std::string made;
    bool last = false;
    do {
        const std::string_view block = source.Next();
        last = block.empty() || source.Done() == source.Size();
        made.clear();
        // What comes before an ill-formed place is text all the same.
        const bool good = !Failing() && converter->Take(block, last, &made);
        if (Failing() && !good)
            return false;
        if (!target.Write(made))
            return false;
        progress.Show(source.Done(), source.Size());
    } while (!last);
    return !Failed(SOURCE);
}

// The source is closed first: it may be what the target replaces.
bool Job::Finish(const Converter& converter)
{
    source.Close();
    if (converter.HasLost() && !options.replace && !Failing()) {
        CT_UString text;
        ToWide(converter.Lost(), &text);
        Fail(SOURCE, u"%s", text.qcuz_Get());
    }
    if (Failing() || !target.Commit())
        return false;
    for (const std::string& sentence : {converter.IllFormed(), converter.Lost()}) {
        if (!sentence.empty())
            Tell(sentence);
    }
    return true;
}

void Job::Tell(const std::string& sentence) const
{
    std::string line = "recode: " + sentence;
    for (char& c : line)
        if (static_cast<unsigned char>(c) < 0x20 || c == 0x7F)
            c = '?';
    streams.errors << line << '\n';
}

// Takes away what was written, and tells why.
Status Job::Report(const std::string& context)
{
    CT_ErrorManager* errors = CT_ErrorManager::spco_Get();
    const Failure failure = Failure::Copy();
    // Cleaning up has to start without an error; the window shows it later.
    errors->v_HoldError();
    target.Discard();
    failure.Print(streams.errors, "recode", context, options.trace);
    streams.errors.flush();
    if (options.box)
        errors->i_ErrorLocationWindow(0, qcuz_Text(u"recode"), MB_OK | MB_ICONERROR);
    if (errors->b_IsHoldError())
        errors->v_ClearError();
    return FAILED;
}

Status RunJob(const Options& options, const Streams& streams)
{
    try {
        return Job(options, streams).Run();
    } catch (const std::bad_alloc&) {
        streams.errors << "recode: out of memory\n";
        return FAILED;
    }
}
} // namespace

Status Run(const std::vector<std::string>& words, const Streams& streams)
{
    Options options;
    const std::string wrong = options.Parse(words);
    if (!wrong.empty()) {
        streams.errors << "recode: " << wrong << "\n" << USAGE_TEXT;
        return USAGE;
    }
    Status status = DONE;
    if (options.help)
        streams.output << HELP_TEXT;
    else if (options.version)
        streams.output << "recode (Ostra) " OSTRA_TOOL_VERSION "\n";
    else
        status = RunJob(options, streams);
    if (status == DONE && !streams.output.flush()) {
        streams.errors << "recode: cannot write the output\n";
        status = FAILED;
    }
    return status;
}
} // namespace recode

// examples/lexicon/Commands.cpp
#include "Commands.h"

#include "Arguments.h"
#include "Builder.h"
#include "Drawing.h"
#include "Lexicon.h"
#include "Statistics.h"
#include "Wildcard.h"

#include <Ostra/CompList/UCompListIterator.h>
#include <Common/Failure.h>
#include <Common/Output.h>
#include <Common/Spool.h>
#include <Common/Utf8.h>

#include <algorithm>
#include <new>

namespace lexicon
{
using namespace common;

namespace
{
constexpr char SOURCE[] = "lexicon/Commands";

constexpr unsigned FILE_BUFFER = 4096;
constexpr unsigned ATTRIBUTE_NORMAL = 1;

// One run of the program.
class Job
{
public:
    Job(const Arguments& given, const Streams& where) : arguments(given), streams(where) {}

    Status Run();

private:
    Status Build();
    Status LookUp();
    Status Match();
    Status List();
    Status Info();
    Status Stats();
    Status Draw();

    bool TakePart(const Lexicon& lexicon, const CT_UString& prefix, Subtree* part) const;
    bool WritePicture(const CT_UString& name, const std::string& picture) const;
    bool Write(const CT_UString& name, const std::string& picture) const;
    bool Save(Builder* builder, Output* output);
    bool Abandon(Output* output, const std::string& name) const;
    bool IsWord(size_t n, const std::string& what) const;
    bool TakeWords() const;
    Side WantedSide() const { return arguments.reverse ? TARGETS : SOURCES; }
    bool Survey(const Lexicon& lexicon, Side side, Statistics* statistics) const;
    std::vector<unsigned> FindMatches(const CT_CompList& list, Wildcard* wildcard) const;
    void PrintAnswer(std::string_view word, const Found& found) const;
    void PrintInfo(const Lexicon& lexicon);
    void PrintSide(const Lexicon& lexicon, Side side);

    const std::string& Operand(size_t n) const { return arguments.operands[n]; }
    bool Name(size_t n, CT_UString* name) const;
    bool PictureName(const CT_UString& input, CT_UString* name) const;
    Status Report(const std::string& context) const;
    bool IsStandardInput() const { return Operand(0) == "-" && streams.input; }
    bool FileName(CT_UString* name);
    Status ReportUnreadable() const { return Report("cannot read " + Operand(0)); }

    const Arguments& arguments;
    const Streams& streams;
    common::Spool spool;
};

bool IsSame(const CT_UString& first, const CT_UString& second)
{
    std::error_code error;
    const std::filesystem::path one = PathOf(first);
    const std::filesystem::path other = PathOf(second);
    return one == other || std::filesystem::equivalent(one, other, error);
}

// True if all of a lexicon can be read. The thread has no error set, before and after.
bool IsWhole(const CT_UString& name)
{
    Lexicon lexicon(&name);
    if (lexicon.Open() && lexicon.Load(SOURCES) && lexicon.Load(TARGETS))
        return true;
    Failure::Take();
    return false;
}

bool Collect(Input* input, Builder* builder, std::ostream* terminal)
{
    Progress progress(terminal, "reading");
    Pair pair;
    while (input->Next(&pair)) {
        builder->Add(pair);
        progress.Show(input->Done(), input->Size());
    }
    return !Failed(SOURCE);
}

// The first units of a key in characters: the half of a pair that its other half doesn't follow is
// none.
unsigned Characters(const CT_UString& key, unsigned units)
{
    unsigned count = 0;
    for (unsigned n = 0; n < units; ++n)
        count += (key.u_GetAt(n) & 0xFC00) != 0xD800;
    return count;
}

std::string Measure(unsigned size, size_t records)
{
    return std::to_string(size) + " bytes in " + std::to_string(records) +
           (records == 1 ? " record" : " records");
}

Status Job::Run()
{
    if (arguments.command == "build")
        return Build();
    if (arguments.command == "lookup")
        return LookUp();
    if (arguments.command == "match")
        return Match();
    if (arguments.command == "list")
        return List();
    if (arguments.command == "info")
        return Info();
    if (arguments.command == "stats")
        return Stats();
    return Draw();
}

// A file name of the command line.
bool Job::Name(size_t n, CT_UString* name) const
{
    if (!common::IsUtf8(Operand(n)))
        Fail(SOURCE, u"argument %u is not well-formed UTF-8", static_cast<unsigned>(n + 1));
    else
        common::ToWide(Operand(n), name);
    return !Failing();
}

// The name of the record file; the standard input is kept in a file for the time.
bool Job::FileName(CT_UString* name)
{
    if (!IsStandardInput())
        return Name(0, name);
    std::string file;
    if (!spool.Take(*streams.input, &file))
        Fail(SOURCE, u"the standard input can't be read, or there is no room to keep it");
    else
        common::ToWide(file, name);
    return !Failing();
}

Status Job::Report(const std::string& context) const
{
    Failure::Take().Print(streams.errors, "lexicon", context, arguments.trace);
    return FAILED;
}

Status Job::Build()
{
    CT_UString inputName;
    CT_UString outputName;
    Output output;
    if (!Name(0, &inputName) || !Name(1, &outputName))
        return Report("");
    if (!IsStandardInput() && IsSame(inputName, outputName) && !Failing())
        Fail(SOURCE, u"%s: this is the input as well as the output", inputName.qcuz_Get());
    // A lexicon that is whole and never got its name may be the only one, so it gets it now.
    if (!Failing() && output.Take(outputName) && output.IsOnlyFresh() && IsWhole(output.Fresh()))
        output.Commit();
    if (Failed(SOURCE))
        return Report("cannot build " + Operand(1));

    Input input(&inputName);
    Builder builder;
    if (!input.Read(IsStandardInput() ? streams.input : nullptr) ||
        !Collect(&input, &builder, streams.terminal))
        return ReportUnreadable();
    if (!Save(&builder, &output))
        return FAILED;
    streams.output << Operand(1) << ": " << builder.Pairs() << " pairs, " << builder.Words(SOURCES)
                   << " words, " << builder.Words(TARGETS) << " words in reverse\n";
    return DONE;
}

bool Job::Save(Builder* builder, Output* output)
{
    {
        Progress progress(streams.terminal, "building");
        if (output->Start())
            builder->Save(&output->Fresh(), &progress);
    }
    output->LeaveToOthers();
    if (!Failing())
        output->Commit();
    return !Failed(SOURCE) || Abandon(output, Operand(1));
}

// Reports the error and takes away what was written; false.
bool Job::Abandon(Output* output, const std::string& name) const
{
    // The error is taken first: cleaning up has to start without one, and what it meets is of no
    // interest.
    const Failure failure = Failure::Take();
    if (output->IsTaken())
        output->Discard();
    failure.Print(streams.errors, "lexicon", "cannot write " + name, arguments.trace);
    return false;
}

// Whether an operand can be a key, or a part of one.
bool Job::IsWord(size_t n, const std::string& what) const
{
    CT_UString name;
    common::ToWide(what, &name);
    unsigned reserved = 0;
    if (!common::IsUtf8(Operand(n)))
        Fail(SOURCE, u"%s is not well-formed UTF-8", name.qcuz_Get());
    else if (!IsKey(Operand(n), &reserved))
        Fail(SOURCE, u"%s holds U+%04X, which no key can hold", name.qcuz_Get(), reserved);
    return !Failing();
}

bool Job::TakeWords() const
{
    for (size_t n = 1; n < arguments.operands.size() && !Failing(); ++n) {
        if (IsWord(n, "word " + std::to_string(n)) && Operand(n).empty())
            Fail(SOURCE, u"word %u is empty", static_cast<unsigned>(n));
    }
    return !Failing();
}

Status Job::LookUp()
{
    CT_UString name;
    if (!FileName(&name) || !TakeWords())
        return Report("");
    Lexicon lexicon(&name);
    const Side side = WantedSide();
    const std::vector<std::string_view> words(arguments.operands.begin() + 1,
                                              arguments.operands.end());
    std::vector<Found> found;
    if (!lexicon.Open() || !lexicon.LoadList(side) || !lexicon.Find(side, words, &found))
        return ReportUnreadable();
    for (size_t n = 0; n < words.size(); ++n)
        PrintAnswer(words[n], found[n]);
    const bool missed = !std::ranges::all_of(found, &Found::isHit);
    return missed ? FAILED : DONE;
}

void Job::PrintAnswer(std::string_view word, const Found& found) const
{
    for (std::string_view other : found.entry.others)
        streams.output << word << '\t' << other << '\n';
    if (found.isHit)
        return;
    CT_UString key;
    common::ToWide(word, &key);
    streams.output << word << ": not found, " << Characters(key, found.matched) << " of "
                   << Characters(key, key.vn_GetLength()) << " characters matched\n";
}

// Reads the whole stream, so that walks over it may take it at its word.
bool Job::Survey(const Lexicon& lexicon, Side side, Statistics* statistics) const
{
    if (!statistics->Take(lexicon.List(side)))
        lexicon.RefuseList();
    return !Failing();
}

Status Job::Match()
{
    CT_UString name;
    CT_UString text;
    Wildcard wildcard;
    if (!FileName(&name) || !IsWord(1, "the pattern"))
        return Report("");
    common::ToWide(Operand(1), &text);
    if (!wildcard.Parse(text))
        return Report("");
    Lexicon lexicon(&name);
    const Side side = WantedSide();
    Statistics statistics;
    if (!lexicon.Open() || !lexicon.Load(side) || !Survey(lexicon, side, &statistics))
        return ReportUnreadable();
    const std::vector<unsigned> matches = FindMatches(lexicon.List(side), &wildcard);
    Entry entry;
    for (size_t n = 0; n < matches.size() && lexicon.At(side, matches[n], &entry); ++n)
        streams.output << entry.word << '\n';
    if (Failed(SOURCE))
        return ReportUnreadable();
    return matches.empty() ? FAILED : DONE;
}

// Their handles, in the order in which the words came in; the list has an order of its own.
std::vector<unsigned> Job::FindMatches(const CT_CompList& list, Wildcard* wildcard) const
{
    std::vector<unsigned> matches;
    CT_UCompListIterator iterator(&list);
    CT_UString key;
    unsigned handle;
    while (iterator.b_GetNext(&key, &handle)) {
        if (wildcard->Matches(key))
            matches.push_back(handle);
    }
    std::sort(matches.begin(), matches.end());
    return matches;
}

Status Job::List()
{
    CT_UString name;
    if (!FileName(&name))
        return Report("");
    Lexicon lexicon(&name);
    if (!lexicon.Open() || !lexicon.Load(SOURCES))
        return ReportUnreadable();
    Entry entry;
    unsigned position = 0;
    while (lexicon.Next(SOURCES, &position, &entry)) {
        for (std::string_view target : entry.others)
            streams.output << entry.word << '\t' << target << '\n';
    }
    return Failed(SOURCE) ? ReportUnreadable() : DONE;
}

Status Job::Info()
{
    CT_UString name;
    if (!FileName(&name))
        return Report("");
    Lexicon lexicon(&name);
    if (!lexicon.Open() || !lexicon.Load(SOURCES) || !lexicon.Load(TARGETS))
        return ReportUnreadable();
    PrintInfo(lexicon);
    return DONE;
}

void Job::PrintInfo(const Lexicon& lexicon)
{
    const CT_RecordManager& manager = lexicon.Manager();
    streams.output << "record file: " << manager.n_GetSize() << " bytes in blocks of "
                   << manager.n_GetBlockSize() << "\n"
                   << "records:     " << manager.n_GetRecordCount() << ", "
                   << manager.n_GetRecordHeaderSize() << " bytes of each in its head\n"
                   << "resources:   " << manager.n_GetResourceCount() << " of up to "
                   << manager.n_GetResourceMaxCount() << "; number " << DIRECTORY
                   << ", the directory, " << lexicon.DirectorySize() << " bytes\n"
                   << "pairs:       " << lexicon.Contents().pairs << "\n";
    PrintSide(lexicon, SOURCES);
    PrintSide(lexicon, TARGETS);
}

void Job::PrintSide(const Lexicon& lexicon, Side side)
{
    const CT_CompList& list = lexicon.List(side);
    const Part& part = lexicon.Contents().lists[side];
    const Texts& texts = lexicon.Contents().texts[side];
    streams.output << (side == SOURCES ? "sources" : "targets") << "\n"
                   << "  words:     " << list.n_GetNrOfEntries() << "\n"
                   << "  list:      " << Measure(part.size, part.record != 0) << "; elements of "
                   << list.n_GetElementSize() << " bytes, handles of " << list.n_GetHandleSize()
                   << ", " << (list.b_HasLongOffsetSupport() ? "long" : "short") << " offsets\n"
                   << "  texts:     " << Measure(texts.size, texts.pieces.size()) << "\n";
}

Status Job::Stats()
{
    CT_UString name;
    if (!FileName(&name))
        return Report("");
    Lexicon lexicon(&name);
    Statistics statistics[SIDES];
    if (!lexicon.Open())
        return ReportUnreadable();
    for (Side side : {SOURCES, TARGETS}) {
        if (!lexicon.Load(side) || !Survey(lexicon, side, &statistics[side]))
            return ReportUnreadable();
    }
    streams.output << "sources\n";
    statistics[SOURCES].Print(streams.output);
    streams.output << "\ntargets\n";
    statistics[TARGETS].Print(streams.output);
    return DONE;
}

Status Job::Draw()
{
    CT_UString name;
    CT_UString pictureName;
    CT_UString prefix;
    if (!FileName(&name) || !PictureName(name, &pictureName) || !IsWord(1, "the prefix"))
        return Report("cannot write " + arguments.output);
    common::ToWide(Operand(1), &prefix);
    Lexicon lexicon(&name);
    Subtree part;
    if (!lexicon.Open() || !lexicon.Load(WantedSide()) || !TakePart(lexicon, prefix, &part))
        return ReportUnreadable();
    const auto note = [&](unsigned handle) {
        Entry entry;
        std::string text;
        if (!Failing() && lexicon.At(WantedSide(), handle, &entry)) {
            for (std::string_view other : entry.others)
                text.append(text.empty() ? "" : ", ").append(other);
        }
        return text;
    };
    const std::string picture = lexicon::Draw(part, ELEMENT_SIZE, note);
    if (Failed(SOURCE))
        return ReportUnreadable();
    if (!WritePicture(pictureName, picture))
        return FAILED;
    streams.output << arguments.output << ": " << part.Words()
                   << (part.Words() == 1 ? " word" : " words") << "\n";
    return DONE;
}

// The name of the picture, which must not be that of the lexicon.
bool Job::PictureName(const CT_UString& input, CT_UString* name) const
{
    if (!common::IsUtf8(arguments.output)) {
        Fail(SOURCE, u"the name of the picture is not well-formed UTF-8");
        return false;
    }
    common::ToWide(arguments.output, name);
    if (IsSame(input, *name) && !Failing())
        Fail(SOURCE, u"%s: this is the input as well as the output", input.qcuz_Get());
    return !Failed(SOURCE);
}

bool Job::TakePart(const Lexicon& lexicon, const CT_UString& prefix, Subtree* part) const
{
    Statistics statistics;
    if (!Survey(lexicon, WantedSide(), &statistics))
        return false;
    const unsigned short* units = prefix.qcuz_Get();
    const std::vector<unsigned> elements(units, units + prefix.vn_GetLength());
    if (!part->Take(lexicon.List(WantedSide()), elements, arguments.limit))
        Fail(SOURCE, u"no word begins with \"%s\"", units);
    else if (part->Words() > arguments.limit)
        Fail(SOURCE,
             u"%u words begin with \"%s\", and a picture shows %u: give a longer prefix or --limit",
             part->Words(), units, arguments.limit);
    return !Failing();
}

bool Job::WritePicture(const CT_UString& name, const std::string& picture) const
{
    Output output;
    if (Output::IsStream(name))
        Write(name, picture);
    else if (output.Take(name) && output.Start() && Write(output.Fresh(), picture))
        output.Commit();
    else
        output.LeaveToOthers();
    return !Failed(SOURCE) || Abandon(&output, arguments.output);
}

bool Job::Write(const CT_UString& name, const std::string& picture) const
{
    CT_WinFile file(&name, FILE_BUFFER);
    file.vv_Open(CT_File::e_AccessWrite, CT_File::e_OpenCreate, CT_File::e_ShareNone,
                 ATTRIBUTE_NORMAL, 0);
    const unsigned size = static_cast<unsigned>(picture.size());
    if (!Failing() && file.vn_Write(picture.data(), size) != size && !Failing())
        Fail(SOURCE, u"%s: there is no room for the picture", name.qcuz_Get());
    if (!Failing())
        file.vv_Close();
    return !Failed(SOURCE);
}

Status RunJob(const Arguments& arguments, const Streams& streams)
{
    try {
        return Job(arguments, streams).Run();
    } catch (const std::bad_alloc&) {
        streams.errors << "lexicon: out of memory\n";
        return FAILED;
    }
}
} // namespace

Status Run(const std::vector<std::string>& words, const Streams& streams)
{
    Arguments arguments;
    const std::string wrong = arguments.Parse(words);
    if (!wrong.empty()) {
        streams.errors << "lexicon: " << wrong << "\n" << USAGE_TEXT;
        return USAGE;
    }
    Status status = DONE;
    if (arguments.help)
        streams.output << HELP_TEXT;
    else if (arguments.version)
        streams.output << "lexicon (Ostra) " OSTRA_TOOL_VERSION "\n";
    else
        status = RunJob(arguments, streams);
    if (!streams.output.flush()) {
        streams.errors << "lexicon: cannot write the output\n";
        status = FAILED;
    }
    return status;
}
} // namespace lexicon

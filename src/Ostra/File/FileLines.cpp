// Ostra/File/FileLines.cpp: lines of text files.
#include <Ostra/File/File.h>

#include <Ostra/File/Sources.h>
#include <Ostra/Frame/Counts.h>
#include <Ostra/Frame/Report.h>
#include <Ostra/Frame/Vector.h>
#include <Ostra/String/CString.h>
#include <Ostra/String/StringKind.h>
#include <Ostra/String/TextBuffer.h>

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstring>
#include <type_traits>

static constexpr auto& qccz_Source = qccz_FileSource;

namespace
{
constexpr unsigned char MARK[] = {0xFF, 0xFE}; // at the start of UTF-16 text, low byte first

// Units that are looked at together.
template <class t_Unit>
struct st_Run
{
    typedef t_Block<std::uint16_t> Pairs; // of bytes, or one unit each

    static constexpr unsigned COUNT = sizeof(Pairs) / sizeof(t_Unit);
    static constexpr unsigned MARK_BITS = CT_Vector::sn_MarkBits(sizeof(t_Unit));

    // All bits set in the place of each line feed.
    static void v_Compare(Pairs& ao_Found, const t_Unit* pu_Text)
    {
        t_Block<t_Unit> ao_Units;
        CT_Vector::sv_Load(ao_Units, pu_Text);
        ao_Found = reinterpret_cast<Pairs>(ao_Units == t_Unit('\n'));
    }
};

// The first line feed from n_At on; n_End if there is none.
template <class t_Unit>
unsigned n_FindFeed(const t_Unit* pu_Text, unsigned n_At, unsigned n_End)
{
    typedef st_Run<t_Unit> Run;
    for (; n_End - n_At >= Run::COUNT; n_At += Run::COUNT) {
        typename Run::Pairs ao_Found;
        Run::v_Compare(ao_Found, pu_Text + n_At);
        if (const std::uint64_t n8_Marks = CT_Vector::sn8_Marks(ao_Found))
            return n_At + std::countr_zero(n8_Marks) / Run::MARK_BITS;
    }
    while (n_At < n_End && pu_Text[n_At] != '\n')
        ++n_At;
    return n_At;
}

// A bit for each byte of the line feeds among four runs, the first one's lowest.
template <class t_Unit>
inline std::uint64_t n8_FeedsOfFour(const t_Unit* pu_Text)
{
    typedef st_Run<t_Unit> Run;
    std::uint64_t n8_Feeds = 0;
    for (unsigned n = 0; n < 4; ++n) {
        typename Run::Pairs ao_Found;
        Run::v_Compare(ao_Found, pu_Text + n * Run::COUNT);
        n8_Feeds |= std::uint64_t(CT_Vector::sn_Mask(ao_Found)) << n * sizeof(ao_Found);
    }
    return n8_Feeds;
}

// Copies 64 bytes. Result: a bit for each byte of the line feeds among them, the first one's
// lowest.
template <class t_Unit>
OSTRA_FOR_WIDE [[gnu::always_inline]] inline std::uint64_t n8_CopyWide(t_Unit* pu_To,
                                                                       const t_Unit* pu_Text)
{
    typedef t_Block<t_Unit, 32> Block;
    constexpr unsigned COUNT = sizeof(Block) / sizeof(t_Unit);
    Block ao_First, ao_Second;
    CT_Vector::sv_Load(ao_First, pu_Text);
    CT_Vector::sv_Load(ao_Second, pu_Text + COUNT);
    CT_Vector::sv_Store(pu_To, ao_First);
    CT_Vector::sv_Store(pu_To + COUNT, ao_Second);
    const std::uint64_t n8_Second = CT_Vector::sn_MaskWide(ao_Second == t_Unit('\n'));
    return n8_Second << 32 | CT_Vector::sn_MaskWide(ao_First == t_Unit('\n'));
}

constexpr unsigned WIDE = 128; // bytes

// n_CopyToFeed where registers are wide: nearly every line lies in what is looked at first.
template <class t_Unit>
OSTRA_FOR_WIDE [[gnu::noinline]] unsigned n_CopyToFeedWide(t_Unit* pu_To, const t_Unit* pu_Text,
                                                           unsigned n_End)
{
    constexpr unsigned HALF = WIDE / 2 / sizeof(t_Unit);
    for (unsigned n = 0; n_End - n >= 2 * HALF; n += 2 * HALF) {
        const std::uint64_t n8_First = n8_CopyWide(pu_To + n, pu_Text + n);
        const std::uint64_t n8_Second = n8_CopyWide(pu_To + n + HALF, pu_Text + n + HALF);
        if (n8_First | n8_Second) {
            // In which half it is can't be foreseen: no branch.
            const std::uint64_t n8_IsSecond = -std::uint64_t(!n8_First);
            const unsigned n_Bit = std::countr_zero(n8_First | (n8_Second & n8_IsSecond));
            return n + (HALF & unsigned(n8_IsSecond)) + n_Bit / unsigned(sizeof(t_Unit));
        }
    }
    return NONE;
}

// Copies up to the first line feed, and units behind it, two runs at a time. Four runs hold most
// lines: then how long one is doesn't have to be foreseen. Result: where it is; NONE if it isn't
// where two runs fit.
template <class t_Unit>
inline unsigned n_CopyToFeed(t_Unit* pu_To, const t_Unit* pu_Text, unsigned n_End)
{
    typedef st_Run<t_Unit> Run;
    unsigned n = 0;
    if (n_End >= WIDE / sizeof(t_Unit) && CT_Vector::sb_HasWide()) {
        const unsigned n_Feed = n_CopyToFeedWide(pu_To, pu_Text, n_End);
        if (n_Feed != NONE)
            return n_Feed;
        n = n_End & -unsigned(WIDE / sizeof(t_Unit));
    }
    if constexpr (CT_Vector::sb_FastMasks)
        for (; n_End - n >= 4 * Run::COUNT; n += 4 * Run::COUNT) {
            std::memcpy(pu_To + n, pu_Text + n, 64);
            if (const std::uint64_t n8_Feeds = n8_FeedsOfFour(pu_Text + n))
                return n +
                       static_cast<unsigned>(std::countr_zero(n8_Feeds)) / unsigned(sizeof(t_Unit));
        }
    for (; n_End - n >= 2 * Run::COUNT; n += 2 * Run::COUNT) {
        typename Run::Pairs ao_First, ao_Second;
        Run::v_Compare(ao_First, pu_Text + n);
        Run::v_Compare(ao_Second, pu_Text + n + Run::COUNT);
        std::memcpy(pu_To + n, pu_Text + n, 32);
        if (const std::uint64_t n8_Any = CT_Vector::sn8_Marks(ao_First | ao_Second)) {
            // In which run it is can't be foreseen: no branch.
            const std::uint64_t n8_First = CT_Vector::sn8_Marks(ao_First);
            const std::uint64_t n8_IsSecond = -std::uint64_t(!n8_First);
            const unsigned n_Bit = std::countr_zero(n8_First | (n8_Any & n8_IsSecond));
            return n + (Run::COUNT & unsigned(n8_IsSecond)) + n_Bit / Run::MARK_BITS;
        }
    }
    return NONE;
}

const char* q_Text(const CT_CString& co_Text)
{
    return co_Text.qccz_Get();
}

const unsigned short* q_Text(const CT_UString& co_Text)
{
    return co_Text.qcuz_Get();
}

template <class t_String, class t_Unit>
void v_WriteLine(CT_File* pco_File, const CT_String* pco_Line, int b_NewLine,
                 const t_Unit (&au_NewLine)[2])
{
    if (pco_Line && pco_Line->vn_GetLength()) {
        const t_String co_Line(pco_Line);
        pco_File->vn_Write(q_Text(co_Line), co_Line.vn_GetLength() * sizeof(t_Unit));
        if (CT_Report::sb_Failed(qccz_Source))
            return;
    }
    if (b_NewLine) {
        pco_File->vn_Write(au_NewLine, sizeof(au_NewLine));
        CT_Report::sb_Failed(qccz_Source);
    }
}
} // namespace

// The readers of lines, for text of one width.
template <class t_Unit>
class CT_LineReader
{
public:
    CT_LineReader(CT_File* pco_Source, CT_String* pco_Target)
        : co_File(*pco_Source),
          pco_Line(pco_Target),
          pco_Text(spco_TextOf(*pco_Target))
    {}

    unsigned n_Read(const CT_String* pco_Strip);
    unsigned n_ReadSequential(const CT_String* pco_Strip);

private:
    // What is read at once: small where all behind the line is read again, large in a long scan.
    static constexpr unsigned PIECE = 256 * sizeof(t_Unit);
    static constexpr unsigned SEQUENTIAL_PIECE = 4096 * sizeof(t_Unit);
    static constexpr bool b_Wide = sizeof(t_Unit) == 2;
    typedef std::conditional_t<b_Wide, CT_UString, CT_CString> t_String;
    typedef CT_TextBuffer<t_Unit> t_Text;

    // The buffer of a string that is of this width and of no class of the application, which would
    // expect to be called.
    static CT_Buffer* spco_TextOf(CT_String& co_Target)
    {
        return b_IsLike(&co_Target, t_String::sco_Object)
                   ? const_cast<CT_Buffer*>(co_Target.pcco_GetBuffer())
                   : nullptr;
    }

    int b_Begin();
    int b_SkipMark(unsigned n_Offset);
    void v_Empty();
    unsigned n_RoomForBuffered() const;
    unsigned n_TakeWhole();
    unsigned n_TakeLong();
    unsigned n_Take(unsigned n_Length, unsigned n_Feed);
    unsigned n_ReadFromStart(const CT_String* pco_Strip);
    unsigned n_ReadFrom(unsigned n_Offset, const CT_String* pco_Strip);
    unsigned n_ReadOn(const CT_String* pco_Strip);
    unsigned n_ReadPieces();
    int b_Fill(unsigned n_Size);
    unsigned n_EndOf(unsigned n_From, unsigned n_Feed) const;
    unsigned n_AppendFrom(unsigned n_From);
    int b_TakeBuffered();
    void v_MoveBehind(unsigned n_Feed)
    {
        co_File.n_BufferOffset = n_Feed + 1 < n_Units() ? n_Feed + 1 : 0;
    }
    const t_Unit* pu_Buffered() const
    {
        return static_cast<const t_Unit*>(co_File.co_Buffer.qcv_Get());
    }
    unsigned n_BytesOfLine() const { return pco_Line->vn_GetLength() * sizeof(t_Unit); }
    unsigned n_Bytes() const { return co_File.co_Buffer.n_GetUsedSize(); }
    // An odd byte at the end is no unit.
    unsigned n_Units() const { return n_Bytes() / sizeof(t_Unit); }

    CT_File& co_File;
    CT_String* pco_Line;
    CT_Buffer* pco_Text; // of the line, if it can be written directly; else null
};

template <class t_Unit>
unsigned CT_LineReader<t_Unit>::n_Read(const CT_String* pco_Strip)
{
    if (!b_Begin())
        return 0;
    v_Empty();
    unsigned n_Result = 0;
    while (!n_Result) {
        if (!b_Fill(PIECE))
            return 0;
        if (!n_Bytes()) {
            n_Result = n_BytesOfLine();
            break;
        }
        const unsigned n_Feed = n_AppendFrom(0);
        if (n_Feed == n_Units())
            continue;
        const unsigned n_Next = (n_Feed + 1) * sizeof(t_Unit);
        co_File.vv_SetOffset(CT_File::e_OriginCurrent, static_cast<int>(n_Next - n_Bytes()));
        if (CT_Report::sb_Failed(qccz_Source))
            return 0;
        n_Result = n_BytesOfLine() + sizeof(t_Unit);
    }
    if (pco_Strip)
        pco_Line->vv_Strip(pco_Strip);
    return n_Result;
}

// What nearly every line needs stands here; whatever else is the case is told apart behind a call.
template <class t_Unit>
inline unsigned CT_LineReader<t_Unit>::n_ReadSequential(const CT_String* pco_Strip)
{
    if (co_File.ec_FileAccess != CT_File::e_FileAccessRead || !CT_Report::sb_NoneFailed())
        return n_ReadFromStart(pco_Strip);
    if constexpr (b_Wide) {
        const unsigned n_Offset = co_File.vn_GetOffset();
        if (!n_Offset || !CT_Report::sb_NoneFailed())
            return n_ReadFrom(n_Offset, pco_Strip);
    }
    if (!pco_Strip)
        if (const unsigned n_Whole = n_TakeWhole())
            return n_Whole;
    return n_ReadOn(pco_Strip);
}

template <class t_Unit>
[[gnu::noinline]] unsigned CT_LineReader<t_Unit>::n_ReadFromStart(const CT_String* pco_Strip)
{
    return b_Begin() ? n_ReadOn(pco_Strip) : 0;
}

template <class t_Unit>
[[gnu::noinline]] unsigned CT_LineReader<t_Unit>::n_ReadFrom(unsigned n_Offset,
                                                             const CT_String* pco_Strip)
{
    return b_SkipMark(n_Offset) ? n_ReadOn(pco_Strip) : 0;
}

template <class t_Unit>
[[gnu::noinline]] unsigned CT_LineReader<t_Unit>::n_ReadOn(const CT_String* pco_Strip)
{
    unsigned n_Result = n_TakeLong();
    if (!n_Result) {
        v_Empty();
        n_Result = n_ReadPieces();
        if (n_Result == NONE)
            return 0;
    }
    if (pco_Strip)
        pco_Line->vv_Strip(pco_Strip);
    return CT_Report::sb_Failed(qccz_Source) ? 0 : n_Result;
}

// The result of the line; NONE when reading has failed.
template <class t_Unit>
unsigned CT_LineReader<t_Unit>::n_ReadPieces()
{
    do {
        // What the other readers have left behind may be less than the offset.
        if (!co_File.n_BufferOffset || co_File.n_BufferOffset >= n_Units()) {
            co_File.n_BufferOffset = 0;
            if (!b_Fill(SEQUENTIAL_PIECE))
                return NONE;
            // Kept: a last line without a line feed is left to the caller, the result is that of
            // the end.
            if (!n_Bytes())
                return 0;
        }
    } while (!b_TakeBuffered());
    return n_BytesOfLine() + sizeof(t_Unit);
}

// The direction, the mark at the start of the file.
template <class t_Unit>
int CT_LineReader<t_Unit>::b_Begin()
{
    co_File.v_SetAccess(CT_File::e_FileAccessRead);
    if (CT_Report::sb_Failed(qccz_Source))
        return 0;
    return !b_Wide || b_SkipMark(co_File.vn_GetOffset());
}

template <class t_Unit>
int CT_LineReader<t_Unit>::b_SkipMark(unsigned n_Offset)
{
    if (CT_Report::sb_Failed(qccz_Source))
        return 0;
    if (n_Offset)
        return 1;
    unsigned char an_Start[sizeof(MARK)] = {};
    co_File.vn_Read(an_Start, sizeof(an_Start));
    if (CT_Report::sb_Failed(qccz_Source))
        return 0;
    if (!std::memcmp(an_Start, MARK, sizeof(MARK)))
        return 1;
    co_File.vv_SetOffset(CT_File::e_OriginBegin, 0);
    return !CT_Report::sb_Failed(qccz_Source);
}

template <class t_Unit>
void CT_LineReader<t_Unit>::v_Empty()
{
    if (!pco_Text || !t_Text::sn_Reusable(*pco_Text))
        pco_Line->vv_SetLength(0);
    else if (t_Text::sb_Reuse(*pco_Text, 0))
        t_Text::sv_Reserve(*pco_Text);
}

// The room, in units, of the memory in which what the work buffer still holds can be written; 0 if
// there is none, or nothing to write.
template <class t_Unit>
inline unsigned CT_LineReader<t_Unit>::n_RoomForBuffered() const
{
    return pco_Text && co_File.n_BufferOffset && co_File.n_BufferOffset < n_Units()
               ? t_Text::sn_Reusable(*pco_Text)
               : 0;
}

// A line that lies in the work buffer as a whole, and fits the memory that the string has. 0 if
// there is none: the string's text is spoilt then, and has to be emptied.
template <class t_Unit>
inline unsigned CT_LineReader<t_Unit>::n_TakeWhole()
{
    const unsigned n_Room = n_RoomForBuffered();
    if (!n_Room)
        return 0;
    const unsigned n_From = co_File.n_BufferOffset;
    const t_Unit* pu_From = pu_Buffered() + n_From;
    t_Unit* pu_To = static_cast<t_Unit*>(const_cast<void*>(pco_Text->qcv_Get()));
    const unsigned n_Feed = n_CopyToFeed(pu_To, pu_From, std::min(n_Units() - n_From, n_Room));
    if (n_Feed == NONE)
        return 0;
    // Which lines are empty can't be foreseen: no branch for that. What lies in front of the
    // offset can be read.
    const unsigned n_Carriage =
        (n_Feed > 0) & (pu_From[static_cast<std::ptrdiff_t>(n_Feed) - 1] == '\r');
    return n_Take(n_Feed - n_Carriage, n_From + n_Feed);
}

// The same for one that ends with the work buffer or the memory.
template <class t_Unit>
unsigned CT_LineReader<t_Unit>::n_TakeLong()
{
    const unsigned n_Room = n_RoomForBuffered();
    if (!n_Room)
        return 0;
    const unsigned n_From = co_File.n_BufferOffset;
    const unsigned n_Feed = n_FindFeed(pu_Buffered(), n_From, n_Units());
    const unsigned n_Length = n_EndOf(n_From, n_Feed) - n_From;
    if (n_Feed == n_Units() || n_Length >= n_Room)
        return 0;
    std::memcpy(const_cast<void*>(pco_Text->qcv_Get()), pu_Buffered() + n_From,
                n_Length * sizeof(t_Unit));
    return n_Take(n_Length, n_Feed);
}

template <class t_Unit>
inline unsigned CT_LineReader<t_Unit>::n_Take(unsigned n_Length, unsigned n_Feed)
{
    if (!t_Text::sb_Reuse(*pco_Text, n_Length))
        return 0;
    v_MoveBehind(n_Feed);
    return (n_Length + 1) * sizeof(t_Unit);
}

// Reads the next piece in place of the work buffer's content, by n_Size whatever its room.
template <class t_Unit>
int CT_LineReader<t_Unit>::b_Fill(unsigned n_Size)
{
    CT_Buffer& co_Buffer = co_File.co_Buffer;
    co_Buffer.v_SetMinSize(n_Size, 0);
    if (co_Buffer.n_GetMaximumSize() < n_Size) {
        CT_Report::sb_Failed(qccz_Source);
        return 0;
    }
    const unsigned n_Count = co_File.vn_Read(const_cast<void*>(co_Buffer.qcv_Get()), n_Size);
    co_Buffer.v_SetUsedSize(n_Count);
    return !CT_Report::sb_Failed(qccz_Source);
}

// Where the text ends that begins at n_From and has its line feed, or the end of the piece, there.
template <class t_Unit>
inline unsigned CT_LineReader<t_Unit>::n_EndOf(unsigned n_From, unsigned n_Feed) const
{
    // Kept: a carriage return goes at the end of a piece too, where its line feed may begin the
    // next one. A lone one there is lost.
    return n_Feed > n_From && pu_Buffered()[n_Feed - 1] == '\r' ? n_Feed - 1 : n_Feed;
}

// Appends what lies between n_From and the next line feed, or the end. Result: where that is.
template <class t_Unit>
unsigned CT_LineReader<t_Unit>::n_AppendFrom(unsigned n_From)
{
    const unsigned n_Feed = n_FindFeed(pu_Buffered(), n_From, n_Units());
    const unsigned n_End = n_EndOf(n_From, n_Feed);
    if (n_End > n_From)
        pco_Line->v_Append(pu_Buffered() + n_From, n_End - n_From);
    return n_Feed;
}

// Takes from the work buffer up to the line feed, true if there is one, or up to its end.
template <class t_Unit>
int CT_LineReader<t_Unit>::b_TakeBuffered()
{
    const unsigned n_Feed = n_AppendFrom(co_File.n_BufferOffset);
    v_MoveBehind(n_Feed);
    return n_Feed < n_Units();
}

// ---- The operations of the class ---------------------------------------------------------------

int CT_File::b_IsUnicode()
{
    v_SetAccess(e_FileAccessRead);
    if (CT_Report::sb_Failed(qccz_Source))
        return 0;
    const unsigned n_Size = vn_GetSize();
    if (CT_Report::sb_Failed(qccz_Source) || n_Size < sizeof(MARK))
        return 0;
    unsigned char an_Start[sizeof(MARK)] = {};
    vn_Read(an_Start, sizeof(an_Start));
    if (CT_Report::sb_Failed(qccz_Source))
        return 0;
    // Kept: the file is rewound, wherever the bytes were read.
    vv_SetOffset(e_OriginBegin, 0);
    return !CT_Report::sb_Failed(qccz_Source) && !std::memcmp(an_Start, MARK, sizeof(MARK));
}

unsigned CT_File::n_ReadLineC(CT_String* pco_Line, const CT_String* pco_Strip)
{
    return CT_LineReader<char>(this, pco_Line).n_Read(pco_Strip);
}

unsigned CT_File::n_ReadLineU(CT_String* pco_Line, const CT_String* pco_Strip)
{
    return CT_LineReader<unsigned short>(this, pco_Line).n_Read(pco_Strip);
}

unsigned CT_File::n_ReadLineCSequential(CT_String* pco_Line, const CT_String* pco_Strip)
{
    return CT_LineReader<char>(this, pco_Line).n_ReadSequential(pco_Strip);
}

unsigned CT_File::n_ReadLineUSequential(CT_String* pco_Line, const CT_String* pco_Strip)
{
    return CT_LineReader<unsigned short>(this, pco_Line).n_ReadSequential(pco_Strip);
}

void CT_File::v_WriteLineC(const CT_String* pco_Line, int b_NewLine)
{
    v_WriteLine<CT_CString, char>(this, pco_Line, b_NewLine, {'\r', '\n'});
}

void CT_File::v_WriteLineU(const CT_String* pco_Line, int b_NewLine)
{
    v_WriteLine<CT_UString, unsigned short>(this, pco_Line, b_NewLine, {'\r', '\n'});
}

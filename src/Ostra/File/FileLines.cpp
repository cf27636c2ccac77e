// Ostra/File/FileLines.cpp: lines of text files.
#include <Ostra/File/File.h>

#include <Ostra/Frame/Report.h>
#include <Ostra/String/CString.h>

#include <bit>
#include <cstring>

static constexpr char qccz_Source[] = "Ostra/File/FileLines";

namespace
{
constexpr unsigned char MARK[] = {0xFF, 0xFE}; // at the start of UTF-16 text, low byte first

// The first line feed from n_At on; n_End if there is none.
unsigned n_FindFeed(const char* pc_Text, unsigned n_At, unsigned n_End)
{
    const void* pv_Found = std::memchr(pc_Text + n_At, '\n', n_End - n_At);
    return pv_Found ? static_cast<unsigned>(static_cast<const char*>(pv_Found) - pc_Text) : n_End;
}

// Four units at a time: a unit that is a line feed becomes 0, and the lowest 0 is the first to
// borrow.
unsigned n_FindFeed(const unsigned short* pu_Text, unsigned n_At, unsigned n_End)
{
    constexpr unsigned long long n_Ones = 0x0001000100010001;
    for (; n_End - n_At >= 4; n_At += 4) {
        unsigned long long n_Four;
        std::memcpy(&n_Four, pu_Text + n_At, sizeof(n_Four));
        n_Four ^= n_Ones * '\n';
        const unsigned long long n_Found = (n_Four - n_Ones) & ~n_Four & n_Ones << 15;
        if (n_Found)
            return n_At + std::countr_zero(n_Found) / 16;
    }
    while (n_At < n_End && pu_Text[n_At] != '\n')
        ++n_At;
    return n_At;
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
          pco_Line(pco_Target)
    {}

    unsigned n_Read(const CT_String* pco_Strip);
    unsigned n_ReadSequential(const CT_String* pco_Strip);

private:
    // What is read at once: small where all behind the line is read again, large in a long scan.
    static constexpr unsigned PIECE = 256 * sizeof(t_Unit);
    static constexpr unsigned SEQUENTIAL_PIECE = 4096 * sizeof(t_Unit);
    static constexpr bool b_Wide = sizeof(t_Unit) == 2;

    int b_Begin();
    int b_SkipMark();
    int b_Fill(unsigned n_Size);
    unsigned n_AppendFrom(unsigned n_From);
    int b_TakeBuffered();
    unsigned n_BytesOfLine() const { return pco_Line->vn_GetLength() * sizeof(t_Unit); }
    unsigned n_Bytes() const { return co_File.co_Buffer.n_GetUsedSize(); }
    // An odd byte at the end is no unit.
    unsigned n_Units() const { return n_Bytes() / sizeof(t_Unit); }

    CT_File& co_File;
    CT_String* pco_Line;
};

template <class t_Unit>
unsigned CT_LineReader<t_Unit>::n_Read(const CT_String* pco_Strip)
{
    if (!b_Begin())
        return 0;
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

template <class t_Unit>
unsigned CT_LineReader<t_Unit>::n_ReadSequential(const CT_String* pco_Strip)
{
    if (!b_Begin())
        return 0;
    unsigned n_Result = 0;
    while (!n_Result) {
        // What the other readers have left behind may be less than the offset.
        if (!co_File.n_BufferOffset || co_File.n_BufferOffset >= n_Units()) {
            co_File.n_BufferOffset = 0;
            if (!b_Fill(SEQUENTIAL_PIECE))
                return 0;
            // Kept: a last line without a line feed is left to the caller, the result is that of
            // the end.
            if (!n_Bytes())
                break;
        }
        if (b_TakeBuffered())
            n_Result = n_BytesOfLine() + sizeof(t_Unit);
    }
    if (pco_Strip)
        pco_Line->vv_Strip(pco_Strip);
    return CT_Report::sb_Failed(qccz_Source) ? 0 : n_Result;
}

// The direction, the mark at the start of the file, the empty line.
template <class t_Unit>
int CT_LineReader<t_Unit>::b_Begin()
{
    co_File.v_SetAccess(CT_File::e_FileAccessRead);
    if (CT_Report::sb_Failed(qccz_Source))
        return 0;
    if (b_Wide && !b_SkipMark())
        return 0;
    pco_Line->vv_SetLength(0);
    return 1;
}

template <class t_Unit>
int CT_LineReader<t_Unit>::b_SkipMark()
{
    const unsigned n_Offset = co_File.vn_GetOffset();
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

// Appends what lies between n_From and the next line feed, or the end. Result: where that is.
template <class t_Unit>
unsigned CT_LineReader<t_Unit>::n_AppendFrom(unsigned n_From)
{
    const t_Unit* pu_Text = static_cast<const t_Unit*>(co_File.co_Buffer.qcv_Get());
    const unsigned n_Feed = n_FindFeed(pu_Text, n_From, n_Units());
    // Kept: a carriage return goes at the end of a piece too, where its line feed may begin the
    // next one. A lone one there is lost.
    const unsigned n_End = n_Feed > n_From && pu_Text[n_Feed - 1] == '\r' ? n_Feed - 1 : n_Feed;
    if (n_End > n_From)
        pco_Line->v_Append(pu_Text + n_From, n_End - n_From);
    return n_Feed;
}

// Takes from the work buffer up to the line feed, true if there is one, or up to its end.
template <class t_Unit>
int CT_LineReader<t_Unit>::b_TakeBuffered()
{
    const unsigned n_Feed = n_AppendFrom(co_File.n_BufferOffset);
    co_File.n_BufferOffset = n_Feed + 1 < n_Units() ? n_Feed + 1 : 0;
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

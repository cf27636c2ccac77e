// Ostra/TestOut/TestOut.cpp
#include <Ostra/TestOut/TestOut.h>

#include <Ostra/File/Streams.h>
#include <Ostra/Frame/Print.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>

static constexpr char qccz_Source[] = "Ostra/TestOut/TestOut";

static constexpr unsigned PIECE = 1024;    // characters of a message that are worked on at once
static constexpr unsigned TEMP_ROOM = 260; // of the temporary directory's name
static constexpr unsigned PART_ROOM = 256; // of each part of a path

// Kept: a condition that doesn't hold is told, and nothing else follows from it.
static void v_Assert(bool b_Holds, const char* qccz_Condition, unsigned n_Line = __builtin_LINE())
{
    if (!b_Holds)
        std::fprintf(stderr, "ASSERT failed: %s\nLine %u in File %s.\n", qccz_Condition, n_Line,
                     qccz_Source);
}

// ---- Life -----------------------------------------------------------------------------------

CT_TestOut::CT_TestOut()
{
    v_Null();
    v_Init(stdout, nullptr);
}

CT_TestOut::CT_TestOut(const char* qccz_File, const char* qccz_Label)
{
    v_Null();
    v_Init(qccz_File, qccz_Label);
}

CT_TestOut::CT_TestOut(std::FILE* pso_NewOutput, const char* qccz_Label)
{
    v_Null();
    v_Init(pso_NewOutput, qccz_Label);
}

CT_TestOut::~CT_TestOut()
{
    v_Exit();
}

void CT_TestOut::v_Null()
{
    b_Own = 0;
    qcz_Label = nullptr;
    pso_Output = nullptr;
}

void CT_TestOut::v_Init(const char* qccz_File, const char* qccz_Label)
{
    v_Assert(qccz_File, "qccz_file");
    v_Open(qccz_File);
    // Kept: also where the standard output stands in, so that v_Close closes that.
    b_Own = 1;
    v_SetLabel(qccz_Label);
}

void CT_TestOut::v_Init(std::FILE* pso_NewOutput, const char* qccz_Label)
{
    v_Assert(pso_NewOutput, "pso_output");
    pso_Output = pso_NewOutput;
    b_Own = 0;
    v_SetLabel(qccz_Label);
}

void CT_TestOut::v_Exit()
{
    v_Close();
    std::free(qcz_Label);
    qcz_Label = nullptr;
}

// Without memory there is no label.
void CT_TestOut::v_SetLabel(const char* qccz_Label)
{
    if (!qccz_Label)
        return;
    const std::size_t n_Size = std::strlen(qccz_Label) + 1;
    qcz_Label = static_cast<char*>(std::malloc(n_Size));
    if (qcz_Label)
        std::memcpy(qcz_Label, qccz_Label, n_Size);
}

void CT_TestOut::v_Set(const char* qccz_File, const char* qccz_Label)
{
    v_Assert(qccz_File && qccz_Label, "qccz_file && qccz_label");
    // The label given may be the old one.
    char* qcz_Old = qcz_Label;
    qcz_Label = nullptr;
    v_Exit();
    v_Init(qccz_File, qccz_Label);
    std::free(qcz_Old);
}

void CT_TestOut::v_Set(std::FILE* pso_NewOutput, const char* qccz_Label)
{
    v_Assert(pso_NewOutput && qccz_Label, "pso_output && qccz_label");
    char* qcz_Old = qcz_Label;
    qcz_Label = nullptr;
    // The stream, too.
    const int b_Stays = b_Own && pso_NewOutput && pso_NewOutput == pso_Output;
    if (!b_Stays)
        v_Exit();
    v_Init(pso_NewOutput, qccz_Label);
    b_Own = b_Stays;
    std::free(qcz_Old);
}

// ---- The stream -----------------------------------------------------------------------------

// A name without drive and directory stands behind the temporary directory's in the area; any other
// path stays as it is. Null where that directory can't be told.
static const char* qccz_Place(const char* qccz_File, char (&acz_Area)[TEMP_ROOM + 2 * PART_ROOM])
{
    char acz_Drive[PART_ROOM], acz_Directory[PART_ROOM], acz_Name[PART_ROOM], acz_Kind[PART_ROOM];
    _splitpath(qccz_File, acz_Drive, acz_Directory, acz_Name, acz_Kind);
    if (*acz_Drive || *acz_Directory)
        return qccz_File;
    const unsigned n_Length = GetTempPathA(TEMP_ROOM, acz_Area);
    if (!n_Length || n_Length >= TEMP_ROOM)
        return nullptr;
    CT_Print::si_Format(acz_Area + n_Length, 2 * PART_ROOM, "%s%s", acz_Name, acz_Kind);
    // Parts that are too long aren't told: such a path is no bare name.
    return std::strcmp(acz_Area + n_Length, qccz_File) ? qccz_File : acz_Area;
}

void CT_TestOut::v_Open(const char* qccz_File)
{
    v_Assert(qccz_File, "qccz_file");
    char acz_Area[TEMP_ROOM + 2 * PART_ROOM];
    const char* qccz_Path = qccz_File ? qccz_Place(qccz_File, acz_Area) : nullptr;
    v_Close();
    pso_Output = qccz_Path ? streams::fopen(qccz_Path, "w") : nullptr;
    b_Own = pso_Output != nullptr;
    if (b_Own)
        return;
    if (!qccz_Path)
        qccz_Path = qccz_File ? qccz_File : "(null)";
    std::fprintf(stderr, "Could not open %s\nUsing stdout instead.\n", qccz_Path);
    pso_Output = stdout;
}

void CT_TestOut::v_Close()
{
    if (!pso_Output || !b_Own)
        return;
    streams::fclose(pso_Output);
    pso_Output = nullptr;
}

// ---- Messages -------------------------------------------------------------------------------

static void v_Put(std::FILE* pso_Stream, const char* pcc_Text, unsigned n_Length)
{
    std::fwrite(pcc_Text, 1, n_Length, pso_Stream);
}

// In pieces, each of which ends with a whole character.
static void v_Put(std::FILE* pso_Stream, const unsigned short* pcu_Text, unsigned n_Length)
{
    char ac_Bytes[PIECE * 3];
    while (n_Length) {
        unsigned n_Units = std::min(n_Length, PIECE);
        if (n_Units < n_Length && (pcu_Text[n_Units - 1] & 0xFC00) == 0xD800)
            --n_Units;
        const int i_Bytes =
            WideCharToMultiByte(CP_UTF8, 0, qcuz_System(pcu_Text), static_cast<int>(n_Units),
                                ac_Bytes, sizeof ac_Bytes, nullptr, nullptr);
        std::fwrite(ac_Bytes, 1, static_cast<std::size_t>(i_Bytes), pso_Stream);
        pcu_Text += n_Units;
        n_Length -= n_Units;
    }
}

template <typename T_Char>
static unsigned n_LengthOf(const T_Char* qcz_Text)
{
    unsigned n_Length = 0;
    while (qcz_Text[n_Length])
        ++n_Length;
    return n_Length;
}

// A message that doesn't fit a piece is made on the heap; without memory it is cut.
template <typename T_Char>
void CT_TestOut::v_Write(const T_Char* qcz_Format, va_list args)
{
    v_Assert(pso_Output, "pso_Output");
    if (!pso_Output)
        return;
    if (qcz_Label)
        std::fputs(qcz_Label, pso_Output);
    T_Char acz_Piece[PIECE];
    const int i_Length = CT_Print::si_Print(acz_Piece, PIECE, qcz_Format, args);
    if (i_Length >= 0 && static_cast<unsigned>(i_Length) < PIECE) {
        v_Put(pso_Output, acz_Piece, static_cast<unsigned>(i_Length));
    } else {
        const int i_Whole = CT_Print::si_Raw(static_cast<T_Char*>(nullptr), 0, qcz_Format, args);
        const unsigned n_Room = i_Whole < 0 ? 0 : static_cast<unsigned>(i_Whole) + 1;
        T_Char* pc_Whole =
            n_Room ? static_cast<T_Char*>(std::malloc(n_Room * sizeof(T_Char))) : nullptr;
        if (pc_Whole)
            CT_Print::si_Print(pc_Whole, n_Room, qcz_Format, args);
        v_Put(pso_Output, pc_Whole ? pc_Whole : acz_Piece,
              pc_Whole ? n_Room - 1 : n_LengthOf(acz_Piece));
        std::free(pc_Whole);
    }
    std::fflush(pso_Output);
}

void CT_TestOut::v_Out(const char* qccz_Format, ...)
{
    va_list args;
    va_start(args, qccz_Format);
    v_Write(qccz_Format, args);
    va_end(args);
}

void CT_TestOut::v_Out(const unsigned short* qcuz_Format, ...)
{
    va_list args;
    va_start(args, qcuz_Format);
    v_Write(qcuz_Format, args);
    va_end(args);
}

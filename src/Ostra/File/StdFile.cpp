// Ostra/File/StdFile.cpp
#include <Ostra/File/StdFile.h>

#include <Ostra/File/Road.h>
#include <Ostra/File/Streams.h>
#include <Ostra/Frame/Codes.h>
#include <Ostra/Frame/Report.h>
#include <Ostra/Frame/Text.h>

#include <windows.h>
#include <io.h>

#include <cerrno>
#include <cstdlib>

static constexpr char qccz_Source[] = "Ostra/File/StdFile";

namespace
{
constexpr unsigned RENAMED_BUFFER_SIZE = 16384;
constexpr unsigned long long LARGEST_OFFSET = 0x7FFFFFFF;
constexpr unsigned long long NOWHERE = 0xFFFFFFFFFFFFFFFF; // of a stream that can't tell
constexpr int EOF_FLAG = 16;

// How a stream is opened, in both widths. Behind what is chosen stands "bn": bytes stay as they
// are, and no write waits for the disk.
struct st_Mode
{
    unsigned short au_Wide[8];
    char ac_Narrow[8];
};

// Kept: existing for writing is "w", creating for reading "r+", and appending has nothing for
// reading alone. Whatever isn't in the table opens nothing.
const char* qccz_Choice(CT_File::et_Access ec_Access, CT_File::et_Open ec_Open)
{
    static constexpr char aac_Choices[3][4][3] = {
        {"", "r", "w", "r+"}, {"", "r+", "w+", "w+"}, {"", "", "a", "a+"}};
    const unsigned n_Open = static_cast<unsigned>(ec_Open) - CT_File::e_OpenExisting;
    const unsigned n_Access = ec_Access;
    return n_Open < 3 && n_Access < 4 ? aac_Choices[n_Open][n_Access] : "";
}

st_Mode so_ModeOf(CT_File::et_Access ec_Access, CT_File::et_Open ec_Open)
{
    st_Mode so_Mode = {};
    unsigned n_At = 0;
    for (const char* qccz_Part : {qccz_Choice(ec_Access, ec_Open), "bn"})
        for (; *qccz_Part; ++qccz_Part, ++n_At)
            so_Mode.au_Wide[n_At] = so_Mode.ac_Narrow[n_At] = *qccz_Part;
    return so_Mode;
}

// A function of the library, with its error number: 0 unless it sets one.
template <class t_Function>
auto t_Noting(int* pi_Error, t_Function f_Function)
{
    return [=](const auto&... o_Arguments) {
        errno = 0;
        const auto o_Result = f_Function(o_Arguments...);
        *pi_Error = errno;
        return o_Result;
    };
}

// Calls a function with names on the road of the system.
template <class t_Wide, class t_Narrow, class... t_Arguments>
auto t_CallNoting(int* pi_Error, t_Wide f_Wide, t_Narrow f_Narrow, t_Arguments... o_Arguments)
{
    return t_Call(t_Noting(pi_Error, f_Wide), t_Noting(pi_Error, f_Narrow), o_Arguments...);
}
} // namespace

// ---- Construction ------------------------------------------------------------------------------

CT_StdFile::CT_StdFile() : pso_File(nullptr) {}

CT_StdFile::CT_StdFile(const CT_String* pco_FullName, unsigned n_Size)
    : CT_File(pco_FullName, n_Size),
      pso_File(nullptr)
{}

CT_StdFile::CT_StdFile(const CT_StdFile* pco_File) : CT_File(pco_File), pso_File(nullptr) {}

CT_StdFile::~CT_StdFile()
{
    v_CloseOpen();
}

void* CT_StdFile::operator new(std::size_t n_Size) noexcept
{
    return CT_Report::spv_New(n_Size, qccz_Source);
}

void CT_StdFile::operator delete(void* pv_Object)
{
    std::free(pv_Object);
}

void CT_StdFile::vv_Set(const CT_File* pco_File)
{
    v_CloseOpen();
    CT_File::vv_Set(pco_File);
}

void CT_StdFile::vv_Set(const CT_String* pco_FullName, unsigned n_Size)
{
    v_CloseOpen();
    CT_File::vv_Set(pco_FullName, n_Size);
}

void CT_StdFile::vv_Set()
{
    v_CloseOpen();
    CT_File::vv_Set();
}

// What can't be written is lost with the object, and reported.
void CT_StdFile::v_CloseOpen()
{
    if (b_Open) {
        CT_StdFile::vv_Close();
        CT_Report::sb_Failed(qccz_Source);
    }
    v_Drop();
}

// The stream of a file that is opened once more. What can't be written is lost with it.
void CT_StdFile::v_Leave()
{
    errno = 0;
    if (pso_File && std::fflush(pso_File))
        b_Fail(u"fclose", errno);
    v_Drop();
}

// A stream that a failure has left behind.
void CT_StdFile::v_Drop()
{
    if (pso_File)
        streams::fclose(pso_File);
    pso_File = nullptr;
}

// ---- Failures ----------------------------------------------------------------------------------

int CT_StdFile::b_Fail(const char16_t* qcuz_Function, int i_Error, unsigned n_Line) const
{
    CT_Report::sv_Format(qccz_Source, i_Error, FILE_ERROR, co_FullName.qcuz_Get(),
                         qcuz_Text(qcuz_Function), i_Error, n_Line);
    return 0;
}

// Leaves the stream's flags clean for another attempt.
int CT_StdFile::b_FailOnStream(const char16_t* qcuz_Function, int i_Error, unsigned n_Line) const
{
    b_Fail(qcuz_Function, i_Error, n_Line);
    if (pso_File)
        std::clearerr(pso_File);
    return 0;
}

// A call of the library without a stream would bring the program down.
int CT_StdFile::b_HasStream() const
{
    if (!pso_File)
        errno = EINVAL;
    return pso_File != nullptr;
}

// ---- Open and close ----------------------------------------------------------------------------

void CT_StdFile::vv_Open(et_Access ec_Access, et_Open ec_Open, et_Share ec_Share,
                         unsigned n_Attribut, unsigned n_Flag)
{
    const st_Mode so_Mode = so_ModeOf(ec_Access, ec_Open);
    int i_Error = 0;
    v_Leave();
    pso_File = t_CallNoting(
        &i_Error,
        [&](LPCWSTR qcuz_Name) { return _wfopen(qcuz_Name, qcuz_System(so_Mode.au_Wide)); },
        [&](LPCSTR qccz_Name) { return streams::fopen(qccz_Name, so_Mode.ac_Narrow); },
        &co_FullName);
    if (!pso_File) {
        b_Fail(u"fopen", i_Error);
        return;
    }
    if (streams::setvbuf(pso_File, nullptr, _IOFBF, n_BufferSize)) {
        // Kept: the stream stays, though the object isn't open.
        b_FailOnStream(u"setvbuf", errno);
        return;
    }
    ec_OpenAccess = ec_Access;
    ec_OpenModi = ec_Open;
    ec_OpenShare = ec_Share;
    n_OpenAttribut = n_Attribut;
    n_OpenFlag = n_Flag;
    v_SetOpen(1);
}

// The library ends a stream even where closing fails. So what is buffered is written first: if that
// fails, the object still has its stream.
void CT_StdFile::vv_Close()
{
    errno = 0;
    if (!b_HasStream() || std::fflush(pso_File)) {
        b_FailOnStream(u"fclose", errno);
        return;
    }
    const int b_Failed = streams::fclose(pso_File);
    pso_File = nullptr;
    if (b_Failed) {
        b_Fail(u"fclose", errno);
        return;
    }
    n_BufferOffset = 0;
    v_NullOpen();
}

void CT_StdFile::vv_Flush()
{
    errno = 0;
    if (!b_HasStream() || std::fflush(pso_File))
        b_FailOnStream(u"fflush", errno);
}

// ---- Files by name -----------------------------------------------------------------------------

// Where a file is missing there is nothing left to do.
void CT_StdFile::v_FailUnlessMissing(const char16_t* qcuz_Function, int i_Error,
                                     unsigned n_Line) const
{
    if (i_Error != ENOENT)
        b_Fail(qcuz_Function, i_Error, n_Line);
}

void CT_StdFile::vv_Remove()
{
    int i_Error = 0;
    if (t_CallNoting(&i_Error, _wremove, streams::remove, &co_FullName))
        v_FailUnlessMissing(u"remove", i_Error);
}

void CT_StdFile::vv_Rename(const CT_String* pco_NewName)
{
    int i_Error = 0;
    if (t_CallNoting(&i_Error, _wrename, streams::rename, &co_FullName, pco_NewName))
        b_Fail(u"rename", i_Error);
    else
        vv_Set(pco_NewName, RENAMED_BUFFER_SIZE);
}

void CT_StdFile::v_Chmod(et_Permission ec_Permission)
{
    int i_Error = 0;
    if (t_CallNoting(&i_Error, _wchmod, _chmod, &co_FullName, int(ec_Permission)))
        v_FailUnlessMissing(u"chmod", i_Error);
}

void CT_StdFile::v_GetFileInformation(struct _stat* pso_Stat) const
{
    int i_Error = 0;
    const char16_t* qcuz_Function = u"_stat";
    const auto f_Wide = [&](LPCWSTR qcuz_Name, struct _stat* pso_Into) {
        qcuz_Function = u"_wstat";
        return _wstat(qcuz_Name, pso_Into);
    };
    const auto f_Narrow = [](LPCSTR qccz_Name, struct _stat* pso_Into) {
        return _stat(qccz_Name, pso_Into);
    };
    if (t_CallNoting(&i_Error, f_Wide, f_Narrow, &co_FullName, pso_Stat))
        b_Fail(qcuz_Function, i_Error);
}

// ---- Transfers ---------------------------------------------------------------------------------

// The direction of a transfer. It is taken unless the seek has failed.
int CT_StdFile::b_Turn(et_FileAccess ec_Access)
{
    v_SetAccess(ec_Access);
    if (ec_FileAccess == ec_Access)
        return 1;
    CT_Report::sb_Failed(qccz_Source);
    return 0;
}

unsigned CT_StdFile::vn_Read(void* pv_Data, unsigned n_Size)
{
    if (!n_Size || !b_Turn(e_FileAccessRead))
        return 0;
    errno = 0;
    if (!b_HasStream())
        return b_FailOnStream(u"fread", errno);
    const std::size_t n_Count = std::fread(pv_Data, 1, n_Size, pso_File);
    if (std::ferror(pso_File))
        return b_FailOnStream(u"fread", errno);
    return static_cast<unsigned>(n_Count);
}

// Kept: a write of no bytes names its direction, unlike a read.
unsigned CT_StdFile::vn_Write(const void* pv_Data, unsigned n_Size)
{
    if (!b_Turn(e_FileAccessWrite))
        return 0;
    errno = 0;
    if (!b_HasStream())
        return b_FailOnStream(u"fwrite", errno);
    const std::size_t n_Count = std::fwrite(pv_Data, 1, n_Size, pso_File);
    if (std::ferror(pso_File) || n_Count != n_Size)
        return b_FailOnStream(u"fwrite", errno);
    return n_Size;
}

// ---- Size and offset ---------------------------------------------------------------------------

unsigned CT_StdFile::vn_GetSize() const
{
    CT_StdFile* pco_This = const_cast<CT_StdFile*>(this);
    return b_Open ? pco_This->n_MeasureOpen() : pco_This->n_MeasureClosed();
}

// Goes to the end and takes its offset; true if that is the size.
int CT_StdFile::b_TakeEnd(unsigned* pn_Size)
{
    const CT_Report::CT_Since co_Since;
    vv_SetOffset(e_OriginEnd, 0);
    if (co_Since.b_Failed(qccz_Source))
        return 0;
    *pn_Size = vn_GetOffset();
    return !co_Since.b_Failed(qccz_Source);
}

// The stream goes back also from an end that can't be told.
unsigned CT_StdFile::n_MeasureOpen()
{
    const CT_Report::CT_Since co_Since;
    const unsigned n_Before = vn_GetOffset();
    if (co_Since.b_Failed(qccz_Source))
        return 0;
    unsigned n_Size = 0;
    const int b_Taken = b_TakeEnd(&n_Size);
    const CT_Report::CT_Since co_Behind;
    vv_SetOffset(e_OriginBegin, static_cast<int>(n_Before));
    return !co_Behind.b_Failed(qccz_Source) && b_Taken ? n_Size : 0;
}

// The object is open for the moment only, and as it was afterwards.
unsigned CT_StdFile::n_MeasureClosed()
{
    unsigned n_Size = 0;
    vv_Open(e_AccessRead, e_OpenExisting, e_ShareNone, 1, 0);
    if (!b_Open) {
        CT_Report::sb_Failed(qccz_Source);
        v_Drop();
        return 0;
    }
    const int b_Taken = b_TakeEnd(&n_Size);
    vv_Close();
    if (!b_Open)
        return b_Taken ? n_Size : 0;
    CT_Report::sb_Failed(qccz_Source);
    v_Drop();
    v_NullOpen();
    return 0;
}

// In 64 bits, whatever the library's own offsets have.
unsigned long long CT_StdFile::n8_Tell() const
{
    errno = 0;
    return b_HasStream() ? _ftelli64(pso_File) : NOWHERE;
}

unsigned CT_StdFile::vn_GetOffset() const
{
    const unsigned long long n8_Offset = n8_Tell();
    if (n8_Offset <= LARGEST_OFFSET)
        return static_cast<unsigned>(n8_Offset);
    return b_FailOnStream(u"ftell", n8_Offset == NOWHERE ? errno : EFBIG);
}

void CT_StdFile::vv_SetOffset(et_Origin ec_Origin, int i_Offset)
{
    const unsigned long long n8_Before = n8_Tell();
    if (n8_Before == NOWHERE) {
        b_FailOnStream(u"ftell", errno);
        return;
    }
    if (!std::fseek(pso_File, i_Offset, ec_Origin))
        return;
    b_Fail(u"fseek", errno);
    _fseeki64(pso_File, static_cast<long long>(n8_Before), SEEK_SET);
    std::clearerr(pso_File);
}

// The flag as the platform's library has it, which is no 1.
int CT_StdFile::vb_IsEof() const
{
    return pso_File && std::feof(pso_File) ? EOF_FLAG : 0;
}

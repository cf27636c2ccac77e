// Ostra/File/StdFile.h: a file of the standard stream library.
#pragma once

#include <Ostra/File/File.h>
#include <Ostra/Frame/Export.h>
#include <Ostra/Frame/Platform.h>
#include <Ostra/Frame/RawCopy.h>

#include <cstddef>
#include <cstdio>

// A file behind a stream of the standard library, with a buffer of the file's buffer size. Bytes
// are never translated.
//
// Units:   sizes and offsets are bytes, up to 2 GiB - 1.
// Owns:    the stream, closed by vv_Close, vv_Set and the destructor.
// Reports: the library's error number and the name of its function, format 60003, with the full
//          name. 22 (EINVAL) for a stream that isn't there, 27 (EFBIG) for an offset or a size of
//          2 GiB or more. An error that was set before stops none of the operations here.
// Caller:  closes before opening again.
// Threads: one thread at a time.
class OSTRA_API CT_StdFile : public CT_File
{
public:
    // What v_Chmod allows. Writing counts alone.
    enum et_Permission : int
    {
        e_PermissionNone = 0,
        e_PermissionWrite = 0x80,
        e_PermissionRead = 0x100,
        e_PermissionReadWrite = 0x180
    };

    // ---- Construction ----------------------------------------------------------------------

    // As those of CT_File; nothing is opened. Without a name the buffer size is 0 until vv_Set
    // tells one, and an open fails.
    CT_StdFile();
    CT_StdFile(const CT_String* pco_Name, unsigned n_BufferSize);
    CT_StdFile(const CT_StdFile* pco_File);
    // Kept: the same for the stream, which both then close.
    OSTRA_RAW_COPY CT_StdFile(const CT_StdFile& co_Other) = default;
    OSTRA_RAW_COPY CT_StdFile& operator=(const CT_StdFile& co_Other) = default;

    ~CT_StdFile() override;

    static void* operator new(std::size_t n_Size) noexcept;
    static void* operator new(std::size_t, void* pv_Place) noexcept { return pv_Place; }
    static void operator delete(void* pv_Object);

    // ---- The primitives --------------------------------------------------------------------

    void vv_Set(const CT_File* pco_File) override;
    void vv_Set(const CT_String* pco_Name, unsigned n_BufferSize) override;
    void vv_Set() override;

    // Existing for writing empties the file or makes it, creating for reading demands it and keeps
    // its content; appending for reading alone fails, and else may stand at 0 until the first
    // write, which goes to the end. Sharing, attributes and flags are recorded without effect. A
    // stream whose buffer is refused (a size below 2) stays with the object, which isn't open;
    // vv_Close closes it.
    void vv_Open(et_Access ec_Access, et_Open ec_Open, et_Share ec_Share, unsigned n_Attribut,
                 unsigned n_Flag) override;
    // Where what is buffered can't be written the file stays open, and closing can be repeated; the
    // library keeps nothing of what it could not write.
    // The position of the sequential line readers is cleared.
    void vv_Close() override;
    void vv_Flush() override;
    // A file that isn't there is no failure.
    void vv_Remove() override;
    // Never replaces another file. On success the object is closed and has the new name and a
    // buffer size of 16,384.
    void vv_Rename(const CT_String* pco_NewName) override;
    unsigned vn_Read(void* pv_Data, unsigned n_Size) override;
    // All of it, or a failure.
    unsigned vn_Write(const void* pv_Data, unsigned n_Size) override;
    // A closed file is opened for the moment.
    unsigned vn_GetSize() const override;
    // The stream's own offset.
    unsigned vn_GetOffset() const override;
    void vv_SetOffset(et_Origin ec_Origin, int i_Offset) override;
    // 16 once a read has met the end of the file, until a seek; else 0.
    int vb_IsEof() const override;

    // ---- Services of the library -----------------------------------------------------------

    // The stream, null for none.
    const std::FILE* pcco_GetFILE() const { return pso_File; }

    // Makes the file writable or read-only, by name. A file that isn't there is no failure.
    void v_Chmod(et_Permission ec_Permission);
    // What the library tells of the file, by name.
    void v_GetFileInformation(struct _stat* pso_Stat) const;

private:
    void v_CloseOpen();
    void v_Leave();
    void v_Drop();
    int b_HasStream() const;
    int b_Fail(const char16_t* qcuz_Function, int i_Error,
               unsigned n_Line = __builtin_LINE()) const;
    int b_FailOnStream(const char16_t* qcuz_Function, int i_Error,
                       unsigned n_Line = __builtin_LINE()) const;
    void v_FailUnlessMissing(const char16_t* qcuz_Function, int i_Error,
                             unsigned n_Line = __builtin_LINE()) const;
    int b_Turn(et_FileAccess ec_Access);
    int b_TakeEnd(unsigned* pn_Size);
    unsigned n_MeasureOpen();
    unsigned n_MeasureClosed();
    unsigned long long n8_Tell() const;

    std::FILE* pso_File; // null when closed
};

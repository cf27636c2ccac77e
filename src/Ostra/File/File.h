// Ostra/File/File.h: what all files share.
#pragma once

#include <Ostra/Buffer/Buffer.h>
#include <Ostra/Frame/Export.h>
#include <Ostra/Frame/RawCopy.h>
#include <Ostra/String/UString.h>

// A file with a name of four parts, over primitives that a derived class supplies: lines of 8-bit
// and of UTF-16 text, transfers from and to buffers, appending of files.
//
// Units:   sizes and offsets are bytes, 32 bits of them.
// Owns:    copies of its names, and a work buffer that only grows.
// Reports: no error of its own; adds its places to the trail of what the primitives report. While
//          the thread has an error set, the primitives go on working; what is written on them here
//          gives up behind the first one and gives 0.
// Caller:  doesn't mix the sequential readers with seeks or with the other readers.
// Threads: one thread at a time.
class OSTRA_API CT_File
{
public:
    // What the caller wants to do.
    enum et_Access : int
    {
        e_AccessNone = 0,
        e_AccessRead = 1,
        e_AccessWrite = 2,
        e_AccessReadWrite = 3
    };
    // What to do about existence: the file must exist; its content goes; it is made if need be, and
    // its end is taken.
    enum et_Open : int
    {
        e_OpenExisting = 1,
        e_OpenCreate = 2,
        e_OpenAppend = 3
    };
    // What others may do meanwhile.
    enum et_Share : int
    {
        e_ShareNone = 0,
        e_ShareRead = 1,
        e_ShareWrite = 2,
        e_ShareReadWrite = 3
    };
    enum et_Origin : int
    {
        e_OriginBegin = 0,
        e_OriginCurrent = 1,
        e_OriginEnd = 2
    };
    // Attributes of a file that an open makes, in any combination.
    enum et_Attribute : unsigned
    {
        e_AttributeNormal = 1,
        e_AttributeArchive = 2,
        e_AttributeCompressed = 4,
        e_AttributeHidden = 8,
        e_AttributeReadOnly = 16,
        e_AttributeSystem = 32,
        e_AttributeDirectory = 64,
        e_AttributeTemporary = 128
    };
    // How an open file is worked with, in any combination.
    enum et_Flag : unsigned
    {
        e_FlagWriteThrough = 1,
        e_FlagOverlapped = 2,
        e_FlagNoBuffering = 4,
        e_FlagRandomAccess = 8,
        e_FlagSequentialScan = 16,
        e_FlagDeleteOnClose = 32
    };
    // Direction of the last transfer.
    enum et_FileAccess : int
    {
        e_FileAccessNone = 0,
        e_FileAccessRead = 1,
        e_FileAccessWrite = 2
    };

    // ---- Construction ----------------------------------------------------------------------

    // Without a name, for vv_Set.
    CT_File();
    // n_BufferSize is rounded up to a multiple of 1,024.
    CT_File(const CT_String* pco_Name, unsigned n_BufferSize);
    // Takes name and buffer size of the other file; closed.
    CT_File(const CT_File* pco_File);
    // Kept: by reference the members are copied one by one, the names and the work buffer without
    // a hold on their blocks; the pointer form and vv_Set make a file of its own.
    OSTRA_RAW_COPY CT_File(const CT_File& co_Other) = default;
    OSTRA_RAW_COPY CT_File& operator=(const CT_File& co_Other) = default;

    // ---- The primitives. The order of these operations is part of the interface. -----------

    virtual ~CT_File();

    // Make the object new, as the constructors do; an open file is closed. vv_Set() keeps the
    // buffer size. Name and file may be the object's own.
    virtual void vv_Set(const CT_File* pco_File);
    virtual void vv_Set(const CT_String* pco_Name, unsigned n_BufferSize);
    virtual void vv_Set();

    // Opens the file of the full name. n_Attribut takes et_Attribute, n_Flag et_Flag. The offset is
    // 0, or the end of the file for e_OpenAppend. A failure leaves a closed object closed.
    virtual void vv_Open(et_Access ec_Access, et_Open ec_Open, et_Share ec_Share,
                         unsigned n_Attribut, unsigned n_Flag) = 0;
    virtual void vv_Close() = 0;
    // Hands what was written to the disk.
    virtual void vv_Flush() = 0;
    // Delete or rename the file of the full name; on success the object has the new name.
    virtual void vv_Remove() = 0;
    virtual void vv_Rename(const CT_String* pco_NewName) = 0;
    // Transfer at the offset, and move it behind what was transferred. Bytes read, fewer at the end
    // of the file, or written; 0 on failure.
    virtual unsigned vn_Read(void* pv_Data, unsigned n_Size) = 0;
    virtual unsigned vn_Write(const void* pv_Data, unsigned n_Size) = 0;
    // The size of the file; 0 on failure.
    virtual unsigned vn_GetSize() const = 0;
    virtual unsigned vn_GetOffset() const = 0;
    // Moves the offset, also behind the end.
    virtual void vv_SetOffset(et_Origin ec_Origin, int i_Offset) = 0;
    // True at the end of the file or behind it.
    virtual int vb_IsEof() const = 0;

    // ---- Names: the full name and its parts always agree -----------------------------------

    const CT_UString* pcco_GetFullName() const { return &co_FullName; }
    const CT_UString* pcco_GetDrive() const { return &co_Drive; }
    const CT_UString* pcco_GetDirectory() const { return &co_Directory; }
    const CT_UString* pcco_GetName() const { return &co_Name; }
    const CT_UString* pcco_GetExtension() const { return &co_Extension; }

    // Copy the text; the other parts follow. An open file stays the one that was opened.
    void v_SetFullName(const CT_String* pco_FullName);
    void v_SetDrive(const CT_String* pco_Drive);
    void v_SetDirectory(const CT_String* pco_Directory);
    void v_SetName(const CT_String* pco_Name);
    void v_SetExtension(const CT_String* pco_Extension);

    // Makes the name absolute; 60012 for one that the system refuses or whose result has 260
    // characters or more, which stays as it was.
    void v_FullPath();
    // Whether a file or directory of the full name is there.
    int b_IsExistent() const;

    // ---- State: the arguments of the last successful open ----------------------------------

    int b_IsOpen() const { return b_Open; }
    unsigned n_GetBufferSize() const { return n_BufferSize; }
    et_Access ec_GetOpenAccess() const { return ec_OpenAccess; }
    et_Open ec_GetOpenModi() const { return ec_OpenModi; }
    et_Share ec_GetOpenShare() const { return ec_OpenShare; }
    unsigned n_GetOpenAttribut() const { return n_OpenAttribut; }
    unsigned n_GetOpenFlag() const { return n_OpenFlag; }

    // ---- Lines -----------------------------------------------------------------------------

    // True if the two bytes at the offset are FF FE; the file then stands at its beginning. A file
    // of less than two bytes doesn't move.
    int b_IsUnicode();

    // Read a line of bytes or of UTF-16 units (low byte first) up to its line feed into pco_Line,
    // without the feed and a carriage return before it; the next read begins behind it. n_ReadLineU
    // skips FF FE at offset 0. With pco_Strip its characters are stripped from both ends. Result:
    // the characters before stripping plus 1 (U: two bytes a character plus 2); without a line feed
    // at the end of the file the characters (U: times 2) alone. A carriage return that ends one of
    // the pieces in which the file is read (256 and 512 bytes) is always dropped.
    unsigned n_ReadLineC(CT_String* pco_Line, const CT_String* pco_Strip);
    unsigned n_ReadLineU(CT_String* pco_Line, const CT_String* pco_Strip);

    // The same for reading from start to end in large pieces (4,096 and 8,192 bytes): the offset
    // runs ahead, and what is left stays in the work buffer, also through a close. A last line
    // without a line feed gives 0, its text is in pco_Line.
    unsigned n_ReadLineCSequential(CT_String* pco_Line, const CT_String* pco_Strip);
    unsigned n_ReadLineUSequential(CT_String* pco_Line, const CT_String* pco_Strip);

    // Write the line, which may be null, as 8-bit text or as UTF-16, and CR LF behind it if
    // b_NewLine is set.
    void v_WriteLineC(const CT_String* pco_Line, int b_NewLine);
    void v_WriteLineU(const CT_String* pco_Line, int b_NewLine);

    // ---- Buffers and files -----------------------------------------------------------------

    // Reads up to n_Size bytes in place of the buffer's content; n_Size 0 leaves the buffer alone.
    // Result: bytes read.
    unsigned n_Read(CT_Buffer* pco_Buffer, unsigned n_Size);

    // Writes n_Size bytes of the buffer, its used size for -1. n_Size isn't cut to the used size,
    // but it ends with the buffer's room. An empty buffer writes nothing. Result: bytes written.
    unsigned n_Write(const CT_Buffer* pco_Buffer, unsigned n_Size);

    // Appends a whole file in pieces of n_ChunkSize bytes. Both files are closed, and are closed
    // again afterwards; a failed open leaves the source open, a failed write both.
    void v_Append(const CT_File* pco_Source, unsigned n_ChunkSize);

protected:
    void v_SetOpen(int b_IsOpen) { b_Open = b_IsOpen; }

    // Names the direction of a transfer. A change of it seeks to the present offset; where that
    // fails the direction stays. An error that was set before is no failure.
    void v_SetAccess(et_FileAccess ec_Access);

    // The order of the members is part of the interface.
    CT_UString co_FullName;
    CT_Buffer co_Buffer;     // work buffer of the line readers
    unsigned n_BufferOffset; // next unread byte or UTF-16 unit of it; 0 if there is none
    CT_UString co_Drive;     // with its colon
    CT_UString co_Directory; // with its last separator
    CT_UString co_Name;
    CT_UString co_Extension; // with its point
    unsigned n_BufferSize;
    et_FileAccess ec_FileAccess;
    int b_Open;
    et_Access ec_OpenAccess;
    et_Open ec_OpenModi;
    et_Share ec_OpenShare;
    unsigned n_OpenAttribut;
    unsigned n_OpenFlag;

    // Clears the record of how the file was opened.
    void v_NullOpen();

private:
    void v_Null();
    void v_Init();
    void v_Init(const CT_String* pco_Name, unsigned n_Size);
    void v_Init(const CT_File* pco_File);
    void v_Empty();

    void v_SplitPath();
    void v_MakePath();

    // The line readers' work on the members, once for both widths.
    template <class t_Unit>
    friend class CT_LineReader;
};

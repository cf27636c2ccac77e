// Ostra/File/WinFile.h: a file of the operating system.
#pragma once

#include <Ostra/File/File.h>
#include <Ostra/Frame/Export.h>
#include <Ostra/Frame/Platform.h>
#include <Ostra/Frame/RawCopy.h>

#include <cstddef>

// A file behind a handle of the operating system, with a mapped mode in which transfers are copies
// to and from one view of the whole file.
//
// Units:   sizes and offsets are bytes, 32 bits of them.
// Owns:    the handle, the mapping object and its view, all closed by vv_Close, vv_Set and the
//          destructor.
// Reports: the system's error with the full name; rename and copy with both names. An error that
//          was set before stops none of the operations here.
// Caller:  closes before opening again, leaves mapped mode before entering it again, and writes to
//          a mapped file in pieces smaller than its map.
// Threads: one thread at a time.
class OSTRA_API CT_WinFile : public CT_File
{
public:
    // ---- Construction ----------------------------------------------------------------------

    // As those of CT_File; nothing is opened.
    CT_WinFile();
    CT_WinFile(const CT_String* pco_Name, unsigned n_BufferSize);
    CT_WinFile(const CT_WinFile* pco_File);
    // Kept: the same for handle, mapping object and view, which both then close.
    OSTRA_RAW_COPY CT_WinFile(const CT_WinFile& co_Other) = default;
    OSTRA_RAW_COPY CT_WinFile& operator=(const CT_WinFile& co_Other) = default;

    ~CT_WinFile() override;

    static void* operator new(std::size_t n_Size) noexcept;
    static void* operator new(std::size_t, void* pv_Place) noexcept { return pv_Place; }
    static void operator delete(void* pv_Object);

    // ---- The primitives --------------------------------------------------------------------

    void vv_Set(const CT_File* pco_File) override;
    void vv_Set(const CT_String* pco_Name, unsigned n_BufferSize) override;
    void vv_Set() override;

    // A failed open can be repeated.
    void vv_Open(et_Access ec_Access, et_Open ec_Open, et_Share ec_Share, unsigned n_Attribut,
                 unsigned n_Flag) override;
    // A mapped file keeps the size of its map. After a failure the file is still open.
    void vv_Close() override;
    void vv_Flush() override;
    void vv_Remove() override;
    // Never replaces another file. On success the object is closed and has the new name and a
    // buffer size of 16,384. Its own handle is closed for the renaming if it stands in the way; if
    // the system refuses all the same, the object is open as it was.
    void vv_Rename(const CT_String* pco_NewName) override;
    unsigned vn_Read(void* pv_Data, unsigned n_Size) override;
    unsigned vn_Write(const void* pv_Data, unsigned n_Size) override;
    // A closed file is opened for the moment. A mapped file is as large as its map.
    unsigned vn_GetSize() const override;
    unsigned vn_GetOffset() const override;
    void vv_SetOffset(et_Origin ec_Origin, int i_Offset) override;
    int vb_IsEof() const override;

    // ---- Mapped mode -----------------------------------------------------------------------

    // The system's pointer stands where the offset was set last.
    HANDLE h_GetHandle() const;
    // Whether a view is there, and its first byte; null for none.
    int b_GetMapping() const { return pv_Map != nullptr; }
    void* pv_GetMapping() const;

    // Enters mapped mode: a reader's map is the file, a writer's is n_Size doubled until it is
    // larger than the file (-1: as large as the file), and the file grows to it. Leaves it: a
    // writer's file is cut to n_Size bytes, or keeps the size of the map if that is 0. Where it
    // isn't cut the offset stays, and the system's pointer is moved there.
    void v_SetMapping(int b_Map, unsigned n_Size);
    // Hands what was written to the view to the file.
    void v_FlushMap();

    // ---- Services of the system ------------------------------------------------------------

    // Sets the system's attribute word of the file. An error is set after every call, also after a
    // success.
    void v_SetAttributes(unsigned n_Attributes);
    // The system's attribute word of the file; -1 on failure.
    unsigned n_GetAttributes();
    // Copies the file; another file of that name is replaced.
    void v_CopyFile(const CT_String* pco_Target) const;
    // What the system tells of the open file.
    void v_GetFileInfo(_BY_HANDLE_FILE_INFORMATION* pso_Info);
    // Locks a range of the open file against other handles, or lets it go; a range that is taken is
    // an error at once.
    void v_LockFile(unsigned n_From, unsigned n_Length);
    void v_UnlockFile(unsigned n_From, unsigned n_Length);
    // Cuts or extends the file to where the system's file pointer stands.
    void v_SetEndOfFile();
    // Asks for that many handles; systems of today don't limit them.
    static void sv_SetHandleCount(unsigned n_Count);

private:
    friend class CT_RecordManager; // transfers at a place

    // ---- Transfers at a place ---------------------------------------------------------------
    //
    // A seek from the beginning and a transfer in one, where the view has all of the bytes: the
    // place of them. Null where the two have to be called one after the other.

    const char* pcc_ReadAt(unsigned n_From, unsigned n_Size)
    {
        return pc_At(n_From, n_Size, n_ReadEnd, e_FileAccessRead);
    }
    char* pc_WriteAt(unsigned n_From, unsigned n_Size)
    {
        return pc_At(n_From, n_Size, n_WriteEnd, e_FileAccessWrite);
    }
    char* pc_At(unsigned n_From, unsigned n_Size, unsigned n_End, et_FileAccess ec_Access)
    {
        if (n_From >= n_End || n_Size > n_End - n_From)
            return nullptr;
        n_Pointer = n_From;
        b_PointerLate = 1;
        n_Offset = n_From + n_Size;
        ec_FileAccess = ec_Access;
        return static_cast<char*>(pv_Map) + n_From;
    }
    // A look that leaves no trace.
    const char* pcc_PeekAt(unsigned n_From, unsigned n_Size) const
    {
        const bool b_Within = n_From < n_ReadEnd && n_Size <= n_ReadEnd - n_From;
        return b_Within ? static_cast<const char*>(pv_Map) + n_From : nullptr;
    }
    // Nobody else can have changed the bytes of the view.
    int b_IsViewOwn() const { return n_ReadEnd && !b_ViewKnown; }

    // ---- The system's pointer ---------------------------------------------------------------

    void v_OpenQuiet();
    void v_CloseQuiet() const;
    int b_SettlePointer() const;
    int b_PutPointer(unsigned n_Place) const;

    // ---- Renaming ---------------------------------------------------------------------------

    // All that a handle comes with.
    struct st_Opening
    {
        et_Access ec_Access;
        et_Open ec_Modi;
        et_Share ec_Share;
        unsigned n_Attribut;
        unsigned n_Flag;
        et_FileAccess ec_Direction;
        int b_Mapped;
        unsigned n_Offset;
        unsigned n_Pointer;
    };

    int b_Move(const CT_String* pcco_NewName) const;
    int b_StandsInTheWay() const;
    int b_MoveClosed(const CT_String* pcco_NewName);
    st_Opening so_GetOpening() const;
    void v_OpenAgain(const st_Opening& so_Opening);

    void v_Null();
    void v_Forget();
    void v_CloseOpen();
    HANDLE h_Create(et_Access ec_Access, unsigned n_How, et_Share ec_Share, unsigned n_Word) const;
    unsigned n_MeasureClosed() const;
    int b_Seek(et_Origin ec_Origin, int i_Offset);
    int b_Turn(et_FileAccess ec_Access);

    static constexpr unsigned WHOLE_FILE = 0xFFFFFFFF; // as the size of a map

    int b_CreateMap(unsigned n_Size);
    int b_FitMap(unsigned* pn_Size, unsigned n_FileSize) const;
    int b_GrowMap(unsigned long long n_End);
    void v_RestoreMap(unsigned n_Size);
    int b_RefuseMap(unsigned n_Error, unsigned n_Line = __builtin_LINE()) const;
    int b_CloseMap(unsigned n_Size);
    int b_LeaveMap(unsigned n_Size);
    // Room for a writer's transfers up to there.
    int b_Reserve(unsigned n_End)
    {
        return !pv_Map || n_End <= n_MapSize || ec_OpenAccess == e_AccessRead || b_GrowMap(n_End);
    }
    unsigned n_ReadMap(unsigned n_From, void* pv_Data, unsigned n_Size);
    int b_WriteMap(unsigned n_From, const void* pv_Data, unsigned n_Size);

    // The order of the members is part of the interface.
    HANDLE h_File;     // null when closed, INVALID_HANDLE_VALUE after a failed open
    unsigned n_Offset; // the offset as this class keeps it
    HANDLE h_Map;      // the mapping object, null for none
    void* pv_Map;      // the view from offset 0, null for none
    unsigned n_MapSize;

    // In mapped mode transfers and seeks don't ask the system. Its pointer is moved later, when
    // somebody can see it. That is so until the handle is handed out.
    mutable unsigned n_ReadEnd;  // reads up to there take the view alone; 0: none do
    mutable unsigned n_WriteEnd; // writes up to there take the view alone; 0: none do
    mutable unsigned n_Pointer;  // where the system's pointer belongs, if it is late
    mutable int b_PointerLate;   // the system's pointer stands elsewhere
    mutable int b_HandleKnown;   // handed out since the file was opened
    mutable int b_ViewKnown;     // handed out since it was made
};

// Ostra/Frame/ErrorManager.h: the failure protocol of the library.
#pragma once

#include <Ostra/ARRAY/VoidArray.h>
#include <Ostra/Frame/Exit.h>
#include <Ostra/Frame/Export.h>
#include <Ostra/Frame/Init.h>
#include <Ostra/Frame/Platform.h>

#include <cstdarg>

class CT_Report;

// Holds one error for each failing thread, and the trail of places that it passed on its way out.
//
// A function that fails sets the error and adds its place; each caller sees b_IsSetError, adds its
// own place and returns; the top of the application reads code, text and trail, and clears the
// error. The first error of a thread stays: as long as it is set, a further one is dropped, its
// arguments unread. One that is held can be read, while b_IsSetError is false and a new error
// replaces it.
//
// Units:   text is UTF-16; messages have up to 1,023 units and a terminator; positions count from
//          1.
// Owns:    10 error and 100 location records, made at start-up for all threads together.
// Reports: nothing. An eleventh failing thread ends the process; a place for which there is no
//          record is dropped.
// Caller:  asks b_IsSetError or b_IsHoldError before the operations that need a record. Without one
//          the getters give 0 or an empty text, and the others do nothing.
// Threads: errors are kept apart by thread, but the lists have no lock: threads that fail at the
//          same moment race.
class OSTRA_API CT_ErrorManager
{
public:
    struct st_Location
    {
        const char* qccz_File; // source path, kept by pointer: a literal
        unsigned n_Line;
        st_Location* pso_Next; // next location, or the free list's link
    };

    struct st_Error
    {
        HINSTANCE h_Instance; // module in which the format id is looked up
        unsigned n_Thread;
        unsigned n_ErrorCode;
        unsigned n_FormatID; // 0 for none
        unsigned short au_Message[1024];
        unsigned n_LocationCount;
        st_Location* pso_FirstLocation; // the oldest
        st_Location* pso_LastLocation;  // the newest
        st_Error* pso_Next;             // next on whichever list holds this one
        int b_Ignore;                   // hides the error from b_IsSetError
    };

    // Writes the message of an error into an area of n_Room bytes: the text that the prefix is put
    // in front of. Result: 0 where the manager is to write it from the format. An error that comes
    // as text passes its code in both numbers.
    using Formatter = int (*)(unsigned short* pu_Message, unsigned n_Room, unsigned n_Code,
                              unsigned n_FormatID, va_list args);

    struct st_Thread
    {
        unsigned n_Thread;
        Formatter pf_Format; // may be null
    };

    // ---- Life -------------------------------------------------------------------------------

    // The instance of the process; null before the library's start-up and after its end.
    static CT_ErrorManager* spco_Get();
    // The default module of formats.
    static void sv_SetInstance(HINSTANCE h_Instance);

    // ---- Setting an error -------------------------------------------------------------------

    // Text: "(code): " and the format, which the module's string table has under that id, with the
    //       arguments. A null module means the default one; an id that the table doesn't have, and
    //       a null format, mean an empty format.
    void v_SetError(unsigned n_Code, HINSTANCE h_Instance, unsigned n_FormatID, ...);
    void v_SetError(unsigned n_Code, const unsigned short* qcuz_Format, ...);
    // Code 0 and the bare text, without a prefix; a null format means an empty text.
    void v_SetMessageError(const unsigned short* qcuz_Format, ...);
    void v_SetMessageError(const unsigned short* qcuz_Format, va_list args);
    // Kept: the first converts the format by code page 0 and formats wide, so its %s takes wide
    // text; the second formats 8-bit text, of up to 1,023 bytes, and makes a unit of each byte.
    void v_SetMessageError(const char* qccz_Format, ...);
    void v_SetMessageError(const char* qccz_Format, va_list args);
    // The thread's last system error with the system's text for it, which is empty for a code that
    // the system doesn't know; with a format, its text follows in brackets. Sets the last error to
    // 0, even when the thread has an error already.
    void v_SetSystemError();
    void v_SetSystemError(const unsigned short* qcuz_Format, ...);
    // The same for the last socket error and sqcuz_GetSocketError.
    void v_SetSocketError();
    void v_SetSocketError(const unsigned short* qcuz_Format, ...);

    // ---- Formatters of threads ----------------------------------------------------------------

    // From now on the errors of that thread (v_SetError, not messages and system errors) are
    // offered to the formatter, which a later registration of the thread hides. Reports 60006 when
    // the heap is exhausted.
    void v_TakeThread(Formatter pf_Format, unsigned n_Thread);
    // Takes the latest registration of the thread back; the error of the thread stays.
    void v_GiveThread(unsigned n_Thread);

    // ---- Showing it to the user ---------------------------------------------------------------

    // Shows message and trail of the thread's set error, else of its held one, in a message box and
    // waits for the answer. The title is a text, or where that is null the text of that number in
    // the string table of the error's module; 0 for none. The flags are MessageBox's: buttons and
    // icon. IDABORT (3) ends the process by abort, IDRETRY (4) stops in a debugger and ends the
    // process where there is none. Result: the button's number; 0 without an error, with no box; on
    // Linux -1 without a display or zenity, with title and text on the standard error stream. One
    // thread at a time: title and text lie in an area of the process, of 1,024 units.
    int i_ErrorLocationWindow(unsigned n_TitleID, const unsigned short* qcuz_Title,
                              unsigned n_Flags) const;

    // ---- Managing the thread's error --------------------------------------------------------

    // True if the thread has an error set that isn't ignored.
    int b_IsSetError() const { return pso_SetErrors && b_IsSetHere(); }
    int b_IsHoldError() const;
    // Sets the error aside: it can be read until the next one replaces it, which may quote it.
    void v_HoldError();
    // Forgets the set error, or else the held one.
    void v_ClearError();
    // Hides the set error from b_IsSetError, or shows it again. It stays in the way of new ones.
    void v_SetIgnoreError(int b_Ignore);
    // Adds a place to the trail of the set error; keeps the pointer. Dropped when all location
    // records are in use.
    void v_AddLocation(const char* qccz_File, unsigned n_Line);

    // ---- Access: the thread's set error, else its held one ----------------------------------

    // 0, or an empty text, for a thread without an error and for a position that isn't there. The
    // message is the record's own, and goes with the error.
    unsigned n_GetErrorCode() const;
    // The number of the format in its string table; 0 for a format that came as text.
    unsigned n_GetFormatID() const;
    const unsigned short* qcuz_GetErrorMessage() const;
    unsigned n_GetLocationCount() const;
    // Position 1 is the place nearest the failure.
    const char* qccz_GetLocationFileAt(unsigned n_Position) const;
    unsigned n_GetLocationLineAt(unsigned n_Position) const;

    // ---- Flags: stored and read, nothing acts on them ---------------------------------------

    void v_SetDebugMessageOnError(int b_On);
    int b_GetDebugMessageOnError() const;
    void v_SetInterruptOnError(int b_On);
    int b_GetInterruptOnError() const;
    // Do nothing.
    void v_OutputDebugMessage(const char* qccz_Message) const;
    void v_OutputDebugMessage(const unsigned short* qcuz_Message) const;

    // ---- Static services --------------------------------------------------------------------

    // The text of a socket error; "Unknown socket error" for a number without one.
    static const unsigned short* sqcuz_GetSocketError(unsigned n_Code);

private:
    friend class CT_Report;

    CT_ErrorManager(unsigned n_ErrorCount, unsigned n_LocationCount);
    ~CT_ErrorManager();
    CT_ErrorManager(const CT_ErrorManager&) = delete;
    CT_ErrorManager& operator=(const CT_ErrorManager&) = delete;
    static void* operator new(decltype(sizeof(0)) n_Size) noexcept;
    static void operator delete(void* pv_Object);
    void v_Null();
    void v_Init(unsigned n_ErrorCount, unsigned n_LocationCount);
    void v_Exit();
    static void sv_Init();
    static void sv_Exit();

    int b_IsSetHere() const;
    st_Error* pso_CreateNewError(unsigned n_Code, HINSTANCE h_Instance, unsigned n_FormatID);
    st_Error* pso_CreateError();
    st_Error* pso_GetError() const;
    st_Error* pso_GetError(st_Error* pso_List) const;
    st_Location* pso_GetLocationAt(st_Error* pso_Error, unsigned n_Position) const;
    static unsigned n_GetThread();
    void v_AddLocation(st_Error* pso_Error, const char* qccz_File, unsigned n_Line);
    void v_DestroyError(st_Error* pso_Error, st_Error** ppso_List);
    void v_DestroyLocations(st_Error* pso_Error);
    static void sv_Unlink(st_Error* pso_Error, st_Error** ppso_List);
    void v_SetPrefix(st_Error* pso_Error);
    unsigned n_GetThreadIndex(unsigned n_Thread) const;
    const st_Thread* pso_GetThread(unsigned n_Thread) const;
    int b_FormatByThread(st_Error* pso_Error, unsigned n_FormatID, va_list args);
    unsigned n_WriteTitle(unsigned n_TitleID, const unsigned short* qcuz_Title,
                          const st_Error* pcso_Error) const;
    void v_WriteText(unsigned n_At, const st_Error* pcso_Error) const;
    unsigned n_WriteTrail(unsigned n_At, const st_Location* pcso_Location) const;
    void v_SystemError(const unsigned short* qcuz_Format, va_list args);
    void v_WideSystemError(unsigned n_Code, const unsigned short* qcuz_Format, va_list args);
    void v_NarrowSystemError(unsigned n_Code, const unsigned short* qcuz_Format, va_list args);
    void v_SocketError(const unsigned short* qcuz_Format, va_list args);
    void v_SystemError(unsigned n_Code, const unsigned short* qcuz_Text,
                       const unsigned short* qcuz_Format, va_list args);
    st_Error* pso_SystemError(unsigned n_Code, const unsigned short* qcuz_Text);
    void v_FormatSystemError(st_Error* pso_Error, const unsigned short* qcuz_Format, va_list args);
    void v_StripSystemError(unsigned short* pu_Message);

    // The order of the members is part of the interface.
    unsigned n_Errors;
    st_Error* paso_Errors; // the one block of n_Errors records
    st_Error* pso_FreeErrors;
    st_Error* pso_SetErrors;  // set errors of all threads
    st_Error* pso_HoldErrors; // held errors of all threads
    unsigned n_Locations;
    st_Location* paso_Locations; // the one block of n_Locations records
    st_Location* pso_FreeLocations;
    CT_VoidArray co_Threads; // of pointers to st_Thread
    int b_InterruptOnError;
    int b_DebugMessageOnError;

    static CT_ErrorManager* spco_ErrorManager;
    static HINSTANCE sh_Instance;
    static CT_Init sco_Init;
    static CT_Exit sco_Exit;
    static const unsigned short sau_ErrorFormat[];
    static unsigned short sau_LoadBuffer[];
    static unsigned short sau_MessageBuffer[]; // title and text of the window
};

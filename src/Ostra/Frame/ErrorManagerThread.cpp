// Ostra/Frame/ErrorManagerThread.cpp: formatters of threads.
#include <Ostra/Frame/ErrorManager.h>

#include <Ostra/Frame/Report.h>

#include <cstdlib>

static constexpr char qccz_Source[] = "Ostra/Frame/ErrorManager";

void CT_ErrorManager::v_TakeThread(Formatter pf_Format, unsigned n_Thread)
{
    st_Thread* pso_Thread = static_cast<st_Thread*>(std::malloc(sizeof(st_Thread)));
    if (!pso_Thread) {
        CT_Report::sv_Memory(qccz_Source);
        return;
    }
    *pso_Thread = {n_Thread, pf_Format};
    const unsigned n_Count = co_Threads.n_GetCount();
    const CT_Report::CT_Since co_Since;
    co_Threads.v_Insert(&pso_Thread);
    const bool b_Inserted = co_Threads.n_GetCount() != n_Count;
    if (!co_Since.b_Failed(qccz_Source) && b_Inserted)
        return;
    // An array that finds less room than it wants reports, and yet takes the item.
    if (b_Inserted)
        co_Threads.v_RemoveAt(n_Count + 1);
    std::free(pso_Thread);
}

void CT_ErrorManager::v_GiveThread(unsigned n_Thread)
{
    const unsigned n_Index = n_GetThreadIndex(n_Thread);
    if (!n_Index)
        return;
    st_Thread* pso_Thread;
    co_Threads.v_GetAt(&pso_Thread, static_cast<int>(n_Index));
    co_Threads.v_RemoveAt(n_Index);
    std::free(pso_Thread);
}

// The latest entry of the thread; 0 for none.
unsigned CT_ErrorManager::n_GetThreadIndex(unsigned n_Thread) const
{
    st_Thread* pso_Thread;
    for (unsigned n_Index = co_Threads.n_GetCount(); n_Index; --n_Index) {
        co_Threads.v_GetAt(&pso_Thread, static_cast<int>(n_Index));
        if (pso_Thread->n_Thread == n_Thread)
            return n_Index;
    }
    return 0;
}

const CT_ErrorManager::st_Thread* CT_ErrorManager::pso_GetThread(unsigned n_Thread) const
{
    st_Thread* pso_Thread = nullptr;
    if (const unsigned n_Index = n_GetThreadIndex(n_Thread))
        co_Threads.v_GetAt(&pso_Thread, static_cast<int>(n_Index));
    return pso_Thread;
}

// True if the thread's formatter has written the message; else the message is empty.
int CT_ErrorManager::b_FormatByThread(st_Error* pso_Error, unsigned n_FormatID, va_list args)
{
    const st_Thread* pcso_Thread = pso_GetThread(pso_Error->n_Thread);
    if (!pcso_Thread || !pcso_Thread->pf_Format)
        return 0;
    unsigned short* pu_Message = pso_Error->au_Message;
    constexpr unsigned n_Room = sizeof(pso_Error->au_Message);
    va_list copy;
    va_copy(copy, args);
    const int b_Written =
        pcso_Thread->pf_Format(pu_Message, n_Room, pso_Error->n_ErrorCode, n_FormatID, copy);
    va_end(copy);
    // A formatter that fills the area to its end leaves no terminator.
    pu_Message[n_Room / sizeof(*pu_Message) - 1] = 0;
    if (!b_Written)
        pu_Message[0] = 0;
    return b_Written;
}

// Ostra/Frame/Report.h: the one way in which the library's own code reports a failure. Internal.
//
// A report is one call. It sets the error unless the thread has one already, and adds the place of
// the call to the trail: qccz_Source is the path of the class, which is said once a class, whatever
// the number of its sources; the line supplies itself.
#pragma once

#include <Ostra/Frame/ErrorManager.h>

#include <cstddef>

class CT_Report
{
public:
    // Out of memory: code and format id 60006.
    static void sv_Memory(const char* qccz_Source, unsigned n_Line = __builtin_LINE());

    // The block of a class's own operator new: from the heap, or null and a report of exhaustion.
    static void* spv_New(std::size_t n_Size, const char* qccz_Source,
                         unsigned n_Line = __builtin_LINE());

    // The thread's last system error, bare; with the name of a file in brackets; with two names,
    // "%s : %s".
    static void sv_System(const char* qccz_Source, unsigned n_Line = __builtin_LINE());
    static void sv_System(const char* qccz_Source, const unsigned short* qcuz_Name,
                          unsigned n_Line = __builtin_LINE());
    static void sv_System(const char* qccz_Source, const unsigned short* qcuz_Name,
                          const unsigned short* qcuz_NewName, unsigned n_Line = __builtin_LINE());

    // A code with a format of the string table, and up to three arguments for it.
    static void sv_Format(const char* qccz_Source, unsigned n_Code, unsigned n_FormatID,
                          const void* pcv_First = nullptr, const void* pcv_Second = nullptr,
                          unsigned n_Third = 0, unsigned n_Line = __builtin_LINE());

    // A code with a format given as text and one wide argument. A name within the format may hold
    // directives: behind the argument stand as many empty texts as one of 259 units can ask for.
    static void sv_Text(const char* qccz_Source, unsigned n_Code, const unsigned short* qcuz_Format,
                        const unsigned short* qcuz_Argument, unsigned n_Line = __builtin_LINE());

    // True while the thread has an error set.
    static int sb_IsSet() { return CT_ErrorManager::spco_ErrorManager->b_IsSetError(); }
    // True if no thread at all has an error set.
    static int sb_NoneFailed() { return !CT_ErrorManager::spco_ErrorManager->pso_SetErrors; }

    // True while the thread has an error set; has then added this place to its trail.
    static int sb_Failed(const char* qccz_Source, unsigned n_Line = __builtin_LINE())
    {
        CT_ErrorManager* pco_Errors = CT_ErrorManager::spco_ErrorManager;
        if (!pco_Errors->b_IsSetError())
            return 0;
        pco_Errors->v_AddLocation(qccz_Source, n_Line);
        return 1;
    }

    // Tells what fails from now on from an error that was set before: a report leaves a place in
    // any case. A report for whose place there was no room isn't seen behind an older error.
    class CT_Since
    {
    public:
        CT_Since() : n_Places(sn_Places()) {}

        // True if something has failed since.
        int b_HasFailed() const { return sn_Places() != n_Places; }
        // The same; has then added this place to the trail.
        int b_Failed(const char* qccz_Source, unsigned n_Line = __builtin_LINE()) const
        {
            return b_HasFailed() && sb_Failed(qccz_Source, n_Line);
        }

    private:
        // 0 without an error.
        static unsigned sn_Places()
        {
            return sb_IsSet() ? 1 + CT_ErrorManager::spco_ErrorManager->n_GetLocationCount() : 0;
        }

        unsigned n_Places;
    };
};

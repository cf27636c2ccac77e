// Ostra/Frame/DatabaseError.h: texts of the database errors.
#pragma once

#include <Ostra/Frame/Export.h>

// The table of database error texts, by code. A %s in a text takes wide text, the name of the file.
//
// Reports: nothing.
// Threads: any number.
class OSTRA_API CT_DatabaseError
{
public:
    struct st_ErrorMessage
    {
        unsigned n_Code; // 0 ends the table
        const unsigned short* qcuz_Message;
    };

    // The text of a code; null for one below 31000 and for one that the table doesn't have.
    static const unsigned short* sqcuz_GetErrorMessage(unsigned n_Code);
    // Formats the code's text, or "Unspecified Database Error" when there is none, with the
    // arguments behind it. At most n_Length units, the terminator included; none behind that.
    static void sv_FormatError(unsigned short* pu_Out, unsigned n_Length, unsigned n_Code, ...);

private:
    static const st_ErrorMessage saso_ErrorMessage[];
};

// Ostra/Frame/DatabaseError.cpp
#include <Ostra/Frame/DatabaseError.h>

#include <Ostra/Frame/Print.h>
#include <Ostra/Frame/Text.h>

namespace
{
constexpr unsigned FIRST_CODE = 31000;
}

// A cast, not a call, so that the table is there before any code runs.
#define TEXT16(literal) reinterpret_cast<const unsigned short*>(u##literal)

const CT_DatabaseError::st_ErrorMessage CT_DatabaseError::saso_ErrorMessage[] = {
    {31000, TEXT16("Invalid file format in %s")},
    {31001, TEXT16("Could not obtain lock for %s")},
    {31002, TEXT16("Could not release lock on %s")},
    {31003, TEXT16("Unsufficient lock to perform this operation on file %s")},
    {31004, TEXT16("Buffer overflow (user data, file %s)")},
    {31005, TEXT16("Corrupt data")},
    {31050, TEXT16("Invalid RecordManager file format in %s")},
    {31051, TEXT16("Invalid record reference in %s")},
    {31052, TEXT16("Resource max count exceeded in %s")},
    {31053, TEXT16("Resource not found in %s")},
    {31054, TEXT16("Resource already exists in %s")},
    {31100, TEXT16("Invalid index file format in %s")},
    {31101, TEXT16("Reference too large in %s")},
    {31102, TEXT16("Key too long in %s")},
    {31103, TEXT16("Index full in %s")},
    {31104, TEXT16("Key already exists in %s")},
    {31105, TEXT16("Key not found in %s")},
    {31106, TEXT16("Locale not installed")},
    {31107, TEXT16("Unicode to MBCS conversion failed in %s")},
    {31150, TEXT16("")},
    {0, nullptr},
};

#undef TEXT16

const unsigned short* CT_DatabaseError::sqcuz_GetErrorMessage(unsigned n_Code)
{
    if (n_Code < FIRST_CODE)
        return nullptr;
    const st_ErrorMessage* pcso_Entry = saso_ErrorMessage;
    while (pcso_Entry->n_Code && pcso_Entry->n_Code != n_Code)
        ++pcso_Entry;
    return pcso_Entry->qcuz_Message;
}

void CT_DatabaseError::sv_FormatError(unsigned short* pu_Out, unsigned n_Length, unsigned n_Code,
                                      ...)
{
    const unsigned short* qcuz_Format = sqcuz_GetErrorMessage(n_Code);
    if (!qcuz_Format)
        qcuz_Format = qcuz_Text(u"Unspecified Database Error");
    va_list args;
    va_start(args, n_Code);
    CT_Print::si_Print(pu_Out, n_Length, qcuz_Format, args);
    va_end(args);
}

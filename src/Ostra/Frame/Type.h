// Ostra/Frame/Type.h: type records, by which an object tells its class.
#pragma once

#include <Ostra/Frame/Export.h>
#include <Ostra/Frame/Platform.h>
#include <Ostra/Frame/RawCopy.h>

// The record of one class: its name, its specimen object, and the class sub-objects that an object
// of the class has.
//
// A class takes part with a static record and a static specimen behind it. The record's
// construction opens a collection; each class level of the specimen enters itself, and the
// outermost one closes the collection.
//
// Owns:    its table of sub-objects; the name and the specimen are kept by pointer.
// Reports: nothing.
// Threads: built and taken down by the loader's thread; in between everything only reads.
class OSTRA_API CT_Type
{
public:
    // One class sub-object: its class, and its address while it is collected, its offset in the
    // object afterwards.
    struct st_Type
    {
        CT_Type* pco_Type;
        LONG_PTR i_Offset;
    };

    // ---- Construction -----------------------------------------------------------------------

    // Puts the record in front of the chain of all records and opens its collection.
    CT_Type(char* qcz_Name, void* pv_Object, unsigned n_Size);
    virtual ~CT_Type();
    // Kept: a copy shares the table with its source, and both free it; the library copies no
    // record.
    OSTRA_RAW_COPY CT_Type(const CT_Type& co_Other) = default;
    OSTRA_RAW_COPY CT_Type& operator=(const CT_Type& co_Other) = default;

    // ---- Access -----------------------------------------------------------------------------

    // The pointers that the constructor was given.
    const char* qccz_GetName() const;
    const void* pcv_GetObject() const;
    // Entries of the table; runs down to 0 while the specimen is destructed.
    unsigned n_GetTypes() const;
    // The sub-object of that class in pv_This; null when the class has none of it or more than one.
    void* pv_CastTo(void* pv_This, const CT_Type* pcco_Type) const;

    // ---- Collection -------------------------------------------------------------------------

    // Closes the collection: the classes entered become the record's table.
    void v_Enter();
    // Enters a sub-object of the specimen under construction.
    static void sv_Enter(void* pv_This, CT_Type* pco_Type);
    // True if the address lies in the specimen under construction.
    static int sb_InConstruct(const void* pcv_This);
    // True if the address lies in the specimen under destruction; asked once by each of its class
    // levels.
    static int sb_InDestruct(const void* pcv_This)
    {
        return spco_Destruct ? sb_InSpecimen(pcv_This) : 0;
    }
    // Announces the destruction of the specimen of that record.
    static void sv_ToDestruct(void* pv_Type);

private:
    void v_Init(char* qcz_TypeName, void* pv_Specimen, unsigned n_SpecimenSize);
    void v_Leave();
    void v_Exit();
    int b_InObject(const void* pcv_This) const;
    static int sb_InSpecimen(const void* pcv_This);

    static constexpr unsigned MAX_TYPES = 32;

    // The order of the members is part of the interface.
    char* qcz_Name;
    void* pv_Object;
    unsigned n_Size;
    st_Type* paso_Types;
    unsigned n_Types;
    CT_Type* pco_Next;

    static st_Type
        saso_Types[MAX_TYPES]; // the specimen under construction, as far as it is entered
    static unsigned sn_Types;
    static CT_Type* spco_Any; // the chain of all records, the latest first
    static CT_Type* spco_Construct;
    static CT_Type* spco_Destruct;
};

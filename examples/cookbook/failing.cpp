// examples/cookbook/failing.cpp: what a failure leaves, and how a sequence of calls ends at it.
#include <Ostra/Ostra.h>

#include <cstdio>

static CT_ErrorManager& Errors()
{
    return *CT_ErrorManager::spco_Get();
}

// Shows the error and its trail, the place nearest the failure first, and clears it. The text is
// the system's, so only its code is shown here; qcuz_GetErrorMessage has it.
static void Report(const char* title)
{
    std::printf("%s: code %u\n", title, Errors().n_GetErrorCode());
    for (unsigned n = 1; n <= Errors().n_GetLocationCount(); ++n)
        std::printf("  %s\n", Errors().qccz_GetLocationFileAt(n)); // the line: ...LineAt
    Errors().v_ClearError();
}

// Every call finds the error set, adds its place and goes: the trail tells the one failure many
// times.
static void CarryOn(CT_RecordManager& records)
{
    CT_Buffer data;
    records.v_Open(CT_RecordManager::e_OpenRead, 0);
    records.v_GetResource(1, &data);
    records.v_GetRecord(1, &data);
    records.v_Close(1);
}

// Ends at the first failure: one question before each call that relies on the one before. What is
// open is closed when its object goes.
static bool Stop(CT_RecordManager& records)
{
    CT_Buffer data;
    records.v_Open(CT_RecordManager::e_OpenRead, 0);
    if (!Errors().b_IsSetError())
        records.v_GetResource(1, &data);
    if (!Errors().b_IsSetError())
        records.v_GetRecord(1, &data);
    if (!Errors().b_IsSetError())
        records.v_Close(1);
    return !Errors().b_IsSetError();
}

int main()
{
    const CT_UString name(u"missing.rec");
    const CT_WinFile file(&name, 0);
    CT_RecordManager records(&file);
    CarryOn(records);
    Report("carried on");
    if (!Stop(records))
        Report("stopped");
    return Errors().b_IsSetError();
}

// examples/cookbook/diagnosing.cpp: diagnostic text with a label in front.
#include <Ostra/Ostra.h>

#include <cstdio>

// Narrow formats take narrow text for %s and wide text for %S; wide formats do it the other way
// round, and are written in UTF-8.
static void Trace(CT_TestOut& out, const CT_CString& file, const CT_UString& word, unsigned count)
{
    out.v_Out("%s has %u records\n", file.qccz_Get(), count);
    out.v_Out(CT_UString(u"the first is %s\n").qcuz_Get(), word.qcuz_Get());
}

static void TraceError(CT_TestOut& out)
{
    CT_ErrorManager& errors = *CT_ErrorManager::spco_Get();
    out.v_Out(CT_UString(u"%s\n").qcuz_Get(), errors.qcuz_GetErrorMessage());
    for (unsigned n = 1; n <= errors.n_GetLocationCount(); ++n)
        out.v_Out("at %s\n", errors.qccz_GetLocationFileAt(n));
    errors.v_ClearError();
}

int main()
{
    CT_TestOut out(stdout, "reader: "); // or the name of a file
    Trace(out, "names.rec", u"house", 12);

    CT_ErrorManager& errors = *CT_ErrorManager::spco_Get();
    errors.v_SetMessageError("%u of %u records can't be read", 2U, 12U);
    errors.v_AddLocation("Reader", 27);
    TraceError(out);
    return errors.b_IsSetError();
}

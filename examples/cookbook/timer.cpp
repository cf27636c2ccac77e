// examples/cookbook/timer.cpp: how long a piece of work took.
#include <Ostra/Ostra.h>

#include <cstdio>

int main()
{
    const CT_Timer start;
    CT_UString text;
    for (unsigned n = 0; n < 1000; ++n)
        text.v_Append(static_cast<unsigned short>('a' + n % 26));
    const CT_Timer end;

    unsigned milliseconds, seconds, minutes, hours, days;
    start.v_Delta(&milliseconds, &seconds, &minutes, &hours, &days, &end);
    std::printf("%u characters in %u minutes\n", text.vn_GetLength(),
                60 * hours + minutes); // a null timer in place of &end measures up to now
    const bool is_same = start.n_MillisecondsBetween(&end) == end.n_MillisecondsBetween(&start);
    std::printf("%s either way\n", is_same ? "the same" : "another");
    return CT_ErrorManager::spco_Get()->b_IsSetError();
}

// System/Time/DateToken.cpp
#include <System/Time/DateToken.h>

#include <algorithm>

// The letters of fields.
static bool b_IsField(unsigned short u_Char)
{
    for (const char c : {'d', 'M', 'y', 'g', 'h', 'H', 'm', 's', 't'}) {
        if (u_Char == c)
            return true;
    }
    return false;
}

int CT_DateTokens::b_Next(st_DateToken* pso_Out)
{
    if (!*qcuz_Picture)
        return 0;
    *pso_Out = {};
    if (*qcuz_Picture == '\'')
        v_Quoted(pso_Out);
    else if (b_IsField(*qcuz_Picture))
        v_Field(pso_Out);
    else
        v_Literal(pso_Out);
    return 1;
}

void CT_DateTokens::v_Literal(st_DateToken* pso_Out)
{
    pso_Out->pcu_Units = qcuz_Picture;
    while (*qcuz_Picture && *qcuz_Picture != '\'' && !b_IsField(*qcuz_Picture))
        ++qcuz_Picture;
    pso_Out->n_Length = static_cast<unsigned>(qcuz_Picture - pso_Out->pcu_Units);
}

// Up to the next quote that stands alone, or to the end.
void CT_DateTokens::v_Quoted(st_DateToken* pso_Out)
{
    pso_Out->b_Quoted = true;
    pso_Out->pcu_Units = ++qcuz_Picture;
    while (*qcuz_Picture && (*qcuz_Picture != '\'' || qcuz_Picture[1] == '\''))
        qcuz_Picture += *qcuz_Picture == '\'' ? 2 : 1;
    pso_Out->n_Length = static_cast<unsigned>(qcuz_Picture - pso_Out->pcu_Units);
    if (*qcuz_Picture)
        ++qcuz_Picture;
}

void CT_DateTokens::v_Field(st_DateToken* pso_Out)
{
    const unsigned short u_Letter = *qcuz_Picture;
    const bool b_Long = u_Letter == 'd' || u_Letter == 'M' || u_Letter == 'y';
    unsigned n_Letters = 0;
    for (; *qcuz_Picture == u_Letter; ++qcuz_Picture)
        ++n_Letters;
    n_Letters = std::min(n_Letters, b_Long ? 4U : 2U);
    pso_Out->u_Field = u_Letter;
    pso_Out->n_Length = u_Letter == 'y' && n_Letters == 3 ? 4 : n_Letters;
}

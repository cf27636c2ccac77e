// System/Time/DateToken.h: the parts of a date picture. Internal.
#pragma once

// A field or a literal.
struct st_DateToken
{
    unsigned short u_Field;          // the field's letter; 0 for a literal
    unsigned n_Length;               // a field's letters, as many as count; a literal's units
    const unsigned short* pcu_Units; // a literal's units
    bool b_Quoted;                   // of a literal: two quotes in it are one
};

// Takes a picture apart.
class CT_DateTokens
{
public:
    explicit CT_DateTokens(const unsigned short* qcuz_NewPicture) : qcuz_Picture(qcuz_NewPicture) {}

    // The next part; 0 behind the last.
    int b_Next(st_DateToken* pso_Out);

private:
    void v_Literal(st_DateToken* pso_Out);
    void v_Quoted(st_DateToken* pso_Out);
    void v_Field(st_DateToken* pso_Out);

    const unsigned short* qcuz_Picture; // what is still to be taken apart
};

// The units of a literal, one after the other.
class CT_DateLiteral
{
public:
    explicit CT_DateLiteral(const st_DateToken& so_Token)
        : pcu_Next(so_Token.pcu_Units),
          pcu_End(so_Token.pcu_Units + so_Token.n_Length),
          b_Quoted(so_Token.b_Quoted)
    {}

    // 0 behind the last.
    unsigned short u_Get() const { return pcu_Next < pcu_End ? *pcu_Next : 0; }
    void v_Next() { pcu_Next += b_Quoted && *pcu_Next == '\'' ? 2 : 1; }

private:
    const unsigned short* pcu_Next;
    const unsigned short* pcu_End;
    bool b_Quoted;
};

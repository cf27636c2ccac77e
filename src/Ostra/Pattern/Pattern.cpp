// Ostra/Pattern/Pattern.cpp: a wildcard pattern that is fed one character at a time.
#include <Ostra/Pattern/Pattern.h>

#include <Ostra/Frame/Report.h>

#include <cstdlib>
#include <cstring>

static constexpr char qccz_Source[] = "Ostra/Pattern/Pattern";

static constexpr unsigned GROWTH = 8;
static constexpr unsigned BITS = 64;

// ---- Construction -------------------------------------------------------------------------

CT_Pattern::CT_Pattern() : co_States(sizeof(st_State))
{
    v_Null();
    v_Init();
}

CT_Pattern::CT_Pattern(const CT_Pattern* pcco_Pattern) : co_States(sizeof(st_State))
{
    v_Null();
    if (!CT_Report::sb_Failed(qccz_Source))
        v_Init(pcco_Pattern);
}

CT_Pattern::~CT_Pattern()
{
    v_Exit();
}

void CT_Pattern::v_Set()
{
    v_Exit();
    co_States.v_Set(GROWTH, 0, 0);
    v_Init();
}

void CT_Pattern::v_Set(const CT_Pattern* pcco_Pattern)
{
    v_Exit();
    if (pcco_Pattern != this)
        v_Init(pcco_Pattern);
}

void* CT_Pattern::operator new(std::size_t n_Size) noexcept
{
    return CT_Report::spv_New(n_Size, qccz_Source);
}

void CT_Pattern::operator delete(void* pv_Object)
{
    std::free(pv_Object);
}

// ---- Life ---------------------------------------------------------------------------------

void CT_Pattern::v_Null()
{
    pso_Blocks = nullptr;
    pso_Literals = nullptr;
    n_Room = 0;
    n_Blocks = 0;
    n8_End = 0;
    n_MatchFrom = 0;
    n_Characters = 0;
}

void CT_Pattern::v_Init()
{
    // Kept: with an error set there is no row, and the pattern is of no use until it is set anew.
    if (CT_Report::sb_Failed(qccz_Source))
        return;
    const st_State so_End = {};
    co_States.v_Insert(&so_End);
}

void CT_Pattern::v_Init(const CT_Pattern* pcco_Pattern)
{
    co_States.v_Set(&pcco_Pattern->co_States);
}

void CT_Pattern::v_Exit()
{
    v_DropTables();
    v_Null();
}

// ---- The row ------------------------------------------------------------------------------

// States count from 0.
CT_Pattern::st_State CT_Pattern::so_GetState(unsigned n_State) const
{
    st_State so_State = {};
    co_States.v_GetAt(&so_State, static_cast<int>(n_State + 1));
    return so_State;
}

void CT_Pattern::v_AddToken(et_Type ec_Type, unsigned n4_Character)
{
    if (ec_Type < ty_AnyOne || ec_Type > ty_Character || !co_States.n_GetCount())
        return;
    const st_State so_Last = so_GetState(co_States.n_GetCount() - 1);
    const bool b_Run = so_Last.n4_Type == ty_AnyRun;
    if (b_Run && ec_Type == ty_AnyRun)
        return;
    st_State so_New = so_Last;
    if (!b_Run)
        so_New.n4_Type = ec_Type;
    if (b_Run && ec_Type == ty_AnyOne)
        so_New.n4_AnyAfterRun = 1;
    // Kept: 0 behind a run is the same as no character there.
    if (ec_Type != ty_AnyRun)
        so_New.n4_Character = ec_Type == ty_Character ? n4_Character : 0;
    if (b_Replace(so_Last, so_New, ec_Type != ty_AnyRun) && pso_Blocks)
        v_FillTables();
}

// Changes the last state, and opens a new one behind it. Without memory nothing changes, for this
// pattern or for those that share the row.
int CT_Pattern::b_Replace(const st_State& so_Last, const st_State& so_New, int b_Append)
{
    const unsigned n_Count = co_States.n_GetCount();
    // Written as it was, the state makes the block the row's own.
    co_States.v_SetAt(&so_Last, static_cast<int>(n_Count));
    if (co_States.pcco_GetBuffer()->n_GetUseCount() > 1)
        return 0;
    if (b_Append) {
        const st_State so_End = {};
        co_States.v_Insert(&so_End);
        if (co_States.n_GetCount() == n_Count)
            return 0;
    }
    co_States.v_SetAt(&so_New, static_cast<int>(n_Count));
    return 1;
}

// ---- The tables ---------------------------------------------------------------------------

void CT_Pattern::v_DropTables()
{
    std::free(pso_Blocks);
    pso_Blocks = nullptr;
    n_Blocks = 0;
}

// Kept: a failure isn't reported. Nothing matches then; the next run tries again.
void CT_Pattern::v_MakeTables()
{
    v_DropTables();
    const unsigned n_States = co_States.n_GetCount();
    const std::size_t n_BlockBytes = (n_States + BITS - 1) / BITS * sizeof(st_Block);
    void* pv_Tables = std::malloc(n_BlockBytes + n_States * sizeof(st_Literal));
    if (!pv_Tables)
        return;
    pso_Blocks = static_cast<st_Block*>(pv_Tables);
    pso_Literals = reinterpret_cast<st_Literal*>(static_cast<char*>(pv_Tables) + n_BlockBytes);
    n_Room = n_States;
    v_FillTables();
}

// Leaves alone which states are active.
void CT_Pattern::v_FillTables()
{
    const unsigned n_States = co_States.n_GetCount();
    // A row that has outgrown its tables doesn't run; the next run makes others.
    n_Blocks = n_States > n_Room ? 0 : (n_States + BITS - 1) / BITS;
    for (unsigned n = 0; n < n_Blocks; ++n) {
        st_Block& so_Block = pso_Blocks[n];
        so_Block.n8_Stay = so_Block.n8_Any = so_Block.n8_Unknown = 0;
        std::memset(so_Block.an8_Ascii, 0, sizeof so_Block.an8_Ascii);
        so_Block.pso_Literals = pso_Literals + n * BITS;
        so_Block.n_Literals = 0;
    }
    for (unsigned n = 0; n_Blocks && n < n_States; ++n)
        v_Enter(n, so_GetState(n));
    n8_End = 1ULL << (n_States - 1) % BITS;
}

void CT_Pattern::v_Enter(unsigned n_State, const st_State& so_State)
{
    st_Block& so_Block = pso_Blocks[n_State / BITS];
    const unsigned long long n8_State = 1ULL << n_State % BITS;
    const bool b_Run = so_State.n4_Type == ty_AnyRun;
    const bool b_Literal = so_State.n4_Type == ty_Character;
    const bool b_AnyOne = so_State.n4_Type == ty_AnyOne || so_State.n4_AnyAfterRun;
    if (b_Run)
        so_Block.n8_Stay |= n8_State;
    if (b_Literal || (b_Run && so_State.n4_Character))
        so_Block.v_AddCharacter(so_State.n4_Character, n8_State);
    // Kept: behind a run the character 0 lets any character on, but not the unknown one.
    if (b_AnyOne || (b_Run && !so_State.n4_Character && n_State + 1 < co_States.n_GetCount()))
        so_Block.v_AddAny(n8_State);
    // Kept: a character lets the unknown one on, whatever it is; but behind a run it doesn't.
    if (b_AnyOne || b_Literal)
        so_Block.n8_Unknown |= n8_State;
}

// The states of the block from which the character leads on.
unsigned long long CT_Pattern::st_Block::n8_GetWays(unsigned n4_Character) const
{
    if (n4_Character < ASCII)
        return an8_Ascii[n4_Character];
    unsigned long long n8_Ways = n8_Any;
    for (unsigned n = 0; n < n_Literals; ++n)
        n8_Ways |= pso_Literals[n].n4_Character == n4_Character ? pso_Literals[n].n8_States : 0;
    return n8_Ways;
}

void CT_Pattern::st_Block::v_AddAny(unsigned long long n8_State)
{
    n8_Any |= n8_State;
    for (unsigned long long& n8_Ways : an8_Ascii)
        n8_Ways |= n8_State;
}

void CT_Pattern::st_Block::v_AddCharacter(unsigned n4_Character, unsigned long long n8_State)
{
    if (n4_Character < ASCII) {
        an8_Ascii[n4_Character] |= n8_State;
        return;
    }
    unsigned n = 0;
    while (n < n_Literals && pso_Literals[n].n4_Character != n4_Character)
        ++n;
    if (n == n_Literals)
        pso_Literals[n_Literals++] = {0, n4_Character};
    pso_Literals[n].n8_States |= n8_State;
}

// ---- Matching -----------------------------------------------------------------------------

// A first run, one of a row that has become longer, or isn't of the most common kind.
void CT_Pattern::v_DoMatchFar()
{
    if (!pso_Blocks || co_States.n_GetCount() > n_Room)
        v_MakeTables();
    for (unsigned n = 0; n < n_Blocks; ++n)
        pso_Blocks[n].n8_Active = n == 0;
}

// All active states at once, each by the ways that f_Ways tells of its block.
template <class T_Ways>
inline int CT_Pattern::b_Step(T_Ways f_Ways)
{
    unsigned long long n8_Carry = 0;
    for (unsigned n = 0; n < n_Blocks; ++n) {
        st_Block& so_Block = pso_Blocks[n];
        n8_Carry = so_Block.n8_Step(f_Ways(so_Block), n8_Carry);
    }
    return b_IsMatchAny();
}

// A character or a row that isn't of the most common kind.
int CT_Pattern::b_IsMatchFar(unsigned n4_Character)
{
    return b_Count(b_Step([=](const st_Block& so_Block) {
        return so_Block.n8_Active ? so_Block.n8_GetWays(n4_Character) : 0;
    }));
}

// Of a row that takes several blocks, or none.
int CT_Pattern::b_CanMatchFar() const
{
    unsigned long long n8_Active = 0;
    for (unsigned n = 0; n < n_Blocks; ++n)
        n8_Active |= pso_Blocks[n].n8_Active;
    return n8_Active != 0;
}

// Whether the pattern matches what was fed, without feeding it anything.
int CT_Pattern::b_IsMatchAny() const
{
    return n_Blocks && pso_Blocks[n_Blocks - 1].n8_Active & n8_End;
}

// A step for a character that isn't known. It isn't counted.
int CT_Pattern::b_IsMatchSome()
{
    return b_Step([](const st_Block& so_Block) { return so_Block.n8_Unknown; });
}

// ---- Comparison ---------------------------------------------------------------------------

// Runs the other's tokens through this pattern.
int CT_Pattern::b_Contains(CT_Pattern* pco_Pattern)
{
    v_DoMatch();
    int b_Result = 0;
    const unsigned n_States = pco_Pattern->co_States.n_GetCount();
    for (unsigned n = 0; n < n_States; ++n) {
        const st_State so_State = pco_Pattern->so_GetState(n);
        switch (so_State.n4_Type) {
        case ty_AnyRun:
            if (so_State.n4_Character)
                b_Result = b_IsMatch(so_State.n4_Character);
            else
                b_Result = so_State.n4_AnyAfterRun ? b_IsMatchSome() : b_IsMatchAny();
            break;
        case ty_AnyOne:
            b_Result = b_IsMatchSome();
            break;
        case ty_Character:
            b_Result = b_IsMatch(so_State.n4_Character);
            break;
        }
    }
    return b_Result;
}

CT_Pattern::et_Result CT_Pattern::et_Compare(CT_Pattern* pco_Pattern)
{
    const int b_Wider = b_Contains(pco_Pattern);
    const int b_Narrower = pco_Pattern->b_Contains(this);
    if (!b_Wider)
        return b_Narrower ? re_Narrower : re_Unrelated;
    if (!b_Narrower)
        return re_Wider;
    const unsigned n_States = co_States.n_GetCount();
    const unsigned n_Others = pco_Pattern->co_States.n_GetCount();
    return n_States < n_Others ? re_Wider : n_States > n_Others ? re_Narrower : re_Same;
}

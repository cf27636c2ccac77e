// Ostra/Pattern/Pattern.h: a wildcard pattern that is fed one character at a time.
#pragma once

#include <Ostra/ARRAY/VoidArray.h>
#include <Ostra/Frame/Export.h>

#include <cstddef>

// A wildcard pattern as a row of states, built token by token: a character, any one character, any
// run of characters. All states run at once, so nothing is tried twice, and after each character
// the pattern knows whether the text so far matches. Two patterns can be compared: which of them
// matches more.
//
//     CT_Pattern pattern;                                        // h*s
//     pattern.v_AddToken(CT_Pattern::ty_Character, 'h');
//     pattern.v_AddToken(CT_Pattern::ty_AnyRun, 0);
//     pattern.v_AddToken(CT_Pattern::ty_Character, 's');
//     pattern.v_DoMatch();
//     for (const char* text = "hours"; *text; ++text)
//         match = pattern.b_IsMatch(static_cast<unsigned char>(*text));
//
// Units:   a character is any 32-bit number, equal to itself alone; counts are characters.
// Owns:    its run; patterns made from patterns share the row of states until one adds a token.
// Reports: nothing of its own; 60006 comes from the buffer when the heap is exhausted. A default
//          pattern, or one made from another, adds its place to an error that the thread has
//          already, and has no states then: it takes no token and matches nothing.
// Caller:  adds tokens between runs: one that is added within a run ends it.
// Threads: one thread at a time.
class OSTRA_API CT_Pattern
{
public:
    // What a token stands for.
    enum et_Type : unsigned
    {
        ty_AnyOne = 1,   // one character, whichever
        ty_AnyRun = 2,   // any number of characters, none as well
        ty_Character = 3 // that character
    };

    // How a pattern stands to another.
    enum et_Result : unsigned
    {
        re_Narrower = 0, // the other contains this one
        re_Wider = 1,    // this one contains the other
        re_Same = 2,     // each contains the other, and they have the same number of states
        re_Unrelated = 3 // neither contains the other
    };

    // A state of the row. A run belongs to a state: the token behind it is folded in there.
    //
    //   type  character  any after run
    //      0          0              0   the end, last in the row: no way on
    //      1          0              0   any character leads on
    //      3          c              0   c leads on
    //      2          0              0   a run at the end: any character stays
    //      2          c              0   any character stays, c leads on as well
    //      2          0              1   any character stays and leads on as well
    struct st_State
    {
        unsigned n4_Character;
        unsigned n4_Type;
        unsigned n4_AnyAfterRun;
    };

    // ---- Construction ---------------------------------------------------------------------

    // Without tokens: matches no text that has a character.
    CT_Pattern();
    // Shares the other's row; the run is its own.
    explicit CT_Pattern(const CT_Pattern* pcco_Pattern);
    ~CT_Pattern();
    CT_Pattern(const CT_Pattern&) = delete;
    CT_Pattern& operator=(const CT_Pattern&) = delete;

    // Starts anew, as the constructor without arguments.
    void v_Set();
    // Shares the other's row, also while an error is set. From itself: lets go of its run alone.
    void v_Set(const CT_Pattern* pcco_Pattern);

    static void* operator new(std::size_t n_Size) noexcept;
    static void* operator new(std::size_t, void* pv_Place) noexcept { return pv_Place; }
    static void operator delete(void* pv_Object);

    // Appends a token; the character counts for ty_Character alone. Two runs in a row are one.
    void v_AddToken(et_Type ec_Type, unsigned n4_Character);

    // ---- Matching -------------------------------------------------------------------------

    // Starts a run. The first one makes the tables for all of them, until the row is longer.
    void v_DoMatch()
    {
        if (n_Blocks == 1)
            pso_Blocks->n8_Active = 1;
        else
            v_DoMatchFar();
        n_MatchFrom = 0;
        n_Characters = 0;
    }
    // Feeds a character: whether the text fed so far matches.
    int b_IsMatch(unsigned n4_Character)
    {
        if (n_Blocks != 1 || n4_Character >= ASCII)
            return b_IsMatchFar(n4_Character);
        st_Block& so_Block = *pso_Blocks;
        // Where no state is active, none ever will be in this run.
        if (!so_Block.n8_Active) {
            n_MatchFrom = 0;
            return 0;
        }
        so_Block.n8_Step(so_Block.an8_Ascii[n4_Character], 0);
        return b_Count((so_Block.n8_Active & n8_End) != 0);
    }
    // Whether the text fed so far matches, or may yet match as it goes on. Once it is false, each
    // further character of the run is answered with 0: who only asks about whole texts can stop.
    int b_CanMatch() const { return n_Blocks == 1 ? pso_Blocks->n8_Active != 0 : b_CanMatchFar(); }
    // The number of the character, the first is 1, from which on the pattern has been matching
    // without a break; 0 while it doesn't match.
    unsigned n_EndStateFrom() const { return n_MatchFrom; }

    // ---- Comparison -----------------------------------------------------------------------

    // Runs each pattern on the other's tokens, which ends the runs of both. A run token is fed only
    // as the character behind it, so this is no proof of what either matches: ab and a*b are the
    // same, as are a and any one. Where each contains the other, the one with fewer states is the
    // wider. A pattern without tokens is contained in none, itself included.
    et_Result et_Compare(CT_Pattern* pco_Pattern);

private:
    static constexpr unsigned ASCII = 128;

    // A character that leads on, and the states of a block where it does.
    struct st_Literal
    {
        unsigned long long n8_States;
        unsigned n4_Character;
    };

    // 64 states as bits: a step is a mask and a shift.
    struct st_Block
    {
        unsigned long long n8_Active;
        unsigned long long n8_Stay;          // any character stays
        unsigned long long n8_Any;           // any character leads on
        unsigned long long n8_Unknown;       // an unknown one does, when patterns are compared
        unsigned long long an8_Ascii[ASCII]; // this character does, or any does
        st_Literal* pso_Literals;            // the other characters, each but once
        unsigned n_Literals;

        // Leads on from n8_Ways. The state that comes from the block before is bit 0 of n8_Carry;
        // the result is what goes to the one behind.
        unsigned long long n8_Step(unsigned long long n8_Ways, unsigned long long n8_Carry)
        {
            const unsigned long long n8_On = n8_Active & n8_Ways;
            n8_Active = (n8_Active & n8_Stay) | n8_On << 1 | n8_Carry;
            return n8_On >> 63;
        }
        unsigned long long n8_GetWays(unsigned n4_Character) const;
        void v_AddAny(unsigned long long n8_State);
        void v_AddCharacter(unsigned n4_Character, unsigned long long n8_State);
    };

    // ---- Life -----------------------------------------------------------------------------

    void v_Null();
    void v_Init();
    void v_Init(const CT_Pattern* pcco_Pattern);
    void v_Exit();

    // ---- Work -----------------------------------------------------------------------------

    st_State so_GetState(unsigned n_State) const;
    int b_Replace(const st_State& so_Last, const st_State& so_New, int b_Append);
    void v_DropTables();
    void v_MakeTables();
    void v_FillTables();
    void v_Enter(unsigned n_State, const st_State& so_State);
    template <class T_Ways>
    int b_Step(T_Ways f_Ways);
    void v_DoMatchFar();
    int b_IsMatchFar(unsigned n4_Character);
    int b_CanMatchFar() const;
    int b_Count(int b_Match)
    {
        ++n_Characters;
        n_MatchFrom = !b_Match ? 0 : n_MatchFrom ? n_MatchFrom : n_Characters;
        return b_Match;
    }
    int b_IsMatchAny() const;
    int b_IsMatchSome();
    int b_Contains(CT_Pattern* pco_Pattern);

    // ---- Members --------------------------------------------------------------------------

    CT_VoidArray co_States;
    st_Block* pso_Blocks;      // the tables, on the heap with the literals; null before a run
    st_Literal* pso_Literals;  // 64 places a block
    unsigned n_Room;           // states that the tables have room for
    unsigned n_Blocks;         // blocks that the row takes; 0 while there is nothing to run
    unsigned long long n8_End; // the last state, in the last block
    unsigned n_MatchFrom;
    unsigned n_Characters; // fed in this run while a state was active
};

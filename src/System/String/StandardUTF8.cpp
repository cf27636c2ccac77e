// System/String/StandardUTF8.cpp
#include <System/String/StandardUTF8.h>

#include <Ostra/Frame/Codes.h>
#include <Ostra/Frame/Counts.h>
#include <Ostra/Frame/Report.h>
#include <Ostra/Frame/Text.h>
#include <Ostra/String/CString.h>
#include <Ostra/String/TextBuffer.h>
#include <Ostra/String/UString.h>
#include <System/String/CodePages.h>
#include <System/String/Runs.h>
#include <System/String/Sequences.h>

#include <algorithm>
#include <charconv>

static constexpr char qccz_Source[] = "System/String/StandardUTF8";

// ---- From UTF-8 -----------------------------------------------------------------------------

namespace
{
// What differs between the directions. In and Out are the characters of the texts.
struct st_WayToWide
{
    using In = char;
    using Out = unsigned short;
    using Target = CT_UString;
    using State = CT_StandardUTF8::st_ToWide;
    static constexpr unsigned MOST_OPEN = 3;

    // A last byte may make two units of those that were open.
    static std::uint64_t n8_Room(unsigned n_Count) { return std::uint64_t(n_Count) + 1; }
    // Converts up to the first that is ill-formed or not whole, to which it returns.
    static const char* pcc_Run(unsigned short*& pu_Out, const char* pcc_In, const char* pcc_End);
    // Whether characters are the start of one that is longer.
    static bool b_IsStart(const char* pcc_In, unsigned n_Count);
    static void v_Replace(unsigned short*& pu_Out) { *pu_Out++ = REPLACEMENT; }
    static void v_Mark(CT_UString*) {}
    static const unsigned short* qcuz_Complaint() { return qcuz_Text(u"ill-formed UTF-8"); }
};

// The bits of a byte that continues a sequence; more than six for another byte.
unsigned n_Bits(char c)
{
    return n_Byte(c) ^ 0x80;
}

bool b_TakeTwo(unsigned short*& pu_Out, const char*& pcc_In)
{
    const unsigned n_Second = n_Bits(pcc_In[1]);
    if (n_Byte(*pcc_In) < 0xC2 || n_Second > 0x3F)
        return false;
    *pu_Out++ = static_cast<unsigned short>((n_Byte(*pcc_In) & 0x1F) << 6 | n_Second);
    pcc_In += 2;
    return true;
}

bool b_TakeThree(unsigned short*& pu_Out, const char*& pcc_In)
{
    const unsigned n_Second = n_Bits(pcc_In[1]);
    const unsigned n_Third = n_Bits(pcc_In[2]);
    const unsigned n_Unit = (n_Byte(*pcc_In) & 0x0F) << 12 | n_Second << 6 | n_Third;
    if ((n_Second | n_Third) > 0x3F || n_Unit < 0x800 || b_IsSurrogate(n_Unit))
        return false;
    *pu_Out++ = static_cast<unsigned short>(n_Unit);
    pcc_In += 3;
    return true;
}

bool b_TakeFour(unsigned short*& pu_Out, const char*& pcc_In)
{
    const unsigned n_Second = n_Bits(pcc_In[1]);
    const unsigned n_Third = n_Bits(pcc_In[2]);
    const unsigned n_Fourth = n_Bits(pcc_In[3]);
    const unsigned n_Value =
        (n_Byte(*pcc_In) & 0x0F) << 18 | n_Second << 12 | n_Third << 6 | n_Fourth;
    if ((n_Second | n_Third | n_Fourth) > 0x3F || !b_IsPair(n_Value))
        return false;
    *pu_Out++ = u_High(n_Value);
    *pu_Out++ = u_Low(n_Value);
    pcc_In += 4;
    return true;
}

// Takes one character, if it is well-formed. Four bytes can be read.
inline bool b_Take(unsigned short*& pu_Out, const char*& pcc_In)
{
    const unsigned n_First = n_Byte(*pcc_In);
    if (n_First < 0x80) {
        *pu_Out++ = static_cast<unsigned short>(n_First);
        ++pcc_In;
        return true;
    }
    return n_First < 0xE0   ? b_TakeTwo(pu_Out, pcc_In)
           : n_First < 0xF0 ? b_TakeThree(pu_Out, pcc_In)
                            : b_TakeFour(pu_Out, pcc_In);
}

// The last bytes of a text, fewer than four.
const char* pcc_Rest(unsigned short*& pu_Out, const char* pcc_In, const char* pcc_End)
{
    char ac_Rest[8] = {}; // zeros continue no sequence
    const auto n_Count = static_cast<std::size_t>(pcc_End - pcc_In);
    std::memcpy(ac_Rest, pcc_In, n_Count);
    const char* pcc = ac_Rest;
    while (pcc < ac_Rest + n_Count && b_Take(pu_Out, pcc))
        ;
    return pcc_In + (pcc - ac_Rest);
}

const char* st_WayToWide::pcc_Run(unsigned short*& pu_Out, const char* pcc_In, const char* pcc_End)
{
    // A unit for each byte has room, so that a run may be copied whole where only its start is
    // ASCII.
    while (pcc_End - pcc_In >= RUN) {
        const unsigned n_ASCII = n_LeadingASCII(pcc_In);
        v_CopyRun(pu_Out, pcc_In);
        pu_Out += n_ASCII;
        pcc_In += n_ASCII;
        if (n_ASCII == RUN)
            continue;
        // Up to two ASCII bytes in a row, with which a run may begin.
        while (pcc_End - pcc_In >= 4 && (n_Byte(pcc_In[0]) | n_Byte(pcc_In[1])) >= 0x80)
            if (!b_Take(pu_Out, pcc_In))
                return pcc_In;
    }
    while (pcc_End - pcc_In >= 4)
        if (!b_Take(pu_Out, pcc_In))
            return pcc_In;
    return pcc_Rest(pu_Out, pcc_In, pcc_End);
}

// The second byte shuts out what would be too long, a surrogate, or too large.
bool b_MayFollow(unsigned n_First, unsigned n_Second)
{
    const unsigned n_Least = n_First == 0xE0 ? 0xA0 : n_First == 0xF0 ? 0x90 : 0x80;
    const unsigned n_Most = n_First == 0xED ? 0x9F : n_First == 0xF4 ? 0x8F : 0xBF;
    return n_Second >= n_Least && n_Second <= n_Most;
}

bool st_WayToWide::b_IsStart(const char* pcc_In, unsigned n_Count)
{
    const unsigned n_First = n_Byte(*pcc_In);
    if (n_First < 0xC2 || n_First > 0xF4)
        return false;
    if (n_Count == 1)
        return true;
    if (n_First < (n_Count == 2 ? 0xE0 : 0xF0) || !b_MayFollow(n_First, n_Byte(pcc_In[1])))
        return false;
    return n_Count == 2 || (n_Count == 3 && n_Bits(pcc_In[2]) <= 0x3F);
}
} // namespace

// ---- To UTF-8 -------------------------------------------------------------------------------

namespace
{
struct st_WayFromWide
{
    using In = unsigned short;
    using Out = char;
    using Target = CT_CString;
    using State = CT_StandardUTF8::st_FromWide;
    static constexpr unsigned MOST_OPEN = 1;

    // A high surrogate that was open becomes three bytes too.
    static std::uint64_t n8_Room(unsigned n_Count) { return std::uint64_t(n_Count) * 3 + 3; }
    static const unsigned short* pcc_Run(char*& pc_Out, const unsigned short* pcu_In,
                                         const unsigned short* pcu_End);
    static bool b_IsStart(const unsigned short* pcu_In, unsigned n_Count)
    {
        return n_Count == 1 && *pcu_In >= 0xD800 && *pcu_In <= 0xDBFF;
    }
    static void v_Replace(char*& pc_Out) { pc_Out = pc_Encode(pc_Out, REPLACEMENT); }
    static void v_Mark(CT_CString* pco) { pco->v_SetCodePage(CT_CodePages::UTF8); }
    static const unsigned short* qcuz_Complaint() { return qcuz_Text(u"lone surrogate"); }
};

// Takes one character, if it is well-formed.
inline bool b_Take(char*& pc_Out, const unsigned short*& pcu_In, const unsigned short* pcu_End)
{
    if (!b_IsSurrogate(*pcu_In)) {
        pc_Out = pc_Encode(pc_Out, *pcu_In++);
        return true;
    }
    if (pcu_End - pcu_In < 2 || *pcu_In > 0xDBFF || (pcu_In[1] & 0xFC00) != 0xDC00)
        return false;
    const unsigned n_Value = 0x10000 + ((pcu_In[0] - 0xD800u) << 10) + (pcu_In[1] - 0xDC00u);
    v_Put(pc_Out,
          0x808080F0 | n_Value >> 18 | (n_Value >> 4 & 0x3F00) | (n_Value << 10 & 0x3F0000) |
              (n_Value & 0x3F) << 24,
          4);
    pc_Out += 4;
    pcu_In += 2;
    return true;
}

const unsigned short* st_WayFromWide::pcc_Run(char*& pc_Out, const unsigned short* pcu_In,
                                              const unsigned short* pcu_End)
{
    LongByteRun ao_Bytes;
    while (pcu_End - pcu_In >= RUN) {
        while (pcu_End - pcu_In >= LONG_RUN && b_Narrow(ao_Bytes, pcu_In)) {
            std::memcpy(pc_Out, &ao_Bytes, sizeof(ao_Bytes));
            pc_Out += LONG_RUN;
            pcu_In += LONG_RUN;
        }
        if (pcu_End - pcu_In < RUN)
            break;
        const unsigned n_ASCII = n_LeadingASCII(pcu_In);
        v_CopyRun(pc_Out, pcu_In);
        pc_Out += n_ASCII;
        pcu_In += n_ASCII;
        while (pcu_End - pcu_In >= 4 && !b_AreASCII(pcu_In))
            if (!b_Take(pc_Out, pcu_In, pcu_End))
                return pcu_In;
    }
    while (pcu_In < pcu_End && b_Take(pc_Out, pcu_In, pcu_End))
        ;
    return pcu_In;
}
} // namespace

// ---- Work -----------------------------------------------------------------------------------

namespace
{
// The length of the first maximal subpart of what is ill-formed.
template <class Way>
unsigned n_Subpart(const typename Way::In* pcc_In, const typename Way::In* pcc_End)
{
    const auto n_Left = static_cast<std::size_t>(pcc_End - pcc_In);
    unsigned n = 1;
    while (n < n_Left && Way::b_IsStart(pcc_In, n + 1))
        ++n;
    return n;
}

// Whether all that is left is the start of a character.
template <class Way>
bool b_IsOpen(const typename Way::In* pcc_In, const typename Way::In* pcc_End)
{
    return pcc_End - pcc_In <= int(Way::MOST_OPEN) &&
           Way::b_IsStart(pcc_In, static_cast<unsigned>(pcc_End - pcc_In));
}

// One piece: where its conversion stands.
template <class Way>
struct st_Work
{
    typename Way::State so_State;
    const typename Way::In* pcc_In;
    const typename Way::In* pcc_End;
    typename Way::Out* pc_Out;
    bool b_Refuse;
    bool b_Last;

    // All of them: false for what is refused.
    bool b_Convert();
    bool b_TakeUp();
    bool b_Replace()
    {
        if (!b_Refuse)
            Way::v_Replace(pc_Out);
        return !b_Refuse;
    }
    void v_KeepOpen()
    {
        so_State.n_Open = static_cast<unsigned>(pcc_End - pcc_In);
        std::copy(pcc_In, pcc_End, so_State.ac_Open);
        pcc_In = pcc_End;
    }
};

// Adds one character to those that are open.
template <class Way>
bool st_Work<Way>::b_TakeUp()
{
    typename Way::In ac[Way::MOST_OPEN + 1] = {};
    unsigned n = so_State.n_Open;
    std::copy_n(so_State.ac_Open, n, ac);
    ac[n++] = *pcc_In;
    if (Way::pcc_Run(pc_Out, ac, ac + n) == ac + n)
        so_State.n_Open = 0;
    else if (b_IsOpen<Way>(ac, ac + n))
        so_State.ac_Open[so_State.n_Open++] = *pcc_In;
    else if (b_Replace()) {
        so_State.n_Open = 0;
        return true;
    } else
        return false;
    ++pcc_In;
    return true;
}

template <class Way>
bool st_Work<Way>::b_Convert()
{
    while (so_State.n_Open && pcc_In < pcc_End)
        if (!b_TakeUp())
            return false;
    if (so_State.n_Open)
        return !b_Last || b_Replace();
    while ((pcc_In = Way::pcc_Run(pc_Out, pcc_In, pcc_End)) < pcc_End) {
        if (!b_Last && b_IsOpen<Way>(pcc_In, pcc_End)) {
            v_KeepOpen();
            break;
        }
        if (!b_Replace())
            return false;
        pcc_In += n_Subpart<Way>(pcc_In, pcc_End);
    }
    return true;
}

// "ill-formed UTF-8 at offset 4".
void v_Refuse(const unsigned short* qcuz_Complaint, unsigned long long n8_Offset)
{
    constexpr unsigned DIGITS = 20;
    char ac_Digits[DIGITS];
    const char* pcc_End = std::to_chars(ac_Digits, ac_Digits + DIGITS, n8_Offset).ptr;
    unsigned short auz_Text[64];
    unsigned short* pu = auz_Text;
    for (const unsigned short* qcuz : {qcuz_Complaint, qcuz_Text(u" at offset ")})
        pu = std::copy_n(qcuz, CT_TextOperations<unsigned short>::sn_Length(qcuz), pu);
    *std::copy(static_cast<const char*>(ac_Digits), pcc_End, pu) = 0;
    CT_Report::sv_Format(qccz_Source, SEMANTIC_ERROR, SEMANTIC_ERROR, auz_Text);
}
} // namespace

template <class Way>
int CT_StandardUTF8::sb_Piece(typename Way::Target* pco_Out, typename Way::State* pso_State,
                              const typename Way::In* pcc_In, unsigned n_Count,
                              et_IllFormed ec_IllFormed, bool b_Last)
{
    using Text = CT_TextBuffer<typename Way::Out>;
    CT_Buffer& co = pco_Out->co_Buffer;
    const unsigned n_Length = Text::sn_Length(co);
    std::uint64_t n8_Room = Way::n8_Room(n_Count);
    // Many pieces make a long text in a time that is linear in its length.
    if (n_Length + n8_Room > Text::sn_MaximumLength(co))
        n8_Room += n_Length / 2;
    typename Way::Out* const pc_Out = Text::spc_Prepare(co, n8_Room, n_Length);
    if (!pc_Out) {
        CT_Report::sb_Failed(qccz_Source);
        return 0;
    }
    st_Work<Way> so{*pso_State, pcc_In, pcc_In + n_Count, pc_Out, ec_IllFormed == e_Refuse, b_Last};
    const bool b_Done = so.b_Convert();
    Text::sv_End(co, n_Length + static_cast<unsigned>(b_Done ? so.pc_Out - pc_Out : 0));
    const unsigned long long n8_Taken = so.so_State.n8_Taken + (so.pcc_In - pcc_In);
    if (!b_Done) {
        v_Refuse(Way::qcuz_Complaint(), n8_Taken - so.so_State.n_Open);
        return 0;
    }
    Way::v_Mark(pco_Out);
    so.so_State.n8_Taken = n8_Taken;
    *pso_State = b_Last ? typename Way::State() : so.so_State;
    return 1;
}

// Into a string of its own, which the target then shares: so the target stays as it is where the
// text is refused, and may hold the text itself.
template <class Way>
int CT_StandardUTF8::sb_Whole(typename Way::Target* pco_Out, const typename Way::In* pcc_In,
                              unsigned n_Count, et_IllFormed ec_IllFormed)
{
    typename Way::Target co_Made;
    typename Way::State so_State;
    if (!sb_Piece<Way>(&co_Made, &so_State, pcc_In, n_Count, ec_IllFormed, true))
        return 0;
    pco_Out->v_Set(&co_Made);
    return 1;
}

using Bytes = CT_TextOperations<char>;
using Units = CT_TextOperations<unsigned short>;

// ---- Whole texts ----------------------------------------------------------------------------

int CT_StandardUTF8::sb_ToWide(CT_UString* pco_Out, const char* pcc_In, unsigned n_Count,
                               et_IllFormed ec_IllFormed)
{
    return sb_Whole<st_WayToWide>(pco_Out, pcc_In, Bytes::sn_CountOf(pcc_In, n_Count),
                                  ec_IllFormed);
}

int CT_StandardUTF8::sb_ToWide(CT_UString* pco_Out, const CT_CString* pcco_In,
                               et_IllFormed ec_IllFormed)
{
    return sb_Whole<st_WayToWide>(pco_Out, pcco_In->qccz_Get(), pcco_In->vn_GetLength(),
                                  ec_IllFormed);
}

int CT_StandardUTF8::sb_FromWide(CT_CString* pco_Out, const unsigned short* pcu_In,
                                 unsigned n_Count, et_IllFormed ec_IllFormed)
{
    return sb_Whole<st_WayFromWide>(pco_Out, pcu_In, Units::sn_CountOf(pcu_In, n_Count),
                                    ec_IllFormed);
}

int CT_StandardUTF8::sb_FromWide(CT_CString* pco_Out, const CT_UString* pcco_In,
                                 et_IllFormed ec_IllFormed)
{
    return sb_Whole<st_WayFromWide>(pco_Out, pcco_In->qcuz_Get(), pcco_In->vn_GetLength(),
                                    ec_IllFormed);
}

// Converts into a small area, part by part.
template <class Way>
static unsigned n_FindIllFormed(const typename Way::In* pcc_In, unsigned n_Count)
{
    constexpr std::ptrdiff_t PART = 512;
    typename Way::Out ac_Area[3 * PART + 3];
    const typename Way::In* const pcc_Start = pcc_In;
    const typename Way::In* const pcc_End = pcc_In + n_Count;
    while (pcc_In < pcc_End) {
        const typename Way::In* const pcc_Part = pcc_In + std::min(PART, pcc_End - pcc_In);
        typename Way::Out* pc_Out = ac_Area;
        pcc_In = Way::pcc_Run(pc_Out, pcc_In, pcc_Part);
        if (pcc_In < pcc_Part && (pcc_Part == pcc_End || !b_IsOpen<Way>(pcc_In, pcc_Part)))
            return static_cast<unsigned>(pcc_In - pcc_Start);
    }
    return ALL;
}

unsigned CT_StandardUTF8::sn_FindIllFormed(const char* pcc_In, unsigned n_Count)
{
    return n_FindIllFormed<st_WayToWide>(pcc_In, Bytes::sn_CountOf(pcc_In, n_Count));
}

unsigned CT_StandardUTF8::sn_FindIllFormed(const unsigned short* pcu_In, unsigned n_Count)
{
    return n_FindIllFormed<st_WayFromWide>(pcu_In, Units::sn_CountOf(pcu_In, n_Count));
}

// ---- Texts in pieces ------------------------------------------------------------------------

int CT_StandardUTF8::sb_PieceToWide(CT_UString* pco_Out, st_ToWide* pso_State, const char* pcc_In,
                                    unsigned n_Count, et_IllFormed ec_IllFormed)
{
    return sb_Piece<st_WayToWide>(pco_Out, pso_State, pcc_In, Bytes::sn_CountOf(pcc_In, n_Count),
                                  ec_IllFormed, false);
}

int CT_StandardUTF8::sb_EndToWide(CT_UString* pco_Out, st_ToWide* pso_State,
                                  et_IllFormed ec_IllFormed)
{
    return sb_Piece<st_WayToWide>(pco_Out, pso_State, "", 0, ec_IllFormed, true);
}

int CT_StandardUTF8::sb_PieceFromWide(CT_CString* pco_Out, st_FromWide* pso_State,
                                      const unsigned short* pcu_In, unsigned n_Count,
                                      et_IllFormed ec_IllFormed)
{
    return sb_Piece<st_WayFromWide>(pco_Out, pso_State, pcu_In, Units::sn_CountOf(pcu_In, n_Count),
                                    ec_IllFormed, false);
}

int CT_StandardUTF8::sb_EndFromWide(CT_CString* pco_Out, st_FromWide* pso_State,
                                    et_IllFormed ec_IllFormed)
{
    return sb_Piece<st_WayFromWide>(pco_Out, pso_State, qcuz_Text(u""), 0, ec_IllFormed, true);
}

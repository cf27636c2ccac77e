// System/String/UTF.cpp
#include <System/String/UTF.h>

#include <Ostra/String/TextOperations.h>
#include <System/String/Runs.h>
#include <System/String/Sequences.h>
#include <System/String/UTF8Ways.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>

using Bytes = CT_TextOperations<char>;
using Units = CT_TextOperations<unsigned short>;

// ---- State ----------------------------------------------------------------------------------

struct CT_UTF::st_Bits
{
    unsigned n4_Buffer; // left-aligned
    int i_Bits;
    unsigned n4_Temp;

    void v_Clear() { *this = {}; }
    void v_Add(unsigned n_Value, int i_Count)
    {
        n4_Buffer |= n_Value << (32 - i_Bits - i_Count);
        i_Bits += i_Count;
    }
    unsigned n_Take(int i_Count)
    {
        n4_Temp = n4_Buffer >> (32 - i_Count);
        n4_Buffer <<= i_Count;
        i_Bits -= i_Count;
        return n4_Temp;
    }
};

struct CT_UTF::st_UTF7Encoder
{
    st_Bits so_Bits;
    bool b_Shifted;

    char* pc_Base64(char* pc_Out);
    char* pc_Close(char* pc_Out);
    char* pc_Run(char* pc_Out, const unsigned short*& pcu_In, const unsigned short* pcu_End,
                 bool b_Packs);
    char* pc_Encode(char* pc_Out, const unsigned short* pcu_In, const unsigned short* pcu_End);
};

struct CT_UTF::st_UTF7Decoder
{
    st_Bits so_Bits;
    bool b_Shifted;
    bool b_First; // no Base64 character since the "+"

    unsigned short* pu_Run(unsigned short* pu_Out, const char*& pcc_In, const char* pcc_End);
    unsigned short* pu_Decode(unsigned short* pu_Out, const char* pcc_In, const char* pcc_End);
};

struct CT_UTF::st_UTF8Decoder
{
    unsigned n_Trailing; // bytes of the sequence behind its first
    unsigned n_ToCome;
    unsigned n4_Value;

    // A last byte that comes alone has room for one unit: the first of its pair is written before.
    bool b_IsFirstOut() const { return n_Trailing == 3 && n_ToCome == 1; }
    unsigned short* pu_First(unsigned short* pu_To) const;
    unsigned short* pu_Second(unsigned short* pu_To, unsigned n_Last) const;
    unsigned short* pu_Take(unsigned short* pu_To, const char*& pcc_In, const char* pcc_End);
};

unsigned CT_UTF::sn4_BitBuffer;
int CT_UTF::si_BufferBits;
unsigned CT_UTF::sn4_BufferTemp;
CT_UTF::st_UTF7Encoder CT_UTF::sso_Encoder;
CT_UTF::st_UTF7Decoder CT_UTF::sso_Decoder;
CT_UTF::st_UTF8Decoder CT_UTF::sso_Sequence;

// Keeps the bits that a call leaves open in its coder's own state; the three static numbers get a
// copy. Each call works on a copy of the state, so that the compiler holds it in registers.
void CT_UTF::sv_Save(st_Bits& so_Saved, const st_Bits& so_Bits)
{
    so_Saved = so_Bits;
    sn4_BitBuffer = so_Bits.n4_Buffer;
    si_BufferBits = so_Bits.i_Bits;
    sn4_BufferTemp = so_Bits.n4_Temp;
}

// ---- Tables ---------------------------------------------------------------------------------

namespace
{
constexpr char BASE64[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr char DIRECT[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789'(),-./:?";
constexpr char SPACE[] = " \t\r\n";

// 1 for an ASCII character that doesn't stand for itself. The terminator ends a run.
constexpr auto MUST_SHIFT = [] {
    std::array<unsigned char, 128> a;
    a.fill(1);
    a[0] = 0;
    for (const char* qccz : {DIRECT, SPACE})
        for (; *qccz; ++qccz)
            a[static_cast<unsigned char>(*qccz)] = 0;
    return a;
}();

constexpr unsigned short NO_BASE64 = 0xFFFF;

// The value of a Base64 character. Bytes above 127 have none.
constexpr auto INVERSE = [] {
    std::array<unsigned short, 256> a;
    a.fill(NO_BASE64);
    for (unsigned short n = 0; n < 64; ++n)
        a[static_cast<unsigned char>(BASE64[n])] = n;
    return a;
}();

bool b_MustShift(unsigned n_Unit)
{
    return n_Unit > 127 || MUST_SHIFT[n_Unit];
}
} // namespace

// ---- UTF-7 encoder --------------------------------------------------------------------------

void CT_UTF::sv_WideToUTF7Init()
{
    sso_Encoder = {};
}

inline char* CT_UTF::st_UTF7Encoder::pc_Base64(char* pc_Out)
{
    while (so_Bits.i_Bits >= 6)
        *pc_Out++ = BASE64[so_Bits.n_Take(6)];
    return pc_Out;
}

inline char* CT_UTF::st_UTF7Encoder::pc_Close(char* pc_Out)
{
    // The bits behind those in the buffer are zero.
    so_Bits.i_Bits += (6 - so_Bits.i_Bits % 6) % 6;
    pc_Out = pc_Base64(pc_Out);
    // Kept: the minus is written in every case, also before a character that would end the run by
    // itself.
    *pc_Out++ = '-';
    b_Shifted = false;
    return pc_Out;
}

namespace
{
// Whether each byte is an ASCII character that stands for itself.
bool b_AreDirect(const LongByteRun& ao_Bytes)
{
    const auto ao_Letters = (ao_Bytes | 0x20) - 'a' < 26;
    const auto ao_Digits = ao_Bytes - ',' <= ':' - ','; // and , - . /
    const auto ao_Quotes = ao_Bytes - '\'' <= ')' - '\'';
    const auto ao_Tabs = ao_Bytes - '\t' <= '\n' - '\t';
    const auto ao_Others = (ao_Bytes == ' ') | (ao_Bytes == '\r') | (ao_Bytes == '?');
    return b_IsZero(~(ao_Letters | ao_Digits | ao_Quotes | ao_Tabs | ao_Others));
}

// Copies units that stand for themselves.
char* pc_CopyDirect(char* pc_Out, const unsigned short*& pcu_In, const unsigned short* pcu_End)
{
    LongByteRun ao_Bytes;
    while (pcu_End - pcu_In >= LONG_RUN && b_Narrow(ao_Bytes, pcu_In) && b_AreDirect(ao_Bytes)) {
        std::memcpy(pc_Out, &ao_Bytes, sizeof(ao_Bytes));
        pc_Out += LONG_RUN;
        pcu_In += LONG_RUN;
    }
    for (; pcu_In < pcu_End && !b_MustShift(*pcu_In); ++pcu_In)
        *pc_Out++ = static_cast<char>(*pcu_In);
    return pc_Out;
}

// Three units are eight characters of Base64.
char* pc_ThreeUnits(char* pc_Out, const unsigned short* pcu_In)
{
    const std::uint64_t n8_Bits =
        std::uint64_t(pcu_In[0]) << 32 | std::uint64_t(pcu_In[1]) << 16 | pcu_In[2];
    for (int i_Shift = 42; i_Shift >= 0; i_Shift -= 6)
        *pc_Out++ = BASE64[n8_Bits >> i_Shift & 0x3F];
    return pc_Out;
}

// How many of the next three units come before one that stands for itself.
unsigned n_BeforeDirect(const unsigned short* pcu_In)
{
    return !b_MustShift(pcu_In[0])   ? 0
           : !b_MustShift(pcu_In[1]) ? 1
           : !b_MustShift(pcu_In[2]) ? 2
                                     : 3;
}

// The last one or two units of a run, with the zero bits that fill up its last character.
char* pc_LastUnits(char* pc_Out, const unsigned short* pcu_In, unsigned n_Count)
{
    if (n_Count == 2) {
        const std::uint64_t n8_Bits = (std::uint64_t(pcu_In[0]) << 16 | pcu_In[1]) << 4;
        for (int i_Shift = 30; i_Shift >= 0; i_Shift -= 6)
            *pc_Out++ = BASE64[n8_Bits >> i_Shift & 0x3F];
    } else
        for (int i_Shift = 12; i_Shift >= 0; i_Shift -= 6)
            *pc_Out++ = BASE64[unsigned(pcu_In[0]) << 2 >> i_Shift & 0x3F];
    return pc_Out;
}

// Units above ASCII where no bits are left, as many as fill blocks, up to one that stands for
// itself; before another one, or before what isn't known, only threes of them.
OSTRA_FOR_PACKS char* pc_PackedRuns(char* pc_Out, const unsigned short*& pcu_In,
                                    const unsigned short* pcu_End)
{
    constexpr unsigned MOST = 24;
    unsigned n_Run;
    do {
        const auto n_Known =
            static_cast<unsigned>(std::min<std::ptrdiff_t>(pcu_End - pcu_In, MOST));
        CT_VectorPacks::Units o_Units;
        CT_VectorPacks::sv_Load(o_Units, pcu_In, n_Known);
        n_Run = static_cast<unsigned>(std::countr_one(CT_VectorPacks::sn_Above(o_Units, 0x7F)));
        if (n_Run == n_Known || b_MustShift(pcu_In[n_Run]))
            n_Run -= n_Run % 3;
        // The bits that fill up the last character are zero.
        CT_VectorPacks::sv_Load(o_Units, pcu_In, n_Run);
        CT_VectorPacks::Bytes o_Bytes;
        CT_VectorPacks::sv_Sextets(o_Bytes, o_Units, BASE64);
        const unsigned n_Sextets = (16 * n_Run + 5) / 6;
        CT_VectorPacks::sv_Store(pc_Out, o_Bytes, n_Sextets);
        pcu_In += n_Run;
        pc_Out += n_Sextets;
    } while (n_Run == MOST);
    return pc_Out;
}
} // namespace

// Writes units as Base64, up to the first that stands for itself.
inline char* CT_UTF::st_UTF7Encoder::pc_Run(char* pc_Out, const unsigned short*& pcu_In,
                                            const unsigned short* pcu_End, bool b_Packs)
{
    for (;;) {
        if (!so_Bits.i_Bits && b_Packs)
            pc_Out = pc_PackedRuns(pc_Out, pcu_In, pcu_End);
        if (!so_Bits.i_Bits)
            for (; pcu_End - pcu_In >= 3; pcu_In += 3) {
                const unsigned n_Shift = n_BeforeDirect(pcu_In);
                if (n_Shift == 0)
                    return pc_Out;
                if (n_Shift < 3) {
                    pc_Out = pc_LastUnits(pc_Out, pcu_In, n_Shift);
                    pcu_In += n_Shift;
                    return pc_Out;
                }
                pc_Out = pc_ThreeUnits(pc_Out, pcu_In);
            }
        if (pcu_In == pcu_End || !b_MustShift(*pcu_In))
            return pc_Out;
        so_Bits.v_Add(*pcu_In++, 16);
        pc_Out = pc_Base64(pc_Out);
    }
}

// Writes a text without a terminator.
inline char* CT_UTF::st_UTF7Encoder::pc_Encode(char* pc_Out, const unsigned short* pcu_In,
                                               const unsigned short* pcu_End)
{
    const bool b_Packs = CT_VectorPacks::sb_Has();
    while (pcu_In < pcu_End) {
        if (b_Shifted) {
            pc_Out = pc_Run(pc_Out, pcu_In, pcu_End, b_Packs);
            if (pcu_In == pcu_End)
                break;
            pc_Out = pc_Close(pc_Out);
        }
        pc_Out = pc_CopyDirect(pc_Out, pcu_In, pcu_End);
        if (pcu_In == pcu_End)
            break;
        *pc_Out++ = '+';
        if (*pcu_In != '+')
            b_Shifted = true;
        else {
            *pc_Out++ = '-';
            ++pcu_In;
        }
    }
    return pc_Out;
}

int CT_UTF::si_WideToUTF7(char* pc_Out, const unsigned short* pcu_In, unsigned n_Count)
{
    st_UTF7Encoder so = sso_Encoder;
    const unsigned n_Length = Units::sn_Length(pcu_In, n_Count);
    char* pc = so.pc_Encode(pc_Out, pcu_In, pcu_In + n_Length);
    if (n_Length < n_Count) {
        if (so.b_Shifted)
            pc = so.pc_Close(pc);
        *pc = 0;
    }
    sv_Save(sso_Encoder.so_Bits, so.so_Bits);
    sso_Encoder.b_Shifted = so.b_Shifted;
    return static_cast<int>(pc - pc_Out);
}

int CT_UTF::si_WideToUTF7Exit(char* pc_Out)
{
    const unsigned short u_End = 0;
    return si_WideToUTF7(pc_Out, &u_End, 1);
}

// ---- UTF-7 decoder --------------------------------------------------------------------------

void CT_UTF::sv_UTF7ToWideInit()
{
    sso_Decoder = {};
}

namespace
{
// Copies bytes up to a "+". Kept: one from 0x80 up gives a unit from 0xFF80 up.
unsigned short* pu_CopyDirect(unsigned short* pu_Out, const char*& pcc_In, const char* pcc_End)
{
    SignedByteRun ao_Bytes;
    for (; pcc_End - pcc_In >= LONG_RUN; pcc_In += LONG_RUN) {
        std::memcpy(&ao_Bytes, pcc_In, sizeof(ao_Bytes));
        if (!b_IsZero(ao_Bytes == '+'))
            break;
        const auto ao_Units = __builtin_convertvector(ao_Bytes, SignedUnitRun);
        std::memcpy(pu_Out, &ao_Units, sizeof(ao_Units));
        pu_Out += LONG_RUN;
    }
    for (; pcc_In < pcc_End && *pcc_In != '+'; ++pcc_In)
        *pu_Out++ = static_cast<unsigned short>(static_cast<signed char>(*pcc_In));
    return pu_Out;
}

// Eight characters of Base64 are three units; whether the next eight are such.
bool b_ThreeUnits(unsigned short* pu_Out, const char* pcc_In)
{
    std::uint64_t n8_Bits = 0;
    unsigned n_All = 0;
    for (int i = 0; i < 8; ++i) {
        const unsigned n_Sextet = INVERSE[static_cast<unsigned char>(pcc_In[i])];
        n_All |= n_Sextet;
        n8_Bits = n8_Bits << 6 | (n_Sextet & 0x3F);
    }
    if (n_All > 0x3F)
        return false;
    for (int i = 0; i < 3; ++i)
        pu_Out[i] = static_cast<unsigned short>(n8_Bits >> (32 - 16 * i));
    return true;
}
} // namespace

// Reads Base64 up to the first character that isn't.
inline unsigned short* CT_UTF::st_UTF7Decoder::pu_Run(unsigned short* pu_Out, const char*& pcc_In,
                                                      const char* pcc_End)
{
    const char* pcc_Start = pcc_In;
    for (;;) {
        if (!so_Bits.i_Bits)
            for (; pcc_End - pcc_In >= 8 && b_ThreeUnits(pu_Out, pcc_In); pcc_In += 8)
                pu_Out += 3;
        const unsigned n_Sextet =
            pcc_In < pcc_End ? INVERSE[static_cast<unsigned char>(*pcc_In)] : NO_BASE64;
        if (n_Sextet == NO_BASE64)
            break;
        ++pcc_In;
        so_Bits.v_Add(n_Sextet, 6);
        if (so_Bits.i_Bits >= 16)
            *pu_Out++ = static_cast<unsigned short>(so_Bits.n_Take(16));
    }
    b_First = b_First && pcc_In == pcc_Start;
    return pu_Out;
}

inline unsigned short* CT_UTF::st_UTF7Decoder::pu_Decode(unsigned short* pu_Out, const char* pcc_In,
                                                         const char* pcc_End)
{
    for (;;) {
        if (b_Shifted) {
            pu_Out = pu_Run(pu_Out, pcc_In, pcc_End);
            if (pcc_In == pcc_End)
                break;
            b_Shifted = false;
            so_Bits.v_Clear();
            // Kept: what ends a run is lost at the end of the input.
            if (pcc_End - pcc_In == 1)
                break;
            const char c = *pcc_In;
            if (b_First && c == '-')
                *pu_Out++ = '+';
            pcc_In += c == '+' || c == '-';
        }
        pu_Out = pu_CopyDirect(pu_Out, pcc_In, pcc_End);
        if (pcc_In == pcc_End)
            break;
        ++pcc_In;
        b_Shifted = b_First = true;
    }
    return pu_Out;
}

int CT_UTF::si_UTF7ToWide(unsigned short* pu_Out, const char* pcc_In, unsigned n_Count)
{
    st_UTF7Decoder so = sso_Decoder;
    const unsigned n_Length = Bytes::sn_Length(pcc_In, n_Count);
    const unsigned short* pcu_End = so.pu_Decode(pu_Out, pcc_In, pcc_In + n_Length);
    sv_Save(sso_Decoder.so_Bits, so.so_Bits);
    sso_Decoder.b_Shifted = so.b_Shifted;
    sso_Decoder.b_First = so.b_First;
    return static_cast<int>(pcu_End - pu_Out);
}

// ---- Pieces of UTF-8 --------------------------------------------------------------------------

namespace
{
// Moves the end of what is known of a text over the next piece, of n_Count characters at most that
// may be left. A piece stays in the nearest cache until it is coded. False once the end is known.
template <class Unit>
bool b_Extend(const Unit*& pcu_Known, unsigned& n_Count)
{
    constexpr unsigned PIECE = 8192;
    const unsigned n_Length =
        CT_TextOperations<Unit>::sn_Length(pcu_Known, std::min(n_Count, PIECE));
    pcu_Known += n_Length;
    n_Count -= n_Length;
    return n_Length == PIECE;
}
} // namespace

// ---- UTF-8 encoder --------------------------------------------------------------------------

int CT_UTF::si_WideToUTF8(char* pc_Out, const unsigned short* pcu_In, unsigned n_Count)
{
    char* const pc =
        CT_UTF8Ways::sb_CanPack(pcu_In)
            ? CT_UTF8Ways::spc_EncodePacked(pc_Out, pcu_In, n_Count)
            : CT_UTF8Ways::spc_EncodePieces(pc_Out, pcu_In, n_Count,
                                            [](const unsigned short*& pcu_Known, unsigned& n_Rest) {
                                                return b_Extend(pcu_Known, n_Rest);
                                            });
    *pc = 0;
    return static_cast<int>(pc - pc_Out);
}

// ---- UTF-8 decoder --------------------------------------------------------------------------

namespace
{
// Bytes of a sequence behind its first. Kept: a byte from 0x80 to 0xBF counts as a sequence of one.
unsigned n_TrailingOf(unsigned n_First)
{
    return n_First < 0xF8 ? (n_First >= 0xC0) + (n_First >= 0xE0) + (n_First >= 0xF0) : 0;
}
} // namespace

void CT_UTF::sv_UTF8ToWideInit()
{
    sso_Sequence = {};
}

// The value of a sequence of four bytes with that one as its last.
static unsigned n_ValueWith(unsigned n4_Value, unsigned n_Last)
{
    return n4_Value + n_Last - CT_UTF8Ways::OFFSETS[3];
}

// Writes the first unit of a pair whose last byte is still to come. That byte has six bits, and the
// first unit doesn't hold any of them: 0x80 stands for it.
unsigned short* CT_UTF::st_UTF8Decoder::pu_First(unsigned short* pu_To) const
{
    const unsigned n_Value = n_ValueWith(n4_Value, 0x80);
    if (b_IsPair(n_Value))
        *pu_To++ = u_High(n_Value);
    return pu_To;
}

// Writes the second unit of a pair whose first was written before its last byte was known. A byte
// that continues no sequence may make the value another pair's, or no pair's: then U+FFFD.
unsigned short* CT_UTF::st_UTF8Decoder::pu_Second(unsigned short* pu_To, unsigned n_Last) const
{
    const unsigned n_Value = n_ValueWith(n4_Value, n_Last);
    const unsigned n_Written = n_ValueWith(n4_Value, 0x80);
    *pu_To = b_IsPair(n_Written) && n_Value >> 10 == n_Written >> 10 ? u_Low(n_Value) : REPLACEMENT;
    return pu_To + 1;
}

// Takes the bytes still to come, of which there is one at least, as far as they go, and writes what
// comes of them.
unsigned short* CT_UTF::st_UTF8Decoder::pu_Take(unsigned short* pu_To, const char*& pcc_In,
                                                const char* pcc_End)
{
    if (b_IsFirstOut()) {
        n_ToCome = 0;
        return pu_Second(pu_To, n_Byte(*pcc_In++));
    }
    while (pcc_In < pcc_End) {
        n4_Value += n_Byte(*pcc_In++);
        if (!--n_ToCome) {
            const unsigned n_Value = n4_Value - CT_UTF8Ways::OFFSETS[n_Trailing];
            if (n_Trailing == 3)
                return CT_UTF8Ways::spu_Pair(pu_To, n_Value);
            *pu_To = static_cast<unsigned short>(n_Value);
            return pu_To + 1;
        }
        n4_Value <<= 6;
    }
    return b_IsFirstOut() ? pu_First(pu_To) : pu_To;
}

int CT_UTF::si_UTF8ToWide(unsigned short* pu_Out, const char* pcc_In, unsigned n_Count)
{
    unsigned short* pu_To = pu_Out;
    const char* pcc_End = pcc_In;
    bool b_More = b_Extend(pcc_End, n_Count);
    if (sso_Sequence.n_ToCome && pcc_In < pcc_End)
        pu_To = sso_Sequence.pu_Take(pu_To, pcc_In, pcc_End);
    for (; b_More; b_More = b_Extend(pcc_End, n_Count))
        pu_To = CT_UTF8Ways::spu_Decode(pu_To, pcc_In, pcc_End);
    pu_To = CT_UTF8Ways::spu_Decode(pu_To, pcc_In, pcc_End);
    while (pcc_In < pcc_End) {
        const unsigned n_Trailing = n_TrailingOf(n_Byte(*pcc_In));
        if (pcc_End - pcc_In <= int(n_Trailing)) {
            sso_Sequence = {n_Trailing, n_Trailing + 1, 0};
            pu_To = sso_Sequence.pu_Take(pu_To, pcc_In, pcc_End);
        } else
            pu_To = CT_UTF8Ways::spu_Sequence(pu_To, pcc_In);
    }
    return static_cast<int>(pu_To - pu_Out);
}

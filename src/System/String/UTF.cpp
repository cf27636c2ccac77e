// System/String/UTF.cpp
#include <System/String/UTF.h>

#include <Ostra/String/TextOperations.h>

#include <array>
#include <bit>
#include <cstddef>
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
    char* pc_Shift(char* pc_Out, unsigned n_Unit);
};

struct CT_UTF::st_UTF7Decoder
{
    st_Bits so_Bits;
    bool b_Shifted;
    bool b_First; // no Base64 character since the "+"
};

struct CT_UTF::st_UTF8Decoder
{
    unsigned n_Trailing; // bytes of the sequence behind its first
    unsigned n_ToCome;
    unsigned n4_Value;

    const char* pcc_Take(unsigned short* pu, const char* pcc_In, const char* pcc_End);
};

unsigned CT_UTF::sn4_BitBuffer;
int CT_UTF::si_BufferBits;
unsigned CT_UTF::sn4_BufferTemp;
CT_UTF::st_UTF7Encoder CT_UTF::sso_Encoder;
CT_UTF::st_UTF7Decoder CT_UTF::sso_Decoder;
CT_UTF::st_UTF8Decoder CT_UTF::sso_Sequence;

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

// 1 for an ASCII character that doesn't stand for itself.
constexpr auto MUST_SHIFT = [] {
    std::array<unsigned char, 128> a;
    a.fill(1);
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

bool b_IsDirect(unsigned n_Unit)
{
    return n_Unit <= 127 && !MUST_SHIFT[n_Unit];
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

// Writes a unit that can't stand for itself.
inline char* CT_UTF::st_UTF7Encoder::pc_Shift(char* pc_Out, unsigned n_Unit)
{
    if (!b_Shifted) {
        *pc_Out++ = '+';
        if (n_Unit == '+') {
            *pc_Out++ = '-';
            return pc_Out;
        }
        b_Shifted = true;
    }
    so_Bits.v_Add(n_Unit, 16);
    return pc_Base64(pc_Out);
}

int CT_UTF::si_WideToUTF7(char* pc_Out, const unsigned short* pcu_In, unsigned n_Count)
{
    st_UTF7Encoder so = sso_Encoder;
    char* pc = pc_Out;
    unsigned n_Unit = 1;
    for (; n_Count && n_Unit; --n_Count) {
        while (n_Count && !so.b_Shifted && b_IsDirect(*pcu_In)) {
            *pc++ = static_cast<char>(n_Unit = *pcu_In++);
            --n_Count;
        }
        if (!n_Count)
            break;
        n_Unit = *pcu_In++;
        if (n_Unit && !b_IsDirect(n_Unit))
            pc = so.pc_Shift(pc, n_Unit);
        else {
            if (so.b_Shifted)
                pc = so.pc_Close(pc);
            *pc++ = static_cast<char>(n_Unit);
        }
    }
    sv_Save(sso_Encoder.so_Bits, so.so_Bits);
    sso_Encoder.b_Shifted = so.b_Shifted;
    return static_cast<int>(pc - pc_Out) - !n_Unit;
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

int CT_UTF::si_UTF7ToWide(unsigned short* pu_Out, const char* pcc_In, unsigned n_Count)
{
    st_UTF7Decoder so = sso_Decoder;
    unsigned short* pu = pu_Out;
    const char* pcc_End = pcc_In + Bytes::sn_Length(pcc_In, n_Count);
    while (pcc_In < pcc_End) {
        char c = *pcc_In++;
        if (so.b_Shifted) {
            const unsigned short n_Sextet = INVERSE[static_cast<unsigned char>(c)];
            if (n_Sextet != NO_BASE64) {
                so.b_First = false;
                so.so_Bits.v_Add(n_Sextet, 6);
                if (so.so_Bits.i_Bits >= 16)
                    *pu++ = static_cast<unsigned short>(so.so_Bits.n_Take(16));
                continue;
            }
            so.b_Shifted = false;
            so.so_Bits.v_Clear();
            // Kept: what ends a run is lost at the end of the input.
            if (pcc_In == pcc_End)
                break;
            if (c == '+' || c == '-') {
                if (so.b_First && c == '-')
                    *pu++ = '+';
                c = *pcc_In++;
            }
        }
        if (c == '+')
            so.b_Shifted = so.b_First = true;
        else
            // Kept: a byte from 0x80 up gives a unit from 0xFF80 up.
            *pu++ = static_cast<unsigned short>(static_cast<signed char>(c));
    }
    sv_Save(sso_Decoder.so_Bits, so.so_Bits);
    sso_Decoder.b_Shifted = so.b_Shifted;
    sso_Decoder.b_First = so.b_First;
    return static_cast<int>(pu - pu_Out);
}

// ---- UTF-8 encoder --------------------------------------------------------------------------

// Eight characters are copied at a time, also where fewer of them are ASCII: what follows writes
// over the others. What they leave behind can be written over only where enough of the input is
// still to come.

namespace
{
constexpr std::ptrdiff_t RUN = 8;

typedef unsigned char ByteRun __attribute__((vector_size(RUN)));
typedef unsigned short UnitRun __attribute__((vector_size(2 * RUN)));

void v_CopyRun(char* pc_To, const unsigned short* pcu_From)
{
    UnitRun aUnits;
    std::memcpy(&aUnits, pcu_From, sizeof(aUnits));
    const auto aBytes = __builtin_convertvector(aUnits, ByteRun);
    std::memcpy(pc_To, &aBytes, sizeof(aBytes));
}

void v_CopyRun(unsigned short* pu_To, const char* pcc_From)
{
    ByteRun aBytes;
    std::memcpy(&aBytes, pcc_From, sizeof(aBytes));
    const auto aUnits = __builtin_convertvector(aBytes, UnitRun);
    std::memcpy(pu_To, &aUnits, sizeof(aUnits));
}

// Characters before the first whose byte of the word has its top bit set; RUN for none.
unsigned n_Leading(std::uint64_t n8_Marks)
{
    return static_cast<unsigned>(std::countr_zero(n8_Marks & 0x8080808080808080)) / 8;
}

// How many of the next RUN units are ASCII before the first that isn't.
unsigned n_LeadingASCII(const unsigned short* pcu_In)
{
    UnitRun aUnits;
    std::memcpy(&aUnits, pcu_In, sizeof(aUnits));
    const auto aMarks = __builtin_convertvector(aUnits > 0x7F, ByteRun);
    std::uint64_t n8_Marks;
    std::memcpy(&n8_Marks, &aMarks, sizeof(n8_Marks));
    return n_Leading(n8_Marks);
}

char* pc_Encode(char* pc_Out, unsigned n_Unit)
{
    if (n_Unit < 0x80)
        *pc_Out++ = static_cast<char>(n_Unit);
    else if (n_Unit < 0x800) {
        *pc_Out++ = static_cast<char>(0xC0 | n_Unit >> 6);
        *pc_Out++ = static_cast<char>(0x80 | (n_Unit & 0x3F));
    } else {
        // A surrogate too.
        *pc_Out++ = static_cast<char>(0xE0 | n_Unit >> 12);
        *pc_Out++ = static_cast<char>(0x80 | (n_Unit >> 6 & 0x3F));
        *pc_Out++ = static_cast<char>(0x80 | (n_Unit & 0x3F));
    }
    return pc_Out;
}
} // namespace

int CT_UTF::si_WideToUTF8(char* pc_Out, const unsigned short* pcu_In, unsigned n_Count)
{
    char* pc = pc_Out;
    const unsigned short* pcu_End = pcu_In + Units::sn_Length(pcu_In, n_Count);
    // Eight units become eight bytes at least.
    while (pcu_End - pcu_In >= RUN) {
        const unsigned n_ASCII = n_LeadingASCII(pcu_In);
        v_CopyRun(pc, pcu_In);
        pc += n_ASCII;
        pcu_In += n_ASCII;
        if (n_ASCII == RUN)
            continue;
        // Up to two ASCII units in a row, with which a run may begin.
        while (pcu_In + 1 < pcu_End && (pcu_In[0] >= 0x80 || pcu_In[1] >= 0x80))
            pc = pc_Encode(pc, *pcu_In++);
    }
    while (pcu_In < pcu_End)
        pc = pc_Encode(pc, *pcu_In++);
    *pc = 0;
    return static_cast<int>(pc - pc_Out);
}

// ---- UTF-8 decoder --------------------------------------------------------------------------

namespace
{
// What the marks of a sequence add up to, by its trailing bytes.
constexpr unsigned OFFSETS[] = {0, 0x3080, 0xE2080};

unsigned n_Byte(char c)
{
    return static_cast<unsigned char>(c);
}

// Bytes of a sequence behind its first. Kept: a byte from 0x80 to 0xBF counts as a sequence of one.
unsigned n_TrailingOf(unsigned n_First)
{
    return (n_First >= 0xC0) + (n_First >= 0xE0);
}

// How many of the next RUN bytes are ASCII before the first that isn't.
unsigned n_LeadingASCII(const char* pcc_In)
{
    std::uint64_t n8_Word;
    std::memcpy(&n8_Word, pcc_In, sizeof(n8_Word));
    return n_Leading(n8_Word);
}

// Kept: a first byte of 0xF0 or above is never taken, and never passed.
[[noreturn]] void v_Stay(const volatile char* pcc_In)
{
    for (;;)
        (void)*pcc_In;
}

// Decodes a sequence that is there whole.
inline const char* pcc_Decode(unsigned short* pu, const char* pcc_In)
{
    const unsigned n_First = n_Byte(*pcc_In);
    if (n_First < 0xC0) {
        *pu = static_cast<unsigned short>(n_First);
        return pcc_In + 1;
    }
    if (n_First < 0xE0) {
        *pu = static_cast<unsigned short>((n_First << 6) + n_Byte(pcc_In[1]) - OFFSETS[1]);
        return pcc_In + 2;
    }
    if (n_First >= 0xF0)
        v_Stay(pcc_In);
    *pu = static_cast<unsigned short>((n_First << 12) + (n_Byte(pcc_In[1]) << 6) +
                                      n_Byte(pcc_In[2]) - OFFSETS[2]);
    return pcc_In + 3;
}
} // namespace

void CT_UTF::sv_UTF8ToWideInit()
{
    sso_Sequence = {};
}

// Takes the bytes still to come, as far as there are any, and writes the unit when none is to come
// any more.
const char* CT_UTF::st_UTF8Decoder::pcc_Take(unsigned short* pu, const char* pcc_In,
                                             const char* pcc_End)
{
    while (pcc_In < pcc_End) {
        n4_Value += n_Byte(*pcc_In++);
        if (!--n_ToCome) {
            *pu = static_cast<unsigned short>(n4_Value - OFFSETS[n_Trailing]);
            break;
        }
        n4_Value <<= 6;
    }
    return pcc_In;
}

int CT_UTF::si_UTF8ToWide(unsigned short* pu_Out, const char* pcc_In, unsigned n_Count)
{
    unsigned short* pu = pu_Out;
    const char* pcc_End = pcc_In + Bytes::sn_Length(pcc_In, n_Count);
    if (sso_Sequence.n_ToCome) {
        pcc_In = sso_Sequence.pcc_Take(pu, pcc_In, pcc_End);
        pu += !sso_Sequence.n_ToCome;
    }
    // Of 32 bytes, of which one to eight are taken, as many units come at least as were copied too
    // many.
    while (pcc_End - pcc_In >= 4 * RUN) {
        const unsigned n_ASCII = n_LeadingASCII(pcc_In);
        v_CopyRun(pu, pcc_In);
        pu += n_ASCII;
        pcc_In += n_ASCII;
        if (n_ASCII == RUN)
            continue;
        // Up to two ASCII bytes in a row, with which a run may begin.
        while (pcc_End - pcc_In >= 3 && (n_Byte(pcc_In[0]) | n_Byte(pcc_In[1])) >= 0x80)
            pcc_In = pcc_Decode(pu++, pcc_In);
    }
    while (pcc_In < pcc_End) {
        const unsigned n_First = n_Byte(*pcc_In);
        if (n_First < 0xF0 && pcc_End - pcc_In <= int(n_TrailingOf(n_First))) {
            sso_Sequence = {n_TrailingOf(n_First), n_TrailingOf(n_First) + 1, 0};
            pcc_In = sso_Sequence.pcc_Take(pu, pcc_In, pcc_End);
        } else
            pcc_In = pcc_Decode(pu++, pcc_In);
    }
    return static_cast<int>(pu - pu_Out);
}

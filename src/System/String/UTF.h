// System/String/UTF.h: the streaming coders for UTF-7 and UTF-8.
#pragma once

#include <Ostra/Frame/Export.h>

// Coders that take a text in pieces: what a piece leaves open, the next call goes on with.
//
// The decoders check nothing. In UTF-8 a sequence of up to three bytes is one unit, whatever its
// bytes; one of four is a surrogate pair, or U+FFFD where its value isn't that of a pair. A first
// byte from 0xF8 up is U+FFFD by itself. CT_StandardUTF8 is the coder that checks.
//
// Units:   counts are bytes of 8-bit text and units of wide text; input also ends at a zero.
//          Results are what was written, without a terminator.
// Caller:  gives room: 3 bytes for each unit, and for UTF-7 three more; a unit for each byte.
// Threads: one thread at a time in the whole process: the state is static.
class OSTRA_API CT_UTF
{
public:
    // Each Init forgets what an earlier text left open.
    static void sv_WideToUTF7Init();
    static int si_WideToUTF7(char* pc_Out, const unsigned short* pcu_In, unsigned n_Count);
    // Closes an open run and terminates the text.
    static int si_WideToUTF7Exit(char* pc_Out);

    static void sv_UTF7ToWideInit();
    // Adds no terminator. Kept: a byte that ends a Base64 run and is the last of the input isn't
    // written.
    static int si_UTF7ToWide(unsigned short* pu_Out, const char* pcc_In, unsigned n_Count);

    // Terminates the text. Each surrogate is coded by itself.
    static int si_WideToUTF8(char* pc_Out, const unsigned short* pcu_In, unsigned n_Count);

    static void sv_UTF8ToWideInit();
    // Adds no terminator. A piece never gives more units than it has bytes: where it ends before
    // the last of four bytes, the first unit of the pair is written with it. A last byte that then
    // continues nothing gives U+FFFD where the second unit would have to be another pair's.
    static int si_UTF8ToWide(unsigned short* pu_Out, const char* pcc_In, unsigned n_Count);

private:
    struct st_Bits;
    struct st_UTF7Encoder;
    struct st_UTF7Decoder;
    struct st_UTF8Decoder;

    static void sv_Save(st_Bits& so_Saved, const st_Bits& so_Bits);

    // A copy of the bits of whichever UTF-7 coder ran last. The coders don't read it.
    static unsigned sn4_BitBuffer; // left-aligned
    static int si_BufferBits;
    static unsigned sn4_BufferTemp; // the last value extracted

    static st_UTF7Encoder sso_Encoder;
    static st_UTF7Decoder sso_Decoder;
    static st_UTF8Decoder sso_Sequence;
};

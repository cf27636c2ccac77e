// tests/Ostra/Unicode/DecompositionRows.h: the characters that are taken apart, and the sequences
// that are the library's own.
#pragma once

// All characters with a row.
inline const char DECOMPOSED[] =
    "00C0..00C5 00C7..00CF 00D1..00D6 00D8..00DD 00E0..00E5 00E7..00EF 00F1..00F6 00F8..00FD "
    "00FF..0130 0134..0137 0139..013E 0141..0148 014C..0151 0154..017E 0180 0197 019A..019B "
    "019F..01A1 01AB 01AE..01B0 01B5..01B6 01C4..01C6 01CD..01DC 01DE..01DF 01E2..01F0 01F4..01F5 "
    "01FA..0217 0268 0275 0289 0386 0388..038A 038C 038E..0390 03AA..03B0 03CA..03CE 03D3..03D4 "
    "0401 0403 0407 040C 040E 0419 0439 0451 0453 0457 045C 045E 0476..0477 0492..0493 0498..049B "
    "04AA..04AB 04B0..04B3 04BE..04BF 04C1..04C2 0958..095F 09DC..09DD 09DF 0A59..0A5C 0A5E "
    "0B5C..0B5D 0B5F 1E00..1E05 1E08..1E0D 1E10..1E1B 1E1E..1E33 1E36..1E39 1E3C..1E47 1E4A..1E5D "
    "1E60..1E6D 1E70..1E71 1E74..1E93 1E97..1E99 1EA0..1EF9 304C 304E 3050 3052 3054 3056 3058 "
    "305A 305C 305E 3060 3062 3065 3067 3069 3070..3071 3073..3074 3076..3077 3079..307A "
    "307C..307D 3094 30AC 30AE 30B0 30B2 30B4 30B6 30B8 30BA 30BC 30BE 30C0 30C2 30C5 30C7 30C9 "
    "30D0..30D1 30D3..30D4 30D6..30D7 30D9..30DA 30DC..30DD 30F4";

// A row whose sequence is told outright.
struct DecompositionRow
{
    const char* source;
    const char* sequence;
};

inline const DecompositionRow OWN_SEQUENCES[] = {
    // Letters with a stroke.
    {"00D8", "004F 0338"},
    {"00F8", "006F 0338"},
    {"01FE", "004F 0338 0301"},
    {"01FF", "006F 0338 0301"},
    {"0141", "004C 0337"},
    {"0142", "006C 0337"},
    {"01B5", "005A 0336"},
    {"0110", "0044 0335"},
    {"0111", "0064 0335"},
    {"0126", "0048 0335"},
    {"0127", "0068 0335"},
    {"0166", "0054 0335"},
    {"0167", "0074 0335"},
    {"0180", "0062 0335"},
    {"0197", "0049 0335"},
    {"019A", "006C 0335"},
    {"019B", "03BB 0335"},
    {"019F", "004F 0335"},
    {"01B6", "007A 0335"},
    {"01E4", "0047 0335"},
    {"01E5", "0067 0335"},
    {"0268", "0069 0335"},
    {"0275", "006F 0335"},
    {"0289", "0075 0335"},
    {"0492", "0413 0335"},
    {"0493", "0433 0335"},
    {"04B0", "04AE 0335"},
    {"04B1", "04AF 0335"},
    // Letters with a hook.
    {"01AB", "0074 0321"},
    {"01AE", "0054 0322"},
    // Digraphs: the second character is composed itself.
    {"01C4", "0044 017D"},
    {"01C5", "0044 017E"},
    {"01C6", "0064 017E"},
    // The Greek tonos.
    {"0386", "0391 030D"},
    {"0388", "0395 030D"},
    {"0389", "0397 030D"},
    {"038A", "0399 030D"},
    {"038C", "039F 030D"},
    {"038E", "03A5 030D"},
    {"038F", "03A9 030D"},
    {"03AC", "03B1 030D"},
    {"03AD", "03B5 030D"},
    {"03AE", "03B7 030D"},
    {"03AF", "03B9 030D"},
    {"03CC", "03BF 030D"},
    {"03CD", "03C5 030D"},
    {"03CE", "03C9 030D"},
    {"03D3", "03D2 030D"},
    {"0390", "03B9 0344"},
    {"03B0", "03C5 0344"},
    // Cyrillic descenders.
    {"0498", "0417 0327"},
    {"0499", "0437 0327"},
    {"04AA", "0421 0327"},
    {"04AB", "0441 0327"},
    {"049A", "041A 0328"},
    {"049B", "043A 0328"},
    {"04B2", "0425 0328"},
    {"04B3", "0445 0328"},
    {"04BE", "04BC 0328"},
    {"04BF", "04BD 0328"},
    // Nukta.
    {"0A5C", "0A21 0A3C"},
    {"0B5F", "0B2F 0B3C"},
    // Vietnamese letters: the dot below comes last.
    {"1EAC", "0041 0302 0323"},
    {"1EAD", "0061 0302 0323"},
    {"1EB6", "0041 0306 0323"},
    {"1EB7", "0061 0306 0323"},
    {"1EC6", "0045 0302 0323"},
    {"1EC7", "0065 0302 0323"},
    {"1ED8", "004F 0302 0323"},
    {"1ED9", "006F 0302 0323"},
};

// Kana that end in the halfwidth voiced mark U+FF9E, and those in the semi-voiced one, U+FF9F. The
// plain letter stands one place before the one, two before the other; U+3046 and U+30A6 stand
// further away.
inline const char VOICED[] =
    "304C 304E 3050 3052 3054 3056 3058 305A 305C 305E 3060 3062 3065 3067 3069 3070 3073 3076 "
    "3079 307C 30AC 30AE 30B0 30B2 30B4 30B6 30B8 30BA 30BC 30BE 30C0 30C2 30C5 30C7 30C9 30D0 "
    "30D3 30D6 30D9 30DC";
inline const char SEMI_VOICED[] = "3071 3074 3077 307A 307D 30D1 30D4 30D7 30DA 30DD";
inline const DecompositionRow VOICED_U[] = {{"3094", "3046 FF9E"}, {"30F4", "30A6 FF9E"}};

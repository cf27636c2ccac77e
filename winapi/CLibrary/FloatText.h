// winapi/CLibrary/FloatText.h: floating-point numbers as the platform's C library prints them. Internal.
#pragma once

#include <cstddef>

namespace winapi
{
// A stretch of a printed number: characters, or zeros where the text is null.
struct NumberPiece
{
    const char* text;
    std::size_t count;
};

// The body of a number without its sign, as a row of pieces, so that no precision needs room of its
// own.
//
// Digits are exact and rounded half away from zero; exponents have three digits; infinity and what
// is no number read 1.#INF, 1.#QNAN and 1.#IND and are filled and rounded as if those were digits.
class FloatText
{
public:
    // conversion is one of e f g a E G A; a negative precision stands for the default one.
    FloatText(double value, char conversion, int precision, bool alternate);

    bool IsNegative() const { return negative; }
    const NumberPiece* Pieces() const { return pieces; }
    std::size_t PieceCount() const { return pieceCount; }

private:
    // Digits of the longest double, with room for one carried to the front.
    static constexpr int MOST_DIGITS = 767;

    void MakeSpecial(double value);
    void MakeDecimal(double value);
    void MakeHexadecimal(double value);
    void Round(int keep, char half, char last);
    void WriteGeneral(int precision, char letter);
    void WriteFixed(int precision);
    void WriteScientific(int precision);
    void WriteExponent(char letter, int exponent, int leastDigits);
    void Add(const char* text, int count);
    void AddZeros(int count) { Add(nullptr, count); }

    bool negative;
    bool alternate;
    int digitCount = 0;
    int point = 1; // position of the point behind the first digit; below 1: zeros come first
    int binaryExponent = 0; // of hexadecimal numbers
    std::size_t pieceCount = 0;
    NumberPiece pieces[10];
    char tail[8];                  // letter, sign and digits of the exponent
    char digits[MOST_DIGITS + 17]; // to_chars puts a point and an exponent there as well
};
} // namespace winapi

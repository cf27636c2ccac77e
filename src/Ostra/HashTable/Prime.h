// Ostra/HashTable/Prime.h: numbers of buckets and rows. Internal.
#pragma once

// The first number at or above n_From that no number from 2 up to its square root divides: a prime,
// or 0 or 1 as they are.
inline unsigned n_FindPrime(unsigned n_From)
{
    for (;; ++n_From) {
        unsigned long long n_Divisor = 2;
        while (n_Divisor * n_Divisor <= n_From && n_From % static_cast<unsigned>(n_Divisor))
            ++n_Divisor;
        if (n_Divisor * n_Divisor > n_From)
            return n_From;
    }
}

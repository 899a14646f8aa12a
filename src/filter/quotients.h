// Quotients of 16-bit sums.
//
// To 8 bits: trunc(clip((float)sum * (1.0f / (float)divisor))) to -128..127, for sums of less than 2^14 in size. There are
// two ways to the same numbers; a way is a function of a block of sums.
//
// By a 16-bit product, for divisors of size d from 2 to 2^14: with 2^k < d <= 2^(k + 1) and s = 15 + k the multiplier is
// m = floor(2^s / d) + 1, which is less than 2^15 and exceeds 2^s / d by c / d, 0 < c <= d. Then a * m / 2^s exceeds a / d by
// less than 1 / d for all a below 2^14, and is not an integer unless a is 0. Its floor is that of a / d, and the floor of its
// negative is one less than what is cut toward zero.
//
// The single-precision quotient differs from this where a multiple of the divisor comes out below the integer that it is. The
// error of the reciprocal decides: up to 2^-25 in size, products with integers up to 128 round back to them; quotients beyond
// are limited.
#pragma once

#include "vector/vector.h"

#include <bit>
#include <cstdlib>

namespace zelcv {

// trunc((float)number * factor), limited to 16 bits, where it does not leave 32.
inline Vec<Zel16s> truncatedProducts(Vec<Zel16s> numbers, Zel32f factor)
{
    const auto cut = [&](Vec<Zel16s> doubled) { // each number twice: 16 bits above and below
        return truncate(toFloat(Vec<Zel32s>(doubled) >> 16) * splat(factor));
    };
    return narrowPairs<Zel16s>(cut(interleaveLow(numbers, numbers)), cut(interleaveHigh(numbers, numbers)));
}

struct QuotientsByProduct {
    Zel16s multiplier = 0;
    int shift = 0;

    explicit QuotientsByProduct(int divisor)
    {
        const int size = std::abs(divisor);
        shift = int(std::bit_width(unsigned(size - 1))) - 1;
        multiplier = Zel16s((1 << (15 + shift)) / size + 1);
        if (divisor < 0) multiplier = Zel16s(-multiplier);
    }

    static bool isExact(int divisor)
    {
        if (divisor < -(1 << 14) || divisor > 1 << 14) return false;
        const int size = std::abs(divisor);
        return size > 1 && double(1.0f / Zel32f(size)) * size >= 1 - 0x1p-25; // the product is exact
    }

    Vec<Zel8s> operator()(const Group<Vec<Zel16s>, 2>& sums) const
    {
        const auto quotients = forParts([&](Vec<Zel16s> sum) {
            const Vec<Zel16s> below = multiplyHigh(sum + sum, splat(multiplier)) >> shift;
            return below - (below >> 15);
        }, sums);
        return narrowInOrder<Zel8s>(quotients.part[0], quotients.part[1]);
    }
};

struct QuotientsByFloat {
    Zel32f reciprocal;

    explicit QuotientsByFloat(int divisor) : reciprocal(1.0f / Zel32f(divisor)) {}

    Vec<Zel8s> operator()(const Group<Vec<Zel16s>, 2>& sums) const
    {
        // The limits are integers, so that cutting may come first.
        const auto quotients = forParts([&](Vec<Zel16s> sum) { return truncatedProducts(sum, reciprocal); }, sums);
        return narrowInOrder<Zel8s>(quotients.part[0], quotients.part[1]);
    }
};

} // namespace zelcv

// Signed 32-bit arithmetic that wraps, for sizes and sums that are defined to do so.
#pragma once

#include "zelcv.h"

namespace zelcv {

constexpr Zel32s wrap(Zel32u bits) { return static_cast<Zel32s>(bits); }

template <class... Factors>
constexpr Zel32s wrappingProduct(Factors... factors) { return wrap((Zel32u(1) * ... * static_cast<Zel32u>(factors))); }

template <class... Terms>
constexpr Zel32s wrappingSum(Terms... terms) { return wrap((Zel32u(0) + ... + static_cast<Zel32u>(terms))); }

constexpr Zel32s wrappingShift(Zel32s value, int bits) { return wrap(static_cast<Zel32u>(value) << bits); }

// A size formula reads as it is written: Wrapped(width) * 4 + 32. Every step wraps at 32 bits.
class Wrapped {
public:
    constexpr Wrapped(Zel32s value) : bits_(static_cast<Zel32u>(value)) {}
    constexpr Zel32s value() const { return wrap(bits_); }
    friend constexpr Wrapped operator+(Wrapped a, Wrapped b) { return wrap(a.bits_ + b.bits_); }
    friend constexpr Wrapped operator-(Wrapped a, Wrapped b) { return wrap(a.bits_ - b.bits_); }
    friend constexpr Wrapped operator*(Wrapped a, Wrapped b) { return wrap(a.bits_ * b.bits_); }
    // Up to the next multiple of `unit`, a power of two.
    constexpr Wrapped roundedUp(Zel32u unit) const { return wrap((bits_ + unit - 1) & ~(unit - 1)); }

private:
    Zel32u bits_;
};

} // namespace zelcv

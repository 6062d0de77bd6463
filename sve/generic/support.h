// Exact integer arithmetic under the generic tier: an element is widened to
// 128 bits, where nothing overflows, and cut back at the end. Also the
// decoding of predicate patterns and the flags a predicate result sets.
#pragma once

#include <cstdint>

#include "vector.h"

namespace generic {

using wide = __int128;

// A saturated value (an N-bit pattern, zero-extended) and whether it clamped.
struct Saturated {
  uint64_t value;
  bool saturated;
};

// The low N bits of x, zero-extended when is_unsigned, else sign-extended.
wide Int(uint64_t x, unsigned n, bool is_unsigned);
inline wide UInt(uint64_t x, unsigned n) { return Int(x, n, true); }
inline uint64_t bits(wide v) { return static_cast<uint64_t>(v); }
inline wide AbsInt(wide v) { return v < 0 ? -v : v; }
// The low N bits set; 0 counts as 64.
inline uint64_t ones(unsigned n) {
  return n == 0 || n >= 64 ? ~uint64_t{0} : (uint64_t{1} << n) - 1;
}

wide ShiftLeftInt(wide v, wide n);
wide ShiftRightInt(wide v, wide n);

// The larger (smaller) of the low N bits of a and b read with the given
// sign; the argument itself is returned, a on a tie. 0 for an odd N.
uint64_t Max(uint64_t a, uint64_t b, unsigned n, bool is_unsigned);
uint64_t Min(uint64_t a, uint64_t b, unsigned n, bool is_unsigned);

Saturated SatQ(wide v, unsigned n, bool is_unsigned);
uint64_t SatAdd(uint64_t a, uint64_t b, unsigned n, bool is_unsigned);
uint64_t SatSub(uint64_t a, uint64_t b, unsigned n, bool is_unsigned);

int HighestBitSet(uint64_t x, unsigned n);
unsigned CountLeadingZeroBits(uint64_t x, unsigned n);
unsigned CountLeadingSignBits(uint64_t x, unsigned n);
unsigned BitCount(uint64_t x, unsigned n);
uint64_t BitReverse(uint64_t x, unsigned n);
// The low N bits of x with its units of `unit` bytes in reverse order.
uint64_t Reverse(uint64_t x, unsigned n, unsigned unit);

// Highest (lowest) element index active in p at esize bits, or -1.
int32_t FindLastActive(const PredV& p, unsigned esize_bits, const CpuContext* ctx);
int32_t FindFirstActive(const PredV& p, unsigned esize_bits, const CpuContext* ctx);

// How many of n elements a predicate pattern selects; reserved patterns 0.
unsigned VecTrueILength(unsigned pattern, unsigned n);

// N, Z and C from a predicate result r under the governing predicate g, as
// the architecture's test sets them; V cleared. Only the top four bits of
// the context's nzcv change.
void PredSetNZCV(const PredV& g, const PredV& r, unsigned esize_bits, CpuContext* ctx);

} // namespace generic

#include "support.h"

namespace generic {

wide Int(uint64_t x, unsigned n, bool is_unsigned) {
  const uint64_t low = x & ones(n);
  if (is_unsigned || n >= 64) return is_unsigned ? wide(low) : wide(int64_t(low));
  const uint64_t sign = uint64_t{1} << (n - 1);
  return wide(int64_t(low ^ sign) - int64_t(sign));
}

wide ShiftRightInt(wide v, wide n) {
  if (n < 0) return ShiftLeftInt(v, -n);
  return n >= 127 ? (v < 0 ? -1 : 0) : v >> int(n);
}

wide ShiftLeftInt(wide v, wide n) {
  if (n < 0) return ShiftRightInt(v, -n);
  const int count = n > 64 ? 64 : int(n);
  return wide(static_cast<unsigned __int128>(v) << count);
}

static bool greater(uint64_t a, uint64_t b, unsigned n, bool is_unsigned) {
  return Int(a, n, is_unsigned) > Int(b, n, is_unsigned);
}

uint64_t Max(uint64_t a, uint64_t b, unsigned n, bool is_unsigned) {
  if (n != 8 && n != 16 && n != 32 && n != 64) return 0;
  return greater(b, a, n, is_unsigned) ? b : a;
}

uint64_t Min(uint64_t a, uint64_t b, unsigned n, bool is_unsigned) {
  if (n != 8 && n != 16 && n != 32 && n != 64) return 0;
  return greater(a, b, n, is_unsigned) ? b : a;
}

Saturated SatQ(wide v, unsigned n, bool is_unsigned) {
  if (is_unsigned) {
    if (v < 0) return {0, true};
    if (v > wide(ones(n))) return {ones(n), true};
    return {bits(v) & ones(n), false};
  }
  const wide max = (wide(1) << (n - 1)) - 1;
  if (v > max) return {bits(max), true};
  if (v < -max - 1) return {uint64_t{1} << (n - 1), true};
  return {bits(v) & ones(n), false};
}

uint64_t SatAdd(uint64_t a, uint64_t b, unsigned n, bool is_unsigned) {
  return SatQ(Int(a, n, is_unsigned) + Int(b, n, is_unsigned), n, is_unsigned).value;
}

uint64_t SatSub(uint64_t a, uint64_t b, unsigned n, bool is_unsigned) {
  return SatQ(Int(a, n, is_unsigned) - Int(b, n, is_unsigned), n, is_unsigned).value;
}

int HighestBitSet(uint64_t x, unsigned n) {
  for (int i = int(n) - 1; i >= 0; --i)
    if ((x >> i) & 1) return i;
  return -1;
}

unsigned CountLeadingZeroBits(uint64_t x, unsigned n) { return n - 1 - HighestBitSet(x, n); }

unsigned CountLeadingSignBits(uint64_t x, unsigned n) {
  return CountLeadingZeroBits((x & ~(uint64_t{1} << 63)) ^ (x >> 1), n - 1);
}

unsigned BitCount(uint64_t x, unsigned n) {
  unsigned count = 0;
  for (unsigned i = 0; i < n && i < 64; ++i) count += (x >> i) & 1;
  return count;
}

uint64_t BitReverse(uint64_t x, unsigned n) {
  uint64_t out = 0;
  for (unsigned i = 0; i < n && i < 64; ++i) out |= ((x >> i) & 1) << (n - 1 - i);
  return out;
}

uint64_t Reverse(uint64_t x, unsigned n, unsigned unit) {
  if (unit != 1 && unit != 2 && unit != 4) return 0;
  const unsigned unit_bits = unit * 8, units = n / unit_bits;
  uint64_t out = 0;
  for (unsigned i = 0; i < units; ++i)
    out |= ((x >> (i * unit_bits)) & ones(unit_bits)) << ((units - 1 - i) * unit_bits);
  return out;
}

int32_t FindLastActive(const PredV& p, unsigned esize_bits, const CpuContext* ctx) {
  for (int i = int(element_count(ctx, esize_bits)) - 1; i >= 0; --i)
    if (active(p, i, esize_bits / 8)) return i;
  return -1;
}

int32_t FindFirstActive(const PredV& p, unsigned esize_bits, const CpuContext* ctx) {
  const unsigned n = element_count(ctx, esize_bits);
  for (unsigned i = 0; i < n; ++i)
    if (active(p, i, esize_bits / 8)) return int32_t(i);
  return -1;
}

unsigned VecTrueILength(unsigned pattern, unsigned n) {
  if (pattern == 0) {
    unsigned power = 1;
    while (power * 2 <= n) power *= 2;
    return power;
  }
  if (pattern >= 1 && pattern <= 8) return pattern <= n ? pattern : 0;
  if (pattern >= 9 && pattern <= 13) {
    const unsigned count = 1u << (pattern - 5);
    return count <= n ? count : 0;
  }
  if (pattern == 29) return n & ~3u;
  if (pattern == 30) return n / 3 * 3;
  if (pattern == 31) return n & ~1u;
  return 0;
}

void PredSetNZCV(const PredV& g, const PredV& r, unsigned esize_bits, CpuContext* ctx) {
  const unsigned n = element_count(ctx, esize_bits), group = esize_bits / 8;
  auto group_zero = [&](unsigned i) {
    for (unsigned b = 0; b < group; ++b)
      if (pred_bit(r, i * group + b)) return false;
    return true;
  };
  bool any = false;
  int first = -1, last = -1;
  for (unsigned i = 0; i < n; ++i) {
    if (!active(g, i, group)) continue;
    if (first < 0) first = int(i);
    last = int(i);
    any = any || !group_zero(i);
  }
  uint32_t flags;
  if (!any) {
    flags = 0x6; // Z and C
  } else {
    const uint32_t negative = pred_bit(r, first * group) ? 1 : 0;
    const uint32_t carry = group_zero(last) ? 1 : 0;
    flags = negative << 3 | carry << 1;
  }
  ctx->nzcv = (ctx->nzcv & 0x0fffffffu) | flags << 28;
}

} // namespace generic

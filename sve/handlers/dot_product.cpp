// Integer dot products: each accumulator element adds the four products of
// the quarter-width elements that lie under it. Everything happens within
// one 128-bit segment, so the vector is done a segment at a time with the
// widening multiplies and pairwise adds every AArch64 processor has: a
// product of two bytes fits 16 bits and one of two halfwords fits 32, signed
// or unsigned, and the pairwise adds widen before they sum.
#include <arm_neon.h>

#include <cstring>

#include "../state/cpu_state.h"
#include "element.h"

namespace ZORVO_LENGTH {

namespace {

// Four 32-bit sums of four byte products each.
inline uint32x4_t dot_bytes(bool is_signed, uint8x16_t n, uint8x16_t m) {
  if (is_signed) {
    const int8x16_t a = vreinterpretq_s8_u8(n), b = vreinterpretq_s8_u8(m);
    const int32x4_t low = vpaddlq_s16(vmull_s8(vget_low_s8(a), vget_low_s8(b)));
    const int32x4_t high = vpaddlq_s16(vmull_high_s8(a, b));
    return vreinterpretq_u32_s32(vpaddq_s32(low, high));
  }
  const uint32x4_t low = vpaddlq_u16(vmull_u8(vget_low_u8(n), vget_low_u8(m)));
  const uint32x4_t high = vpaddlq_u16(vmull_high_u8(n, m));
  return vpaddq_u32(low, high);
}

// Two 64-bit sums of four halfword products each.
inline uint64x2_t dot_halves(bool is_signed, uint8x16_t n, uint8x16_t m) {
  if (is_signed) {
    const int16x8_t a = vreinterpretq_s16_u8(n), b = vreinterpretq_s16_u8(m);
    const int64x2_t low = vpaddlq_s32(vmull_s16(vget_low_s16(a), vget_low_s16(b)));
    const int64x2_t high = vpaddlq_s32(vmull_high_s16(a, b));
    return vreinterpretq_u64_s64(vpaddq_s64(low, high));
  }
  const uint16x8_t a = vreinterpretq_u16_u8(n), b = vreinterpretq_u16_u8(m);
  const uint64x2_t low = vpaddlq_u32(vmull_u16(vget_low_u16(a), vget_low_u16(b)));
  const uint64x2_t high = vpaddlq_u32(vmull_high_u16(a, b));
  return vpaddq_u64(low, high);
}

// The segment of Zm that multiplies segment `segment` of Zn: the segment
// itself, or the accumulator-sized group `index` of it repeated.
inline uint8x16_t multiplier(const uint8_t* zm, unsigned segment, uint32_t elem, int index) {
  const uint8_t* base = zm + 16 * segment;
  if (index < 0) return vld1q_u8(base);
  if (elem == ELEM_S) {
    uint32_t group;
    std::memcpy(&group, base + 4 * index, 4);
    return vreinterpretq_u8_u32(vdupq_n_u32(group));
  }
  uint64_t group;
  std::memcpy(&group, base + 8 * index, 8);
  return vreinterpretq_u8_u64(vdupq_n_u64(group));
}

// A negative index means the vector form.
aarch64_decode_rc dot(cpu_state* s, bool is_signed, aarch64_z_reg zda, aarch64_z_reg zn,
                      aarch64_z_reg zm, int index) {
  const uint32_t elem = zda.rw_elem;
  uint8_t* d = s->z[zda.num];
  vreg out;
  for (unsigned segment = 0; segment < chunks(); ++segment) {
    const uint8x16_t n = vld1q_u8(s->z[zn.num] + 16 * segment);
    const uint8x16_t m = multiplier(s->z[zm.num], segment, elem, index);
    const uint8x16_t acc = vld1q_u8(d + 16 * segment);
    const uint8x16_t sum =
        elem == ELEM_S
            ? vreinterpretq_u8_u32(vaddq_u32(vreinterpretq_u32_u8(acc), dot_bytes(is_signed, n, m)))
            : vreinterpretq_u8_u64(
                  vaddq_u64(vreinterpretq_u64_u8(acc), dot_halves(is_signed, n, m)));
    vst1q_u8(out.b + 16 * segment, sum);
  }
  commit(d, out);
  return AARCH64_DECODE_OK;
}

constexpr bool kSigned = true, kUnsigned = false;

} // namespace

aarch64_decode_rc sve_sdot_zzz(cpu_state* s, aarch64_z_reg zda, aarch64_z_reg zn,
                               aarch64_z_reg zm) {
  return dot(s, kSigned, zda, zn, zm, -1);
}

aarch64_decode_rc sve_udot_zzz(cpu_state* s, aarch64_z_reg zda, aarch64_z_reg zn,
                               aarch64_z_reg zm) {
  return dot(s, kUnsigned, zda, zn, zm, -1);
}

aarch64_decode_rc sve_sdot_zzzi(cpu_state* s, aarch64_z_reg zda, aarch64_z_reg zn, aarch64_z_reg zm,
                                unsigned int index) {
  return dot(s, kSigned, zda, zn, zm, static_cast<int>(index));
}

aarch64_decode_rc sve_udot_zzzi(cpu_state* s, aarch64_z_reg zda, aarch64_z_reg zn, aarch64_z_reg zm,
                                unsigned int index) {
  return dot(s, kUnsigned, zda, zn, zm, static_cast<int>(index));
}

} // namespace ZORVO_LENGTH

// Single to BFloat16, as the SVE BF16 conversions do it: the controls'
// rounding, FZ flushing a denormal single (with IDC), DN, and the flags of
// an ordinary narrowing. BFloat16 is the top half of a single, so rounding
// is deciding whether the top half goes up by one; a carry moves the
// exponent and, from the largest finite value, makes infinity.
#pragma once

#include <cstdint>

#include "fp_core.h"

inline uint16_t fp32_to_bf16(uint32_t x, FPSCR& status) {
  const int sgn = x >> 31;
  const uint16_t sign = static_cast<uint16_t>(sgn << 15);
  int flags = 0;
  uint16_t result;
  if (fp_is_nan(x)) {
    if (fp_is_signalling_nan(x)) flags |= FP_IOC;
    result = (status & FPSCR_DN) ? uint16_t(0x7fc0) : uint16_t((x | 0x00400000u) >> 16);
  } else if (fp_exp_field(x) == 0 && (x & 0x007fffffu) && (status & FPSCR_FZ)) {
    flags |= FP_IDC;
    result = sign;
  } else {
    const uint32_t magnitude = x & 0x7fffffffu;
    const uint32_t low = magnitude & 0xffffu, half = 0x8000u;
    const int rm = static_cast<int>((status >> FPSCR_RMODE_SHIFT) & 3);
    const bool away = (rm == FPRounding_POSINF && !sgn) || (rm == FPRounding_NEGINF && sgn);
    uint32_t top = magnitude >> 16;
    const bool infinite = fp_exp_field(x) == 255;
    if (low && !infinite) {
      if (fp_exp_field(x) == 0) flags |= FP_UFC; // tiny before rounding, and inexact
      const bool up = rm == FPRounding_TIEEVEN ? (low > half || (low == half && (top & 1))) : away;
      top += up;
      flags |= FP_IXC;
      if (top >= 0x7f80u) flags |= FP_OFC;
    }
    result = static_cast<uint16_t>(sign | top);
  }
  fp_flags_merge(flags, status);
  return result;
}

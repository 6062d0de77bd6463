// The immediate operands that thin decoders compute from an instruction word
// before calling a fast handler. Arithmetic only: a reserved encoding gets
// its arithmetic value and never fails.
#pragma once

#include <cstdint>
#include <cstring>

#include "../state/cpu_state.h"
#include "fields.h"

constexpr int sign_extend(uint32_t value, unsigned bits) {
  const uint32_t sign = 1u << (bits - 1);
  return static_cast<int>((value ^ sign) - sign);
}

// Bits 12..5, moved left by 8 when bit 13 is set. A byte-sized form keeps
// the shifted value whole; the handler decides what it means.
constexpr unsigned uimm8_shifted(uint32_t word) {
  return field(word, 12, 5) << (field(word, 13, 13) ? 8 : 0);
}
constexpr int simm8_shifted(uint32_t word) {
  return sign_extend(field(word, 12, 5), 8) * (field(word, 13, 13) ? 256 : 1);
}

// The shift immediates hold tsz:imm3, a number between the element's bits and
// twice that. Unpredicated forms keep tsz in 23:22,20:19 and imm3 in 18:16;
// predicated forms in 23:22,9:8 and 7:5.
constexpr unsigned tsz_imm3(uint32_t word, bool predicated) {
  const uint32_t tsz_low = predicated ? field(word, 9, 8) : field(word, 20, 19);
  const uint32_t imm3 = predicated ? field(word, 7, 5) : field(word, 18, 16);
  return (field(word, 23, 22) << 5) | (tsz_low << 3) | imm3;
}
constexpr unsigned element_bits(uint32_t elem) { return 8u << elem; }
// 1 up to the element's bits.
constexpr unsigned right_shift_amount(uint32_t word, uint32_t elem, bool predicated) {
  return 2 * element_bits(elem) - tsz_imm3(word, predicated);
}
// 0 up to the element's bits minus 1.
constexpr unsigned left_shift_amount(uint32_t word, uint32_t elem, bool predicated) {
  return tsz_imm3(word, predicated) - element_bits(elem);
}

// DUP (indexed): imm2 (23:22) above the bits of tsz (20:16) that lie above its
// lowest set bit, whose place the element size fixes.
constexpr unsigned lane_index(uint32_t word, uint32_t elem) {
  return (field(word, 23, 22) << (4 - elem)) | (field(word, 20, 16) >> (elem + 1));
}

// Bits 19..16 plus 1: the multiplier that follows a predicate pattern.
constexpr unsigned pattern_multiplier(uint32_t word) { return field(word, 19, 16) + 1; }

// The element width, 1 up to 64, that N:imms of a logical immediate names:
// the highest set bit of N:NOT(imms). 0 when there is none.
constexpr unsigned bitmask_element_width(uint32_t n, uint32_t imms) {
  const uint32_t width_bits = (n << 6) | (~imms & 0x3f);
  if (width_bits == 0) return 0;
  unsigned len = 6;
  while (!(width_bits & (1u << len))) --len;
  return 1u << len;
}
// The architecture reserves N:imms when it names no element of two bits or
// more, or a run of ones as long as the element (no zero bit to rotate).
constexpr bool bitmask_reserved(uint32_t n, uint32_t imms) {
  const unsigned width = bitmask_element_width(n, imms);
  return width < 2 || (imms & (width - 1)) == width - 1;
}

// The logical immediate N:immr:imms as a 64-bit pattern. N = 0 with imms all
// ones names no element width; that reserved encoding yields 0.
constexpr uint64_t decode_bit_mask(uint32_t n, uint32_t immr, uint32_t imms) {
  const unsigned width = bitmask_element_width(n, imms);
  if (width == 0) return 0;
  const uint32_t levels = width - 1;
  const unsigned ones = (imms & levels) + 1;
  const unsigned rotate = immr & levels;
  const uint64_t width_mask = width == 64 ? ~uint64_t{0} : (uint64_t{1} << width) - 1;
  uint64_t pattern = ones == 64 ? ~uint64_t{0} : (uint64_t{1} << ones) - 1;
  if (rotate != 0) pattern = ((pattern >> rotate) | (pattern << (width - rotate))) & width_mask;
  for (unsigned w = width; w < 64; w *= 2) pattern |= pattern << w;
  return pattern;
}
constexpr aarch64_sve_logical64_imm logical_immediate(uint32_t word) {
  return {decode_bit_mask(field(word, 17, 17), field(word, 16, 11), field(word, 10, 5))};
}

// The 8-bit floating-point immediate abcdefgh at all three widths. The
// double is the single converted by the host, which is exact.
inline aarch64_sve_fp_dup_imm expand_fp_imm8(uint32_t imm8) {
  const uint32_t a = (imm8 >> 7) & 1, b = (imm8 >> 6) & 1, cd = (imm8 >> 4) & 3, efgh = imm8 & 0xf;
  aarch64_sve_fp_dup_imm out{};
  out.half =
      static_cast<uint16_t>(a << 15 | (b ^ 1) << 14 | (b ? 3u : 0u) << 12 | cd << 10 | efgh << 6);
  out.single = a << 31 | (b ^ 1) << 30 | (b ? 0x1fu : 0u) << 25 | cd << 23 | efgh << 19;
  float single;
  std::memcpy(&single, &out.single, sizeof single);
  const double widened = single;
  std::memcpy(&out.dbl, &widened, sizeof widened);
  return out;
}

// The building blocks of vectorised sine, cosine and exponential routines:
// a step of the sine or cosine polynomial, the argument's square with the
// quadrant's sign, the power-of-two start value of an exponential, and
// scaling by a power of two with a single rounding.
#pragma once

#include <cstdint>

#include "fp_add_mul.h"
#include "fp_core.h"
#include "fp_estimate.h"
#include "fp_muladd.h"
#include "fp_tables.h"

// Polynomial coefficients: entries 0 to 7 for sine (1, -1/3!, 1/5!, ...),
// 8 to 15 for cosine (1, -1/2!, 1/4!, ...), each fitted to its width;
// unused places are 0.
template <typename T> struct fp_trig_table;
template <> struct fp_trig_table<uint16_t> {
  static constexpr uint16_t coeff[16] = {0x3c00, 0xb155, 0x2030, 0, 0, 0, 0, 0,
                                         0x3c00, 0xb800, 0x293a, 0, 0, 0, 0, 0};
};
template <> struct fp_trig_table<uint32_t> {
  static constexpr uint32_t coeff[16] = {
      0x3f800000, 0xbe2aaaab, 0x3c088886, 0xb95008b9, 0x36369d6d, 0, 0, 0,
      0x3f800000, 0xbf000000, 0x3d2aaaa6, 0xbab60705, 0x37cd37cc, 0, 0, 0};
};
template <> struct fp_trig_table<uint64_t> {
  static constexpr uint64_t coeff[16] = {
      0x3ff0000000000000, 0xbfc5555555555543, 0x3f8111111110f30c, 0xbf2a01a019b92fc6,
      0x3ec71de351f3d22b, 0xbe5ae5e2b60f7b91, 0x3de5d8408868552f, 0x0000000000000000,
      0x3ff0000000000000, 0xbfe0000000000000, 0x3fa5555555555536, 0xbf56c16c16c13a0b,
      0x3efa01a019b1e8d8, 0xbe927e4f7282f468, 0x3e21ee96d2641b13, 0xbda8f76380fbb401};
};

// coeff[x] + op1 x |op2|, rounded once; a negative op2 selects the cosine
// coefficients. x is 0 to 7; higher bits are ignored.
template <typename T> inline T FPTRIMADD(uint64_t x, T op1, T op2, FPSCR& fpscr) {
  const T sign = fp_sign_bit<T>();
  const T c = fp_trig_table<T>::coeff[(x & 7) + ((op2 & sign) ? 8 : 0)];
  return FPMulAdd<T>(c, op1, static_cast<T>(op2 & ~sign), fpscr);
}

// op1 squared, with the sign taken from bit 0 of op2 (which is otherwise
// not a floating-point operand). A NaN keeps its own sign.
template <typename T> inline T FPTRISMUL(T op1, T op2, FPSCR& fpscr) {
  const T square = FPMul<T>(op1, op1, fpscr);
  if (fp_is_nan(square)) return square;
  const T sign = fp_sign_bit<T>();
  return static_cast<T>((square & ~sign) | ((op2 & 1) ? sign : 0));
}

// 2^(i/n) x 2^(e - bias): the low bits of op pick i from the table (n = 32
// for half, 64 otherwise), the bits above them are the exponent field e.
template <typename T> inline T FPEXPA(T op) {
  using F = fp_format<T>;
  if constexpr (sizeof(T) == 2)
    return fp_pack<T>(0, (op >> 5) & F::exp_max, fpexpa_table16[op & 31]);
  else if constexpr (sizeof(T) == 4)
    return fp_pack<T>(0, (op >> 6) & F::exp_max, fpexpa_table32[op & 63]);
  else
    return fp_pack<T>(0, static_cast<int>((op >> 6) & F::exp_max), fpexpa_table64[op & 63]);
}

// op x 2^n with one rounding. Beyond the clamp every finite non-zero
// operand already overflows or underflows completely, so the exponent
// arithmetic never leaves int.
template <typename T> inline T fp_scale(T op, int64_t n, FPSCR& fpscr) {
  return fp_unary_operation(op, fpscr, [op, n](int sgn, int exp, T mnt, int mode, int* flags) {
    constexpr int64_t limit = sizeof(T) == 2 ? 60 : sizeof(T) == 4 ? 300 : 3000;
    if (!mnt) return fp_zero<T>(sgn);
    if (fp_is_infinity(op)) return fp_infinity<T>(sgn);
    exp += static_cast<int>(n < -limit ? -limit : n > limit ? limit : n);
    mnt = static_cast<T>(mnt << 3);
    fp_normalise(&mnt, &exp);
    return fp_round<T>(sgn, exp + fp_format<T>::E - 3, static_cast<T>(mnt << 1),
                       mode & FP_MODE_RMODE, mode, flags);
  });
}

inline uint16_t FPScale16(uint16_t op, short n, FPSCR& fpscr) {
  return fp_scale<uint16_t>(op, n, fpscr);
}
inline uint32_t FPScale32(uint32_t op, int n, FPSCR& fpscr) {
  return fp_scale<uint32_t>(op, n, fpscr);
}
inline uint64_t FPScale64(uint64_t op, long n, FPSCR& fpscr) {
  return fp_scale<uint64_t>(op, n, fpscr);
}

// The operand as an arithmetic operation would see it: NaNs processed,
// denormals flushed under the width's flush bit, everything else unchanged.
inline uint16_t FPProcess16(uint16_t op, FPSCR& fpscr) { return fp_scale<uint16_t>(op, 0, fpscr); }
inline uint32_t FPProcess32(uint32_t op, FPSCR& fpscr) { return fp_scale<uint32_t>(op, 0, fpscr); }
inline uint64_t FPProcess64(uint64_t op, FPSCR& fpscr) { return fp_scale<uint64_t>(op, 0, fpscr); }

// The region-of-interest marker words. They are byte add-immediates shifted
// by 8, which the architecture reserves, so no real program contains them:
// that is what makes them safe as markers, and why the reserved-encoding
// rule has to let exactly these two through.
#pragma once

#include <cstdint>

// The marker words less their register field: ADD Zn.B, Zn.B, #1, LSL #8
// starts, #2, LSL #8 stops. An add of 256 or 512 leaves bytes as they were.
constexpr uint32_t kRoiStartWord = 0x2520e020, kRoiStopWord = 0x2520e040;

constexpr bool is_roi_marker_word(uint32_t word) {
  const uint32_t without_register = word & ~0x1fu;
  return without_register == kRoiStartWord || without_register == kRoiStopWord;
}

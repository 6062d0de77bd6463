// Reading generated and patched code in the runtime's tests.
#pragma once

#include <gtest/gtest.h>

#include <cstring>

#include "dr_api.h"

constexpr uint32_t kSveAdd = 0x04a20020, kSveSub = 0x04e704c5;

inline uint32_t word_at(const byte* p) {
  uint32_t w;
  std::memcpy(&w, p, 4);
  return w;
}

// Where the `b` at `at` goes.
inline byte* branch_target(const byte* at) {
  const uint32_t w = word_at(at);
  EXPECT_EQ(w & 0xfc000000u, 0x14000000u) << std::hex << w;
  const int32_t imm26 = static_cast<int32_t>(w << 6) >> 6;
  return const_cast<byte*>(at) + 4 * int64_t{imm26};
}

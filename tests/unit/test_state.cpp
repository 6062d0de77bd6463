#include "test_state.h"

#include <gtest/gtest.h>

#include <cstring>

#include "decode/sve_utils.h"

void randomize(cpu_state* s, std::mt19937_64& rng) {
  auto* bytes = reinterpret_cast<uint8_t*>(s);
  for (size_t i = 0; i < sizeof(cpu_state); ++i) bytes[i] = static_cast<uint8_t>(rng());
}

uint64_t elem(const uint8_t* reg, unsigned bytes, unsigned i) {
  uint64_t v = 0;
  std::memcpy(&v, reg + i * bytes, bytes);
  return v;
}

aarch64_decode_rc run_word(cpu_state* s, uint32_t word) {
  const sve_decoder d = get_sve_handler(word);
  EXPECT_NE(d, nullptr) << std::hex << word;
  return d ? d(s, word) : AARCH64_DECODE_UNIMPLEMENTED;
}

// The bridge decoders of the generic loads, where the reference check cannot
// look: an index register numbered 31, predicate bytes other than 0 and 1,
// and the trace.
#include <gtest/gtest.h>

#include <cstring>
#include <random>

#include "decode/sve_utils.h"
#include "recording_sink.h"
#include "state/vector_length.h"
#include "test_pages.h"
#include "test_state.h"
#include "trace/roi.h"

namespace {

constexpr uint32_t kLdff1hContiguous = 0xa4a46861; // ldff1h {z1.h}, p2/z, [x3, x4, lsl #1]
constexpr uint32_t kLd1rqdIndexed = 0xa5850440;    // ld1rqd {z0.d}, p1/z, [x2, x5, lsl #3]

struct MemoryBridge : ::testing::Test {
  std::mt19937_64 rng{9};
  cpu_state s;
  void SetUp() override {
    randomize(&s, rng);
    enable_trace = 0;
    recording_reset();
  }
  void all_active(unsigned p) { std::memset(s.p[p], 1, kDefaultVectorBytes); }
};

// Register 31 as the index is reserved for the replicating quadword load:
// the processor refuses the word, so nothing here carries it out.
TEST_F(MemoryBridge, IndexCountsElementsAndRegister31IsRefused) {
  EXPECT_EQ(get_sve_handler(kLd1rqdIndexed | 31u << 16), nullptr);
  const uint64_t quad = address_of(readable_page() + 256);
  s.regs[2] = quad;
  s.regs[5] = 0;
  all_active(1);
  ASSERT_EQ(run_word(&s, kLd1rqdIndexed), AARCH64_DECODE_OK);
  for (unsigned i = 0; i < 6; ++i)
    EXPECT_EQ(elem(s.z[0], 8, i), memory_value(quad + 8 * (i % 2), 8, false)) << i;
  s.regs[5] = 2;
  ASSERT_EQ(run_word(&s, kLd1rqdIndexed), AARCH64_DECODE_OK);
  EXPECT_EQ(elem(s.z[0], 8, 2), memory_value(quad + 16, 8, false));
}

TEST_F(MemoryBridge, ContiguousLoadAtThePageEndClearsFfrFromTheFirstFailure) {
  s.regs[3] = address_of(readable_page() + kPage) - 20; // 10 halfwords fit
  s.regs[4] = 0;
  all_active(2);
  std::memset(s.ffr, 0xff, kDefaultVectorBytes);
  enable_trace = 1;
  ASSERT_EQ(run_word(&s, kLdff1hContiguous), AARCH64_DECODE_OK);
  enable_trace = 0;
  for (unsigned i = 0; i < 24; ++i)
    EXPECT_EQ(elem(s.z[1], 2, i), i < 10 ? memory_value(s.regs[3] + 2 * i, 2, false) : 0) << i;
  for (unsigned i = 0; i < kDefaultVectorBytes; ++i) EXPECT_EQ(s.ffr[i], i < 20 ? 1 : 0) << i;
  EXPECT_TRUE(recorded_records().empty());
}

} // namespace

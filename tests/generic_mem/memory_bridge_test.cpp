// The bridge decoders of the generic loads: which registers they read, what
// they write back, and that they send no trace record.
#include <gtest/gtest.h>

#include <cstring>
#include <random>

#include "recording_sink.h"
#include "test_pages.h"
#include "test_state.h"
#include "trace/roi.h"

namespace {

constexpr uint32_t kLdff1shWordsSxtw = 0x84e42861; // ldff1sh {z1.s}, p2/z, [x3, z4.s, sxtw #1]
constexpr uint32_t kLdff1sbSpOffsets = 0xc442a3e0; // ldff1sb {z0.d}, p0/z, [sp, z2.d]
constexpr uint32_t kLdff1hContiguous = 0xa4a46861; // ldff1h {z1.h}, p2/z, [x3, x4, lsl #1]
constexpr uint32_t kLd1rqdIndexed = 0xa5850440;    // ld1rqd {z0.d}, p1/z, [x2, x5, lsl #3]
constexpr uint32_t kLd1rqdSp = 0xa58127e0;         // ld1rqd {z0.d}, p1/z, [sp, #16]

struct MemoryBridge : ::testing::Test {
  std::mt19937_64 rng{9};
  cpu_state s;
  uint8_t ffr_bits[kVectorBytes];
  void SetUp() override {
    randomize(&s, rng);
    for (unsigned i = 0; i < kVectorBytes; ++i) ffr_bits[i] = s.ffr[i] & 1;
    enable_trace = 0;
    recording_reset();
  }
  void all_active(unsigned p) { std::memset(s.p[p], 1, kVectorBytes); }
};

TEST_F(MemoryBridge, GatherReadsBaseIndicesAndPredicateFromTheirFields) {
  const uint64_t middle = address_of(readable_page() + kPage / 2);
  s.regs[3] = middle;
  for (unsigned i = 0; i < 12; ++i) {
    const int32_t index = static_cast<int32_t>(rng() % 300) - 150;
    std::memcpy(s.z[4] + 4 * i, &index, 4);
  }
  enable_trace = 1;
  ASSERT_EQ(run_word(&s, kLdff1shWordsSxtw), AARCH64_DECODE_OK);
  enable_trace = 0;
  for (unsigned i = 0; i < 12; ++i) {
    int32_t index;
    std::memcpy(&index, s.z[4] + 4 * i, 4);
    const uint64_t want =
        s.p[2][4 * i] & 1 ? memory_value(middle + int64_t{index} * 2, 2, true) & 0xffffffffu : 0;
    EXPECT_EQ(elem(s.z[1], 4, i), want) << i;
  }
  EXPECT_EQ(std::memcmp(s.ffr, ffr_bits, kVectorBytes), 0); // bytes back to 0 and 1
  EXPECT_TRUE(recorded_records().empty());
}

TEST_F(MemoryBridge, BaseNumberThirtyOneIsTheStackPointer) {
  const uint64_t middle = address_of(readable_page() + kPage / 2);
  s.regs[31] = middle;
  for (unsigned i = 0; i < 6; ++i) {
    const uint64_t offset = 3 * i;
    std::memcpy(s.z[2] + 8 * i, &offset, 8);
  }
  all_active(0);
  ASSERT_EQ(run_word(&s, kLdff1sbSpOffsets), AARCH64_DECODE_OK);
  for (unsigned i = 0; i < 6; ++i)
    EXPECT_EQ(elem(s.z[0], 8, i), memory_value(middle + 3 * i, 1, true)) << i;

  const uint64_t quad = address_of(readable_page() + 64);
  s.regs[31] = quad - 16;
  all_active(1);
  ASSERT_EQ(run_word(&s, kLd1rqdSp), AARCH64_DECODE_OK);
  for (unsigned i = 0; i < 6; ++i)
    EXPECT_EQ(elem(s.z[0], 8, i), memory_value(quad + 8 * (i % 2), 8, false)) << i;
}

TEST_F(MemoryBridge, IndexNumberThirtyOneIsZero) {
  const uint64_t quad = address_of(readable_page() + 256);
  s.regs[2] = quad;
  s.regs[31] = quad + 1024; // SP, which must not be taken for the index
  all_active(1);
  ASSERT_EQ(run_word(&s, kLd1rqdIndexed | 31u << 16), AARCH64_DECODE_OK);
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
  std::memset(s.ffr, 0xff, kVectorBytes);
  enable_trace = 1;
  ASSERT_EQ(run_word(&s, kLdff1hContiguous), AARCH64_DECODE_OK);
  enable_trace = 0;
  for (unsigned i = 0; i < 24; ++i)
    EXPECT_EQ(elem(s.z[1], 2, i), i < 10 ? memory_value(s.regs[3] + 2 * i, 2, false) : 0) << i;
  for (unsigned i = 0; i < kVectorBytes; ++i) EXPECT_EQ(s.ffr[i], i < 20 ? 1 : 0) << i;
  EXPECT_TRUE(recorded_records().empty());
}

} // namespace

// LDR and STR of P and Z registers: the predicate's packed image in memory,
// and no trace records.
#include <gtest/gtest.h>

#include <cstring>
#include <random>

#include "guarded_memory.h"
#include "recording_sink.h"
#include "test_state.h"
#include "trace/roi.h"

namespace {

// Pt/Zt 4:0, Xn 9:5, imm9 = 21:16 (high) : 12:10 (low).
constexpr uint32_t kLdrP = 0x85800000, kStrP = 0xe5800000, kLdrZ = 0x85804000, kStrZ = 0xe5804000;
constexpr unsigned kXn = 7, kSp = 31;

uint32_t word(uint32_t op, unsigned reg, int imm9, unsigned xn = kXn) {
  const uint32_t imm = static_cast<uint32_t>(imm9) & 0x1ff;
  return op | (imm >> 3) << 16 | (imm & 7) << 10 | xn << 5 | reg;
}

struct FillSpill : ::testing::Test {
  std::mt19937_64 rng{11};
  cpu_state s;
  void SetUp() override {
    randomize(&s, rng);
    enable_trace = 1; // none of these forms may send a record
    recording_reset();
  }
  void TearDown() override {
    enable_trace = 0;
    EXPECT_EQ(recorded_calls().trace_mem, 0u);
  }
};

TEST_F(FillSpill, PredicateImageHoldsOneBitPerRegisterByte) {
  const guarded_memory m = guarded_page(0);
  const uint8_t image[6] = {0xff, 0x00, 0x01, 0x00, 0x00, 0x80};
  // Immediate -1 steps back 6 bytes: the image ends at the unreadable page.
  std::memcpy(m.unreadable - 6, image, 6);
  s.regs[kXn] = address_of(m.unreadable);
  ASSERT_EQ(run_word(&s, word(kLdrP, 5, -1)), AARCH64_DECODE_OK);
  for (unsigned b = 0; b < 48; ++b) EXPECT_EQ(s.p[5][b], b < 8 || b == 16 || b == 47 ? 1 : 0) << b;
}

TEST_F(FillSpill, PredicateSpillKeepsBitZeroOfEachByteAndWritesSixBytes) {
  const guarded_memory m = guarded_page(0xcc);
  for (unsigned b = 0; b < 48; ++b) s.p[9][b] = b % 3 == 0 ? 0x03 : 0x02; // 2: bit 0 clear
  s.regs[kXn] = address_of(m.unreadable - 6 * 4);
  ASSERT_EQ(run_word(&s, word(kStrP, 9, 3)), AARCH64_DECODE_OK);
  const uint8_t want[6] = {0x49, 0x92, 0x24, 0x49, 0x92, 0x24};
  EXPECT_EQ(std::memcmp(m.unreadable - 6, want, 6), 0);
  EXPECT_EQ(m.unreadable[-7], 0xcc);
}

TEST_F(FillSpill, VectorRoundTripThroughMemoryBelowTheBase) {
  const guarded_memory m = guarded_page(0);
  s.regs[kSp] = address_of(m.page) + 48 * 256; // the most negative immediate reaches the page
  ASSERT_EQ(run_word(&s, word(kStrZ, 12, -256, kSp)), AARCH64_DECODE_OK);
  EXPECT_EQ(std::memcmp(m.page, s.z[12], 48), 0);
  EXPECT_EQ(m.page[48], 0);
  ASSERT_EQ(run_word(&s, word(kLdrZ, 20, -256, kSp)), AARCH64_DECODE_OK);
  EXPECT_EQ(std::memcmp(s.z[20], s.z[12], 48), 0);
}

} // namespace

// The floating-point fast handlers run from their words on a processor
// without SVE: status flags through the decoders' FPSR exchange, controls
// from the host's FPCR, and the corners of the shapes that random cases
// seldom reach.
#include <gtest/gtest.h>

#include <cstring>

#include "decode/handler_declarations.h"
#include "test_state.h"

namespace {

constexpr uint32_t kIOC = 1u << 0, kIXC = 1u << 4;
constexpr uint64_t kRoundUp = 1ull << 22, kFlushToZero = 1ull << 24;

constexpr uint32_t kFcmgeS = 0x65814001, kFcmeqS = 0x65816001, kFcmneS = 0x65816011,
                   kFcmuoS = 0x6581c001;    // p1.s, p0/z, z0.s, z1.s
constexpr uint32_t kFaddS = 0x65808020;     // fadd z0.s, p0/m, z0.s, z1.s
constexpr uint32_t kFmaxnmvS = 0x65842002;  // fmaxnmv s2, p0, z0.s
constexpr uint32_t kFcvtD2S = 0x65caa002;   // fcvt z2.s, p0/m, z0.d
constexpr uint32_t kFcvtzsD2S = 0x65d8a002; // fcvtzs z2.s, p0/m, z0.d
constexpr uint32_t kFsqrtD = 0x65cda002;    // fsqrt z2.d, p0/m, z0.d
constexpr uint32_t kFdupH = 0x2579df03;     // fmov z3.h, #-1.5
constexpr uint32_t kFmulImmS = 0x659a8020;  // fmul z0.s, p0/m, z0.s, #2.0

constexpr uint32_t kOneS = 0x3f800000, kQuietNanS = 0x7fc01234, kSignallingNanS = 0x7f800001;
constexpr uint32_t kDefaultNanS = 0x7fc00000;
constexpr uint64_t kDefaultNanD = 0x7ff8000000000000;

uint64_t host_fpcr() {
  uint64_t v;
  asm volatile("mrs %0, fpcr" : "=r"(v));
  return v;
}
void set_host_fpcr(uint64_t v) { asm volatile("msr fpcr, %0" ::"r"(v)); }

void put(uint8_t* reg, unsigned bytes, unsigned i, uint64_t v) {
  std::memcpy(reg + i * bytes, &v, bytes);
}
void fill(uint8_t* reg, unsigned bytes, uint64_t v) {
  for (unsigned i = 0; i < 48 / bytes; ++i) put(reg, bytes, i, v);
}
uint64_t bits_of(double d) {
  uint64_t b;
  std::memcpy(&b, &d, sizeof b);
  return b;
}

struct FastFp : ::testing::Test {
  cpu_state s{};
  void SetUp() override { std::memset(s.p[0], 1, 48); }
  // Runs the word with the given host FPCR, as the application would have it.
  void run(uint32_t word, uint64_t fpcr = 0) {
    const uint64_t saved = host_fpcr();
    set_host_fpcr(fpcr);
    const aarch64_decode_rc rc = run_word(&s, word);
    set_host_fpcr(saved);
    ASSERT_EQ(rc, AARCH64_DECODE_OK);
  }
};

// Signalling compares raise Invalid Operation for any NaN, quiet ones for a
// signalling NaN only; unordered is true only for ne and uo. Flags already
// in FPSR stay, and NZCV is not touched.
TEST_F(FastFp, CompareFlagsAndUnorderedResults) {
  struct {
    uint32_t word, nan;
    uint64_t element0, others;
    uint32_t raised;
  } const cases[] = {
      {kFcmgeS, kQuietNanS, 0, 1, kIOC},      {kFcmeqS, kQuietNanS, 0, 1, 0},
      {kFcmneS, kQuietNanS, 1, 0, 0},         {kFcmuoS, kQuietNanS, 1, 0, 0},
      {kFcmeqS, kSignallingNanS, 0, 1, kIOC}, {kFcmuoS, kSignallingNanS, 1, 0, kIOC},
  };
  for (const auto& c : cases) {
    fill(s.z[0], 4, kOneS);
    fill(s.z[1], 4, kOneS);
    put(s.z[0], 4, 0, c.nan);
    s.fpsr = kIXC;
    s.nzcv = 0x60000000;
    run(c.word);
    EXPECT_EQ(elem(s.p[1], 4, 0), c.element0) << std::hex << c.word;
    for (unsigned i = 1; i < 12; ++i) ASSERT_EQ(elem(s.p[1], 4, i), c.others) << i;
    EXPECT_EQ(s.fpsr, kIXC | c.raised) << std::hex << c.word;
    EXPECT_EQ(s.nzcv, 0x60000000u);
  }
}

TEST_F(FastFp, InactiveSignallingNanIsNeitherChangedNorSignalled) {
  fill(s.z[0], 4, kSignallingNanS);
  fill(s.z[1], 4, kOneS);
  std::memset(s.p[0], 0, 48);
  run(kFaddS);
  for (unsigned i = 0; i < 12; ++i) ASSERT_EQ(elem(s.z[0], 4, i), kSignallingNanS);
  EXPECT_EQ(s.fpsr, 0u);
}

// 1 + 2^-24 lies halfway between 1 and the next single: to nearest gives 1,
// upwards the next one. Only the host's FPCR counts, not the record's copy.
TEST_F(FastFp, RoundingAndFlushingFollowTheHostFpcr) {
  for (uint64_t fpcr : {uint64_t{0}, kRoundUp}) {
    fill(s.z[0], 4, kOneS);
    fill(s.z[1], 4, 0x33800000);
    s.fpcr = static_cast<uint32_t>(kRoundUp - fpcr);
    s.fpsr = 0;
    run(kFaddS, fpcr);
    EXPECT_EQ(elem(s.z[0], 4, 5), fpcr ? 0x3f800001u : kOneS);
    EXPECT_EQ(s.fpsr, kIXC);
  }
  fill(s.z[0], 4, 0x00400000); // a subnormal: doubled, or flushed to zero first
  run(kFmulImmS);
  EXPECT_EQ(elem(s.z[0], 4, 0), 0x00800000u);
  fill(s.z[0], 4, 0x80400000);
  run(kFmulImmS, kFlushToZero);
  EXPECT_EQ(elem(s.z[0], 4, 0), 0x80000000u);
}

TEST_F(FastFp, MaxNumReductionCorners) {
  fill(s.z[2], 1, 0xa5);
  std::memset(s.p[0], 0, 48);
  run(kFmaxnmvS);
  EXPECT_EQ(elem(s.z[2], 4, 0), kDefaultNanS) << "no active element";
  for (unsigned i = 1; i < 12; ++i) ASSERT_EQ(elem(s.z[2], 4, i), 0u);

  for (unsigned i = 0; i < 12; ++i) put(s.z[0], 4, i, 0x40000000 + i); // rising from 2.0
  put(s.z[0], 4, 7, kQuietNanS);
  std::memset(s.p[0], 1, 48);
  run(kFmaxnmvS);
  EXPECT_EQ(elem(s.z[2], 4, 0), 0x4000000bu) << "a quiet NaN gives way";
  EXPECT_EQ(s.fpsr, 0u);

  std::memset(s.p[0], 0, 48); // one active element: itself
  s.p[0][9 * 4] = 1;
  run(kFmaxnmvS);
  EXPECT_EQ(elem(s.z[2], 4, 0), 0x40000009u);
}

TEST_F(FastFp, NarrowingWritesTheUpperHalfOfActiveElementsOnly) {
  fill(s.z[0], 8, bits_of(-1e300));
  fill(s.z[2], 8, 0x1111111122222222);
  s.p[0][8] = 0; // element 1 inactive
  run(kFcvtzsD2S);
  EXPECT_EQ(elem(s.z[2], 8, 0), 0xffffffff80000000u) << "saturated, sign-extended";
  EXPECT_EQ(elem(s.z[2], 8, 1), 0x1111111122222222u);
  EXPECT_EQ(s.fpsr, kIOC);

  fill(s.z[0], 8, bits_of(-1.5));
  run(kFcvtD2S);
  EXPECT_EQ(elem(s.z[2], 8, 0), 0xbfc00000u) << "upper half zero";
  EXPECT_EQ(elem(s.z[2], 8, 1), 0x1111111122222222u);
}

TEST_F(FastFp, SquareRootOfANegativeIsTheDefaultNan) {
  fill(s.z[0], 8, bits_of(-4.0));
  put(s.z[0], 8, 1, bits_of(-0.0));
  run(kFsqrtD);
  EXPECT_EQ(elem(s.z[2], 8, 0), kDefaultNanD);
  EXPECT_EQ(elem(s.z[2], 8, 1), bits_of(-0.0));
  EXPECT_EQ(s.fpsr, kIOC);
}

TEST_F(FastFp, HalfPrecisionBroadcast) {
  fill(s.z[3], 1, 0xa5);
  run(kFdupH);
  for (unsigned i = 0; i < 24; ++i) ASSERT_EQ(elem(s.z[3], 2, i), 0xbe00u) << i;
  EXPECT_EQ(s.fpsr, 0u);
}

// The two single-precision sums, on values random cases hardly draw. With
// 2^24, 1, 1 and -2^24 the ordered sum loses both ones to rounding; the tree adds 1 to
// -2^24 exactly and keeps one of them.
TEST_F(FastFp, OrderedAndTreeAdditionAssociateDifferently) {
  const uint32_t values[] = {0x4b800000, kOneS, kOneS, 0xcb800000};
  std::memset(s.z[1], 0, 48);
  for (unsigned i = 0; i < 4; ++i) put(s.z[1], 4, i, values[i]);
  std::memset(s.p[0], 0, 48);
  for (unsigned i = 0; i < 4; ++i) s.p[0][4 * i] = 1;
  const aarch64_z_reg z1{1, ELEM_S, kZNone, kZNone};
  const aarch64_p_reg p0{0, kPPlain, kPNone, kPNone};

  fill(s.z[0], 1, 0xa5);
  put(s.z[0], 4, 0, 0); // the initial value
  ASSERT_EQ(sve_fadda_vpz(&s, 0, p0, z1), AARCH64_DECODE_OK);
  EXPECT_EQ(elem(s.z[0], 4, 0), 0u);
  for (unsigned i = 1; i < 12; ++i) ASSERT_EQ(elem(s.z[0], 4, i), 0u);

  ASSERT_EQ(sve_faddv_vpz(&s, 0, p0, z1), AARCH64_DECODE_OK);
  EXPECT_EQ(elem(s.z[0], 4, 0), kOneS);

  // No active element: fadda keeps its initial value to the bit, faddv
  // gives +0; a lone -0 meets +0 identities and becomes +0.
  std::memset(s.p[0], 0, 48);
  put(s.z[0], 4, 0, kSignallingNanS);
  ASSERT_EQ(sve_fadda_vpz(&s, 0, p0, z1), AARCH64_DECODE_OK);
  EXPECT_EQ(elem(s.z[0], 4, 0), kSignallingNanS);
  put(s.z[1], 4, 3, 0x80000000);
  s.p[0][12] = 1;
  ASSERT_EQ(sve_faddv_vpz(&s, 0, p0, z1), AARCH64_DECODE_OK);
  EXPECT_EQ(elem(s.z[0], 4, 0), 0u);
}

} // namespace

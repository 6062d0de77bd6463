// While, predicate logic, breaks, next-active, unpack and the first-fault
// register, run from their instruction words: result bytes, flags, and the
// bits of NZCV and the predicate bytes that a random draw cannot set.
#include <gtest/gtest.h>

#include <cstring>

#include "handlers/predicate_form.h"
#include "test_state.h"

namespace {

constexpr uint64_t kAllFlags = kFlagN | kFlagZ | kFlagC | kFlagV;
constexpr uint64_t kOtherBits = 0xa5a5a5a50f0f0f0full & ~kAllFlags;

constexpr uint32_t kWhileloHX = 0x25621c20;    // whilelo p0.h, x1, x2
constexpr uint32_t kWhileloHW = 0x25620c20;    // whilelo p0.h, w1, w2
constexpr uint32_t kWhilelsSW = 0x25a20c30;    // whilels p0.s, w1, w2
constexpr uint32_t kWhileltDX = 0x25e21420;    // whilelt p0.d, x1, x2
constexpr uint32_t kAnd = 0x25034440;          // and p0.b, p1/z, p2.b, p3.b
constexpr uint32_t kNor = 0x25834640;          // nor p0.b, p1/z, p2.b, p3.b
constexpr uint32_t kSel = 0x25034650;          // sel p0.b, p1, p2.b, p3.b
constexpr uint32_t kBrkaM = 0x25104450;        // brka p0.b, p1/m, p2.b
constexpr uint32_t kBrkbZ = 0x25904440;        // brkb p0.b, p1/z, p2.b
constexpr uint32_t kBrkns = 0x25584440;        // brkns p0.b, p1/z, p2.b, p0.b
constexpr uint32_t kBrkpbsPdIsPg = 0x2543c451; // brkpbs p1.b, p1/z, p2.b, p3.b
constexpr uint32_t kPnextS = 0x2599c420;       // pnext p0.s, p1, p0.s
constexpr uint32_t kPunpkloSame = 0x05304021;  // punpklo p1.h, p1.b
constexpr uint32_t kRdffrPdIsPg = 0x2518f021;  // rdffr p1.b, p1/z

uint64_t flags_of(const cpu_state& s) {
  EXPECT_EQ(s.nzcv & ~kAllFlags, kOtherBits) << "bits other than the flags changed";
  return s.nzcv & kAllFlags;
}

cpu_state fresh() {
  cpu_state s;
  std::memset(&s, 0, sizeof s);
  s.nzcv = kOtherBits | kFlagV;
  return s;
}

TEST(While, RunsFlagsAndRegisterWidths) {
  cpu_state s = fresh();
  s.regs[1] = 0x1111111100000005ull; // the W form ignores the upper halves
  s.regs[2] = 0x0000000000000006ull;
  ASSERT_EQ(run_word(&s, kWhileloHW), AARCH64_DECODE_OK);
  EXPECT_EQ(s.p[0][0], 1);
  for (unsigned i = 1; i < 48; ++i) ASSERT_EQ(s.p[0][i], 0) << i;
  EXPECT_EQ(flags_of(s), kFlagN | kFlagC);

  ASSERT_EQ(run_word(&s, kWhileloHX), AARCH64_DECODE_OK); // X form: Rn far above Rm
  EXPECT_EQ(flags_of(s), kFlagZ | kFlagC);

  s.regs[1] = 0;
  s.regs[2] = 0xffffffff00000000ull; // W form: both 0
  ASSERT_EQ(run_word(&s, kWhilelsSW), AARCH64_DECODE_OK);
  EXPECT_EQ(elem(s.p[0], 4, 0), 1u);
  EXPECT_EQ(elem(s.p[0], 4, 1), 0u);
  s.regs[1] = 0xfffffff0;
  s.regs[2] = 0xffffffff; // lower or same as the largest value: true all the way, wrapping
  ASSERT_EQ(run_word(&s, kWhilelsSW), AARCH64_DECODE_OK);
  for (unsigned i = 0; i < 12; ++i) ASSERT_EQ(elem(s.p[0], 4, i), 1u) << i;
  EXPECT_EQ(flags_of(s), kFlagN);

  s.regs[1] = static_cast<uint64_t>(-3);
  s.regs[2] = 1; // signed: -3, -2, -1, 0 are below 1
  ASSERT_EQ(run_word(&s, kWhileltDX), AARCH64_DECODE_OK);
  for (unsigned i = 0; i < 6; ++i) ASSERT_EQ(elem(s.p[0], 8, i), i < 4 ? 1u : 0u) << i;
}

// Predicate bytes may hold more than bit 0 when written elsewhere; results
// are 0 or 1 per byte all the same.
TEST(PredicateLogic, ByteWiseOnBitZero) {
  cpu_state s = fresh();
  for (unsigned i = 0; i < 48; ++i) {
    s.p[1][i] = i < 40 ? 0xff : 0xfe; // bytes 40..47 inactive
    s.p[2][i] = i % 2 ? 0x03 : 0xfe;
    s.p[3][i] = i % 3 ? 0x01 : 0x02;
    s.p[0][i] = 0x77;
  }
  ASSERT_EQ(run_word(&s, kAnd), AARCH64_DECODE_OK);
  for (unsigned i = 0; i < 48; ++i) ASSERT_EQ(s.p[0][i], i < 40 && i % 2 && i % 3 ? 1 : 0) << i;
  ASSERT_EQ(run_word(&s, kNor), AARCH64_DECODE_OK);
  for (unsigned i = 0; i < 48; ++i)
    ASSERT_EQ(s.p[0][i], i < 40 && !(i % 2) && !(i % 3) ? 1 : 0) << i;
  ASSERT_EQ(run_word(&s, kSel), AARCH64_DECODE_OK); // selection copies whole bytes
  for (unsigned i = 0; i < 48; ++i) ASSERT_EQ(s.p[0][i], i < 40 ? s.p[2][i] : s.p[3][i]) << i;
  EXPECT_EQ(flags_of(s), kFlagV); // no flags set by any of them
}

TEST(Breaks, BreakAfterAndBeforeTheFirstTrue) {
  cpu_state s = fresh();
  for (unsigned i = 0; i < 48; ++i) {
    s.p[1][i] = i % 2 ? 0 : 1; // even bytes active
    s.p[0][i] = 0x09;
  }
  s.p[2][3] = 1; // inactive: no break
  s.p[2][6] = 3; // the first active true byte
  ASSERT_EQ(run_word(&s, kBrkaM), AARCH64_DECODE_OK);
  for (unsigned i = 0; i < 48; ++i)
    ASSERT_EQ(s.p[0][i], i % 2 ? 0x09 : i <= 6 ? 1 : 0) << i; // merging keeps Pd's bytes
  ASSERT_EQ(run_word(&s, kBrkbZ), AARCH64_DECODE_OK);
  for (unsigned i = 0; i < 48; ++i) ASSERT_EQ(s.p[0][i], i % 2 == 0 && i < 6 ? 1 : 0) << i;
  EXPECT_EQ(flags_of(s), kFlagV);
}

TEST(Breaks, PropagatingFormsSetFlags) {
  cpu_state s = fresh();
  std::memset(s.p[0], 1, 48);
  ASSERT_EQ(run_word(&s, kBrkns), AARCH64_DECODE_OK); // Pg all false: Pdm cleared
  for (unsigned i = 0; i < 48; ++i) ASSERT_EQ(s.p[0][i], 0) << i;
  EXPECT_EQ(flags_of(s), kFlagZ | kFlagC);

  // Pd is Pg: the flags are tested against the old Pg.
  std::memset(s.p[1], 0, 48);
  s.p[1][2] = s.p[1][4] = s.p[1][40] = 1;
  s.p[2][40] = 1; // true at the last active byte of Pg: the break was not taken
  s.p[3][4] = 1;  // breaks before byte 4
  ASSERT_EQ(run_word(&s, kBrkpbsPdIsPg), AARCH64_DECODE_OK);
  for (unsigned i = 0; i < 48; ++i) ASSERT_EQ(s.p[1][i], i == 2 ? 1 : 0) << i;
  // First active byte of the old Pg (2) is true, its last one (40) false.
  EXPECT_EQ(flags_of(s), kFlagN | kFlagC);
}

TEST(Pnext, NextActiveElementAndFlags) {
  cpu_state s = fresh();
  for (unsigned i = 0; i < 12; ++i) s.p[1][4 * i] = (i == 3 || i == 7) ? 1 : 0;
  s.p[1][5] = 1;                                       // not an element's first byte
  ASSERT_EQ(run_word(&s, kPnextS), AARCH64_DECODE_OK); // Pdn all false: first active
  for (unsigned i = 0; i < 12; ++i) ASSERT_EQ(elem(s.p[0], 4, i), i == 3 ? 1u : 0u) << i;
  EXPECT_EQ(flags_of(s), kFlagN | kFlagC);
  ASSERT_EQ(run_word(&s, kPnextS), AARCH64_DECODE_OK);
  for (unsigned i = 0; i < 12; ++i) ASSERT_EQ(elem(s.p[0], 4, i), i == 7 ? 1u : 0u) << i;
  EXPECT_EQ(flags_of(s), 0u);                          // element 7 is also the last active one
  ASSERT_EQ(run_word(&s, kPnextS), AARCH64_DECODE_OK); // past the end
  for (unsigned i = 0; i < 48; ++i) ASSERT_EQ(s.p[0][i], 0) << i;
  EXPECT_EQ(flags_of(s), kFlagZ | kFlagC);
}

TEST(UnpackAndFirstFault, InPlace) {
  cpu_state s = fresh();
  for (unsigned i = 0; i < 48; ++i) s.p[1][i] = i % 5 == 0 ? 0x03 : 0x02;
  ASSERT_EQ(run_word(&s, kPunpkloSame), AARCH64_DECODE_OK);
  for (unsigned i = 0; i < 24; ++i) ASSERT_EQ(elem(s.p[1], 2, i), i % 5 == 0 ? 1u : 0u) << i;

  for (unsigned i = 0; i < 48; ++i) s.ffr[i] = i < 30;
  std::memset(s.p[1], 1, 48);
  s.p[1][10] = 0;
  ASSERT_EQ(run_word(&s, kRdffrPdIsPg), AARCH64_DECODE_OK);
  for (unsigned i = 0; i < 48; ++i) ASSERT_EQ(s.p[1][i], i < 30 && i != 10 ? 1 : 0) << i;
  EXPECT_EQ(flags_of(s), kFlagV);
}

} // namespace

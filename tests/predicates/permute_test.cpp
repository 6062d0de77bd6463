// Permutes at the edges of their index ranges, with aliased registers, SP as
// a source, predicate bytes other than 0 and 1, and the plain routines that
// the predicate permutes share.
#include <gtest/gtest.h>

#include <cstring>

#include "handlers/permute_routines.h"
#include "test_state.h"

namespace {

constexpr uint32_t kTblB = 0x05223020;      // tbl z0.b, {z1.b}, z2.b
constexpr uint32_t kTblD = 0x05e23020;      // tbl z0.d, {z1.d}, z2.d
constexpr uint32_t kExt47 = 0x05251c20;     // ext z0.b, z0.b, z1.b, #47
constexpr uint32_t kExt48 = 0x05260020;     // ext z0.b, z0.b, z1.b, #48
constexpr uint32_t kExt255 = 0x053f1c20;    // ext z0.b, z0.b, z1.b, #255
constexpr uint32_t kDupQ2 = 0x05b02020;     // dup z0.q, z1.q[2]
constexpr uint32_t kDupQ3 = 0x05f02020;     // dup z0.q, z1.q[3]
constexpr uint32_t kDupS5Self = 0x056c2021; // dup z1.s, z1.s[5]
constexpr uint32_t kDupSp = 0x05e03be0;     // dup z0.d, sp
constexpr uint32_t kCpyWsp = 0x0568a7e0;    // cpy z0.h, p1/m, wsp
constexpr uint32_t kCpyD0Self = 0x05e08400; // cpy z0.d, p1/m, d0
constexpr uint32_t kCpyMinus1 = 0x05d15fe0; // cpy z0.d, p1/m, #-1
constexpr uint32_t kCpyZero5 = 0x059100a0;  // cpy z0.s, p1/z, #5
constexpr uint32_t kSelH = 0x0563c440;      // sel z0.h, p1, z2.h, z3.h
constexpr uint32_t kUunpkhiH = 0x05733820;  // uunpkhi z0.h, z1.b
constexpr uint32_t kZip2D = 0x05e26420;     // zip2 z0.d, z1.d, z2.d

cpu_state random_state(uint64_t seed) {
  std::mt19937_64 rng(seed);
  cpu_state s;
  randomize(&s, rng);
  return s;
}

TEST(Permute, TableLookupGivesZeroPastTheElementCount) {
  cpu_state s = random_state(1);
  const uint8_t idx[4] = {47, 48, 255, 0};
  std::memcpy(s.z[2], idx, 4);
  const cpu_state before = s;
  ASSERT_EQ(run_word(&s, kTblB), AARCH64_DECODE_OK);
  EXPECT_EQ(s.z[0][0], before.z[1][47]);
  EXPECT_EQ(s.z[0][1], 0);
  EXPECT_EQ(s.z[0][2], 0);
  EXPECT_EQ(s.z[0][3], before.z[1][0]);

  const uint64_t idx_d[2] = {6, 5};
  std::memcpy(s.z[2], idx_d, sizeof idx_d);
  ASSERT_EQ(run_word(&s, kTblD), AARCH64_DECODE_OK);
  EXPECT_EQ(elem(s.z[0], 8, 0), 0u);
  EXPECT_EQ(elem(s.z[0], 8, 1), elem(before.z[1], 8, 5));
}

TEST(Permute, ExtractFromTheLastByteAndPastTheEnd) {
  cpu_state s = random_state(2);
  const cpu_state before = s;
  ASSERT_EQ(run_word(&s, kExt47), AARCH64_DECODE_OK);
  EXPECT_EQ(s.z[0][0], before.z[0][47]);
  EXPECT_EQ(std::memcmp(s.z[0] + 1, before.z[1], 47), 0);
  for (uint32_t word : {kExt48, kExt255}) {
    s = before;
    ASSERT_EQ(run_word(&s, word), AARCH64_DECODE_OK);
    EXPECT_EQ(std::memcmp(s.z[0], before.z[0], 48), 0) << std::hex << word;
  }
}

TEST(Permute, BroadcastOfAnElement) {
  cpu_state s = random_state(3);
  const cpu_state before = s;
  ASSERT_EQ(run_word(&s, kDupQ2), AARCH64_DECODE_OK);
  for (unsigned group = 0; group < 3; ++group)
    EXPECT_EQ(std::memcmp(s.z[0] + 16 * group, before.z[1] + 32, 16), 0) << group;
  ASSERT_EQ(run_word(&s, kDupQ3), AARCH64_DECODE_OK);
  EXPECT_EQ(std::memcmp(s.z[0], cpu_state{}.z[0], 48), 0);
  ASSERT_EQ(run_word(&s, kDupS5Self), AARCH64_DECODE_OK); // the element as it was before
  for (unsigned i = 0; i < 12; ++i) EXPECT_EQ(elem(s.z[1], 4, i), elem(before.z[1], 4, 5)) << i;
}

TEST(Permute, ScalarCopiesReadSpAndTheirOwnOldElement) {
  cpu_state s = random_state(4);
  cpu_state before = s;
  ASSERT_EQ(run_word(&s, kDupSp), AARCH64_DECODE_OK);
  for (unsigned i = 0; i < 6; ++i) EXPECT_EQ(elem(s.z[0], 8, i), before.regs[31]);

  s = before;
  ASSERT_EQ(run_word(&s, kCpyWsp), AARCH64_DECODE_OK);
  for (unsigned i = 0; i < 24; ++i)
    EXPECT_EQ(elem(s.z[0], 2, i),
              (before.p[1][2 * i] & 1) ? before.regs[31] & 0xffff : elem(before.z[0], 2, i));

  s = before;
  ASSERT_EQ(run_word(&s, kCpyD0Self), AARCH64_DECODE_OK);
  for (unsigned i = 0; i < 6; ++i)
    EXPECT_EQ(elem(s.z[0], 8, i),
              (before.p[1][8 * i] & 1) ? elem(before.z[0], 8, 0) : elem(before.z[0], 8, i));
}

TEST(Permute, ImmediateCopiesMergeOrZero) {
  cpu_state s = random_state(5);
  const cpu_state before = s;
  ASSERT_EQ(run_word(&s, kCpyMinus1), AARCH64_DECODE_OK);
  for (unsigned i = 0; i < 6; ++i)
    EXPECT_EQ(elem(s.z[0], 8, i), (before.p[1][8 * i] & 1) ? ~0ull : elem(before.z[0], 8, i));
  ASSERT_EQ(run_word(&s, kCpyZero5), AARCH64_DECODE_OK);
  for (unsigned i = 0; i < 12; ++i)
    EXPECT_EQ(elem(s.z[0], 4, i), (before.p[1][4 * i] & 1) ? 5u : 0u);
}

TEST(Permute, SelectLooksAtBitZeroOfTheFirstByteOnly) {
  cpu_state s = random_state(6);
  const uint8_t pattern[8] = {0x00, 0x01, 0x03, 0x00, 0xfe, 0xff, 0x01, 0xfe};
  std::memcpy(s.p[1], pattern, sizeof pattern);
  const cpu_state before = s;
  ASSERT_EQ(run_word(&s, kSelH), AARCH64_DECODE_OK);
  const bool from_zn[4] = {false, true, false, true};
  for (unsigned i = 0; i < 4; ++i)
    EXPECT_EQ(elem(s.z[0], 2, i), elem(before.z[from_zn[i] ? 2 : 3], 2, i)) << i;
}

TEST(Permute, HighHalvesStartAtByte24) {
  cpu_state s = random_state(7);
  const cpu_state before = s;
  ASSERT_EQ(run_word(&s, kUunpkhiH), AARCH64_DECODE_OK);
  for (unsigned i = 0; i < 24; ++i) EXPECT_EQ(elem(s.z[0], 2, i), before.z[1][24 + i]);
  ASSERT_EQ(run_word(&s, kZip2D), AARCH64_DECODE_OK);
  for (unsigned i = 0; i < 3; ++i) {
    EXPECT_EQ(elem(s.z[0], 8, 2 * i), elem(before.z[1], 8, 3 + i));
    EXPECT_EQ(elem(s.z[0], 8, 2 * i + 1), elem(before.z[2], 8, 3 + i));
  }
}

// Unzipping the two halves of a zip gives back the first source, at every size.
TEST(Permute, PlainRoutinesUnzipWhatTheyZip) {
  std::mt19937_64 rng(8);
  char a[48], b[48], lo[48], hi[48], back[48];
  for (int k = 0; k < 48; ++k) a[k] = static_cast<char>(rng()), b[k] = static_cast<char>(rng());
  for (element_size size : {ELEM_B, ELEM_H, ELEM_S, ELEM_D}) {
    sve_zip1(lo, a, b, size);
    sve_zip2(hi, a, b, size);
    sve_uzp1(back, lo, hi, size);
    EXPECT_EQ(std::memcmp(back, a, 48), 0) << "size " << size;
    EXPECT_NE(std::memcmp(lo, a, 48), 0) << "size " << size;
  }
}

// At a length that is no power of two and whose predicate spans two packed
// words (80 bytes), the predicate unzips take the even or odd elements of
// Pn:Pm, Pn's filling the low half: the same as the vector unzips.
TEST(Permute, PredicateUnzipsAtEightyBytes) {
  const vector_length_scope restore_length;
  ASSERT_TRUE(set_vector_bytes(80));
  std::mt19937_64 rng(9);
  for (uint32_t size = 0; size < 4; ++size)
    for (uint32_t part = 0; part < 2; ++part) {
      cpu_state s = random_state(10 + size);
      for (unsigned i = 0; i < 80; ++i) s.p[1][i] = rng() & 1, s.p[2][i] = rng() & 1;
      const cpu_state before = s;
      // uzp1/uzp2 p0.<size>, p1.<size>, p2.<size>
      ASSERT_EQ(run_word(&s, 0x05224820u | size << 22 | part << 10), AARCH64_DECODE_OK);
      const unsigned esize = 1u << size, count = 80 / esize;
      uint8_t both[160];
      std::memcpy(both, before.p[1], 80);
      std::memcpy(both + 80, before.p[2], 80);
      for (unsigned e = 0; e < count; ++e)
        ASSERT_EQ(std::memcmp(s.p[0] + e * esize, both + (2 * e + part) * esize, esize), 0)
            << "size " << size << " part " << part << " element " << e;
    }
}

} // namespace

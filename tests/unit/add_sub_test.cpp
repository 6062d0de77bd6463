// Add and subtract, run from their instruction words.
#include <gtest/gtest.h>

#include <cstring>

#include "test_state.h"

namespace {

constexpr uint32_t kAddZpz = 0x04000000, kSubZpz = 0x04010000;
constexpr uint32_t kAddZzz = 0x04200000, kSubZzz = 0x04200400;
constexpr uint32_t kAddZi = 0x2520c000, kSubZi = 0x2521c000;

uint32_t zpz(uint32_t op, unsigned size, unsigned zdn, unsigned pg, unsigned zm) {
  return op | size << 22 | pg << 10 | zm << 5 | zdn;
}
uint32_t zzz(uint32_t op, unsigned size, unsigned zd, unsigned zn, unsigned zm) {
  return op | size << 22 | zm << 16 | zn << 5 | zd;
}
uint32_t zi(uint32_t op, unsigned size, unsigned zdn, unsigned imm8, bool shift) {
  return op | size << 22 | (shift ? 1u << 13 : 0) | imm8 << 5 | zdn;
}

uint64_t wrap(uint64_t v, unsigned bytes) {
  return bytes == 8 ? v : v & ((uint64_t{1} << (8 * bytes)) - 1);
}

struct case_t {
  uint32_t op;
  bool subtract;
};

TEST(AddSub, MergingFormsAtEverySizeWithAliasedRegisters) {
  std::mt19937_64 rng(1);
  for (case_t c : {case_t{kAddZpz, false}, case_t{kSubZpz, true}}) {
    for (unsigned size = 0; size < 4; ++size) {
      const unsigned bytes = 1u << size;
      for (int trial = 0; trial < 200; ++trial) {
        cpu_state s;
        randomize(&s, rng);
        const unsigned zdn = rng() % 32, pg = rng() % 8;
        const unsigned zm = trial % 4 == 0 ? zdn : rng() % 32; // Zm may be Zdn itself
        const cpu_state before = s;
        ASSERT_EQ(run_word(&s, zpz(c.op, size, zdn, pg, zm)), AARCH64_DECODE_OK);
        for (unsigned i = 0; i < 48 / bytes; ++i) {
          const uint64_t d = elem(before.z[zdn], bytes, i), m = elem(before.z[zm], bytes, i);
          const bool on = before.p[pg][i * bytes] & 1;
          const uint64_t want = on ? wrap(c.subtract ? d - m : d + m, bytes) : d;
          ASSERT_EQ(elem(s.z[zdn], bytes, i), want) << "size " << size << " element " << i;
        }
        // Nothing but the destination changes.
        std::memcpy(s.z[zdn], before.z[zdn], 48);
        s.raw_instr = before.raw_instr;
        ASSERT_EQ(std::memcmp(&s, &before, sizeof s), 0);
      }
    }
  }
}

TEST(AddSub, PredicateTestLooksAtBitZeroOfTheFirstByteOnly) {
  cpu_state s{};
  for (unsigned i = 0; i < 48; ++i) s.z[2][i] = 1;
  // Halfword elements: 0x0100 (inactive), 0x00fe (inactive), 0xff01 (active).
  const uint8_t pred[6] = {0x00, 0x01, 0xfe, 0x00, 0x01, 0xff};
  std::memcpy(s.p[1], pred, sizeof pred);
  ASSERT_EQ(run_word(&s, zpz(kAddZpz, 1, 0, 1, 2)), AARCH64_DECODE_OK);
  EXPECT_EQ(elem(s.z[0], 2, 0), 0u);
  EXPECT_EQ(elem(s.z[0], 2, 1), 0u);
  EXPECT_EQ(elem(s.z[0], 2, 2), 0x0101u);
  EXPECT_EQ(elem(s.z[0], 2, 3), 0u);
}

TEST(AddSub, UnpredicatedFormsAtEverySizeWithAliasedRegisters) {
  std::mt19937_64 rng(2);
  for (case_t c : {case_t{kAddZzz, false}, case_t{kSubZzz, true}}) {
    for (unsigned size = 0; size < 4; ++size) {
      const unsigned bytes = 1u << size;
      for (int trial = 0; trial < 200; ++trial) {
        cpu_state s;
        randomize(&s, rng);
        unsigned zd = rng() % 32, zn = rng() % 32, zm = rng() % 32;
        if (trial % 3 == 0) zn = zd;
        if (trial % 5 == 0) zm = zd;
        const cpu_state before = s;
        ASSERT_EQ(run_word(&s, zzz(c.op, size, zd, zn, zm)), AARCH64_DECODE_OK);
        for (unsigned i = 0; i < 48 / bytes; ++i) {
          const uint64_t n = elem(before.z[zn], bytes, i), m = elem(before.z[zm], bytes, i);
          ASSERT_EQ(elem(s.z[zd], bytes, i), wrap(c.subtract ? n - m : n + m, bytes))
              << "size " << size << " element " << i;
        }
      }
    }
  }
}

TEST(AddSub, ImmediateFormsApplyTheShift) {
  std::mt19937_64 rng(3);
  for (case_t c : {case_t{kAddZi, false}, case_t{kSubZi, true}}) {
    for (unsigned size = 0; size < 4; ++size) {
      const unsigned bytes = 1u << size;
      for (int trial = 0; trial < 200; ++trial) {
        cpu_state s;
        randomize(&s, rng);
        const unsigned zdn = rng() % 32, imm8 = rng() % 256;
        const bool shift = trial % 2;
        const uint64_t imm = uint64_t{imm8} << (shift ? 8 : 0);
        const cpu_state before = s;
        ASSERT_EQ(run_word(&s, zi(c.op, size, zdn, imm8, shift)), AARCH64_DECODE_OK);
        for (unsigned i = 0; i < 48 / bytes; ++i) {
          const uint64_t d = elem(before.z[zdn], bytes, i);
          ASSERT_EQ(elem(s.z[zdn], bytes, i), wrap(c.subtract ? d - imm : d + imm, bytes))
              << "size " << size << " imm " << imm << " element " << i;
        }
      }
    }
  }
}

TEST(AddSub, ShiftedImmediateIsNotSignExtendedForDoublewords) {
  cpu_state s{};
  ASSERT_EQ(run_word(&s, zi(kAddZi, 3, 4, 0xff, true)), AARCH64_DECODE_OK);
  for (unsigned i = 0; i < 6; ++i) EXPECT_EQ(elem(s.z[4], 8, i), 0xff00u);
}

TEST(AddSub, ByteMarkersLeaveTheRegisterUnchanged) {
  std::mt19937_64 rng(4);
  cpu_state s;
  randomize(&s, rng);
  const cpu_state before = s;
  ASSERT_EQ(run_word(&s, 0x2520e020 | 7), AARCH64_DECODE_OK);            // start marker on z7
  ASSERT_EQ(run_word(&s, 0x2520e040 | 7), AARCH64_DECODE_OK);            // stop marker on z7
  ASSERT_EQ(run_word(&s, zi(kAddZi, 0, 7, 3, true)), AARCH64_DECODE_OK); // 768: an add of 0
  EXPECT_EQ(std::memcmp(s.z[7], before.z[7], 48), 0);
  ASSERT_EQ(run_word(&s, zi(kAddZi, 0, 7, 0xff, false)), AARCH64_DECODE_OK);
  for (unsigned i = 0; i < 48; ++i) EXPECT_EQ(s.z[7][i], static_cast<uint8_t>(before.z[7][i] - 1));
}

TEST(AddSub, DecoderStoresTheWord) {
  cpu_state s{};
  const uint32_t word = zzz(kAddZzz, 2, 1, 2, 3);
  ASSERT_EQ(run_word(&s, word), AARCH64_DECODE_OK);
  EXPECT_EQ(s.raw_instr, word);
}

} // namespace

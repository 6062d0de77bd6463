// Gathers and scatters run from their instruction words: offsets that reach
// memory only by wrapping, inactive elements whose addresses lie in an
// unreadable page, overlapping scatters and the records they send. Values,
// aliasing, narrowing and SP as base are the reference check's.
#include <gtest/gtest.h>

#include <cstring>
#include <random>
#include <vector>

#include "guarded_memory.h"
#include "recording_sink.h"
#include "test_state.h"
#include "trace/roi.h"

namespace {

// Zt 3, Pg 2, Xn 4, Zm/Zn 5 unless the name says otherwise.
constexpr uint32_t kLd1wSxtw = 0x85454883, kLd1wUxtw = 0x85054883;
constexpr uint32_t kLd1dUxtwScaled = 0xc5a54883, kLd1dSxtw = 0xc5c54883;
constexpr uint32_t kLd1dImm248 = 0xc5bfc8a3, kLd1sbSUxtw = 0x84050883, kLd1swScaled = 0xc5658883;
constexpr uint32_t kSt1d = 0xe585a883;
constexpr unsigned kZt = 3, kPg = 2, kXn = 4, kZm = 5;

struct fixture : ::testing::Test {
  std::mt19937_64 rng{11};
  cpu_state s;
  guarded_memory m = guarded_page(0);
  void SetUp() override {
    randomize(&s, rng);
    s.pc = 0x40a008;
    enable_trace = 0;
    recording_reset();
    for (unsigned b = 0; b < m.bytes; ++b) m.page[b] = static_cast<uint8_t>(b * 7 + 1);
  }
  template <typename E> void set(unsigned z, unsigned i, E v) {
    std::memcpy(s.z[z] + i * sizeof(E), &v, sizeof v);
  }
  // Active elements of `bytes` as listed; other predicate bits are noise.
  void activate(unsigned bytes, std::vector<unsigned> on) {
    for (unsigned b = 0; b < 48; ++b) s.p[kPg][b] = static_cast<uint8_t>(rng() & 0xfe);
    for (unsigned i : on) s.p[kPg][i * bytes] |= 1;
  }
  template <typename E> E at(uint64_t addr) {
    E v;
    std::memcpy(&v, reinterpret_cast<const void*>(addr), sizeof v);
    return v;
  }
  std::vector<sve_mem_ref_t> traced(uint32_t word) {
    recording_reset();
    enable_trace = 1;
    EXPECT_EQ(run_word(&s, word), AARCH64_DECODE_OK);
    enable_trace = 0;
    return recorded_records();
  }
};

using Gather = fixture;
using Scatter = fixture;

TEST_F(Gather, WordOffsetsExtendBySignOrZeroAndWrapIn64Bits) {
  const uint64_t target = address_of(m.page + 100);
  activate(4, {0});
  set<uint32_t>(kZm, 0, 0xffffffff);
  s.regs[kXn] = target + 1; // sxtw: Xn - 1
  ASSERT_EQ(run_word(&s, kLd1wSxtw), AARCH64_DECODE_OK);
  EXPECT_EQ(elem(s.z[kZt], 4, 0), at<uint32_t>(target));
  s.regs[kXn] = target - 0xffffffffull; // uxtw: Xn + 0xffffffff
  ASSERT_EQ(run_word(&s, kLd1wUxtw), AARCH64_DECODE_OK);
  EXPECT_EQ(elem(s.z[kZt], 4, 0), at<uint32_t>(target));

  // 64-bit elements: the upper half of each offset is ignored; scaled uxtw
  // of 0xffffffff by 8 is 0x7fffffff8.
  activate(8, {0});
  set<uint64_t>(kZm, 0, 0x12345678ffffffffull);
  set<uint64_t>(kZm, 5, 0xffffffff00000008ull);
  s.regs[kXn] = target - 0x7fffffff8ull;
  ASSERT_EQ(run_word(&s, kLd1dUxtwScaled), AARCH64_DECODE_OK);
  EXPECT_EQ(elem(s.z[kZt], 8, 0), at<uint64_t>(target));
  activate(8, {0, 5});
  s.regs[kXn] = target + 1;
  ASSERT_EQ(run_word(&s, kLd1dSxtw), AARCH64_DECODE_OK);
  EXPECT_EQ(elem(s.z[kZt], 8, 0), at<uint64_t>(target));
  EXPECT_EQ(elem(s.z[kZt], 8, 5), at<uint64_t>(target + 9));
}

TEST_F(Gather, InactiveElementsAreZeroAndTheirAddressesNeverUsed) {
  // Inactive offsets point into the unreadable page; the active one at its
  // last readable doubleword.
  for (unsigned i = 0; i < 6; ++i) set<uint64_t>(kZm, i, address_of(m.unreadable) + 8 * i - 248);
  set<uint64_t>(kZm, 4, address_of(m.unreadable) - 8 - 248);
  activate(8, {4});
  const std::vector<sve_mem_ref_t> r = traced(kLd1dImm248);
  for (unsigned i = 0; i < 6; ++i)
    EXPECT_EQ(elem(s.z[kZt], 8, i), i == 4 ? at<uint64_t>(address_of(m.unreadable) - 8) : 0u) << i;
  ASSERT_EQ(r.size(), 1u);
  EXPECT_EQ(r[0].addr, address_of(m.unreadable) - 8);
  EXPECT_EQ(r[0].flags, 7u);
  EXPECT_EQ(r[0].type, memaccess_load);

  activate(8, {});
  std::memset(s.z[kZt], 0xee, 48);
  EXPECT_TRUE(traced(kLd1dImm248).empty());
  for (unsigned b = 0; b < 48; ++b) ASSERT_EQ(s.z[kZt][b], 0);
}

TEST_F(Gather, SignExtendingAndScaledFormsWithRecordsOfTheMemoryWidth) {
  m.page[9] = 0xff;
  m.page[10] = 0x7f;
  s.regs[kXn] = address_of(m.page);
  set<uint32_t>(kZm, 3, 9);
  set<uint32_t>(kZm, 7, 10);
  activate(4, {3, 7});
  const std::vector<sve_mem_ref_t> r = traced(kLd1sbSUxtw);
  EXPECT_EQ(elem(s.z[kZt], 4, 3), 0xffffffffu);
  EXPECT_EQ(elem(s.z[kZt], 4, 7), 0x7fu);
  ASSERT_EQ(r.size(), 2u);
  EXPECT_EQ(r[0].addr, address_of(m.page) + 9);
  EXPECT_EQ(r[1].addr, address_of(m.page) + 10);
  EXPECT_EQ(r[0].size, 1u);
  EXPECT_EQ(r[0].flags, 3u);
  EXPECT_EQ(r[1].flags, 6u);

  // ld1sw, 64-bit offsets scaled by 4: a negative offset reaches downward.
  const uint64_t mid = address_of(m.page + 2048);
  std::memcpy(m.page + 2048 - 8, "\x00\x00\x00\x80", 4);
  s.regs[kXn] = mid;
  set<int64_t>(kZm, 1, -2);
  activate(8, {1});
  const std::vector<sve_mem_ref_t> w = traced(kLd1swScaled);
  EXPECT_EQ(elem(s.z[kZt], 8, 1), 0xffffffff80000000ull);
  ASSERT_EQ(w.size(), 1u);
  EXPECT_EQ(w[0].addr, mid - 8);
  EXPECT_EQ(w[0].size, 4u);
}

TEST_F(Scatter, LaterElementWinsAndEveryActiveElementHasARecord) {
  const uint64_t base = address_of(m.page + 256);
  s.regs[kXn] = base;
  for (unsigned i = 0; i < 6; ++i) {
    set<uint64_t>(kZt, i, 0x1111111111111111ull * (i + 1));
    set<uint64_t>(kZm, i,
                  i == 4 ? 8 : address_of(m.unreadable) - base + 8 * i); // inactive: unreadable
  }
  set<uint64_t>(kZm, 1, 8);
  activate(8, {1, 4});
  const std::vector<sve_mem_ref_t> r = traced(kSt1d);
  EXPECT_EQ(at<uint64_t>(base + 8), 0x5555555555555555ull);
  ASSERT_EQ(r.size(), 2u);
  for (const sve_mem_ref_t& rec : r) {
    EXPECT_EQ(rec.addr, base + 8);
    EXPECT_EQ(rec.size, 8u);
    EXPECT_EQ(rec.type, memaccess_store);
    EXPECT_EQ(rec.pc, 0x40a008u);
  }
}

// Every element active: the common case, with the gate closed and open. The
// destination is the offset vector itself, so each offset must be read
// before its element is written.
TEST_F(Gather, EveryElementActiveMayOverwriteItsOwnOffsetsTracedOrNot) {
  constexpr uint32_t kLd1wSxtwIntoOffsets = 0x85454885; // Zt = Zm = 5
  const uint64_t base = address_of(m.page + 1024);
  const auto offset = [](unsigned i) { return static_cast<int32_t>(4 * (11 - i)) - 40; };
  s.regs[kXn] = base;
  activate(4, {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11});
  for (bool trace_on : {false, true}) {
    for (unsigned i = 0; i < 12; ++i) set<int32_t>(kZm, i, offset(i));
    const std::vector<sve_mem_ref_t> r =
        trace_on ? traced(kLd1wSxtwIntoOffsets) : std::vector<sve_mem_ref_t>{};
    if (!trace_on) {
      ASSERT_EQ(run_word(&s, kLd1wSxtwIntoOffsets), AARCH64_DECODE_OK);
    }
    for (unsigned i = 0; i < 12; ++i)
      EXPECT_EQ(elem(s.z[kZm], 4, i), at<uint32_t>(base + offset(i))) << i << trace_on;
    ASSERT_EQ(r.size(), trace_on ? 12u : 0u);
    for (unsigned i = 0; i < r.size(); ++i) {
      EXPECT_EQ(r[i].addr, base + offset(i));
      EXPECT_EQ(r[i].flags, i == 0 ? 3u : i == 11 ? 6u : 2u);
    }
  }
}

TEST_F(Scatter, EveryElementActiveStoresInElementOrderTracedOrNot) {
  const uint64_t base = address_of(m.page + 512);
  s.regs[kXn] = base;
  activate(8, {0, 1, 2, 3, 4, 5});
  for (bool trace_on : {false, true}) {
    for (unsigned i = 0; i < 6; ++i) {
      set<uint64_t>(kZt, i, 0x0101010101010101ull * (i + 1 + 6 * trace_on));
      set<uint64_t>(kZm, i, i == 5 ? 16 : 8 * i); // elements 2 and 5 share an address
    }
    const std::vector<sve_mem_ref_t> r = trace_on ? traced(kSt1d) : std::vector<sve_mem_ref_t>{};
    if (!trace_on) {
      ASSERT_EQ(run_word(&s, kSt1d), AARCH64_DECODE_OK);
    }
    for (unsigned i = 0; i < 5; ++i)
      EXPECT_EQ(at<uint64_t>(base + 8 * i), elem(s.z[kZt], 8, i == 2 ? 5 : i)) << i << trace_on;
    ASSERT_EQ(r.size(), trace_on ? 6u : 0u);
    for (unsigned i = 0; i < r.size(); ++i) EXPECT_EQ(r[i].addr, base + (i == 5 ? 16 : 8 * i));
  }
}

} // namespace

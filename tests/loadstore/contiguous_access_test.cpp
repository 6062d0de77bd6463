// Contiguous loads and stores and the replicating loads, run from their
// instruction words on memory next to an unreadable page.
#include <gtest/gtest.h>

#include <cstring>
#include <random>
#include <vector>

#include "decode/sve_utils.h"
#include "guarded_memory.h"
#include "recording_sink.h"
#include "test_state.h"
#include "trace/roi.h"

namespace {

// Operand fields: Zt 4:0, Pg 12:10, Xn 9:5, and imm4 19:16 or Xm 20:16.
constexpr uint32_t kLd1bToH = 0xa420a000, kLd1sbToD = 0xa580a000, kLd1w = 0xa540a000;
constexpr uint32_t kLd1hIndexed = 0xa4a04000, kLd1dIndexed = 0xa5e04000;
constexpr uint32_t kSt1bFromS = 0xe440e000, kSt1hIndexed = 0xe4a04000;
// Replicating loads: imm6 21:16.
constexpr uint32_t kLd1rb = 0x84408000, kLd1rshToD = 0x85408000;
constexpr unsigned kZt = 3, kPg = 2, kXn = 4, kXm = 6;

uint32_t with_imm(uint32_t op, int imm) {
  return op | (imm & 0xfu) << 16 | kPg << 10 | kXn << 5 | kZt;
}
uint32_t with_index(uint32_t op, unsigned xn, unsigned xm) {
  return op | xm << 16 | kPg << 10 | xn << 5 | kZt;
}

struct fixture : ::testing::Test {
  std::mt19937_64 rng{7};
  cpu_state s;
  void SetUp() override {
    randomize(&s, rng);
    s.pc = 0x40123c;
    enable_trace = 0;
    recording_reset();
  }
  void store_elem_u32(unsigned i, uint32_t v) { std::memcpy(s.z[kZt] + 4 * i, &v, 4); }
  // Element i of `bytes` is active for i < count; every other predicate bit
  // is noise that must not count.
  void first_active(unsigned bytes, unsigned count) {
    for (unsigned b = 0; b < 48; ++b) s.p[kPg][b] = static_cast<uint8_t>(rng() & 0xfe);
    for (unsigned i = 0; i < count; ++i) s.p[kPg][i * bytes] |= 1;
  }
};

using ContiguousLoad = fixture;
using ContiguousStore = fixture;
using ContiguousTrace = fixture;

TEST_F(ContiguousLoad, InactiveElementsBecomeZeroAndTouchNoMemory) {
  const guarded_memory m = guarded_page(0x5a);
  // Five active words end right at the unreadable page; the seven inactive
  // ones lie inside it.
  s.regs[kXn] = address_of(m.unreadable - 5 * 4);
  first_active(4, 5);
  ASSERT_EQ(run_word(&s, with_imm(kLd1w, 0)), AARCH64_DECODE_OK);
  for (unsigned i = 0; i < 12; ++i) EXPECT_EQ(elem(s.z[kZt], 4, i), i < 5 ? 0x5a5a5a5au : 0u) << i;

  // With no active element not even the first address is read.
  s.regs[kXn] = address_of(m.unreadable);
  for (uint32_t word : {with_imm(kLd1sbToD, 0), with_imm(kLd1rb, 0), with_imm(kLd1rshToD, 0)}) {
    first_active(1, 0);
    std::memset(s.z[kZt], 0xee, 48);
    ASSERT_EQ(run_word(&s, word), AARCH64_DECODE_OK);
    for (unsigned b = 0; b < 48; ++b) ASSERT_EQ(s.z[kZt][b], 0) << std::hex << word;
  }
}

TEST_F(ContiguousLoad, OnlyBitZeroOfAnElementsFirstPredicateByteCounts) {
  const guarded_memory m = guarded_page(0);
  for (unsigned b = 0; b < 48; ++b) m.page[b] = static_cast<uint8_t>(b + 1);
  s.regs[kXm] = 0;
  s.regs[kXn] = address_of(m.page);
  std::memset(s.p[kPg], 0, 48);
  const uint8_t groups[4][2] = {{0x01, 0x00}, {0x00, 0x01}, {0xfe, 0xff}, {0xff, 0x00}};
  std::memcpy(s.p[kPg], groups, sizeof groups);
  ASSERT_EQ(run_word(&s, with_index(kLd1hIndexed, kXn, kXm)), AARCH64_DECODE_OK);
  EXPECT_EQ(elem(s.z[kZt], 2, 0), 0x0201u);
  EXPECT_EQ(elem(s.z[kZt], 2, 1), 0u); // 0x0100: the active bit is in the second byte
  EXPECT_EQ(elem(s.z[kZt], 2, 2), 0u); // 0xfe: bit 0 clear
  EXPECT_EQ(elem(s.z[kZt], 2, 3), 0x0807u);
}

TEST_F(ContiguousLoad, ExtensionFollowsTheForm) {
  const guarded_memory m = guarded_page(0x80);
  s.regs[kXn] = address_of(m.page + 64);
  first_active(8, 6);
  ASSERT_EQ(run_word(&s, with_imm(kLd1sbToD, 0)), AARCH64_DECODE_OK);
  EXPECT_EQ(elem(s.z[kZt], 8, 5), 0xffffffffffffff80u);
  first_active(2, 24);
  ASSERT_EQ(run_word(&s, with_imm(kLd1bToH, 0)), AARCH64_DECODE_OK);
  EXPECT_EQ(elem(s.z[kZt], 2, 23), 0x0080u);
  // A replicating load widens the one halfword into every element.
  m.page[64 + 6] = 0x01;
  first_active(8, 6);
  ASSERT_EQ(run_word(&s, kLd1rshToD | 3u << 16 | kPg << 10 | kXn << 5 | kZt), AARCH64_DECODE_OK);
  for (unsigned i = 0; i < 6; ++i) EXPECT_EQ(elem(s.z[kZt], 8, i), 0xffffffffffff8001u) << i;
}

TEST_F(ContiguousLoad, ImmediateStepsByTheMemoryFootprintOfOneVector) {
  const guarded_memory m = guarded_page(0);
  for (unsigned b = 0; b < 256; ++b) m.page[b] = static_cast<uint8_t>(b);
  s.regs[kXn] = address_of(m.page + 100);
  first_active(8, 6);
  ASSERT_EQ(run_word(&s, with_imm(kLd1sbToD, -1)), AARCH64_DECODE_OK); // 6 bytes back
  EXPECT_EQ(elem(s.z[kZt], 8, 0), 94u);
  first_active(2, 24);
  ASSERT_EQ(run_word(&s, with_imm(kLd1bToH, -2)), AARCH64_DECODE_OK); // 2 x 24 bytes back
  EXPECT_EQ(elem(s.z[kZt], 2, 0), 52u);
}

// Register 31 is SP as the base; as the index it is reserved and the word
// is refused (the first-fault load, where it reads XZR, is the exception).
TEST_F(ContiguousLoad, Register31IsSpAsBaseAndRefusedAsIndex) {
  const guarded_memory m = guarded_page(0);
  for (unsigned b = 0; b < 256; ++b) m.page[b] = static_cast<uint8_t>(b);
  first_active(8, 6);
  EXPECT_EQ(get_sve_handler(with_index(kLd1dIndexed, kXn, 31)), nullptr);
  EXPECT_EQ(get_sve_handler(with_index(kLd1hIndexed, kXn, 31)), nullptr);
  EXPECT_EQ(get_sve_handler(with_index(kSt1hIndexed, kXn, 31)), nullptr);

  s.regs[31] = address_of(m.page + 32);
  s.regs[kXm] = 2; // scaled by 8
  ASSERT_EQ(run_word(&s, with_index(kLd1dIndexed, 31, kXm)), AARCH64_DECODE_OK);
  EXPECT_EQ(elem(s.z[kZt], 8, 0), 0x3736353433323130u);
}

TEST_F(ContiguousStore, WritesTheLowBytesOfActiveElementsOnly) {
  const guarded_memory m = guarded_page(0xcc);
  for (unsigned i = 0; i < 12; ++i) store_elem_u32(i, 0xabcdef00u + i);
  // Elements 0, 2, 3 and 5 active; 6 to 11 would lie in the unreadable page.
  first_active(4, 0);
  for (unsigned i : {0u, 2u, 3u, 5u}) s.p[kPg][4 * i] |= 1;
  s.regs[kXn] = address_of(m.unreadable - 6);
  ASSERT_EQ(run_word(&s, with_imm(kSt1bFromS, 0)), AARCH64_DECODE_OK);
  const uint8_t want[6] = {0x00, 0xcc, 0x02, 0x03, 0xcc, 0x05};
  EXPECT_EQ(std::memcmp(m.unreadable - 6, want, 6), 0);
  EXPECT_EQ(m.unreadable[-7], 0xcc);
}

TEST_F(ContiguousStore, NoActiveElementWritesNothing) {
  const guarded_memory m = guarded_page(0xcc);
  first_active(2, 0);
  s.regs[kXn] = address_of(m.unreadable - 1);
  s.regs[kXm] = 0;
  ASSERT_EQ(run_word(&s, with_index(kSt1hIndexed, kXn, kXm)), AARCH64_DECODE_OK);
  EXPECT_EQ(m.unreadable[-1], 0xcc);
}

struct run_t {
  uint64_t addr, size;
  bool operator==(const run_t& o) const { return addr == o.addr && size == o.size; }
};

std::vector<run_t> runs_of(const std::vector<sve_mem_ref_t>& records, memaccess_type_t type,
                           uint64_t pc) {
  std::vector<run_t> out;
  for (const sve_mem_ref_t& r : records) {
    EXPECT_EQ(r.type, type);
    EXPECT_EQ(r.pc, pc);
    EXPECT_EQ(r.flags, 0u);
    out.push_back({r.addr, r.size});
  }
  return out;
}

TEST_F(ContiguousTrace, OneRecordPerRunOfActiveElementsAfterTheAccess) {
  const guarded_memory m = guarded_page(0);
  const uint64_t base = address_of(m.page + 200);
  s.regs[kXn] = base + 24; // immediate -1 steps 24 bytes back
  first_active(2, 4);
  s.p[kPg][2 * 10] |= 1;
  enable_trace = 1;
  ASSERT_EQ(run_word(&s, with_imm(kLd1bToH, -1)), AARCH64_DECODE_OK);
  EXPECT_EQ(runs_of(recorded_records(), memaccess_load, s.pc),
            (std::vector<run_t>{{base, 4}, {base + 10, 1}}));

  recording_reset();
  first_active(4, 12);
  s.regs[kXn] = base;
  ASSERT_EQ(run_word(&s, with_imm(kSt1bFromS, 0)), AARCH64_DECODE_OK);
  EXPECT_EQ(runs_of(recorded_records(), memaccess_store, s.pc), (std::vector<run_t>{{base, 12}}));
}

TEST_F(ContiguousTrace, NothingWithoutActiveElementsOrWithTheGateClosed) {
  const guarded_memory m = guarded_page(0);
  s.regs[kXn] = address_of(m.page);
  enable_trace = 1;
  first_active(4, 0);
  ASSERT_EQ(run_word(&s, with_imm(kLd1w, 0)), AARCH64_DECODE_OK);
  enable_trace = 0;
  first_active(4, 12);
  ASSERT_EQ(run_word(&s, with_imm(kLd1w, 0)), AARCH64_DECODE_OK);
  ASSERT_EQ(run_word(&s, with_imm(kSt1bFromS, 0)), AARCH64_DECODE_OK);
  EXPECT_EQ(recorded_calls().incr_count, 0u);
  EXPECT_EQ(recorded_calls().trace_mem, 0u);
}

TEST_F(ContiguousTrace, ReplicatingLoadsAreNotTraced) {
  const guarded_memory m = guarded_page(0);
  s.regs[kXn] = address_of(m.page);
  first_active(1, 48);
  enable_trace = 1;
  ASSERT_EQ(run_word(&s, with_imm(kLd1rb, 0)), AARCH64_DECODE_OK);
  EXPECT_EQ(recorded_calls().trace_mem, 0u);
}

} // namespace

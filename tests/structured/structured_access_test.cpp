// Structured loads and stores LD2-LD4 and ST2-ST4, run from their
// instruction words: what the reference check cannot see (memory next to an
// unreadable page, predicate bytes beyond bit 0, the scaled index, the records).
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

// Size in bits 24:23, registers minus one in 22:21; Zt 4:0, Pg 12:10, Xn
// 9:5, and imm4 19:16 or Xm 20:16.
constexpr uint32_t kLoadImm = 0xa400e000, kLoadIndex = 0xa400c000;
constexpr uint32_t kStoreImm = 0xe410e000, kStoreIndex = 0xe4006000;
constexpr unsigned kPg = 5, kXn = 7, kXm = 9;

struct form {
  bool store;
  unsigned registers; // 2, 3 or 4
  unsigned log_bytes; // element size: 0 byte .. 3 doubleword
  unsigned bytes() const { return 1u << log_bytes; }
  unsigned structures() const { return 48 / bytes(); }
  uint32_t opcode(bool indexed) const {
    const uint32_t base =
        store ? (indexed ? kStoreIndex : kStoreImm) : (indexed ? kLoadIndex : kLoadImm);
    return base | log_bytes << 23 | (registers - 1) << 21;
  }
  uint32_t with_imm(unsigned zt, int imm, unsigned xn = kXn) const {
    return opcode(false) | (imm & 0xfu) << 16 | kPg << 10 | xn << 5 | zt;
  }
  uint32_t with_index(unsigned zt, unsigned xm, unsigned xn = kXn) const {
    return opcode(true) | xm << 16 | kPg << 10 | xn << 5 | zt;
  }
};

struct fixture : ::testing::Test {
  std::mt19937_64 rng{11};
  cpu_state s;
  void SetUp() override {
    randomize(&s, rng);
    s.pc = 0x4a0100;
    enable_trace = 0;
    recording_reset();
  }
  void TearDown() override { enable_trace = 0; }
  // Structure i is active when `on(i)`; every other predicate bit is noise
  // that must not count.
  template <typename Fn> void set_active(unsigned bytes, Fn on) {
    for (unsigned b = 0; b < 48; ++b) s.p[kPg][b] = static_cast<uint8_t>(rng() & 0xfe);
    for (unsigned i = 0; i < 48 / bytes; ++i)
      if (on(i)) s.p[kPg][i * bytes] |= 1;
  }
};

using StructuredAccess = fixture;
using StructuredTrace = fixture;

TEST_F(StructuredAccess, InactiveStructuresTouchNoMemory) {
  const guarded_memory m = guarded_page(0x5a);
  // LD4W: three active structures end right at the unreadable page; the
  // nine inactive ones after them lie inside it.
  const form ld4w{false, 4, 2};
  s.regs[kXn] = address_of(m.unreadable - 3 * 16);
  set_active(4, [](unsigned i) { return i < 3; });
  ASSERT_EQ(run_word(&s, ld4w.with_imm(0, 0)), AARCH64_DECODE_OK);
  for (unsigned k = 0; k < 4; ++k)
    for (unsigned i = 0; i < 12; ++i)
      EXPECT_EQ(elem(s.z[k], 4, i), i < 3 ? 0x5a5a5a5au : 0u) << k << " " << i;

  // No active structure: every register of the list zero, not even the
  // first address read.
  const form ld3b{false, 3, 0};
  s.regs[kXn] = address_of(m.unreadable);
  set_active(1, [](unsigned) { return false; });
  ASSERT_EQ(run_word(&s, ld3b.with_imm(30, 0)), AARCH64_DECODE_OK);
  for (unsigned r : {30u, 31u, 0u})
    for (unsigned b = 0; b < 48; ++b) ASSERT_EQ(s.z[r][b], 0) << r;
  const form st2d{true, 2, 3};
  s.regs[kXm] = 0;
  ASSERT_EQ(run_word(&s, st2d.with_index(1, kXm)), AARCH64_DECODE_OK);
}

TEST_F(StructuredAccess, OnlyBitZeroOfAStructuresFirstPredicateByteCounts) {
  const guarded_memory m = guarded_page(0x77);
  const form ld2d{false, 2, 3};
  // Every byte but the first of each doubleword group set, and bit 0 clear
  // in the first: no structure is active.
  for (unsigned b = 0; b < 48; ++b) s.p[kPg][b] = b % 8 ? 0xff : 0xfe;
  s.p[kPg][16] = 0x01; // only structure 2
  s.regs[kXn] = address_of(m.page);
  ASSERT_EQ(run_word(&s, ld2d.with_imm(8, 0)), AARCH64_DECODE_OK);
  for (unsigned i = 0; i < 6; ++i) {
    EXPECT_EQ(elem(s.z[8], 8, i), i == 2 ? 0x7777777777777777u : 0u) << i;
    EXPECT_EQ(elem(s.z[9], 8, i), i == 2 ? 0x7777777777777777u : 0u) << i;
  }
}

// The index counts elements; register 31 as the index is reserved, so
// neither XZR nor SP is read there: the word is refused.
TEST_F(StructuredAccess, IndexCountsElementsAndRegister31IsRefused) {
  const guarded_memory m = guarded_page(0);
  for (unsigned b = 0; b < 512; b += 2) {
    const uint16_t v = static_cast<uint16_t>(b / 2);
    std::memcpy(m.page + b, &v, 2);
  }
  set_active(2, [](unsigned) { return true; });
  const form ld3h{false, 3, 1}, st2h{true, 2, 1};
  EXPECT_EQ(get_sve_handler(ld3h.with_index(2, 31)), nullptr);
  EXPECT_EQ(get_sve_handler(st2h.with_index(3, 31)), nullptr);
  s.regs[kXn] = address_of(m.page + 100);
  s.regs[kXm] = 7; // seven halfwords: 14 bytes on
  ASSERT_EQ(run_word(&s, ld3h.with_index(2, kXm)), AARCH64_DECODE_OK);
  EXPECT_EQ(elem(s.z[2], 2, 0), 57u);
  EXPECT_EQ(elem(s.z[4], 2, 23), 57u + 23 * 3 + 2);
  s.regs[kXm] = 0;
  ASSERT_EQ(run_word(&s, st2h.with_index(3, kXm)), AARCH64_DECODE_OK);
  for (unsigned i = 0; i < 24; ++i) {
    ASSERT_EQ(elem(m.page + 100, 2, 2 * i), elem(s.z[3], 2, i)) << i;
    ASSERT_EQ(elem(m.page + 100, 2, 2 * i + 1), elem(s.z[4], 2, i)) << i;
  }
}

struct access_t {
  uint64_t addr;
  uint32_t flags;
  bool operator==(const access_t& o) const { return addr == o.addr && flags == o.flags; }
};
std::ostream& operator<<(std::ostream& os, const access_t& a) {
  return os << "{0x" << std::hex << a.addr << ", " << std::dec << a.flags << "}";
}

std::vector<access_t> accesses_of(const std::vector<sve_mem_ref_t>& records, memaccess_type_t type,
                                  uint64_t size, uint64_t pc) {
  std::vector<access_t> out;
  for (size_t i = 0; i < records.size(); ++i) {
    const sve_mem_ref_t& r = records[i];
    EXPECT_EQ(r.seq, i);
    EXPECT_EQ(r.type, type);
    EXPECT_EQ(r.size, size);
    EXPECT_EQ(r.pc, pc);
    EXPECT_EQ(static_cast<uint32_t>(r.tid), static_cast<uint32_t>(pthread_self()));
    out.push_back({r.addr, r.flags});
  }
  return out;
}

// Every component access has its record, in address order; the flags
// bracket the instruction's list over the active structures only.
TEST_F(StructuredTrace, OneRecordPerComponentOfEachActiveStructure) {
  const guarded_memory m = guarded_page(0);
  const uint64_t base = address_of(m.page + 256);
  s.regs[kXn] = base;
  enable_trace = 1;
  const form ld3w{false, 3, 2};
  set_active(4, [](unsigned i) { return i == 1 || i == 11; });
  ASSERT_EQ(run_word(&s, ld3w.with_imm(0, 0)), AARCH64_DECODE_OK);
  EXPECT_EQ(accesses_of(recorded_records(), memaccess_load, 4, s.pc),
            (std::vector<access_t>{{base + 12, 3},
                                   {base + 16, 2},
                                   {base + 20, 2},
                                   {base + 132, 2},
                                   {base + 136, 2},
                                   {base + 140, 6}}));

  recording_reset();
  const form st2d{true, 2, 3};
  set_active(8, [](unsigned i) { return i == 5; });
  s.regs[kXm] = 2;
  ASSERT_EQ(run_word(&s, st2d.with_index(0, kXm)), AARCH64_DECODE_OK);
  EXPECT_EQ(accesses_of(recorded_records(), memaccess_store, 8, s.pc),
            (std::vector<access_t>{{base + 16 + 80, 3}, {base + 16 + 88, 6}}));

  recording_reset();
  const form st4b{true, 4, 0};
  set_active(1, [](unsigned) { return true; });
  ASSERT_EQ(run_word(&s, st4b.with_imm(0, 0)), AARCH64_DECODE_OK);
  const std::vector<sve_mem_ref_t> all = recorded_records();
  ASSERT_EQ(all.size(), 192u);
  for (unsigned j = 0; j < 192; ++j) {
    EXPECT_EQ(all[j].addr, base + j);
    EXPECT_EQ(all[j].flags, j == 0 ? 3u : j == 191 ? 6u : 2u);
  }
}

TEST_F(StructuredTrace, NothingWithoutActiveStructuresOrWithTheGateClosed) {
  const guarded_memory m = guarded_page(0);
  s.regs[kXn] = address_of(m.page);
  const form ld2h{false, 2, 1}, st4w{true, 4, 2};
  enable_trace = 1;
  set_active(2, [](unsigned) { return false; });
  ASSERT_EQ(run_word(&s, ld2h.with_imm(0, 0)), AARCH64_DECODE_OK);
  ASSERT_EQ(run_word(&s, st4w.with_imm(0, 0)), AARCH64_DECODE_OK);
  enable_trace = 0;
  set_active(1, [](unsigned) { return true; });
  ASSERT_EQ(run_word(&s, ld2h.with_imm(0, 0)), AARCH64_DECODE_OK);
  ASSERT_EQ(run_word(&s, st4w.with_imm(0, 0)), AARCH64_DECODE_OK);
  EXPECT_EQ(recorded_calls().incr_count, 0u);
  EXPECT_EQ(recorded_calls().trace_mem, 0u);
}

} // namespace

// Structured loads and stores LD2-LD4 and ST2-ST4, run from their
// instruction words on memory next to an unreadable page.
#include <gtest/gtest.h>

#include <cstring>
#include <random>
#include <vector>

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

std::vector<form> all_forms() {
  std::vector<form> out;
  for (bool store : {false, true})
    for (unsigned n = 2; n <= 4; ++n)
      for (unsigned size = 0; size < 4; ++size) out.push_back({store, n, size});
  return out;
}

std::string name_of(const form& f) {
  return std::string(f.store ? "st" : "ld") + std::to_string(f.registers) + "bhwd"[f.log_bytes];
}

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
  bool is_active(unsigned bytes, unsigned i) const { return s.p[kPg][i * bytes] & 1; }
  uint8_t* list_reg(unsigned zt, unsigned k) { return s.z[(zt + k) % 32]; }
};

using StructuredAccess = fixture;
using StructuredTrace = fixture;

// Every form in both address forms against a plain model: component k of
// structure i is element i of register Zt + k, at base + (i * N + k) * size.
TEST_F(StructuredAccess, EveryFormMovesComponentsBetweenMemoryAndRegisters) {
  const guarded_memory m = guarded_page(0);
  uint8_t* const middle = m.page + m.bytes / 2;
  for (const form& f : all_forms()) {
    for (bool indexed : {false, true}) {
      for (unsigned trial = 0; trial < 8; ++trial) {
        SCOPED_TRACE(name_of(f) + (indexed ? " index" : " imm") + " trial " +
                     std::to_string(trial));
        randomize(&s, rng);
        for (size_t b = 0; b < m.bytes; ++b) m.page[b] = static_cast<uint8_t>(rng());
        const std::vector<uint8_t> before(m.page, m.page + m.bytes);
        const unsigned zt = static_cast<unsigned>(rng() % 32);
        set_active(f.bytes(), [&](unsigned) { return rng() % 4 != 0; });
        // The start of structure 0, reached from a base register by an
        // immediate of whole register lists or by an index of elements.
        const unsigned list_bytes = f.registers * 48;
        const int imm = static_cast<int>(rng() % 5) - 2;
        const int64_t index = static_cast<int64_t>(rng() % 41) - 20;
        const uint8_t* start = middle - 48 + static_cast<int>(rng() % 96);
        s.regs[kXn] = indexed ? address_of(start) - static_cast<uint64_t>(index) * f.bytes()
                              : address_of(start) - static_cast<uint64_t>(imm * int(list_bytes));
        s.regs[kXm] = static_cast<uint64_t>(index);
        const uint32_t word = indexed ? f.with_index(zt, kXm) : f.with_imm(zt, imm);
        cpu_state model = s;
        std::vector<uint8_t> model_mem = before;
        for (unsigned i = 0; i < f.structures(); ++i)
          for (unsigned k = 0; k < f.registers; ++k) {
            const size_t at =
                static_cast<size_t>(start - m.page) + (i * f.registers + k) * f.bytes();
            uint8_t* elem_at = model.z[(zt + k) % 32] + i * f.bytes();
            if (f.store && is_active(f.bytes(), i))
              std::memcpy(&model_mem[at], elem_at, f.bytes());
            else if (!f.store)
              is_active(f.bytes(), i) ? std::memcpy(elem_at, &before[at], f.bytes())
                                      : std::memset(elem_at, 0, f.bytes());
          }
        ASSERT_EQ(run_word(&s, word), AARCH64_DECODE_OK);
        ASSERT_EQ(std::memcmp(s.z, model.z, sizeof s.z), 0);
        ASSERT_EQ(std::memcmp(m.page, model_mem.data(), m.bytes), 0);
        ASSERT_EQ(std::memcmp(s.regs, model.regs, sizeof s.regs), 0);
        ASSERT_EQ(std::memcmp(s.p, model.p, sizeof s.p), 0);
      }
    }
  }
}

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
  ASSERT_EQ(run_word(&s, st2d.with_index(1, 31)), AARCH64_DECODE_OK);
}

TEST_F(StructuredAccess, StoreLeavesTheGapOfAnInactiveStructure) {
  const guarded_memory m = guarded_page(0xcc);
  const form st3h{true, 3, 1};
  for (unsigned k = 0; k < 3; ++k)
    for (unsigned i = 0; i < 24; ++i) {
      const uint16_t v = static_cast<uint16_t>(0x100 * (k + 1) + i);
      std::memcpy(list_reg(4, k) + 2 * i, &v, 2);
    }
  set_active(2, [](unsigned i) { return i == 0 || i == 2; });
  s.regs[kXn] = address_of(m.page);
  ASSERT_EQ(run_word(&s, st3h.with_imm(4, 0)), AARCH64_DECODE_OK);
  const uint16_t want[9] = {0x100, 0x200, 0x300, 0xcccc, 0xcccc, 0xcccc, 0x102, 0x202, 0x302};
  EXPECT_EQ(std::memcmp(m.page, want, sizeof want), 0);
  for (unsigned b = sizeof want; b < 200; ++b) ASSERT_EQ(m.page[b], 0xcc) << b;
}

TEST_F(StructuredAccess, RegisterListWrapsAfterZ31) {
  const guarded_memory m = guarded_page(0);
  for (unsigned b = 0; b < 256; ++b) m.page[b] = static_cast<uint8_t>(b);
  s.regs[kXn] = address_of(m.page);
  set_active(8, [](unsigned) { return true; });
  const form ld4d{false, 4, 3};
  std::memset(s.z[1], 0xee, 48);
  ASSERT_EQ(run_word(&s, ld4d.with_imm(29, 0)), AARCH64_DECODE_OK);
  EXPECT_EQ(elem(s.z[29], 8, 0), 0x0706050403020100u);
  EXPECT_EQ(elem(s.z[30], 8, 0), 0x0f0e0d0c0b0a0908u);
  EXPECT_EQ(elem(s.z[31], 8, 1), 0x3736353433323130u);
  EXPECT_EQ(elem(s.z[0], 8, 5), 0xbfbebdbcbbbab9b8u); // bytes 184 to 191
  EXPECT_EQ(elem(s.z[1], 8, 0), 0xeeeeeeeeeeeeeeeeu);

  // ST2B from Z31 and Z0.
  const form st2b{true, 2, 0};
  set_active(1, [](unsigned) { return true; });
  std::memset(s.z[31], 0x31, 48);
  std::memset(s.z[0], 0x00, 48);
  ASSERT_EQ(run_word(&s, st2b.with_imm(31, 0)), AARCH64_DECODE_OK);
  for (unsigned b = 0; b < 96; ++b) ASSERT_EQ(m.page[b], b % 2 ? 0x00 : 0x31) << b;
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

TEST_F(StructuredAccess, OffsetsCountWholeListsOrElements) {
  const guarded_memory m = guarded_page(0);
  for (unsigned b = 0; b < m.bytes; b += 2) {
    const uint16_t v = static_cast<uint16_t>(b / 2);
    std::memcpy(m.page + b, &v, 2);
  }
  set_active(2, [](unsigned) { return true; });
  // LD3H with immediate -1: 3 x 48 bytes, 72 halfwords, below the base.
  const form ld3h{false, 3, 1};
  s.regs[kXn] = address_of(m.page + 1000);
  ASSERT_EQ(run_word(&s, ld3h.with_imm(2, -1)), AARCH64_DECODE_OK);
  EXPECT_EQ(elem(s.z[2], 2, 0), 500u - 72);
  EXPECT_EQ(elem(s.z[4], 2, 1), 500u - 72 + 5);
  // Index register scaled by the element size; XZR adds nothing, whatever
  // register 31 (SP) holds; SP as base.
  s.regs[kXm] = static_cast<uint64_t>(-3);
  ASSERT_EQ(run_word(&s, ld3h.with_index(2, kXm)), AARCH64_DECODE_OK);
  EXPECT_EQ(elem(s.z[2], 2, 0), 497u);
  s.regs[31] = 0x1234;
  ASSERT_EQ(run_word(&s, ld3h.with_index(2, 31)), AARCH64_DECODE_OK);
  EXPECT_EQ(elem(s.z[2], 2, 0), 500u);
  s.regs[31] = address_of(m.page + 64);
  const form ld4b{false, 4, 0};
  set_active(1, [](unsigned) { return true; });
  ASSERT_EQ(run_word(&s, ld4b.with_imm(0, 7, 31)), AARCH64_DECODE_OK); // 7 x 192 bytes up
  EXPECT_EQ(s.z[0][0], m.page[64 + 7 * 192]);
  EXPECT_EQ(s.z[3][1], m.page[64 + 7 * 192 + 7]);
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

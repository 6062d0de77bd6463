// The inline tier's pieces that the reference check does not reach with
// every value: constants of any size, additions out of an immediate's reach,
// offsets out of reach, and the ways out to the call path.
#include <gtest/gtest.h>

#include <sys/mman.h>

#include <cstring>
#include <vector>

#include "client/inline_forms.h"
#include "inline_run.h"

namespace {

using namespace a64;

struct record_test : ::testing::Test {
  cpu_state s;
  void SetUp() override { std::memset(&s, 0, sizeof s); }
};

TEST_F(record_test, ConstantsOfEveryShapeArriveWhole) {
  const std::vector<uint64_t> values = {0,
                                        1,
                                        0xffff,
                                        0x10000,
                                        0xffff0000,
                                        0x123456789abcdef0,
                                        ~uint64_t{0},
                                        uint64_t(-2),
                                        uint64_t(-65536),
                                        uint64_t(-65537),
                                        0xffffffff00000000,
                                        0x8000000000000000};
  for (uint64_t v : values) {
    inline_code c;
    move_constant(c, 9, v);
    store_x(c, 9, kInlineRecord, x_offset(0));
    ASSERT_FALSE(c.overflow);
    s.regs[0] = 0x5a5a5a5a5a5a5a5a;
    run_inline_code(c, 0, false, &s);
    EXPECT_EQ(s.regs[0], v) << std::hex << v;
  }
}

TEST_F(record_test, AdditionsInAndOutOfTheImmediateRange) {
  const std::vector<int64_t> steps = {0,
                                      1,
                                      -1,
                                      4095,
                                      -4095,
                                      4096,
                                      -4096,
                                      4097,
                                      -4097,
                                      0x555000,
                                      -0x555000,
                                      0x1000000,
                                      int64_t(1) << 40,
                                      INT64_MIN + 1};
  for (int64_t step : steps) {
    inline_code c;
    load_x(c, 9, kInlineRecord, x_offset(1));
    add_constant(c, 9, 9, step);
    store_x(c, 9, kInlineRecord, x_offset(0));
    s.regs[1] = 0x0123456789abcdef;
    run_inline_code(c, 0, false, &s);
    EXPECT_EQ(s.regs[0], s.regs[1] + uint64_t(step)) << step;
  }
}

TEST(inline_emit, OffsetsOutOfReachAreRefusedNotWrapped) {
  inline_code c;
  load_q(c, 0, kInlineRecord, size_t(1) << 24);
  EXPECT_TRUE(c.overflow);
  inline_code d;
  store_x(d, 0, kInlineRecord, 12); // not a multiple of 8
  EXPECT_TRUE(d.overflow);
}

TEST(inline_emit, RegionMarkersStayOnTheCallPath) {
  inline_code c;
  for (uint32_t n = 0; n < 32; ++n) {
    EXPECT_FALSE(translate_inline(0x2520e020 | n, 0x1000, &c)) << n;
    EXPECT_FALSE(translate_inline(0x2520e040 | n, 0x1000, &c)) << n;
  }
  // The markers' row (byte add of an immediate) stays there whole; the same
  // add on halfwords is inline.
  EXPECT_FALSE(translate_inline(0x2520c020, 0x1000, &c));
  EXPECT_TRUE(translate_inline(0x2560c020, 0x1000, &c));
}

// ld1w {z1.s}, p2/z, [x3, x4, lsl #2]: the thin decoder writes the word into
// the record, the inline code does not, which tells the two ways apart.
constexpr uint32_t kLoadWords = 0xa5444861;

struct memory_test : record_test {
  alignas(16) uint32_t data[64];
  void SetUp() override {
    record_test::SetUp();
    for (unsigned i = 0; i < 64; ++i) data[i] = 1000 + i;
    s.regs[3] = reinterpret_cast<uint64_t>(data);
    s.regs[4] = 2;
    for (unsigned b = 0; b < process_vector_bytes(); b += 4) s.p[2][b] = 1;
  }
  void load() {
    inline_code c;
    ASSERT_TRUE(translate_inline(kLoadWords, 0x4000, &c));
    run_inline_code(c, 0, tracing, &s);
  }
  bool tracing = false;
  uint32_t element(unsigned i) {
    uint32_t v;
    std::memcpy(&v, &s.z[1][4 * i], 4);
    return v;
  }
};

TEST_F(memory_test, AllTrueLoadsInlineAndLeavesItsAddressForTheFaultPath) {
  load();
  EXPECT_EQ(s.raw_instr, 0u);
  EXPECT_EQ(s.pc, 0x4000u);
  for (unsigned i = 0; i < process_vector_bytes() / 4; ++i) EXPECT_EQ(element(i), 1002 + i);
}

TEST_F(memory_test, PartialLoadInsideOnePageIsInlineWithInactiveElementsZero) {
  s.p[2][4] = 0;
  std::memset(s.z[1], 0xee, sizeof s.z[1]);
  load();
  EXPECT_EQ(s.raw_instr, 0u);
  EXPECT_EQ(element(0), 1002u);
  EXPECT_EQ(element(1), 0u);
  EXPECT_EQ(element(2), 1004u);
}

TEST_F(memory_test, LoadWithNoActiveElementTakesTheCallPath) {
  std::memset(s.p[2], 0, sizeof s.p[2]);
  std::memset(s.z[1], 0xee, sizeof s.z[1]);
  load();
  EXPECT_EQ(s.raw_instr, kLoadWords);
  for (unsigned i = 0; i < process_vector_bytes() / 4; ++i) EXPECT_EQ(element(i), 0u);
}

// Two pages, the second unreadable, for accesses that reach across.
struct page_end_test : memory_test {
  uint8_t* pages = nullptr;
  void SetUp() override {
    memory_test::SetUp();
    pages = static_cast<uint8_t*>(
        mmap(nullptr, 2 * kPage, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0));
    ASSERT_NE(pages, MAP_FAILED);
    mprotect(pages + kPage, kPage, PROT_NONE);
  }
  void TearDown() override { munmap(pages, 2 * kPage); }
  static constexpr size_t kPage = 65536; // a multiple of every page size
  // The vector's first `active` words readable, the rest in the second page,
  // and only those active.
  void only_readable_active(unsigned active) {
    std::memset(s.p[2], 0, sizeof s.p[2]);
    for (unsigned i = 0; i < active; ++i) s.p[2][4 * i] = 1;
    s.regs[3] = reinterpret_cast<uint64_t>(pages + kPage - 4 * active);
    s.regs[4] = 0;
  }
};

TEST_F(page_end_test, PartialLoadAcrossAPageTakesTheCallPathAndDoesNotFault) {
  uint32_t* words = reinterpret_cast<uint32_t*>(pages + kPage) - 2;
  words[0] = 7;
  words[1] = 8;
  only_readable_active(2);
  load();
  EXPECT_EQ(s.raw_instr, kLoadWords);
  EXPECT_EQ(element(0), 7u);
  EXPECT_EQ(element(1), 8u);
  EXPECT_EQ(element(2), 0u);
}

// ld1sb {z1.s}, p2/z, [x3, x4]: the bytes of a widening load end a page,
// where a whole vector of bytes would not fit: it is still inline, reads
// only its own bytes and extends their signs.
TEST_F(page_end_test, WideningLoadEndingAPageIsInline) {
  const unsigned n = process_vector_bytes() / 4;
  int8_t* bytes = reinterpret_cast<int8_t*>(pages + kPage) - n;
  for (unsigned i = 0; i < n; ++i) bytes[i] = int8_t(i % 2 ? -1 - int(i) : int(i));
  std::memset(s.p[2], 0, sizeof s.p[2]);
  for (unsigned i = 0; i < n; i += 2) s.p[2][4 * i] = 1;
  s.regs[3] = reinterpret_cast<uint64_t>(bytes);
  s.regs[4] = 0;
  inline_code c;
  ASSERT_TRUE(translate_inline(0xa5a44861, 0x4000, &c));
  run_inline_code(c, 0, false, &s);
  EXPECT_EQ(s.raw_instr, 0u);
  for (unsigned i = 0; i < n; ++i)
    EXPECT_EQ(int32_t(element(i)), i % 2 ? 0 : int32_t(bytes[i])) << i;
  // Every element active, the odd ones negative.
  for (unsigned i = 0; i < n; ++i) s.p[2][4 * i] = 1;
  run_inline_code(c, 0, false, &s);
  for (unsigned i = 0; i < n; ++i) EXPECT_EQ(int32_t(element(i)), int32_t(bytes[i])) << i;
}

// st1w {z1.s}, p2, [x3, x4, lsl #2]
constexpr uint32_t kStoreWords = 0xe5444861;

TEST_F(page_end_test, PartialStoreWritesOnlyActiveElementsInline) {
  for (unsigned i = 0; i < process_vector_bytes() / 4; ++i) {
    const uint32_t v = 500 + i;
    std::memcpy(&s.z[1][4 * i], &v, 4);
  }
  // Every other element, and none of those in the unreadable page.
  const unsigned readable = 5;
  only_readable_active(readable);
  for (unsigned i = 1; i < readable; i += 2) s.p[2][4 * i] = 0;
  uint32_t* words = reinterpret_cast<uint32_t*>(pages + kPage) - readable;
  for (unsigned i = 0; i < readable; ++i) words[i] = 9;
  inline_code c;
  ASSERT_TRUE(translate_inline(kStoreWords, 0x4000, &c));
  run_inline_code(c, 0, false, &s);
  EXPECT_EQ(s.raw_instr, 0u);
  EXPECT_EQ(s.pc, 0x4000u);
  EXPECT_EQ(words[0], 500u);
  EXPECT_EQ(words[1], 9u);
  EXPECT_EQ(words[2], 502u);
  EXPECT_EQ(words[3], 9u);
  EXPECT_EQ(words[4], 504u);
}

TEST_F(memory_test, OpenTraceGateTakesTheCallPath) {
  tracing = true;
  load();
  EXPECT_EQ(s.raw_instr, kLoadWords);
  EXPECT_EQ(element(3), 1005u);
}

// fmla z0.s, p1/m, z1.s, z2.s under a partial predicate: the inactive
// elements hold operands whose product overflows and is inexact, and NaNs
// that would signal; the FPSR gains only what the active elements raise, and
// the inactive elements of z0 keep their values.
TEST_F(record_test, PartialFusedMultiplyAddRaisesOnlyTheActiveElementsFlags) {
  const unsigned n = process_vector_bytes() / 4;
  auto put = [&](unsigned z, unsigned i, float v) { std::memcpy(&s.z[z][4 * i], &v, 4); };
  auto get = [&](unsigned z, unsigned i) {
    float v;
    std::memcpy(&v, &s.z[z][4 * i], 4);
    return v;
  };
  const float signalling = [] {
    const uint32_t bits = 0x7fa00000;
    float v;
    std::memcpy(&v, &bits, 4);
    return v;
  }();
  for (unsigned i = 0; i < n; ++i) {
    const bool active = i % 3 == 0;
    s.p[1][4 * i] = active;
    put(0, i, active ? 1.0f : signalling);
    put(1, i, active ? 2.0f : 3e38f);
    put(2, i, active ? 0.5f : 3e38f);
  }
  inline_code c;
  ASSERT_TRUE(translate_inline(0x65a20420, 0x4000, &c));
  for (const bool all_true : {false, true}) {
    if (all_true)
      for (unsigned i = 0; i < n; ++i) s.p[1][4 * i] = 1;
    s.fpsr = 0;
    run_inline_code(c, 0, false, &s);
    if (all_true) {
      EXPECT_NE(s.fpsr & 0x15, 0u) << "overflow and invalid where all are active";
      continue;
    }
    EXPECT_EQ(s.fpsr, 0u);
    for (unsigned i = 0; i < n; ++i) {
      if (i % 3 == 0)
        EXPECT_EQ(get(0, i), 2.0f) << i;
      else
        EXPECT_EQ(std::memcmp(&s.z[0][4 * i], &signalling, 4), 0) << i;
    }
  }
}

// smulh z0.d, p1/m, z0.d, z1.d: doublewords lane by lane, the inactive ones
// kept.
TEST_F(record_test, DoublewordHighMultiplyMergesUnderAPartialPredicate) {
  const unsigned n = process_vector_bytes() / 8;
  for (unsigned i = 0; i < n; ++i) {
    const int64_t a = -3 - int64_t(i) * 0x100000000, b = int64_t(0x7000000000000000) + int64_t(i);
    std::memcpy(&s.z[0][8 * i], &a, 8);
    std::memcpy(&s.z[1][8 * i], &b, 8);
    s.p[1][8 * i] = i % 2;
  }
  inline_code c;
  ASSERT_TRUE(translate_inline(0x04d20420, 0x4000, &c));
  run_inline_code(c, 0, false, &s);
  for (unsigned i = 0; i < n; ++i) {
    const int64_t a = -3 - int64_t(i) * 0x100000000, b = int64_t(0x7000000000000000) + int64_t(i);
    const int64_t expected = i % 2 ? int64_t((__int128(a) * b) >> 64) : a;
    int64_t got;
    std::memcpy(&got, &s.z[0][8 * i], 8);
    EXPECT_EQ(got, expected) << i;
  }
}

} // namespace

// The predicate and first-fault forms' inline code where random states seldom
// go: governing predicates with no element or one at either end, bytes past
// the vector that must not be read, first-fault loads that run into a page
// without access, and the lengths at which the forms are inline.
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cstring>

#include "client/inline_forms.h"
#include "decode/sve_utils.h"
#include "inline_run.h"

namespace {

// The word through its inline code and through its decoder, from the same
// state: the same record afterwards.
void expect_inline_as_called(uint32_t word, const cpu_state& before) {
  static cpu_state inline_state, called;
  inline_state = before;
  called = before;
  inline_code c;
  ASSERT_TRUE(translate_inline(word, 0x4000, &c)) << std::hex << word;
  run_inline_code(c, 0, false, &inline_state);
  const sve_decoder decoder = get_sve_handler(word);
  ASSERT_NE(decoder, nullptr);
  ASSERT_EQ(decoder(&called, word), AARCH64_DECODE_OK);
  EXPECT_EQ(inline_state.nzcv, called.nzcv) << std::hex << word;
  EXPECT_EQ(std::memcmp(inline_state.p, called.p, sizeof called.p), 0) << std::hex << word;
  EXPECT_EQ(std::memcmp(inline_state.ffr, called.ffr, process_vector_bytes()), 0)
      << std::hex << word;
  EXPECT_EQ(std::memcmp(inline_state.regs, called.regs, sizeof called.regs), 0) << std::hex << word;
}

struct governed : ::testing::Test {
  cpu_state s;
  unsigned bytes = process_vector_bytes();
  void SetUp() override {
    std::memset(&s, 0, sizeof s);
    // Bytes past the vector hold ones: no form may read them.
    for (auto& p : s.p) std::memset(p + bytes, 1, kMaxVectorBytes - bytes);
    std::memset(s.ffr, 1, bytes);
  }
  // P1 the governing predicate, P2 and P3 operands.
  void govern(unsigned first, unsigned last) {
    for (unsigned i = first; i <= last && i < bytes; ++i) s.p[1][i] = 1;
  }
};

// ptest p1, p2.b; brkbs p4.b, p1/z, p2.b; brkas; cmpeq p4.h, p1/z, z5.h, #0;
// rdffrs p4.b, p1/z; ands p4.b, p1/z, p2.b, p3.b; nors; cmphi p4.h, p1/z,
// z5.h, z6.h; cmplo p4.s, p1/z, z5.s, #3 (the operands swapped).
constexpr uint32_t kFlagWords[] = {0x2550c440, 0x25d04444, 0x25504444, 0x254084a4, 0x2558f024,
                                   0x25434444, 0x25c34644, 0x244604b4, 0x24a0e4a4};

TEST_F(governed, NoActiveElementGivesZeroAndCarry) {
  s.p[2][0] = s.p[2][bytes - 1] = 1;
  for (uint32_t word : kFlagWords) expect_inline_as_called(word, s);
}

TEST_F(governed, OnlyTheLastElementActive) {
  govern(bytes - 2, bytes - 2); // the last halfword's first byte
  s.p[2][bytes - 2] = 1;
  for (uint32_t word : kFlagWords) expect_inline_as_called(word, s);
  s.p[2][bytes - 2] = 0;
  s.p[3][bytes - 2] = 1;
  for (uint32_t word : kFlagWords) expect_inline_as_called(word, s);
}

TEST_F(governed, OnlyTheFirstElementActive) {
  govern(0, 0);
  for (uint32_t word : kFlagWords) expect_inline_as_called(word, s);
  s.p[2][0] = 1;
  std::memset(s.z[5], 0xff, bytes);
  for (uint32_t word : kFlagWords) expect_inline_as_called(word, s);
}

TEST_F(governed, BreaksAtEitherEndAndNowhere) {
  govern(0, bytes - 1);
  for (unsigned at : {0u, bytes - 1, bytes}) {
    std::memset(s.p[2], 0, bytes);
    if (at < bytes) s.p[2][at] = 1;
    s.p[4][3] = 1; // what merging keeps where P1 is clear
    for (uint32_t word : kFlagWords) expect_inline_as_called(word, s);
    expect_inline_as_called(0x25904454, s); // brkb p4.b, p1/m, p2.b
    expect_inline_as_called(0x25104454, s); // brka p4.b, p1/m, p2.b
  }
}

// ldff1b {z1.b}, p2/z, [x3, x4]
constexpr uint32_t kFirstFaultBytes = 0xa4046861;

struct first_fault : ::testing::Test {
  cpu_state s;
  uint8_t* pages = nullptr;
  size_t page = static_cast<size_t>(sysconf(_SC_PAGESIZE));
  void SetUp() override {
    std::memset(&s, 0, sizeof s);
    void* p = mmap(nullptr, 2 * page, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    ASSERT_NE(p, MAP_FAILED);
    pages = static_cast<uint8_t*>(p);
    for (size_t i = 0; i < page; ++i) pages[i] = uint8_t(i * 7 + 1);
    ASSERT_EQ(mprotect(pages + page, page, PROT_NONE), 0);
    std::memset(s.p[2], 1, process_vector_bytes());
    std::memset(s.ffr, 1, process_vector_bytes());
    std::memset(s.z[1], 0xee, sizeof s.z[1]);
  }
  void TearDown() override { munmap(pages, 2 * page); }
  void load_at(size_t offset, bool tracing = false) {
    s.regs[3] = reinterpret_cast<uint64_t>(pages);
    s.regs[4] = offset;
    inline_code c;
    ASSERT_TRUE(translate_inline(kFirstFaultBytes, 0x4000, &c));
    run_inline_code(c, 0, tracing, &s);
  }
};

TEST_F(first_fault, WithinAPageLoadsInlineAndKeepsFfr) {
  s.ffr[5] = 0; // a first-fault load only ever clears FFR
  load_at(100);
  EXPECT_EQ(s.raw_instr, 0u);
  EXPECT_EQ(s.pc, 0x4000u);
  for (unsigned i = 0; i < process_vector_bytes(); ++i) EXPECT_EQ(s.z[1][i], pages[100 + i]) << i;
  EXPECT_EQ(s.ffr[5], 0);
  EXPECT_EQ(s.ffr[6], 1);
}

TEST_F(first_fault, RunningIntoAPageWithoutAccessClearsFfrFromThere) {
  const unsigned readable = 5;
  load_at(page - readable);
  EXPECT_EQ(s.raw_instr, kFirstFaultBytes); // the call path
  for (unsigned i = 0; i < readable; ++i) {
    EXPECT_EQ(s.z[1][i], pages[page - readable + i]) << i;
    EXPECT_EQ(s.ffr[i], 1) << i;
  }
  for (unsigned i = readable; i < process_vector_bytes(); ++i) EXPECT_EQ(s.ffr[i], 0) << i;
}

TEST_F(first_fault, PartialPredicateOrOpenTraceGateTakesTheCallPath) {
  s.p[2][7] = 0;
  load_at(0);
  EXPECT_EQ(s.raw_instr, kFirstFaultBytes);
  EXPECT_EQ(s.z[1][7], 0);
  EXPECT_EQ(s.z[1][8], pages[8]);
  s.raw_instr = 0;
  s.p[2][7] = 1;
  load_at(0, true);
  EXPECT_EQ(s.raw_instr, kFirstFaultBytes);
  EXPECT_EQ(s.z[1][7], pages[7]);
}

// ldff1sb {z1.h}, p2/z, [x3, x4] reads half a vector of bytes, which end
// right at the page without access: loaded whole and sign-extended, though
// the whole Q registers the inline code reads would reach into that page.
TEST_F(first_fault, ExtendingLoadUpToThePageEnd) {
  const unsigned elements = process_vector_bytes() / 2;
  for (unsigned i = 0; i < elements; ++i) pages[page - elements + i] = uint8_t(0x70 + 9 * i);
  s.regs[3] = reinterpret_cast<uint64_t>(pages);
  s.regs[4] = page - elements;
  inline_code c;
  ASSERT_TRUE(translate_inline(0xa5c46861, 0x4000, &c));
  run_inline_code(c, 0, false, &s);
  for (unsigned i = 0; i < elements; ++i) {
    int16_t v;
    std::memcpy(&v, &s.z[1][2 * i], 2);
    EXPECT_EQ(v, int8_t(0x70 + 9 * i)) << i;
  }
  for (unsigned i = 0; i < process_vector_bytes(); ++i) EXPECT_EQ(s.ffr[i], 1) << i;
  // Further from the end the same load is inline.
  s.raw_instr = 0;
  s.regs[4] = page - 256;
  run_inline_code(c, 0, false, &s);
  EXPECT_EQ(s.raw_instr, 0u);
  int16_t first;
  std::memcpy(&first, &s.z[1][0], 2);
  EXPECT_EQ(first, int8_t(pages[page - 256]));
}

// The forms that number predicate bytes in byte lanes are inline up to 1024
// bits; the others at every length.
TEST(predicate_lengths, ByteNumberedFormsStopAbove1024Bits) {
  const vector_length_scope restore_length;
  inline_code c;
  for (unsigned bytes : {16u, 128u, 256u}) {
    ASSERT_TRUE(set_vector_bytes(bytes));
    EXPECT_TRUE(translate_inline(0x252c9000, 0x1000, &c)) << bytes; // setffr
    EXPECT_TRUE(translate_inline(0x2518e3e4, 0x1000, &c)) << bytes; // ptrue p4.b
    EXPECT_TRUE(translate_inline(kFirstFaultBytes, 0x1000, &c)) << bytes;
    EXPECT_EQ(translate_inline(0x2550c440, 0x1000, &c), bytes <= 128) << bytes; // ptest
    EXPECT_EQ(translate_inline(0x254084a4, 0x1000, &c), bytes <= 128) << bytes; // cmpeq
  }
}

// A compare of two vectors stays inline at every length: above 1024 bits
// its code takes the call path when the predicate is not all true.
TEST(predicate_lengths, VectorCompareCallsBeyond1024BitsUnderAPartialPredicate) {
  const vector_length_scope restore_length;
  ASSERT_TRUE(set_vector_bytes(256));
  cpu_state s;
  std::memset(&s, 0, sizeof s);
  for (unsigned i = 0; i < 256; ++i) {
    s.z[5][i] = uint8_t(i * 7);
    s.z[6][i] = uint8_t(i * 3);
  }
  for (unsigned i = 2; i < 200; i += 2) s.p[1][i] = 1; // halfwords 1 to 99
  expect_inline_as_called(0x244604b4, s);              // cmphi p4.h, p1/z, z5.h, z6.h
  std::memset(s.p[1], 1, 256);
  expect_inline_as_called(0x244604b4, s);
}

} // namespace

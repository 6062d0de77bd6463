// First-fault and non-fault loads next to pages that cannot be read: what is
// loaded, what FFR says afterwards, what keeps its old value, and what the
// trace is told.
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cstdlib>
#include <cstring>
#include <random>

#include "recording_sink.h"
#include "test_state.h"
#include "trace/roi.h"

namespace {

const size_t kPage = static_cast<size_t>(sysconf(_SC_PAGESIZE));

// Operand fields: Zt 4:0, Pg 12:10, Xn 9:5, and Xm 20:16 or imm4 19:16.
constexpr uint32_t kLdff1b = 0xa4006000, kLdff1bToH = 0xa4206000, kLdff1d = 0xa5e06000;
constexpr uint32_t kLdff1wToD = 0xa5606000;
constexpr uint32_t kLdnf1b = 0xa410a000, kLdnf1h = 0xa4b0a000, kLdnf1sbToD = 0xa590a000;
constexpr uint32_t kLdnf1w = 0xa550a000;
constexpr unsigned kZt = 3, kPg = 2, kXn = 4, kXm = 6;

uint32_t first_fault(uint32_t op) { return op | kXm << 16 | kPg << 10 | kXn << 5 | kZt; }
uint32_t non_fault(uint32_t op, int imm = 0) {
  return op | (imm & 0xfu) << 16 | kPg << 10 | kXn << 5 | kZt;
}

// Four pages: readable, no access, readable, no access. The readable ones
// hold their byte offset from the start of the mapping plus one.
struct page_pattern {
  uint8_t* base;
  uint8_t* readable(int n) const { return base + 2 * n * kPage; }
  uint8_t* unreadable(int n) const { return base + (2 * n + 1) * kPage; }
};

page_pattern map_pattern() {
  static page_pattern m = [] {
    void* p = mmap(nullptr, 4 * kPage, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (p == MAP_FAILED) std::abort();
    auto* base = static_cast<uint8_t*>(p);
    for (size_t i = 0; i < 4 * kPage; ++i) base[i] = static_cast<uint8_t>(i + 1);
    if (mprotect(base + kPage, kPage, PROT_NONE) != 0 ||
        mprotect(base + 3 * kPage, kPage, PROT_NONE) != 0)
      std::abort();
    return page_pattern{base};
  }();
  return m;
}

uint64_t address_of(const void* p) { return reinterpret_cast<uint64_t>(p); }

struct fixture : ::testing::Test {
  std::mt19937_64 rng{11};
  cpu_state s;
  uint8_t old_z[48];
  page_pattern m = map_pattern();

  void SetUp() override {
    randomize(&s, rng);
    std::memset(s.ffr, 1, 48);
    std::memcpy(old_z, s.z[kZt], 48);
    s.regs[kXm] = 0;
    enable_trace = 0;
    recording_reset();
  }
  void all_active() { std::memset(s.p[kPg], 1, 48); }
  void run(uint32_t word) { ASSERT_EQ(run_word(&s, word), AARCH64_DECODE_OK); }
  // FFR bytes [from, to) clear, all others still set.
  void expect_ffr_clear(unsigned from, unsigned to) {
    for (unsigned b = 0; b < 48; ++b) EXPECT_EQ(s.ffr[b], b >= from && b < to ? 0 : 1) << b;
  }
  void expect_old_z(unsigned from, unsigned to) {
    for (unsigned b = from; b < to; ++b) EXPECT_EQ(s.z[kZt][b], old_z[b]) << b;
  }
};

using FirstFault = fixture;
using NonFault = fixture;
using FaultTolerantTrace = fixture;

TEST_F(FirstFault, SpanWithinOnePageLeavesFfrWhateverThePredicate) {
  s.regs[kXn] = address_of(m.unreadable(0) - 48 - 1);
  run(first_fault(kLdff1b));
  expect_ffr_clear(0, 0);
  for (unsigned i = 0; i < 48; ++i)
    EXPECT_EQ(elem(s.z[kZt], 1, i), (s.p[kPg][i] & 1) ? static_cast<uint8_t>(kPage - 48 + i) : 0u)
        << i;
}

TEST_F(FirstFault, SpanEndingExactlyOnAPageStartLoadsEverything) {
  all_active();
  s.regs[kXn] = address_of(m.unreadable(0) - 48);
  run(first_fault(kLdff1b));
  expect_ffr_clear(0, 0);
  EXPECT_EQ(elem(s.z[kZt], 1, 47), static_cast<uint8_t>(kPage));
}

TEST_F(FirstFault, StopsAtTheEndOfAReadablePage) {
  all_active();
  s.regs[kXn] = address_of(m.unreadable(0) - 20);
  s.regs[kXm] = 10; // the index counts too
  run(first_fault(kLdff1b));
  for (unsigned i = 0; i < 10; ++i)
    EXPECT_EQ(elem(s.z[kZt], 1, i), static_cast<uint8_t>(kPage - 10 + i + 1)) << i;
  expect_old_z(10, 48);
  expect_ffr_clear(10, 48);
}

TEST_F(FirstFault, WideningFormsCountRegisterElements) {
  all_active();
  s.regs[kXn] = address_of(m.unreadable(0) - 10);
  run(first_fault(kLdff1bToH)); // 10 bytes would fit, but only 5 halfwords of 2
  for (unsigned i = 0; i < 5; ++i)
    EXPECT_EQ(elem(s.z[kZt], 2, i), static_cast<uint8_t>(kPage - 10 + i + 1)) << i;
  expect_old_z(10, 48);
  expect_ffr_clear(10, 48);

  // Words into doublewords, 12 bytes before the end: one element of 8.
  SetUp();
  all_active();
  s.regs[kXn] = address_of(m.unreadable(0) - 12);
  run(first_fault(kLdff1wToD));
  uint32_t want;
  std::memcpy(&want, m.unreadable(0) - 12, 4);
  EXPECT_EQ(elem(s.z[kZt], 8, 0), want);
  expect_old_z(8, 48);
  expect_ffr_clear(8, 48);
}

TEST_F(FirstFault, NoWholeElementBeforeThePageEndLoadsNothingAndFaultsNot) {
  all_active();
  s.regs[kXn] = address_of(m.unreadable(0) - 4);
  run(first_fault(kLdff1d));
  expect_old_z(0, 48);
  expect_ffr_clear(0, 48);
}

TEST_F(FirstFault, InactiveElementsBelowThePageEndBecomeZero) {
  std::memset(s.p[kPg], 0, 48);
  s.p[kPg][1] = 1;
  s.regs[kXn] = address_of(m.unreadable(0) - 3);
  run(first_fault(kLdff1b));
  EXPECT_EQ(elem(s.z[kZt], 1, 0), 0u);
  EXPECT_EQ(elem(s.z[kZt], 1, 1), static_cast<uint8_t>(kPage - 1));
  EXPECT_EQ(elem(s.z[kZt], 1, 2), 0u);
  expect_old_z(3, 48);
  expect_ffr_clear(3, 48);
}

TEST_F(FirstFault, ReadableNextPageMeansAPlainLoad) {
  all_active();
  ASSERT_EQ(mprotect(m.unreadable(0), kPage, PROT_READ), 0);
  s.regs[kXn] = address_of(m.unreadable(0) - 8); // 8 bytes on one page, 40 on the next
  run(first_fault(kLdff1b));
  ASSERT_EQ(mprotect(m.unreadable(0), kPage, PROT_NONE), 0);
  expect_ffr_clear(0, 0);
  EXPECT_EQ(elem(s.z[kZt], 1, 47), static_cast<uint8_t>(kPage + 40));
}

TEST_F(NonFault, WhollyUnreadableClearsActiveElementsOnlyAndKeepsZ) {
  s.regs[kXn] = address_of(m.unreadable(0) + 64);
  run(non_fault(kLdnf1h));
  for (unsigned i = 0; i < 24; ++i) {
    const bool on = s.p[kPg][2 * i] & 1;
    EXPECT_EQ(s.ffr[2 * i], on ? 0 : 1) << i;
    EXPECT_EQ(s.ffr[2 * i + 1], on ? 0 : 1) << i;
    EXPECT_EQ(elem(s.z[kZt], 2, i), on ? elem(old_z, 2, i) : 0u) << i;
  }
}

TEST_F(NonFault, CrossingIntoAReadablePageLoadsWhatLiesThere) {
  all_active();
  s.regs[kXn] = address_of(m.readable(1) - 5 * 4);
  run(non_fault(kLdnf1w));
  expect_ffr_clear(0, 20);
  expect_old_z(0, 20);
  for (unsigned i = 5; i < 12; ++i) {
    uint32_t want;
    std::memcpy(&want, m.readable(1) + 4 * (i - 5), 4);
    EXPECT_EQ(elem(s.z[kZt], 4, i), want) << i;
  }
}

TEST_F(NonFault, EndingAtAnUnreadablePageLoadsAllAndOneVectorOnNone) {
  all_active();
  s.regs[kXn] = address_of(m.unreadable(0) - 6);
  run(non_fault(kLdnf1sbToD, 0));
  for (unsigned i = 0; i < 6; ++i) {
    const int8_t byte = static_cast<int8_t>(kPage - 6 + i + 1);
    EXPECT_EQ(elem(s.z[kZt], 8, i), static_cast<uint64_t>(int64_t{byte})) << i;
  }
  expect_ffr_clear(0, 0);
  // One vector on (6 bytes): the whole access is unreadable.
  run(non_fault(kLdnf1sbToD, 1));
  expect_ffr_clear(0, 48);
}

TEST_F(NonFault, InactiveFirstElementUsesTheProbeOfTheStartAddress) {
  all_active();
  s.p[kPg][0] = 0;
  s.regs[kXn] = address_of(m.unreadable(0) + kPage - 1); // byte 0 unreadable, 1..47 readable
  run(non_fault(kLdnf1b));
  EXPECT_EQ(elem(s.z[kZt], 1, 0), 0u);
  for (unsigned i = 1; i < 48; ++i)
    EXPECT_EQ(elem(s.z[kZt], 1, i), static_cast<uint8_t>(2 * kPage + i)) << i;
  expect_ffr_clear(0, 0);
  // With element 0 active it alone fails.
  SetUp();
  all_active();
  s.regs[kXn] = address_of(m.unreadable(0) + kPage - 1);
  run(non_fault(kLdnf1b));
  expect_ffr_clear(0, 1);
  expect_old_z(0, 1);
}

TEST_F(NonFault, FfrIsOnlyEverCleared) {
  for (unsigned b = 0; b < 48; ++b) s.ffr[b] = b % 3 == 0;
  uint8_t before[48];
  std::memcpy(before, s.ffr, 48);
  all_active();
  s.regs[kXn] = address_of(m.readable(0) + 100);
  run(non_fault(kLdnf1b));
  EXPECT_EQ(std::memcmp(s.ffr, before, 48), 0);
}

TEST_F(FaultTolerantTrace, RecordsEveryActiveElementAsAPlainLoadWould) {
  enable_trace = 1;
  all_active();
  s.p[kPg][4] = 0;
  s.regs[kXn] = address_of(m.unreadable(0) + 32);
  run(non_fault(kLdnf1w)); // nothing readable, still traced
  all_active();
  s.regs[kXn] = address_of(m.unreadable(0) - 10);
  run(first_fault(kLdff1b)); // 10 of 48 loaded, 48 traced
  enable_trace = 0;
  const auto records = recorded_records();
  ASSERT_EQ(records.size(), 3u);
  EXPECT_EQ(records[0].addr, address_of(m.unreadable(0) + 32));
  EXPECT_EQ(records[0].size, 4u);
  EXPECT_EQ(records[1].addr, address_of(m.unreadable(0) + 40));
  EXPECT_EQ(records[1].size, 40u);
  EXPECT_EQ(records[2].addr, address_of(m.unreadable(0) - 10));
  EXPECT_EQ(records[2].size, 48u);
  for (const auto& r : records) EXPECT_EQ(r.type, memaccess_load);
}

} // namespace

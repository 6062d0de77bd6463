// Linear access records: one per maximal run of active elements.
#include <gtest/gtest.h>

#include <pthread.h>

#include <cstring>
#include <random>
#include <vector>

#include "recording_sink.h"
#include "trace/memtrace_lin.h"

namespace {

struct run_t {
  uint64_t addr, size;
  bool operator==(const run_t& o) const { return addr == o.addr && size == o.size; }
};
std::ostream& operator<<(std::ostream& os, const run_t& r) {
  return os << "{0x" << std::hex << r.addr << ", " << std::dec << r.size << "}";
}

// Sends one access through memtrace_lin with the gate open and returns the
// runs it reported, after checking everything in the records but addr and
// size.
template <typename T, typename U>
std::vector<run_t> trace(uint64_t base, const char* pred, memaccess_type_t type = memaccess_load) {
  recording_reset();
  cpu_state s{};
  s.pc = 0x400abc;
  char p[48];
  std::memcpy(p, pred, 48);
  enable_trace = 1;
  memtrace_lin<T, U>(&s, reinterpret_cast<T*>(base), p, type);
  enable_trace = 0;
  std::vector<run_t> out;
  const std::vector<sve_mem_ref_t> records = recorded_records();
  for (size_t i = 0; i < records.size(); ++i) {
    const sve_mem_ref_t& r = records[i];
    EXPECT_EQ(r.seq, i);
    EXPECT_EQ(static_cast<uint32_t>(r.tid), static_cast<uint32_t>(pthread_self()));
    EXPECT_EQ(r.flags, 0u);
    EXPECT_EQ(r.type, type);
    EXPECT_EQ(r.pc, 0x400abcu);
    out.push_back({r.addr, r.size});
  }
  EXPECT_EQ(recorded_calls().incr_count, records.size());
  return out;
}

// A predicate whose element i is active when active[i]; every other bit of
// every byte is noise that must be ignored.
template <typename U>
void make_pred(const std::vector<bool>& active, char* p, std::mt19937_64& rng) {
  for (unsigned i = 0; i < 48; ++i) p[i] = static_cast<char>(rng() & 0xfe);
  for (unsigned i = 0; i < active.size(); ++i) p[i * sizeof(U)] |= active[i];
}

template <typename T>
std::vector<run_t> expected_runs(uint64_t base, const std::vector<bool>& active) {
  std::vector<run_t> out;
  for (unsigned i = 0; i < active.size(); ++i) {
    if (!active[i]) continue;
    if (i > 0 && active[i - 1])
      out.back().size += sizeof(T);
    else
      out.push_back({base + i * sizeof(T), sizeof(T)});
  }
  return out;
}

template <typename Pair> class MemtraceLin : public ::testing::Test {};
template <typename T, typename U> struct widths {
  using mem = T;
  using reg = U;
};
using AllWidths = ::testing::Types<widths<uint8_t, uint8_t>, widths<signed char, short>,
                                   widths<uint8_t, uint32_t>, widths<uint8_t, uint64_t>,
                                   widths<uint16_t, uint16_t>, widths<int16_t, int32_t>,
                                   widths<uint16_t, uint64_t>, widths<uint32_t, uint32_t>,
                                   widths<int32_t, int64_t>, widths<uint64_t, uint64_t>>;
TYPED_TEST_SUITE(MemtraceLin, AllWidths);

TYPED_TEST(MemtraceLin, EachMaximalRunOfActiveElementsIsOneRecord) {
  using T = typename TypeParam::mem;
  using U = typename TypeParam::reg;
  constexpr unsigned E = 48 / sizeof(U);
  std::mt19937_64 rng(sizeof(T) * 16 + sizeof(U));
  std::vector<std::vector<bool>> patterns;
  patterns.push_back(std::vector<bool>(E, true)); // the common case: one record
  std::vector<bool> p(E, true);
  p[0] = false; // not the all-active case
  patterns.push_back(p);
  p.assign(E, false);
  p[E - 1] = true; // a run reaching the last element is sent once
  patterns.push_back(p);
  for (unsigned i = 0; i < E; ++i) p[i] = i % 2 == 0;
  patterns.push_back(p);
  for (int trial = 0; trial < 300; ++trial) {
    const unsigned density = rng() % 4; // sparse to dense
    for (unsigned i = 0; i < E; ++i) p[i] = rng() % 4 <= density;
    patterns.push_back(p);
  }
  const uint64_t base = 0x7f0000001000 + rng() % 4096;
  for (const std::vector<bool>& active : patterns) {
    char pred[48];
    make_pred<U>(active, pred, rng);
    ASSERT_EQ((trace<T, U>(base, pred, memaccess_store)), expected_runs<T>(base, active));
  }
}

TYPED_TEST(MemtraceLin, ClosedGateOrNoActiveElementCallsNothing) {
  using T = typename TypeParam::mem;
  using U = typename TypeParam::reg;
  std::mt19937_64 rng(7);
  recording_reset();
  cpu_state s{};
  char pred[48];
  make_pred<U>(std::vector<bool>(48 / sizeof(U), true), pred, rng);
  enable_trace = 0;
  memtrace_lin<T, U>(&s, nullptr, pred, memaccess_load);
  make_pred<U>(std::vector<bool>(48 / sizeof(U), false), pred, rng);
  enable_trace = 1;
  memtrace_lin<T, U>(&s, nullptr, pred, memaccess_load);
  enable_trace = 0;
  EXPECT_EQ(recorded_calls().incr_count, 0u);
  EXPECT_EQ(recorded_calls().trace_mem, 0u);
}

std::vector<bool> only(unsigned elements, std::initializer_list<unsigned> on) {
  std::vector<bool> v(elements, false);
  for (unsigned i : on) v[i] = true;
  return v;
}

TEST(MemtraceLinExamples, WorkedByHand) {
  std::mt19937_64 rng(8);
  char p[48];
  using R = std::vector<run_t>;
  make_pred<uint8_t>(std::vector<bool>(48, true), p, rng);
  EXPECT_EQ((trace<uint8_t, uint8_t>(0x1000, p)), (R{{0x1000, 48}}));
  make_pred<uint8_t>(only(48, {0, 1, 2, 3, 10}), p, rng);
  EXPECT_EQ((trace<uint8_t, uint8_t>(0x1000, p)), (R{{0x1000, 4}, {0x100a, 1}}));
  make_pred<uint8_t>(only(48, {47}), p, rng);
  EXPECT_EQ((trace<uint8_t, uint8_t>(0x1000, p)), (R{{0x102f, 1}}));
  make_pred<uint32_t>(only(12, {1, 2, 11}), p, rng);
  EXPECT_EQ((trace<uint16_t, uint32_t>(0x2000, p)), (R{{0x2002, 4}, {0x2016, 2}}));
  make_pred<uint32_t>(std::vector<bool>(12, true), p, rng);
  EXPECT_EQ((trace<uint8_t, uint32_t>(0x3000, p)), (R{{0x3000, 12}}));
  make_pred<uint32_t>(only(12, {0, 1, 2, 3, 4, 6, 7, 8, 9, 10, 11}), p, rng);
  EXPECT_EQ((trace<uint8_t, uint32_t>(0x3000, p)), (R{{0x3000, 5}, {0x3006, 6}}));
}

TEST(MemtraceLinExamples, OnlyBitZeroOfEachElementsFirstByteCounts) {
  char p[48];
  for (unsigned i = 0; i < 48; ++i) p[i] = i % 2 ? 1 : static_cast<char>(0xfe);
  EXPECT_TRUE((trace<uint16_t, uint16_t>(0x1000, p)).empty()); // odd bytes are not first bytes
  EXPECT_EQ((trace<uint8_t, uint8_t>(0x1000, p)).size(), 24u); // but they are for bytes
}

} // namespace

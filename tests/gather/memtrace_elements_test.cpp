// Element-wise access records: one per element access, bracketed by flags.
#include <gtest/gtest.h>

#include <pthread.h>

#include <cstring>
#include <vector>

#include "recording_sink.h"
#include "trace/memtrace_elements.h"

namespace {

struct traced {
  std::vector<uint64_t> addrs;
  std::vector<uint32_t> flags;
};

// Element i's address is 0x10000 + 0x100 * i + k for component k; every
// predicate byte but bit 0 of an element's first one is noise.
traced trace(const std::vector<unsigned>& active, unsigned esize, unsigned msize,
             unsigned components = 1, memaccess_type_t type = memaccess_store) {
  recording_reset();
  cpu_state s{};
  s.pc = 0x4008f0;
  uint8_t pred[48];
  for (unsigned b = 0; b < 48; ++b)
    pred[b] = static_cast<uint8_t>(b % esize ? 0xff - b : 0x80 | (b & 0x7e));
  uint64_t addrs[48 * 4];
  for (unsigned i = 0; i < 48 * 4; ++i) addrs[i] = 0xdead0000 + i; // never expected
  for (unsigned i : active) {
    pred[i * esize] |= 1;
    for (unsigned k = 0; k < components; ++k) addrs[i * components + k] = 0x10000 + 0x100 * i + k;
  }
  enable_trace = 1;
  memtrace_elements(&s, addrs, pred, esize, msize, type, components);
  enable_trace = 0;
  traced out;
  const std::vector<sve_mem_ref_t> records = recorded_records();
  for (size_t n = 0; n < records.size(); ++n) {
    const sve_mem_ref_t& r = records[n];
    EXPECT_EQ(r.seq, n);
    EXPECT_EQ(static_cast<uint32_t>(r.tid), static_cast<uint32_t>(pthread_self()));
    EXPECT_EQ(r.type, type);
    EXPECT_EQ(r.size, msize);
    EXPECT_EQ(r.pc, 0x4008f0u);
    out.addrs.push_back(r.addr);
    out.flags.push_back(r.flags);
  }
  EXPECT_EQ(recorded_calls().incr_count, records.size());
  return out;
}

TEST(MemtraceElements, FlagsBracketTheActiveElementsNotTheElementNumbers) {
  EXPECT_EQ(trace({5}, 8, 8).flags, (std::vector<uint32_t>{7}));
  EXPECT_EQ(trace({5}, 8, 8).addrs, (std::vector<uint64_t>{0x10500}));
  EXPECT_EQ(trace({2, 9}, 4, 1).flags, (std::vector<uint32_t>{3, 6}));
  EXPECT_EQ(trace({0, 1, 2, 3, 4, 5}, 8, 4).flags, (std::vector<uint32_t>{3, 2, 2, 2, 2, 6}));
  const traced all = trace({0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11}, 4, 2);
  EXPECT_EQ(all.addrs.size(), 12u);
  EXPECT_EQ(all.addrs[11], 0x10b00u);
}

TEST(MemtraceElements, NothingWithoutActiveElementsOrWithTheGateClosed) {
  EXPECT_TRUE(trace({}, 4, 4).addrs.empty());
  EXPECT_EQ(recorded_calls().incr_count, 0u);

  recording_reset();
  cpu_state s{};
  uint8_t pred[48];
  std::memset(pred, 1, 48);
  const uint64_t addrs[6] = {1, 2, 3, 4, 5, 6};
  memtrace_elements(&s, addrs, pred, 8, 8, memaccess_load);
  EXPECT_EQ(recorded_calls().incr_count, 0u);
  EXPECT_EQ(recorded_calls().trace_mem, 0u);
}

TEST(MemtraceElements, EachComponentOfAStructureHasItsRecord) {
  const traced t = trace({1, 4}, 2, 2, 3, memaccess_load);
  EXPECT_EQ(t.addrs, (std::vector<uint64_t>{0x10100, 0x10101, 0x10102, 0x10400, 0x10401, 0x10402}));
  EXPECT_EQ(t.flags, (std::vector<uint32_t>{3, 2, 2, 2, 2, 6}));
  EXPECT_EQ(trace({47}, 1, 1, 2).flags, (std::vector<uint32_t>{3, 6}));
}

} // namespace

// Region-of-interest markers, run from their instruction words.
#include <gtest/gtest.h>

#include <cstring>
#include <random>
#include <thread>

#include "decode/sve_utils.h"
#include "recording_sink.h"
#include "trace/memtrace_lin.h"
#include "trace/roi.h"

namespace {

constexpr uint32_t kStart = 0x2520e020, kStop = 0x2520e040;

// ADD Zdn.<size>, Zdn.<size>, #imm8{, LSL #8}
uint32_t add_imm(unsigned size, unsigned zdn, unsigned imm8, bool shift) {
  return 0x2520c000 | size << 22 | (shift ? 1u << 13 : 0) | imm8 << 5 | zdn;
}

void run(cpu_state* s, uint32_t word) {
  const sve_decoder d = get_sve_handler(word);
  ASSERT_NE(d, nullptr) << std::hex << word;
  ASSERT_EQ(d(s, word), AARCH64_DECODE_OK);
}

void expect_marker(const sve_mem_ref_t& r, uint64_t seq, int32_t tid) {
  EXPECT_EQ(r.seq, seq);
  EXPECT_EQ(r.tid, tid);
  EXPECT_EQ(r.flags, 0u);
  EXPECT_EQ(r.type, memaccess_store);
  EXPECT_EQ(r.size, 0u);
  EXPECT_EQ(r.addr, 0u);
  EXPECT_EQ(r.pc, 0u);
}

std::vector<int32_t> tids() {
  std::vector<int32_t> out;
  for (const sve_mem_ref_t& r : recorded_records()) out.push_back(r.tid);
  return out;
}

class Roi : public ::testing::Test {
protected:
  void SetUp() override {
    enable_trace = 0;
    trace_roi = sve_mem_ref_t{};
    recording_reset();
  }
};

TEST_F(Roi, MarkersMoveTheGateAndSendTheirRecordWithoutTouchingRegisters) {
  std::mt19937_64 rng(6);
  cpu_state s;
  auto* bytes = reinterpret_cast<uint8_t*>(&s);
  for (size_t i = 0; i < sizeof s; ++i) bytes[i] = static_cast<uint8_t>(rng());
  const cpu_state before = s;

  run(&s, kStart | 7);
  EXPECT_EQ(enable_trace, 1);
  run(&s, kStop | 31);
  EXPECT_EQ(enable_trace, 0);

  const std::vector<sve_mem_ref_t> r = recorded_records();
  ASSERT_EQ(r.size(), 2u);
  expect_marker(r[0], 0, roi_start_marker); // pc stays 0 although the state has one
  expect_marker(r[1], 1, roi_stop_marker);
  EXPECT_EQ(trace_roi.seq, 1u);
  s.raw_instr = before.raw_instr;
  EXPECT_EQ(std::memcmp(&s, &before, sizeof s), 0);
}

TEST_F(Roi, MarkersDoNotNestAndAlwaysSendTheirRecord) {
  cpu_state s{};
  run(&s, kStop | 1); // stop with the gate closed
  EXPECT_EQ(enable_trace, 0);
  run(&s, kStart | 2);
  run(&s, kStart | 3); // a second start: still open
  EXPECT_EQ(enable_trace, 1);
  run(&s, kStop | 4); // one stop closes it, whatever came before
  EXPECT_EQ(enable_trace, 0);
  EXPECT_EQ(tids(), (std::vector<int32_t>{-2, -1, -1, -2}));
  EXPECT_EQ(recorded_calls().incr_count, 4u);
}

TEST_F(Roi, OnlyByteAddsOfExactly256Or512AreMarkers) {
  cpu_state s{};
  for (bool open : {false, true}) {
    enable_trace = open;
    run(&s, add_imm(1, 3, 1, true));  // halfword + 256
    run(&s, add_imm(2, 3, 2, true));  // word + 512
    run(&s, add_imm(3, 3, 1, true));  // doubleword + 256
    run(&s, add_imm(0, 4, 1, false)); // byte + 1, unshifted
    run(&s, add_imm(0, 4, 2, false)); // byte + 2, unshifted
    EXPECT_EQ(enable_trace, open);
  }
  // Any other shifted byte add is reserved: refused, never a marker.
  EXPECT_EQ(get_sve_handler(add_imm(0, 3, 3, true)), nullptr);
  EXPECT_EQ(get_sve_handler(add_imm(0, 3, 0, true)), nullptr);
  EXPECT_TRUE(recorded_records().empty());
  EXPECT_EQ(recorded_calls().incr_count, 0u);
  // Every one of them was carried out as an add, twice.
  uint64_t d;
  std::memcpy(&d, s.z[3] + 40, 8);
  EXPECT_EQ(d, 2 * (0x0100010001000100u + 0x0000020000000200u + 0x100u));
  for (unsigned i = 0; i < 48; ++i) EXPECT_EQ(s.z[4][i], 6);
}

TEST_F(Roi, ANewThreadStartsClosedAndEachThreadHasItsOwnGate) {
  cpu_state s{};
  run(&s, kStart);
  char all[48];
  std::memset(all, 1, sizeof all);
  std::thread child([&] {
    cpu_state c{};
    EXPECT_EQ(enable_trace, 0);
    EXPECT_EQ(trace_roi.seq, 0u); // the parent's marker record is not this thread's
    memtrace_lin<uint8_t, uint8_t>(&c, nullptr, all, memaccess_load);
    EXPECT_EQ(recorded_records().size(), 1u); // only the parent's start
    run(&c, kStart);
    memtrace_lin<uint8_t, uint8_t>(&c, nullptr, all, memaccess_load);
    run(&c, kStop);
  });
  child.join();
  EXPECT_EQ(enable_trace, 1); // the child's stop closed only its own gate
  EXPECT_EQ(trace_roi.tid, roi_start_marker);
  EXPECT_EQ(tids().size(), 4u);
  EXPECT_EQ(tids()[1], -1);
  EXPECT_EQ(tids()[3], -2);
}

} // namespace

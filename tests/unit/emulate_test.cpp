// The entry from generated code: spill slots, pc, and the failure message.
#include <gtest/gtest.h>

#include <cstdio>

#include "client/emulate.h"
#include "decode/sve_utils.h"
#include "fake_runtime.h"
#include "test_state.h"

namespace {

uint64_t seen[3];

// Records X26..X28 as the decoder sees them and changes them.
aarch64_decode_rc rotate_spilled(cpu_state* s, uint32_t) {
  for (int i = 0; i < 3; ++i) seen[i] = s->regs[26 + i];
  s->regs[26] = seen[2];
  s->regs[27] = seen[0];
  s->regs[28] = seen[1];
  return AARCH64_DECODE_OK;
}

aarch64_decode_rc fails_after_writing_x27(cpu_state* s, uint32_t) {
  s->regs[27] = 0x2727;
  return AARCH64_DECODE_UNIMPLEMENTED;
}

struct EmulateTest : ::testing::Test {
  cpu_state state{};
  fake_thread thread{};
  void SetUp() override {
    thread.state = &state;
    fake_current_thread = &thread;
  }
};

TEST_F(EmulateTest, SpilledRegistersRoundTripThroughTheSlots) {
  thread.slots[SPILL_SLOT_1] = 0x2626;
  thread.slots[SPILL_SLOT_2] = 0x2727;
  thread.slots[SPILL_SLOT_3] = 0x2828;
  thread.slots[SPILL_SLOT_4] = 0x4444;
  const uint32_t word = 0x04e704c5;
  emulate_instruction(word, reinterpret_cast<uint8_t*>(const_cast<uint32_t*>(&word)),
                      rotate_spilled);
  EXPECT_EQ(seen[0], 0x2626u);
  EXPECT_EQ(seen[1], 0x2727u);
  EXPECT_EQ(seen[2], 0x2828u);
  EXPECT_EQ(thread.slots[SPILL_SLOT_1], 0x2828u);
  EXPECT_EQ(thread.slots[SPILL_SLOT_2], 0x2626u);
  EXPECT_EQ(thread.slots[SPILL_SLOT_3], 0x2727u);
  EXPECT_EQ(thread.slots[SPILL_SLOT_4], 0x4444u);
  EXPECT_EQ(state.pc, reinterpret_cast<uint64_t>(&word));
}

TEST_F(EmulateTest, FailureReportsTheWordInMemoryAndStillWritesBack) {
  const uint32_t in_memory = 0x04e704c5;
  testing::internal::CaptureStderr();
  emulate_instruction(0x12345678, reinterpret_cast<uint8_t*>(const_cast<uint32_t*>(&in_memory)),
                      fails_after_writing_x27);
  const std::string err = testing::internal::GetCapturedStderr();
  char want[128];
  std::snprintf(want, sizeof want, "Error: failed to emulate SVE instruction 0x04e704c5 at PC %p\n",
                static_cast<const void*>(&in_memory));
  EXPECT_EQ(err, want);
  EXPECT_EQ(thread.slots[SPILL_SLOT_2], 0x2727u);
}

TEST_F(EmulateTest, FailureAtAPatchedWordReportsTheApplicationsWord) {
  const uint32_t branch_in_memory = 0x14000040; // b .+256
  fake_patched_pc = reinterpret_cast<app_pc>(const_cast<uint32_t*>(&branch_in_memory));
  fake_original_word = 0x04e704c5;
  testing::internal::CaptureStderr();
  emulate_instruction(0x12345678, fake_patched_pc, fails_after_writing_x27);
  const std::string err = testing::internal::GetCapturedStderr();
  fake_patched_pc = nullptr;
  char want[128];
  std::snprintf(want, sizeof want, "Error: failed to emulate SVE instruction 0x04e704c5 at PC %p\n",
                static_cast<const void*>(&branch_in_memory));
  EXPECT_EQ(err, want);
}

TEST_F(EmulateTest, RunsARealDecoderOnTheThreadsState) {
  std::mt19937_64 rng(5);
  randomize(&state, rng);
  const cpu_state before = state;
  const uint32_t word = 0x04e704c5; // sub z5.d, z6.d, z7.d
  testing::internal::CaptureStderr();
  emulate_instruction(word, reinterpret_cast<uint8_t*>(const_cast<uint32_t*>(&word)),
                      get_sve_handler(word));
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
  for (unsigned i = 0; i < 6; ++i)
    EXPECT_EQ(elem(state.z[5], 8, i), elem(before.z[6], 8, i) - elem(before.z[7], 8, i));
}

} // namespace

// The runtime's own machinery, without a process to run: building fragments,
// the call out of generated code, the code cache, the fragment table and
// the event registries.
#include <gtest/gtest.h>
#include <sys/mman.h>

#include <cstring>
#include <vector>

#include "block.h"
#include "branch_entry.h"
#include "code_retire.h"
#include "code_words.h"
#include "emit.h"
#include "fragments.h"
#include "runtime.h"
#include "thread.h"

namespace {

constexpr uint32_t kNop = 0xd503201f;

struct CoreTest : ::testing::Test {
  void SetUp() override {
    t = current_thread() ? current_thread() : attach_thread();
    ASSERT_NE(t, nullptr);
  }
  rt_thread* t = nullptr;
};

// What the fake client saw of the last block, and how many of its SVE words
// it replaces (each by movz x1, #index).
struct seen_block {
  void* tag;
  int opcode_first;
  reg_id_t first_dst, first_src;
  app_pc first_pc;
  std::vector<app_pc> app_pcs;
};
seen_block seen;
int words_to_replace;

dr_emit_flags_t fake_client(void* dc, void* tag, instrlist_t* bb, bool, bool) {
  seen = seen_block{};
  seen.tag = tag;
  instr_t* first = instrlist_first_app(bb);
  seen.opcode_first = instr_get_opcode(first);
  seen.first_dst = opnd_get_reg(instr_get_dst(first, 0));
  seen.first_src = opnd_get_reg(instr_get_src(first, 0));
  seen.first_pc = instr_get_app_pc(first);
  int index = 0;
  instr_t* next;
  for (instr_t* i = instr_get_next_app(first); i; i = next) {
    next = instr_get_next_app(i);
    seen.app_pcs.push_back(instr_get_app_pc(i));
    if (index < words_to_replace) {
      instrlist_preinsert(bb, i,
                          INSTR_CREATE_movz(dc, opnd_create_reg(DR_REG_X1), OPND_CREATE_INT(index),
                                            OPND_CREATE_INT(0)));
      instrlist_remove(bb, i);
      instr_destroy(dc, i);
    }
    ++index;
  }
  return DR_EMIT_DEFAULT;
}

struct with_fake_client {
  explicit with_fake_client(int replace) {
    words_to_replace = replace;
    drmgr_register_bb_app2app_event(fake_client, nullptr);
  }
  ~with_fake_client() { drmgr_unregister_bb_app2app_event(fake_client); }
};

TEST_F(CoreTest, FragmentWrapsTheClientsCodeAndBranchesBehindTheBlock) {
  static uint32_t app[] = {kSveAdd, kSveSub, kSveAdd, kNop, kSveAdd};
  const auto tag = reinterpret_cast<app_pc>(app);
  with_fake_client client(3);
  const uint64_t built = counters.blocks_built;
  fragment* f = build_fragment(t, tag);
  ASSERT_NE(f, nullptr);
  ASSERT_NE(f->code, nullptr);
  EXPECT_EQ(counters.blocks_built, built + 1);

  // The client saw msr fpcr, x0 at the block's address, then the three SVE
  // words and not the nop.
  EXPECT_EQ(seen.tag, tag);
  EXPECT_EQ(seen.opcode_first, OP_msr);
  EXPECT_EQ(seen.first_dst, DR_REG_FPCR);
  EXPECT_EQ(seen.first_src, DR_REG_X0);
  EXPECT_EQ(seen.first_pc, tag);
  EXPECT_EQ(seen.app_pcs, (std::vector<app_pc>{tag, tag + 4, tag + 8}));

  const byte* c = f->code;
  const uint32_t expected[] = {
      0xf9004b80, // str x0, [x28, #144]: the application's X0
      0xd53b4400, // mrs x0, fpcr
      0xf9404b80, // ldr x0, [x28, #144]: in place of the msr
      0xd2800001, // movz x1, #0
      0xd2800021, // movz x1, #1
      0xd2800041, // movz x1, #2
      0xf940479c, // ldr x28, [x28, #136]: the application's X28
  };
  for (size_t i = 0; i < sizeof expected / 4; ++i)
    EXPECT_EQ(word_at(c + 4 * i), expected[i]) << "word " << i;
  EXPECT_EQ(branch_target(c + sizeof expected), tag + 12);
  EXPECT_TRUE(in_code_cache(f->code));
  EXPECT_EQ(find_fragment(tag), f);
}

// A loop the client leaves as it is: the exit carries out its branch.
TEST_F(CoreTest, ALoopBranchLeftInTheBlockIsTakenByTheExit) {
  static uint32_t app[] = {kSveAdd, 0xf1000529 /* subs x9, x9, #1 */, 0x54ffffc1 /* b.ne app */};
  const auto tag = reinterpret_cast<app_pc>(app);
  with_fake_client client(1);
  fragment* f = build_fragment(t, tag);
  ASSERT_NE(f->code, nullptr);
  EXPECT_EQ(seen.app_pcs, (std::vector<app_pc>{tag, tag + 4, tag + 8}));
  const byte* c = f->code + 4 * 3;         // behind the FPCR probe
  EXPECT_EQ(word_at(c), 0xd2800001u);      // the client's word for the SVE add
  EXPECT_EQ(word_at(c + 4), app[1]);       // subs, as it is
  EXPECT_EQ(word_at(c + 8), 0xf940479cu);  // ldr x28: the flags stay
  EXPECT_EQ(word_at(c + 12), 0x54000041u); // b.ne over the way out
  EXPECT_EQ(branch_target(c + 16), tag + 12);
  EXPECT_EQ(branch_target(c + 20), tag);
}

TEST_F(CoreTest, TheFirstWordTheClientKeepsEndsTheBlock) {
  static uint32_t app[] = {kSveAdd, kSveSub, kSveAdd};
  const auto tag = reinterpret_cast<app_pc>(app);
  with_fake_client client(1);
  fragment* f = build_fragment(t, tag);
  ASSERT_NE(f->code, nullptr);
  EXPECT_EQ(branch_target(f->code + 4 * 5), tag + 4);
}

TEST_F(CoreTest, ABlockWhoseFirstWordIsKeptIsTheApplicationsSignal) {
  static uint32_t app[] = {kSveAdd, kSveSub};
  const auto tag = reinterpret_cast<app_pc>(app);
  with_fake_client client(0);
  const uint64_t fragments_before = counters.fragments;
  fragment* f = build_fragment(t, tag);
  ASSERT_NE(f, nullptr);
  EXPECT_EQ(f->code, nullptr);
  EXPECT_EQ(counters.fragments, fragments_before);
  EXPECT_EQ(find_fragment(tag), f);
}

TEST_F(CoreTest, BlocksStopAtOrdinaryWordsPageEndsAndTheirLimit) {
  auto* pages = static_cast<uint32_t*>(map_pages(2 * 4096));
  for (int i = 0; i < 2048; ++i) pages[i] = kSveAdd;
  const auto base = reinterpret_cast<app_pc>(pages);
  EXPECT_EQ(block_words(base), 32);
  EXPECT_EQ(block_words(base + 4096 - 12), 3);
  pages[5] = kNop;
  EXPECT_EQ(block_words(base), 5);
  EXPECT_TRUE(is_sve_word(kSveAdd));
  EXPECT_FALSE(is_sve_word(kNop));
  unmap_pages(pages, 2 * 4096);
}

// add x1, x1, #1; subs x9, x9, #1; orr x3, xzr, x4; movk w5, #1, lsl #16
constexpr uint32_t kAddImm = 0x91000421, kSubsImm = 0xf1000529, kMovReg = 0xaa0403e3,
                   kMovk = 0x72a00025;

TEST_F(CoreTest, PlainWordsJoinABlockBetweenSveWordsAndAClosingBranchMakesALoop) {
  for (uint32_t w : {kAddImm, kSubsImm, kMovReg, kMovk}) EXPECT_TRUE(is_plain_data_word(w)) << w;
  // Naming X28 in any register field, or an unallocated encoding, keeps a
  // word out: it must run where the application has it.
  EXPECT_FALSE(is_plain_data_word(0x91000780)); // add x0, x28, #1
  EXPECT_FALSE(is_plain_data_word(0x8b1c0020)); // add x0, x1, x28
  EXPECT_FALSE(is_plain_data_word(0x9100043c)); // add x28, x1, #1
  EXPECT_FALSE(is_plain_data_word(0x72c00025)); // movk w5 with hw = 2
  EXPECT_FALSE(is_plain_data_word(0x0bc20020)); // add (shifted register), shift 11
  EXPECT_FALSE(is_plain_data_word(kNop));
  EXPECT_FALSE(is_plain_data_word(kSveAdd));

  uint32_t words[] = {kSveAdd, kAddImm, kSveSub, kSubsImm, 0, kNop};
  const auto base = reinterpret_cast<app_pc>(words);
  words[4] = 0x54ffff81; // b.ne words[0]
  EXPECT_EQ(block_words(base), 5);
  EXPECT_TRUE(is_conditional_branch_to(words[4], base + 16, base));
  words[4] = 0x54ffffa1; // b.ne words[1]: not back to the start
  EXPECT_FALSE(is_conditional_branch_to(words[4], base + 16, base));
  EXPECT_EQ(block_words(base), 3); // trailing plain words stay out
  words[4] = kNop;
  EXPECT_EQ(block_words(base), 3);
  EXPECT_EQ(block_words(base + 4), 0); // a block starts with an SVE word
}

// Records what the call out of generated code delivered, and spoils every
// register a C function may spoil.
uint64_t call_args[3];
uintptr_t callee_stack;
void callee(uint64_t a, uint64_t b, uint64_t c) {
  call_args[0] = a;
  call_args[1] = b;
  call_args[2] = c;
  int local;
  callee_stack = reinterpret_cast<uintptr_t>(&local);
  __asm__ volatile("mov x9, #1\n\tmov x18, #2\n\tcmp x9, x18\n\tmovi v0.16b, #0xee\n\t"
                   "movi v31.16b, #0xdd\n\tmsr fpsr, xzr" ::
                       : "x9", "x18", "v0", "v31", "cc");
}

TEST_F(CoreTest, CallOutOfGeneratedCodeKeepsTheMachineState) {
  void* dc = GLOBAL_DCONTEXT;
  auto reg = [](reg_id_t r) { return opnd_create_reg(r); };
  auto at = [](reg_id_t base, int disp, opnd_size_t size) {
    return opnd_create_base_disp(base, DR_REG_NULL, 0, disp, size);
  };
  // harness(block, results, pattern): sets X9, X18, NZCV, FPSR, Q0 and Q31,
  // calls callee(7, 0x123456789, -1) the runtime's way and stores what is
  // left of them.
  instrlist_t* il = instrlist_create(dc);
  instr_t* call_site = INSTR_CREATE_label(dc);
  instr_t* parts[] = {
      INSTR_CREATE_sub(dc, reg(DR_REG_XSP), reg(DR_REG_XSP), OPND_CREATE_INT(32)),
      INSTR_CREATE_stp(dc, at(DR_REG_XSP, 0, OPSZ_16), reg(DR_REG_X28), reg(DR_REG_X30)),
      INSTR_CREATE_add(dc, reg(DR_REG_X28), reg(DR_REG_X0), OPND_CREATE_INT(0)),
      INSTR_CREATE_movz(dc, reg(DR_REG_X9), OPND_CREATE_INT(0x9999), OPND_CREATE_INT(0)),
      INSTR_CREATE_movz(dc, reg(DR_REG_X18), OPND_CREATE_INT(0x1818), OPND_CREATE_INT(0)),
      INSTR_CREATE_movz(dc, reg(DR_REG_X10), OPND_CREATE_INT(0x9000), OPND_CREATE_INT(16)),
      INSTR_CREATE_msr(dc, reg(DR_REG_NZCV), reg(DR_REG_X10)),
      INSTR_CREATE_movz(dc, reg(DR_REG_X10), OPND_CREATE_INT(0x13), OPND_CREATE_INT(0)),
      INSTR_CREATE_msr(dc, reg(DR_REG_FPSR), reg(DR_REG_X10)),
      INSTR_CREATE_ldp(dc, reg(DR_REG_Q0), reg(DR_REG_Q31), at(DR_REG_X2, 0, OPSZ_32)),
      call_site,
      INSTR_CREATE_mrs(dc, reg(DR_REG_X10), reg(DR_REG_NZCV)),
      INSTR_CREATE_stp(dc, at(DR_REG_X1, 0, OPSZ_16), reg(DR_REG_X9), reg(DR_REG_X10)),
      INSTR_CREATE_mrs(dc, reg(DR_REG_X10), reg(DR_REG_FPSR)),
      INSTR_CREATE_stp(dc, at(DR_REG_X1, 16, OPSZ_16), reg(DR_REG_X18), reg(DR_REG_X10)),
      INSTR_CREATE_stp(dc, at(DR_REG_X1, 32, OPSZ_32), reg(DR_REG_Q0), reg(DR_REG_Q31)),
      INSTR_CREATE_ldp(dc, reg(DR_REG_X28), reg(DR_REG_X30), at(DR_REG_XSP, 0, OPSZ_16)),
      INSTR_CREATE_add(dc, reg(DR_REG_XSP), reg(DR_REG_XSP), OPND_CREATE_INT(32)),
      INSTR_CREATE_ret(dc, reg(DR_REG_X30)),
  };
  for (instr_t* p : parts) instrlist_append(il, p);
  dr_insert_call_zorvo(dc, il, call_site, nullptr, reinterpret_cast<void*>(callee), 3,
                       OPND_CREATE_INT32(7), OPND_CREATE_INTPTR(0x123456789),
                       OPND_CREATE_INTPTR(-1));

  auto* page = static_cast<byte*>(map_pages(65536, true));
  byte* pc = page;
  for (instr_t* i = instrlist_first(il); i; i = instr_get_next(i)) {
    pc = instr_encode(dc, i, pc);
    ASSERT_NE(pc, nullptr) << "opcode " << instr_get_opcode(i);
  }
  instrlist_clear_and_destroy(dc, il);
  __builtin___clear_cache(reinterpret_cast<char*>(page), reinterpret_cast<char*>(pc));

  alignas(16) uint8_t pattern[32], results[64];
  for (int i = 0; i < 32; ++i) pattern[i] = static_cast<uint8_t>(i * 9 + 1);
  auto harness = reinterpret_cast<void (*)(void*, void*, void*)>(page);
  harness(&t->block, results, pattern);

  uint64_t r[4];
  std::memcpy(r, results, 32);
  EXPECT_EQ(r[0], 0x9999u);                             // X9
  EXPECT_EQ(r[1], 0x90000000u);                         // NZCV
  EXPECT_EQ(r[2], 0x1818u);                             // X18
  EXPECT_EQ(r[3] & 0x9f, 0x13u);                        // FPSR's cumulative flags
  EXPECT_EQ(std::memcmp(results + 32, pattern, 32), 0); // Q0 and Q31
  EXPECT_EQ(call_args[0], 7u);
  EXPECT_EQ(call_args[1], 0x123456789u);
  EXPECT_EQ(call_args[2], ~uint64_t{0});
  // The callee ran on the thread's runtime stack; the harness found its own
  // stack again, or it could not have returned.
  EXPECT_GT(callee_stack, reinterpret_cast<uintptr_t>(t->stack));
  EXPECT_LT(callee_stack, t->block.stack_top);
  unmap_pages(page, 65536);
}

TEST_F(CoreTest, CodeIsReservedWithinBranchReachOfItsTarget) {
  const auto target = reinterpret_cast<app_pc>(&word_at);
  for (int i = 0; i < 40; ++i) {
    bool near = false;
    byte* code = reserve_code(64 * 1024, target, &near);
    ASSERT_NE(code, nullptr);
    EXPECT_TRUE(near);
    EXPECT_LT(std::abs(code - target), ptrdiff_t(1) << 27);
    EXPECT_TRUE(in_code_cache(code));
  }
  EXPECT_FALSE(in_code_cache(target));
}

TEST_F(CoreTest, AFarFragmentEndsInATrapThatNamesItsTarget) {
  instrlist_t* il = instrlist_create(t);
  app_pc target = reinterpret_cast<app_pc>(uintptr_t{0x123456789abc});
  append_exit(t, il, target, false);
  byte code[32];
  byte* pc = code;
  for (instr_t* i = instrlist_first(il); i; i = instr_get_next(i)) pc = instr_encode(t, i, pc);
  ASSERT_EQ(pc, code + 16);
  EXPECT_EQ(word_at(code), 0xf940479cu); // ldr x28, [x28, #136]
  EXPECT_EQ(exit_trap_target(code + 4), target);
  EXPECT_EQ(exit_trap_target(code), nullptr);
  arena_reset(&t->build_arena);
}

TEST_F(CoreTest, FragmentTableFindsEveryTagAfterGrowing) {
  // Tags no other test uses, without code, so that they retire cleanly.
  const uintptr_t base = uintptr_t{0x7a0000000000};
  for (uintptr_t i = 1; i <= 5000; ++i) {
    fragment* f = add_fragment(reinterpret_cast<app_pc>(base + i * 4), nullptr);
    ASSERT_NE(f, nullptr);
    f->fingerprint = i;
  }
  for (uintptr_t i = 1; i <= 5000; ++i) {
    fragment* f = find_fragment(reinterpret_cast<app_pc>(base + i * 4));
    ASSERT_NE(f, nullptr);
    EXPECT_EQ(f->fingerprint, i);
  }
  EXPECT_EQ(find_fragment(reinterpret_cast<app_pc>(base + 8 * 5001)), nullptr);
  retire_fragments_in(reinterpret_cast<app_pc>(base), reinterpret_cast<app_pc>(base + 4 * 5001),
                      next_retirement());
  EXPECT_EQ(find_fragment(reinterpret_cast<app_pc>(base + 4 * 17)), nullptr);
}

// A retired fragment may still be running in another thread: its room
// serves again only once every thread has been seen outside the fragments
// after the retirement.
TEST_F(CoreTest, ARetiredRoomServesAgainOnlyOnceEveryThreadIsPastIt) {
  static uint32_t app[] = {kSveAdd, kSveSub};
  const auto tag = reinterpret_cast<app_pc>(app);
  with_fake_client client(2);
  fragment* f = build_fragment(t, tag);
  ASSERT_NE(f->code, nullptr);
  byte* const room = f->code - kBranchEntryLength;
  seen_outside_fragments(t);
  const uint64_t before = retirements_every_thread_is_past();
  const uint64_t retirement = next_retirement();
  retire_fragments_in(tag, tag + 4, retirement);
  EXPECT_EQ(find_fragment(tag), nullptr);
  EXPECT_GT(retired_bytes_waiting(), 0u);
  // This thread was last seen before the retirement.
  EXPECT_EQ(retirements_every_thread_is_past(), before);
  bool near = false;
  EXPECT_NE(reserve_code(16, tag, &near), room);
  // Inside an application's handler the thread may have interrupted a
  // fragment: it does not count as outside.
  ++t->interrupted_depth;
  seen_outside_fragments(t);
  --t->interrupted_depth;
  EXPECT_EQ(retirements_every_thread_is_past(), before);
  seen_outside_fragments(t);
  EXPECT_EQ(retirements_every_thread_is_past(), retirement);
  EXPECT_EQ(reserve_code(16, tag, &near), room);
  EXPECT_EQ(retired_bytes_waiting(), 0u);
}

std::vector<int> order;
dr_emit_flags_t first(void*, void*, instrlist_t*, bool, bool) {
  order.push_back(1);
  return DR_EMIT_DEFAULT;
}
dr_emit_flags_t second(void*, void*, instrlist_t*, bool, bool) {
  order.push_back(2);
  return DR_EMIT_DEFAULT;
}
dr_emit_flags_t third(void*, void*, instrlist_t*, bool, bool) {
  order.push_back(3);
  return DR_EMIT_DEFAULT;
}

TEST_F(CoreTest, EventsRunByPriorityAndLeaveWhenUnregistered) {
  drmgr_priority_t late = {sizeof late, "late", nullptr, nullptr, 10};
  drmgr_priority_t early = {sizeof early, "early", nullptr, nullptr, -5};
  ASSERT_TRUE(drmgr_register_bb_app2app_event(third, &late));
  ASSERT_TRUE(drmgr_register_bb_app2app_event(second, nullptr));
  ASSERT_TRUE(drmgr_register_bb_app2app_event(first, &early));
  order.clear();
  run_app2app_events(t, nullptr, nullptr);
  EXPECT_EQ(order, (std::vector<int>{1, 2, 3}));
  EXPECT_TRUE(drmgr_unregister_bb_app2app_event(second));
  EXPECT_FALSE(drmgr_unregister_bb_app2app_event(second));
  order.clear();
  run_app2app_events(t, nullptr, nullptr);
  EXPECT_EQ(order, (std::vector<int>{1, 3}));
  drmgr_unregister_bb_app2app_event(first);
  drmgr_unregister_bb_app2app_event(third);
}

TEST_F(CoreTest, PerThreadServices) {
  const int idx = drmgr_register_tls_field();
  int value;
  EXPECT_EQ(drmgr_get_tls_field(t, idx), nullptr);
  EXPECT_TRUE(drmgr_set_tls_field(t, idx, &value));
  EXPECT_EQ(drmgr_get_tls_field(dr_get_current_drcontext(), idx), &value);

  auto* mem = static_cast<uint8_t*>(dr_thread_alloc(t, 3000));
  for (int i = 0; i < 3000; ++i) ASSERT_EQ(mem[i], 0) << i;
  dr_thread_free(t, mem, 3000);

  dr_write_saved_reg(t, SPILL_SLOT_3, 0x33);
  EXPECT_EQ(t->block.spill[SPILL_SLOT_3], 0x33u);
  EXPECT_EQ(dr_read_saved_reg(t, SPILL_SLOT_3), 0x33u);

  emulated_instr_t short_record = {sizeof(emulated_instr_t) - 8, nullptr, nullptr};
  instrlist_t* il = instrlist_create(t);
  EXPECT_FALSE(drmgr_insert_emulation_start(t, il, nullptr, &short_record));
  emulated_instr_t record = {sizeof record, reinterpret_cast<app_pc>(0x1000), nullptr};
  EXPECT_TRUE(drmgr_insert_emulation_start(t, il, nullptr, &record));
  drmgr_insert_emulation_end(t, il, nullptr);
  emulated_instr_t back;
  ASSERT_TRUE(drmgr_get_emulated_instr_data(instrlist_first(il), &back));
  EXPECT_EQ(back.pc, record.pc);
  EXPECT_TRUE(drmgr_is_emulation_end(instrlist_last(il)));
  EXPECT_EQ(instr_length(t, instrlist_first(il)), 0);
  arena_reset(&t->build_arena);
}

} // namespace

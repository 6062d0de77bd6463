// Patched sites: the branch over a block's first word, the stub that takes
// each thread to its own fragment, and the trap that brings a thread without
// one to the signal handler.
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/mman.h>
#include <ucontext.h>

#include <atomic>
#include <cstring>
#include <fstream>
#include <sstream>
#include <string>
#include <thread>

#include "block.h"
#include "branch_entry.h"
#include "code_retire.h"
#include "code_words.h"
#include "fragments.h"
#include "runtime.h"
#include "sites.h"
#include "thread.h"

namespace {

constexpr uint32_t kRet = 0xd65f03c0;

// Stands in for the client: each SVE word becomes add x9, x9, #x9_step, and
// the words it was handed are kept.
std::vector<uint32_t> words_seen;
int x9_step = 1;
dr_emit_flags_t count_in_x9(void* dc, void*, instrlist_t* bb, bool, bool) {
  words_seen.clear();
  instr_t* next;
  for (instr_t* i = instr_get_next_app(instrlist_first_app(bb)); i; i = next) {
    next = instr_get_next_app(i);
    words_seen.push_back(word_at(instr_get_raw_bits(i)));
    instrlist_preinsert(bb, i,
                        INSTR_CREATE_add(dc, opnd_create_reg(DR_REG_X9), opnd_create_reg(DR_REG_X9),
                                         OPND_CREATE_INT(x9_step)));
    instrlist_remove(bb, i);
    instr_destroy(dc, i);
  }
  return DR_EMIT_DEFAULT;
}

// "Application" code: two SVE words and a return, on a page that, like
// program text, is readable and executable but not writable. The page stays
// mapped, so each test's code has an address of its own.
struct app_code {
  byte* page = nullptr;
  explicit app_code(uint32_t first = kSveAdd, void* at = nullptr) {
    page = static_cast<byte*>(mmap(at, 4096, PROT_READ | PROT_WRITE,
                                   MAP_PRIVATE | MAP_ANONYMOUS | (at ? MAP_FIXED : 0), -1, 0));
    const uint32_t words[] = {first, kSveSub, kRet};
    std::memcpy(page, words, sizeof words);
    mprotect(page, 4096, PROT_READ | PROT_EXEC);
    __builtin___clear_cache(reinterpret_cast<char*>(page), reinterpret_cast<char*>(page + 12));
  }
};

// The permissions /proc/self/maps shows for the mapping holding p.
std::string permissions_of(const void* p) {
  std::ifstream maps("/proc/self/maps");
  const auto addr = reinterpret_cast<uintptr_t>(p);
  for (std::string line; std::getline(maps, line);) {
    std::istringstream in(line);
    uintptr_t start, end;
    char dash;
    std::string perms;
    in >> std::hex >> start >> dash >> end >> perms;
    if (addr >= start && addr < end) return perms.substr(0, 3);
  }
  return "";
}

// Whether the kernel may write into the page: a read from a pipe into it
// fails with EFAULT where it may not.
bool kernel_can_write(void* p) {
  int fds[2];
  if (pipe(fds) != 0) return false;
  const char byte = 1;
  const bool ok = write(fds[1], &byte, 1) == 1 && read(fds[0], p, 1) == 1;
  close(fds[0]);
  close(fds[1]);
  return ok;
}

// What the code leaves in the registers the stub must not change, called with
// X0, X1 and X28 set and the flags at Z and C.
struct machine {
  uint64_t x0, x1, x9, x28, nzcv, sp;
};
machine run(const byte* code, uint64_t* sp_before) {
  machine m;
  __asm__ volatile("mov x0, #0x1111\n\tmov x1, #0x2222\n\tmov x28, #0x2828\n\tmov x9, #5\n\t"
                   "mov x10, #0x60000000\n\tmsr nzcv, x10\n\tmov %[spb], sp\n\t"
                   "blr %[fn]\n\t"
                   "mov %[x0], x0\n\tmov %[x1], x1\n\tmov %[x9], x9\n\tmov %[x28], x28\n\t"
                   "mrs %[nzcv], nzcv\n\tmov %[sp], sp"
                   : [x0] "=&r"(m.x0), [x1] "=&r"(m.x1), [x9] "=&r"(m.x9), [x28] "=&r"(m.x28),
                     [nzcv] "=&r"(m.nzcv), [sp] "=&r"(m.sp), [spb] "=&r"(*sp_before)
                   : [fn] "r"(code)
                   : "x0", "x1", "x9", "x10", "x28", "x30", "memory", "cc");
  return m;
}

struct SitesTest : ::testing::Test {
  void SetUp() override {
    t = current_thread() ? current_thread() : attach_thread();
    ASSERT_NE(t, nullptr);
    drmgr_register_bb_app2app_event(count_in_x9, nullptr);
  }
  void TearDown() override { drmgr_unregister_bb_app2app_event(count_in_x9); }
  rt_thread* t = nullptr;
};

TEST_F(SitesTest, APatchedSiteTakesTheThreadToItsFragmentByBranch) {
  app_code app;
  fragment* f = build_fragment(t, app.page);
  ASSERT_NE(f->code, nullptr);
  ASSERT_TRUE(link_site(t, app.page, f->code));

  // Memory holds a branch to the stub; the application's word is kept.
  byte* stub = branch_target(app.page);
  EXPECT_LT(std::abs(stub - app.page), ptrdiff_t(1) << 27);
  EXPECT_EQ(site_of_stub(stub + kStubTrapOffset), app.page);
  EXPECT_EQ(site_of_stub(stub), nullptr);
  EXPECT_EQ(application_word(app.page), kSveAdd);
  EXPECT_EQ(word_at(dr_app_pc_for_decoding(app.page)), kSveAdd);
  EXPECT_EQ(application_word(app.page + 4), kSveSub);
  EXPECT_EQ(dr_app_pc_for_decoding(app.page + 4), app.page + 4);
  // The page is as it was: not writable, still executable.
  EXPECT_EQ(permissions_of(app.page), "r-x");

  const uint64_t entries = t->block.branch_entries;
  uint64_t sp_before;
  const machine m = run(app.page, &sp_before);
  EXPECT_EQ(m.x9, 7u); // both words ran in the fragment
  EXPECT_EQ(m.x0, 0x1111u);
  EXPECT_EQ(m.x1, 0x2222u);
  EXPECT_EQ(m.x28, 0x2828u);
  EXPECT_EQ(m.nzcv, 0x60000000u);
  EXPECT_EQ(m.sp, sp_before);
  EXPECT_EQ(t->block.branch_entries, entries + 1);

  // The block at the site is read from the application's words, not from
  // the branch, when it is built again (the code was rewritten).
  words_seen.clear();
  retire_fragment(f, next_retirement());
  build_fragment(t, app.page);
  EXPECT_EQ(words_seen, (std::vector<uint32_t>{kSveAdd, kSveSub}));
}

// The trap in the stub, as the runtime's handler meets it.
struct trap_seen {
  app_pc pc, site;
  uint64_t x0, x1, x28, sp;
};
trap_seen trapped;
void on_trap(int, siginfo_t*, void* context) {
  auto* uc = static_cast<ucontext_t*>(context);
  const auto pc = reinterpret_cast<app_pc>(uc->uc_mcontext.pc);
  trapped = {pc,
             site_of_stub(pc),
             uc->uc_mcontext.regs[0],
             uc->uc_mcontext.regs[1],
             uc->uc_mcontext.regs[28],
             uc->uc_mcontext.sp};
  // Carry on behind the block, as if it had run.
  uc->uc_mcontext.pc = reinterpret_cast<uint64_t>(trapped.site + 8);
}

// Runs the site on a new thread, prepared by `prepare` (which returns the
// runtime's record of the thread, if it made one), that finds no fragment
// for it: the thread must trap in the stub with the registers it had at the
// site.
template <typename F> void expect_trap_in_stub(app_code& app, F prepare) {
  struct sigaction action = {}, old;
  action.sa_sigaction = on_trap;
  action.sa_flags = SA_SIGINFO;
  sigaction(SIGILL, &action, &old);
  trapped = {};
  machine m;
  uint64_t sp_before = 0;
  std::thread other([&] {
    rt_thread* made = prepare();
    m = run(app.page, &sp_before);
    if (made != nullptr) detach_thread(made);
  });
  other.join();
  sigaction(SIGILL, &old, nullptr);

  EXPECT_EQ(trapped.site, app.page);
  EXPECT_EQ(word_at(trapped.pc), kSveAdd);
  EXPECT_EQ(trapped.x0, 0x1111u);
  EXPECT_EQ(trapped.x1, 0x2222u);
  EXPECT_EQ(trapped.x28, 0x2828u);
  EXPECT_EQ(trapped.sp, sp_before);
  EXPECT_EQ(m.x9, 5u); // nothing of the fragment ran
  EXPECT_EQ(m.sp, sp_before);
}

TEST_F(SitesTest, AThreadThatFindsNoFragmentTrapsInTheStubWithTheSitesRegisters) {
  app_code app, elsewhere;
  fragment* f = build_fragment(t, app.page);
  ASSERT_TRUE(link_site(t, app.page, f->code));
  // A thread the runtime has never met,
  expect_trap_in_stub(app, []() -> rt_thread* { return nullptr; });
  // and, once the site leads to no fragment, one it has met, with or
  // without fragments elsewhere.
  unlink_site(app.page);
  expect_trap_in_stub(app, [] { return attach_thread(); });
  expect_trap_in_stub(app, [&] {
    rt_thread* other = attach_thread();
    link_site(other, elsewhere.page, build_fragment(other, elsewhere.page)->code);
    return other;
  });
}

// One thread builds the block's fragment; another enters it by the site's
// branch without building anything, with its own thread block in X28 and
// its own entry count.
TEST_F(SitesTest, EveryThreadEntersTheFragmentOneOfThemBuilt) {
  app_code app;
  fragment* built = build_fragment(t, app.page);
  ASSERT_TRUE(link_site(t, app.page, built->code));
  const uint64_t my_entries = t->block.branch_entries;
  const uint64_t blocks_built = counters.blocks_built;
  uint64_t other_entries = 0, sp_before;
  machine m;
  std::thread other([&] {
    rt_thread* other_thread = attach_thread();
    m = run(app.page, &sp_before);
    other_entries = other_thread->block.branch_entries;
    detach_thread(other_thread);
  });
  other.join();
  EXPECT_EQ(m.x9, 7u); // the fragment adds 1 a word
  EXPECT_EQ(m.x28, 0x2828u);
  EXPECT_EQ(other_entries, 1u);
  EXPECT_EQ(counters.blocks_built, blocks_built);
  EXPECT_EQ(t->block.branch_entries, my_entries);
  EXPECT_EQ(run(app.page, &sp_before).x9, 7u);
  EXPECT_EQ(t->block.branch_entries, my_entries + 1);
}

TEST_F(SitesTest, CodeMappedAnewAtAPatchedSiteIsReadAsItIsAndNotLinked) {
  app_code old_code;
  ASSERT_TRUE(link_site(t, old_code.page, build_fragment(t, old_code.page)->code));
  const uint32_t kSveAddVectors = 0x04a10000; // add z0.s, z0.s, z1.s
  app_code new_code(kSveAddVectors, old_code.page);
  ASSERT_EQ(new_code.page, old_code.page);
  EXPECT_EQ(application_word(new_code.page), kSveAddVectors);
  EXPECT_EQ(dr_app_pc_for_decoding(new_code.page), new_code.page);
  EXPECT_FALSE(link_site(t, new_code.page, build_fragment(t, new_code.page)->code));
  EXPECT_EQ(word_at(new_code.page), kSveAddVectors);
}

// Data, and code shared with a file or another process, are not patched.
TEST_F(SitesTest, ASiteOnAPageThatIsNotPrivateCodeStaysAsItIs) {
  for (const int flags : {MAP_PRIVATE, MAP_SHARED}) {
    auto* page = static_cast<byte*>(
        mmap(nullptr, 4096, PROT_READ | PROT_WRITE, flags | MAP_ANONYMOUS, -1, 0));
    std::memcpy(page, &kSveAdd, 4);
    const bool writable = flags == MAP_PRIVATE;
    if (flags == MAP_SHARED) mprotect(page, 4096, PROT_READ | PROT_EXEC);
    byte code[kBranchEntryLength + 4] = {};
    EXPECT_FALSE(link_site(t, page, code + kBranchEntryLength));
    EXPECT_EQ(word_at(page), kSveAdd);
    EXPECT_EQ(application_word(page), kSveAdd);
    // Asked of the kernel, not of /proc/self/maps, where qemu does not
    // always list a page that the program mapped itself.
    EXPECT_EQ(kernel_can_write(page), writable);
  }
}

// Libraries closed and others opened at their address, many times over: each
// new code is patched again and runs its own fragment, in the room and
// through the stub its predecessor had, so nothing grows.
TEST_F(SitesTest, RetiredCodeGivesItsSiteStubAndRoomToCodeMappedAnew) {
  const uint32_t kSveAddVectors = 0x04a10000; // add z0.s, z0.s, z1.s
  app_code first;
  fragment* f = build_fragment(t, first.page);
  ASSERT_TRUE(link_site(t, first.page, f->code));
  byte* const stub = branch_target(first.page);
  byte* const room = f->code;
  for (int round = 1; round <= 100; ++round) {
    retire_code(first.page, first.page + 4096);
    EXPECT_EQ(find_fragment(first.page), nullptr);
    x9_step = round % 2 ? 2 : 1;
    app_code anew(round % 2 ? kSveAddVectors : kSveAdd, first.page);
    fragment* g = build_fragment(t, anew.page);
    ASSERT_EQ(g->code, room) << round;
    ASSERT_TRUE(link_site(t, anew.page, g->code)) << round;
    ASSERT_EQ(branch_target(anew.page), stub) << round;
    uint64_t sp_before;
    ASSERT_EQ(run(anew.page, &sp_before).x9, 5u + 2 * x9_step) << round;
  }
  x9_step = 1;
}

// The entry for a retired site is cleared at once, before any other thread
// enters the runtime again: a branch that still reaches the stub traps
// instead of running the fragment of code that is gone.
TEST_F(SitesTest, RetiringCodeClearsEveryThreadsEntryForItsSites) {
  app_code app;
  struct sigaction action = {}, old;
  action.sa_sigaction = on_trap;
  action.sa_flags = SA_SIGINFO;
  sigaction(SIGILL, &action, &old);
  std::atomic<int> step{0};
  uint64_t x9_linked = 0, x9_retired = 0, sp_before;
  trapped = {};
  std::thread other([&] {
    rt_thread* mine = attach_thread();
    ASSERT_TRUE(link_site(mine, app.page, build_fragment(mine, app.page)->code));
    x9_linked = run(app.page, &sp_before).x9;
    step = 1;
    while (step != 2) sched_yield();
    x9_retired = run(app.page, &sp_before).x9;
    detach_thread(mine);
  });
  while (step != 1) sched_yield();
  retire_code(app.page, app.page + 4096);
  step = 2;
  other.join();
  sigaction(SIGILL, &old, nullptr);
  EXPECT_EQ(x9_linked, 7u);
  EXPECT_EQ(x9_retired, 5u);
  EXPECT_EQ(trapped.site, app.page);
}

// Retiring code elsewhere leaves a thread's fragments and entries alone.
TEST_F(SitesTest, RetiringOtherCodeKeepsTheFragment) {
  app_code app, other;
  ASSERT_TRUE(link_site(t, app.page, build_fragment(t, app.page)->code));
  retire_code(other.page, other.page + 4096);
  ASSERT_NE(find_fragment(app.page), nullptr);
  uint64_t sp_before;
  EXPECT_EQ(run(app.page, &sp_before).x9, 7u);
}

} // namespace

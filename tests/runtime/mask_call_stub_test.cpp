// A statically linked program's rt_sigprocmask site branches to a stub that
// makes the call itself unless the runtime must see it: the stub is run here
// as a program's site would run it, with a SIGILL handler standing in for the
// runtime's at its trap word.
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/mman.h>
#include <sys/syscall.h>
#include <ucontext.h>
#include <unistd.h>

#include <cstdint>
#include <cstring>

#include "code_words.h"
#include "mask_call_stub.h"

namespace {

constexpr uint32_t kRet = 0xd65f03c0;
constexpr uint64_t kX9 = 0x9999000011112222, kX10 = 0xaaaa333344445555;
constexpr long kTrapped = 0x7777;

// A page with a site (its svc, then ret) and the site's stub further on.
struct site_and_stub {
  uint32_t* page = nullptr;
  uint32_t* site = nullptr;
  uint32_t* stub = nullptr;
  uint32_t view_flag = 0;

  site_and_stub() {
    void* p = mmap(nullptr, 4096, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    EXPECT_NE(p, MAP_FAILED);
    page = static_cast<uint32_t*>(p);
    site = page;
    site[0] = mask_call_stub::branch(reinterpret_cast<uintptr_t>(site),
                                     reinterpret_cast<uintptr_t>(page + 64));
    site[1] = kRet;
    stub = page + 64;
    mask_call_stub::write(stub, reinterpret_cast<uintptr_t>(site), &view_flag);
    EXPECT_EQ(mprotect(page, 4096, PROT_READ | PROT_EXEC), 0);
    __builtin___clear_cache(reinterpret_cast<char*>(page), reinterpret_cast<char*>(page) + 4096);
  }
  ~site_and_stub() { munmap(page, 4096); }
};

// What the SIGILL handler saw at the stub's trap.
struct trap_seen {
  int count;
  uintptr_t pc, sp;
  uint64_t x[11];
  uintptr_t resume; // the word after the site, where the runtime would resume
};
trap_seen trap;

void on_sigill(int, siginfo_t*, void* context) {
  auto* uc = static_cast<ucontext_t*>(context);
  ++trap.count;
  trap.pc = uc->uc_mcontext.pc;
  trap.sp = uc->uc_mcontext.sp;
  for (int i = 0; i <= 10; ++i) trap.x[i] = uc->uc_mcontext.regs[i];
  uc->uc_mcontext.regs[0] = kTrapped;
  uc->uc_mcontext.pc = trap.resume;
}

struct call_result {
  long x0;
  uint64_t x9, x10;
  uintptr_t sp_before, sp_after;
};

// Enters the site as the program would: X8 the call's number, X0-X3 its
// arguments; the site's `b` leads to the stub.
call_result call_site(const site_and_stub& s, long how, const uint64_t* set, uint64_t* old) {
  trap.resume = reinterpret_cast<uintptr_t>(s.site + 1);
  call_result r{};
  register long x0 asm("x0") = how;
  register const uint64_t* x1 asm("x1") = set;
  register uint64_t* x2 asm("x2") = old;
  register long x3 asm("x3") = 8;
  register long x8 asm("x8") = SYS_rt_sigprocmask;
  register uint64_t x9 asm("x9") = kX9;
  register uint64_t x10 asm("x10") = kX10;
  register const uint32_t* x16 asm("x16") = s.site;
  uintptr_t sp_before, sp_after;
  asm volatile("mov %[before], sp\n\t"
               "blr x16\n\t"
               "mov %[after], sp"
               : "+r"(x0), "+r"(x9), "+r"(x10), [before] "=&r"(sp_before), [after] "=&r"(sp_after)
               : "r"(x1), "r"(x2), "r"(x3), "r"(x8), "r"(x16)
               : "x30", "memory");
  r.x0 = x0;
  r.x9 = x9;
  r.x10 = x10;
  r.sp_before = sp_before;
  r.sp_after = sp_after;
  return r;
}

uint64_t kernel_mask() {
  uint64_t now = 0;
  syscall(SYS_rt_sigprocmask, SIG_BLOCK, nullptr, &now, 8);
  return now;
}

uint64_t bit(int sig) { return uint64_t{1} << (sig - 1); }

class MaskCallStub : public ::testing::Test {
protected:
  void SetUp() override {
    struct sigaction sa;
    std::memset(&sa, 0, sizeof sa);
    sa.sa_sigaction = on_sigill;
    sa.sa_flags = SA_SIGINFO;
    ASSERT_EQ(sigaction(SIGILL, &sa, &before_), 0);
    trap = trap_seen{};
    mask_before_ = kernel_mask();
  }
  void TearDown() override {
    syscall(SYS_rt_sigprocmask, SIG_SETMASK, &mask_before_, nullptr, 8);
    sigaction(SIGILL, &before_, nullptr);
  }
  struct sigaction before_;
  uint64_t mask_before_ = 0;
  site_and_stub s;
};

TEST_F(MaskCallStub, SiteBranchesToItsStub) {
  EXPECT_EQ(branch_target(reinterpret_cast<byte*>(s.site)), reinterpret_cast<byte*>(s.stub));
  EXPECT_EQ(s.stub[mask_call_stub::kTrapWord], mask_call_stub::kTrap);
}

// A set without the runtime's signals: the kernel makes the call, with the
// program's registers, and the program goes on after the site.
TEST_F(MaskCallStub, CallWithoutRuntimeSignalsMadeDirectly) {
  const uint64_t block = bit(SIGUSR1) | bit(SIGALRM);
  uint64_t old = ~uint64_t(0);
  const call_result r = call_site(s, SIG_BLOCK, &block, &old);
  EXPECT_EQ(r.x0, 0);
  EXPECT_EQ(trap.count, 0);
  EXPECT_EQ(old, mask_before_);
  EXPECT_EQ(kernel_mask(), mask_before_ | block);
  EXPECT_EQ(r.x9, kX9);
  EXPECT_EQ(r.x10, kX10);
  EXPECT_EQ(r.sp_after, r.sp_before);

  const call_result back = call_site(s, SIG_SETMASK, &mask_before_, nullptr);
  EXPECT_EQ(back.x0, 0);
  EXPECT_EQ(kernel_mask(), mask_before_);
  EXPECT_EQ(trap.count, 0);
}

// A read of the mask (no set) and the kernel's own refusal of a bad `how`
// come back from the kernel as they are.
TEST_F(MaskCallStub, ReadAndRefusalComeFromTheKernel) {
  uint64_t old = ~uint64_t(0);
  EXPECT_EQ(call_site(s, SIG_BLOCK, nullptr, &old).x0, 0);
  EXPECT_EQ(old, mask_before_);
  const uint64_t block = bit(SIGUSR2);
  EXPECT_EQ(call_site(s, 99, &block, nullptr).x0, -EINVAL);
  EXPECT_EQ(kernel_mask(), mask_before_);
  EXPECT_EQ(trap.count, 0);
}

// A set that names SIGILL, SIGSEGV or SIGBUS goes to the trap, with every
// register and SP as at the site, and the kernel's mask untouched.
TEST_F(MaskCallStub, RuntimeSignalInTheSetTraps) {
  for (int sig : {SIGILL, SIGSEGV, SIGBUS}) {
    trap = trap_seen{};
    const uint64_t block = bit(SIGUSR1) | bit(sig);
    const call_result r = call_site(s, SIG_BLOCK, &block, nullptr);
    EXPECT_EQ(r.x0, kTrapped) << sig;
    ASSERT_EQ(trap.count, 1) << sig;
    EXPECT_EQ(trap.pc, reinterpret_cast<uintptr_t>(s.stub + mask_call_stub::kTrapWord));
    EXPECT_EQ(trap.sp, r.sp_before);
    EXPECT_EQ(trap.x[0], uint64_t{SIG_BLOCK});
    EXPECT_EQ(trap.x[1], reinterpret_cast<uint64_t>(&block));
    EXPECT_EQ(trap.x[3], 8u);
    EXPECT_EQ(trap.x[8], uint64_t{SYS_rt_sigprocmask});
    EXPECT_EQ(trap.x[9], kX9);
    EXPECT_EQ(trap.x[10], kX10);
    EXPECT_EQ(kernel_mask(), mask_before_) << sig;
  }
}

// Once a view holds a runtime signal, every call traps, reads included.
TEST_F(MaskCallStub, ViewFlagSendsEveryCallToTheTrap) {
  s.view_flag = 1;
  uint64_t old = 0;
  EXPECT_EQ(call_site(s, SIG_BLOCK, nullptr, &old).x0, kTrapped);
  const uint64_t block = bit(SIGUSR1);
  EXPECT_EQ(call_site(s, SIG_BLOCK, &block, nullptr).x0, kTrapped);
  EXPECT_EQ(trap.count, 2);
  EXPECT_EQ(kernel_mask(), mask_before_);
}

} // namespace

// An application with its own SIGILL handler gets its genuine illegal
// instructions and the SIGILLs it sends itself, and none of the signals its
// SVE instructions raise on a processor without SVE.
#include <signal.h>
#include <stdint.h>
#include <stdio.h>
#include <string.h>
#include <ucontext.h>

static volatile int from_instructions, from_senders;

static void on_sigill(int sig, siginfo_t* info, void* context) {
  (void)sig;
  if (info->si_code > 0) {
    // An instruction: step over it.
    ((ucontext_t*)context)->uc_mcontext.pc += 4;
    ++from_instructions;
  } else {
    ++from_senders;
  }
}

int main(void) {
  struct sigaction sa, seen;
  memset(&sa, 0, sizeof sa);
  sa.sa_sigaction = on_sigill;
  sa.sa_flags = SA_SIGINFO;
  sigaction(SIGILL, &sa, NULL);
  sigaction(SIGILL, NULL, &seen);
  printf("handler reads back: %s\n", seen.sa_sigaction == on_sigill ? "yes" : "no");

  uint32_t a[4] = {1, 2, 3, 4}, b[4] = {10, 20, 30, 40}, c[4];
  __asm__ volatile("ldr q1, [%0]\n\tldr q2, [%1]\n\t"
                   "add z0.s, z1.s, z2.s\n\t"
                   "udf #1\n\t"
                   "sub z0.s, z0.s, #1\n\t"
                   ".inst 0x252c9001\n\t" // an SVE word no processor implements
                   "add z0.s, z0.s, z0.s\n\t"
                   "str q0, [%2]"
                   :
                   : "r"(a), "r"(b), "r"(c)
                   : "v0", "v1", "v2", "memory");
  raise(SIGILL);
  printf("result %u %u %u %u\n", c[0], c[1], c[2], c[3]);
  printf("from instructions %d, sent %d\n", from_instructions, from_senders);

  // Blocking SIGILL must not turn the SVE instructions that follow fatal.
  sigset_t block;
  sigemptyset(&block);
  sigaddset(&block, SIGILL);
  sigprocmask(SIG_BLOCK, &block, NULL);
  __asm__ volatile("ldr q1, [%0]\n\tadd z1.s, z1.s, #5\n\tstr q1, [%0]"
                   :
                   : "r"(a)
                   : "v1", "memory");
  printf("after blocking: %u %u %u %u\n", a[0], a[1], a[2], a[3]);

  // Back to the default action: the next genuine illegal instruction ends
  // the program with SIGILL.
  signal(SIGILL, SIG_DFL);
  fflush(stdout);
  sigprocmask(SIG_UNBLOCK, &block, NULL);
  __asm__ volatile("udf #2");
  printf("not reached\n");
  return 0;
}

/* What a program asks of SIGILL holds under emulation as on the reference:
 * its mask reads back as set (and SVE still runs while SIGILL is blocked),
 * and its handler's SA_ONSTACK and SA_RESETHAND. */
#include <signal.h>
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <ucontext.h>

static char* alt_base;
static size_t alt_size = 64 * 1024;
static volatile int on_alt_stack, calls;

static void on_sigill(int sig, siginfo_t* info, void* context) {
  (void)sig, (void)info;
  char here;
  on_alt_stack = &here >= alt_base && &here < alt_base + alt_size;
  ++calls;
  ((ucontext_t*)context)->uc_mcontext.pc += 4; /* over the udf */
}

static void install(int flags) {
  struct sigaction sa;
  memset(&sa, 0, sizeof sa);
  sa.sa_sigaction = on_sigill;
  sa.sa_flags = SA_SIGINFO | flags;
  sigaction(SIGILL, &sa, NULL);
}

static int sve_sum(void) {
  // Room for the longest vector, 64 words; a shorter one leaves the rest 0.
  int32_t a[64], out[64] = {0};
  for (int i = 0; i < 64; ++i) a[i] = i;
  __asm__ volatile("ptrue p0.s\n\tld1w {z0.s}, p0/z, [%0]\n\tadd z0.s, z0.s, z0.s\n\t"
                   "st1w {z0.s}, p0, [%1]"
                   :
                   : "r"(a), "r"(out)
                   : "memory", "v0", "p0");
  int sum = 0;
  for (int i = 0; i < 64; ++i) sum += out[i];
  return sum;
}

static void illegal(void) { __asm__ volatile("udf #7"); }

int main(void) {
  sigset_t block, old, now;
  sigemptyset(&block);
  sigaddset(&block, SIGILL);
  sigprocmask(SIG_BLOCK, &block, &old);
  sigprocmask(SIG_BLOCK, NULL, &now);
  printf("blocked: before %d, now %d\n", sigismember(&old, SIGILL), sigismember(&now, SIGILL));
  printf("SVE while blocked: %d\n", sve_sum());
  pthread_sigmask(SIG_UNBLOCK, &block, &old);
  sigprocmask(SIG_BLOCK, NULL, &now);
  printf("unblocked: before %d, now %d\n", sigismember(&old, SIGILL), sigismember(&now, SIGILL));

  stack_t ss = {.ss_sp = alt_base = malloc(alt_size), .ss_size = alt_size, .ss_flags = 0};
  sigaltstack(&ss, NULL);
  install(SA_ONSTACK);
  illegal();
  printf("SA_ONSTACK: calls %d, on the alternate stack %d\n", calls, on_alt_stack);
  install(0);
  illegal();
  printf("no flags: on the alternate stack %d\n", on_alt_stack);

  install(SA_RESETHAND);
  illegal();
  struct sigaction seen;
  sigaction(SIGILL, NULL, &seen);
  printf("SA_RESETHAND: calls %d, default afterwards %d\n", calls, seen.sa_handler == SIG_DFL);
  printf("SVE after all: %d\n", sve_sum());
  fflush(stdout);
  illegal(); /* the default action now */
  return 0;
}

/* What a program asks of a signal other than SIGILL holds under emulation as
 * on the reference: the old action reads back as it was set, the handler's
 * mask and SA_NODEFER show in the mask the handler reads, SA_RESETHAND
 * leaves the default behind, SA_ONSTACK runs the handler on the alternate
 * stack, SA_SIGINFO hands over who sent the signal; and a handler that runs
 * SVE computes right and leaves the interrupted code's vectors as they were. */
#define _GNU_SOURCE
#include <arm_sve.h>
#include <signal.h>
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

static int32_t data[67];

static int64_t sve_sum(int32_t scale) {
  svint32_t s = svdup_s32(0);
  for (int i = 0; i < 67; i += (int)svcntw()) {
    const svbool_t pg = svwhilelt_b32(i, 67);
    s = svadd_m(pg, s, svmul_x(pg, svld1(pg, data + i), svdup_s32(scale)));
  }
  return svaddv(svptrue_b32(), s);
}

static volatile int depth, deepest, calls, nest = 1;
static volatile int usr1_blocked, usr2_blocked, on_alt;
static volatile int64_t handler_sum;
static char* alt_base;
static const size_t alt_size = 256 * 1024;

static void note_mask(void) {
  sigset_t now;
  sigprocmask(SIG_BLOCK, NULL, &now);
  usr1_blocked = sigismember(&now, SIGUSR1);
  usr2_blocked = sigismember(&now, SIGUSR2);
}

static void on_usr1(int sig) {
  (void)sig;
  char here;
  on_alt = &here >= alt_base && &here < alt_base + alt_size;
  ++calls;
  if (++depth > deepest) deepest = depth;
  note_mask();
  handler_sum = sve_sum(5);
  if (nest && calls < 2) raise(SIGUSR1); /* at once under SA_NODEFER, else after */
  --depth;
}

static volatile int info_code, info_pid_ok, info_signo;

static void on_usr1_info(int sig, siginfo_t* info, void* context) {
  (void)context;
  info_signo = sig == info->si_signo;
  info_code = info->si_code;
  info_pid_ok = info->si_pid == getpid();
  handler_sum = sve_sum(7);
}

static struct sigaction action(void (*handler)(int), int flags) {
  struct sigaction sa;
  memset(&sa, 0, sizeof sa);
  sa.sa_handler = handler;
  sa.sa_flags = flags;
  return sa;
}

static void reset(void) { depth = deepest = calls = 0; }

/* Z5 holds a pattern across a raise whose handler runs SVE. */
static int vectors_kept_across_handler(void) {
  int32_t before[64] = {0}, after[64] = {0};
  __asm__ volatile("index z5.s, #1, #7\n\t"
                   "ptrue p3.s\n\t"
                   "st1w {z5.s}, p3, [%0]\n\t"
                   "mov x0, %2\n\t"
                   "mov x8, #129\n\t" /* kill(getpid(), SIGUSR1) */
                   "mov x1, #10\n\t"
                   "svc #0\n\t"
                   "st1w {z5.s}, p3, [%1]"
                   :
                   : "r"(before), "r"(after), "r"((long)getpid())
                   : "x0", "x1", "x8", "v5", "p3", "memory");
  return memcmp(before, after, sizeof before) == 0;
}

int main(void) {
  for (int i = 0; i < 67; ++i) data[i] = i * 3 - 50;
  const int64_t expect5 = sve_sum(5), expect7 = sve_sum(7);

  struct sigaction first = action(on_usr1, SA_RESTART), seen;
  sigaddset(&first.sa_mask, SIGUSR2);
  sigaction(SIGUSR1, &first, NULL);
  sigaction(SIGUSR1, NULL, &seen);
  printf("read back: own handler %d, SA_RESTART %d, SIGUSR2 in mask %d, SIGUSR1 in mask %d\n",
         seen.sa_handler == on_usr1, (seen.sa_flags & SA_RESTART) != 0,
         sigismember(&seen.sa_mask, SIGUSR2), sigismember(&seen.sa_mask, SIGUSR1));

  reset();
  raise(SIGUSR1);
  printf("deferred: calls %d, deepest %d, SIGUSR1 blocked %d, SIGUSR2 blocked %d, sum %s\n", calls,
         deepest, usr1_blocked, usr2_blocked, handler_sum == expect5 ? "right" : "WRONG");

  struct sigaction nodefer = action(on_usr1, SA_NODEFER), old;
  sigaction(SIGUSR1, &nodefer, &old);
  printf("old action: own handler %d, SIGUSR2 in mask %d\n", old.sa_handler == on_usr1,
         sigismember(&old.sa_mask, SIGUSR2));
  reset();
  raise(SIGUSR1);
  printf("SA_NODEFER: calls %d, deepest %d, SIGUSR1 blocked %d, SIGUSR2 blocked %d\n", calls,
         deepest, usr1_blocked, usr2_blocked);

  nest = 0;
  stack_t ss = {.ss_sp = alt_base = malloc(alt_size), .ss_size = alt_size, .ss_flags = 0};
  sigaltstack(&ss, NULL);
  struct sigaction onstack = action(on_usr1, SA_ONSTACK | SA_RESETHAND);
  sigaction(SIGUSR1, &onstack, NULL);
  reset();
  raise(SIGUSR1);
  sigaction(SIGUSR1, NULL, &seen);
  printf("SA_ONSTACK|SA_RESETHAND: calls %d, on the alternate stack %d, default afterwards %d\n",
         calls, on_alt, seen.sa_handler == SIG_DFL);
  struct sigaction plain = action(on_usr1, 0);
  sigaction(SIGUSR1, &plain, NULL);
  reset();
  raise(SIGUSR1);
  printf("no SA_ONSTACK: on the alternate stack %d\n", on_alt);

  struct sigaction info;
  memset(&info, 0, sizeof info);
  info.sa_sigaction = on_usr1_info;
  info.sa_flags = SA_SIGINFO;
  sigaction(SIGUSR1, &info, NULL);
  kill(getpid(), SIGUSR1);
  printf("SA_SIGINFO: signo %d, si_code SI_USER %d, pid %d, sum %s\n", info_signo,
         info_code == SI_USER, info_pid_ok, handler_sum == expect7 ? "right" : "WRONG");
  printf("vectors kept across a handler: %d\n", vectors_kept_across_handler());

  /* A blocked signal waits, and comes when it is unblocked. */
  sigset_t usr1;
  sigemptyset(&usr1);
  sigaddset(&usr1, SIGUSR1);
  sigprocmask(SIG_BLOCK, &usr1, NULL);
  handler_sum = 0;
  raise(SIGUSR1);
  printf("while blocked: handled %d\n", handler_sum != 0);
  sigprocmask(SIG_UNBLOCK, &usr1, NULL);
  printf("after unblocking: handled %d\n", handler_sum == expect7);

  signal(SIGUSR2, SIG_IGN);
  raise(SIGUSR2);
  printf("ignored SIGUSR2: still here\n");
  fflush(stdout);
  /* Reset to the default by its first delivery, the second ends the
   * process (after the exit events, under zorvo). */
  struct sigaction once = action(on_usr1, SA_RESETHAND);
  sigaction(SIGUSR1, &once, NULL);
  raise(SIGUSR1);
  printf("SA_RESETHAND again: calls %d\n", calls);
  fflush(stdout);
  raise(SIGUSR1);
  return 0;
}

/* Timer signals over SVE loops, with handlers that run SVE themselves: the
 * interrupted loops must finish with the values they would have without the
 * signals, and each handler must compute its own result right, whatever it
 * interrupted (an SVE word, a run of them, plain code between them).
 *
 * usage: timer_sve MODE
 *   itimer    setitimer, 1 ms, SIGALRM
 *   fast      timer_create, 100 us, SIGRTMIN
 *   threads   four threads, each with its own 100 us timer
 *   process   four threads under one 1 ms process timer
 *   entry     the handler reads Z3 at its entry, which the loop keeps
 *   longjmp   the handler leaves by siglongjmp, hundreds of times, from
 *             wherever it came; the loop then runs undisturbed */
#define _GNU_SOURCE
#include <arm_sve.h>
#include <pthread.h>
#include <setjmp.h>
#include <signal.h>
#include <stdint.h>
#include <stdio.h>
#include <string.h>
#include <sys/syscall.h>
#include <sys/time.h>
#include <time.h>
#include <unistd.h>

enum { N = 1003, HN = 41, THREADS = 4, ROUNDS = 1000, THREAD_ROUNDS = 300 };

static int32_t a[N], b[N], hdata[HN];
static int64_t handler_expected;
static volatile int64_t handler_wrong, handled;

/* Accumulates in vector registers across the whole loop, so that a handler
 * that changed the upper lanes or the predicates under it changes the
 * result. */
__attribute__((noinline)) static int64_t sve_work(int rounds, int32_t salt) {
  svint32_t acc = svdup_s32(salt);
  svfloat32_t facc = svdup_f32(0.5f);
  for (int r = 0; r < rounds; ++r) {
    for (int i = 0; i < N; i += (int)svcntw()) {
      const svbool_t pg = svwhilelt_b32(i, N);
      const svint32_t va = svld1(pg, a + i), vb = svld1(pg, b + i);
      acc = svmla_m(pg, acc, va, vb);
      acc = sveor_m(pg, acc, svreinterpret_s32(svlsr_x(pg, svreinterpret_u32(acc), 7)));
      facc = svmla_m(pg, facc, svcvt_f32_x(pg, va), svdup_f32(0.25f));
    }
  }
  return svaddv(svptrue_b32(), acc) + (int64_t)svaddv(svptrue_b32(), facc);
}

static int64_t handler_sum(int32_t scale) {
  svint32_t s = svdup_s32(0);
  for (int i = 0; i < HN; i += (int)svcntw()) {
    const svbool_t pg = svwhilelt_b32(i, HN);
    s = svadd_m(pg, s, svmul_x(pg, svld1(pg, hdata + i), svdup_s32(scale)));
  }
  return svaddv(svptrue_b32(), s);
}

static void on_tick(int sig) {
  (void)sig;
  if (handler_sum(3) != handler_expected) ++handler_wrong;
  ++handled;
}

/* Z3 holds 0, 3, 6, ... in every 32-bit lane while the loop runs; a
 * handler must find it there at its entry. */
static uint32_t z3_at_entry[64];
static volatile int entry_wrong, entries_checked;
static volatile int32_t in_loop; /* set by the loop once Z3 holds it */

static void on_tick_reading_z3(int sig) {
  __asm__ volatile("str z3, [%0]" : : "r"(z3_at_entry) : "memory");
  if (in_loop) {
    ++entries_checked;
    for (unsigned i = 0; i < svcntw(); ++i)
      if (z3_at_entry[i] != 3 * i) ++entry_wrong;
  }
  on_tick(sig);
}

__attribute__((noinline)) static uint64_t loop_keeping_z3(long rounds) {
  uint64_t out;
  __asm__ volatile("index z3.s, #0, #3\n\t"
                   "mov w9, #1\n\t"
                   "str w9, [%2]\n\t"
                   "mov z0.s, #1\n\t"
                   "ptrue p1.s\n"
                   "1:\tadd z0.s, z0.s, z0.s\n\t"
                   "eor z0.s, z0.s, #0x55555555\n\t"
                   "subs %1, %1, #1\n\t"
                   "b.ne 1b\n\t"
                   "str wzr, [%2]\n\t"
                   "uaddv d0, p1, z0.s\n\t"
                   "fmov %0, d0"
                   : "=&r"(out), "+r"(rounds)
                   : "r"(&in_loop)
                   : "v0", "v3", "p1", "x9", "cc", "memory");
  return out;
}

enum { JUMPS = 300 };
static sigjmp_buf restart;
static volatile int jumps;

static void on_tick_leaving(int sig) {
  on_tick(sig);
  if (jumps < JUMPS) {
    ++jumps;
    siglongjmp(restart, 1);
  }
}

static void install(int sig, void (*handler)(int)) {
  struct sigaction sa;
  memset(&sa, 0, sizeof sa);
  sa.sa_handler = handler;
  sa.sa_flags = SA_RESTART;
  sigaction(sig, &sa, NULL);
}

static timer_t thread_timer(int sig, long period_ns) {
  struct sigevent ev;
  memset(&ev, 0, sizeof ev);
  ev.sigev_notify = SIGEV_THREAD_ID;
  ev.sigev_signo = sig;
  ev._sigev_un._tid = (pid_t)syscall(SYS_gettid);
  timer_t timer;
  timer_create(CLOCK_MONOTONIC, &ev, &timer);
  struct itimerspec spec = {{0, period_ns}, {0, period_ns}};
  timer_settime(timer, 0, &spec, NULL);
  return timer;
}

static int own_timers;
static int64_t results[THREADS];

static void* worker(void* arg) {
  const long n = (long)arg;
  timer_t timer;
  if (own_timers) timer = thread_timer(SIGRTMIN, 100000);
  results[n] = sve_work(THREAD_ROUNDS, (int32_t)n);
  if (own_timers) timer_delete(timer);
  return NULL;
}

int main(int argc, char** argv) {
  const char* mode = argc > 1 ? argv[1] : "itimer";
  for (int i = 0; i < N; ++i) {
    a[i] = (i * 7919) % 1009 - 500;
    b[i] = (i * 104729) % 997 - 498;
  }
  for (int i = 0; i < HN; ++i) {
    hdata[i] = i * i - 17;
    handler_expected += 3 * (int64_t)hdata[i];
  }
  const int64_t quiet = sve_work(ROUNDS, 1);
  if (strcmp(mode, "itimer") == 0 || strcmp(mode, "entry") == 0) {
    const int entry = strcmp(mode, "entry") == 0;
    install(SIGALRM, entry ? on_tick_reading_z3 : on_tick);
    const uint64_t plain = entry ? loop_keeping_z3(2000000) : 0;
    struct itimerval it = {{0, 1000}, {0, 1000}};
    setitimer(ITIMER_REAL, &it, NULL);
    const int64_t loud = entry ? (int64_t)loop_keeping_z3(2000000) : sve_work(ROUNDS, 1);
    if (entry)
      for (int i = 0; i < 200 && entries_checked == 0; ++i) loop_keeping_z3(2000000);
    while (handled == 0) pause();
    struct itimerval off = {{0, 0}, {0, 0}};
    setitimer(ITIMER_REAL, &off, NULL);
    printf("loop result %s\n", loud == (entry ? (int64_t)plain : quiet) ? "unchanged" : "CHANGED");
    if (entry)
      printf("z3 at handler entry: %s, %d lanes wrong\n", entries_checked ? "seen" : "not seen",
             entry_wrong);
  } else if (strcmp(mode, "longjmp") == 0) {
    install(SIGALRM, on_tick_leaving);
    /* The jump target and its mask are complete before the first tick: a
     * tick between arming and sigsetjmp would jump through a half-written
     * buffer that restores no mask, leaving SIGALRM blocked for good. */
    if (sigsetjmp(restart, 1) == 0) {
      struct itimerval it = {{0, 1000}, {0, 1000}};
      setitimer(ITIMER_REAL, &it, NULL);
    }
    while (jumps < JUMPS) sve_work(ROUNDS, 1);
    struct itimerval off = {{0, 0}, {0, 0}};
    setitimer(ITIMER_REAL, &off, NULL);
    printf("%d jumps out of handlers; loop result %s\n", jumps,
           sve_work(ROUNDS, 1) == quiet ? "unchanged" : "CHANGED");
  } else if (strcmp(mode, "fast") == 0) {
    install(SIGRTMIN, on_tick);
    timer_t timer = thread_timer(SIGRTMIN, 100000);
    const int64_t loud = sve_work(ROUNDS, 1);
    while (handled == 0) pause();
    timer_delete(timer);
    printf("loop result %s\n", loud == quiet ? "unchanged" : "CHANGED");
  } else {
    own_timers = strcmp(mode, "threads") == 0;
    install(own_timers ? SIGRTMIN : SIGALRM, on_tick);
    int64_t expected[THREADS];
    for (long n = 0; n < THREADS; ++n) expected[n] = sve_work(THREAD_ROUNDS, (int32_t)n);
    if (!own_timers) {
      struct itimerval it = {{0, 1000}, {0, 1000}};
      setitimer(ITIMER_REAL, &it, NULL);
    }
    pthread_t threads[THREADS];
    for (long n = 0; n < THREADS; ++n) pthread_create(&threads[n], NULL, worker, (void*)n);
    for (int n = 0; n < THREADS; ++n) pthread_join(threads[n], NULL);
    if (!own_timers) {
      while (handled == 0) pause();
      struct itimerval off = {{0, 0}, {0, 0}};
      setitimer(ITIMER_REAL, &off, NULL);
    }
    int changed = 0;
    for (int n = 0; n < THREADS; ++n) changed += results[n] != expected[n];
    printf("%d of %d thread results changed\n", changed, THREADS);
  }
  printf("handlers ran: %s, wrong in a handler: %ld\n", handled > 0 ? "yes" : "no",
         (long)handler_wrong);
  return 0;
}

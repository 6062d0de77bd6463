/* First-fault and non-fault loads that run up to the end of a readable page
 * followed by one that cannot be read: plain, with a SIGSEGV handler of the
 * program's own, and with every signal blocked. Given the argument "fatal",
 * a plain SVE load of an unmapped address, which ends the process by
 * SIGSEGV; "fatal-handled" does the same after installing a handler.
 * "first-fault-fatal" and "first-fault-handled" do the same with a
 * first-fault load whose first element lies on a page without access, which
 * faults as a plain load does. */
#include <arm_sve.h>
#include <setjmp.h>
#include <signal.h>
#include <stdint.h>
#include <stdio.h>
#include <string.h>
#include <sys/mman.h>
#include <unistd.h>

/* Where c first lies among the n bytes from s (n when it does not): a
 * first-fault loop that may be told to look past the end of what can be
 * read, and stops at c. */
__attribute__((noinline)) static size_t ff_find(const uint8_t* s, uint8_t c, size_t n) {
  for (size_t i = 0; i < n;) {
    svbool_t pg = svwhilelt_b8_u64(i, n);
    svsetffr();
    svuint8_t bytes = svldff1_u8(pg, s + i);
    svbool_t loaded = svrdffr_z(pg);
    svbool_t found = svcmpeq_n_u8(loaded, bytes, c);
    if (svptest_any(loaded, found)) return i + svcntp_b8(pg, svbrkb_z(pg, found));
    i += svcntp_b8(pg, loaded);
  }
  return n;
}

/* Sums the bytes from p up to the first one that cannot be read, at most 48,
 * with one non-fault load; says how many it read. */
__attribute__((noinline)) static unsigned nf_sum(const uint8_t* p, uint64_t* sum) {
  svbool_t all = svptrue_b8();
  svsetffr();
  svuint8_t bytes = svldnf1_u8(all, p);
  svbool_t loaded = svrdffr_z(all);
  *sum = svaddv_u8(loaded, bytes);
  return (unsigned)svcntp_b8(all, loaded);
}

/* The sum of count doublewords from p, by first-fault loads that go on from
 * the first element each one could not load. */
__attribute__((noinline)) static uint64_t ff_sum(const uint64_t* p, uint64_t count) {
  uint64_t sum = 0, i = 0;
  while (i < count) {
    svbool_t pg = svwhilelt_b64_u64(i, count);
    svsetffr();
    svuint64_t v = svldff1_u64(pg, p + i);
    svbool_t loaded = svrdffr_z(pg);
    sum += svaddv_u64(loaded, v);
    i += svcntp_b64(pg, loaded);
  }
  return sum;
}

static sigjmp_buf recover;
static volatile int native_faults;
static void on_segv(int sig) {
  (void)sig;
  ++native_faults;
  siglongjmp(recover, 1);
}

static void touch(volatile char* bad) {
  if (sigsetjmp(recover, 1) == 0) (void)*bad;
}

int main(int argc, char** argv) {
  size_t page = (size_t)sysconf(_SC_PAGESIZE);
  char* map = mmap(NULL, 3 * page, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (map == MAP_FAILED) return 2;
  /* readable, unmapped, no access */
  if (munmap(map + page, page) != 0 || mprotect(map + 2 * page, page, PROT_NONE) != 0) return 2;
  char* end = map + page;
  for (size_t i = 0; i < page; ++i) map[i] = (char)('a' + i % 26);

  if (argc > 1 && (strncmp(argv[1], "fatal", 5) == 0 || strncmp(argv[1], "first-fault", 11) == 0)) {
    if (strstr(argv[1], "-handled") != NULL) {
      struct sigaction sa;
      memset(&sa, 0, sizeof sa);
      sa.sa_handler = on_segv;
      sigaction(SIGSEGV, &sa, NULL);
      if (sigsetjmp(recover, 1) != 0) {
        printf("the program's handler took the fault\n");
        return 3;
      }
    }
    svuint8_t v;
    if (strncmp(argv[1], "fatal", 5) == 0) {
      printf("plain load of an unmapped page\n");
      fflush(stdout);
      v = svld1_u8(svptrue_b8(), (const uint8_t*)end + 5);
    } else {
      printf("first-fault load of a page without access\n");
      fflush(stdout);
      svsetffr();
      v = svldff1_u8(svptrue_b8(), (const uint8_t*)map + 2 * page + 5);
    }
    printf("not reached: %u\n", (unsigned)svaddv_u8(svptrue_b8(), v));
    return 0;
  }

  for (int round = 0; round < 3; ++round) {
    if (round == 2) {
      /* A program may block every signal; its loads behave the same. */
      sigset_t all;
      sigfillset(&all);
      sigprocmask(SIG_BLOCK, &all, NULL);
    }
    if (round == 1) {
      /* The program's own handler takes its own faults, and the loads
       * behave as before. */
      struct sigaction sa;
      memset(&sa, 0, sizeof sa);
      sa.sa_handler = on_segv;
      sigaction(SIGSEGV, &sa, NULL);
      touch(end + 100);
      printf("native faults caught: %d\n", native_faults);
    }
    size_t total = 0;
    end[-1] = 0;
    for (size_t len = 0; len < 200; ++len)
      total += ff_find((const uint8_t*)end - 1 - len, 0, len + 1000) * (len + 1);
    printf("round %d: zero byte found at total %zu\n", round, total);
    for (int back = 1; back <= 50; back += 7) {
      uint64_t sum;
      unsigned n = nf_sum((const uint8_t*)end - back, &sum);
      printf("ldnf1b %d before the end: %u bytes, sum %llu\n", back, n, (unsigned long long)sum);
    }
    for (uint64_t count = 1; count <= 13; count += 3) {
      const uint64_t* last = (const uint64_t*)end - count;
      printf("ldff1d, last %llu doublewords: sum %llu\n", (unsigned long long)count,
             (unsigned long long)ff_sum(last, count));
    }
    uint64_t sum;
    printf("ldnf1b on a page without access: %u bytes\n", nf_sum((uint8_t*)map + 2 * page, &sum));
  }
  sigset_t none;
  sigemptyset(&none);
  sigprocmask(SIG_SETMASK, &none, NULL);
  touch(end + 200);
  printf("native faults caught: %d\n", native_faults);
  return 0;
}

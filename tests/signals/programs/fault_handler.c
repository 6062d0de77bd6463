/* Faults of SVE loads and stores reach the program's own SIGSEGV and SIGBUS
 * handlers as the kernel delivers them: the faulting element's address, the
 * code, the pc at the SVE instruction and the registers as before it. The
 * handler leaves by siglongjmp, returns after making the page readable (the
 * instruction runs again), or changes the context (the base register) and
 * returns. */
#define _GNU_SOURCE
#include <setjmp.h>
#include <signal.h>
#include <stdint.h>
#include <stdio.h>
#include <string.h>
#include <sys/mman.h>
#include <ucontext.h>
#include <unistd.h>

enum { LONGJMP, RETURN, REDIRECT };

static sigjmp_buf escape;
static int action;
static volatile uintptr_t expected_pc, seen_pc, seen_base, seen_addr;
static volatile int seen_sig, seen_code, calls;
static uint8_t* guarded_page;
static float other[64]; /* room for the longest vector */

static void on_fault(int sig, siginfo_t* info, void* context) {
  ucontext_t* uc = context;
  ++calls;
  seen_sig = sig;
  seen_code = info->si_code;
  seen_addr = (uintptr_t)info->si_addr;
  seen_pc = uc->uc_mcontext.pc;
  seen_base = uc->uc_mcontext.regs[9];
  if (action == LONGJMP) siglongjmp(escape, 1);
  if (action == RETURN) mprotect(guarded_page, 4096, PROT_READ | PROT_WRITE);
  if (action == REDIRECT) uc->uc_mcontext.regs[9] = (uintptr_t)other;
}

/* A vector of words from base into out; returns the load's address. */
__attribute__((noinline)) static uintptr_t load12(const float* base, float* out) {
  uintptr_t pc;
  __asm__ volatile("ptrue p0.s\n\tmov x9, %1\n\tadr %0, 1f\n"
                   "1:\tld1w {z0.s}, p0/z, [x9]\n\t"
                   "st1w {z0.s}, p0, [%2]"
                   : "=&r"(pc)
                   : "r"(base), "r"(out)
                   : "memory", "x9", "v0", "p0");
  return pc;
}

__attribute__((noinline)) static uintptr_t store12(float* base) {
  uintptr_t pc;
  __asm__ volatile("ptrue p0.s\n\tfmov z0.s, #1.0\n\tmov x9, %1\n\tadr %0, 1f\n"
                   "1:\tst1w {z0.s}, p0, [x9]"
                   : "=&r"(pc)
                   : "r"(base)
                   : "memory", "x9", "v0", "p0");
  return pc;
}

/* The first n words from base into out, the rest of out's vector zero. */
__attribute__((noinline)) static uintptr_t load_first(const float* base, float* out, long n) {
  uintptr_t pc;
  __asm__ volatile("whilelo p0.s, xzr, %3\n\tptrue p1.s\n\tmov x9, %1\n\tadr %0, 1f\n"
                   "1:\tld1w {z0.s}, p0/z, [x9]\n\t"
                   "st1w {z0.s}, p1, [%2]"
                   : "=&r"(pc)
                   : "r"(base), "r"(out), "r"(n)
                   : "memory", "x9", "v0", "p0", "p1");
  return pc;
}

/* 3.0 into the first n words from base. */
__attribute__((noinline)) static uintptr_t store_first(float* base, long n) {
  uintptr_t pc;
  __asm__ volatile("whilelo p0.s, xzr, %2\n\tfmov z0.s, #3.0\n\tmov x9, %1\n\tadr %0, 1f\n"
                   "1:\tst1w {z0.s}, p0, [x9]"
                   : "=&r"(pc)
                   : "r"(base), "r"(n)
                   : "memory", "x9", "v0", "p0");
  return pc;
}

/* The reference's SIGBUS pc points before the instruction (its own imprecision,
 * not the architecture's), so that one is not compared. */
static void report(const char* what, uintptr_t base, uintptr_t fault_at) {
  const char* where = seen_pc == expected_pc ? "at the instruction" : "elsewhere";
  /* No fault expected (inactive elements past the end): nothing seen to show. */
  if (calls == 0) {
    printf("%s: calls 0\n", what);
    return;
  }
  printf("%s: calls %d sig %d code %d addr %+ld pc %s base %s\n", what, calls, seen_sig, seen_code,
         (long)(seen_addr - fault_at), seen_sig == SIGBUS ? "-" : where,
         seen_base == base ? "as before" : "changed");
  calls = 0;
}

int main(void) {
  struct sigaction sa;
  memset(&sa, 0, sizeof sa);
  sa.sa_sigaction = on_fault;
  sa.sa_flags = SA_SIGINFO;
  sigaction(SIGSEGV, &sa, NULL);
  sigaction(SIGBUS, &sa, NULL);
  for (int i = 0; i < 64; ++i) other[i] = 100.0f + i;

  uint8_t* pages = mmap(NULL, 8192, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  guarded_page = pages + 4096;
  float* near_end = (float*)(guarded_page - 8); /* elements 2.. lie in the guarded page */
  for (int i = 0; i < 2; ++i) near_end[i] = 1.0f + i;
  float out[64] = {0};

  /* Loads: unreadable page, each way out of the handler. */
  mprotect(guarded_page, 4096, PROT_NONE);
  action = LONGJMP;
  expected_pc = load12(other, out); /* the same instruction, no fault */
  if (sigsetjmp(escape, 1) == 0) load12(near_end, out);
  report("load, siglongjmp", (uintptr_t)near_end, (uintptr_t)guarded_page);

  action = RETURN;
  load12(near_end, out);
  report("load, return", (uintptr_t)near_end, (uintptr_t)guarded_page);
  printf("  loaded %g %g %g\n", out[0], out[1], out[2]);

  mprotect(guarded_page, 4096, PROT_NONE);
  action = REDIRECT;
  load12(near_end, out);
  report("load, redirected", (uintptr_t)near_end, (uintptr_t)guarded_page);
  printf("  loaded %g %g %g\n", out[0], out[11], out[5]);

  /* A store into a read-only page. */
  mprotect(guarded_page, 4096, PROT_READ);
  action = LONGJMP;
  expected_pc = store12(other);
  if (sigsetjmp(escape, 1) == 0) store12(near_end);
  /* Whether the elements before the fault are stored is left open by the
   * architecture, so they are not shown. */
  report("store, siglongjmp", (uintptr_t)near_end, (uintptr_t)guarded_page);

  /* Partial predicates: elements in the guarded page that are inactive
   * must not fault; an active one faults at its own address. The store
   * above may have written the words before its fault. */
  for (int i = 0; i < 2; ++i) near_end[i] = 1.0f + i;
  mprotect(guarded_page, 4096, PROT_NONE);
  for (int i = 0; i < 64; ++i) out[i] = -1.0f;
  if (sigsetjmp(escape, 1) == 0) load_first(near_end, out, 2);
  report("partial load, inactive past the end", (uintptr_t)near_end, (uintptr_t)guarded_page);
  printf("  loaded %g %g %g\n", out[0], out[1], out[2]);
  expected_pc = load_first(other, out, 64);
  if (sigsetjmp(escape, 1) == 0) load_first(near_end, out, 3);
  report("partial load, active past the end", (uintptr_t)near_end, (uintptr_t)guarded_page);

  mprotect(guarded_page, 4096, PROT_READ);
  if (sigsetjmp(escape, 1) == 0) store_first(near_end, 2);
  report("partial store, inactive past the end", (uintptr_t)near_end, (uintptr_t)guarded_page);
  printf("  stored %g %g\n", near_end[0], near_end[1]);
  expected_pc = store_first(other, 1);
  if (sigsetjmp(escape, 1) == 0) store_first(near_end, 3);
  report("partial store, active past the end", (uintptr_t)near_end, (uintptr_t)guarded_page);

  /* Past the end of a file: SIGBUS. */
  FILE* f = tmpfile();
  ftruncate(fileno(f), 4096);
  uint8_t* mapped = mmap(NULL, 8192, PROT_READ, MAP_PRIVATE, fileno(f), 0);
  expected_pc = load12(other, out);
  if (sigsetjmp(escape, 1) == 0) load12((float*)(mapped + 4096 - 16), out);
  report("load past the file, siglongjmp", (uintptr_t)(mapped + 4096 - 16),
         (uintptr_t)(mapped + 4096));
  return 0;
}

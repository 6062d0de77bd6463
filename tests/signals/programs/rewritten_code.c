/* A program that writes SVE code at run time: it runs a routine, makes its
 * page writable, rewrites one word past the first (fmla into fmls and back),
 * makes it executable again and runs it; and it unmaps and maps the page
 * anew. Every run must run the words there now, and two thousand rounds
 * must not make resident memory grow.
 *
 * usage: rewritten_code [after_longjmp]
 *   after_longjmp  first a signal handler leaves by siglongjmp: the thread
 *                  is out of it, and what is retired afterwards still
 *                  frees its room */
#include <setjmp.h>
#include <signal.h>
#include <stdio.h>
#include <string.h>
#include <sys/mman.h>

#include "fmla_routine.h"

#include "resident_memory.h"

enum { kRounds = 2000, kWarmUp = 200 };

static void set_op(unsigned* code, unsigned op) {
  mprotect(code, 4096, PROT_READ | PROT_WRITE);
  code[kOpWord] = op;
  mprotect(code, 4096, PROT_READ | PROT_EXEC);
  __builtin___clear_cache((char*)code, (char*)(code + 7));
}

/* Runs the routine once; whether element 5 has the sign op gives. */
static int runs_as(unsigned* code, unsigned op) {
  float acc[64] = {0}, b[64], c[64];
  for (int i = 0; i < 64; ++i) b[i] = (float)i, c[i] = 2.0f;
  ((kernel_fn*)(void*)code)(acc, b, c);
  return acc[5] == (op == kFmla ? 10.0f : -10.0f);
}

static sigjmp_buf back;

static void leave_by_longjmp(int sig) {
  (void)sig;
  siglongjmp(back, 1);
}

static void handler_left_by_longjmp(void) {
  struct sigaction action;
  memset(&action, 0, sizeof action);
  action.sa_handler = leave_by_longjmp;
  sigaction(SIGUSR1, &action, NULL);
  if (sigsetjmp(back, 1) == 0) raise(SIGUSR1);
}

int main(int argc, char** argv) {
  if (argc > 1 && strcmp(argv[1], "after_longjmp") == 0) handler_left_by_longjmp();
  long settled = 0, wrong = 0;
  for (int round = 0; round < kRounds; ++round) {
    unsigned* code = mmap(NULL, 4096, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (code == MAP_FAILED) return 1;
    memcpy(code, kRoutine, sizeof kRoutine);
    set_op(code, kFmla);
    wrong += !runs_as(code, kFmla);
    wrong += !runs_as(code, kFmla);
    set_op(code, kFmls);
    wrong += !runs_as(code, kFmls);
    set_op(code, kFmla);
    wrong += !runs_as(code, kFmla);
    munmap(code, 4096);
    if (round + 1 == kWarmUp) settled = resident_kib();
  }
  printf("%d rounds, %ld runs of code no longer there\n", kRounds, wrong);
  print_growth_since(settled);
  return wrong != 0;
}

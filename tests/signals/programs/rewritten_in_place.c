/* A program that writes SVE code into a page that is readable, writable and
 * executable, cleans the cache, runs it, rewrites one word past the first
 * (fmla into fmls and back) with a plain store, cleans the cache and runs it
 * again: every run must run the words there now. */
#include <stdio.h>
#include <string.h>
#include <sys/mman.h>

#include "fmla_routine.h"

enum { kRounds = 40 };

static float run(unsigned* code) {
  float acc[64] = {0}, b[64], c[64];
  for (int i = 0; i < 64; ++i) b[i] = (float)i, c[i] = 2.0f;
  ((kernel_fn*)(void*)code)(acc, b, c);
  return acc[5];
}

int main(void) {
  unsigned* code =
      mmap(NULL, 4096, PROT_READ | PROT_WRITE | PROT_EXEC, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (code == MAP_FAILED) return 1;
  memcpy(code, kRoutine, sizeof kRoutine);
  __builtin___clear_cache((char*)code, (char*)(code + 7));
  int right = 0;
  for (int round = 0; round < kRounds; ++round) {
    const unsigned op = round % 2 ? kFmls : kFmla;
    ((volatile unsigned*)code)[kOpWord] = op;
    __builtin___clear_cache((char*)code, (char*)(code + 7));
    /* Twice each: the second run finds whatever the first one left. */
    const float first = run(code), second = run(code);
    const float want = op == kFmla ? 10.0f : -10.0f;
    right += first == want && second == want;
  }
  printf("%d of %d rounds ran the words written last\n", right, kRounds);
  return 0;
}

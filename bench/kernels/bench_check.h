/* Shared by the benchmark kernels: each checks its own result against a
 * scalar computation that the compiler is told not to vectorise. */
#pragma once

#include <stdio.h>
#include <stdlib.h>

#define SCALAR __attribute__((noinline, optimize("no-tree-vectorize")))

/* The number of repetitions: argv[1] when given, else the kernel's own. The
 * bench runs each kernel at two counts, so that the difference of the two
 * runs is the steady state, without start-up and translation. */
static inline int bench_repeat(int argc, char** argv, int fallback) {
  int r = argc > 1 ? atoi(argv[1]) : fallback;
  return r > 0 ? r : fallback;
}

static inline int bench_report(const char* kernel, int ok, double checksum) {
  printf("%s: %s (checksum %.17g)\n", kernel, ok ? "ok" : "WRONG RESULT", checksum);
  return ok ? 0 : 1;
}

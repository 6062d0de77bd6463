/* Shared by the benchmark kernels: each checks its own result against a
 * scalar computation that the compiler is told not to vectorise. */
#pragma once

#include <stdio.h>
#include <stdlib.h>

#define SCALAR __attribute__((noinline, optimize("no-tree-vectorize")))

static inline int bench_report(const char* kernel, int ok, double checksum) {
  printf("%s: %s (checksum %.17g)\n", kernel, ok ? "ok" : "WRONG RESULT", checksum);
  return ok ? 0 : 1;
}

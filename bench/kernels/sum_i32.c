/* Integer sum reduction, written with ACLE intrinsics. */
#include <arm_sve.h>
#include <stdint.h>

#include "bench_check.h"

#define N 10007
#define DEFAULT_REPEAT 20

static int32_t v[N];

__attribute__((noinline)) static int64_t sum(const int32_t* p, int n) {
  svint32_t acc = svdup_s32(0);
  for (int i = 0; i < n; i += (int)svcntw()) {
    svbool_t pg = svwhilelt_b32_s32(i, n);
    acc = svadd_s32_m(pg, acc, svld1_s32(pg, p + i));
  }
  return svaddv_s32(svptrue_b32(), acc);
}

SCALAR static int64_t scalar_sum(void) {
  int64_t s = 0;
  for (int i = 0; i < N; ++i) s += v[i];
  return s;
}

int main(int argc, char** argv) {
  const int repeat = bench_repeat(argc, argv, DEFAULT_REPEAT);
  for (int i = 0; i < N; ++i) v[i] = (i * 7919) % 2001 - 1000;
  int64_t s = 0;
  for (int r = 0; r < repeat; ++r) s = sum(v, N);
  return bench_report("sum_i32", s == scalar_sum(), (double)s);
}

/* Double-precision reductions with ACLE intrinsics: an unordered sum
 * (faddv) and a strictly ordered one (fadda), over a tail. */
#include <arm_sve.h>

#include "bench_check.h"

#define N 4001
#define DEFAULT_REPEAT 20

static double v[N];

__attribute__((noinline)) static double sum_unordered(const double* p, int n) {
  svfloat64_t acc = svdup_f64(0.0);
  for (int i = 0; i < n; i += (int)svcntd()) {
    svbool_t pg = svwhilelt_b64_s32(i, n);
    acc = svadd_f64_m(pg, acc, svld1_f64(pg, p + i));
  }
  return svaddv_f64(svptrue_b64(), acc);
}

__attribute__((noinline)) static double sum_ordered(const double* p, int n) {
  double acc = 0.0;
  for (int i = 0; i < n; i += (int)svcntd()) {
    svbool_t pg = svwhilelt_b64_s32(i, n);
    acc = svadda_f64(pg, acc, svld1_f64(pg, p + i));
  }
  return acc;
}

SCALAR static double scalar_sum(void) {
  double s = 0;
  for (int i = 0; i < N; ++i) s += v[i];
  return s;
}

int main(int argc, char** argv) {
  const int repeat = bench_repeat(argc, argv, DEFAULT_REPEAT);
  /* Multiples of 1/8 well inside the significand: every order of addition
   * gives the same exact sum. */
  for (int i = 0; i < N; ++i) v[i] = (double)((i * 37) % 101 - 50) * 0.125;
  double unordered = 0, ordered = 0;
  for (int r = 0; r < repeat; ++r) {
    unordered = sum_unordered(v, N);
    ordered = sum_ordered(v, N);
  }
  const double want = scalar_sum();
  return bench_report("reduce_f64", unordered == want && ordered == want, ordered);
}

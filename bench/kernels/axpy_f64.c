/* y = a*x + y in double precision, written with ACLE intrinsics. */
#include <arm_sve.h>

#include "bench_check.h"

#define N 3001
#define DEFAULT_REPEAT 20

static double x[N], y[N], y0[N];

__attribute__((noinline)) static void axpy(double a, const double* xs, double* ys, int n) {
  for (int i = 0; i < n; i += (int)svcntd()) {
    svbool_t pg = svwhilelt_b64_s32(i, n);
    svfloat64_t vx = svld1_f64(pg, xs + i);
    svfloat64_t vy = svld1_f64(pg, ys + i);
    svst1_f64(pg, ys + i, svmla_n_f64_x(pg, vy, vx, a));
  }
}

SCALAR static int check(int repeat) {
  for (int i = 0; i < N; ++i) {
    double want = y0[i];
    for (int r = 0; r < repeat; ++r) want = __builtin_fma(x[i], 0.5, want);
    if (y[i] != want) return 0;
  }
  return 1;
}

int main(int argc, char** argv) {
  const int repeat = bench_repeat(argc, argv, DEFAULT_REPEAT);
  for (int i = 0; i < N; ++i) {
    x[i] = (double)(i % 31) * 0.25;
    y[i] = y0[i] = (double)(i % 7);
  }
  for (int r = 0; r < repeat; ++r) axpy(0.5, x, y, N);
  double sum = 0;
  for (int i = 0; i < N; ++i) sum += y[i];
  return bench_report("axpy_f64", check(repeat), sum);
}

/* y += a * x over lengths that leave a partial last vector: fused
 * multiply-add predicated by whilelo, with ACLE intrinsics. */
#include <arm_sve.h>

#include "bench_check.h"

#define N 3000
#define DEFAULT_REPEAT 20

static float x[N], y[N], y0[N];

__attribute__((noinline)) static void fmla_tail(float* ys, const float* xs, float a, int n) {
  const svfloat32_t va = svdup_f32(a);
  for (int i = 0; i < n; i += (int)svcntw()) {
    svbool_t pg = svwhilelt_b32_s32(i, n);
    svst1_f32(pg, ys + i, svmla_f32_m(pg, svld1_f32(pg, ys + i), svld1_f32(pg, xs + i), va));
  }
}

/* The lengths run through every remainder of the vector. */
static int length(int r) { return N - 13 * (r % 16); }

SCALAR static int check(int repeat) {
  for (int i = 0; i < N; ++i) {
    float want = y0[i];
    for (int r = 0; r < repeat; ++r)
      if (i < length(r)) want = __builtin_fmaf(1.25f, x[i], want);
    if (y[i] != want) return 0;
  }
  return 1;
}

int main(int argc, char** argv) {
  const int repeat = bench_repeat(argc, argv, DEFAULT_REPEAT);
  for (int i = 0; i < N; ++i) {
    x[i] = (float)(i % 17) * 0.125f;
    y[i] = y0[i] = (float)(i % 5) - 2.0f;
  }
  for (int r = 0; r < repeat; ++r) fmla_tail(y, x, 1.25f, length(r));
  double sum = 0;
  for (int i = 0; i < N; ++i) sum += y[i];
  return bench_report("fmla_tail_f32", check(repeat), sum);
}

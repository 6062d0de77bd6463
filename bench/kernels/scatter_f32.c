/* An indexed update y[idx[i]] += x[i] through a gather and a scatter, with
 * ACLE intrinsics; the indexes are a permutation, so no two lanes collide. */
#include <arm_sve.h>
#include <stdint.h>

#include "bench_check.h"

#define N 4003
#define DEFAULT_REPEAT 20

static float x[N], y[N];
static int32_t idx[N];

__attribute__((noinline)) static void update(float* ys, const float* xs, const int32_t* is, int n) {
  for (int i = 0; i < n; i += (int)svcntw()) {
    svbool_t pg = svwhilelt_b32_s32(i, n);
    svint32_t where = svld1_s32(pg, is + i);
    svfloat32_t sum =
        svadd_f32_x(pg, svld1_gather_s32index_f32(pg, ys, where), svld1_f32(pg, xs + i));
    svst1_scatter_s32index_f32(pg, ys, where, sum);
  }
}

SCALAR static int check(int repeat) {
  for (int i = 0; i < N; ++i)
    if (y[idx[i]] != (float)repeat * x[i]) return 0;
  return 1;
}

int main(int argc, char** argv) {
  const int repeat = bench_repeat(argc, argv, DEFAULT_REPEAT);
  for (int i = 0; i < N; ++i) {
    x[i] = (float)(i % 29) * 0.5f;
    idx[i] = (int32_t)(((int64_t)i * 1499) % N); /* 1499 and N are coprime */
  }
  for (int r = 0; r < repeat; ++r) update(y, x, idx, N);
  double sum = 0;
  for (int i = 0; i < N; ++i) sum += y[i];
  return bench_report("scatter_f32", check(repeat), sum);
}

/* Signed byte dot products into 32-bit sums (sdot), with ACLE intrinsics. */
#include <arm_sve.h>
#include <stdint.h>

#include "bench_check.h"

#define N 8009
#define DEFAULT_REPEAT 20

static int8_t a[N], b[N];

__attribute__((noinline)) static int32_t dot(const int8_t* p, const int8_t* q, int n) {
  svint32_t acc = svdup_s32(0);
  for (int i = 0; i < n; i += (int)svcntb()) {
    svbool_t pg = svwhilelt_b8_s32(i, n);
    acc = svdot_s32(acc, svld1_s8(pg, p + i), svld1_s8(pg, q + i));
  }
  return (int32_t)svaddv_s32(svptrue_b32(), acc);
}

SCALAR static int32_t scalar_dot(void) {
  int32_t s = 0;
  for (int i = 0; i < N; ++i) s += a[i] * b[i];
  return s;
}

int main(int argc, char** argv) {
  const int repeat = bench_repeat(argc, argv, DEFAULT_REPEAT);
  for (int i = 0; i < N; ++i) {
    a[i] = (int8_t)((i * 31) % 255 - 127);
    b[i] = (int8_t)((i * 17) % 251 - 125);
  }
  int32_t s = 0;
  for (int r = 0; r < repeat; ++r) s = dot(a, b, N);
  return bench_report("dot_i8", s == scalar_dot(), (double)s);
}

/* A conditional update, vectorised by the compiler into compares and
 * predicated loads and stores. */
#include <stdint.h>

#include "bench_check.h"

#define N 6007
#define DEFAULT_REPEAT 20

static int32_t a[N], b[N], b0[N];

__attribute__((noinline)) static void update(int32_t* restrict y, const int32_t* restrict x,
                                             int32_t t, int n) {
  for (int i = 0; i < n; ++i)
    if (x[i] > t) y[i] = x[i] * 2;
}

SCALAR static int check(int32_t t) {
  for (int i = 0; i < N; ++i)
    if (b[i] != (a[i] > t ? a[i] * 2 : b0[i])) return 0;
  return 1;
}

int main(int argc, char** argv) {
  const int repeat = bench_repeat(argc, argv, DEFAULT_REPEAT);
  for (int i = 0; i < N; ++i) {
    a[i] = (i * 7919) % 1000;
    b[i] = b0[i] = -i;
  }
  for (int r = 0; r < repeat; ++r) update(b, a, 600, N);
  double sum = 0;
  for (int i = 0; i < N; ++i) sum += b[i];
  return bench_report("select_i32", check(600), sum);
}

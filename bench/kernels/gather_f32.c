/* A gather through an index array, vectorised by the compiler. */
#include <stdint.h>

#include "bench_check.h"

#define N 4001
#define TABLE 1021
#define DEFAULT_REPEAT 20

static float table[TABLE], out[N];
static int32_t index_of[N];

__attribute__((noinline)) static void gather(float* restrict y, const float* restrict x,
                                             const int32_t* restrict idx, float s, int n) {
  for (int i = 0; i < n; ++i) y[i] = x[idx[i]] * s;
}

SCALAR static int check(void) {
  for (int i = 0; i < N; ++i)
    if (out[i] != table[index_of[i]] * 1.5f) return 0;
  return 1;
}

int main(int argc, char** argv) {
  const int repeat = bench_repeat(argc, argv, DEFAULT_REPEAT);
  for (int i = 0; i < TABLE; ++i) table[i] = (float)(i % 113) - 50.0f;
  for (int i = 0; i < N; ++i) index_of[i] = (i * 389) % TABLE;
  for (int r = 0; r < repeat; ++r) gather(out, table, index_of, 1.5f, N);
  double sum = 0;
  for (int i = 0; i < N; ++i) sum += out[i];
  return bench_report("gather_f32", check(), sum);
}

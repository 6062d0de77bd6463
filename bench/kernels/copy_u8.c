/* Byte copy, vectorised by the compiler. */
#include <stdint.h>

#include "bench_check.h"

#define N 20011
#define DEFAULT_REPEAT 20

static uint8_t src[N], dst[N];

__attribute__((noinline)) static void copy(uint8_t* restrict d, const uint8_t* restrict s, int n) {
  for (int i = 0; i < n; ++i) d[i] = s[i];
}

SCALAR static int check(void) {
  for (int i = 0; i < N; ++i)
    if (dst[i] != src[i]) return 0;
  return 1;
}

int main(int argc, char** argv) {
  const int repeat = bench_repeat(argc, argv, DEFAULT_REPEAT);
  for (int i = 0; i < N; ++i) src[i] = (uint8_t)(i * 31 + 7);
  for (int r = 0; r < repeat; ++r) copy(dst, src, N - r);
  double sum = 0;
  for (int i = 0; i < N; ++i) sum += dst[i];
  return bench_report("copy_u8", check(), sum);
}

/* Stream triad in single precision, vectorised by the compiler. */
#include "bench_check.h"

#define N 4099
#define DEFAULT_REPEAT 20

static float a[N], b[N], c[N];

__attribute__((noinline)) static void triad(float* restrict x, const float* restrict y,
                                            const float* restrict z, float s, int n) {
  for (int i = 0; i < n; ++i) x[i] = y[i] + s * z[i];
}

SCALAR static int check(void) {
  for (int i = 0; i < N; ++i) {
    float want = b[i] + 3.0f * c[i];
    if (a[i] != want) return 0;
  }
  return 1;
}

int main(int argc, char** argv) {
  const int repeat = bench_repeat(argc, argv, DEFAULT_REPEAT);
  for (int i = 0; i < N; ++i) {
    b[i] = (float)(i % 97) * 0.5f;
    c[i] = (float)(i % 13) - 6.0f;
  }
  for (int r = 0; r < repeat; ++r) triad(a, b, c, 3.0f, N);
  double sum = 0;
  for (int i = 0; i < N; ++i) sum += a[i];
  return bench_report("triad_f32", check(), sum);
}

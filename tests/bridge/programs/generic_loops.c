// Loops as the compiler vectorises them at -O3, with the vector length
// hoisted out of the loop (cntb..cntd), predicated tails, reductions, the
// last matching element (clastb), abs and saturation: the forms that run on
// the generic tier. Prints results that the reference must match.
#include <stdint.h>
#include <stdio.h>

#define N 1003
static int8_t a8[N];
static int16_t a16[N];
static int32_t a32[N];
static uint8_t u8[N];

__attribute__((noinline)) static int64_t sum8(const int8_t* a, int n) {
  int64_t s = 0;
  for (int i = 0; i < n; i++) s += a[i];
  return s;
}
__attribute__((noinline)) static int32_t sum16(const int16_t* a, int n) {
  int32_t s = 0;
  for (int i = 0; i < n; i++) s += a[i];
  return s;
}
__attribute__((noinline)) static int64_t sum32(const int32_t* a, int n) {
  int64_t s = 0;
  for (int i = 0; i < n; i++) s += a[i];
  return s;
}
__attribute__((noinline)) static int last_negative(const int32_t* a, int n) {
  int r = -1;
  for (int i = 0; i < n; i++)
    if (a[i] < 0) r = a[i];
  return r;
}
__attribute__((noinline)) static void saturate(uint8_t* d, const uint8_t* a, int n) {
  for (int i = 0; i < n; i++) {
    int v = a[i] + 100;
    d[i] = v > 255 ? 255 : v;
  }
}
__attribute__((noinline)) static void absolute(int32_t* d, const int32_t* a, int n) {
  for (int i = n - 1; i >= 0; i--) d[i] = a[i] < 0 ? -a[i] : a[i];
}

int main(void) {
  for (int i = 0; i < N; i++) {
    a8[i] = (int8_t)(i * 37);
    a16[i] = (int16_t)(i * 977);
    a32[i] = i * 123457 - 60000000;
    u8[i] = (uint8_t)(i * 13);
  }
  for (int n = 0; n < 200; n += 7)
    printf("%d %lld %d %lld %d\n", n, (long long)sum8(a8, n), sum16(a16, n),
           (long long)sum32(a32, n), last_negative(a32, n));
  saturate(u8, u8, N);
  absolute(a32, a32, N);
  long long h = 0;
  for (int i = 0; i < N; i++) h = h * 31 + u8[i] + a32[i];
  printf("%lld\n", h);
  return 0;
}

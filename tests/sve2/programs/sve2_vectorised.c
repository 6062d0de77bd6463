// Loops a compiler vectorises for SVE2: widening and narrowing arithmetic,
// shift-and-accumulate, saturation, rounding averages, and a copy whose
// operands may overlap, checked at run time.
#include <stdint.h>
#include <stdio.h>
#include <string.h>

#define N 1003

static uint8_t u8a[N], u8b[N], u8out[N];
static int16_t s16a[N], s16b[N], s16out[N];
static int32_t s32acc[N];
static uint32_t u32out[N];
static uint64_t u64a[N], u64out[N];
static int32_t shared[2 * N];

static uint32_t hash(const void* p, size_t n) {
  const uint8_t* b = p;
  uint32_t h = 2166136261u;
  for (size_t i = 0; i < n; ++i) h = (h ^ b[i]) * 16777619u;
  return h;
}

__attribute__((noinline)) void narrow_shift(uint8_t* restrict out, const int16_t* restrict in,
                                            int n) {
  for (int i = 0; i < n; ++i) out[i] = (uint8_t)(in[i] >> 4);
}
__attribute__((noinline)) void saturate_u8(uint8_t* restrict out, const int16_t* restrict in,
                                           int n) {
  for (int i = 0; i < n; ++i) out[i] = in[i] < 0 ? 0 : in[i] > 255 ? 255 : (uint8_t)in[i];
}
__attribute__((noinline)) void average_round(uint8_t* restrict out, const uint8_t* restrict a,
                                             const uint8_t* restrict b, int n) {
  for (int i = 0; i < n; ++i) out[i] = (uint8_t)((a[i] + b[i] + 1) >> 1);
}
__attribute__((noinline)) void multiply_accumulate_long(int32_t* restrict acc,
                                                        const int16_t* restrict a,
                                                        const int16_t* restrict b, int n) {
  for (int i = 0; i < n; ++i) acc[i] += (int32_t)a[i] * b[i];
}
__attribute__((noinline)) void shift_accumulate(uint64_t* restrict out, const uint64_t* restrict a,
                                                int n) {
  for (int i = 0; i < n; ++i) out[i] += a[i] >> 7;
}
__attribute__((noinline)) void shift_right_rounded(int16_t* restrict out, const int16_t* restrict a,
                                                   int n) {
  for (int i = 0; i < n; ++i) out[i] = (int16_t)((a[i] + 8) >> 4);
}
__attribute__((noinline)) void widen_shift(uint32_t* restrict out, const uint8_t* restrict a,
                                           int n) {
  for (int i = 0; i < n; ++i) out[i] = (uint32_t)a[i] << 5;
}
__attribute__((noinline)) void absolute_difference(uint8_t* restrict out, const uint8_t* restrict a,
                                                   const uint8_t* restrict b, int n) {
  for (int i = 0; i < n; ++i) out[i] = a[i] > b[i] ? a[i] - b[i] : b[i] - a[i];
}
// No restrict: the compiler checks at run time whether the two overlap.
__attribute__((noinline)) void add_maybe_overlapping(int32_t* out, const int32_t* in, int n) {
  for (int i = 0; i < n; ++i) out[i] = in[i] * 3 + 1;
}

int main(void) {
  uint32_t x = 7;
  for (int i = 0; i < N; ++i) {
    x = x * 1103515245u + 12345u;
    u8a[i] = (uint8_t)(x >> 16);
    u8b[i] = (uint8_t)(x >> 8);
    s16a[i] = (int16_t)(x >> 12);
    s16b[i] = (int16_t)(x >> 3);
    s32acc[i] = (int32_t)x;
    u64a[i] = (uint64_t)x * 0x9e3779b97f4a7c15ull;
    u64out[i] = x;
  }
  narrow_shift(u8out, s16a, N);
  printf("narrow shift %08x\n", hash(u8out, N));
  saturate_u8(u8out, s16a, N);
  printf("saturate %08x\n", hash(u8out, N));
  average_round(u8out, u8a, u8b, N);
  printf("average %08x\n", hash(u8out, N));
  multiply_accumulate_long(s32acc, s16a, s16b, N);
  printf("multiply accumulate %08x\n", hash(s32acc, sizeof s32acc));
  shift_accumulate(u64out, u64a, N);
  printf("shift accumulate %08x\n", hash(u64out, sizeof u64out));
  shift_right_rounded(s16out, s16a, N);
  printf("rounded shift %08x\n", hash(s16out, sizeof s16out));
  widen_shift(u32out, u8a, N);
  printf("widen shift %08x\n", hash(u32out, sizeof u32out));
  absolute_difference(u8out, u8a, u8b, N);
  printf("absolute difference %08x\n", hash(u8out, N));
  for (int shift = -9; shift <= 9; shift += 3) {
    for (int i = 0; i < 2 * N; ++i) shared[i] = i;
    add_maybe_overlapping(shared + N / 2 + shift, shared + N / 2, N);
    printf("overlap %+d %08x\n", shift, hash(shared, sizeof shared));
  }
  return 0;
}

// Plain C loops that the compiler vectorises: element-wise adds, sums,
// extremes and a last-match search, at several element types and loop
// lengths. Prints what it computed.
#include <inttypes.h>
#include <stdint.h>
#include <stdio.h>

#define MAX_LEN 1000

static const int kLengths[] = {0, 1, 5, 6, 7, 11, 12, 13, 23, 24, 25, 47, 48, 49, 100, 257, 1000};
#define NUM_LENGTHS (int)(sizeof kLengths / sizeof kLengths[0])

#define NOINLINE __attribute__((noinline))

#define FAMILY(T, name, Acc)                                                                       \
  static T name##_a[MAX_LEN], name##_b[MAX_LEN], name##_c[MAX_LEN];                                \
  static NOINLINE void name##_add(T* restrict c, const T* a, const T* b, int n) {                  \
    for (int i = 0; i < n; ++i) c[i] = (T)(a[i] + b[i]);                                           \
  }                                                                                                \
  static NOINLINE Acc name##_sum(const T* a, int n) {                                              \
    Acc s = 0;                                                                                     \
    for (int i = 0; i < n; ++i) s += (Acc)a[i];                                                    \
    return s;                                                                                      \
  }                                                                                                \
  static NOINLINE T name##_max(const T* a, int n) {                                                \
    T m = a[0];                                                                                    \
    for (int i = 0; i < n; ++i) m = a[i] > m ? a[i] : m;                                           \
    return m;                                                                                      \
  }                                                                                                \
  static NOINLINE T name##_xor(const T* a, unsigned n) {                                           \
    T x = 0;                                                                                       \
    for (unsigned i = 0; i < n; ++i) x ^= a[i];                                                    \
    return x;                                                                                      \
  }

FAMILY(uint8_t, u8, uint32_t)
FAMILY(int16_t, s16, uint32_t)
FAMILY(uint32_t, u32, uint32_t)
FAMILY(int64_t, s64, uint64_t)

static void fill(void) {
  uint64_t x = 0x243f6a8885a308d3ull;
  for (int i = 0; i < MAX_LEN; ++i) {
    x ^= x << 13, x ^= x >> 7, x ^= x << 17;
    u8_a[i] = (uint8_t)x, u8_b[i] = (uint8_t)(x >> 8);
    s16_a[i] = (int16_t)(x >> 16), s16_b[i] = (int16_t)(x >> 32);
    u32_a[i] = (uint32_t)(x >> 3), u32_b[i] = (uint32_t)(x >> 29);
    s64_a[i] = (int64_t)x >> 2, s64_b[i] = (int64_t)(x * 3) >> 2;
  }
}

#define RUN(name, fmt)                                                                             \
  do {                                                                                             \
    name##_add(name##_c, name##_a, name##_b, n);                                                   \
    uint64_t check = 0;                                                                            \
    for (int i = 0; i < MAX_LEN; ++i) check = check * 31 + (uint64_t)name##_c[i];                  \
    printf(#name " n=%4d sum=%" PRIu64 " max=%" fmt " xor=%" fmt " check=%016" PRIx64 "\n", n,     \
           (uint64_t)name##_sum(name##_c, n), name##_max(name##_c, n), name##_xor(name##_c, n),    \
           check);                                                                                 \
  } while (0)

int main(void) {
  fill();
  for (int k = 0; k < NUM_LENGTHS; ++k) {
    const int n = kLengths[k];
    RUN(u8, PRIu8);
    RUN(s16, PRId16);
    RUN(u32, PRIu32);
    RUN(s64, PRId64);
  }
  return 0;
}

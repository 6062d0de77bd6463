/* A byte search as memchr does it: compare for equality, break before the
 * first match (brkb) and count what lies before it; ACLE intrinsics. */
#include <arm_sve.h>
#include <stddef.h>
#include <stdint.h>

#include "bench_check.h"

#define SIZE 6000
#define SEARCHES 64
#define DEFAULT_REPEAT 10

static uint8_t haystack[SIZE];

/* The offset of the first c in p[0..n), or n. */
__attribute__((noinline)) static size_t sve_memchr(const uint8_t* p, uint8_t c, size_t n) {
  for (size_t i = 0; i < n; i += svcntb()) {
    svbool_t pg = svwhilelt_b8_u64(i, n);
    svbool_t hit = svcmpeq_n_u8(pg, svld1_u8(pg, p + i), c);
    if (svptest_any(pg, hit)) {
      svbool_t before = svbrkb_z(pg, hit);
      return i + svcntp_b8(pg, before);
    }
  }
  return n;
}

SCALAR static size_t scalar_memchr(const uint8_t* p, uint8_t c, size_t n) {
  for (size_t i = 0; i < n; ++i)
    if (p[i] == c) return i;
  return n;
}

int main(int argc, char** argv) {
  const int repeat = bench_repeat(argc, argv, DEFAULT_REPEAT);
  for (int i = 0; i < SIZE; ++i) haystack[i] = (uint8_t)(1 + (i * 7) % 200);
  /* Needles placed at spread-out offsets; some searches find nothing. */
  for (int k = 0; k < SEARCHES; ++k) haystack[(k * 977 + 5) % SIZE] = (uint8_t)(201 + k % 50);
  size_t total = 0, want = 0;
  for (int r = 0; r < repeat; ++r) {
    total = 0;
    for (int k = 0; k < SEARCHES; ++k) total += sve_memchr(haystack, (uint8_t)(201 + k), SIZE);
  }
  for (int k = 0; k < SEARCHES; ++k) want += scalar_memchr(haystack, (uint8_t)(201 + k), SIZE);
  return bench_report("memchr_u8", total == want, (double)total);
}

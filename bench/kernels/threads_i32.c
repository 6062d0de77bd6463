/* Sixteen threads, each summing its own slice with the same SVE loop: every
 * thread meets the loop's blocks for itself. */
#include <arm_sve.h>
#include <pthread.h>
#include <stdint.h>

#include "bench_check.h"

#define THREADS 16
#define SLICE 2003
#define DEFAULT_REPEAT 10

static int32_t v[THREADS * SLICE];
static int64_t sums[THREADS];
static int repeat;

__attribute__((noinline)) static int64_t sum(const int32_t* p, int n) {
  svint64_t acc = svdup_s64(0);
  for (int i = 0; i < n; i += (int)svcntd()) {
    svbool_t pg = svwhilelt_b64_s32(i, n);
    acc = svadd_s64_m(pg, acc, svld1sw_s64(pg, p + i));
  }
  return svaddv_s64(svptrue_b64(), acc);
}

static void* worker(void* arg) {
  const int t = (int)(intptr_t)arg;
  for (int r = 0; r < repeat; ++r) sums[t] = sum(v + t * SLICE, SLICE);
  return NULL;
}

SCALAR static int check(void) {
  for (int t = 0; t < THREADS; ++t) {
    int64_t s = 0;
    for (int i = 0; i < SLICE; ++i) s += v[t * SLICE + i];
    if (s != sums[t]) return 0;
  }
  return 1;
}

int main(int argc, char** argv) {
  repeat = bench_repeat(argc, argv, DEFAULT_REPEAT);
  for (int i = 0; i < THREADS * SLICE; ++i) v[i] = (i * 7919) % 4001 - 2000;
  pthread_t threads[THREADS];
  for (int t = 0; t < THREADS; ++t)
    if (pthread_create(&threads[t], NULL, worker, (void*)(intptr_t)t) != 0) return 2;
  for (int t = 0; t < THREADS; ++t) pthread_join(threads[t], NULL);
  double total = 0;
  for (int t = 0; t < THREADS; ++t) total += (double)sums[t];
  return bench_report("threads_i32", check(), total);
}

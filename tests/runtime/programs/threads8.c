// Eight threads, each with its own vectors, run the same SVE loop at the same
// time; every thread's registers are its own, so each gets its own result.
#include <inttypes.h>
#include <pthread.h>
#include <stdint.h>
#include <stdio.h>

#include "sve_loop.h"

enum { kThreads = 8, kRounds = 300 };

static pthread_barrier_t start_together;

struct work {
  int id;
  uint32_t acc[4], step[4];
  uint64_t x26, x27, x28;
};

static void* run(void* p) {
  struct work* w = p;
  for (int i = 0; i < 4; ++i) {
    w->acc[i] = (uint32_t)(w->id * 1000 + i);
    w->step[i] = (uint32_t)(w->id + 1 + i);
  }
  uint64_t x26 = 0x2600 + w->id, x27 = 0x2700 + w->id, x28 = 0x2800 + w->id;
  pthread_barrier_wait(&start_together);
  __asm__ volatile("mov x26, %[x26]\n\tmov x27, %[x27]\n\tmov x28, %[x28]\n\t" SVE_LOOP_ON_Z0_Z1
                   "mov %[x26], x26\n\tmov %[x27], x27\n\tmov %[x28], x28"
                   : [x26] "+r"(x26), [x27] "+r"(x27), [x28] "+r"(x28)
                   : [acc] "r"(w->acc), [step] "r"(w->step), [rounds] "r"((uint64_t)kRounds)
                   : "x9", "x26", "x27", "x28", "v0", "v1", "memory", "cc");
  w->x26 = x26;
  w->x27 = x27;
  w->x28 = x28;
  return NULL;
}

int main(void) {
  pthread_t threads[kThreads];
  struct work work[kThreads];
  pthread_barrier_init(&start_together, NULL, kThreads);
  for (int t = 0; t < kThreads; ++t) {
    work[t].id = t;
    pthread_create(&threads[t], NULL, run, &work[t]);
  }
  for (int t = 0; t < kThreads; ++t) pthread_join(threads[t], NULL);
  for (int t = 0; t < kThreads; ++t) {
    const struct work* w = &work[t];
    printf("thread %d: %" PRIu32 " %" PRIu32 " %" PRIu32 " %" PRIu32 "  x26 %" PRIx64
           " x27 %" PRIx64 " x28 %" PRIx64 "\n",
           t, w->acc[0], w->acc[1], w->acc[2], w->acc[3], w->x26, w->x27, w->x28);
  }
  return 0;
}

// One SVE loop, run by the main thread until its code is patched, then by a
// thread that starts afterwards and enters the fragment the main thread
// built, by the patched site's branch, then by the main thread again.
#include <inttypes.h>
#include <pthread.h>
#include <stdint.h>
#include <stdio.h>

#include "sve_loop.h"

enum { kRounds = 100 };

struct work {
  uint32_t acc[4], step[4];
  uint64_t x28;
};

// One copy of the loop, at one address, for both threads.
__attribute__((noinline)) static void run(struct work* w) {
  uint64_t x28 = w->x28;
  __asm__ volatile("mov x28, %[x28]\n\t" SVE_LOOP_ON_Z0_Z1 "mov %[x28], x28"
                   : [x28] "+r"(x28)
                   : [acc] "r"(w->acc), [step] "r"(w->step), [rounds] "r"((uint64_t)kRounds)
                   : "x9", "x28", "v0", "v1", "memory", "cc");
  w->x28 = x28;
}

static void* late(void* p) {
  run(p);
  return NULL;
}

static void report(const char* who, const struct work* w) {
  printf("%s: %" PRIu32 " %" PRIu32 " %" PRIu32 " %" PRIu32 "  x28 %" PRIx64 "\n", who, w->acc[0],
         w->acc[1], w->acc[2], w->acc[3], w->x28);
}

int main(void) {
  struct work first = {{1, 2, 3, 4}, {5, 6, 7, 8}, 0x2801};
  struct work second = {{10, 20, 30, 40}, {1, 1, 2, 3}, 0x2802};
  run(&first);
  pthread_t thread;
  pthread_create(&thread, NULL, late, &second);
  pthread_join(thread, NULL);
  run(&first);
  report("main", &first);
  report("late thread", &second);
  return 0;
}

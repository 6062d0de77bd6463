// A program whose emulated SVE instructions can be counted by hand: the main
// thread and three others each run hot_loop 1000 times (an add and a sub per
// round), then the main thread runs cold_loop 10 times (one orr per round).
// Under `zorvo --mix` the mix must say 4 threads, 8,010 instructions: 4,000
// add, 4,000 sub and 10 orr, with hot_loop's two words on top.
#include <pthread.h>
#include <stdio.h>

__attribute__((noinline)) static void hot_loop(int rounds) {
  for (int i = 0; i < rounds; ++i)
    __asm__ volatile("add z0.s, z0.s, z1.s\n\tsub z2.d, z2.d, z3.d" ::: "v0", "v2");
}

__attribute__((noinline)) static void cold_loop(int rounds) {
  for (int i = 0; i < rounds; ++i) __asm__ volatile("orr z4.d, z5.d, z6.d" ::: "v4");
}

static void* worker(void* arg) {
  (void)arg;
  hot_loop(1000);
  return NULL;
}

int main(void) {
  pthread_t threads[3];
  for (int i = 0; i < 3; ++i) pthread_create(&threads[i], NULL, worker, NULL);
  hot_loop(1000);
  for (int i = 0; i < 3; ++i) pthread_join(threads[i], NULL);
  cold_loop(10);
  printf("done\n");
  return 0;
}

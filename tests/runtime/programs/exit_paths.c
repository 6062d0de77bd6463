// The ways a process ends: main returns, exit() deep in a call, exit() from
// another thread. SVE code in an atexit handler still runs emulated, and the
// runtime's exit event comes after it.
#include <pthread.h>
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

static void sve_at_exit(void) {
  uint32_t v[4] = {10, 20, 30, 40};
  __asm__ volatile("ldr q5, [%0]\n\tsub z5.s, z5.s, #9\n\tstr q5, [%0]"
                   :
                   : "r"(v)
                   : "v5", "memory");
  printf("at exit: %u %u %u %u\n", v[0], v[1], v[2], v[3]);
  fflush(stdout);
}

static void __attribute__((noinline)) leave(int status) { exit(status); }

static void* exit_from_thread(void* arg) {
  (void)arg;
  leave(7);
  return NULL;
}

int main(int argc, char** argv) {
  atexit(sve_at_exit);
  const char* how = argc > 1 ? argv[1] : "return";
  if (strcmp(how, "exit") == 0) leave(6);
  if (strcmp(how, "thread") == 0) {
    pthread_t t;
    pthread_create(&t, NULL, exit_from_thread, NULL);
    for (;;) pause();
  }
  return 5;
}

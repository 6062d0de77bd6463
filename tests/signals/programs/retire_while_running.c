/* Code retired while another thread runs its translation: a worker runs an
 * fmla routine over and over while the main thread makes that routine's page
 * writable and executable again (which retires its translation), then
 * writes, runs and unmaps fmls routines of the same shape, whose
 * translations want the room the retired one had. The worker must only ever
 * see fmla's result, and the main thread fmls's. */
#include <pthread.h>
#include <stdatomic.h>
#include <stdio.h>
#include <string.h>
#include <sys/mman.h>

#include "fmla_routine.h"

enum { kRounds = 300 };

static atomic_int stop;
static long worker_runs, worker_wrong;

static unsigned* new_routine(unsigned op) {
  unsigned* code = mmap(NULL, 4096, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (code == MAP_FAILED) return NULL;
  memcpy(code, kRoutine, sizeof kRoutine);
  code[kOpWord] = op;
  mprotect(code, 4096, PROT_READ | PROT_EXEC);
  __builtin___clear_cache((char*)code, (char*)(code + 7));
  return code;
}

/* Element 3 of acc after one run, inside the shortest vector: 6 for fmla,
 * -6 for fmls. */
static float run(unsigned* code) {
  float acc[64] = {0}, b[64], c[64]; /* room for the longest vector */
  for (int i = 0; i < 64; ++i) b[i] = (float)i, c[i] = 2.0f;
  ((kernel_fn*)(void*)code)(acc, b, c);
  return acc[3];
}

static void* worker(void* routine) {
  while (!atomic_load(&stop) || worker_runs < kRounds) {
    worker_wrong += run(routine) != 6.0f;
    ++worker_runs;
  }
  return NULL;
}

int main(void) {
  unsigned* shared = new_routine(kFmla);
  if (shared == NULL) return 1;
  pthread_t thread;
  pthread_create(&thread, NULL, worker, shared);
  long main_wrong = 0;
  for (int round = 0; round < kRounds; ++round) {
    mprotect(shared, 4096, PROT_READ | PROT_WRITE | PROT_EXEC);
    mprotect(shared, 4096, PROT_READ | PROT_EXEC);
    unsigned* mine = new_routine(kFmls);
    if (mine == NULL) return 1;
    main_wrong += run(mine) != -6.0f;
    munmap(mine, 4096);
  }
  atomic_store(&stop, 1);
  pthread_join(thread, NULL);
  printf("%d rounds: the worker saw %ld wrong results, the main thread %ld\n", kRounds,
         worker_wrong, main_wrong);
  return worker_wrong + main_wrong != 0;
}

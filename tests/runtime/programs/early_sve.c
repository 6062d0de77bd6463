// SVE wherever a program can put it before and after main: a linked
// library's ifunc resolver, static initialiser and constructor (ctor_lib),
// the program's preinit_array and constructor, a thread start routine, an
// atexit handler.
#include <arm_sve.h>
#include <pthread.h>
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>

int64_t ctor_lib_sum(void);
int64_t ctor_lib_thread_sum(void);
int64_t ctor_lib_table_sum(void);
int ctor_lib_vector_kind(void);
int64_t ctor_lib_sum_or_throw(int n);

static int32_t values[333];
static uint64_t preinit_lanes, constructor_lanes;

static int64_t sve_sum(void) {
  int64_t total = 0;
  for (int i = 0; i < 333; i += (int)svcntw()) {
    svbool_t pg = svwhilelt_b32(i, 333);
    total += svaddv_s32(pg, svld1_s32(pg, values + i));
  }
  return total;
}

static void preinit(int argc, char** argv, char** envp) {
  (void)argc, (void)argv, (void)envp;
  preinit_lanes = svcntw();
}
__attribute__((section(".preinit_array"), used)) static void (*preinit_entry)(int, char**,
                                                                              char**) = preinit;

__attribute__((constructor)) static void program_constructor(void) { constructor_lanes = svcntd(); }

static void at_exit(void) { printf("atexit handler: sum %lld\n", (long long)sve_sum()); }

static void* thread_start(void* arg) {
  (void)arg;
  printf("thread: sum %lld\n", (long long)sve_sum());
  return NULL;
}

int main(void) {
  for (int i = 0; i < 333; ++i) values[i] = 1000 - 3 * i;
  printf("preinit: %llu lanes of 32 bits\n", (unsigned long long)preinit_lanes);
  printf("constructor: %llu lanes of 64 bits\n", (unsigned long long)constructor_lanes);
  printf("library constructor: sum %lld of %lld\n", (long long)ctor_lib_sum(),
         (long long)ctor_lib_table_sum());
  printf("library constructor's thread: sum %lld\n", (long long)ctor_lib_thread_sum());
  printf("library ifunc: kind %d\n", ctor_lib_vector_kind());
  printf("library exceptions: %lld %lld\n", (long long)ctor_lib_sum_or_throw(50),
         (long long)ctor_lib_sum_or_throw(70));
  fflush(stdout);
  pthread_t t;
  pthread_create(&t, NULL, thread_start, NULL);
  pthread_join(t, NULL);
  atexit(at_exit);
  return 3;
}

// A statically linked SVE program: its own C library (which picks its SVE
// string functions, since the processor has SVE) owns the thread pointer.
// SVE in main, in the C library, in a thread (with "thread") and in an atexit
// handler. With "exec PROGRAM ARGS...", it executes PROGRAM after main's SVE
// work instead of returning.
#include <arm_sve.h>
#include <pthread.h>
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/auxv.h>
#include <unistd.h>

#ifndef HWCAP_SVE
#define HWCAP_SVE (1 << 22)
#endif

static int32_t values[1000];

static int64_t sve_sum(void) {
  int64_t total = 0;
  for (int i = 0; i < 1000; i += (int)svcntw()) {
    svbool_t pg = svwhilelt_b32(i, 1000);
    total += svaddv_s32(pg, svld1_s32(pg, values + i));
  }
  return total;
}

static void at_exit(void) { printf("atexit: sum %lld\n", (long long)sve_sum()); }

static void* thread_main(void* arg) {
  (void)arg;
  printf("thread: sum %lld\n", (long long)sve_sum());
  return NULL;
}

int main(int argc, char** argv) {
  for (int i = 0; i < 1000; ++i) values[i] = i * 3 - 7;
  char* text = malloc(4000);
  memset(text, 'x', 3999);
  text[3999] = 0;
  printf("HWCAP_SVE %d, %d lanes, sum %lld, strlen %zu\n", (getauxval(AT_HWCAP) & HWCAP_SVE) != 0,
         (int)svcntw(), (long long)sve_sum(), strlen(text));
  free(text);
  atexit(at_exit);
  if (argc > 2 && strcmp(argv[1], "exec") == 0) {
    fflush(stdout);
    execv(argv[2], argv + 2);
    printf("exec failed\n");
    return 1;
  }
  if (argc > 1 && strcmp(argv[1], "thread") == 0) {
    pthread_t t;
    pthread_create(&t, NULL, thread_main, NULL);
    pthread_join(t, NULL);
  }
  return 6;
}

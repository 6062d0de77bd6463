// Run-time dispatch as libraries do it: the SVE path only when the auxiliary
// vector says the processor has SVE, in the main thread, a new thread and a
// forked child, with the vector length the kernel reports.
#include <arm_sve.h>
#include <pthread.h>
#include <stdint.h>
#include <stdio.h>
#include <sys/auxv.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#ifndef HWCAP_SVE
#define HWCAP_SVE (1 << 22)
#endif

static int32_t data[1000];

static int64_t sum_sve(void) {
  int64_t total = 0;
  for (int i = 0; i < 1000; i += (int)svcntw()) {
    svbool_t pg = svwhilelt_b32(i, 1000);
    total += svaddv_s32(pg, svld1_s32(pg, data + i));
  }
  return total;
}

// Kept scalar: this is the path a processor without SVE takes.
__attribute__((optimize("no-tree-vectorize"))) static int64_t sum_plain(void) {
  int64_t total = 0;
  for (int i = 0; i < 1000; ++i) total += data[i];
  return total;
}

static void report(const char* who) {
  const int sve = (getauxval(AT_HWCAP) & HWCAP_SVE) != 0;
  printf("%s: HWCAP_SVE %d, PR_SVE_GET_VL %d, ", who, sve, prctl(PR_SVE_GET_VL, 0, 0, 0, 0));
  if (sve)
    printf("SVE path: %d bytes, sum %lld\n", (int)svcntb(), (long long)sum_sve());
  else
    printf("plain path: sum %lld\n", (long long)sum_plain());
  fflush(stdout);
}

extern char** environ;

// Walks the initial stack from the environment's end, as a C library's
// start-up code does, and checks that it finds the vector getauxval reads.
static void report_stack_vector(void) {
  char** e = environ;
  while (*e) ++e;
  const unsigned long* aux = (const unsigned long*)(e + 1);
  int entries = 0, agree = 1, sve = 0;
  for (; aux[0] != AT_NULL; aux += 2, ++entries) {
    if (aux[0] == AT_HWCAP) sve = (aux[1] & HWCAP_SVE) != 0;
    if (aux[0] == AT_IGNORE) continue;
    if (getauxval(aux[0]) != aux[1]) agree = 0;
  }
  printf("auxiliary vector after the environment: HWCAP_SVE %d, agrees with getauxval %d, %s\n",
         sve, agree, entries > 10 ? "complete" : "short");
}

static void* thread_main(void* arg) {
  report((const char*)arg);
  return NULL;
}

int main(void) {
  for (int i = 0; i < 1000; ++i) data[i] = i * 7 - 300;
  report("main");
  report_stack_vector();
  pthread_t t;
  pthread_create(&t, NULL, thread_main, "thread");
  pthread_join(t, NULL);
  const pid_t child = fork();
  if (child == 0) {
    report("child");
    _exit(0);
  }
  int status;
  waitpid(child, &status, 0);
  // The one length this processor has, asked for again.
  printf("PR_SVE_SET_VL 48: %d\n", prctl(PR_SVE_SET_VL, 48, 0, 0, 0));
  return 0;
}

/* SVE loads inside a region of interest, then an end of the process that
 * runs no exit handlers. Prints the records it expects in the trace, as
 * roi_trace does; the region is never closed.
 *   exit     _exit(3) from the main thread
 *   thread   a second thread traces and calls _exit(4) while main waits
 *   fatal    an SVE load from an unmapped page, with no handler: SIGSEGV
 *   chdir    the working directory changes first; main returns 0
 *   abort    abort(): SIGABRT, which the program does not handle
 *   term     SIGTERM sent to itself, which the program does not handle
 *   group    the exit_group system call made through syscall() */
#include <pthread.h>
#include <signal.h>
#include <stdint.h>
#include <stdlib.h>
#include <string.h>
#include <sys/mman.h>
#include <sys/syscall.h>
#include <unistd.h>

#include "expected_records.h"
#include "zorvo/roi.h"

static uint8_t all_words[6];
static uint32_t words[64];

static uintptr_t load_words(const uint32_t* src) {
  uintptr_t pc;
  __asm__ volatile("ldr p0, [%2]\n\tadr %0, 1f\n1:\tld1w {z0.s}, p0/z, [%1]"
                   : "=&r"(pc)
                   : "r"(src), "r"(all_words)
                   : "memory", "v0", "p0");
  return pc;
}

/* Fewer records than a buffer holds: none reaches the file before the end. */
static void traced_loads(void) {
  ZORVO_ROI_START();
  expect_marker(1);
  for (int i = 0; i < 5; ++i) {
    uintptr_t pc = load_words(words + 4 * i);
    expect("load", words + 4 * i, 48, pc);
  }
  fflush(stdout);
}

static void* exiting_thread(void* arg) {
  (void)arg;
  traced_loads();
  _exit(4);
}

int main(int argc, char** argv) {
  const char* how = argc > 1 ? argv[1] : "exit";
  set_bits(all_words, 4, 0, 12);
  if (strcmp(how, "chdir") == 0 && chdir("/") != 0) return 1;
  if (strcmp(how, "thread") == 0) {
    pthread_t t;
    pthread_create(&t, NULL, exiting_thread, NULL);
    pthread_join(t, NULL);
    return 1;
  }
  traced_loads();
  if (strcmp(how, "exit") == 0) _exit(3);
  fflush(stdout);
  if (strcmp(how, "abort") == 0) abort();
  if (strcmp(how, "term") == 0) kill(getpid(), SIGTERM);
  if (strcmp(how, "group") == 0) syscall(SYS_exit_group, 5);
  if (strcmp(how, "fatal") == 0) {
    uint32_t* gone = mmap(NULL, 4096, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    printf("# unmapped 0x%lx\n", (unsigned long)(uintptr_t)gone);
    fflush(stdout);
    load_words(gone);
  }
  return 0;
}

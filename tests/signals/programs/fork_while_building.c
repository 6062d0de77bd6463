/* fork() while other threads keep building and retiring translations: every
 * child, whose first SVE block is new to it, must run it and exit, whatever
 * the parent's other threads were doing at the moment of the fork.
 *
 * Two workers loop over a page of generated SVE code: make it writable
 * (its translation is retired), executable again, run it (it is translated
 * anew). The main thread forks meanwhile; a child that has not exited
 * after a generous wait counts as hung and the run stops there. */
#define _GNU_SOURCE
#include <arm_sve.h>
#include <pthread.h>
#include <signal.h>
#include <stdatomic.h>
#include <stdint.h>
#include <stdio.h>
#include <string.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <time.h>
#include <unistd.h>

enum { FORKS = 40, WORKERS = 2, WAIT_SECONDS = 20 };

static atomic_int stop;

/* cntw x0; ret */
static const uint32_t kCountWords[] = {0x04a0e3e0, 0xd65f03c0};

static void* worker(void* arg) {
  (void)arg;
  const long page = sysconf(_SC_PAGESIZE);
  uint32_t* code = mmap(NULL, page, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (code == MAP_FAILED) return (void*)1;
  long bad = 0;
  while (!atomic_load(&stop)) {
    mprotect(code, page, PROT_READ | PROT_WRITE);
    memcpy(code, kCountWords, sizeof kCountWords);
    __builtin___clear_cache((char*)code, (char*)code + sizeof kCountWords);
    mprotect(code, page, PROT_READ | PROT_EXEC);
    const uint64_t words = ((uint64_t(*)(void))code)();
    if (words != svcntw()) ++bad;
  }
  munmap(code, page);
  return (void*)bad;
}

/* Run only in the children, so that each has a block to translate. */
__attribute__((noinline)) static int child_work(int salt) {
  const svint32_t v = svindex_s32(salt, 1);
  return (int)(svaddv(svptrue_b32(), v) - salt * (int64_t)svcntw() ==
               (int64_t)svcntw() * ((int64_t)svcntw() - 1) / 2);
}

/* The child's status, or -1 when it did not end in time (it is killed). */
static int wait_child(pid_t pid) {
  const struct timespec pause = {0, 5 * 1000 * 1000};
  for (int waited = 0; waited < WAIT_SECONDS * 200; ++waited) {
    int status;
    if (waitpid(pid, &status, WNOHANG) == pid) return status;
    nanosleep(&pause, NULL);
  }
  kill(pid, SIGKILL);
  waitpid(pid, NULL, 0);
  return -1;
}

int main(void) {
  pthread_t workers[WORKERS];
  for (int i = 0; i < WORKERS; ++i) pthread_create(&workers[i], NULL, worker, NULL);
  int ran = 0, failed = 0, hung = 0;
  for (int i = 0; i < FORKS && hung == 0; ++i) {
    const pid_t pid = fork();
    if (pid == 0) _exit(child_work(i) ? 0 : 1);
    const int status = wait_child(pid);
    if (status < 0)
      ++hung;
    else if (WIFEXITED(status) && WEXITSTATUS(status) == 0)
      ++ran;
    else
      ++failed;
  }
  atomic_store(&stop, 1);
  long bad = 0;
  for (int i = 0; i < WORKERS; ++i) {
    void* r;
    pthread_join(workers[i], &r);
    bad += (long)r;
  }
  printf("children ran %d, failed %d, hung %d; wrong counts in workers: %ld\n", ran, failed, hung,
         bad);
  return hung || failed || bad;
}

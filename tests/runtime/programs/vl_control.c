// The vector length controls behave as on a kernel whose processor offers
// exactly one length, the one RDVL reads: every valid request gets it, the
// inherit flag is kept per thread and passed to new threads, bad requests
// fail with EINVAL; an exec keeps the flag. The reference processor offers
// more lengths, so this
// program checks itself instead of being compared with it. With "static" (a
// statically linked build) it checks the calling thread only and does not
// exec: such a program's threads, children and exec'd programs start with
// the flag it was started with.
#include <errno.h>
#include <pthread.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

static int failures;
static int vl; // bytes, as RDVL reads them

static int read_vl(void) {
  long bytes;
  __asm__ volatile("rdvl %0, #1" : "=r"(bytes));
  return (int)bytes;
}

static void expect(const char* what, int got, int want, int want_errno) {
  if (got != want || (want < 0 && errno != want_errno)) {
    printf("FAIL %s: got %d (errno %d), want %d\n", what, got, errno, want);
    ++failures;
  }
}

static void* thread_main(void* arg) {
  (void)arg;
  expect("thread inherits the flag", prctl(PR_SVE_GET_VL), vl | PR_SVE_VL_INHERIT, 0);
  expect("thread clears its own flag", prctl(PR_SVE_SET_VL, vl), vl, 0);
  return NULL;
}

int main(int argc, char** argv) {
  vl = read_vl();
  // The length the run was started with, when the test says which.
  const char* want = getenv("EXPECT_VECTOR_BYTES");
  if (want) expect("the length asked for", vl, atoi(want), 0);
  // After an exec from a thread with the inherit flag set, the flag stays.
  if (argc > 1 && strcmp(argv[1], "exec'd") == 0) {
    expect("exec keeps the flag", prctl(PR_SVE_GET_VL), vl | PR_SVE_VL_INHERIT, 0);
    printf("%s\n", failures ? "after exec: FAILED" : "after exec: ok");
    return failures != 0;
  }
  expect("get", prctl(PR_SVE_GET_VL), vl, 0);
  // Shorter and longer requests get the one length there is.
  expect("set 16", prctl(PR_SVE_SET_VL, 16), vl, 0);
  expect("set 32", prctl(PR_SVE_SET_VL, 32), vl, 0);
  expect("set 64", prctl(PR_SVE_SET_VL, 64), vl, 0);
  expect("set 8192", prctl(PR_SVE_SET_VL, 8192), vl, 0);
  expect("set the length on exec", prctl(PR_SVE_SET_VL, vl | PR_SVE_SET_VL_ONEXEC), vl, 0);
  // Not a multiple of 16, out of range, unknown flags.
  expect("set 0", prctl(PR_SVE_SET_VL, 0), -1, EINVAL);
  expect("set 40", prctl(PR_SVE_SET_VL, 40), -1, EINVAL);
  expect("set 8208", prctl(PR_SVE_SET_VL, 8208), -1, EINVAL);
  expect("unknown flag", prctl(PR_SVE_SET_VL, vl | (1 << 20)), -1, EINVAL);

  expect("set inherit", prctl(PR_SVE_SET_VL, vl | PR_SVE_VL_INHERIT), vl | PR_SVE_VL_INHERIT, 0);
  expect("get inherit", prctl(PR_SVE_GET_VL), vl | PR_SVE_VL_INHERIT, 0);
  const int one_thread = argc > 1 && strcmp(argv[1], "static") == 0;
  if (one_thread) {
    expect("clear inherit", prctl(PR_SVE_SET_VL, vl), vl, 0);
    expect("other options", prctl(PR_GET_DUMPABLE) >= 0, 1, 0);
    printf("%s\n", failures ? "vector length controls: FAILED" : "vector length controls: ok");
    return failures != 0;
  }
  pthread_t t;
  pthread_create(&t, NULL, thread_main, NULL);
  pthread_join(t, NULL);
  expect("the thread's change stays its own", prctl(PR_SVE_GET_VL), vl | PR_SVE_VL_INHERIT, 0);
  fflush(stdout);
  const pid_t child = fork();
  if (child == 0) _exit(prctl(PR_SVE_GET_VL) == (vl | PR_SVE_VL_INHERIT) ? 0 : 1);
  int status;
  waitpid(child, &status, 0);
  expect("fork keeps the flag", WEXITSTATUS(status), 0, 0);
  expect("clear inherit", prctl(PR_SVE_SET_VL, vl), vl, 0);
  expect("set inherit again", prctl(PR_SVE_SET_VL, vl | PR_SVE_VL_INHERIT), vl | PR_SVE_VL_INHERIT,
         0);
  // Other options still reach the kernel.
  expect("other options", prctl(PR_GET_DUMPABLE) >= 0, 1, 0);
  printf("%s\n", failures ? "vector length controls: FAILED" : "vector length controls: ok");
  if (failures) return 1;
  fflush(stdout);
  execl("/proc/self/exe", argv[0], "exec'd", (char*)NULL);
  printf("FAIL exec: errno %d\n", errno);
  return 1;
}

/* Processes and threads made by clone through the C library's syscall(), as
 * programs that manage their own threads make them, running SVE beside
 * their creator.
 *
 * usage: raw_clone MODE
 *   thread   a thread on a stack of the program's own, sharing its creator's
 *            thread block; both run the same SVE loop at once
 *   fork     a child process (clone with SIGCHLD only) whose exit status is
 *            its SVE result
 *   vfork    clone with CLONE_VM | CLONE_VFORK: the child runs on its
 *            parent's stack and leaves by _exit */
#define _GNU_SOURCE
#include <arm_sve.h>
#include <sched.h>
#include <signal.h>
#include <stdint.h>
#include <stdio.h>
#include <string.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

enum { N = 501, ROUNDS = 400 };
static int32_t a[N], b[N];

__attribute__((noinline)) static int64_t sve_work(int rounds, int32_t salt) {
  svint32_t acc = svdup_s32(salt);
  for (int r = 0; r < rounds; ++r)
    for (int i = 0; i < N; i += (int)svcntw()) {
      const svbool_t pg = svwhilelt_b32(i, N);
      acc = svmla_m(pg, acc, svld1(pg, a + i), svld1(pg, b + i));
      acc = sveor_m(pg, acc, svreinterpret_s32(svlsr_x(pg, svreinterpret_u32(acc), 5)));
    }
  return svaddv(svptrue_b32(), acc);
}

static volatile int child_done;
static int64_t child_result;

static void child_body(void) {
  child_result = sve_work(ROUNDS, 2);
  __atomic_store_n(&child_done, 1, __ATOMIC_RELEASE);
}

/* clone(flags, stack) through syscall(); the child calls fn on that stack
 * and ends with the exit system call, also through syscall(). Written in
 * assembly so that the child needs nothing of its creator's frame. */
long start_raw_thread(void (*fn)(void), void* stack_top, unsigned long flags);
__asm__(".text\n"
        ".p2align 2\n"
        ".type start_raw_thread, %function\n"
        "start_raw_thread:\n"
        "  stp x19, x30, [sp, #-16]!\n"
        "  mov x19, x0\n"
        "  mov x3, x1\n"
        "  mov x1, x2\n"
        "  mov x2, x3\n"
        "  mov x0, #220\n" /* SYS_clone */
        "  mov x3, xzr\n"
        "  mov x4, xzr\n"
        "  mov x5, xzr\n"
        "  bl syscall\n"
        "  cbz x0, 1f\n"
        "  ldp x19, x30, [sp], #16\n"
        "  ret\n"
        "1:\n"
        "  blr x19\n"
        "  mov x0, #93\n" /* SYS_exit */
        "  mov x1, xzr\n"
        "  bl syscall\n"
        "  brk #0\n"
        ".size start_raw_thread, . - start_raw_thread\n");

static char thread_stack[256 * 1024] __attribute__((aligned(16)));

int main(int argc, char** argv) {
  const char* mode = argc > 1 ? argv[1] : "thread";
  for (int i = 0; i < N; ++i) {
    a[i] = (i * 31) % 211 - 100;
    b[i] = (i * 17) % 197 - 90;
  }
  const int64_t expect_child = sve_work(ROUNDS, 2), expect_parent = sve_work(ROUNDS, 3);
  if (strcmp(mode, "thread") == 0) {
    const unsigned long flags =
        CLONE_VM | CLONE_FS | CLONE_FILES | CLONE_SIGHAND | CLONE_THREAD | CLONE_SYSVSEM;
    const long tid = start_raw_thread(child_body, thread_stack + sizeof thread_stack, flags);
    if (tid <= 0) {
      printf("clone failed\n");
      return 1;
    }
    int parent_right = 0;
    for (int round = 0; round < 4; ++round) parent_right += sve_work(ROUNDS, 3) == expect_parent;
    while (!__atomic_load_n(&child_done, __ATOMIC_ACQUIRE)) sched_yield();
    printf("thread: child result %s, parent results right %d of 4\n",
           child_result == expect_child ? "right" : "WRONG", parent_right);
  } else {
    const int vfork = strcmp(mode, "vfork") == 0;
    const long pid = syscall(SYS_clone, (vfork ? CLONE_VM | CLONE_VFORK : 0) | SIGCHLD, 0, 0, 0, 0);
    if (pid == 0) _exit(sve_work(ROUNDS, 2) == expect_child ? 42 : 7);
    int status = 0;
    waitpid((pid_t)pid, &status, 0);
    printf("%s: child exit status %d, parent result %s\n", mode, WEXITSTATUS(status),
           sve_work(ROUNDS, 3) == expect_parent ? "right" : "WRONG");
  }
  return 0;
}

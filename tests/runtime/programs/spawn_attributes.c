// posix_spawn's attributes reach the program it starts: the parent spawns
// this program again with a signal mask (SIGUSR1 blocked), a signal reset
// to its default (SIGUSR2, ignored in the parent), a new process group and
// a file action (standard output into a pipe); SIGHUP, ignored in the
// parent and not reset, stays ignored. The child reports what it sees, the
// parent compares it with what it asked for and exits 1 on a difference.
#include <arm_sve.h>
#include <signal.h>
#include <spawn.h>
#include <stdint.h>
#include <stdio.h>
#include <string.h>
#include <sys/wait.h>
#include <unistd.h>

extern char** environ;

static int ignored(int signal) {
  struct sigaction now;
  sigaction(signal, NULL, &now);
  return now.sa_handler == SIG_IGN;
}

static int child(void) {
  static int32_t values[4];
  for (int i = 0; i < 4; ++i) values[i] = i;
  sigset_t mask;
  sigprocmask(SIG_BLOCK, NULL, &mask);
  printf("sum %d, usr1 blocked %d, usr2 ignored %d, hup ignored %d, own group %d\n",
         (int)svaddv_s32(svwhilelt_b32(0, 4), svld1_s32(svwhilelt_b32(0, 4), values)),
         sigismember(&mask, SIGUSR1), ignored(SIGUSR2), ignored(SIGHUP), getpgrp() == getpid());
  return 0;
}

int main(int argc, char** argv) {
  if (argc > 1 && strcmp(argv[1], "child") == 0) return child();
  signal(SIGUSR2, SIG_IGN);
  signal(SIGHUP, SIG_IGN);
  posix_spawnattr_t attr;
  posix_spawnattr_init(&attr);
  sigset_t mask, defaults;
  sigemptyset(&mask);
  sigaddset(&mask, SIGUSR1);
  sigemptyset(&defaults);
  sigaddset(&defaults, SIGUSR2);
  posix_spawnattr_setsigmask(&attr, &mask);
  posix_spawnattr_setsigdefault(&attr, &defaults);
  posix_spawnattr_setpgroup(&attr, 0);
  posix_spawnattr_setflags(&attr,
                           POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETPGROUP);
  int out[2];
  posix_spawn_file_actions_t actions;
  if (pipe(out) != 0) return 2;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_adddup2(&actions, out[1], 1);
  posix_spawn_file_actions_addclose(&actions, out[0]);
  posix_spawn_file_actions_addclose(&actions, out[1]);
  char* child_argv[] = {argv[0], (char*)"child", NULL};
  pid_t pid;
  const int error = posix_spawn(&pid, "/proc/self/exe", &actions, &attr, child_argv, environ);
  close(out[1]);
  if (error != 0) {
    printf("posix_spawn: %s\n", strerror(error));
    return 1;
  }
  char report[256] = "";
  const ssize_t n = read(out[0], report, sizeof report - 1);
  report[n > 0 ? n : 0] = 0;
  int status;
  waitpid(pid, &status, 0);
  printf("child said: %schild status: %d\n", report, status);
  const char expected[] = "sum 6, usr1 blocked 1, usr2 ignored 0, hup ignored 1, own group 1\n";
  return strcmp(report, expected) == 0 && status == 0 ? 0 : 1;
}

// The first of an exec chain: runs SVE, optionally spawns a program, then
// executes the program its arguments name (an AArch64 program runs under
// zorvo again).
#include <arm_sve.h>
#include <spawn.h>
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/wait.h>
#include <unistd.h>

extern char** environ;

#include "zorvo/roi.h"

int main(int argc, char** argv) {
  static int32_t values[64];
  for (int i = 0; i < 64; ++i) values[i] = 3 * i + 1;
  // A load from memory, so that the program leaves a trace.
  // Traced only when asked: the reference processor has no region markers.
  const int traced = getenv("EXEC_CHAIN_TRACE") != NULL;
  if (traced) ZORVO_ROI_START();
  svint32_t v = svld1_s32(svptrue_b32(), values);
  if (traced) ZORVO_ROI_STOP();
  printf("first: %d lanes, sum %lld\n", (int)svcntw(), (long long)svaddv_s32(svptrue_b32(), v));
  fflush(stdout);
  if (argc < 2) return 0;
  // --spawn PROGRAM: PROGRAM runs as a child first, by posix_spawn, or by
  // posix_spawnp when it is a name to find on PATH. Its standard output is
  // a pipe, by a file action; what it writes there is printed here.
  if (argc > 2 && strcmp(argv[1], "--spawn") == 0) {
    char* child_argv[] = {argv[2], NULL};
    int out[2];
    posix_spawn_file_actions_t actions;
    if (pipe(out) != 0 || posix_spawn_file_actions_init(&actions) != 0 ||
        posix_spawn_file_actions_adddup2(&actions, out[1], 1) != 0 ||
        posix_spawn_file_actions_addclose(&actions, out[0]) != 0)
      return 126;
    pid_t child;
    int status = -1;
    const int error = strchr(argv[2], '/')
                          ? posix_spawn(&child, argv[2], &actions, NULL, child_argv, environ)
                          : posix_spawnp(&child, argv[2], &actions, NULL, child_argv, environ);
    close(out[1]);
    FILE* from_child = fdopen(out[0], "r");
    char line[256];
    while (error == 0 && fgets(line, sizeof line, from_child)) printf("child: %s", line);
    fclose(from_child);
    if (error == 0) waitpid(child, &status, 0);
    printf("spawned child: status %d\n", WIFEXITED(status) ? WEXITSTATUS(status) : -1);
    fflush(stdout);
    argv += 2;
    argc -= 2;
    if (argc < 2) return 0;
  }
  execv(argv[1], argv + 1);
  perror("execv");
  return 127;
}

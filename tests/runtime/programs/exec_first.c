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
  // --spawn PROGRAM: PROGRAM runs as a child first, by posix_spawn.
  if (argc > 2 && strcmp(argv[1], "--spawn") == 0) {
    char* child_argv[] = {argv[2], NULL};
    pid_t child;
    int status = -1;
    if (posix_spawn(&child, argv[2], NULL, NULL, child_argv, environ) == 0)
      waitpid(child, &status, 0);
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

// The first of an exec chain: runs SVE, then executes the program its
// arguments name (an AArch64 program runs under zorvo again).
#include <arm_sve.h>
#include <stdio.h>
#include <unistd.h>

int main(int argc, char** argv) {
  svint32_t v = svindex_s32(1, 3);
  printf("first: %d lanes, sum %lld\n", (int)svcntw(), (long long)svaddv_s32(svptrue_b32(), v));
  fflush(stdout);
  if (argc < 2) return 0;
  execv(argv[1], argv + 1);
  perror("execv");
  return 127;
}

// The second of an exec chain: runs SVE, then executes a program found on
// PATH (on an x86 host a program of the host, which runs as it is).
#include <arm_sve.h>
#include <stdio.h>
#include <unistd.h>

int main(int argc, char** argv) {
  svint64_t v = svindex_s64(10, -2);
  printf("second: %d lanes, sum %lld\n", (int)svcntd(), (long long)svaddv_s64(svptrue_b64(), v));
  fflush(stdout);
  if (argc < 2) return 4;
  execvp(argv[1], argv + 1);
  perror("execvp");
  return 127;
}

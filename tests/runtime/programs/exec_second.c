// The second of an exec chain: runs SVE, then executes a program found on
// PATH (on an x86 host a program of the host, which runs as it is).
#include <arm_sve.h>
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>
#include <unistd.h>

#include "zorvo/roi.h"

int main(int argc, char** argv) {
  static int64_t values[32];
  for (int i = 0; i < 32; ++i) values[i] = 10 - 2 * i;
  // Traced only when asked: the reference processor has no region markers.
  const int traced = getenv("EXEC_CHAIN_TRACE") != NULL;
  if (traced) ZORVO_ROI_START();
  svint64_t v = svld1_s64(svptrue_b64(), values);
  if (traced) ZORVO_ROI_STOP();
  printf("second: %d lanes, sum %lld\n", (int)svcntd(), (long long)svaddv_s64(svptrue_b64(), v));
  fflush(stdout);
  if (argc < 2) return 4;
  execvp(argv[1], argv + 1);
  perror("execvp");
  return 127;
}

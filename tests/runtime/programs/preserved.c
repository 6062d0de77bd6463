// Every general register, SP, the flags, FPSR and FPCR pass through SVE
// instructions unchanged; X26, X27 and X28, which the emulation's generated
// code borrows, above all.
#include <inttypes.h>
#include <stdint.h>
#include <stdio.h>

void run_with_patterns(uint64_t* out);

int main(void) {
  uint64_t out[35];
  run_with_patterns(out);
  for (int i = 0; i < 31; ++i) printf("x%-2d %016" PRIx64 "\n", i, out[i]);
  printf("nzcv %08" PRIx64 "\nfpsr %08" PRIx64 "\nfpcr %08" PRIx64 "\nsp unchanged %" PRIu64 "\n",
         out[31], out[32], out[33], out[34]);
  return 0;
}

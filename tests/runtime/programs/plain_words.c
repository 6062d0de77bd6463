// Plain data-processing words inside blocks of SVE words, and loops closed
// by a conditional branch inside the block: every register and the flags as
// the reference leaves them.
#include <inttypes.h>
#include <stdint.h>
#include <stdio.h>

void run_plain_words(uint64_t* out);

int main(void) {
  uint64_t out[31];
  run_plain_words(out);
  for (int i = 0; i < 28; ++i) printf("x%-2d %016" PRIx64 "\n", i, out[i]);
  printf("x29 %016" PRIx64 "\nnzcv after the block %08" PRIx64 "\nnzcv at the end %08" PRIx64 "\n",
         out[28], out[29], out[30]);
  return 0;
}

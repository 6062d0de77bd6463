/* ROUNDS rounds of a loop with two SVE instructions, for the steady-state
 * cost of counting them under `zorvo --mix`: two lengths, with and without
 * the mix, and the differences. Usage: mix_loop ROUNDS */
#include <stdio.h>
#include <stdlib.h>

int main(int argc, char** argv) {
  const long rounds = argc > 1 ? atol(argv[1]) : 1000;
  for (long i = 0; i < rounds; ++i)
    __asm__ volatile("add z0.s, z0.s, z1.s\n\tsub z2.d, z2.d, z3.d" ::: "v0", "v2");
  printf("mix_loop: ok (%ld rounds)\n", rounds);
  return 0;
}

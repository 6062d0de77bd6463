// An SVE word that no row of the decode tables knows ends the program with
// SIGILL, as it would on a processor without SVE and no emulation.
#include <stdio.h>

int main(void) {
  printf("before\n");
  fflush(stdout);
  __asm__ volatile("add z0.s, z0.s, z1.s\n\t.inst 0x252c9001\n\tadd z0.s, z0.s, z1.s" ::: "v0");
  printf("not reached\n");
  return 0;
}

// An SVE word that zorvo does not carry out ends the program with SIGILL, as
// it would on a processor without SVE and no emulation. With no argument the
// word is one that no row of the decode tables knows; with one, it is a word
// inside a row that the architecture reserves, which the SVE processor
// refuses too.
#include <stdio.h>
#include <string.h>

// Each between two ordinary SVE words, so that it sits inside a run.
#define BETWEEN_ADDS(word) "add z0.s, z0.s, z1.s\n\t.inst " word "\n\tadd z0.s, z0.s, z1.s"

int main(int argc, char** argv) {
  const char* which = argc > 1 ? argv[1] : "";
  printf("before\n");
  fflush(stdout);
  if (!strcmp(which, "byte-shifted-add")) // add z0.b, z0.b, #3, lsl #8
    __asm__ volatile(BETWEEN_ADDS("0x2520e060") ::: "v0");
  else if (!strcmp(which, "offset-xzr")) // ld1b {z0.b}, p0/z, [x0, xzr]
    __asm__ volatile(BETWEEN_ADDS("0xa41f4000") ::: "v0");
  else if (!strcmp(which, "no-bitmask")) // orr z0.d, z0.d, N = 1, imms = 111111
    __asm__ volatile(BETWEEN_ADDS("0x050207e0") ::: "v0");
  else
    __asm__ volatile(BETWEEN_ADDS("0x252c9001") ::: "v0");
  printf("not reached\n");
  return 0;
}

// Every add and subtract form at every element size, each with its own
// registers, the results read back through the low 128 bits of the
// destination (the NEON view of a Z register). The same output is expected
// on a processor with SVE and under zorvo on one without.
#include <inttypes.h>
#include <stdint.h>
#include <stdio.h>

static uint8_t in_a[16], in_b[16];

static void show(const char* what, const uint8_t* r, int esize) {
  printf("%-36s", what);
  for (int i = 0; i < 16; i += esize) {
    uint64_t v = 0;
    for (int k = esize - 1; k >= 0; --k) v = (v << 8) | r[i + k];
    printf(" %0*" PRIx64, 2 * esize, v);
  }
  printf("\n");
}

// d = insn over the NEON-loaded sources n and m; d may equal n.
#define CASE(insn, esize, d, n, m) CASE_AS(insn, insn, esize, d, n, m)
#define CASE_AS(label, insn, esize, d, n, m)                                                       \
  do {                                                                                             \
    uint8_t out[16];                                                                               \
    __asm__ volatile("ldr q" #n ", [%0]\n\tldr q" #m ", [%1]\n\t" insn "\n\tstr q" #d ", [%2]"     \
                     :                                                                             \
                     : "r"(in_a), "r"(in_b), "r"(out)                                              \
                     : "v" #n, "v" #m, "v" #d, "memory");                                          \
    show(label, out, esize);                                                                       \
  } while (0)

int main(void) {
  for (int i = 0; i < 16; ++i) {
    in_a[i] = (uint8_t)(0xf0 + i * 7);
    in_b[i] = (uint8_t)(i * 37 + 9);
  }
  in_a[15] = 0xff;
  in_b[15] = 0x01; // a carry out of every lane size
  in_a[0] = 0x00;
  in_b[0] = 0x01; // a borrow

  // Unpredicated vectors.
  CASE("add z0.b, z1.b, z2.b", 1, 0, 1, 2);
  CASE("sub z31.b, z30.b, z29.b", 1, 31, 30, 29);
  CASE("add z3.h, z4.h, z5.h", 2, 3, 4, 5);
  CASE("sub z6.h, z6.h, z7.h", 2, 6, 6, 7);
  CASE("add z8.s, z9.s, z10.s", 4, 8, 9, 10);
  CASE("sub z11.s, z12.s, z11.s", 4, 11, 12, 11);
  CASE("add z13.d, z14.d, z15.d", 8, 13, 14, 15);
  CASE("sub z16.d, z17.d, z18.d", 8, 16, 17, 18);

  // Immediates, with and without the shift by 8.
  CASE("add z19.b, z19.b, #255", 1, 19, 19, 20);
  CASE("sub z21.b, z21.b, #1", 1, 21, 21, 22);
  CASE("add z23.h, z23.h, #17", 2, 23, 23, 24);
  CASE("sub z25.h, z25.h, #1, lsl #8", 2, 25, 25, 26);
  CASE("add z27.s, z27.s, #200, lsl #8", 4, 27, 27, 28);
  CASE("sub z28.s, z28.s, #99", 4, 28, 28, 27);
  CASE("add z1.d, z1.d, #128", 8, 1, 1, 2);
  CASE("sub z2.d, z2.d, #255, lsl #8", 8, 2, 2, 3);

  // Merging forms. The program never writes a predicate register, and every
  // one is all false when a process starts, so each element keeps the
  // destination's value. (Forms with active elements need an instruction
  // that sets predicates.)
  CASE("add z0.b, p0/m, z0.b, z1.b", 1, 0, 0, 1);
  CASE("sub z2.b, p7/m, z2.b, z3.b", 1, 2, 2, 3);
  CASE("add z4.h, p3/m, z4.h, z5.h", 2, 4, 4, 5);
  CASE("sub z6.h, p1/m, z6.h, z7.h", 2, 6, 6, 7);
  CASE("add z8.s, p2/m, z8.s, z9.s", 4, 8, 8, 9);
  CASE("sub z10.s, p4/m, z10.s, z11.s", 4, 10, 10, 11);
  CASE("add z12.d, p5/m, z12.d, z13.d", 8, 12, 12, 13);
  CASE("sub z14.d, p6/m, z14.d, z15.d", 8, 14, 14, 15);

  // A run of SVE words in one block, each depending on the one before.
  CASE_AS("four in one block",
          "add z4.s, z5.s, z6.s\n\tsub z4.s, z4.s, z5.s\n\tadd z4.s, z4.s, #3\n\t"
          "sub z4.s, z6.s, z4.s",
          4, 4, 5, 6);
  return 0;
}

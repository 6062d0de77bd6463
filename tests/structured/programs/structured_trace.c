/* Structured loads and stores inside and outside a region of interest.
 * Prints, one line per record it expects in the trace, the fields as
 * `zorvo-trace csv` shows them after the sequence number: one record for
 * each component of each active structure, in address order, the flags
 * marking the first and the last of the instruction. With the argument
 * "unmarked" it runs the same accesses without markers and expects no
 * trace at all. */
#include <stdint.h>
#include <string.h>

#include "expected_records.h"
#include "zorvo/roi.h"

enum { first = 1, element = 2, last = 4 };

/* Predicate images for LDR P: one bit per vector byte, 48 bits. */
static uint8_t two_bytes[6], some_doubles[6], all_halves[6];

static void expect_access(const char* kind, const void* addr, unsigned size, uintptr_t pc,
                          unsigned flags) {
  if (marked) expect_flags(kind, addr, size, pc, flags);
}

/* Each helper runs one structured access and returns the address of its
 * word. */
static uintptr_t load_rgb(const uint8_t* src, const uint8_t* pred) {
  uintptr_t pc;
  __asm__ volatile("ldr p0, [%2]\n\tadr %0, 1f\n1:\tld3b {z0.b, z1.b, z2.b}, p0/z, [%1]"
                   : "=&r"(pc)
                   : "r"(src), "r"(pred)
                   : "memory", "v0", "v1", "v2", "p0");
  return pc;
}

/* st2d with the immediate form: one list of two vectors (96 bytes) down. */
static uintptr_t store_pairs_below(uint64_t* above, const uint8_t* pred) {
  uintptr_t pc;
  __asm__ volatile("ldr p1, [%2]\n\tadr %0, 1f\n1:\tst2d {z30.d, z31.d}, p1, [%1, #-2, mul vl]"
                   : "=&r"(pc)
                   : "r"(above), "r"(pred)
                   : "memory", "p1");
  return pc;
}

/* ld4h with an index register; the register list wraps from Z30 to Z1. */
static uintptr_t load_quads(const uint16_t* base, uint64_t index, const uint8_t* pred) {
  uintptr_t pc;
  __asm__ volatile(
      "ldr p2, [%3]\n\tadr %0, 1f\n1:\tld4h {z30.h, z31.h, z0.h, z1.h}, p2/z, [%1, %2, lsl #1]"
      : "=&r"(pc)
      : "r"(base), "r"(index), "r"(pred)
      : "memory", "v30", "v31", "v0", "v1", "p2");
  return pc;
}

static uint8_t pixels[3 * 48];
static uint64_t pairs[2 * 6 + 2 * 6];
static uint16_t halves[4 * 24 + 8];

int main(int argc, char** argv) {
  marked = !(argc > 1 && strcmp(argv[1], "unmarked") == 0);
  set_bits(two_bytes, 1, 0, 1);
  set_bits(two_bytes, 1, 47, 1);
  set_bits(some_doubles, 8, 1, 1);
  set_bits(some_doubles, 8, 4, 1);
  set_bits(all_halves, 2, 0, 24);

  load_rgb(pixels, two_bytes); /* before the region: not traced */
  if (marked) ZORVO_ROI_START();
  expect_marker(1);

  /* Structures 0 and 47 of three bytes each. */
  uintptr_t pc = load_rgb(pixels, two_bytes);
  expect_access("load", pixels + 0, 1, pc, first | element);
  expect_access("load", pixels + 1, 1, pc, element);
  expect_access("load", pixels + 2, 1, pc, element);
  expect_access("load", pixels + 141, 1, pc, element);
  expect_access("load", pixels + 142, 1, pc, element);
  expect_access("load", pixels + 143, 1, pc, element | last);

  /* Structures 1 and 4 of two doublewords, 96 bytes below the base. */
  pc = store_pairs_below(pairs + 12, some_doubles);
  expect_access("store", pairs + 2, 8, pc, first | element);
  expect_access("store", pairs + 3, 8, pc, element);
  expect_access("store", pairs + 8, 8, pc, element);
  expect_access("store", pairs + 9, 8, pc, element | last);

  /* All 24 structures of four halfwords, from element 8 on. */
  pc = load_quads(halves, 8, all_halves);
  for (unsigned j = 0; j < 96; ++j)
    expect_access("load", halves + 8 + j, 2, pc,
                  element | (j == 0 ? first : 0) | (j == 95 ? last : 0));

  if (marked) ZORVO_ROI_STOP();
  expect_marker(0);
  load_rgb(pixels, two_bytes); /* after it: not traced */
  return 0;
}

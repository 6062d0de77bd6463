/* Structured loads and stores inside and outside a region of interest.
 * Prints, one line per record it expects in the trace, the fields as
 * `zorvo-trace csv` shows them after the sequence number: one record for
 * each component of each active structure, in address order, the flags
 * marking the first and the last of the instruction. With the argument
 * "unmarked" it runs the same accesses without markers and expects no
 * trace at all. */
#include <pthread.h>
#include <stdint.h>
#include <stdio.h>
#include <string.h>

#include "zorvo/roi.h"

enum { first = 1, element = 2, last = 4 };

static int marked = 1;

/* Predicate images for LDR P: one bit per vector byte, 48 bits. */
static uint8_t two_bytes[6], some_doubles[6], all_halves[6];

static void set_bit(uint8_t* image, unsigned elem_bytes, unsigned i) {
  const unsigned bit = i * elem_bytes;
  image[bit / 8] |= (uint8_t)(1u << (bit % 8));
}

static void expect(const char* kind, const void* addr, unsigned size, uintptr_t pc,
                   unsigned flags) {
  if (!marked) return;
  printf("0x%08x,%s,0x%lx,%u,0x%lx,%u\n", (unsigned)(uintptr_t)pthread_self(), kind,
         (unsigned long)(uintptr_t)addr, size, (unsigned long)pc, flags);
}

static void expect_marker(int start) {
  if (marked)
    printf("0x%08x,%s,0x0,0,0x0,0\n", start ? 0xffffffffu : 0xfffffffeu,
           start ? "roi_start" : "roi_stop");
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
  set_bit(two_bytes, 1, 0);
  set_bit(two_bytes, 1, 47);
  set_bit(some_doubles, 8, 1);
  set_bit(some_doubles, 8, 4);
  for (unsigned i = 0; i < 24; ++i) set_bit(all_halves, 2, i);

  load_rgb(pixels, two_bytes); /* before the region: not traced */
  if (marked) ZORVO_ROI_START();
  expect_marker(1);

  /* Structures 0 and 47 of three bytes each. */
  uintptr_t pc = load_rgb(pixels, two_bytes);
  expect("load", pixels + 0, 1, pc, first | element);
  expect("load", pixels + 1, 1, pc, element);
  expect("load", pixels + 2, 1, pc, element);
  expect("load", pixels + 141, 1, pc, element);
  expect("load", pixels + 142, 1, pc, element);
  expect("load", pixels + 143, 1, pc, element | last);

  /* Structures 1 and 4 of two doublewords, 96 bytes below the base. */
  pc = store_pairs_below(pairs + 12, some_doubles);
  expect("store", pairs + 2, 8, pc, first | element);
  expect("store", pairs + 3, 8, pc, element);
  expect("store", pairs + 8, 8, pc, element);
  expect("store", pairs + 9, 8, pc, element | last);

  /* All 24 structures of four halfwords, from element 8 on. */
  pc = load_quads(halves, 8, all_halves);
  for (unsigned j = 0; j < 96; ++j)
    expect("load", halves + 8 + j, 2, pc, element | (j == 0 ? first : 0) | (j == 95 ? last : 0));

  if (marked) ZORVO_ROI_STOP();
  expect_marker(0);
  load_rgb(pixels, two_bytes); /* after it: not traced */
  return 0;
}

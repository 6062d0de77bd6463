/* Gathers and scatters inside and outside a region of interest. Prints, one
 * line per record it expects in the trace, the fields as `zorvo-trace csv`
 * shows them after the sequence number: one record per active element, with
 * first, element and last flags. With the argument "unmarked" it runs the
 * same accesses without markers and expects no trace at all. Loaded and
 * stored values are checked too; a wrong one prints a line no trace has. */
#include <stdint.h>
#include <string.h>

#include "expected_records.h"
#include "zorvo/roi.h"

enum { first = 1, element = 2, last = 4 };

static int64_t table[64];
static int64_t table_offsets[6] = {5, 0, 9, 3, 3, 12};
static uint8_t doubles_0_2_3_5[6], words_0_1_3_10[6], doubles_4[6], no_doubles[6];
static uint32_t out_words[32];
static int32_t word_offsets[12] = {4, -1, 7, 4, 0, 1, 2, 3, 5, 6, 9, 10};
static uint32_t word_values[12] = {100, 101, 102, 103, 104, 105, 106, 107, 108, 109, 110, 111};
static uint8_t bytes[64];
static uint64_t byte_addresses[6];
static uint64_t loaded[6];

static void check(int ok, const char* what) {
  if (!ok) printf("wrong value: %s\n", what);
}

/* Each helper fills its vector operands with LDR Z (which leaves no record),
 * runs one gather or scatter and returns the address of its word. */
static uintptr_t gather_doubles(const uint8_t* pred) {
  uintptr_t pc;
  __asm__ volatile("ldr p0, [%2]\n\tldr z1, [%3]\n\tadr %0, 1f\n"
                   "1:\tld1d {z0.d}, p0/z, [%1, z1.d, lsl #3]\n\tstr z0, [%4]"
                   : "=&r"(pc)
                   : "r"(table), "r"(pred), "r"(table_offsets), "r"(loaded)
                   : "memory", "v0", "v1", "p0");
  return pc;
}

static uintptr_t scatter_words(const uint8_t* pred) {
  uintptr_t pc;
  __asm__ volatile("ldr p1, [%2]\n\tldr z2, [%3]\n\tldr z3, [%4]\n\tadr %0, 1f\n"
                   "1:\tst1w {z2.s}, p1, [%1, z3.s, sxtw #2]"
                   : "=&r"(pc)
                   : "r"(out_words + 8), "r"(pred), "r"(word_values), "r"(word_offsets)
                   : "memory", "v2", "v3", "p1");
  return pc;
}

static uintptr_t gather_bytes(const uint8_t* pred) {
  uintptr_t pc;
  __asm__ volatile("ldr p2, [%1]\n\tldr z5, [%2]\n\tadr %0, 1f\n"
                   "1:\tld1b {z4.d}, p2/z, [z5.d, #7]\n\tstr z4, [%3]"
                   : "=&r"(pc)
                   : "r"(pred), "r"(byte_addresses), "r"(loaded)
                   : "memory", "v4", "v5", "p2");
  return pc;
}

static void region(void) {
  if (marked) ZORVO_ROI_START();
  expect_marker(1);

  uintptr_t pc = gather_doubles(doubles_0_2_3_5);
  check(loaded[0] == 5 * 11 && loaded[1] == 0 && loaded[2] == 9 * 11 && loaded[3] == 3 * 11 &&
            loaded[5] == 12 * 11,
        "ld1d gather");
  if (marked) {
    expect_flags("load", &table[5], 8, pc, first | element);
    expect_flags("load", &table[9], 8, pc, element);
    expect_flags("load", &table[3], 8, pc, element);
    expect_flags("load", &table[12], 8, pc, element | last);
  }

  /* Elements 0 and 3 go to one address: the later one stays, and each has
   * its record. */
  pc = scatter_words(words_0_1_3_10);
  check(out_words[12] == 103 && out_words[7] == 101 && out_words[17] == 110, "st1w scatter");
  if (marked) {
    expect_flags("store", &out_words[12], 4, pc, first | element);
    expect_flags("store", &out_words[7], 4, pc, element);
    expect_flags("store", &out_words[12], 4, pc, element);
    expect_flags("store", &out_words[17], 4, pc, element | last);
  }

  /* One active element carries all three flags; none leaves no record. */
  pc = gather_bytes(doubles_4);
  check(loaded[4] == 40 + 7 && loaded[0] == 0, "ld1b gather");
  if (marked) expect_flags("load", &bytes[40 + 7], 1, pc, first | element | last);
  gather_bytes(no_doubles);

  if (marked) ZORVO_ROI_STOP();
  expect_marker(0);
}

int main(int argc, char** argv) {
  marked = !(argc > 1 && strcmp(argv[1], "unmarked") == 0);
  for (unsigned i = 0; i < 64; ++i) table[i] = (int64_t)i * 11;
  for (unsigned i = 0; i < 64; ++i) bytes[i] = (uint8_t)i;
  for (unsigned i = 0; i < 6; ++i) byte_addresses[i] = (uint64_t)(uintptr_t)&bytes[i * 10];
  set_bits(doubles_0_2_3_5, 8, 0, 1);
  set_bits(doubles_0_2_3_5, 8, 2, 2);
  set_bits(doubles_0_2_3_5, 8, 5, 1);
  set_bits(words_0_1_3_10, 4, 0, 2);
  set_bits(words_0_1_3_10, 4, 3, 1);
  set_bits(words_0_1_3_10, 4, 10, 1);
  set_bits(doubles_4, 8, 4, 1);

  scatter_words(words_0_1_3_10); /* before the region: not traced */
  region();
  gather_doubles(doubles_0_2_3_5); /* after it: not traced */
  return 0;
}

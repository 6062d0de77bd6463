/* Contiguous SVE loads (plain and first-fault) and stores inside and
 * outside a region of interest, in two threads. Prints, one line per record
 * it expects in the trace, the fields as `zorvo-trace csv` shows them after
 * the sequence number. With the argument "unmarked" it runs the same
 * accesses without markers and expects no trace at all. */
#include <stdint.h>
#include <string.h>

#include "expected_records.h"
#include "zorvo/roi.h"

/* Predicate images for LDR P. */
static uint8_t all_words[6], some_words[6], five_doubles[6], all_bytes[6];

/* Each helper runs one SVE access and returns the address of its word. */
static uintptr_t load_words(const uint32_t* src, const uint8_t* pred) {
  uintptr_t pc;
  __asm__ volatile("ldr p0, [%2]\n\tadr %0, 1f\n1:\tld1w {z0.s}, p0/z, [%1]"
                   : "=&r"(pc)
                   : "r"(src), "r"(pred)
                   : "memory", "v0", "p0");
  return pc;
}

static uintptr_t store_words(uint32_t* dst, const uint8_t* pred) {
  uintptr_t pc;
  __asm__ volatile("ldr p1, [%2]\n\tadr %0, 1f\n1:\tst1w {z0.s}, p1, [%1]"
                   : "=&r"(pc)
                   : "r"(dst), "r"(pred)
                   : "memory", "p1");
  return pc;
}

static uintptr_t load_bytes(const uint8_t* src, const uint8_t* pred) {
  uintptr_t pc;
  __asm__ volatile("ldr p2, [%2]\n\tadr %0, 1f\n1:\tld1b {z1.b}, p2/z, [%1]"
                   : "=&r"(pc)
                   : "r"(src), "r"(pred)
                   : "memory", "v1", "p2");
  return pc;
}

/* A first-fault load records what it read, as a plain load does. */
static uintptr_t first_fault_bytes(const uint8_t* src, const uint8_t* pred) {
  uintptr_t pc;
  __asm__ volatile("ldr p2, [%2]\n\tsetffr\n\tadr %0, 1f\n1:\tldff1b {z1.b}, p2/z, [%1, xzr]"
                   : "=&r"(pc)
                   : "r"(src), "r"(pred)
                   : "memory", "v1", "p2");
  return pc;
}

static uintptr_t store_doubles_from_words(uint64_t* dst, const uint8_t* pred) {
  uintptr_t pc;
  /* st1w with doubleword elements: 4 bytes of memory for each element. */
  __asm__ volatile("ldr p3, [%2]\n\tadr %0, 1f\n1:\tst1w {z1.d}, p3, [%1]"
                   : "=&r"(pc)
                   : "r"(dst), "r"(pred)
                   : "memory", "p3");
  return pc;
}

static uint32_t words[64], out_words[64];
static uint8_t bytes[96];
static uint64_t out_doubles[16];

static void region(void) {
  if (marked) ZORVO_ROI_START();
  expect_marker(1);
  uintptr_t pc = load_words(words, all_words);
  if (marked) expect("load", words, 48, pc);
  pc = store_words(out_words, some_words); /* elements 0-3 and 6-11: two runs */
  if (marked) {
    expect("store", out_words, 16, pc);
    expect("store", out_words + 6, 24, pc);
  }
  pc = load_bytes(bytes + 3, all_bytes);
  if (marked) expect("load", bytes + 3, 48, pc);
  pc = first_fault_bytes(bytes + 5, all_bytes);
  if (marked) expect("load", bytes + 5, 48, pc);
  pc = store_doubles_from_words(out_doubles, five_doubles);
  if (marked) expect("store", out_doubles, 20, pc);
  if (marked) ZORVO_ROI_STOP();
  expect_marker(0);
}

static void* second_thread(void* arg) {
  (void)arg;
  load_words(words, all_words); /* a new thread starts outside any region */
  region();
  return NULL;
}

int main(int argc, char** argv) {
  marked = !(argc > 1 && strcmp(argv[1], "unmarked") == 0);
  for (unsigned i = 0; i < 64; ++i) words[i] = i * 3u;
  for (unsigned i = 0; i < 96; ++i) bytes[i] = (uint8_t)i;
  set_bits(all_words, 4, 0, 12);
  set_bits(some_words, 4, 0, 4);
  set_bits(some_words, 4, 6, 6);
  set_bits(five_doubles, 8, 0, 5);
  set_bits(all_bytes, 1, 0, 48);

  load_words(words, all_words); /* before the region: not traced */
  first_fault_bytes(bytes, all_bytes);
  region();
  load_words(words, all_words); /* after it: not traced */
  fflush(stdout);

  pthread_t t;
  pthread_create(&t, NULL, second_thread, NULL);
  pthread_join(t, NULL);
  return 0;
}

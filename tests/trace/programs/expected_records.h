/* What the end-to-end trace programs share: predicate images for LDR P and
 * the lines they print for the records they expect, in the form of
 * `zorvo-trace csv` after the sequence number. */
#pragma once

#include <pthread.h>
#include <stdint.h>
#include <stdio.h>

/* Zero when the program runs without markers and expects no trace. */
static int marked = 1;

/* Marks elements first .. first + count - 1 of elem_bytes in a predicate
 * image: one bit per vector byte, 48 bits. */
static inline void set_bits(uint8_t* image, unsigned elem_bytes, unsigned first, unsigned count) {
  for (unsigned i = first; i < first + count; ++i) {
    unsigned bit = i * elem_bytes;
    image[bit / 8] |= (uint8_t)(1u << (bit % 8));
  }
}

static inline unsigned tid(void) { return (unsigned)(uintptr_t)pthread_self(); }

static inline void expect_flags(const char* kind, const void* addr, unsigned size, uintptr_t pc,
                                unsigned flags) {
  printf("0x%08x,%s,0x%lx,%u,0x%lx,%u\n", tid(), kind, (unsigned long)(uintptr_t)addr, size,
         (unsigned long)pc, flags);
}

static inline void expect(const char* kind, const void* addr, unsigned size, uintptr_t pc) {
  expect_flags(kind, addr, size, pc, 0);
}

static inline void expect_marker(int start) {
  if (marked)
    printf("0x%08x,%s,0x0,0,0x0,0\n", start ? 0xffffffffu : 0xfffffffeu,
           start ? "roi_start" : "roi_stop");
}

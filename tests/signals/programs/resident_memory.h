/* The process's resident memory, counted page by page over its mappings.
 * (VmRSS in /proc/self/status counts the same on a machine that runs the
 * program itself; under an emulator it counts the emulator's own
 * translations too.) And the verdict the memory tests print. */
#pragma once

#include <stdio.h>
#include <sys/mman.h>
#include <unistd.h>

static long resident_kib(void) {
  static unsigned char in_core[1 << 16];
  const unsigned long page = (unsigned long)sysconf(_SC_PAGESIZE);
  FILE* f = fopen("/proc/self/maps", "r");
  char line[512];
  long pages = 0;
  while (f && fgets(line, sizeof line, f)) {
    unsigned long start, end;
    if (sscanf(line, "%lx-%lx", &start, &end) != 2) continue;
    for (unsigned long at = start; at < end;) {
      unsigned long n = (end - at) / page;
      if (n > sizeof in_core) n = sizeof in_core;
      if (mincore((void*)at, n * page, in_core) != 0) break;
      for (unsigned long i = 0; i < n; ++i) pages += in_core[i] & 1;
      at += n * page;
    }
  }
  if (f) fclose(f);
  return pages * (long)(page / 1024);
}

/* Translations of thousands of closed or rewritten routines kept alive would
 * take several MiB; what the process settles at may move by a few pages. */
static void print_growth_since(long settled_kib) {
  const long growth = resident_kib() - settled_kib;
  if (growth < 1024)
    printf("resident memory flat\n");
  else
    printf("resident memory grew by %ld KiB\n", growth);
}

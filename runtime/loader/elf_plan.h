// What the loader needs to know about an ELF file before it maps it, read
// from the file's bytes alone. Pure code, with no system calls, so that it
// can be checked on any host against damaged headers.
#pragma once

#include <cstddef>
#include <cstdint>

namespace loader {

struct load_segment {
  uint64_t vaddr, memsz, offset, filesz;
  uint32_t flags; // PF_R, PF_W, PF_X
};

constexpr int kMaxLoadSegments = 16;

struct elf_plan {
  bool position_independent;
  uint64_t entry;
  uint64_t phdr_vaddr; // where the program headers are once loaded
  uint16_t phnum;
  uint64_t low, high; // the page-aligned span of the load segments
  int segments;
  load_segment segment[kMaxLoadSegments];
  uint64_t interp_offset, interp_size; // size 0: no interpreter
};

// Fills *plan from the file's bytes, checking everything the loader and the
// dynamic loader rely on. Returns null when the file can be loaded, or why
// it cannot.
const char* plan_elf(const unsigned char* file, uint64_t size, uint64_t page_size, elf_plan* plan);

} // namespace loader

// Bump allocation from mmap'd chunks, so the runtime never calls malloc from
// its signal handler.
#pragma once

#include <cstddef>

struct arena_chunk;

struct arena {
  arena_chunk* chunks;
  char* next;
  char* end;
};

// Zeroed memory that lives until the arena is reset or released.
void* arena_alloc(arena* a, size_t size);
// Frees everything but the first chunk, which is kept, cleared, for the next
// use.
void arena_reset(arena* a);
void arena_release(arena* a);

// Whole pages straight from the kernel, zeroed; null on failure.
void* map_pages(size_t size, bool executable = false);
void unmap_pages(void* p, size_t size);

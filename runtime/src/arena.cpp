#include "arena.h"

#include <sys/mman.h>

#include <cstring>

struct arena_chunk {
  arena_chunk* next;
  size_t size;
};

namespace {

constexpr size_t kChunkSize = 256 * 1024;

size_t round_up(size_t n, size_t to) { return (n + to - 1) / to * to; }

} // namespace

void* map_pages(size_t size, bool executable) {
  const int prot = PROT_READ | PROT_WRITE | (executable ? PROT_EXEC : 0);
  void* p = mmap(nullptr, size, prot, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  return p == MAP_FAILED ? nullptr : p;
}

void unmap_pages(void* p, size_t size) {
  if (p) munmap(p, size);
}

void* arena_alloc(arena* a, size_t size) {
  size = round_up(size, 16);
  if (a->next == nullptr || size > size_t(a->end - a->next)) {
    const size_t chunk_size = round_up(size + sizeof(arena_chunk) + 16, kChunkSize);
    auto* chunk = static_cast<arena_chunk*>(map_pages(chunk_size));
    if (chunk == nullptr) return nullptr;
    chunk->next = a->chunks;
    chunk->size = chunk_size;
    a->chunks = chunk;
    a->next = reinterpret_cast<char*>(chunk) + round_up(sizeof(arena_chunk), 16);
    a->end = reinterpret_cast<char*>(chunk) + chunk_size;
  }
  // Zero already: fresh from the kernel, or cleared by arena_reset.
  void* p = a->next;
  a->next += size;
  return p;
}

void arena_reset(arena* a) {
  if (a->chunks == nullptr) return;
  // Keep the oldest chunk: it is the one every build starts from. What was
  // handed out of it is cleared in one go, cheaper than clearing each
  // allocation (a block's build makes thousands): all of it up to next when
  // it is the only chunk, else the whole chunk.
  arena_chunk* keep = a->chunks;
  const bool only_chunk = keep->next == nullptr;
  while (keep->next) {
    arena_chunk* next = keep->next;
    unmap_pages(keep, keep->size);
    keep = next;
  }
  a->chunks = keep;
  char* start = reinterpret_cast<char*>(keep) + round_up(sizeof(arena_chunk), 16);
  std::memset(start, 0,
              size_t((only_chunk ? a->next : reinterpret_cast<char*>(keep) + keep->size) - start));
  a->next = start;
  a->end = reinterpret_cast<char*>(keep) + keep->size;
}

void arena_release(arena* a) {
  for (arena_chunk* c = a->chunks; c;) {
    arena_chunk* next = c->next;
    unmap_pages(c, c->size);
    c = next;
  }
  *a = arena{};
}

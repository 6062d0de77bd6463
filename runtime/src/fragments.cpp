#include "fragments.h"

#include <sys/mman.h>

#include <cstdint>

#include "block.h"
#include "sites.h"

struct code_chunk {
  code_chunk* next;
  size_t size;
  size_t used; // from the chunk's start, this header included
};

namespace {

constexpr uint32_t kInitialSlots = 256;
constexpr size_t kChunkSize = 1 << 20;
// A direct branch reaches 128 MiB either way; chunks are kept well inside.
constexpr ptrdiff_t kBranchReach = (ptrdiff_t(1) << 27) - (ptrdiff_t(4) << 20);

// Marks a retired slot: lookups pass over it, insertion never reuses it.
const app_pc kRetired = reinterpret_cast<app_pc>(uintptr_t{1});

uint32_t slot_of(app_pc tag, uint32_t capacity) {
  const uint64_t h = (reinterpret_cast<uintptr_t>(tag) >> 2) * 0x9e3779b97f4a7c15ull;
  return static_cast<uint32_t>(h >> 32) & (capacity - 1);
}

bool grow(fragment_table* table) {
  const uint32_t capacity = table->capacity ? table->capacity * 2 : kInitialSlots;
  auto* slots = static_cast<fragment*>(map_pages(capacity * sizeof(fragment)));
  if (slots == nullptr) return false;
  for (uint32_t i = 0; i < table->capacity; ++i) {
    const fragment& f = table->slots[i];
    if (f.tag == nullptr || f.tag == kRetired) continue;
    uint32_t s = slot_of(f.tag, capacity);
    while (slots[s].tag) s = (s + 1) & (capacity - 1);
    slots[s] = f;
  }
  unmap_pages(table->slots, table->capacity * sizeof(fragment));
  table->slots = slots;
  table->capacity = capacity;
  return true;
}

byte* take(code_chunk* c, size_t size) {
  c->used += size;
  return reinterpret_cast<byte*>(c) + c->used - size;
}

} // namespace

bool within_branch_reach(const byte* start, size_t size, app_pc target) {
  return start - target > -kBranchReach && start + size - target < kBranchReach;
}

// Free addresses are tried outwards from target, on both sides, until the
// branch reach runs out.
byte* map_code_near(size_t size, app_pc target) {
  const uintptr_t page = 4096, step = size + (1 << 20);
  const auto t = reinterpret_cast<uintptr_t>(target);
  for (uintptr_t distance = step; distance + size < uintptr_t(kBranchReach); distance += step)
    for (int side = -1; side <= 1; side += 2) {
      const uintptr_t hint = (side < 0 ? t - distance : t + distance) & ~(page - 1);
      if (side < 0 && distance > t) continue;
      void* p = mmap(reinterpret_cast<void*>(hint), size, PROT_READ | PROT_WRITE | PROT_EXEC,
                     MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
      if (p == MAP_FAILED) continue;
      if (within_branch_reach(static_cast<byte*>(p), size, target)) return static_cast<byte*>(p);
      munmap(p, size);
    }
  return nullptr;
}

fragment* find_fragment(rt_thread* t, app_pc tag) {
  fragment_table& table = t->fragments;
  if (table.capacity == 0) return nullptr;
  for (uint32_t s = slot_of(tag, table.capacity);; s = (s + 1) & (table.capacity - 1)) {
    if (table.slots[s].tag == tag) return &table.slots[s];
    if (table.slots[s].tag == nullptr) return nullptr;
  }
}

fragment* add_fragment(rt_thread* t, app_pc tag, byte* code) {
  fragment_table& table = t->fragments;
  if ((table.count + 1) * 2 > table.capacity && !grow(&table)) return nullptr;
  uint32_t s = slot_of(tag, table.capacity);
  while (table.slots[s].tag) s = (s + 1) & (table.capacity - 1);
  table.slots[s] = {tag, code, 0};
  ++table.count;
  return &table.slots[s];
}

uint64_t code_fingerprint(app_pc tag) {
  const int words = block_words(tag);
  uint64_t h = 0xcbf29ce484222325ull ^ static_cast<uint64_t>(words);
  for (int n = 0; n < words; ++n) h = (h ^ application_word(tag + 4 * n)) * 0x100000001b3ull;
  return h;
}

void retire_fragment(fragment* f) { f->tag = kRetired; }

void release_fragments(rt_thread* t) {
  unmap_pages(t->fragments.slots, t->fragments.capacity * sizeof(fragment));
  t->fragments = fragment_table{};
}

byte* reserve_code(rt_thread* t, size_t size, app_pc target, bool* near) {
  size = (size + 15) & ~size_t(15);
  *near = true;
  for (code_chunk* c = t->chunks; c; c = c->next)
    if (c->size - c->used >= size &&
        within_branch_reach(reinterpret_cast<byte*>(c), c->size, target))
      return take(c, size);
  const size_t header = (sizeof(code_chunk) + 15) & ~size_t(15);
  const size_t chunk_size = (size + header + kChunkSize - 1) / kChunkSize * kChunkSize;
  auto* c = reinterpret_cast<code_chunk*>(map_code_near(chunk_size, target));
  if (c == nullptr) {
    *near = false;
    for (code_chunk* old = t->chunks; old; old = old->next)
      if (old->size - old->used >= size) return take(old, size);
    c = static_cast<code_chunk*>(map_pages(chunk_size, true));
    if (c == nullptr) return nullptr;
  }
  c->next = t->chunks;
  c->size = chunk_size;
  c->used = header;
  t->chunks = c;
  return take(c, size);
}

bool in_code_cache(rt_thread* t, app_pc pc) {
  for (code_chunk* c = t->chunks; c; c = c->next) {
    const byte* start = reinterpret_cast<byte*>(c);
    if (pc >= start && pc < start + c->used) return true;
  }
  return false;
}

void release_code_cache(rt_thread* t) {
  for (code_chunk* c = t->chunks; c;) {
    code_chunk* next = c->next;
    unmap_pages(c, c->size);
    c = next;
  }
  t->chunks = nullptr;
}

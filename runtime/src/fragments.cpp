#include "fragments.h"

#include <sys/mman.h>

#include <atomic>
#include <cstdint>
#include <cstring>

#include "block.h"
#include "branch_entry.h"
#include "code_retire.h"
#include "sites.h"

struct code_chunk {
  code_chunk* next;
  size_t size;
  size_t used; // from the chunk's start, this header included
};

// A room of a retired fragment, kept in the room's header (whose first word
// is its size) until reused.
struct free_room {
  free_room* next;
  size_t size;
};

// A room that some thread may still be running: nothing of it is written
// until every thread is past the retirement that took it out of use.
struct waiting_room {
  byte* room;
  uint64_t retired_after;
};

namespace {

constexpr uint32_t kInitialSlots = 256;
constexpr size_t kChunkSize = 1 << 20;
// A direct branch reaches 128 MiB either way; chunks are kept well inside.
constexpr ptrdiff_t kBranchReach = (ptrdiff_t(1) << 27) - (ptrdiff_t(4) << 20);

// Marks a retired slot: lookups pass over it, insertion never reuses it
// (the next rehash drops it).
const app_pc kRetired = reinterpret_cast<app_pc>(uintptr_t{1});
// Every reservation starts with its size, so that a retired fragment's room
// can be found from its code and handed out again.
constexpr size_t kRoomHeader = 16;
static_assert(sizeof(free_room) <= kRoomHeader, "a free room's header holds its link");

fragment_table table;
// Chunks are only ever added, at the head, whole before they are published:
// in_code_cache reads the list without the lock.
std::atomic<code_chunk*> chunks;
free_room* free_rooms;
// Rooms retired while some thread may still be running in them.
waiting_room* waiting;
size_t waiting_count, waiting_capacity, waiting_bytes;

// Null when memory ran out: the room is then never reused.
waiting_room* room_for_one_more_waiting() {
  if (waiting_count == waiting_capacity) {
    const size_t capacity = waiting_capacity == 0 ? 256 : 2 * waiting_capacity;
    auto* bigger = static_cast<waiting_room*>(map_pages(capacity * sizeof(waiting_room)));
    if (bigger == nullptr) return nullptr;
    if (waiting_count != 0) std::memcpy(bigger, waiting, waiting_count * sizeof(waiting_room));
    unmap_pages(waiting, waiting_capacity * sizeof(waiting_room));
    waiting = bigger;
    waiting_capacity = capacity;
  }
  return &waiting[waiting_count++];
}

uint32_t slot_of(app_pc tag, uint32_t capacity) {
  const uint64_t h = (reinterpret_cast<uintptr_t>(tag) >> 2) * 0x9e3779b97f4a7c15ull;
  return static_cast<uint32_t>(h >> 32) & (capacity - 1);
}

// Rehashes into capacity slots: twice as many when most slots hold live
// fragments, as many when retired ones fill them.
bool grow() {
  const uint32_t live = table.count - table.retired;
  const uint32_t capacity = table.capacity == 0               ? kInitialSlots
                            : (live + 1) * 4 > table.capacity ? table.capacity * 2
                                                              : table.capacity;
  auto* slots = static_cast<fragment*>(map_pages(capacity * sizeof(fragment)));
  if (slots == nullptr) return false;
  for (uint32_t i = 0; i < table.capacity; ++i) {
    const fragment& f = table.slots[i];
    if (f.tag == nullptr || f.tag == kRetired) continue;
    uint32_t s = slot_of(f.tag, capacity);
    while (slots[s].tag) s = (s + 1) & (capacity - 1);
    slots[s] = f;
  }
  unmap_pages(table.slots, table.capacity * sizeof(fragment));
  table.slots = slots;
  table.capacity = capacity;
  table.count = live;
  table.retired = 0;
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

fragment* find_fragment(app_pc tag) {
  if (table.capacity == 0) return nullptr;
  for (uint32_t s = slot_of(tag, table.capacity);; s = (s + 1) & (table.capacity - 1)) {
    if (table.slots[s].tag == tag) return &table.slots[s];
    if (table.slots[s].tag == nullptr) return nullptr;
  }
}

fragment* add_fragment(app_pc tag, byte* code) {
  if ((table.count + 1) * 2 > table.capacity && !grow()) return nullptr;
  uint32_t s = slot_of(tag, table.capacity);
  while (table.slots[s].tag) s = (s + 1) & (table.capacity - 1);
  table.slots[s] = {tag, code, 0};
  ++table.count;
  note_translated(tag);
  return &table.slots[s];
}

uint64_t code_fingerprint(app_pc tag) {
  const int words = block_words(tag);
  uint64_t h = 0xcbf29ce484222325ull ^ static_cast<uint64_t>(words);
  for (int n = 0; n < words; ++n) h = (h ^ application_word(tag + 4 * n)) * 0x100000001b3ull;
  return h;
}

void retire_fragment(fragment* f, uint64_t retired_after) {
  unlink_site(f->tag);
  if (f->code != nullptr) {
    byte* room = f->code - kBranchEntryLength - kRoomHeader;
    if (waiting_room* w = room_for_one_more_waiting()) {
      *w = {room, retired_after};
      size_t size;
      std::memcpy(&size, room, sizeof size);
      waiting_bytes += size;
    }
  }
  f->tag = kRetired;
  f->code = nullptr;
  ++table.retired;
}

void retire_fragments_in(app_pc start, app_pc end, uint64_t retired_after) {
  for (uint32_t s = 0; s < table.capacity; ++s) {
    fragment& f = table.slots[s];
    if (f.tag != nullptr && f.tag != kRetired && f.tag >= start && f.tag < end)
      retire_fragment(&f, retired_after);
  }
}

size_t retired_bytes_waiting() { return waiting_bytes; }

namespace {

// Rooms no thread can be in any more join the free ones.
void free_quiescent_rooms(uint64_t oldest_seen) {
  size_t kept = 0;
  for (size_t i = 0; i < waiting_count; ++i) {
    if (waiting[i].retired_after > oldest_seen) {
      waiting[kept++] = waiting[i];
      continue;
    }
    auto* r = reinterpret_cast<free_room*>(waiting[i].room);
    std::memcpy(&r->size, waiting[i].room, sizeof r->size); // the header's first word
    waiting_bytes -= r->size;
    r->next = free_rooms;
    free_rooms = r;
  }
  waiting_count = kept;
}

// A retired fragment's room of at least size bytes within reach of target,
// split when much larger; null when there is none.
byte* reuse_room(size_t size, app_pc target) {
  for (free_room** link = &free_rooms; *link; link = &(*link)->next) {
    free_room* r = *link;
    byte* start = reinterpret_cast<byte*>(r);
    if (r->size < size || !within_branch_reach(start, r->size, target)) continue;
    *link = r->next;
    if (r->size - size >= 128) {
      auto* rest = reinterpret_cast<free_room*>(start + size);
      rest->size = r->size - size;
      rest->next = free_rooms;
      free_rooms = rest;
    }
    return start;
  }
  return nullptr;
}

byte* reserve_room(size_t size, app_pc target, bool* near) {
  *near = true;
  if (byte* reused = reuse_room(size, target)) return reused;
  code_chunk* const head = chunks.load(std::memory_order_relaxed);
  for (code_chunk* c = head; c; c = c->next)
    if (c->size - c->used >= size &&
        within_branch_reach(reinterpret_cast<byte*>(c), c->size, target))
      return take(c, size);
  const size_t header = (sizeof(code_chunk) + 15) & ~size_t(15);
  const size_t chunk_size = (size + header + kChunkSize - 1) / kChunkSize * kChunkSize;
  auto* c = reinterpret_cast<code_chunk*>(map_code_near(chunk_size, target));
  if (c == nullptr) {
    *near = false;
    for (code_chunk* old = head; old; old = old->next)
      if (old->size - old->used >= size) return take(old, size);
    c = static_cast<code_chunk*>(map_pages(chunk_size, true));
    if (c == nullptr) return nullptr;
  }
  c->next = head;
  c->size = chunk_size;
  c->used = header;
  chunks.store(c, std::memory_order_release);
  return take(c, size);
}

} // namespace

byte* reserve_code(size_t size, app_pc target, bool* near) {
  size = (size + kRoomHeader + 15) & ~size_t(15);
  // Asking every thread costs a walk of them all: only when a room waits.
  if (waiting_count != 0) free_quiescent_rooms(retirements_every_thread_is_past());
  byte* room = reserve_room(size, target, near);
  if (room == nullptr) return nullptr;
  std::memcpy(room, &size, sizeof size);
  return room + kRoomHeader;
}

// The whole chunk counts: a pc past the used part is no application's.
bool in_code_cache(app_pc pc) {
  for (const code_chunk* c = chunks.load(std::memory_order_acquire); c; c = c->next) {
    const byte* start = reinterpret_cast<const byte*>(c);
    if (pc >= start && pc < start + c->size) return true;
  }
  return false;
}

#include "sites.h"

#include <sched.h>
#include <sys/mman.h>

#include <atomic>
#include <cstring>

#include "branch_entry.h"
#include "code_patch.h"
#include "code_retire.h"
#include "fragments.h"

namespace {

// Site numbers index the entry table, which is reserved whole.
constexpr uint32_t kMaxSites = 1 << 16;
constexpr uint32_t kSiteSlots = 2 * kMaxSites; // the table stays half empty
constexpr size_t kStubChunkSize = 256 * 1024;
constexpr int kMaxStubChunks = 64;

// Written once, before its site is published; a null stub marks a site that
// could not be patched.
struct site_slot {
  std::atomic<app_pc> site;
  byte* stub;
  uint32_t number;
  uint32_t branch; // the word that replaced the application's
};

struct stub_chunk {
  byte* start;
  size_t used;
};

// Readers take no lock: entries are complete before they are published, and
// a retired entry keeps its place in the probe chains as a tombstone.
std::atomic<site_slot*> site_table;
const app_pc kGone = reinterpret_cast<app_pc>(uintptr_t{1});
// Every site by number (null: the number is free). A retired site's number
// and stub serve a later site, which spares both the stub area and the
// threads' entry tables.
site_slot* site_by_number[kMaxSites];
// A thread may still be in a retired site's stub (it took the branch just
// before the site went): number and stub serve again only once every thread
// has been seen outside the fragments and stubs after the retirement.
struct free_number {
  uint32_t number;
  byte* stub;
  uint64_t retired_after;
};
free_number free_numbers[kMaxSites];
uint32_t free_number_count;
stub_chunk stub_chunks[kMaxStubChunks];
std::atomic<int> stub_chunk_count;
// Patching is serialised; it happens once per site.
std::atomic_flag patch_lock = ATOMIC_FLAG_INIT;
uint32_t site_count;
// The fragment entry of each site by number, for the stubs: written with the
// code lock held, read by stubs with none.
std::atomic<byte**> site_entries;

uint32_t slot_of(app_pc site) {
  const uint64_t h = (reinterpret_cast<uintptr_t>(site) >> 2) * 0x9e3779b97f4a7c15ull;
  return static_cast<uint32_t>(h >> 32) & (kSiteSlots - 1);
}

const site_slot* find_site(app_pc pc) {
  const site_slot* table = site_table.load(std::memory_order_acquire);
  if (table == nullptr) return nullptr;
  for (uint32_t s = slot_of(pc);; s = (s + 1) & (kSiteSlots - 1)) {
    const app_pc site = table[s].site.load(std::memory_order_acquire);
    if (site == pc) return &table[s];
    if (site == nullptr) return nullptr;
  }
}

const site_slot* publish_site(site_slot* table, app_pc site, byte* stub, uint32_t number,
                              uint32_t branch) {
  uint32_t s = slot_of(site);
  for (app_pc there;
       (there = table[s].site.load(std::memory_order_relaxed)) != nullptr && there != kGone;)
    s = (s + 1) & (kSiteSlots - 1);
  site_by_number[number] = &table[s];
  table[s].stub = stub;
  table[s].number = number;
  table[s].branch = branch;
  table[s].site.store(site, std::memory_order_release);
  return &table[s];
}

// Room for a stub within branch reach of site; null when there is none.
byte* reserve_stub(app_pc site) {
  const int count = stub_chunk_count.load(std::memory_order_relaxed);
  for (int i = count - 1; i >= 0; --i) {
    stub_chunk& c = stub_chunks[i];
    if (c.used + kStubSize <= kStubChunkSize &&
        within_branch_reach(c.start, kStubChunkSize, site)) {
      c.used += kStubSize;
      return c.start + c.used - kStubSize;
    }
  }
  if (count == kMaxStubChunks) return nullptr;
  byte* start = map_code_near(kStubChunkSize, site);
  if (start == nullptr) return nullptr;
  stub_chunks[count] = {start, kStubSize};
  stub_chunk_count.store(count + 1, std::memory_order_release);
  return start;
}

// A retired site's number that no thread can be using, with its stub when
// that is within reach of site; false when none is free.
bool reuse_number(app_pc site, uint32_t* number, byte** stub) {
  if (free_number_count == 0) return false;
  const uint64_t oldest_seen = retirements_every_thread_is_past();
  uint32_t pick = free_number_count;
  for (uint32_t i = free_number_count; i-- > 0 && free_number_count - i <= 64;) {
    if (free_numbers[i].retired_after > oldest_seen) continue;
    if (pick == free_number_count) pick = i;
    if (free_numbers[i].stub != nullptr &&
        within_branch_reach(free_numbers[i].stub, kStubSize, site)) {
      pick = i;
      break;
    }
  }
  if (pick == free_number_count) return false;
  *number = free_numbers[pick].number;
  *stub = free_numbers[pick].stub != nullptr &&
                  within_branch_reach(free_numbers[pick].stub, kStubSize, site)
              ? free_numbers[pick].stub
              : nullptr;
  free_numbers[pick] = free_numbers[--free_number_count];
  return true;
}

// The stub is written and the site published before the branch goes in, so
// that a thread that meets the branch finds both.
const site_slot* patch_site(rt_thread* t, site_slot* table, app_pc site) {
  uint32_t number;
  byte* reused = nullptr;
  if (!reuse_number(site, &number, &reused)) {
    // Every free number may still wait for a thread: then a full table
    // leaves the site on the signal path.
    if (site_count == kMaxSites) return nullptr;
    number = site_count++;
  }
  const int protection = open_code_page(site);
  // Code on a page that is writable already may be rewritten with nothing
  // the runtime sees (a store and a cache clean): its blocks stay on the
  // signal path, where every entry compares the words with the fragment's.
  const bool rewritable = protection >= 0 && (protection & PROT_WRITE);
  byte* stub = protection < 0 || rewritable ? nullptr
               : reused != nullptr          ? reused
                                            : reserve_stub(site);
  uint32_t branch = 0;
  if (stub != nullptr &&
      write_site_stub(t, stub, site, application_word(site), number, current_thread_tls_offset()))
    branch = branch_word(t, site, stub);
  if (branch == 0) stub = nullptr;
  if (stub != nullptr)
    __builtin___clear_cache(reinterpret_cast<char*>(stub),
                            reinterpret_cast<char*>(stub + kStubSize));
  const site_slot* slot = publish_site(table, site, stub, number, branch);
  if (stub != nullptr) store_code_word(site, branch);
  if (protection >= 0) close_code_page(site, protection);
  return slot;
}

const site_slot* find_or_patch_site(rt_thread* t, app_pc site) {
  while (patch_lock.test_and_set(std::memory_order_acquire)) sched_yield();
  const site_slot* slot = find_site(site);
  site_slot* table = site_table.load(std::memory_order_relaxed);
  if (table == nullptr) {
    table = static_cast<site_slot*>(map_pages(kSiteSlots * sizeof(site_slot)));
    site_table.store(table, std::memory_order_release);
  }
  if (slot == nullptr && table != nullptr && (site_count < kMaxSites || free_number_count > 0))
    slot = patch_site(t, table, site);
  patch_lock.clear(std::memory_order_release);
  return slot;
}

// The record of pc while memory holds its branch (code mapped anew at a
// patched address is read as it is); *in_memory gets the word in memory.
// Memory is read first: if it already holds the branch, the record is
// visible too, since the branch was stored after it, with release.
const site_slot* patched_site(app_pc pc, uint32_t* in_memory) {
  *in_memory = __atomic_load_n(reinterpret_cast<const uint32_t*>(pc), __ATOMIC_ACQUIRE);
  const site_slot* slot = find_site(pc);
  return slot != nullptr && slot->stub != nullptr && slot->branch == *in_memory ? slot : nullptr;
}

} // namespace

uint32_t application_word(app_pc pc) {
  uint32_t word;
  if (const site_slot* slot = patched_site(pc, &word))
    std::memcpy(&word, slot->stub + kStubTrapOffset, 4);
  return word;
}

app_pc site_of_stub(app_pc pc) {
  const int count = stub_chunk_count.load(std::memory_order_acquire);
  for (int i = 0; i < count; ++i) {
    const byte* start = stub_chunks[i].start;
    if (pc < start || pc >= start + kStubChunkSize) continue;
    if ((pc - start) % kStubSize != kStubTrapOffset) return nullptr;
    app_pc site;
    std::memcpy(&site, pc - kStubTrapOffset + kStubSiteOffset, sizeof site);
    return site;
  }
  return nullptr;
}

byte** site_entry_table() {
  byte** table = site_entries.load(std::memory_order_acquire);
  if (table != nullptr) return table;
  auto* made = static_cast<byte**>(map_pages(kMaxSites * sizeof(byte*)));
  if (made == nullptr) return nullptr;
  if (site_entries.compare_exchange_strong(table, made, std::memory_order_acq_rel)) return made;
  unmap_pages(made, kMaxSites * sizeof(byte*)); // another thread's came first
  return table;
}

bool link_site(rt_thread* t, app_pc site, byte* code) {
  byte** entries = site_entry_table();
  if (entries == nullptr) return false;
  const site_slot* slot = find_or_patch_site(t, site);
  // Code mapped anew where a patched site was keeps the old record, which
  // no longer applies; its blocks stay on the signal path.
  uint32_t in_memory;
  if (slot == nullptr || patched_site(site, &in_memory) != slot) return false;
  __atomic_store_n(&entries[slot->number], branch_entry_of(code), __ATOMIC_RELEASE);
  return true;
}

void unlink_site(app_pc site) {
  const site_slot* slot = find_site(site);
  byte** entries = site_entries.load(std::memory_order_acquire);
  if (slot != nullptr && entries != nullptr)
    __atomic_store_n(&entries[slot->number], nullptr, __ATOMIC_RELEASE);
}

namespace {

// A site whose code stays mapped gets its own word back in place of the
// branch, so that it runs, and reads, as the application wrote it.
void restore_word(const site_slot* slot, app_pc site) {
  uint32_t in_memory;
  if (slot->stub == nullptr || patched_site(site, &in_memory) != slot) return;
  uint32_t word;
  std::memcpy(&word, slot->stub + kStubTrapOffset, 4);
  replace_code_word(site, word);
}

} // namespace

void retire_sites_in(app_pc start, app_pc end, bool still_mapped, uint64_t retired_after) {
  byte** entries = site_entries.load(std::memory_order_acquire);
  while (patch_lock.test_and_set(std::memory_order_acquire)) sched_yield();
  for (uint32_t n = 0; n < site_count; ++n) {
    site_slot* slot = site_by_number[n];
    if (slot == nullptr) continue;
    const app_pc site = slot->site.load(std::memory_order_relaxed);
    if (site < start || site >= end) continue;
    if (still_mapped) restore_word(slot, site);
    slot->site.store(kGone, std::memory_order_release);
    site_by_number[n] = nullptr;
    if (entries != nullptr) __atomic_store_n(&entries[n], nullptr, __ATOMIC_RELEASE);
    free_numbers[free_number_count++] = {n, slot->stub, retired_after};
  }
  patch_lock.clear(std::memory_order_release);
}

void sites_after_fork() { patch_lock.clear(); }

extern "C" app_pc dr_app_pc_for_decoding(app_pc pc) {
  uint32_t in_memory;
  const site_slot* slot = patched_site(pc, &in_memory);
  return slot != nullptr ? slot->stub + kStubTrapOffset : pc;
}

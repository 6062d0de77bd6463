#include "code_patch.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <atomic>

#include "arena.h"

namespace {

// /proc/self/maps, read a character at a time through a small buffer: no
// allocation, since this runs in the signal handler.
struct maps_reader {
  int fd;
  int pos, len;
  char buf[512];
};

int next_char(maps_reader& r) {
  if (r.pos == r.len) {
    const ssize_t n = read(r.fd, r.buf, sizeof r.buf);
    if (n <= 0) return -1;
    r.pos = 0;
    r.len = int(n);
  }
  return static_cast<unsigned char>(r.buf[r.pos++]);
}

int hex_digit(int c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  return -1;
}

// A hex number; *stop gets the character after it.
uintptr_t read_hex(maps_reader& r, int* stop) {
  uintptr_t value = 0;
  int c;
  while ((c = next_char(r)) >= 0 && hex_digit(c) >= 0) value = value * 16 + uintptr_t(hex_digit(c));
  *stop = c;
  return value;
}

// One line of the table: a shared mapping has protection -1, since a write
// to it would reach the file and every process that maps it.
struct mapping {
  uintptr_t start, end;
  int protection;
};

// The table as last read, so that patching a block costs no read of it:
// reading it is most of what translating a small block costs. Every change
// of the mappings the runtime sees (an object opened or closed, the program's
// munmap or mprotect) marks it stale; an answer other than "private,
// executable, not writable" is read afresh all the same, since that is the
// only one patching acts on without a second look. Used under the patch lock,
// or at start-up before the program has a second thread (a static program's
// system call sites are patched then).
constexpr size_t kMaxMappings = 65536; // the kernel's default limit: 65530
mapping* known;
size_t known_count;
std::atomic<uint64_t> mappings_generation{1};
uint64_t known_generation; // 0: never read, or more lines than room

void read_mappings() {
  known_generation = 0;
  if (known == nullptr) known = static_cast<mapping*>(map_pages(kMaxMappings * sizeof(mapping)));
  maps_reader r{open("/proc/self/maps", O_RDONLY | O_CLOEXEC), 0, 0, {}};
  if (known == nullptr || r.fd < 0) {
    if (r.fd >= 0) close(r.fd);
    return;
  }
  const uint64_t generation = mappings_generation.load(std::memory_order_acquire);
  size_t n = 0;
  for (int c = 0; c >= 0 && n < kMaxMappings;) {
    const uintptr_t start = read_hex(r, &c);
    const uintptr_t end = c == '-' ? read_hex(r, &c) : 0;
    char perms[4] = {};
    for (char& p : perms) p = char(c >= 0 ? (c = next_char(r)) : 0);
    if (end > start)
      known[n++] = {start, end,
                    perms[3] != 'p'
                        ? -1
                        : (perms[0] == 'r' ? PROT_READ : 0) | (perms[1] == 'w' ? PROT_WRITE : 0) |
                              (perms[2] == 'x' ? PROT_EXEC : 0)};
    while (c >= 0 && c != '\n') c = next_char(r);
  }
  close(r.fd);
  known_count = n;
  if (n < kMaxMappings) known_generation = generation;
}

// The lines are in address order.
int known_protection(uintptr_t addr) {
  size_t lo = 0, hi = known_count;
  while (lo < hi) {
    const size_t mid = (lo + hi) / 2;
    if (known[mid].end <= addr)
      lo = mid + 1;
    else
      hi = mid;
  }
  return lo < known_count && known[lo].start <= addr ? known[lo].protection : -1;
}

bool only_executable(int protection) {
  return protection >= 0 && (protection & (PROT_EXEC | PROT_WRITE)) == PROT_EXEC;
}

// The protection of the private mapping that holds addr; -1 when none does
// or the table cannot be read.
int mapping_protection(uintptr_t addr) {
  if (known_generation == mappings_generation.load(std::memory_order_acquire)) {
    const int protection = known_protection(addr);
    if (only_executable(protection)) return protection;
  }
  read_mappings();
  return known_generation != 0 ? known_protection(addr) : -1;
}

// Asked once: every thread that races to it stores the same value.
size_t page_size() {
  static std::atomic<size_t> size{0};
  size_t n = size.load(std::memory_order_relaxed);
  if (n == 0) size.store(n = size_t(sysconf(_SC_PAGESIZE)), std::memory_order_relaxed);
  return n;
}

void* page_of(app_pc at) {
  return reinterpret_cast<void*>(reinterpret_cast<uintptr_t>(at) & ~(page_size() - 1));
}

} // namespace

void mappings_changed() { mappings_generation.fetch_add(1, std::memory_order_release); }

int open_code_page(app_pc at) {
  const int protection = mapping_protection(reinterpret_cast<uintptr_t>(page_of(at)));
  if (protection < 0 || !(protection & PROT_EXEC)) return -1;
  if (protection & PROT_WRITE) return protection;
  return mprotect(page_of(at), page_size(), protection | PROT_WRITE) == 0 ? protection : -1;
}

void store_code_word(app_pc at, uint32_t word) {
  // Release: whoever reads the new word as data also sees what was recorded
  // about the site before it.
  __atomic_store_n(reinterpret_cast<uint32_t*>(at), word, __ATOMIC_RELEASE);
  __builtin___clear_cache(reinterpret_cast<char*>(at), reinterpret_cast<char*>(at + 4));
}

void close_code_page(app_pc at, int protection) {
  if (!(protection & PROT_WRITE)) mprotect(page_of(at), page_size(), protection);
}

bool replace_code_word(app_pc at, uint32_t word) {
  const int protection = open_code_page(at);
  if (protection < 0) return false;
  store_code_word(at, word);
  close_code_page(at, protection);
  return true;
}

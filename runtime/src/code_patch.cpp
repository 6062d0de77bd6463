#include "code_patch.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

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

// The protection of the private mapping that holds addr; -1 when none does
// or the table cannot be read. A shared mapping counts as none: a write to it
// would reach the file and every process that maps it.
int mapping_protection(uintptr_t addr) {
  maps_reader r{open("/proc/self/maps", O_RDONLY | O_CLOEXEC), 0, 0, {}};
  if (r.fd < 0) return -1;
  int protection = -1, c = 0;
  while (protection < 0 && c >= 0) {
    const uintptr_t start = read_hex(r, &c);
    const uintptr_t end = c == '-' ? read_hex(r, &c) : 0;
    char perms[4] = {};
    for (char& p : perms) p = char(c >= 0 ? (c = next_char(r)) : 0);
    if (addr >= start && addr < end) {
      if (perms[3] != 'p') break;
      protection = (perms[0] == 'r' ? PROT_READ : 0) | (perms[1] == 'w' ? PROT_WRITE : 0) |
                   (perms[2] == 'x' ? PROT_EXEC : 0);
    }
    while (c >= 0 && c != '\n') c = next_char(r);
  }
  close(r.fd);
  return protection;
}

size_t page_size() { return size_t(sysconf(_SC_PAGESIZE)); }

void* page_of(app_pc at) {
  return reinterpret_cast<void*>(reinterpret_cast<uintptr_t>(at) & ~(page_size() - 1));
}

} // namespace

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

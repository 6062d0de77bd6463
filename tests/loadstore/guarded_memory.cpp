#include "guarded_memory.h"

#include <sys/mman.h>
#include <unistd.h>

#include <cstdlib>
#include <cstring>

guarded_memory guarded_page(uint8_t fill) {
  static guarded_memory m = [] {
    const size_t page = static_cast<size_t>(sysconf(_SC_PAGESIZE));
    void* p = mmap(nullptr, 2 * page, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (p == MAP_FAILED) std::abort();
    uint8_t* base = static_cast<uint8_t*>(p);
    if (mprotect(base + page, page, PROT_NONE) != 0) std::abort();
    return guarded_memory{base, base + page, page};
  }();
  std::memset(m.page, fill, m.bytes);
  return m;
}

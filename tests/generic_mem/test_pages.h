// Memory for the load tests: one readable page with known bytes, followed by
// an unmapped one.
#pragma once

#include <sys/mman.h>
#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>

namespace {

const size_t kPage = static_cast<size_t>(sysconf(_SC_PAGESIZE));

// A readable page, then an unmapped one, below 4 GiB so that 32-bit address
// lanes reach them. Byte i of the readable page holds i * 37 + 0x85, so that
// every width meets values with the top bit set.
inline uint8_t* readable_page() {
  static uint8_t* page = [] {
    void* p = mmap(reinterpret_cast<void*>(0x30000000), 2 * kPage, PROT_READ | PROT_WRITE,
                   MAP_PRIVATE | MAP_ANONYMOUS | MAP_FIXED_NOREPLACE, -1, 0);
    if (p == MAP_FAILED) std::abort();
    auto* base = static_cast<uint8_t*>(p);
    for (size_t i = 0; i < kPage; ++i) base[i] = static_cast<uint8_t>(i * 37 + 0x85);
    if (munmap(base + kPage, kPage) != 0) std::abort();
    return base;
  }();
  return page;
}
inline uint64_t address_of(const void* p) { return reinterpret_cast<uint64_t>(p); }
inline uint64_t unmapped() { return address_of(readable_page() + kPage + 64); }

// The bytes at addr, little-endian, extended from `bytes` as the sign says.
inline uint64_t memory_value(uint64_t addr, unsigned bytes, bool is_signed) {
  uint64_t v = 0;
  std::memcpy(&v, reinterpret_cast<const void*>(addr), bytes);
  const unsigned shift = 64 - 8 * bytes;
  return is_signed ? static_cast<uint64_t>(static_cast<int64_t>(v << shift) >> shift) : v;
}

} // namespace

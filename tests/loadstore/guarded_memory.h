// A readable page followed by one that faults on any access: an element
// placed across the boundary proves that a handler did not touch it.
#pragma once

#include <cstddef>
#include <cstdint>

struct guarded_memory {
  uint8_t* page;       // readable and writable
  uint8_t* unreadable; // == page + bytes
  size_t bytes;
};

// Mapped once per process; the readable page is refilled with `fill`.
guarded_memory guarded_page(uint8_t fill);

inline uint64_t address_of(const void* p) { return reinterpret_cast<uint64_t>(p); }

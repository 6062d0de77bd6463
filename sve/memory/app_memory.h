// Application memory as the memory handlers reach it. The application and
// the emulator share one address space, so an application address is
// dereferenced directly.
#pragma once

#include <cstdint>

// One host access of exactly the element's width for each element: volatile
// keeps the compiler from merging, splitting or speculating accesses (an
// inactive element's memory must stay untouched), and the one-byte alignment
// (packed) leaves an unaligned element to the host, as the instruction set
// allows.
template <typename T> struct __attribute__((packed, may_alias)) unaligned_app { T value; };

template <typename T> inline T read_app(uint64_t addr) {
  return reinterpret_cast<const volatile unaligned_app<T>*>(addr)->value;
}

template <typename T> inline void write_app(uint64_t addr, T v) {
  reinterpret_cast<volatile unaligned_app<T>*>(addr)->value = v;
}

// The host's floating-point status register. A thin decoder whose row is
// THIN_FP puts the application's FPSR on the host before its handler runs and
// takes the cumulative exception flags back after it, so that status is kept
// as if the instruction had run natively.
#pragma once

#include <cstdint>

inline uint32_t read_host_fpsr() {
  uint64_t value;
  asm volatile("mrs %0, fpsr" : "=r"(value) : : "memory");
  return static_cast<uint32_t>(value);
}
inline void write_host_fpsr(uint32_t value) {
  asm volatile("msr fpsr, %0" : : "r"(uint64_t{value}) : "memory");
}

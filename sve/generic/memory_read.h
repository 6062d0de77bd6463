// How the generic tier reaches application memory. A read either is plain,
// and a bad address faults as anywhere else in the emulator, or is guarded,
// and a fault only sets the caller's flag.
#pragma once

#include <cstdint>

#include "vector.h"

namespace generic {

// Read 1, 2, 4 or 8 bytes at addr, zero-extended. With `suppress` set and a
// flag to report to, a fault sets *fault to true and gives 0; the flag is
// left alone on success. The context is not looked at.
uint64_t ReadMemLib1(unsigned long addr, int suppress, bool* fault, CpuContext* ctx);
uint64_t ReadMemLib2(unsigned long addr, int suppress, bool* fault, CpuContext* ctx);
uint64_t ReadMemLib4(unsigned long addr, int suppress, bool* fault, CpuContext* ctx);
uint64_t ReadMemLib8(unsigned long addr, int suppress, bool* fault, CpuContext* ctx);

// The read for a memory element of `Bytes`.
template <unsigned Bytes>
uint64_t read_memory(unsigned long addr, int suppress, bool* fault, CpuContext* ctx) {
  static_assert(Bytes == 1 || Bytes == 2 || Bytes == 4 || Bytes == 8);
  if constexpr (Bytes == 1) return ReadMemLib1(addr, suppress, fault, ctx);
  if constexpr (Bytes == 2) return ReadMemLib2(addr, suppress, fault, ctx);
  if constexpr (Bytes == 4) return ReadMemLib4(addr, suppress, fault, ctx);
  if constexpr (Bytes == 8) return ReadMemLib8(addr, suppress, fault, ctx);
}

} // namespace generic

#include "memory_read.h"

#include "../memory/sve_fault.h"

namespace generic {

uint64_t ReadMemLib1(unsigned long addr, int suppress, bool* fault, CpuContext*) {
  return guarded_read(addr, 1, suppress, fault);
}
uint64_t ReadMemLib2(unsigned long addr, int suppress, bool* fault, CpuContext*) {
  return guarded_read(addr, 2, suppress, fault);
}
uint64_t ReadMemLib4(unsigned long addr, int suppress, bool* fault, CpuContext*) {
  return guarded_read(addr, 4, suppress, fault);
}
uint64_t ReadMemLib8(unsigned long addr, int suppress, bool* fault, CpuContext*) {
  return guarded_read(addr, 8, suppress, fault);
}

} // namespace generic

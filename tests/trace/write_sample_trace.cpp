// Writes a small trace through the emulator's producers and the shared
// sink, as a program under zorvo would: used to check zorvo-trace built for
// the target against the one built for the build machine.
#include <cstdio>
#include <cstring>
#include <initializer_list>

#include "trace/memtrace_lin.h"
#include "trace/roi.h"

int main() {
  if (!sve_init(0, "sample")) return 1;
  static unsigned char buffer[48];
  cpu_state s{};
  char pred[48] = {};
  s.pc = 0x400100;
  memtrace_lin<unsigned char, unsigned char>(&s, buffer, pred, memaccess_load); // gate closed
  roi_marker(true);
  std::memset(pred, 1, sizeof pred);
  memtrace_lin<unsigned int, unsigned int>(&s, reinterpret_cast<unsigned int*>(buffer), pred,
                                           memaccess_load);
  std::memset(pred, 0, sizeof pred);
  for (int i : {0, 1, 2, 3, 10}) pred[i] = 1;
  s.pc = 0x400200;
  memtrace_lin<unsigned char, unsigned char>(&s, buffer, pred, memaccess_store);
  roi_marker(false);
  memtrace_lin<unsigned char, unsigned char>(&s, buffer, pred, memaccess_store); // closed again
  return sve_exit() ? 0 : 1;
}

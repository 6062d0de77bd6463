// Tracing of contiguous accesses: one record for each maximal run of
// consecutive active elements.
#pragma once

#include <cstdint>

#include "../state/cpu_state.h"
#include "access_record.h"
#include "roi.h"
#include "tracesink.h"

// memtrace_lin<T, U>(s, base, pred, type): to be called by a contiguous load
// or store handler once all its element reads or writes are done.
//
//   T     the element as it lies in memory (msize = sizeof(T)): the unit of a
//         record's size and the step between element addresses.
//   U     the element as it lies in the Z register (esize = sizeof(U)): sets
//         the element count 48 / sizeof(U) and the stride at which the
//         predicate is read. sizeof(T) <= sizeof(U); signedness is ignored.
//   s     the thread's cpu_state; its pc goes into every record.
//   base  application address of element 0, whether element 0 is active or
//         not.
//   pred  the 48 predicate bytes governing the access (the P register for
//         plain loads and stores); element i is active when bit 0 of byte
//         i * sizeof(U) is set, and no other byte is looked at.
//   type  memaccess_load or memaccess_store.
//
// A closed gate returns before anything else, and so does an access without
// active elements: neither calls the sink. Records go out in ascending
// address order; a single inactive element always splits a run.
template <typename T, typename U>
void memtrace_lin(cpu_state* s, T* base, char* pred, memaccess_type_t type) {
  static_assert(sizeof(T) <= sizeof(U) && 48 % sizeof(U) == 0 && sizeof(U) <= 8);
  if (!enable_trace) return;
  constexpr unsigned elements = 48 / sizeof(U);
  uint64_t active = 0;
  for (unsigned i = 0; i < elements; ++i)
    active |= static_cast<uint64_t>(pred[i * sizeof(U)] & 1) << i;
  const uint64_t base_addr = reinterpret_cast<uintptr_t>(base);
  while (active) {
    const unsigned start = __builtin_ctzll(active);
    // Bits at and above `elements` are clear, so the run always ends below 64.
    const unsigned length = __builtin_ctzll(~(active >> start));
    send_access_record(s, base_addr + start * sizeof(T), length * sizeof(T), type, 0,
                       current_thread_id());
    active &= ~(((uint64_t{1} << length) - 1) << start);
  }
}

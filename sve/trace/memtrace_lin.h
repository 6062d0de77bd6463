// Tracing of contiguous accesses: one record for each maximal run of
// consecutive active elements.
#pragma once

#include <cstdint>

#include "../state/cpu_state.h"
#include "../state/vector_length.h"
#include "access_record.h"
#include "roi.h"
#include "tracesink.h"

namespace ZORVO_LENGTH {

// memtrace_lin<T, U>(s, base, pred, type): to be called by a contiguous load
// or store handler once all its element reads or writes are done.
//
//   T     the element as it lies in memory (msize = sizeof(T)): the unit of a
//         record's size and the step between element addresses.
//   U     the element as it lies in the Z register (esize = sizeof(U)): sets
//         the element count (vector_bytes() / sizeof(U)) and the stride at which
//         the
//         predicate is read. sizeof(T) <= sizeof(U); signedness is ignored.
//   s     the thread's cpu_state; its pc goes into every record.
//   base  application address of element 0, whether element 0 is active or
//         not.
//   pred  the predicate bytes governing the access (the P register for
//         plain loads and stores); element i is active when bit 0 of byte
//         i * sizeof(U) is set, and no other byte is looked at.
//   type  memaccess_load or memaccess_store.
//
// A closed gate returns before anything else, and so does an access without
// active elements: neither calls the sink. Records go out in ascending
// address order; a single inactive element always splits a run.
template <typename T, typename U>
void memtrace_lin(cpu_state* s, T* base, char* pred, memaccess_type_t type) {
  static_assert(sizeof(T) <= sizeof(U) && sizeof(U) <= 8);
  if (!enable_trace) return;
  const unsigned elements = vector_bytes() / sizeof(U);
  const uint64_t base_addr = reinterpret_cast<uintptr_t>(base);
  for (unsigned start = 0; start < elements; ++start) {
    if (!(pred[start * sizeof(U)] & 1)) continue;
    unsigned end = start + 1;
    while (end < elements && (pred[end * sizeof(U)] & 1)) ++end;
    send_access_record(s, base_addr + start * sizeof(T), (end - start) * sizeof(T), type, 0,
                       current_thread_id());
    start = end;
  }
}

} // namespace ZORVO_LENGTH

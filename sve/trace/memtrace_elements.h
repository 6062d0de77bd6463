// Tracing of element-wise accesses (gathers, scatters, structured loads and
// stores): one record for each element access, never merged, with flags that
// mark where one instruction's list of records starts and ends.
#pragma once

#include <cstdint>

#include "../state/cpu_state.h"
#include "../state/vector_length.h"
#include "access_record.h"
#include "roi.h"
#include "tracesink.h"

namespace ZORVO_LENGTH {

// memtrace_elements(s, addresses, pred, esize, msize, type, components): to
// be called by an element-wise handler once all its element reads or writes
// are done.
//
//   addresses  `components` application addresses for each element index,
//              components * vector_bytes() / esize slots: element i's are at
//              i * components onwards. Only the slots of active elements are
//              read.
//   pred       the predicate bytes governing the access; element i is
//              active when bit 0 of byte i * esize is set.
//   esize      bytes of a register element (4 or 8 for gathers), which fixes
//              the element count.
//   msize      bytes of a memory element: the size of every record.
//   components accesses made for each element: 1 for gathers and scatters,
//              N for the structures of LDN and STN, whose components each get
//              a record of their own.
//
// The first record of the instruction carries mem_ref_first, the last
// mem_ref_last, all of them mem_ref_element; the marks follow the active
// elements, so an instruction with one record sends flags 7. The
// thread identity is asked for once per instruction; each record draws its
// own sequence number. A closed gate or no active element sends nothing.
inline void memtrace_elements(const cpu_state* s, const uint64_t* addresses, const uint8_t* pred,
                              unsigned esize, unsigned msize, memaccess_type_t type,
                              unsigned components = 1) {
  if (!enable_trace) return;
  const unsigned elements = vector_bytes() / esize;
  int last = -1;
  for (unsigned i = 0; i < elements; ++i)
    if (pred[i * esize] & 1) last = static_cast<int>(i);
  if (last < 0) return;
  const int32_t tid = current_thread_id();
  uint32_t flags = mem_ref_first | mem_ref_element;
  for (unsigned i = 0; i <= static_cast<unsigned>(last); ++i) {
    if (!(pred[i * esize] & 1)) continue;
    for (unsigned k = 0; k < components; ++k) {
      if (i == static_cast<unsigned>(last) && k + 1 == components) flags |= mem_ref_last;
      send_access_record(s, addresses[i * components + k], msize, type, flags, tid);
      flags = mem_ref_element;
    }
  }
}

} // namespace ZORVO_LENGTH

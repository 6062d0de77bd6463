// Tracing of element-wise accesses (gathers, scatters, structured loads and
// stores): one record for each element access, never merged, with flags that
// mark where one instruction's list of records starts and ends.
#pragma once

#include <cstdint>

#include "../state/cpu_state.h"
#include "access_record.h"
#include "roi.h"
#include "tracesink.h"

// memtrace_elements(s, addresses, pred, esize, msize, type, components): to
// be called by an element-wise handler once all its element reads or writes
// are done.
//
//   addresses  `components` application addresses for each element index,
//              components * 48 / esize slots: element i's are at
//              i * components onwards. Only the slots of active elements are
//              read.
//   pred       the 48 predicate bytes governing the access; element i is
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
  const unsigned elements = 48 / esize;
  uint64_t active = 0;
  for (unsigned i = 0; i < elements; ++i) active |= static_cast<uint64_t>(pred[i * esize] & 1) << i;
  if (!active) return;
  const int32_t tid = current_thread_id();
  uint32_t flags = mem_ref_first | mem_ref_element;
  while (active) {
    const unsigned i = __builtin_ctzll(active);
    active &= active - 1;
    for (unsigned k = 0; k < components; ++k) {
      if (!active && k + 1 == components) flags |= mem_ref_last;
      send_access_record(s, addresses[i * components + k], msize, type, flags, tid);
      flags = mem_ref_element;
    }
  }
}

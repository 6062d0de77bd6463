// Sending one access record: shared by every producer of access records.
#pragma once

#include <pthread.h>

#include <cstdint>

#include "../decode/cpu_state.h"
#include "tracesink.h"

// Builds the record on the stack and hands it to the sink. The sequence
// number is drawn first, immediately before the record is completed, and the
// thread identity is asked for anew each time. The gap stays unwritten.
inline void send_access_record(const cpu_state* s, uint64_t addr, uint64_t size,
                               memaccess_type_t type, uint32_t flags) {
  sve_mem_ref_t record;
  record.seq = incr_count();
  record.tid = static_cast<int32_t>(static_cast<uint32_t>(pthread_self()));
  record.flags = flags;
  record.type = type;
  record.size = size;
  record.addr = addr;
  record.pc = s->pc;
  trace_mem(record);
}

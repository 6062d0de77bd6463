// Sending one access record: shared by every producer of access records.
#pragma once

#include <pthread.h>

#include <cstdint>

#include "../state/cpu_state.h"
#include "tracesink.h"

// The identity a record gives its thread: the low 32 bits of pthread_self().
inline int32_t current_thread_id() {
  return static_cast<int32_t>(static_cast<uint32_t>(pthread_self()));
}

// Builds the record on the stack and hands it to the sink. The sequence
// number is drawn immediately before the record is completed. The gap stays
// unwritten.
inline void send_access_record(const cpu_state* s, uint64_t addr, uint64_t size,
                               memaccess_type_t type, uint32_t flags, int32_t tid) {
  sve_mem_ref_t record;
  record.seq = incr_count();
  record.tid = tid;
  record.flags = flags;
  record.type = type;
  record.size = size;
  record.addr = addr;
  record.pc = s->pc;
  trace_mem(record);
}

// A sink for tests: keeps what the emulator sends in memory instead of
// writing a file. Link the object library `zorvo_recording_sink` into a test
// program; its four operations take precedence over libtracesink's.
#pragma once

#include <cstdint>
#include <vector>

#include "trace/tracesink.h"

struct sink_calls {
  uint64_t init = 0, exit = 0, incr_count = 0, trace_mem = 0;
};

// Forgets everything recorded; sequence numbers restart at 0.
void recording_reset();
// The records in the order trace_mem received them, with the gap zeroed.
std::vector<sve_mem_ref_t> recorded_records();
sink_calls recorded_calls();

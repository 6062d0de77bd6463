// The region of interest: two marker words switch tracing on and off, each
// for the thread that runs it. A thread starts with tracing off, whatever the
// thread that created it was doing.
#pragma once

#include <cstdint>

#include "../state/static_tls.h"
#include "roi_words.h"
#include "tracesink.h"

// The gate: non-zero while this thread's memory handlers emit records.
// Only a marker writes it; every producer reads it after its memory work.
extern ZORVO_STATIC_TLS uint8_t enable_trace;

// This thread's marker record. Only a marker writes it, and only seq and
// tid: the other fields keep the zeroes of thread start.
extern ZORVO_STATIC_TLS sve_mem_ref_t trace_roi;

// Carries out a marker: opens the gate when `start`, closes it otherwise,
// and sends the marker record either way. Markers never look at the gate's
// state before them: nothing counts nesting, and a stop with the gate closed
// still sends its record.
void roi_marker(bool start);

// Carries out a marker word (roi_words.h recognises them) and leaves any
// other alone. The decoder of the byte add-immediate asks it
// before its handler runs the add.
void roi_check_marker(uint32_t word);

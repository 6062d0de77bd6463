#include "roi.h"

ZORVO_STATIC_TLS uint8_t enable_trace;
ZORVO_STATIC_TLS sve_mem_ref_t trace_roi;

void roi_check_marker(uint32_t word) {
  if (is_roi_marker_word(word)) roi_marker((word & ~0x1fu) == kRoiStartWord);
}

void roi_marker(bool start) {
  // The stop marker's record goes out after the gate has closed: markers do
  // not pass through the gate.
  enable_trace = start ? 1 : 0;
  trace_roi.seq = incr_count();
  trace_roi.tid = start ? roi_start_marker : roi_stop_marker;
  trace_mem(trace_roi);
}

#include "recording_sink.h"

#include <mutex>

namespace {
std::mutex lock;
sink_calls calls;
std::vector<sve_mem_ref_t> records;
} // namespace

void recording_reset() {
  std::lock_guard<std::mutex> hold(lock);
  calls = sink_calls{};
  records.clear();
}

std::vector<sve_mem_ref_t> recorded_records() {
  std::lock_guard<std::mutex> hold(lock);
  return records;
}

sink_calls recorded_calls() {
  std::lock_guard<std::mutex> hold(lock);
  return calls;
}

bool sve_init(int, const char*) {
  std::lock_guard<std::mutex> hold(lock);
  ++calls.init;
  return true;
}

bool sve_exit(void) {
  std::lock_guard<std::mutex> hold(lock);
  ++calls.exit;
  return true;
}

uint64_t incr_count(void) {
  std::lock_guard<std::mutex> hold(lock);
  return calls.incr_count++;
}

void trace_mem(sve_mem_ref_t const& r) {
  std::lock_guard<std::mutex> hold(lock);
  ++calls.trace_mem;
  // Field by field: the gap is never written by producers.
  sve_mem_ref_t copy{};
  copy.seq = r.seq;
  copy.tid = r.tid;
  copy.flags = r.flags;
  copy.type = r.type;
  copy.size = r.size;
  copy.addr = r.addr;
  copy.pc = r.pc;
  records.push_back(copy);
}

// Reading a trace file: header checks, completeness, and the whole records.
#pragma once

#include <cstdint>
#include <cstdio>
#include <string>

#include "trace_format.h"

struct trace_reader {
  FILE* file = nullptr;
  trace_format::header header;
  bool complete = false;      // completed by the sink and exactly as long as it says
  uint64_t whole_records = 0; // records that can be read
  uint64_t partial_bytes = 0; // bytes of a record cut off at the end
  uint64_t records_read = 0;
};

// Opens `path` and checks its header. On failure returns false and puts a
// one-line reason into *error; the reader is then closed.
bool open_trace(const char* path, trace_reader* reader, std::string* error);

// The next whole record in file order; false at the end or on a read error
// (then *error says which).
bool next_record(trace_reader* reader, trace_format::record* out, std::string* error);

void close_trace(trace_reader* reader);

// For a file that is not complete: what is wrong with it, in one sentence.
std::string truncation_note(const trace_reader& reader);

// Nanoseconds since 1970 as "2023-11-14 22:13:20 UTC".
std::string utc_time(uint64_t ns);

constexpr bool is_marker_tid(uint32_t tid) { return tid == 0xffffffffu || tid == 0xfffffffeu; }

// One pass over a trace that gathers everything the report shows, with
// memory bounded by the program (its instructions, threads and pages), not
// by the length of the trace.
#pragma once

#include <cstdint>
#include <map>
#include <unordered_map>
#include <vector>

#include "cache_model.h"
#include "trace_format.h"

// How often the distance between successive addresses of one instruction in
// one thread occurred; past kMaxStrides distinct distances the rest is "other".
struct stride_histogram {
  static constexpr size_t kMaxStrides = 64;
  std::map<int64_t, uint64_t> counts;
  uint64_t other = 0;
  void add(int64_t stride);
  uint64_t total() const;
};

struct access_totals {
  uint64_t load_records = 0, load_bytes = 0, store_records = 0, store_bytes = 0;
  void add(const trace_format::record& r);
  uint64_t records() const { return load_records + store_records; }
  uint64_t bytes() const { return load_bytes + store_bytes; }
};

struct instruction_stats {
  access_totals totals;
  stride_histogram strides;
  uint64_t line_accesses = 0, line_hits = 0; // in the cache model
};

struct thread_stats {
  uint32_t tid;
  access_totals totals;
};

// Every n-th access, for the plot of address over record sequence.
struct address_sample {
  uint64_t index; // position in the file
  uint64_t addr;
  bool store;
};

// Distinct lines and pages touched so far, after `index` records.
struct footprint_point {
  uint64_t index, lines, pages;
};

struct trace_analysis {
  uint64_t records = 0; // accesses and markers
  access_totals all;
  uint64_t start_markers = 0, stop_markers = 0;
  std::vector<uint64_t> marker_indices; // where the markers lie, the first few hundred
  std::vector<thread_stats> threads;    // in the order they first appear
  std::map<uint64_t, instruction_stats> instructions;
  std::vector<address_sample> samples;
  std::vector<footprint_point> footprint;
  uint64_t lines = 0, pages = 0; // distinct 64-byte lines and 4 KiB pages
  uint64_t line_accesses = 0, line_hits = 0;
  uint64_t clipped_records = 0; // larger than kMaxRecordBytes: only their start is modelled
};

struct analysis_options {
  cache_config cache;
  size_t max_samples = 20000;
};

// Feed every record of a file in order to add(), then call finish().
class trace_analyser {
public:
  // `expected_records` spaces the samples out evenly over the file.
  trace_analyser(const analysis_options& options, uint64_t expected_records);
  void add(const trace_format::record& r);
  trace_analysis finish();

  static constexpr uint64_t kMaxRecordBytes = 1 << 16;
  static constexpr size_t kMaxMarkerIndices = 500;

private:
  void touch_footprint(uint64_t first, uint64_t last);
  void model_cache(instruction_stats& instruction, uint64_t first, uint64_t last);
  thread_stats& thread(uint32_t tid);

  analysis_options options_;
  uint64_t sample_every_;
  trace_analysis result_;
  lru_cache cache_;
  std::unordered_map<uint32_t, size_t> thread_index_;
  struct site_key {
    uint64_t pc;
    uint32_t tid;
    bool operator==(const site_key& o) const { return pc == o.pc && tid == o.tid; }
  };
  struct site_hash {
    size_t operator()(const site_key& k) const { return k.pc * 0x9e3779b97f4a7c15ull ^ k.tid; }
  };
  std::unordered_map<site_key, uint64_t, site_hash> last_addr_;
  std::unordered_map<uint64_t, uint64_t> page_lines_; // page number -> bit per 64-byte line
};

#include "trace_analysis.h"

#include <algorithm>

#include "trace_reader.h"

void stride_histogram::add(int64_t stride) {
  auto it = counts.find(stride);
  if (it != counts.end())
    ++it->second;
  else if (counts.size() < kMaxStrides)
    counts.emplace(stride, 1);
  else
    ++other;
}

uint64_t stride_histogram::total() const {
  uint64_t sum = other;
  for (const auto& c : counts) sum += c.second;
  return sum;
}

void access_totals::add(const trace_format::record& r) {
  if (r.type == 1) {
    ++load_records;
    load_bytes += r.size;
  } else {
    ++store_records;
    store_bytes += r.size;
  }
}

trace_analyser::trace_analyser(const analysis_options& options, uint64_t expected_records)
    : options_(options),
      sample_every_(std::max<uint64_t>(1, (expected_records + options.max_samples - 1) /
                                              std::max<size_t>(options.max_samples, 1))),
      cache_(options.cache) {}

thread_stats& trace_analyser::thread(uint32_t tid) {
  auto found = thread_index_.emplace(tid, result_.threads.size());
  if (found.second) result_.threads.push_back({tid, {}});
  return result_.threads[found.first->second];
}

void trace_analyser::touch_footprint(uint64_t first, uint64_t last) {
  for (uint64_t page = first >> 12; page <= last >> 12; ++page) {
    uint64_t& lines = page_lines_[page];
    if (lines == 0) ++result_.pages;
    const unsigned lo = page == first >> 12 ? (first >> 6) & 63 : 0;
    const unsigned hi = page == last >> 12 ? (last >> 6) & 63 : 63;
    const uint64_t span = hi - lo == 63 ? ~uint64_t{0} : ((uint64_t{1} << (hi - lo + 1)) - 1) << lo;
    result_.lines += static_cast<uint64_t>(__builtin_popcountll(span & ~lines));
    lines |= span;
  }
}

void trace_analyser::model_cache(instruction_stats& instruction, uint64_t first, uint64_t last) {
  const unsigned shift = cache_.line_shift;
  for (uint64_t line = first >> shift; line <= last >> shift; ++line) {
    const bool hit = cache_.access(line << shift);
    ++instruction.line_accesses;
    ++result_.line_accesses;
    instruction.line_hits += hit;
    result_.line_hits += hit;
  }
}

void trace_analyser::add(const trace_format::record& r) {
  const uint64_t index = result_.records++;
  if (is_marker_tid(r.tid)) {
    (r.tid == 0xffffffffu ? result_.start_markers : result_.stop_markers) += 1;
    if (result_.marker_indices.size() < kMaxMarkerIndices) result_.marker_indices.push_back(index);
    return;
  }
  result_.all.add(r);
  thread(r.tid).totals.add(r);
  instruction_stats& instruction = result_.instructions[r.pc];
  instruction.totals.add(r);

  auto last = last_addr_.emplace(site_key{r.pc, r.tid}, r.addr);
  if (!last.second) {
    instruction.strides.add(static_cast<int64_t>(r.addr - last.first->second));
    last.first->second = r.addr;
  }

  if (r.size != 0) {
    uint64_t size = r.size;
    if (size > kMaxRecordBytes) {
      size = kMaxRecordBytes;
      ++result_.clipped_records;
    }
    // An access that runs past the top of the address space stops there.
    const uint64_t end = r.addr + (size - 1) < r.addr ? ~uint64_t{0} : r.addr + (size - 1);
    touch_footprint(r.addr, end);
    model_cache(instruction, r.addr, end);
  }

  if (index % sample_every_ == 0) {
    if (result_.samples.size() < options_.max_samples)
      result_.samples.push_back({index, r.addr, r.type != 1});
    if (result_.footprint.size() < options_.max_samples)
      result_.footprint.push_back({index, result_.lines, result_.pages});
  }
}

trace_analysis trace_analyser::finish() {
  if (result_.records) result_.footprint.push_back({result_.records, result_.lines, result_.pages});
  return std::move(result_);
}

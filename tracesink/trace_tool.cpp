#include "trace_tool.h"

#include <algorithm>
#include <cerrno>
#include <cinttypes>
#include <cstring>
#include <map>
#include <string>
#include <vector>

#include "report_html.h"
#include "report_options.h"
#include "trace_reader.h"

namespace {

using trace_format::record;

const char* const kUsage =
    "usage: zorvo-trace stats|dump|csv FILE\n"
    "       zorvo-trace report FILE -o REPORT.html [--cache-size BYTES] [--cache-ways N]\n"
    "                   [--cache-line BYTES]";

const char* kind_name(const record& r) {
  if (r.tid == 0xffffffffu) return "roi_start";
  if (r.tid == 0xfffffffeu) return "roi_stop";
  if (r.type == 1) return "load";
  if (r.type == 0) return "store";
  return "unknown";
}

std::string flag_names(uint32_t flags) {
  static const char* const names[] = {"first", "element", "last"};
  std::string out;
  for (unsigned bit = 0; bit < 32; ++bit) {
    if (!(flags >> bit & 1)) continue;
    if (!out.empty()) out += ',';
    out += bit < 3 ? names[bit] : "bit" + std::to_string(bit);
  }
  return out;
}

void dump_line(FILE* out, const record& r) {
  if (is_marker_tid(r.tid)) {
    std::fprintf(out, "seq=%" PRIu64 " %s\n", r.seq,
                 r.tid == 0xffffffffu ? "roi-start" : "roi-stop");
    return;
  }
  std::fprintf(out,
               "seq=%" PRIu64 " tid=0x%08" PRIx32 " %-5s addr=0x%" PRIx64 " size=%" PRIu64
               " pc=0x%" PRIx64,
               r.seq, r.tid, kind_name(r), r.addr, r.size, r.pc);
  if (r.type > 1) std::fprintf(out, " type=%" PRIu32, r.type);
  if (r.flags) std::fprintf(out, " flags=%s", flag_names(r.flags).c_str());
  std::fputc('\n', out);
}

void csv_line(FILE* out, const record& r) {
  std::fprintf(
      out, "%" PRIu64 ",0x%08" PRIx32 ",%s,0x%" PRIx64 ",%" PRIu64 ",0x%" PRIx64 ",%" PRIu32 "\n",
      r.seq, r.tid, kind_name(r), r.addr, r.size, r.pc, r.flags);
}

struct totals {
  uint64_t records = 0, load_records = 0, load_bytes = 0, store_records = 0, store_bytes = 0;
  void add(const record& r) {
    ++records;
    (r.type == 1 ? load_records : store_records) += 1;
    (r.type == 1 ? load_bytes : store_bytes) += r.size;
  }
  uint64_t bytes() const { return load_bytes + store_bytes; }
};

struct statistics {
  totals all;
  uint64_t starts = 0, stops = 0;
  std::map<uint32_t, totals> by_thread;
  std::map<uint32_t, uint64_t> thread_first_seq;
  std::map<uint64_t, totals> by_pc;
  std::vector<uint64_t> seqs;

  void add(const record& r) {
    seqs.push_back(r.seq);
    if (is_marker_tid(r.tid)) {
      (r.tid == 0xffffffffu ? starts : stops) += 1;
      return;
    }
    all.add(r);
    by_thread[r.tid].add(r);
    auto first = thread_first_seq.emplace(r.tid, r.seq).first;
    first->second = std::min(first->second, r.seq);
    by_pc[r.pc].add(r);
  }
};

// Sequence numbers come from one counter, so a trace without losses holds
// each number once; gaps appear when records were refused or lost.
void print_sequence(FILE* out, std::vector<uint64_t>& seqs) {
  if (seqs.empty()) return;
  std::sort(seqs.begin(), seqs.end());
  const uint64_t distinct =
      static_cast<uint64_t>(std::unique(seqs.begin(), seqs.end()) - seqs.begin());
  std::fprintf(out, "sequence   %" PRIu64 " to %" PRIu64 ", %" PRIu64 " distinct", seqs.front(),
               seqs[distinct - 1], distinct);
  if (distinct < seqs.size())
    std::fprintf(out, ", %" PRIu64 " DUPLICATED", static_cast<uint64_t>(seqs.size()) - distinct);
  const uint64_t span = seqs[distinct - 1] - seqs.front() + 1;
  if (span > distinct) std::fprintf(out, ", %" PRIu64 " missing", span - distinct);
  std::fputc('\n', out);
}

void print_stats(FILE* out, const trace_reader& reader, statistics& st) {
  const trace_format::header& h = reader.header;
  std::fprintf(out, "application %s (pid %" PRIu32 ")\n", h.app_name.c_str(), h.pid);
  std::fprintf(out, "started    %s\n", utc_time(h.start_ns).c_str());
  if (reader.complete) {
    std::fprintf(out, "state      complete, %.3f s traced\n",
                 h.end_ns > h.start_ns ? (h.end_ns - h.start_ns) / 1e9 : 0.0);
    if (h.lost_count)
      std::fprintf(out, "lost       %" PRIu64 " records the sink could not write\n", h.lost_count);
  } else {
    std::fprintf(out, "state      %s\n", truncation_note(reader).c_str());
  }
  std::fprintf(out, "vector     %" PRIu32 " bytes\n", h.vector_bytes);
  std::fprintf(out, "records    %" PRIu64 " (%" PRIu64 " accesses, %" PRIu64 " markers)\n",
               st.all.records + st.starts + st.stops, st.all.records, st.starts + st.stops);
  std::fprintf(out, "loads      %" PRIu64 " records, %" PRIu64 " bytes\n", st.all.load_records,
               st.all.load_bytes);
  std::fprintf(out, "stores     %" PRIu64 " records, %" PRIu64 " bytes\n", st.all.store_records,
               st.all.store_bytes);
  std::fprintf(out, "markers    %" PRIu64 " start, %" PRIu64 " stop\n", st.starts, st.stops);
  print_sequence(out, st.seqs);

  std::vector<std::pair<uint64_t, uint32_t>> threads; // in order of first record
  for (const auto& t : st.thread_first_seq) threads.push_back({t.second, t.first});
  std::sort(threads.begin(), threads.end());
  std::fprintf(out, "\nthreads    %zu\n  %-10s %12s %12s %16s\n", threads.size(), "tid", "records",
               "loads", "bytes");
  for (const auto& t : threads) {
    const totals& x = st.by_thread[t.second];
    std::fprintf(out, "  0x%08" PRIx32 " %12" PRIu64 " %12" PRIu64 " %16" PRIu64 "\n", t.second,
                 x.records, x.load_records, x.bytes());
  }

  std::vector<std::pair<uint64_t, totals>> pcs(st.by_pc.begin(), st.by_pc.end());
  std::stable_sort(pcs.begin(), pcs.end(), [](const auto& a, const auto& b) {
    return a.second.bytes() > b.second.bytes();
  });
  std::fprintf(out, "\ninstructions by bytes: %zu\n  %-18s %12s %16s %16s\n", pcs.size(), "pc",
               "records", "load bytes", "store bytes");
  for (const auto& p : pcs)
    std::fprintf(out, "  0x%016" PRIx64 " %12" PRIu64 " %16" PRIu64 " %16" PRIu64 "\n", p.first,
                 p.second.records, p.second.load_bytes, p.second.store_bytes);
}

int write_report(const report_arguments& report, const trace_reader& reader,
                 const trace_analysis& analysis, FILE* out, FILE* err) {
  FILE* html = report.output == "-" ? out : std::fopen(report.output.c_str(), "w");
  if (!html) {
    std::fprintf(err, "zorvo-trace: %s: %s\n", report.output.c_str(), std::strerror(errno));
    return 1;
  }
  write_report_html(html, report.trace, reader, analysis, report.analysis);
  const bool written =
      !std::ferror(html) && (html == out ? std::fflush(html) : std::fclose(html)) == 0;
  if (!written) {
    std::fprintf(err, "zorvo-trace: %s: could not write the report\n", report.output.c_str());
    return 1;
  }
  return 0;
}

} // namespace

int zorvo_trace_main(int argc, char** argv, FILE* out, FILE* err) {
  const std::string command = argc > 1 ? argv[1] : "";
  report_arguments report;
  if (command == "report") {
    std::string problem;
    if (!parse_report_arguments(argc - 2, argv + 2, &report, &problem)) {
      std::fprintf(err, "zorvo-trace report: %s\n%s\n", problem.c_str(), kUsage);
      return 2;
    }
  } else if (command != "stats" && command != "dump" && command != "csv") {
    if (argc > 1) std::fprintf(err, "zorvo-trace: unknown command '%s'\n", argv[1]);
    std::fprintf(err, "%s\n", kUsage);
    return 2;
  } else if (argc != 3) {
    std::fprintf(err, "%s\n", kUsage);
    return 2;
  }
  const char* path = command == "report" ? report.trace.c_str() : argv[2];
  trace_reader reader;
  std::string error;
  if (!open_trace(path, &reader, &error)) {
    std::fprintf(err, "zorvo-trace: %s: %s\n", path, error.c_str());
    return 1;
  }
  if (!reader.complete)
    std::fprintf(err, "zorvo-trace: warning: %s: %s\n", path, truncation_note(reader).c_str());

  statistics st;
  trace_analyser analyser(report.analysis, reader.whole_records);
  record r;
  if (command == "csv") std::fprintf(out, "seq,tid,kind,addr,size,pc,flags\n");
  while (next_record(&reader, &r, &error)) {
    if (command == "stats")
      st.add(r);
    else if (command == "dump")
      dump_line(out, r);
    else if (command == "csv")
      csv_line(out, r);
    else
      analyser.add(r);
  }
  const bool read_ok = reader.records_read == reader.whole_records;
  close_trace(&reader);
  if (!read_ok) {
    std::fprintf(err, "zorvo-trace: %s: %s\n", path, error.c_str());
    return 1;
  }
  if (command == "stats") print_stats(out, reader, st);
  if (command == "report") return write_report(report, reader, analyser.finish(), out, err);
  return 0;
}

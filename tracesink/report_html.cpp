#include "report_html.h"

#include <algorithm>
#include <cinttypes>
#include <cmath>

namespace {

const series_style kLoad{"loads", "#1f77b4"}, kStore{"stores", "#e6740b"};

std::string hex(uint64_t v) {
  char text[24];
  std::snprintf(text, sizeof text, "0x%" PRIx64, v);
  return text;
}

std::string percent(uint64_t part, uint64_t whole) {
  if (whole == 0) return "-";
  char text[16];
  std::snprintf(text, sizeof text, "%.1f%%", 100.0 * double(part) / double(whole));
  return text;
}

std::string signed_bytes(int64_t v) { return (v > 0 ? "+" : "") + std::to_string(v); }

std::string bytes_label(double v) { return byte_size(v); }

using instruction_entry = std::pair<uint64_t, const instruction_stats*>;

// The instructions, most first by `key`, at most `limit` of them.
template <typename Key>
std::vector<instruction_entry> top_instructions(const trace_analysis& a, size_t limit, Key key) {
  std::vector<instruction_entry> all;
  for (const auto& i : a.instructions) all.push_back({i.first, &i.second});
  std::stable_sort(all.begin(), all.end(),
                   [&](const instruction_entry& x, const instruction_entry& y) {
                     return key(*x.second) > key(*y.second);
                   });
  if (all.size() > limit) all.resize(limit);
  return all;
}

// The strides of one instruction by how often they occurred: the first
// `limit`, then the rest together.
std::vector<bar> stride_columns(const stride_histogram& h, size_t limit) {
  std::vector<std::pair<int64_t, uint64_t>> strides(h.counts.begin(), h.counts.end());
  std::stable_sort(strides.begin(), strides.end(),
                   [](const auto& x, const auto& y) { return x.second > y.second; });
  const uint64_t total = h.total();
  std::vector<bar> columns;
  uint64_t rest = h.other;
  for (size_t i = 0; i < strides.size(); ++i) {
    if (i < limit)
      columns.push_back({signed_bytes(strides[i].first),
                         {double(strides[i].second)},
                         percent(strides[i].second, total)});
    else
      rest += strides[i].second;
  }
  if (rest) columns.push_back({"other", {double(rest)}, percent(rest, total)});
  return columns;
}

const char* const kStyle = R"(
body { font-family: sans-serif; margin: 24px auto; max-width: 940px; color: #222; }
h1 { font-size: 22px; margin-bottom: 4px; }
h2 { font-size: 17px; margin-top: 32px; border-bottom: 1px solid #ccc; padding-bottom: 4px; }
p.meta { color: #555; margin-top: 0; }
p.note { color: #555; font-size: 13px; }
table { border-collapse: collapse; font-size: 13px; }
td, th { padding: 3px 10px; border-bottom: 1px solid #eee; text-align: right; }
th { background: #f2f2f2; }
td:first-child, th:first-child { text-align: left; }
td.pc { font-family: monospace; }
#summary td { text-align: left; }
.warning { background: #fff3cd; padding: 8px; border: 1px solid #e0c060; }
.strides { display: flex; flex-wrap: wrap; gap: 8px 18px; }
.strides figure { margin: 0; }
.strides figcaption { font-family: monospace; font-size: 12px; text-align: center; }
)";

void summary(FILE* out, const trace_reader& reader, const trace_analysis& a) {
  const trace_format::header& h = reader.header;
  std::fprintf(out, "<h2>Summary</h2>\n<table id=\"summary\">\n");
  const auto row = [out](const char* name, const std::string& value) {
    std::fprintf(out, "<tr><td>%s</td><td>%s</td></tr>\n", name, html_escape(value).c_str());
  };
  row("records", with_commas(a.records) + " (" + with_commas(a.all.records()) + " accesses, " +
                     with_commas(a.start_markers + a.stop_markers) + " markers)");
  row("loads",
      with_commas(a.all.load_records) + " records, " + with_commas(a.all.load_bytes) + " bytes");
  row("stores",
      with_commas(a.all.store_records) + " records, " + with_commas(a.all.store_bytes) + " bytes");
  row("threads", std::to_string(a.threads.size()));
  row("regions of interest",
      with_commas(a.start_markers) + " started, " + with_commas(a.stop_markers) + " stopped");
  row("instructions", with_commas(a.instructions.size()) + " distinct addresses");
  row("footprint", with_commas(a.lines) + " distinct 64-byte lines (" + byte_size(a.lines * 64.0) +
                       "), " + with_commas(a.pages) + " distinct 4 KiB pages (" +
                       byte_size(a.pages * 4096.0) + ")");
  row("vector length", std::to_string(h.vector_bytes) + " bytes");
  if (h.lost_count) row("lost", with_commas(h.lost_count) + " records the sink could not write");
  std::fprintf(out, "</table>\n");

  if (a.threads.empty()) return;
  std::fprintf(out, "<h3>Threads, in the order they first appear</h3>\n<table id=\"threads\">\n"
                    "<tr><th>thread</th><th>records</th><th>loads</th><th>load bytes</th>"
                    "<th>stores</th><th>store bytes</th></tr>\n");
  for (const thread_stats& t : a.threads)
    std::fprintf(
        out,
        "<tr><td class=\"pc\">0x%08" PRIx32 "</td><td>%s</td><td>%s</td><td>%s</td>"
        "<td>%s</td><td>%s</td></tr>\n",
        t.tid, with_commas(t.totals.records()).c_str(), with_commas(t.totals.load_records).c_str(),
        with_commas(t.totals.load_bytes).c_str(), with_commas(t.totals.store_records).c_str(),
        with_commas(t.totals.store_bytes).c_str());
  std::fprintf(out, "</table>\n");
}

void address_plot(FILE* out, const trace_analysis& a) {
  std::fprintf(out, "<h2>Address over record sequence</h2>\n");
  if (a.samples.empty()) {
    std::fprintf(out, "<p>No accesses.</p>\n");
    return;
  }
  const std::vector<y_band> bands = address_bands(a.samples, 6);
  std::vector<point> points;
  for (const address_sample& s : a.samples)
    points.push_back({double(s.index), double(s.addr), s.store ? 1 : 0});
  std::vector<double> marks(a.marker_indices.begin(), a.marker_indices.end());
  std::fputs(banded_scatter("address-plot", points, double(a.records), bands, {kLoad, kStore},
                            std::vector<double>(marks.begin(), marks.end()), "record number")
                 .c_str(),
             out);
  std::fprintf(
      out,
      "<p class=\"note\">%s of %s accesses shown (every %s). Address ranges more than "
      "16 MiB apart get a band each, with a scale of its own. Dashed lines: region "
      "markers.</p>\n",
      with_commas(a.samples.size()).c_str(), with_commas(a.all.records()).c_str(),
      with_commas(a.samples.size() > 1 ? a.samples[1].index - a.samples[0].index : 1).c_str());
}

void bytes_plot(FILE* out, const trace_analysis& a) {
  std::fprintf(out, "<h2>Bytes by instruction address</h2>\n");
  const auto top =
      top_instructions(a, 20, [](const instruction_stats& s) { return s.totals.bytes(); });
  std::vector<bar> bars;
  for (const auto& i : top)
    bars.push_back({hex(i.first),
                    {double(i.second->totals.load_bytes), double(i.second->totals.store_bytes)},
                    byte_size(double(i.second->totals.bytes())) + ", " +
                        percent(i.second->totals.bytes(), a.all.bytes())});
  if (bars.empty()) {
    std::fprintf(out, "<p>No accesses.</p>\n");
    return;
  }
  std::fputs(horizontal_bars("bytes-plot", bars, {kLoad, kStore}).c_str(), out);
  if (a.instructions.size() > top.size())
    std::fprintf(out, "<p class=\"note\">The %zu instructions that moved most of %zu.</p>\n",
                 top.size(), a.instructions.size());
}

void footprint_plot(FILE* out, const trace_analysis& a) {
  std::fprintf(out,
               "<h2>Footprint</h2>\n<p id=\"footprint\">%s distinct 64-byte lines (%s) and "
               "%s distinct 4 KiB pages (%s).</p>\n",
               with_commas(a.lines).c_str(), byte_size(a.lines * 64.0).c_str(),
               with_commas(a.pages).c_str(), byte_size(a.pages * 4096.0).c_str());
  if (a.footprint.empty()) return;
  line_series lines{{"64-byte lines", kLoad.color}, {}}, pages{{"4 KiB pages", "#2ca02c"}, {}};
  for (const footprint_point& p : a.footprint) {
    lines.points.push_back({double(p.index), p.lines * 64.0});
    pages.points.push_back({double(p.index), p.pages * 4096.0});
  }
  std::fputs(
      line_chart("footprint-plot", {pages, lines}, double(a.records), "record number", bytes_label)
          .c_str(),
      out);
  std::fprintf(out,
               "<p class=\"note\">Memory covered by the lines and pages touched so far.</p>\n");
}

void cache_plot(FILE* out, const trace_analysis& a, const cache_config& c) {
  std::fprintf(out,
               "<h2>Cache model: hit rate by instruction address</h2>\n<p>A %s cache, %" PRIu32
               " ways, %" PRIu32
               "-byte lines, least recently used out, shared by all threads; every line an "
               "access covers counts once. Hit rate of the whole trace: <b id=\"hit-rate\">%s</b> "
               "of %s line accesses.</p>\n",
               byte_size(double(c.size_bytes)).c_str(), c.ways, c.line_bytes,
               percent(a.line_hits, a.line_accesses).c_str(), with_commas(a.line_accesses).c_str());
  const auto top =
      top_instructions(a, 20, [](const instruction_stats& s) { return s.line_accesses; });
  std::vector<bar> bars;
  for (const auto& i : top) {
    if (i.second->line_accesses == 0) continue;
    const double rate = 100.0 * double(i.second->line_hits) / double(i.second->line_accesses);
    bars.push_back({hex(i.first),
                    {rate},
                    percent(i.second->line_hits, i.second->line_accesses) + " of " +
                        with_commas(i.second->line_accesses)});
  }
  if (!bars.empty())
    std::fputs(horizontal_bars("cache-plot", bars, {{"hit rate", "#2ca02c"}}, 100).c_str(), out);
  if (a.clipped_records)
    std::fprintf(out,
                 "<p class=\"warning\">%s records cover more than %s; only their first %s "
                 "enter the footprint and the cache model.</p>\n",
                 with_commas(a.clipped_records).c_str(),
                 byte_size(double(trace_analyser::kMaxRecordBytes)).c_str(),
                 byte_size(double(trace_analyser::kMaxRecordBytes)).c_str());
}

void stride_plots(FILE* out, const trace_analysis& a) {
  std::fprintf(out, "<h2>Strides by instruction address</h2>\n<p class=\"note\">The distance in "
                    "bytes from each access of an instruction to its previous access in the same "
                    "thread; share of that instruction's strides above each bar.</p>\n"
                    "<div class=\"strides\">\n");
  const auto top =
      top_instructions(a, 12, [](const instruction_stats& s) { return s.totals.records(); });
  int n = 0;
  for (const auto& i : top) {
    const std::vector<bar> columns = stride_columns(i.second->strides, 8);
    if (columns.empty()) continue;
    std::fprintf(out, "<figure>");
    std::fputs(column_chart("strides-" + std::to_string(n++), columns, "#6f4fb0", 290, 190).c_str(),
               out);
    std::fprintf(out, "<figcaption>%s: %s strides</figcaption></figure>\n", hex(i.first).c_str(),
                 with_commas(i.second->strides.total()).c_str());
  }
  if (n == 0) std::fprintf(out, "<p>No instruction accessed memory twice.</p>\n");
  std::fprintf(out, "</div>\n");
}

void instruction_table(FILE* out, const trace_analysis& a) {
  std::fprintf(out, "<h2>Instructions</h2>\n<table id=\"instructions\">\n<tr><th>address</th>"
                    "<th>records</th><th>load bytes</th><th>store bytes</th>"
                    "<th>commonest stride</th><th>cache hits</th></tr>\n");
  const auto all = top_instructions(a, a.instructions.size(),
                                    [](const instruction_stats& s) { return s.totals.bytes(); });
  for (const auto& i : all) {
    const stride_histogram& h = i.second->strides;
    std::string stride = "-";
    uint64_t best = 0;
    for (const auto& s : h.counts)
      if (s.second > best) {
        best = s.second;
        stride = signed_bytes(s.first) + " (" + percent(s.second, h.total()) + ")";
      }
    std::fprintf(out,
                 "<tr><td class=\"pc\">%s</td><td>%s</td><td>%s</td><td>%s</td><td>%s</td>"
                 "<td>%s</td></tr>\n",
                 hex(i.first).c_str(), with_commas(i.second->totals.records()).c_str(),
                 with_commas(i.second->totals.load_bytes).c_str(),
                 with_commas(i.second->totals.store_bytes).c_str(), stride.c_str(),
                 percent(i.second->line_hits, i.second->line_accesses).c_str());
  }
  std::fprintf(out, "</table>\n");
}

} // namespace

std::vector<y_band> address_bands(const std::vector<address_sample>& samples, size_t max_bands) {
  std::vector<uint64_t> addrs;
  for (const address_sample& s : samples) addrs.push_back(s.addr);
  std::sort(addrs.begin(), addrs.end());
  addrs.erase(std::unique(addrs.begin(), addrs.end()), addrs.end());
  if (addrs.empty()) return {};
  // The widest gaps above the threshold, at most max_bands - 1 of them.
  constexpr uint64_t kGap = uint64_t{16} << 20;
  std::vector<std::pair<uint64_t, size_t>> gaps; // width, index of the address after the gap
  for (size_t i = 1; i < addrs.size(); ++i)
    if (addrs[i] - addrs[i - 1] > kGap) gaps.push_back({addrs[i] - addrs[i - 1], i});
  std::stable_sort(gaps.begin(), gaps.end(),
                   [](const auto& x, const auto& y) { return x.first > y.first; });
  if (max_bands == 0) max_bands = 1;
  if (gaps.size() > max_bands - 1) gaps.resize(max_bands - 1);
  std::vector<size_t> cuts;
  for (const auto& g : gaps) cuts.push_back(g.second);
  std::sort(cuts.begin(), cuts.end());
  cuts.push_back(addrs.size());
  std::vector<y_band> bands;
  size_t begin = 0;
  for (size_t cut : cuts) {
    bands.push_back({addrs[begin], addrs[cut - 1]});
    begin = cut;
  }
  return bands;
}

void write_report_html(FILE* out, const std::string& source, const trace_reader& reader,
                       const trace_analysis& a, const analysis_options& options) {
  const trace_format::header& h = reader.header;
  const std::string title = "Memory trace of " + h.app_name;
  std::fprintf(out,
               "<!DOCTYPE html>\n<html lang=\"en\"><head><meta charset=\"utf-8\">\n"
               // Nothing may come from outside the page.
               "<meta http-equiv=\"Content-Security-Policy\" content=\"default-src 'none'; "
               "style-src 'unsafe-inline'; script-src 'unsafe-inline'\">\n"
               "<title>%s</title>\n<style>%s</style></head>\n<body>\n<h1>%s</h1>\n",
               html_escape(title).c_str(), kStyle, html_escape(title).c_str());
  std::fprintf(
      out, "<p class=\"meta\">%s &middot; pid %" PRIu32 " &middot; started %s &middot; %s</p>\n",
      html_escape(source).c_str(), h.pid, utc_time(h.start_ns).c_str(),
      reader.complete ? "complete" : "TRUNCATED");
  if (!reader.complete)
    std::fprintf(out, "<p class=\"warning\">%s</p>\n",
                 html_escape(truncation_note(reader)).c_str());
  summary(out, reader, a);
  address_plot(out, a);
  bytes_plot(out, a);
  footprint_plot(out, a);
  cache_plot(out, a, options.cache);
  stride_plots(out, a);
  instruction_table(out, a);
  std::fprintf(out, "</body></html>\n");
}

// The report's analysis (cache model, footprint, strides, sampling) on
// records whose answers can be worked out by hand, and `zorvo-trace report`
// on files.
#include <gtest/gtest.h>

#include <fstream>

#include "cache_model.h"
#include "report_html.h"
#include "trace_analysis.h"
#include "trace_files.h"

namespace {

using trace_format::record;

constexpr uint32_t kLoad = 1, kStore = 0;

record access(uint64_t addr, uint64_t size, uint64_t pc, uint32_t tid = 7, uint32_t type = kLoad) {
  return record{0, tid, 0, type, size, addr, pc};
}

trace_analysis analyse(const std::vector<record>& records, analysis_options options = {}) {
  trace_analyser analyser(options, records.size());
  for (const record& r : records) analyser.add(r);
  return analyser.finish();
}

std::vector<bool> hits(lru_cache& cache, std::initializer_list<uint64_t> addrs) {
  std::vector<bool> out;
  for (uint64_t a : addrs) out.push_back(cache.access(a));
  return out;
}

TEST(CacheModel, TheLeastRecentlyUsedLineOfASetLeaves) {
  lru_cache one_set({128, 2, 64}); // one set of two ways
  // A, B, A (hit, A now newest), C evicts B, A still there, B comes back.
  EXPECT_EQ(hits(one_set, {0, 64, 0, 128, 0, 64, 127}),
            (std::vector<bool>{false, false, true, false, true, false, true}));

  lru_cache direct({256, 1, 64}); // four sets of one way: lines 0 and 4 share a set
  EXPECT_EQ(hits(direct, {0, 64, 256, 64, 0, 63}),
            (std::vector<bool>{false, false, false, true, false, true}));
}

TEST(CacheModel, ShapesThatCannotBeModelledAreRefused) {
  EXPECT_EQ(cache_config_problem({}), "");
  EXPECT_EQ(cache_config_problem({3 * 64 * 16, 3, 64}), ""); // sets need not be a power of two
  EXPECT_NE(cache_config_problem({65536, 4, 48}), "");
  EXPECT_NE(cache_config_problem({65536, 0, 64}), "");
  EXPECT_NE(cache_config_problem({65536 + 64, 4, 64}), "");
  EXPECT_NE(cache_config_problem({0, 4, 64}), "");
}

TEST(TraceAnalysis, FootprintCountsEveryLineAndPageARecordCovers) {
  const trace_analysis a = analyse({
      access(60, 8, 1),               // lines 0 and 1 of page 0
      access(0, 64, 1),               // line 0 again
      access(4090, 12, 1),            // last line of page 0, first of page 1
      access(0x10000, 4096, 1),       // all 64 lines of page 16
      access(0x10000 + 100, 4, 1),    // nothing new
      access(0x30000, 0, 1),          // empty: nothing
      access(~uint64_t{0} - 7, 8, 1), // the top of the address space
  });
  EXPECT_EQ(a.lines, 2u + 2u + 64u + 1u);
  EXPECT_EQ(a.pages, 1u + 1u + 1u + 1u);
  EXPECT_EQ(a.footprint.back().lines, a.lines);
}

TEST(TraceAnalysis, StridesFollowOneInstructionWithinOneThread) {
  // Two threads run the same load through different arrays, interleaved.
  std::vector<record> records;
  for (uint64_t i = 0; i < 4; ++i) {
    records.push_back(access(0x100000 + 48 * i, 48, 0x400a10, 1));
    records.push_back(access(0x900000 + 48 * i, 48, 0x400a10, 2));
    records.push_back(access(0x500000 - 4096 * i, 8, 0x400b00, 1, kStore));
  }
  const trace_analysis a = analyse(records);
  const stride_histogram& load = a.instructions.at(0x400a10).strides;
  EXPECT_EQ(load.counts, (std::map<int64_t, uint64_t>{{48, 6}}));
  EXPECT_EQ(a.instructions.at(0x400b00).strides.counts, (std::map<int64_t, uint64_t>{{-4096, 3}}));
  EXPECT_EQ(a.instructions.at(0x400b00).totals.store_bytes, 32u);
  ASSERT_EQ(a.threads.size(), 2u);
  EXPECT_EQ(a.threads[0].tid, 1u);
  EXPECT_EQ(a.threads[0].totals.records(), 8u);
}

TEST(TraceAnalysis, ManyDistinctStridesEndInOther) {
  std::vector<record> records;
  uint64_t addr = 0;
  for (uint64_t i = 1; i <= stride_histogram::kMaxStrides + 6; ++i)
    records.push_back(access(addr += i, 1, 5));
  const trace_analysis a = analyse(records);
  const stride_histogram& h = a.instructions.at(5).strides;
  EXPECT_EQ(h.counts.size(), stride_histogram::kMaxStrides);
  EXPECT_EQ(h.other, 5u); // the first access has no stride
  EXPECT_EQ(h.total(), stride_histogram::kMaxStrides + 5);
}

TEST(TraceAnalysis, CacheHitRatesPerInstruction) {
  analysis_options options;
  options.cache = {4096, 4, 64};
  std::vector<record> records;
  // A 2 KiB table read twice fits: only the first touch of each line misses.
  for (int pass = 0; pass < 2; ++pass)
    for (uint64_t a = 0; a + 48 <= 2048; a += 48) records.push_back(access(0x10000 + a, 48, 0xa));
  // A 16 KiB sweep, twice, in a 4 KiB LRU cache: every line has left before it returns.
  for (int pass = 0; pass < 2; ++pass)
    for (uint64_t a = 0; a < 16384; a += 64) records.push_back(access(0x80000 + a, 64, 0xb));
  const trace_analysis a = analyse(records, options);
  const instruction_stats& table = a.instructions.at(0xa);
  EXPECT_EQ(table.line_accesses - table.line_hits, 2048u / 64);
  EXPECT_EQ(a.instructions.at(0xb).line_accesses, 512u);
  EXPECT_EQ(a.instructions.at(0xb).line_hits, 0u);
  EXPECT_EQ(a.line_hits, table.line_hits);
}

TEST(TraceAnalysis, MarkersCountAsRecordsOnlyAndSamplesStayBounded) {
  std::vector<record> records;
  records.push_back({0, 0xffffffffu, 0, 0, 0, 0, 0});
  for (uint64_t i = 0; i < 998; ++i) records.push_back(access(64 * i, 4, 0x10));
  records.push_back({0, 0xfffffffeu, 0, 0, 0, 0, 0});
  analysis_options options;
  options.max_samples = 100;
  const trace_analysis a = analyse(records, options);
  EXPECT_EQ(a.records, 1000u);
  EXPECT_EQ(a.all.records(), 998u);
  EXPECT_EQ(a.start_markers + a.stop_markers, 2u);
  EXPECT_EQ(a.marker_indices, (std::vector<uint64_t>{0, 999}));
  EXPECT_EQ(a.threads.size(), 1u);
  EXPECT_LE(a.samples.size(), 100u);
  EXPECT_GE(a.samples.size(), 90u);
  EXPECT_EQ(a.samples[1].index - a.samples[0].index, 10u);
}

TEST(AddressBands, DistantRangesGetABandEachUpToTheLimit) {
  std::vector<address_sample> samples;
  for (uint64_t addr : {0x7fff0000ull, 0x1000ull, 0x7f0000000000ull, 0x2000ull, 0x7f0000001000ull})
    samples.push_back({0, addr, false});
  std::vector<y_band> bands = address_bands(samples, 6);
  ASSERT_EQ(bands.size(), 3u);
  EXPECT_EQ(bands[0].lo, 0x1000u);
  EXPECT_EQ(bands[0].hi, 0x2000u);
  EXPECT_EQ(bands[1].lo, 0x7fff0000u);
  EXPECT_EQ(bands[2].hi, 0x7f0000001000u);
  // With room for two, only the widest gap splits.
  bands = address_bands(samples, 2);
  ASSERT_EQ(bands.size(), 2u);
  EXPECT_EQ(bands[0].hi, 0x7fff0000u);
}

class ReportCommand : public ::testing::Test {
protected:
  void SetUp() override { dir = make_temp_dir(); }
  void TearDown() override { remove_dir(dir); }
  std::string dir;
};

TEST_F(ReportCommand, WritesOnePageWithEveryChart) {
  std::vector<record> records{{0, 0xffffffffu, 0, 0, 0, 0, 0}};
  for (uint64_t i = 0; i < 300; ++i) {
    records.push_back({i + 1, 0xa0, 0, kLoad, 48, 0x5500000000 + 48 * i, 0x400100});
    records.push_back({i + 1, 0xb0, 0, kStore, 48, 0x7f00000000 + 96 * i, 0x400200});
  }
  const std::string trace = dir + "/t.trace", html = dir + "/r.html";
  const std::string bytes = trace_file_bytes(records, true, "kernel<1>");
  std::ofstream(trace, std::ios::binary).write(bytes.data(), static_cast<long>(bytes.size()));
  const tool_result r = run_zorvo_trace({"report", trace, "-o", html, "--cache-size", "8K"});
  ASSERT_EQ(r.status, 0) << r.err;
  std::ifstream in(html);
  const std::string page((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
  for (const char* part : {"<title>Memory trace of kernel&lt;1&gt;</title>", "id=\"address-plot\"",
                           "id=\"bytes-plot\"", "id=\"footprint-plot\"", "id=\"cache-plot\"",
                           "id=\"strides-1\"", "601 (600 accesses, 1 markers)",
                           "A 8.0 KiB cache, 4 ways", "+96 (100.0%)", "default-src 'none'"})
    EXPECT_NE(page.find(part), std::string::npos) << part;
  // Nothing outside the page is named, only the SVG namespace.
  std::string rest = page;
  const std::string svg_namespace = "xmlns=\"http://www.w3.org/2000/svg\"";
  for (size_t at; (at = rest.find(svg_namespace)) != std::string::npos;)
    rest.erase(at, svg_namespace.size());
  for (const char* outside : {"http://", "https://", "src="})
    EXPECT_EQ(rest.find(outside), std::string::npos) << outside;
}

TEST_F(ReportCommand, BadArgumentsAreUsageErrors) {
  const std::string trace = dir + "/t.trace";
  const std::string bytes = trace_file_bytes({}, true);
  std::ofstream(trace, std::ios::binary).write(bytes.data(), static_cast<long>(bytes.size()));
  const struct {
    std::vector<std::string> args;
    const char* message;
  } cases[] = {
      {{"report", trace}, "no output file"},
      {{"report", "-o", "x.html"}, "no trace file"},
      {{"report", trace, "-o"}, "-o needs a value"},
      {{"report", trace, "-o", "x", "--cache-ways", "3"}, "whole number of sets"},
      {{"report", trace, "-o", "x", "--cache-line", "48"}, "power of two"},
      {{"report", trace, "-o", "x", "--cache-size", "lots"}, "bad value 'lots'"},
      {{"report", trace, "-o", "x", "--colour"}, "unknown option '--colour'"},
      {{"report", trace, trace, "-o", "x"}, "more than one trace file"},
  };
  for (const auto& c : cases) {
    const tool_result r = run_zorvo_trace(c.args);
    EXPECT_EQ(r.status, 2) << c.message;
    EXPECT_NE(r.err.find(c.message), std::string::npos) << r.err;
  }
  // Sizes with a unit, and a shape that divides evenly.
  EXPECT_EQ(run_zorvo_trace({"report", trace, "-o", dir + "/ok.html", "--cache-size", "48K",
                             "--cache-ways", "3"})
                .status,
            0);
  EXPECT_EQ(run_zorvo_trace({"report", trace, "-o", dir + "/no/such/dir.html"}).status, 1);
}

} // namespace

// The reader and zorvo-trace on hand-made files: complete, truncated, bad.
#include <gtest/gtest.h>

#include <cstring>
#include <fstream>

#include "trace_files.h"
#include "trace_tool.h"

namespace {

namespace tf = trace_format;
using tf::record;

constexpr uint32_t kStart = 0xffffffff, kStop = 0xfffffffe;

// Two threads, two instructions, markers around.
std::vector<record> sample() {
  return {
      {0, kStart, 0, 0, 0, 0, 0},
      {1, 0xa0, 0, 1, 48, 0x1000, 0x400100},
      {2, 0xa0, 0, 0, 16, 0x2000, 0x400200},
      {3, 0xb0, 0, 1, 4, 0x1030, 0x400100},
      {4, 0xb0, 7, 1, 8, 0x3000, 0x400300},
      {5, kStop, 0, 0, 0, 0, 0},
  };
}

class TraceTool : public ::testing::Test {
protected:
  void SetUp() override { dir = make_temp_dir(); }
  void TearDown() override { remove_dir(dir); }
  std::string put(const std::string& name, const std::string& bytes) {
    const std::string path = dir + "/" + name;
    std::ofstream(path, std::ios::binary).write(bytes.data(), static_cast<long>(bytes.size()));
    return path;
  }
  static tool_result run(std::vector<std::string> args) { return run_zorvo_trace(args); }
  std::string dir;
};

TEST_F(TraceTool, BadInputGetsOneLineAndAFailingStatus) {
  std::string header = trace_file_bytes({}, true);
  std::string future = header;
  future[tf::at::version] = 2;
  std::string odd_records = header;
  odd_records[tf::at::record_bytes] = 40;
  std::string odd_vector = header, long_vector = header, no_vector = header;
  odd_vector[tf::at::vector_bytes] = 40;
  tf::put32(reinterpret_cast<unsigned char*>(&long_vector[tf::at::vector_bytes]), 272);
  no_vector[tf::at::vector_bytes] = 0;
  const struct {
    std::string path, message;
  } cases[] = {
      {put("empty", ""), "empty file, not a trace"},
      {put("text", "hello, this is not a trace file at all, not at all.......\n"),
       "not a zorvo trace file"},
      {put("future", future), "trace format version 2 is not supported"},
      {put("odd", odd_records), "damaged trace header"},
      {put("vl40", odd_vector), "damaged trace header: a vector length of 40 bytes is not a "
                                "multiple of 16 from 16 to 256"},
      {put("vl272", long_vector), "damaged trace header: a vector length of 272 bytes"},
      {put("vl0", no_vector), "damaged trace header: a vector length of 0 bytes"},
      {put("cut", header.substr(0, 40)), "the header is cut off"},
      {put("longer", trace_file_bytes(sample(), true) + std::string(48, 'x')),
       "holds more data than its header's 6 records"},
      {dir + "/absent", "No such file or directory"},
      {dir, "is a directory"},
  };
  for (const auto& c : cases) {
    for (const char* command : {"stats", "dump", "csv"}) {
      const tool_result r = run({command, c.path});
      EXPECT_EQ(r.status, 1) << c.path;
      EXPECT_EQ(r.err.find("zorvo-trace: " + c.path + ": " + c.message), 0u) << r.err;
      EXPECT_EQ(std::count(r.err.begin(), r.err.end(), '\n'), 1) << r.err;
    }
  }
  EXPECT_EQ(run({"stats"}).status, 2);
  EXPECT_EQ(run({"show", dir}).status, 2);
}

TEST_F(TraceTool, EveryArchitecturalVectorLengthIsAccepted) {
  for (uint32_t bytes : {16u, 48u, 256u}) {
    const tool_result r = run({"stats", put("vl", trace_file_bytes(sample(), true, "app", bytes))});
    EXPECT_EQ(r.status, 0) << bytes << r.err;
    EXPECT_NE(r.out.find("vector     " + std::to_string(bytes) + " bytes"), std::string::npos);
  }
}

TEST_F(TraceTool, DumpAndCsvShowEveryRecord) {
  const std::string path = put("t", trace_file_bytes(sample(), true));
  tool_result r = run({"dump", path});
  EXPECT_EQ(r.status, 0);
  EXPECT_EQ(r.err, "");
  EXPECT_EQ(r.out, "seq=0 roi-start\n"
                   "seq=1 tid=0x000000a0 load  addr=0x1000 size=48 pc=0x400100\n"
                   "seq=2 tid=0x000000a0 store addr=0x2000 size=16 pc=0x400200\n"
                   "seq=3 tid=0x000000b0 load  addr=0x1030 size=4 pc=0x400100\n"
                   "seq=4 tid=0x000000b0 load  addr=0x3000 size=8 pc=0x400300 "
                   "flags=first,element,last\n"
                   "seq=5 roi-stop\n");
  r = run({"csv", path});
  EXPECT_EQ(r.status, 0);
  EXPECT_EQ(r.out, "seq,tid,kind,addr,size,pc,flags\n"
                   "0,0xffffffff,roi_start,0x0,0,0x0,0\n"
                   "1,0x000000a0,load,0x1000,48,0x400100,0\n"
                   "2,0x000000a0,store,0x2000,16,0x400200,0\n"
                   "3,0x000000b0,load,0x1030,4,0x400100,0\n"
                   "4,0x000000b0,load,0x3000,8,0x400300,7\n"
                   "5,0xfffffffe,roi_stop,0x0,0,0x0,0\n");
}

TEST_F(TraceTool, StatsCountsByKindThreadAndInstruction) {
  const tool_result r = run({"stats", put("t", trace_file_bytes(sample(), true, "demo"))});
  EXPECT_EQ(r.status, 0);
  EXPECT_EQ(r.err, "");
  for (const char* line : {
           "application demo (pid 4321)\n",
           "started    2023-11-14 22:13:20 UTC\n",
           "state      complete, 1.500 s traced\n",
           "records    6 (4 accesses, 2 markers)\n",
           "loads      3 records, 60 bytes\n",
           "stores     1 records, 16 bytes\n",
           "markers    1 start, 1 stop\n",
           "sequence   0 to 5, 6 distinct\n",
           "threads    2\n",
           "  0x000000a0            2            1               64\n",
           "  0x000000b0            2            2               12\n",
           "instructions by bytes: 3\n",
       })
    EXPECT_NE(r.out.find(line), std::string::npos) << line << "\nin\n" << r.out;
  // Sorted by bytes: 0x400100 (52), 0x400200 (16), 0x400300 (8).
  const size_t a = r.out.find("0x0000000000400100"), b = r.out.find("0x0000000000400200"),
               c = r.out.find("0x0000000000400300");
  EXPECT_TRUE(a < b && b < c) << r.out;
  EXPECT_NE(r.out.find("0x0000000000400100            2               52                0"),
            std::string::npos);
}

TEST_F(TraceTool, TruncatedFilesAreReadToTheirLastWholeRecordWithAWarning) {
  const std::string whole = trace_file_bytes(sample(), false);
  const std::string open = put("open", whole.substr(0, whole.size() - 30));
  tool_result r = run({"stats", open});
  EXPECT_EQ(r.status, 0);
  EXPECT_NE(r.err.find("warning: " + open + ": truncated: never completed"), std::string::npos);
  EXPECT_NE(r.err.find("5 whole records, then 18 bytes of a cut-off record"), std::string::npos)
      << r.err;
  EXPECT_NE(r.out.find("records    5 (4 accesses, 1 markers)"), std::string::npos) << r.out;
  EXPECT_NE(r.out.find("state      truncated"), std::string::npos);

  // A completed file cut short is truncated too, and says how much is missing.
  const std::string complete = trace_file_bytes(sample(), true);
  const std::string cut = put("cut", complete.substr(0, complete.size() - 96));
  r = run({"dump", cut});
  EXPECT_EQ(r.status, 0);
  EXPECT_NE(r.err.find("the header promises 6 records, the file holds 4"), std::string::npos);
  EXPECT_EQ(std::count(r.out.begin(), r.out.end(), '\n'), 4);

  // A header with no record yet: the process died before its first flush.
  const std::string bare = put("bare", trace_file_bytes({}, false));
  r = run({"csv", bare});
  EXPECT_EQ(r.status, 0);
  EXPECT_EQ(r.out, "seq,tid,kind,addr,size,pc,flags\n");
  EXPECT_NE(r.err.find("0 whole records"), std::string::npos);
}

TEST_F(TraceTool, StatsReportsDuplicatedAndMissingSequenceNumbers) {
  std::vector<record> records = sample();
  records[2].seq = 1; // 0, 1, 1, 3, 4, 5
  records[5].seq = 9;
  const tool_result r = run({"stats", put("t", trace_file_bytes(records, true))});
  EXPECT_NE(r.out.find("sequence   0 to 9, 5 distinct, 1 DUPLICATED, 5 missing"), std::string::npos)
      << r.out;
}

} // namespace

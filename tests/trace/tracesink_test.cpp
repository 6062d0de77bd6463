// The real sink: files, their header, threads, and processes that fork or
// die.
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <thread>

#include "trace/tracesink.h"
#include "trace_files.h"

namespace {

// A record that says who sent it: the sender's number in addr's high half,
// its running count in the low half.
void send(uint32_t sender, uint32_t i, memaccess_type_t type = memaccess_load) {
  sve_mem_ref_t r;
  r.seq = incr_count();
  r.tid = static_cast<int32_t>(100 + sender);
  r.flags = 0;
  r.type = type;
  r.gap = 0xdeadbeef; // must not reach the file
  r.size = 48;
  r.addr = uint64_t{sender} << 32 | i;
  r.pc = 0x400000 + sender;
  trace_mem(r);
}

class TraceSink : public ::testing::Test {
protected:
  void SetUp() override {
    dir = make_temp_dir();
    setenv("ZORVO_TRACE_DIR", dir.c_str(), 1);
  }
  void TearDown() override { remove_dir(dir); }
  std::string only_file() {
    const std::vector<std::string> files = files_in(dir);
    EXPECT_EQ(files.size(), 1u);
    return files.empty() ? "" : dir + "/" + files[0];
  }
  std::string dir;
};

TEST_F(TraceSink, NoRecordNoFile) {
  ASSERT_TRUE(sve_init(0, "quiet"));
  EXPECT_TRUE(sve_exit());
  EXPECT_TRUE(files_in(dir).empty());
}

TEST_F(TraceSink, HeaderAndRecordsRoundTrip) {
  const uint64_t before = static_cast<uint64_t>(time(nullptr));
  ASSERT_TRUE(sve_init(0, "my app/v2"));
  EXPECT_FALSE(sve_init(0, "again")); // already tracing
  send(1, 7, memaccess_store);
  sve_mem_ref_t marker{};
  marker.seq = incr_count();
  marker.tid = roi_stop_marker;
  trace_mem(marker);
  EXPECT_TRUE(sve_exit());
  send(1, 8); // after sve_exit: refused, the file stays complete
  EXPECT_FALSE(sve_exit());

  ASSERT_EQ(files_in(dir),
            std::vector<std::string>{"zorvo.my_app_v2." + std::to_string(getpid()) + ".trace"});
  const read_trace t = read_all(only_file());
  const trace_format::header& h = t.reader.header;
  EXPECT_TRUE(t.reader.complete);
  EXPECT_EQ(h.app_name, "my app/v2");
  EXPECT_EQ(h.pid, static_cast<uint32_t>(getpid()));
  EXPECT_EQ(h.vector_bytes, 48u);
  EXPECT_EQ(h.record_count, 2u);
  EXPECT_EQ(h.lost_count, 0u);
  EXPECT_GE(h.start_ns / 1000000000u, before);
  EXPECT_LE(h.start_ns, h.end_ns);
  EXPECT_LE(h.end_ns / 1000000000u, static_cast<uint64_t>(time(nullptr)));
  ASSERT_EQ(t.records.size(), 2u);
  const trace_format::record& r = t.records[0];
  EXPECT_EQ(r.seq + 1, t.records[1].seq);
  EXPECT_EQ(r.tid, 101u);
  EXPECT_EQ(r.type, 0u);
  EXPECT_EQ(r.size, 48u);
  EXPECT_EQ(r.addr, uint64_t{1} << 32 | 7);
  EXPECT_EQ(r.pc, 0x400001u);
  EXPECT_EQ(t.records[1].tid, 0xfffffffeu);

  // The gap is written as zero.
  std::ifstream in(only_file(), std::ios::binary);
  std::vector<char> bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
  uint32_t gap;
  std::memcpy(&gap, bytes.data() + h.header_bytes + 20, 4);
  EXPECT_EQ(gap, 0u);
}

// Sends `each` records from each of `threads` threads and checks that the
// file holds every one of them once, each sender's in its order, with
// sequence numbers that are all different.
void stress(const char* name, unsigned threads, uint32_t each, const std::string& dir) {
  ASSERT_TRUE(sve_init(0, name));
  const auto start = std::chrono::steady_clock::now();
  std::vector<std::thread> senders;
  std::atomic<unsigned> ready{0};
  for (unsigned t = 0; t < threads; ++t)
    senders.emplace_back([t, each, threads, &ready] {
      ++ready; // all start together, or the first would be done before the last began
      while (ready < threads) std::this_thread::yield();
      for (uint32_t i = 0; i < each; ++i) send(t, i, i % 3 ? memaccess_load : memaccess_store);
    });
  for (std::thread& t : senders) t.join();
  ASSERT_TRUE(sve_exit());
  const double seconds =
      std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  std::printf("%u threads x %u records in %.2f s\n", threads, each, seconds);

  const std::vector<std::string> files = files_in(dir);
  ASSERT_EQ(files.size(), 1u);
  const read_trace t = read_all(dir + "/" + files[0]);
  EXPECT_TRUE(t.reader.complete);
  ASSERT_EQ(t.records.size(), size_t{threads} * each);
  std::vector<uint32_t> next(threads, 0);
  std::vector<bool> seen(t.records.size(), false);
  uint64_t lowest = UINT64_MAX; // earlier tests drew numbers too
  for (const trace_format::record& r : t.records) lowest = std::min(lowest, r.seq);
  for (const trace_format::record& r : t.records) {
    const uint32_t sender = static_cast<uint32_t>(r.addr >> 32), i = static_cast<uint32_t>(r.addr);
    ASSERT_LT(sender, threads);
    ASSERT_EQ(r.tid, 100 + sender);
    ASSERT_EQ(i, next[sender]++) << "sender " << sender;
    ASSERT_EQ(r.type, i % 3 ? 1u : 0u);
    ASSERT_LT(r.seq - lowest, seen.size());
    ASSERT_FALSE(seen[r.seq - lowest]) << "seq " << r.seq << " twice";
    seen[r.seq - lowest] = true;
  }
  for (unsigned s = 0; s < threads; ++s) EXPECT_EQ(next[s], each);
}

TEST_F(TraceSink, SixteenThreadsLoseAndDuplicateNothing) { stress("stress", 16, 100000, dir); }

// More threads than the sink has buffers: threads share them.
TEST_F(TraceSink, SixtyFourThreadsLoseAndDuplicateNothing) { stress("crowd", 64, 10000, dir); }

TEST_F(TraceSink, DefaultDirectoryIsTheWorkingDirectory) {
  unsetenv("ZORVO_TRACE_DIR");
  char here[4096];
  ASSERT_NE(getcwd(here, sizeof here), nullptr);
  ASSERT_EQ(chdir(dir.c_str()), 0);
  ASSERT_TRUE(sve_init(0, "cwd"));
  send(0, 0);
  EXPECT_TRUE(sve_exit());
  ASSERT_EQ(chdir(here), 0);
  EXPECT_EQ(read_all(only_file()).records.size(), 1u);
}

TEST_F(TraceSink, StartRefusesAnUnusableDirectoryOrMode) {
  setenv("ZORVO_TRACE_DIR", (dir + "/missing").c_str(), 1);
  EXPECT_FALSE(sve_init(0, "nowhere"));
  setenv("ZORVO_TRACE_DIR", dir.c_str(), 1);
  EXPECT_FALSE(sve_init(1, "mode"));
  ASSERT_TRUE(sve_init(0, "twice"));
  send(0, 0);
  ASSERT_TRUE(sve_exit());
  ASSERT_TRUE(sve_init(0, "twice")); // same name and pid: a second file, not an overwrite
  send(0, 1);
  ASSERT_TRUE(sve_exit());
  const std::string pid = std::to_string(getpid());
  EXPECT_EQ(files_in(dir), (std::vector<std::string>{"zorvo.twice." + pid + ".1.trace",
                                                     "zorvo.twice." + pid + ".trace"}));
}

// Runs `child` in a forked process and returns its wait status.
template <typename Fn> int in_child(Fn child) {
  const pid_t pid = fork();
  if (pid == 0) {
    child();
    _exit(0);
  }
  int status = 0;
  waitpid(pid, &status, 0);
  return status;
}

TEST_F(TraceSink, AKilledProcessLeavesATruncatedFileReadableToItsLastFlush) {
  const int status = in_child([] {
    if (!sve_init(0, "killed")) _exit(1);
    for (uint32_t i = 0; i < 5000; ++i) send(0, i);
    raise(SIGKILL);
  });
  ASSERT_TRUE(WIFSIGNALED(status));
  const std::string path = only_file();
  read_trace t = read_all(path);
  EXPECT_FALSE(t.reader.complete);
  // Whole buffers reached the file; the records still buffered died with it.
  ASSERT_GT(t.records.size(), 0u);
  ASSERT_LT(t.records.size(), 5000u);
  for (size_t i = 0; i < t.records.size(); ++i) ASSERT_EQ(t.records[i].addr, i);

  // A record cut in half at the end is left out.
  std::ofstream(path, std::ios::app | std::ios::binary).write("0123456789abcdefghij", 20);
  const size_t whole = t.records.size();
  t = read_all(path);
  EXPECT_EQ(t.records.size(), whole);
  EXPECT_EQ(t.reader.partial_bytes, 20u);
  EXPECT_FALSE(t.reader.complete);
}

TEST_F(TraceSink, AProcessThatExitsWithoutSveExitStillCompletesItsFile) {
  const int status = in_child([] {
    if (!sve_init(0, "exits")) _exit(1);
    for (uint32_t i = 0; i < 10; ++i) send(0, i);
    std::exit(0);
  });
  ASSERT_TRUE(WIFEXITED(status));
  const read_trace t = read_all(only_file());
  EXPECT_TRUE(t.reader.complete);
  EXPECT_EQ(t.records.size(), 10u);
}

TEST_F(TraceSink, AForkedChildWritesItsOwnFileAndNotTheParentsRecords) {
  ASSERT_TRUE(sve_init(0, "forks"));
  for (uint32_t i = 0; i < 10; ++i) send(0, i); // still buffered at the fork
  const int status = in_child([] {
    for (uint32_t i = 0; i < 5; ++i) send(1, i);
    sve_exit();
  });
  ASSERT_TRUE(WIFEXITED(status));
  for (uint32_t i = 10; i < 15; ++i) send(0, i);
  ASSERT_TRUE(sve_exit());
  const std::vector<std::string> files = files_in(dir);
  ASSERT_EQ(files.size(), 2u);
  for (const std::string& name : files) {
    const read_trace t = read_all(dir + "/" + name);
    EXPECT_TRUE(t.reader.complete);
    const bool parent = t.reader.header.pid == static_cast<uint32_t>(getpid());
    ASSERT_EQ(t.records.size(), parent ? 15u : 5u) << name;
    for (size_t i = 0; i < t.records.size(); ++i)
      EXPECT_EQ(t.records[i].addr, (parent ? 0 : uint64_t{1} << 32) | i);
  }
}

} // namespace

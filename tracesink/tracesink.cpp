// libtracesink: receives the trace records of every application thread and
// writes them to one trace file per process (docs/trace-format.md).
//
// Records are buffered in a few shards, each with its own lock; a thread
// always uses the same shard, so threads rarely wait on each other and one
// thread's records stay in its order in the file. A full shard is appended to
// the file under the file lock, whole records only, so a process that dies
// leaves a file that is readable up to the last appended shard.
#include <fcntl.h>
#include <pthread.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <climits>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <mutex>
#include <string>
#include <vector>

#include "trace/tracesink.h"
#include "trace_format.h"

#define SINK_API __attribute__((visibility("default")))

namespace {

constexpr unsigned kShards = 16;
constexpr unsigned kShardRecords = 1024;

enum phase_t : int { kIdle, kTracing, kFinished };

struct shard {
  std::mutex lock;
  unsigned used = 0;
  unsigned char bytes[kShardRecords * trace_format::kRecordBytes] = {};
};

// Constant-initialised (no constructor runs at load) and trivially
// destructible: usable from any static constructor or destructor.
struct sink_state {
  std::atomic<uint64_t> next_seq{0};
  std::atomic<unsigned> next_shard{0};
  std::atomic<bool> warned_unstarted{false};
  std::atomic<bool> atfork_registered{false};
  std::mutex start_lock; // serialises sve_init and sve_exit
  std::atomic<int> phase{kIdle};

  std::mutex file_lock; // guards everything below
  int fd = -1;
  bool file_failed = false; // reported once; later records are counted as lost
  uint64_t file_bytes = 0;
  uint64_t records_written = 0;
  uint64_t records_lost = 0;
  uint64_t start_ns = 0;
  char dir[PATH_MAX] = {};
  char app_name[trace_format::kMaxNameBytes + 1] = {};
  std::atomic<uint32_t> vector_bytes{48};
};
sink_state sink;
shard shards[kShards]; // all zero: costs no file space

void complain(const char* format, ...) {
  std::fputs("libtracesink: ", stderr);
  va_list args;
  va_start(args, format);
  std::vfprintf(stderr, format, args);
  va_end(args);
  std::fputc('\n', stderr);
}

uint64_t now_ns() {
  timespec t;
  clock_gettime(CLOCK_REALTIME, &t);
  return static_cast<uint64_t>(t.tv_sec) * 1000000000u + static_cast<uint64_t>(t.tv_nsec);
}

shard& my_shard() {
  static thread_local unsigned index_plus_one;
  if (!index_plus_one) index_plus_one = 1 + sink.next_shard.fetch_add(1) % kShards;
  return shards[index_plus_one - 1];
}

// A name usable as part of a file name.
std::string file_name_part(const char* name) {
  std::string out;
  for (const char* c = name; *c; ++c) {
    const bool plain = (*c >= 'a' && *c <= 'z') || (*c >= 'A' && *c <= 'Z') ||
                       (*c >= '0' && *c <= '9') || *c == '-' || *c == '_' || *c == '+';
    out += plain ? *c : '_';
  }
  return out.empty() ? "app" : out;
}

bool write_all(int fd, const unsigned char* data, size_t bytes) {
  while (bytes > 0) {
    const ssize_t n = write(fd, data, bytes);
    if (n < 0 && errno == EINTR) continue;
    if (n <= 0) return false;
    data += n;
    bytes -= static_cast<size_t>(n);
  }
  return true;
}

// Creates the file with its header on the first records. Never overwrites an
// earlier trace: a name in use gets a number.
bool open_file_locked() {
  if (sink.fd >= 0) return true;
  if (sink.file_failed) return false;
  const std::string stem = std::string(sink.dir) + "/zorvo." + file_name_part(sink.app_name) + "." +
                           std::to_string(getpid());
  std::string path = stem + ".trace";
  int fd = -1;
  for (int n = 1; fd < 0 && n < 1000; ++n) {
    fd = open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0644);
    if (fd < 0 && errno != EEXIST) break;
    if (fd < 0) path = stem + "." + std::to_string(n) + ".trace";
  }
  if (fd < 0) {
    complain("cannot create trace file %s: %s", path.c_str(), std::strerror(errno));
    sink.file_failed = true;
    return false;
  }
  trace_format::header h{};
  h.version = trace_format::kVersion;
  h.app_name = sink.app_name;
  h.header_bytes = trace_format::header_bytes_for(h.app_name.size());
  h.record_bytes = trace_format::kRecordBytes;
  h.vector_bytes = sink.vector_bytes.load();
  h.pid = static_cast<uint32_t>(getpid());
  h.state = trace_format::kStateOpen;
  h.start_ns = sink.start_ns;
  std::vector<unsigned char> bytes(h.header_bytes);
  trace_format::encode_header(bytes.data(), h);
  if (!write_all(fd, bytes.data(), bytes.size())) {
    complain("cannot write trace file %s: %s", path.c_str(), std::strerror(errno));
    close(fd);
    unlink(path.c_str());
    sink.file_failed = true;
    return false;
  }
  sink.fd = fd;
  sink.file_bytes = h.header_bytes;
  return true;
}

// Appends a shard's records. A failed write is cut back to the last whole
// record already in the file, and its records are counted as lost.
void flush_shard_locked(shard& sh) {
  if (sh.used == 0) return;
  std::lock_guard<std::mutex> file(sink.file_lock);
  if (open_file_locked()) {
    if (write_all(sink.fd, sh.bytes, sh.used * size_t{trace_format::kRecordBytes})) {
      sink.records_written += sh.used;
      sink.file_bytes += sh.used * uint64_t{trace_format::kRecordBytes};
      sh.used = 0;
      return;
    }
    if (!sink.file_failed) complain("cannot write trace file: %s", std::strerror(errno));
    sink.file_failed = true;
    if (ftruncate(sink.fd, static_cast<off_t>(sink.file_bytes)) != 0) {
      // The reader still stops at the last whole record.
    }
  }
  sink.records_lost += sh.used;
  sh.used = 0;
}

// Lock order everywhere: shards in index order, then the file lock.
void lock_all() {
  for (shard& sh : shards) sh.lock.lock();
  sink.file_lock.lock();
}
void unlock_all() {
  sink.file_lock.unlock();
  for (shard& sh : shards) sh.lock.unlock();
}

// A child process writes its own file: it drops the records buffered for the
// parent (the parent writes them) and forgets the parent's file.
void forget_parent_trace() {
  for (shard& sh : shards) sh.used = 0;
  if (sink.fd >= 0) close(sink.fd);
  sink.fd = -1;
  sink.file_failed = false;
  sink.file_bytes = sink.records_written = sink.records_lost = 0;
  sink.start_ns = now_ns();
  unlock_all();
}

bool finish() {
  std::lock_guard<std::mutex> start(sink.start_lock);
  if (sink.phase.load() != kTracing) return false;
  // Records that take a shard lock after this store are refused; those that
  // got in before are flushed below.
  sink.phase.store(kFinished);
  for (shard& sh : shards) {
    std::lock_guard<std::mutex> hold(sh.lock);
    flush_shard_locked(sh);
  }
  std::lock_guard<std::mutex> file(sink.file_lock);
  if (sink.fd < 0) return !sink.file_failed; // no record: no file
  // The counts go in first and the state last: a file marked complete always
  // has its counts.
  unsigned char counts[trace_format::at::name_bytes - trace_format::at::end_ns];
  namespace at = trace_format::at;
  trace_format::put64(counts, now_ns());
  trace_format::put64(counts + at::record_count - at::end_ns, sink.records_written);
  trace_format::put64(counts + at::lost_count - at::end_ns, sink.records_lost);
  unsigned char state[4];
  trace_format::put32(state, trace_format::kStateComplete);
  const bool ok =
      pwrite(sink.fd, counts, sizeof counts, trace_format::at::end_ns) == sizeof counts &&
      pwrite(sink.fd, state, sizeof state, trace_format::at::state) == sizeof state &&
      close(sink.fd) == 0;
  if (!ok) complain("cannot complete trace file: %s", std::strerror(errno));
  sink.fd = -1;
  return ok && !sink.file_failed;
}

// A process that ends without sve_exit, by returning from main or calling
// exit, still gets a complete file. One that is killed keeps what was flushed.
__attribute__((destructor)) void finish_at_process_exit() { finish(); }

} // namespace

extern "C" SINK_API bool sve_init(int mode, const char* app_name) {
  if (mode != 0) {
    complain("unknown mode %d", mode);
    return false;
  }
  std::lock_guard<std::mutex> start(sink.start_lock);
  if (sink.phase.load() == kTracing) {
    complain("sve_init called while already tracing");
    return false;
  }
  const char* dir = std::getenv("ZORVO_TRACE_DIR");
  if (!dir || !*dir) dir = ".";
  struct stat st;
  if (stat(dir, &st) != 0 || !S_ISDIR(st.st_mode) || access(dir, W_OK | X_OK) != 0) {
    complain("trace directory %s is not a writable directory", dir);
    return false;
  }
  if (std::strlen(dir) >= sizeof sink.dir) {
    complain("trace directory name too long");
    return false;
  }
  if (!sink.atfork_registered.exchange(true))
    pthread_atfork(lock_all, unlock_all, forget_parent_trace);
  std::lock_guard<std::mutex> file(sink.file_lock);
  std::strcpy(sink.dir, dir);
  std::snprintf(sink.app_name, sizeof sink.app_name, "%s", app_name ? app_name : "");
  sink.fd = -1;
  sink.file_failed = false;
  sink.file_bytes = sink.records_written = sink.records_lost = 0;
  sink.start_ns = now_ns();
  sink.phase.store(kTracing);
  return true;
}

extern "C" SINK_API bool sve_exit(void) { return finish(); }

extern "C" SINK_API void sve_vector_length(uint32_t bytes) { sink.vector_bytes.store(bytes); }

extern "C" SINK_API uint64_t incr_count(void) {
  return sink.next_seq.fetch_add(1, std::memory_order_relaxed);
}

SINK_API void trace_mem(sve_mem_ref_t const& r) {
  shard& sh = my_shard();
  std::lock_guard<std::mutex> hold(sh.lock);
  if (sink.phase.load(std::memory_order_relaxed) != kTracing) {
    // Before sve_init there is nowhere to write; after sve_exit the file is
    // complete (threads may still run while the process exits).
    if (!sink.warned_unstarted.exchange(true))
      complain("a record arrived before sve_init or after sve_exit; it is not kept");
    return;
  }
  const trace_format::record out{
      r.seq, static_cast<uint32_t>(r.tid), r.flags, r.type, r.size, r.addr, r.pc};
  trace_format::encode_record(sh.bytes + sh.used * trace_format::kRecordBytes, out);
  if (++sh.used == kShardRecords) flush_shard_locked(sh);
}

#include "trace_reader.h"

#include <sys/stat.h>

#include <cerrno>
#include <cstring>
#include <ctime>

namespace {

bool fail(trace_reader* reader, std::string* error, std::string why) {
  close_trace(reader);
  *error = std::move(why);
  return false;
}

} // namespace

bool open_trace(const char* path, trace_reader* reader, std::string* error) {
  namespace tf = trace_format;
  *reader = trace_reader{};
  reader->file = std::fopen(path, "rb");
  if (!reader->file) return fail(reader, error, std::strerror(errno));
  struct stat st;
  if (fstat(fileno(reader->file), &st) != 0) return fail(reader, error, std::strerror(errno));
  if (S_ISDIR(st.st_mode)) return fail(reader, error, "is a directory, not a trace file");
  const uint64_t size = static_cast<uint64_t>(st.st_size);
  if (size == 0) return fail(reader, error, "empty file, not a trace");

  unsigned char fixed[tf::kFixedHeaderBytes] = {};
  const size_t got = std::fread(fixed, 1, sizeof fixed, reader->file);
  if (got < sizeof tf::kMagic || std::memcmp(fixed, tf::kMagic, sizeof tf::kMagic) != 0)
    return fail(reader, error, "not a zorvo trace file");
  tf::header& h = reader->header;
  h.version = tf::get32(fixed + tf::at::version);
  if (got >= tf::at::version + 4 && h.version != tf::kVersion)
    return fail(reader, error,
                "trace format version " + std::to_string(h.version) +
                    " is not supported (this reader reads version " + std::to_string(tf::kVersion) +
                    ")");
  if (got < sizeof fixed) return fail(reader, error, "the header is cut off: damaged trace file");
  h.header_bytes = tf::get32(fixed + tf::at::header_bytes);
  h.record_bytes = tf::get32(fixed + tf::at::record_bytes);
  h.vector_bytes = tf::get32(fixed + tf::at::vector_bytes);
  h.pid = tf::get32(fixed + tf::at::pid);
  h.state = tf::get32(fixed + tf::at::state);
  h.start_ns = tf::get64(fixed + tf::at::start_ns);
  h.end_ns = tf::get64(fixed + tf::at::end_ns);
  h.record_count = tf::get64(fixed + tf::at::record_count);
  h.lost_count = tf::get64(fixed + tf::at::lost_count);
  const uint32_t name_bytes = tf::get32(fixed + tf::at::name_bytes);
  if (name_bytes > tf::kMaxNameBytes || h.header_bytes != tf::header_bytes_for(name_bytes) ||
      h.record_bytes != tf::kRecordBytes ||
      (h.state != tf::kStateOpen && h.state != tf::kStateComplete))
    return fail(reader, error, "damaged trace header");
  // The architecture's vector lengths: 128 to 2048 bits in steps of 128.
  if (h.vector_bytes % 16 != 0 || h.vector_bytes < 16 || h.vector_bytes > 256)
    return fail(reader, error,
                "damaged trace header: a vector length of " + std::to_string(h.vector_bytes) +
                    " bytes is not a multiple of 16 from 16 to 256");
  if (size < h.header_bytes)
    return fail(reader, error, "the header is cut off: damaged trace file");
  h.app_name.resize(name_bytes);
  if (std::fread(&h.app_name[0], 1, name_bytes, reader->file) != name_bytes ||
      std::fseek(reader->file, h.header_bytes, SEEK_SET) != 0)
    return fail(reader, error, std::strerror(errno));

  const uint64_t body = size - h.header_bytes;
  reader->whole_records = body / tf::kRecordBytes;
  reader->partial_bytes = body % tf::kRecordBytes;
  if (h.state == tf::kStateComplete) {
    const bool exact = reader->whole_records == h.record_count && reader->partial_bytes == 0;
    if (!exact && reader->whole_records >= h.record_count)
      return fail(reader, error,
                  "holds more data than its header's " + std::to_string(h.record_count) +
                      " records: damaged trace file");
    reader->complete = exact;
  }
  return true;
}

bool next_record(trace_reader* reader, trace_format::record* out, std::string* error) {
  if (reader->records_read == reader->whole_records) return false;
  unsigned char bytes[trace_format::kRecordBytes];
  if (std::fread(bytes, 1, sizeof bytes, reader->file) != sizeof bytes) {
    *error = std::ferror(reader->file) ? std::strerror(errno) : "file shrank while being read";
    return false;
  }
  *out = trace_format::decode_record(bytes);
  ++reader->records_read;
  return true;
}

void close_trace(trace_reader* reader) {
  if (reader->file) std::fclose(reader->file);
  reader->file = nullptr;
}

std::string truncation_note(const trace_reader& reader) {
  std::string note = "truncated: ";
  if (reader.header.state == trace_format::kStateComplete)
    note += "the header promises " + std::to_string(reader.header.record_count) +
            " records, the file holds " + std::to_string(reader.whole_records);
  else
    note += "never completed (the process ended without finishing its trace); " +
            std::to_string(reader.whole_records) + " whole records";
  if (reader.partial_bytes)
    note += ", then " + std::to_string(reader.partial_bytes) + " bytes of a cut-off record";
  return note;
}

std::string utc_time(uint64_t ns) {
  const time_t seconds = static_cast<time_t>(ns / 1000000000u);
  tm t;
  gmtime_r(&seconds, &t);
  char text[64];
  std::strftime(text, sizeof text, "%Y-%m-%d %H:%M:%S UTC", &t);
  return text;
}

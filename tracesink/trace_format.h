// The trace file format, shared by the sink that writes it and the reader.
// docs/trace-format.md describes it for people. Every number is
// little-endian and is read and written byte by byte, so this file also
// compiles for a host of another architecture.
#pragma once

#include <cstdint>
#include <cstring>
#include <string>

namespace trace_format {

constexpr char kMagic[8] = {'Z', 'O', 'R', 'V', 'O', 'T', 'R', 'C'};
constexpr uint32_t kVersion = 1;
constexpr uint32_t kRecordBytes = 48;
constexpr uint32_t kFixedHeaderBytes = 72; // followed by the application name
constexpr uint32_t kMaxNameBytes = 255;

constexpr uint32_t kStateOpen = 0;     // being written, or the writer died
constexpr uint32_t kStateComplete = 1; // completed by sve_exit

// Header fields by byte offset.
namespace at {
constexpr unsigned magic = 0, version = 8, header_bytes = 12, record_bytes = 16, vector_bytes = 20,
                   pid = 24, state = 28, start_ns = 32, end_ns = 40, record_count = 48,
                   lost_count = 56, name_bytes = 64;
} // namespace at

struct header {
  uint32_t version;
  uint32_t header_bytes; // offset of the first record
  uint32_t record_bytes;
  uint32_t vector_bytes;
  uint32_t pid;
  uint32_t state;
  uint64_t start_ns;     // wall clock, nanoseconds since 1970
  uint64_t end_ns;       // 0 until complete
  uint64_t record_count; // 0 until complete
  uint64_t lost_count;   // records received but not written; 0 until complete
  std::string app_name;
};

// One record as stored: the in-memory layout, with the gap written as 0.
struct record {
  uint64_t seq;
  uint32_t tid;
  uint32_t flags;
  uint32_t type;
  uint64_t size;
  uint64_t addr;
  uint64_t pc;
};

inline void put32(unsigned char* p, uint32_t v) {
  for (int i = 0; i < 4; ++i) p[i] = static_cast<unsigned char>(v >> (8 * i));
}
inline void put64(unsigned char* p, uint64_t v) {
  for (int i = 0; i < 8; ++i) p[i] = static_cast<unsigned char>(v >> (8 * i));
}
inline uint32_t get32(const unsigned char* p) {
  uint32_t v = 0;
  for (int i = 3; i >= 0; --i) v = v << 8 | p[i];
  return v;
}
inline uint64_t get64(const unsigned char* p) {
  uint64_t v = 0;
  for (int i = 7; i >= 0; --i) v = v << 8 | p[i];
  return v;
}

// Records start 8-aligned after the name.
inline uint32_t header_bytes_for(size_t name_bytes) {
  return static_cast<uint32_t>((kFixedHeaderBytes + name_bytes + 7) / 8 * 8);
}

inline void encode_record(unsigned char* out, const record& r) {
  put64(out + 0, r.seq);
  put32(out + 8, r.tid);
  put32(out + 12, r.flags);
  put32(out + 16, r.type);
  put32(out + 20, 0);
  put64(out + 24, r.size);
  put64(out + 32, r.addr);
  put64(out + 40, r.pc);
}

inline record decode_record(const unsigned char* in) {
  return record{get64(in + 0),  get32(in + 8),  get32(in + 12), get32(in + 16),
                get64(in + 24), get64(in + 32), get64(in + 40)};
}

// Writes the header of `h` into `out`, which holds h.header_bytes bytes.
inline void encode_header(unsigned char* out, const header& h) {
  std::memset(out, 0, h.header_bytes);
  std::memcpy(out + at::magic, kMagic, sizeof kMagic);
  put32(out + at::version, h.version);
  put32(out + at::header_bytes, h.header_bytes);
  put32(out + at::record_bytes, h.record_bytes);
  put32(out + at::vector_bytes, h.vector_bytes);
  put32(out + at::pid, h.pid);
  put32(out + at::state, h.state);
  put64(out + at::start_ns, h.start_ns);
  put64(out + at::end_ns, h.end_ns);
  put64(out + at::record_count, h.record_count);
  put64(out + at::lost_count, h.lost_count);
  put32(out + at::name_bytes, static_cast<uint32_t>(h.app_name.size()));
  std::memcpy(out + kFixedHeaderBytes, h.app_name.data(), h.app_name.size());
}

} // namespace trace_format

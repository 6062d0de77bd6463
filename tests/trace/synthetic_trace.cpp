// Writes a complete trace file of N records with the shapes real kernels
// give: two threads streaming through three arrays (two loads and a store of
// 48 bytes each, stride 48), a gather of single elements at scattered
// indices, a spill to the stack, and region markers around each thread's
// work. For the report's browser test and for measuring the report on large
// traces. Built for the build machine.
// Usage: synthetic_trace RECORDS FILE
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "trace_format.h"

namespace tf = trace_format;

int main(int argc, char** argv) {
  if (argc != 3) {
    std::fprintf(stderr, "usage: synthetic_trace RECORDS FILE\n");
    return 2;
  }
  const uint64_t total = std::strtoull(argv[1], nullptr, 10);
  FILE* out = std::fopen(argv[2], "wb");
  if (!out || total < 4) return 1;

  tf::header h{};
  h.version = tf::kVersion;
  h.app_name = "synthetic";
  h.header_bytes = tf::header_bytes_for(h.app_name.size());
  h.record_bytes = tf::kRecordBytes;
  h.vector_bytes = 48;
  h.pid = 1234;
  h.state = tf::kStateComplete;
  h.start_ns = 1790000000000000000u;
  h.end_ns = h.start_ns + 2000000000u;
  h.record_count = total;
  std::vector<unsigned char> head(h.header_bytes);
  tf::encode_header(head.data(), h);
  std::fwrite(head.data(), 1, head.size(), out);

  const uint64_t a = 0x5500100000, b = 0x5500900000, c = 0x7f00200000, table = 0x5501200000,
                 stack = 0x7ffff000;
  const uint32_t threads[2] = {0x1a2b3c00, 0x1a2b4d00};
  std::vector<unsigned char> buffer;
  uint64_t seq = 0, step[2] = {0, 0}, random = 88172645463325252ull;
  const auto put = [&](const tf::record& r) {
    buffer.resize(buffer.size() + tf::kRecordBytes);
    tf::encode_record(&buffer[buffer.size() - tf::kRecordBytes], r);
    if (buffer.size() >= (1 << 20)) {
      std::fwrite(buffer.data(), 1, buffer.size(), out);
      buffer.clear();
    }
  };
  put({seq++, 0xffffffffu, 0, 0, 0, 0, 0});
  while (seq < total - 1) {
    const int t = (seq / 4096) % 2; // threads interleave in blocks, as the sink writes them
    const uint32_t tid = threads[t];
    const uint64_t i = step[t]++ % 200000, offset = (i + t * 200000) * 48;
    const uint64_t kind = i % 8;
    if (kind < 5) {
      put({seq++, tid, 0, 1, 48, a + offset, 0x400a10});
      if (seq < total - 1) put({seq++, tid, 0, 1, 48, b + offset, 0x400a14});
      if (seq < total - 1) put({seq++, tid, 0, 0, 48, c + offset, 0x400a20});
    } else if (kind < 7) {
      for (int e = 0; e < 12 && seq < total - 1; ++e) {
        random ^= random << 13, random ^= random >> 7, random ^= random << 17;
        const uint32_t flags = 2 | (e == 0 ? 1 : 0) | (e == 11 ? 4 : 0);
        put({seq++, tid, flags, 1, 4, table + (random % 65536) * 4, 0x400b04});
      }
    } else {
      put({seq++, tid, 0, 0, 48, stack - 48 * t, 0x400c00});
    }
  }
  put({seq++, 0xfffffffeu, 0, 0, 0, 0, 0});
  std::fwrite(buffer.data(), 1, buffer.size(), out);
  return std::fclose(out) == 0 ? 0 : 1;
}

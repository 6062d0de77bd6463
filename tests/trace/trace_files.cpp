#include "trace_files.h"

#include <dirent.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>

#include "trace_tool.h"

std::string make_temp_dir() {
  const char* tmp = std::getenv("TMPDIR");
  std::string pattern = std::string(tmp && *tmp ? tmp : "/tmp") + "/zorvo-trace-test.XXXXXX";
  if (!mkdtemp(&pattern[0])) ADD_FAILURE() << "mkdtemp " << pattern;
  return pattern;
}

std::vector<std::string> files_in(const std::string& dir) {
  std::vector<std::string> out;
  if (DIR* d = opendir(dir.c_str())) {
    while (dirent* e = readdir(d))
      if (e->d_name[0] != '.') out.push_back(e->d_name);
    closedir(d);
  }
  std::sort(out.begin(), out.end());
  return out;
}

void remove_dir(const std::string& dir) {
  for (const std::string& name : files_in(dir)) unlink((dir + "/" + name).c_str());
  rmdir(dir.c_str());
}

read_trace read_all(const std::string& path) {
  read_trace t;
  std::string error;
  if (!open_trace(path.c_str(), &t.reader, &error)) {
    ADD_FAILURE() << path << ": " << error;
    return t;
  }
  t.records.reserve(t.reader.whole_records);
  trace_format::record r;
  while (next_record(&t.reader, &r, &error)) t.records.push_back(r);
  EXPECT_EQ(t.reader.records_read, t.reader.whole_records) << error;
  close_trace(&t.reader);
  return t;
}

std::string trace_file_bytes(const std::vector<trace_format::record>& records, bool complete,
                             const std::string& name, uint32_t vector_bytes) {
  namespace tf = trace_format;
  tf::header h{};
  h.version = tf::kVersion;
  h.app_name = name;
  h.header_bytes = tf::header_bytes_for(name.size());
  h.record_bytes = tf::kRecordBytes;
  h.vector_bytes = vector_bytes;
  h.pid = 4321;
  h.state = complete ? tf::kStateComplete : tf::kStateOpen;
  h.start_ns = 1700000000000000000u;
  h.end_ns = complete ? h.start_ns + 1500000000u : 0;
  h.record_count = complete ? records.size() : 0;
  std::string out(h.header_bytes + records.size() * tf::kRecordBytes, '\0');
  auto* p = reinterpret_cast<unsigned char*>(&out[0]);
  tf::encode_header(p, h);
  for (size_t i = 0; i < records.size(); ++i)
    tf::encode_record(p + h.header_bytes + i * tf::kRecordBytes, records[i]);
  return out;
}

namespace {

std::string slurp(FILE* f) {
  std::string s;
  std::rewind(f);
  char buf[4096];
  for (size_t n; (n = std::fread(buf, 1, sizeof buf, f)) > 0;) s.append(buf, n);
  std::fclose(f);
  return s;
}

} // namespace

tool_result run_zorvo_trace(std::vector<std::string> args) {
  args.insert(args.begin(), "zorvo-trace");
  std::vector<char*> argv;
  for (std::string& a : args) argv.push_back(&a[0]);
  FILE* out = std::tmpfile();
  FILE* err = std::tmpfile();
  const int status = zorvo_trace_main(static_cast<int>(argv.size()), argv.data(), out, err);
  return {status, slurp(out), slurp(err)};
}

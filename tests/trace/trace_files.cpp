#include "trace_files.h"

#include <dirent.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>

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

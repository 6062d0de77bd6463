// Helpers for tests that write and read trace files.
#pragma once

#include <string>
#include <vector>

#include "trace_reader.h"

// A fresh empty directory under the system's temporary directory.
std::string make_temp_dir();

// Removes `dir` and the files in it.
void remove_dir(const std::string& dir);

// The names of the files in `dir`, sorted.
std::vector<std::string> files_in(const std::string& dir);

// Reads a whole trace; fails the calling test when the file does not open.
struct read_trace {
  trace_reader reader;
  std::vector<trace_format::record> records;
};
read_trace read_all(const std::string& path);

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

// The bytes of a well-formed trace file holding `records`.
std::string trace_file_bytes(const std::vector<trace_format::record>& records, bool complete,
                             const std::string& name = "app", uint32_t vector_bytes = 48);

// zorvo-trace run in-process with `args` after the program name.
struct tool_result {
  int status;
  std::string out, err;
};
tool_result run_zorvo_trace(std::vector<std::string> args);

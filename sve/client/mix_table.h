// Formatting the instruction mix: the table printed at exit, and the CSV and
// JSON that --mix-out writes. Plain data in, text out.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

struct mix_form {
  std::string mnemonic, form; // "ld1w", "VecU32CLoad4SIZ"
  uint64_t count;
};

struct mix_address {
  uint64_t pc;
  std::string symbol; // "main+0x54", or "" when no symbol covers it
  std::string mnemonic, form;
  uint64_t count;
};

struct mix_summary {
  uint64_t total = 0;
  unsigned threads = 0;
  uint64_t uncounted_sites = 0; // addresses past a thread's table
  uint64_t counters_per_thread = 0;
  std::vector<mix_form> forms;  // most first
  std::vector<mix_address> top; // the addresses that emulated most, most first
};

std::string mix_text(const mix_summary& mix);
std::string mix_csv(const mix_summary& mix);
std::string mix_json(const mix_summary& mix);

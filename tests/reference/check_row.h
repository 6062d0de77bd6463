// Runs the cases of one decode row on the reference and on the emulator.
#pragma once

#include <cstdint>
#include <cstdio>

#include "row_profile.h"

enum class row_status { pass, fail, not_implemented, differs_by_design };

const char* status_name(row_status s);

struct row_outcome {
  unsigned cases = 0, passed = 0, failed = 0, skipped = 0;
  unsigned relaxed = 0;          // cases that passed only through a design difference
  unsigned inline_cases = 0;     // cases that the inline tier's code ran as well
  bool unimplemented = false;    // the decoder said so
  bool nothing_compared = false; // every case was skipped: the row is unverified
  row_status status() const;
};

struct check_options {
  unsigned cases = 200;
  uint64_t seed = 1;
  unsigned reports = 3; // failure reports per row
  FILE* out = stdout;   // where failure reports go
};

// Must run once before the first row: it takes over stderr's buffering so
// that the line naming each case can be dropped once the case has run.
void check_init();

row_outcome check_row(const row_profile& p, const check_options& o);

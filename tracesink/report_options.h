// The command line of `zorvo-trace report`.
#pragma once

#include <string>

#include "trace_analysis.h"

struct report_arguments {
  std::string trace, output;
  analysis_options analysis;
};

// Parses the words after "report"; on failure *error says why.
bool parse_report_arguments(int count, char* const* words, report_arguments* out,
                            std::string* error);

// The trace report: one self-contained HTML page with inline SVG charts.
#pragma once

#include <cstdio>
#include <string>

#include "svg_chart.h"
#include "trace_analysis.h"
#include "trace_reader.h"

// Writes the page for the analysed trace; `source` names the trace file.
void write_report_html(FILE* out, const std::string& source, const trace_reader& reader,
                       const trace_analysis& analysis, const analysis_options& options);

// The address ranges the plot of address over time shows, one band each:
// the sampled addresses split at their widest gaps (of more than 16 MiB),
// at most `max_bands` of them, in ascending order.
std::vector<y_band> address_bands(const std::vector<address_sample>& samples, size_t max_bands);

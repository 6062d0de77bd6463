// Small charts drawn as inline SVG, so that a report is one file that needs
// nothing from anywhere else.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "text_format.h"

// Text made safe inside HTML and SVG.
std::string html_escape(const std::string& text);

// 1536 -> "1.5 KiB".
std::string byte_size(double bytes);

struct bar {
  std::string label;
  std::vector<double> parts; // stacked, one per series
  std::string note;          // printed after the bar
};

struct series_style {
  std::string name, color;
};

// Horizontal bars, one row each, the parts stacked left to right. With
// `fixed_max` > 0 the scale ends there (100 for percentages).
std::string horizontal_bars(const std::string& id, const std::vector<bar>& bars,
                            const std::vector<series_style>& series, double fixed_max = 0);

// Vertical bars with labels under them, for a histogram.
std::string column_chart(const std::string& id, const std::vector<bar>& columns,
                         const std::string& color, int width, int height);

struct point {
  double x, y;
  int series;
};

// Points over a linear x axis; the y axis is split into bands, each with a
// scale of its own, so that distant address ranges all stay readable.
struct y_band {
  uint64_t lo, hi;
};
std::string banded_scatter(const std::string& id, const std::vector<point>& points, double x_max,
                           const std::vector<y_band>& bands,
                           const std::vector<series_style>& series,
                           const std::vector<double>& x_marks, const std::string& x_title);

// Lines over a shared x axis, one per series, y from 0.
struct line_series {
  series_style style;
  std::vector<std::pair<double, double>> points;
};
std::string line_chart(const std::string& id, const std::vector<line_series>& lines, double x_max,
                       const std::string& x_title, std::string (*y_label)(double));

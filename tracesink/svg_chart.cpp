#include "svg_chart.h"

#include "text_format.h"

#include <algorithm>
#include <cinttypes>
#include <cmath>
#include <cstdarg>
#include <cstdio>

namespace {

// printf onto the end of a std::string.
void put(std::string& out, const char* format, ...) __attribute__((format(printf, 2, 3)));
void put(std::string& out, const char* format, ...) {
  va_list args;
  va_start(args, format);
  out += format_text_v(format, args);
  va_end(args);
}

const char* const kFont = "font-family=\"sans-serif\" font-size=\"12\"";

void open_svg(std::string& out, const std::string& id, int width, int height) {
  put(out,
      "<svg id=\"%s\" class=\"chart\" xmlns=\"http://www.w3.org/2000/svg\" width=\"%d\" "
      "height=\"%d\" viewBox=\"0 0 %d %d\" %s>\n",
      html_escape(id).c_str(), width, height, width, height, kFont);
}

void legend(std::string& out, const std::vector<series_style>& series, int x, int y) {
  for (const series_style& s : series) {
    put(out, "<rect x=\"%d\" y=\"%d\" width=\"12\" height=\"12\" fill=\"%s\"/>", x, y - 10,
        s.color.c_str());
    put(out, "<text x=\"%d\" y=\"%d\">%s</text>\n", x + 16, y, html_escape(s.name).c_str());
    x += 30 + 8 * static_cast<int>(s.name.size());
  }
}

// A tick value a person would choose, near `raw`: 1, 2 or 5 times a power of ten.
double nice_step(double raw) {
  if (raw <= 0) return 1;
  const double power = std::pow(10.0, std::floor(std::log10(raw)));
  for (double m : {1.0, 2.0, 5.0})
    if (raw <= m * power) return m * power;
  return 10 * power;
}

void x_axis(std::string& out, int left, int right, int y, double x_max, const std::string& title) {
  put(out, "<line x1=\"%d\" y1=\"%d\" x2=\"%d\" y2=\"%d\" stroke=\"#444\"/>\n", left, y, right, y);
  const double step = nice_step(x_max / 5);
  for (double v = 0; v <= x_max * 1.0001; v += step) {
    const double x = left + (right - left) * (x_max > 0 ? v / x_max : 0);
    put(out, "<line x1=\"%.1f\" y1=\"%d\" x2=\"%.1f\" y2=\"%d\" stroke=\"#444\"/>", x, y, x, y + 4);
    put(out, "<text x=\"%.1f\" y=\"%d\" text-anchor=\"middle\">%s</text>\n", x, y + 17,
        with_commas(static_cast<uint64_t>(v)).c_str());
  }
  put(out, "<text x=\"%d\" y=\"%d\" text-anchor=\"middle\">%s</text>\n", (left + right) / 2, y + 34,
      html_escape(title).c_str());
}

std::string hex(uint64_t v) {
  char text[24];
  std::snprintf(text, sizeof text, "0x%" PRIx64, v);
  return text;
}

} // namespace

std::string html_escape(const std::string& text) {
  std::string out;
  for (char c : text) {
    switch (c) {
    case '&':
      out += "&amp;";
      break;
    case '<':
      out += "&lt;";
      break;
    case '>':
      out += "&gt;";
      break;
    case '"':
      out += "&quot;";
      break;
    default:
      out += c;
    }
  }
  return out;
}

std::string byte_size(double bytes) {
  static const char* const units[] = {"B", "KiB", "MiB", "GiB", "TiB"};
  int unit = 0;
  while (bytes >= 1024 && unit < 4) {
    bytes /= 1024;
    ++unit;
  }
  char text[32];
  std::snprintf(text, sizeof text, unit == 0 ? "%.0f %s" : "%.1f %s", bytes, units[unit]);
  return text;
}

std::string horizontal_bars(const std::string& id, const std::vector<bar>& bars,
                            const std::vector<series_style>& series, double fixed_max) {
  const int label_w = 190, bar_w = 520, note_w = 190, row = 22, top = series.size() > 1 ? 28 : 6;
  const int width = label_w + bar_w + note_w,
            height = top + row * static_cast<int>(bars.size()) + 30;
  double max = fixed_max;
  if (max <= 0)
    for (const bar& b : bars) {
      double sum = 0;
      for (double p : b.parts) sum += p;
      max = std::max(max, sum);
    }
  std::string out;
  open_svg(out, id, width, height);
  if (series.size() > 1) legend(out, series, label_w, 16);
  int y = top;
  for (const bar& b : bars) {
    put(out, "<text x=\"%d\" y=\"%d\" text-anchor=\"end\" font-family=\"monospace\">%s</text>",
        label_w - 8, y + 15, html_escape(b.label).c_str());
    double x = label_w;
    for (size_t i = 0; i < b.parts.size() && i < series.size(); ++i) {
      const double w = max > 0 ? bar_w * b.parts[i] / max : 0;
      if (w > 0)
        put(out, "<rect x=\"%.1f\" y=\"%d\" width=\"%.1f\" height=\"%d\" fill=\"%s\"/>", x, y + 3,
            std::max(w, 0.5), row - 6, series[i].color.c_str());
      x += w;
    }
    put(out, "<text x=\"%.1f\" y=\"%d\">%s</text>\n", x + 6, y + 15, html_escape(b.note).c_str());
    y += row;
  }
  put(out, "<line x1=\"%d\" y1=\"%d\" x2=\"%d\" y2=\"%d\" stroke=\"#444\"/>\n", label_w, top,
      label_w, y);
  out += "</svg>\n";
  return out;
}

std::string column_chart(const std::string& id, const std::vector<bar>& columns,
                         const std::string& color, int width, int height) {
  const int left = 8, right = width - 8, top = 16, bottom = height - 52;
  double max = 0;
  for (const bar& c : columns) max = std::max(max, c.parts.empty() ? 0 : c.parts[0]);
  std::string out;
  open_svg(out, id, width, height);
  const double slot = columns.empty() ? 0 : double(right - left) / columns.size();
  for (size_t i = 0; i < columns.size(); ++i) {
    const double v = columns[i].parts.empty() ? 0 : columns[i].parts[0];
    const double h = max > 0 ? (bottom - top) * v / max : 0;
    const double x = left + slot * i + slot * 0.15;
    put(out, "<rect x=\"%.1f\" y=\"%.1f\" width=\"%.1f\" height=\"%.1f\" fill=\"%s\"/>", x,
        bottom - std::max(h, 0.5), slot * 0.7, std::max(h, 0.5), color.c_str());
    put(out, "<text x=\"%.1f\" y=\"%.1f\" text-anchor=\"middle\" font-size=\"10\">%s</text>",
        x + slot * 0.35, bottom - h - 3, html_escape(columns[i].note).c_str());
    put(out,
        "<text transform=\"translate(%.1f %d) rotate(-35)\" text-anchor=\"end\" "
        "font-size=\"11\" font-family=\"monospace\">%s</text>\n",
        x + slot * 0.35 + 3, bottom + 12, html_escape(columns[i].label).c_str());
  }
  put(out, "<line x1=\"%d\" y1=\"%d\" x2=\"%d\" y2=\"%d\" stroke=\"#444\"/>\n", left, bottom, right,
      bottom);
  out += "</svg>\n";
  return out;
}

std::string banded_scatter(const std::string& id, const std::vector<point>& points, double x_max,
                           const std::vector<y_band>& bands,
                           const std::vector<series_style>& series,
                           const std::vector<double>& x_marks, const std::string& x_title) {
  const int left = 150, right = 860, top = 30, band_h = bands.size() > 2 ? 110 : 160, gap = 14;
  const int plot_bottom = top + static_cast<int>(bands.size()) * (band_h + gap) - gap;
  const int width = 900, height = plot_bottom + 44;
  std::string out;
  open_svg(out, id, width, height);
  legend(out, series, left, 16);
  const auto x_of = [&](double x) { return left + (right - left) * (x_max > 0 ? x / x_max : 0); };
  for (size_t b = 0; b < bands.size(); ++b) {
    const int y0 = top + static_cast<int>(b) * (band_h + gap);
    put(out, "<rect x=\"%d\" y=\"%d\" width=\"%d\" height=\"%d\" fill=\"#f6f6f6\"/>", left, y0,
        right - left, band_h);
    put(out, "<text x=\"%d\" y=\"%d\" text-anchor=\"end\" font-family=\"monospace\">%s</text>",
        left - 6, y0 + 11, hex(bands[b].hi).c_str());
    put(out, "<text x=\"%d\" y=\"%d\" text-anchor=\"end\" font-family=\"monospace\">%s</text>",
        left - 6, y0 + band_h, hex(bands[b].lo).c_str());
    put(out, "<text x=\"%d\" y=\"%d\" text-anchor=\"end\" fill=\"#666\">%s</text>\n", left - 6,
        y0 + band_h / 2 + 4, byte_size(double(bands[b].hi - bands[b].lo) + 1).c_str());
  }
  for (double m : x_marks)
    put(out,
        "<line x1=\"%.1f\" y1=\"%d\" x2=\"%.1f\" y2=\"%d\" stroke=\"#888\" "
        "stroke-dasharray=\"3 3\"/>\n",
        x_of(m), top, x_of(m), plot_bottom);
  // One path per series: a short stroke per point keeps the page small. Few
  // points are drawn larger, so that each one can be seen.
  const double mark = points.size() < 2000 ? 4 : 2;
  for (size_t s = 0; s < series.size(); ++s) {
    std::string d;
    for (const point& p : points) {
      if (p.series != static_cast<int>(s)) continue;
      const uint64_t a = static_cast<uint64_t>(p.y);
      for (size_t b = 0; b < bands.size(); ++b) {
        if (a < bands[b].lo || a > bands[b].hi) continue;
        const int y0 = top + static_cast<int>(b) * (band_h + gap);
        const double span = double(bands[b].hi - bands[b].lo);
        const double y =
            y0 + band_h - 2 - (band_h - 4) * (span > 0 ? double(a - bands[b].lo) / span : 0.5);
        put(d, "M%.1f %.1fh%.1f", x_of(p.x) - mark / 2, y, mark * 0.75);
        break;
      }
    }
    if (!d.empty())
      put(out, "<path d=\"%s\" stroke=\"%s\" stroke-width=\"%.0f\" fill=\"none\"/>\n", d.c_str(),
          series[s].color.c_str(), mark);
  }
  x_axis(out, left, right, plot_bottom, x_max, x_title);
  out += "</svg>\n";
  return out;
}

std::string line_chart(const std::string& id, const std::vector<line_series>& lines, double x_max,
                       const std::string& x_title, std::string (*y_label)(double)) {
  const int left = 150, right = 860, top = 30, bottom = 230, width = 900, height = bottom + 44;
  double y_max = 0;
  for (const line_series& l : lines)
    for (const auto& p : l.points) y_max = std::max(y_max, p.second);
  std::string out;
  open_svg(out, id, width, height);
  std::vector<series_style> styles;
  for (const line_series& l : lines) styles.push_back(l.style);
  legend(out, styles, left, 16);
  const double y_step = nice_step(y_max / 4);
  const double y_top = y_max > 0 ? std::ceil(y_max / y_step) * y_step : 1;
  for (double v = 0; v <= y_top * 1.0001; v += y_step) {
    const double y = bottom - (bottom - top) * v / y_top;
    put(out, "<line x1=\"%d\" y1=\"%.1f\" x2=\"%d\" y2=\"%.1f\" stroke=\"#ddd\"/>", left, y, right,
        y);
    put(out, "<text x=\"%d\" y=\"%.1f\" text-anchor=\"end\">%s</text>\n", left - 6, y + 4,
        y_label(v).c_str());
  }
  for (const line_series& l : lines) {
    std::string d;
    for (const auto& p : l.points)
      put(d, "%s%.1f %.1f", d.empty() ? "M" : "L",
          left + (right - left) * (x_max > 0 ? p.first / x_max : 0),
          bottom - (bottom - top) * p.second / y_top);
    if (!d.empty())
      put(out, "<path d=\"%s\" stroke=\"%s\" stroke-width=\"2\" fill=\"none\"/>\n", d.c_str(),
          l.style.color.c_str());
  }
  x_axis(out, left, right, bottom, x_max, x_title);
  out += "</svg>\n";
  return out;
}

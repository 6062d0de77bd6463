// Text helpers shared by the trace report and the instruction mix.
#pragma once

#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <string>

// vsnprintf into a std::string of any length.
inline std::string format_text_v(const char* format, va_list args) {
  char text[512];
  va_list again;
  va_copy(again, args);
  const int n = std::vsnprintf(text, sizeof text, format, args);
  std::string out;
  if (n >= static_cast<int>(sizeof text)) {
    out.resize(static_cast<size_t>(n) + 1);
    std::vsnprintf(&out[0], out.size(), format, again);
    out.resize(static_cast<size_t>(n));
  } else if (n > 0) {
    out.assign(text, static_cast<size_t>(n));
  }
  va_end(again);
  return out;
}

inline std::string format_text(const char* format, ...) __attribute__((format(printf, 1, 2)));
inline std::string format_text(const char* format, ...) {
  va_list args;
  va_start(args, format);
  std::string out = format_text_v(format, args);
  va_end(args);
  return out;
}

// 1234567 -> "1,234,567".
inline std::string with_commas(uint64_t v) {
  const std::string digits = std::to_string(v);
  std::string out;
  for (size_t i = 0; i < digits.size(); ++i) {
    if (i && (digits.size() - i) % 3 == 0) out += ',';
    out += digits[i];
  }
  return out;
}

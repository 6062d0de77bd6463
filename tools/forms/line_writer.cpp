#include "decode/line_writer.h"

#include <cstdarg>
#include <cstdio>

line_writer::line_writer(char* buffer, size_t buffer_size)
    : buf(buffer), size(buffer_size), len(0) {
  if (size > 0) buf[0] = '\0';
}

void line_writer::printf(const char* format, ...) {
  if (len + 1 >= size) return;
  va_list args;
  va_start(args, format);
  const int wanted = std::vsnprintf(buf + len, size - len, format, args);
  va_end(args);
  if (wanted < 0) {
    buf[len] = '\0';
    return;
  }
  const size_t room = size - len - 1;
  len += static_cast<size_t>(wanted) < room ? static_cast<size_t>(wanted) : room;
}

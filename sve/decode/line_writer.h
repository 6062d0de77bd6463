// A bounded text line for operand descriptions: appending never writes past
// the buffer, and `len` counts the characters actually stored.
#pragma once

#include <cstddef>

struct line_writer {
  char* buf;
  size_t size;
  size_t len;

  line_writer(char* buffer, size_t buffer_size);
  void printf(const char* format, ...) __attribute__((format(printf, 2, 3)));
};

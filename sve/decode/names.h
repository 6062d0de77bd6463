// Compile-time tests of a row's names (decoder, shape, family) for the
// tables that classify rows by them.
#pragma once

namespace names {

constexpr bool same(const char* a, const char* b) {
  while (*a && *a == *b) ++a, ++b;
  return *a == *b;
}
constexpr bool starts_with(const char* s, const char* prefix) {
  return *prefix == 0 || (*s == *prefix && starts_with(s + 1, prefix + 1));
}
constexpr bool contains(const char* s, const char* part) {
  return starts_with(s, part) || (*s != 0 && contains(s + 1, part));
}
constexpr bool ends_with(const char* s, const char* suffix) {
  const char* end = s;
  while (*end) ++end;
  const char* tail = suffix;
  while (*tail) ++tail;
  return tail - suffix <= end - s && same(end - (tail - suffix), suffix);
}

} // namespace names

// How an exec'd AArch64 program starts under zorvo again: the launcher
// command this run was given (words separated by '\x1f'), then
// [--vl-inherit] --argv0 ARGV0 -- PATH ARGS... Shared by the interposer
// (dynamic programs) and the runtime's system call traps (static programs).
// Nothing here allocates: an exec may follow vfork.
#pragma once

#include <fcntl.h>
#include <unistd.h>

#include <cstddef>
#include <cstring>

namespace relaunch_command {

inline bool is_aarch64_program(const char* path) {
  const int fd = open(path, O_RDONLY | O_CLOEXEC);
  if (fd < 0) return false;
  unsigned char h[20];
  const bool whole = read(fd, h, sizeof h) == static_cast<ssize_t>(sizeof h);
  close(fd);
  return whole && h[0] == 0x7f && h[1] == 'E' && h[2] == 'L' && h[3] == 'F' && h[4] == 2 &&
         h[5] == 1 && h[18] == 183 && h[19] == 0;
}

inline size_t count(char* const* v) {
  size_t n = 0;
  while (v && v[n]) ++n;
  return n;
}

inline size_t words(const char* command) {
  size_t n = 1;
  for (const char* p = command; *p; ++p) n += *p == '\x1f';
  return n;
}

// Room, in pointers, that argv needs for the command.
inline size_t argv_room(const char* command, char* const argv[]) {
  return words(command) + count(argv) + 6;
}

// Into `out` (argv_room pointers); the words are cut from `text`, a copy of
// the command.
inline char** make_argv(char* text, bool vl_inherit, const char* path, char* const argv[],
                        char** out) {
  size_t n = 0;
  for (char* w = text;;) {
    out[n++] = w;
    w = std::strchr(w, '\x1f');
    if (w == nullptr) break;
    *w++ = 0;
  }
  static char inherit_option[] = "--vl-inherit", argv0_option[] = "--argv0", separator[] = "--";
  // As a kernel keeps the flag across exec.
  if (vl_inherit) out[n++] = inherit_option;
  out[n++] = argv0_option;
  out[n++] = argv && argv[0] ? argv[0] : const_cast<char*>(path);
  out[n++] = separator;
  out[n++] = const_cast<char*>(path);
  for (size_t i = 1; i < count(argv); ++i) out[n++] = argv[i];
  out[n] = nullptr;
  return out;
}

} // namespace relaunch_command

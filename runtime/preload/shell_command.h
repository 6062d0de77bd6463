// How system and popen start their shell under zorvo. The C library's own
// function still starts the shell (its signal handling, pipes and status
// stay as they are); the command it is given makes that shell replace
// itself, by exec, with the launcher running the shell on the original
// command. The process stays the same one, so waiting for it and popen's
// pipe are not changed.
#pragma once

#include <cstddef>
#include <cstdlib>
#include <cstring>

#include "relaunch_command.h"

namespace shell_command {

// Inside single quotes every character stands for itself except the quote,
// which is closed, escaped and reopened.
inline size_t quoted_length(const char* word) {
  size_t n = 2;
  for (const char* p = word; *p; ++p) n += *p == '\'' ? 4 : 1;
  return n;
}

inline char* append_quoted(char* out, const char* word) {
  *out++ = '\'';
  for (const char* p = word; *p; ++p) {
    if (*p == '\'') {
      std::memcpy(out, "'\\''", 4);
      out += 4;
    } else {
      *out++ = *p;
    }
  }
  *out++ = '\'';
  return out;
}

// "exec" and the launcher command for `SHELL -c COMMAND` (argv[0] "sh", as
// the C library starts it), each word quoted; to be released with free().
// nullptr when out of memory.
inline char* through_launcher(const char* launcher, bool vl_inherit, const char* shell,
                              const char* command) {
  static char sh[] = "sh", dash_c[] = "-c";
  char* const shell_argv[] = {sh, dash_c, const_cast<char*>(command), nullptr};
  char* text = strdup(launcher);
  char** words = static_cast<char**>(
      std::malloc(relaunch_command::argv_room(launcher, shell_argv) * sizeof(char*)));
  char* result = nullptr;
  if (text && words) {
    relaunch_command::make_argv(text, vl_inherit, shell, shell_argv, words);
    size_t length = sizeof "exec";
    for (char** w = words; *w; ++w) length += 1 + quoted_length(*w);
    result = static_cast<char*>(std::malloc(length));
    if (result) {
      char* out = result;
      std::memcpy(out, "exec", 4);
      out += 4;
      for (char** w = words; *w; ++w) {
        *out++ = ' ';
        out = append_quoted(out, *w);
      }
      *out = 0;
    }
  }
  std::free(words);
  std::free(text);
  return result;
}

// What system and popen hand to the C library: the command through the
// launcher when SHELL is an AArch64 program and there is a launcher;
// nullptr when COMMAND goes as it is (or, rarely, when out of memory).
inline char* for_shell(const char* launcher, bool vl_inherit, const char* shell,
                       const char* command) {
  if (launcher == nullptr || *launcher == 0 || command == nullptr ||
      !relaunch_command::is_aarch64_program(shell))
    return nullptr;
  return through_launcher(launcher, vl_inherit, shell, command);
}

} // namespace shell_command

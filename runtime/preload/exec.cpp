// Exec under the interposer: an AArch64 program that the application
// executes starts under zorvo again, with this run's options, through the
// launcher command the runtime was given; anything else (scripts, programs
// of the host) is executed as it is. Every public exec entry of the C
// library is here, because the C library's own calls between them are
// internal and cannot be interposed; so are system and popen, whose shell
// is one more program to start that way.
#include <alloca.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <spawn.h>
#include <unistd.h>

#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "app_hooks.h"
#include "preload.h"
#include "relaunch_command.h"
#include "shell_command.h"

extern "C" const app_hooks* zorvo_app_hooks;

namespace {

template <typename F> F next_definition(const char* name) {
  return reinterpret_cast<F>(dlsym(RTLD_NEXT, name));
}

using relaunch_command::count;
using relaunch_command::is_aarch64_program;

bool relaunch(const char* path) {
  return zorvo_app_hooks && *zorvo_app_hooks->relaunch && is_aarch64_program(path);
}

// Files under /proc/self/ name what they stand for in the new process, not
// in this one: the program's own file, or the file behind a descriptor.
const char* outside_proc_self(const char* path, char* buffer, size_t size) {
  if (std::strncmp(path, "/proc/self/", 11) != 0) return path;
  if (std::strcmp(path + 11, "exe") == 0 && zorvo_app_hooks->program_path)
    return zorvo_app_hooks->program_path;
  const ssize_t n = readlink(path, buffer, size - 1);
  if (n <= 0 || buffer[0] != '/') return path;
  buffer[n] = 0;
  return buffer;
}

// Stack memory only: exec may follow vfork.
#define RELAUNCH_ARGV(args, path, argv)                                                            \
  char* args##_text = static_cast<char*>(alloca(std::strlen(zorvo_app_hooks->relaunch) + 1));      \
  std::strcpy(args##_text, zorvo_app_hooks->relaunch);                                             \
  char** args = static_cast<char**>(                                                               \
      alloca(relaunch_command::argv_room(zorvo_app_hooks->relaunch, argv) * sizeof(char*)));       \
  relaunch_command::make_argv(args##_text, zorvo_preload::vector_length_inherited(), path, argv,   \
                              args)

using execve_fn = int (*)(const char*, char* const[], char* const[]);

// PATH search as execvp does it; false when nothing executable is found.
bool search_path(const char* file, char* found, size_t size) {
  const char* dirs = getenv("PATH");
  if (dirs == nullptr) dirs = "/bin:/usr/bin";
  for (const char* d = dirs;; ++d) {
    const char* end = std::strchr(d, ':');
    const size_t len = end ? static_cast<size_t>(end - d) : std::strlen(d);
    if (std::snprintf(found, size, "%.*s%s%s", static_cast<int>(len), d, len ? "/" : "", file) <
            static_cast<int>(size) &&
        access(found, X_OK) == 0)
      return true;
    if (end == nullptr) return false;
    d = end;
  }
}

char* shell_through_launcher(const char* command) {
  if (zorvo_app_hooks == nullptr) return nullptr;
  return shell_command::for_shell(zorvo_app_hooks->relaunch,
                                  zorvo_preload::vector_length_inherited(), "/bin/sh", command);
}

} // namespace

extern "C" {

int execve(const char* path, char* const argv[], char* const envp[]) noexcept {
  static const auto real = next_definition<execve_fn>("execve");
  if (zorvo_app_hooks) zorvo_app_hooks->before_exec();
  if (!relaunch(path)) return real(path, argv, envp);
  char target[4096];
  path = outside_proc_self(path, target, sizeof target);
  RELAUNCH_ARGV(args, path, argv);
  return real(args[0], args, envp);
}

int execv(const char* path, char* const argv[]) noexcept { return execve(path, argv, environ); }

int execvpe(const char* file, char* const argv[], char* const envp[]) noexcept {
  if (*file == 0) {
    errno = ENOENT;
    return -1;
  }
  char found[4096];
  const char* path = file;
  if (!std::strchr(file, '/')) {
    if (!search_path(file, found, sizeof found)) {
      errno = ENOENT;
      return -1;
    }
    path = found;
  }
  execve(path, argv, envp);
  if (errno != ENOEXEC) return -1;
  // As the C library does: a file that is no program is a shell script.
  char** script_argv = static_cast<char**>(alloca((count(argv) + 3) * sizeof(char*)));
  static char shell[] = "/bin/sh";
  script_argv[0] = shell;
  script_argv[1] = const_cast<char*>(path);
  for (size_t i = 1; i <= count(argv); ++i) script_argv[i + 1] = argv[i];
  return execve(shell, script_argv, envp);
}

int execvp(const char* file, char* const argv[]) noexcept { return execvpe(file, argv, environ); }

int fexecve(int fd, char* const argv[], char* const envp[]) noexcept {
  char path[64];
  std::snprintf(path, sizeof path, "/proc/self/fd/%d", fd);
  return execve(path, argv, envp);
}

} // extern "C"

// The list forms: their arguments gathered into an array on the stack.
#define GATHER_ARGS(first, ap, out)                                                                \
  do {                                                                                             \
    size_t n = 1;                                                                                  \
    va_list count_ap;                                                                              \
    va_copy(count_ap, ap);                                                                         \
    while (va_arg(count_ap, char*) != nullptr) ++n;                                                \
    va_end(count_ap);                                                                              \
    out = static_cast<char**>(alloca((n + 1) * sizeof(char*)));                                    \
    out[0] = const_cast<char*>(first);                                                             \
    for (size_t i = 1; i <= n; ++i) out[i] = va_arg(ap, char*);                                    \
  } while (0)

extern "C" {

int execl(const char* path, const char* arg, ...) noexcept {
  va_list ap;
  va_start(ap, arg);
  char** argv;
  GATHER_ARGS(arg, ap, argv);
  va_end(ap);
  return execve(path, argv, environ);
}

int execlp(const char* file, const char* arg, ...) noexcept {
  va_list ap;
  va_start(ap, arg);
  char** argv;
  GATHER_ARGS(arg, ap, argv);
  va_end(ap);
  return execvpe(file, argv, environ);
}

int execle(const char* path, const char* arg, ...) noexcept {
  va_list ap;
  va_start(ap, arg);
  char** argv;
  GATHER_ARGS(arg, ap, argv);
  char* const* envp = va_arg(ap, char* const*);
  va_end(ap);
  return execve(path, argv, envp);
}

int posix_spawn(pid_t* pid, const char* path, const posix_spawn_file_actions_t* actions,
                const posix_spawnattr_t* attr, char* const argv[], char* const envp[]) noexcept {
  using spawn_fn = int (*)(pid_t*, const char*, const posix_spawn_file_actions_t*,
                           const posix_spawnattr_t*, char* const[], char* const[]);
  static const auto real = next_definition<spawn_fn>("posix_spawn");
  if (!relaunch(path)) return real(pid, path, actions, attr, argv, envp);
  char target[4096];
  path = outside_proc_self(path, target, sizeof target);
  RELAUNCH_ARGV(args, path, argv);
  return real(pid, args[0], actions, attr, args, envp);
}

int posix_spawnp(pid_t* pid, const char* file, const posix_spawn_file_actions_t* actions,
                 const posix_spawnattr_t* attr, char* const argv[], char* const envp[]) noexcept {
  using spawn_fn = int (*)(pid_t*, const char*, const posix_spawn_file_actions_t*,
                           const posix_spawnattr_t*, char* const[], char* const[]);
  static const auto real = next_definition<spawn_fn>("posix_spawnp");
  char found[4096];
  const char* path = file;
  if (!std::strchr(file, '/') && search_path(file, found, sizeof found)) path = found;
  if (!relaunch(path)) return real(pid, file, actions, attr, argv, envp);
  return posix_spawn(pid, path, actions, attr, argv, envp);
}

} // extern "C"

extern "C" {

int system(const char* command) {
  using system_fn = int (*)(const char*);
  static const auto real = next_definition<system_fn>("system");
  char* through = shell_through_launcher(command);
  const int status = real(through ? through : command);
  const int saved_errno = errno;
  std::free(through);
  errno = saved_errno;
  return status;
}

FILE* popen(const char* command, const char* mode) {
  using popen_fn = FILE* (*)(const char*, const char*);
  static const auto real = next_definition<popen_fn>("popen");
  char* through = shell_through_launcher(command);
  FILE* stream = real(through ? through : command, mode);
  const int saved_errno = errno;
  std::free(through);
  errno = saved_errno;
  return stream;
}

} // extern "C"

// Start and end of the process under the runtime: the launcher's settings,
// the client's entry, the first thread, and the exit events.
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "runtime.h"
#include "signals.h"
#include "sites.h"
#include "thread.h"

std::atomic<bool> runtime_ready;
std::atomic<bool> runtime_shut_down;
std::atomic<long> exiting_thread;

namespace {

constexpr int kMaxClientArgs = 64;
// The launcher separates the client's arguments by this byte.
constexpr char kArgSeparator = '\x1f';
// The runtime's copies of the standard handles sit this high, out of the
// way of the application's own descriptors.
constexpr int kPrivateFdBase = 900;

char* client_arg_storage;

[[noreturn]] void fail(const char* what, const char* detail) {
  std::fprintf(stderr, "zorvo: %s%s%s\n", what, detail ? ": " : "", detail ? detail : "");
  _exit(1);
}

int env_int(const char* name, int fallback) {
  const char* v = getenv(name);
  return v && *v ? std::atoi(v) : fallback;
}

// The variables the launcher set for the runtime go, and LD_PRELOAD returns
// to what the user had, so the application sees its own environment.
void restore_environment() {
  const char* saved = getenv("ZORVO_SAVED_LD_PRELOAD");
  if (saved && *saved == '=')
    setenv("LD_PRELOAD", saved + 1, 1);
  else
    unsetenv("LD_PRELOAD");
  static const char* const kOwnVariables[] = {
      "ZORVO_SAVED_LD_PRELOAD", "ZORVO_CLIENT",   "ZORVO_CLIENT_ARGS",    "ZORVO_STATS",
      "ZORVO_LOGLEVEL",         "ZORVO_LAUNCHED", "ZORVO_ENTRY_BY_SIGNAL"};
  for (const char* name : kOwnVariables) unsetenv(name);
}

void keep_private_handles() {
  const int err = fcntl(2, F_DUPFD_CLOEXEC, kPrivateFdBase);
  if (err >= 0) our_stderr = err;
  const int out = fcntl(1, F_DUPFD_CLOEXEC, kPrivateFdBase);
  if (out >= 0) our_stdout = out;
}

void load_client(const char* path, const char* args) {
  // The client's constructors install its fault handlers.
  client_loading(true);
  void* lib = dlopen(path, RTLD_NOW | RTLD_GLOBAL);
  client_loading(false);
  if (lib == nullptr) fail("cannot load the client", dlerror());
  note_client_code(lib);
  const auto* version = static_cast<const int*>(dlsym(lib, "_USES_DR_VERSION_"));
  if (version == nullptr || *version < 700)
    fail("the client was not built for interface version 700", path);
  using entry_fn = void (*)(client_id_t, int, const char**);
  const auto entry = reinterpret_cast<entry_fn>(dlsym(lib, "dr_client_main"));
  if (entry == nullptr) fail("the client has no dr_client_main", path);

  static const char* argv[kMaxClientArgs + 1];
  int argc = 0;
  argv[argc++] = path;
  client_arg_storage = strdup(args ? args : "");
  for (char* p = client_arg_storage; *p && argc < kMaxClientArgs;) {
    argv[argc++] = p;
    char* end = std::strchr(p, kArgSeparator);
    if (end == nullptr) break;
    *end = 0;
    p = end + 1;
  }
  argv[argc] = nullptr;
  entry(0, argc, argv);
}

void print_counters() {
  dr_fprintf(our_stderr,
             "zorvo: %llu blocks built, %llu fragments, %llu signals taken, %llu fragment "
             "entries\nzorvo: %llu SVE words translated, %llu bytes of code\n",
             static_cast<unsigned long long>(counters.blocks_built.load()),
             static_cast<unsigned long long>(counters.fragments.load()),
             static_cast<unsigned long long>(counters.signals.load()),
             static_cast<unsigned long long>(counters.fragment_entries.load()),
             static_cast<unsigned long long>(counters.words_translated.load()),
             static_cast<unsigned long long>(counters.code_bytes.load()));
}

void on_process_exit() {
  exiting_thread = syscall(SYS_gettid);
  if (runtime_shut_down.exchange(true)) return;
  if (rt_thread* t = current_thread()) detach_thread(t);
  run_exit_events();
  if (settings.print_stats) print_counters();
}

__attribute__((constructor)) void runtime_start() {
  settings.log_level = env_int("ZORVO_LOGLEVEL", 0);
  settings.print_stats = env_int("ZORVO_STATS", 0) != 0;
  settings.entry_by_signal = env_int("ZORVO_ENTRY_BY_SIGNAL", 0) != 0;
  const char* client = getenv("ZORVO_CLIENT");
  const char* client_args = getenv("ZORVO_CLIENT_ARGS");
  char* client_path = client && *client ? strdup(client) : nullptr;
  char* args = client_args ? strdup(client_args) : nullptr;
  if (getenv("ZORVO_LAUNCHED")) restore_environment();

  resolve_libc_functions();
  keep_private_handles();
  read_application_name();
  thread_exit_hook_init();
  site_patching_init();
  take_sigill();
  take_fault_signals();
  if (client_path) load_client(client_path, args);
  if (attach_thread() == nullptr) fail("no memory for the first thread", nullptr);
  std::atexit(on_process_exit);
  runtime_ready = true;
}

} // namespace

// Start and end of the process under the runtime: the launcher's settings,
// the environment and auxiliary vector the program sees, the client's entry,
// the first thread, and the exit events.
#include <dlfcn.h>
#include <fcntl.h>
#include <link.h>
#include <pthread.h>
#include <sys/auxv.h>
#include <sys/mman.h>
#include <sys/single_threaded.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "app_hooks.h"
#include "code_patch.h"
#include "code_retire.h"
#include "runtime.h"
#include "signals.h"
#include "sites.h"
#include "static_handoff.h"
#include "static_syscalls.h"
#include "thread.h"

std::atomic<bool> runtime_ready;
std::atomic<bool> runtime_shut_down;
std::atomic<long> exiting_thread;

namespace {

constexpr int kMaxClientArgs = 64;
// The launcher separates the client's arguments, and the relaunch command's
// words, by this byte; and the settings by the next.
constexpr char kArgSeparator = '\x1f';
constexpr char kSettingSeparator = '\x1e';
// The runtime's copies of the standard handles sit this high, out of the
// way of the application's own descriptors.
constexpr int kPrivateFdBase = 900;
// The loader appends this many variables to the environment: LD_AUDIT,
// LD_PRELOAD, ZORVO_SETTINGS and a pad (see runtime/loader/loader.cpp).
constexpr int kLoaderVariables = 4;

char* client_arg_storage;

void static_program_exiting();
// in_signal_handler: the thread's runtime memory stays, since the handler
// may be running on its stack.
void on_process_exit(bool in_signal_handler = false);

struct launch_settings {
  const char* client = nullptr;
  const char* client_args = "";
  const char* trace_dir = nullptr;
  const char* app = nullptr;
  const char* relaunch = "";
  int vector_bytes = 48;
  bool vector_length_inherited = false;
  bool static_program = false; // statically linked, started by the static host
};

// A static program's own program headers, where the loader mapped them.
const ElfW(Phdr) * static_app_phdr;
int static_app_phnum;

[[noreturn]] void fail(const char* what, const char* detail) {
  std::fprintf(stderr, "zorvo: %s%s%s\n", what, detail ? ": " : "", detail ? detail : "");
  _exit(1);
}

// ZORVO_SETTINGS holds key=value fields, written by the launcher.
launch_settings read_settings(char* text) {
  launch_settings s;
  for (char* field = text; field != nullptr;) {
    char* next = std::strchr(field, kSettingSeparator);
    if (next) *next++ = 0;
    char* value = std::strchr(field, '=');
    if (value) {
      *value++ = 0;
      if (!std::strcmp(field, "client"))
        s.client = value;
      else if (!std::strcmp(field, "client_args"))
        s.client_args = value;
      else if (!std::strcmp(field, "trace_dir"))
        s.trace_dir = value;
      else if (!std::strcmp(field, "app"))
        s.app = value;
      else if (!std::strcmp(field, "relaunch"))
        s.relaunch = value;
      else if (!std::strcmp(field, "vector_bytes"))
        s.vector_bytes = std::atoi(value);
      else if (!std::strcmp(field, "vl_inherit"))
        s.vector_length_inherited = *value == '1';
      else if (!std::strcmp(field, "loglevel"))
        settings.log_level = std::atoi(value);
      else if (!std::strcmp(field, "stats"))
        settings.print_stats = *value == '1';
      else if (!std::strcmp(field, "entry_by_signal"))
        settings.entry_by_signal = *value == '1';
      else if (!std::strcmp(field, "static"))
        s.static_program = *value == '1';
    }
    field = next;
  }
  return s;
}

bool has_prefix(const char* s, const char* prefix) {
  return std::strncmp(s, prefix, std::strlen(prefix)) == 0;
}

// The loader's variables end the environment, followed by the auxiliary
// vector, whose first kLoaderVariables / 2 entries are AT_IGNORE. The
// variables go, and the auxiliary vector moves down over them, so that the
// environment and the auxiliary vector lie where the kernel would have put
// them for code that walks the stack; the dynamic loader, which kept the
// vector's old address, now starts past the AT_IGNORE entries.
void take_loader_variables_out(char** env) {
  int n = 0;
  while (env[n]) ++n;
  if (n < kLoaderVariables) return;
  char** ours = env + n - kLoaderVariables;
  if (!has_prefix(ours[0], "LD_AUDIT=") || !has_prefix(ours[2], "ZORVO_SETTINGS=")) return;
  auto* aux = reinterpret_cast<unsigned long*>(env + n + 1);
  int words = 0;
  while (aux[words] != AT_NULL) words += 2;
  words += 2;
  for (int i = 0; i < words; i += 2) {
    if (aux[i] == AT_HWCAP) aux[i + 1] |= HWCAP_SVE;
    if (aux[i] == loader::kStaticExitHook)
      aux[i + 1] = reinterpret_cast<unsigned long>(static_program_exiting);
    if (aux[i] == loader::kStaticAppPhdr)
      static_app_phdr = reinterpret_cast<const ElfW(Phdr)*>(aux[i + 1]);
    if (aux[i] == loader::kStaticAppPhnum) static_app_phnum = static_cast<int>(aux[i + 1]);
  }
  ours[0] = nullptr;
  std::memmove(ours + 1, aux, words * sizeof(unsigned long));
}

// The dynamic loader started on a processor without SVE, so that both C
// libraries in the process (the application's and the runtime's) chose
// string functions without SVE: the runtime's must never raise SIGILL, and
// the application's run faster natively than emulated, with the same
// results. Now HWCAP_SVE goes into the dynamic loader's copy of AT_HWCAP,
// before any of the application's objects is relocated, so that its ifunc
// resolvers and getauxval see SVE. The copy is the one word of the dynamic
// loader's read-only globals that holds AT_HWCAP's value.
void present_sve() {
  const unsigned long hwcap = getauxval(AT_HWCAP);
  void* globals = dlsym(RTLD_DEFAULT, "_rtld_global_ro");
  Dl_info info;
  void* symbol_entry = nullptr;
  if (globals == nullptr || dladdr1(globals, &info, &symbol_entry, RTLD_DL_SYMENT) == 0 ||
      symbol_entry == nullptr)
    fail("cannot find the dynamic loader's copy of AT_HWCAP", nullptr);
  const auto* symbol = static_cast<const ElfW(Sym)*>(symbol_entry);
  auto* words = static_cast<unsigned long*>(globals);
  const size_t count = symbol->st_size / sizeof(unsigned long);
  unsigned long* found = nullptr;
  for (size_t i = 0; i < count; ++i) {
    if (words[i] != hwcap) continue;
    if (found) fail("cannot tell the dynamic loader's copy of AT_HWCAP", nullptr);
    found = words + i;
  }
  if (found == nullptr) fail("cannot find the dynamic loader's copy of AT_HWCAP", nullptr);
  const long page = sysconf(_SC_PAGESIZE);
  void* start = reinterpret_cast<void*>(reinterpret_cast<uintptr_t>(found) & ~(page - 1));
  if (mprotect(start, page, PROT_READ | PROT_WRITE) != 0)
    fail("cannot present SVE to the dynamic loader", nullptr);
  // Left writable: the dynamic loader makes its read-only data read-only
  // itself, once it has relocated the program.
  *found |= HWCAP_SVE;
}

void keep_private_handles() {
  const int err = fcntl(2, F_DUPFD_CLOEXEC, kPrivateFdBase);
  if (err >= 0) our_stderr = err;
  const int out = fcntl(1, F_DUPFD_CLOEXEC, kPrivateFdBase);
  if (out >= 0) our_stdout = out;
}

// The client is the audit module the dynamic loader loaded, with the
// runtime among its dependencies: it is in memory, its constructors ran after
// the runtime's, and it gets its entry call now.
void start_client(const char* path, const char* args) {
  client_loading(false);
  using entry_fn = void (*)(client_id_t, int, const char**);
  const auto entry = reinterpret_cast<entry_fn>(dlsym(RTLD_DEFAULT, "dr_client_main"));
  if (entry == nullptr) fail("the client has no dr_client_main", path);
  Dl_info info;
  void* client_map = nullptr;
  if (dladdr1(reinterpret_cast<void*>(entry), &info, &client_map, RTLD_DL_LINKMAP) == 0)
    fail("cannot find the client's code", path);
  note_client_code(client_map);
  const auto* version = static_cast<const int*>(dlsym(client_map, "_USES_DR_VERSION_"));
  if (version == nullptr || *version < 700)
    fail("the client was not built for interface version 700", path);

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
             "entries\nzorvo: %llu SVE words translated, %llu bytes of code\n"
             "zorvo: %llu system calls of the program trapped\n",
             static_cast<unsigned long long>(counters.blocks_built.load()),
             static_cast<unsigned long long>(counters.fragments.load()),
             static_cast<unsigned long long>(counters.signals.load()),
             static_cast<unsigned long long>(counters.fragment_entries.load()),
             static_cast<unsigned long long>(counters.words_translated.load()),
             static_cast<unsigned long long>(counters.code_bytes.load()),
             static_cast<unsigned long long>(counters.system_calls_trapped.load()));
}

// A static program's start registers this for exit, as it would the dynamic
// loader's function: it runs with the program's thread pointer.
void static_program_exiting() {
  const uint64_t app_tp = enter_runtime_tls();
  on_process_exit();
  leave_runtime_tls(app_tp);
}

void on_process_exit(bool in_signal_handler) {
  exiting_thread = syscall(SYS_gettid);
  if (runtime_shut_down.exchange(true)) return;
  if (rt_thread* t = current_thread()) {
    if (in_signal_handler)
      run_thread_exit_events(t);
    else
      detach_thread(t);
  }
  run_exit_events();
  if (settings.print_stats) print_counters();
}

void thread_started() { attach_thread(); }

void thread_exiting() {
  if (rt_thread* t = current_thread()) detach_thread(t);
}

// The process the runtime's state belongs to; a vfork child shares it.
pid_t owner;

} // namespace

void process_forked() {
  owner = getpid();
  run_fork_child();
}

namespace {

app_hooks hooks_for_application;
launch_settings launch;
bool launched;

__attribute__((constructor)) void runtime_start() {
  const char* text = getenv("ZORVO_SETTINGS");
  if (text == nullptr) return; // not started by the loader: stay out of the way
  launch = read_settings(strdup(text));
  launched = true;
  if (launch.static_program) keep_runtime_thread_pointer();
  take_loader_variables_out(environ);
  present_sve();
  // From here on the environment is the runtime's namespace's own copy.
  if (launch.trace_dir) setenv("ZORVO_TRACE_DIR", launch.trace_dir, 1);
  // This namespace's C library never sees the application's threads start.
  __libc_single_threaded = 0;

  resolve_libc_functions();
  keep_private_handles();
  set_application_name(launch.app);
  pthread_atfork(nullptr, nullptr, only_forking_thread_left);
  take_sigill();
  take_fault_signals();
  take_ending_signals();
  if (static_app_phdr != nullptr)
    trap_static_system_calls(static_app_phdr, static_app_phnum, launch.vector_bytes,
                             launch.vector_length_inherited, launch.relaunch);
  app_hooks& hooks = hooks_for_application;
  hooks.sigaction = &sigaction;
  hooks.sigprocmask = &sigprocmask;
  hooks.pthread_sigmask = &pthread_sigmask;
  hooks.thread_started = thread_started;
  hooks.thread_exiting = thread_exiting;
  hooks.process_exiting = [] { on_process_exit(); };
  hooks.before_exec = process_ending;
  hooks.ending_without_exit_handlers = process_ending;
  hooks.fork_prepare = run_fork_prepare;
  hooks.fork_parent = run_fork_parent;
  hooks.fork_child = process_forked;
  hooks.code_unmapped = [](void* start, size_t length) {
    retire_code(static_cast<app_pc>(start), static_cast<app_pc>(start) + length);
  };
  hooks.code_protection_changing = [](void* start, size_t length) {
    retire_code(static_cast<app_pc>(start), static_cast<app_pc>(start) + length, true);
  };
  hooks.mappings_changed = mappings_changed;
  hooks.vector_bytes = launch.vector_bytes;
  hooks.vector_length_inherited = launch.vector_length_inherited;
  hooks.relaunch = launch.relaunch;
  hooks.program_path = launch.app ? realpath(launch.app, nullptr) : nullptr;
  owner = getpid();
  // The client's constructors, which run next, install its fault handlers.
  client_loading(true);
}

} // namespace

const app_hooks* runtime_app_hooks() { return &hooks_for_application; }

// An exec, _exit or a fatal signal ends the process without the exit
// handlers that run on_process_exit. A vfork child shares the parent's
// state and leaves it alone.
void process_ending() {
  if (getpid() == owner) on_process_exit();
}

void process_dying_by_signal() {
  if (getpid() == owner) on_process_exit(true);
}

const char* application_path() { return launch.app; }

// Called when the dynamic loader maps the application's first object: the
// client is loaded and initialised by then.
void start_runtime() {
  if (runtime_ready || !launched) return;
  start_client(launch.client ? launch.client : "client", launch.client_args);
  if (attach_thread() == nullptr) fail("no memory for the first thread", nullptr);
  runtime_ready = true;
}

// Services for clients: contexts, memory, names, printing and logging.
#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstring>

#include "runtime.h"
#include "thread.h"

runtime_counters counters;
runtime_settings settings;

namespace {

char client_name[128];
char application_name[256];

size_t page_round(size_t size) { return (size + 4095) & ~size_t(4095); }

} // namespace

extern "C" {

file_t our_stdout = 1;
file_t our_stderr = 2;
file_t our_stdin = 0;

void* dr_get_current_drcontext(void) { return current_thread(); }

// Whole pages: they come zeroed from the kernel and go back on free, and no
// lock or malloc is involved.
void* dr_thread_alloc(void*, size_t size) { return map_pages(page_round(size)); }
void dr_thread_free(void*, void* mem, size_t size) { unmap_pages(mem, page_round(size)); }
void* dr_global_alloc(size_t size) { return map_pages(page_round(size)); }
void dr_global_free(void* mem, size_t size) { unmap_pages(mem, page_round(size)); }

bool dr_set_client_name(const char* name, const char*) {
  std::snprintf(client_name, sizeof client_name, "%s", name);
  return true;
}

const char* dr_get_application_name(void) { return application_name; }
process_id_t dr_get_process_id(void) { return getpid(); }
thread_id_t dr_get_thread_id(void* drcontext) { return static_cast<rt_thread*>(drcontext)->tid; }

ssize_t dr_write_file(file_t f, const void* buf, size_t count) {
  const char* p = static_cast<const char*>(buf);
  size_t done = 0;
  while (done < count) {
    const ssize_t n = write(f, p + done, count - done);
    if (n <= 0) return done ? ssize_t(done) : n;
    done += size_t(n);
  }
  return ssize_t(done);
}

static ssize_t vprint(file_t f, const char* fmt, va_list ap) {
  char buf[2048];
  const int n = std::vsnprintf(buf, sizeof buf, fmt, ap);
  if (n < 0) return n;
  return dr_write_file(f, buf, size_t(n) < sizeof buf ? size_t(n) : sizeof buf - 1);
}

ssize_t dr_fprintf(file_t f, const char* fmt, ...) {
  va_list ap;
  va_start(ap, fmt);
  const ssize_t n = vprint(f, fmt, ap);
  va_end(ap);
  return n;
}

int dr_snprintf(char* buf, size_t max, const char* fmt, ...) {
  va_list ap;
  va_start(ap, fmt);
  const int n = std::vsnprintf(buf, max, fmt, ap);
  va_end(ap);
  return n >= 0 && size_t(n) < max ? n : -1;
}

void dr_log(void*, uint, uint level, const char* fmt, ...) {
  if (int(level) > settings.log_level) return;
  va_list ap;
  va_start(ap, fmt);
  vprint(our_stderr, fmt, ap);
  va_end(ap);
}

void dr_abort(void) { _exit(1); }
void dr_abort_with_code(int exit_code) { _exit(exit_code); }

} // extern "C"

void set_application_name(const char* path) {
  if (path == nullptr) return;
  const char* slash = std::strrchr(path, '/');
  const char* name = slash ? slash + 1 : path;
  const size_t length = std::min(std::strlen(name), sizeof application_name - 1);
  std::memcpy(application_name, name, length);
  application_name[length] = 0;
}

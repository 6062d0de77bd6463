// The runtime enters the process with the client, which the dynamic loader
// loads as its audit module: in a namespace of its own, with the runtime
// among its dependencies, before it maps any of the application's objects.
// So the runtime's constructor (init.cpp) and the client's have run, and the
// client has had its entry call, before the first ifunc resolver, library
// constructor or preinit function of the application runs. Of the audit
// interface the runtime uses only the four calls below.
#include <limits.h>
#include <link.h>
#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "app_hooks.h"

#include "code_patch.h"
#include "code_retire.h"
#include "runtime.h"

const app_hooks* runtime_app_hooks();
void start_runtime();
const char* application_path();

namespace {

// A defined symbol of an object that is mapped but not yet set up for
// dlsym, by its GNU hash table.
void* find_symbol(const link_map* map, const char* name) {
  const ElfW(Sym)* symbols = nullptr;
  const char* strings = nullptr;
  const uint32_t* table = nullptr;
  // Depending on whether the dynamic section is writable, the dynamic loader
  // has or has not yet turned its addresses into absolute ones.
  const auto address = [map](ElfW(Addr) a) { return a < map->l_addr ? a + map->l_addr : a; };
  for (const ElfW(Dyn)* d = map->l_ld; d->d_tag != DT_NULL; ++d) {
    if (d->d_tag == DT_SYMTAB) symbols = reinterpret_cast<const ElfW(Sym)*>(address(d->d_un.d_ptr));
    if (d->d_tag == DT_STRTAB) strings = reinterpret_cast<const char*>(address(d->d_un.d_ptr));
    if (d->d_tag == DT_GNU_HASH) table = reinterpret_cast<const uint32_t*>(address(d->d_un.d_ptr));
  }
  if (symbols == nullptr || strings == nullptr || table == nullptr) return nullptr;
  uint32_t hash = 5381;
  for (const char* c = name; *c; ++c) hash = hash * 33 + static_cast<unsigned char>(*c);
  const uint32_t buckets = table[0], first = table[1], bloom_words = table[2];
  const uint32_t* bucket = table + 4 + bloom_words * (sizeof(ElfW(Addr)) / 4);
  const uint32_t* chain = bucket + buckets - first;
  for (uint32_t i = bucket[hash % buckets]; i >= first && i != 0; ++i) {
    if ((chain[i] | 1) == (hash | 1) && std::strcmp(strings + symbols[i].st_name, name) == 0 &&
        symbols[i].st_shndx != SHN_UNDEF)
      return reinterpret_cast<void*>(map->l_addr + symbols[i].st_value);
    if (chain[i] & 1) break;
  }
  return nullptr;
}

// The directory part of PATH, into out (which holds PATH_MAX bytes).
void directory_of(const char* path, char* out) {
  const char* slash = std::strrchr(path, '/');
  std::snprintf(out, PATH_MAX, "%.*s", slash ? static_cast<int>(slash - path) : 1,
                slash ? path : ".");
}

// A run-path entry of `length` bytes with $ORIGIN and ${ORIGIN} replaced,
// into out (PATH_MAX bytes); false when it does not fit.
bool expand_origin(const char* entry, size_t length, const char* origin, char* out) {
  size_t used = 0;
  for (size_t i = 0; i < length;) {
    size_t token = 0;
    if (std::strncmp(entry + i, "${ORIGIN}", 9) == 0)
      token = 9;
    else if (std::strncmp(entry + i, "$ORIGIN", 7) == 0)
      token = 7;
    const char* piece = token ? origin : entry + i;
    const size_t n = token ? std::strlen(origin) : 1;
    if (used + n + 1 > PATH_MAX) return false;
    std::memcpy(out + used, piece, n);
    used += n;
    i += token ? token : 1;
  }
  out[used] = 0;
  return true;
}

// The program's link map, the first object the dynamic loader reports.
const link_map* program_map;

// The program's run paths, as written in its dynamic section.
const char* program_run_path(bool* inherited) {
  const char* strings = nullptr;
  ElfW(Sxword) rpath = -1, runpath = -1;
  const auto address = [](ElfW(Addr) a) {
    return a < program_map->l_addr ? a + program_map->l_addr : a;
  };
  for (const ElfW(Dyn)* d = program_map->l_ld; d != nullptr && d->d_tag != DT_NULL; ++d) {
    if (d->d_tag == DT_STRTAB) strings = reinterpret_cast<const char*>(address(d->d_un.d_ptr));
    if (d->d_tag == DT_RPATH) rpath = d->d_un.d_val;
    if (d->d_tag == DT_RUNPATH) runpath = d->d_un.d_val;
  }
  if (strings == nullptr) return nullptr;
  // DT_RUNPATH wins over DT_RPATH; only DT_RPATH serves the libraries too.
  *inherited = runpath < 0 && rpath >= 0;
  return runpath >= 0 ? strings + runpath : rpath >= 0 ? strings + rpath : nullptr;
}

// The dynamic loader takes the program's $ORIGIN from /proc/self/exe, which
// names the loader. So the runtime searches the program's run-path entries
// that use $ORIGIN itself, with the program's directory, before the dynamic
// loader does.
char* find_in_program_origin(const char* name, const link_map* requester) {
  bool inherited = false;
  const char* paths = program_map ? program_run_path(&inherited) : nullptr;
  if (paths == nullptr || std::strstr(paths, "ORIGIN") == nullptr || std::strchr(name, '/') ||
      (requester != program_map && !inherited))
    return nullptr;
  char* program = application_path() ? realpath(application_path(), nullptr) : nullptr;
  if (program == nullptr) return nullptr;
  char origin[PATH_MAX], dir[PATH_MAX], candidate[PATH_MAX];
  directory_of(program, origin);
  free(program);
  for (const char* entry = paths; *entry;) {
    const char* end = std::strchr(entry, ':');
    const size_t length = end ? static_cast<size_t>(end - entry) : std::strlen(entry);
    if (expand_origin(entry, length, origin, dir) && std::strchr(dir, '$') == nullptr &&
        std::snprintf(candidate, sizeof candidate, "%s/%s", dir, name) < PATH_MAX &&
        access(candidate, R_OK) == 0)
      return strdup(candidate); // the dynamic loader keeps the name
    if (end == nullptr) break;
    entry = end + 1;
  }
  return nullptr;
}

bool is_interposer(const char* name) {
  const char* slash = std::strrchr(name, '/');
  return std::strcmp(slash ? slash + 1 : name, "libzorvo_preload.so") == 0;
}

// The span of an object's executable segments, by its program headers,
// which a shared object maps with its first segment at its load address.
bool executable_span(const link_map* map, app_pc* start, app_pc* end) {
  const auto* header = reinterpret_cast<const ElfW(Ehdr)*>(map->l_addr);
  if (header == nullptr || std::memcmp(header->e_ident, ELFMAG, SELFMAG) != 0) return false;
  const auto* phdr = reinterpret_cast<const ElfW(Phdr)*>(map->l_addr + header->e_phoff);
  uintptr_t low = UINTPTR_MAX, high = 0;
  for (int i = 0; i < header->e_phnum; ++i)
    if (phdr[i].p_type == PT_LOAD && (phdr[i].p_flags & PF_X)) {
      low = std::min<uintptr_t>(low, map->l_addr + phdr[i].p_vaddr);
      high = std::max<uintptr_t>(high, map->l_addr + phdr[i].p_vaddr + phdr[i].p_memsz);
    }
  *start = reinterpret_cast<app_pc>(low);
  *end = reinterpret_cast<app_pc>(high);
  return low < high;
}

} // namespace

extern "C" {

unsigned la_version(unsigned version) { return version < LAV_CURRENT ? version : LAV_CURRENT; }

unsigned la_objopen(struct link_map* map, Lmid_t, uintptr_t* cookie) {
  start_runtime();
  mappings_changed();
  if (program_map == nullptr) program_map = map;
  *cookie = reinterpret_cast<uintptr_t>(map);
  if (map->l_name != nullptr && is_interposer(map->l_name)) {
    // Mapped, not yet relocated: the variable holds its initial null.
    auto* slot = static_cast<const app_hooks**>(find_symbol(map, ZORVO_APP_HOOKS_SYMBOL));
    if (slot != nullptr) *slot = runtime_app_hooks();
  }
  return 0;
}

// Called before the object is unmapped; its code runs no more (its
// destructors have run).
unsigned la_objclose(uintptr_t* cookie) {
  app_pc start, end;
  // At exit every object closes while other threads may still run its code.
  if (runtime_shut_down) return 0;
  if (executable_span(reinterpret_cast<const link_map*>(*cookie), &start, &end))
    retire_code(start, end);
  return 0;
}

// The unmapping that la_objclose came before is done: mappings read since
// then may hold the object still.
void la_activity(uintptr_t*, unsigned flag) {
  if (flag == LA_ACT_CONSISTENT) mappings_changed();
}

char* la_objsearch(const char* name, uintptr_t* cookie, unsigned int flag) {
  if (flag == LA_SER_ORIG)
    if (char* found = find_in_program_origin(name, reinterpret_cast<const link_map*>(*cookie)))
      return found;
  return const_cast<char*>(name);
}

} // extern "C"

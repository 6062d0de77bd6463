// The runtime enters the process with the client, which the dynamic loader
// loads as its audit module: in a namespace of its own, with the runtime
// among its dependencies, before it maps any of the application's objects.
// So the runtime's constructor (init.cpp) and the client's have run, and the
// client has had its entry call, before the first ifunc resolver, library
// constructor or preinit function of the application runs. Of the audit
// interface the runtime uses only the two calls below.
#include <link.h>

#include <cstring>

#include "app_hooks.h"

const app_hooks* runtime_app_hooks();
void start_runtime();

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

bool is_interposer(const char* name) {
  const char* slash = std::strrchr(name, '/');
  return std::strcmp(slash ? slash + 1 : name, "libzorvo_preload.so") == 0;
}

} // namespace

extern "C" {

unsigned la_version(unsigned version) { return version < LAV_CURRENT ? version : LAV_CURRENT; }

unsigned la_objopen(struct link_map* map, Lmid_t, uintptr_t*) {
  start_runtime();
  if (map->l_name != nullptr && is_interposer(map->l_name)) {
    // Mapped, not yet relocated: the variable holds its initial null.
    auto* slot = static_cast<const app_hooks**>(find_symbol(map, ZORVO_APP_HOOKS_SYMBOL));
    if (slot != nullptr) *slot = runtime_app_hooks();
  }
  return 0;
}

} // extern "C"

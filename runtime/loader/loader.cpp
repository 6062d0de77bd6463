// zorvo-loader: a freestanding program that loads an AArch64 program and its
// interpreter itself and starts the interpreter with the stack the kernel
// would have built for the program, apart from three things: the auxiliary
// vector describes the emulated processor (SVE present), the dynamic loader
// is told to load the client (and with it the runtime) as its audit module and the application-side
// interposer as a preload, and the runtime's settings travel in the
// environment. The runtime takes its entries out of the environment before
// any of the program's code runs (see the runtime's start).
//
// usage (private to the `zorvo` launcher):
//   zorvo-loader [--user-preload VALUE] [--static-host HOST] CLIENT PRELOAD SETTINGS ARGV0
//                APP [ARGS...]
// --user-preload: the environment's LD_PRELOAD is an empty stand-in (qemu's
// own dynamic loader must not see the user's), and VALUE is what the
// program gets there.
// --static-host: for a statically linked APP, the small dynamic program that
// the dynamic loader starts in APP's place (with the client and the runtime
// as for any program), and that hands over to APP (static_host.cpp).
#include <cstddef>
#include <cstdint>

#include "elf_plan.h"
#include "static_handoff.h"

using loader::kStaticAppEntry;
using loader::kStaticAppPhdr;
using loader::kStaticAppPhnum;

namespace {

namespace sys {
constexpr long kOpenat = 56, kClose = 57, kLseek = 62, kWrite = 64, kExitGroup = 94, kMunmap = 215,
               kMmap = 222, kMprotect = 226;
constexpr long kAtFdcwd = -100, kOpenReadOnly = 0, kOpenCloexec = 0x80000, kSeekEnd = 2;
constexpr long kProtRead = 1, kProtWrite = 2, kProtExec = 4;
constexpr long kMapPrivate = 2, kMapFixed = 0x10, kMapAnonymous = 0x20,
               kMapFixedNoReplace = 0x100000;

long call(long n, long a = 0, long b = 0, long c = 0, long d = 0, long e = 0, long f = 0) {
  register long x8 asm("x8") = n;
  register long x0 asm("x0") = a;
  register long x1 asm("x1") = b;
  register long x2 asm("x2") = c;
  register long x3 asm("x3") = d;
  register long x4 asm("x4") = e;
  register long x5 asm("x5") = f;
  asm volatile("svc #0"
               : "+r"(x0)
               : "r"(x8), "r"(x1), "r"(x2), "r"(x3), "r"(x4), "r"(x5)
               : "memory");
  return x0;
}
bool failed(long r) { return r < 0 && r > -4096; }
} // namespace sys

// Auxiliary vector entries.
constexpr uint64_t AT_NULL = 0, AT_IGNORE = 1, AT_PHDR = 3, AT_PHENT = 4, AT_PHNUM = 5,
                   AT_PAGESZ = 6, AT_BASE = 7, AT_ENTRY = 9, AT_HWCAP = 16, AT_HWCAP2 = 26,
                   AT_EXECFN = 31;
// HWCAP2 bits of SVE features beyond the base set. SVE2 and its AES, PMULL,
// BITPERM, SHA3 and SM4 parts, I8MM, F32MM, F64MM and BF16 are emulated in
// full and shown; EBF16 (bit 33) is not emulated and never shown.
constexpr uint64_t kHwcap2SveEmulated =
    (uint64_t(1) << 1) | (uint64_t(1) << 2) | (uint64_t(1) << 3) | (uint64_t(1) << 4) |
    (uint64_t(1) << 5) | (uint64_t(1) << 6) | (uint64_t(1) << 9) | (uint64_t(1) << 10) |
    (uint64_t(1) << 11) | (uint64_t(1) << 12);
constexpr uint64_t kHwcap2SveExtensions = kHwcap2SveEmulated | (uint64_t(1) << 33);
// The runtime removes this many words of the environment and moves the
// auxiliary vector down over them; the dynamic loader keeps reading it where
// it was, which skips this many AT_IGNORE entries at its start.
constexpr int kAddedVariables = 4;
constexpr int kIgnoredAux = kAddedVariables / 2;

size_t length(const char* s) {
  size_t n = 0;
  while (s[n]) ++n;
  return n;
}

void put(const char* s) { sys::call(sys::kWrite, 2, reinterpret_cast<long>(s), length(s)); }

const char* app_name = "zorvo-loader";

[[noreturn]] void fail(const char* what, const char* why, int status = 2) {
  put("zorvo: ");
  put(what);
  put(": ");
  put(why);
  put("\n");
  sys::call(sys::kExitGroup, status);
  __builtin_unreachable();
}

// Strings the loader makes live here; the dynamic loader keeps pointers to
// some of them, and this memory stays mapped for the life of the process.
char string_space[64 * 1024];
size_t string_used;

char* join(const char* a, const char* b, const char* c = "", const char* d = "") {
  const char* parts[] = {a, b, c, d};
  char* start = string_space + string_used;
  for (const char* p : parts)
    for (; *p; ++p) {
      if (string_used + 2 > sizeof string_space) fail(app_name, "environment too large");
      string_space[string_used++] = *p;
    }
  string_space[string_used++] = 0;
  return start;
}

bool starts_with(const char* s, const char* prefix) {
  while (*prefix)
    if (*s++ != *prefix++) return false;
  return true;
}

struct loaded {
  uint64_t bias;
  loader::elf_plan plan;
  const unsigned char* file;
};

uint64_t round_up(uint64_t v, uint64_t page) { return (v + page - 1) & ~(page - 1); }

// Zeroes [from, to), which ends on a page boundary: the rest of the page
// after a segment's file contents, as the kernel clears it.
void clear(uint64_t from, uint64_t to) {
  for (; from % 8 != 0; ++from) *reinterpret_cast<unsigned char*>(from) = 0;
  for (; from < to; from += 8) *reinterpret_cast<uint64_t*>(from) = 0;
}

long protection(uint32_t flags) {
  return ((flags & 4) ? sys::kProtRead : 0) | ((flags & 2) ? sys::kProtWrite : 0) |
         ((flags & 1) ? sys::kProtExec : 0);
}

void map_segments(const char* name, long fd, uint64_t page, loaded* image) {
  const loader::elf_plan& plan = image->plan;
  const uint64_t span = plan.high - plan.low;
  long base;
  if (plan.position_independent) {
    base = sys::call(sys::kMmap, 0, span, 0, sys::kMapPrivate | sys::kMapAnonymous, -1, 0);
  } else {
    base = sys::call(sys::kMmap, plan.low, span, 0,
                     sys::kMapPrivate | sys::kMapAnonymous | sys::kMapFixedNoReplace, -1, 0);
    if (!sys::failed(base) && static_cast<uint64_t>(base) != plan.low) {
      sys::call(sys::kMunmap, base, span);
      base = -1;
    }
  }
  if (sys::failed(base)) fail(name, "cannot reserve the program's addresses");
  image->bias = static_cast<uint64_t>(base) - plan.low;
  for (int s = 0; s < plan.segments; ++s) {
    const loader::load_segment& seg = plan.segment[s];
    const uint64_t start = seg.vaddr & ~(page - 1);
    const uint64_t file_end = seg.vaddr + seg.filesz, mem_end = seg.vaddr + seg.memsz;
    const long prot = protection(seg.flags);
    const bool has_bss = seg.memsz > seg.filesz;
    if (seg.filesz > 0) {
      const long r = sys::call(sys::kMmap, image->bias + start, round_up(file_end, page) - start,
                               prot | (has_bss ? sys::kProtWrite : 0),
                               sys::kMapPrivate | sys::kMapFixed, fd, seg.offset & ~(page - 1));
      if (sys::failed(r)) fail(name, "cannot map a load segment");
      if (has_bss) {
        clear(image->bias + file_end, image->bias + round_up(file_end, page));
        sys::call(sys::kMprotect, image->bias + start, round_up(file_end, page) - start, prot);
      }
    }
    const uint64_t anon_start = seg.filesz > 0 ? round_up(file_end, page) : start;
    if (round_up(mem_end, page) > anon_start) {
      const long r =
          sys::call(sys::kMmap, image->bias + anon_start, round_up(mem_end, page) - anon_start,
                    prot, sys::kMapPrivate | sys::kMapAnonymous | sys::kMapFixed, -1, 0);
      if (sys::failed(r)) fail(name, "cannot map a load segment");
    }
  }
}

loaded load(const char* name, const char* path, uint64_t page) {
  const long fd = sys::call(sys::kOpenat, sys::kAtFdcwd, reinterpret_cast<long>(path),
                            sys::kOpenReadOnly | sys::kOpenCloexec);
  if (sys::failed(fd)) fail(name, fd == -2 ? "no such file" : "cannot open", fd == -2 ? 127 : 126);
  const long size = sys::call(sys::kLseek, fd, 0, sys::kSeekEnd);
  if (sys::failed(size) || size == 0) fail(name, "not an ELF file");
  const long file = sys::call(sys::kMmap, 0, size, sys::kProtRead, sys::kMapPrivate, fd, 0);
  if (sys::failed(file)) fail(name, "cannot read");
  loaded image{};
  image.file = reinterpret_cast<const unsigned char*>(file);
  if (const char* why =
          loader::plan_elf(image.file, static_cast<uint64_t>(size), page, &image.plan))
    fail(name, why);
  map_segments(name, fd, page, &image);
  sys::call(sys::kClose, fd);
  return image;
}

struct aux_entry {
  uint64_t type, value;
};

[[noreturn]] void start(uint64_t* sp, uint64_t entry) {
  asm volatile("mov sp, %0\n"
               "mov x0, xzr\n"
               "mov x29, xzr\n"
               "mov x30, xzr\n"
               "br %1\n"
               :
               : "r"(sp), "r"(entry)
               : "x0", "memory");
  __builtin_unreachable();
}

} // namespace

extern "C" [[noreturn]] void loader_main(uint64_t* initial_sp) {
  long argc = static_cast<long>(initial_sp[0]);
  char** argv = reinterpret_cast<char**>(initial_sp + 1);
  char** envp = argv + argc + 1;
  long envc = 0;
  while (envp[envc]) ++envc;
  auto* aux = reinterpret_cast<aux_entry*>(envp + envc + 1);
  long auxc = 0;
  uint64_t page = 4096;
  while (aux[auxc].type != AT_NULL) {
    if (aux[auxc].type == AT_PAGESZ) page = aux[auxc].value;
    ++auxc;
  }
  const char* stand_in_value = nullptr;
  const char* static_host = nullptr;
  while (argc > 2 && argv[1][0] == '-' && argv[1][1] == '-') {
    if (starts_with(argv[1], "--user-preload") && argv[1][14] == 0)
      stand_in_value = argv[2];
    else if (starts_with(argv[1], "--static-host") && argv[1][13] == 0)
      static_host = argv[2];
    else
      break;
    argv += 2;
    argc -= 2;
  }
  if (argc < 6)
    fail(app_name, "usage: zorvo-loader [--user-preload VALUE] [--static-host HOST] CLIENT "
                   "PRELOAD SETTINGS ARGV0 APP [ARGS...]");
  const char* client = argv[1];
  const char* preload = argv[2];
  const char* settings = argv[3];
  char* argv0 = argv[4];
  char* path = argv[5];
  app_name = argv0;

  loaded app = load(argv0, path, page);
  // A static program gets the static host as the dynamic loader's program.
  const bool is_static = app.plan.interp_size == 0;
  if (is_static && static_host == nullptr)
    fail(argv0, "a statically linked program needs the static host (--static-host)");
  const loaded host = is_static ? load(static_host, static_host, page) : app;
  if (host.plan.interp_size == 0) fail(static_host, "the static host has no interpreter");
  const char* interp_path = reinterpret_cast<const char*>(host.file + host.plan.interp_offset);
  loaded interp = load(interp_path, interp_path, page);
  if (interp.plan.interp_size != 0) fail(interp_path, "the interpreter has an interpreter");

  // The user's LD_PRELOAD (the last one counts) follows the interposer.
  long user_preload_at = -1;
  for (long i = 0; i < envc; ++i)
    if (starts_with(envp[i], "LD_PRELOAD=")) user_preload_at = i;
  const char* user_preload = user_preload_at >= 0 ? envp[user_preload_at] + 11 : nullptr;
  if (stand_in_value && user_preload_at >= 0) {
    envp[user_preload_at] = join("LD_PRELOAD=", stand_in_value);
    user_preload = stand_in_value;
  }
  char* added[kAddedVariables] = {
      join("LD_AUDIT=", client),
      // A static program has no C library functions to stand in front of,
      // and preloads nothing.
      is_static ? join("LD_PRELOAD=", "")
                : join("LD_PRELOAD=", preload, user_preload && *user_preload ? ":" : "",
                       user_preload ? user_preload : ""),
      join("ZORVO_SETTINGS=", settings, is_static ? "\x1estatic=1" : ""),
      join("ZORVO_PAD=", ""),
  };

  const long app_argc = argc - 5;
  const long words =
      1 + app_argc + 1 + envc + kAddedVariables + 1 + 2 * (kIgnoredAux + auxc + 8 + 4 + 1);
  // Well below this function's frame, which the new stack must not overlap.
  uint64_t* sp = reinterpret_cast<uint64_t*>(
      (reinterpret_cast<uintptr_t>(__builtin_frame_address(0)) - 65536 - words * 8) &
      ~uintptr_t(15));
  uint64_t* w = sp;
  *w++ = static_cast<uint64_t>(app_argc);
  *w++ = reinterpret_cast<uint64_t>(argv0);
  for (long i = 6; i < argc; ++i) *w++ = reinterpret_cast<uint64_t>(argv[i]);
  *w++ = 0;
  for (long i = 0; i < envc; ++i) *w++ = reinterpret_cast<uint64_t>(envp[i]);
  for (char* v : added) *w++ = reinterpret_cast<uint64_t>(v);
  *w++ = 0;
  for (int i = 0; i < kIgnoredAux; ++i) *w++ = AT_IGNORE, *w++ = 0;

  const aux_entry ours[] = {
      {AT_PHDR, host.bias + host.plan.phdr_vaddr},
      {AT_PHENT, 56},
      {AT_PHNUM, host.plan.phnum},
      {AT_ENTRY, host.bias + host.plan.entry},
      {AT_BASE, interp.bias + interp.plan.low},
      {AT_EXECFN, reinterpret_cast<uint64_t>(path)},
      {AT_HWCAP2, kHwcap2SveEmulated},
  };
  bool seen[sizeof ours / sizeof ours[0]] = {};
  for (long i = 0; i < auxc; ++i) {
    uint64_t value = aux[i].value;
    for (size_t k = 0; k < sizeof ours / sizeof ours[0]; ++k) {
      if (aux[i].type != ours[k].type) continue;
      seen[k] = true;
      if (aux[i].type == AT_HWCAP2)
        value = (value & ~kHwcap2SveExtensions) | kHwcap2SveEmulated;
      else
        value = ours[k].value;
    }
    *w++ = aux[i].type, *w++ = value;
  }
  for (size_t k = 0; k < sizeof ours / sizeof ours[0]; ++k)
    if (!seen[k]) *w++ = ours[k].type, *w++ = ours[k].value;
  if (is_static) {
    *w++ = kStaticAppPhdr, *w++ = app.bias + app.plan.phdr_vaddr;
    *w++ = kStaticAppPhnum, *w++ = app.plan.phnum;
    *w++ = kStaticAppEntry, *w++ = app.bias + app.plan.entry;
    *w++ = loader::kStaticExitHook, *w++ = 0;
  }
  *w++ = AT_NULL, *w++ = 0;
  start(sp, interp.bias + interp.plan.entry);
}

// The compiler may call these for the copies and clears above.
extern "C" void* memset(void* d, int c, size_t n) {
  auto* p = static_cast<unsigned char*>(d);
  while (n--) *p++ = static_cast<unsigned char>(c);
  return d;
}
extern "C" void* memcpy(void* d, const void* s, size_t n) {
  auto* p = static_cast<unsigned char*>(d);
  const auto* q = static_cast<const unsigned char*>(s);
  while (n--) *p++ = *q++;
  return d;
}

asm(".text\n"
    ".globl _start\n"
    "_start:\n"
    "  mov x0, sp\n"
    "  mov x29, xzr\n"
    "  mov x30, xzr\n"
    "  b loader_main\n");

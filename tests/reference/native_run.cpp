#include "native_run.h"

#include <setjmp.h>
#include <signal.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cstring>

#include "native_frame.h"

extern "C" {
extern const uint32_t reference_stub_begin[];
extern const uint32_t reference_stub_resume[];
extern const uint32_t reference_stub_end[];
uint64_t reference_vector_bytes();
}

namespace {

static_assert(FRAME_SLOT + 8 <= FRAME_Z);
static_assert(sizeof(machine_state::z[0]) == FRAME_Z_STRIDE);
static_assert(sizeof(machine_state::p[0]) == FRAME_P_STRIDE);
static_assert(FRAME_P + sizeof(machine_state::p) + sizeof(machine_state::ffr) <= FRAME_BYTES);
static_assert(FRAME_BYTES <= FRAME_PAGES_BYTES);
static_assert(kNativeSlots * SLOT_BYTES <= STUB_PAGE_BYTES);

uint8_t* stub_pages; // the stub page, the frame pages, the slot page
test_area area;

sigjmp_buf native_jump;
volatile sig_atomic_t in_native_run;
struct sigaction previous_segv, previous_bus;

// Faults outside a native run belong to the emulator: its own handler, when
// it has one, decides (it may jump out of a guarded read, or end the process).
void on_signal(int sig, siginfo_t* info, void* context) {
  if (in_native_run) {
    in_native_run = 0;
    siglongjmp(native_jump, sig); // the actions have SA_NODEFER: no mask to restore
  }
  const struct sigaction& previous = sig == SIGSEGV ? previous_segv : previous_bus;
  if (sig != SIGILL && (previous.sa_flags & SA_SIGINFO) && previous.sa_sigaction) {
    previous.sa_sigaction(sig, info, context);
    return;
  }
  if (sig != SIGILL && previous.sa_handler != SIG_DFL && previous.sa_handler != SIG_IGN) {
    previous.sa_handler(sig);
    return;
  }
  signal(sig, SIG_DFL); // the instruction faults again and the process ends
}

void install_handlers() {
  static uint8_t alt_stack[1 << 16];
  stack_t ss{};
  ss.ss_sp = alt_stack;
  ss.ss_size = sizeof alt_stack;
  sigaltstack(&ss, nullptr);
  struct sigaction sa {};
  sa.sa_sigaction = on_signal;
  sa.sa_flags = SA_SIGINFO | SA_ONSTACK | SA_NODEFER;
  sigemptyset(&sa.sa_mask);
  sigaction(SIGILL, &sa, nullptr);
  sigaction(SIGSEGV, &sa, &previous_segv);
  sigaction(SIGBUS, &sa, &previous_bus);
}

uint64_t read_fpcr() {
  uint64_t v;
  asm volatile("mrs %0, fpcr" : "=r"(v));
  return v;
}
void write_fpcr(uint64_t v) { asm volatile("msr fpcr, %0" ::"r"(v)); }

uint8_t* frame() { return stub_pages + STUB_PAGE_BYTES; }
uint32_t* slot_words(unsigned slot) {
  return reinterpret_cast<uint32_t*>(stub_pages + STUB_PAGE_BYTES + FRAME_PAGES_BYTES +
                                     slot * SLOT_BYTES);
}

template <typename Fn> int guarded(Fn&& fn) {
  const uint64_t host_fpcr = read_fpcr();
  const int sig = sigsetjmp(native_jump, 0);
  if (sig == 0) {
    in_native_run = 1;
    fn();
    in_native_run = 0;
  } else {
    write_fpcr(host_fpcr);
  }
  return sig;
}

uint32_t branch(intptr_t from, intptr_t to) {
  return 0x14000000u | (static_cast<uint32_t>((to - from) / 4) & 0x03ffffffu);
}
uint32_t load_x16_literal(intptr_t from, intptr_t to) {
  return 0x58000010u | (static_cast<uint32_t>((to - from) / 4) & 0x7ffffu) << 5;
}

bool map_test_area() {
  const size_t page = static_cast<size_t>(sysconf(_SC_PAGESIZE));
  const size_t bytes = 8 * page;
  for (uintptr_t hint = 0x30000000; hint < 0xf0000000; hint += 0x10000000) {
    void* p = mmap(reinterpret_cast<void*>(hint), bytes + page, PROT_READ | PROT_WRITE,
                   MAP_PRIVATE | MAP_ANONYMOUS | MAP_FIXED_NOREPLACE, -1, 0);
    if (p == MAP_FAILED) continue;
    if (reinterpret_cast<uintptr_t>(p) + bytes + page > 0x100000000ull) {
      munmap(p, bytes + page);
      continue;
    }
    area.begin = static_cast<uint8_t*>(p);
    area.bytes = bytes;
    area.unreadable = area.begin + bytes;
    area.page_bytes = page;
    return mprotect(area.unreadable, page, PROT_NONE) == 0;
  }
  return false;
}

} // namespace

const char* native_init() {
  install_handlers();
  uint64_t vl = 0;
  if (guarded([&] { vl = reference_vector_bytes(); }) != 0)
    return "this processor has no SVE; run under qemu-aarch64 -cpu max,sveN=on";
  // The emulator runs at the reference's own length.
  if (!set_vector_bytes(static_cast<unsigned>(vl)))
    return "the processor's vector length is longer than 2048 bits";

  void* p = mmap(nullptr, 2 * STUB_PAGE_BYTES + FRAME_PAGES_BYTES,
                 PROT_READ | PROT_WRITE | PROT_EXEC, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (p == MAP_FAILED) return "cannot map a writable and executable page";
  stub_pages = static_cast<uint8_t*>(p);
  const size_t stub_bytes = reinterpret_cast<const uint8_t*>(reference_stub_end) -
                            reinterpret_cast<const uint8_t*>(reference_stub_begin);
  if (stub_bytes > STUB_PAGE_BYTES) return "the native stub outgrew its page";
  std::memcpy(stub_pages, reference_stub_begin, stub_bytes);
  __builtin___clear_cache(reinterpret_cast<char*>(stub_pages),
                          reinterpret_cast<char*>(stub_pages + stub_bytes));
  if (!map_test_area()) return "cannot map the test area below 4 GiB";
  return nullptr;
}

const test_area& the_test_area() { return area; }

uint64_t native_word_address(unsigned slot) {
  return reinterpret_cast<uint64_t>(slot_words(slot) + 1);
}

void native_load_words(const uint32_t* words, unsigned count) {
  const intptr_t resume = reinterpret_cast<const uint8_t*>(reference_stub_resume) -
                          reinterpret_cast<const uint8_t*>(reference_stub_begin);
  for (unsigned k = 0; k < count && k < kNativeSlots; ++k) {
    uint32_t* w = slot_words(k);
    const intptr_t at = reinterpret_cast<uint8_t*>(w) - stub_pages;
    w[0] = load_x16_literal(at, STUB_PAGE_BYTES + FRAME_X + 16 * 8);
    w[1] = words[k];
    w[2] = branch(at + 8, resume);
    w[3] = 0xd503201f; // nop
  }
  __builtin___clear_cache(reinterpret_cast<char*>(slot_words(0)),
                          reinterpret_cast<char*>(slot_words(kNativeSlots)));
}

native_outcome run_native(unsigned slot, machine_state* m) {
  uint8_t* f = frame();
  std::memcpy(f + FRAME_X, m->x, sizeof m->x);
  std::memcpy(f + FRAME_SP, &m->sp, 8);
  std::memcpy(f + FRAME_NZCV, &m->nzcv, 8);
  std::memcpy(f + FRAME_FPSR, &m->fpsr, 8);
  std::memcpy(f + FRAME_FPCR, &m->fpcr, 8);
  std::memcpy(f + FRAME_Z, m->z, sizeof m->z);
  std::memcpy(f + FRAME_P, m->p, sizeof m->p);
  std::memcpy(f + FRAME_P + sizeof m->p, m->ffr, sizeof m->ffr);
  const uint64_t at = reinterpret_cast<uint64_t>(slot_words(slot));
  std::memcpy(f + FRAME_SLOT, &at, 8);

  const int sig = guarded(reinterpret_cast<void (*)()>(stub_pages));
  if (sig == SIGILL) return native_outcome::undefined;
  if (sig != 0) return native_outcome::fault;

  std::memcpy(m->x, f + FRAME_X, sizeof m->x);
  std::memcpy(&m->sp, f + FRAME_SP, 8);
  std::memcpy(&m->nzcv, f + FRAME_NZCV, 8);
  std::memcpy(&m->fpsr, f + FRAME_FPSR, 8);
  std::memcpy(m->z, f + FRAME_Z, sizeof m->z);
  std::memcpy(m->p, f + FRAME_P, sizeof m->p);
  std::memcpy(m->ffr, f + FRAME_P + sizeof m->p, sizeof m->ffr);
  return native_outcome::ran;
}

native_outcome run_native_word(uint32_t word, machine_state* m) {
  native_load_words(&word, 1);
  return run_native(0, m);
}

#include "sve_fault.h"

#include <ucontext.h>
#include <unistd.h>

#include <cstdio>
#include <cstring>

#include "app_memory.h"

uint32_t page_size;
uint32_t SVELibInitialized;
volatile uint32_t SVEFaultRegion;
sigjmp_buf sveFaultJB;
ZORVO_STATIC_TLS uint8_t access_violation;
cpu_state* (*this_thread_record)();
bool (*application_handles_fault)(int sig);

// The probe's read is this one load, so that its handler can step over it
// by its length, 4 bytes, and tell a probe's fault from any other by its pc.
extern "C" uint8_t zorvo_probe_byte(const volatile char* p);
asm(R"(
        .text
        .balign 4
        .hidden zorvo_probe_byte
        .globl  zorvo_probe_byte
        .type   zorvo_probe_byte, %function
zorvo_probe_byte:
        ldrb    w0, [x0]
        ret
        .size   zorvo_probe_byte, . - zorvo_probe_byte
)");

namespace {

struct sigaction fault_action(void (*handler)(int, siginfo_t*, void*)) {
  struct sigaction action;
  std::memset(&action, 0, sizeof action);
  action.sa_sigaction = handler;
  sigemptyset(&action.sa_mask);
  action.sa_flags = kFaultActionFlags;
  return action;
}

bool at_probe_load(void* context) {
  const auto* uc = static_cast<const ucontext_t*>(context);
  return uc->uc_mcontext.pc == reinterpret_cast<uint64_t>(&zorvo_probe_byte);
}

void step_over_probe_load(void* context) {
  access_violation = 1;
  static_cast<ucontext_t*>(context)->uc_mcontext.pc += 4;
}

// While one thread probes, the process's SIGSEGV action is this handler, so
// a fault of another thread can arrive here: it is handled as if the probe
// were not there.
void on_probe_fault(int sig, siginfo_t* info, void* context) {
  if (at_probe_load(context))
    step_over_probe_load(context);
  else
    SVESigHandler(sig, info, context);
}

} // namespace

int SVEInitialize() {
  if (SVELibInitialized) return SVELibInitialized;
  const struct sigaction action = fault_action(SVESigHandler);
  sigaction(SIGSEGV, &action, nullptr);
  sigaction(SIGBUS, &action, nullptr);
  SVELibInitialized = 1;
  return 1;
}

namespace {

// As the library loads, before the application runs: the page size first,
// then the handlers, so that nothing emulated can fault unguarded.
struct fault_unit_init {
  fault_unit_init() {
    page_size = static_cast<uint32_t>(sysconf(_SC_PAGESIZE));
    SVEInitialize();
  }
} init_at_load;

} // namespace

void SVESigHandler(int sig, siginfo_t*, void* context) {
  if (SVEFaultRegion) {
    SVEFaultRegion = 0;
    siglongjmp(sveFaultJB, 1);
  }
  // A probe whose thread lost the race for the SIGSEGV action to another
  // thread's probe ending.
  if (sig == SIGSEGV && at_probe_load(context)) {
    step_over_probe_load(context);
    return;
  }
  cpu_state* record = this_thread_record ? this_thread_record() : nullptr;
  if (record != nullptr && record->emulating && application_handles_fault != nullptr &&
      application_handles_fault(sig)) {
    context_from_record(static_cast<ucontext_t*>(context), *record);
    record->emulating = 0;
    return;
  }
  struct sigaction dfl = fault_action(nullptr);
  dfl.sa_handler = SIG_DFL;
  sigaction(SIGSEGV, &dfl, nullptr);
  sigaction(SIGBUS, &dfl, nullptr);
  std::fprintf(stderr,
               "zorvo's SVESigHandler caught signal %s from the process being emulated, passing "
               "it to the default signal handler.\n",
               sig == SIGSEGV ? "SIGSEGV" : "SIGBUS");
  std::fflush(stderr);
}

namespace {

// The records the kernel puts in a signal frame's reserved area: a header,
// then the record; a zero magic ends the list.
fpsimd_context* fpsimd_record(ucontext_t* uc) {
  auto* at = reinterpret_cast<unsigned char*>(uc->uc_mcontext.__reserved);
  const unsigned char* end = at + sizeof uc->uc_mcontext.__reserved;
  while (at + sizeof(_aarch64_ctx) <= end) {
    auto* head = reinterpret_cast<_aarch64_ctx*>(at);
    if (head->magic == 0 || head->size == 0) return nullptr;
    if (head->magic == FPSIMD_MAGIC) return reinterpret_cast<fpsimd_context*>(head);
    at += head->size;
  }
  return nullptr;
}

constexpr uint64_t kNzcvBits = 0xf0000000u;

} // namespace

void context_from_record(ucontext_t* uc, const cpu_state& state) {
  mcontext_t& m = uc->uc_mcontext;
  for (int r = 0; r < 31; ++r) m.regs[r] = state.regs[r];
  m.sp = state.regs[31];
  m.pc = state.pc;
  m.pstate = (m.pstate & ~kNzcvBits) | (state.nzcv & kNzcvBits);
  if (fpsimd_context* fp = fpsimd_record(uc)) {
    fp->fpsr = state.fpsr;
    fp->fpcr = state.fpcr;
    for (int v = 0; v < 32; ++v) std::memcpy(&fp->vregs[v], state.z[v], sizeof fp->vregs[v]);
  }
}

template <typename T> bool addr_is_readable(T volatile* p) {
  const struct sigaction probe = fault_action(on_probe_fault);
  struct sigaction old;
  access_violation = 0;
  sigaction(SIGSEGV, &probe, &old);
  zorvo_probe_byte(reinterpret_cast<const volatile char*>(p));
  sigaction(SIGSEGV, &old, nullptr);
  return access_violation == 0;
}
template bool addr_is_readable<char>(char volatile*);

uint64_t guarded_read(uint64_t addr, int bytes, int suppress, bool* fault_flag) {
  const auto read = [addr, bytes]() -> uint64_t {
    switch (bytes) {
    case 1:
      return read_app<uint8_t>(addr);
    case 2:
      return read_app<uint16_t>(addr);
    case 4:
      return read_app<uint32_t>(addr);
    default:
      return read_app<uint64_t>(addr);
    }
  };
  if (!suppress || fault_flag == nullptr) return read();
  if (__sigsetjmp(sveFaultJB, 1) != 0) {
    *fault_flag = true;
    return 0;
  }
  SVEFaultRegion = 1;
  const uint64_t value = read();
  SVEFaultRegion = 0;
  return value;
}

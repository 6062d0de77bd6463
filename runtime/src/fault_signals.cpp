// SIGSEGV and SIGBUS. The client installs its handlers with plain sigaction
// at load and relies on them for faults in the memory instructions it
// emulates; the application may install its own at any time. The kernel
// holds one dispatcher for both signals, and each side keeps its own action.
#include <dlfcn.h>
#include <link.h>

#include <atomic>
#include <cerrno>
#include <cstring>

#include "signals.h"
#include "thread.h"

namespace {

struct fault_actions {
  struct sigaction client;
  struct sigaction application;
};
fault_actions segv_actions, bus_actions;
std::atomic<bool> taken;

constexpr int kMaxClientSegments = 8;
struct code_range {
  uintptr_t start, end;
};
code_range client_segments[kMaxClientSegments];
int client_segment_count;
std::atomic<bool> loading_client;

fault_actions& actions_of(int sig) { return sig == SIGSEGV ? segv_actions : bus_actions; }

bool has_handler(const struct sigaction& a) {
  return a.sa_handler != SIG_DFL && a.sa_handler != SIG_IGN;
}

// An emulation call runs on one of the thread's runtime stacks; the client's block
// events run in its own code.
bool client_running(const ucontext_t* uc) {
  const rt_thread* t = current_thread();
  if (t != nullptr && runtime_stack_of(t, uc->uc_mcontext.sp) >= 0) return true;
  return client_code(reinterpret_cast<const void*>(uc->uc_mcontext.pc));
}

// A fault the client handed over, waiting for its thread to reach the
// application's instruction, where it is delivered.
struct handed_over_fault {
  int sig;
  siginfo_t info;
  uint64_t pc;
};
thread_local handed_over_fault handed_over;

// Raises SIGILL at a word of the runtime's own, so that a fault the client
// handed over is delivered from a signal frame on the application's stack.
extern "C" void zorvo_fault_delivery_trap();
asm(R"(
        .text
        .balign 4
        .hidden zorvo_fault_delivery_trap
        .globl  zorvo_fault_delivery_trap
        .type   zorvo_fault_delivery_trap, %function
zorvo_fault_delivery_trap:
        udf     #0x5a50
        .size   zorvo_fault_delivery_trap, . - zorvo_fault_delivery_trap
)");

// The client's handler returned with the context moved out of the client:
// the fault is the application's, at that context's pc. The thread returns
// to the trap with the application's registers (and, in a static program,
// its thread pointer).
void hand_over_to_application(int sig, const siginfo_t* info, ucontext_t* uc, uint64_t* app_tp) {
  handed_over = {sig, *info, uc->uc_mcontext.pc};
  uc->uc_mcontext.pc = reinterpret_cast<uint64_t>(&zorvo_fault_delivery_trap);
  *app_tp = program_thread_pointer(*app_tp);
}

// A fault the application would have met without the runtime goes to its
// handler; one of the emulator's goes to the client's, which may hand it
// over. Sent signals are the application's alone.
void on_fault(int sig, siginfo_t* info, void* context) {
  uint64_t app_tp = enter_runtime_tls();
  const int saved_errno = errno;
  auto* uc = static_cast<ucontext_t*>(context);
  fault_actions& actions = actions_of(sig);
  const bool clients =
      info->si_code > 0 && (client_running(uc) || !has_handler(actions.application));
  if (clients) {
    run_handler(&actions.client, sig, info, uc);
    if (!client_running(uc) && has_handler(actions.application))
      hand_over_to_application(sig, info, uc, &app_tp);
  } else {
    run_handler(&actions.application, sig, info, uc, program_thread_pointer(app_tp));
  }
  errno = saved_errno;
  leave_runtime_tls(app_tp);
}

struct segment_search {
  uintptr_t load_bias;
};

int collect_client_segments(dl_phdr_info* info, size_t, void* data) {
  if (info->dlpi_addr != static_cast<const segment_search*>(data)->load_bias) return 0;
  for (int i = 0; i < info->dlpi_phnum && client_segment_count < kMaxClientSegments; ++i) {
    const ElfW(Phdr)& ph = info->dlpi_phdr[i];
    if (ph.p_type != PT_LOAD || !(ph.p_flags & PF_X)) continue;
    const uintptr_t start = info->dlpi_addr + ph.p_vaddr;
    client_segments[client_segment_count++] = {start, start + ph.p_memsz};
  }
  return 1;
}

} // namespace

bool deliver_handed_over_fault(ucontext_t* uc, uint64_t app_tp) {
  if (uc->uc_mcontext.pc != reinterpret_cast<uint64_t>(&zorvo_fault_delivery_trap)) return false;
  handed_over_fault fault = handed_over;
  uc->uc_mcontext.pc = fault.pc;
  run_handler(&actions_of(fault.sig).application, fault.sig, &fault.info, uc, app_tp);
  return true;
}

extern "C" bool dr_app_handles_signal_zorvo(int sig) {
  return (sig == SIGSEGV || sig == SIGBUS) && has_handler(actions_of(sig).application);
}

bool fault_signal_taken(int sig) { return (sig == SIGSEGV || sig == SIGBUS) && taken; }

void take_fault_signals() {
  static const int kFaultSignals[] = {SIGSEGV, SIGBUS};
  for (int sig : kFaultSignals) {
    fault_actions& actions = actions_of(sig);
    // What the process had before the runtime started stays the
    // application's; the client starts with the default.
    libc.sigaction(sig, nullptr, &actions.application);
    std::memset(&actions.client, 0, sizeof actions.client);
    actions.client.sa_handler = SIG_DFL;
    struct sigaction dispatcher;
    std::memset(&dispatcher, 0, sizeof dispatcher);
    dispatcher.sa_sigaction = on_fault;
    // Nested faults (a probe inside a handler) must arrive; a handler for
    // stack overflow needs the alternate stack when the thread has one.
    dispatcher.sa_flags = SA_SIGINFO | SA_NODEFER | SA_RESTART | SA_ONSTACK;
    sigemptyset(&dispatcher.sa_mask);
    libc.sigaction(sig, &dispatcher, nullptr);
  }
  taken = true;
}

void fault_signal_action(int sig, const struct sigaction* act, struct sigaction* old,
                         bool by_client) {
  fault_actions& actions = actions_of(sig);
  struct sigaction& side = by_client ? actions.client : actions.application;
  if (old) *old = side;
  if (act) side = *act;
}

void client_loading(bool loading) { loading_client = loading; }

bool client_code(const void* pc) {
  if (loading_client) return true;
  const auto at = reinterpret_cast<uintptr_t>(pc);
  for (int i = 0; i < client_segment_count; ++i)
    if (at >= client_segments[i].start && at < client_segments[i].end) return true;
  return false;
}

void note_client_code(void* client_handle) {
  link_map* map = nullptr;
  if (dlinfo(client_handle, RTLD_DI_LINKMAP, &map) != 0 || map == nullptr) return;
  segment_search search{map->l_addr};
  dl_iterate_phdr(collect_client_segments, &search);
}

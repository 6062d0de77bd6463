#include "interrupted.h"

#include <cstdint>
#include <cstring>

#include "thread.h"

namespace {

// The client's record of the application's registers.
struct client_record {
  int tls_idx = -1;
  size_t bytes = 0;
  bool (*app_registers)(const void* record, uint64_t* sp, void* vectors) = nullptr;
};
client_record record_of_client;

// What a handler may change under the code it interrupted.
struct saved_state {
  thread_block block;
  // Where the handler's frames begin; a later handler that starts above it,
  // on the same stack, finds this one abandoned by a siglongjmp.
  uintptr_t handler_frame;
  int interrupted_stack;  // the runtime stack the signal came on, or -1
  unsigned char record[]; // record_of_client.bytes
};

constexpr int kMaxNesting = sizeof(rt_thread::interrupted) / sizeof(rt_thread::interrupted[0]);

size_t saved_state_bytes() {
  return (sizeof(saved_state) + record_of_client.bytes + 4095) & ~size_t(4095);
}

void* record_of(rt_thread* t) {
  if (record_of_client.tls_idx < 0) return nullptr;
  return t->tls_fields[record_of_client.tls_idx];
}

bool on_alternate_stack(uintptr_t sp) {
  stack_t alt;
  if (sigaltstack(nullptr, &alt) != 0 || (alt.ss_flags & SS_DISABLE)) return false;
  const auto base = reinterpret_cast<uintptr_t>(alt.ss_sp);
  return sp > base && sp <= base + alt.ss_size;
}

// Which stack sp lies on: one of the runtime's, the alternate signal stack,
// or another.
int stack_of(const rt_thread* t, uintptr_t sp) {
  const int runtime = runtime_stack_of(t, sp);
  if (runtime >= 0) return runtime;
  return on_alternate_stack(sp) ? kRuntimeStacks : kRuntimeStacks + 1;
}

// The handler's emulation calls get a runtime stack that no interrupted
// emulation call is using: not the one the signal came on, nor one an outer
// handler's signal came on.
uintptr_t free_stack_top(rt_thread* t, int interrupted_stack) {
  uint32_t busy = interrupted_stack >= 0 ? 1u << interrupted_stack : 0;
  for (int d = 0; d < t->interrupted_depth; ++d) {
    const int outer = static_cast<saved_state*>(t->interrupted[d])->interrupted_stack;
    if (outer >= 0) busy |= 1u << outer;
  }
  for (int n = 0; n < kRuntimeStacks; ++n)
    if (!(busy & (1u << n))) return runtime_stack_top(t, n);
  return 0;
}

saved_state* save(rt_thread* t, uintptr_t handler_frame, int interrupted_stack) {
  if (t->interrupted_depth >= kMaxNesting) return nullptr;
  void*& slot = t->interrupted[t->interrupted_depth];
  if (slot == nullptr && (slot = map_pages(saved_state_bytes())) == nullptr) return nullptr;
  auto* s = static_cast<saved_state*>(slot);
  s->block = t->block;
  s->handler_frame = handler_frame;
  s->interrupted_stack = interrupted_stack;
  if (void* record = record_of(t)) std::memcpy(s->record, record, record_of_client.bytes);
  ++t->interrupted_depth;
  return s;
}

void restore(rt_thread* t, const saved_state* s) {
  thread_block block = s->block;
  // What the handler may have added for the whole thread stays.
  block.site_entries = t->block.site_entries;
  block.branch_entries = t->block.branch_entries;
  t->block = block;
  if (void* record = record_of(t)) std::memcpy(record, s->record, record_of_client.bytes);
  --t->interrupted_depth;
}

struct handler_call {
  const void* handler; // of either kind: the other arguments do not hurt
  long sig;
  siginfo_t* info;
  void* context;
  uintptr_t stack;     // 0: the current one
  const void* vectors; // 32 x 16 bytes for V0-V31, or null
  // The thread pointer the handler runs with, or 0 for the current one: the
  // switch is made here, since nothing of the runtime may run with a static
  // program's own.
  uint64_t thread_pointer;
};
static_assert(offsetof(handler_call, stack) == 32 && offsetof(handler_call, vectors) == 40 &&
              offsetof(handler_call, thread_pointer) == 48);

} // namespace

// A handler that left by siglongjmp never restored what it saved; the
// thread is past its frames now: the interrupted code's stack pointer (the
// application's, also when it was interrupted on a runtime stack) lies above
// where that handler began, or this handler's frame at or above it, on the
// same stack. Strictly above for the stack pointer: a handler started on
// the application's stack begins with its stack pointer exactly there, and
// a leaf handler runs its SVE words without moving it. The registers and
// record stay as the handler left them, as they would on a processor with
// SVE.
void drop_abandoned(rt_thread* t, uintptr_t app_sp, uintptr_t frame) {
  while (t->interrupted_depth > 0) {
    const saved_state* s = static_cast<saved_state*>(t->interrupted[t->interrupted_depth - 1]);
    const int region = stack_of(t, s->handler_frame);
    const bool left = (stack_of(t, app_sp) == region && app_sp > s->handler_frame) ||
                      (stack_of(t, frame) == region && frame >= s->handler_frame);
    if (!left) return;
    --t->interrupted_depth;
  }
}

// Calls the handler on the given stack with V0-V31 as given, so that it
// sees the vector registers of the code it interrupted, not the runtime's.
extern "C" void zorvo_call_handler(const handler_call* call);
asm(R"(
        .text
        .p2align 2
        .hidden zorvo_call_handler
        .type   zorvo_call_handler, %function
zorvo_call_handler:
        stp     x29, x30, [sp, #-112]!
        mov     x29, sp
        stp     x19, x20, [sp, #16]
        stp     d8, d9, [sp, #32]
        stp     d10, d11, [sp, #48]
        stp     d12, d13, [sp, #64]
        stp     d14, d15, [sp, #80]
        str     x21, [sp, #96]
        mov     x19, sp
        ldr     x20, [x0]
        mrs     x21, tpidr_el0
        ldr     x9, [x0, #48]
        cbz     x9, 3f
        msr     tpidr_el0, x9
3:      ldr     x9, [x0, #32]
        cbz     x9, 1f
        mov     sp, x9
1:      ldr     x9, [x0, #40]
        ldp     x1, x2, [x0, #16]
        ldr     x0, [x0, #8]
        cbz     x9, 2f
        ldp     q0, q1, [x9, #0]
        ldp     q2, q3, [x9, #32]
        ldp     q4, q5, [x9, #64]
        ldp     q6, q7, [x9, #96]
        ldp     q8, q9, [x9, #128]
        ldp     q10, q11, [x9, #160]
        ldp     q12, q13, [x9, #192]
        ldp     q14, q15, [x9, #224]
        ldp     q16, q17, [x9, #256]
        ldp     q18, q19, [x9, #288]
        ldp     q20, q21, [x9, #320]
        ldp     q22, q23, [x9, #352]
        ldp     q24, q25, [x9, #384]
        ldp     q26, q27, [x9, #416]
        ldp     q28, q29, [x9, #448]
        ldp     q30, q31, [x9, #480]
2:      blr     x20
        msr     tpidr_el0, x21
        mov     sp, x19
        ldr     x21, [sp, #96]
        ldp     d14, d15, [sp, #80]
        ldp     d12, d13, [sp, #64]
        ldp     d10, d11, [sp, #48]
        ldp     d8, d9, [sp, #32]
        ldp     x19, x20, [sp, #16]
        ldp     x29, x30, [sp], #112
        ret
        .size   zorvo_call_handler, . - zorvo_call_handler
)");

namespace {

// The interrupted code's V0-V31: in the signal frame, or, inside a run of
// emulated words, in the record.
const void* interrupted_vectors(ucontext_t* uc, const void* record, uint64_t* app_sp,
                                unsigned char (*from_record)[16]) {
  if (record != nullptr && record_of_client.app_registers != nullptr &&
      record_of_client.app_registers(record, app_sp, from_record))
    return from_record;
  auto* at = reinterpret_cast<unsigned char*>(uc->uc_mcontext.__reserved);
  const unsigned char* end = at + sizeof uc->uc_mcontext.__reserved;
  while (at + sizeof(_aarch64_ctx) <= end) {
    auto* head = reinterpret_cast<_aarch64_ctx*>(at);
    if (head->magic == 0 || head->size == 0) return nullptr;
    if (head->magic == FPSIMD_MAGIC) return reinterpret_cast<fpsimd_context*>(head)->vregs;
    at += head->size;
  }
  return nullptr;
}

} // namespace

void call_application_handler(const struct sigaction& action, int sig, siginfo_t* info,
                              ucontext_t* uc, uint64_t app_tp) {
  handler_call call{
      reinterpret_cast<const void*>(action.sa_sigaction), sig, info, uc, 0, nullptr, app_tp};
  rt_thread* t = current_thread();
  if (t == nullptr) {
    zorvo_call_handler(&call);
    return;
  }
  const auto frame = reinterpret_cast<uintptr_t>(__builtin_frame_address(0));
  const uintptr_t interrupted_sp = uc->uc_mcontext.sp;
  void* record = record_of(t);
  unsigned char record_vectors[32][16];
  uint64_t app_sp = 0;
  call.vectors = interrupted_vectors(uc, record, &app_sp, record_vectors);
  const int interrupted_stack = runtime_stack_of(t, interrupted_sp);
  drop_abandoned(t, interrupted_stack >= 0 ? app_sp : interrupted_sp, frame);
  // Interrupted in an emulation call, the handler runs where the kernel
  // would have put it: on the application's stack, below the interrupted
  // code's, unless its action chose the alternate stack, where this runs.
  if (interrupted_stack >= 0 && runtime_stack_of(t, frame) >= 0 && app_sp != 0)
    call.stack = app_sp & ~uintptr_t(15);
  saved_state* s = save(t, call.stack ? call.stack : frame, interrupted_stack);
  if (s != nullptr) {
    if (const uintptr_t top = free_stack_top(t, interrupted_stack)) t->block.stack_top = top;
  }
  zorvo_call_handler(&call);
  if (s != nullptr) restore(t, s);
}

void release_interrupted_states(rt_thread* t) {
  for (void*& slot : t->interrupted) {
    if (slot != nullptr) unmap_pages(slot, saved_state_bytes());
    slot = nullptr;
  }
  t->interrupted_depth = 0;
}

extern "C" void dr_register_interrupted_record_zorvo(int tls_idx, size_t bytes,
                                                     bool (*app_registers)(const void*, uint64_t*,
                                                                           void*)) {
  record_of_client = {tls_idx, bytes, app_registers};
}

// Fault recovery for emulated memory instructions. An emulated access that
// meets a bad address faults in the emulator itself: the handlers here either
// turn that fault into a result (a guarded read, a probe) or end the process
// with a message.
#pragma once

#include <ucontext.h>

#include <csetjmp>
#include <csignal>
#include <cstdint>

#include "state/cpu_state.h"
#include "state/static_tls.h"

// The system page size, read as the library loads, for the first-fault
// loads that stop at a page they cannot read.
extern uint32_t page_size;

extern uint32_t SVELibInitialized;
// Non-zero exactly while a guarded read is in progress; one at a time in the
// process.
extern volatile uint32_t SVEFaultRegion;
extern sigjmp_buf sveFaultJB;
// This thread's last probe met a fault.
extern ZORVO_STATIC_TLS uint8_t access_violation;

// The action flags of every handler installed here.
constexpr int kFaultActionFlags = SA_NODEFER | SA_RESTART | SA_SIGINFO;

// Called once as the library loads, after the page size is read: installs
// SVESigHandler for SIGSEGV and SIGBUS. Returns 1; a second call does
// nothing.
int SVEInitialize();

// The calling thread's register record, or null; set by the client. While
// its `emulating` is set, the record holds the registers as they were when
// the instruction at its pc began.
extern cpu_state* (*this_thread_record)();
// Whether the application has a handler of its own for sig (SIGSEGV or
// SIGBUS); null where nobody can tell, and then no fault is the
// application's.
extern bool (*application_handles_fault)(int sig);

// A fault outside every guard, in an instruction being emulated, belongs to
// the application when it has a handler: the context becomes the
// application's at that instruction, as a processor with SVE would have
// faulted, and the handler returns for its owner to deliver it. Otherwise the
// fault is fatal: the message, then both signals back to their default
// actions, so that the faulting instruction, run again when this returns,
// ends the process by its signal.
void SVESigHandler(int sig, siginfo_t* info, void* context);

// The application's registers before the instruction, its pc, SP, flags,
// FPSR, FPCR and the low 128 bits of each vector register, into uc.
void context_from_record(ucontext_t* uc, const cpu_state& state);

// Whether one byte can be read at p: a fault on the read is caught and
// execution goes on behind it. SIGSEGV only; a SIGBUS on a probed address is
// fatal.
template <typename T> bool addr_is_readable(T volatile* p);

// Reads `bytes` (1, 2, 4 or 8) at addr, zero-extended. With `suppress` set
// and a flag to report to, a fault sets *fault_flag to 1 and gives 0 (the
// flag is not cleared on success); otherwise a fault is fatal as anywhere.
uint64_t guarded_read(uint64_t addr, int bytes, int suppress, bool* fault_flag);

// The trace record and the five operations of libtracesink, the separate
// library that receives the records. The record crosses the library boundary
// by reference, so its layout is a wire format: little-endian, 48 bytes.
#pragma once

#include <cstddef>
#include <cstdint>

enum memaccess_type_t : uint32_t {
  memaccess_store = 0, // also what a marker record carries: its type is never set
  memaccess_load = 1,
};

// Bits of `flags`, set only by element-wise producers (gather, scatter,
// structured accesses); linear and marker records carry 0.
constexpr uint32_t mem_ref_first = 1;
constexpr uint32_t mem_ref_element = 2;
constexpr uint32_t mem_ref_last = 4;

// A marker record is told apart by its tid alone; every other field but seq
// is 0, so it does not say which thread ran the marker.
constexpr int32_t roi_start_marker = -1;
constexpr int32_t roi_stop_marker = -2;

struct sve_mem_ref_t {
  uint64_t seq;          // from the one incr_count call made for this record
  int32_t tid;           // low 32 bits of pthread_self(), or a marker value
  uint32_t flags;        // mem_ref_* bits
  memaccess_type_t type; // load or store
  uint32_t gap;          // never written by producers; a sink must not read it
  uint64_t size;         // bytes of memory covered
  uint64_t addr;         // application address of the first byte covered
  uint64_t pc;           // address of the emulated SVE instruction word
};

static_assert(sizeof(memaccess_type_t) == 4);
static_assert(sizeof(sve_mem_ref_t) == 48 && alignof(sve_mem_ref_t) == 8);
static_assert(offsetof(sve_mem_ref_t, seq) == 0 && offsetof(sve_mem_ref_t, tid) == 8);
static_assert(offsetof(sve_mem_ref_t, flags) == 12 && offsetof(sve_mem_ref_t, type) == 16);
static_assert(offsetof(sve_mem_ref_t, size) == 24 && offsetof(sve_mem_ref_t, addr) == 32);
static_assert(offsetof(sve_mem_ref_t, pc) == 40);

// The sink's interface. Every operation may be called from any number of
// application threads at once; the caller holds no lock. trace_mem must be
// done with the record when it returns: the caller refills the same storage.
extern "C" {
// Starts the sink. `mode` 0 writes a trace file; `app_name` names the
// application. False means the sink cannot work, which the client treats
// as fatal.
bool sve_init(int mode, const char* app_name);
// Completes the trace. The client ignores the result.
bool sve_exit(void);
// The sequence number for the record about to be sent.
uint64_t incr_count(void);
// The vector length, in bytes, of the process whose records follow; told
// before sve_init. Without it the sink assumes 48.
void sve_vector_length(uint32_t bytes);
}
// Deliberately a C++ name: its link name carries the record's type.
void trace_mem(sve_mem_ref_t const& record);

// How a thin decoder is made from its row in forms.inc: a shape (the operand
// kinds, in the handler's argument order), the decoder's element size, its
// fast handler and whether the handler computes with the host's floating
// point.
//
//   THIN_DECODER(VecU16AddVVM, zdn_pgm_zm, ELEM_H, sve_add_zpz, false)
//
// defines the decoder VecU16AddVVM. The shape's describe and notation are
// for tools, which build their table of forms from the same rows.
#pragma once

#include <cstdint>

#include "decoders.h"
#include "host_fpsr.h"
#include "operands.h"

template <typename... Kinds> struct shape {
  // The fast handler's type: the cpu_state, then one argument per kind.
  using handler_type = aarch64_decode_rc(cpu_state*, decltype(Kinds::template get<0>(0u))...);

  template <uint32_t E, auto Handler, bool ExchangesFpsr>
  static aarch64_decode_rc run(cpu_state* s, uint32_t w) {
    s->raw_instr = w;
    if constexpr (ExchangesFpsr) {
      // The handler computes with the host's floating point: the application's
      // status goes in, and the exceptions it raises come back.
      write_host_fpsr(s->fpsr);
      const aarch64_decode_rc rc = Handler(s, Kinds::template get<E>(w)...);
      s->fpsr = read_host_fpsr();
      return rc;
    } else {
      return Handler(s, Kinds::template get<E>(w)...);
    }
  }

  template <uint32_t E> static void describe(line_writer& out, uint32_t w) {
    const char* separator = "";
    ((out.printf("%s", separator), Kinds::template describe<E>(out, w), separator = ", "), ...);
    (void)separator, (void)w;
  }

  static void notation(line_writer& out) {
    if (sizeof...(Kinds) == 0) out.printf("(none)");
    const char* separator = "";
    ((out.printf("%s", separator), Kinds::notation(out), separator = ", "), ...);
    (void)separator;
  }
};

#define THIN_DECODER(name, shape_type, elem, handler, exchanges_fpsr)                              \
  aarch64_decode_rc name(cpu_state* s, uint32_t w) {                                               \
    return shape_type::run<elem, handler, exchanges_fpsr>(s, w);                                   \
  }

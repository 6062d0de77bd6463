// A readable one-line account of what the decoder of an instruction word
// passes to its fast handler: for tools, tests and failure reports.
#pragma once

#include <cstddef>
#include <cstdint>

// Writes the description of `word` into buf (never more than `size` bytes,
// NUL-terminated whenever size > 0) and returns the length written.
//
// Thin decoders: each argument after the cpu_state, in order, separated by
// ", ". Registers as their descriptor with all its words and a name
// ("Z{1, 5, 1, 1} z1.h", "P{3, 4, 7, 7} p3/m", "R{0, 3, 4, 4} x0",
// "S{31, 3} sp"); immediates as their kind and value ("uimm8-shifted 0x1200
// (4608)", "bitmask(17:5) 0x0000003f0000003f"). When the handler computes
// with the host's floating point, "; FPSR in and out" follows.
// Rows of the generic tier: "generic: ", the arguments of the generic
// function described the same way, " -> " and the destination ("z3", "p1",
// "x0" or "xzr", "w4", "d1", "nzcv"); "generic" alone while the generic
// function is not written. Prefetch rows: "none". A word that no
// row matches: "no decode row".
size_t describe_operands(uint32_t word, char* buf, size_t size);

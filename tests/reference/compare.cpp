#include "compare.h"

#include <cstdarg>
#include <cstdio>
#include <cstring>

namespace {

constexpr unsigned kElementLinesPerRegister = 4;

std::string format(const char* fmt, ...) __attribute__((format(printf, 1, 2)));
std::string format(const char* fmt, ...) {
  char buf[256];
  va_list ap;
  va_start(ap, fmt);
  std::vsnprintf(buf, sizeof buf, fmt, ap);
  va_end(ap);
  return buf;
}

uint64_t element(const uint8_t* reg, unsigned bytes, unsigned i) {
  uint64_t v = 0;
  const uint8_t* at = reg + i * bytes;
  switch (bytes) {
  case 1:
    return *at;
  case 2:
    std::memcpy(&v, at, 2);
    break;
  case 4:
    std::memcpy(&v, at, 4);
    break;
  default:
    std::memcpy(&v, at, 8);
    break;
  }
  return v;
}

char size_letter(unsigned bytes) {
  return bytes == 1 ? 'b' : bytes == 2 ? 'h' : bytes == 4 ? 's' : 'd';
}

// The packed bits as one hexadecimal number, the highest byte first.
std::string predicate_value(const uint8_t* packed) {
  std::string s = "0x";
  for (unsigned k = predicate_bytes(); k-- > 0;) s += format("%02x", packed[k]);
  return s;
}

std::string flags_text(uint64_t nzcv) {
  std::string s;
  const char* names = "NZCV";
  for (int b = 0; b < 4; ++b)
    s += (nzcv >> (31 - b) & 1) ? names[b] : static_cast<char>(names[b] + 32);
  return s;
}

std::string fpsr_text(uint64_t v) {
  static const struct {
    unsigned bit;
    const char* name;
  } kFlags[] = {{0, "IOC"}, {1, "DZC"}, {2, "OFC"}, {3, "UFC"}, {4, "IXC"}, {7, "IDC"}, {27, "QC"}};
  std::string s = format("0x%08llx", static_cast<unsigned long long>(v));
  std::string names;
  for (const auto& f : kFlags)
    if (v >> f.bit & 1) names += names.empty() ? f.name : std::string(" ") + f.name;
  return s + " (" + (names.empty() ? "no flags" : names) + ")";
}

// The operands' inputs at element i, so that a report shows what the
// element was computed from.
std::string inputs_at(const machine_state& before, const compare_rules& rules, unsigned i) {
  const unsigned e = rules.elem_bytes;
  std::string s;
  for (unsigned n = 0; n < 32; ++n)
    if (rules.operand_z >> n & 1)
      s += format("%sz%u 0x%llx", s.empty() ? "" : ", ", n,
                  static_cast<unsigned long long>(element(before.z[n], e, i)));
  for (unsigned n = 0; n < 16; ++n)
    if (rules.operand_p >> n & 1)
      s += format("%sp%u %s", s.empty() ? "" : ", ", n,
                  predicate_bit(before.p[n], i * e) ? "active" : "inactive");
  return s.empty() ? s : "; inputs " + s;
}

struct collector {
  comparison& out;
  void differ(std::string line) {
    out.equal = false;
    out.lines.push_back(std::move(line));
  }
};

void compare_vectors(const machine_state& before, const machine_state& expected,
                     const machine_state& actual, const compare_rules& rules, collector& c) {
  const unsigned e = rules.elem_bytes;
  for (unsigned n = 0; n < 32; ++n) {
    if (std::memcmp(expected.z[n], actual.z[n], vector_bytes()) == 0) continue;
    unsigned shown = 0, hidden = 0;
    for (unsigned i = 0; i < vector_bytes() / e; ++i) {
      const uint64_t want = element(expected.z[n], e, i), got = element(actual.z[n], e, i);
      if (want == got) continue;
      if (rules.by_page && n == rules.dest_z &&
          !(predicate_bit(expected.ffr, i * e) && predicate_bit(actual.ffr, i * e))) {
        c.out.relaxed = true; // "unloaded-elements"
        continue;
      }
      if (shown++ < kElementLinesPerRegister)
        c.differ(format("z%u.%c[%u]: expected 0x%llx, got 0x%llx (was 0x%llx", n, size_letter(e), i,
                        static_cast<unsigned long long>(want), static_cast<unsigned long long>(got),
                        static_cast<unsigned long long>(element(before.z[n], e, i))) +
                 inputs_at(before, rules, i) + ")");
      else
        ++hidden;
    }
    if (hidden) c.differ(format("... and %u more elements of z%u differ", hidden, n));
  }
}

std::string predicate_line(const char* name, const uint8_t* before, const uint8_t* want,
                           const uint8_t* got) {
  std::string bits;
  unsigned listed = 0;
  for (unsigned i = 0; i < vector_bytes(); ++i)
    if (predicate_bit(want, i) != predicate_bit(got, i) && listed++ < 8)
      bits += (bits.empty() ? "" : " ") + std::to_string(i);
  return format("%s: expected %s, got %s (was %s); bits differ at byte %s%s", name,
                predicate_value(want).c_str(), predicate_value(got).c_str(),
                predicate_value(before).c_str(), bits.c_str(), listed > 8 ? " ..." : "");
}

void compare_predicates(const machine_state& before, const machine_state& expected,
                        const machine_state& actual, const cpu_state& raw,
                        const compare_rules& rules, collector& c) {
  for (unsigned n = 0; n < 16; ++n) {
    if (std::memcmp(expected.p[n], actual.p[n], predicate_bytes()) != 0)
      c.differ(predicate_line(("p" + std::to_string(n)).c_str(), before.p[n], expected.p[n],
                              actual.p[n]));
  }
  if (std::memcmp(expected.ffr, actual.ffr, predicate_bytes()) != 0) {
    if (!rules.by_page) {
      c.differ(predicate_line("ffr", before.ffr, expected.ffr, actual.ffr));
    } else {
      c.out.relaxed = true; // "first-fault-by-page": it may only clear bits
      for (unsigned i = 0; i < vector_bytes(); ++i)
        if (predicate_bit(actual.ffr, i) && !predicate_bit(before.ffr, i)) {
          c.differ(format("ffr: byte %u was set by a load, which may only clear it", i));
          break;
        }
    }
  }
  // Every byte of the emulator's predicates holds 0 or 1.
  for (unsigned n = 0; n <= 16; ++n) {
    const uint8_t* bytes = n < 16 ? raw.p[n] : raw.ffr;
    for (unsigned i = 0; i < vector_bytes(); ++i) {
      if (bytes[i] > 1) {
        c.differ(format("%s byte %u holds 0x%02x; predicate bytes hold 0 or 1",
                        n < 16 ? ("p" + std::to_string(n)).c_str() : "ffr", i, bytes[i]));
        break;
      }
    }
  }
}

void compare_scalars(const machine_state& before, const machine_state& expected,
                     const machine_state& actual, collector& c) {
  for (unsigned n = 0; n < 31; ++n)
    if (expected.x[n] != actual.x[n])
      c.differ(format("x%u: expected 0x%llx, got 0x%llx (was 0x%llx)", n,
                      static_cast<unsigned long long>(expected.x[n]),
                      static_cast<unsigned long long>(actual.x[n]),
                      static_cast<unsigned long long>(before.x[n])));
  if (expected.sp != actual.sp)
    c.differ(format("sp: expected 0x%llx, got 0x%llx (was 0x%llx)",
                    static_cast<unsigned long long>(expected.sp),
                    static_cast<unsigned long long>(actual.sp),
                    static_cast<unsigned long long>(before.sp)));
  if (expected.nzcv != actual.nzcv)
    c.differ("nzcv: expected " + flags_text(expected.nzcv) + ", got " + flags_text(actual.nzcv) +
             " (was " + flags_text(before.nzcv) + ")");
  if (expected.fpsr != actual.fpsr)
    c.differ("fpsr: expected " + fpsr_text(expected.fpsr) + ", got " + fpsr_text(actual.fpsr) +
             " (was " + fpsr_text(before.fpsr) + ")");
  if (actual.fpcr != before.fpcr)
    c.differ(format("fpcr: changed from 0x%08llx to 0x%08llx",
                    static_cast<unsigned long long>(before.fpcr),
                    static_cast<unsigned long long>(actual.fpcr)));
}

std::string hex_bytes(const uint8_t* p, size_t n) {
  std::string s;
  for (size_t i = 0; i < n; ++i) s += format(i ? " %02x" : "%02x", p[i]);
  return s;
}

void compare_memory(const memory_images& m, collector& c) {
  constexpr size_t kShown = 16;
  if (m.bytes == 0 || std::memcmp(m.expected, m.actual, m.bytes) == 0) return;
  unsigned ranges = 0;
  for (size_t i = 0; i < m.bytes;) {
    if (m.expected[i] == m.actual[i]) {
      ++i;
      continue;
    }
    size_t end = i;
    while (end < m.bytes && end - i < kShown && m.expected[end] != m.actual[end]) ++end;
    if (ranges++ < 4)
      c.differ(format("memory 0x%llx (area +0x%zx), %zu bytes: expected %s, got %s (was %s)",
                      static_cast<unsigned long long>(m.address + i), i, end - i,
                      hex_bytes(m.expected + i, end - i).c_str(),
                      hex_bytes(m.actual + i, end - i).c_str(),
                      hex_bytes(m.before + i, end - i).c_str()));
    i = end;
  }
  if (ranges > 4) c.differ(format("... and %u more differing memory ranges", ranges - 4));
}

} // namespace

comparison compare_results(const machine_state& before, const machine_state& expected,
                           const machine_state& actual, const cpu_state& raw,
                           const memory_images& memory, const compare_rules& rules) {
  comparison out;
  collector c{out};
  compare_vectors(before, expected, actual, rules, c);
  compare_predicates(before, expected, actual, raw, rules, c);
  compare_scalars(before, expected, actual, c);
  compare_memory(memory, c);
  return out;
}

#include "check_row.h"

#include <stdio_ext.h>

#include <cctype>
#include <cstring>
#include <string>
#include <vector>

#include "compare.h"
#include "design_differences.h"
#include "draw.h"
#include "inline_run.h"
#include "native_run.h"

#include "client/inline_forms.h"
#include "decode/reserved_encodings.h"
#include "decode/sve_utils.h"

#include "forms/describe.h"

namespace {

char stderr_buffer[1 << 16];

uint64_t host_fpcr() {
  uint64_t v;
  asm volatile("mrs %0, fpcr" : "=r"(v));
  return v;
}
void set_host_fpcr(uint64_t v) { asm volatile("msr fpcr, %0" ::"r"(v)); }

// The word through the decode cascade and its decoder, on a record holding
// the state, with the host FPCR as the application's would be. The line
// naming the case is buffered and dropped after the run: it reaches stderr
// only if the emulator ends the process on the way.
aarch64_decode_rc run_emulated(const char* name, uint32_t word, const machine_state& in,
                               uint64_t pc, cpu_state* s) {
  std::memset(s, 0, sizeof *s);
  to_cpu_state(in, s);
  s->pc = pc;
  const sve_decoder decoder = get_sve_handler(word);
  if (!decoder) return AARCH64_DECODE_UNIMPLEMENTED; // refused, as the client refuses it
  std::fprintf(stderr, "zorvo-reference: emulating %s, word 0x%08x\n", name, word);
  const uint64_t saved = host_fpcr();
  set_host_fpcr(in.fpcr);
  const aarch64_decode_rc rc = decoder(s, word);
  set_host_fpcr(saved);
  __fpurge(stderr);
  return rc;
}

uint64_t name_hash(const char* s) {
  uint64_t h = 1469598103934665603ull;
  for (; *s; ++s) h = (h ^ static_cast<uint8_t>(*s)) * 1099511628211ull;
  return h;
}

std::string describe(uint32_t word) {
  char buf[160];
  describe_operands(word, buf, sizeof buf);
  return buf;
}

// The Z and P registers that a description names ("z7.b", "p4/m").
void named_registers(const std::string& text, compare_rules* rules) {
  rules->operand_z = 0;
  rules->operand_p = 0;
  for (size_t i = 0; i + 1 < text.size(); ++i) {
    const char c = text[i];
    const bool starts = i == 0 || !std::isalnum(static_cast<unsigned char>(text[i - 1]));
    if (!starts || (c != 'z' && c != 'p') || !std::isdigit(static_cast<unsigned char>(text[i + 1])))
      continue;
    unsigned n = 0;
    size_t j = i + 1;
    while (j < text.size() && std::isdigit(static_cast<unsigned char>(text[j])))
      n = n * 10 + static_cast<unsigned>(text[j++] - '0');
    if (j < text.size() && std::isalnum(static_cast<unsigned char>(text[j]))) continue;
    if (c == 'z' && n < 32) rules->operand_z |= 1u << n;
    if (c == 'p' && n < 16) rules->operand_p = static_cast<uint16_t>(rules->operand_p | 1u << n);
  }
}

struct reporter {
  const row_profile& p;
  const check_options& o;
  unsigned written = 0;

  void failure(unsigned index, uint32_t word, const std::vector<std::string>& lines) {
    if (written++ >= o.reports) return;
    const std::string operands = describe(word);
    std::fprintf(o.out, "FAIL %s case %u: word 0x%08x%s%s\n", p.row->name, index, word,
                 operands.empty() ? "" : "  ", operands.c_str());
    for (const std::string& l : lines) std::fprintf(o.out, "    %s\n", l.c_str());
  }
};

// Everything one row's cases share.
struct row_run {
  const row_profile& p;
  const check_options& o;
  row_outcome r;
  reporter report{p, o};
  rng_t rng;
  const test_area& area = the_test_area();
  const bool memory = p.addr != addressing::none;
  std::vector<uint8_t> before_mem, expected_mem;

  row_run(const row_profile& profile, const check_options& options)
      : p(profile), o(options), rng(options.seed ^ name_hash(profile.row->name)),
        before_mem(memory ? area.bytes : 0), expected_mem(before_mem.size()) {}

  void run_case(unsigned index, unsigned slot, uint32_t word);
  // Holds one tier's result against the reference's; false on a difference.
  bool matches(const char* tier, unsigned index, uint32_t word, const machine_state& before,
               const machine_state& expected, const cpu_state& raw);
};

bool row_run::matches(const char* tier, unsigned index, uint32_t word, const machine_state& before,
                      const machine_state& expected, const cpu_state& raw) {
  machine_state actual;
  from_cpu_state(raw, &actual);
  compare_rules rules{p.elem_bytes > 8 ? 8 : p.elem_bytes, decides_by_page(p), word & 0x1f, 0, 0};
  const memory_images images{before_mem.data(), expected_mem.data(), area.begin,
                             memory ? area.bytes : 0, reinterpret_cast<uint64_t>(area.begin)};
  comparison c = compare_results(before, expected, actual, raw, images, rules);
  if (!c.equal && report.written < o.reports) {
    // Again, with the operands' inputs beside each differing element.
    named_registers(describe(word), &rules);
    c = compare_results(before, expected, actual, raw, images, rules);
  }
  if (!c.equal) {
    c.lines.insert(c.lines.begin(), std::string("the ") + tier + " differs:");
    report.failure(index, word, c.lines);
    return false;
  }
  if (c.relaxed) ++r.relaxed;
  return true;
}

void row_run::run_case(unsigned index, unsigned slot, uint32_t word) {
  ++r.cases;
  if (is_region_marker(word)) {
    ++r.skipped;
    return;
  }
  const decode_row* found = find_decode_row(word);
  // Words the row's encoding reserves are drawn too: no row takes them, and
  // the reference must refuse them.
  int rows = 0;
  const bool reserved =
      !found && word_is_reserved(kRowReservedRules[p.row - decode_rows(&rows)], word);
  if (found != p.row && !reserved) {
    ++r.failed;
    report.failure(index, word,
                   {std::string("the cascade finds ") + (found ? found->name : "no row")});
    return;
  }
  machine_state before;
  draw_state(rng, p, word, area, &before);
  if (memory) {
    draw_memory(rng, p, area);
    std::memcpy(before_mem.data(), area.begin, area.bytes);
  }
  machine_state expected = before;
  const native_outcome native = run_native(slot, &expected);
  if (native == native_outcome::undefined) {
    // Undefined on the reference (some forms are at short lengths, and rows
    // hold reserved encodings): the emulator must refuse the word too, and
    // the inline tier must have no code for it.
    cpu_state ignored;
    inline_code code;
    const bool called = run_emulated(p.row->name, word, before, native_word_address(slot),
                                     &ignored) == AARCH64_DECODE_OK;
    const bool inlined = translate_inline(word, native_word_address(slot), &code);
    if (!called && !inlined) {
      ++r.passed;
      return;
    }
    ++r.failed;
    report.failure(index, word,
                   {std::string("undefined on the reference, carried out by the emulator") +
                    (called ? " (call path)" : "") + (inlined ? " (inline code)" : "")});
    return;
  }
  if (reserved) {
    ++r.failed;
    report.failure(index, word, {"reserved in this row, but the reference carries it out"});
    return;
  }
  if (native != native_outcome::ran) {
    ++r.skipped; // "undefined-encoding", "reference-fault"
    return;
  }
  if (memory) {
    std::memcpy(expected_mem.data(), area.begin, area.bytes);
    std::memcpy(area.begin, before_mem.data(), area.bytes);
  }

  cpu_state raw;
  const aarch64_decode_rc rc =
      run_emulated(p.row->name, word, before, native_word_address(slot), &raw);
  if (rc != AARCH64_DECODE_OK) {
    if (r.passed + r.failed == 0) {
      r.unimplemented = true;
      return;
    }
    ++r.failed;
    report.failure(index, word,
                   {"the decoder returned " + std::to_string(rc) +
                    " for this word after carrying out others"});
    return;
  }
  bool equal = matches("call path", index, word, before, expected, raw);
  // The same case through the code the inline tier emits, when it has some.
  if (memory) std::memcpy(area.begin, before_mem.data(), area.bytes);
  std::memset(&raw, 0, sizeof raw);
  to_cpu_state(before, &raw);
  raw.pc = native_word_address(slot);
  // Memory forms see the trace gate open in every other case, and must then
  // give the same result through the call path.
  if (run_inline(word, raw.pc, before.fpcr, memory && index % 2 == 1, &raw)) {
    ++r.inline_cases;
    equal = matches("inline code", index, word, before, expected, raw) && equal;
  }
  if (equal)
    ++r.passed;
  else
    ++r.failed;
}

} // namespace

const char* status_name(row_status s) {
  switch (s) {
  case row_status::pass:
    return "pass";
  case row_status::fail:
    return "fail";
  case row_status::not_implemented:
    return "not implemented";
  case row_status::differs_by_design:
    return "differs by design";
  }
  return "?";
}

row_status row_outcome::status() const {
  if (failed || nothing_compared) return row_status::fail;
  if (unimplemented) return row_status::not_implemented;
  if (relaxed) return row_status::differs_by_design;
  return row_status::pass;
}

void check_init() { setvbuf(stderr, stderr_buffer, _IOFBF, sizeof stderr_buffer); }

row_outcome check_row(const row_profile& p, const check_options& o) {
  row_run run(p, o);
  // A small first batch: most of the time it shows that a row is not
  // implemented yet.
  unsigned batch = 8;
  for (unsigned first = 0; first < o.cases && !run.r.unimplemented; first += batch) {
    batch = first == 0 ? batch : kNativeSlots;
    const unsigned n = o.cases - first < batch ? o.cases - first : batch;
    uint32_t words[kNativeSlots];
    for (unsigned k = 0; k < n; ++k) words[k] = draw_word(run.rng, p);
    native_load_words(words, n);
    for (unsigned k = 0; k < n && !run.r.unimplemented; ++k) run.run_case(first + k, k, words[k]);
  }
  if (!run.r.unimplemented && run.r.cases > 0 && run.r.passed + run.r.failed == 0) {
    run.r.nothing_compared = true;
    std::fprintf(o.out, "FAIL %s: every case was skipped, so nothing was compared\n", p.row->name);
  }
  int rows = 0;
  if (form_is_inline(static_cast<int>(p.row - decode_rows(&rows))) &&
      run.r.passed + run.r.failed > 0 && run.r.inline_cases == 0) {
    run.r.nothing_compared = true;
    std::fprintf(o.out, "FAIL %s: the row has inline code, but no case ran it\n", p.row->name);
  }
  if (run.report.written > o.reports)
    std::fprintf(o.out, "FAIL %s: %u more failing cases not shown\n", p.row->name,
                 run.report.written - o.reports);
  if (run.report.written)
    std::fprintf(o.out, "FAIL %s: the same cases again: --rows %s --seed %llu\n", p.row->name,
                 p.row->name, static_cast<unsigned long long>(o.seed));
  return run.r;
}

#include "mix_table.h"

#include "text_format.h"

#include <cinttypes>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <unordered_map>

namespace {

double share(uint64_t count, uint64_t total) { return total ? 100.0 * count / total : 0.0; }

// Names and symbols need quoting in CSV only when they hold a comma or quote
// (C++ symbols can); JSON escapes quotes and backslashes.
std::string csv_field(const std::string& s) {
  if (s.find_first_of(",\"\n") == std::string::npos) return s;
  std::string out = "\"";
  for (char c : s) out += c == '"' ? std::string("\"\"") : std::string(1, c);
  return out + "\"";
}

std::string json_string(const std::string& s) {
  std::string out = "\"";
  for (char c : s) {
    if (c == '"' || c == '\\') out += '\\';
    if (static_cast<unsigned char>(c) < 0x20)
      out += format_text("\\u%04x", c);
    else
      out += c;
  }
  return out + "\"";
}

} // namespace

std::string mix_text(const mix_summary& mix) {
  std::string out =
      format_text("zorvo: instruction mix: %s SVE instructions emulated in %u thread%s\n",
                  with_commas(mix.total).c_str(), mix.threads, mix.threads == 1 ? "" : "s");
  out += format_text("  %15s %7s  %-10s %s\n", "count", "share", "mnemonic", "form (decoder)");
  for (const mix_form& f : mix.forms)
    out += format_text("  %15s %6.2f%%  %-10s %s\n", with_commas(f.count).c_str(),
                       share(f.count, mix.total), f.mnemonic.c_str(), f.form.c_str());
  out += format_text("zorvo: the %zu addresses that emulated most\n", mix.top.size());
  out += format_text("  %15s %7s  %-18s %-10s %s\n", "count", "share", "address", "mnemonic",
                     "symbol");
  for (const mix_address& a : mix.top)
    out += format_text("  %15s %6.2f%%  0x%-16" PRIx64 " %-10s %s\n", with_commas(a.count).c_str(),
                       share(a.count, mix.total), a.pc, a.mnemonic.c_str(),
                       a.symbol.empty() ? "?" : a.symbol.c_str());
  if (mix.uncounted_sites)
    out += format_text("zorvo: %s instruction addresses were not counted: a thread can count %s\n",
                       with_commas(mix.uncounted_sites).c_str(),
                       (with_commas(mix.counters_per_thread) + " addresses").c_str());
  return out;
}

std::string mix_csv(const mix_summary& mix) {
  std::string out = "kind,count,share,mnemonic,form,address,symbol\n";
  for (const mix_form& f : mix.forms)
    out += format_text("form,%" PRIu64 ",%.4f,%s,%s,,\n", f.count, share(f.count, mix.total),
                       f.mnemonic.c_str(), f.form.c_str());
  for (const mix_address& a : mix.top)
    out += format_text("address,%" PRIu64 ",%.4f,%s,%s,0x%" PRIx64 ",", a.count,
                       share(a.count, mix.total), a.mnemonic.c_str(), a.form.c_str(), a.pc) +
           csv_field(a.symbol) + "\n";
  return out;
}

std::string mix_json(const mix_summary& mix) {
  std::string out =
      format_text("{\"total\": %" PRIu64 ", \"threads\": %u, \"uncounted_addresses\": %" PRIu64
                  ",\n \"forms\": [",
                  mix.total, mix.threads, mix.uncounted_sites);
  for (size_t i = 0; i < mix.forms.size(); ++i)
    out += format_text("%s\n  {\"mnemonic\": %s, \"form\": %s, \"count\": %" PRIu64
                       ", \"share\": %.4f}",
                       i ? "," : "", json_string(mix.forms[i].mnemonic).c_str(),
                       json_string(mix.forms[i].form).c_str(), mix.forms[i].count,
                       share(mix.forms[i].count, mix.total));
  out += "],\n \"addresses\": [";
  for (size_t i = 0; i < mix.top.size(); ++i) {
    const mix_address& a = mix.top[i];
    out += format_text("%s\n  {\"address\": \"0x%" PRIx64 "\", \"symbol\": ", i ? "," : "", a.pc) +
           json_string(a.symbol) +
           format_text(", \"mnemonic\": %s, \"form\": %s, \"count\": %" PRIu64 ", \"share\": %.4f}",
                       json_string(a.mnemonic).c_str(), json_string(a.form).c_str(), a.count,
                       share(a.count, mix.total));
  }
  return out + "]}\n";
}
